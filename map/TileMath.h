#pragma once

#include "TileId.h"

#include <QLineF>
#include <QList>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>

// The arithmetic of Web Mercator and of XYZ tiles, as pure functions. "World" coordinates are the whole
// map as a unit square: x from 0 at the antimeridian eastward, y from 0 at the northern edge southward.
namespace TileMath {

// Logical pixels on a side of one tile.
inline constexpr double tileSize = 256.0;
// The equator in metres on the sphere Web Mercator uses.
inline constexpr double earthCircumference = 40075016.685578488;
// Beyond these latitudes the projection has no map.
inline constexpr double maxLatitude = 85.0511287798066;
inline constexpr int maxZoomLevel = 22;

struct Coordinate
{
    double latitude = 0;
    double longitude = 0;
};

// Latitudes past the edge of the map are clamped to it.
[[nodiscard]] QPointF worldPoint(double latitude, double longitude);
// Longitudes come back within -180...180 whatever x is.
[[nodiscard]] Coordinate coordinate(const QPointF &world);
// A screen offset turned into a world direction and back, for a view whose top points to `headingDegrees`.
[[nodiscard]] QPointF rotated(const QPointF &vector, double degrees);

// Ground metres covered by one logical pixel at a latitude and a (fractional) zoom level.
[[nodiscard]] double metresPerPixel(double latitude, double zoom);
// The zoom level at which `distance` metres of a camera frame the shorter side: the shorter side spans
// 0.4 × distance of ground at the centre.
[[nodiscard]] double zoomForDistance(double distance, double latitude, double shorterSide);
[[nodiscard]] double distanceForZoom(double zoom, double latitude, double shorterSide);
// The fraction of the camera distance that the shorter side of the view spans.
inline constexpr double spanPerDistance = 0.4;

// Column modulo the number of columns at the zoom level (the map repeats east and west).
[[nodiscard]] int wrapX(int x, int z);
// The integer zoom level whose tiles are drawn at a fractional zoom (rounded, within the source's range).
[[nodiscard]] int tileZoom(double zoom, int minZoom = 0, int maxZoom = maxZoomLevel);

// The tiles at level `z` that the view touches: a view of `size` logical pixels centred on `centre` (world
// coordinates) at fractional `zoom`, turned by `headingDegrees` (the map's north points that many degrees
// to the left). Columns are not wrapped, so a view across the antimeridian gets columns below 0 or past
// the last; rows outside the map are left out. Ordered from the centre outward, nearest first.
[[nodiscard]] QList<TileId> visibleTiles(const QPointF &centre, double zoom, double headingDegrees,
                                         const QSizeF &size, int z);

// The tile at a lower level that holds `tile`, and the part of it (in its own pixels, 0...tileSize) that
// `tile` covers.
[[nodiscard]] TileId ancestor(const TileId &tile, int levelsUp);
[[nodiscard]] QRectF ancestorSourceRect(const TileId &tile, int levelsUp);

// The address of a tile from a template with {z}, {x}, {y} and optionally {r} (replaced by "@2x" for
// high-density tiles, else by nothing) and {s} (a subdomain, "a" to "c" by tile).
[[nodiscard]] QString tileUrl(const QString &urlTemplate, const TileId &tile, bool highDensity);

} // namespace TileMath
