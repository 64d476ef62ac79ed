#include "TrailSegment.h"

#include "MarkerColors.h"

QList<TrailSegment> TrailSegment::segments(const QList<Aircraft> &displayed,
                                           const QHash<QString, QList<Aircraft::Coordinate>> &trails,
                                           const Settings &settings)
{
    QList<TrailSegment> result;
    if (!settings.showTrails)
        return result;
    for (const Aircraft &aircraft : displayed) {
        const auto trail = trails.constFind(aircraft.hex());
        if (trail == trails.constEnd() || trail->size() < 2)
            continue;
        result.append({u"trail-"_qs + aircraft.hex(), *trail,
                       MarkerColors::trailColor(aircraft, settings.colorByAltitude, settings.planeColorHex)});
    }
    return result;
}
