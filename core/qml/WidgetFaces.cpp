#include "WidgetFaces.h"

#include "FaceCatalog.h"
#include "WidgetLinks.h"
#include "WidgetText.h"

#include <QFontDatabase>

WidgetFaces::WidgetFaces(QObject *parent) : QObject(parent) {}

QString WidgetFaces::monospaceFamily()
{
    return QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
}

QString WidgetFaces::openLink()
{
    return WidgetLinks::open().toString();
}

double WidgetFaces::padding()
{
    return FaceCatalog::padding;
}

double WidgetFaces::cornerRadius()
{
    return FaceCatalog::cornerRadius;
}

SkyEntry WidgetFaces::sampleEntry(const QVariant &accentHex) const
{
    if (accentHex.isValid() && !accentHex.isNull())
        return SkyEntry::sample(accentHex.toString());
    return SkyEntry::sample(std::nullopt);
}

QVariantList WidgetFaces::leading(const SkyEntry &entry, int count) const
{
    QVariantList list;
    const QList<Aircraft> &all = entry.aircraft();
    for (qsizetype i = 0; i < std::min<qsizetype>(count, all.size()); ++i)
        list.append(QVariant::fromValue(all[i]));
    return list;
}

QString WidgetFaces::shortAltitude(const Aircraft &aircraft) const
{
    return WidgetText::shortAltitude(aircraft);
}

QString WidgetFaces::distance(const Aircraft &aircraft, const QString &unit) const
{
    return aircraft.distanceText(unit, true).value_or(QString());
}

QString WidgetFaces::radius(const SkyEntry &entry) const
{
    return WidgetText::wholeNumber(entry.radiusNM());
}

QString WidgetFaces::shortTime(const SkyEntry &entry) const
{
    return WidgetText::shortTime(entry.date());
}

QString WidgetFaces::asOf(const SkyEntry &entry) const
{
    return WidgetText::asOf(entry.date());
}

QString WidgetFaces::identityLine(const Aircraft &aircraft) const
{
    return WidgetText::identityLine(aircraft);
}

QString WidgetFaces::rangeLine(const Aircraft &aircraft, const QString &unit) const
{
    return WidgetText::rangeLine(aircraft, unit);
}

QString WidgetFaces::footLine(const SkyEntry &entry) const
{
    return WidgetText::footLine(entry);
}

QString WidgetFaces::countHead(const SkyEntry &entry) const
{
    return WidgetText::countHead(entry);
}

QString WidgetFaces::boardHead(const SkyEntry &entry) const
{
    return WidgetText::boardHead(entry);
}

QString WidgetFaces::rowDescription(const Aircraft &aircraft, const QString &unit) const
{
    QStringList parts{aircraft.displayName()};
    if (const auto distance = aircraft.distanceText(unit, false))
        parts.append(*distance);
    parts.append(aircraft.altitudeText());
    return parts.join(u", "_qs);
}

QString WidgetFaces::scopeDescription(const SkyEntry &entry, int plotted) const
{
    const QString radius = WidgetText::wholeNumber(entry.radiusNM());
    if (plotted == 0)
        return tr("Radar scope, %1 nautical miles, quiet sky").arg(radius);
    return tr("Radar scope, %1 nautical miles, %n aircraft", nullptr, plotted).arg(radius);
}

QString WidgetFaces::aircraftLink(const QString &hex) const
{
    return WidgetLinks::aircraft(hex).toString();
}

QSizeF WidgetFaces::faceSize(const QString &key) const
{
    const auto face = FaceCatalog::fromKey(key);
    return face ? FaceCatalog::pointSize(*face) : QSizeF();
}

QString WidgetFaces::faceTitle(const QString &key) const
{
    const auto face = FaceCatalog::fromKey(key);
    return face ? FaceCatalog::title(*face) : QString();
}
