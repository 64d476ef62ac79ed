#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QTcpServer>
#include <functional>

class QTcpSocket;

// A small HTTP/1.1 server on 127.0.0.1 for tests: each path prefix gets a handler that says how to
// answer, including answers that never come or connections that are dropped.
class LoopbackHttpServer : public QObject
{
    Q_OBJECT

public:
    struct Request
    {
        QByteArray method;
        QByteArray path;
        QList<QPair<QByteArray, QByteArray>> headers; // as sent, names lower-cased
        [[nodiscard]] QByteArray header(const QByteArray &name) const;
    };

    struct Response
    {
        int status = 200;
        QByteArray body;
        QByteArray contentType = "application/json";
        bool drop = false; // close the connection without a word
        bool hold = false; // keep the request open until release()
    };

    using Handler = std::function<Response(const Request &)>;

    explicit LoopbackHttpServer(QObject *parent = nullptr);
    ~LoopbackHttpServer() override;

    [[nodiscard]] QString baseUrl() const;
    void route(const QByteArray &pathPrefix, Handler handler);
    [[nodiscard]] const QList<Request> &requests() const { return m_requests; }
    [[nodiscard]] int requestCount(const QByteArray &pathPrefix) const;
    // Answers every held request now, with the response its handler gave.
    void release();

signals:
    void requestReceived(const QByteArray &path);
    void answered(const QByteArray &path);

private:
    void onConnection();
    void onReadable(QTcpSocket *socket);
    void answer(QTcpSocket *socket, const QByteArray &path, const Response &response);

    QTcpServer m_server;
    QList<QPair<QByteArray, Handler>> m_routes;
    QList<Request> m_requests;
    QHash<QTcpSocket *, QByteArray> m_buffers;
    QList<std::tuple<QPointer<QTcpSocket>, QByteArray, Response>> m_held;
};
