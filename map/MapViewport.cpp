#include "MapViewport.h"

#include "TileMath.h"

#include <cmath>

namespace {

// Turns 359° into -1°: the shorter way round.
double shortestTurn(double degrees)
{
    return std::remainder(degrees, 360.0);
}

double normalisedHeading(double degrees)
{
    const double heading = std::fmod(degrees, 360.0);
    return heading < 0 ? heading + 360.0 : heading;
}

double clampedY(double y)
{
    return std::clamp(y, 0.0, 1.0);
}

// A fling travels its release speed times this many seconds, in three times as long.
constexpr double flingReach = 0.3;
constexpr double fastestFling = 5000.0;

} // namespace

MapViewport::MapViewport(QObject *parent) : QObject(parent)
{
    m_animation.setStartValue(0.0);
    m_animation.setEndValue(1.0);
    connect(&m_animation, &QVariantAnimation::valueChanged, this, &MapViewport::onAnimationStep);
    connect(&m_animation, &QAbstractAnimation::stateChanged, this, [this] { emit animatingChanged(); });
    connect(&m_animation, &QAbstractAnimation::finished, this, [this] { m_motion = Motion::None; });
}

double MapViewport::latitude() const
{
    return TileMath::coordinate(m_centre).latitude;
}

double MapViewport::longitude() const
{
    return TileMath::coordinate(m_centre).longitude;
}

double MapViewport::shorterSide() const
{
    return std::min(m_width, m_height);
}

double MapViewport::distance() const
{
    if (!hasSize())
        return m_pendingDistance.value_or(TileMath::distanceForZoom(m_zoom, latitude(), 1024));
    return TileMath::distanceForZoom(m_zoom, latitude(), shorterSide());
}

double MapViewport::worldPixels() const
{
    return TileMath::tileSize * std::exp2(m_zoom);
}

bool MapViewport::isAnimating() const
{
    return m_animation.state() == QAbstractAnimation::Running;
}

void MapViewport::setWidth(double width)
{
    if (width == m_width)
        return;
    m_width = width;
    emit sizeChanged();
    if (hasSize() && m_pendingDistance) {
        m_zoom = std::clamp(TileMath::zoomForDistance(*std::exchange(m_pendingDistance, std::nullopt),
                                                      latitude(), shorterSide()),
                            minimumZoomLevel(), maximumZoomLevel());
    }
    emit cameraChanged();
}

void MapViewport::setHeight(double height)
{
    if (height == m_height)
        return;
    m_height = height;
    emit sizeChanged();
    if (hasSize() && m_pendingDistance) {
        m_zoom = std::clamp(TileMath::zoomForDistance(*std::exchange(m_pendingDistance, std::nullopt),
                                                      latitude(), shorterSide()),
                            minimumZoomLevel(), maximumZoomLevel());
    }
    emit cameraChanged();
}

QPointF MapViewport::worldToView(const QPointF &world) const
{
    QPointF offset = world - m_centre;
    offset.rx() = std::remainder(offset.x(), 1.0); // the copy of the world nearest the centre
    const QPointF turned = TileMath::rotated(offset * worldPixels(), -m_heading);
    return {m_width / 2.0 + turned.x(), m_height / 2.0 + turned.y()};
}

QPointF MapViewport::viewToWorld(const QPointF &point) const
{
    const QPointF offset(point.x() - m_width / 2.0, point.y() - m_height / 2.0);
    return m_centre + TileMath::rotated(offset, m_heading) / worldPixels();
}

QPointF MapViewport::coordinateToPoint(double latitude, double longitude) const
{
    return worldToView(TileMath::worldPoint(latitude, longitude));
}

QVariantMap MapViewport::pointToCoordinate(double x, double y) const
{
    const TileMath::Coordinate coordinate = TileMath::coordinate(viewToWorld({x, y}));
    return {{u"latitude"_qs, coordinate.latitude}, {u"longitude"_qs, coordinate.longitude}};
}

void MapViewport::apply(const Camera &camera)
{
    m_centre = QPointF(camera.centre.x() - std::floor(camera.centre.x()), clampedY(camera.centre.y()));
    m_zoom = std::clamp(camera.zoom, minimumZoomLevel(), maximumZoomLevel());
    m_heading = normalisedHeading(camera.heading);
    m_pitch = std::clamp(camera.pitch, 0.0, 90.0);
    emit cameraChanged();
}

void MapViewport::pan(double dx, double dy)
{
    const QPointF moved = TileMath::rotated(QPointF(dx, dy), m_heading) / worldPixels();
    apply({m_centre - moved, m_zoom, m_heading, m_pitch});
}

void MapViewport::zoomAbout(double factor, double x, double y)
{
    if (!(factor > 0) || !std::isfinite(factor))
        return;
    const QPointF anchor = viewToWorld({x, y});
    const double zoom = std::clamp(m_zoom + std::log2(factor), minimumZoomLevel(), maximumZoomLevel());
    // The anchor keeps its view point: the centre moves towards it by the change of scale.
    const double ratio = std::exp2(m_zoom - zoom);
    apply({anchor + (m_centre - anchor) * ratio, zoom, m_heading, m_pitch});
}

void MapViewport::rotateAbout(double degrees, double x, double y)
{
    if (!std::isfinite(degrees))
        return;
    const QPointF anchor = viewToWorld({x, y});
    const double heading = m_heading - degrees; // turning the map clockwise turns the camera anticlockwise
    const QPointF offset(x - m_width / 2.0, y - m_height / 2.0);
    apply({anchor - TileMath::rotated(offset, heading) / worldPixels(), m_zoom, heading, m_pitch});
}

void MapViewport::setCamera(double latitude, double longitude, double distance, double heading, double pitch,
                            int durationMs, int easing)
{
    if (!std::isfinite(latitude) || !std::isfinite(longitude) || !(distance > 0))
        return;
    stop();
    const QPointF centre = TileMath::worldPoint(latitude, longitude);
    if (!hasSize()) {
        // Without a size there is no zoom yet: the distance waits for one.
        m_pendingDistance = distance;
        apply({centre, m_zoom, heading, pitch});
        return;
    }
    const Camera target{centre, TileMath::zoomForDistance(distance, latitude, shorterSide()), heading, pitch};
    if (durationMs <= 0) {
        apply(target);
        return;
    }
    m_from = {m_centre, m_zoom, m_heading, m_pitch};
    m_to = target;
    m_to.centre.rx() = m_from.centre.x() + std::remainder(target.centre.x() - m_from.centre.x(), 1.0);
    m_to.heading = m_from.heading + shortestTurn(target.heading - m_from.heading);
    m_motion = Motion::Camera;
    m_animation.setDuration(durationMs);
    m_animation.setEasingCurve(QEasingCurve::Type(std::clamp(easing, 0, int(QEasingCurve::OutInBounce))));
    m_animation.start();
}

void MapViewport::fling(double velocityX, double velocityY)
{
    stop();
    QPointF velocity(velocityX, velocityY);
    const double speed = std::hypot(velocityX, velocityY);
    if (!std::isfinite(speed) || speed < 50)
        return;
    if (speed > fastestFling)
        velocity *= fastestFling / speed;
    // OutCubic starts at three times its average speed, so it leaves at the speed of the release.
    m_flingDistance = velocity * flingReach;
    m_flingDone = {};
    m_motion = Motion::Fling;
    m_animation.setDuration(int(3.0 * flingReach * 1000.0));
    m_animation.setEasingCurve(QEasingCurve::OutCubic);
    m_animation.start();
}

void MapViewport::stop()
{
    if (m_animation.state() != QAbstractAnimation::Stopped)
        m_animation.stop();
    m_motion = Motion::None;
}

void MapViewport::onAnimationStep(const QVariant &value)
{
    const double progress = value.toDouble();
    switch (m_motion) {
    case Motion::None:
        return;
    case Motion::Camera:
        apply({m_from.centre + (m_to.centre - m_from.centre) * progress,
               m_from.zoom + (m_to.zoom - m_from.zoom) * progress,
               m_from.heading + (m_to.heading - m_from.heading) * progress,
               m_from.pitch + (m_to.pitch - m_from.pitch) * progress});
        return;
    case Motion::Fling: {
        const QPointF reached = m_flingDistance * progress;
        const QPointF step = reached - m_flingDone;
        m_flingDone = reached;
        pan(step.x(), step.y());
        return;
    }
    }
}
