#include "PhotoModule.h"

#include "PixelFont.h"
#include "SimRandom.h"
#include "SkyIndex.h"
#include "SourceBoard.h"

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLinearGradient>
#include <QPainter>
#include <QPolygonF>
#include <QRegularExpression>

namespace {

constexpr quint64 photoStream = 0x9407;
// Memory enough for a long session; beyond it the oldest names are forgotten all at once.
constexpr qsizetype maxNamed = 4096;

const QStringList photographers{
    u"Anna Lindqvist"_qs, u"Marco Bianchi"_qs, u"J. Okafor"_qs,     u"Keiko Tanaka"_qs, u"Pete Hargreaves"_qs,
    u"Sofía Ramírez"_qs,  u"Dmitri Volkov"_qs, u"Lena Schröder"_qs, u"Sam Whitford"_qs, u"Priya Nair"_qs};

QJsonObject sizeObject(QSize size)
{
    return QJsonObject{{u"width"_qs, size.width()}, {u"height"_qs, size.height()}};
}

SkySimReply pngReply(const QImage &image)
{
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    SkySimReply reply = SkySimReply::empty(200);
    reply.contentType = "image/png";
    reply.body = png;
    reply.headers.append({QByteArrayLiteral("Cache-Control"), QByteArrayLiteral("max-age=86400")});
    return reply;
}

} // namespace

PhotoModule::PhotoModule(SkyIndex &sky, SourceBoard &sources, std::function<QString()> baseUrl)
    : m_sky(sky), m_sources(sources), m_baseUrl(std::move(baseUrl))
{
    if (!m_sources.contains(source()))
        m_sources.addSource(source());
}

std::optional<SkySimReply> PhotoModule::handle(const SkySimRequest &request)
{
    static const QString lookupPrefix = u"/pub/photos/hex/"_qs;
    static const QString imagePrefix = u"/photos/img/"_qs;
    const bool lookup = request.path.startsWith(lookupPrefix);
    if (!lookup && !request.path.startsWith(imagePrefix))
        return std::nullopt;
    if (!request.isRead()) {
        return SkySimReply::readOnly();
    }
    static const QRegularExpression hexPattern(u"^[0-9A-Fa-f]{6}$"_qs);
    if (lookup && !hexPattern.match(request.path.mid(lookupPrefix.size())).hasMatch())
        return SkySimReply::json(R"({"error":"invalid hex"})", 400);

    m_sources.noteRequest(source(), QString::fromUtf8(request.target));
    const FaultPlan fault = m_sources.fault(source());
    if (fault.kind() == FaultPlan::Kind::Drop)
        return SkySimReply::drop();
    const bool malformed = fault.kind() == FaultPlan::Kind::Malformed;
    SkySimReply reply = lookup ? photos(request.path.mid(lookupPrefix.size()).toLower(), malformed)
                               : image(request.path.mid(imagePrefix.size()), malformed);
    fault.applyTo(reply);
    return reply;
}

SkySimReply PhotoModule::photos(const QString &hex, bool malformed)
{
    QJsonArray list;
    const std::optional<SkyAircraft> aircraft = m_sky.byHex(hex);
    SimRandom random(SimRandom::mix({SimRandom::textSeed(hex), photoStream}));
    // Nobody photographed one in six.
    if (aircraft && aircraft->registration && !random.chance(1.0 / 6.0)) {
        const QString id = QString::number(random.integer(1'000'000, 9'999'999));
        const QString photographer = random.pick(photographers);
        const QString base = m_baseUrl() + u"/photos/img/"_qs + hex;
        list.append(QJsonObject{{u"id"_qs, id},
                                {u"thumbnail"_qs, QJsonObject{{u"src"_qs, base + u"_t.png"_qs},
                                                              {u"size"_qs, sizeObject(smallSize)}}},
                                {u"thumbnail_large"_qs, QJsonObject{{u"src"_qs, base + u".png"_qs},
                                                                    {u"size"_qs, sizeObject(largeSize)}}},
                                {u"link"_qs, u"https://www.planespotters.net/photo/%1/%2"_qs.arg(
                                                 id, aircraft->registration->toLower())},
                                {u"photographer"_qs, photographer}});
        if (m_named.size() >= maxNamed)
            m_named.clear();
        m_named.insert(hex, Shot{*aircraft->registration, photographer});
    }
    const QJsonValue value = malformed ? QJsonValue(QJsonObject{{u"0"_qs, list}}) : QJsonValue(list);
    return SkySimReply::json(
        QJsonDocument(QJsonObject{{u"photos"_qs, value}}).toJson(QJsonDocument::Compact));
}

SkySimReply PhotoModule::image(const QString &name, bool malformed) const
{
    static const QRegularExpression namePattern(u"^([0-9a-f]{6})(_t)?\\.png$"_qs);
    const QRegularExpressionMatch match = namePattern.match(name);
    const auto shot = match.hasMatch() ? m_named.constFind(match.captured(1)) : m_named.cend();
    if (shot == m_named.cend())
        return SkySimReply::text("no such picture", 404);
    if (malformed) {
        // What a proxy's error page looks like to an image decoder.
        SkySimReply reply = SkySimReply::empty(200);
        reply.contentType = "image/png";
        reply.body = "<html><body>Service temporarily unavailable</body></html>\n";
        return reply;
    }
    const bool small = !match.captured(2).isEmpty();
    return pngReply(picture(shot->registration, shot->photographer, small ? smallSize : largeSize));
}

QImage PhotoModule::picture(const QString &registration, const QString &photographer, QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    const double w = size.width();
    const double h = size.height();
    QLinearGradient sky(0.0, 0.0, 0.0, h);
    sky.setColorAt(0.0, QColor(0x1d, 0x4f, 0x8c));
    sky.setColorAt(0.75, QColor(0x9c, 0xc4, 0xe8));
    sky.setColorAt(1.0, QColor(0xe4, 0xee, 0xf6));
    painter.fillRect(image.rect(), sky);

    // An airliner side on: fuselage, wing, fin and tailplane.
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0xf4, 0xf4, 0xf2));
    painter.drawRoundedRect(QRectF(w * 0.14, h * 0.40, w * 0.70, h * 0.12), h * 0.06, h * 0.06);
    painter.setBrush(QColor(0x5d, 0x6d, 0x7e));
    painter.drawPolygon(QPolygonF{QPointF(w * 0.40, h * 0.48), QPointF(w * 0.58, h * 0.48),
                                  QPointF(w * 0.46, h * 0.68), QPointF(w * 0.38, h * 0.68)});
    painter.drawPolygon(QPolygonF{QPointF(w * 0.72, h * 0.41), QPointF(w * 0.83, h * 0.41),
                                  QPointF(w * 0.86, h * 0.18), QPointF(w * 0.80, h * 0.18)});
    painter.drawPolygon(QPolygonF{QPointF(w * 0.74, h * 0.47), QPointF(w * 0.84, h * 0.47),
                                  QPointF(w * 0.88, h * 0.54), QPointF(w * 0.80, h * 0.54)});
    painter.setRenderHint(QPainter::Antialiasing, false);

    const int scale = size.width() >= 400 ? 4 : 2;
    const QSize textSize = PixelFont::size(registration, scale);
    const QPoint textAt((size.width() - textSize.width()) / 2, int(h * 0.74));
    PixelFont::draw(painter, textAt + QPoint(scale / 2 + 1, scale / 2 + 1), registration, scale,
                    QColor(0x10, 0x20, 0x30));
    PixelFont::draw(painter, textAt, registration, scale, Qt::white);
    if (scale > 2) {
        const QString credit = u"(C) "_qs + photographer;
        const QSize creditSize = PixelFont::size(credit, 1);
        PixelFont::draw(painter, QPoint(size.width() - creditSize.width() - 6, size.height() - 12), credit, 1,
                        QColor(0x30, 0x40, 0x50));
    }
    return image;
}
