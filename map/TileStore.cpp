#include "TileStore.h"

#include "TileFetcher.h"
#include "TileMath.h"

#include <QElapsedTimer>

namespace {

// Decoded tiles kept in memory: some 380 tiles of 256 × 256.
constexpr int memoryBudgetKiB = 96 * 1024;
// A frame's worth of disk reading and decoding per turn of the event loop.
constexpr qint64 workBudgetMs = 6;
// A tile that failed for good is tried again after this long.
constexpr qint64 failureHoldSeconds = 300;

int costKiB(const QImage &image)
{
    return std::max<int>(1, int(image.sizeInBytes() / 1024));
}

} // namespace

TileStore::TileStore(std::unique_ptr<TileDiskCache> disk, TileFetcher *fetcher, QObject *parent)
    : QObject(parent), m_disk(std::move(disk)), m_fetcher(fetcher), m_memory(memoryBudgetKiB)
{
    m_workTimer.setSingleShot(true);
    m_workTimer.setInterval(0);
    connect(&m_workTimer, &QTimer::timeout, this, &TileStore::work);
    if (m_fetcher) {
        connect(m_fetcher, &TileFetcher::fetched, this, &TileStore::onFetched);
        connect(m_fetcher, &TileFetcher::failed, this, &TileStore::onFailed);
    }
}

TileStore::~TileStore() = default;

TileStore *TileStore::shared()
{
    static TileStore *store = [] {
        auto *fetcher = new TileFetcher();
        auto *made = new TileStore(std::make_unique<TileDiskCache>(TileDiskCache::defaultRoot()), fetcher);
        fetcher->setParent(made);
        return made;
    }();
    return store;
}

QString TileStore::url(const Request &request)
{
    return TileMath::tileUrl(request.source.urlTemplate, request.tile, request.highDensity);
}

QString TileStore::key(const Request &request)
{
    return url(request) + (request.source.muted ? u"#muted"_qs : QString());
}

QImage TileStore::image(const Request &request) const
{
    if (const QImage *found = m_memory.object(key(request)))
        return *found;
    return {};
}

void TileStore::want(const QObject *map, const QList<Request> &requests)
{
    m_wanted.insert(map, requests);
    QSet<QString> urls;
    for (const auto &list : std::as_const(m_wanted)) {
        for (const Request &request : list)
            urls.insert(url(request));
    }
    if (m_fetcher)
        m_fetcher->retainOnly(urls);
    scheduleWork();
}

void TileStore::forget(const QObject *map)
{
    want(map, {});
    m_wanted.remove(map);
}

void TileStore::scheduleWork()
{
    if (!m_workTimer.isActive())
        m_workTimer.start();
}

void TileStore::work()
{
    QElapsedTimer clock;
    clock.start();
    // Round robin over the maps would be fairer; one map is the rule.
    for (auto it = m_wanted.cbegin(); it != m_wanted.cend(); ++it) {
        for (const Request &request : it.value()) {
            if (m_memory.contains(key(request)))
                continue;
            const QString address = url(request);
            if (m_downloading.contains(address) && m_downloading[address].contains(request))
                continue;
            load(request);
            if (clock.elapsed() >= workBudgetMs) {
                scheduleWork();
                return;
            }
        }
    }
}

void TileStore::load(const Request &request)
{
    const QString address = url(request);
    if (const auto failedAt = m_failed.constFind(address); failedAt != m_failed.constEnd()) {
        if (failedAt->secsTo(QDateTime::currentDateTimeUtc()) < failureHoldSeconds)
            return;
        m_failed.erase(failedAt);
    }
    const QString cacheKey = request.source.cacheKey() + (request.highDensity ? u"@2x"_qs : QString());
    const auto cached = m_disk->read(
        cacheKey, TileId{request.tile.z, TileMath::wrapX(request.tile.x, request.tile.z), request.tile.y});
    if (cached)
        insertDecoded(request, cached->bytes);
    if (cached && !cached->expired)
        return;
    // Missing or expired: the expired tile is shown meanwhile, the fresh one replaces it when it comes.
    QList<Request> &waiting = m_downloading[address];
    if (!waiting.contains(request))
        waiting.append(request);
    if (m_fetcher)
        m_fetcher->fetch(address);
}

void TileStore::insertDecoded(const Request &request, const QByteArray &bytes)
{
    QImage image = QImage::fromData(bytes);
    if (image.isNull())
        return;
    image = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (request.source.muted)
        image = muted(image);
    const QString tileKey = key(request);
    m_memory.insert(tileKey, new QImage(image), costKiB(image));
    emit tileReady(tileKey);
}

void TileStore::onFetched(const QString &url, const QByteArray &bytes, const QDateTime &expires)
{
    const QList<Request> waiting = m_downloading.take(url);
    if (waiting.isEmpty())
        return;
    const Request &first = waiting.constFirst();
    const QString cacheKey = first.source.cacheKey() + (first.highDensity ? u"@2x"_qs : QString());
    if (QImage::fromData(bytes).isNull()) {
        m_failed.insert(url, QDateTime::currentDateTimeUtc());
        return;
    }
    m_disk->write(cacheKey, TileId{first.tile.z, TileMath::wrapX(first.tile.x, first.tile.z), first.tile.y},
                  bytes, expires);
    for (const Request &request : waiting)
        insertDecoded(request, bytes);
}

void TileStore::onFailed(const QString &url)
{
    m_downloading.remove(url);
    m_failed.insert(url, QDateTime::currentDateTimeUtc());
}

QImage TileStore::muted(const QImage &image)
{
    QImage result = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < result.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(result.scanLine(y));
        for (int x = 0; x < result.width(); ++x) {
            const QRgb pixel = line[x];
            const int alpha = qAlpha(pixel);
            const int grey = (qRed(pixel) * 77 + qGreen(pixel) * 150 + qBlue(pixel) * 29) >> 8;
            // A quarter of the colour stays; then a third of the way to a light paper grey.
            const auto tone = [&](int channel) {
                const int drained = (channel + 3 * grey) / 4;
                return (drained * 2 + 236 * alpha / 255) / 3;
            };
            line[x] = qRgba(tone(qRed(pixel)), tone(qGreen(pixel)), tone(qBlue(pixel)), alpha);
        }
    }
    return result;
}
