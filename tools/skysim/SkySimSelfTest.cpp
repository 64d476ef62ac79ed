#include "SkySimSelfTest.h"

#include "APIResponse.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QUrl>

namespace {

constexpr int radiusNM = 100;

} // namespace

SkySimSelfTest::SkySimSelfTest(const QString &baseUrl, GeoPoint point, QObject *parent)
    : QObject(parent), m_network(new QNetworkAccessManager(this)), m_baseUrl(baseUrl), m_point(point)
{
    m_network->setTransferTimeout(8000);
    const QString lat = QString::number(point.lat, 'f', 5);
    const QString lon = QString::number(point.lon, 'f', 5);
    const QString radius = QString::number(radiusNM);
    m_paths = {u"/v2/point/%1/%2/%3"_qs.arg(lat, lon, radius),
               u"/api/v2/lat/%1/lon/%2/dist/%3"_qs.arg(lat, lon, radius)};
}

void SkySimSelfTest::start()
{
    fetch(0);
}

void SkySimSelfTest::fetch(qsizetype index)
{
    if (index >= m_paths.size()) {
        emit finished(m_ok, u"aerolume-skysim self-test: %1: %2"_qs.arg(m_ok ? u"ok"_qs : u"FAILED"_qs,
                                                                        m_findings.join(u"; ")));
        return;
    }
    const QString name = index == 0 ? u"primary"_qs : u"fallback"_qs;
    QNetworkReply *reply = m_network->get(QNetworkRequest(QUrl(m_baseUrl + m_paths[index])));
    connect(reply, &QNetworkReply::finished, this, [this, reply, index, name] {
        reply->deleteLater();
        const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        QString finding;
        if (reply->error() != QNetworkReply::NoError) {
            finding = u"%1 %2"_qs.arg(name, reply->errorString());
            m_ok = false;
        } else if (status != 200) {
            finding = u"%1 answered status %2"_qs.arg(name).arg(status);
            m_ok = false;
        } else {
            const auto decoded = APIResponse::decode(reply->readAll());
            if (!decoded) {
                finding = u"%1 did not decode (%2)"_qs.arg(name, decoded.error());
                m_ok = false;
            } else if (decoded.value().list().isEmpty()) {
                finding = name + u" listed no aircraft"_qs;
                m_ok = false;
            } else {
                finding = u"%1 %2 aircraft"_qs.arg(name).arg(decoded.value().list().size());
            }
        }
        m_findings.append(finding);
        fetch(index + 1);
    });
}
