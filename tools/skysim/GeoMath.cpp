#include "GeoMath.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace GeoMath {

namespace {

constexpr double radians(double degrees)
{
    return degrees * std::numbers::pi / 180.0;
}

constexpr double degrees(double radians)
{
    return radians * 180.0 / std::numbers::pi;
}

} // namespace

double distanceNM(GeoPoint from, GeoPoint to)
{
    const double phi1 = radians(from.lat);
    const double phi2 = radians(to.lat);
    const double sinHalfLat = std::sin((phi2 - phi1) / 2.0);
    const double sinHalfLon = std::sin(radians(to.lon - from.lon) / 2.0);
    const double a = sinHalfLat * sinHalfLat + std::cos(phi1) * std::cos(phi2) * sinHalfLon * sinHalfLon;
    return 2.0 * earthRadiusNM * std::atan2(std::sqrt(a), std::sqrt(std::max(0.0, 1.0 - a)));
}

double initialBearing(GeoPoint from, GeoPoint to)
{
    const double phi1 = radians(from.lat);
    const double phi2 = radians(to.lat);
    const double deltaLon = radians(to.lon - from.lon);
    const double y = std::sin(deltaLon) * std::cos(phi2);
    const double x = std::cos(phi1) * std::sin(phi2) - std::sin(phi1) * std::cos(phi2) * std::cos(deltaLon);
    return normalizedBearing(degrees(std::atan2(y, x)));
}

GeoPoint destination(GeoPoint from, double bearing, double distance)
{
    const double phi1 = radians(from.lat);
    const double theta = radians(bearing);
    const double delta = distance / earthRadiusNM;
    const double sinPhi2 = std::clamp(
        std::sin(phi1) * std::cos(delta) + std::cos(phi1) * std::sin(delta) * std::cos(theta), -1.0, 1.0);
    const double phi2 = std::asin(sinPhi2);
    const double lambda2 = radians(from.lon) + std::atan2(std::sin(theta) * std::sin(delta) * std::cos(phi1),
                                                          std::cos(delta) - std::sin(phi1) * sinPhi2);
    return GeoPoint{degrees(phi2), normalizedLongitude(degrees(lambda2))};
}

double normalizedBearing(double value)
{
    const double wrapped = std::fmod(value, 360.0);
    const double result = wrapped < 0.0 ? wrapped + 360.0 : wrapped;
    // fmod of a tiny negative number plus 360 can round up to exactly 360.
    return result >= 360.0 ? 0.0 : result;
}

double normalizedLongitude(double value)
{
    return normalizedBearing(value + 180.0) - 180.0;
}

} // namespace GeoMath
