#include "MarkerColors.h"

#include "Aircraft.h"
#include "AltitudeColors.h"
#include "ColorHex.h"
#include "SystemColors.h"

namespace MarkerColors {

QColor militaryGreen()
{
    return QColor::fromRgbF(0.16f, 0.62f, 0.32f);
}

QColor baseColor(const Aircraft &aircraft, bool colorByAltitude, const QString &planeColorHex)
{
    if (colorByAltitude)
        return AltitudeColors::color(aircraft.altitudeFeet(), SystemColors::gray());
    return ColorHex::color(planeColorHex).value_or(SystemColors::orange());
}

QColor effectiveFill(const Aircraft &aircraft, const QColor &baseColor)
{
    if (aircraft.isEmergency())
        return SystemColors::red();
    if (aircraft.isMilitary())
        return militaryGreen();
    return baseColor;
}

QColor trailColor(const Aircraft &aircraft, bool colorByAltitude, const QString &planeColorHex)
{
    return effectiveFill(aircraft, baseColor(aircraft, colorByAltitude, planeColorHex));
}

QColor glyphColor(const QColor &fill)
{
    return ColorHex::isLight(fill) ? QColor::fromRgbF(0, 0, 0, 0.85f) : QColor::fromRgbF(1, 1, 1, 1);
}

QColor ringColor(const QColor &fill, bool strong)
{
    if (ColorHex::isLight(fill))
        return QColor::fromRgbF(0, 0, 0, strong ? 0.8f : 0.5f);
    return QColor::fromRgbF(1, 1, 1, strong ? 1.0f : 0.85f);
}

} // namespace MarkerColors
