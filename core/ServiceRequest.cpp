#include "ServiceRequest.h"

#include "HttpClient.h"

#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>

namespace {

// The errors QNetworkReply gives for a whole answer whose status is not a success; any other error means
// the transfer itself failed (refused, reset, timed out, cut short).
bool isStatusError(QNetworkReply::NetworkError error)
{
    return (error >= QNetworkReply::ContentAccessDenied && error <= QNetworkReply::UnknownContentError) ||
           error == QNetworkReply::ProtocolInvalidOperationError ||
           (error >= QNetworkReply::InternalServerError && error <= QNetworkReply::UnknownServerError);
}

} // namespace

ServiceRequest::ServiceRequest(std::function<void(std::optional<QByteArray>)> done, QObject *context)
    : m_done(std::move(done)), m_context(context)
{
}

ServiceRequest *ServiceRequest::get(const QString &urlText, const Options &options,
                                    std::function<void(std::optional<QByteArray>)> done, QObject *context,
                                    QNetworkAccessManager *network)
{
    auto *request = new ServiceRequest(std::move(done), context);
    request->m_maxBodyBytes = options.maxBodyBytes;
    const QUrl url(urlText, QUrl::StrictMode);
    if (!url.isValid() || url.isRelative()) {
        // Reported from the event loop all the same, so callers see one order of events.
        QTimer::singleShot(0, request, [request] { request->finish(std::nullopt); });
        return request;
    }
    QNetworkRequest networkRequest(url);
    networkRequest.setTransferTimeout(options.timeoutMs);
    for (const auto &[name, value] : options.headers)
        networkRequest.setRawHeader(name, value);
    QNetworkReply *reply = (network ? network : HttpClient::shared())->get(networkRequest);
    request->m_reply = reply;
    if (options.maxBodyBytes >= 0) {
        connect(reply, &QNetworkReply::downloadProgress, request, [request, reply](qint64 received, qint64) {
            if (received > request->m_maxBodyBytes) {
                reply->disconnect(request);
                reply->abort();
                reply->deleteLater();
                request->finish(std::nullopt);
            }
        });
    }
    const bool acceptAnyStatus = options.acceptAnyStatus;
    connect(reply, &QNetworkReply::finished, request, [request, reply, acceptAnyStatus] {
        reply->deleteLater();
        const QVariant statusAttribute = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
        const int status = statusAttribute.toInt();
        const bool delivered =
            reply->error() == QNetworkReply::NoError ||
            (acceptAnyStatus && statusAttribute.isValid() && isStatusError(reply->error()));
        if (!delivered || (!acceptAnyStatus && status != 200)) {
            request->finish(std::nullopt);
            return;
        }
        QByteArray body = reply->readAll();
        if (request->m_maxBodyBytes >= 0 && body.size() > request->m_maxBodyBytes)
            request->finish(std::nullopt);
        else
            request->finish(std::move(body));
    });
    return request;
}

void ServiceRequest::abort()
{
    m_finished = true;
    if (m_reply) {
        m_reply->disconnect(this);
        m_reply->abort();
        m_reply->deleteLater();
    }
    deleteLater();
}

void ServiceRequest::finish(std::optional<QByteArray> body)
{
    if (m_finished)
        return;
    m_finished = true;
    // A caller that has gone away hears nothing.
    if (m_context && m_done)
        m_done(std::move(body));
    deleteLater();
}
