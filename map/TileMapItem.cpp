#include "TileMapItem.h"

#include "MapViewport.h"
#include "TileMath.h"
#include "TileSources.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGRectangleNode>
#include <QSGTexture>
#include <QSGTransformNode>
#include <cmath>

namespace {

// How far up the pyramid a missing tile looks for a stand-in.
constexpr int standInLevels = 6;
// Textures of tiles that left the view are kept this many frames, in case they come straight back.
constexpr int textureKeepFrames = 120;

// The scene graph side: a background, then the tiles under one transform that turns them about the
// centre. It owns the textures, so they go with it on the render thread.
class TileRootNode : public QSGNode
{
public:
    struct Held
    {
        QSGTexture *texture = nullptr;
        int lastUsed = 0;
    };

    ~TileRootNode() override
    {
        for (const Held &held : std::as_const(textures))
            delete held.texture;
    }

    QSGRectangleNode *background = nullptr;
    QSGTransformNode *turn = nullptr;
    // Stand-ins under the tiles proper; within each, tiles don't overlap, so their order is free and a
    // tile entering or leaving the view is one node added or removed.
    QSGNode *standIns = nullptr;
    QSGNode *exact = nullptr;
    QHash<QString, QSGImageNode *> images;
    QHash<qint64, Held> textures;
    int frame = 0;
};

} // namespace

TileMapItem::TileMapItem(QQuickItem *parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    setClip(true);
    m_layers = TileSources::layers(m_styleChoice);
}

TileMapItem::~TileMapItem()
{
    if (m_store)
        m_store->forget(this);
}

TileStore *TileMapItem::store() const
{
    return m_store ? m_store.data() : TileStore::shared();
}

void TileMapItem::setTileStore(TileStore *tileStore)
{
    if (m_store)
        m_store->forget(this);
    disconnect(m_readyConnection);
    m_store = tileStore;
    m_readyConnection = {};
    refresh();
}

void TileMapItem::setViewport(MapViewport *viewport)
{
    if (!MapViewport::follow(m_viewport, viewport, this, &TileMapItem::refresh))
        return;
    emit viewportChanged();
    refresh();
}

void TileMapItem::setStyleChoice(const QString &choice)
{
    if (choice == m_styleChoice)
        return;
    m_styleChoice = choice;
    m_layers = TileSources::layers(m_styleChoice);
    emit styleChoiceChanged();
    // Nothing of the new style is drawn yet: complete again once the next polish finds all its tiles.
    if (m_complete) {
        m_complete = false;
        emit completeChanged();
    }
    refresh();
}

QString TileMapItem::attribution() const
{
    return TileSources::attribution(m_styleChoice);
}

QColor TileMapItem::backgroundColor() const
{
    // The colour of land before its tile comes: paper for drawn maps, a dark ground under imagery.
    if (m_styleChoice == u"imagery" || m_styleChoice == u"hybrid")
        return QColor(0x1d, 0x23, 0x26);
    if (m_styleChoice == u"muted")
        return QColor(0xe4, 0xe4, 0xe2);
    return QColor(0xf2, 0xef, 0xe9);
}

QString TileMapItem::drawnTileKeys() const
{
    QStringList keys;
    keys.reserve(m_draws.size());
    for (const Draw &draw : m_draws)
        keys.append(draw.key);
    keys.sort();
    return keys.join(u' ');
}

void TileMapItem::refresh()
{
    if (!m_readyConnection) {
        m_readyConnection = connect(store(), &TileStore::tileReady, this, [this] { polish(); });
    }
    polish();
}

void TileMapItem::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        refresh();
}

void TileMapItem::itemChange(ItemChange change, const ItemChangeData &value)
{
    QQuickItem::itemChange(change, value);
    if (change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged)
        refresh();
}

void TileMapItem::updatePolish()
{
    QList<Draw> standIns;
    QList<Draw> exact;
    QList<TileStore::Request> wanted;
    bool complete = true;
    TileStore *tiles = store();

    if (m_viewport && width() > 0 && height() > 0) {
        const double dpr = window() ? window()->effectiveDevicePixelRatio() : 1.0;
        const double zoom = m_viewport->zoomLevel();
        const QPointF centre = m_viewport->centreWorld();
        const QSizeF size(width(), height());
        const auto snap = [dpr](double value) { return std::round(value * dpr) / dpr; };

        for (qsizetype layer = 0; layer < m_layers.size(); ++layer) {
            const TileSource &source = m_layers[layer];
            const bool highDensity = dpr > 1.0 && source.hasHighDensity();
            const int z = TileMath::tileZoom(zoom, source.minZoom, source.maxZoom);
            // Where tile (z, x, y) lands in the unturned view, its edges on device pixels.
            const auto placed = [&](int level, int x, int y) {
                const double factor = std::exp2(zoom - level);
                const double levelPixels = TileMath::tileSize * std::exp2(level);
                const double left =
                    size.width() / 2.0 + (x * TileMath::tileSize - centre.x() * levelPixels) * factor;
                const double top =
                    size.height() / 2.0 + (y * TileMath::tileSize - centre.y() * levelPixels) * factor;
                const double side = TileMath::tileSize * factor;
                return QRectF(QPointF(snap(left), snap(top)), QPointF(snap(left + side), snap(top + side)));
            };
            const QString prefix = QString::number(layer) + u'/';
            const QList<TileId> visible =
                TileMath::visibleTiles(centre, zoom, m_viewport->heading(), size, z);
            for (const TileId &tile : visible) {
                const TileStore::Request request{source, tile, highDensity};
                wanted.append(request);
                const QRectF target = placed(tile.z, tile.x, tile.y);
                const QString tileName = prefix + u"%1/%2/%3"_qs.arg(tile.z).arg(tile.x).arg(tile.y);
                if (const QImage image = tiles->image(request); !image.isNull()) {
                    exact.append({tileName, image, target, QRectF(QPointF(), image.size())});
                    continue;
                }
                complete = false;
                bool covered = false;
                // First the nearest lower level, a part of one tile scaled up...
                for (int up = 1; up <= standInLevels && up <= tile.z && !covered; ++up) {
                    const TileId above = TileMath::ancestor(tile, up);
                    if (above.z < source.minZoom)
                        break;
                    const QImage image = tiles->image({source, above, highDensity});
                    if (image.isNull())
                        continue;
                    QRectF part = TileMath::ancestorSourceRect(tile, up);
                    const double pixels = image.width() / TileMath::tileSize;
                    part = QRectF(part.topLeft() * pixels, part.size() * pixels);
                    standIns.append({tileName + u"^"_qs + QString::number(up), image, target, part, true});
                    covered = true;
                }
                // ...else the four tiles of the next level, after zooming out.
                if (!covered && tile.z < source.maxZoom) {
                    for (int i = 0; i < 4; ++i) {
                        const TileId below{tile.z + 1, tile.x * 2 + (i & 1), tile.y * 2 + (i >> 1)};
                        const QImage image = tiles->image({source, below, highDensity});
                        if (image.isNull())
                            continue;
                        standIns.append({tileName + u"v"_qs + QString::number(i), image,
                                         placed(below.z, below.x, below.y), QRectF(QPointF(), image.size()),
                                         true});
                    }
                }
            }
        }
        m_heading = m_viewport->heading();
    } else {
        complete = false;
    }

    tiles->want(this, wanted);
    m_draws = standIns + exact;
    update();
    if (complete != m_complete) {
        m_complete = complete;
        emit completeChanged();
    }
}

QSGNode *TileMapItem::updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *)
{
    auto *root = static_cast<TileRootNode *>(oldNode);
    if (!root) {
        root = new TileRootNode;
        root->background = window()->createRectangleNode();
        root->appendChildNode(root->background);
        root->turn = new QSGTransformNode;
        root->appendChildNode(root->turn);
        root->standIns = new QSGNode;
        root->exact = new QSGNode;
        root->turn->appendChildNode(root->standIns);
        root->turn->appendChildNode(root->exact);
    }
    ++root->frame;
    root->background->setRect(boundingRect());
    root->background->setColor(backgroundColor());

    QMatrix4x4 turn;
    turn.translate(float(width() / 2.0), float(height() / 2.0));
    turn.rotate(float(-m_heading), 0, 0, 1);
    turn.translate(float(-width() / 2.0), float(-height() / 2.0));
    root->turn->setMatrix(turn);

    QHash<QString, QSGImageNode *> kept;
    kept.reserve(m_draws.size());
    for (const Draw &draw : std::as_const(m_draws)) {
        if (kept.contains(draw.key))
            continue;
        TileRootNode::Held &held = root->textures[draw.image.cacheKey()];
        if (!held.texture) {
            held.texture = window()->createTextureFromImage(draw.image);
            held.texture->setFiltering(QSGTexture::Linear);
        }
        held.lastUsed = root->frame;
        QSGImageNode *node = root->images.take(draw.key);
        const bool added = !node;
        if (added) {
            node = window()->createImageNode();
            node->setOwnsTexture(false);
            node->setFiltering(QSGTexture::Linear);
        }
        if (node->texture() != held.texture)
            node->setTexture(held.texture);
        if (node->rect() != draw.target)
            node->setRect(draw.target);
        if (node->sourceRect() != draw.source)
            node->setSourceRect(draw.source);
        // Into the tree only once it is complete: the software renderer looks at a node as it arrives.
        if (added)
            (draw.standIn ? root->standIns : root->exact)->appendChildNode(node);
        kept.insert(draw.key, node);
    }
    // What left the view goes.
    for (QSGImageNode *gone : std::as_const(root->images)) {
        gone->parent()->removeChildNode(gone);
        delete gone;
    }
    root->images = std::move(kept);
    for (auto it = root->textures.begin(); it != root->textures.end();) {
        if (root->frame - it->lastUsed > textureKeepFrames) {
            delete it->texture;
            it = root->textures.erase(it);
        } else {
            ++it;
        }
    }
    return root;
}
