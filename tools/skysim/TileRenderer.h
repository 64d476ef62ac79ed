#pragma once

#include <QByteArray>
#include <QImage>

// Draws the map tiles the simulator serves: 256 pixel squares of the XYZ Web Mercator grid. Land and water
// come from a smooth function of latitude and longitude, the same at every zoom, so neighbouring tiles
// and the tiles of the next zoom agree along their edges; each tile carries its own coordinates as text.
class TileRenderer
{
public:
    enum class Style
    {
        Standard, // a street map's light colours: land, water, parks
        Imagery,  // darker, textured, as seen from above
        Labels    // transparent, with text only, to lay over imagery
    };

    static constexpr int tileSize = 256;
    static constexpr int maxZoom = 19;

    TileRenderer() = delete;

    // A tile inside the grid: 0 <= zoom <= maxZoom and 0 <= x, y < 2^zoom.
    [[nodiscard]] static bool isValid(int zoom, qint64 x, qint64 y);
    [[nodiscard]] static QImage render(Style style, int zoom, int x, int y);
    [[nodiscard]] static QByteArray png(Style style, int zoom, int x, int y);

    // Positive over land, negative over water.
    [[nodiscard]] static double landness(double lat, double lon);
};
