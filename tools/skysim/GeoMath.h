#pragma once

#include "GeoPoint.h"

// Great-circle arithmetic on a sphere of the Earth's mean radius, in nautical miles and degrees, the way
// the feed networks work out "dst" and "dir".
namespace GeoMath {

// 6371 km in nautical miles.
inline constexpr double earthRadiusNM = 6371.0 / 1.852;

// Haversine distance.
[[nodiscard]] double distanceNM(GeoPoint from, GeoPoint to);

// Initial bearing of the great circle from one point to the other, in [0, 360).
[[nodiscard]] double initialBearing(GeoPoint from, GeoPoint to);

// The point reached by following the great circle that leaves `from` on `bearing` for `distance`.
// Longitudes come back in [-180, 180).
[[nodiscard]] GeoPoint destination(GeoPoint from, double bearing, double distance);

// Any angle in degrees brought into [0, 360).
[[nodiscard]] double normalizedBearing(double degrees);

// Any longitude brought into [-180, 180).
[[nodiscard]] double normalizedLongitude(double degrees);

} // namespace GeoMath
