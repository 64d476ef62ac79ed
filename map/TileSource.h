#pragma once

#include <QString>

// One layer of raster tiles: where they come from, how they are credited, and how the map treats them.
struct TileSource
{
    // Names the layer in the disk cache, together with a digest of the template.
    QString name;
    // An address with {z}, {x}, {y} and optionally {r} and {s}.
    QString urlTemplate;
    QString attribution;
    int minZoom = 0;
    int maxZoom = 19;
    // Drawn desaturated and softened, for the muted style.
    bool muted = false;

    // {r} in the template means the service has tiles of twice the density.
    [[nodiscard]] bool hasHighDensity() const { return urlTemplate.contains(u"{r}"); }
    // The cache folder: the layer's name and a digest of the template, so that another address never
    // serves tiles cached from the first.
    [[nodiscard]] QString cacheKey() const;

    bool operator==(const TileSource &) const = default;
};
