#pragma once

#include <QEasingCurve>
#include <QObject>
#include <QPointer>
#include <QPointF>
#include <QVariantAnimation>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>
#include <optional>

// The camera of a map and all its arithmetic: centre, distance, heading and pitch, and the view's size.
// Gestures in QML call its invokable methods; it reports every change of the camera as it happens, also
// during animations, so that a view can follow the user's zoom continuously.
//
// Distance is in metres: the shorter side of the view spans 0.4 × distance of ground at the centre.
// Drawing is flat, so pitch is kept and reported but doesn't change the picture.
class MapViewport : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double latitude READ latitude NOTIFY cameraChanged)
    Q_PROPERTY(double longitude READ longitude NOTIFY cameraChanged)
    Q_PROPERTY(double distance READ distance NOTIFY cameraChanged)
    Q_PROPERTY(double heading READ heading NOTIFY cameraChanged)
    Q_PROPERTY(double pitch READ pitch NOTIFY cameraChanged)
    Q_PROPERTY(double zoomLevel READ zoomLevel NOTIFY cameraChanged)
    Q_PROPERTY(double width READ width WRITE setWidth NOTIFY sizeChanged)
    Q_PROPERTY(double height READ height WRITE setHeight NOTIFY sizeChanged)
    Q_PROPERTY(bool animating READ isAnimating NOTIFY animatingChanged)
    Q_PROPERTY(double minimumZoomLevel READ minimumZoomLevel CONSTANT)
    Q_PROPERTY(double maximumZoomLevel READ maximumZoomLevel CONSTANT)

public:
    // Points an item's `held` viewport at `viewport`, following its camera with `onCamera` and leaving the
    // one before; false when it was that viewport already.
    template <typename Receiver, typename Slot>
    static bool follow(QPointer<MapViewport> &held, MapViewport *viewport, Receiver *receiver, Slot onCamera)
    {
        if (viewport == held)
            return false;
        if (held)
            held->disconnect(receiver);
        held = viewport;
        if (held)
            QObject::connect(held, &MapViewport::cameraChanged, receiver, onCamera);
        return true;
    }

    explicit MapViewport(QObject *parent = nullptr);

    [[nodiscard]] double latitude() const;
    [[nodiscard]] double longitude() const;
    [[nodiscard]] double distance() const;
    [[nodiscard]] double heading() const { return m_heading; }
    [[nodiscard]] double pitch() const { return m_pitch; }
    [[nodiscard]] double zoomLevel() const { return m_zoom; }
    [[nodiscard]] double width() const { return m_width; }
    [[nodiscard]] double height() const { return m_height; }
    void setWidth(double width);
    void setHeight(double height);
    [[nodiscard]] bool isAnimating() const;
    [[nodiscard]] static double minimumZoomLevel() { return 1.0; }
    [[nodiscard]] static double maximumZoomLevel() { return 19.5; }

    // The centre in world coordinates (the map as a unit square), and logical pixels per world unit.
    [[nodiscard]] QPointF centreWorld() const { return m_centre; }
    [[nodiscard]] double worldPixels() const;
    // Where a world point is in the view; of the copies of the world east and west, the nearest.
    [[nodiscard]] QPointF worldToView(const QPointF &world) const;
    [[nodiscard]] QPointF viewToWorld(const QPointF &point) const;

    // Moves the map with the pointer: the content follows by (dx, dy) logical pixels.
    Q_INVOKABLE void pan(double dx, double dy);
    // Zooms by a factor (2 is one level in) keeping the ground under the view point (x, y) in place.
    Q_INVOKABLE void zoomAbout(double factor, double x, double y);
    // Turns the map by `degrees` clockwise about the view point (x, y), which stays in place.
    Q_INVOKABLE void rotateAbout(double degrees, double x, double y);
    // Sets the camera, with an animation of `durationMs` along `easing` (a QEasingCurve::Type), or at
    // once when the duration is 0 or less.
    Q_INVOKABLE void setCamera(double latitude, double longitude, double distance, double heading,
                               double pitch, int durationMs = 0, int easing = QEasingCurve::InOutQuad);
    // Goes on moving after a drag released at this velocity (logical pixels a second), slowing down.
    Q_INVOKABLE void fling(double velocityX, double velocityY);
    // Ends any animation where it is, as a new gesture starts.
    Q_INVOKABLE void stop();

    Q_INVOKABLE [[nodiscard]] QPointF coordinateToPoint(double latitude, double longitude) const;
    // {latitude, longitude} of a view point.
    Q_INVOKABLE [[nodiscard]] QVariantMap pointToCoordinate(double x, double y) const;

signals:
    void cameraChanged();
    void sizeChanged();
    void animatingChanged();

private:
    struct Camera
    {
        QPointF centre;
        double zoom = 0;
        double heading = 0;
        double pitch = 0;
    };

    [[nodiscard]] double shorterSide() const;
    [[nodiscard]] bool hasSize() const { return m_width > 0 && m_height > 0; }
    void apply(const Camera &camera);
    void onAnimationStep(const QVariant &value);

    QPointF m_centre{0.5, 0.5};
    double m_zoom = 2;
    double m_heading = 0;
    double m_pitch = 0;
    double m_width = 0;
    double m_height = 0;
    // A distance asked for before the view had a size; applied when it gets one.
    std::optional<double> m_pendingDistance;

    enum class Motion
    {
        None,
        Camera,
        Fling
    };
    Motion m_motion = Motion::None;
    Camera m_from;
    Camera m_to;
    QPointF m_flingDistance;
    QPointF m_flingDone;
    QVariantAnimation m_animation;
};
