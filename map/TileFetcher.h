#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>
#include <functional>

class QNetworkAccessManager;
class QNetworkReply;
class QTimer;

// Downloads tiles: a few at a time, one request per address at a time, the most recently asked first.
// Failures that may pass (time-outs, refused or reset connections, 408, 429 and 5xx answers) are tried
// again after a growing pause; any other failure is final at once. Only tiles still wanted are fetched:
// what the map no longer shows is dropped from the queue before it is asked for.
class TileFetcher : public QObject
{
    Q_OBJECT

public:
    struct Options
    {
        int maxConcurrent = 4;
        int maxAttempts = 4;
        int firstRetryMs = 1000; // doubled at each further attempt
        int timeoutMs = 15000;
    };
    using Clock = std::function<QDateTime()>;

    explicit TileFetcher(QNetworkAccessManager *network = nullptr, QObject *parent = nullptr);
    TileFetcher(Options options, QNetworkAccessManager *network, Clock now, QObject *parent = nullptr);
    ~TileFetcher() override;

    // Asks for a tile; nothing happens if it is already queued, under way or waiting for a retry.
    void fetch(const QString &url);
    // Forgets queued tiles and pending retries that aren't in `urls`; transfers under way finish.
    void retainOnly(const QSet<QString> &urls);
    [[nodiscard]] bool isBusyWith(const QString &url) const;
    [[nodiscard]] int queued() const { return int(m_queue.size()); }
    [[nodiscard]] int running() const { return int(m_running.size()); }

    // When a tile answered on `now` with these headers expires: its HTTP expiry (Cache-Control max-age,
    // else Expires), but never sooner than seven days, as the tile services ask.
    [[nodiscard]] static QDateTime expiryFor(const QList<QPair<QByteArray, QByteArray>> &headers,
                                             const QDateTime &now);
    static constexpr qint64 shortestKeepSeconds = 7LL * 24 * 3600;
    // A failure worth another try.
    [[nodiscard]] static bool isTransient(int networkError, int httpStatus);

signals:
    void fetched(const QString &url, const QByteArray &bytes, const QDateTime &expires);
    void failed(const QString &url);

private:
    void startNext();
    void onFinished(QNetworkReply *reply, const QString &url);

    Options m_options;
    QPointer<QNetworkAccessManager> m_network;
    Clock m_now;
    QList<QString> m_queue; // newest last
    QHash<QString, QNetworkReply *> m_running;
    QHash<QString, int> m_attempts;
    QHash<QString, QTimer *> m_retries;
};
