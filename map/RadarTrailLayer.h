#pragma once

#include "MapPolylineLayer.h"

#include <QPointer>

class FlightStore;

// The aircraft trails of the radar map, worked out in C++ straight from the flight store at each
// refresh (a QML list of thousands of coordinates would cost more than the drawing). Each trail is stroked
// in its aircraft's colour at 45 % opacity.
class RadarTrailLayer : public MapPolylineLayer
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QObject *store READ store WRITE setStore NOTIFY settingsChanged)
    Q_PROPERTY(bool showTrails READ showTrails WRITE setShowTrails NOTIFY settingsChanged)
    Q_PROPERTY(bool colorByAltitude READ colorByAltitude WRITE setColorByAltitude NOTIFY settingsChanged)
    Q_PROPERTY(QString planeColorHex READ planeColorHex WRITE setPlaneColorHex NOTIFY settingsChanged)
    Q_PROPERTY(double trailWidth READ trailWidth WRITE setTrailWidth NOTIFY settingsChanged)
    Q_PROPERTY(int segmentCount READ segmentCount NOTIFY polylinesChanged)

public:
    static constexpr double strokeOpacity = 0.45;

    explicit RadarTrailLayer(QQuickItem *parent = nullptr);

    [[nodiscard]] QObject *store() const;
    void setStore(QObject *store);
    [[nodiscard]] bool showTrails() const { return m_showTrails; }
    void setShowTrails(bool show);
    [[nodiscard]] bool colorByAltitude() const { return m_colorByAltitude; }
    void setColorByAltitude(bool byAltitude);
    [[nodiscard]] const QString &planeColorHex() const { return m_planeColorHex; }
    void setPlaneColorHex(const QString &hex);
    [[nodiscard]] double trailWidth() const { return m_trailWidth; }
    void setTrailWidth(double width);
    [[nodiscard]] int segmentCount() const { return int(lines().size()); }

signals:
    void settingsChanged();

private:
    void scheduleRebuild();
    void rebuild();

    QPointer<FlightStore> m_store;
    bool m_showTrails = true;
    bool m_colorByAltitude = false;
    QString m_planeColorHex = u"#FF8A00"_qs;
    double m_trailWidth = 2.0;
    bool m_rebuildPending = false;
};
