#include "TileFetcher.h"

#include "HttpClient.h"

#include <QLocale>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QRegularExpression>
#include <QTimer>

TileFetcher::TileFetcher(QNetworkAccessManager *network, QObject *parent)
    : TileFetcher(Options{}, network, {}, parent)
{
}

TileFetcher::TileFetcher(Options options, QNetworkAccessManager *network, Clock now, QObject *parent)
    : QObject(parent), m_options(options), m_network(network ? network : HttpClient::shared()),
      m_now(std::move(now))
{
    if (!m_now)
        m_now = [] { return QDateTime::currentDateTimeUtc(); };
}

TileFetcher::~TileFetcher()
{
    for (QNetworkReply *reply : std::as_const(m_running)) {
        reply->disconnect(this);
        reply->abort();
        reply->deleteLater();
    }
}

bool TileFetcher::isBusyWith(const QString &url) const
{
    return m_running.contains(url) || m_retries.contains(url) || m_queue.contains(url);
}

void TileFetcher::fetch(const QString &url)
{
    if (m_running.contains(url) || m_retries.contains(url))
        return;
    // Asked again: it moves to the front, since the newest wishes are what the map shows now.
    m_queue.removeOne(url);
    m_queue.append(url);
    startNext();
}

void TileFetcher::retainOnly(const QSet<QString> &urls)
{
    m_queue.removeIf([&](const QString &url) { return !urls.contains(url); });
    for (auto it = m_retries.begin(); it != m_retries.end();) {
        if (urls.contains(it.key())) {
            ++it;
            continue;
        }
        delete it.value();
        m_attempts.remove(it.key());
        it = m_retries.erase(it);
    }
}

void TileFetcher::startNext()
{
    while (m_running.size() < m_options.maxConcurrent && !m_queue.isEmpty() && m_network) {
        const QString url = m_queue.takeLast();
        QNetworkRequest request{QUrl(url)};
        request.setTransferTimeout(m_options.timeoutMs);
        request.setAttribute(QNetworkRequest::Http2AllowedAttribute, true);
        QNetworkReply *reply = m_network->get(request);
        m_running.insert(url, reply);
        connect(reply, &QNetworkReply::finished, this, [this, reply, url] { onFinished(reply, url); });
    }
}

void TileFetcher::onFinished(QNetworkReply *reply, const QString &url)
{
    reply->deleteLater();
    m_running.remove(url);
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const auto error = reply->error();
    if (error == QNetworkReply::NoError && status == 200) {
        m_attempts.remove(url);
        const QByteArray bytes = reply->readAll();
        const QDateTime expires = expiryFor(reply->rawHeaderPairs(), m_now());
        startNext();
        emit fetched(url, bytes, expires);
        return;
    }
    const int attempt = ++m_attempts[url];
    if (isTransient(int(error), status) && attempt < m_options.maxAttempts) {
        auto *timer = new QTimer(this);
        timer->setSingleShot(true);
        timer->setInterval(m_options.firstRetryMs << (attempt - 1));
        connect(timer, &QTimer::timeout, this, [this, url, timer] {
            m_retries.remove(url);
            timer->deleteLater();
            m_queue.append(url);
            startNext();
        });
        m_retries.insert(url, timer);
        timer->start();
        startNext();
        return;
    }
    m_attempts.remove(url);
    startNext();
    emit failed(url);
}

bool TileFetcher::isTransient(int networkError, int httpStatus)
{
    if (httpStatus == 408 || httpStatus == 429 || (httpStatus >= 500 && httpStatus <= 599))
        return true;
    if (httpStatus != 0)
        return false; // any other answer of the server is what it means to say
    switch (QNetworkReply::NetworkError(networkError)) {
    case QNetworkReply::ConnectionRefusedError:
    case QNetworkReply::RemoteHostClosedError:
    case QNetworkReply::HostNotFoundError:
    case QNetworkReply::TimeoutError:
    case QNetworkReply::OperationCanceledError: // a transfer time-out ends this way
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::NetworkSessionFailedError:
    case QNetworkReply::ProxyConnectionClosedError:
    case QNetworkReply::ProxyTimeoutError:
    case QNetworkReply::UnknownNetworkError:
        return true;
    default:
        return false;
    }
}

QDateTime TileFetcher::expiryFor(const QList<QPair<QByteArray, QByteArray>> &headers, const QDateTime &now)
{
    std::optional<QDateTime> stated;
    QByteArray cacheControl;
    QByteArray expires;
    for (const auto &[name, value] : headers) {
        if (name.compare("Cache-Control", Qt::CaseInsensitive) == 0)
            cacheControl += (cacheControl.isEmpty() ? "" : ",") + value;
        else if (name.compare("Expires", Qt::CaseInsensitive) == 0)
            expires = value;
    }
    static const QRegularExpression maxAge(uR"((?:^|[,\s])max-age\s*=\s*"?(\d+))"_qs,
                                           QRegularExpression::CaseInsensitiveOption);
    if (const auto match = maxAge.match(QString::fromLatin1(cacheControl)); match.hasMatch()) {
        bool ok = false;
        const qint64 seconds = match.captured(1).toLongLong(&ok);
        if (ok)
            stated = now.addSecs(std::min<qint64>(seconds, 10LL * 365 * 24 * 3600));
    } else if (!expires.isEmpty()) {
        // The HTTP date, "Wed, 21 Oct 2015 07:28:00 GMT", always in English and in GMT.
        QDateTime when = QLocale::c().toDateTime(QString::fromLatin1(expires).trimmed(),
                                                 u"ddd, dd MMM yyyy HH:mm:ss 'GMT'"_qs);
        when.setTimeSpec(Qt::UTC);
        if (when.isValid())
            stated = when.toUTC();
    }
    const QDateTime shortest = now.addSecs(shortestKeepSeconds);
    return stated && *stated > shortest ? *stated : shortest;
}
