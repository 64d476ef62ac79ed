#include "FeedFetch.h"
#include "StoreHarness.h"

#include <QAbstractItemModelTester>
#include <QLocale>
#include <QPointF>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

using Response = LoopbackHttpServer::Response;
Q_DECLARE_METATYPE(Response)

namespace {

const HomeLocation portland(45.5, -122.6, u"Portland"_qs);

QString hexesOf(const QList<Aircraft> &list)
{
    QStringList hexes;
    for (const Aircraft &aircraft : list)
        hexes.append(aircraft.hex());
    return hexes.join(u',');
}

QString hexesOf(const AircraftListModel &model)
{
    return hexesOf(model.rows());
}

template <typename Value> QStringList sortedKeys(const QHash<QString, Value> &trails)
{
    QStringList keys = trails.keys();
    keys.sort();
    return keys;
}

QList<QPointF> pointsOf(const FlightStore::Trail &trail)
{
    QList<QPointF> points;
    for (const auto &coordinate : trail)
        points.append(QPointF(coordinate.latitude, coordinate.longitude));
    return points;
}

Response withBody(const QByteArray &body)
{
    Response response;
    response.body = body;
    return response;
}

Response dropped()
{
    Response response;
    response.drop = true;
    return response;
}

QSet<AircraftFilter> filtersNamed(const QStringList &names)
{
    QSet<AircraftFilter> filters;
    for (const QString &name : names) {
        const auto filter = AircraftFilters::fromRawValue(name);
        if (!filter)
            qFatal("no filter named %s", qPrintable(name));
        filters.insert(*filter);
    }
    return filters;
}

// The traffic the filter and search cases look at, nearest first.
QList<QJsonObject> fleet()
{
    using R = StoreHarness;
    return {
        R::row(u"a0a0a0"_qs, 45.51, -122.61, 1,
               {{u"flight"_qs, u"ASA512  "_qs},
                {u"t"_qs, u"B739"_qs},
                {u"r"_qs, u"N512AS"_qs},
                {u"alt_baro"_qs, 12000}}),
        R::row(u"c0ffee"_qs, 45.52, -122.62, 2, {{u"t"_qs, u"ZZZZ"_qs}, {u"alt_baro"_qs, 1500}}),
        R::row(u"b1b1b1"_qs, 45.53, -122.63, 3,
               {{u"flight"_qs, u"N123AB"_qs},
                {u"t"_qs, u"C172"_qs},
                {u"r"_qs, u"N123AB"_qs},
                {u"alt_baro"_qs, 2500}}),
        R::row(u"d2d2d2"_qs, 45.54, -122.64, 4,
               {{u"flight"_qs, u"DAL44"_qs},
                {u"t"_qs, u"B738"_qs},
                {u"r"_qs, u"N301DL"_qs},
                {u"alt_baro"_qs, u"ground"_qs}}),
        R::row(u"e3e3e3"_qs, 45.55, -122.65, 5,
               {{u"r"_qs, u"G-ABCD"_qs},
                {u"t"_qs, u"ZZZZ"_qs},
                {u"desc"_qs, u"WIDGET AIR MK2"_qs},
                {u"alt_baro"_qs, 800}}),
        R::row(u"ae1234"_qs, 45.56, -122.66, 6, {{u"dbFlags"_qs, 1}, {u"t"_qs, u"H60"_qs}}),
        R::row(u"f4f4f4"_qs, 45.57, -122.67, 7,
               {{u"flight"_qs, u"AAL123"_qs}, {u"t"_qs, u"EC35"_qs}, {u"alt_baro"_qs, 900}}),
        R::row(u"a7a7a7"_qs, 45.58, -122.68, 8, {{u"squawk"_qs, u"7700"_qs}, {u"alt_baro"_qs, 3000}}),
    };
}

} // namespace

class FlightStoreTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<StoreHarness> m_harness;

    StoreHarness &h() { return *m_harness; }

    // A store at Portland that has applied `rows` as its first refresh.
    FlightStore &storeWith(const QList<QJsonObject> &rows)
    {
        h().storeHome(portland);
        h().queuePrimary(rows);
        FlightStore &store = h().makeStore();
        if (!h().waitForOutcomes(1))
            qWarning("the first refresh did not end");
        return store;
    }

    QString applyRows(const QList<QJsonObject> &rows)
    {
        h().queuePrimary(rows);
        return h().refresh();
    }

private slots:
    void initTestCase()
    {
        // Numbers in the settings file must not be read in the user's language.
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    }

    void init() { m_harness = std::make_unique<StoreHarness>(); }
    void cleanup() { m_harness.reset(); }

    void withoutHomeNoRequestIsMadeUntilOneIsSet()
    {
        FlightStore &store = h().makeStore();
        QVERIFY(!store.home());
        store.fetchNow();
        store.tick();
        store.tick();
        StoreHarness::drain();
        store.setPaused(false);
        store.setRadiusNM(30);
        StoreHarness::drain();
        QCOMPARE(h().started().size(), 0);

        store.setHomeLocation(45.5, -122.6, u"Portland"_qs);
        // At once, not at the next tick.
        QCOMPARE(h().started().size(), 1);
        QVERIFY(h().waitForRequests(1));
        QCOMPARE(h().server().requests().constFirst().path, QByteArray("/v2/point/45.50000/-122.60000/30"));
        QVERIFY(h().waitForOutcomes(1));
        QCOMPARE(h().outcomes(), QStringList({u"applied adsb.lol "_qs}));
    }

    void firstLaunchWritesNoSettings()
    {
        FlightStore &store = h().makeStore();
        store.tick();
        StoreHarness::drain();
        QVERIFY(!QFile::exists(h().settingsFile()));
        QVERIFY(!QFile::exists(h().widgetFile()));
        QCOMPARE(h().reloads(), 0);
    }

    void storedHomeAtStart_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<bool>("hasHome");

        QTest::newRow("JSON bytes") << QVariant(portland.encode()) << true;
        QTest::newRow("JSON bytes with extra keys")
            << QVariant(QByteArray(R"({"label":"Portland","longitude":-122.6,"latitude":45.5,"zoom":3})"))
            << true;
        QTest::newRow("not JSON") << QVariant(QByteArray("\x01\x02garbage")) << false;
        QTest::newRow("empty bytes") << QVariant(QByteArray()) << false;
        QTest::newRow("a list") << QVariant(QByteArray("[45.5,-122.6]")) << false;
        QTest::newRow("no label") << QVariant(QByteArray(R"({"latitude":45.5,"longitude":-122.6})")) << false;
        QTest::newRow("latitude as text")
            << QVariant(QByteArray(R"({"latitude":"45.5","longitude":-122.6,"label":"Portland"})")) << false;
        QTest::newRow("label null") << QVariant(
                                           QByteArray(R"({"latitude":45.5,"longitude":-122.6,"label":null})"))
                                    << false;
        QTest::newRow("text, not bytes") << QVariant(QString::fromUtf8(portland.encode())) << false;
        QTest::newRow("unset") << QVariant() << false;
    }

    void storedHomeAtStart()
    {
        QFETCH(QVariant, stored);
        QFETCH(bool, hasHome);

        if (stored.isValid())
            h().defaults().setValue(u"homeLocation"_qs, stored);
        FlightStore &store = h().makeStore();
        QCOMPARE(store.home().has_value(), hasHome);
        // The first refresh needs no tick.
        QCOMPARE(h().started().size(), hasHome ? 1 : 0);
        if (hasHome) {
            QCOMPARE(*store.home(), portland);
            QCOMPARE(h().started().constFirst().first, portland);
            QVERIFY(h().waitForOutcomes(1));
        } else {
            // A later assignment takes the place of what couldn't be read.
            store.setHome(portland);
            QCOMPARE(HomeLocation::decode(*h().defaults().dataValue(u"homeLocation"_qs)).value(), portland);
        }
    }

    void storedRadiusAtStart_data()
    {
        QTest::addColumn<QByteArray>("setting");
        QTest::addColumn<double>("radius");
        QTest::addColumn<QByteArray>("requested");

        QTest::newRow("unset") << QByteArray() << 25.0 << QByteArray("/25");
        QTest::newRow("0") << QByteArray("radiusNM=0") << 25.0 << QByteArray("/25");
        QTest::newRow("negative") << QByteArray("radiusNM=-3") << 25.0 << QByteArray("/25");
        QTest::newRow("tiny negative") << QByteArray("radiusNM=-0.001") << 25.0 << QByteArray("/25");
        QTest::newRow("not a number") << QByteArray("radiusNM=abc") << 25.0 << QByteArray("/25");
        QTest::newRow("nan") << QByteArray("radiusNM=nan") << 25.0 << QByteArray("/25");
        QTest::newRow("decimal comma") << QByteArray("radiusNM=\"12,5\"") << 25.0 << QByteArray("/25");
        QTest::newRow("12.5") << QByteArray("radiusNM=12.5") << 12.5 << QByteArray("/13");
        QTest::newRow("40") << QByteArray("radiusNM=40") << 40.0 << QByteArray("/40");
        QTest::newRow("just above 0") << QByteArray("radiusNM=0.01") << 0.01 << QByteArray("/1");
    }

    void storedRadiusAtStart()
    {
        QFETCH(QByteArray, setting);
        QFETCH(double, radius);
        QFETCH(QByteArray, requested);

        h().writeSettings(setting);
        h().storeHome(portland);
        const QByteArray before = [&] {
            QFile file(h().settingsFile());
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        }();
        FlightStore &store = h().makeStore();
        QCOMPARE(store.radiusNM(), radius);
        QVERIFY(h().waitForRequests(1));
        QVERIFY2(h().server().requests().constFirst().path.endsWith(requested),
                 h().server().requests().constFirst().path.constData());
        // The radius is only read at start; nothing is written back.
        QFile file(h().settingsFile());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), before);
    }

    void successfulRefreshAppliesEverything()
    {
        h().storeHome(portland);
        h().queuePrimary(StoreHarness::status(500));
        h().queueFallback(StoreHarness::status(502));
        // The feed client itself, as the application wires it.
        FlightStore &store = h().makeStore(false);
        QVERIFY(h().waitForOutcomes(1));
        QCOMPARE(h().outcomes().constFirst(), u"failed adsb.fi returned an error"_qs);
        QCOMPARE(store.lastError(), std::optional(u"adsb.fi returned an error"_qs));

        QStringList seenByTrails;
        QList<bool> glidesSeenByList;
        connect(&store, &FlightStore::trailsChanged, this,
                [&] { seenByTrails.append(hexesOf(store.aircraft())); });
        connect(&store, &FlightStore::aircraftChanged, this,
                [&] { glidesSeenByList.append(store.glides()); });

        const QDateTime later = h().now().addSecs(5);
        h().setNow(later);
        QCOMPARE(applyRows({StoreHarness::row(u"far"_qs, 45.7, -122.9, 9.5),
                            StoreHarness::row(u"near"_qs, 45.51, -122.61, 0.8)}),
                 u"applied adsb.lol near,far"_qs);
        QCOMPARE(hexesOf(store.aircraft()), u"near,far"_qs);
        QCOMPARE(store.lastUpdated(), std::optional(later));
        QCOMPARE(store.lastError(), std::nullopt);
        QCOMPARE(store.activeSource(), std::optional(u"adsb.lol"_qs));
        QCOMPARE(sortedKeys(store.trails()), QStringList({u"far"_qs, u"near"_qs}));
        QCOMPARE(pointsOf(store.trails().value(u"near"_qs)), QList<QPointF>({QPointF(45.51, -122.61)}));
        QCOMPARE(hexesOf(*store.displayedModel()), u"near,far"_qs);
        // Trails are built from the new list, and the list knows whether to glide when it changes.
        QCOMPARE(seenByTrails, QStringList({u"near,far"_qs}));
        QCOMPARE(glidesSeenByList, QList<bool>({true}));

        // A list from the second network is credited to it.
        h().queuePrimary(QList<QJsonObject>());
        h().queueFallback({StoreHarness::row(u"other"_qs, 45.6, -122.7, 3)});
        QCOMPARE(h().refresh(), u"applied adsb.fi other"_qs);
        QCOMPARE(store.activeSource(), std::optional(u"adsb.fi"_qs));
    }

    void emptySuccessClearsListTrailsErrorAndSelection()
    {
        h().storeHome(portland);
        h().queuePrimary(QList<QJsonObject>());
        h().queueFallback(
            {StoreHarness::row(u"a"_qs, 45.6, -122.7, 1), StoreHarness::row(u"b"_qs, 45.7, -122.8, 2)});
        FlightStore &store = h().makeStore();
        QVERIFY(h().waitForOutcomes(1));
        store.setSelectedHex(u"a"_qs);
        h().queuePrimary(StoreHarness::status(500));
        h().queueFallback(StoreHarness::status(500));
        QVERIFY(h().refresh().startsWith(u"failed"_qs));
        QVERIFY(store.lastError());

        const QDateTime later = h().now().addSecs(10);
        h().setNow(later);
        QCOMPARE(h().refresh(), u"applied adsb.lol "_qs);
        QVERIFY(store.aircraft().isEmpty());
        QVERIFY(store.trails().isEmpty());
        QCOMPARE(store.lastError(), std::nullopt);
        QCOMPARE(store.selectedHex(), std::nullopt);
        QCOMPARE(store.selectedAircraft().has_value(), false);
        QCOMPARE(store.lastUpdated(), std::optional(later));
        QCOMPARE(store.activeSource(), std::optional(u"adsb.lol"_qs));
        QCOMPARE(store.displayedModel()->rowCount(), 0);
    }

    void failedRefreshOnlySetsLastError_data()
    {
        QTest::addColumn<Response>("primary");
        QTest::addColumn<Response>("fallback");
        QTest::addColumn<QString>("message");

        QTest::newRow("both answer 500")
            << StoreHarness::status(500) << StoreHarness::status(500) << u"adsb.fi returned an error"_qs;
        QTest::newRow("both drop the connection")
            << dropped() << dropped() << u"adsb.fi: Connection closed"_qs;
        QTest::newRow("not JSON, then a bad row")
            << withBody("<html>") << withBody(R"({"aircraft":[{"hex":"f1","lat":1,"lon":2},{"lat":1}]})")
            << QString::fromUtf8(R"(adsb.fi: row 1: "hex" is missing)");
    }

    void failedRefreshOnlySetsLastError()
    {
        QFETCH(Response, primary);
        QFETCH(Response, fallback);
        QFETCH(QString, message);

        FlightStore &store = storeWith(
            {StoreHarness::row(u"a"_qs, 45.6, -122.7, 1), StoreHarness::row(u"b"_qs, 45.7, -122.8, 2)});
        store.setSelectedHex(u"b"_qs);
        const auto trails = store.trails();
        const auto updated = store.lastUpdated();
        h().setNow(h().now().addSecs(5));
        h().setPrimaryDefault(primary);
        h().setFallbackDefault(fallback);

        QSignalSpy aircraftChanged(&store, &FlightStore::aircraftChanged);
        QSignalSpy trailsChanged(&store, &FlightStore::trailsChanged);
        QSignalSpy selectionChanged(&store, &FlightStore::selectedHexChanged);
        QSignalSpy updatedChanged(&store, &FlightStore::lastUpdatedChanged);
        QSignalSpy sourceChanged(&store, &FlightStore::activeSourceChanged);
        QCOMPARE(h().refresh(), u"failed "_qs + message);
        QCOMPARE(store.lastError(), std::optional(message));
        QCOMPARE(hexesOf(store.aircraft()), u"a,b"_qs);
        QCOMPARE(store.selectedHex(), std::optional(u"b"_qs));
        QCOMPARE(store.selectedAircraft()->hex(), u"b"_qs);
        QCOMPARE(store.trails(), trails);
        QCOMPARE(store.lastUpdated(), updated);
        QCOMPARE(store.activeSource(), std::optional(u"adsb.lol"_qs));
        QCOMPARE(aircraftChanged.count() + trailsChanged.count() + selectionChanged.count() +
                     updatedChanged.count() + sourceChanged.count(),
                 0);

        // The next good answer ends the trouble.
        h().setPrimaryDefault(
            StoreHarness::answer({StoreHarness::row(u"a"_qs, 45.6, -122.7, 1)}, "ac", false));
        QCOMPARE(h().refresh(), u"applied adsb.lol a"_qs);
        QCOMPARE(store.lastError(), std::nullopt);
    }

    // With no network address that even parses, the refresh fails like any other, with its own words.
    void noUsableAddressIsAnError()
    {
        qputenv("AEROLUME_PRIMARY_FEED_URL", "http://bad host");
        qputenv("AEROLUME_FALLBACK_FEED_URL", "http://bad host");
        h().storeHome(portland);
        FlightStore &store = h().makeStore(false);
        StoreHarness::drain();
        QCOMPARE(h().outcomes(), QStringList({u"failed No flight data source reachable"_qs}));
        QCOMPARE(store.lastError(), std::optional(u"No flight data source reachable"_qs));
        QCOMPARE(h().server().requests().size(), 0);
    }

    // A newer request supersedes an older one, whichever answers first; the tick does the same to a
    // refresh that takes longer than the interval.
    void supersededRefreshIsNeverApplied_data()
    {
        QTest::addColumn<bool>("byTick");
        QTest::newRow("fetchNow") << false;
        QTest::newRow("tick") << true;
    }

    void supersededRefreshIsNeverApplied()
    {
        QFETCH(bool, byTick);

        h().storeHome(portland);
        h().queuePrimary({StoreHarness::row(u"old"_qs, 45.6, -122.7, 1)}, true);
        FlightStore &store = h().makeStore();
        QVERIFY(h().waitForRequests(1));

        h().queuePrimary({StoreHarness::row(u"new"_qs, 45.6, -122.7, 1)}, true);
        if (byTick) {
            store.tick();
            QCOMPARE(h().started().size(), 1); // the tick only posts the request
            StoreHarness::drain();
        } else {
            store.fetchNow();
        }
        QCOMPARE(h().started().size(), 2);
        QVERIFY(h().waitForRequests(2));
        h().server().release();
        QVERIFY(h().waitForOutcomes(1));
        QCOMPARE(h().outcomes(), QStringList({u"applied adsb.lol new"_qs}));

        // Whatever was still on its way has had its chance by the time a later refresh is done.
        QCOMPARE(applyRows({StoreHarness::row(u"later"_qs, 45.6, -122.7, 1)}), u"applied adsb.lol later"_qs);
        QCOMPARE(h().outcomes(), QStringList({u"applied adsb.lol new"_qs, u"applied adsb.lol later"_qs}));
    }

    void cancelledRefreshLeavesLastErrorAlone()
    {
        h().storeHome(portland);
        h().queuePrimary(StoreHarness::status(500));
        h().queueFallback(StoreHarness::status(500));
        FlightStore &store = h().makeStore();
        QVERIFY(h().waitForOutcomes(1));
        const auto error = store.lastError();
        QVERIFY(error);

        QSignalSpy errorChanged(&store, &FlightStore::lastErrorChanged);
        h().queuePrimary({StoreHarness::row(u"slow"_qs, 45.6, -122.7, 1)}, true);
        store.fetchNow();
        QVERIFY(h().waitForRequests(3));
        h().queuePrimary({StoreHarness::row(u"fresh"_qs, 45.6, -122.7, 1)}, true);
        store.fetchNow(); // cancels the slow one
        QVERIFY(h().waitForRequests(4));
        StoreHarness::drain();
        QCOMPARE(store.lastError(), error);
        QCOMPARE(errorChanged.count(), 0);
        QCOMPARE(h().outcomes().size(), 1);

        h().server().release();
        QVERIFY(h().waitForOutcomes(2));
        QCOMPARE(h().outcomes().constLast(), u"applied adsb.lol fresh"_qs);
        QCOMPARE(errorChanged.count(), 1);
        QCOMPARE(store.lastError(), std::nullopt);
    }

    void pausingDuringRefreshStillAppliesItOnce()
    {
        h().storeHome(portland);
        h().queuePrimary({StoreHarness::row(u"a"_qs, 45.6, -122.7, 1)}, true);
        FlightStore &store = h().makeStore();
        QVERIFY(h().waitForRequests(1));
        store.setPaused(true);
        QVERIFY(store.isPaused());

        h().server().release();
        QVERIFY(h().waitForOutcomes(1));
        QCOMPARE(h().outcomes(), QStringList({u"applied adsb.lol a"_qs}));

        store.tick();
        store.tick();
        StoreHarness::drain();
        store.fetchNow();
        store.setRadiusNM(40);
        QCOMPARE(h().started().size(), 1);
        QCOMPARE(h().outcomes().size(), 1);

        store.setPaused(false);
        QCOMPARE(h().started().size(), 2);
        QCOMPARE(h().started().constLast().second, 40.0);
        QVERIFY(h().waitForOutcomes(2));
    }

    void assigningPaused_data()
    {
        QTest::addColumn<bool>("pausedBefore");
        QTest::addColumn<bool>("assigned");
        QTest::addColumn<int>("newRefreshes");

        QTest::newRow("false again") << false << false << 1;
        QTest::newRow("true to false") << true << false << 1;
        QTest::newRow("true again") << true << true << 0;
        QTest::newRow("false to true") << false << true << 0;
    }

    void assigningPaused()
    {
        QFETCH(bool, pausedBefore);
        QFETCH(bool, assigned);
        QFETCH(int, newRefreshes);

        FlightStore &store = storeWith({StoreHarness::row(u"a"_qs, 45.6, -122.7, 1)});
        if (pausedBefore)
            store.setPaused(true);
        const qsizetype before = h().started().size();
        store.setPaused(assigned);
        QCOMPARE(store.isPaused(), assigned);
        QCOMPARE(h().started().size() - before, newRefreshes);
        if (newRefreshes > 0)
            QVERIFY(h().waitForOutcomes(2));
    }

    void quickRadiusChangesApplyOnlyTheLast()
    {
        FlightStore &store = storeWith({});
        // Every answer waits, and names the radius it was asked for.
        h().server().route(StoreHarness::primaryPath, [](const LoopbackHttpServer::Request &request) {
            const QByteArray radius = request.path.mid(request.path.lastIndexOf('/') + 1);
            Response response = StoreHarness::answer(
                {StoreHarness::row(u"r"_qs + QString::fromLatin1(radius), 45.6, -122.7, 1)}, "ac", true);
            return response;
        });
        store.setRadiusNM(10);
        store.setRadiusNM(20);
        store.setRadiusNM(30);
        QCOMPARE(h().started().size(), 4);
        QCOMPARE(h().started()[1].second, 10.0);
        QCOMPARE(h().started()[2].second, 20.0);
        QCOMPARE(h().started()[3].second, 30.0);
        QCOMPARE(h().defaults().doubleValue(u"radiusNM"_qs), std::optional(30.0));

        // Wait for the request of the last change; earlier ones may or may not have reached the server.
        const auto askedFor30 = [&] {
            return std::any_of(h().server().requests().cbegin(), h().server().requests().cend(),
                               [](const auto &request) { return request.path.endsWith("/30"); });
        };
        while (!askedFor30())
            QVERIFY(h().waitForRequests(h().server().requests().size() + 1));
        h().server().release();
        QVERIFY(h().waitForOutcomes(2));
        QCOMPARE(h().outcomes().constLast(), u"applied adsb.lol r30"_qs);

        store.fetchNow();
        QVERIFY(h().waitForRequests(h().server().requests().size() + 1));
        h().server().release();
        QVERIFY(h().waitForOutcomes(3));
        QCOMPARE(h().outcomes(), QStringList({u"applied adsb.lol "_qs, u"applied adsb.lol r30"_qs,
                                              u"applied adsb.lol r30"_qs}));
    }

    void aTickAfterTheStoreIsGoneDoesNothing()
    {
        h().storeHome(portland);
        FlightStore &store = h().makeStore();
        QVERIFY(h().waitForOutcomes(1));
        store.tick();
        h().destroyStore();
        StoreHarness::drain();
        QCOMPARE(h().started().size(), 1);
    }

    void selectionLeavesWithItsAircraftForGood()
    {
        using R = StoreHarness;
        FlightStore &store = storeWith({R::row(u"a"_qs, 45.6, -122.7, 1), R::row(u"b"_qs, 45.7, -122.8, 2)});
        store.setSelectedHex(u"b"_qs);
        QCOMPARE(store.selectedAircraft()->hex(), u"b"_qs);

        // Moving in the order keeps it.
        QCOMPARE(applyRows({R::row(u"b"_qs, 45.7, -122.8, 0.5), R::row(u"a"_qs, 45.6, -122.7, 1)}),
                 u"applied adsb.lol b,a"_qs);
        QCOMPARE(store.selectedHex(), std::optional(u"b"_qs));

        QSignalSpy selectionChanged(&store, &FlightStore::selectedHexChanged);
        QCOMPARE(applyRows({R::row(u"a"_qs, 45.6, -122.7, 1)}), u"applied adsb.lol a"_qs);
        QCOMPARE(store.selectedHex(), std::nullopt);
        QCOMPARE(store.selectedAircraft(), std::nullopt);
        QCOMPARE(selectionChanged.count(), 1);

        QCOMPARE(applyRows({R::row(u"a"_qs, 45.6, -122.7, 1), R::row(u"b"_qs, 45.7, -122.8, 2)}),
                 u"applied adsb.lol a,b"_qs);
        QCOMPARE(store.selectedHex(), std::nullopt);
    }

    void glidesUnlessReduceMotion_data()
    {
        QTest::addColumn<QVariant>("reduceMotion");
        QTest::addColumn<bool>("glides");

        QTest::newRow("unset") << QVariant() << true;
        QTest::newRow("true") << QVariant(true) << false;
        QTest::newRow("false") << QVariant(false) << true;
        QTest::newRow("text true") << QVariant(u"true"_qs) << false;
    }

    void glidesUnlessReduceMotion()
    {
        QFETCH(QVariant, reduceMotion);
        QFETCH(bool, glides);

        if (reduceMotion.isValid())
            h().defaults().setValue(u"reduceMotion"_qs, reduceMotion);
        h().storeHome(portland);
        h().queuePrimary({StoreHarness::row(u"a"_qs, 45.6, -122.7, 1)});
        FlightStore &store = h().makeStore();
        QList<bool> seenByList;
        connect(&store, &FlightStore::aircraftChanged, this, [&] { seenByList.append(store.glides()); });
        QVERIFY(h().waitForOutcomes(1));
        QCOMPARE(store.glides(), glides);
        QCOMPARE(seenByList, QList<bool>({glides}));
        // Everything else of the refresh is the same either way.
        QCOMPARE(hexesOf(store.aircraft()), u"a"_qs);
        QCOMPARE(store.lastUpdated(), std::optional(h().now()));
        QCOMPARE(store.trails().value(u"a"_qs).size(), 1);

        // Read at every refresh, not once.
        h().defaults().setValue(u"reduceMotion"_qs, glides);
        QCOMPARE(applyRows({StoreHarness::row(u"a"_qs, 45.61, -122.7, 1)}), u"applied adsb.lol a"_qs);
        QCOMPARE(store.glides(), !glides);
        QCOMPARE(seenByList, QList<bool>({glides, !glides}));
    }

    void trailLengthFromTrailMinutes_data()
    {
        QTest::addColumn<QByteArray>("setting");
        QTest::addColumn<int>("length");

        QTest::newRow("unset") << QByteArray() << 12;
        QTest::newRow("1") << QByteArray("trailMinutes=1") << 12;
        QTest::newRow("0.25") << QByteArray("trailMinutes=0.25") << 6;
        QTest::newRow("0.5") << QByteArray("trailMinutes=0.5") << 6;
        QTest::newRow("0.6 truncates") << QByteArray("trailMinutes=0.6") << 7;
        QTest::newRow("2.99 truncates") << QByteArray("trailMinutes=2.99") << 35;
        QTest::newRow("5") << QByteArray("trailMinutes=5") << 60;
        QTest::newRow("0") << QByteArray("trailMinutes=0") << 6;
        QTest::newRow("negative") << QByteArray("trailMinutes=-2") << 6;
        QTest::newRow("abc") << QByteArray("trailMinutes=abc") << 12;
        QTest::newRow("empty") << QByteArray("trailMinutes=") << 12;
    }

    void trailLengthFromTrailMinutes()
    {
        QFETCH(QByteArray, setting);
        QFETCH(int, length);

        h().writeSettings(setting);
        FlightStore &store = storeWith({});
        QCOMPARE(store.trailLength(), length);

        // Two more distinct positions than fit: the two oldest go.
        const int positions = length + 2;
        for (int i = 0; i < positions; ++i)
            QVERIFY(applyRows({StoreHarness::row(u"a"_qs, 45.0 + i * 0.001, -122.0, 1)})
                        .startsWith(u"applied"_qs));
        const FlightStore::Trail trail = store.trails().value(u"a"_qs);
        QCOMPARE(trail.size(), length);
        QCOMPARE(trail.constFirst().latitude, 45.0 + 2 * 0.001);
        QCOMPARE(trail.constLast().latitude, 45.0 + (positions - 1) * 0.001);
    }

    void shorterTrailMinutesTakeEffectAtTheNextRefresh()
    {
        FlightStore &store = storeWith({});
        for (int i = 0; i < 12; ++i)
            QVERIFY(applyRows({StoreHarness::row(u"a"_qs, 45.0 + i * 0.001, -122.0, 1)})
                        .startsWith(u"applied"_qs));
        QCOMPARE(store.trails().value(u"a"_qs).size(), 12);
        h().defaults().setValue(u"trailMinutes"_qs, 0.5);
        QCOMPARE(store.trails().value(u"a"_qs).size(), 12);
        // The aircraft hasn't moved, and the trail still gives up its oldest points.
        QVERIFY(
            applyRows({StoreHarness::row(u"a"_qs, 45.0 + 11 * 0.001, -122.0, 1)}).startsWith(u"applied"_qs));
        const FlightStore::Trail trail = store.trails().value(u"a"_qs);
        QCOMPARE(trail.size(), 6);
        QCOMPARE(trail.constFirst().latitude, 45.0 + 6 * 0.001);
    }

    void trailPoints_data()
    {
        QTest::addColumn<QList<QPointF>>("positions");
        QTest::addColumn<QList<QPointF>>("trail");

        const QPointF p(45.0, -122.0);
        QTest::newRow("same position twice") << QList<QPointF>{p, p} << QList<QPointF>{p};
        QTest::newRow("0.000002 in latitude")
            << QList<QPointF>{p, QPointF(45.000002, -122.0)} << QList<QPointF>{p, QPointF(45.000002, -122.0)};
        QTest::newRow("0.000002 in longitude")
            << QList<QPointF>{p, QPointF(45.0, -122.000002)} << QList<QPointF>{p, QPointF(45.0, -122.000002)};
        QTest::newRow("less than 0.000001 in both")
            << QList<QPointF>{p, QPointF(45.0000005, -121.9999995)} << QList<QPointF>{p};
        QTest::newRow("stationary, then moving")
            << QList<QPointF>{p, p, p, QPointF(45.01, -122.0)} << QList<QPointF>{p, QPointF(45.01, -122.0)};
        QTest::newRow("back where it was")
            << QList<QPointF>{p, QPointF(45.01, -122.0), p} << QList<QPointF>{p, QPointF(45.01, -122.0), p};
        QList<QPointF> thirteen;
        for (int i = 0; i < 13; ++i)
            thirteen.append(QPointF(45.0, -122.0 + i * 0.01));
        QTest::newRow("the 13th distinct position") << thirteen << thirteen.mid(1);
    }

    void trailPoints()
    {
        QFETCH(QList<QPointF>, positions);
        QFETCH(QList<QPointF>, trail);

        FlightStore &store = storeWith({});
        for (const QPointF &position : positions) {
            QCOMPARE(applyRows({StoreHarness::row(u"a"_qs, position.x(), position.y(), 1)}),
                     u"applied adsb.lol a"_qs);
        }
        QCOMPARE(pointsOf(store.trails().value(u"a"_qs)), trail);
    }

    void trailIsLostWhenAbsentFromOneRefresh()
    {
        using R = StoreHarness;
        FlightStore &store = storeWith({R::row(u"a"_qs, 45.0, -122.0, 1), R::row(u"b"_qs, 46.0, -122.0, 2)});
        QVERIFY(applyRows({R::row(u"a"_qs, 45.1, -122.0, 1), R::row(u"b"_qs, 46.1, -122.0, 2)})
                    .startsWith(u"applied"_qs));
        QCOMPARE(store.trails().value(u"a"_qs).size(), 2);
        QVERIFY(applyRows({R::row(u"b"_qs, 46.2, -122.0, 2)}).startsWith(u"applied"_qs));
        QCOMPARE(sortedKeys(store.trails()), QStringList({u"b"_qs}));
        QVERIFY(applyRows({R::row(u"a"_qs, 45.2, -122.0, 1), R::row(u"b"_qs, 46.3, -122.0, 2)})
                    .startsWith(u"applied"_qs));
        QCOMPARE(pointsOf(store.trails().value(u"a"_qs)), QList<QPointF>({QPointF(45.2, -122.0)}));
        QCOMPARE(store.trails().value(u"b"_qs).size(), 4);
    }

    // Many aircraft over many refreshes, coming and going, some standing still, against the rules worked
    // by hand: every trail continues from the last refresh's, holds its last 12 distinct positions, and
    // goes with its aircraft. Now and then an unusual address joins, which the store handles another way.
    void trailsFollowTheirAircraftOverManyRefreshes()
    {
        QRandomGenerator random(42);
        QHash<QString, QPointF> sky;
        for (int i = 0; i < 400; ++i)
            sky.insert(u"%1"_qs.arg(0xa00000 + i, 0, 16), QPointF(45.0 + i * 0.001, -122.0));
        QHash<QString, QList<QPointF>> expected;
        FlightStore &store = storeWith({});
        for (int refresh = 0; refresh < 20; ++refresh) {
            QList<QJsonObject> rows;
            QHash<QString, QList<QPointF>> next;
            for (auto it = sky.begin(); it != sky.end(); ++it) {
                if (random.bounded(100) < 10)
                    continue; // not in this answer
                if (random.bounded(100) < 70)
                    it.value() += QPointF(random.bounded(0.01), random.bounded(0.01));
                rows.append(StoreHarness::row(it.key(), it->x(), it->y(), random.bounded(20.0)));
                QList<QPointF> trail = expected.value(it.key());
                if (trail.isEmpty() || trail.constLast() != it.value())
                    trail.append(it.value());
                next.insert(it.key(), trail.mid(std::max<qsizetype>(0, trail.size() - 12)));
            }
            if (refresh % 5 == 4) {
                const QString unusual = u"~tisb-%1"_qs.arg(refresh);
                rows.append(StoreHarness::row(unusual, 46.0, -121.0, 1));
                next.insert(unusual, {QPointF(46.0, -121.0)});
            }
            for (int i = 0; i < 5; ++i)
                sky.insert(u"%1"_qs.arg(0xb00000 + refresh * 10 + i, 0, 16),
                           QPointF(44.0 + random.bounded(1.0), -123.0));
            expected = next;
            QVERIFY(applyRows(rows).startsWith(u"applied"_qs));
            QCOMPARE(sortedKeys(store.trails()), sortedKeys(expected));
            for (auto it = expected.cbegin(); it != expected.cend(); ++it)
                QCOMPARE(pointsOf(store.trails().value(it.key())), it.value());
        }
    }

    // Addresses that don't fit the usual short form keep their trails like any other, beside those that
    // do, and a trail goes with its aircraft.
    void unusualAddressesKeepTheirTrails()
    {
        using R = StoreHarness;
        const QString longHex = u"~tisb-00042"_qs;
        FlightStore &store = storeWith({R::row(longHex, 45.0, -122.0, 1), R::row(u"a"_qs, 46.0, -122.0, 2)});
        QVERIFY(applyRows({R::row(longHex, 45.1, -122.0, 1), R::row(u"a"_qs, 46.1, -122.0, 2)})
                    .startsWith(u"applied"_qs));
        QCOMPARE(pointsOf(store.trails().value(longHex)),
                 QList<QPointF>({QPointF(45.0, -122.0), QPointF(45.1, -122.0)}));
        QCOMPARE(store.trails().value(u"a"_qs).size(), 2);
        QVERIFY(applyRows({R::row(u"a"_qs, 46.2, -122.0, 2)}).startsWith(u"applied"_qs));
        QCOMPARE(sortedKeys(store.trails()), QStringList({u"a"_qs}));
        QCOMPARE(store.trails().value(u"a"_qs).size(), 3);
    }

    // The feed may send one address twice; each row continues the trail as it stood before this refresh,
    // and the later row is the one kept.
    void addressSentTwiceContinuesItsTrail()
    {
        using R = StoreHarness;
        FlightStore &store = storeWith({R::row(u"a"_qs, 45.0, -122.0, 1)});
        QCOMPARE(applyRows({R::row(u"a"_qs, 45.1, -122.0, 1), R::row(u"a"_qs, 45.2, -122.0, 2)}),
                 u"applied adsb.lol a,a"_qs);
        QCOMPARE(pointsOf(store.trails().value(u"a"_qs)),
                 QList<QPointF>({QPointF(45.0, -122.0), QPointF(45.2, -122.0)}));
        QCOMPARE(applyRows({R::row(u"a"_qs, 45.3, -122.0, 1)}), u"applied adsb.lol a"_qs);
        QCOMPARE(pointsOf(store.trails().value(u"a"_qs)),
                 QList<QPointF>({QPointF(45.0, -122.0), QPointF(45.2, -122.0), QPointF(45.3, -122.0)}));
    }

    // The feed client drops rows without a position; a fetcher that doesn't still gets no trail for them.
    void aircraftWithoutPositionHasNoTrail()
    {
        h().storeHome(portland);
        QList<QPointer<FeedFetch>> tasks;
        FlightStore &store = h().makeStoreWith([&](const HomeLocation &home, double radius, QObject *parent) {
            auto *task = new FeedFetch({}, home, radius, nullptr, parent);
            tasks.append(task);
            return task;
        });
        QCOMPARE(tasks.size(), 1);
        ADSB::FetchResult result{{}, u"Scripted"_qs};
        for (const QByteArray &json :
             {QByteArray(R"({"hex":"a","lat":45.1,"lon":-122.1})"), QByteArray(R"({"hex":"b","lat":45.1})"),
              QByteArray(R"({"hex":"c"})")}) {
            auto decoded = Aircraft::decode(json);
            QVERIFY2(decoded.ok(), qPrintable(decoded.error()));
            result.aircraft.append(std::move(decoded).value());
        }
        emit tasks.constFirst()->succeeded(result);
        QCOMPARE(h().outcomes(), QStringList({u"applied Scripted a,b,c"_qs}));
        QCOMPARE(sortedKeys(store.trails()), QStringList({u"a"_qs}));
    }

    void filterMatches_data()
    {
        QTest::addColumn<QJsonObject>("fields");
        QTest::addColumn<QStringList>("matches");

        const auto o = [](std::initializer_list<QPair<QString, QJsonValue>> pairs) {
            QJsonObject object;
            for (const auto &[key, value] : pairs)
                object.insert(key, value);
            return object;
        };
        const QString emergency = u"emergency"_qs, military = u"military"_qs, helicopters = u"helicopters"_qs,
                      airliners = u"airliners"_qs, ga = u"generalAviation"_qs, low = u"lowAltitude"_qs;

        QTest::newRow("helicopter with an airline callsign")
            << o({{u"flight"_qs, u"AAL123"_qs}, {u"t"_qs, u"EC35"_qs}, {u"alt_baro"_qs, 3000}})
            << QStringList{helicopters, airliners};
        QTest::newRow("rotorcraft category")
            << o({{u"category"_qs, u"A7"_qs}, {u"alt_baro"_qs, 3000}}) << QStringList{helicopters};
        QTest::newRow("N123AB in a Cessna")
            << o({{u"flight"_qs, u"N123AB"_qs}, {u"t"_qs, u"C172"_qs}, {u"alt_baro"_qs, 4500}})
            << QStringList{ga};
        QTest::newRow("no callsign") << o({{u"alt_baro"_qs, 4500}}) << QStringList{ga};
        QTest::newRow("no callsign, military")
            << o({{u"dbFlags"_qs, 1}, {u"alt_baro"_qs, 4500}}) << QStringList{military};
        QTest::newRow("dbFlags 3 is military")
            << o({{u"dbFlags"_qs, 3}, {u"alt_baro"_qs, 4500}}) << QStringList{military};
        QTest::newRow("dbFlags 2 is not")
            << o({{u"dbFlags"_qs, 2}, {u"alt_baro"_qs, 4500}}) << QStringList{ga};
        QTest::newRow("military airline-like callsign")
            << o({{u"flight"_qs, u"RCH123"_qs}, {u"dbFlags"_qs, 1}, {u"alt_baro"_qs, 4500}})
            << QStringList{military, airliners};
        QTest::newRow("airliner squawking 7700")
            << o({{u"flight"_qs, u"UAL1"_qs}, {u"squawk"_qs, u"7700"_qs}, {u"alt_baro"_qs, 20000}})
            << QStringList{emergency, airliners};
        QTest::newRow("light aircraft in an emergency")
            << o({{u"emergency"_qs, u"general"_qs}, {u"alt_baro"_qs, 4500}}) << QStringList{emergency, ga};
        QTest::newRow("lower-case airline callsign with blanks")
            << o({{u"flight"_qs, u" asa512 "_qs}, {u"alt_baro"_qs, 4500}}) << QStringList{airliners};
        QTest::newRow("two letters, then digits")
            << o({{u"flight"_qs, u"AB1234"_qs}, {u"alt_baro"_qs, 4500}}) << QStringList{ga};
        QTest::newRow("on the ground, geometric 100")
            << o({{u"alt_baro"_qs, u"ground"_qs}, {u"alt_geom"_qs, 100}}) << QStringList{ga};
        QTest::newRow("no barometric, geometric 100") << o({{u"alt_geom"_qs, 100}}) << QStringList{ga, low};
        QTest::newRow("-50 feet") << o({{u"alt_baro"_qs, -50}}) << QStringList{ga, low};
        QTest::newRow("1999 feet") << o({{u"alt_baro"_qs, 1999}}) << QStringList{ga, low};
        QTest::newRow("2000 feet") << o({{u"alt_baro"_qs, 2000}}) << QStringList{ga};
        QTest::newRow("barometric wins over geometric")
            << o({{u"alt_baro"_qs, 2500}, {u"alt_geom"_qs, 1500}}) << QStringList{ga};
        QTest::newRow("no altitude at all") << o({}) << QStringList{ga};
    }

    void filterMatches()
    {
        QFETCH(QJsonObject, fields);
        QFETCH(QStringList, matches);

        FlightStore &store = storeWith({StoreHarness::row(u"abc123"_qs, 45.6, -122.7, 1, fields)});
        QAbstractItemModelTester tester(store.displayedModel(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(store.aircraft().size(), 1);
        for (AircraftFilter filter : AircraftFilters::all()) {
            const QString name = AircraftFilters::rawValue(filter);
            store.setActiveFilters({filter});
            const bool shown = store.displayedAircraft().size() == 1;
            QVERIFY2(shown == matches.contains(name), qPrintable(name));
            QCOMPARE(AircraftFilters::matches(filter, store.aircraft().constFirst()), shown);
            QCOMPARE(store.displayedModel()->rowCount(), shown ? 1 : 0);
        }
    }

    void filtersAddUp_data()
    {
        QTest::addColumn<QStringList>("filters");
        QTest::addColumn<QString>("shown");

        QTest::newRow("none") << QStringList()
                              << u"a0a0a0,c0ffee,b1b1b1,d2d2d2,e3e3e3,ae1234,f4f4f4,a7a7a7"_qs;
        QTest::newRow("military") << QStringList{u"military"_qs} << u"ae1234"_qs;
        QTest::newRow("military and helicopters")
            << QStringList{u"military"_qs, u"helicopters"_qs} << u"ae1234,f4f4f4"_qs;
        QTest::newRow("airliners") << QStringList{u"airliners"_qs} << u"a0a0a0,d2d2d2,f4f4f4"_qs;
        QTest::newRow("general aviation")
            << QStringList{u"generalAviation"_qs} << u"c0ffee,b1b1b1,e3e3e3,a7a7a7"_qs;
        QTest::newRow("emergency and low altitude")
            << QStringList{u"emergency"_qs, u"lowAltitude"_qs} << u"c0ffee,e3e3e3,f4f4f4,a7a7a7"_qs;
        QTest::newRow("all six") << QStringList{u"emergency"_qs, u"military"_qs,        u"helicopters"_qs,
                                                u"airliners"_qs, u"generalAviation"_qs, u"lowAltitude"_qs}
                                 << u"a0a0a0,c0ffee,b1b1b1,d2d2d2,e3e3e3,ae1234,f4f4f4,a7a7a7"_qs;
    }

    void filtersAddUp()
    {
        QFETCH(QStringList, filters);
        QFETCH(QString, shown);

        FlightStore &store = storeWith(fleet());
        QAbstractItemModelTester tester(store.displayedModel(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        store.setActiveFilters(filtersNamed(filters));
        QCOMPARE(hexesOf(store.displayedAircraft()), shown);
        QCOMPARE(hexesOf(*store.displayedModel()), shown);
        // The same through the names the views use, one by one, and back to everything.
        store.setActiveFilters({});
        for (const QString &name : filters)
            store.setFilterActive(name, true);
        QCOMPARE(hexesOf(store.displayedAircraft()), shown);
        QCOMPARE(store.property("activeFilters").toStringList().size(), filters.size());
        QVERIFY(store.setProperty("activeFilters", QStringList()));
        QCOMPARE(hexesOf(store.displayedAircraft()), hexesOf(store.aircraft()));
        QCOMPARE(hexesOf(*store.displayedModel()), hexesOf(store.aircraft()));
    }

    void search_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("filters");
        QTest::addColumn<QString>("shown");

        const QString everyone = u"a0a0a0,c0ffee,b1b1b1,d2d2d2,e3e3e3,ae1234,f4f4f4,a7a7a7"_qs;
        QTest::newRow("empty") << QString() << QStringList() << everyone;
        QTest::newRow("only blanks and tabs") << u" \t  \t"_qs << QStringList() << everyone;
        QTest::newRow("flight") << u"asa"_qs << QStringList() << u"a0a0a0"_qs;
        QTest::newRow("flight, upper case") << u"ASA5"_qs << QStringList() << u"a0a0a0"_qs;
        QTest::newRow("blanks and tabs around") << u" \tasa512\t "_qs << QStringList() << u"a0a0a0"_qs;
        QTest::newRow("a blank inside is searched for") << u"asa 512"_qs << QStringList() << QString();
        QTest::newRow("a line break is not a blank") << u"asa\n"_qs << QStringList() << QString();
        QTest::newRow("type code") << u"b739"_qs << QStringList() << u"a0a0a0"_qs;
        QTest::newRow("type name") << u"boeing"_qs << QStringList() << u"a0a0a0,d2d2d2"_qs;
        QTest::newRow("type name with a blank") << u"boeing 737-9"_qs << QStringList() << u"a0a0a0"_qs;
        QTest::newRow("type name without its blank") << u"boeing737"_qs << QStringList() << QString();
        QTest::newRow("type name from the description") << u"widget air"_qs << QStringList() << u"e3e3e3"_qs;
        QTest::newRow("unknown type code") << u"zzzz"_qs << QStringList() << u"c0ffee,e3e3e3"_qs;
        QTest::newRow("registration not shown") << u"n512"_qs << QStringList() << u"a0a0a0"_qs;
        QTest::newRow("registration as name") << u"g-ab"_qs << QStringList() << u"e3e3e3"_qs;
        QTest::newRow("hex shown as name") << u"c0ff"_qs << QStringList() << u"c0ffee"_qs;
        QTest::newRow("hex shown as name, mixed case") << u"C0fFeE"_qs << QStringList() << u"c0ffee"_qs;
        QTest::newRow("hex not shown") << u"a0a0"_qs << QStringList() << QString();
        QTest::newRow("hex not shown behind a registration") << u"e3e3"_qs << QStringList() << QString();
        QTest::newRow("with a filter") << u"boeing"_qs << QStringList{u"airliners"_qs} << u"a0a0a0,d2d2d2"_qs;
        QTest::newRow("with a filter that excludes")
            << u"boeing"_qs << QStringList{u"generalAviation"_qs} << QString();
        QTest::newRow("blank search, filter on")
            << u"  "_qs << QStringList{u"helicopters"_qs} << u"ae1234,f4f4f4"_qs;
    }

    void search()
    {
        QFETCH(QString, text);
        QFETCH(QStringList, filters);
        QFETCH(QString, shown);

        FlightStore &store = storeWith(fleet());
        QAbstractItemModelTester tester(store.displayedModel(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        store.setActiveFilters(filtersNamed(filters));
        store.setSearchText(text);
        QCOMPARE(store.searchText(), text);
        QCOMPARE(hexesOf(store.displayedAircraft()), shown);
        QCOMPARE(hexesOf(*store.displayedModel()), shown);
        // The displayed list follows the next refresh too.
        QVERIFY(applyRows(fleet()).startsWith(u"applied"_qs));
        QCOMPARE(hexesOf(*store.displayedModel()), shown);
    }

    void selectionHiddenByFilterOrSearchStays()
    {
        FlightStore &store = storeWith(fleet());
        store.setSelectedHex(u"f4f4f4"_qs);
        QSignalSpy selectionChanged(&store, &FlightStore::selectedHexChanged);
        store.setActiveFilters({AircraftFilter::Military});
        QCOMPARE(hexesOf(store.displayedAircraft()), u"ae1234"_qs);
        QCOMPARE(store.selectedAircraft()->hex(), u"f4f4f4"_qs);
        store.setActiveFilters({});
        store.setSearchText(u"asa"_qs);
        QCOMPARE(store.selectedAircraft()->hex(), u"f4f4f4"_qs);
        // A refresh keeps it too: it is still in the whole list.
        QVERIFY(applyRows(fleet()).startsWith(u"applied"_qs));
        QCOMPARE(store.selectedHex(), std::optional(u"f4f4f4"_qs));
        QCOMPARE(selectionChanged.count(), 0);

        store.setSelectedHex(u"nothere"_qs);
        QCOMPARE(store.selectedAircraft(), std::nullopt);
    }
};

QTEST_GUILESS_MAIN(FlightStoreTest)
#include "FlightStoreTest.moc"
