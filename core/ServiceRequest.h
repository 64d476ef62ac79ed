#pragma once

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QUrl>
#include <functional>
#include <optional>

class QNetworkAccessManager;
class QNetworkReply;

// One GET for a small answer from a web service: a time-out, an optional limit on the body, extra
// headers. It reports once, with the body of a 200 answer (of any answer, if asked) or with nothing for
// any failure, and then deletes itself. abort() ends it with no report at all.
class ServiceRequest : public QObject
{
    Q_OBJECT

public:
    struct Options
    {
        int timeoutMs = 8000;
        qint64 maxBodyBytes = -1; // -1: no limit
        QList<QPair<QByteArray, QByteArray>> headers;
        // Report the body of an answer whatever its HTTP status; only a failed transfer reports nothing.
        bool acceptAnyStatus = false;
    };

    // Starts the request on the shared client (or the given one). An invalid URL reports nothing-found
    // from the event loop, without a request.
    static ServiceRequest *get(const QString &urlText, const Options &options,
                               std::function<void(std::optional<QByteArray> body)> done, QObject *context,
                               QNetworkAccessManager *network = nullptr);

    void abort();

private:
    ServiceRequest(std::function<void(std::optional<QByteArray>)> done, QObject *context);
    void finish(std::optional<QByteArray> body);

    std::function<void(std::optional<QByteArray>)> m_done;
    QPointer<QObject> m_context;
    QPointer<QNetworkReply> m_reply;
    qint64 m_maxBodyBytes = -1;
    bool m_finished = false;
};
