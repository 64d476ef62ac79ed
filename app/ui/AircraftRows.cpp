#include "AircraftRows.h"

#include "AltitudeColors.h"
#include "ColorHex.h"
#include "TextRules.h"

AircraftRows::AircraftRows(QObject *parent) : QObject(parent) {}

QString AircraftRows::secondaryLine(const Aircraft &aircraft)
{
    QStringList parts;
    if (const auto type = aircraft.typeName().has_value() ? aircraft.typeName() : aircraft.typeCode())
        parts.append(*type);
    if (aircraft.registration() && *aircraft.registration() != aircraft.displayName())
        parts.append(*aircraft.registration());
    if (parts.isEmpty())
        parts.append(TextRules::upperCased(aircraft.hex()));
    return parts.join(u" · "_qs);
}

QString AircraftRows::accessibilityText(const Aircraft &aircraft, const QString &distanceUnit)
{
    return aircraft.accessibilityText(distanceUnit);
}

QColor AircraftRows::iconColor(const Aircraft &aircraft, const QString &planeColorHex, bool colorByAltitude,
                               const QColor &accent, const QColor &red, const QColor &green, const QColor &gray)
{
    if (aircraft.isEmergency())
        return red;
    if (aircraft.isMilitary())
        return green;
    if (colorByAltitude)
        return AltitudeColors::color(aircraft.altitudeFeet(), gray);
    return ColorHex::color(planeColorHex).value_or(accent);
}

bool AircraftRows::isLight(const QColor &fill)
{
    return ColorHex::isLight(fill);
}
