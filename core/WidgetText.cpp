#include "WidgetText.h"

#include <QStringList>
#include <cmath>

namespace WidgetText {

namespace {

constexpr qint64 flightLevelFloor = 18000;

} // namespace

QString shortAltitude(const Aircraft &aircraft, const QLocale &locale)
{
    const auto &baro = aircraft.altBaro();
    if (baro && baro->isGround())
        return u"GND"_qs;
    const std::optional<qint64> feet = baro ? baro->feetValue() : aircraft.altGeom();
    if (!feet)
        return u"—"_qs;
    if (*feet < flightLevelFloor)
        return locale.toString(qlonglong(*feet)) + u"ft"_qs;
    return u"FL"_qs + QString::number(*feet / 100);
}

QString wholeNumber(double value)
{
    if (!std::isfinite(value))
        return u"0"_qs;
    return QString::number(std::trunc(value) + 0.0, 'f', 0);
}

QString shortTime(const QDateTime &date, const QLocale &locale)
{
    return locale.toString(date.time(), QLocale::ShortFormat);
}

QString asOf(const QDateTime &date, const QLocale &locale)
{
    return u"as of "_qs + shortTime(date, locale);
}

QString identityLine(const Aircraft &aircraft)
{
    QStringList parts;
    for (const auto &part : {aircraft.typeCode(), aircraft.registration()}) {
        if (part && !part->isEmpty())
            parts.append(*part);
    }
    return parts.join(u" · "_qs);
}

QString rangeLine(const Aircraft &aircraft, const QString &unit, const QLocale &locale)
{
    const auto distance = aircraft.distanceText(unit, false);
    if (!distance)
        return {};
    return *distance + u" · "_qs + aircraft.altitudeText(locale);
}

QString footLine(const SkyEntry &entry, const QLocale &locale)
{
    return QString::number(entry.count()) + u" in range · "_qs + shortTime(entry.date(), locale);
}

QString countHead(const SkyEntry &entry)
{
    return QString::number(entry.count()) + u" AIRCRAFT · "_qs + wholeNumber(entry.radiusNM()) + u" NM"_qs;
}

QString boardHead(const SkyEntry &entry, const QLocale &locale)
{
    return wholeNumber(entry.radiusNM()) + u" NM · "_qs + shortTime(entry.date(), locale);
}

} // namespace WidgetText
