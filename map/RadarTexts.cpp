#include "RadarTexts.h"

#include "Services.h"

#include <cmath>

namespace RadarTexts {

QList<DetailRow> detailRows(const Aircraft &aircraft, const std::optional<FlightRoute> &route,
                            const QString &distanceUnit)
{
    QList<DetailRow> rows;
    const auto add = [&rows](const QString &label, const std::optional<QString> &value,
                             const QString &tooltip = {}) {
        if (value)
            rows.append({label, *value, tooltip});
    };
    if (aircraft.flight() && route)
        add(u"Route"_qs, route->summary(), route->citySummary().value_or(route->summary()));
    add(u"Operator"_qs, aircraft.operatorDisplayName());
    add(u"Type"_qs, aircraft.typeCode());
    add(u"Registration"_qs, aircraft.registration());
    add(u"Altitude"_qs, aircraft.altitudeText());
    add(u"Ground speed"_qs, aircraft.speedText());
    add(u"Vertical"_qs, aircraft.verticalText());
    if (const auto track = aircraft.track())
        add(u"Track"_qs, QString::number(std::lround(*track)) + u"°"_qs);
    add(u"Squawk"_qs, aircraft.squawk());
    add(u"Distance"_qs, aircraft.distanceText(distanceUnit, false));
    add(u"Spot it"_qs, aircraft.lookDirection());
    add(u"ICAO hex"_qs, aircraft.hex().toUpper());
    return rows;
}

QString globeViewerHost()
{
    return Services::globeViewerURL();
}

QUrl trackUrl(const QString &hex)
{
    const QUrl url(globeViewerHost() + u"/?icao="_qs + hex, QUrl::StrictMode);
    if (!url.isValid() || url.scheme().isEmpty() || url.host().isEmpty())
        return {};
    return url;
}

QString trackLinkText()
{
    const QUrl base(globeViewerHost());
    return u"Track on "_qs + (base.host().isEmpty() ? globeViewerHost() : base.host());
}

} // namespace RadarTexts
