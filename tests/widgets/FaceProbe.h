#pragma once

#include <QColor>
#include <QImage>
#include <QPoint>
#include <QString>

// Reading pictures of faces: where on the small Sky Radar a blip must land, and colour comparisons that
// allow for the last bit of rounding.
namespace FaceProbe {

// The pixel of a blip's centre in the small Sky Radar face drawn at `scale`: the scope fills the frame
// inside its padding, north up, a blip on the edge at 0.94 of the radius.
[[nodiscard]] QPoint radarSmallPixel(double fraction, double bearingDeg, double scale = 2);
// The centre of that scope, where home is.
[[nodiscard]] QPoint radarSmallCentre(double scale = 2);

[[nodiscard]] bool sameColor(const QColor &a, const QColor &b, int tolerance = 6);
// Whether any pixel within `radius` of `centre` has the colour.
[[nodiscard]] bool colorNear(const QImage &image, QPoint centre, int radius, const QColor &color,
                             int tolerance = 6);
[[nodiscard]] QString describe(const QColor &color);

} // namespace FaceProbe
