#include "LoopbackHttpServer.h"
#include "NearbyCommand.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTest>

namespace {

const QByteArray answer = R"({"ac":[)"
                          R"({"hex":"far1","flight":"ASA512  ","t":"B739","alt_baro":12500,"gs":320.5,"baro_rate":-1024,"lat":45.7,"lon":-122.6,"dst":10.0,"dir":247.5,"ownOp":"","squawk":"7700"},)"
                          R"({"hex":"a1b2c3","r":"N44RH","t":"R44","category":"A7","alt_baro":"ground","lat":45.61,"lon":-122.71,"dst":0.4,"dir":10},)"
                          R"({"hex":"ae0001","flight":"RCH440","dbFlags":1,"lat":45.7,"lon":-122.6,"seen_pos":1.5})"
                          R"(]})";

struct Run
{
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

} // namespace

class CliNearbyTest : public QObject
{
    Q_OBJECT

    LoopbackHttpServer m_server;

    Run cli(const QStringList &arguments, const QString &locale = u"en_US.UTF-8"_qs)
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"AEROLUME_PRIMARY_FEED_URL"_qs, m_server.baseUrl());
        environment.insert(u"AEROLUME_FALLBACK_FEED_URL"_qs, m_server.baseUrl());
        environment.insert(u"AEROLUME_ROUTE_URL"_qs, m_server.baseUrl());
        environment.insert(u"AEROLUME_PHOTO_URL"_qs, m_server.baseUrl());
        environment.insert(u"AEROLUME_STREAM_URL"_qs, m_server.baseUrl() + u"/streams"_qs);
        environment.insert(u"LC_ALL"_qs, locale);
        environment.insert(u"LANG"_qs, locale);
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(AEROLUME_CLI_PATH), arguments);
        // The server lives in this process, so its event loop must turn while the program waits on it.
        while (!process.waitForFinished(20))
            QCoreApplication::processEvents();
        return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
    }

private slots:
    void initTestCase()
    {
        m_server.route("/v2/point/", [](const LoopbackHttpServer::Request &) {
            LoopbackHttpServer::Response response;
            response.body = answer;
            return response;
        });
        m_server.route("/v0/callsign/", [](const LoopbackHttpServer::Request &request) {
            if (request.path.endsWith("/ASA512"))
                return LoopbackHttpServer::Response{200, R"({"response":{"flightroute":{"origin":{"iata_code":"SEA","municipality":"Seattle"},"destination":{"iata_code":"SFO","municipality":"San Francisco"}}}})", "application/json", false, false};
            return LoopbackHttpServer::Response{404, R"({"response":"unknown callsign"})", "application/json", false, false};
        });
        m_server.route("/pub/photos/hex/", [](const LoopbackHttpServer::Request &) {
            return LoopbackHttpServer::Response{200, R"({"photos":[]})", "application/json", false, false};
        });
        m_server.route("/v2/point/0.00000/", [](const LoopbackHttpServer::Request &) {
            return LoopbackHttpServer::Response{503, {}, "text/plain", false, false};
        });
        m_server.route("/api/v2/lat/0.00000/", [](const LoopbackHttpServer::Request &) {
            return LoopbackHttpServer::Response{200, R"({"aircraft":[{"hex":"x"},{"lat":1}]})", "application/json", false, false};
        });
    }

    void jsonHasExactlyTheDocumentedKeys()
    {
        const Run run = cli({u"nearby"_qs, u"--lat"_qs, u"45.6"_qs, u"--lon"_qs, u"-122.7"_qs, u"--json"_qs, u"--unit"_qs, u"nm"_qs});
        QCOMPARE(run.exitCode, 0);
        QVERIFY(run.err.isEmpty());
        const QJsonObject root = QJsonDocument::fromJson(run.out).object();
        QCOMPARE(root.value(u"source").toString(), u"adsb.lol"_qs);
        const QJsonArray rows = root.value(u"aircraft").toArray();
        QCOMPARE(rows.size(), 3);
        QStringList keys = rows[0].toObject().keys();
        keys.sort();
        QCOMPARE(keys, (QStringList{u"altitudeText"_qs, u"displayName"_qs, u"distanceText"_qs, u"emergency"_qs,
                                    u"helicopter"_qs, u"hex"_qs, u"lookDirection"_qs, u"military"_qs, u"onGround"_qs,
                                    u"operator"_qs, u"speedText"_qs, u"typeName"_qs, u"verticalText"_qs}));

        // Nearest first; absent values are null.
        const QJsonObject heli = rows[0].toObject();
        QCOMPARE(heli.value(u"hex").toString(), u"a1b2c3"_qs);
        QCOMPARE(heli.value(u"displayName").toString(), u"N44RH"_qs);
        QCOMPARE(heli.value(u"typeName").toString(), u"Robinson R44"_qs);
        QCOMPARE(heli.value(u"altitudeText").toString(), u"On ground"_qs);
        QCOMPARE(heli.value(u"lookDirection").toString(), u"Look N"_qs);
        QCOMPARE(heli.value(u"distanceText").toString(), u"0.4 nm"_qs);
        QVERIFY(heli.value(u"operator").isNull());
        QVERIFY(heli.value(u"verticalText").isNull());
        QCOMPARE(heli.value(u"helicopter").toBool(), true);
        QCOMPARE(heli.value(u"onGround").toBool(), true);

        const QJsonObject jet = rows[1].toObject();
        QCOMPARE(jet.value(u"displayName").toString(), u"ASA512"_qs);
        QCOMPARE(jet.value(u"operator").toString(), u"Alaska Airlines"_qs);
        QCOMPARE(jet.value(u"altitudeText").toString(), u"12,500 ft"_qs);
        QCOMPARE(jet.value(u"speedText").toString(), u"321 kt"_qs);
        QCOMPARE(jet.value(u"verticalText").toString(), u"↓ 1,024 ft/min"_qs);
        QCOMPARE(jet.value(u"emergency").toBool(), true);
        QCOMPARE(jet.value(u"military").toBool(), false);

        const QJsonObject military = rows[2].toObject();
        QVERIFY(military.value(u"distanceText").isNull());
        QVERIFY(military.value(u"lookDirection").isNull());
        QCOMPARE(military.value(u"military").toBool(), true);
        QCOMPARE(military.value(u"operator").toString(), u"US Air Mobility Command"_qs);
    }

    void groupingFollowsTheEnvironmentLocale()
    {
        const Run run = cli({u"nearby"_qs, u"--lat"_qs, u"45.6"_qs, u"--lon"_qs, u"-122.7"_qs, u"--json"_qs}, u"de_DE.UTF-8"_qs);
        QCOMPARE(run.exitCode, 0);
        const QJsonObject jet = QJsonDocument::fromJson(run.out).object().value(u"aircraft").toArray()[1].toObject();
        QCOMPARE(jet.value(u"altitudeText").toString(), u"12.500 ft"_qs);
        QCOMPARE(jet.value(u"verticalText").toString(), u"↓ 1.024 ft/min"_qs);
        QCOMPARE(jet.value(u"distanceText").toString(), u"11.5 mi"_qs); // a point as decimal mark all the same
    }

    void tableListsNearestFirst()
    {
        const Run run = cli({u"nearby"_qs, u"--lat"_qs, u"45.6"_qs, u"--lon"_qs, u"-122.7"_qs, u"--radius"_qs, u"10"_qs});
        QCOMPARE(run.exitCode, 0);
        const QStringList lines = QString::fromUtf8(run.out).split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 5);
        QVERIFY(lines[0].startsWith(u"NAME"));
        QVERIFY(lines[1].startsWith(u"N44RH"));
        QVERIFY(lines[2].startsWith(u"ASA512 !"));
        QVERIFY(lines[2].contains(u"Look WSW, 12° up"));
        QVERIFY(lines[3].startsWith(u"RCH440"));
        QCOMPARE(lines[4], u"3 aircraft from adsb.lol"_qs);
        QVERIFY(m_server.requests().constLast().path.endsWith("/10"));
    }

    void fetchFailurePrintsTheErrorAlone()
    {
        const Run run = cli({u"nearby"_qs, u"--lat"_qs, u"0"_qs, u"--lon"_qs, u"0"_qs});
        QCOMPARE(run.exitCode, 1);
        QVERIFY(run.out.isEmpty());
        QCOMPARE(QString::fromUtf8(run.err), u"adsb.fi: row 1: \"hex\" is missing\n"_qs);
    }

    // The one-off lookups print their result, or "none" with status 1.
    void lookups_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("out");
        QTest::newRow("route") << QStringList{u"route"_qs, u"ASA512"_qs} << 0 << u"SEA → SFO  (Seattle → San Francisco)\n"_qs;
        QTest::newRow("unknown route") << QStringList{u"route"_qs, u"ZZZ1"_qs} << 1 << u"none\n"_qs;
        QTest::newRow("no photo") << QStringList{u"photo"_qs, u"a1b2c3"_qs} << 1 << u"none\n"_qs;
        QTest::newRow("page link") << QStringList{u"resolve-stream"_qs, u"https://www.liveatc.net/hlisten.php?mount=KPDX2"_qs}
                                   << 0 << m_server.baseUrl() + u"/streams/KPDX2\n"_qs;
        QTest::newRow("not a stream scheme") << QStringList{u"resolve-stream"_qs, u"ftp://example.org/a"_qs} << 1 << u"none\n"_qs;
    }

    void lookups()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QString, out);
        const Run run = cli(arguments);
        QCOMPARE(run.exitCode, exitCode);
        QCOMPARE(QString::fromUtf8(run.out), out);
    }

    void badArguments_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("message");
        QTest::newRow("no command") << QStringList{} << u"usage:"_qs;
        QTest::newRow("unknown command") << QStringList{u"far"_qs} << u"unknown command: far"_qs;
        QTest::newRow("missing lon") << QStringList{u"nearby"_qs, u"--lat"_qs, u"1"_qs} << u"--lat and --lon are required"_qs;
        QTest::newRow("not a number") << QStringList{u"nearby"_qs, u"--lat"_qs, u"1,5"_qs, u"--lon"_qs, u"2"_qs}
                                      << u"--lat must be a number, not 1,5"_qs;
        QTest::newRow("latitude out of range") << QStringList{u"nearby"_qs, u"--lat"_qs, u"91"_qs, u"--lon"_qs, u"2"_qs}
                                               << u"--lat must lie between -90 and 90"_qs;
        QTest::newRow("bad unit") << QStringList{u"nearby"_qs, u"--lat"_qs, u"1"_qs, u"--lon"_qs, u"2"_qs, u"--unit"_qs, u"ft"_qs}
                                  << u"--unit must be mi, nm or km, not ft"_qs;
        QTest::newRow("zero radius") << QStringList{u"nearby"_qs, u"--lat"_qs, u"1"_qs, u"--lon"_qs, u"2"_qs, u"--radius"_qs, u"0"_qs}
                                     << u"--radius must be above 0"_qs;
        QTest::newRow("value missing") << QStringList{u"nearby"_qs, u"--lat"_qs} << u"--lat needs a value"_qs;
        QTest::newRow("unknown flag") << QStringList{u"nearby"_qs, u"--lat"_qs, u"1"_qs, u"--lon"_qs, u"2"_qs, u"--all"_qs}
                                      << u"unknown argument: --all"_qs;
    }

    void badArguments()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, message);
        const int before = int(m_server.requests().size());
        const Run run = cli(arguments);
        QCOMPARE(run.exitCode, 2);
        const QString err = QString::fromUtf8(run.err) + QString::fromUtf8(run.out);
        QVERIFY2(err.contains(message), qPrintable(err));
        QVERIFY(err.contains(u"usage: aerolume-cli nearby"));
        QCOMPARE(int(m_server.requests().size()), before); // nothing was asked
    }
};

QTEST_GUILESS_MAIN(CliNearbyTest)
#include "CliNearbyTest.moc"
