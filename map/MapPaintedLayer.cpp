#include "MapPaintedLayer.h"

#include "MapViewport.h"
#include "TileMath.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGTransformNode>
#include <cmath>

namespace {

// The image reaches this share of the view's size beyond each edge.
constexpr double margin = 0.35;
// Zooming further than this from the painted scale paints again.
constexpr double scaleDrift = 0.6;
// Once the camera has been still this long, a scaled or turned image is painted sharp.
constexpr int settleMs = 180;

class PaintedNode : public QSGTransformNode
{
public:
    ~PaintedNode() override { delete texture; }
    QSGImageNode *image = nullptr;
    QSGTexture *texture = nullptr;
};

} // namespace

MapPaintedLayer::MapPaintedLayer(QQuickItem *parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    m_settle.setSingleShot(true);
    m_settle.setInterval(settleMs);
    connect(&m_settle, &QTimer::timeout, this, [this] {
        const Camera now = currentCamera();
        if (now.worldPixels != m_painted.worldPixels || now.heading != m_painted.heading) {
            m_dirty = true;
            polish();
        }
    });
}

void MapPaintedLayer::setViewport(MapViewport *viewport)
{
    if (!MapViewport::follow(m_viewport, viewport, this, &MapPaintedLayer::onCameraChanged))
        return;
    emit viewportChanged();
    contentChanged();
}

void MapPaintedLayer::contentChanged()
{
    m_dirty = true;
    polish();
}

void MapPaintedLayer::onCameraChanged()
{
    m_settle.start();
    polish();
}

void MapPaintedLayer::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        contentChanged();
}

void MapPaintedLayer::itemChange(ItemChange change, const ItemChangeData &value)
{
    QQuickItem::itemChange(change, value);
    if (change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged)
        contentChanged();
}

MapPaintedLayer::Camera MapPaintedLayer::currentCamera() const
{
    if (!m_viewport)
        return {};
    return {m_viewport->centreWorld(), m_viewport->worldPixels(), m_viewport->heading(), size()};
}

QTransform MapPaintedLayer::paintedToView() const
{
    // A point of the painted view goes back to the world and forward into the current view: both are
    // a turn and a scale about the centre, so the whole is one similarity transform.
    const Camera now = currentCamera();
    if (m_painted.worldPixels <= 0 || now.worldPixels <= 0)
        return {};
    QPointF shift = m_painted.centre - now.centre;
    shift.rx() = std::remainder(shift.x(), 1.0);
    const QPointF centreNow(now.size.width() / 2.0, now.size.height() / 2.0);
    const QPointF centrePainted(m_painted.size.width() / 2.0, m_painted.size.height() / 2.0);
    const QPointF offset = centreNow + TileMath::rotated(shift * now.worldPixels, -now.heading);
    QTransform transform;
    transform.translate(offset.x(), offset.y());
    transform.rotate(m_painted.heading - now.heading);
    transform.scale(now.worldPixels / m_painted.worldPixels, now.worldPixels / m_painted.worldPixels);
    transform.translate(-centrePainted.x(), -centrePainted.y());
    return transform;
}

bool MapPaintedLayer::paintedCoversView() const
{
    if (m_image.isNull())
        return false;
    bool invertible = false;
    const QTransform back = paintedToView().inverted(&invertible);
    if (!invertible)
        return false;
    const QRectF painted(m_paintedOrigin, QSizeF(m_image.size()) / m_image.devicePixelRatio());
    const QRectF view = boundingRect();
    for (const QPointF corner : {view.topLeft(), view.topRight(), view.bottomLeft(), view.bottomRight()}) {
        if (!painted.contains(back.map(corner)))
            return false;
    }
    return true;
}

void MapPaintedLayer::updatePolish()
{
    if (!m_viewport || width() <= 0 || height() <= 0)
        return;
    const Camera now = currentCamera();
    const double scale = m_painted.worldPixels > 0 ? now.worldPixels / m_painted.worldPixels : 0;
    const bool drifted = scale <= 0 || std::abs(std::log2(scale)) > scaleDrift;
    if (m_dirty || drifted || now.size != m_painted.size || !paintedCoversView())
        repaint(now);
    update();
}

void MapPaintedLayer::repaint(const Camera &camera)
{
    const double dpr = window() ? window()->effectiveDevicePixelRatio() : 1.0;
    const QSizeF logical(camera.size.width() * (1 + 2 * margin), camera.size.height() * (1 + 2 * margin));
    const QSize pixels(int(std::ceil(logical.width() * dpr)), int(std::ceil(logical.height() * dpr)));
    if (m_image.size() != pixels)
        m_image = QImage(pixels, QImage::Format_ARGB32_Premultiplied);
    m_image.setDevicePixelRatio(dpr);
    m_image.fill(Qt::transparent);
    m_paintedOrigin = QPointF(-camera.size.width() * margin, -camera.size.height() * margin);
    m_painted = camera;

    const QPointF centre(camera.size.width() / 2.0, camera.size.height() / 2.0);
    const QPointF origin = m_paintedOrigin;
    const Projection project = [camera, centre, origin](const QPointF &world) {
        QPointF offset = world - camera.centre;
        offset.rx() = std::remainder(offset.x(), 1.0);
        return centre + TileMath::rotated(offset * camera.worldPixels, -camera.heading) - origin;
    };
    QPainter painter(&m_image);
    painter.setRenderHint(QPainter::Antialiasing);
    paintContent(painter, project, QRectF(QPointF(), logical));
    painter.end();
    m_dirty = false;
    m_imageChanged = true;
    ++m_paintCount;
}

QSGNode *MapPaintedLayer::updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *)
{
    auto *node = static_cast<PaintedNode *>(oldNode);
    if (m_image.isNull()) {
        delete node;
        return nullptr;
    }
    if (!node) {
        node = new PaintedNode;
        node->image = window()->createImageNode();
        node->image->setOwnsTexture(false);
        node->image->setFiltering(QSGTexture::Linear);
        node->appendChildNode(node->image);
        m_imageChanged = true;
    }
    if (m_imageChanged) {
        delete node->texture;
        node->texture = window()->createTextureFromImage(m_image);
        node->image->setTexture(node->texture);
        node->image->setRect(QRectF(m_paintedOrigin, QSizeF(m_image.size()) / m_image.devicePixelRatio()));
        node->image->setSourceRect(QRectF(QPointF(), m_image.size()));
        m_imageChanged = false;
    }
    node->setMatrix(QMatrix4x4(paintedToView()));
    return node;
}
