#pragma once

#include "LoopbackHttpServer.h"

#include <QBuffer>
#include <QColor>
#include <QHash>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>

// Generated raster tiles on a loopback server, under /tiles/STYLE/z/x/y.png: each a flat colour of its
// style with a darker grid line along its top and left edges, so tiles and their seams can be seen.
// Answers can be scripted per path (a status, a dropped connection) and every request is counted.
class TileServer
{
public:
    TileServer()
    {
        m_server.route("/tiles/",
                       [this](const LoopbackHttpServer::Request &request) { return answer(request); });
    }

    [[nodiscard]] LoopbackHttpServer &server() { return m_server; }
    [[nodiscard]] QString urlTemplate(const QString &style) const
    {
        return m_server.baseUrl() + u"/tiles/"_qs + style + u"/{z}/{x}/{y}.png"_qs;
    }
    [[nodiscard]] int requests() const { return int(m_server.requests().size()); }
    [[nodiscard]] int requestsFor(const QByteArray &path) const
    {
        return int(
            std::count_if(m_server.requests().cbegin(), m_server.requests().cend(),
                          [&](const LoopbackHttpServer::Request &request) { return request.path == path; }));
    }

    // The next answers for one path, in order; afterwards the tile.
    void script(const QByteArray &path, const QList<LoopbackHttpServer::Response> &answers)
    {
        m_scripts[path] = answers;
    }
    void holdAll(bool hold) { m_hold = hold; }

    static QColor colorOf(const QString &style)
    {
        if (style == u"imagery")
            return QColor(0x20, 0x40, 0x70);
        if (style == u"labels")
            return Qt::transparent;
        return QColor(0xd8, 0xe8, 0xc8);
    }

    static QByteArray png(const QString &style, int z, int x, int y)
    {
        QImage image(256, 256, QImage::Format_ARGB32);
        image.fill(colorOf(style));
        QPainter painter(&image);
        if (style == u"labels") {
            // A white cross in the middle: what a label layer adds over imagery.
            painter.fillRect(120, 60, 16, 136, Qt::white);
            painter.fillRect(60, 120, 136, 16, Qt::white);
        } else {
            painter.fillRect(0, 0, 256, 2, colorOf(style).darker(140));
            painter.fillRect(0, 0, 2, 256, colorOf(style).darker(140));
            painter.setPen(colorOf(style).darker(200));
            painter.drawText(QRect(0, 0, 256, 256), Qt::AlignCenter, u"%1/%2/%3"_qs.arg(z).arg(x).arg(y));
        }
        painter.end();
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        image.save(&buffer, "PNG");
        return bytes;
    }

private:
    LoopbackHttpServer::Response answer(const LoopbackHttpServer::Request &request)
    {
        if (auto it = m_scripts.find(request.path); it != m_scripts.end() && !it->isEmpty())
            return it->takeFirst();
        static const QRegularExpression pattern(uR"(^/tiles/(\w+)/(\d+)/(\d+)/(\d+)\.png$)"_qs);
        const auto match = pattern.match(QString::fromLatin1(request.path));
        LoopbackHttpServer::Response response;
        if (!match.hasMatch()) {
            response.status = 404;
            response.body = "no such tile";
            response.contentType = "text/plain";
            return response;
        }
        response.body = png(match.captured(1), match.captured(2).toInt(), match.captured(3).toInt(),
                            match.captured(4).toInt());
        response.contentType = "image/png";
        response.hold = m_hold;
        return response;
    }

    LoopbackHttpServer m_server;
    QHash<QByteArray, QList<LoopbackHttpServer::Response>> m_scripts;
    bool m_hold = false;
};
