#include "Geocoder.h"

#include "HttpClient.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>

Geocoder::Geocoder(QObject *parent) : QObject(parent) {}

Geocoder *Geocoder::shared()
{
    static Geocoder *geocoder = new Geocoder();
    return geocoder;
}

QString Geocoder::baseURL()
{
    QString base = qEnvironmentVariable("AEROLUME_GEOCODER_URL").trimmed();
    if (base.isEmpty())
        base = u"https://nominatim.openstreetmap.org"_qs;
    while (base.endsWith(u'/'))
        base.chop(1);
    return base;
}

std::optional<QList<Geocoder::Placemark>> Geocoder::decode(const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isArray())
        return std::nullopt;
    QList<Placemark> places;
    for (const QJsonValue &entry : document.array()) {
        const QJsonObject place = entry.toObject();
        // Nominatim writes coordinates as text.
        bool latitudeOk = false;
        bool longitudeOk = false;
        const double latitude = place.value(u"lat").toVariant().toString().toDouble(&latitudeOk);
        const double longitude = place.value(u"lon").toVariant().toString().toDouble(&longitudeOk);
        if (!latitudeOk || !longitudeOk)
            continue;
        Placemark placemark{latitude, longitude, std::nullopt, std::nullopt};
        const QJsonObject address = place.value(u"address").toObject();
        for (const char16_t *key : {u"city", u"town", u"village", u"hamlet"}) {
            const QString value = address.value(QStringView(key)).toString();
            if (!value.isEmpty()) {
                placemark.locality = value;
                break;
            }
        }
        if (const QString state = address.value(u"state").toString(); !state.isEmpty())
            placemark.administrativeArea = state;
        places.append(placemark);
    }
    return places;
}

void Geocoder::search(const QString &text, QObject *context, std::function<void(const Answer &)> done)
{
    m_queue.append(Pending{text, context, std::move(done)});
    if (!m_busy)
        sendNext();
}

void Geocoder::sendNext()
{
    if (m_queue.isEmpty()) {
        m_busy = false;
        return;
    }
    m_busy = true;
    const Pending pending = m_queue.constFirst();
    const auto cached = m_cache.constFind(pending.text);
    if (cached != m_cache.constEnd()) {
        m_queue.removeFirst();
        const Answer answer{*cached, std::nullopt};
        QTimer::singleShot(0, this, [this, pending, answer] {
            if (pending.context)
                pending.done(answer);
            sendNext();
        });
        return;
    }
    // One request a second for the whole application, as the service asks.
    if (m_sinceLast.isValid() && m_sinceLast.elapsed() < m_minimumIntervalMs) {
        QTimer::singleShot(int(m_minimumIntervalMs - m_sinceLast.elapsed()), this, &Geocoder::sendNext);
        return;
    }
    m_queue.removeFirst();
    m_sinceLast.start();

    // Every reserved character of the user's text is escaped, so "&" or "#" in an address stays text.
    const QString query = u"q="_qs + QString::fromLatin1(QUrl::toPercentEncoding(pending.text)) +
                          u"&format=jsonv2&addressdetails=1&limit=1"_qs;
    QUrl url(baseURL() + u"/search"_qs);
    url.setQuery(query, QUrl::StrictMode);
    QNetworkRequest request(url);
    request.setTransferTimeout(15000);
    QNetworkReply *reply = HttpClient::shared()->get(request);
    connect(reply, &QNetworkReply::finished, this, [this, reply, pending] {
        reply->deleteLater();
        Answer answer;
        const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        if (reply->error() != QNetworkReply::NoError && status == 0) {
            answer.error = reply->error() == QNetworkReply::OperationCanceledError ? u"The request timed out."_qs
                                                                                   : reply->errorString();
        } else if (status != 200) {
            answer.error = u"OpenStreetMap's Nominatim service answered with status %1."_qs.arg(status);
        } else if (const auto places = decode(reply->readAll())) {
            answer.placemarks = *places;
            m_cache.insert(pending.text, *places);
        } else {
            answer.error = u"OpenStreetMap's Nominatim service sent an answer that could not be read."_qs;
        }
        if (pending.context)
            pending.done(answer);
        sendNext();
    });
}
