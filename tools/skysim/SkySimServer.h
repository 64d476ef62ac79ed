#pragma once

#include "SkySimRouter.h"

#include <QByteArray>
#include <QObject>
#include <QString>

class QTcpServer;

// A small HTTP/1.1 server on the loopback interface only, answering through a router of modules. It runs
// on the event loop of the thread that made it; slow answers wait on timers, never block.
class SkySimServer : public QObject
{
    Q_OBJECT

public:
    explicit SkySimServer(QObject *parent = nullptr);
    ~SkySimServer() override;

    [[nodiscard]] SkySimRouter &router() { return m_router; }

    // Listens on 127.0.0.1; port 0 picks any free port. False with errorString() when it can't.
    bool listen(quint16 port);
    void close();
    [[nodiscard]] bool isListening() const;
    [[nodiscard]] quint16 serverPort() const;
    [[nodiscard]] QString errorString() const;

signals:
    // After each request; status 0 when the connection was dropped, or is held without an answer, on
    // purpose. A streamed answer is reported once its head is out.
    void served(const QByteArray &method, const QByteArray &target, int status);

private:
    void acceptPending();

    QTcpServer *m_listener;
    SkySimRouter m_router;
};
