#include "SkySimSelfTest.h"

#include "APIResponse.h"
#include "Airlines.h"
#include "PhotoAPI.h"
#include "RouteAPI.h"
#include "UpdateFeedModule.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QUrl>
#include <QXmlStreamReader>

namespace {

constexpr int radiusNM = 100;
constexpr int wavHeadBytes = 12;

} // namespace

SkySimSelfTest::SkySimSelfTest(const QString &baseUrl, GeoPoint point, QObject *parent)
    : QObject(parent), m_network(new QNetworkAccessManager(this)), m_baseUrl(baseUrl), m_point(point)
{
    m_network->setTransferTimeout(8000);
    const QString lat = QString::number(point.lat, 'f', 5);
    const QString lon = QString::number(point.lon, 'f', 5);
    const QString radius = QString::number(radiusNM);
    const QString primaryPath = u"/v2/point/%1/%2/%3"_qs.arg(lat, lon, radius);
    const QString fallbackPath = u"/api/v2/lat/%1/lon/%2/dist/%3"_qs.arg(lat, lon, radius);

    m_checks.append({u"primary"_qs, [primaryPath] { return primaryPath; },
                     [this](int status, const QByteArray &body, bool &ok) {
                         return feedVerdict(u"primary"_qs, status, body, ok);
                     }});
    m_checks.append({u"fallback"_qs, [fallbackPath] { return fallbackPath; },
                     [this](int status, const QByteArray &body, bool &ok) {
                         return feedVerdict(u"fallback"_qs, status, body, ok);
                     }});
    m_checks.append(
        {u"route"_qs, [this] { return u"/v0/callsign/"_qs + m_callsign; },
         [this](int status, const QByteArray &body, bool &ok) {
             if (m_callsign.isEmpty()) {
                 ok = false;
                 return u"route not asked: the feed listed no airline flight"_qs;
             }
             if (status == 404 && QJsonDocument::fromJson(body)[u"response"_qs] == u"unknown callsign"_qs)
                 return u"route of %1 unknown"_qs.arg(m_callsign);
             const auto route = RouteAPI::decode(body);
             ok = status == 200 && route.has_value();
             return ok ? u"route %1 %2"_qs.arg(m_callsign, route->summary())
                       : u"route of %1 answered %2 and did not decode"_qs.arg(m_callsign).arg(status);
         }});
    m_checks.append({u"photo"_qs, [this] { return u"/pub/photos/hex/"_qs + m_hex; },
                     [this](int status, const QByteArray &body, bool &ok) {
                         const QJsonValue photos = QJsonDocument::fromJson(body)[u"photos"_qs];
                         ok = status == 200 && photos.isArray() &&
                              (photos.toArray().isEmpty() || PhotoAPI::decode(body).has_value());
                         if (!ok)
                             return u"photo of %1 answered %2 and did not decode"_qs.arg(m_hex).arg(status);
                         return u"photos of %1: %2"_qs.arg(m_hex).arg(photos.toArray().size());
                     }});
    m_checks.append({u"playlist"_qs, [] { return u"/KPDX_TWR.pls"_qs; },
                     [this](int status, const QByteArray &body, bool &ok) {
                         ok = status == 200 &&
                              body.contains("\r\nFile1=" + m_baseUrl.toUtf8() + "/KPDX_TWR\r\n");
                         return ok ? u"playlist names its stream"_qs : u"playlist lacks its stream"_qs;
                     }});
    m_checks.append({u"stream"_qs, [] { return u"/KPDX_TWR"_qs; },
                     [](int status, const QByteArray &body, bool &ok) {
                         ok = status == 200 && body.startsWith("RIFF") && body.mid(8, 4) == "WAVE";
                         return ok ? u"stream is WAV"_qs : u"stream is not WAV"_qs;
                     },
                     true});
    m_checks.append({u"tiles"_qs, [] { return u"/tiles/standard/3/1/2.png"_qs; },
                     [](int status, const QByteArray &body, bool &ok) {
                         const QImage tile = QImage::fromData(body, "PNG");
                         ok = status == 200 && tile.width() == 256 && tile.height() == 256;
                         return ok ? u"tile 256 px"_qs : u"tile is no 256 px PNG"_qs;
                     }});
    m_checks.append({u"geocoder"_qs,
                     [] { return u"/search?q=Seattle&format=jsonv2&addressdetails=1&limit=1"_qs; },
                     [](int status, const QByteArray &body, bool &ok) {
                         const QJsonArray results = QJsonDocument::fromJson(body).array();
                         ok = status == 200 && results.size() == 1 && results[0][u"lat"_qs].isString();
                         return ok ? u"geocoder found %1"_qs.arg(results[0][u"name"_qs].toString())
                                   : u"geocoder did not find Seattle"_qs;
                     }});
    m_checks.append({u"update"_qs, [] { return u"/appcast.xml"_qs; },
                     [](int status, const QByteArray &body, bool &ok) {
                         QXmlStreamReader xml(body);
                         QString version;
                         while (!xml.atEnd()) {
                             if (xml.readNext() == QXmlStreamReader::StartElement &&
                                 xml.namespaceUri() == UpdateFeedModule::sparkleNamespace() &&
                                 xml.name() == u"version" && version.isEmpty())
                                 version = xml.readElementText();
                         }
                         ok = status == 200 && !xml.hasError() && !version.isEmpty();
                         return ok ? u"appcast offers %1"_qs.arg(version) : u"appcast unreadable"_qs;
                     }});
}

void SkySimSelfTest::start()
{
    run(0);
}

QString SkySimSelfTest::feedVerdict(const QString &name, int status, const QByteArray &body, bool &ok)
{
    if (status != 200) {
        ok = false;
        return u"%1 answered status %2"_qs.arg(name).arg(status);
    }
    const auto decoded = APIResponse::decode(body);
    if (!decoded) {
        ok = false;
        return u"%1 did not decode (%2)"_qs.arg(name, decoded.error());
    }
    const QList<Aircraft> &list = decoded.value().list();
    if (list.isEmpty()) {
        ok = false;
        return name + u" listed no aircraft"_qs;
    }
    for (const Aircraft &aircraft : list) {
        if (m_callsign.isEmpty() && aircraft.flight() && Airlines::nameForCallsign(aircraft.flight()))
            m_callsign = aircraft.flight()->trimmed();
        if (m_hex.isEmpty() && aircraft.registration() && !aircraft.hex().startsWith(u'~'))
            m_hex = aircraft.hex();
    }
    return u"%1 %2 aircraft"_qs.arg(name).arg(list.size());
}

void SkySimSelfTest::conclude(qsizetype index, const QString &finding, bool ok)
{
    m_findings.append(finding);
    m_ok = m_ok && ok;
    run(index + 1);
}

void SkySimSelfTest::run(qsizetype index)
{
    if (index >= m_checks.size()) {
        emit finished(m_ok, u"aerolume-skysim self-test: %1: %2"_qs.arg(m_ok ? u"ok"_qs : u"FAILED"_qs,
                                                                        m_findings.join(u"; ")));
        return;
    }
    const Check &check = m_checks[index];
    QNetworkReply *reply = m_network->get(QNetworkRequest(QUrl(m_baseUrl + check.path())));
    if (check.endless) {
        // The stream never ends: judge its first bytes and hang up.
        connect(reply, &QNetworkReply::readyRead, this, [this, reply, index] {
            if (reply->bytesAvailable() < wavHeadBytes)
                return;
            const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
            bool ok = true;
            const QString finding = m_checks[index].verdict(status, reply->read(wavHeadBytes), ok);
            reply->disconnect(this);
            reply->abort();
            reply->deleteLater();
            conclude(index, finding, ok);
        });
    }
    connect(reply, &QNetworkReply::finished, this, [this, reply, index] {
        reply->deleteLater();
        const Check &check = m_checks[index];
        const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        bool ok = true;
        QString finding;
        if (check.endless) {
            ok = false;
            finding = u"%1 ended early (%2)"_qs.arg(check.name, reply->errorString());
        } else if (reply->error() != QNetworkReply::NoError && status == 0) {
            ok = false;
            finding = u"%1 %2"_qs.arg(check.name, reply->errorString());
        } else {
            finding = check.verdict(status, reply->readAll(), ok);
        }
        conclude(index, finding, ok);
    });
}
