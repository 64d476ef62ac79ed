#include "ADSB.h"

#include "FeedFetch.h"
#include "HttpClient.h"
#include "Services.h"
#include "TextRules.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ADSB {

namespace {

// Five decimals and a point, whatever the user's locale.
QString coordinateText(double degrees)
{
    return TextRules::fixedPoint(degrees, 5);
}

} // namespace

QList<Source> sources()
{
    const QString primary = Services::primaryFeedURL();
    const QString fallback = Services::fallbackFeedURL();
    return {
        {Services::primaryFeedName(),
         [primary](const HomeLocation &home, int radius) {
             return primary + u"/v2/point/%1/%2/%3"_qs.arg(coordinateText(home.latitude),
                                                             coordinateText(home.longitude), QString::number(radius));
         }},
        {Services::fallbackFeedName(),
         [fallback](const HomeLocation &home, int radius) {
             return fallback + u"/api/v2/lat/%1/lon/%2/dist/%3"_qs.arg(coordinateText(home.latitude),
                                                                        coordinateText(home.longitude),
                                                                        QString::number(radius));
         }},
    };
}

int requestRadius(double radiusNM)
{
    if (std::isnan(radiusNM))
        return 1;
    return int(std::clamp(std::round(radiusNM), 1.0, 250.0));
}

QList<Aircraft> filteredAndSorted(const QList<Aircraft> &rows)
{
    QList<Aircraft> kept;
    kept.reserve(rows.size());
    for (const Aircraft &row : rows) {
        if (row.lat() && row.lon() && (!row.seenPos() || *row.seenPos() < 60.0))
            kept.append(row);
    }
    static constexpr double farthest = std::numeric_limits<double>::infinity();
    std::stable_sort(kept.begin(), kept.end(), [](const Aircraft &a, const Aircraft &b) {
        return a.distanceNM().value_or(farthest) < b.distanceNM().value_or(farthest);
    });
    return kept;
}

FeedFetch *fetch(const HomeLocation &home, double radiusNM, QObject *parent)
{
    auto *task = new FeedFetch(sources(), home, radiusNM, HttpClient::shared(), parent);
    // Started from the event loop: a fetch with nothing to ask fails at once, and the caller must have
    // connected to it by then.
    QMetaObject::invokeMethod(task, &FeedFetch::start, Qt::QueuedConnection);
    return task;
}

} // namespace ADSB
