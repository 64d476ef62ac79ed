#include "WidgetReloader.h"
#include "PrivateSessionBus.h"

#include <QDBusConnection>
#include <QSignalSpy>
#include <QTest>
#include <memory>

// Stands for the widget program: listens for the reload signal on the bus.
class ReloadListener : public QObject
{
    Q_OBJECT

public:
    explicit ReloadListener(QObject *parent = nullptr) : QObject(parent) {}

signals:
    void heard();

public slots:
    void onReload() { emit heard(); }
};

class WidgetReloaderTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<PrivateSessionBus> m_bus;

private slots:
    // A session bus of the test's own, so nothing reaches the desktop it runs on.
    void initTestCase()
    {
        m_bus = std::make_unique<PrivateSessionBus>();
        if (!m_bus->isRunning())
            QSKIP(qPrintable(u"no private session bus: "_qs + m_bus->errorString()));
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus->address().toUtf8());
    }

    void reloadReachesAListenerOnTheBus()
    {
        QDBusConnection listenerBus = m_bus->connect(u"listener"_qs);
        QVERIFY(listenerBus.isConnected());
        ReloadListener listener;
        QVERIFY(listenerBus.connect(QString(), WidgetReloader::path.toString(),
                                    WidgetReloader::interface.toString(), WidgetReloader::signal.toString(),
                                    &listener, SLOT(onReload())));
        // The daemon has taken the listener's match rule before anything is sent.
        QVERIFY(PrivateSessionBus::settle(listenerBus));
        QSignalSpy heard(&listener, &ReloadListener::heard);

        WidgetReloader reloader;
        QSignalSpy requested(&reloader, &WidgetReloader::reloadRequested);
        QVERIFY(reloader.reloadAllTimelines());
        QCOMPARE(requested.count(), 1);
        QVERIFY(heard.wait(10000));
        QCOMPARE(heard.count(), 1);
    }
};

QTEST_GUILESS_MAIN(WidgetReloaderTest)
#include "WidgetReloaderTest.moc"
