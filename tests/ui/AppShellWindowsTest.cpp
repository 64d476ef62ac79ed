#include "AppShell.h"
#include "DebugLog.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

// Which windows count as main windows, with real windows on an X server: only X tells a program that its
// window was minimised. Run through with-x-server.sh.
class AppShellWindowsTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;

    static std::unique_ptr<QQuickWindow> window(const QString &title, Qt::WindowFlags flags = Qt::Window)
    {
        auto made = std::make_unique<QQuickWindow>();
        made->setFlags(flags);
        made->setTitle(title);
        made->resize(320, 240);
        return made;
    }

private slots:
    void initTestCase()
    {
        if (QGuiApplication::platformName() != u"xcb"_qs)
            QSKIP("no X server (run through with-x-server.sh with Xvfb installed)");
        QVERIFY(m_dir.isValid());
    }

    void cleanup()
    {
        for (QWindow *open : QGuiApplication::topLevelWindows())
            open->hide();
    }

    void mainWindows_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<int>("flags");
        QTest::addColumn<QString>("state");
        QTest::addColumn<bool>("counted");

        const int plain = int(Qt::Window);
        QTest::newRow("main window") << u"Aerolume"_qs << plain << u"shown"_qs << true;
        QTest::newRow("logbook") << u"Logbook"_qs << plain << u"shown"_qs << true;
        QTest::newRow("about") << u"About Aerolume"_qs << plain << u"shown"_qs << false;
        QTest::newRow("help") << u"Aerolume Help"_qs << plain << u"shown"_qs << false;
        QTest::newRow("settings pane") << u"Settings — Alerts"_qs << plain << u"shown"_qs << false;
        QTest::newRow("settings alone") << u"Settings"_qs << plain << u"shown"_qs << false;
        QTest::newRow("settings further on") << u"Aerolume Settings"_qs << plain << u"shown"_qs << true;
        QTest::newRow("lower-case settings") << u"settings"_qs << plain << u"shown"_qs << true;
        QTest::newRow("minimised") << u"Aerolume"_qs << plain << u"minimised"_qs << true;
        QTest::newRow("hidden by closing") << u"Aerolume"_qs << plain << u"closed"_qs << false;
        QTest::newRow("never shown") << u"Aerolume"_qs << plain << u"unshown"_qs << false;
        QTest::newRow("no title bar") << u"Aerolume"_qs << int(Qt::Window | Qt::FramelessWindowHint) << u"shown"_qs << false;
        QTest::newRow("tool window") << u"Aerolume"_qs << int(Qt::Tool) << u"shown"_qs << false;
    }

    void mainWindows()
    {
        QFETCH(QString, title);
        QFETCH(int, flags);
        QFETCH(QString, state);
        QFETCH(bool, counted);
        auto candidate = window(title, Qt::WindowFlags(flags));
        if (state != u"unshown"_qs) {
            candidate->show();
            QVERIFY(QTest::qWaitForWindowExposed(candidate.get()));
        }
        if (state == u"minimised"_qs) {
            candidate->showMinimized();
            QTRY_VERIFY(candidate->windowStates().testFlag(Qt::WindowMinimized));
        } else if (state == u"closed"_qs) {
            candidate->close();
        }
        QCOMPARE(AppShell::mainWindows().contains(candidate.get()), counted);
    }

    void mainWindowsKeepTheApplicationsOrder()
    {
        auto first = window(u"Aerolume"_qs);
        auto settings = window(u"Settings — General"_qs);
        auto second = window(u"Logbook"_qs);
        for (QQuickWindow *shown : {first.get(), settings.get(), second.get()})
            shown->show();
        QCOMPARE(AppShell::mainWindows(), (QList<QWindow *>{first.get(), second.get()}));
    }

    void aMinimisedWindowIsBroughtBackNotReplaced()
    {
        QQmlEngine engine;
        DebugLog log(m_dir.filePath(u"debug.log"_qs));
        int opened = 0;
        AppShell::Options options;
        options.log = &log;
        options.schedule = [](int, std::function<void()>) { QFAIL("nothing is scheduled when a window exists"); };
        AppShell shell(&engine, options);
        shell.setOpenMainWindow([&opened] { ++opened; });

        auto main = window(u"Aerolume"_qs);
        main->show();
        QVERIFY(QTest::qWaitForWindowExposed(main.get()));
        main->showMinimized();
        QTRY_VERIFY(main->windowStates().testFlag(Qt::WindowMinimized));
        shell.restoreMainWindow();
        QTRY_VERIFY(!main->windowStates().testFlag(Qt::WindowMinimized));
        QVERIFY(main->isVisible());
        QCOMPARE(opened, 0);
        QFile file(log.path());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.readAll().endsWith(" raising existing window 'Aerolume'\n"));
    }
};

QTEST_MAIN(AppShellWindowsTest)
#include "AppShellWindowsTest.moc"
