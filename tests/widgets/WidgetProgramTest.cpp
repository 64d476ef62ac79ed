#include "FaceProbe.h"
#include "LoopbackHttpServer.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace {

constexpr int waitMs = 60000;
const QColor phosphor = QColor::fromRgbF(0.45f, 1.0f, 0.6f);
const QColor gold = QColor::fromRgbF(1.0f, 0.85f, 0.3f);

// An answer of the primary network: an emergency 10 of 20 nm due east, a military aircraft due west.
const QByteArray feedAnswer = R"({"ac":[
{"hex":"e10001","flight":"MAYDAY1","dst":10,"dir":90,"squawk":"7700","lat":45.5,"lon":-122.36,"seen_pos":1},
{"hex":"ae0002","flight":"RCH9","dst":10,"dir":270,"dbFlags":1,"lat":45.5,"lon":-122.84,"seen_pos":1}
]})";

struct Run
{
    int exitCode = -1;
    QString errors;
};

} // namespace

class WidgetProgramTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void sampleRenderWritesEveryFaceAtTwiceItsSize();
    void liveRenderDrawsTheFetchedSky();
    void liveRenderWithBrokenFeedsDrawsTheEmptyScope();
    void liveRenderWithoutHomeDrawsTheSetupPrompt();
    void badArgumentsFail_data();
    void badArgumentsFail();

private:
    Run run(const QStringList &arguments);
    void writeConfig(const QByteArray &json);
    [[nodiscard]] QImage picture(const QString &name) const;

    std::unique_ptr<QTemporaryDir> m_dirs;
    LoopbackHttpServer *m_server = nullptr;
};

void WidgetProgramTest::init()
{
    m_dirs = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dirs->isValid());
    delete m_server;
    m_server = new LoopbackHttpServer(this);
}

Run WidgetProgramTest::run(const QStringList &arguments)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"XDG_DATA_HOME"_qs, m_dirs->filePath(u"data"_qs));
    environment.insert(u"XDG_CONFIG_HOME"_qs, m_dirs->filePath(u"config"_qs));
    environment.insert(u"XDG_RUNTIME_DIR"_qs, m_dirs->path());
    environment.insert(u"AEROLUME_PRIMARY_FEED_URL"_qs, m_server->baseUrl());
    environment.insert(u"AEROLUME_FALLBACK_FEED_URL"_qs, m_server->baseUrl());
    // Nothing reaches the desktop the test runs on.
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_qs, u"disabled:"_qs);

    QProcess process;
    process.setProcessEnvironment(environment);
    process.setProgram(QStringLiteral(AEROLUME_WIDGETS_PROGRAM));
    process.setArguments(arguments);
    // The loopback server answers on this thread, so the wait must keep the event loop turning.
    QSignalSpy finished(&process, &QProcess::finished);
    process.start();
    if (!process.waitForStarted(waitMs) || !finished.wait(waitMs))
        return {};
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromLocal8Bit(process.readAllStandardError())};
}

void WidgetProgramTest::writeConfig(const QByteArray &json)
{
    QVERIFY(QDir().mkpath(m_dirs->filePath(u"data/Aerolume"_qs)));
    QFile file(m_dirs->filePath(u"data/Aerolume/widget-config.json"_qs));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(json);
}

QImage WidgetProgramTest::picture(const QString &name) const
{
    return QImage(m_dirs->filePath(u"out/"_qs + name)).convertToFormat(QImage::Format_ARGB32);
}

void WidgetProgramTest::sampleRenderWritesEveryFaceAtTwiceItsSize()
{
    const Run result = run({u"--render"_qs, m_dirs->filePath(u"out"_qs), u"--sample"_qs});
    QVERIFY2(result.exitCode == 0, qPrintable(result.errors));
    const QList<std::pair<QString, QSize>> expected{{u"nearest.png"_qs, {340, 340}},
                                                    {u"radar-small.png"_qs, {340, 340}},
                                                    {u"radar-medium.png"_qs, {728, 340}},
                                                    {u"board.png"_qs, {728, 764}}};
    for (const auto &[name, size] : expected) {
        const QImage image = picture(name);
        QVERIFY2(!image.isNull(), qPrintable(name));
        QCOMPARE(image.size(), size);
    }
    const QImage radar = picture(u"radar-small.png"_qs);
    const QPoint military = FaceProbe::radarSmallPixel(18.9 / 25, 170);
    QVERIFY2(FaceProbe::sameColor(radar.pixelColor(military), gold),
             qPrintable(FaceProbe::describe(radar.pixelColor(military))));
    QCOMPARE(m_server->requests().size(), 0);
}

void WidgetProgramTest::liveRenderDrawsTheFetchedSky()
{
    writeConfig(R"({"home":{"latitude":45.5,"longitude":-122.6,"label":"Home"},"radiusNM":20})");
    m_server->route("/v2/point/", [](const LoopbackHttpServer::Request &) {
        LoopbackHttpServer::Response response;
        response.body = feedAnswer;
        return response;
    });
    const Run result = run({u"--render"_qs, m_dirs->filePath(u"out"_qs)});
    QVERIFY2(result.exitCode == 0, qPrintable(result.errors));
    QCOMPARE(m_server->requestCount("/v2/point/45.50000/-122.60000/20"), 1);

    const QImage radar = picture(u"radar-small.png"_qs);
    QVERIFY(!radar.isNull());
    const QPoint east = FaceProbe::radarSmallPixel(0.5, 90);
    const QPoint west = FaceProbe::radarSmallPixel(0.5, 270);
    QVERIFY2(FaceProbe::sameColor(radar.pixelColor(east), QColor(Qt::red)),
             qPrintable(FaceProbe::describe(radar.pixelColor(east))));
    QVERIFY2(FaceProbe::sameColor(radar.pixelColor(west), gold),
             qPrintable(FaceProbe::describe(radar.pixelColor(west))));
}

void WidgetProgramTest::liveRenderWithBrokenFeedsDrawsTheEmptyScope()
{
    writeConfig(R"({"home":{"latitude":45.5,"longitude":-122.6,"label":"Home"},"radiusNM":20})");
    m_server->route("/v2/point/", [](const LoopbackHttpServer::Request &) {
        LoopbackHttpServer::Response response;
        response.status = 503;
        return response;
    });
    m_server->route("/api/v2/", [](const LoopbackHttpServer::Request &) {
        LoopbackHttpServer::Response response;
        response.drop = true;
        return response;
    });
    const Run result = run({u"--render"_qs, m_dirs->filePath(u"out"_qs)});
    QVERIFY2(result.exitCode == 0, qPrintable(result.errors));
    // A dropped connection may be tried twice by the HTTP client; each network was asked.
    QCOMPARE(m_server->requestCount("/v2/point/"), 1);
    QVERIFY(m_server->requestCount("/api/v2/") >= 1);

    // The scope is there with home in its centre, and no aircraft on it.
    const QImage radar = picture(u"radar-small.png"_qs);
    QVERIFY(!radar.isNull());
    QVERIFY(FaceProbe::sameColor(radar.pixelColor(FaceProbe::radarSmallCentre()), phosphor));
    QVERIFY(!FaceProbe::colorNear(radar, FaceProbe::radarSmallPixel(0.5, 90), 10, phosphor));
    QVERIFY(!FaceProbe::colorNear(radar, FaceProbe::radarSmallPixel(0.5, 270), 10, gold));
}

void WidgetProgramTest::liveRenderWithoutHomeDrawsTheSetupPrompt()
{
    const Run result = run({u"--render"_qs, m_dirs->filePath(u"out"_qs)});
    QVERIFY2(result.exitCode == 0, qPrintable(result.errors));
    QCOMPARE(m_server->requests().size(), 0);
    for (const QString &name :
         {u"nearest.png"_qs, u"radar-small.png"_qs, u"radar-medium.png"_qs, u"board.png"_qs}) {
        const QImage image = picture(name);
        QVERIFY2(!image.isNull(), qPrintable(name));
        // No home dot, no scope: the prompt stands in the middle in the dim colour only.
        const QPoint centre(image.width() / 2, image.height() / 2);
        QVERIFY(!FaceProbe::colorNear(image, centre, 3, phosphor, 4));
    }
}

void WidgetProgramTest::badArgumentsFail_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("sample alone") << QStringList{u"--sample"_qs};
    QTest::newRow("render without folder") << QStringList{u"--render"_qs};
    QTest::newRow("unknown option") << QStringList{u"--frobnicate"_qs};
}

void WidgetProgramTest::badArgumentsFail()
{
    QFETCH(QStringList, arguments);
    const Run result = run(arguments);
    QVERIFY(result.exitCode != 0);
    QVERIFY(!result.errors.isEmpty());
}

QTEST_GUILESS_MAIN(WidgetProgramTest)
#include "WidgetProgramTest.moc"
