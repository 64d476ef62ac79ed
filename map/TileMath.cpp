#include "TileMath.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace TileMath {

QPointF worldPoint(double latitude, double longitude)
{
    const double lat = std::clamp(latitude, -maxLatitude, maxLatitude) * std::numbers::pi / 180.0;
    const double x = (longitude + 180.0) / 360.0;
    const double y = (1.0 - std::log(std::tan(lat) + 1.0 / std::cos(lat)) / std::numbers::pi) / 2.0;
    return {x, y};
}

Coordinate coordinate(const QPointF &world)
{
    const double n = std::numbers::pi - 2.0 * std::numbers::pi * world.y();
    const double latitude = 180.0 / std::numbers::pi * std::atan(std::sinh(n));
    double longitude = world.x() * 360.0 - 180.0;
    longitude = std::remainder(longitude, 360.0);
    if (longitude == -180.0 && world.x() > 0.5)
        longitude = 180.0;
    return {latitude, longitude};
}

QPointF rotated(const QPointF &vector, double degrees)
{
    const double radians = degrees * std::numbers::pi / 180.0;
    const double c = std::cos(radians);
    const double s = std::sin(radians);
    return {vector.x() * c - vector.y() * s, vector.x() * s + vector.y() * c};
}

double metresPerPixel(double latitude, double zoom)
{
    const double lat = std::clamp(latitude, -maxLatitude, maxLatitude) * std::numbers::pi / 180.0;
    return earthCircumference * std::cos(lat) / (tileSize * std::exp2(zoom));
}

double zoomForDistance(double distance, double latitude, double shorterSide)
{
    const double lat = std::clamp(latitude, -maxLatitude, maxLatitude) * std::numbers::pi / 180.0;
    const double wanted = spanPerDistance * std::max(distance, 1e-3) / std::max(shorterSide, 1.0);
    return std::log2(earthCircumference * std::cos(lat) / (tileSize * wanted));
}

double distanceForZoom(double zoom, double latitude, double shorterSide)
{
    return metresPerPixel(latitude, zoom) * std::max(shorterSide, 1.0) / spanPerDistance;
}

int wrapX(int x, int z)
{
    const int columns = 1 << z;
    const int wrapped = x % columns;
    return wrapped < 0 ? wrapped + columns : wrapped;
}

int tileZoom(double zoom, int minZoom, int maxZoom)
{
    // A tile is drawn at up to 1.41 times its size before the next level takes over, so the text on it
    // never shrinks below 0.71 of its size either.
    return std::clamp(int(std::lround(zoom)), minZoom, maxZoom);
}

QList<TileId> visibleTiles(const QPointF &centre, double zoom, double headingDegrees, const QSizeF &size,
                           int z)
{
    const double levelPixels = tileSize * std::exp2(z);
    const double toLevel = std::exp2(z - zoom); // logical view pixels to pixels of level z
    const QPointF middle(centre.x() * levelPixels, centre.y() * levelPixels);
    double left = middle.x(), right = middle.x(), top = middle.y(), bottom = middle.y();
    for (const QPointF corner : {QPointF(-1, -1), QPointF(1, -1), QPointF(1, 1), QPointF(-1, 1)}) {
        const QPointF offset(corner.x() * size.width() / 2.0 * toLevel,
                             corner.y() * size.height() / 2.0 * toLevel);
        const QPointF point = middle + rotated(offset, headingDegrees);
        left = std::min(left, point.x());
        right = std::max(right, point.x());
        top = std::min(top, point.y());
        bottom = std::max(bottom, point.y());
    }
    const int rows = 1 << z;
    const int firstColumn = int(std::floor(left / tileSize));
    const int lastColumn = int(std::ceil(right / tileSize)) - 1;
    const int firstRow = std::max(0, int(std::floor(top / tileSize)));
    const int lastRow = std::min(rows - 1, int(std::ceil(bottom / tileSize)) - 1);
    // More columns than the world has would only repeat it; a silly size mustn't make millions of tiles.
    if (lastColumn - firstColumn > 4 * rows + 64 || lastRow - firstRow > rows + 64)
        return {};

    QList<std::pair<double, TileId>> found;
    for (int x = firstColumn; x <= lastColumn; ++x) {
        for (int y = firstRow; y <= lastRow; ++y) {
            // Only tiles that the turned view really touches: a corner of the box may miss it.
            const QPointF tileCentre((x + 0.5) * tileSize, (y + 0.5) * tileSize);
            const QPointF inView = rotated(tileCentre - middle, -headingDegrees);
            const double reach = tileSize * std::numbers::sqrt2 / 2.0;
            if (std::abs(inView.x()) > size.width() / 2.0 * toLevel + reach ||
                std::abs(inView.y()) > size.height() / 2.0 * toLevel + reach)
                continue;
            found.append({QLineF(tileCentre, middle).length(), TileId{z, x, y}});
        }
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });
    QList<TileId> tiles;
    tiles.reserve(found.size());
    for (const auto &[distance, tile] : found)
        tiles.append(tile);
    return tiles;
}

TileId ancestor(const TileId &tile, int levelsUp)
{
    const int up = std::clamp(levelsUp, 0, tile.z);
    // An arithmetic shift floors, which keeps unwrapped negative columns in the right ancestor.
    return TileId{tile.z - up, tile.x >> up, tile.y >> up};
}

QRectF ancestorSourceRect(const TileId &tile, int levelsUp)
{
    const int up = std::clamp(levelsUp, 0, tile.z);
    const int span = 1 << up;
    const double side = tileSize / span;
    const int column = tile.x - ((tile.x >> up) << up);
    const int row = tile.y - ((tile.y >> up) << up);
    return {column * side, row * side, side, side};
}

QString tileUrl(const QString &urlTemplate, const TileId &tile, bool highDensity)
{
    QString url = urlTemplate;
    url.replace(u"{z}"_qs, QString::number(tile.z));
    url.replace(u"{x}"_qs, QString::number(wrapX(tile.x, tile.z)));
    url.replace(u"{y}"_qs, QString::number(tile.y));
    url.replace(u"{r}"_qs, highDensity ? u"@2x"_qs : QString());
    url.replace(u"{s}"_qs, QString(QChar(u'a' + (wrapX(tile.x, tile.z) + tile.y) % 3)));
    return url;
}

} // namespace TileMath
