#pragma once

#include "MapPaintedLayer.h"

#include <QColor>

// A circle on the ground: every point `radius` metres from the centre along the earth's surface, filled
// and stroked. Near the poles and for large radii it is no longer round on the map, as it shouldn't be.
class MapCircle : public MapPaintedLayer
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double centerLatitude READ centerLatitude WRITE setCenterLatitude NOTIFY shapeChanged)
    Q_PROPERTY(double centerLongitude READ centerLongitude WRITE setCenterLongitude NOTIFY shapeChanged)
    Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY shapeChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY shapeChanged)
    Q_PROPERTY(QColor borderColor READ borderColor WRITE setBorderColor NOTIFY shapeChanged)
    Q_PROPERTY(double borderWidth READ borderWidth WRITE setBorderWidth NOTIFY shapeChanged)

public:
    explicit MapCircle(QQuickItem *parent = nullptr);

    [[nodiscard]] double centerLatitude() const { return m_latitude; }
    void setCenterLatitude(double latitude);
    [[nodiscard]] double centerLongitude() const { return m_longitude; }
    void setCenterLongitude(double longitude);
    [[nodiscard]] double radius() const { return m_radius; }
    void setRadius(double metres);
    [[nodiscard]] QColor color() const { return m_color; }
    void setColor(const QColor &color);
    [[nodiscard]] QColor borderColor() const { return m_borderColor; }
    void setBorderColor(const QColor &color);
    [[nodiscard]] double borderWidth() const { return m_borderWidth; }
    void setBorderWidth(double width);

    // The point `metres` from a coordinate along the initial bearing, on a sphere of the earth's mean
    // radius.
    [[nodiscard]] static QPointF destination(double latitude, double longitude, double bearingDegrees,
                                             double metres);

signals:
    void shapeChanged();

protected:
    void paintContent(QPainter &painter, const Projection &project, const QRectF &bounds) override;

private:
    void changed();

    double m_latitude = 0;
    double m_longitude = 0;
    double m_radius = 0;
    QColor m_color = Qt::transparent;
    QColor m_borderColor = Qt::transparent;
    double m_borderWidth = 1;
};
