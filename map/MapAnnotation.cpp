#include "MapAnnotation.h"

#include "GlideDriver.h"
#include "MapViewport.h"
#include "TileMath.h"

#include <cmath>

MapAnnotation::MapAnnotation(QQuickItem *parent) : QQuickItem(parent) {}

MapAnnotation::~MapAnnotation()
{
    GlideDriver::shared()->remove(this);
}

void MapAnnotation::setViewport(MapViewport *viewport)
{
    if (!MapViewport::follow(m_viewport, viewport, this, &MapAnnotation::place))
        return;
    emit viewportChanged();
    place();
}

void MapAnnotation::setLatitude(double latitude)
{
    if (latitude == m_latitude && m_placed)
        return;
    m_latitude = latitude;
    moveTo(TileMath::worldPoint(m_latitude, m_longitude));
    emit coordinateChanged();
}

void MapAnnotation::setLongitude(double longitude)
{
    if (longitude == m_longitude && m_placed)
        return;
    m_longitude = longitude;
    moveTo(TileMath::worldPoint(m_latitude, m_longitude));
    emit coordinateChanged();
}

void MapAnnotation::setCoordinate(double latitude, double longitude)
{
    if (latitude == m_latitude && longitude == m_longitude && m_placed)
        return;
    m_latitude = latitude;
    m_longitude = longitude;
    moveTo(TileMath::worldPoint(m_latitude, m_longitude));
    emit coordinateChanged();
}

void MapAnnotation::componentComplete()
{
    QQuickItem::componentComplete();
    moveTo(TileMath::worldPoint(m_latitude, m_longitude));
}

void MapAnnotation::setGlide(bool glide)
{
    if (glide == m_glide)
        return;
    m_glide = glide;
    if (!m_glide && isGliding()) {
        m_shown = m_to;
        stopGliding();
        place();
    }
    emit glideChanged();
}

void MapAnnotation::setTitle(const QString &title)
{
    if (title == m_title)
        return;
    m_title = title;
    emit titleChanged();
}

void MapAnnotation::setTag(const QString &tag)
{
    if (tag == m_tag)
        return;
    m_tag = tag;
    emit tagChanged();
}

void MapAnnotation::moveTo(const QPointF &target)
{
    if (!isComponentComplete())
        return; // componentComplete() places it, with all its properties set
    // The first coordinate of a new annotation, or any while gliding is off, is taken at once. Both
    // halves of a coordinate usually change in one refresh: the second continues the glide the first
    // started, from where the annotation is now.
    if (!m_glide || !m_placed) {
        m_shown = target;
        m_placed = true;
        stopGliding();
        place();
        return;
    }
    m_from = m_shown;
    m_to = target;
    // Across the antimeridian the short way round.
    m_to.rx() = m_from.x() + std::remainder(m_to.x() - m_from.x(), 1.0);
    m_glideElapsed = 0;
    m_glideDuration = glideMs;
    GlideDriver::shared()->add(this);
}

void MapAnnotation::advanceGlide(int elapsedMs)
{
    if (!isGliding())
        return;
    m_glideElapsed = std::min(m_glideDuration, m_glideElapsed + std::max(0, elapsedMs));
    const double progress = double(m_glideElapsed) / m_glideDuration; // linear, as the feed's motion is
    m_shown = m_from + (m_to - m_from) * progress;
    if (!isGliding())
        stopGliding();
    place();
}

void MapAnnotation::stopGliding()
{
    m_glideElapsed = m_glideDuration = 0;
    GlideDriver::shared()->remove(this);
}

void MapAnnotation::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        place();
}

void MapAnnotation::place()
{
    if (!m_viewport || !m_placed)
        return;
    const QPointF point = m_viewport->worldToView(m_shown);
    setPosition(QPointF(point.x() - width() / 2.0, point.y() - height() / 2.0));
}
