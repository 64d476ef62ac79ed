#include "LiveAudioServer.h"

#include <QTcpSocket>
#include <QtEndian>
#include <cmath>

namespace {

// A RIFF header whose sizes say "as long as it gets": a live stream has no end to announce.
QByteArray endlessWavHeader(int sampleRate)
{
    QByteArray header(44, '\0');
    auto *bytes = reinterpret_cast<uchar *>(header.data());
    memcpy(bytes, "RIFF", 4);
    qToLittleEndian<quint32>(0xFFFFFFF0u, bytes + 4);
    memcpy(bytes + 8, "WAVEfmt ", 8);
    qToLittleEndian<quint32>(16, bytes + 16);
    qToLittleEndian<quint16>(1, bytes + 20); // PCM
    qToLittleEndian<quint16>(1, bytes + 22); // mono
    qToLittleEndian<quint32>(quint32(sampleRate), bytes + 24);
    qToLittleEndian<quint32>(quint32(sampleRate * 2), bytes + 28);
    qToLittleEndian<quint16>(2, bytes + 32);
    qToLittleEndian<quint16>(16, bytes + 34);
    memcpy(bytes + 36, "data", 4);
    qToLittleEndian<quint32>(0xFFFFFFCCu, bytes + 40);
    return header;
}

} // namespace

LiveAudioServer::LiveAudioServer(QObject *parent) : QObject(parent)
{
    if (!m_server.listen(QHostAddress::LocalHost, 0))
        qFatal("cannot listen on loopback: %s", qPrintable(m_server.errorString()));
    connect(&m_server, &QTcpServer::newConnection, this, &LiveAudioServer::onConnection);
    m_pacer.setInterval(20);
    connect(&m_pacer, &QTimer::timeout, this, &LiveAudioServer::pace);
}

LiveAudioServer::~LiveAudioServer()
{
    // The sockets hang up before the table they are kept in goes.
    const QList<QTcpSocket *> sockets = m_clients.keys();
    m_clients.clear();
    for (QTcpSocket *socket : sockets) {
        socket->disconnect(this);
        delete socket;
    }
}

QString LiveAudioServer::baseUrl() const
{
    return QStringLiteral("http://127.0.0.1:%1").arg(m_server.serverPort());
}

QString LiveAudioServer::deadUrl()
{
    // A port the system just handed out and took back has nobody listening on it.
    QTcpServer probe;
    if (!probe.listen(QHostAddress::LocalHost, 0))
        qFatal("cannot listen on loopback: %s", qPrintable(probe.errorString()));
    const quint16 port = probe.serverPort();
    probe.close();
    return QStringLiteral("http://127.0.0.1:%1/dead").arg(port);
}

void LiveAudioServer::dropAll()
{
    const QList<QTcpSocket *> sockets = m_clients.keys();
    for (QTcpSocket *socket : sockets)
        socket->abort();
}

void LiveAudioServer::onConnection()
{
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        ++m_connectionCount;
        m_clients.insert(socket, Client());
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { onReadable(socket); });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            const QByteArray path = m_clients.value(socket).path;
            m_clients.remove(socket);
            socket->deleteLater();
            if (m_clients.isEmpty())
                m_pacer.stop();
            emit connectionClosed(path);
        });
    }
}

void LiveAudioServer::onReadable(QTcpSocket *socket)
{
    auto client = m_clients.find(socket);
    if (client == m_clients.end() || !client->path.isEmpty())
        return;
    client->request += socket->readAll();
    const qsizetype end = client->request.indexOf("\r\n\r\n");
    if (end < 0)
        return;
    const QList<QByteArray> requestLine = client->request.left(client->request.indexOf("\r\n")).split(' ');
    client->path = requestLine.value(1);
    emit connectionOpened(client->path);

    if (client->path.startsWith("/live")) {
        // As Icecast answers: HTTP/1.0, no length, the stream until one side hangs up.
        socket->write("HTTP/1.0 200 OK\r\nContent-Type: audio/wav\r\nCache-Control: no-cache\r\n\r\n");
        socket->write(endlessWavHeader(sampleRate));
        client->streaming = true;
        client->since.start();
        sendSamples(socket, *client, qint64(sampleRate) * burstMs / 1000);
        if (!m_pacer.isActive())
            m_pacer.start();
    } else if (client->path.startsWith("/silent")) {
        // Accepted, and then not a byte.
    } else {
        socket->write("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
        socket->disconnectFromHost();
    }
}

void LiveAudioServer::pace()
{
    const QList<QTcpSocket *> sockets = m_clients.keys();
    for (QTcpSocket *socket : sockets) {
        auto client = m_clients.find(socket);
        if (client == m_clients.end() || !client->streaming)
            continue;
        // What is due by the clock, so that late timer ticks never slow the stream down.
        const qint64 due = qint64(sampleRate) * (burstMs + client->since.elapsed()) / 1000;
        sendSamples(socket, *client, due - client->samplesSent);
    }
}

void LiveAudioServer::sendSamples(QTcpSocket *socket, Client &client, qint64 count)
{
    if (count <= 0 || socket->state() != QAbstractSocket::ConnectedState)
        return;
    QByteArray pcm(count * 2, Qt::Uninitialized);
    auto *samples = reinterpret_cast<uchar *>(pcm.data());
    for (qint64 i = 0; i < count; ++i) {
        const double phase = 2 * M_PI * 440.0 * double(client.samplesSent + i) / sampleRate;
        qToLittleEndian<qint16>(qint16(std::lround(6000 * std::sin(phase))), samples + 2 * i);
    }
    client.samplesSent += count;
    socket->write(pcm);
}
