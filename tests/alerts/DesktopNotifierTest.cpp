#include "DesktopNotifier.h"
#include "FakeNotificationServer.h"
#include "PrivateSessionBus.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace {

const QString markupBody = u"Cessna 172 <Skyhawk> & \"Co\""_qs;
const QString escapedBody = u"Cessna 172 &lt;Skyhawk&gt; &amp; &quot;Co&quot;"_qs;
const QString title = u"Watchlist: A&B <1>"_qs;

} // namespace

class DesktopNotifierTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void bodyFollowsTheServiceCapabilities_data();
    void bodyFollowsTheServiceCapabilities();
    void notificationCarriesTheApplication();
    void postsKeepTheirOrderWhileTheServiceIsAsked();
    void clickBecomesSignal_data();
    void clickBecomesSignal();
    void onlyOwnNotificationsAndTheDefaultAction();
    void signalsFromAnotherSenderAreIgnored();
    void closedNotificationIsForgotten();
    void serviceThatStartsLater();
    void noServiceIsSilent();

private:
    // Posts one notification and waits until the service gave it its id.
    uint postAndWait(DesktopNotifier &notifier, const QString &hex, const QString &body = markupBody);
    // Sends a click on the given id and waits until the notifier has reported it.
    bool clickAndWait(QSignalSpy &clicks, uint id);

    std::unique_ptr<PrivateSessionBus> m_bus;
    std::unique_ptr<FakeNotificationServer> m_server;
    QDBusConnection m_appBus{QString()};
    std::unique_ptr<DesktopNotifier> m_notifier;
    int m_connections = 0;
};

void DesktopNotifierTest::initTestCase()
{
    m_bus = std::make_unique<PrivateSessionBus>();
    QVERIFY2(m_bus->isRunning(), qPrintable(m_bus->errorString()));
    m_server = std::make_unique<FakeNotificationServer>();
    QVERIFY(m_server->registerOn(m_bus->connect(u"notification-service"_qs)));
}

void DesktopNotifierTest::init()
{
    m_server->setCapabilities({u"actions"_qs, u"body"_qs, u"body-markup"_qs});
    m_appBus = m_bus->connect(u"app-%1"_qs.arg(++m_connections));
    m_notifier = std::make_unique<DesktopNotifier>(m_appBus);
}

void DesktopNotifierTest::cleanup()
{
    m_notifier.reset();
}

uint DesktopNotifierTest::postAndWait(DesktopNotifier &notifier, const QString &hex, const QString &body)
{
    QSignalSpy posted(&notifier, &DesktopNotifier::posted);
    notifier.post(title, body, hex, u"emergency-"_qs + hex + u"-1795000000"_qs);
    if (!posted.wait(5000))
        return 0;
    return posted.constFirst().at(0).toUInt();
}

bool DesktopNotifierTest::clickAndWait(QSignalSpy &clicks, uint id)
{
    const qsizetype before = clicks.size();
    m_server->sendActionInvoked(id, u"default"_qs);
    while (clicks.size() == before) {
        if (!clicks.wait(5000))
            return false;
    }
    return true;
}

void DesktopNotifierTest::bodyFollowsTheServiceCapabilities_data()
{
    QTest::addColumn<QStringList>("capabilities");
    QTest::addColumn<bool>("beforeTheAnswer");
    QTest::addColumn<QString>("expectedBody");

    const QStringList markup{u"actions"_qs, u"body"_qs, u"body-markup"_qs};
    const QStringList plain{u"actions"_qs, u"body"_qs};
    QTest::newRow("markup, posted at once") << markup << true << escapedBody;
    QTest::newRow("markup, posted later") << markup << false << escapedBody;
    QTest::newRow("plain, posted at once") << plain << true << markupBody;
    QTest::newRow("plain, posted later") << plain << false << markupBody;
}

void DesktopNotifierTest::bodyFollowsTheServiceCapabilities()
{
    QFETCH(QStringList, capabilities);
    QFETCH(bool, beforeTheAnswer);
    QFETCH(QString, expectedBody);

    m_server->setCapabilities(capabilities);
    const QDBusConnection bus = m_bus->connect(u"app-%1"_qs.arg(++m_connections));
    DesktopNotifier notifier(bus);
    if (!beforeTheAnswer)
        QVERIFY(PrivateSessionBus::settle(bus));
    const qsizetype before = m_server->notifications().size();
    QVERIFY(postAndWait(notifier, u"3c6444"_qs) != 0);
    QCOMPARE(m_server->notifications().size(), before + 1);
    QCOMPARE(m_server->notifications().constLast().body, expectedBody);
    // The summary is plain text in every service.
    QCOMPARE(m_server->notifications().constLast().summary, title);
}

void DesktopNotifierTest::notificationCarriesTheApplication()
{
    QVERIFY(PrivateSessionBus::settle(m_appBus));
    const uint id = postAndWait(*m_notifier, u"3c6444"_qs, u"plain"_qs);
    QVERIFY(id != 0);
    const FakeNotificationServer::Notification &sent = m_server->notifications().constLast();
    QCOMPARE(sent.id, id);
    QCOMPARE(sent.appName, u"Aerolume"_qs);
    QCOMPARE(sent.replacesId, 0u);
    QCOMPARE(sent.appIcon, u"aerolume"_qs);
    QCOMPARE(sent.summary, title);
    QCOMPARE(sent.body, u"plain"_qs);
    QVERIFY(sent.actions.size() >= 2);
    QCOMPARE(sent.actions.size() % 2, 0);
    QCOMPARE(sent.actions.at(0), u"default"_qs);
    QCOMPARE(sent.hints.value(u"desktop-entry"_qs).toString(), u"aerolume"_qs);
    QCOMPARE(m_notifier->hexFor(id).value_or(QString()), u"3c6444"_qs);
}

void DesktopNotifierTest::postsKeepTheirOrderWhileTheServiceIsAsked()
{
    // The notifier has just asked for the capabilities; the service has not yet seen the question.
    const int queriesBefore = m_server->capabilityQueries();
    const qsizetype before = m_server->notifications().size();
    QSignalSpy posted(m_notifier.get(), &DesktopNotifier::posted);
    const QStringList hexes{u"000001"_qs, u"000002"_qs, u"000003"_qs};
    for (const QString &hex : hexes)
        m_notifier->post(hex, markupBody, hex, hex);
    while (posted.size() < hexes.size())
        QVERIFY(posted.wait(5000));
    QStringList summaries;
    for (qsizetype i = before; i < m_server->notifications().size(); ++i) {
        summaries.append(m_server->notifications()[i].summary);
        QCOMPARE(m_server->notifications()[i].body, escapedBody);
    }
    QCOMPARE(summaries, hexes);
    // One question is enough for all three.
    QCOMPARE(m_server->capabilityQueries(), queriesBefore + 1);
}

void DesktopNotifierTest::clickBecomesSignal_data()
{
    QTest::addColumn<QString>("token");
    QTest::newRow("with an activation token") << u"xdg-token-42"_qs;
    QTest::newRow("without a token") << QString();
}

void DesktopNotifierTest::clickBecomesSignal()
{
    QFETCH(QString, token);

    const uint id = postAndWait(*m_notifier, u"a499c3"_qs);
    QVERIFY(id != 0);
    QSignalSpy clicks(m_notifier.get(), &DesktopNotifier::notificationClicked);
    if (!token.isNull())
        m_server->sendActivationToken(id, token);
    QVERIFY(clickAndWait(clicks, id));
    QCOMPARE(clicks.size(), 1);
    QCOMPARE(clicks.at(0).at(0).toString(), u"a499c3"_qs);
    QCOMPARE(clicks.at(0).at(1).toString(), token.isNull() ? QString() : token);

    // A token belongs to one click: a second click without one carries none.
    QVERIFY(clickAndWait(clicks, id));
    QCOMPARE(clicks.at(1).at(0).toString(), u"a499c3"_qs);
    QCOMPARE(clicks.at(1).at(1).toString(), QString());
}

void DesktopNotifierTest::onlyOwnNotificationsAndTheDefaultAction()
{
    const uint first = postAndWait(*m_notifier, u"a499c3"_qs);
    const uint second = postAndWait(*m_notifier, u"3c6444"_qs);
    QVERIFY(first != 0 && second != 0 && first != second);
    QSignalSpy clicks(m_notifier.get(), &DesktopNotifier::notificationClicked);

    // Another program's notification, a token for it, and another action of ours: none is a click of ours.
    const uint foreign = second + 1000;
    m_server->sendActivationToken(foreign, u"foreign-token"_qs);
    m_server->sendActionInvoked(foreign, u"default"_qs);
    m_server->sendActionInvoked(first, u"Show"_qs);
    m_server->sendActionInvoked(first, u"snooze"_qs);
    // The signals come in the order sent, so once this click is in, the ones before have been handled.
    QVERIFY(clickAndWait(clicks, second));
    QCOMPARE(clicks.size(), 1);
    QCOMPARE(clicks.at(0).at(0).toString(), u"3c6444"_qs);
    QCOMPARE(clicks.at(0).at(1).toString(), QString());

    QVERIFY(clickAndWait(clicks, first));
    QCOMPARE(clicks.size(), 2);
    QCOMPARE(clicks.at(1).at(0).toString(), u"a499c3"_qs);
}

void DesktopNotifierTest::signalsFromAnotherSenderAreIgnored()
{
    const uint id = postAndWait(*m_notifier, u"a499c3"_qs);
    QVERIFY(id != 0);
    QSignalSpy clicks(m_notifier.get(), &DesktopNotifier::notificationClicked);

    // A program that does not own the service's name sends the same signals on the same path.
    FakeNotificationServer impostor;
    QDBusConnection impostorBus = m_bus->connect(u"impostor-%1"_qs.arg(++m_connections));
    QVERIFY(impostorBus.registerObject(u"/org/freedesktop/Notifications"_qs, &impostor,
                                       QDBusConnection::ExportScriptableSignals));
    impostor.sendActivationToken(id, u"stolen"_qs);
    impostor.sendActionInvoked(id, u"default"_qs);
    QVERIFY(PrivateSessionBus::settle(impostorBus));
    QVERIFY(PrivateSessionBus::settle(m_appBus));
    QCOMPARE(clicks.size(), 0);

    QVERIFY(clickAndWait(clicks, id));
    QCOMPARE(clicks.size(), 1);
    QCOMPARE(clicks.at(0).at(1).toString(), QString());
}

void DesktopNotifierTest::closedNotificationIsForgotten()
{
    const uint closed = postAndWait(*m_notifier, u"a499c3"_qs);
    const uint open = postAndWait(*m_notifier, u"3c6444"_qs);
    QVERIFY(closed != 0 && open != 0);
    QSignalSpy clicks(m_notifier.get(), &DesktopNotifier::notificationClicked);

    // A click on the default action, then the close that follows it, as services send them.
    m_server->sendActivationToken(closed, u"token-1"_qs);
    QVERIFY(clickAndWait(clicks, closed));
    m_server->sendNotificationClosed(closed, 2);
    m_server->sendActionInvoked(closed, u"default"_qs);
    QVERIFY(clickAndWait(clicks, open));
    QCOMPARE(clicks.size(), 2);
    QCOMPARE(clicks.at(0).at(0).toString(), u"a499c3"_qs);
    QCOMPARE(clicks.at(0).at(1).toString(), u"token-1"_qs);
    QCOMPARE(clicks.at(1).at(0).toString(), u"3c6444"_qs);
    QVERIFY(!m_notifier->hexFor(closed));
    QCOMPARE(m_notifier->hexFor(open).value_or(QString()), u"3c6444"_qs);
}

void DesktopNotifierTest::serviceThatStartsLater()
{
    // The application starts before the desktop's notification service.
    PrivateSessionBus bus;
    QVERIFY2(bus.isRunning(), qPrintable(bus.errorString()));
    const QDBusConnection appBus = bus.connect(u"early-app"_qs);
    DesktopNotifier notifier(appBus);
    QVERIFY(PrivateSessionBus::settle(appBus));

    FakeNotificationServer lateServer;
    lateServer.setCapabilities({u"actions"_qs, u"body"_qs});
    QVERIFY(lateServer.registerOn(bus.connect(u"late-service"_qs)));
    QVERIFY(PrivateSessionBus::settle(appBus)); // the name's new owner is known to the application

    QSignalSpy posted(&notifier, &DesktopNotifier::posted);
    notifier.post(title, markupBody, u"a499c3"_qs, u"id"_qs);
    QVERIFY(posted.wait(5000));
    QCOMPARE(lateServer.notifications().size(), 1);
    QCOMPARE(lateServer.notifications().constFirst().body, markupBody);

    QSignalSpy clicks(&notifier, &DesktopNotifier::notificationClicked);
    lateServer.sendActionInvoked(posted.constFirst().at(0).toUInt(), u"default"_qs);
    QVERIFY(clicks.wait(5000));
    QCOMPARE(clicks.constFirst().at(0).toString(), u"a499c3"_qs);
}

void DesktopNotifierTest::noServiceIsSilent()
{
    PrivateSessionBus bus;
    QVERIFY2(bus.isRunning(), qPrintable(bus.errorString()));
    const QDBusConnection appBus = bus.connect(u"alone"_qs);
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    DesktopNotifier notifier(appBus);
    QSignalSpy posted(&notifier, &DesktopNotifier::posted);
    notifier.post(title, markupBody, u"a499c3"_qs, u"id-1"_qs);
    notifier.post(title, markupBody, u"3c6444"_qs, u"id-2"_qs);
    QVERIFY(PrivateSessionBus::settle(appBus));
    QVERIFY(PrivateSessionBus::settle(appBus));
    QCOMPARE(posted.size(), 0);

    // Not even a bus: nothing happens, nothing is said.
    DesktopNotifier unconnected(QDBusConnection(u"never-connected"_qs));
    unconnected.post(title, markupBody, u"a499c3"_qs, u"id-3"_qs);
    QVERIFY(!unconnected.hexFor(0));
}

QTEST_GUILESS_MAIN(DesktopNotifierTest)
#include "DesktopNotifierTest.moc"
