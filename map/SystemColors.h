#pragma once

#include <QColor>

// The toolkit colours the map's visuals name: "system red" and its kin, in their light-mode sRGB values.
namespace SystemColors {

[[nodiscard]] inline QColor red()
{
    return QColor::fromRgb(255, 59, 48);
}
[[nodiscard]] inline QColor orange()
{
    return QColor::fromRgb(255, 149, 0);
}
[[nodiscard]] inline QColor gray()
{
    return QColor::fromRgb(142, 142, 147);
}
[[nodiscard]] inline QColor blue()
{
    return QColor::fromRgb(0, 122, 255);
}
[[nodiscard]] inline QColor green()
{
    return QColor::fromRgb(52, 199, 89);
}

} // namespace SystemColors
