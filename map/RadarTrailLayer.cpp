#include "RadarTrailLayer.h"

#include "FlightStore.h"
#include "TrailSegment.h"

RadarTrailLayer::RadarTrailLayer(QQuickItem *parent) : MapPolylineLayer(parent) {}

QObject *RadarTrailLayer::store() const
{
    return m_store;
}

void RadarTrailLayer::setStore(QObject *store)
{
    auto *flights = qobject_cast<FlightStore *>(store);
    if (flights == m_store)
        return;
    if (m_store)
        m_store->disconnect(this);
    m_store = flights;
    if (m_store) {
        // Every change of what the map shows: a refresh, a filter, a search.
        for (auto signal : {&FlightStore::trailsChanged, &FlightStore::aircraftChanged,
                            &FlightStore::activeFiltersChanged, &FlightStore::searchTextChanged})
            connect(m_store, signal, this, &RadarTrailLayer::scheduleRebuild);
    }
    emit settingsChanged();
    scheduleRebuild();
}

void RadarTrailLayer::setShowTrails(bool show)
{
    if (show == m_showTrails)
        return;
    m_showTrails = show;
    emit settingsChanged();
    scheduleRebuild();
}

void RadarTrailLayer::setColorByAltitude(bool byAltitude)
{
    if (byAltitude == m_colorByAltitude)
        return;
    m_colorByAltitude = byAltitude;
    emit settingsChanged();
    scheduleRebuild();
}

void RadarTrailLayer::setPlaneColorHex(const QString &hex)
{
    if (hex == m_planeColorHex)
        return;
    m_planeColorHex = hex;
    emit settingsChanged();
    scheduleRebuild();
}

void RadarTrailLayer::setTrailWidth(double width)
{
    if (width == m_trailWidth)
        return;
    m_trailWidth = width;
    emit settingsChanged();
    scheduleRebuild();
}

void RadarTrailLayer::scheduleRebuild()
{
    // A refresh changes the list and the trails one after the other: one rebuild for both.
    if (m_rebuildPending)
        return;
    m_rebuildPending = true;
    QMetaObject::invokeMethod(this, &RadarTrailLayer::rebuild, Qt::QueuedConnection);
}

void RadarTrailLayer::rebuild()
{
    m_rebuildPending = false;
    QList<Line> lines;
    if (m_store) {
        const auto segments = TrailSegment::segments(m_store->displayedAircraft(), m_store->trails(),
                                                     {m_showTrails, m_colorByAltitude, m_planeColorHex});
        lines.reserve(segments.size());
        for (const TrailSegment &segment : segments) {
            Line line;
            line.path.reserve(segment.coordinates.size());
            for (const auto &point : segment.coordinates)
                line.path.append(QPointF(point.latitude, point.longitude));
            line.color = segment.color;
            line.color.setAlphaF(float(strokeOpacity));
            line.width = m_trailWidth;
            lines.append(std::move(line));
        }
    }
    setLines(std::move(lines));
}
