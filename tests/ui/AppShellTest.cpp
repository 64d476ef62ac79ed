#include "AppShell.h"
#include "DebugLog.h"
#include "DefaultsStore.h"
#include "DesktopNotifier.h"
#include "FakeNotificationServer.h"
#include "FlightStore.h"
#include "PrivateSessionBus.h"
#include "SingleInstance.h"
#include "SymbolImageProvider.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQmlListReference>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>
#include <memory>
#include <sys/stat.h>

Q_IMPORT_QML_PLUGIN(Aerolume_MapPlugin)
Q_IMPORT_QML_PLUGIN(Aerolume_CorePlugin)

namespace {

// Timers the test runs by hand: each scheduled task with its delay, in order.
struct ManualTimers
{
    QList<std::pair<int, std::function<void()>>> pending;

    AppShell::Scheduler scheduler()
    {
        return [this](int delayMs, std::function<void()> task) { pending.append({delayMs, std::move(task)}); };
    }
    [[nodiscard]] QList<int> delays() const
    {
        QList<int> result;
        for (const auto &entry : pending)
            result.append(entry.first);
        return result;
    }
    // Runs what is due now, including what those tasks schedule in turn.
    void runAll()
    {
        while (!pending.isEmpty())
            pending.takeFirst().second();
    }
};

QStringList linesOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    if (!lines.isEmpty() && lines.constLast().isEmpty())
        lines.removeLast();
    return lines;
}

// The messages of the log lines, without their date. A window list with no window leaves an empty line.
QStringList messagesOf(const QString &path)
{
    QStringList messages;
    for (const QString &line : linesOf(path)) {
        if (!line.isEmpty())
            messages.append(line.size() > 26 && line.at(4) == u'-' ? line.mid(26) : line);
    }
    return messages;
}

const QByteArray plainWindow = "import QtQuick\nWindow { width: 300; height: 200; color: \"#3366cc\"; title: \"Plain\" }\n";

// Stands in for the browser: the links the menus open.
class UrlCatcher : public QObject
{
    Q_OBJECT

public:
    QStringList urls;

public slots:
    void open(const QUrl &url) { urls.append(url.toString()); }
};

} // namespace

// The application shell with real windows (offscreen), a real log file, a private D-Bus for the
// notification clicks and a local socket for the second launch; the clock and the timers are the test's.
class AppShellTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<DebugLog> m_log;
    std::unique_ptr<AppShell> m_shell;
    ManualTimers m_timers;
    QDateTime m_now;
    QString m_logPath;
    QString m_shots;
    QUrl m_plainUrl;

    FlightStore *store() { return FlightStore::shared(); }
    QString selection() { return store()->selectedHex().value_or(QString()); }

    void makeShell(const QUrl &fallbackUrl = {})
    {
        m_shell.reset();
        m_timers.pending.clear();
        AppShell::Options options;
        options.now = [this] { return m_now; };
        options.schedule = m_timers.scheduler();
        options.log = m_log.get();
        options.store = store();
        options.mainWindowUrl = m_plainUrl;
        options.fallbackUrl = fallbackUrl.isEmpty() ? m_plainUrl : fallbackUrl;
        options.shotsDirectory = m_shots;
        m_shell = std::make_unique<AppShell>(m_engine.get(), options);
    }

    QStringList messages() const { return messagesOf(m_logPath); }

    // A window of the test's own, shown.
    std::unique_ptr<QQuickWindow> showWindow(const QString &title)
    {
        auto window = std::make_unique<QQuickWindow>();
        window->setTitle(title);
        window->resize(300, 200);
        window->setColor(QColor(0x33, 0x66, 0xcc));
        window->show();
        return window;
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        for (const char *variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR", "XDG_CACHE_HOME"})
            qputenv(variable, m_dir.filePath(QString::fromLatin1(variable)).toUtf8());
        for (const char *variable : {"AEROLUME_PRIMARY_FEED_URL", "AEROLUME_FALLBACK_FEED_URL"})
            qputenv(variable, "http://127.0.0.1:9");
        for (const char *variable : {"AEROLUME_TILE_URL_STANDARD", "AEROLUME_TILE_URL_IMAGERY", "AEROLUME_TILE_URL_LABELS"})
            qputenv(variable, "http://127.0.0.1:9/{z}/{x}/{y}.png");
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
        QQuickStyle::setStyle(u"Fusion"_qs);
        QFile plain(m_dir.filePath(u"Plain.qml"_qs));
        QVERIFY(plain.open(QIODevice::WriteOnly));
        plain.write(plainWindow);
        plain.close();
        m_plainUrl = QUrl::fromLocalFile(plain.fileName());
        m_engine = std::make_unique<QQmlEngine>();
        m_engine->addImportPath(u"qrc:/qt/qml"_qs);
        m_engine->addImageProvider(u"symbol"_qs, new SymbolImageProvider());
    }

    void init()
    {
        m_now = QDateTime(QDate(2026, 11, 16), QTime(22, 38, 23), Qt::UTC);
        m_logPath = m_dir.filePath(u"state/debug-%1.log"_qs.arg(QString::fromLatin1(QTest::currentTestFunction())));
        QFile::remove(m_logPath);
        m_log = std::make_unique<DebugLog>(m_logPath, [this] { return m_now; });
        m_shots = m_dir.filePath(u"shots"_qs);
        QDir(m_shots).removeRecursively();
        store()->setSelectedHex(u"keep"_qs);
        makeShell();
    }

    void cleanup()
    {
        m_shell.reset();
        for (QWindow *window : QGuiApplication::topLevelWindows())
            window->hide();
    }

    void logLinesCarryTheDateInUtc()
    {
        QVERIFY(m_shell->mainWindows().isEmpty());
        m_shell->restoreMainWindow();
        const QStringList lines = linesOf(m_logPath);
        QCOMPARE(lines.value(0), u"2026-11-16 22:38:23 +0000 no main window and no captured openWindow action"_qs);
    }

    void restorationIsThrottledForOneSecond_data()
    {
        QTest::addColumn<int>("laterMs");
        QTest::addColumn<bool>("throttled");
        QTest::newRow("0.99 s") << 990 << true;
        QTest::newRow("exactly 1.0 s") << 1000 << true;
        QTest::newRow("1.01 s") << 1010 << false;
    }

    void restorationIsThrottledForOneSecond()
    {
        QFETCH(int, laterMs);
        QFETCH(bool, throttled);
        m_shell->restoreMainWindow();
        m_now = m_now.addMSecs(laterMs);
        m_shell->restoreMainWindow();
        const QStringList logged = messages();
        QCOMPARE(logged.count(u"restore throttled (already in progress)"_qs), throttled ? 1 : 0);
        QCOMPARE(logged.count(u"no main window and no captured openWindow action"_qs), throttled ? 1 : 2);
        QCOMPARE(m_timers.delays(), (throttled ? QList<int>{500} : QList<int>{500, 500}));
    }

    void anExistingWindowIsRaisedWithoutThrottle()
    {
        auto window = showWindow(u"Logbook"_qs);
        m_shell->restoreMainWindow();
        m_shell->restoreMainWindow();
        QCOMPARE(messages(), QStringList(2, u"raising existing window 'Logbook'"_qs));
        QVERIFY(m_timers.pending.isEmpty());
    }

    void theCapturedActionOpensTheWindow()
    {
        m_shell->mainWindowAppeared();
        QVERIFY(m_shell->hasOpenMainWindow());
        m_shell->restoreMainWindow();
        QCOMPARE(m_shell->mainWindows().size(), 1);
        QCOMPARE(m_shell->mainWindows().constFirst()->title(), u"Plain"_qs);
        m_timers.runAll();
        QVERIFY(!m_shell->fallbackWindow());
        const QStringList logged = messages();
        QCOMPARE(logged.value(0), u"no main window — calling captured openWindow(id: main)"_qs);
        QVERIFY2(logged.value(1).startsWith(u"windows post-reopen:"_qs), qPrintable(logged.join(u'\n')));
        const QString line = logged.value(2);
        QVERIFY2(line.startsWith(u"  [post-reopen] 'Plain' id=- class="_qs) && !line.contains(u"_QML"_qs)
                     && line.endsWith(u" visible=true mini=false"_qs),
                 qPrintable(line));
        QVERIFY(!logged.contains(u"openWindow produced nothing — using fallback window"_qs));
    }

    void theFallbackWindowIsMadeOnceAndReused()
    {
        makeShell(QUrl(u"qrc:/qt/qml/Aerolume/App/FallbackRoot.qml"_qs));
        // An action that opens nothing, as when the toolkit fails.
        int attempts = 0;
        m_shell->setOpenMainWindow([&attempts] { ++attempts; });
        m_shell->restoreMainWindow();
        QCOMPARE(attempts, 1);
        m_timers.runAll();
        QPointer<QQuickWindow> fallback = m_shell->fallbackWindow();
        QVERIFY(fallback);
        QCOMPARE(fallback->title(), u"Aerolume"_qs);
        QCOMPARE(fallback->size(), QSize(1180, 740));
        QVERIFY(fallback->isVisible());
        QCOMPARE(m_shell->mainWindows(), QList<QWindow *>{fallback.data()});
        QVERIFY(messages().contains(u"openWindow produced nothing — using fallback window"_qs));
        // Saved for a look by eye: the whole content, as a main window shows it.
        QVERIFY(QTest::qWaitForWindowExposed(fallback.data()));
        QDir().mkpath(QDir::currentPath() + u"/pictures"_qs);
        QVERIFY(fallback->grabWindow().save(QDir::currentPath() + u"/pictures/fallback-window.png"_qs));

        // Closing hides it; the next restoration shows the same window again.
        fallback->close();
        QVERIFY(fallback);
        QVERIFY(m_shell->mainWindows().isEmpty());
        m_now = m_now.addSecs(5);
        m_shell->restoreMainWindow();
        m_timers.runAll();
        QCOMPARE(attempts, 2);
        QCOMPARE(m_shell->fallbackWindow(), fallback.data());
        QVERIFY(fallback->isVisible());
        int fallbacks = 0;
        for (QWindow *window : QGuiApplication::topLevelWindows())
            fallbacks += window->objectName() == u"fallback"_qs ? 1 : 0;
        QCOMPARE(fallbacks, 1);
    }

    void launchAndActivationChecks()
    {
        // Before launching has finished an activation does nothing.
        m_shell->becameActive();
        QVERIFY(m_timers.pending.isEmpty());
        m_shell->finishLaunching();
        m_shell->becameActive();
        QCOMPARE(m_timers.delays(), (QList<int>{1000, 350}));
        // A window comes up before the checks run: they see it and do nothing.
        auto window = showWindow(u"Aerolume"_qs);
        m_timers.runAll();
        QCOMPARE(messages(), QStringList{u"launched; GetURL handler registered"_qs});

        window->hide();
        m_shell->becameActive();
        m_timers.runAll();
        const QStringList logged = messages();
        QCOMPARE(logged.value(1), u"became active with no window — restoring"_qs);
        QCOMPARE(logged.value(2), u"no main window and no captured openWindow action"_qs);
        QVERIFY(m_shell->fallbackWindow());
    }

    void urls_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<bool>("handled");
        QTest::addColumn<bool>("restores");
        QTest::addColumn<QString>("selected");

        QTest::newRow("open") << u"aerolume://open"_qs << true << true << u"keep"_qs;
        QTest::newRow("aircraft") << u"aerolume://aircraft/a1b2c3"_qs << true << true << u"a1b2c3"_qs;
        QTest::newRow("upper-case hex kept") << u"aerolume://aircraft/A1B2C3"_qs << true << true << u"A1B2C3"_qs;
        QTest::newRow("no hex") << u"aerolume://aircraft"_qs << true << true << u"keep"_qs;
        QTest::newRow("only a slash") << u"aerolume://aircraft/"_qs << true << true << u"keep"_qs;
        QTest::newRow("deep path") << u"aerolume://aircraft/x/y"_qs << true << true << u"y"_qs;
        QTest::newRow("trailing slash after hex") << u"aerolume://aircraft/abc/"_qs << true << true << u"abc"_qs;
        QTest::newRow("no host") << u"aerolume:"_qs << true << true << u"keep"_qs;
        QTest::newRow("empty host") << u"aerolume:///abc"_qs << true << true << u"keep"_qs;
        QTest::newRow("other host") << u"aerolume://radar"_qs << true << true << u"keep"_qs;
        QTest::newRow("host with case") << u"aerolume://Aircraft/abc"_qs << true << true << u"keep"_qs;
        QTest::newRow("command with case") << u"aerolume://SHOT"_qs << true << true << u"keep"_qs;
        QTest::newRow("scheme with case") << u"Aerolume://aircraft/abc"_qs << false << false << u"keep"_qs;
        QTest::newRow("other scheme") << u"https://aircraft/abc"_qs << false << false << u"keep"_qs;
        QTest::newRow("no scheme") << u"aircraft/abc"_qs << false << false << u"keep"_qs;
        QTest::newRow("does not parse") << u"aerolume://air craft/abc"_qs << false << false << u"keep"_qs;
        QTest::newRow("empty") << QString() << false << false << u"keep"_qs;
    }

    void urls()
    {
        QFETCH(QString, url);
        QFETCH(bool, handled);
        QFETCH(bool, restores);
        QFETCH(QString, selected);
        m_shell->handleGetURL(url);
        QCOMPARE(selection(), selected);
        const QStringList logged = messages();
        QCOMPARE(logged.value(0), u"GetURL: "_qs + url);
        QCOMPARE(logged.contains(u"windows before:"_qs), handled);
        QCOMPARE(logged.contains(u"no main window and no captured openWindow action"_qs), restores);
        QCOMPARE(logged.size(), 1 + (handled ? 1 : 0) + (restores ? 1 : 0));
    }

    void shotWithoutWindowWritesNothing()
    {
        m_shell->handleGetURL(u"aerolume://shot"_qs);
        QCOMPARE(messages(), (QStringList{u"GetURL: aerolume://shot"_qs, u"windows before:"_qs}));
        QVERIFY(m_timers.pending.isEmpty());
        QVERIFY(!QFile::exists(m_shots + u"/aerolume-shot.png"_qs));
    }

    void shotOfTheFirstMainWindow()
    {
        auto about = showWindow(u"About Aerolume"_qs);
        auto window = showWindow(u"Aerolume"_qs);
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        m_shell->handleGetURL(u"aerolume://shot"_qs);
        const QImage image(m_shots + u"/aerolume-shot.png"_qs);
        QVERIFY(!image.isNull());
        const QSize pixels = QSize(300, 200) * window->devicePixelRatio();
        QCOMPARE(image.size(), pixels);
        QCOMPARE(image.pixelColor(pixels.width() / 2, pixels.height() / 2), QColor(0x33, 0x66, 0xcc));
        QCOMPARE(messages().constLast(), u"wrote shot via grabWindow %1x%2"_qs.arg(pixels.width()).arg(pixels.height()));
    }

    void aShotNeverGoesThroughALink()
    {
        auto window = showWindow(u"Aerolume"_qs);
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        QVERIFY(QDir().mkpath(m_shots));
        const QString target = m_dir.filePath(u"victim.txt"_qs);
        QFile victim(target);
        QVERIFY(victim.open(QIODevice::WriteOnly));
        victim.write("untouched");
        victim.close();
        const QString path = m_shots + u"/aerolume-shot.png"_qs;
        QVERIFY(QFile::link(target, path));
        m_shell->handleGetURL(u"aerolume://shot"_qs);
        QVERIFY(QFileInfo(path).isSymLink());
        QVERIFY(victim.open(QIODevice::ReadOnly));
        QCOMPARE(victim.readAll(), QByteArray("untouched"));
        // The write is dropped, and the log line still follows.
        QVERIFY(messages().constLast().startsWith(u"wrote shot via grabWindow "_qs));
    }

    void widgetShotsAtTwiceTheirSize()
    {
        m_shell->handleGetURL(u"aerolume://widgetshots"_qs);
        const QList<std::pair<QString, QSize>> expected{
            {u"widget-small.png"_qs, QSize(340, 340)},
            {u"widget-medium.png"_qs, QSize(728, 340)},
            {u"widget-large.png"_qs, QSize(728, 764)},
        };
        for (const auto &[name, size] : expected) {
            const QImage image(m_shots + u'/' + name);
            QVERIFY2(!image.isNull(), qPrintable(name));
            QCOMPARE(image.size(), size);
            // The middle of a face is drawn on the palette's background, not left empty.
            QVERIFY(image.pixelColor(size.width() / 2, size.height() / 2).alpha() > 0);
        }
        QCOMPARE(messages().mid(2), (QStringList{u"wrote widget-small.png"_qs, u"wrote widget-medium.png"_qs,
                                                 u"wrote widget-large.png"_qs}));
        QVERIFY(m_timers.pending.isEmpty());
    }

    void closeWindowClosesTheMainWindowsOnly()
    {
        auto first = showWindow(u"Aerolume"_qs);
        auto second = showWindow(u"Logbook"_qs);
        auto settings = showWindow(u"Settings — General"_qs);
        m_shell->handleGetURL(u"aerolume://closewindow"_qs);
        QVERIFY(!first->isVisible());
        QVERIFY(!second->isVisible());
        QVERIFY(settings->isVisible());
        QVERIFY(m_shell->mainWindows().isEmpty());
        const QStringList logged = messages();
        QVERIFY(logged.contains(u"windows after closewindow:"_qs));
        QVERIFY(logged.contains(u"  [after closewindow] 'Aerolume' id=- class=QQuickWindow visible=false mini=false"_qs));
        // No window is brought back.
        QVERIFY(m_timers.pending.isEmpty());
        QVERIFY(!logged.contains(u"no main window and no captured openWindow action"_qs));
    }

    void singleWindowsOpenOnce()
    {
        QVERIFY(m_shell->openWindow(u"logbook"_qs));
        QVERIFY(m_shell->openWindow(u"logbook"_qs));
        int logbooks = 0;
        for (QWindow *window : QGuiApplication::topLevelWindows())
            logbooks += window->title() == u"Logbook"_qs && window->isVisible() ? 1 : 0;
        QCOMPARE(logbooks, 1);
        QVERIFY(!m_shell->openWindow(u"no-such-window"_qs));
    }

    void notificationClicksRestoreAndSelect_data()
    {
        QTest::addColumn<QString>("hex");
        QTest::addColumn<QString>("selected");
        QTest::newRow("with hex") << u"abc123"_qs << u"abc123"_qs;
        QTest::newRow("without hex") << QString() << u"keep"_qs;
    }

    void notificationClicksRestoreAndSelect()
    {
        QFETCH(QString, hex);
        QFETCH(QString, selected);
        PrivateSessionBus bus;
        QVERIFY2(bus.isRunning(), qPrintable(bus.errorString()));
        FakeNotificationServer server;
        QVERIFY(server.registerOn(bus.connect(u"notification-service"_qs)));
        DesktopNotifier notifier(bus.connect(u"app"_qs));
        m_shell->attach(&notifier);
        m_shell->finishLaunching();
        m_timers.pending.clear();

        QSignalSpy posted(&notifier, &DesktopNotifier::posted);
        notifier.post(u"Emergency"_qs, u"Squawk 7700"_qs, hex, u"emergency-1"_qs);
        QVERIFY(posted.wait(5000));
        const uint id = posted.constFirst().at(0).toUInt();
        QSignalSpy clicks(&notifier, &DesktopNotifier::notificationClicked);
        qunsetenv("XDG_ACTIVATION_TOKEN");
        server.sendActivationToken(id, u"token-42"_qs);
        server.sendActionInvoked(id, u"default"_qs);
        QVERIFY(clicks.wait(5000));
        // The steps run later on the main loop, not inside the bus's signal.
        QCOMPARE(selection(), u"keep"_qs);
        QCOMPARE(m_timers.delays(), QList<int>{0});
        m_timers.runAll();
        QCOMPARE(selection(), selected);
        QCOMPARE(qgetenv("XDG_ACTIVATION_TOKEN"), QByteArray("token-42"));
        QVERIFY(messages().contains(u"no main window and no captured openWindow action"_qs));
        QVERIFY(m_shell->fallbackWindow());
        QVERIFY(m_shell->fallbackWindow()->isVisible());
    }

    void aSecondLaunchHandsOverItsUrl()
    {
        const QString name = u"aerolume-shell-test-%1"_qs.arg(QCoreApplication::applicationPid());
        SingleInstance first(name);
        QVERIFY(first.claim({}, QString()));
        m_shell->attach(&first);
        m_shell->finishLaunching();
        m_timers.pending.clear();
        SingleInstance second(name);
        QVERIFY(!second.claim({u"aerolume://aircraft/ABC123"_qs}, u"second-token"_qs));
        QTRY_COMPARE(selection(), u"ABC123"_qs);
        QVERIFY(messages().contains(u"GetURL: aerolume://aircraft/ABC123"_qs));
        // The launch is an activation too: its check comes 0.35 s later.
        QVERIFY(m_timers.delays().contains(350));
    }

    void theMenusWorkFromTheKeyboard()
    {
        QQmlEngine engine;
        engine.addImportPath(u"qrc:/qt/qml"_qs);
        engine.addImageProvider(u"symbol"_qs, new SymbolImageProvider());
        AppShell::Options options;
        options.log = m_log.get();
        options.schedule = m_timers.scheduler();
        options.mainWindowUrl = m_plainUrl;
        options.shotsDirectory = m_shots;
        AppShell shell(&engine, options);
        QQmlComponent component(&engine, QUrl(u"qrc:/qt/qml/Aerolume/App/Main.qml"_qs));
        std::unique_ptr<QObject> root(component.create());
        QVERIFY2(root, qPrintable(component.errorString()));
        auto *window = qobject_cast<QQuickWindow *>(root.get());
        QVERIFY(window);
        QVERIFY(QTest::qWaitForWindowExposed(window));
        window->requestActivate();
        QTRY_VERIFY(window->isActive());
        // The main window hands over how to make another one when it appears.
        QVERIFY(shell.hasOpenMainWindow());

        DefaultsStore *defaults = DefaultsStore::shared();
        const bool trails = defaults->contains(u"showTrails"_qs) ? defaults->boolValue(u"showTrails"_qs) : true;
        QTest::keyClick(window, Qt::Key_T, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(defaults->boolValue(u"showTrails"_qs), !trails);
        QTest::keyClick(window, Qt::Key_T, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(defaults->boolValue(u"showTrails"_qs), trails);
        const bool byAltitude = defaults->boolValue(u"colorByAltitude"_qs);
        QTest::keyClick(window, Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(defaults->boolValue(u"colorByAltitude"_qs), !byAltitude);
        defaults->setValue(u"colorByAltitude"_qs, byAltitude);

        QTest::keyClick(window, Qt::Key_N, Qt::ControlModifier);
        int plain = 0;
        for (QWindow *open : QGuiApplication::topLevelWindows())
            plain += open->title() == u"Plain"_qs && open->isVisible() ? 1 : 0;
        QCOMPARE(plain, 1);

        // Settings opens once, and is raised when asked again.
        for (int press = 0; press < 2; ++press) {
            window->requestActivate();
            QTRY_VERIFY(window->isActive());
            QTest::keyClick(window, Qt::Key_Comma, Qt::ControlModifier);
        }
        int settings = 0;
        for (QWindow *open : QGuiApplication::topLevelWindows())
            settings += open->title().startsWith(u"Settings"_qs) && open->isVisible() ? 1 : 0;
        QCOMPARE(settings, 1);

        window->requestActivate();
        QTRY_VERIFY(window->isActive());
        QTest::keyClick(window, Qt::Key_W, Qt::ControlModifier);
        QVERIFY(!window->isVisible());
    }

    void helpLinksFollowTheWebsite_data()
    {
        QTest::addColumn<QString>("website");
        QTest::addColumn<QStringList>("opened");
        QTest::newRow("no website") << QString() << QStringList();
        QTest::newRow("website") << u"http://127.0.0.1:9/aerolume"_qs
                                 << QStringList{u"http://127.0.0.1:9/aerolume"_qs,
                                                u"http://127.0.0.1:9/aerolume#releases"_qs};
    }

    void helpLinksFollowTheWebsite()
    {
        QFETCH(QString, website);
        QFETCH(QStringList, opened);
        qputenv("AEROLUME_WEBSITE_URL", website.toUtf8());
        UrlCatcher catcher;
        QDesktopServices::setUrlHandler(u"http"_qs, &catcher, "open");
        QQmlEngine engine;
        engine.addImportPath(u"qrc:/qt/qml"_qs);
        engine.addImageProvider(u"symbol"_qs, new SymbolImageProvider());
        AppShell::Options options;
        options.log = m_log.get();
        options.schedule = m_timers.scheduler();
        AppShell shell(&engine, options);
        QQmlComponent component(&engine, QUrl(u"qrc:/qt/qml/Aerolume/App/Main.qml"_qs));
        std::unique_ptr<QObject> root(component.create());
        QVERIFY2(root, qPrintable(component.errorString()));
        auto *bar = root->property("menuBar").value<QObject *>();
        QVERIFY(bar);
        // Every item of every menu, triggered, by its text; the links land in the catcher.
        QStringList texts;
        const QQmlListReference menus(bar, "menus");
        QVERIFY(menus.isValid());
        for (qsizetype m = 0; m < menus.count(); ++m) {
            QObject *menu = menus.at(m);
            for (int i = 0; i < menu->property("count").toInt(); ++i) {
                QQuickItem *item = nullptr;
                QVERIFY(QMetaObject::invokeMethod(menu, "itemAt", Q_RETURN_ARG(QQuickItem *, item), Q_ARG(int, i)));
                const QString text = item->property("text").toString();
                texts.append(text);
                if (text == u"Aerolume Website"_qs || text == u"Release History"_qs)
                    QVERIFY(QMetaObject::invokeMethod(item, "triggered"));
            }
        }
        QCOMPARE(texts.contains(u"Aerolume Website"_qs), !website.isEmpty());
        QCOMPARE(texts.contains(u"Release History"_qs), !website.isEmpty());
        QDesktopServices::unsetUrlHandler(u"http"_qs);
        qunsetenv("AEROLUME_WEBSITE_URL");
        QCOMPARE(catcher.urls, opened);
    }
};

QTEST_MAIN(AppShellTest)
#include "AppShellTest.moc"
