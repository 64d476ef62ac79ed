#pragma once

#include "MapViewport.h"

#include <QPointer>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

// Qt Quick's software renderer keeps the changed part of the window as a region, adding every moved
// node's old and new rectangles to it; with thousands of markers moving at once that region has thousands
// of rectangles and building it costs more than drawing the frame. When the camera moves everything moves
// anyway: this item, above the map's content, reports the whole view changed before the renderer reaches
// the markers, so the region stays a single rectangle. It draws nothing, and with the hardware renderers,
// which keep no such region, it has no node at all.
class WholeViewDamage : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(MapViewport *viewport READ viewport WRITE setViewport NOTIFY viewportChanged)

public:
    explicit WholeViewDamage(QQuickItem *parent = nullptr);

    [[nodiscard]] MapViewport *viewport() const { return m_viewport; }
    void setViewport(MapViewport *viewport);

signals:
    void viewportChanged();

protected:
    QSGNode *updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *data) override;

private:
    QPointer<MapViewport> m_viewport;
};
