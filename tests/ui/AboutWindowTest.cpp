#include "AboutInfo.h"
#include "DefaultsStore.h"
#include "SymbolImageProvider.h"

#include "ItemTexts.h"
#include <QDesktopServices>
#include <QDir>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>
#include <memory>

Q_IMPORT_QML_PLUGIN(Aerolume_MapPlugin)
Q_IMPORT_QML_PLUGIN(Aerolume_CorePlugin)

namespace {

// Pixels that differ by more than a trace between two pictures of the same size.
int differingPixels(const QImage &a, const QImage &b)
{
    if (a.size() != b.size())
        return -1;
    const QImage left = a.convertToFormat(QImage::Format_ARGB32);
    const QImage right = b.convertToFormat(QImage::Format_ARGB32);
    int count = 0;
    for (int y = 0; y < left.height(); ++y) {
        for (int x = 0; x < left.width(); ++x) {
            const QRgb p = left.pixel(x, y);
            const QRgb q = right.pixel(x, y);
            if (std::abs(qRed(p) - qRed(q)) + std::abs(qGreen(p) - qGreen(q)) +
                    std::abs(qBlue(p) - qBlue(q)) >
                12)
                ++count;
        }
    }
    return count;
}

} // namespace

// The About window: its lines, its size, and the radar icon whose ping moves with the clock and is gone
// under either reduce-motion setting.
class AboutWindowTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_pictures;
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<QQuickWindow> m_window;
    QUrl m_opened;

    QQuickItem *icon() const { return m_window->findChild<QQuickItem *>(u"radarIcon"_qs); }
    QQuickItem *ping() const { return m_window->findChild<QQuickItem *>(u"ping"_qs); }

    void open()
    {
        m_window.reset();
        m_engine = std::make_unique<QQmlEngine>();
        m_engine->addImportPath(u"qrc:/qt/qml"_qs);
        m_engine->addImageProvider(u"symbol"_qs, new SymbolImageProvider());
        QQmlComponent component(m_engine.get(), QUrl(u"qrc:/qt/qml/Aerolume/App/AboutWindow.qml"_qs));
        QObject *object = component.create();
        QVERIFY2(object, qPrintable(component.errorString()));
        m_window.reset(qobject_cast<QQuickWindow *>(object));
        QVERIFY(m_window);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }

    // The icon at a fixed moment: `phase` of the way through a cycle.
    QImage iconAt(double phase)
    {
        const double cycle = icon()->property("cycle").toDouble();
        icon()->setProperty("fixedTime", 1000.0 * cycle * (1000.0 + phase));
        QImage image = m_window->grabWindow();
        const QRectF area = icon()->mapRectToScene(QRectF(0, 0, icon()->width(), icon()->height()));
        return image.copy(area.toAlignedRect());
    }

public slots:
    void captureUrl(const QUrl &url) { m_opened = url; }

private:
    void save(const QImage &image, const QString &name) { QVERIFY(image.save(m_pictures + u'/' + name)); }

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        for (const char *variable :
             {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR", "XDG_CACHE_HOME"})
            qputenv(variable, m_dir.filePath(QString::fromLatin1(variable)).toUtf8());
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
        qputenv("AEROLUME_UPDATE_FEED_URL", "");
        qputenv("AEROLUME_WEBSITE_URL", "");
        qunsetenv("AEROLUME_PRIMARY_FEED_NAME");
        qunsetenv("AEROLUME_FALLBACK_FEED_NAME");
        m_pictures = QDir::currentPath() + u"/pictures"_qs;
        QDir().mkpath(m_pictures);
        QQuickStyle::setStyle(u"Fusion"_qs);
        QDesktopServices::setUrlHandler(u"https"_qs, this, "captureUrl");
    }

    void cleanupTestCase() { QDesktopServices::unsetUrlHandler(u"https"_qs); }

    void init()
    {
        DefaultsStore::shared()->remove(u"reduceMotion"_qs);
        QTest::failOnWarning(QRegularExpression(u"qrc:/"_qs));
    }

    void cleanup()
    {
        m_window.reset();
        m_engine.reset();
    }

    void versionFallbacks_data()
    {
        QTest::addColumn<QString>("shortVersion");
        QTest::addColumn<QString>("build");
        QTest::addColumn<QString>("expected");
        QTest::newRow("both") << u"0.1.0"_qs << u"417"_qs << u"Version 0.1.0 (417)"_qs;
        QTest::newRow("no build number") << u"2.3"_qs << QString() << u"Version 2.3 (1)"_qs;
        QTest::newRow("no version") << QString() << u"12"_qs << u"Version 1.0 (12)"_qs;
        QTest::newRow("neither") << QString() << QString() << u"Version 1.0 (1)"_qs;
        QTest::newRow("blank counts as missing") << u"  "_qs << u" "_qs << u"Version 1.0 (1)"_qs;
    }

    void versionFallbacks()
    {
        QFETCH(QString, shortVersion);
        QFETCH(QString, build);
        QFETCH(QString, expected);
        QCOMPARE(AboutInfo::versionText(shortVersion, build), expected);
    }

    void linesOfTheWindow()
    {
        qputenv("AEROLUME_PRIMARY_FEED_NAME", "Home Receiver");
        open();
        qunsetenv("AEROLUME_PRIMARY_FEED_NAME");
        QCOMPARE(m_window->title(), u"About Aerolume"_qs);
        QStringList texts;
        ItemTexts::collect(m_window->contentItem(), texts);
        QVERIFY2(texts.contains(u"Aerolume"_qs), qPrintable(texts.join(u" | ")));
        const QString version =
            m_window->findChild<QQuickItem *>(u"versionLabel"_qs)->property("text").toString();
        QVERIFY2(version.startsWith(u"Version " AEROLUME_VERSION " ("_qs) && version.endsWith(u')'),
                 qPrintable(version));
        QVERIFY(texts.contains(u"Live aircraft around your home"_qs));
        QVERIFY(texts.contains(u"Data from the Home Receiver and adsb.fi communities"_qs));
        // No web site configured: no link to its release history.
        QVERIFY(!texts.contains(u"Release history"_qs));

        // The window is its content: 300 wide and 28 of padding.
        QCOMPARE(m_window->width(), 356);
        auto *content = m_window->findChild<QQuickItem *>(u"aboutContent"_qs);
        QVERIFY(content);
        QCOMPARE(m_window->height(), int(std::ceil(content->implicitHeight())) + 56);
        QVERIFY(m_window->minimumSize() == m_window->maximumSize());
        const QRect screen = m_window->screen()->availableGeometry();
        QVERIFY(std::abs(m_window->x() + m_window->width() / 2 - (screen.x() + screen.width() / 2)) <= 1);
        save(m_window->grabWindow(), u"about.png"_qs);
    }

    void releaseHistoryLinkWithAWebSite()
    {
        qputenv("AEROLUME_WEBSITE_URL", "https://aerolume.example.org/");
        open();
        qputenv("AEROLUME_WEBSITE_URL", "");
        auto *link = m_window->findChild<QQuickItem *>(u"releaseHistoryLink"_qs);
        QVERIFY(link);
        QVERIFY(link->isVisible());
        QCOMPARE(link->property("text").toString(), u"Release history"_qs);
        // Opened in the browser, here this test's stand-in for it.
        QMetaObject::invokeMethod(link, "open");
        QCOMPARE(m_opened, QUrl(u"https://aerolume.example.org/#releases"_qs));
        save(m_window->grabWindow(), u"about-with-website.png"_qs);
    }

    void pingGrowsAndFades()
    {
        open();
        QVERIFY(ping());
        const QImage early = iconAt(0.2);
        const double earlyDiameter = ping()->width();
        const QImage late = iconAt(0.6);
        const double lateDiameter = ping()->width();
        QVERIFY2(lateDiameter > earlyDiameter + 30,
                 qPrintable(u"%1 %2"_qs.arg(earlyDiameter).arg(lateDiameter)));
        QVERIFY(differingPixels(early, late) > 100);
        save(early.scaled(early.size() * 2), u"about-icon-ping-0.2.png"_qs);
        save(late.scaled(late.size() * 2), u"about-icon-ping-0.6.png"_qs);

        // Near the end of a cycle the ring has all but faded, so its jump back to the centre can't be seen.
        (void)iconAt(0.995);
        auto *border = ping()->property("border").value<QObject *>();
        QVERIFY(border);
        QVERIFY(border->property("color").value<QColor>().alphaF() < 0.01);
        // Its widest: the outer fixed ring.
        QCOMPARE(qRound(ping()->width() - border->property("width").toDouble()),
                 qRound(128 * (0.08 + 0.72 * 0.995)));
    }

    void pingFollowsTheClock()
    {
        open();
        QVERIFY(ping());
        const double first = ping()->width();
        QTRY_VERIFY(ping()->width() != first);
        auto *clock = m_window->findChild<QObject *>(u"pingClock"_qs);
        QVERIFY(clock);
        QCOMPARE(clock->property("interval").toInt(), 33); // at most 30 updates a second
        QVERIFY(clock->property("running").toBool());
        // Closing the window only hides it: the clock stops all the same, and starts again on showing.
        m_window->close();
        QTRY_VERIFY(!clock->property("running").toBool());
        m_window->show();
        QTRY_VERIFY(clock->property("running").toBool());
    }

    void reduceMotion_data()
    {
        QTest::addColumn<bool>("fromSettings");
        QTest::newRow("the reduceMotion setting") << true;
        QTest::newRow("the desktop's setting") << false;
    }

    // The rings and the aircraft stay; the ping is not there at all, and nothing moves.
    void reduceMotion()
    {
        QFETCH(bool, fromSettings);
        open();
        const QImage moving = iconAt(0.4);
        QVERIFY(ping());
        if (fromSettings)
            DefaultsStore::shared()->setValue(u"reduceMotion"_qs, true);
        else
            icon()->setProperty("systemReduceMotion", true);
        QTRY_VERIFY(!ping());
        QVERIFY(!icon()->property("pingShown").toBool());

        const QImage still = iconAt(0.4);
        const QImage later = iconAt(0.8);
        QCOMPARE(differingPixels(still, later), 0);
        QVERIFY(differingPixels(moving, still) > 100);
        save(still.scaled(still.size() * 2),
             fromSettings ? u"about-icon-reduce-motion.png"_qs : u"about-icon-desktop-reduce-motion.png"_qs);

        // What stays: the backdrop's blue and the white aircraft at the centre of the icon.
        const QImage image = still.convertToFormat(QImage::Format_ARGB32);
        const QRgb corner = image.pixel(image.width() / 2, 6);
        QVERIFY2(qBlue(corner) > qRed(corner) + 40, qPrintable(QColor(corner).name()));
        const QRgb middle = image.pixel(image.width() / 2, image.height() / 2);
        QVERIFY2(qRed(middle) > 220 && qGreen(middle) > 220 && qBlue(middle) > 220,
                 qPrintable(QColor(middle).name()));

        if (fromSettings) {
            DefaultsStore::shared()->setValue(u"reduceMotion"_qs, false);
            QTRY_VERIFY(ping());
        }
    }
};

QTEST_MAIN(AboutWindowTest)
#include "AboutWindowTest.moc"
