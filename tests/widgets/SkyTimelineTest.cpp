#include "SkyTimeline.h"
#include "FaultPlan.h"
#include "PrivateSessionBus.h"
#include "SharedState.h"
#include "SkySimulator.h"
#include "WidgetReloader.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

namespace {

constexpr int waitMs = 10000;
const HomeLocation seattle(47.6062, -122.3321, u"Seattle"_qs);
const HomeLocation portland(45.5152, -122.6784, u"Portland"_qs);

// Each reading of the clock is a minute after the one before, so every new entry has a date of its own.
SkyTimeline::Clock steppingClock()
{
    auto minutes = std::make_shared<int>(0);
    return [minutes] { return QDateTime(QDate(2024, 5, 1), QTime(12, 0)).addSecs(60 * (*minutes)++); };
}

bool nearestFirst(const QList<Aircraft> &aircraft)
{
    for (qsizetype i = 1; i < aircraft.size(); ++i) {
        if (aircraft[i].distanceNM().value_or(1e9) < aircraft[i - 1].distanceNM().value_or(1e9))
            return false;
    }
    return true;
}

} // namespace

class SkyTimelineTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void withoutFileAsksForSetupAndFetchesNothing();
    void fileChangesRefetchForTheNewSky();
    void fileInAFolderMadeLaterIsSeen();
    void reloadSignalOnTheBusRefetches();
    void refreshesOnItsOwnSchedule();
    void failedFetchKeepsWhatWasShown();

private:
    [[nodiscard]] std::unique_ptr<SkyTimeline> timeline(const QString &connectionName);
    [[nodiscard]] int requests() const { return m_sky->sources().requestCount(u"primary"_qs); }
    [[nodiscard]] QString lastTarget() const { return m_sky->sources().lastTarget(u"primary"_qs); }

    QTemporaryDir m_dirs;
    std::unique_ptr<PrivateSessionBus> m_bus;
    std::unique_ptr<SkySimulator> m_sky;
    int m_connections = 0;
};

void SkyTimelineTest::initTestCase()
{
    QVERIFY(m_dirs.isValid());
    qputenv("XDG_DATA_HOME", m_dirs.filePath(u"data"_qs).toUtf8());
    qputenv("XDG_CONFIG_HOME", m_dirs.filePath(u"config"_qs).toUtf8());

    SkySimOptions options;
    options.port = 0;
    options.frozen = true;
    options.startEpochMs = 1'700'000'000'000;
    options.count = 40;
    m_sky = std::make_unique<SkySimulator>(options);
    QVERIFY2(m_sky->listen(0), qPrintable(m_sky->errorString()));
    qputenv("AEROLUME_PRIMARY_FEED_URL", m_sky->baseUrl().toUtf8());
    qputenv("AEROLUME_FALLBACK_FEED_URL", m_sky->baseUrl().toUtf8());

    // The application's reload goes out on the session bus: here, the test's own.
    m_bus = std::make_unique<PrivateSessionBus>();
    QVERIFY2(m_bus->isRunning(), qPrintable(m_bus->errorString()));
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus->address().toUtf8());
}

void SkyTimelineTest::init()
{
    QDir(SharedState::directory()).removeRecursively();
    m_sky->sources().reset();
}

std::unique_ptr<SkyTimeline> SkyTimelineTest::timeline(const QString &connectionName)
{
    return std::make_unique<SkyTimeline>(m_bus->connect(connectionName + QString::number(++m_connections)),
                                         steppingClock());
}

void SkyTimelineTest::withoutFileAsksForSetupAndFetchesNothing()
{
    auto sky = timeline(u"widgets"_qs);
    QSignalSpy refreshed(sky.get(), &SkyTimeline::refreshed);
    sky->start();
    QCOMPARE(refreshed.count(), 1);
    QVERIFY(sky->entry().needsSetup());
    QVERIFY(!sky->entry().isSample());
    QCOMPARE(sky->entry().count(), 0);
    QCOMPARE(requests(), 0);
}

void SkyTimelineTest::fileChangesRefetchForTheNewSky()
{
    SharedState::write({seattle, 25, u"km"_qs, u"#FF8A00"_qs});
    auto sky = timeline(u"widgets"_qs);
    QSignalSpy refreshed(sky.get(), &SkyTimeline::refreshed);
    sky->start();
    QVERIFY(refreshed.wait(waitMs));
    SkyEntry entry = sky->entry();
    QCOMPARE(entry.home(), std::optional(seattle));
    QCOMPARE(entry.radiusNM(), 25.0);
    QCOMPARE(entry.unit(), u"km"_qs);
    QCOMPARE(entry.accentHex(), std::optional<QString>(u"#FF8A00"_qs));
    QVERIFY(!entry.isSample());
    QVERIFY(entry.count() > 0);
    QVERIFY(nearestFirst(entry.aircraft()));
    QCOMPARE(requests(), 1);
    QVERIFY2(lastTarget().contains(u"/v2/point/47.60620/-122.33210/25"_qs), qPrintable(lastTarget()));

    // The application moves home and widens the radius: the file changes, the widgets follow.
    SharedState::write({portland, 40, std::nullopt, std::nullopt});
    QVERIFY(refreshed.wait(waitMs));
    entry = sky->entry();
    QCOMPARE(entry.home(), std::optional(portland));
    QCOMPARE(entry.radiusNM(), 40.0);
    QCOMPARE(entry.unit(), u"mi"_qs);
    QCOMPARE(entry.accentHex(), std::nullopt);
    QVERIFY(entry.count() > 0);
    QVERIFY2(lastTarget().contains(u"/v2/point/45.51520/-122.67840/40"_qs), qPrintable(lastTarget()));
    const int afterMove = requests();
    QCOMPARE(afterMove, 2);

    // Home forgotten: the file goes, the faces ask for a home again, and nothing is fetched.
    SharedState::clear();
    QVERIFY(refreshed.wait(waitMs));
    QVERIFY(sky->entry().needsSetup());
    QCOMPARE(sky->entry().count(), 0);
    QCOMPARE(requests(), afterMove);

    // And a home set again is seen again.
    SharedState::write({seattle, 10, std::nullopt, std::nullopt});
    QVERIFY(refreshed.wait(waitMs));
    QCOMPARE(sky->entry().home(), std::optional(seattle));
    QCOMPARE(requests(), afterMove + 1);
}

void SkyTimelineTest::fileInAFolderMadeLaterIsSeen()
{
    // The application has never run: not even its folder exists.
    QVERIFY(!QDir(SharedState::directory()).exists());
    auto sky = timeline(u"widgets"_qs);
    QSignalSpy refreshed(sky.get(), &SkyTimeline::refreshed);
    sky->start();
    QCOMPARE(refreshed.count(), 1);
    QVERIFY(sky->entry().needsSetup());

    SharedState::write({portland, 25, std::nullopt, std::nullopt});
    QTRY_VERIFY_WITH_TIMEOUT(sky->entry().hasHome() && sky->entry().count() > 0, waitMs);
    QCOMPARE(sky->entry().home(), std::optional(portland));
}

void SkyTimelineTest::reloadSignalOnTheBusRefetches()
{
    SharedState::write({seattle, 25, std::nullopt, std::nullopt});
    auto sky = timeline(u"widgets"_qs);
    QSignalSpy refreshed(sky.get(), &SkyTimeline::refreshed);
    sky->start();
    QVERIFY(sky->isListening());
    QVERIFY(refreshed.wait(waitMs));
    const QDateTime firstDate = sky->entry().date();
    const int before = requests();
    // The daemon holds the timeline's match rule before anything is sent.
    QVERIFY(PrivateSessionBus::settle(m_bus->connect(u"settle"_qs + QString::number(++m_connections))));

    // The file is untouched: only the application's request can cause this refresh.
    WidgetReloader application;
    QVERIFY(application.reloadAllTimelines());
    QVERIFY(refreshed.wait(waitMs));
    QCOMPARE(requests(), before + 1);
    QVERIFY(sky->entry().date() > firstDate);
    QCOMPARE(sky->entry().home(), std::optional(seattle));
}

void SkyTimelineTest::refreshesOnItsOwnSchedule()
{
    SharedState::write({seattle, 25, std::nullopt, std::nullopt});
    auto sky = timeline(u"widgets"_qs);
    QCOMPARE(sky->refreshInterval(), 5 * 60 * 1000);
    sky->setRefreshInterval(50);
    QSignalSpy refreshed(sky.get(), &SkyTimeline::refreshed);
    sky->start();
    QVERIFY(refreshed.wait(waitMs));
    const int first = requests();
    QVERIFY(refreshed.wait(waitMs));
    QVERIFY(requests() > first);
}

void SkyTimelineTest::failedFetchKeepsWhatWasShown()
{
    SharedState::write({seattle, 25, std::nullopt, std::nullopt});
    auto sky = timeline(u"widgets"_qs);
    QSignalSpy refreshed(sky.get(), &SkyTimeline::refreshed);
    sky->start();
    QVERIFY(refreshed.wait(waitMs));
    const SkyEntry shown = sky->entry();
    QVERIFY(shown.count() > 0);

    m_sky->sources().setFault(u"primary"_qs, *FaultPlan::parse(u"status:503"));
    m_sky->sources().setFault(u"fallback"_qs, *FaultPlan::parse(u"badjson"));
    QSignalSpy changed(sky.get(), &SkyTimeline::entryChanged);
    sky->reload();
    QVERIFY(refreshed.wait(waitMs));
    QCOMPARE(m_sky->sources().requestCount(u"fallback"_qs), 1);
    QCOMPARE(sky->entry(), shown);
    QCOMPARE(changed.count(), 0);
}

QTEST_GUILESS_MAIN(SkyTimelineTest)
#include "SkyTimelineTest.moc"
