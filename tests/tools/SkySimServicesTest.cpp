#include "APIResponse.h"
#include "Airlines.h"
#include "PhotoAPI.h"
#include "RouteAPI.h"
#include "SkySimServer.h"
#include "SkySimClient.h"
#include "SkySimulator.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QStringDecoder>
#include <QTcpSocket>
#include <QTest>
#include <QXmlStreamReader>
#include <QtEndian>
#include <memory>

namespace {

constexpr qint64 startEpochMs = 1'700'000'000'000;
constexpr int waitMs = SkySimClient::waitMs;
constexpr const char *sparkle = "http://www.andymatuschak.org/xml-namespaces/sparkle";

SkySimOptions frozenOptions(int count = 60, quint64 seed = 11)
{
    SkySimOptions options;
    options.port = 0;
    options.frozen = true;
    options.startEpochMs = startEpochMs;
    options.count = count;
    options.seed = seed;
    options.centre = GeoPoint{47.449, -122.309};
    return options;
}

using Answer = SkySimClient::Answer;

QJsonObject object(const QByteArray &json)
{
    return QJsonDocument::fromJson(json).object();
}

// A raw HTTP exchange, for what QNetworkAccessManager hides: answers without end, answers that never come.
struct RawHead
{
    int status = 0;
    QByteArray head;
    QByteArray rest; // body bytes that came with the head
};

std::optional<RawHead> readHead(QTcpSocket &socket, QByteArray &buffer)
{
    for (;;) {
        const qsizetype end = buffer.indexOf("\r\n\r\n");
        if (end >= 0) {
            RawHead head;
            head.head = buffer.left(end);
            head.status = head.head.mid(9, 3).toInt();
            head.rest = buffer.mid(end + 4);
            buffer.clear();
            return head;
        }
        QSignalSpy arrived(&socket, &QTcpSocket::readyRead);
        if (socket.bytesAvailable() == 0 && !arrived.wait(waitMs))
            return std::nullopt;
        buffer += socket.readAll();
    }
}

bool connectTo(QTcpSocket &socket, quint16 port)
{
    socket.connectToHost(QHostAddress::LocalHost, port);
    return socket.state() == QAbstractSocket::ConnectedState ||
           QSignalSpy(&socket, &QTcpSocket::connected).wait(waitMs);
}

QByteArray headerOf(const QByteArray &head, const QByteArray &name)
{
    for (const QByteArray &line : head.split('\n')) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0 && line.left(colon).trimmed().toLower() == name)
            return line.mid(colon + 1).trimmed();
    }
    return {};
}

// Water on a standard tile has one colour; on imagery it is bluer than it is red.
QList<bool> waterMask(const QImage &tile, bool imagery)
{
    QList<bool> mask;
    const QImage image = tile.convertToFormat(QImage::Format_RGB32);
    for (int y = 0; y < image.height(); y += 4) {
        for (int x = 0; x < image.width(); x += 4) {
            const QRgb pixel = image.pixel(x, y);
            mask.append(imagery ? qBlue(pixel) > qRed(pixel) + 20 : pixel == qRgb(0xaa, 0xd3, 0xdf));
        }
    }
    return mask;
}

double agreement(const QList<bool> &a, const QList<bool> &b)
{
    qsizetype same = 0;
    for (qsizetype i = 0; i < a.size(); ++i)
        same += a[i] == b[i] ? 1 : 0;
    return double(same) / double(a.size());
}

} // namespace

class SkySimServicesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void environmentLinesPointEveryServiceHere();
    void controlStateListsEverySource();

    void routesAreKnownForAirlineFlightsInTheSky();
    void routesOfASeedAreTheSameEveryTime();
    void routeLookupsThatFindNothing_data();
    void routeLookupsThatFindNothing();
    void aFlightThatHasLeftIsForgotten();

    void photosForAircraftInTheSky();
    void photoLookupsThatFindNothing_data();
    void photoLookupsThatFindNothing();

    void playlistsAreServedByteForByte_data();
    void playlistsAreServedByteForByte();
    void missingPlaylistsAndPages_data();
    void missingPlaylistsAndPages();
    void theAudioStreamIsPacedAndEndless_data();
    void theAudioStreamIsPacedAndEndless();
    void theSilentMountNeverAnswers();
    void streamFaults_data();
    void streamFaults();

    void tilesArePngsWithCacheHeaders_data();
    void tilesArePngsWithCacheHeaders();
    void imageryIsAskedRowBeforeColumn();
    void tilesOutsideTheGridAreNotFound_data();
    void tilesOutsideTheGridAreNotFound();
    void tilesAnswerConditionalRequests_data();
    void tilesAnswerConditionalRequests();

    void geocoderSearch_data();
    void geocoderSearch();
    void geocoderRefusesBadRequests_data();
    void geocoderRefusesBadRequests();
    void geocoderReverse_data();
    void geocoderReverse();

    void appcastOffersTheConfiguredVersion_data();
    void appcastOffersTheConfiguredVersion();
    void appcastModesSwitchWhileRunning_data();
    void appcastModesSwitchWhileRunning();

    void faultsArePerSource_data();
    void faultsArePerSource();

private:
    static std::unique_ptr<SkySimulator> startSky(const SkySimOptions &options = frozenOptions())
    {
        return SkySimClient::start(options);
    }
    Answer finish(QNetworkReply *reply) { return m_client.finish(reply); }
    Answer get(const SkySimulator &sky, const QString &path,
               const QList<std::pair<QByteArray, QByteArray>> &headers = {})
    {
        return m_client.get(sky, path, headers);
    }
    Answer post(const SkySimulator &sky, const QString &pathAndQuery) { return m_client.post(sky, pathAndQuery); }
    QList<QJsonObject> rows(const SkySimulator &sky);

    SkySimClient m_client;
    QNetworkAccessManager &m_network = m_client.network();
};

void SkySimServicesTest::initTestCase()
{
    // Numbers in answers must never take the locale's decimal comma.
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}

// The primary feed's rows around the sky's centre, as a client sees them; this also makes the area.
QList<QJsonObject> SkySimServicesTest::rows(const SkySimulator &sky)
{
    QList<QJsonObject> list;
    const Answer answer = get(sky, u"/v2/point/47.44900/-122.30900/250"_qs);
    for (const QJsonValue &row : object(answer.body)[u"ac"_qs].toArray())
        list.append(row.toObject());
    return list;
}

void SkySimServicesTest::environmentLinesPointEveryServiceHere()
{
    const auto sky = startSky();
    const QString base = sky->baseUrl();
    QHash<QString, QString> environment;
    static const QRegularExpression line(u"^export ([A-Z_]+)=(.*)$"_qs);
    for (const QString &text : sky->environmentLines().split(u'\n', Qt::SkipEmptyParts)) {
        const QRegularExpressionMatch match = line.match(text);
        QVERIFY2(match.hasMatch(), qPrintable(text));
        QString value = match.captured(2);
        if (value.startsWith(u'\'') && value.endsWith(u'\''))
            value = value.mid(1, value.size() - 2);
        QVERIFY2(!value.contains(u'\''), qPrintable(text));
        environment.insert(match.captured(1), value);
    }
    const QStringList expected{
        u"AEROLUME_PRIMARY_FEED_URL"_qs,  u"AEROLUME_FALLBACK_FEED_URL"_qs, u"AEROLUME_ROUTE_URL"_qs,
        u"AEROLUME_PHOTO_URL"_qs,         u"AEROLUME_STREAM_URL"_qs,        u"AEROLUME_TOWERFEEDS_DOMAIN"_qs,
        u"AEROLUME_TILE_URL_STANDARD"_qs, u"AEROLUME_TILE_URL_IMAGERY"_qs,  u"AEROLUME_TILE_URL_LABELS"_qs,
        u"AEROLUME_GEOCODER_URL"_qs,      u"AEROLUME_UPDATE_FEED_URL"_qs};
    QStringList names = environment.keys();
    names.sort();
    QStringList sortedExpected = expected;
    sortedExpected.sort();
    QCOMPARE(names, sortedExpected);

    // The stream resolver upgrades plain http on hosts that end with the domain; ours must not.
    QVERIFY(!environment[u"AEROLUME_TOWERFEEDS_DOMAIN"_qs].isEmpty());
    QVERIFY(!u"127.0.0.1"_qs.endsWith(environment[u"AEROLUME_TOWERFEEDS_DOMAIN"_qs]));

    // Every address answers as its service, the way a client forms its requests.
    auto pathOf = [&base](const QString &url) {
        return url.startsWith(base) ? url.mid(base.size()) : u"<not here: "_qs + url;
    };
    const QList<QJsonObject> seen = rows(*sky);
    QVERIFY(!seen.isEmpty());
    QCOMPARE(environment[u"AEROLUME_ROUTE_URL"_qs], base);
    QCOMPARE(environment[u"AEROLUME_PHOTO_URL"_qs], base);
    QCOMPARE(environment[u"AEROLUME_STREAM_URL"_qs], base);
    QCOMPARE(get(*sky, pathOf(environment[u"AEROLUME_PRIMARY_FEED_URL"_qs]) + u"/v2/point/47.4/-122.3/50"_qs)
                 .status,
             200);
    QCOMPARE(get(*sky, pathOf(environment[u"AEROLUME_FALLBACK_FEED_URL"_qs]) +
                           u"/api/v2/lat/47.4/lon/-122.3/dist/50"_qs)
                 .status,
             200);
    QCOMPARE(get(*sky, pathOf(environment[u"AEROLUME_PHOTO_URL"_qs]) + u"/pub/photos/hex/"_qs +
                           seen.first()[u"hex"_qs].toString())
                 .status,
             200);
    QCOMPARE(get(*sky, pathOf(environment[u"AEROLUME_STREAM_URL"_qs]) + u"/KSEA_TWR.pls"_qs).status, 200);
    QCOMPARE(get(*sky, pathOf(environment[u"AEROLUME_GEOCODER_URL"_qs]) + u"/search?q=Boise&format=jsonv2"_qs)
                 .status,
             200);
    QCOMPARE(get(*sky, pathOf(environment[u"AEROLUME_UPDATE_FEED_URL"_qs])).status, 200);
    for (const QString &name : {u"AEROLUME_TILE_URL_STANDARD"_qs, u"AEROLUME_TILE_URL_IMAGERY"_qs,
                                u"AEROLUME_TILE_URL_LABELS"_qs}) {
        QString url = environment[name];
        QVERIFY2(url.contains(u"{z}") && url.contains(u"{x}") && url.contains(u"{y}"), qPrintable(url));
        url.replace(u"{z}"_qs, u"3"_qs).replace(u"{x}"_qs, u"5"_qs).replace(u"{y}"_qs, u"2"_qs);
        const Answer tile = get(*sky, pathOf(url));
        QCOMPARE(tile.status, 200);
        QCOMPARE(QImage::fromData(tile.body, "PNG").size(), QSize(256, 256));
    }
}

void SkySimServicesTest::controlStateListsEverySource()
{
    const auto sky = startSky();
    const QJsonObject state = object(get(*sky, u"/control/state"_qs).body);
    QStringList sources = state[u"sources"_qs].toObject().keys();
    sources.sort();
    QCOMPARE(sources, (QStringList{u"fallback"_qs, u"geocoder"_qs, u"photo"_qs, u"primary"_qs, u"route"_qs,
                                   u"stream"_qs, u"tiles"_qs, u"update"_qs}));
    QCOMPARE(state[u"update"_qs][u"version"_qs].toString(), u"0.1.0"_qs);

    // Requests are counted against the source that served them, and nothing else.
    QCOMPARE(get(*sky, u"/tiles/standard/1/0/1.png"_qs).status, 200);
    QCOMPARE(get(*sky, u"/tiles/labels/1/0/1"_qs).status, 200);
    QCOMPARE(get(*sky, u"/search?q=Berlin"_qs).status, 200);
    const QJsonObject after = object(get(*sky, u"/control/state"_qs).body)[u"sources"_qs].toObject();
    QCOMPARE(after[u"tiles"_qs][u"requests"_qs].toInt(), 2);
    QCOMPARE(after[u"tiles"_qs][u"lastTarget"_qs].toString(), u"/tiles/labels/1/0/1"_qs);
    QCOMPARE(after[u"geocoder"_qs][u"requests"_qs].toInt(), 1);
    QCOMPARE(after[u"route"_qs][u"requests"_qs].toInt(), 0);
    QCOMPARE(after[u"stream"_qs][u"requests"_qs].toInt(), 0);
}

void SkySimServicesTest::routesAreKnownForAirlineFlightsInTheSky()
{
    const auto sky = startSky(frozenOptions(400));
    QSet<QString> callsigns;
    for (const QJsonObject &row : rows(*sky)) {
        const std::optional<QString> flight =
            row.contains(u"flight"_qs) ? std::optional(row[u"flight"_qs].toString().trimmed()) : std::nullopt;
        if (flight && Airlines::nameForCallsign(flight) && !(row[u"dbFlags"_qs].toInt() & 1))
            callsigns.insert(*flight);
    }
    QVERIFY2(callsigns.size() > 80, qPrintable(QString::number(callsigns.size())));

    int known = 0, unknown = 0, icaoOnly = 0, noOriginCity = 0, nullDestinationCity = 0, homeAtOneEnd = 0;
    static const QRegularExpression iata(u"^[A-Z]{3}$"_qs);
    static const QRegularExpression icao(u"^[A-Z]{4}$"_qs);
    for (const QString &callsign : std::as_const(callsigns)) {
        const Answer answer = get(*sky, u"/v0/callsign/"_qs + callsign);
        if (answer.status == 404) {
            ++unknown;
            QCOMPARE(object(answer.body)[u"response"_qs].toString(), u"unknown callsign"_qs);
            continue;
        }
        QCOMPARE(answer.status, 200);
        QVERIFY(answer.contentType.startsWith("application/json"));
        ++known;
        const auto route = RouteAPI::decode(answer.body);
        QVERIFY2(route, answer.body.constData());
        const QJsonObject flightroute = object(answer.body)[u"response"_qs][u"flightroute"_qs].toObject();
        QCOMPARE(flightroute[u"callsign"_qs].toString(), callsign);
        const QJsonObject origin = flightroute[u"origin"_qs].toObject();
        const QJsonObject destination = flightroute[u"destination"_qs].toObject();
        QVERIFY(icao.match(origin[u"icao_code"_qs].toString()).hasMatch());
        QVERIFY(icao.match(destination[u"icao_code"_qs].toString()).hasMatch());
        QVERIFY(iata.match(destination[u"iata_code"_qs].toString()).hasMatch());
        QVERIFY(origin[u"icao_code"_qs] != destination[u"icao_code"_qs]);
        QVERIFY(!destination[u"name"_qs].toString().isEmpty());
        QVERIFY(!destination[u"country_iso_name"_qs].toString().isEmpty());
        if (!origin.contains(u"iata_code"_qs)) {
            ++icaoOnly;
            QCOMPARE(route->originCode, origin[u"icao_code"_qs].toString());
        } else {
            QVERIFY(iata.match(origin[u"iata_code"_qs].toString()).hasMatch());
            QCOMPARE(route->originCode, origin[u"iata_code"_qs].toString());
        }
        if (!origin.contains(u"municipality"_qs)) {
            ++noOriginCity;
            QVERIFY(!route->citySummary());
        }
        if (destination[u"municipality"_qs].isNull()) {
            ++nullDestinationCity;
            QVERIFY(!route->destinationCity);
        }
        // An airline flies from or to home.
        const QString home = flightroute[u"airline"_qs][u"country_iso"_qs].toString();
        homeAtOneEnd +=
            origin[u"country_iso_name"_qs] == home || destination[u"country_iso_name"_qs] == home ? 1 : 0;

        // The same answer again, and in whatever case the callsign is asked.
        QCOMPARE(get(*sky, u"/v0/callsign/"_qs + callsign.toLower()).body, answer.body);
    }
    QCOMPARE(homeAtOneEnd, known);
    QVERIFY2(known > callsigns.size() * 8 / 10, qPrintable(QString::number(known)));
    QVERIFY2(unknown >= 1, qPrintable(QString::number(unknown)));
    QVERIFY2(icaoOnly >= 1, qPrintable(QString::number(icaoOnly)));
    QVERIFY2(noOriginCity >= 1, qPrintable(QString::number(noOriginCity)));
    QVERIFY2(nullDestinationCity >= 1, qPrintable(QString::number(nullDestinationCity)));
}

void SkySimServicesTest::routesOfASeedAreTheSameEveryTime()
{
    const auto first = startSky(frozenOptions(200, 3));
    const auto twin = startSky(frozenOptions(200, 3));
    const QList<QJsonObject> firstRows = rows(*first);
    QCOMPARE(rows(*twin), firstRows);
    int compared = 0;
    for (const QJsonObject &row : firstRows) {
        const QString flight = row[u"flight"_qs].toString().trimmed();
        if (flight.isEmpty() || !Airlines::nameForCallsign(flight) || compared >= 20)
            continue;
        const Answer answer = get(*first, u"/v0/callsign/"_qs + flight);
        QCOMPARE(get(*twin, u"/v0/callsign/"_qs + flight).body, answer.body);
        compared += answer.status == 200 ? 1 : 0;
    }
    QCOMPARE(compared, 20);
}

void SkySimServicesTest::routeLookupsThatFindNothing_data()
{
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("response");
    QTest::newRow("an airline flight nowhere in the sky")
        << QByteArray("GET") << u"/v0/callsign/ZZZ9999"_qs << 404 << u"unknown callsign"_qs;
    QTest::newRow("no callsign") << QByteArray("GET") << u"/v0/callsign/"_qs << 400 << QString();
    QTest::newRow("a dash") << QByteArray("GET") << u"/v0/callsign/AB-12"_qs << 400 << QString();
    QTest::newRow("too long") << QByteArray("GET") << u"/v0/callsign/ABCDEFGHI"_qs << 400 << QString();
    QTest::newRow("a further part") << QByteArray("GET") << u"/v0/callsign/AAL1/x"_qs << 400 << QString();
    QTest::newRow("POST") << QByteArray("POST") << u"/v0/callsign/AAL1"_qs << 405 << QString();
}

void SkySimServicesTest::routeLookupsThatFindNothing()
{
    QFETCH(QByteArray, method);
    QFETCH(QString, path);
    QFETCH(int, status);
    QFETCH(QString, response);
    const auto sky = startSky();
    QVERIFY(!rows(*sky).isEmpty());
    QNetworkRequest request(QUrl(sky->baseUrl() + path));
    request.setHeader(QNetworkRequest::ContentTypeHeader, u"text/plain"_qs);
    const Answer answer = finish(m_network.sendCustomRequest(request, method, QByteArray()));
    QCOMPARE(answer.status, status);
    if (!response.isEmpty())
        QCOMPARE(object(answer.body)[u"response"_qs].toString(), response);
    QVERIFY(!RouteAPI::decode(answer.body));
}

void SkySimServicesTest::aFlightThatHasLeftIsForgotten()
{
    const auto sky = startSky();
    QString callsign;
    QString privateCallsign;
    for (const QJsonObject &row : rows(*sky)) {
        const QString flight = row[u"flight"_qs].toString().trimmed();
        if (flight.isEmpty() || row[u"gs"_qs].toDouble() < 200.0)
            continue;
        if (!Airlines::nameForCallsign(flight))
            privateCallsign = flight;
        else if (callsign.isEmpty() && get(*sky, u"/v0/callsign/"_qs + flight).status == 200)
            callsign = flight;
    }
    QVERIFY(!callsign.isEmpty());
    if (!privateCallsign.isEmpty())
        QCOMPARE(get(*sky, u"/v0/callsign/"_qs + privateCallsign).status, 404);

    // Three hours on, every fast aircraft has crossed the area, and the sky flies other flights.
    QCOMPARE(post(*sky, u"/control/clock?advance=10800"_qs).status, 200);
    bool stillFlying = false;
    for (const QJsonObject &row : rows(*sky))
        stillFlying = stillFlying || row[u"flight"_qs].toString().trimmed() == callsign;
    QVERIFY(!stillFlying);
    const Answer answer = get(*sky, u"/v0/callsign/"_qs + callsign);
    QCOMPARE(answer.status, 404);
    QCOMPARE(object(answer.body)[u"response"_qs].toString(), u"unknown callsign"_qs);
}

void SkySimServicesTest::photosForAircraftInTheSky()
{
    const auto sky = startSky(frozenOptions(150));
    int withPhoto = 0, without = 0;
    static const QRegularExpression idPattern(u"^[0-9]+$"_qs);
    for (const QJsonObject &row : rows(*sky)) {
        const QString hex = row[u"hex"_qs].toString();
        if (!row.contains(u"r"_qs) || hex.startsWith(u'~'))
            continue;
        const Answer answer = get(*sky, u"/pub/photos/hex/"_qs + hex.toUpper());
        QCOMPARE(answer.status, 200);
        const QJsonArray photos = object(answer.body)[u"photos"_qs].toArray();
        QVERIFY(object(answer.body)[u"photos"_qs].isArray());
        if (photos.isEmpty()) {
            ++without;
            QVERIFY(!PhotoAPI::decode(answer.body));
            continue;
        }
        ++withPhoto;
        QCOMPARE(photos.size(), 1);
        const auto photo = PhotoAPI::decode(answer.body);
        QVERIFY2(photo, answer.body.constData());
        const QJsonObject first = photos[0].toObject();
        QVERIFY(idPattern.match(first[u"id"_qs].toString()).hasMatch());
        QVERIFY(photo->pageURL);
        QVERIFY(photo->pageURL->toString().startsWith(u"https://www.planespotters.net/photo/"));
        QVERIFY(photo->pageURL->toString().endsWith(row[u"r"_qs].toString().toLower()));
        QVERIFY(!photo->photographer.value_or(QString()).isEmpty());
        QCOMPARE(first[u"thumbnail_large"_qs][u"size"_qs][u"width"_qs].toInt(), 420);
        QCOMPARE(get(*sky, u"/pub/photos/hex/"_qs + hex).body, answer.body);

        // Both pictures are served here, at their stated sizes, for the detail card to show.
        if (withPhoto > 10)
            continue;
        for (const QString &key : {u"thumbnail_large"_qs, u"thumbnail"_qs}) {
            const QString src = first[key][u"src"_qs].toString();
            QVERIFY2(src.startsWith(sky->baseUrl() + u"/photos/img/"_qs), qPrintable(src));
            const Answer picture = get(*sky, src.mid(sky->baseUrl().size()));
            QCOMPARE(picture.status, 200);
            QCOMPARE(picture.contentType, QByteArray("image/png"));
            const QImage image = QImage::fromData(picture.body, "PNG");
            QCOMPARE(image.width(), first[key][u"size"_qs][u"width"_qs].toInt());
            QCOMPARE(image.height(), first[key][u"size"_qs][u"height"_qs].toInt());
            // A sky: blue above, paler below.
            QVERIFY(qBlue(image.pixel(2, 2)) > qRed(image.pixel(2, 2)));
            QVERIFY(qGray(image.pixel(2, image.height() - 3)) > qGray(image.pixel(2, 2)));
        }
    }
    QVERIFY2(withPhoto >= 50, qPrintable(QString::number(withPhoto)));
    QVERIFY2(without >= 3, qPrintable(QString::number(without)));
}

void SkySimServicesTest::photoLookupsThatFindNothing_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("an address nowhere in the sky")
        << u"/pub/photos/hex/000001"_qs << 200 << QByteArray(R"({"photos":[]})");
    QTest::newRow("not hexadecimal") << u"/pub/photos/hex/xyz123"_qs << 400 << QByteArray();
    QTest::newRow("a TIS-B address") << u"/pub/photos/hex/~a1b2c3"_qs << 400 << QByteArray();
    QTest::newRow("a picture never named") << u"/photos/img/000001.png"_qs << 404 << QByteArray();
    QTest::newRow("a picture of no address") << u"/photos/img/zz.png"_qs << 404 << QByteArray();
}

void SkySimServicesTest::photoLookupsThatFindNothing()
{
    QFETCH(QString, path);
    QFETCH(int, status);
    QFETCH(QByteArray, body);
    const auto sky = startSky();
    QVERIFY(!rows(*sky).isEmpty());
    const Answer answer = get(*sky, path);
    QCOMPARE(answer.status, status);
    if (!body.isEmpty())
        QCOMPARE(answer.body, body);
    QVERIFY(!PhotoAPI::decode(answer.body));
}

void SkySimServicesTest::playlistsAreServedByteForByte_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("expected"); // BASE stands for the simulator's address
    QTest::newRow("plain, CRLF") << u"/KPDX_TWR.pls"_qs
                                 << QByteArray("[playlist]\r\nFile1=BASE/KPDX_TWR\r\nTitle1=KPDX Tower\r\n"
                                               "Length1=-1\r\nNumberOfEntries=1\r\nVersion=2\r\n");
    QTest::newRow("extension in capitals")
        << u"/KSEA_GND.PLS"_qs
        << QByteArray("[playlist]\r\nFile1=BASE/KSEA_GND\r\nTitle1=KSEA Ground\r\n"
                      "Length1=-1\r\nNumberOfEntries=1\r\nVersion=2\r\n");
    QTest::newRow("Latin-1")
        << u"/KPDX_TWR-latin1.pls"_qs
        << QByteArray("[playlist]\r\nFile1=BASE/KPDX_TWR\r\nTitle1=KPDX Tower \xB7 Fr\xE9quence "
                      "tour\r\nLength1=-1\r\nNumberOfEntries=1\r\nVersion=2\r\n");
    QTest::newRow("keys in lower case")
        << u"/KSEA_TWR-lowercase.pls"_qs
        << QByteArray("[playlist]\r\nfile1=BASE/KSEA_TWR\r\ntitle1=KSEA Tower\r\nlength1=-1\r\n"
                      "numberofentries=1\r\nversion=2\r\n");
    QTest::newRow("a blank after the address")
        << u"/KPDX_APP-blank.pls"_qs
        << QByteArray("[playlist]\r\nFile1=BASE/KPDX_APP \r\nTitle1=KPDX Approach\r\nLength1=-1\r\n"
                      "NumberOfEntries=1\r\nVersion=2\r\n");
    QTest::newRow("a blank before the key")
        << u"/KPDX_TWR-indented.pls"_qs
        << QByteArray("[playlist]\r\n File1=BASE/KPDX_TWR\r\nTitle1=KPDX Tower\r\nLength1=-1\r\n"
                      "NumberOfEntries=1\r\nVersion=2\r\n");
    QTest::newRow("a playlist naming a playlist")
        << u"/KPDX_TWR-nested.pls"_qs
        << QByteArray("[playlist]\r\nFile1=BASE/KPDX_TWR.pls\r\nTitle1=KPDX Tower\r\nLength1=-1\r\n"
                      "NumberOfEntries=1\r\nVersion=2\r\n");
    QTest::newRow("LF only") << u"/KPDX_TWR-lf.pls"_qs
                             << QByteArray("[playlist]\nFile1=BASE/KPDX_TWR\nTitle1=KPDX Tower\nLength1=-1\n"
                                           "NumberOfEntries=1\nVersion=2\n");
    QTest::newRow("the silent mount")
        << u"/silent.pls"_qs
        << QByteArray("[playlist]\r\nFile1=BASE/silent\r\nTitle1=Silent Feed\r\n"
                      "Length1=-1\r\nNumberOfEntries=1\r\nVersion=2\r\n");
}

void SkySimServicesTest::playlistsAreServedByteForByte()
{
    QFETCH(QString, path);
    QFETCH(QByteArray, expected);
    const auto sky = startSky();
    const Answer answer = get(*sky, path);
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.contentType, QByteArray("audio/x-scpls"));
    QCOMPARE(answer.body, expected.replace("BASE", sky->baseUrl().toUtf8()));
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8.decode(answer.body);
    QCOMPARE(utf8.hasError(), path.contains(u"latin1"));
}

void SkySimServicesTest::missingPlaylistsAndPages_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("contains");
    QTest::newRow("a feed's page") << u"/hlisten.php?mount=KSEA_TWR"_qs << 200 << u"/KSEA_TWR.pls"_qs;
    QTest::newRow("the list of feeds") << u"/hlisten.php"_qs << 200 << u"mount=KPDX_APP"_qs;
    QTest::newRow("the page of an unknown feed")
        << u"/hlisten.php?mount=EGLL_TWR"_qs << 404 << u"EGLL_TWR"_qs;
    QTest::newRow("an unknown playlist") << u"/EGLL_TWR.pls"_qs << 404 << u"EGLL_TWR.pls"_qs;
    QTest::newRow("an unknown variant") << u"/KPDX_TWR-utf16.pls"_qs << 404 << u"KPDX_TWR-utf16.pls"_qs;
}

void SkySimServicesTest::missingPlaylistsAndPages()
{
    QFETCH(QString, path);
    QFETCH(int, status);
    QFETCH(QString, contains);
    const auto sky = startSky();
    const Answer answer = get(*sky, path);
    QCOMPARE(answer.status, status);
    QVERIFY(answer.contentType.startsWith("text/html"));
    QVERIFY(answer.body.startsWith("<!DOCTYPE html>"));
    QVERIFY2(answer.body.contains(contains.toUtf8()), answer.body.constData());
    QVERIFY(!answer.body.contains("File1="));
}

void SkySimServicesTest::theAudioStreamIsPacedAndEndless_data()
{
    QTest::addColumn<QByteArray>("mount");
    QTest::addColumn<int>("sampleRate");
    QTest::newRow("8 kHz") << QByteArray("KPDX_TWR") << 8000;
    QTest::newRow("16 kHz") << QByteArray("KSEA_GND") << 16000;
}

void SkySimServicesTest::theAudioStreamIsPacedAndEndless()
{
    QFETCH(QByteArray, mount);
    QFETCH(int, sampleRate);
    const auto sky = startSky();
    QTcpSocket socket;
    QVERIFY(connectTo(socket, sky->port()));
    // Started before the request leaves, so this clock never runs behind the server's.
    QElapsedTimer clock;
    clock.start();
    socket.write("GET /" + mount + " HTTP/1.1\r\nHost: x\r\n\r\n");
    QByteArray buffer;
    const auto head = readHead(socket, buffer);
    QVERIFY(head);
    QCOMPARE(head->status, 200);
    QCOMPARE(headerOf(head->head, "content-type"), QByteArray("audio/wav"));
    QVERIFY(headerOf(head->head, "content-length").isEmpty());
    QCOMPARE(headerOf(head->head, "connection"), QByteArray("close"));

    // A WAV head: 16-bit mono PCM at the feed's rate.
    QByteArray audio = head->rest;
    while (audio.size() < 44) {
        QVERIFY(QSignalSpy(&socket, &QTcpSocket::readyRead).wait(waitMs));
        audio += socket.readAll();
    }
    QVERIFY(audio.startsWith("RIFF"));
    QCOMPARE(audio.mid(8, 8), QByteArray("WAVEfmt "));
    QCOMPARE(qFromLittleEndian<quint16>(audio.constData() + 20), quint16(1));
    QCOMPARE(qFromLittleEndian<quint16>(audio.constData() + 22), quint16(1));
    QCOMPARE(qFromLittleEndian<quint32>(audio.constData() + 24), quint32(sampleRate));
    QCOMPARE(qFromLittleEndian<quint16>(audio.constData() + 34), quint16(16));
    QCOMPARE(audio.mid(36, 4), QByteArray("data"));

    // Never more than real time allows, plus the head start and a margin for the 100 ms steps; and it
    // goes on past its head start, with the connection open, until we hang up. A stream sent even half
    // again too fast overruns the margin before it has sent a second beyond its head start.
    const qint64 bytesPerSecond = qint64(sampleRate) * 2;
    const qint64 headStartMs = 1500;
    const qint64 margin = bytesPerSecond / 4;
    const qint64 goal = 44 + bytesPerSecond * (headStartMs + 1000) / 1000;
    while (audio.size() < goal) {
        if (socket.bytesAvailable() == 0)
            QVERIFY2(QSignalSpy(&socket, &QTcpSocket::readyRead).wait(waitMs), "the stream stopped");
        audio += socket.readAll();
        const qint64 allowed = 44 + bytesPerSecond * (clock.elapsed() + headStartMs) / 1000 + margin;
        QVERIFY2(audio.size() <= allowed,
                 qPrintable(u"%1 bytes after %2 ms"_qs.arg(audio.size()).arg(clock.elapsed())));
    }
    QCOMPARE(socket.state(), QAbstractSocket::ConnectedState);
    QCOMPARE((audio.size() - 44) % 2, 0);
}

void SkySimServicesTest::theSilentMountNeverAnswers()
{
    const auto sky = startSky();
    QTcpSocket socket;
    QVERIFY(connectTo(socket, sky->port()));
    socket.write("GET /silent HTTP/1.1\r\nHost: x\r\n\r\nGET /KPDX_TWR.pls HTTP/1.1\r\nHost: x\r\n\r\n");
    QSignalSpy served(&sky->server(), &SkySimServer::served);
    QVERIFY(served.wait(waitMs));
    QCOMPARE(served.first().at(1).toByteArray(), QByteArray("/silent"));
    // The request was taken; not a byte comes back, not even for the request queued behind it.
    QVERIFY(!QSignalSpy(&socket, &QTcpSocket::readyRead).wait(300));
    QCOMPARE(socket.bytesAvailable(), 0);
    QCOMPARE(socket.state(), QAbstractSocket::ConnectedState);
    QCOMPARE(served.size(), 1);

    // A mount that is off the air is a plain 404.
    QCOMPARE(get(*sky, u"/dead"_qs).status, 404);
}

void SkySimServicesTest::streamFaults_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("expect"); // html | wav:BYTES | empty | nofile | none
    QTest::newRow("status on the stream") << u"status:503"_qs << u"/KPDX_TWR"_qs << 503 << u"empty"_qs;
    QTest::newRow("status on the silent mount") << u"status:502"_qs << u"/silent"_qs << 502 << u"empty"_qs;
    QTest::newRow("malformed audio") << u"malformed"_qs << u"/KPDX_TWR"_qs << 200 << u"html"_qs;
    QTest::newRow("audio cut off") << u"badjson"_qs << u"/KPDX_TWR"_qs << 200 << u"wav:8044"_qs;
    QTest::newRow("16 kHz audio cut off") << u"badjson"_qs << u"/KSEA_TWR"_qs << 200 << u"wav:16044"_qs;
    QTest::newRow("a playlist without its entry")
        << u"malformed"_qs << u"/KPDX_TWR.pls"_qs << 200 << u"nofile"_qs;
    QTest::newRow("dropped") << u"drop"_qs << u"/KPDX_TWR.pls"_qs << 0 << u"none"_qs;
}

void SkySimServicesTest::streamFaults()
{
    QFETCH(QString, kind);
    QFETCH(QString, path);
    QFETCH(int, status);
    QFETCH(QString, expect);
    const auto sky = startSky();
    QCOMPARE(post(*sky, u"/control/fault?source=stream&kind="_qs + kind).status, 200);
    const Answer answer = get(*sky, path);
    QVERIFY(answer.finished);
    QCOMPARE(answer.status, status);
    if (expect == u"empty") {
        QVERIFY(answer.body.isEmpty());
    } else if (expect == u"html") {
        QVERIFY(answer.contentType.startsWith("text/html"));
        QVERIFY(!answer.body.startsWith("RIFF"));
    } else if (expect.startsWith(u"wav:")) {
        QCOMPARE(answer.body.size(), expect.mid(4).toInt());
        QVERIFY(answer.body.startsWith("RIFF"));
    } else if (expect == u"nofile") {
        QVERIFY(answer.body.startsWith("[playlist]\r\n"));
        QVERIFY(!answer.body.toLower().contains("file1"));
    } else {
        QVERIFY(answer.error != QNetworkReply::NoError);
    }
    // The other services go on as before.
    QCOMPARE(get(*sky, u"/search?q=Seattle"_qs).status, 200);
}

void SkySimServicesTest::tilesArePngsWithCacheHeaders_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("transparent");
    QTest::newRow("standard, the world") << u"/tiles/standard/0/0/0.png"_qs << false;
    QTest::newRow("standard, zoom 12") << u"/tiles/standard/12/655/1430.png"_qs << false;
    QTest::newRow("standard, last tile of zoom 19") << u"/tiles/standard/19/524287/524287.png"_qs << false;
    QTest::newRow("imagery") << u"/tiles/imagery/10/357/163"_qs << false;
    QTest::newRow("labels") << u"/tiles/labels/10/357/163"_qs << true;
}

void SkySimServicesTest::tilesArePngsWithCacheHeaders()
{
    QFETCH(QString, path);
    QFETCH(bool, transparent);
    const auto sky = startSky();
    const Answer answer = get(*sky, path);
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.contentType, QByteArray("image/png"));
    QVERIFY(answer.body.startsWith("\x89PNG\r\n\x1a\n"));
    const QImage tile = QImage::fromData(answer.body, "PNG");
    QCOMPARE(tile.size(), QSize(256, 256));
    QCOMPARE(answer.headers.value("cache-control"), QByteArray("max-age=604800"));
    QVERIFY(!answer.headers.value("etag").isEmpty());
    QVERIFY(QLocale::c()
                .toDateTime(QString::fromLatin1(answer.headers.value("last-modified")),
                            u"ddd, dd MMM yyyy hh:mm:ss 'GMT'"_qs)
                .isValid());
    QCOMPARE(tile.hasAlphaChannel(), transparent);
    if (transparent) {
        // Clear but for the text.
        qsizetype inked = 0;
        for (int y = 0; y < tile.height(); ++y) {
            for (int x = 0; x < tile.width(); ++x)
                inked += qAlpha(tile.pixel(x, y)) > 0 ? 1 : 0;
        }
        QCOMPARE(qAlpha(tile.pixel(0, 0)), 0);
        QVERIFY2(inked > 50 && inked < tile.width() * tile.height() / 10, qPrintable(QString::number(inked)));
    }
    // The same tile every time, with the same tag.
    const Answer again = get(*sky, path);
    QCOMPARE(again.body, answer.body);
    QCOMPARE(again.headers.value("etag"), answer.headers.value("etag"));
}

void SkySimServicesTest::imageryIsAskedRowBeforeColumn()
{
    // The standard tile z/x/y and the imagery tile z/y/x show the same ground, so their water lies in the
    // same places; the imagery tile with the numbers the other way round shows other ground.
    const auto sky = startSky();
    const QImage standard = QImage::fromData(get(*sky, u"/tiles/standard/5/5/9.png"_qs).body, "PNG");
    const QImage same = QImage::fromData(get(*sky, u"/tiles/imagery/5/9/5"_qs).body, "PNG");
    const QImage swapped = QImage::fromData(get(*sky, u"/tiles/imagery/5/5/9"_qs).body, "PNG");
    const QList<bool> water = waterMask(standard, false);
    const qsizetype wet = std::count(water.cbegin(), water.cend(), true);
    QVERIFY2(wet > water.size() / 10 && wet < water.size() * 9 / 10, qPrintable(QString::number(wet)));
    const double sameGround = agreement(water, waterMask(same, true));
    const double otherGround = agreement(water, waterMask(swapped, true));
    QVERIFY2(sameGround > 0.95, qPrintable(QString::number(sameGround)));
    QVERIFY2(otherGround < 0.8, qPrintable(QString::number(otherGround)));
}

void SkySimServicesTest::tilesOutsideTheGridAreNotFound_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("zoom 20") << u"/tiles/standard/20/0/0.png"_qs;
    QTest::newRow("x past the edge") << u"/tiles/standard/3/8/0.png"_qs;
    QTest::newRow("y past the edge") << u"/tiles/imagery/3/8/0"_qs;
    QTest::newRow("negative") << u"/tiles/labels/3/-1/0"_qs;
    QTest::newRow("not a number") << u"/tiles/standard/3/a/0.png"_qs;
    QTest::newRow("standard without .png") << u"/tiles/standard/3/1/1"_qs;
    QTest::newRow("imagery with .png") << u"/tiles/imagery/3/1/1.png"_qs;
    QTest::newRow("unknown set") << u"/tiles/terrain/3/1/1.png"_qs;
    QTest::newRow("a part missing") << u"/tiles/standard/3/1.png"_qs;
}

void SkySimServicesTest::tilesOutsideTheGridAreNotFound()
{
    QFETCH(QString, path);
    const auto sky = startSky();
    const Answer answer = get(*sky, path);
    QCOMPARE(answer.status, 404);
    QVERIFY(QImage::fromData(answer.body).isNull());
}

void SkySimServicesTest::tilesAnswerConditionalRequests_data()
{
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<QByteArray>("value"); // ETAG stands for the tile's own tag
    QTest::addColumn<int>("status");
    QTest::newRow("its tag") << QByteArray("If-None-Match") << QByteArray("ETAG") << 304;
    QTest::newRow("its tag among others")
        << QByteArray("If-None-Match") << QByteArray("\"other\", ETAG") << 304;
    QTest::newRow("another tag") << QByteArray("If-None-Match") << QByteArray("\"other\"") << 200;
    QTest::newRow("since its date") << QByteArray("If-Modified-Since")
                                    << QByteArray("Mon, 01 Jan 2024 00:00:00 GMT") << 304;
    QTest::newRow("since later") << QByteArray("If-Modified-Since")
                                 << QByteArray("Tue, 05 Mar 2024 10:00:00 GMT") << 304;
    QTest::newRow("since earlier") << QByteArray("If-Modified-Since")
                                   << QByteArray("Sun, 31 Dec 2023 23:59:59 GMT") << 200;
    QTest::newRow("a date that is none") << QByteArray("If-Modified-Since") << QByteArray("yesterday") << 200;
}

void SkySimServicesTest::tilesAnswerConditionalRequests()
{
    QFETCH(QByteArray, header);
    QFETCH(QByteArray, value);
    QFETCH(int, status);
    const auto sky = startSky();
    const QString path = u"/tiles/standard/6/10/22.png"_qs;
    const QByteArray etag = get(*sky, path).headers.value("etag");
    QVERIFY(!etag.isEmpty());

    // Over a raw socket: QNetworkAccessManager turns a 304 into the cached answer.
    QTcpSocket socket;
    QVERIFY(connectTo(socket, sky->port()));
    socket.write("GET " + path.toLatin1() + " HTTP/1.1\r\nHost: x\r\n" + header + ": " +
                 value.replace("ETAG", etag) + "\r\nConnection: close\r\n\r\n");
    QByteArray buffer;
    const auto head = readHead(socket, buffer);
    QVERIFY(head);
    QCOMPARE(head->status, status);
    QCOMPARE(headerOf(head->head, "etag"), etag);
    QCOMPARE(headerOf(head->head, "cache-control"), QByteArray("max-age=604800"));
    if (status == 304)
        QVERIFY(headerOf(head->head, "content-length").isEmpty());
    else
        QVERIFY(headerOf(head->head, "content-length").toInt() > 0);
}

void SkySimServicesTest::geocoderSearch_data()
{
    QTest::addColumn<QString>("query"); // as it goes into the URL, percent-encoded or not
    QTest::addColumn<int>("limit");     // 0: none given
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("localityKey"); // of the first result; empty: no locality
    QTest::addColumn<QString>("state");       // of the first result; empty: none
    QTest::addColumn<double>("lat");
    QTest::addColumn<double>("lon");
    QTest::newRow("a city") << u"Seattle"_qs << 5 << QStringList{u"Seattle"_qs} << u"city"_qs
                            << u"Washington"_qs << 47.60 << -122.33;
    QTest::newRow("lower case, with a state after a comma")
        << u"seattle,%20wa"_qs << 5 << QStringList{u"Seattle"_qs} << u"city"_qs << u"Washington"_qs << 47.60
        << -122.33;
    QTest::newRow("the start of a name")
        << u"BOI"_qs << 5 << QStringList{u"Boise"_qs} << u"city"_qs << u"Idaho"_qs << 43.62 << -116.20;
    QTest::newRow("two places of a name, the more important first")
        << u"Portland"_qs << 0 << QStringList{u"Portland"_qs, u"Portland"_qs} << u"city"_qs << u"Oregon"_qs
        << 45.52 << -122.67;
    QTest::newRow("limited to one") << u"Portland"_qs << 1 << QStringList{u"Portland"_qs} << u"city"_qs
                                    << u"Oregon"_qs << 45.52 << -122.67;
    QTest::newRow("umlaut, percent-encoded") << u"M%C3%BCnchen"_qs << 5 << QStringList{u"München"_qs}
                                             << u"city"_qs << u"Bayern"_qs << 48.14 << 11.58;
    QTest::newRow("umlaut in capitals") << u"M%C3%9CNCHEN"_qs << 5 << QStringList{u"München"_qs} << u"city"_qs
                                        << u"Bayern"_qs << 48.14 << 11.58;
    QTest::newRow("English name") << u"munich"_qs << 5 << QStringList{u"München"_qs} << u"city"_qs
                                  << u"Bayern"_qs << 48.14 << 11.58;
    QTest::newRow("tilde, encoded blank") << u"S%C3%A3o%20Paulo"_qs << 5 << QStringList{u"São Paulo"_qs}
                                          << u"city"_qs << u"São Paulo"_qs << -23.55 << -46.63;
    QTest::newRow("no accent, plus for the blank") << u"sao+paulo"_qs << 5 << QStringList{u"São Paulo"_qs}
                                                   << u"city"_qs << u"São Paulo"_qs << -23.55 << -46.63;
    QTest::newRow("Zürich without its accent")
        << u"zurich"_qs << 5 << QStringList{u"Zürich"_qs} << u"city"_qs << u"Zürich"_qs << 47.37 << 8.54;
    QTest::newRow("Japanese script") << u"%E6%9D%B1%E4%BA%AC"_qs << 5 << QStringList{u"東京"_qs} << u"city"_qs
                                     << u"東京都"_qs << 35.68 << 139.76;
    QTest::newRow("a town") << u"Forks"_qs << 5 << QStringList{u"Forks"_qs} << u"town"_qs << u"Washington"_qs
                            << 47.95 << -124.39;
    QTest::newRow("a village") << u"Greenwater"_qs << 5 << QStringList{u"Greenwater"_qs} << u"village"_qs
                               << u"Washington"_qs << 47.15 << -121.64;
    QTest::newRow("a hamlet") << u"Mazama"_qs << 5 << QStringList{u"Mazama"_qs} << u"hamlet"_qs
                              << u"Washington"_qs << 48.59 << -120.40;
    QTest::newRow("a mountain in no locality")
        << u"mount%20rainier"_qs << 5 << QStringList{u"Mount Rainier"_qs} << QString() << u"Washington"_qs
        << 46.85 << -121.76;
    QTest::newRow("a city in no state")
        << u"Singapore"_qs << 5 << QStringList{u"Singapore"_qs} << u"city"_qs << QString() << 1.29 << 103.85;
    QTest::newRow("nowhere") << u"Atlantis"_qs << 5 << QStringList{} << QString() << QString() << 0.0 << 0.0;
    QTest::newRow("blanks") << u"%20%20"_qs << 5 << QStringList{} << QString() << QString() << 0.0 << 0.0;
}

void SkySimServicesTest::geocoderSearch()
{
    QFETCH(QString, query);
    QFETCH(int, limit);
    QFETCH(QStringList, names);
    QFETCH(QString, localityKey);
    QFETCH(QString, state);
    QFETCH(double, lat);
    QFETCH(double, lon);
    const auto sky = startSky();
    QString path = u"/search?q="_qs + query + u"&format=jsonv2&addressdetails=1"_qs;
    if (limit > 0)
        path += u"&limit="_qs + QString::number(limit);
    const Answer answer = get(*sky, path);
    QCOMPARE(answer.status, 200);
    QVERIFY(answer.contentType.startsWith("application/json"));
    const QJsonDocument document = QJsonDocument::fromJson(answer.body);
    QVERIFY(document.isArray());
    const QJsonArray results = document.array();
    QStringList found;
    for (const QJsonValue &result : results)
        found.append(result[u"name"_qs].toString());
    QCOMPARE(found, names);
    if (names.isEmpty())
        return;

    const QJsonObject first = results[0].toObject();
    QVERIFY(first[u"lat"_qs].isString());
    QVERIFY(first[u"lon"_qs].isString());
    bool latOk = false, lonOk = false;
    QVERIFY(std::fabs(first[u"lat"_qs].toString().toDouble(&latOk) - lat) < 0.01);
    QVERIFY(std::fabs(first[u"lon"_qs].toString().toDouble(&lonOk) - lon) < 0.01);
    QVERIFY(latOk && lonOk);
    QVERIFY(first[u"display_name"_qs].toString().startsWith(names.first()));
    const QJsonObject address = first[u"address"_qs].toObject();
    int localities = 0;
    for (const QString &key : {u"city"_qs, u"town"_qs, u"village"_qs, u"hamlet"_qs})
        localities += address.contains(key) ? 1 : 0;
    QCOMPARE(localities, localityKey.isEmpty() ? 0 : 1);
    if (!localityKey.isEmpty())
        QCOMPARE(address[localityKey].toString(), names.first());
    QCOMPARE(address.contains(u"state"_qs), !state.isEmpty());
    QCOMPARE(address[u"state"_qs].toString(), state);
    QVERIFY(!address[u"country"_qs].toString().isEmpty());
    QCOMPARE(address[u"country_code"_qs].toString().size(), 2);
    if (names.size() > 1)
        QVERIFY(results[0][u"importance"_qs].toDouble() >= results[1][u"importance"_qs].toDouble());

    // Without addressdetails, no address; format=json names the category "class".
    const QJsonObject plain =
        QJsonDocument::fromJson(get(*sky, u"/search?q="_qs + query + u"&format=json"_qs).body)
            .array()[0]
            .toObject();
    QVERIFY(!plain.contains(u"address"_qs));
    QVERIFY(plain.contains(u"class"_qs));
    QVERIFY(!plain.contains(u"category"_qs));
}

void SkySimServicesTest::geocoderRefusesBadRequests_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("no q") << u"/search?format=jsonv2"_qs;
    QTest::newRow("XML") << u"/search?q=Berlin&format=xml"_qs;
    QTest::newRow("limit not a number") << u"/search?q=Berlin&limit=ten"_qs;
    QTest::newRow("reverse without lon") << u"/reverse?lat=52.5&format=jsonv2"_qs;
    QTest::newRow("reverse beyond the pole") << u"/reverse?lat=91&lon=0&format=jsonv2"_qs;
    QTest::newRow("reverse, decimal comma") << u"/reverse?lat=52,5&lon=13,4&format=jsonv2"_qs;
}

void SkySimServicesTest::geocoderRefusesBadRequests()
{
    QFETCH(QString, path);
    const auto sky = startSky();
    const Answer answer = get(*sky, path);
    QCOMPARE(answer.status, 400);
    QCOMPARE(object(answer.body)[u"error"_qs][u"code"_qs].toInt(), 400);
    QVERIFY(!object(answer.body)[u"error"_qs][u"message"_qs].toString().isEmpty());
}

void SkySimServicesTest::geocoderReverse_data()
{
    QTest::addColumn<double>("lat");
    QTest::addColumn<double>("lon");
    QTest::addColumn<QString>("name"); // empty: nothing near
    QTest::newRow("near Seattle") << 47.5 << -122.2 << u"Seattle"_qs;
    QTest::newRow("Portland, Oregon, not Maine") << 45.4 << -122.6 << u"Portland"_qs;
    QTest::newRow("near München") << 48.2 << 11.4 << u"München"_qs;
    QTest::newRow("south and east") << -33.9 << 151.0 << u"Sydney"_qs;
    QTest::newRow("the middle of the Pacific") << 0.0 << -150.0 << QString();
}

void SkySimServicesTest::geocoderReverse()
{
    QFETCH(double, lat);
    QFETCH(double, lon);
    QFETCH(QString, name);
    const auto sky = startSky();
    const Answer answer = get(*sky, u"/reverse?lat=%1&lon=%2&format=jsonv2"_qs.arg(
                                        QString::number(lat, 'f', 5), QString::number(lon, 'f', 5)));
    QCOMPARE(answer.status, 200);
    const QJsonObject result = object(answer.body);
    if (name.isEmpty()) {
        QCOMPARE(result[u"error"_qs].toString(), u"Unable to geocode"_qs);
        return;
    }
    QCOMPARE(result[u"name"_qs].toString(), name);
    QVERIFY(result[u"lat"_qs].isString());
    QCOMPARE(result[u"address"_qs][u"city"_qs].toString(), name);
    if (lon < -122.0 && lat < 46.0)
        QCOMPARE(result[u"address"_qs][u"state"_qs].toString(), u"Oregon"_qs);
}

void SkySimServicesTest::appcastOffersTheConfiguredVersion_data()
{
    QTest::addColumn<QString>("startVersion");
    QTest::addColumn<QString>("controlVersion"); // empty: not changed
    QTest::addColumn<QStringList>("versions");
    QTest::newRow("nothing newer than the first release")
        << u"0.1.0"_qs << QString() << QStringList{u"0.1.0"_qs, u"0.0.1"_qs};
    QTest::newRow("a newer version from the start")
        << u"0.3.2"_qs << QString() << QStringList{u"0.3.2"_qs, u"0.0.1"_qs};
    QTest::newRow("a newer version through the control API")
        << u"0.1.0"_qs << u"1.10"_qs << QStringList{u"1.10"_qs, u"0.0.1"_qs};
    QTest::newRow("only the oldest") << u"0.0.1"_qs << QString() << QStringList{u"0.0.1"_qs};
}

void SkySimServicesTest::appcastOffersTheConfiguredVersion()
{
    QFETCH(QString, startVersion);
    QFETCH(QString, controlVersion);
    QFETCH(QStringList, versions);
    SkySimOptions options = frozenOptions();
    options.updateVersion = startVersion;
    const auto sky = startSky(options);
    if (!controlVersion.isEmpty()) {
        const Answer changed = post(*sky, u"/control/update?version="_qs + controlVersion);
        QCOMPARE(changed.status, 200);
        QCOMPARE(object(changed.body)[u"update"_qs][u"version"_qs].toString(), controlVersion);
    }
    const Answer answer = get(*sky, u"/appcast.xml"_qs);
    QCOMPARE(answer.status, 200);
    QVERIFY(answer.contentType.contains("xml"));

    QXmlStreamReader xml(answer.body);
    QStringList itemVersions;
    QStringList shortVersions;
    QStringList enclosureVersions;
    QList<QDateTime> dates;
    QString rssVersion;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const bool inSparkle = xml.namespaceUri().toString() == QString::fromLatin1(sparkle);
        if (xml.name() == u"rss")
            rssVersion = xml.attributes().value(u"version"_qs).toString();
        else if (inSparkle && xml.name() == u"version")
            itemVersions.append(xml.readElementText());
        else if (inSparkle && xml.name() == u"shortVersionString")
            shortVersions.append(xml.readElementText());
        else if (xml.name() == u"pubDate")
            dates.append(QDateTime::fromString(xml.readElementText(), Qt::RFC2822Date));
        else if (xml.name() == u"enclosure")
            enclosureVersions.append(
                xml.attributes().value(QString::fromLatin1(sparkle), u"version"_qs).toString());
    }
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
    QCOMPARE(rssVersion, u"2.0"_qs);
    QCOMPARE(itemVersions, versions);
    QCOMPARE(shortVersions, versions);
    QCOMPARE(enclosureVersions, versions);
    QCOMPARE(dates.size(), versions.size());
    for (const QDateTime &date : dates)
        QVERIFY(date.isValid());
    if (dates.size() == 2)
        QVERIFY(dates[0] > dates[1]);

    // A reset brings back the version given at start; a version must be one.
    QCOMPARE(post(*sky, u"/control/update?version=2.x"_qs).status, 400);
    QCOMPARE(post(*sky, u"/control/update"_qs).status, 400);
    QCOMPARE(object(post(*sky, u"/control/reset"_qs).body)[u"update"_qs][u"version"_qs].toString(),
             startVersion);
}

void SkySimServicesTest::appcastModesSwitchWhileRunning_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("version"); // the offered version afterwards
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QString>("feed"); // "ok" or "not-xml"

    const QString own = QStringLiteral(AEROLUME_VERSION);
    QTest::newRow("newer") << u"mode=newer"_qs << 200 << UpdateOffer::nextVersion(own) << u"none"_qs << u"newer"_qs
                           << u"ok"_qs;
    QTest::newRow("same") << u"mode=same"_qs << 200 << own << u"none"_qs << u"same"_qs << u"ok"_qs;
    QTest::newRow("malformed") << u"mode=malformed"_qs << 200 << u"0.5.0"_qs << u"malformed"_qs
                               << u"malformed"_qs << u"not-xml"_qs;
    QTest::newRow("slow") << u"mode=slow&delayMs=50"_qs << 200 << u"0.5.0"_qs << u"delay:50"_qs << u"slow"_qs
                          << u"ok"_qs;
    QTest::newRow("slow by default") << u"mode=slow"_qs << 200 << u"0.5.0"_qs << u"delay:10000"_qs << u"slow"_qs
                                     << QString();
    QTest::newRow("unknown mode") << u"mode=later"_qs << 400 << u"0.5.0"_qs << u"malformed"_qs
                                  << u"malformed"_qs << QString();
    QTest::newRow("bad delay") << u"mode=slow&delayMs=soon"_qs << 400 << u"0.5.0"_qs << u"malformed"_qs
                               << u"malformed"_qs << QString();
    QTest::newRow("nothing asked") << QString() << 400 << u"0.5.0"_qs << u"malformed"_qs << u"malformed"_qs
                                   << QString();
}

// Each mode replaces what the one before left: a healthy feed again after a broken one.
void SkySimServicesTest::appcastModesSwitchWhileRunning()
{
    QFETCH(QString, query);
    QFETCH(int, status);
    QFETCH(QString, version);
    QFETCH(QString, fault);
    QFETCH(QString, mode);
    QFETCH(QString, feed);
    SkySimOptions options = frozenOptions();
    options.updateVersion = u"0.5.0"_qs;
    const auto sky = startSky(options);
    QCOMPARE(post(*sky, u"/control/update?mode=malformed"_qs).status, 200);

    const Answer changed = post(*sky, u"/control/update?"_qs + query);
    QCOMPARE(changed.status, status);
    const QJsonObject state = object(get(*sky, u"/control/state"_qs).body);
    QCOMPARE(state[u"update"_qs][u"version"_qs].toString(), version);
    QCOMPARE(state[u"update"_qs][u"mode"_qs].toString(), mode);
    QCOMPARE(state[u"sources"_qs][u"update"_qs][u"fault"_qs].toString(), fault);
    if (feed.isEmpty())
        return;
    const Answer answer = get(*sky, u"/appcast.xml"_qs);
    QCOMPARE(answer.status, 200);
    QXmlStreamReader xml(answer.body);
    QString first;
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == u"version" &&
            xml.namespaceUri().toString() == QString::fromLatin1(sparkle) && first.isEmpty())
            first = xml.readElementText();
    }
    QCOMPARE(xml.hasError() ? u"not-xml"_qs : u"ok"_qs, feed);
    if (feed == u"ok")
        QCOMPARE(first, version);
}

void SkySimServicesTest::faultsArePerSource_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("path"); // CALLSIGN and HEX stand for a flight and an aircraft of the sky
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("check"); // what must hold of the body
    QTest::newRow("route, status") << u"route"_qs << u"status:503"_qs << u"/v0/callsign/CALLSIGN"_qs << 503
                                   << u"empty"_qs;
    QTest::newRow("route, malformed")
        << u"route"_qs << u"malformed"_qs << u"/v0/callsign/CALLSIGN"_qs << 200 << u"json-undecodable"_qs;
    QTest::newRow("route, cut off") << u"route"_qs << u"badjson"_qs << u"/v0/callsign/CALLSIGN"_qs << 200
                                    << u"not-json"_qs;
    QTest::newRow("route, delayed") << u"route"_qs << u"delay:150"_qs << u"/v0/callsign/CALLSIGN"_qs << 200
                                    << u"route"_qs;
    QTest::newRow("route, dropped") << u"route"_qs << u"drop"_qs << u"/v0/callsign/CALLSIGN"_qs << 0
                                    << u"none"_qs;
    QTest::newRow("photo, status") << u"photo"_qs << u"status:429"_qs << u"/pub/photos/hex/HEX"_qs << 429
                                   << u"empty"_qs;
    QTest::newRow("photo, malformed")
        << u"photo"_qs << u"malformed"_qs << u"/pub/photos/hex/HEX"_qs << 200 << u"json-undecodable"_qs;
    QTest::newRow("photo, empty") << u"photo"_qs << u"empty"_qs << u"/pub/photos/hex/HEX"_qs << 200
                                  << u"empty"_qs;
    QTest::newRow("tiles, status") << u"tiles"_qs << u"status:503"_qs << u"/tiles/standard/2/1/1.png"_qs
                                   << 503 << u"empty"_qs;
    QTest::newRow("tiles, malformed")
        << u"tiles"_qs << u"malformed"_qs << u"/tiles/imagery/2/1/1"_qs << 200 << u"not-image"_qs;
    QTest::newRow("tiles, cut off") << u"tiles"_qs << u"badjson"_qs << u"/tiles/labels/2/1/1"_qs << 200
                                    << u"not-image"_qs;
    QTest::newRow("tiles, dropped") << u"tiles"_qs << u"drop"_qs << u"/tiles/standard/2/1/1.png"_qs << 0
                                    << u"none"_qs;
    QTest::newRow("geocoder, status")
        << u"geocoder"_qs << u"status:429"_qs << u"/search?q=Berlin"_qs << 429 << u"empty"_qs;
    QTest::newRow("geocoder, malformed")
        << u"geocoder"_qs << u"malformed"_qs << u"/search?q=Berlin"_qs << 200 << u"no-lat"_qs;
    QTest::newRow("geocoder, cut off")
        << u"geocoder"_qs << u"badjson"_qs << u"/search?q=Berlin"_qs << 200 << u"not-json"_qs;
    QTest::newRow("update, status") << u"update"_qs << u"status:500"_qs << u"/appcast.xml"_qs << 500
                                    << u"empty"_qs;
    QTest::newRow("update, malformed")
        << u"update"_qs << u"malformed"_qs << u"/appcast.xml"_qs << 200 << u"not-xml"_qs;
    QTest::newRow("update, cut off") << u"update"_qs << u"badjson"_qs << u"/appcast.xml"_qs << 200
                                     << u"not-xml"_qs;
    QTest::newRow("update, dropped") << u"update"_qs << u"drop"_qs << u"/appcast.xml"_qs << 0 << u"none"_qs;
}

void SkySimServicesTest::faultsArePerSource()
{
    QFETCH(QString, source);
    QFETCH(QString, kind);
    QFETCH(QString, path);
    QFETCH(int, status);
    QFETCH(QString, check);
    const auto sky = startSky(frozenOptions(100));
    QString callsign;
    QString hex;
    for (const QJsonObject &row : rows(*sky)) {
        const QString flight = row[u"flight"_qs].toString().trimmed();
        if (callsign.isEmpty() && Airlines::nameForCallsign(flight) &&
            get(*sky, u"/v0/callsign/"_qs + flight).status == 200)
            callsign = flight;
        if (hex.isEmpty() && row.contains(u"r"_qs) &&
            !object(get(*sky, u"/pub/photos/hex/"_qs + row[u"hex"_qs].toString()).body)[u"photos"_qs]
                 .toArray()
                 .isEmpty())
            hex = row[u"hex"_qs].toString();
    }
    QVERIFY(!callsign.isEmpty() && !hex.isEmpty());
    path.replace(u"CALLSIGN"_qs, callsign).replace(u"HEX"_qs, hex);

    QCOMPARE(post(*sky, u"/control/fault?source=%1&kind=%2"_qs.arg(source, kind)).status, 200);
    const Answer answer = get(*sky, path);
    QVERIFY(answer.finished);
    QCOMPARE(answer.status, status);
    if (check == u"empty") {
        QVERIFY(answer.body.isEmpty());
    } else if (check == u"json-undecodable") {
        QVERIFY(!QJsonDocument::fromJson(answer.body).isNull());
        QVERIFY(source == u"route" ? !RouteAPI::decode(answer.body) : !PhotoAPI::decode(answer.body));
    } else if (check == u"not-json") {
        QJsonParseError error;
        (void)QJsonDocument::fromJson(answer.body, &error);
        QVERIFY(!answer.body.isEmpty());
        QVERIFY(error.error != QJsonParseError::NoError);
    } else if (check == u"route") {
        QVERIFY(RouteAPI::decode(answer.body));
    } else if (check == u"not-image") {
        QVERIFY(!answer.body.isEmpty());
        QVERIFY(QImage::fromData(answer.body, "PNG").isNull());
    } else if (check == u"no-lat") {
        const QJsonArray results = QJsonDocument::fromJson(answer.body).array();
        QVERIFY(!results.isEmpty());
        for (const QJsonValue &result : results)
            QVERIFY(!result.toObject().contains(u"lat"_qs) && result.toObject().contains(u"lon"_qs));
    } else if (check == u"not-xml") {
        QXmlStreamReader xml(answer.body);
        while (!xml.atEnd())
            xml.readNext();
        QVERIFY(xml.hasError());
    } else {
        QVERIFY(answer.error != QNetworkReply::NoError);
    }

    // The fault is that source's alone; the state says so, and the others answer well.
    const QJsonObject sources = object(get(*sky, u"/control/state"_qs).body)[u"sources"_qs].toObject();
    QCOMPARE(sources[source][u"fault"_qs].toString(), kind);
    for (const QString &other : sources.keys()) {
        if (other != source)
            QCOMPARE(sources[other][u"fault"_qs].toString(), u"none"_qs);
    }
    if (source != u"route")
        QVERIFY(RouteAPI::decode(get(*sky, u"/v0/callsign/"_qs + callsign).body));
    if (source != u"photo")
        QVERIFY(PhotoAPI::decode(get(*sky, u"/pub/photos/hex/"_qs + hex).body));
    if (source != u"tiles")
        QVERIFY(!QImage::fromData(get(*sky, u"/tiles/standard/2/1/1.png"_qs).body, "PNG").isNull());
    if (source != u"geocoder")
        QCOMPARE(QJsonDocument::fromJson(get(*sky, u"/search?q=Berlin"_qs).body).array().size(), 1);
    QVERIFY(APIResponse::decode(get(*sky, u"/v2/point/47.4/-122.3/50"_qs).body).ok());

    // A reset brings every source back.
    QCOMPARE(post(*sky, u"/control/reset"_qs).status, 200);
    QVERIFY(!rows(*sky).isEmpty());
    QCOMPARE(object(get(*sky, u"/control/state"_qs).body)[u"sources"_qs][source][u"fault"_qs].toString(),
             u"none"_qs);
}

QTEST_GUILESS_MAIN(SkySimServicesTest)
#include "SkySimServicesTest.moc"
