#pragma once

#include <QHashFunctions>
#include <QtGlobal>

// One tile of the XYZ scheme: zoom level, column from the antimeridian eastward, row from the north.
struct TileId
{
    int z = 0;
    int x = 0;
    int y = 0;

    bool operator==(const TileId &) const = default;
};

inline size_t qHash(const TileId &tile, size_t seed = 0) noexcept
{
    return qHashMulti(seed, tile.z, tile.x, tile.y);
}
