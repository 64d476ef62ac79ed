#pragma once

#include "TileDiskCache.h"
#include "TileFetcher.h"
#include "TileId.h"
#include "TileSource.h"

#include <QCache>
#include <QDateTime>
#include <QHash>
#include <QImage>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QTimer>
#include <memory>

// Where the map gets its tiles: decoded images in memory (weighted by their bytes), then the disk cache,
// then the network. Disk reads and decoding happen on the event loop in small batches, never while a
// frame is drawn; the map only ever draws images that are already decoded.
class TileStore : public QObject
{
    Q_OBJECT

public:
    // One tile of one layer at one density: what the map asks for.
    struct Request
    {
        TileSource source;
        TileId tile;
        bool highDensity = false;

        bool operator==(const Request &) const = default;
    };

    TileStore(std::unique_ptr<TileDiskCache> disk, TileFetcher *fetcher, QObject *parent = nullptr);
    ~TileStore() override;

    // Made on first use with the user's cache folder and the shared HTTP client.
    [[nodiscard]] static TileStore *shared();

    // The decoded tile if it is in memory; never starts any work.
    [[nodiscard]] QImage image(const Request &request) const;
    // Makes `requests` (for one map, replacing what it wanted before) the tiles to load, nearest first.
    // Tiles no map wants any more are dropped from the network queue.
    void want(const QObject *map, const QList<Request> &requests);
    void forget(const QObject *map);

    [[nodiscard]] static QString url(const Request &request);
    [[nodiscard]] static QString key(const Request &request);
    // The muted style's treatment: colours drained towards grey and lightened.
    [[nodiscard]] static QImage muted(const QImage &image);

    [[nodiscard]] TileDiskCache &disk() { return *m_disk; }
    [[nodiscard]] TileFetcher *fetcher() const { return m_fetcher; }
    [[nodiscard]] int memoryCostKiB() const { return int(m_memory.totalCost()); }

signals:
    // A tile is in memory now: maps that show it redraw.
    void tileReady(const QString &key);

private:
    void scheduleWork();
    void work();
    void load(const Request &request);
    void onFetched(const QString &url, const QByteArray &bytes, const QDateTime &expires);
    void onFailed(const QString &url);
    void insertDecoded(const Request &request, const QByteArray &bytes);

    std::unique_ptr<TileDiskCache> m_disk;
    QPointer<TileFetcher> m_fetcher;
    QCache<QString, QImage> m_memory;
    QHash<const QObject *, QList<Request>> m_wanted;
    // Tiles being downloaded, by address: every layer request waiting for those bytes.
    QHash<QString, QList<Request>> m_downloading;
    // Tiles whose download failed for good, and when: not asked for again for a while.
    QHash<QString, QDateTime> m_failed;
    QTimer m_workTimer;
};
