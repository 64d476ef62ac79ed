#include "AlertEngine.h"
#include "DefaultsStore.h"
#include "DesktopNotifier.h"
#include "FakeNotificationServer.h"
#include "FlightStore.h"
#include "LoopbackHttpServer.h"
#include "PrivateSessionBus.h"
#include "SightingLog.h"
#include "WidgetReloader.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

#include <memory>

namespace {

const QByteArray zone = "Europe/Berlin";
const HomeLocation home(52.5, 13.4, u"Home"_qs);

QJsonObject row(const QString &hex, const QJsonObject &extra = {})
{
    QJsonObject object{
        {u"hex"_qs, hex}, {u"lat"_qs, 52.51}, {u"lon"_qs, 13.41}, {u"dst"_qs, 0.7}, {u"seen_pos"_qs, 1.0}};
    for (auto it = extra.begin(); it != extra.end(); ++it)
        object.insert(it.key(), it.value());
    return object;
}

LoopbackHttpServer::Response feed(const QList<QJsonObject> &rows, bool hold = false)
{
    QJsonArray list;
    for (const QJsonObject &object : rows)
        list.append(object);
    LoopbackHttpServer::Response response;
    response.body = QJsonDocument(QJsonObject{{u"ac"_qs, list}}).toJson(QJsonDocument::Compact);
    response.hold = hold;
    return response;
}

} // namespace

// The flight store hands every applied list first to the alerts, only with a home, then to the logbook,
// also when the list is empty. Watched from outside: the engine's and the logbook's signals, in order.
class ApplyOrderTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void alertsBeforeLogbook();
    void emptyListStillReachesTheLogbook();
    void withoutHomeNothingIsEvaluated();
    void cleanupTestCase();

private:
    // Waits for the next applied refresh; false when none came.
    bool waitForApplied();

    QTemporaryDir m_root;
    std::unique_ptr<LoopbackHttpServer> m_server;
    QList<LoopbackHttpServer::Response> m_answers;
    std::unique_ptr<PrivateSessionBus> m_bus;
    std::unique_ptr<FakeNotificationServer> m_notifications;
    std::unique_ptr<DefaultsStore> m_defaults;
    std::unique_ptr<WidgetReloader> m_reloader;
    std::unique_ptr<DesktopNotifier> m_notifier;
    std::unique_ptr<AlertEngine> m_engine;
    std::unique_ptr<SightingLog> m_log;
    std::unique_ptr<FlightStore> m_store;
    QDateTime m_now;
    QStringList m_events;
};

void ApplyOrderTest::initTestCase()
{
    QVERIFY(m_root.isValid());
    for (const char *name :
         {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
        const QString dir = m_root.filePath(QString::fromLatin1(name).toLower());
        QVERIFY(QDir().mkpath(dir));
        qputenv(name, QFile::encodeName(dir));
    }
    // The widget reload goes to the session bus: a bus that isn't there.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + QFile::encodeName(m_root.filePath(u"no-bus"_qs)));

    m_server = std::make_unique<LoopbackHttpServer>();
    m_server->route("/", [this](const LoopbackHttpServer::Request &) {
        return m_answers.isEmpty() ? feed({}) : m_answers.takeFirst();
    });
    qputenv("AEROLUME_PRIMARY_FEED_URL", m_server->baseUrl().toUtf8());
    qputenv("AEROLUME_FALLBACK_FEED_URL", m_server->baseUrl().toUtf8());

    m_bus = std::make_unique<PrivateSessionBus>();
    QVERIFY2(m_bus->isRunning(), qPrintable(m_bus->errorString()));
    m_notifications = std::make_unique<FakeNotificationServer>();
    QVERIFY(m_notifications->registerOn(m_bus->connect(u"notification-service"_qs)));

    m_now = QDateTime(QDate(2026, 3, 10), QTime(23, 58), QTimeZone(zone));
    const auto clock = [this] { return m_now; };
    m_defaults = std::make_unique<DefaultsStore>(DefaultsStore::defaultFilePath());
    m_defaults->setValue(u"alertsEnabled"_qs, true);
    m_reloader = std::make_unique<WidgetReloader>();
    m_notifier = std::make_unique<DesktopNotifier>(m_bus->connect(u"app"_qs));
    m_engine = std::make_unique<AlertEngine>(m_defaults.get(), m_notifier.get(), clock);
    m_log = std::make_unique<SightingLog>(
        SightingLog::Dependencies{m_root.filePath(u"logbook.json"_qs), clock, QTimeZone(zone), 0});
    m_store = std::make_unique<FlightStore>(FlightStore::Dependencies{
        m_defaults.get(), m_reloader.get(), {}, clock, 0, true, m_engine.get(), m_log.get()});

    connect(m_engine.get(), &AlertEngine::alerted, this, [this](const AlertEngine::Alert &alert) {
        m_events.append(u"alert "_qs + alert.rule + u'-' + alert.hex);
    });
    connect(m_log.get(), &SightingLog::storeChanged, this, [this] { m_events.append(u"log"_qs); });
    connect(m_store.get(), &FlightStore::refreshApplied, this,
            [this](const QString &, int count) { m_events.append(u"applied %1"_qs.arg(count)); });
}

void ApplyOrderTest::cleanupTestCase()
{
    m_store.reset();
    m_log.reset();
    m_engine.reset();
    m_notifier.reset();
}

bool ApplyOrderTest::waitForApplied()
{
    QSignalSpy applied(m_store.get(), &FlightStore::refreshApplied);
    return applied.wait(10000);
}

void ApplyOrderTest::alertsBeforeLogbook()
{
    m_answers.append(feed({row(u"a499c3"_qs, {{u"squawk"_qs, u"7700"_qs}}), row(u"3c6444"_qs)}));
    m_events.clear();
    m_store->setHome(home);
    QVERIFY(waitForApplied());
    QCOMPARE(m_events, (QStringList{u"alert emergency-a499c3"_qs, u"log"_qs, u"applied 2"_qs}));
    QCOMPARE(m_log->store().seenHexes, (QSet<QString>{u"a499c3"_qs, u"3c6444"_qs}));
    QCOMPARE(m_log->store().days.value(u"2026-03-10"_qs).byHour[23], qint64(2));

    // The alert reached the desktop's notification service.
    QSignalSpy notified(m_notifications.get(), &FakeNotificationServer::notified);
    if (m_notifications->notifications().isEmpty())
        QVERIFY(notified.wait(5000));
    QCOMPARE(m_notifications->notifications().constFirst().summary, u"Emergency squawk 7700"_qs);
}

void ApplyOrderTest::emptyListStillReachesTheLogbook()
{
    // Past midnight nothing is near, and the logbook still moves on to the new day.
    m_now = QDateTime(QDate(2026, 3, 11), QTime(0, 0, 3), QTimeZone(zone));
    m_answers.append(feed({}));
    m_events.clear();
    m_store->fetchNow();
    QVERIFY(waitForApplied());
    QCOMPARE(m_events, (QStringList{u"log"_qs, u"applied 0"_qs}));
    QCOMPARE(m_log->store().seenDayKey, u"2026-03-11"_qs);
    QVERIFY(m_log->store().seenHexes.isEmpty());
    QVERIFY(!m_log->store().days.contains(u"2026-03-11"_qs));
}

void ApplyOrderTest::withoutHomeNothingIsEvaluated()
{
    // A refresh under way when the home is forgotten still comes in, with no home to measure from.
    QSignalSpy received(m_server.get(), &LoopbackHttpServer::requestReceived);
    m_answers.append(feed({row(u"4ca1b2"_qs, {{u"squawk"_qs, u"7600"_qs}})}, true));
    m_events.clear();
    m_store->fetchNow();
    QVERIFY(received.wait(10000));
    m_store->forgetHome();
    QVERIFY(!m_store->home());
    m_server->release();
    QVERIFY(waitForApplied());
    QCOMPARE(m_events, (QStringList{u"log"_qs, u"applied 1"_qs}));
    QVERIFY(!m_engine->lastAlerted().contains(u"emergency-4ca1b2"_qs));
    QVERIFY(m_log->store().seenHexes.contains(u"4ca1b2"_qs));
    QCOMPARE(m_log->store().days.value(u"2026-03-11"_qs).count, qint64(1));
}

QTEST_GUILESS_MAIN(ApplyOrderTest)
#include "ApplyOrderTest.moc"
