#include "SkySimServer.h"

#include "SkySimConnection.h"

#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>

SkySimServer::SkySimServer(QObject *parent) : QObject(parent), m_listener(new QTcpServer(this))
{
    connect(m_listener, &QTcpServer::newConnection, this, &SkySimServer::acceptPending);
}

SkySimServer::~SkySimServer()
{
    // Connections refer to the router, which goes before QObject deletes the children.
    qDeleteAll(findChildren<SkySimConnection *>(Qt::FindDirectChildrenOnly));
}

bool SkySimServer::listen(quint16 port)
{
    return m_listener->listen(QHostAddress::LocalHost, port);
}

void SkySimServer::close()
{
    m_listener->close();
}

bool SkySimServer::isListening() const
{
    return m_listener->isListening();
}

quint16 SkySimServer::serverPort() const
{
    return m_listener->serverPort();
}

QString SkySimServer::errorString() const
{
    return m_listener->errorString();
}

void SkySimServer::acceptPending()
{
    while (QTcpSocket *socket = m_listener->nextPendingConnection()) {
        auto *connection = new SkySimConnection(socket, m_router, this);
        connect(connection, &SkySimConnection::served, this, &SkySimServer::served);
    }
}
