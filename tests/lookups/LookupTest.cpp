#include "DefaultsStore.h"
#include "FlightStore.h"
#include "LoopbackHttpServer.h"
#include "PhotoAPI.h"
#include "RouteAPI.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

Q_DECLARE_METATYPE(std::optional<FlightRoute>)
Q_DECLARE_METATYPE(std::optional<PlanePhoto>)

namespace {

Aircraft aircraft(const QByteArray &json)
{
    auto decoded = Aircraft::decode(json);
    if (!decoded.ok())
        qFatal("bad test aircraft: %s", qPrintable(decoded.error()));
    return std::move(decoded).value();
}

} // namespace

// JSON in this file writes "/" as "\/" after a scheme: moc would read a double slash in a raw string
// as the start of a comment.
class LookupTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    LoopbackHttpServer m_server;

private slots:
    void initTestCase()
    {
        qputenv("XDG_DATA_HOME", m_dir.filePath(u"data"_qs).toUtf8());
        qputenv("AEROLUME_ROUTE_URL", m_server.baseUrl().toUtf8());
        qputenv("AEROLUME_PHOTO_URL", (m_server.baseUrl() + u"/"_qs).toUtf8());
        m_server.route("/v0/callsign/", [](const LoopbackHttpServer::Request &request) {
            const QByteArray callsign = request.path.mid(int(qstrlen("/v0/callsign/")));
            if (callsign == "ASA512")
                return LoopbackHttpServer::Response{200, R"({"response":{"flightroute":{"callsign":"ASA512","origin":{"iata_code":"SEA","icao_code":"KSEA","municipality":"Seattle"},"destination":{"icao_code":"KSFO","municipality":"San Francisco"}}}})", "application/json", false, false};
            if (callsign == "SLOW1")
                return LoopbackHttpServer::Response{200, {}, "application/json", false, true};
            return LoopbackHttpServer::Response{404, R"({"response":"unknown callsign"})", "application/json", false, false};
        });
        m_server.route("/pub/photos/hex/", [](const LoopbackHttpServer::Request &request) {
            if (request.path.endsWith("/~a1b2c3"))
                return LoopbackHttpServer::Response{200, R"({"photos":[{"thumbnail_large":{"src":"https:\/\/img.example/1.jpg"},"link":"https:\/\/photos.example/1","photographer":"J. Doe"}]})", "application/json", false, false};
            return LoopbackHttpServer::Response{200, R"({"photos":[]})", "application/json", false, false};
        });
    }

    void routeDecoding_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<std::optional<FlightRoute>>("expected");
        const auto route = [](QString from, std::optional<QString> fromCity, QString to, std::optional<QString> toCity) {
            return std::optional(FlightRoute{from, fromCity, to, toCity});
        };
        QTest::newRow("iata codes") << QByteArray(R"({"response":{"flightroute":{"origin":{"iata_code":"SEA","municipality":"Seattle"},"destination":{"iata_code":"SFO","municipality":"San Francisco"}}}})")
                                    << route(u"SEA"_qs, u"Seattle"_qs, u"SFO"_qs, u"San Francisco"_qs);
        QTest::newRow("icao only at the origin") << QByteArray(R"({"response":{"flightroute":{"origin":{"icao_code":"KSEA"},"destination":{"iata_code":"SFO","icao_code":"KSFO"}}}})")
                                                 << route(u"KSEA"_qs, std::nullopt, u"SFO"_qs, std::nullopt);
        QTest::newRow("empty iata is taken") << QByteArray(R"({"response":{"flightroute":{"origin":{"iata_code":"","icao_code":"KSEA"},"destination":{"iata_code":"SFO"}}}})")
                                             << route(QString(), std::nullopt, u"SFO"_qs, std::nullopt);
        QTest::newRow("null iata falls back") << QByteArray(R"({"response":{"flightroute":{"origin":{"iata_code":null,"icao_code":"KSEA"},"destination":{"iata_code":"SFO"}}}})")
                                              << route(u"KSEA"_qs, std::nullopt, u"SFO"_qs, std::nullopt);
        QTest::newRow("origin without code") << QByteArray(R"({"response":{"flightroute":{"origin":{"municipality":"X"},"destination":{"iata_code":"SFO"}}}})")
                                             << std::optional<FlightRoute>();
        QTest::newRow("no destination") << QByteArray(R"({"response":{"flightroute":{"origin":{"iata_code":"SEA"}}}})")
                                        << std::optional<FlightRoute>();
        QTest::newRow("unknown callsign") << QByteArray(R"({"response":"unknown callsign"})") << std::optional<FlightRoute>();
        QTest::newRow("no response") << QByteArray(R"({"flightroute":{}})") << std::optional<FlightRoute>();
        QTest::newRow("wrong type in an airport") << QByteArray(R"({"response":{"flightroute":{"origin":{"iata_code":7},"destination":{"iata_code":"SFO"}}}})")
                                                  << std::optional<FlightRoute>();
        QTest::newRow("wrong type of municipality") << QByteArray(R"({"response":{"flightroute":{"origin":{"iata_code":"SEA","municipality":[]},"destination":{"iata_code":"SFO"}}}})")
                                                    << std::optional<FlightRoute>();
        QTest::newRow("not JSON") << QByteArray("<html>") << std::optional<FlightRoute>();
    }

    void routeDecoding()
    {
        QFETCH(QByteArray, json);
        QFETCH(std::optional<FlightRoute>, expected);
        QCOMPARE(RouteAPI::decode(json), expected);
    }

    void routeTexts()
    {
        const FlightRoute both{u"SEA"_qs, u"Seattle"_qs, u"SFO"_qs, u"San Francisco"_qs};
        QCOMPARE(both.summary(), u"SEA → SFO"_qs);
        QCOMPARE(both.citySummary(), u"Seattle → San Francisco"_qs);
        QCOMPARE((FlightRoute{u"SEA"_qs, std::nullopt, u"SFO"_qs, u""_qs}).citySummary(), std::nullopt);
        QCOMPARE((FlightRoute{u"SEA"_qs, u""_qs, u"SFO"_qs, u"X"_qs}).citySummary(), u" → X"_qs);
    }

    void photoDecoding_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<std::optional<PlanePhoto>>("expected");
        QTest::newRow("full") << QByteArray(R"({"photos":[{"thumbnail_large":{"src":"https:\/\/img.example/a.jpg"},"link":"https:\/\/p.example/a","photographer":"Ann"}]})")
                              << std::optional(PlanePhoto{QUrl(u"https://img.example/a.jpg"_qs), QUrl(u"https://p.example/a"_qs), u"Ann"_qs});
        QTest::newRow("bad link keeps the photo") << QByteArray(R"({"photos":[{"thumbnail_large":{"src":"https:\/\/img.example/a.jpg"},"link":"http:\/\/exa mple/"}]})")
                                                  << std::optional(PlanePhoto{QUrl(u"https://img.example/a.jpg"_qs), std::nullopt, std::nullopt});
        QTest::newRow("first lacks a thumbnail") << QByteArray(R"({"photos":[{"link":"https:\/\/p.example/a"},{"thumbnail_large":{"src":"https:\/\/img.example/b.jpg"}}]})")
                                                 << std::optional<PlanePhoto>();
        QTest::newRow("no src") << QByteArray(R"({"photos":[{"thumbnail_large":{}}]})") << std::optional<PlanePhoto>();
        QTest::newRow("empty list") << QByteArray(R"({"photos":[]})") << std::optional<PlanePhoto>();
        QTest::newRow("no photos key") << QByteArray(R"({})") << std::optional<PlanePhoto>();
        QTest::newRow("photos of the wrong type") << QByteArray(R"({"photos":{}})") << std::optional<PlanePhoto>();
        QTest::newRow("photographer of the wrong type") << QByteArray(R"({"photos":[{"thumbnail_large":{"src":"https:\/\/img.example/a.jpg"},"photographer":1}]})")
                                                        << std::optional<PlanePhoto>();
        QTest::newRow("a later photo of the wrong shape") << QByteArray(R"({"photos":[{"thumbnail_large":{"src":"https:\/\/img.example/a.jpg"}},3]})")
                                                          << std::optional<PlanePhoto>();
        QTest::newRow("invalid src") << QByteArray(R"({"photos":[{"thumbnail_large":{"src":"http:\/\/exa mple/a.jpg"}}]})")
                                     << std::optional<PlanePhoto>();
    }

    void photoDecoding()
    {
        QFETCH(QByteArray, json);
        QFETCH(std::optional<PlanePhoto>, expected);
        QCOMPARE(PhotoAPI::decode(json), expected);
    }

    // Both services get the same fixed header with the contact address; a 404 is simply no route.
    void fetchesSendTheContactHeader()
    {
        QObject context; // answers after a failed check must not reach this finished frame
        std::optional<FlightRoute> route;
        bool done = false;
        RouteAPI::fetch(u"ASA512"_qs, &context, [&](std::optional<FlightRoute> result) {
            route = result;
            done = true;
        });
        QTRY_VERIFY(done);
        QCOMPARE(route->summary(), u"SEA → KSFO"_qs);
        const QByteArray agent = m_server.requests().constLast().header("user-agent");
        QVERIFY2(agent.startsWith("Aerolume/1.1 (+mailto:") && agent.endsWith(")"), agent.constData());

        done = false;
        RouteAPI::fetch(u"NOPE1"_qs, &context, [&](std::optional<FlightRoute> result) {
            route = result;
            done = true;
        });
        QTRY_VERIFY(done);
        QVERIFY(!route);

        std::optional<PlanePhoto> photo;
        done = false;
        PhotoAPI::fetch(u"~a1b2c3"_qs, &context, [&](std::optional<PlanePhoto> result) {
            photo = result;
            done = true;
        });
        QTRY_VERIFY(done);
        QCOMPARE(photo->photographer, u"J. Doe"_qs);
        QVERIFY(m_server.requests().constLast().path.endsWith("/pub/photos/hex/~a1b2c3"));
        QCOMPARE(m_server.requests().constLast().header("user-agent"), agent);
    }

    void invalidAddressMakesNoRequest()
    {
        const int before = int(m_server.requests().size());
        QObject context;
        bool done = false;
        std::optional<FlightRoute> route = FlightRoute{};
        RouteAPI::fetch(u"AB C1"_qs, &context, [&](std::optional<FlightRoute> result) {
            route = result;
            done = true;
        });
        QTRY_VERIFY(done);
        QVERIFY(!route);
        QCOMPARE(int(m_server.requests().size()), before);
    }

    void lookupsAreAskedOncePerKey()
    {
        DefaultsStore defaults(m_dir.filePath(u"once.conf"_qs));
        FlightStore store(FlightStore::Dependencies{&defaults, nullptr, {}, {}, 0});
        QSignalSpy routes(&store, &FlightStore::routesChanged);
        const auto routeRequests = [this] { return m_server.requestCount("/v0/callsign/"); };
        const int before = routeRequests();

        // Gates: no flight, too short, not three letters first. None leaves a trace.
        for (const char *json : {R"({"hex":"a"})", R"({"hex":"a","flight":" AB1 "})", R"({"hex":"a","flight":"N123AB"})",
                                 R"({"hex":"a","flight":"AB1C"})"})
            store.loadRoute(aircraft(json));
        QCOMPARE(routeRequests(), before);
        QVERIFY(store.routeLookups().isEmpty() && store.routeMisses().isEmpty());

        // Two aircraft with the same trimmed callsign share one lookup and one entry.
        store.loadRoute(aircraft(R"({"hex":"a","flight":"ASA512  "})"));
        store.loadRoute(aircraft(R"({"hex":"b","flight":"ASA512"})"));
        QCOMPARE(store.routeLookups(), QSet<QString>{u"ASA512"_qs});
        QVERIFY(routes.wait());
        QCOMPARE(routeRequests(), before + 1);
        QVERIFY(store.routeLookups().isEmpty());
        QCOMPARE(store.routes().value(u"ASA512"_qs).originCode, u"SEA"_qs);
        store.loadRoute(aircraft(R"({"hex":"c","flight":"ASA512"})"));
        QCOMPARE(routeRequests(), before + 1);

        // A miss is final; another case is another key; ABCD1 passes the lighter gate.
        store.loadRoute(aircraft(R"({"hex":"a","flight":"ABCD1"})"));
        QTRY_VERIFY(store.routeMisses().contains(u"ABCD1"_qs));
        store.loadRoute(aircraft(R"({"hex":"a","flight":"ABCD1"})"));
        store.loadRoute(aircraft(R"({"hex":"a","flight":"abcd1"})"));
        QTRY_VERIFY(store.routeMisses().contains(u"abcd1"_qs));
        QCOMPARE(routeRequests(), before + 3);

        // Photos: found once, misses final, a tilde goes out as it is; an invalid address is a miss.
        QSignalSpy photos(&store, &FlightStore::photosChanged);
        const int photoRequests = m_server.requestCount("/pub/photos/hex/~a1b2c3");
        store.loadPhoto(aircraft(R"({"hex":"~a1b2c3"})"));
        store.loadPhoto(aircraft(R"({"hex":"~a1b2c3"})"));
        QVERIFY(photos.wait());
        QCOMPARE(m_server.requestCount("/pub/photos/hex/~a1b2c3"), photoRequests + 1);
        store.loadPhoto(aircraft(R"({"hex":"~a1b2c3"})"));
        QCOMPARE(m_server.requestCount("/pub/photos/hex/~a1b2c3"), photoRequests + 1);
        store.loadPhoto(aircraft(R"({"hex":"bad hex"})"));
        QTRY_VERIFY(store.photoMisses().contains(u"bad hex"_qs));
        QVERIFY(store.photoFor(aircraft(R"({"hex":"~a1b2c3"})")).isValid());
        QVERIFY(!store.photoFor(aircraft(R"({"hex":"zzz"})")).isValid());

        // A lookup under way is not asked again, and a change of home leaves the caches filled.
        store.loadRoute(aircraft(R"({"hex":"s","flight":"SLOW1"})"));
        store.loadRoute(aircraft(R"({"hex":"s","flight":"SLOW1"})"));
        QTRY_COMPARE(m_server.requestCount("/v0/callsign/SLOW1"), 1);
        QVERIFY(store.routeLookups().contains(u"SLOW1"_qs));
        store.setHome(HomeLocation(1, 2, u"x"_qs));
        QVERIFY(store.routes().contains(u"ASA512"_qs));
        QVERIFY(store.routeMisses().contains(u"ABCD1"_qs));
        m_server.release();
    }
};

QTEST_GUILESS_MAIN(LookupTest)
#include "LookupTest.moc"
