#include "APIResponse.h"
#include "AircraftTypes.h"
#include "Airlines.h"
#include "ControlModule.h"
#include "SkySimCommandLine.h"
#include "SkySimClient.h"
#include "SkySimulator.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QRegularExpression>
#include <QSet>
#include <QSignalSpy>
#include <QTcpSocket>
#include <QTest>
#include <cmath>
#include <memory>
#include <numbers>

namespace {

constexpr qint64 startEpochMs = 1'700'000'000'000;
constexpr int waitMs = SkySimClient::waitMs;

// The geometry the rows must agree with, worked out here another way than the simulator does: with unit
// vectors rather than the haversine and spherical trigonometry, on the same sphere of 6371 km.
constexpr double earthRadiusNM = 6371.0 / 1.852;

struct Vector
{
    double x, y, z;
};

double radians(double degrees)
{
    return degrees * std::numbers::pi / 180.0;
}

Vector unitVector(double lat, double lon)
{
    return {std::cos(radians(lat)) * std::cos(radians(lon)), std::cos(radians(lat)) * std::sin(radians(lon)),
            std::sin(radians(lat))};
}

double dot(Vector a, Vector b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

double independentDistanceNM(double lat1, double lon1, double lat2, double lon2)
{
    const Vector a = unitVector(lat1, lon1);
    const Vector b = unitVector(lat2, lon2);
    const Vector cross{a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
    return std::atan2(std::sqrt(dot(cross, cross)), dot(a, b)) * earthRadiusNM;
}

// Bearing from the first point to the second: the second's direction in the first's east/north plane.
double independentBearing(double lat1, double lon1, double lat2, double lon2)
{
    const double phi = radians(lat1);
    const double lambda = radians(lon1);
    const Vector east{-std::sin(lambda), std::cos(lambda), 0.0};
    const Vector north{-std::sin(phi) * std::cos(lambda), -std::sin(phi) * std::sin(lambda), std::cos(phi)};
    const Vector target = unitVector(lat2, lon2);
    const double degrees = std::atan2(dot(target, east), dot(target, north)) * 180.0 / std::numbers::pi;
    return std::fmod(degrees + 360.0, 360.0);
}

double angleGap(double a, double b)
{
    const double gap = std::fmod(std::fabs(a - b), 360.0);
    return gap > 180.0 ? 360.0 - gap : gap;
}

bool hasAtMostDecimals(double value, int decimals)
{
    const double scaled = value * std::pow(10.0, decimals);
    return std::fabs(scaled - std::round(scaled)) < 1e-6;
}

// Paths as the feed client writes them: five decimals and a point, a whole radius.
QString primaryPath(double lat, double lon, int radius)
{
    return u"/v2/point/%1/%2/%3"_qs.arg(QString::number(lat, 'f', 5), QString::number(lon, 'f', 5))
        .arg(radius);
}

QString fallbackPath(double lat, double lon, int radius)
{
    return u"/api/v2/lat/%1/lon/%2/dist/%3"_qs.arg(QString::number(lat, 'f', 5), QString::number(lon, 'f', 5))
        .arg(radius);
}

SkySimOptions frozenOptions(int count = 60, quint64 seed = 11)
{
    SkySimOptions options;
    options.port = 0;
    options.frozen = true;
    options.startEpochMs = startEpochMs;
    options.count = count;
    options.seed = seed;
    return options;
}

using Answer = SkySimClient::Answer;

QJsonObject object(const QByteArray &json)
{
    return QJsonDocument::fromJson(json).object();
}

// A row's position: its own, or the one under "lastPosition" when the feed has only an old one.
std::pair<double, double> rowPosition(const QJsonObject &row)
{
    if (row.contains(u"lat"_qs))
        return {row[u"lat"_qs].toDouble(), row[u"lon"_qs].toDouble()};
    const QJsonObject last = row[u"lastPosition"_qs].toObject();
    return {last[u"lat"_qs].toDouble(), last[u"lon"_qs].toDouble()};
}

QHash<QString, QJsonObject> rowsByHex(const QJsonArray &rows)
{
    QHash<QString, QJsonObject> byHex;
    for (const QJsonValue &row : rows)
        byHex.insert(row[u"hex"_qs].toString(), row.toObject());
    return byHex;
}

// Reads one HTTP response off a raw socket: the head, then as many body bytes as Content-Length says.
struct RawResponse
{
    int status = 0;
    QByteArray head;
    QByteArray body;
};

std::optional<RawResponse> takeResponse(QByteArray &buffer, bool headRequest = false)
{
    const qsizetype end = buffer.indexOf("\r\n\r\n");
    if (end < 0)
        return std::nullopt;
    RawResponse response;
    response.head = buffer.left(end);
    response.status = response.head.mid(9, 3).toInt();
    qsizetype length = 0;
    for (const QByteArray &line : response.head.split('\n')) {
        if (line.toLower().startsWith("content-length:"))
            length = line.mid(15).trimmed().toLongLong();
    }
    if (headRequest)
        length = 0;
    if (buffer.size() < end + 4 + length)
        return std::nullopt;
    response.body = buffer.mid(end + 4, length);
    buffer.remove(0, end + 4 + length);
    return response;
}

std::optional<RawResponse> readResponse(QTcpSocket &socket, QByteArray &buffer, bool headRequest = false)
{
    for (;;) {
        if (auto response = takeResponse(buffer, headRequest))
            return response;
        QSignalSpy arrived(&socket, &QTcpSocket::readyRead);
        if (socket.bytesAvailable() == 0 && !arrived.wait(waitMs))
            return std::nullopt;
        buffer += socket.readAll();
    }
}

} // namespace

class SkySimTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void answersHaveEachNetworksShape_data();
    void answersHaveEachNetworksShape();
    void listKeysFollowTheOptions();
    void rowsLieWithinTheRadiusWithTheirDistanceAndBearing_data();
    void rowsLieWithinTheRadiusWithTheirDistanceAndBearing();
    void pathsAreCheckedStrictly_data();
    void pathsAreCheckedStrictly();
    void aSeedGivesOneSky();
    void aFarAwayQueryGetsTrafficOfItsOwn();
    void advancingTheClockMovesAircraftBySpeedTimesTime();
    void faultsAreInjectedPerSource_data();
    void faultsAreInjectedPerSource();
    void faultsFromTheCommandLineSurviveReset();
    void aDelayedAnswerArrivesAfterAQuickOne();
    void controlStateCountsRequestsAndFollowsChanges();
    void controlRejectsBadRequests_data();
    void controlRejectsBadRequests();
    void countChangesTheTraffic();
    void aLargeSkyHasTheVarietyOfARealOne();
    void requestsArrivingInPiecesAreAnswered();
    void pipelinedRequestsAreAnsweredInOrder();
    void garbageIsRefusedAndTheConnectionClosed();
    void commandLine_data();
    void commandLine();
    void helpNamesEveryFaultAndControl();

private:
    static std::unique_ptr<SkySimulator> startSky(const SkySimOptions &options = frozenOptions())
    {
        return SkySimClient::start(options);
    }
    Answer finish(QNetworkReply *reply) { return m_client.finish(reply); }
    Answer get(const SkySimulator &sky, const QString &path) { return m_client.get(sky, path); }
    Answer post(const SkySimulator &sky, const QString &pathAndQuery) { return m_client.post(sky, pathAndQuery); }
    QJsonArray rowsOf(const Answer &answer, const QString &key);

    SkySimClient m_client;
    QNetworkAccessManager &m_network = m_client.network();
};

void SkySimTest::initTestCase()
{
    // Numbers in paths and JSON must never take the locale's decimal comma.
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}

QJsonArray SkySimTest::rowsOf(const Answer &answer, const QString &key)
{
    return object(answer.body)[key].toArray();
}

void SkySimTest::answersHaveEachNetworksShape_data()
{
    QTest::addColumn<bool>("primary");
    QTest::newRow("primary") << true;
    QTest::newRow("fallback") << false;
}

void SkySimTest::answersHaveEachNetworksShape()
{
    QFETCH(bool, primary);
    const auto sky = startSky();
    const QString path =
        primary ? primaryPath(47.6062, -122.3321, 100) : fallbackPath(47.6062, -122.3321, 100);
    const Answer answer = get(*sky, path);
    QVERIFY(answer.finished);
    QCOMPARE(answer.status, 200);
    QVERIFY(answer.contentType.startsWith("application/json"));

    const QJsonObject envelope = object(answer.body);
    const QString listKey = primary ? u"ac"_qs : u"aircraft"_qs;
    const QString otherKey = primary ? u"aircraft"_qs : u"ac"_qs;
    QVERIFY(envelope[listKey].isArray());
    QVERIFY(!envelope.contains(otherKey));
    const QJsonArray rows = envelope[listKey].toArray();
    QVERIFY(rows.size() > 10);
    if (primary) {
        QCOMPARE(envelope[u"msg"_qs].toString(), u"No error"_qs);
        QCOMPARE(envelope[u"now"_qs].toInteger(), startEpochMs);
        QCOMPARE(envelope[u"total"_qs].toInteger(), qint64(rows.size()));
        QVERIFY(envelope[u"ctime"_qs].toInteger() <= startEpochMs);
        QVERIFY(envelope[u"ptime"_qs].isDouble());
    } else {
        QCOMPARE(envelope[u"now"_qs].toDouble(), double(startEpochMs) / 1000.0);
        QCOMPARE(envelope[u"resultCount"_qs].toInteger(), qint64(rows.size()));
    }

    const auto decoded = APIResponse::decode(answer.body);
    QVERIFY2(decoded.ok(), qPrintable(decoded.error()));
    QCOMPARE(decoded.value().ac.has_value(), primary);
    QCOMPARE(decoded.value().aircraft.has_value(), !primary);
    QCOMPARE(decoded.value().list().size(), rows.size());

    // The further keys the networks send with every row.
    for (const QJsonValue &row : rows) {
        for (const QString &key : {u"hex"_qs, u"type"_qs, u"gs"_qs, u"track"_qs, u"messages"_qs, u"seen"_qs,
                                   u"rssi"_qs, u"mlat"_qs, u"tisb"_qs, u"dst"_qs, u"dir"_qs})
            QVERIFY2(row.toObject().contains(key), qPrintable(key));
        if (row[u"flight"_qs].isString())
            QCOMPARE(row[u"flight"_qs].toString().size(), 8);
    }
}

void SkySimTest::listKeysFollowTheOptions()
{
    SkySimOptions options = frozenOptions();
    options.primaryListKey = u"aircraft"_qs;
    options.fallbackListKey = u"ac"_qs;
    const auto sky = startSky(options);

    const Answer primary = get(*sky, primaryPath(10.0, 20.0, 100));
    QVERIFY(rowsOf(primary, u"aircraft"_qs).size() > 0);
    QVERIFY(!object(primary.body).contains(u"ac"_qs));
    const Answer fallback = get(*sky, fallbackPath(10.0, 20.0, 100));
    QVERIFY(rowsOf(fallback, u"ac"_qs).size() > 0);
    QVERIFY(!object(fallback.body).contains(u"aircraft"_qs));
    QCOMPARE(APIResponse::decode(fallback.body).value().ac.has_value(), true);
}

void SkySimTest::rowsLieWithinTheRadiusWithTheirDistanceAndBearing_data()
{
    QTest::addColumn<double>("lat");
    QTest::addColumn<double>("lon");
    QTest::addColumn<int>("radius");
    QTest::addColumn<bool>("fromPrimary");
    QTest::newRow("Seattle, 25 NM") << 47.6062 << -122.3321 << 25 << true;
    QTest::newRow("Sydney, 10 NM, south and east") << -33.8688 << 151.2093 << 10 << false;
    QTest::newRow("Ushuaia, 40 NM, south and west") << -54.8019 << -68.303 << 40 << true;
    QTest::newRow("across the antimeridian") << 0.5 << 179.95 << 45 << false;
    QTest::newRow("near the pole") << 86.0 << 30.0 << 30 << true;
}

void SkySimTest::rowsLieWithinTheRadiusWithTheirDistanceAndBearing()
{
    QFETCH(double, lat);
    QFETCH(double, lon);
    QFETCH(int, radius);
    QFETCH(bool, fromPrimary);
    const auto sky = startSky(frozenOptions(400));
    auto ask = [&](int nm) {
        return fromPrimary ? rowsOf(get(*sky, primaryPath(lat, lon, nm)), u"ac"_qs)
                           : rowsOf(get(*sky, fallbackPath(lat, lon, nm)), u"aircraft"_qs);
    };
    const QJsonArray near = ask(radius);
    const QJsonArray all = ask(250);
    QVERIFY(near.size() > 5);
    QVERIFY(all.size() > near.size());

    bool crossedAntimeridian = false;
    for (const QJsonValue &value : all) {
        const QJsonObject row = value.toObject();
        const auto [rowLat, rowLon] = rowPosition(row);
        QVERIFY(rowLon >= -180.0 && rowLon <= 180.0);
        crossedAntimeridian = crossedAntimeridian || rowLon < 0.0;
        const double dst = row[u"dst"_qs].toDouble();
        const double dir = row[u"dir"_qs].toDouble();
        QVERIFY2(hasAtMostDecimals(dst, 3), qPrintable(QString::number(dst, 'g', 17)));
        QVERIFY2(hasAtMostDecimals(dir, 1), qPrintable(QString::number(dir, 'g', 17)));
        QVERIFY(dir >= 0.0 && dir < 360.0);
        const double expectedDistance = independentDistanceNM(lat, lon, rowLat, rowLon);
        QVERIFY2(
            std::fabs(dst - expectedDistance) < 0.0011,
            qPrintable(
                u"%1: dst %2, expected %3"_qs.arg(row[u"hex"_qs].toString()).arg(dst).arg(expectedDistance)));
        if (expectedDistance > 0.05) {
            const double expectedBearing = independentBearing(lat, lon, rowLat, rowLon);
            QVERIFY2(angleGap(dir, expectedBearing) < 0.06,
                     qPrintable(u"%1: dir %2, expected %3"_qs.arg(row[u"hex"_qs].toString())
                                    .arg(dir)
                                    .arg(expectedBearing)));
        }
        QVERIFY(dst <= 250.0005);
    }
    if (lon > 179.0)
        QVERIFY(crossedAntimeridian);

    // The radius selects exactly: the small answer is the part of the large one within the radius.
    const QHash<QString, QJsonObject> nearByHex = rowsByHex(near);
    for (const QJsonObject &row : nearByHex)
        QVERIFY(row[u"dst"_qs].toDouble() <= radius + 0.0005);
    for (const QJsonValue &row : all) {
        const double dst = row[u"dst"_qs].toDouble();
        const QString hex = row[u"hex"_qs].toString();
        if (dst < radius - 0.001)
            QVERIFY2(nearByHex.contains(hex), qPrintable(hex));
        else if (dst > radius + 0.001)
            QVERIFY2(!nearByHex.contains(hex), qPrintable(hex));
    }
}

void SkySimTest::pathsAreCheckedStrictly_data()
{
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("status");
    QTest::newRow("primary, as the client writes it")
        << QByteArray("GET") << u"/v2/point/45.60000/-122.70000/25"_qs << 200;
    QTest::newRow("fallback, as the client writes it")
        << QByteArray("GET") << u"/api/v2/lat/45.60000/lon/-122.70000/dist/25"_qs << 200;
    QTest::newRow("whole numbers") << QByteArray("GET") << u"/v2/point/45/-122/25"_qs << 200;
    QTest::newRow("south and west") << QByteArray("GET") << u"/api/v2/lat/-33.86880/lon/-70.00000/dist/5"_qs
                                    << 200;
    QTest::newRow("radius above the cap") << QByteArray("GET") << u"/v2/point/45.6/-122.7/1000"_qs << 200;
    QTest::newRow("a query string is ignored")
        << QByteArray("GET") << u"/v2/point/45.6/-122.7/25?x=1"_qs << 200;
    QTest::newRow("HEAD") << QByteArray("HEAD") << u"/v2/point/45.6/-122.7/25"_qs << 200;
    QTest::newRow("radius missing") << QByteArray("GET") << u"/v2/point/45.60000/-122.70000"_qs << 404;
    QTest::newRow("one part too many") << QByteArray("GET") << u"/v2/point/45.6/-122.7/25/9"_qs << 404;
    QTest::newRow("fallback word wrong")
        << QByteArray("GET") << u"/api/v2/lat/45.6/long/-122.7/dist/25"_qs << 404;
    QTest::newRow("unknown path") << QByteArray("GET") << u"/v3/everything"_qs << 404;
    QTest::newRow("decimal comma") << QByteArray("GET") << u"/v2/point/45,60000/-122.70000/25"_qs << 400;
    QTest::newRow("latitude not a number") << QByteArray("GET") << u"/v2/point/north/-122.7/25"_qs << 400;
    QTest::newRow("latitude beyond the pole") << QByteArray("GET") << u"/v2/point/90.00001/0/25"_qs << 400;
    QTest::newRow("longitude out of range")
        << QByteArray("GET") << u"/api/v2/lat/0/lon/180.5/dist/25"_qs << 400;
    QTest::newRow("negative radius") << QByteArray("GET") << u"/v2/point/45.6/-122.7/-5"_qs << 400;
    QTest::newRow("exponent") << QByteArray("GET") << u"/v2/point/4.5e1/-122.7/25"_qs << 400;
    QTest::newRow("empty part") << QByteArray("GET") << u"/api/v2/lat//lon/1/dist/5"_qs << 400;
    QTest::newRow("POST to a feed") << QByteArray("POST") << u"/v2/point/45.6/-122.7/25"_qs << 405;
}

void SkySimTest::pathsAreCheckedStrictly()
{
    QFETCH(QByteArray, method);
    QFETCH(QString, path);
    QFETCH(int, status);
    const auto sky = startSky();
    QNetworkRequest request(QUrl(sky->baseUrl() + path));
    request.setHeader(QNetworkRequest::ContentTypeHeader, u"text/plain"_qs);
    // QNetworkAccessManager reads a body after a custom "HEAD"; its own head() knows better.
    const Answer answer =
        finish(method == "HEAD" ? m_network.head(request)
                                : m_network.sendCustomRequest(request, method, QByteArray()));
    QVERIFY(answer.finished);
    QCOMPARE(answer.status, status);
    if (method == "HEAD")
        QVERIFY(answer.body.isEmpty());
    if (status == 200 && method == "GET")
        QVERIFY(APIResponse::decode(answer.body).ok());
}

void SkySimTest::aSeedGivesOneSky()
{
    const QString path = primaryPath(51.4775, -0.4614, 250);
    const auto first = startSky(frozenOptions(200, 5));
    const auto twin = startSky(frozenOptions(200, 5));
    const auto other = startSky(frozenOptions(200, 6));
    const QJsonArray firstRows = rowsOf(get(*first, path), u"ac"_qs);
    QCOMPARE(firstRows.size(), 200);
    QCOMPARE(rowsOf(get(*twin, path), u"ac"_qs), firstRows);
    QCOMPARE(rowsOf(get(*first, path), u"ac"_qs), firstRows);

    const QJsonArray otherRows = rowsOf(get(*other, path), u"ac"_qs);
    QVERIFY(otherRows != firstRows);
    const QHash<QString, QJsonObject> firstByHex = rowsByHex(firstRows);
    qsizetype shared = 0;
    for (const QJsonValue &row : otherRows)
        shared += firstByHex.contains(row[u"hex"_qs].toString()) ? 1 : 0;
    QVERIFY2(shared < 10, qPrintable(QString::number(shared)));
}

void SkySimTest::aFarAwayQueryGetsTrafficOfItsOwn()
{
    const auto sky = startSky();
    QVERIFY(rowsOf(get(*sky, primaryPath(47.6, -122.3, 100)), u"ac"_qs).size() > 0);
    // A point a continent away still sees a sky, centred on itself.
    const QJsonArray far = rowsOf(get(*sky, primaryPath(-33.9, 151.2, 100)), u"ac"_qs);
    QCOMPARE(far.size(), 60);
    const QJsonObject state = object(get(*sky, u"/control/state"_qs).body);
    QCOMPARE(state[u"areas"_qs].toArray().size(), 2);
    // A point near the first centre is served by the first area, not a third.
    QVERIFY(rowsOf(get(*sky, primaryPath(47.7, -122.2, 100)), u"ac"_qs).size() > 0);
    QCOMPARE(object(get(*sky, u"/control/state"_qs).body)[u"areas"_qs].toArray().size(), 2);
}

void SkySimTest::advancingTheClockMovesAircraftBySpeedTimesTime()
{
    const auto sky = startSky(frozenOptions(300));
    const QString path = primaryPath(40.0, -100.0, 250);
    const QHash<QString, QJsonObject> before = rowsByHex(rowsOf(get(*sky, path), u"ac"_qs));
    const Answer advanced = post(*sky, u"/control/clock?advance=60"_qs);
    QCOMPARE(advanced.status, 200);
    QCOMPARE(object(advanced.body)[u"clock"_qs][u"now"_qs].toInteger(), startEpochMs + 60000);
    const Answer later = get(*sky, path);
    QCOMPARE(object(later.body)[u"now"_qs].toInteger(), startEpochMs + 60000);
    const QHash<QString, QJsonObject> after = rowsByHex(rowsOf(later, u"ac"_qs));

    int moved = 0;
    int climbed = 0;
    for (auto it = after.cbegin(); it != after.cend(); ++it) {
        if (!before.contains(it.key()))
            continue; // a new crossing, another aircraft
        const QJsonObject &was = before[it.key()];
        const QJsonObject &is = it.value();
        if (!was.contains(u"lat"_qs) || !is.contains(u"lat"_qs))
            continue;
        const double speed = is[u"gs"_qs].toDouble();
        QCOMPARE(speed, was[u"gs"_qs].toDouble());
        // Each position is as old as its seen_pos says.
        const double seconds = 60.0 + was[u"seen_pos"_qs].toDouble() - is[u"seen_pos"_qs].toDouble();
        const double expected = speed * seconds / 3600.0;
        const double travelled = independentDistanceNM(was[u"lat"_qs].toDouble(), was[u"lon"_qs].toDouble(),
                                                       is[u"lat"_qs].toDouble(), is[u"lon"_qs].toDouble());
        QVERIFY2(std::fabs(travelled - expected) <= 0.01 * expected + 0.002,
                 qPrintable(u"%1 flew %2 NM, expected %3"_qs.arg(it.key()).arg(travelled).arg(expected)));
        if (speed >= 50.0)
            ++moved;
        // Climbing or descending all minute long: the altitude changed by the rate.
        const qint64 rate = is[u"baro_rate"_qs].toInteger();
        if (is[u"alt_baro"_qs].isDouble() && was[u"baro_rate"_qs].toInteger() == rate &&
            std::abs(rate) >= 256) {
            const qint64 change = is[u"alt_baro"_qs].toInteger() - was[u"alt_baro"_qs].toInteger();
            QVERIFY2(std::abs(change - rate) <= 60,
                     qPrintable(u"%1: %2 ft at %3 ft/min"_qs.arg(it.key()).arg(change).arg(rate)));
            ++climbed;
        }
    }
    QVERIFY2(moved >= 100, qPrintable(QString::number(moved)));
    QVERIFY2(climbed >= 5, qPrintable(QString::number(climbed)));
}

void SkySimTest::faultsAreInjectedPerSource_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("status"); // 0: no HTTP answer
    QTest::addColumn<bool>("emptyBody");
    QTest::addColumn<bool>("validJson");
    QTest::newRow("primary status:503") << u"primary"_qs << u"status:503"_qs << 503 << true << false;
    QTest::newRow("fallback status:503") << u"fallback"_qs << u"status:503"_qs << 503 << true << false;
    QTest::newRow("primary status:204") << u"primary"_qs << u"status:204"_qs << 204 << true << false;
    QTest::newRow("primary status:304") << u"primary"_qs << u"status:304"_qs << 304 << true << false;
    QTest::newRow("fallback status:429") << u"fallback"_qs << u"status:429"_qs << 429 << true << false;
    QTest::newRow("primary empty") << u"primary"_qs << u"empty"_qs << 200 << true << false;
    QTest::newRow("primary malformed") << u"primary"_qs << u"malformed"_qs << 200 << false << true;
    QTest::newRow("fallback malformed") << u"fallback"_qs << u"malformed"_qs << 200 << false << true;
    QTest::newRow("primary badjson") << u"primary"_qs << u"badjson"_qs << 200 << false << false;
    QTest::newRow("fallback badjson") << u"fallback"_qs << u"badjson"_qs << 200 << false << false;
    QTest::newRow("primary drop") << u"primary"_qs << u"drop"_qs << 0 << true << false;
    QTest::newRow("fallback drop") << u"fallback"_qs << u"drop"_qs << 0 << true << false;
}

void SkySimTest::faultsAreInjectedPerSource()
{
    QFETCH(QString, source);
    QFETCH(QString, kind);
    QFETCH(int, status);
    QFETCH(bool, emptyBody);
    QFETCH(bool, validJson);
    const auto sky = startSky();
    const bool primary = source == u"primary";
    const QString faulty = primary ? primaryPath(30.0, 30.0, 100) : fallbackPath(30.0, 30.0, 100);
    const QString healthy = primary ? fallbackPath(30.0, 30.0, 100) : primaryPath(30.0, 30.0, 100);

    const Answer set = post(*sky, u"/control/fault?source=%1&kind=%2"_qs.arg(source, kind));
    QCOMPARE(set.status, 200);
    QCOMPARE(object(set.body)[u"sources"_qs][source][u"fault"_qs].toString(), kind);

    const Answer answer = get(*sky, faulty);
    QVERIFY(answer.finished);
    QCOMPARE(answer.status, status);
    if (status == 0)
        QVERIFY(answer.error != QNetworkReply::NoError);
    QCOMPARE(answer.body.isEmpty(), emptyBody);
    QJsonParseError parseError;
    QJsonDocument::fromJson(answer.body, &parseError);
    QCOMPARE(parseError.error == QJsonParseError::NoError, validJson);
    QVERIFY(!APIResponse::decode(answer.body).ok());
    if (kind == u"malformed") {
        // One row without "hex" among good ones.
        const QJsonArray rows = rowsOf(answer, primary ? u"ac"_qs : u"aircraft"_qs);
        QVERIFY(rows.size() > 2);
        qsizetype withoutHex = 0;
        for (const QJsonValue &row : rows)
            withoutHex += row.toObject().contains(u"hex"_qs) ? 0 : 1;
        QCOMPARE(withoutHex, qsizetype(1));
    }

    // The other network is untouched.
    const Answer other = get(*sky, healthy);
    QCOMPARE(other.status, 200);
    const auto decoded = APIResponse::decode(other.body);
    QVERIFY(decoded.ok());
    QVERIFY(!decoded.value().list().isEmpty());

    // And a reset heals the faulty one.
    QCOMPARE(post(*sky, u"/control/reset"_qs).status, 200);
    const Answer healed = get(*sky, faulty);
    QCOMPARE(healed.status, 200);
    QVERIFY(APIResponse::decode(healed.body).ok());
}

void SkySimTest::faultsFromTheCommandLineSurviveReset()
{
    auto parsed = SkySimCommandLine::parse({u"aerolume-skysim"_qs, u"--primary-fault=status:503"_qs,
                                            u"--fallback-fault"_qs, u"badjson"_qs, u"--frozen"_qs});
    QCOMPARE(int(parsed.outcome), int(SkySimCommandLine::Outcome::Run));
    const auto sky = startSky(parsed.options);
    QCOMPARE(get(*sky, primaryPath(1.0, 2.0, 50)).status, 503);
    QVERIFY(!APIResponse::decode(get(*sky, fallbackPath(1.0, 2.0, 50)).body).ok());

    QCOMPARE(post(*sky, u"/control/fault?source=primary&kind=none"_qs).status, 200);
    QCOMPARE(get(*sky, primaryPath(1.0, 2.0, 50)).status, 200);
    // Reset goes back to how the simulator was started.
    QCOMPARE(post(*sky, u"/control/reset"_qs).status, 200);
    QCOMPARE(get(*sky, primaryPath(1.0, 2.0, 50)).status, 503);
}

void SkySimTest::aDelayedAnswerArrivesAfterAQuickOne()
{
    const auto sky = startSky();
    QCOMPARE(post(*sky, u"/control/fault?source=primary&kind=delay:300"_qs).status, 200);

    QStringList order;
    QNetworkReply *slow = m_network.get(QNetworkRequest(QUrl(sky->baseUrl() + primaryPath(5.0, 5.0, 100))));
    QNetworkReply *quick = m_network.get(QNetworkRequest(QUrl(sky->baseUrl() + fallbackPath(5.0, 5.0, 100))));
    connect(slow, &QNetworkReply::finished, this, [&order] { order.append(u"primary"_qs); });
    connect(quick, &QNetworkReply::finished, this, [&order] { order.append(u"fallback"_qs); });
    const Answer quickAnswer = finish(quick);
    const Answer slowAnswer = finish(slow);

    QCOMPARE(order, (QStringList{u"fallback"_qs, u"primary"_qs}));
    QCOMPARE(quickAnswer.status, 200);
    QCOMPARE(slowAnswer.status, 200);
    const auto decoded = APIResponse::decode(slowAnswer.body);
    QVERIFY(decoded.ok());
    QVERIFY(!decoded.value().list().isEmpty());
}

void SkySimTest::controlStateCountsRequestsAndFollowsChanges()
{
    const auto sky = startSky();
    QJsonObject state = object(get(*sky, u"/control/state"_qs).body);
    QCOMPARE(state[u"seed"_qs].toInteger(), qint64(11));
    QCOMPARE(state[u"count"_qs].toInteger(), qint64(60));
    QCOMPARE(state[u"clock"_qs][u"frozen"_qs].toBool(), true);
    QCOMPARE(state[u"clock"_qs][u"now"_qs].toInteger(), startEpochMs);
    QCOMPARE(state[u"sources"_qs][u"primary"_qs][u"fault"_qs].toString(), u"none"_qs);
    QCOMPARE(state[u"sources"_qs][u"fallback"_qs][u"requests"_qs].toInt(), 0);

    const QString path = primaryPath(45.6, -122.7, 25);
    QCOMPARE(get(*sky, path).status, 200);
    QCOMPARE(get(*sky, path).status, 200);
    state = object(get(*sky, u"/control/state"_qs).body);
    QCOMPARE(state[u"sources"_qs][u"primary"_qs][u"requests"_qs].toInt(), 2);
    QCOMPARE(state[u"sources"_qs][u"primary"_qs][u"lastTarget"_qs].toString(), path);
    QCOMPARE(state[u"sources"_qs][u"fallback"_qs][u"requests"_qs].toInt(), 0);

    state = object(post(*sky, u"/control/clock?frozen=false&advance=2.5"_qs).body);
    QCOMPARE(state[u"clock"_qs][u"frozen"_qs].toBool(), false);
    QVERIFY(state[u"clock"_qs][u"now"_qs].toInteger() >= startEpochMs + 2500);

    state = object(post(*sky, u"/control/reset"_qs).body);
    QCOMPARE(state[u"clock"_qs][u"frozen"_qs].toBool(), true);
    QCOMPARE(state[u"clock"_qs][u"now"_qs].toInteger(), startEpochMs);
    QCOMPARE(state[u"sources"_qs][u"primary"_qs][u"requests"_qs].toInt(), 0);
    QCOMPARE(state[u"areas"_qs].toArray().size(), 0);
}

void SkySimTest::controlRejectsBadRequests_data()
{
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("status");
    QTest::newRow("unknown source") << QByteArray("POST") << u"/control/fault?source=tertiary&kind=drop"_qs
                                    << 400;
    QTest::newRow("no source") << QByteArray("POST") << u"/control/fault?kind=drop"_qs << 400;
    QTest::newRow("unknown kind") << QByteArray("POST") << u"/control/fault?source=primary&kind=explode"_qs
                                  << 400;
    QTest::newRow("status out of range")
        << QByteArray("POST") << u"/control/fault?source=primary&kind=status:99"_qs << 400;
    QTest::newRow("delay not a number")
        << QByteArray("POST") << u"/control/fault?source=primary&kind=delay:soon"_qs << 400;
    QTest::newRow("fault by GET") << QByteArray("GET") << u"/control/fault?source=primary&kind=drop"_qs
                                  << 405;
    QTest::newRow("clock without parameters") << QByteArray("POST") << u"/control/clock"_qs << 400;
    QTest::newRow("clock backwards") << QByteArray("POST") << u"/control/clock?advance=-5"_qs << 400;
    QTest::newRow("clock with a decimal comma")
        << QByteArray("POST") << u"/control/clock?advance=1,5"_qs << 400;
    QTest::newRow("frozen neither true nor false")
        << QByteArray("POST") << u"/control/clock?frozen=maybe"_qs << 400;
    QTest::newRow("count too large") << QByteArray("POST") << u"/control/count?value=5001"_qs << 400;
    QTest::newRow("count not a number") << QByteArray("POST") << u"/control/count?value=many"_qs << 400;
    QTest::newRow("reset by GET") << QByteArray("GET") << u"/control/reset"_qs << 405;
    QTest::newRow("state by POST") << QByteArray("POST") << u"/control/state"_qs << 405;
    QTest::newRow("unknown control") << QByteArray("POST") << u"/control/weather"_qs << 404;
}

void SkySimTest::controlRejectsBadRequests()
{
    QFETCH(QByteArray, method);
    QFETCH(QString, path);
    QFETCH(int, status);
    const auto sky = startSky();
    QNetworkRequest request(QUrl(sky->baseUrl() + path));
    request.setHeader(QNetworkRequest::ContentTypeHeader, u"text/plain"_qs);
    const Answer answer = finish(m_network.sendCustomRequest(request, method, QByteArray()));
    QCOMPARE(answer.status, status);
    // Nothing changed.
    const QJsonObject state = object(get(*sky, u"/control/state"_qs).body);
    QCOMPARE(state[u"sources"_qs][u"primary"_qs][u"fault"_qs].toString(), u"none"_qs);
    QCOMPARE(state[u"count"_qs].toInteger(), qint64(60));
    QCOMPARE(state[u"clock"_qs][u"now"_qs].toInteger(), startEpochMs);
}

void SkySimTest::countChangesTheTraffic()
{
    const auto sky = startSky();
    const QString path = primaryPath(60.0, 10.0, 250);
    const QJsonArray sixty = rowsOf(get(*sky, path), u"ac"_qs);
    QCOMPARE(sixty.size(), 60);

    QCOMPARE(object(post(*sky, u"/control/count?value=5"_qs).body)[u"count"_qs].toInt(), 5);
    const QJsonArray five = rowsOf(get(*sky, path), u"ac"_qs);
    QCOMPARE(five.size(), 5);
    // The aircraft that stay are the same ones.
    for (qsizetype i = 0; i < five.size(); ++i)
        QCOMPARE(five[i], sixty[i]);

    QCOMPARE(post(*sky, u"/control/count?value=0"_qs).status, 200);
    const Answer none = get(*sky, path);
    QCOMPARE(object(none.body)[u"total"_qs].toInt(), 0);
    const auto decoded = APIResponse::decode(none.body);
    QVERIFY(decoded.ok());
    QVERIFY(decoded.value().list().isEmpty());

    QCOMPARE(post(*sky, u"/control/reset"_qs).status, 200);
    QCOMPARE(rowsOf(get(*sky, path), u"ac"_qs), sixty);
}

void SkySimTest::aLargeSkyHasTheVarietyOfARealOne()
{
    const double lat = 33.9425;
    const double lon = -118.4081;
    const auto sky = startSky(frozenOptions(1000, 3));
    const Answer answer = get(*sky, fallbackPath(lat, lon, 250));
    const QJsonArray rows = rowsOf(answer, u"aircraft"_qs);
    QCOMPARE(rows.size(), 1000);
    const auto decoded = APIResponse::decode(answer.body);
    QVERIFY2(decoded.ok(), qPrintable(decoded.error()));
    const QList<Aircraft> &aircraft = decoded.value().list();

    int helicopters = 0, military = 0, airlift = 0, onGround = 0, emergencies = 0, generalEmergencies = 0;
    int noFlight = 0, noRegistration = 0, noType = 0, noAltGeom = 0, noCategory = 0, noSquawk = 0;
    int stale = 0, noPosition = 0, airlines = 0, overhead = 0, ladd = 0;
    QSet<QString> hexes;
    static const QRegularExpression hexPattern(u"^~?[0-9a-f]{6}$"_qs);
    for (qsizetype i = 0; i < aircraft.size(); ++i) {
        const Aircraft &a = aircraft[i];
        const QJsonObject row = rows[i].toObject();
        QVERIFY2(hexPattern.match(a.hex()).hasMatch(), qPrintable(a.hex()));
        QVERIFY2(!hexes.contains(a.hex()), qPrintable(a.hex()));
        hexes.insert(a.hex());

        if (a.flight()) {
            QCOMPARE(a.flight()->size(), 8);
            QCOMPARE(a.flight()->trimmed().size() + (a.flight()->size() - a.flight()->trimmed().size()), 8);
            QVERIFY(a.flight()->startsWith(a.flight()->trimmed()));
            airlines += Airlines::nameForCallsign(a.flight()) ? 1 : 0;
            airlift += a.flight()->startsWith(u"RCH") && a.isMilitary() ? 1 : 0;
        } else {
            ++noFlight;
        }
        if (a.typeCode()) {
            QVERIFY2(AircraftTypes::table().contains(*a.typeCode()), qPrintable(*a.typeCode()));
            QCOMPARE(a.typeDescription().value_or(QString()),
                     AircraftTypes::table().value(*a.typeCode()).toUpper());
        } else {
            ++noType;
        }
        noRegistration += a.registration() ? 0 : 1;
        noSquawk += a.squawk() ? 0 : 1;
        noCategory += a.category() ? 0 : 1;
        helicopters += a.isHelicopter() ? 1 : 0;
        military += a.isMilitary() ? 1 : 0;
        ladd += a.dbFlags() && (*a.dbFlags() & 8) && !a.isMilitary() ? 1 : 0;
        emergencies += a.isEmergency() ? 1 : 0;
        generalEmergencies += a.emergency() == u"general"_qs && a.squawk() == u"7700"_qs ? 1 : 0;
        stale += a.seenPos() && *a.seenPos() >= 60.0 ? 1 : 0;
        noPosition += a.coordinate() ? 0 : 1;
        if (a.isOnGround()) {
            ++onGround;
            QCOMPARE(row[u"alt_baro"_qs].toString(), u"ground"_qs);
            QVERIFY(*a.groundSpeed() <= 20.0);
            continue;
        }
        noAltGeom += a.altGeom() ? 0 : 1;

        // Speeds by kind of aircraft.
        const double speed = *a.groundSpeed();
        const QString category = a.category().value_or(QString());
        if (a.isHelicopter())
            QVERIFY2(speed >= 60.0 && speed <= 140.0, qPrintable(a.hex()));
        else if (category == u"A1")
            QVERIFY2(speed >= 90.0 && speed <= 160.0, qPrintable(a.hex()));
        else if (category == u"A3" || category == u"A4" || category == u"A5" || category == u"A6")
            QVERIFY2(speed >= 250.0 && speed <= 500.0, qPrintable(a.hex()));
        if (a.altitudeFeet())
            QVERIFY(*a.altitudeFeet() > 0 && *a.altitudeFeet() <= 45000);

        // Flying straight towards or away from the queried point.
        if (a.coordinate() && *a.distanceNM() > 1.0) {
            const double toCentre =
                independentBearing(a.coordinate()->latitude, a.coordinate()->longitude, lat, lon);
            const double gap = angleGap(*a.track(), toCentre);
            overhead += gap < 0.5 || gap > 179.5 ? 1 : 0;
        }
    }
    QVERIFY2(helicopters >= 30, qPrintable(QString::number(helicopters)));
    QVERIFY2(military >= 20, qPrintable(QString::number(military)));
    QVERIFY2(airlift >= 1, qPrintable(QString::number(airlift)));
    QVERIFY2(onGround >= 20, qPrintable(QString::number(onGround)));
    QVERIFY2(emergencies >= 3, qPrintable(QString::number(emergencies)));
    QVERIFY2(generalEmergencies >= 1, qPrintable(QString::number(generalEmergencies)));
    QVERIFY2(noFlight >= 10, qPrintable(QString::number(noFlight)));
    QVERIFY2(noRegistration >= 10, qPrintable(QString::number(noRegistration)));
    QVERIFY2(noType >= 10, qPrintable(QString::number(noType)));
    QVERIFY2(noAltGeom >= 10, qPrintable(QString::number(noAltGeom)));
    QVERIFY2(noCategory >= 10, qPrintable(QString::number(noCategory)));
    QVERIFY2(noSquawk >= 10, qPrintable(QString::number(noSquawk)));
    QVERIFY2(stale >= 10, qPrintable(QString::number(stale)));
    QVERIFY2(noPosition >= 3, qPrintable(QString::number(noPosition)));
    QVERIFY2(airlines >= 300, qPrintable(QString::number(airlines)));
    QVERIFY2(overhead >= 30, qPrintable(QString::number(overhead)));
    QVERIFY2(ladd >= 1, qPrintable(QString::number(ladd)));

    // The networks' further row keys, and the kinds of message they came from.
    QSet<QString> types;
    for (const QJsonValue &row : rows) {
        types.insert(row[u"type"_qs].toString());
        if (row[u"type"_qs] == u"adsb_icao"_qs)
            QVERIFY(row.toObject().contains(u"version"_qs));
    }
    QCOMPARE(types, (QSet<QString>{u"adsb_icao"_qs, u"mlat"_qs, u"tisb_trackfile"_qs}));
}

void SkySimTest::requestsArrivingInPiecesAreAnswered()
{
    const auto sky = startSky();
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, sky->port());
    QVERIFY(QSignalSpy(&socket, &QTcpSocket::connected).wait(waitMs));
    QByteArray buffer;

    // Nothing is answered before the request is whole.
    const QList<QByteArray> pieces{"GET /v2/po", "int/47.60000/-122.3000", "0/25 HTTP/1.1\r\nHost: x\r\n",
                                   "\r\n"};
    for (qsizetype i = 0; i < pieces.size(); ++i) {
        socket.write(pieces[i]);
        socket.flush();
        if (i + 1 < pieces.size())
            QVERIFY(!QSignalSpy(&socket, &QTcpSocket::readyRead).wait(50));
    }
    auto response = readResponse(socket, buffer);
    QVERIFY(response);
    QCOMPARE(response->status, 200);
    QVERIFY(response->head.contains("Connection: keep-alive"));
    QVERIFY(APIResponse::decode(response->body).ok());

    // The connection stays open for the next request; a HEAD gets the head alone.
    socket.write("HEAD /api/v2/lat/47.6/lon/-122.3/dist/25 HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n");
    response = readResponse(socket, buffer, true);
    QVERIFY(response);
    QCOMPARE(response->status, 200);
    QVERIFY(response->head.contains("Content-Length: "));
    QVERIFY(!response->head.contains("Content-Length: 0"));
    if (socket.state() != QAbstractSocket::UnconnectedState)
        QVERIFY(QSignalSpy(&socket, &QTcpSocket::disconnected).wait(waitMs));
    buffer += socket.readAll();
    QVERIFY(buffer.isEmpty());
}

void SkySimTest::pipelinedRequestsAreAnsweredInOrder()
{
    const auto sky = startSky();
    QCOMPARE(post(*sky, u"/control/fault?source=primary&kind=delay:200"_qs).status, 200);
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, sky->port());
    QVERIFY(QSignalSpy(&socket, &QTcpSocket::connected).wait(waitMs));
    // A delayed answer first: the quick one behind it must wait its turn.
    socket.write("GET /v2/point/1/2/50 HTTP/1.1\r\nHost: x\r\n\r\n"
                 "GET /no/such/thing HTTP/1.1\r\nHost: x\r\n\r\n"
                 "POST /control/fault?source=primary&kind=none HTTP/1.1\r\nHost: x\r\nContent-Length: 4\r\n"
                 "Connection: close\r\n\r\nbody");
    QByteArray buffer;
    const auto first = readResponse(socket, buffer);
    const auto second = readResponse(socket, buffer);
    const auto third = readResponse(socket, buffer);
    QVERIFY(first && second && third);
    QCOMPARE(first->status, 200);
    QVERIFY(APIResponse::decode(first->body).ok());
    QCOMPARE(second->status, 404);
    QCOMPARE(third->status, 200);
    QVERIFY(third->head.contains("Connection: close"));
    QCOMPARE(object(third->body)[u"sources"_qs][u"primary"_qs][u"fault"_qs].toString(), u"none"_qs);
}

void SkySimTest::garbageIsRefusedAndTheConnectionClosed()
{
    const auto sky = startSky();
    for (const QByteArray &garbage :
         {QByteArray("NONSENSE\r\n\r\n"), QByteArray("GET / HTTP/2.0\r\n\r\n"),
          QByteArray("GET /x HTTP/1.1\r\nno colon here\r\n\r\n"),
          QByteArray("POST /control/reset HTTP/1.1\r\nContent-Length: x\r\n\r\n")}) {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, sky->port());
        QVERIFY(QSignalSpy(&socket, &QTcpSocket::connected).wait(waitMs));
        socket.write(garbage);
        QByteArray buffer;
        const auto response = readResponse(socket, buffer);
        QVERIFY2(response, garbage.constData());
        QVERIFY2(response->status == 400 || response->status == 505, garbage.constData());
        if (socket.state() != QAbstractSocket::UnconnectedState)
            QVERIFY(QSignalSpy(&socket, &QTcpSocket::disconnected).wait(waitMs));
    }
    // The server is none the worse.
    QCOMPARE(get(*sky, primaryPath(1.0, 1.0, 10)).status, 200);
}

void SkySimTest::commandLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("outcome");
    QTest::addColumn<QString>("check"); // field=value that must hold when run

    using O = SkySimCommandLine::Outcome;
    QTest::newRow("defaults") << QStringList{} << int(O::Run) << u"port=8787 count=60 seed=1 centre=none"_qs;
    QTest::newRow("port, seed, count, frozen")
        << QStringList{u"--port"_qs,  u"0"_qs,    u"--seed"_qs,  u"7"_qs,
                       u"--count"_qs, u"5000"_qs, u"--frozen"_qs}
        << int(O::Run) << u"port=0 count=5000 seed=7 frozen=1"_qs;
    QTest::newRow("negative longitude as its own argument")
        << QStringList{u"--lat"_qs, u"47.6062"_qs, u"--lon"_qs, u"-122.3321"_qs} << int(O::Run)
        << u"centre=47.6062,-122.3321"_qs;
    QTest::newRow("equals form") << QStringList{u"--lat=-33.9"_qs, u"--lon=151.2"_qs} << int(O::Run)
                                 << u"centre=-33.9,151.2"_qs;
    QTest::newRow("faults") << QStringList{u"--primary-fault=status:503"_qs, u"--fallback-fault"_qs,
                                           u"delay:8500"_qs}
                            << int(O::Run) << u"primary=status:503 fallback=delay:8500"_qs;
    QTest::newRow("list keys") << QStringList{u"--primary-list-key"_qs, u"aircraft"_qs} << int(O::Run)
                               << u"primaryKey=aircraft"_qs;
    QTest::newRow("faults of further sources")
        << QStringList{u"--fault"_qs, u"route=status:503"_qs, u"--fault=tiles=drop"_qs} << int(O::Run)
        << u"faults=route:status:503,tiles:drop"_qs;
    QTest::newRow("offered update") << QStringList{u"--update-version"_qs, u"0.2.0"_qs} << int(O::Run)
                                    << u"update=0.2.0"_qs;
    QTest::newRow("default offered update") << QStringList{} << int(O::Run) << u"update=0.1.0 faults="_qs;
    QTest::newRow("help") << QStringList{u"--help"_qs} << int(O::Help) << QString();
    QTest::newRow("fault of no source")
        << QStringList{u"--fault=radar=drop"_qs} << int(O::Error) << QString();
    QTest::newRow("fault without a kind") << QStringList{u"--fault=route"_qs} << int(O::Error) << QString();
    QTest::newRow("fault of no kind")
        << QStringList{u"--fault=photo=explode"_qs} << int(O::Error) << QString();
    QTest::newRow("update that is no version")
        << QStringList{u"--update-version"_qs, u"1.x"_qs} << int(O::Error) << QString();
    QTest::newRow("count too large") << QStringList{u"--count"_qs, u"5001"_qs} << int(O::Error) << QString();
    QTest::newRow("port too large") << QStringList{u"--port"_qs, u"70000"_qs} << int(O::Error) << QString();
    QTest::newRow("latitude alone") << QStringList{u"--lat"_qs, u"47"_qs} << int(O::Error) << QString();
    QTest::newRow("decimal comma") << QStringList{u"--lat"_qs, u"47,6"_qs, u"--lon"_qs, u"8"_qs}
                                   << int(O::Error) << QString();
    QTest::newRow("latitude beyond the pole")
        << QStringList{u"--lat"_qs, u"91"_qs, u"--lon"_qs, u"8"_qs} << int(O::Error) << QString();
    QTest::newRow("unknown fault") << QStringList{u"--fallback-fault=explode"_qs} << int(O::Error)
                                   << QString();
    QTest::newRow("status below 200")
        << QStringList{u"--primary-fault=status:99"_qs} << int(O::Error) << QString();
    QTest::newRow("stray argument") << QStringList{u"extra"_qs} << int(O::Error) << QString();
    QTest::newRow("unknown option") << QStringList{u"--colour"_qs} << int(O::Error) << QString();
}

void SkySimTest::commandLine()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, outcome);
    QFETCH(QString, check);
    const auto result = SkySimCommandLine::parse(QStringList{u"aerolume-skysim"_qs} + arguments);
    QCOMPARE(int(result.outcome), outcome);
    if (outcome == int(SkySimCommandLine::Outcome::Error))
        QVERIFY(!result.error.isEmpty());
    const SkySimOptions &o = result.options;
    for (const QString &pair : check.split(u' ', Qt::SkipEmptyParts)) {
        const QString field = pair.section(u'=', 0, 0);
        const QString value = pair.section(u'=', 1);
        QString actual;
        if (field == u"port")
            actual = QString::number(o.port);
        else if (field == u"count")
            actual = QString::number(o.count);
        else if (field == u"seed")
            actual = QString::number(o.seed);
        else if (field == u"frozen")
            actual = QString::number(int(o.frozen));
        else if (field == u"centre")
            actual = o.centre ? u"%1,%2"_qs.arg(QString::number(o.centre->lat, 'g', 10),
                                                QString::number(o.centre->lon, 'g', 10))
                              : u"none"_qs;
        else if (field == u"primary")
            actual = o.primaryFault.toString();
        else if (field == u"fallback")
            actual = o.fallbackFault.toString();
        else if (field == u"primaryKey")
            actual = o.primaryListKey;
        else if (field == u"update")
            actual = o.updateVersion;
        else if (field == u"faults") {
            QStringList faults;
            for (const auto &[source, fault] : o.faults)
                faults.append(source + u':' + fault.toString());
            actual = faults.join(u',');
        }
        QCOMPARE(actual, value);
    }
}

void SkySimTest::helpNamesEveryFaultAndControl()
{
    const QString help = SkySimCommandLine::helpText();
    for (const QString &word : {u"status:CODE"_qs,
                                u"empty"_qs,
                                u"malformed"_qs,
                                u"badjson"_qs,
                                u"delay:MS"_qs,
                                u"drop"_qs,
                                u"/control/state"_qs,
                                u"/control/fault"_qs,
                                u"/control/clock"_qs,
                                u"/control/count"_qs,
                                u"/control/reset"_qs,
                                u"/control/update"_qs,
                                u"--self-test"_qs,
                                u"--fault SOURCE=KIND"_qs,
                                u"--update-version"_qs,
                                u"/v0/callsign/"_qs,
                                u"/pub/photos/hex/"_qs,
                                u"/hlisten.php"_qs,
                                u"/silent"_qs,
                                u"/dead"_qs,
                                u"/tiles/imagery/Z/Y/X"_qs,
                                u"/search?q="_qs,
                                u"/appcast.xml"_qs,
                                u"AEROLUME_TOWERFEEDS_DOMAIN"_qs})
        QVERIFY2(help.contains(word), qPrintable(word));
    QVERIFY(help.contains(ControlModule::usage()));
}

QTEST_GUILESS_MAIN(SkySimTest)
#include "SkySimTest.moc"
