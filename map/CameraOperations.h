#pragma once

#include "Aircraft.h"
#include "HomeLocation.h"

#include <QEasingCurve>
#include <optional>

// Where the radar map's three camera operations go. Each gives nothing when its target is missing, and
// each turns the map north-up and flat.
namespace CameraOperations {

inline constexpr double metresPerNauticalMile = 1852.0;

struct Target
{
    double latitude = 0;
    double longitude = 0;
    double distance = 0; // metres
    int durationMs = 0;  // the animation when motion isn't reduced
    QEasingCurve::Type easing = QEasingCurve::InOutQuad;
    double heading = 0;
    double pitch = 0;
};

// The whole search area: home at radius × 1852 × 5 metres.
[[nodiscard]] std::optional<Target> recenter(const std::optional<HomeLocation> &home, double radiusNM);
// Home at the user's zoom, or radius × 1852 × 3 before the map has reported one; 2 to 2,000 km.
[[nodiscard]] std::optional<Target> centerOnHome(const std::optional<HomeLocation> &home, double radiusNM,
                                                 double cameraDistance);
// The selected aircraft at the user's zoom, within 8 to 600 km; nothing without a position.
[[nodiscard]] std::optional<Target> focusOnSelection(const std::optional<Aircraft> &selected, double radiusNM,
                                                     double cameraDistance);
// min(upper, max(lower, value))
[[nodiscard]] double clamp(double value, double lower, double upper);

} // namespace CameraOperations
