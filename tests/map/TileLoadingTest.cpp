#include "TileDiskCache.h"
#include "TileFetcher.h"
#include "TileServer.h"
#include "TileSources.h"
#include "TileStore.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using Response = LoopbackHttpServer::Response;
using Headers = QList<QPair<QByteArray, QByteArray>>;
Q_DECLARE_METATYPE(Headers)

namespace {

const QDateTime noon(QDate(2024, 5, 1), QTime(12, 0), Qt::UTC);

Response status(int code)
{
    Response response;
    response.status = code;
    response.body = "no";
    response.contentType = "text/plain";
    return response;
}

Response dropped()
{
    Response response;
    response.drop = true;
    return response;
}

TileFetcher::Options quickRetries()
{
    TileFetcher::Options options;
    options.firstRetryMs = 10;
    options.maxAttempts = 3;
    options.timeoutMs = 5000;
    return options;
}

} // namespace

class TileLoadingTest : public QObject
{
    Q_OBJECT

private slots:
    void expiryHonoursTheServerButKeepsAWeek_data();
    void expiryHonoursTheServerButKeepsAWeek();
    void diskCacheStoresWithExpiryAndServesExpiredTiles();
    void diskCacheStaysUnderItsLimit();
    void diskCacheLivesUnderTheUsersCacheFolder();
    void oneRequestPerAddressAtATime();
    void concurrencyIsBounded();
    void transientFailuresAreRetried_data();
    void transientFailuresAreRetried();
    void tilesNoLongerWantedAreNotFetched();
    void secondRunIsServedFromDisk();
    void expiredTileIsShownAndFetchedAgain();
    void mutedTilesAreGreyerAndLighter();

private:
    QTemporaryDir m_dir;
};

void TileLoadingTest::expiryHonoursTheServerButKeepsAWeek_data()
{
    QTest::addColumn<Headers>("headers");
    QTest::addColumn<qint64>("seconds");

    constexpr qint64 week = TileFetcher::shortestKeepSeconds;
    QTest::newRow("no headers") << Headers{} << week;
    QTest::newRow("a day is too short") << Headers{{"Cache-Control", "public, max-age=86400"}} << week;
    QTest::newRow("a month") << Headers{{"cache-control", "max-age=2592000, stale-while-revalidate=60"}}
                             << qint64(2592000);
    QTest::newRow("Expires far ahead") << Headers{{"Expires", "Wed, 01 Jan 2025 12:00:00 GMT"}}
                                       << noon.secsTo(QDateTime(QDate(2025, 1, 1), QTime(12, 0), Qt::UTC));
    QTest::newRow("max-age wins over Expires")
        << Headers{{"Expires", "Wed, 01 Jan 2025 12:00:00 GMT"}, {"Cache-Control", "max-age=1209600"}}
        << qint64(1209600);
    QTest::newRow("nonsense") << Headers{{"Cache-Control", "max-age=soon"}, {"Expires", "tomorrow"}} << week;
}

void TileLoadingTest::expiryHonoursTheServerButKeepsAWeek()
{
    QFETCH(Headers, headers);
    QFETCH(qint64, seconds);
    QCOMPARE(noon.secsTo(TileFetcher::expiryFor(headers, noon)), seconds);
}

void TileLoadingTest::diskCacheStoresWithExpiryAndServesExpiredTiles()
{
    QDateTime now = noon;
    TileDiskCache cache(m_dir.filePath(u"expiry"_qs), 1 << 20, [&] { return now; });
    QVERIFY(!cache.read(u"standard-x"_qs, {3, 1, 2}));
    QVERIFY(cache.write(u"standard-x"_qs, {3, 1, 2}, "tile bytes", noon.addDays(7)));
    QVERIFY(QFile::exists(m_dir.filePath(u"expiry/standard-x/3/1/2"_qs)));
    // Nothing but the tile is left behind: the temporary file was renamed.
    QCOMPARE(QDir(m_dir.filePath(u"expiry/standard-x/3/1"_qs)).entryList(QDir::Files), QStringList{u"2"_qs});

    auto entry = cache.read(u"standard-x"_qs, {3, 1, 2});
    QVERIFY(entry);
    QCOMPARE(entry->bytes, QByteArray("tile bytes"));
    QCOMPARE(entry->expires, noon.addDays(7));
    QVERIFY(!entry->expired);

    now = noon.addDays(8);
    entry = cache.read(u"standard-x"_qs, {3, 1, 2});
    QVERIFY(entry);
    QVERIFY(entry->expired);
    QCOMPARE(entry->bytes, QByteArray("tile bytes"));
}

void TileLoadingTest::diskCacheStaysUnderItsLimit()
{
    const QByteArray kilobyte(1024, 'x');
    TileDiskCache cache(m_dir.filePath(u"limit"_qs), 10 * 1024, [] { return noon; });
    for (int i = 0; i < 10; ++i)
        QVERIFY(cache.write(u"s"_qs, {5, i, 0}, kilobyte, noon.addDays(7 + i)));
    QCOMPARE(cache.size(), 10 * 1024);
    // One more goes over: the tiles that expire first go, down to three quarters of the limit.
    QVERIFY(cache.write(u"s"_qs, {5, 10, 0}, kilobyte, noon.addDays(30)));
    QVERIFY(cache.size() <= 10 * 1024 / 4 * 3);
    QVERIFY(!cache.read(u"s"_qs, {5, 0, 0}));
    QVERIFY(!cache.read(u"s"_qs, {5, 3, 0}));
    QVERIFY(cache.read(u"s"_qs, {5, 9, 0}));
    QVERIFY(cache.read(u"s"_qs, {5, 10, 0}));
}

void TileLoadingTest::diskCacheLivesUnderTheUsersCacheFolder()
{
    qputenv("XDG_CACHE_HOME", QFile::encodeName(m_dir.filePath(u"xdg-cache"_qs)));
    QCOMPARE(TileDiskCache::defaultRoot(), m_dir.filePath(u"xdg-cache/Aerolume/tiles"_qs));
    // A relative value is not honoured: it would depend on the working directory.
    qputenv("XDG_CACHE_HOME", "relative/cache");
    QVERIFY(TileDiskCache::defaultRoot().endsWith(u"/.cache/Aerolume/tiles"_qs));
    qunsetenv("XDG_CACHE_HOME");
}

void TileLoadingTest::oneRequestPerAddressAtATime()
{
    TileServer tiles;
    tiles.holdAll(true);
    TileFetcher fetcher(quickRetries(), nullptr, {});
    QSignalSpy fetched(&fetcher, &TileFetcher::fetched);
    const QString url = tiles.server().baseUrl() + u"/tiles/standard/3/1/2.png"_qs;
    fetcher.fetch(url);
    QVERIFY(QTest::qWaitFor([&] { return tiles.requests() == 1; }, 5000));
    fetcher.fetch(url);
    fetcher.fetch(url);
    QTest::qWait(50); // gives a second request the chance to arrive, which it must not take
    QCOMPARE(tiles.requests(), 1);
    tiles.server().release();
    QVERIFY(fetched.wait(5000));
    QCOMPARE(fetched.size(), 1);
    QCOMPARE(fetched.first().at(0).toString(), url);
    QVERIFY(!QImage::fromData(fetched.first().at(1).toByteArray()).isNull());
}

void TileLoadingTest::concurrencyIsBounded()
{
    TileServer tiles;
    tiles.holdAll(true);
    TileFetcher::Options options = quickRetries();
    options.maxConcurrent = 3;
    TileFetcher fetcher(options, nullptr, {});
    QSignalSpy fetched(&fetcher, &TileFetcher::fetched);
    for (int x = 0; x < 8; ++x)
        fetcher.fetch(tiles.server().baseUrl() + u"/tiles/standard/3/%1/0.png"_qs.arg(x));
    QVERIFY(QTest::qWaitFor([&] { return tiles.requests() == 3; }, 5000));
    QTest::qWait(50);
    QCOMPARE(tiles.requests(), 3);
    QCOMPARE(fetcher.running(), 3);
    QCOMPARE(fetcher.queued(), 5);
    tiles.holdAll(false);
    tiles.server().release();
    QVERIFY(QTest::qWaitFor([&] { return fetched.size() == 8; }, 5000));
    QCOMPARE(tiles.requests(), 8);
    // Of those that had to wait, the most recent wish went first: the map's current view.
    QCOMPARE(tiles.server().requests().at(3).path, QByteArray("/tiles/standard/3/7/0.png"));
}

void TileLoadingTest::transientFailuresAreRetried_data()
{
    QTest::addColumn<QList<Response>>("answers");
    QTest::addColumn<int>("requests");
    QTest::addColumn<bool>("delivered");

    QTest::newRow("busy, then served") << QList<Response>{status(503)} << 2 << true;
    QTest::newRow("too many requests twice, then served")
        << QList<Response>{status(429), status(429)} << 3 << true;
    QTest::newRow("dropped connection, then served") << QList<Response>{dropped()} << 2 << true;
    QTest::newRow("server errors past the attempts")
        << QList<Response>{status(500), status(502), status(504), status(500)} << 3 << false;
    QTest::newRow("not found is final") << QList<Response>{status(404)} << 1 << false;
    QTest::newRow("forbidden is final") << QList<Response>{status(403)} << 1 << false;
}

void TileLoadingTest::transientFailuresAreRetried()
{
    QFETCH(QList<Response>, answers);
    QFETCH(int, requests);
    QFETCH(bool, delivered);

    TileServer tiles;
    tiles.script("/tiles/standard/4/2/2.png", answers);
    TileFetcher fetcher(quickRetries(), nullptr, {});
    QSignalSpy fetched(&fetcher, &TileFetcher::fetched);
    QSignalSpy failed(&fetcher, &TileFetcher::failed);
    fetcher.fetch(tiles.server().baseUrl() + u"/tiles/standard/4/2/2.png"_qs);
    QVERIFY(QTest::qWaitFor([&] { return fetched.size() + failed.size() > 0; }, 5000));
    QCOMPARE(fetched.size(), delivered ? 1 : 0);
    QCOMPARE(failed.size(), delivered ? 0 : 1);
    QCOMPARE(tiles.requests(), requests);
}

void TileLoadingTest::tilesNoLongerWantedAreNotFetched()
{
    TileServer tiles;
    tiles.holdAll(true);
    TileFetcher::Options options = quickRetries();
    options.maxConcurrent = 1;
    TileFetcher fetcher(options, nullptr, {});
    const QString first = tiles.server().baseUrl() + u"/tiles/standard/2/0/0.png"_qs;
    const QString left = tiles.server().baseUrl() + u"/tiles/standard/2/1/0.png"_qs;
    const QString kept = tiles.server().baseUrl() + u"/tiles/standard/2/2/0.png"_qs;
    fetcher.fetch(first);
    fetcher.fetch(left);
    fetcher.fetch(kept);
    QVERIFY(QTest::qWaitFor([&] { return tiles.requests() == 1; }, 5000));
    // The map moved on: only `kept` is still in view. The transfer under way is let finish.
    fetcher.retainOnly({kept});
    QCOMPARE(fetcher.queued(), 1);
    tiles.holdAll(false);
    tiles.server().release();
    QVERIFY(QTest::qWaitFor([&] { return tiles.requests() == 2 && fetcher.running() == 0; }, 5000));
    QTest::qWait(30);
    QCOMPARE(tiles.requestsFor("/tiles/standard/2/1/0.png"), 0);
    QCOMPARE(tiles.requestsFor("/tiles/standard/2/2/0.png"), 1);
}

void TileLoadingTest::secondRunIsServedFromDisk()
{
    TileServer tiles;
    const QString root = m_dir.filePath(u"second-run"_qs);
    TileSource source = TileSources::standard();
    source.urlTemplate = tiles.urlTemplate(u"standard"_qs);
    const QList<TileStore::Request> wanted{{source, {3, 1, 2}, false},
                                           {source, {3, 2, 2}, false},
                                           {source, {3, -1, 2}, false}}; // the last wraps to column 7
    QObject map;
    {
        auto *fetcher = new TileFetcher(quickRetries(), nullptr, {});
        TileStore first(std::make_unique<TileDiskCache>(root), fetcher);
        fetcher->setParent(&first);
        QSignalSpy ready(&first, &TileStore::tileReady);
        first.want(&map, wanted);
        QVERIFY(QTest::qWaitFor([&] { return ready.size() == 3; }, 5000));
        for (const auto &request : wanted)
            QVERIFY(!first.image(request).isNull());
        QCOMPARE(tiles.requests(), 3);
        QCOMPARE(tiles.requestsFor("/tiles/standard/3/7/2.png"), 1);
    }
    // A new run, a new memory: the tiles come from disk, and no request goes out.
    auto *fetcher = new TileFetcher(quickRetries(), nullptr, {});
    TileStore second(std::make_unique<TileDiskCache>(root), fetcher);
    fetcher->setParent(&second);
    QSignalSpy ready(&second, &TileStore::tileReady);
    second.want(&map, wanted);
    QVERIFY(QTest::qWaitFor([&] { return ready.size() == 3; }, 5000));
    QCOMPARE(second.image(wanted[0]).pixelColor(60, 200).rgb(), TileServer::colorOf(u"standard"_qs).rgb());
    QCOMPARE(tiles.requests(), 3);
    QCOMPARE(fetcher->running() + fetcher->queued(), 0);
}

void TileLoadingTest::expiredTileIsShownAndFetchedAgain()
{
    TileServer tiles;
    const QString root = m_dir.filePath(u"expired"_qs);
    TileSource source = TileSources::standard();
    source.urlTemplate = tiles.urlTemplate(u"standard"_qs);
    auto disk = std::make_unique<TileDiskCache>(root);
    // A tile from long ago, marked in a colour the server doesn't use.
    QImage old(256, 256, QImage::Format_ARGB32);
    old.fill(Qt::magenta);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    old.save(&buffer, "PNG");
    QVERIFY(disk->write(source.cacheKey(), {4, 3, 3}, bytes, noon));

    auto *fetcher = new TileFetcher(quickRetries(), nullptr, {});
    TileStore store(std::move(disk), fetcher);
    fetcher->setParent(&store);
    QSignalSpy ready(&store, &TileStore::tileReady);
    QObject map;
    const TileStore::Request request{source, {4, 3, 3}, false};
    store.want(&map, {request});
    QVERIFY(ready.wait(5000));
    QCOMPARE(store.image(request).pixelColor(100, 100), QColor(Qt::magenta));
    QVERIFY(QTest::qWaitFor([&] { return ready.size() == 2; }, 5000));
    QCOMPARE(store.image(request).pixelColor(100, 100).rgb(), TileServer::colorOf(u"standard"_qs).rgb());
    QCOMPARE(tiles.requests(), 1);
    // And the fresh tile replaced the old one on disk, with a new expiry.
    const auto entry = TileDiskCache(root).read(source.cacheKey(), {4, 3, 3});
    QVERIFY(entry && !entry->expired);
}

void TileLoadingTest::mutedTilesAreGreyerAndLighter()
{
    QImage tile(4, 4, QImage::Format_ARGB32_Premultiplied);
    tile.fill(QColor(200, 40, 40));
    const QColor muted = TileStore::muted(tile).pixelColor(1, 1);
    QVERIFY2(muted.hsvSaturationF() < QColor(200, 40, 40).hsvSaturationF() / 2, qPrintable(muted.name()));
    QVERIFY(muted.lightnessF() > QColor(200, 40, 40).lightnessF());
    QCOMPARE(muted.alpha(), 255);
}

QTEST_MAIN(TileLoadingTest)
#include "TileLoadingTest.moc"
