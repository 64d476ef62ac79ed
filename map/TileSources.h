#pragma once

#include "TileSource.h"

#include <QList>
#include <QString>

// The map styles and the tile layers that draw each, bottom first. Addresses can be replaced through the
// environment, read at the moment of use: AEROLUME_TILE_URL_STANDARD, AEROLUME_TILE_URL_IMAGERY and
// AEROLUME_TILE_URL_LABELS.
namespace TileSources {

// "muted", "imagery", "hybrid"; any other choice is the standard style.
[[nodiscard]] QList<TileSource> layers(const QString &styleChoice);
// The credit line of a style's sources, shown on the map at all times.
[[nodiscard]] QString attribution(const QString &styleChoice);
// The name of a style as the map's menu shows it.
[[nodiscard]] QString styleName(const QString &styleChoice);

[[nodiscard]] TileSource standard();
[[nodiscard]] TileSource imagery();
[[nodiscard]] TileSource labels();

} // namespace TileSources
