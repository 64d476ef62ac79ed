#include "SkySimConnection.h"

#include "SkySimRouter.h"

#include <QElapsedTimer>
#include <QTcpSocket>
#include <QTimer>
#include <QUrl>

namespace {

bool isToken(const QByteArray &text)
{
    if (text.isEmpty())
        return false;
    for (const char c : text) {
        if (!(c >= 'A' && c <= 'Z') && !(c >= 'a' && c <= 'z') && !(c >= '0' && c <= '9') && c != '-' &&
            c != '_' && c != '.' && c != '!' && c != '#' && c != '$' && c != '%' && c != '&' && c != '\'' &&
            c != '*' && c != '+' && c != '^' && c != '`' && c != '|' && c != '~')
            return false;
    }
    return true;
}

bool hasToken(const QByteArray &headerValue, const QByteArray &token)
{
    const QList<QByteArray> parts = headerValue.split(',');
    for (const QByteArray &part : parts) {
        if (part.trimmed().toLower() == token)
            return true;
    }
    return false;
}

} // namespace

SkySimConnection::SkySimConnection(QTcpSocket *socket, const SkySimRouter &router, QObject *parent)
    : QObject(parent), m_socket(socket), m_router(router)
{
    m_socket->setParent(this);
    // Small answers go out at once rather than wait for the client's delayed acknowledgement.
    m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(m_socket, &QTcpSocket::readyRead, this, [this] {
        m_buffer.append(m_socket->readAll());
        processBuffered();
    });
    connect(m_socket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
    // Bytes may have arrived before we were listening.
    if (m_socket->bytesAvailable() > 0)
        QTimer::singleShot(0, this, [this] {
            m_buffer.append(m_socket->readAll());
            processBuffered();
        });
}

void SkySimConnection::processBuffered()
{
    while (!m_waiting && !m_closing) {
        SkySimRequest request;
        bool keepAlive = true;
        int errorStatus = 400;
        switch (takeRequest(request, keepAlive, errorStatus)) {
        case Parse::Incomplete:
            return;
        case Parse::Invalid:
            refuse(errorStatus, "malformed request");
            return;
        case Parse::Complete:
            break;
        }
        SkySimReply reply = m_router.route(request);
        if (reply.delayMs > 0) {
            // Hold this connection's answer (and the requests queued behind it) without blocking anyone.
            m_waiting = true;
            QTimer::singleShot(reply.delayMs, this, [this, request, reply, keepAlive] {
                m_waiting = false;
                finish(request, reply, keepAlive);
                processBuffered();
            });
            return;
        }
        finish(request, reply, keepAlive);
    }
}

SkySimConnection::Parse SkySimConnection::takeRequest(SkySimRequest &request, bool &keepAlive,
                                                      int &errorStatus)
{
    // Blank lines before a request are tolerated.
    qsizetype start = 0;
    while (start < m_buffer.size() && (m_buffer[start] == '\r' || m_buffer[start] == '\n'))
        ++start;
    if (start > 0)
        m_buffer.remove(0, start);

    qsizetype headerEnd = m_buffer.indexOf("\r\n\r\n");
    qsizetype separator = 4;
    const qsizetype bareEnd = m_buffer.indexOf("\n\n");
    if (bareEnd >= 0 && (headerEnd < 0 || bareEnd < headerEnd)) {
        headerEnd = bareEnd;
        separator = 2;
    }
    if (headerEnd < 0) {
        if (m_buffer.size() > maxHeaderBytes) {
            errorStatus = 431;
            return Parse::Invalid;
        }
        return Parse::Incomplete;
    }
    if (headerEnd > maxHeaderBytes) {
        errorStatus = 431;
        return Parse::Invalid;
    }

    QList<QByteArray> lines = m_buffer.left(headerEnd).split('\n');
    for (QByteArray &line : lines) {
        if (line.endsWith('\r'))
            line.chop(1);
    }
    const QList<QByteArray> requestLine = lines.takeFirst().split(' ');
    if (requestLine.size() != 3 || !isToken(requestLine[0]) || requestLine[1].isEmpty())
        return Parse::Invalid;
    const QByteArray &version = requestLine[2];
    if (!version.startsWith("HTTP/1.")) {
        errorStatus = version.startsWith("HTTP/") ? 505 : 400;
        return Parse::Invalid;
    }
    request.method = requestLine[0];
    request.target = requestLine[1];

    for (const QByteArray &line : lines) {
        const qsizetype colon = line.indexOf(':');
        if (colon <= 0 || !isToken(line.left(colon)))
            return Parse::Invalid;
        const QByteArray name = line.left(colon).toLower();
        const QByteArray value = line.mid(colon + 1).trimmed();
        if (request.headers.contains(name))
            request.headers[name] += ", " + value;
        else
            request.headers.insert(name, value);
    }

    if (request.headers.contains("transfer-encoding")) {
        errorStatus = 501; // no chunked request bodies: no client of ours sends them
        return Parse::Invalid;
    }
    qsizetype bodyLength = 0;
    if (request.headers.contains("content-length")) {
        bool ok = false;
        const QByteArray text = request.headers.value("content-length");
        bodyLength = text.toLongLong(&ok);
        if (!ok || bodyLength < 0 || text.contains(',') || text.contains('+'))
            return Parse::Invalid;
        if (bodyLength > maxBodyBytes) {
            errorStatus = 413;
            return Parse::Invalid;
        }
    }
    const qsizetype total = headerEnd + separator + bodyLength;
    if (m_buffer.size() < total)
        return Parse::Incomplete;
    request.body = m_buffer.mid(headerEnd + separator, bodyLength);
    m_buffer.remove(0, total);

    // Origin form ("/path?query") or absolute form ("http://host/path").
    const QUrl url = request.target.startsWith('/')
                         ? QUrl::fromEncoded("http://localhost" + request.target, QUrl::StrictMode)
                         : QUrl::fromEncoded(request.target, QUrl::StrictMode);
    if (!url.isValid() || url.path().isEmpty()) {
        keepAlive = false;
        errorStatus = 400;
        return Parse::Invalid;
    }
    request.path = url.path(QUrl::FullyDecoded);
    request.query = QUrlQuery(url);

    const QByteArray connection = request.headers.value("connection");
    keepAlive = version == "HTTP/1.0" ? hasToken(connection, "keep-alive") : !hasToken(connection, "close");
    return Parse::Complete;
}

void SkySimConnection::finish(const SkySimRequest &request, const SkySimReply &reply, bool keepAlive)
{
    if (m_closing)
        return;
    switch (reply.action) {
    case SkySimReply::Action::Answer:
        break;
    case SkySimReply::Action::Drop:
        m_closing = true;
        emit served(request.method, request.target, 0);
        m_socket->abort();
        return;
    case SkySimReply::Action::Silence:
        // Hold the connection open and read no further requests; it ends when the client gives up.
        m_closing = true;
        emit served(request.method, request.target, 0);
        return;
    case SkySimReply::Action::Stream:
        m_closing = true;
        startStream(request.method, reply);
        emit served(request.method, request.target, reply.status);
        return;
    }
    write(request.method, reply, keepAlive);
    emit served(request.method, request.target, reply.status);
    if (!keepAlive) {
        m_closing = true;
        m_socket->disconnectFromHost();
    }
}

void SkySimConnection::refuse(int status, const QByteArray &why)
{
    write("GET", SkySimReply::text(why, status), false);
    emit served(QByteArray(), QByteArray(), status);
    m_closing = true;
    m_socket->disconnectFromHost();
}

void SkySimConnection::startStream(const QByteArray &method, const SkySimReply &reply)
{
    // No length: the body ends when the connection does, which HTTP/1.1 allows for a response.
    QByteArray head = "HTTP/1.1 " + QByteArray::number(reply.status) + ' ' +
                      SkySimReply::reasonPhrase(reply.status) + "\r\nServer: aerolume-skysim\r\n";
    if (!reply.contentType.isEmpty())
        head += "Content-Type: " + reply.contentType + "\r\n";
    for (const auto &[name, value] : reply.headers)
        head += name + ": " + value + "\r\n";
    head += "Connection: close\r\n\r\n";
    m_socket->write(head);
    if (method == "HEAD" || !reply.stream) {
        m_socket->disconnectFromHost();
        return;
    }

    // Paced by the elapsed time rather than by counting ticks, so late timers don't slow the stream.
    auto clock = std::make_shared<QElapsedTimer>();
    clock->start();
    auto *timer = new QTimer(this);
    auto send = [this, clock, stream = reply.stream] {
        const QByteArray due = stream->take(clock->elapsed());
        if (m_socket->bytesToWrite() <= maxStreamBacklogBytes)
            m_socket->write(due);
    };
    connect(timer, &QTimer::timeout, this, send);
    send();
    timer->start(SkySimStream::intervalMs);
}

void SkySimConnection::write(const QByteArray &method, const SkySimReply &reply, bool keepAlive)
{
    const bool bodiless = SkySimReply::statusForbidsBody(reply.status);
    QByteArray head = "HTTP/1.1 " + QByteArray::number(reply.status) + ' ' +
                      SkySimReply::reasonPhrase(reply.status) + "\r\nServer: aerolume-skysim\r\n";
    if (!bodiless) {
        if (!reply.contentType.isEmpty())
            head += "Content-Type: " + reply.contentType + "\r\n";
        head += "Content-Length: " + QByteArray::number(reply.body.size()) + "\r\n";
    }
    for (const auto &[name, value] : reply.headers)
        head += name + ": " + value + "\r\n";
    head += keepAlive ? "Connection: keep-alive\r\n\r\n" : "Connection: close\r\n\r\n";
    if (!bodiless && method != "HEAD")
        head += reply.body;
    m_socket->write(head);
}
