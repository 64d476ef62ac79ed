#include "SkySimClient.h"

#include <QNetworkRequest>
#include <QSignalSpy>

SkySimClient::SkySimClient()
{
    m_network.setTransferTimeout(waitMs);
}

std::unique_ptr<SkySimulator> SkySimClient::start(const SkySimOptions &options)
{
    auto sky = std::make_unique<SkySimulator>(options);
    if (!sky->listen(0))
        qFatal("cannot listen on loopback: %s", qPrintable(sky->errorString()));
    return sky;
}

SkySimClient::Answer SkySimClient::finish(QNetworkReply *reply)
{
    if (!reply->isFinished()) {
        QSignalSpy finished(reply, &QNetworkReply::finished);
        finished.wait(waitMs);
    }
    Answer answer;
    answer.finished = reply->isFinished();
    answer.error = reply->error();
    answer.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    answer.body = reply->readAll();
    answer.contentType = reply->header(QNetworkRequest::ContentTypeHeader).toByteArray();
    for (const auto &[name, value] : reply->rawHeaderPairs())
        answer.headers.insert(name.toLower(), value);
    reply->deleteLater();
    return answer;
}

SkySimClient::Answer SkySimClient::get(const SkySimulator &sky, const QString &path,
                                       const QList<std::pair<QByteArray, QByteArray>> &headers)
{
    QNetworkRequest request(QUrl::fromEncoded(sky.baseUrl().toUtf8() + path.toUtf8()));
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    for (const auto &[name, value] : headers)
        request.setRawHeader(name, value);
    return finish(m_network.get(request));
}

SkySimClient::Answer SkySimClient::post(const SkySimulator &sky, const QString &pathAndQuery)
{
    QNetworkRequest request(QUrl(sky.baseUrl() + pathAndQuery));
    request.setHeader(QNetworkRequest::ContentTypeHeader, u"text/plain"_qs);
    return finish(m_network.post(request, QByteArray()));
}
