#pragma once

#include "MapViewport.h"
#include "TileSource.h"
#include "TileStore.h"

#include <QColor>
#include <QImage>
#include <QList>
#include <QPointer>
#include <QQuickItem>
#include <QRectF>
#include <QtQml/qqmlregistration.h>

// The raster map: the tiles of the current style under the viewport's camera. Each visible tile is one
// image node of the scene graph, added or removed only as tiles come into view or leave it; a tile not yet
// loaded is covered by a lower-zoom tile (or the four higher-zoom ones) already in memory, so the map
// never flashes blank while it loads.
class TileMapItem : public QQuickItem
{
    Q_OBJECT
    QML_NAMED_ELEMENT(TileMap)
    Q_PROPERTY(MapViewport *viewport READ viewport WRITE setViewport NOTIFY viewportChanged)
    Q_PROPERTY(QString styleChoice READ styleChoice WRITE setStyleChoice NOTIFY styleChoiceChanged)
    Q_PROPERTY(QString attribution READ attribution NOTIFY styleChoiceChanged)
    Q_PROPERTY(QColor backgroundColor READ backgroundColor NOTIFY styleChoiceChanged)
    Q_PROPERTY(bool complete READ isComplete NOTIFY completeChanged)

public:
    explicit TileMapItem(QQuickItem *parent = nullptr);
    ~TileMapItem() override;

    [[nodiscard]] MapViewport *viewport() const { return m_viewport; }
    void setViewport(MapViewport *viewport);
    [[nodiscard]] const QString &styleChoice() const { return m_styleChoice; }
    void setStyleChoice(const QString &choice);
    [[nodiscard]] QString attribution() const;
    [[nodiscard]] QColor backgroundColor() const;
    // Every tile in view is drawn from its own image (none stands in for another).
    [[nodiscard]] bool isComplete() const { return m_complete; }
    // Tests and benchmarks give their own store; TileStore::shared() otherwise.
    void setTileStore(TileStore *store);
    // Image nodes in the last frame handed to the scene graph.
    [[nodiscard]] int drawnTiles() const { return int(m_draws.size()); }
    // The keys of those nodes, joined: changes when a tile enters or leaves the view.
    [[nodiscard]] QString drawnTileKeys() const;

    // What one image node shows, worked out in updatePolish.
    struct Draw
    {
        QString key;
        QImage image;
        QRectF target;
        QRectF source;
        bool standIn = false; // drawn under the tiles proper
    };

signals:
    void viewportChanged();
    void styleChoiceChanged();
    void completeChanged();

protected:
    void updatePolish() override;
    QSGNode *updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *data) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &value) override;

private:
    void refresh();
    [[nodiscard]] TileStore *store() const;

    QPointer<MapViewport> m_viewport;
    QPointer<TileStore> m_store;
    QMetaObject::Connection m_readyConnection;
    QString m_styleChoice = u"standard"_qs;
    QList<TileSource> m_layers;
    QList<Draw> m_draws;
    double m_heading = 0;
    bool m_complete = false;
};
