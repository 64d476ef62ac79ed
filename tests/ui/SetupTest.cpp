#include "CoordinateText.h"
#include "DefaultsStore.h"
#include "FlightStore.h"
#include "Geocoder.h"
#include "LoopbackHttpServer.h"
#include "SetupController.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

Q_DECLARE_METATYPE(std::optional<double>)

class SetupTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    LoopbackHttpServer m_server;

private slots:
    void initTestCase()
    {
        qputenv("XDG_DATA_HOME", m_dir.filePath(u"data"_qs).toUtf8());
        qputenv("AEROLUME_GEOCODER_URL", m_server.baseUrl().toUtf8());
        m_server.route("/search", [](const LoopbackHttpServer::Request &request) {
            if (request.path.contains("q=Portland"))
                return LoopbackHttpServer::Response{200, R"([{"lat":"45.5152","lon":"-122.6784","display_name":"Portland","address":{"city":"Portland","state":"Oregon","country":"United States"}}])", "application/json", false, false};
            if (request.path.contains("q=Nowhere%20town"))
                return LoopbackHttpServer::Response{200, R"([{"lat":"1.5","lon":"2.5","address":{"country":"X"}}])", "application/json", false, false};
            if (request.path.contains("q=Hamlet"))
                return LoopbackHttpServer::Response{200, R"([{"lat":"1","lon":"2","address":{"hamlet":"Tiny"}}])", "application/json", false, false};
            if (request.path.contains("q=broken"))
                return LoopbackHttpServer::Response{503, "busy", "text/plain", false, false};
            return LoopbackHttpServer::Response{200, "[]", "application/json", false, false};
        });
    }

    void coordinateParsing_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<std::optional<double>>("expected");
        QTest::newRow("plain") << u"45.6387"_qs << std::optional(45.6387);
        QTest::newRow("blanks and tabs around") << u" \t-122.6615 "_qs << std::optional(-122.6615);
        QTest::newRow("exponent") << u"1e1"_qs << std::optional(10.0);
        QTest::newRow("plus sign") << u"+5"_qs << std::optional(5.0);
        QTest::newRow("decimal comma") << u"45,6"_qs << std::optional<double>();
        QTest::newRow("trailing letter") << u"45.6N"_qs << std::optional<double>();
        QTest::newRow("inner blank") << u"45 .6"_qs << std::optional<double>();
        QTest::newRow("line break is not trimmed") << u"45.6\n"_qs << std::optional<double>();
        QTest::newRow("empty") << QString() << std::optional<double>();
        QTest::newRow("two signs") << u"+-5"_qs << std::optional<double>();
    }

    void coordinateParsing()
    {
        QFETCH(QString, text);
        QFETCH(std::optional<double>, expected);
        QCOMPARE(CoordinateText::parse(text), expected);
    }

    void manualBounds_data()
    {
        QTest::addColumn<QString>("latitude");
        QTest::addColumn<QString>("longitude");
        QTest::addColumn<bool>("accepted");
        QTest::newRow("the bounds themselves") << u"90"_qs << u"-180"_qs << true;
        QTest::newRow("past the pole") << u"90.0001"_qs << u"0"_qs << false;
        QTest::newRow("past the antimeridian") << u"0"_qs << u"-180.5"_qs << false;
        QTest::newRow("nan parses but fails") << u"nan"_qs << u"0"_qs << false;
        QTest::newRow("inf parses but fails") << u"0"_qs << u"inf"_qs << false;
        QTest::newRow("decimal comma") << u"45,6"_qs << u"1"_qs << false;
    }

    void manualBounds()
    {
        QFETCH(QString, latitude);
        QFETCH(QString, longitude);
        QFETCH(bool, accepted);
        SetupController setup;
        setup.setProperty("latText", latitude);
        setup.setProperty("lonText", longitude);
        setup.setManual();
        QCOMPARE(setup.hasResolved(), accepted);
        QCOMPARE(setup.statusIsError(), !accepted);
        QCOMPARE(setup.statusMessage(), accepted ? u"Location found."_qs
                                                 : u"Coordinates must be decimal degrees, e.g. 45.6387, -122.6615."_qs);
        if (accepted) {
            // Fields show five decimals, the found label four.
            QCOMPARE(setup.property("latText").toString(), u"90.00000"_qs);
            QCOMPARE(setup.resolvedText(), u"Home  (90.0000, -180.0000)"_qs);
        }
    }

    void aFailureKeepsTheEarlierPoint()
    {
        SetupController setup;
        setup.setProperty("latText", u"45.5"_qs);
        setup.setProperty("lonText", u"-122.5"_qs);
        setup.setManual();
        setup.setProperty("latText", u"north"_qs);
        setup.setManual();
        QVERIFY(setup.hasResolved());
        QVERIFY(setup.statusIsError());
        QCOMPARE(setup.resolved()->latitude, 45.5);
    }

    void geocoding_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("status");
        QTest::newRow("city and state") << u"Portland"_qs << u"Portland, Oregon"_qs << u"Location found."_qs;
        QTest::newRow("neither gives Home") << u"Nowhere town"_qs << u"Home"_qs << u"Location found."_qs;
        QTest::newRow("hamlet counts as locality") << u"Hamlet"_qs << u"Tiny"_qs << u"Location found."_qs;
        QTest::newRow("no match") << u"Atlantis"_qs << QString() << u"No match found for that address."_qs;
        QTest::newRow("service error") << u"broken"_qs << QString()
                                       << u"Address lookup failed: OpenStreetMap's Nominatim service answered with status 503."_qs;
    }

    void geocoding()
    {
        QFETCH(QString, address);
        QFETCH(QString, label);
        QFETCH(QString, status);
        Geocoder::shared()->setMinimumIntervalMs(0);
        SetupController setup;
        setup.setProperty("address", address);
        QSignalSpy working(&setup, &SetupController::isWorkingChanged);
        setup.geocode();
        QVERIFY(setup.isWorking());
        QTRY_VERIFY(!setup.isWorking());
        QCOMPARE(setup.statusMessage(), status);
        QCOMPARE(setup.hasResolved(), !label.isEmpty());
        if (!label.isEmpty())
            QCOMPARE(setup.resolved()->label, label);
    }

    void geocoderSpacesRequestsAndCaches()
    {
        Geocoder geocoder;
        geocoder.setMinimumIntervalMs(300);
        const int before = m_server.requestCount("/search");
        int answers = 0;
        QElapsedTimer clock;
        clock.start();
        geocoder.search(u"Portland"_qs, this, [&](const Geocoder::Answer &) { ++answers; });
        geocoder.search(u"Atlantis"_qs, this, [&](const Geocoder::Answer &) { ++answers; });
        geocoder.search(u"Portland"_qs, this, [&](const Geocoder::Answer &) { ++answers; });
        QTRY_COMPARE(answers, 3);
        // Two distinct texts went out, the repeat came from the cache; the second waited its turn.
        QCOMPARE(m_server.requestCount("/search") - before, 2);
        QVERIFY(clock.elapsed() >= 300);
        QVERIFY(m_server.requests().constLast().path.contains("format=jsonv2"));
    }

    void confirmSetsTheHomeAndTheSheetOpensOnIt()
    {
        DefaultsStore defaults(m_dir.filePath(u"setup.conf"_qs));
        FlightStore store(FlightStore::Dependencies{&defaults, nullptr, {}, {}, 0, false});
        SetupController first;
        first.setStore(&store);
        first.appear();
        QVERIFY(!first.hasResolved());
        first.setProperty("latText", u"45.63871"_qs);
        first.setProperty("lonText", u"-122.66154"_qs);
        first.setManual();
        first.confirm();
        QCOMPARE(store.home()->latitude, 45.63871);

        SetupController sheet;
        sheet.setStore(&store);
        sheet.appear();
        QVERIFY(sheet.hasResolved());
        QCOMPARE(sheet.property("latText").toString(), u"45.63871"_qs);
        QVERIFY(sheet.statusMessage().isEmpty());
    }
};

QTEST_GUILESS_MAIN(SetupTest)
#include "SetupTest.moc"
