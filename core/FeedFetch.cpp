#include "FeedFetch.h"

#include "APIResponse.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QUrl>

namespace {

// Errors that Qt derives from the HTTP status rather than from the transfer itself.
bool isStatusError(QNetworkReply::NetworkError error)
{
    return (error >= QNetworkReply::ContentAccessDenied && error <= QNetworkReply::UnknownContentError) ||
           (error >= QNetworkReply::ProtocolInvalidOperationError && error <= QNetworkReply::UnknownServerError) ||
           error == QNetworkReply::ProtocolFailure;
}

} // namespace

FeedFetch::FeedFetch(QList<ADSB::Source> sources, HomeLocation home, double radiusNM,
                     QNetworkAccessManager *network, QObject *parent)
    : QObject(parent), m_sources(std::move(sources)), m_home(std::move(home)),
      m_radius(ADSB::requestRadius(radiusNM)), m_network(network)
{
}

void FeedFetch::start()
{
    if (m_done)
        return; // cancelled before it began: no request at all
    askNext();
}

void FeedFetch::cancel()
{
    if (m_done)
        return;
    m_cancelled = true;
    m_done = true;
    if (m_reply) {
        // Disconnect first: abort() finishes the reply synchronously, and that answer must go nowhere.
        m_reply->disconnect(this);
        m_reply->abort();
        m_reply->deleteLater();
    }
    deleteLater();
}

void FeedFetch::askNext()
{
    while (m_next < m_sources.size()) {
        const ADSB::Source &source = m_sources[m_next];
        const QUrl url(source.url(m_home, m_radius), QUrl::StrictMode);
        if (!url.isValid()) {
            ++m_next; // a source without a usable address is passed over, the last error stands
            continue;
        }
        QNetworkRequest request(url);
        request.setTransferTimeout(m_timeoutMs);
        m_reply = m_network->get(request);
        connect(m_reply, &QNetworkReply::finished, this, &FeedFetch::onReplyFinished);
        return;
    }

    if (m_keptEmpty) {
        const ADSB::FetchResult result = *m_keptEmpty;
        finish([this, result] { emit succeeded(result); });
    } else {
        const ADSB::FetchError error{m_lastError.isEmpty() ? ADSB::noSourceReachable.toString() : m_lastError};
        finish([this, error] { emit failed(error); });
    }
}

void FeedFetch::onReplyFinished()
{
    QNetworkReply *reply = m_reply;
    m_reply = nullptr;
    reply->deleteLater();
    if (m_done)
        return;
    const QString name = m_sources[m_next].name;
    ++m_next;

    const QNetworkReply::NetworkError error = reply->error();
    const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (error != QNetworkReply::NoError && !isStatusError(error)) {
        // Qt ends a transfer time-out with the same code as abort(); only our own cancel is a cancel, and
        // that never gets here.
        const QString description = error == QNetworkReply::OperationCanceledError
                                        ? u"The request timed out."_qs
                                        : reply->errorString();
        m_lastError = name + u": "_qs + description;
        askNext();
        return;
    }
    if (!status.isValid() || status.toInt() != 200) {
        m_lastError = name + u" returned an error"_qs;
        askNext();
        return;
    }

    const auto decoded = APIResponse::decode(reply->readAll());
    if (!decoded.ok()) {
        m_lastError = name + u": "_qs + decoded.error();
        askNext();
        return;
    }
    QList<Aircraft> rows = ADSB::filteredAndSorted(decoded.value().list());
    if (!rows.isEmpty()) {
        ADSB::FetchResult result{std::move(rows), name};
        finish([this, result] { emit succeeded(result); });
        return;
    }
    if (!m_keptEmpty)
        m_keptEmpty = ADSB::FetchResult{{}, name};
    askNext();
}

void FeedFetch::finish(const std::function<void()> &report)
{
    m_done = true;
    report();
    deleteLater();
}
