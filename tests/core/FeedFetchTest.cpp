#include "FeedFetch.h"
#include "ADSB.h"
#include "APIResponse.h"
#include "HttpClient.h"
#include "LoopbackHttpServer.h"

#include <QNetworkAccessManager>
#include <QSignalSpy>
#include <QTest>
#include <clocale>

using Response = LoopbackHttpServer::Response;

namespace {

const QByteArray primaryPath = "/v2/point/";
const QByteArray fallbackPath = "/api/v2/lat/";

// How one network behaves in a case.
enum class Behaviour
{
    Rows,
    Empty,
    StaleRows,
    Status500,
    Status204,
    Status304,
    BadRow,
    Drop,
    Silent
};

QByteArray answerFor(Behaviour behaviour, const char *listKey, const char *hexPrefix)
{
    const QByteArray prefix(hexPrefix);
    switch (behaviour) {
    case Behaviour::Rows:
        return QByteArray("{\"") + listKey + "\":[{\"hex\":\"" + prefix +
               "1\",\"lat\":1,\"lon\":2,\"dst\":3.5}]}";
    case Behaviour::Empty:
        return QByteArray("{\"") + listKey + "\":[]}";
    case Behaviour::StaleRows:
        return QByteArray("{\"") + listKey + "\":[{\"hex\":\"" + prefix +
               "1\",\"lat\":1,\"lon\":2,\"seen_pos\":61}," + "{\"hex\":\"" + prefix + "2\",\"lat\":1}]}";
    case Behaviour::BadRow:
        return QByteArray("{\"") + listKey + "\":[{\"hex\":\"" + prefix +
               "1\",\"lat\":1,\"lon\":2},{\"lat\":1}]}";
    default:
        return {};
    }
}

LoopbackHttpServer::Handler handlerFor(Behaviour behaviour, const char *listKey, const char *hexPrefix)
{
    return [=](const LoopbackHttpServer::Request &) {
        Response response;
        response.body = answerFor(behaviour, listKey, hexPrefix);
        switch (behaviour) {
        case Behaviour::Status500:
            response.status = 500;
            response.body = "oops";
            break;
        case Behaviour::Status204:
            response.status = 204;
            break;
        case Behaviour::Status304:
            response.status = 304;
            break;
        case Behaviour::Drop:
            response.drop = true;
            break;
        case Behaviour::Silent:
            response.hold = true;
            break;
        default:
            break;
        }
        return response;
    };
}

QString rowsText(const QList<Aircraft> &rows)
{
    QStringList hexes;
    for (const Aircraft &row : rows)
        hexes.append(row.hex());
    return hexes.join(u',');
}

} // namespace

Q_DECLARE_METATYPE(Behaviour)

class FeedFetchTest : public QObject
{
    Q_OBJECT

    // A fetch with its outcome written down as text: "ok SOURCE ROWS" or "error MESSAGE".
    struct Outcome
    {
        QString text;
        bool reported = false;
    };

    static Outcome run(FeedFetch *fetch)
    {
        Outcome outcome;
        QObject::connect(fetch, &FeedFetch::succeeded, [&](const ADSB::FetchResult &result) {
            outcome = {u"ok %1 %2"_qs.arg(result.source, rowsText(result.aircraft)), true};
        });
        QObject::connect(fetch, &FeedFetch::failed, [&](const ADSB::FetchError &error) {
            outcome = {u"error "_qs + error.description(), true};
        });
        QSignalSpy destroyed(fetch, &QObject::destroyed);
        fetch->start();
        if (!destroyed.wait(10000))
            qWarning("fetch did not end");
        return outcome;
    }

    void pointAt(const LoopbackHttpServer &server)
    {
        qputenv("AEROLUME_PRIMARY_FEED_URL", server.baseUrl().toUtf8());
        qputenv("AEROLUME_FALLBACK_FEED_URL", (server.baseUrl() + u'/').toUtf8());
    }

    FeedFetch *newFetch(double radius = 25, int timeoutMs = 5000)
    {
        auto *fetch =
            new FeedFetch(ADSB::sources(), HomeLocation(45.6, -122.7, u"Home"_qs), radius, &m_network);
        fetch->setTimeoutMs(timeoutMs);
        return fetch;
    }

    QNetworkAccessManager m_network;

private slots:
    void init()
    {
        qunsetenv("AEROLUME_PRIMARY_FEED_NAME");
        qunsetenv("AEROLUME_FALLBACK_FEED_NAME");
    }

    // Every combination of what the two networks answer, and who gets the credit.
    void failover_data()
    {
        QTest::addColumn<Behaviour>("primary");
        QTest::addColumn<Behaviour>("fallback");
        QTest::addColumn<QString>("expected");
        // Qt resends a request once when the connection closes before any answer, as HTTP clients do.
        QTest::addColumn<bool>("fallbackAsked");

        QTest::newRow("rows, not asked")
            << Behaviour::Rows << Behaviour::Rows << u"ok adsb.lol p1"_qs << false;
        QTest::newRow("empty, rows") << Behaviour::Empty << Behaviour::Rows << u"ok adsb.fi f1"_qs << true;
        QTest::newRow("empty, empty") << Behaviour::Empty << Behaviour::Empty << u"ok adsb.lol "_qs << true;
        QTest::newRow("empty, error")
            << Behaviour::Empty << Behaviour::Status500 << u"ok adsb.lol "_qs << true;
        QTest::newRow("error, rows") << Behaviour::Status500 << Behaviour::Rows << u"ok adsb.fi f1"_qs
                                     << true;
        QTest::newRow("error, empty")
            << Behaviour::Status500 << Behaviour::Empty << u"ok adsb.fi "_qs << true;
        QTest::newRow("error, error")
            << Behaviour::Status500 << Behaviour::Status500 << u"error adsb.fi returned an error"_qs << true;
        QTest::newRow("stale rows count as empty")
            << Behaviour::StaleRows << Behaviour::Rows << u"ok adsb.fi f1"_qs << true;
        QTest::newRow("204 is an error, not empty")
            << Behaviour::Rows << Behaviour::Status204 << u"ok adsb.lol p1"_qs << false;
        QTest::newRow("204 then empty")
            << Behaviour::Status204 << Behaviour::Empty << u"ok adsb.fi "_qs << true;
        QTest::newRow("304 then 204")
            << Behaviour::Status304 << Behaviour::Status204 << u"error adsb.fi returned an error"_qs << true;
        QTest::newRow("a bad row fails the answer")
            << Behaviour::BadRow << Behaviour::Status500 << u"error adsb.fi returned an error"_qs << true;
        QTest::newRow("bad row, then bad row")
            << Behaviour::BadRow << Behaviour::BadRow
            << QString::fromUtf8(R"(error adsb.fi: row 1: "hex" is missing)") << true;
        QTest::newRow("dropped connection, then rows")
            << Behaviour::Drop << Behaviour::Rows << u"ok adsb.fi f1"_qs << true;
        QTest::newRow("error, dropped connection")
            << Behaviour::Status500 << Behaviour::Drop << u"error adsb.fi: Connection closed"_qs << true;
    }

    void failover()
    {
        QFETCH(Behaviour, primary);
        QFETCH(Behaviour, fallback);
        QFETCH(QString, expected);
        QFETCH(bool, fallbackAsked);

        LoopbackHttpServer server;
        server.route(primaryPath, handlerFor(primary, "ac", "p"));
        server.route(fallbackPath, handlerFor(fallback, "aircraft", "f"));
        pointAt(server);
        const Outcome outcome = run(newFetch());
        QVERIFY(outcome.reported);
        QVERIFY2(outcome.text.startsWith(expected), qPrintable(outcome.text));
        QVERIFY(server.requestCount(primaryPath) >= 1);
        QCOMPARE(server.requestCount(fallbackPath) > 0, fallbackAsked);
        // The fallback is asked only after the primary has answered.
        if (fallbackAsked)
            QVERIFY(server.requests().constFirst().path.startsWith(primaryPath));
    }

    void displayNamesComeFromTheEnvironment()
    {
        LoopbackHttpServer server;
        server.route(primaryPath, handlerFor(Behaviour::Status500, "ac", "p"));
        server.route(fallbackPath, handlerFor(Behaviour::Status500, "aircraft", "f"));
        pointAt(server);
        qputenv("AEROLUME_FALLBACK_FEED_NAME", "My receiver");
        QCOMPARE(run(newFetch()).text, u"error My receiver returned an error"_qs);
    }

    void radiusAndPath_data()
    {
        QTest::addColumn<double>("radius");
        QTest::addColumn<QByteArray>("primary");
        QTest::addColumn<QByteArray>("fallback");
        QTest::newRow("25") << 25.0 << QByteArray("/v2/point/45.60000/-122.70000/25")
                            << QByteArray("/api/v2/lat/45.60000/lon/-122.70000/dist/25");
        QTest::newRow("0.4 asks for 1")
            << 0.4 << QByteArray("/v2/point/45.60000/-122.70000/1") << QByteArray();
        QTest::newRow("24.5 rounds up")
            << 24.5 << QByteArray("/v2/point/45.60000/-122.70000/25") << QByteArray();
        QTest::newRow("-3 asks for 1")
            << -3.0 << QByteArray("/v2/point/45.60000/-122.70000/1") << QByteArray();
        QTest::newRow("250.4") << 250.4 << QByteArray("/v2/point/45.60000/-122.70000/250") << QByteArray();
        QTest::newRow("1000") << 1000.0 << QByteArray("/v2/point/45.60000/-122.70000/250") << QByteArray();
        QTest::newRow("not a number")
            << qQNaN() << QByteArray("/v2/point/45.60000/-122.70000/1") << QByteArray();
    }

    void radiusAndPath()
    {
        QFETCH(double, radius);
        QFETCH(QByteArray, primary);
        QFETCH(QByteArray, fallback);
        // Number formatting must not follow the user's locale.
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        const char *previous = std::setlocale(LC_ALL, "de_DE.UTF-8");
        LoopbackHttpServer server;
        server.route(primaryPath, handlerFor(Behaviour::Empty, "ac", "p"));
        server.route(fallbackPath, handlerFor(Behaviour::Empty, "aircraft", "f"));
        pointAt(server);
        run(newFetch(radius));
        std::setlocale(LC_ALL, "C.UTF-8");
        QLocale::setDefault(QLocale::c());
        Q_UNUSED(previous);
        QCOMPARE(server.requests().value(0).path, primary);
        if (!fallback.isEmpty())
            QCOMPARE(server.requests().value(1).path, fallback);
    }

    void sourcesPrintCoordinatesExactly()
    {
        qputenv("AEROLUME_PRIMARY_FEED_URL", "https://feed.example");
        qputenv("AEROLUME_FALLBACK_FEED_URL", "https://other.example/");
        const auto sources = ADSB::sources();
        QCOMPARE(sources.size(), 2);
        QCOMPARE(sources[0].url(HomeLocation(-33.868820, 151.209296, {}), 7),
                 u"https://feed.example/v2/point/-33.86882/151.20930/7"_qs);
        QCOMPARE(sources[1].url(HomeLocation(0.000004, -0.000004, {}), 250),
                 u"https://other.example/api/v2/lat/0.00000/lon/-0.00000/dist/250"_qs);
        qunsetenv("AEROLUME_PRIMARY_FEED_URL");
        qunsetenv("AEROLUME_FALLBACK_FEED_URL");
        QCOMPARE(ADSB::sources()[0].url(HomeLocation(1, 2, {}), 3),
                 u"https://api.adsb.lol/v2/point/1.00000/2.00000/3"_qs);
        QCOMPARE(ADSB::sources()[1].name, u"adsb.fi"_qs);
    }

    // Fresh positions only, nearest first, ties and rows without distance in feed order.
    void filterAndSort()
    {
        const auto decoded =
            APIResponse::decode(R"({"ac":[)"
                                R"({"hex":"nolon","lat":1,"dst":0.1},)"
                                R"({"hex":"far","lat":1,"lon":1,"dst":3.0},)"
                                R"({"hex":"nodst1","lat":1,"lon":1},)"
                                R"({"hex":"near","lat":1,"lon":1,"dst":1.0,"seen_pos":59.9},)"
                                R"({"hex":"stale","lat":1,"lon":1,"dst":0.5,"seen_pos":60},)"
                                R"({"hex":"tieA","lat":1,"lon":1,"dst":2.0},)"
                                R"({"hex":"nodst2","lat":1,"lon":1,"seen_pos":0},)"
                                R"({"hex":"tieB","lat":1,"lon":1,"dst":2.0},)"
                                R"({"hex":"nolat","lon":1,"dst":0.2}]})");
        QVERIFY(decoded.ok());
        QCOMPARE(rowsText(ADSB::filteredAndSorted(decoded.value().list())),
                 u"near,tieA,tieB,far,nodst1,nodst2"_qs);
    }

    // Qt ends a transfer time-out with the code of abort(): it must still read as a time-out and fail over.
    void timeoutFailsOver()
    {
        LoopbackHttpServer server;
        server.route(primaryPath, handlerFor(Behaviour::BadRow, "ac", "p"));
        server.route(fallbackPath, handlerFor(Behaviour::Silent, "aircraft", "f"));
        pointAt(server);
        QCOMPARE(run(newFetch(25, 300)).text, u"error adsb.fi: The request timed out."_qs);

        LoopbackHttpServer second;
        second.route(primaryPath, handlerFor(Behaviour::Silent, "ac", "p"));
        second.route(fallbackPath, handlerFor(Behaviour::Rows, "aircraft", "f"));
        pointAt(second);
        QCOMPARE(run(newFetch(25, 300)).text, u"ok adsb.fi f1"_qs);
    }

    void cancelDeliversNothing()
    {
        LoopbackHttpServer server;
        server.route(primaryPath, [](const LoopbackHttpServer::Request &) {
            Response response;
            response.body = answerFor(Behaviour::Rows, "ac", "p");
            response.hold = true;
            return response;
        });
        server.route(fallbackPath, handlerFor(Behaviour::Rows, "aircraft", "f"));
        pointAt(server);

        FeedFetch *fetch = newFetch();
        QSignalSpy succeeded(fetch, &FeedFetch::succeeded);
        QSignalSpy failed(fetch, &FeedFetch::failed);
        QSignalSpy destroyed(fetch, &QObject::destroyed);
        QSignalSpy received(&server, &LoopbackHttpServer::requestReceived);
        fetch->start();
        QVERIFY(received.wait());
        fetch->cancel();
        QVERIFY(fetch->isCancelled());
        QCOMPARE(succeeded.count() + failed.count(), 0); // nothing, not even from the abort itself
        // The late answer arrives at a socket nobody listens to any more.
        QSignalSpy answered(&server, &LoopbackHttpServer::answered);
        server.release();
        QVERIFY(destroyed.count() == 1 || destroyed.wait());
        QCoreApplication::processEvents();
        QCOMPARE(succeeded.count() + failed.count(), 0);
        QCOMPARE(server.requestCount(fallbackPath), 0);
    }

    void noValidAddressAtAll()
    {
        qputenv("AEROLUME_PRIMARY_FEED_URL", "http://[::1");
        qputenv("AEROLUME_FALLBACK_FEED_URL", "http://exa mple");
        QCOMPARE(run(newFetch()).text, u"error No flight data source reachable"_qs);
    }

    void invalidPrimaryAddressIsPassedOver()
    {
        LoopbackHttpServer server;
        server.route(fallbackPath, handlerFor(Behaviour::Rows, "aircraft", "f"));
        qputenv("AEROLUME_PRIMARY_FEED_URL", "http://[::1");
        qputenv("AEROLUME_FALLBACK_FEED_URL", server.baseUrl().toUtf8());
        QCOMPARE(run(newFetch()).text, u"ok adsb.fi f1"_qs);
    }

    // The shared client names us on every request, and the fetch adds no header of its own.
    void sharedClientSendsOnlyTheUserAgent()
    {
        LoopbackHttpServer server;
        server.route(primaryPath, handlerFor(Behaviour::Rows, "ac", "p"));
        pointAt(server);
        FeedFetch *fetch = ADSB::fetch(HomeLocation(45.6, -122.7, {}), 25);
        QSignalSpy succeeded(fetch, &FeedFetch::succeeded);
        QVERIFY(succeeded.wait());
        QCOMPARE(succeeded.constFirst().constFirst().value<ADSB::FetchResult>().source, u"adsb.lol"_qs);
        const auto &request = server.requests().constFirst();
        QCOMPARE(request.header("user-agent"), QByteArray("Aerolume/" AEROLUME_VERSION));
        QCOMPARE(HttpClient::userAgent(), QByteArray("Aerolume/" AEROLUME_VERSION));
        const QList<QByteArray> qtDefaults{"host", "user-agent", "connection", "accept-encoding",
                                           "accept-language"};
        for (const auto &[name, value] : request.headers)
            QVERIFY2(qtDefaults.contains(name), name.constData());
    }
};

QTEST_GUILESS_MAIN(FeedFetchTest)
#include "FeedFetchTest.moc"
