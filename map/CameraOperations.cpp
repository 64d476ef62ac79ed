#include "CameraOperations.h"

#include <algorithm>

namespace CameraOperations {

namespace {

// The toolkit's default animation for the refit, and the two eased moves.
constexpr int recenterMs = 350;
constexpr int homeMs = 500;
constexpr int selectionMs = 600;

double keptDistance(double cameraDistance, double radiusNM)
{
    return cameraDistance > 0 ? cameraDistance : radiusNM * metresPerNauticalMile * 3;
}

} // namespace

double clamp(double value, double lower, double upper)
{
    return std::min(upper, std::max(lower, value));
}

std::optional<Target> recenter(const std::optional<HomeLocation> &home, double radiusNM)
{
    if (!home)
        return std::nullopt;
    return Target{home->latitude, home->longitude, radiusNM * metresPerNauticalMile * 5, recenterMs,
                  QEasingCurve::InOutQuad};
}

std::optional<Target> centerOnHome(const std::optional<HomeLocation> &home, double radiusNM,
                                   double cameraDistance)
{
    if (!home)
        return std::nullopt;
    return Target{home->latitude, home->longitude,
                  clamp(keptDistance(cameraDistance, radiusNM), 2000, 2000000), homeMs,
                  QEasingCurve::InOutQuad};
}

std::optional<Target> focusOnSelection(const std::optional<Aircraft> &selected, double radiusNM,
                                       double cameraDistance)
{
    if (!selected || !selected->lat() || !selected->lon())
        return std::nullopt;
    return Target{*selected->lat(), *selected->lon(),
                  clamp(keptDistance(cameraDistance, radiusNM), 8000, 600000), selectionMs,
                  QEasingCurve::InOutQuad};
}

} // namespace CameraOperations
