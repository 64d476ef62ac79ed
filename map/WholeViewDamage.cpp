#include "WholeViewDamage.h"

#include <QQuickWindow>
#include <QSGRectangleNode>
#include <QSGRendererInterface>

WholeViewDamage::WholeViewDamage(QQuickItem *parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents);
}

void WholeViewDamage::setViewport(MapViewport *viewport)
{
    if (!MapViewport::follow(m_viewport, viewport, this, &QQuickItem::update))
        return;
    emit viewportChanged();
}

QSGNode *WholeViewDamage::updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *)
{
    if (window()->rendererInterface()->graphicsApi() != QSGRendererInterface::Software) {
        delete oldNode;
        return nullptr;
    }
    auto *node = static_cast<QSGRectangleNode *>(oldNode);
    if (!node) {
        node = window()->createRectangleNode();
        node->setColor(Qt::transparent);
    }
    node->setRect(boundingRect());
    node->markDirty(QSGNode::DirtyGeometry);
    return node;
}
