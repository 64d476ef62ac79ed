#pragma once

#include "SkySimReply.h"
#include "SkySimRequest.h"

#include <QByteArray>
#include <QObject>

class QTcpSocket;
class SkySimRouter;

// One client connection: reads HTTP/1.1 requests as they trickle in (any split, several in one read),
// answers them one at a time in order, and keeps the connection open unless asked to close. A delayed
// reply holds back the requests behind it, as a real server's would. A streamed answer has no length and
// ends only when the client goes; a silent one never comes. Either is the connection's last.
class SkySimConnection : public QObject
{
    Q_OBJECT

public:
    // Larger requests are refused: nothing this server serves needs them.
    static constexpr qsizetype maxHeaderBytes = 32 * 1024;
    static constexpr qsizetype maxBodyBytes = 1024 * 1024;
    // A stream's bytes that a client leaves unread beyond this are thrown away rather than queued, as a
    // live server does for a listener who can't keep up.
    static constexpr qint64 maxStreamBacklogBytes = 64 * 1024;

    explicit SkySimConnection(QTcpSocket *socket, const SkySimRouter &router, QObject *parent);

signals:
    // After each request is dealt with; status 0 when the connection was dropped, or is held, without an
    // answer. A stream counts as served once its head went out.
    void served(const QByteArray &method, const QByteArray &target, int status);

private:
    enum class Parse
    {
        Incomplete,
        Complete,
        Invalid
    };

    void processBuffered();
    [[nodiscard]] Parse takeRequest(SkySimRequest &request, bool &keepAlive, int &errorStatus);
    void finish(const SkySimRequest &request, const SkySimReply &reply, bool keepAlive);
    void refuse(int status, const QByteArray &why);
    void write(const QByteArray &method, const SkySimReply &reply, bool keepAlive);
    void startStream(const QByteArray &method, const SkySimReply &reply);

    QTcpSocket *m_socket;
    const SkySimRouter &m_router;
    QByteArray m_buffer;
    bool m_waiting = false; // a delayed reply is pending
    bool m_closing = false;
};
