#pragma once

#include "MapViewport.h"
#include <QPointF>
#include <QPointer>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

// A view placed on the map at a coordinate, its centre on the point, following every move of the
// camera. With `glide` on, a new coordinate is reached in a straight line over glideMs instead of at once,
// so that aircraft move smoothly from one refresh to the next.
class MapAnnotation : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(MapViewport *viewport READ viewport WRITE setViewport NOTIFY viewportChanged)
    Q_PROPERTY(double latitude READ latitude WRITE setLatitude NOTIFY coordinateChanged)
    Q_PROPERTY(double longitude READ longitude WRITE setLongitude NOTIFY coordinateChanged)
    Q_PROPERTY(bool glide READ glide WRITE setGlide NOTIFY glideChanged)
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY titleChanged)
    Q_PROPERTY(QString tag READ tag WRITE setTag NOTIFY tagChanged)

public:
    static constexpr int glideMs = 800;

    explicit MapAnnotation(QQuickItem *parent = nullptr);
    ~MapAnnotation() override;

    [[nodiscard]] MapViewport *viewport() const { return m_viewport; }
    void setViewport(MapViewport *viewport);
    [[nodiscard]] double latitude() const { return m_latitude; }
    void setLatitude(double latitude);
    [[nodiscard]] double longitude() const { return m_longitude; }
    void setLongitude(double longitude);
    [[nodiscard]] bool glide() const { return m_glide; }
    void setGlide(bool glide);
    [[nodiscard]] const QString &title() const { return m_title; }
    void setTitle(const QString &title);
    [[nodiscard]] const QString &tag() const { return m_tag; }
    void setTag(const QString &tag);
    // Both halves at once.
    Q_INVOKABLE void setCoordinate(double latitude, double longitude);

    // Where the annotation is drawn now, in world coordinates; during a glide, between the old and the
    // new coordinate.
    [[nodiscard]] QPointF shownWorld() const { return m_shown; }
    [[nodiscard]] bool isGliding() const { return m_glideElapsed < m_glideDuration; }
    // Moves a glide on by this many milliseconds; the glide driver calls it once a frame.
    void advanceGlide(int elapsedMs);

signals:
    void viewportChanged();
    void coordinateChanged();
    void glideChanged();
    void titleChanged();
    void tagChanged();

protected:
    void componentComplete() override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    void moveTo(const QPointF &target);
    void place();
    void stopGliding();

    QPointer<MapViewport> m_viewport;
    double m_latitude = 0;
    double m_longitude = 0;
    bool m_glide = false;
    bool m_placed = false;
    QString m_title;
    QString m_tag;
    QPointF m_shown;
    QPointF m_from;
    QPointF m_to;
    int m_glideElapsed = 0;
    int m_glideDuration = 0;
};
