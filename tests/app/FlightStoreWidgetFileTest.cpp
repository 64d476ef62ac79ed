#include "SharedState.h"
#include "StoreHarness.h"

#include <QJsonDocument>
#include <QLocale>
#include <QSignalSpy>
#include <QTest>

#include <sys/stat.h>

using Config = SharedState::Config;
Q_DECLARE_METATYPE(Config)

namespace {

const HomeLocation portland(45.5, -122.6, u"Portland"_qs);

// What a file looked like at one moment, down to which file it was.
struct FileState
{
    bool exists = false;
    QByteArray content;
    qint64 inode = 0;
    qint64 modifiedNs = 0;

    bool operator==(const FileState &) const = default;
};

FileState stateOf(const QString &path)
{
    FileState state;
    struct stat info
    {
    };
    if (::stat(QFile::encodeName(path).constData(), &info) != 0)
        return state;
    state.exists = true;
    state.inode = qint64(info.st_ino);
    state.modifiedNs = qint64(info.st_mtim.tv_sec) * 1000000000 + info.st_mtim.tv_nsec;
    QFile file(path);
    if (file.open(QIODevice::ReadOnly))
        state.content = file.readAll();
    return state;
}

void writeFile(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(path));
    file.close();
    // Far in the past, so that a rewrite shows in the time even when the bytes come out the same.
    if (!file.open(QIODevice::ReadWrite) ||
        !file.setFileTime(QDateTime(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC),
                          QFileDevice::FileModificationTime))
        qFatal("cannot age %s", qPrintable(path));
}

void ageFile(const QString &path)
{
    QFile readBack(path);
    if (!readBack.open(QIODevice::ReadOnly))
        qFatal("no file %s", qPrintable(path));
    writeFile(path, readBack.readAll());
}

Config config(const HomeLocation &home, double radius, std::optional<QString> unit,
              std::optional<QString> colour)
{
    return Config{home, radius, std::move(unit), std::move(colour)};
}

} // namespace

class FlightStoreWidgetFileTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<StoreHarness> m_harness;

    StoreHarness &h() { return *m_harness; }

    // A store launched with Portland as its home, its first refresh done and the file it wrote aged.
    FlightStore &launchedAtPortland(const QList<QJsonObject> &rows = {})
    {
        h().storeHome(portland);
        h().queuePrimary(rows);
        FlightStore &store = h().makeStore();
        if (!h().waitForOutcomes(1))
            qWarning("the first refresh did not end");
        ageFile(h().widgetFile());
        return store;
    }

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::French, QLocale::France)); }
    void init() { m_harness = std::make_unique<StoreHarness>(); }
    void cleanup() { m_harness.reset(); }

    void settingAHomeWritesTheFileAndAsksForAReload_data()
    {
        QTest::addColumn<QVariantMap>("settings");
        QTest::addColumn<Config>("expected");

        QTest::newRow("defaults") << QVariantMap() << config(portland, 25, u"mi"_qs, u"#73FF99"_qs);
        QTest::newRow("unit, colour and radius set") << QVariantMap{{u"distanceUnit"_qs, u"km"_qs},
                                                                    {u"widgetColorHex"_qs, u"#FF8800"_qs},
                                                                    {u"radiusNM"_qs, 12.5}}
                                                     << config(portland, 12.5, u"km"_qs, u"#FF8800"_qs);
    }

    void settingAHomeWritesTheFileAndAsksForAReload()
    {
        QFETCH(QVariantMap, settings);
        QFETCH(Config, expected);

        for (auto it = settings.cbegin(); it != settings.cend(); ++it)
            h().defaults().setValue(it.key(), it.value());
        FlightStore &store = h().makeStore();
        QVERIFY(!QFile::exists(h().widgetFile()));
        QCOMPARE(h().reloads(), 0);

        store.setHome(portland);
        QCOMPARE(h().reloads(), 1);
        QCOMPARE(SharedState::read(), std::optional(expected));
        const QByteArray written = stateOf(h().widgetFile()).content;
        // One line, as JSON is written by default.
        QVERIFY(!written.contains('\n'));
        QVERIFY(!written.contains(": "));
        QCOMPARE(HomeLocation::decode(*h().defaults().dataValue(u"homeLocation"_qs)).value(), portland);
        QVERIFY(h().waitForOutcomes(1));
    }

    void launch_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QVariantMap>("settings");
        QTest::addColumn<bool>("rewritten");
        QTest::addColumn<Config>("expected");

        const Config standard = config(portland, 25, u"mi"_qs, u"#73FF99"_qs);
        const QVariantMap none;
        const auto bytes = [](const Config &c) { return SharedState::encode(c); };

        QTest::newRow("as the app wrote it") << bytes(standard) << none << false << standard;
        QTest::newRow("no unit, no colour")
            << bytes(config(portland, 25, {}, {})) << none << false << standard;
        QTest::newRow("unit and colour null")
            << QByteArray(R"({"home":{"latitude":45.5,"longitude":-122.6,"label":"Portland"},"radiusNM":25,)"
                          R"("distanceUnit":null,"widgetColorHex":null})")
            << none << false << standard;
        QTest::newRow("no unit in the file, mi set")
            << bytes(config(portland, 25, {}, u"#73FF99"_qs)) << QVariantMap{{u"distanceUnit"_qs, u"mi"_qs}}
            << false << standard;
        QTest::newRow("km in the file and set")
            << bytes(config(portland, 25, u"km"_qs, {})) << QVariantMap{{u"distanceUnit"_qs, u"km"_qs}}
            << false << config(portland, 25, u"km"_qs, u"#73FF99"_qs);
        QTest::newRow("other key order, indented")
            << QByteArray(
                   "{\n  \"radiusNM\": 25.0,\n  \"home\": {\"label\": \"Portland\", \"longitude\": -122.6, "
                   "\"latitude\": 45.5}\n}\n")
            << none << false << standard;
        QTest::newRow("radius 12.5 stored and in the file")
            << bytes(config(portland, 12.5, u"mi"_qs, u"#73FF99"_qs)) << QVariantMap{{u"radiusNM"_qs, 12.5}}
            << false << config(portland, 12.5, u"mi"_qs, u"#73FF99"_qs);

        QTest::newRow("no file") << QByteArray() << none << true << standard;
        QTest::newRow("not JSON") << QByteArray("{\"home\":") << none << true << standard;
        QTest::newRow("unit of the wrong type")
            << QByteArray(R"({"home":{"latitude":45.5,"longitude":-122.6,"label":"Portland"},"radiusNM":25,)"
                          R"("distanceUnit":1})")
            << none << true << standard;
        QTest::newRow("label differs")
            << bytes(config(HomeLocation(45.5, -122.6, u"Home"_qs), 25, u"mi"_qs, {})) << none << true
            << standard;
        QTest::newRow("latitude differs in the ninth decimal")
            << bytes(config(HomeLocation(45.500000001, -122.6, u"Portland"_qs), 25, {}, {})) << none << true
            << standard;
        QTest::newRow("radius differs") << bytes(standard) << QVariantMap{{u"radiusNM"_qs, 30}} << true
                                        << config(portland, 30, u"mi"_qs, u"#73FF99"_qs);
        QTest::newRow("unit differs") << bytes(standard) << QVariantMap{{u"distanceUnit"_qs, u"km"_qs}}
                                      << true << config(portland, 25, u"km"_qs, u"#73FF99"_qs);
        QTest::newRow("colour differs")
            << bytes(config(portland, 25, {}, {})) << QVariantMap{{u"widgetColorHex"_qs, u"#FF0000"_qs}}
            << true << config(portland, 25, u"mi"_qs, u"#FF0000"_qs);
        QTest::newRow("colour differs in case only")
            << bytes(config(portland, 25, u"mi"_qs, u"#73ff99"_qs)) << none << true << standard;
    }

    void launch()
    {
        QFETCH(QByteArray, file);
        QFETCH(QVariantMap, settings);
        QFETCH(bool, rewritten);
        QFETCH(Config, expected);

        h().storeHome(portland);
        for (auto it = settings.cbegin(); it != settings.cend(); ++it)
            h().defaults().setValue(it.key(), it.value());
        if (!file.isNull())
            writeFile(h().widgetFile(), file);
        const FileState before = stateOf(h().widgetFile());

        h().makeStore();
        QCOMPARE(h().reloads(), rewritten ? 1 : 0);
        const FileState after = stateOf(h().widgetFile());
        if (rewritten) {
            QVERIFY(after.modifiedNs != before.modifiedNs);
            QCOMPARE(after.content, SharedState::encode(expected));
        } else {
            QVERIFY(after == before);
        }
        // What the widgets take from the file, absent unit and colour standing for their defaults.
        auto read = SharedState::read();
        QVERIFY(read);
        read->distanceUnit = read->distanceUnit.value_or(u"mi"_qs);
        read->widgetColorHex = read->widgetColorHex.value_or(u"#73FF99"_qs);
        QCOMPARE(*read, expected);
        QVERIFY(h().waitForOutcomes(1));
    }

    void launchWithoutHome_data()
    {
        QTest::addColumn<QVariant>("storedHome");
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<bool>("removed");
        QTest::addColumn<int>("reloads");

        const QByteArray stale = SharedState::encode(config(portland, 25, u"mi"_qs, u"#73FF99"_qs));
        QTest::newRow("no file") << QVariant() << QByteArray() << false << 0;
        QTest::newRow("stale file") << QVariant() << stale << true << 1;
        QTest::newRow("stale file, corrupt home")
            << QVariant(QByteArray("{\"latitude\":")) << stale << true << 1;
        // A file that doesn't read as a configuration counts as no file.
        QTest::newRow("unreadable file") << QVariant() << QByteArray("garbage") << false << 0;
    }

    void launchWithoutHome()
    {
        QFETCH(QVariant, storedHome);
        QFETCH(QByteArray, file);
        QFETCH(bool, removed);
        QFETCH(int, reloads);

        if (storedHome.isValid())
            h().defaults().setValue(u"homeLocation"_qs, storedHome);
        if (!file.isNull())
            writeFile(h().widgetFile(), file);
        const FileState before = stateOf(h().widgetFile());

        FlightStore &store = h().makeStore();
        QVERIFY(!store.home());
        QCOMPARE(h().reloads(), reloads);
        if (removed)
            QVERIFY(!QFile::exists(h().widgetFile()));
        else
            QVERIFY(stateOf(h().widgetFile()) == before);
        // Again, now with nothing left to remove.
        store.shareWithWidgets();
        QCOMPARE(h().reloads(), reloads);
        QCOMPARE(h().started().size(), 0);
    }

    void forgettingTheHome()
    {
        FlightStore &store = launchedAtPortland(
            {StoreHarness::row(u"a"_qs, 45.6, -122.7, 1), StoreHarness::row(u"b"_qs, 45.7, -122.8, 2)});
        store.setSelectedHex(u"a"_qs);
        h().queuePrimary(StoreHarness::status(500));
        h().queueFallback(StoreHarness::status(500));
        QVERIFY(h().refresh().startsWith(u"failed"_qs));
        const qsizetype started = h().started().size();
        QSignalSpy homeChanged(&store, &FlightStore::homeChanged);

        store.forgetHome();
        QVERIFY(!store.home());
        QCOMPARE(homeChanged.count(), 1);
        QVERIFY(!h().defaults().contains(u"homeLocation"_qs));
        QFile settings(h().settingsFile());
        QVERIFY(settings.open(QIODevice::ReadOnly));
        QVERIFY(!settings.readAll().contains("homeLocation"));
        QVERIFY(!QFile::exists(h().widgetFile()));
        QCOMPARE(h().reloads(), 2); // the launch wrote the file, forgetting removed it
        QVERIFY(store.aircraft().isEmpty());
        QCOMPARE(store.displayedModel()->rowCount(), 0);
        QCOMPARE(store.selectedHex(), std::nullopt);
        QCOMPARE(store.lastUpdated(), std::nullopt);
        QCOMPARE(store.lastError(), std::nullopt);
        QCOMPARE(store.activeSource(), std::optional(u"adsb.lol"_qs));
        QCOMPARE(h().started().size(), started);

        // Forgetting again finds nothing to remove.
        store.forgetHome();
        QCOMPARE(h().reloads(), 2);
        QCOMPARE(h().started().size(), started);
    }

    void assigningTheSameHomeAgain()
    {
        FlightStore &store = launchedAtPortland(
            {StoreHarness::row(u"a"_qs, 45.6, -122.7, 1), StoreHarness::row(u"b"_qs, 45.7, -122.8, 2)});
        store.setSelectedHex(u"a"_qs);
        h().queuePrimary(StoreHarness::status(500));
        h().queueFallback(StoreHarness::status(500));
        QVERIFY(h().refresh().startsWith(u"failed"_qs));
        const FileState before = stateOf(h().widgetFile());
        const int reloads = h().reloads();
        const qsizetype started = h().started().size();
        const auto trails = store.trails();

        h().queuePrimary({StoreHarness::row(u"c"_qs, 45.6, -122.7, 1)}, true);
        store.setHome(portland);
        QVERIFY(store.aircraft().isEmpty());
        QCOMPARE(store.displayedModel()->rowCount(), 0);
        QCOMPARE(store.selectedHex(), std::nullopt);
        QCOMPARE(store.lastUpdated(), std::nullopt);
        QCOMPARE(store.lastError(), std::nullopt);
        QCOMPARE(store.activeSource(), std::optional(u"adsb.lol"_qs));
        // Trails wait for the next list.
        QCOMPARE(store.trails(), trails);
        QCOMPARE(h().started().size(), started + 1);
        QVERIFY(stateOf(h().widgetFile()) == before);
        QCOMPARE(h().reloads(), reloads);

        QVERIFY(h().waitForRequests(h().server().requests().size() + 1));
        h().server().release();
        QVERIFY(h().waitForOutcomes(3));
        QCOMPARE(h().outcomes().constLast(), u"applied adsb.lol c"_qs);
        QCOMPARE(QStringList(store.trails().keys()), QStringList({u"c"_qs}));
    }

    void changesAfterLaunch_data()
    {
        QTest::addColumn<QString>("change");
        QTest::addColumn<bool>("rewritten");
        QTest::addColumn<bool>("fetches");
        QTest::addColumn<Config>("expected");

        const Config standard = config(portland, 25, u"mi"_qs, u"#73FF99"_qs);
        QTest::newRow("label") << u"label"_qs << true << true
                               << config(HomeLocation(45.5, -122.6, u"Home"_qs), 25, u"mi"_qs, u"#73FF99"_qs);
        QTest::newRow("coordinates") << u"coordinates"_qs << true << true
                                     << config(HomeLocation(47.6, -122.3, u"Portland"_qs), 25, u"mi"_qs,
                                               u"#73FF99"_qs);
        QTest::newRow("radius") << u"radius 30"_qs << true << true
                                << config(portland, 30, u"mi"_qs, u"#73FF99"_qs);
        QTest::newRow("radius 7.25") << u"radius 7.25"_qs << true << true
                                     << config(portland, 7.25, u"mi"_qs, u"#73FF99"_qs);
        QTest::newRow("same radius") << u"radius 25"_qs << false << true << standard;
        QTest::newRow("unit") << u"unit km"_qs << true << false
                              << config(portland, 25, u"km"_qs, u"#73FF99"_qs);
        QTest::newRow("unit set to its default") << u"unit mi"_qs << false << false << standard;
        QTest::newRow("colour") << u"colour #FF8800"_qs << true << false
                                << config(portland, 25, u"mi"_qs, u"#FF8800"_qs);
    }

    void changesAfterLaunch()
    {
        QFETCH(QString, change);
        QFETCH(bool, rewritten);
        QFETCH(bool, fetches);
        QFETCH(Config, expected);

        FlightStore &store = launchedAtPortland();
        QCOMPARE(h().reloads(), 1);
        const FileState before = stateOf(h().widgetFile());
        const qsizetype started = h().started().size();

        const QString value = change.section(u' ', 1);
        if (change == u"label")
            store.setHomeLocation(45.5, -122.6, u"Home"_qs);
        else if (change == u"coordinates")
            store.setHomeLocation(47.6, -122.3, u"Portland"_qs);
        else if (change.startsWith(u"radius"))
            store.setRadiusNM(value.toDouble());
        else if (change.startsWith(u"unit"))
            h().defaults().setValue(u"distanceUnit"_qs, value);
        else if (change.startsWith(u"colour"))
            h().defaults().setValue(u"widgetColorHex"_qs, value);
        // The settings view tells the store of unit and colour; the store doesn't watch them itself.
        if (change.startsWith(u"unit") || change.startsWith(u"colour")) {
            QCOMPARE(h().reloads(), 1);
            store.shareWithWidgets();
        }

        QCOMPARE(h().reloads(), rewritten ? 2 : 1);
        const FileState after = stateOf(h().widgetFile());
        if (rewritten)
            QCOMPARE(after.content, SharedState::encode(expected));
        else
            QVERIFY(after == before);
        QCOMPARE(SharedState::read(), std::optional(expected));
        QCOMPARE(h().started().size() - started, fetches ? 1 : 0);
        if (change.startsWith(u"radius"))
            QCOMPARE(h().defaults().doubleValue(u"radiusNM"_qs), std::optional(value.toDouble()));
        if (fetches)
            QVERIFY(h().waitForOutcomes(2));
    }

    void aFailedWriteIsTriedAgainAtTheNextChange()
    {
        FlightStore &store = h().makeStore();
        // A folder where the file should be: the write can't happen.
        QVERIFY(QDir().mkpath(h().widgetFile()));
        store.setHome(portland);
        QCOMPARE(SharedState::read(), std::nullopt);
        QVERIFY(QDir(h().widgetFile()).removeRecursively());
        store.setRadiusNM(30);
        QCOMPARE(SharedState::read(), std::optional(config(portland, 30, u"mi"_qs, u"#73FF99"_qs)));
    }

    void reloadWithoutABusIsStillAnnounced()
    {
        QSignalSpy requested(&h().reloader(), &WidgetReloader::reloadRequested);
        QCOMPARE(h().reloader().reloadAllTimelines(), false);
        QCOMPARE(requested.count(), 1);
    }
};

QTEST_GUILESS_MAIN(FlightStoreWidgetFileTest)
#include "FlightStoreWidgetFileTest.moc"
