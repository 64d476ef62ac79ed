#pragma once

#include "Aircraft.h"
#include "FlightRoute.h"

#include <QList>
#include <QString>
#include <QUrl>
#include <optional>

// The words of the radar map and the detail card: what a screen reader says of a marker, the card's data
// rows, and the link to the web track viewer.
namespace RadarTexts {

struct DetailRow
{
    QString label;
    QString value;
    QString tooltip; // empty for none
    bool operator==(const DetailRow &) const = default;
};

// The card's rows in their order; a row whose value is missing is left out. `route` is the route known
// for the aircraft's callsign, if any.
[[nodiscard]] QList<DetailRow> detailRows(const Aircraft &aircraft, const std::optional<FlightRoute> &route,
                                          const QString &distanceUnit);

// The track viewer's base address: AEROLUME_GLOBE_URL, else https://adsb.lol.
[[nodiscard]] QString globeViewerHost();
// The viewer's page of one aircraft; empty when the address isn't valid.
[[nodiscard]] QUrl trackUrl(const QString &hex);
// "Track on " and the viewer's host name.
[[nodiscard]] QString trackLinkText();

} // namespace RadarTexts
