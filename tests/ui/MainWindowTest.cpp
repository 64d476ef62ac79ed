#include "AircraftListState.h"
#include "FlightStore.h"
#include "LoopbackHttpServer.h"
#include "SymbolImageProvider.h"

#include "ItemTexts.h"
#include <QDir>
#include <QQmlApplicationEngine>
#include <QtQml/qqmlextensionplugin.h>
#include <QRegularExpression>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

Q_IMPORT_QML_PLUGIN(Aerolume_MapPlugin)

namespace {

const QByteArray traffic =
    R"({"ac":[{"hex":"a1b2c3","flight":"ASA512  ","r":"N512AS","t":"B739","alt_baro":12500,"gs":320,"track":90,"lat":47.7,"lon":-122.3,"dst":4.2,"dir":10},)"
    R"({"hex":"ae0001","flight":"RCH440","t":"C17","dbFlags":1,"alt_baro":24000,"lat":47.5,"lon":-122.2,"dst":8.9,"dir":120},)"
    R"({"hex":"c0ffee","flight":"N44RH","t":"R44","category":"A7","alt_baro":900,"lat":47.61,"lon":-122.33,"dst":1.1,"dir":300,"squawk":"7700"}]})";

} // namespace

// The main window as a person meets it: first the setup, then the live list, rendered offscreen and
// saved as pictures for a look by eye.
class MainWindowTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    LoopbackHttpServer m_server;
    QQmlApplicationEngine *m_engine = nullptr;
    QString m_pictures;

    QQuickWindow *window() const { return qobject_cast<QQuickWindow *>(m_engine->rootObjects().value(0)); }

    void save(const QString &name)
    {
        QQuickWindow *win = window();
        QVERIFY(win);
        const QImage image = win->grabWindow();
        QVERIFY(!image.isNull());
        QVERIFY(image.save(m_pictures + u'/' + name));
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        for (const char *variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR", "XDG_CACHE_HOME"})
            qputenv(variable, m_dir.filePath(QString::fromLatin1(variable)).toUtf8());
        qputenv("AEROLUME_PRIMARY_FEED_URL", m_server.baseUrl().toUtf8());
        qputenv("AEROLUME_FALLBACK_FEED_URL", m_server.baseUrl().toUtf8());
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
        // The map's tiles come from the loopback server too (which has none: the map draws without them).
        for (const char *variable : {"AEROLUME_TILE_URL_STANDARD", "AEROLUME_TILE_URL_IMAGERY", "AEROLUME_TILE_URL_LABELS"})
            qputenv(variable, (m_server.baseUrl() + u"/tiles/{z}/{x}/{y}.png"_qs).toUtf8());
        qputenv("AEROLUME_PHOTO_URL", m_server.baseUrl().toUtf8());
        qputenv("AEROLUME_ROUTE_URL", m_server.baseUrl().toUtf8());
        m_server.route("/v2/point/", [](const LoopbackHttpServer::Request &) {
            return LoopbackHttpServer::Response{200, traffic, "application/json", false, false};
        });
        // Pictures go next to the test binary so a person can open them after a run.
        m_pictures = QDir::currentPath() + u"/pictures"_qs;
        QDir().mkpath(m_pictures);

        QQuickStyle::setStyle(u"Fusion"_qs);
        m_engine = new QQmlApplicationEngine(this);
        m_engine->addImportPath(u"qrc:/qt/qml"_qs);
        m_engine->addImageProvider(u"symbol"_qs, new SymbolImageProvider());
        m_engine->load(QUrl(u"qrc:/qt/qml/Aerolume/App/Main.qml"_qs));
        QVERIFY(window());
        QVERIFY(QTest::qWaitForWindowExposed(window()));
    }

    // A binding that fails while the window runs is a broken view, whatever the pictures show.
    void init() { QTest::failOnWarning(QRegularExpression(u"qrc:/"_qs)); }

    void firstRunShowsTheSetup()
    {
        QVERIFY(!FlightStore::shared()->home());
        const QStringList texts = ItemTexts::ofWindow(window());
        QVERIFY2(texts.contains(u"Welcome to Aerolume"_qs), qPrintable(texts.join(u" | ")));
        QVERIFY(texts.contains(u"Start Watching the Sky"_qs));
        QVERIFY(texts.contains(u"Use this computer's location"_qs));
        QVERIFY(!texts.contains(u"Home Location"_qs)); // no toolbar without a home
        QCOMPARE(m_server.requests().size(), 0);       // and no request
        save(u"first-run.png"_qs);
    }

    void homeShowsTheLiveList()
    {
        QSignalSpy applied(FlightStore::shared(), &FlightStore::refreshApplied);
        FlightStore::shared()->setHomeLocation(47.6062, -122.3321, u"Seattle"_qs);
        QVERIFY(applied.wait());
        QTRY_VERIFY(ItemTexts::ofWindow(window()).contains(u"Live via adsb.lol"_qs));
        // Rows are made on the next frame.
        QTRY_VERIFY(ItemTexts::ofWindow(window()).contains(u"ASA512"_qs));
        save(u"live-list.png"_qs);
        const QStringList texts = ItemTexts::ofWindow(window());
        QVERIFY2(texts.contains(u"ASA512"_qs) && texts.contains(u"RCH440"_qs) && texts.contains(u"N44RH"_qs),
                 qPrintable(texts.join(u" | ")));
        QVERIFY(texts.contains(u"EMERG"_qs) && texts.contains(u"MIL"_qs));
        QVERIFY(texts.contains(u"Boeing 737-900 · N512AS"_qs));
        QVERIFY(texts.contains(u"All Aircraft"_qs));
        QVERIFY(std::any_of(texts.cbegin(), texts.cend(),
                            [](const QString &text) { return text.startsWith(u"3 aircraft within 25 nm · updated "); }));

        // A filter narrows the list and the bar counts.
        FlightStore::shared()->setFilterActive(u"military"_qs, true);
        QTRY_VERIFY(ItemTexts::ofWindow(window()).contains(u"1 of 3"_qs));
        QVERIFY(ItemTexts::ofWindow(window()).contains(u"Military"_qs));
        FlightStore::shared()->setActiveFilters({});
    }
};

QTEST_MAIN(MainWindowTest)
#include "MainWindowTest.moc"
