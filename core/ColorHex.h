#pragma once

#include <QColor>
#include <QString>
#include <optional>

// Colours written as text ("#FF8A00") and the luminance that decides between a dark and a light glyph.
namespace ColorHex {

// Trims white space, drops one leading "#", needs exactly six hexadecimal digits; anything else is none.
[[nodiscard]] std::optional<QColor> color(const QString &text);
// "#RRGGBB" in upper case, each component rounded to the nearest of 0...255; none for an invalid colour.
[[nodiscard]] std::optional<QString> hexString(const QColor &color);
// 0.299 red + 0.587 green + 0.114 blue, in sRGB; 0 for an invalid colour.
[[nodiscard]] double luminance(const QColor &color);
// Fills whose luminance is above this take a dark glyph, any other a white one.
inline constexpr double lightThreshold = 0.62;
[[nodiscard]] inline bool isLight(const QColor &color) { return luminance(color) > lightThreshold; }

} // namespace ColorHex
