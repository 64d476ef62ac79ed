#include "SkySimReply.h"

SkySimReply SkySimReply::json(QByteArray body, int status)
{
    SkySimReply reply;
    reply.status = status;
    reply.contentType = "application/json; charset=utf-8";
    reply.body = std::move(body);
    return reply;
}

SkySimReply SkySimReply::readOnly()
{
    SkySimReply reply = text("only GET is served here", 405);
    reply.allowReadsOnly();
    return reply;
}

void SkySimReply::allowReadsOnly()
{
    headers.append({QByteArrayLiteral("Allow"), QByteArrayLiteral("GET, HEAD")});
}

SkySimReply SkySimReply::text(QByteArray body, int status)
{
    SkySimReply reply;
    reply.status = status;
    reply.contentType = "text/plain; charset=utf-8";
    reply.body = std::move(body);
    if (!reply.body.endsWith('\n'))
        reply.body.append('\n');
    return reply;
}

SkySimReply SkySimReply::empty(int status)
{
    SkySimReply reply;
    reply.status = status;
    return reply;
}

SkySimReply SkySimReply::drop()
{
    SkySimReply reply;
    reply.action = Action::Drop;
    return reply;
}

SkySimReply SkySimReply::streaming(QByteArray contentType, std::shared_ptr<SkySimStream> stream)
{
    SkySimReply reply;
    reply.action = Action::Stream;
    reply.contentType = std::move(contentType);
    reply.stream = std::move(stream);
    return reply;
}

SkySimReply SkySimReply::silence()
{
    SkySimReply reply;
    reply.action = Action::Silence;
    return reply;
}

bool SkySimReply::statusForbidsBody(int status)
{
    return (status >= 100 && status < 200) || status == 204 || status == 304;
}

QByteArray SkySimReply::reasonPhrase(int status)
{
    switch (status) {
    case 200:
        return "OK";
    case 201:
        return "Created";
    case 202:
        return "Accepted";
    case 204:
        return "No Content";
    case 301:
        return "Moved Permanently";
    case 302:
        return "Found";
    case 304:
        return "Not Modified";
    case 400:
        return "Bad Request";
    case 401:
        return "Unauthorized";
    case 403:
        return "Forbidden";
    case 404:
        return "Not Found";
    case 405:
        return "Method Not Allowed";
    case 408:
        return "Request Timeout";
    case 413:
        return "Content Too Large";
    case 429:
        return "Too Many Requests";
    case 431:
        return "Request Header Fields Too Large";
    case 500:
        return "Internal Server Error";
    case 501:
        return "Not Implemented";
    case 502:
        return "Bad Gateway";
    case 503:
        return "Service Unavailable";
    case 504:
        return "Gateway Timeout";
    case 505:
        return "HTTP Version Not Supported";
    default:
        return "Status";
    }
}
