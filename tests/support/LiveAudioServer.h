#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QPointer>
#include <QTcpServer>
#include <QTimer>

class QTcpSocket;

// Live audio streams on 127.0.0.1, as a tower feed's server sends them: an endless WAV stream (16-bit
// mono sine) under /live, sent at its real rate after a short burst, as Icecast does on connect. Under
// /silent a connection is accepted and nothing is ever sent. Every other path is a 404.
class LiveAudioServer : public QObject
{
    Q_OBJECT

public:
    static constexpr int sampleRate = 8000;
    static constexpr int burstMs = 500;

    explicit LiveAudioServer(QObject *parent = nullptr);
    ~LiveAudioServer() override;

    [[nodiscard]] QString baseUrl() const;
    [[nodiscard]] QString liveUrl() const { return baseUrl() + QStringLiteral("/live"); }
    [[nodiscard]] QString silentUrl() const { return baseUrl() + QStringLiteral("/silent"); }
    // An address on loopback where nothing listens: connecting is refused.
    [[nodiscard]] static QString deadUrl();

    [[nodiscard]] int openConnections() const { return int(m_clients.size()); }
    [[nodiscard]] int connectionCount() const { return m_connectionCount; }
    // Cuts every open connection, as a server that goes down mid-stream.
    void dropAll();

signals:
    void connectionOpened(const QByteArray &path);
    void connectionClosed(const QByteArray &path);

private:
    struct Client
    {
        QByteArray request;
        QByteArray path;
        bool streaming = false;
        qint64 samplesSent = 0;
        QElapsedTimer since;
    };

    void onConnection();
    void onReadable(QTcpSocket *socket);
    void pace();
    void sendSamples(QTcpSocket *socket, Client &client, qint64 count);

    QTcpServer m_server;
    QTimer m_pacer;
    QHash<QTcpSocket *, Client> m_clients;
    int m_connectionCount = 0;
};
