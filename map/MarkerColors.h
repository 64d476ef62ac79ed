#pragma once

#include <QColor>
#include <QString>

class Aircraft;

// The colour rules of aircraft markers and trails, and the contrast rule that keeps a glyph legible on
// any fill.
namespace MarkerColors {

[[nodiscard]] QColor militaryGreen();
// What an ordinary aircraft is drawn in: its altitude band with colouring by altitude on, else the
// user's colour, else (a colour that doesn't parse) system orange.
[[nodiscard]] QColor baseColor(const Aircraft &aircraft, bool colorByAltitude, const QString &planeColorHex);
// Emergency red beats military green, and both beat the base colour.
[[nodiscard]] QColor effectiveFill(const Aircraft &aircraft, const QColor &baseColor);
// A trail's colour: the marker's fill rule with the base colour of the settings.
[[nodiscard]] QColor trailColor(const Aircraft &aircraft, bool colorByAltitude, const QString &planeColorHex);
// Black at 0.85 on a light fill (luminance above 0.62), else white.
[[nodiscard]] QColor glyphColor(const QColor &fill);
// The ring inside the disc's edge; stronger when selected or with increased contrast.
[[nodiscard]] QColor ringColor(const QColor &fill, bool strong);

} // namespace MarkerColors
