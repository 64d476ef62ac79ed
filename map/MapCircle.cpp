#include "MapCircle.h"

#include "TileMath.h"

#include <QPainter>
#include <QPainterPath>
#include <cmath>
#include <numbers>

namespace {

constexpr double earthRadius = 6371008.8;
constexpr int circleSteps = 180;

} // namespace

MapCircle::MapCircle(QQuickItem *parent) : MapPaintedLayer(parent) {}

void MapCircle::changed()
{
    emit shapeChanged();
    contentChanged();
}

void MapCircle::setCenterLatitude(double latitude)
{
    if (latitude == m_latitude)
        return;
    m_latitude = latitude;
    changed();
}

void MapCircle::setCenterLongitude(double longitude)
{
    if (longitude == m_longitude)
        return;
    m_longitude = longitude;
    changed();
}

void MapCircle::setRadius(double metres)
{
    if (metres == m_radius)
        return;
    m_radius = metres;
    changed();
}

void MapCircle::setColor(const QColor &color)
{
    if (color == m_color)
        return;
    m_color = color;
    changed();
}

void MapCircle::setBorderColor(const QColor &color)
{
    if (color == m_borderColor)
        return;
    m_borderColor = color;
    changed();
}

void MapCircle::setBorderWidth(double width)
{
    if (width == m_borderWidth)
        return;
    m_borderWidth = width;
    changed();
}

QPointF MapCircle::destination(double latitude, double longitude, double bearingDegrees, double metres)
{
    constexpr double toRadians = std::numbers::pi / 180.0;
    const double angular = metres / earthRadius;
    const double lat1 = latitude * toRadians;
    const double bearing = bearingDegrees * toRadians;
    const double lat2 = std::asin(std::sin(lat1) * std::cos(angular) +
                                  std::cos(lat1) * std::sin(angular) * std::cos(bearing));
    const double lon2 =
        longitude * toRadians + std::atan2(std::sin(bearing) * std::sin(angular) * std::cos(lat1),
                                           std::cos(angular) - std::sin(lat1) * std::sin(lat2));
    return {lat2 / toRadians, lon2 / toRadians};
}

void MapCircle::paintContent(QPainter &painter, const Projection &project, const QRectF &)
{
    if (!(m_radius > 0))
        return;
    QPolygonF outline;
    outline.reserve(circleSteps);
    for (int step = 0; step < circleSteps; ++step) {
        const QPointF point = destination(m_latitude, m_longitude, 360.0 * step / circleSteps, m_radius);
        outline.append(project(TileMath::worldPoint(point.x(), point.y())));
    }
    painter.setPen(m_borderWidth > 0 && m_borderColor.alpha() > 0 ? QPen(m_borderColor, m_borderWidth)
                                                                  : Qt::NoPen);
    painter.setBrush(m_color);
    painter.drawPolygon(outline);
}
