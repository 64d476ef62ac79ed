#include "RadarGeometry.h"

#include "Aircraft.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

double radians(double degrees)
{
    return degrees * std::numbers::pi / 180.0;
}

} // namespace

std::optional<RadarGeometry::Polar> RadarGeometry::polar(const Aircraft &aircraft) const
{
    std::optional<double> distance = aircraft.distanceNM();
    std::optional<double> bearing = aircraft.directionDeg();

    if (!distance || !bearing) {
        if (!m_home || !aircraft.lat() || !aircraft.lon())
            return std::nullopt;
        const double phi1 = radians(m_home->latitude);
        const double phi2 = radians(*aircraft.lat());
        const double deltaLambda = radians(*aircraft.lon() - m_home->longitude);
        if (!bearing) {
            const double y = std::sin(deltaLambda) * std::cos(phi2);
            const double x =
                std::cos(phi1) * std::sin(phi2) - std::sin(phi1) * std::cos(phi2) * std::cos(deltaLambda);
            bearing = std::fmod(std::atan2(y, x) * 180.0 / std::numbers::pi + 360.0, 360.0);
        }
        if (!distance) {
            const double cosine =
                std::sin(phi1) * std::sin(phi2) + std::cos(phi1) * std::cos(phi2) * std::cos(deltaLambda);
            distance = std::acos(std::clamp(cosine, -1.0, 1.0)) * earthRadiusNM;
        }
    }

    // Written so that a radius that is no number at all also gives nothing.
    if (!(m_radiusNM > 0))
        return std::nullopt;
    return Polar{std::min(*distance / m_radiusNM, 1.0), *bearing};
}
