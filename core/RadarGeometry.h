#pragma once

#include "HomeLocation.h"

#include <optional>

class Aircraft;

// Places an aircraft on a round scope: how far out (as a fraction of the scope's radius) and in which
// direction from home. The feed's own distance and direction are used when it sends them; home is needed
// only to work out what is missing.
class RadarGeometry
{
public:
    struct Polar
    {
        double fraction = 0;   // 0 at home, 1 on the edge; never above 1
        double bearingDeg = 0; // clockwise from north, 0 up to 360
    };

    static constexpr double earthRadiusNM = 3437.75;

    explicit RadarGeometry(double radiusNM, std::optional<HomeLocation> home = std::nullopt)
        : m_radiusNM(radiusNM), m_home(std::move(home))
    {
    }

    [[nodiscard]] double radiusNM() const { return m_radiusNM; }
    [[nodiscard]] const std::optional<HomeLocation> &home() const { return m_home; }

    // Absent when the aircraft can't be placed (the caller leaves it out) or the radius isn't above 0.
    // An aircraft beyond the radius sits on the edge.
    [[nodiscard]] std::optional<Polar> polar(const Aircraft &aircraft) const;

private:
    double m_radiusNM;
    std::optional<HomeLocation> m_home;
};
