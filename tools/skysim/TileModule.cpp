#include "TileModule.h"

#include "SourceBoard.h"
#include "TileRenderer.h"

#include <QDateTime>
#include <QLocale>

namespace {

std::optional<int> tileNumber(QStringView text)
{
    if (text.isEmpty() || text.size() > 7)
        return std::nullopt;
    for (const QChar c : text) {
        if (c < u'0' || c > u'9')
            return std::nullopt;
    }
    return text.toInt();
}

// An HTTP date in its one current form, "Mon, 01 Jan 2024 00:00:00 GMT"; Qt's RFC 2822 reading refuses
// the "GMT".
QDateTime httpDate(const QByteArray &text)
{
    QDateTime date =
        QLocale::c().toDateTime(QString::fromLatin1(text).trimmed(), u"ddd, dd MMM yyyy hh:mm:ss 'GMT'"_qs);
    date.setTimeSpec(Qt::UTC);
    return date;
}

bool notModifiedSince(const QByteArray &header)
{
    const QDateTime since = httpDate(header);
    return since.isValid() && since >= httpDate(TileModule::lastModified);
}

bool etagMatches(const QByteArray &header, const QByteArray &etag)
{
    for (const QByteArray &part : header.split(',')) {
        QByteArray tag = part.trimmed();
        if (tag.startsWith("W/"))
            tag = tag.mid(2);
        if (tag == "*" || tag == etag)
            return true;
    }
    return false;
}

} // namespace

TileModule::TileModule(SourceBoard &sources) : m_sources(sources), m_drawn(16 * 1024)
{
    if (!m_sources.contains(source()))
        m_sources.addSource(source());
}

QByteArray TileModule::tile(const QString &set, int zoom, int x, int y)
{
    const QString key = u"%1/%2/%3/%4"_qs.arg(set).arg(zoom).arg(x).arg(y);
    if (const QByteArray *png = m_drawn.object(key))
        return *png;
    const TileRenderer::Style style = set == u"imagery"  ? TileRenderer::Style::Imagery
                                      : set == u"labels" ? TileRenderer::Style::Labels
                                                         : TileRenderer::Style::Standard;
    const QByteArray png = TileRenderer::png(style, zoom, x, y);
    // The cost is in kilobytes.
    m_drawn.insert(key, new QByteArray(png), std::max<qsizetype>(1, png.size() / 1024));
    return png;
}

QString TileModule::standardTemplate(const QString &baseUrl)
{
    return baseUrl + u"/tiles/standard/{z}/{x}/{y}.png"_qs;
}

QString TileModule::imageryTemplate(const QString &baseUrl)
{
    return baseUrl + u"/tiles/imagery/{z}/{y}/{x}"_qs;
}

QString TileModule::labelsTemplate(const QString &baseUrl)
{
    return baseUrl + u"/tiles/labels/{z}/{y}/{x}"_qs;
}

std::optional<SkySimReply> TileModule::handle(const SkySimRequest &request)
{
    if (!request.path.startsWith(u"/tiles/"))
        return std::nullopt;
    if (!request.isRead()) {
        return SkySimReply::readOnly();
    }
    // "", "tiles", STYLE, Z, A, B
    const QStringList parts = request.path.split(u'/');
    if (parts.size() != 6)
        return SkySimReply::text("no such tile", 404);
    QString last = parts[5];
    // The street map goes column before row and has an extension; Esri's sets go row first, bare.
    const bool rowFirst = parts[2] != u"standard";
    if (!rowFirst) {
        if (!last.endsWith(u".png"))
            return SkySimReply::text("no such tile", 404);
        last.chop(4);
    } else if (parts[2] != u"imagery" && parts[2] != u"labels") {
        return SkySimReply::text("no such tile set", 404);
    }
    const auto zoom = tileNumber(parts[3]);
    const auto first = tileNumber(parts[4]);
    const auto second = tileNumber(last);
    if (!zoom || !first || !second)
        return SkySimReply::text("no such tile", 404);
    const int x = rowFirst ? *second : *first;
    const int y = rowFirst ? *first : *second;
    if (!TileRenderer::isValid(*zoom, x, y))
        return SkySimReply::text("no such tile", 404);

    m_sources.noteRequest(source(), QString::fromUtf8(request.target));
    const FaultPlan fault = m_sources.fault(source());
    if (fault.kind() == FaultPlan::Kind::Drop)
        return SkySimReply::drop();

    const QByteArray etag = '"' + parts[2].toLatin1() + '-' + QByteArray::number(*zoom) + '-' +
                            QByteArray::number(x) + '-' + QByteArray::number(y) + "-1\"";
    SkySimReply reply = SkySimReply::empty(200);
    reply.headers = {{QByteArrayLiteral("Cache-Control"), QByteArrayLiteral("max-age=604800")},
                     {QByteArrayLiteral("ETag"), etag},
                     {QByteArrayLiteral("Last-Modified"), QByteArray(lastModified)}};
    const QByteArray ifNoneMatch = request.headers.value("if-none-match");
    const bool unchanged = !ifNoneMatch.isEmpty()
                               ? etagMatches(ifNoneMatch, etag)
                               : notModifiedSince(request.headers.value("if-modified-since"));
    if (unchanged) {
        reply.status = 304;
    } else {
        reply.contentType = "image/png";
        reply.body = fault.kind() == FaultPlan::Kind::Malformed
                         ? QByteArray("<!DOCTYPE html><html><body>Access blocked</body></html>\n")
                         : tile(parts[2], *zoom, x, y);
    }
    fault.applyTo(reply);
    return reply;
}
