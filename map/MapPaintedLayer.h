#pragma once

#include "MapViewport.h"
#include <QImage>
#include <QPointF>
#include <QPointer>
#include <QQuickItem>
#include <QTimer>
#include <QtQml/qqmlregistration.h>
#include <functional>

class QPainter;

// Base of the vector overlays (circles, polylines): they paint with QPainter into an image a good deal
// larger than the view, on the event loop. While the camera pans, zooms or turns, the image is only moved,
// scaled and turned by the scene graph; it is painted anew when the content changes, when the view leaves
// it, when the scale has drifted too far, or once the camera has come to rest.
class MapPaintedLayer : public QQuickItem
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(MapViewport *viewport READ viewport WRITE setViewport NOTIFY viewportChanged)

public:
    explicit MapPaintedLayer(QQuickItem *parent = nullptr);

    [[nodiscard]] MapViewport *viewport() const { return m_viewport; }
    void setViewport(MapViewport *viewport);
    // Times the content was painted: for tests and benchmarks.
    [[nodiscard]] int paintCount() const { return m_paintCount; }

    // World coordinates to pixels of the image being painted (logical pixels).
    using Projection = std::function<QPointF(const QPointF &world)>;

signals:
    void viewportChanged();

protected:
    // Draws the content; the painter is set up for antialiasing and logical pixels.
    virtual void paintContent(QPainter &painter, const Projection &project, const QRectF &bounds) = 0;
    // The content changed: paint again before the next frame.
    void contentChanged();

    void updatePolish() override;
    QSGNode *updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *data) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &value) override;

private:
    struct Camera
    {
        QPointF centre;
        double worldPixels = 0;
        double heading = 0;
        QSizeF size;
    };

    void onCameraChanged();
    [[nodiscard]] Camera currentCamera() const;
    [[nodiscard]] QTransform paintedToView() const;
    [[nodiscard]] bool paintedCoversView() const;
    void repaint(const Camera &camera);

    QPointer<MapViewport> m_viewport;
    QImage m_image;
    Camera m_painted;
    QPointF m_paintedOrigin; // the image's top left in the view as it was painted
    bool m_dirty = true;
    bool m_imageChanged = false;
    int m_paintCount = 0;
    QTimer m_settle;
};
