#pragma once

#include "SkySimReply.h"
#include "SkySimRequest.h"

#include <QByteArray>
#include <QObject>

class QTcpSocket;
class SkySimRouter;

// One client connection: reads HTTP/1.1 requests as they trickle in (any split, several in one read),
// answers them one at a time in order, and keeps the connection open unless asked to close. A delayed
// reply holds back the requests behind it, as a real server's would.
class SkySimConnection : public QObject
{
    Q_OBJECT

public:
    // Larger requests are refused: nothing this server serves needs them.
    static constexpr qsizetype maxHeaderBytes = 32 * 1024;
    static constexpr qsizetype maxBodyBytes = 1024 * 1024;

    explicit SkySimConnection(QTcpSocket *socket, const SkySimRouter &router, QObject *parent);

signals:
    // After each request is dealt with; status 0 when the connection was dropped without an answer.
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

    QTcpSocket *m_socket;
    const SkySimRouter &m_router;
    QByteArray m_buffer;
    bool m_waiting = false; // a delayed reply is pending
    bool m_closing = false;
};
