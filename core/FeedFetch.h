#pragma once

#include "ADSB.h"

#include <QList>
#include <QObject>
#include <QPointer>

class QNetworkAccessManager;
class QNetworkReply;

// One fetch in flight: the sources strictly one after the other. It reports once through succeeded() or
// failed() and then deletes itself. cancel() ends the pending request at once, and after it nothing is
// ever reported.
class FeedFetch : public QObject
{
    Q_OBJECT

public:
    FeedFetch(QList<ADSB::Source> sources, HomeLocation home, double radiusNM, QNetworkAccessManager *network,
              QObject *parent = nullptr);

    // Time allowed for each source; the networks get 8 seconds, tests may be less patient.
    void setTimeoutMs(int timeoutMs) { m_timeoutMs = timeoutMs; }
    Q_INVOKABLE void start();
    void cancel();

    [[nodiscard]] bool isCancelled() const { return m_cancelled; }

signals:
    void succeeded(const ADSB::FetchResult &result);
    void failed(const ADSB::FetchError &error);

private:
    void askNext();
    void onReplyFinished();
    void finish(const std::function<void()> &report);

    QList<ADSB::Source> m_sources;
    HomeLocation m_home;
    int m_radius;
    QNetworkAccessManager *m_network;
    int m_timeoutMs = ADSB::requestTimeoutMs;
    qsizetype m_next = 0;
    QPointer<QNetworkReply> m_reply;
    QString m_lastError;
    std::optional<ADSB::FetchResult> m_keptEmpty;
    bool m_cancelled = false;
    bool m_done = false;
};
