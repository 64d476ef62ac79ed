#include "LoopbackHttpServer.h"

#include <QTcpSocket>

QByteArray LoopbackHttpServer::Request::header(const QByteArray &name) const
{
    for (const auto &[key, value] : headers) {
        if (key == name.toLower())
            return value;
    }
    return {};
}

LoopbackHttpServer::LoopbackHttpServer(QObject *parent) : QObject(parent)
{
    if (!m_server.listen(QHostAddress::LocalHost, 0))
        qFatal("cannot listen on loopback: %s", qPrintable(m_server.errorString()));
    connect(&m_server, &QTcpServer::newConnection, this, &LoopbackHttpServer::onConnection);
}

LoopbackHttpServer::~LoopbackHttpServer()
{
    // Open connections die with the listening socket, after our members: they must not call back.
    for (QTcpSocket *socket : m_server.findChildren<QTcpSocket *>())
        socket->disconnect(this);
}

QString LoopbackHttpServer::baseUrl() const
{
    return u"http://127.0.0.1:%1"_qs.arg(m_server.serverPort());
}

void LoopbackHttpServer::route(const QByteArray &pathPrefix, Handler handler)
{
    m_routes.prepend({pathPrefix, std::move(handler)}); // later routes win
}

int LoopbackHttpServer::requestCount(const QByteArray &pathPrefix) const
{
    return int(std::count_if(m_requests.begin(), m_requests.end(),
                             [&](const Request &request) { return request.path.startsWith(pathPrefix); }));
}

void LoopbackHttpServer::release()
{
    const auto held = std::exchange(m_held, {});
    for (const auto &[socket, path, response] : held) {
        if (socket)
            answer(socket, path, response);
    }
}

void LoopbackHttpServer::onConnection()
{
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { onReadable(socket); });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            m_buffers.remove(socket);
            socket->deleteLater();
        });
    }
}

void LoopbackHttpServer::onReadable(QTcpSocket *socket)
{
    QByteArray &buffer = m_buffers[socket];
    buffer += socket->readAll();
    const qsizetype end = buffer.indexOf("\r\n\r\n");
    if (end < 0)
        return;
    const QList<QByteArray> lines = buffer.left(end).split('\n');
    buffer.remove(0, end + 4);
    const QList<QByteArray> requestLine = lines.value(0).trimmed().split(' ');
    Request request{requestLine.value(0), requestLine.value(1), {}};
    for (qsizetype i = 1; i < lines.size(); ++i) {
        const qsizetype colon = lines[i].indexOf(':');
        if (colon > 0)
            request.headers.append({lines[i].left(colon).trimmed().toLower(), lines[i].mid(colon + 1).trimmed()});
    }
    m_requests.append(request);
    emit requestReceived(request.path);

    Response response{404, "not found", "text/plain", false, false};
    for (const auto &[prefix, handler] : m_routes) {
        if (request.path.startsWith(prefix)) {
            response = handler(request);
            break;
        }
    }
    if (response.hold)
        m_held.append({socket, request.path, response});
    else
        answer(socket, request.path, response);
}

void LoopbackHttpServer::answer(QTcpSocket *socket, const QByteArray &path, const Response &response)
{
    if (!response.drop) {
        QByteArray head = "HTTP/1.1 " + QByteArray::number(response.status) + " Status\r\n";
        head += "Content-Type: " + response.contentType + "\r\n";
        head += "Content-Length: " + QByteArray::number(response.body.size()) + "\r\n";
        head += "Connection: close\r\n\r\n";
        socket->write(head + response.body);
    }
    socket->disconnectFromHost();
    emit answered(path);
}
