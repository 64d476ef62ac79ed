#include "LoopbackHttpServer.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace {

struct Run
{
    int exitCode = -1;
    QString out;
    QString err;
};

} // namespace

// The home and watch commands as a user runs them: real processes, real files in temporary XDG folders,
// a loopback feed.
class CliHomeWatchTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    LoopbackHttpServer m_server;
    int m_primaryStatus = 200;

    QProcessEnvironment environment() const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_CONFIG_HOME"_qs, m_dir.filePath(u"config"_qs));
        environment.insert(u"XDG_DATA_HOME"_qs, m_dir.filePath(u"data"_qs));
        environment.insert(u"XDG_RUNTIME_DIR"_qs, m_dir.filePath(u"runtime"_qs));
        environment.insert(u"AEROLUME_PRIMARY_FEED_URL"_qs, m_server.baseUrl());
        environment.insert(u"AEROLUME_FALLBACK_FEED_URL"_qs, m_server.baseUrl());
        environment.remove(u"DBUS_SESSION_BUS_ADDRESS"_qs);
        return environment;
    }

    void start(QProcess &process, const QStringList &arguments) const
    {
        process.setProcessEnvironment(environment());
        process.start(QStringLiteral(AEROLUME_CLI_PATH), arguments);
        QVERIFY(process.waitForStarted());
    }

    static Run finish(QProcess &process)
    {
        // The feed lives in this process: keep its event loop turning while the program works.
        while (!process.waitForFinished(20))
            QCoreApplication::processEvents();
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

    Run cli(const QStringList &arguments)
    {
        QProcess process;
        start(process, arguments);
        return finish(process);
    }

    QString widgetFile() const { return m_dir.filePath(u"data/Aerolume/widget-config.json"_qs); }

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        m_server.route("/v2/point/", [this](const LoopbackHttpServer::Request &) {
            LoopbackHttpServer::Response response;
            response.status = m_primaryStatus;
            response.body = R"({"ac":[{"hex":"far","lat":1,"lon":2,"dst":9},{"hex":"near","lat":1,"lon":2,"dst":1}]})";
            return response;
        });
        m_server.route("/api/v2/lat/", [](const LoopbackHttpServer::Request &) {
            return LoopbackHttpServer::Response{500, "down", "text/plain", false, false};
        });
    }

    void homeIsStoredAndSharedAsTheAppDoes()
    {
        Run run = cli({u"home"_qs});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.out, u"No home is set.\nRadius: 25 nm\n"_qs);

        run = cli({u"home"_qs, u"set"_qs, u"47.6062"_qs, u"-122.3321"_qs, u"Seattle, WA"_qs});
        QCOMPARE(run.exitCode, 0);
        QFile file(widgetFile());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QJsonObject shared = QJsonDocument::fromJson(file.readAll()).object();
        QCOMPARE(shared.value(u"home").toObject().value(u"label").toString(), u"Seattle, WA"_qs);
        QCOMPARE(shared.value(u"radiusNM").toDouble(), 25.0);
        file.close();

        run = cli({u"radius"_qs, u"12.5"_qs});
        QCOMPARE(run.exitCode, 0);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(QJsonDocument::fromJson(file.readAll()).object().value(u"radiusNM").toDouble(), 12.5);
        file.close();

        run = cli({u"home"_qs});
        QCOMPARE(run.out, u"Home: Seattle, WA at 47.60620, -122.33210\nRadius: 12.5 nm\n"_qs);
        QSettings settings(m_dir.filePath(u"config/Aerolume/Aerolume.conf"_qs), QSettings::IniFormat);
        QCOMPARE(settings.value(u"radiusNM").toDouble(), 12.5);
        QVERIFY(settings.value(u"homeLocation").typeId() == QMetaType::QByteArray);
    }

    void watchPrintsRefreshesAndFailover()
    {
        QVERIFY(cli({u"home"_qs, u"set"_qs, u"1"_qs, u"2"_qs}).exitCode == 0);
        Run run = cli({u"watch"_qs, u"--count"_qs, u"1"_qs, u"--json"_qs});
        QCOMPARE(run.exitCode, 0);
        const QJsonObject line = QJsonDocument::fromJson(run.out.toUtf8()).object();
        QCOMPARE(line, (QJsonObject{{u"event"_qs, u"applied"_qs}, {u"source"_qs, u"adsb.lol"_qs},
                                    {u"count"_qs, 2}, {u"nearest"_qs, u"near"_qs}}));

        m_primaryStatus = 503;
        run = cli({u"watch"_qs, u"--count"_qs, u"1"_qs, u"--json"_qs});
        m_primaryStatus = 200;
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(QJsonDocument::fromJson(run.out.toUtf8()).object(),
                 (QJsonObject{{u"event"_qs, u"error"_qs}, {u"lastError"_qs, u"adsb.fi returned an error"_qs}}));

        run = cli({u"watch"_qs, u"--count"_qs, u"1"_qs});
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.out.contains(u"2 aircraft from adsb.lol, nearest NEAR at 1.0 nm"), qPrintable(run.out));
    }

    void oneOwnerOfTheLiveState()
    {
        QVERIFY(cli({u"home"_qs, u"set"_qs, u"1"_qs, u"2"_qs}).exitCode == 0);
        QProcess owner;
        start(owner, {u"watch"_qs});
        // The owner holds the lock once its first refresh is through.
        QSignalSpy requested(&m_server, &LoopbackHttpServer::requestReceived);
        QVERIFY(requested.wait(10000));
        QTRY_VERIFY(owner.bytesAvailable() > 0 || owner.canReadLine());

        for (const QStringList &arguments : {QStringList{u"watch"_qs}, QStringList{u"radius"_qs, u"3"_qs},
                                             QStringList{u"home"_qs, u"clear"_qs}}) {
            const Run second = cli(arguments);
            QCOMPARE(second.exitCode, 1);
            QVERIFY2(second.err.contains(u"aerolume-cli (process %1)"_qs.arg(owner.processId())), qPrintable(second.err));
        }
        owner.kill();
        owner.waitForFinished();
        // A lock left by a process that is gone is taken over.
        QCOMPARE(cli({u"radius"_qs, u"3"_qs}).exitCode, 0);
    }

    void forgettingHomeRemovesTheWidgetFile()
    {
        QVERIFY(cli({u"home"_qs, u"set"_qs, u"1"_qs, u"2"_qs}).exitCode == 0);
        QVERIFY(QFile::exists(widgetFile()));
        QCOMPARE(cli({u"home"_qs, u"clear"_qs}).exitCode, 0);
        QVERIFY(!QFile::exists(widgetFile()));
        const Run run = cli({u"watch"_qs});
        QCOMPARE(run.exitCode, 1);
        QVERIFY(run.err.contains(u"No home is set"));
    }

    void badArguments_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("message");
        QTest::newRow("home set without lon") << QStringList{u"home"_qs, u"set"_qs, u"1"_qs} << u"home set needs LAT LON"_qs;
        QTest::newRow("home set bad lat") << QStringList{u"home"_qs, u"set"_qs, u"x"_qs, u"1"_qs} << u"LAT must be a number"_qs;
        QTest::newRow("home set bad lon") << QStringList{u"home"_qs, u"set"_qs, u"1"_qs, u"181"_qs} << u"LON must be a number"_qs;
        QTest::newRow("radius zero") << QStringList{u"radius"_qs, u"0"_qs} << u"NM must be a number above 0"_qs;
        QTest::newRow("radius missing") << QStringList{u"radius"_qs} << u"unknown radius command"_qs;
        QTest::newRow("home oops") << QStringList{u"home"_qs, u"oops"_qs} << u"unknown home command: oops"_qs;
        QTest::newRow("watch count") << QStringList{u"watch"_qs, u"--count"_qs, u"0"_qs} << u"--count needs a whole number"_qs;
    }

    void badArguments()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, message);
        const Run run = cli(arguments);
        QCOMPARE(run.exitCode, 2);
        QVERIFY2(run.err.contains(message), qPrintable(run.err));
        QVERIFY(run.err.contains(u"usage: aerolume-cli"));
    }
};

QTEST_GUILESS_MAIN(CliHomeWatchTest)
#include "CliHomeWatchTest.moc"
