#include "SingleInstance.h"

#include "UserDirectories.h"

#include <QDataStream>
#include <QDir>
#include <QLocalSocket>

namespace {
constexpr int handOverTimeoutMs = 2000;
} // namespace

SingleInstance::SingleInstance(const QString &name, QObject *parent) : QObject(parent), m_name(name)
{
    connect(&m_server, &QLocalServer::newConnection, this, &SingleInstance::onConnection);
}

QString SingleInstance::defaultName()
{
    // A full path in the private runtime folder: no other user can listen in our place.
    return UserDirectories::runtime() + u"/instance"_qs;
}

bool SingleInstance::claim(const QStringList &urls, const QString &activationToken)
{
    QLocalSocket socket;
    socket.connectToServer(m_name);
    if (socket.waitForConnected(handOverTimeoutMs)) {
        QByteArray message;
        QDataStream stream(&message, QIODevice::WriteOnly);
        stream << urls << activationToken;
        socket.write(message);
        socket.waitForBytesWritten(handOverTimeoutMs);
        socket.disconnectFromServer();
        return false;
    }
    // Nobody answers: a socket file left by a crash is ours to replace.
    QDir().mkpath(UserDirectories::runtime());
    QLocalServer::removeServer(m_name);
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    return m_server.listen(m_name);
}

void SingleInstance::onConnection()
{
    while (QLocalSocket *socket = m_server.nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readChannelFinished, this, [this, socket] {
            QDataStream stream(socket->readAll());
            QStringList urls;
            QString token;
            stream >> urls >> token;
            if (stream.status() == QDataStream::Ok)
                emit activated(urls, token);
        });
    }
}
