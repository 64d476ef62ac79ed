#include "MapImageProvider.h"

#include "MarkerColors.h"
#include "Symbols.h"
#include "SystemColors.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QUrl>
#include <cmath>

namespace {

// Room around a marker's disc for its shadow: the largest radius and offset, and a pixel to spare.
constexpr double shadowRoom = 5.0;

QString colorText(const QColor &color)
{
    return color.name(QColor::HexArgb).mid(1);
}

QColor parseColor(const QString &text)
{
    const QColor color(u'#' + text);
    return color.isValid() ? color : QColor(Qt::black);
}

double boundedDpr(double dpr)
{
    return std::isfinite(dpr) ? std::clamp(dpr, 1.0, 4.0) : 1.0;
}

double boundedScale(double scale)
{
    return std::isfinite(scale) ? std::clamp(scale, 0.25, 4.0) : 1.0;
}

QImage canvas(double side, double dpr)
{
    const int pixels = std::max(1, int(std::ceil(side * dpr)));
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    image.setDevicePixelRatio(dpr);
    return image;
}

// Three box blurs in each direction come close to a Gaussian; only the alpha of a black shape matters.
void blurAlpha(QImage &image, int radius)
{
    if (radius < 1)
        return;
    const int width = image.width();
    const int height = image.height();
    QList<int> alpha(width * height);
    for (int y = 0; y < height; ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < width; ++x)
            alpha[y * width + x] = qAlpha(line[x]);
    }
    QList<int> scratch(alpha.size());
    const auto pass = [&](bool horizontal) {
        const int lines = horizontal ? height : width;
        const int length = horizontal ? width : height;
        for (int l = 0; l < lines; ++l) {
            const auto at = [&](int i) { return horizontal ? l * width + i : i * width + l; };
            int sum = 0;
            for (int i = -radius; i <= radius; ++i)
                sum += (i >= 0 && i < length) ? alpha[at(i)] : 0;
            for (int i = 0; i < length; ++i) {
                scratch[at(i)] = sum / (2 * radius + 1);
                const int out = i - radius;
                const int in = i + radius + 1;
                sum += (in < length ? alpha[at(in)] : 0) - (out >= 0 ? alpha[at(out)] : 0);
            }
        }
        std::swap(alpha, scratch);
    };
    for (int round = 0; round < 3; ++round) {
        pass(true);
        pass(false);
    }
    for (int y = 0; y < height; ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < width; ++x)
            line[x] = qRgba(0, 0, 0, alpha[y * width + x]);
    }
}

// A soft black shadow of a disc of `diameter`, centred at `centre` plus `offsetY`, at `opacity`.
void paintShadow(QPainter &painter, double side, double diameter, double radius, double offsetY,
                 double opacity, double dpr)
{
    QImage shadow = canvas(side, dpr);
    {
        QPainter shape(&shadow);
        shape.setRenderHint(QPainter::Antialiasing);
        shape.setPen(Qt::NoPen);
        shape.setBrush(Qt::black);
        shape.drawEllipse(QPointF(side / 2.0, side / 2.0 + offsetY), diameter / 2.0, diameter / 2.0);
    }
    // A box blur of a third of the radius, three times over, spreads about as far as the radius.
    blurAlpha(shadow, int(std::lround(radius * dpr / 1.5)));
    painter.save();
    painter.setOpacity(opacity);
    painter.drawImage(QPointF(0, 0), shadow);
    painter.restore();
}

void paintSymbol(QPainter &painter, const QString &name, const QRectF &box, const QColor &color, double angle,
                 double dpr)
{
    const QImage glyph = Symbols::render(name, (box.size() * dpr).toSize(), color);
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.translate(box.center());
    painter.rotate(angle);
    painter.drawImage(QRectF(-box.width() / 2.0, -box.height() / 2.0, box.width(), box.height()), glyph);
    painter.restore();
}

} // namespace

MapImageProvider::MapImageProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

double MapImageProvider::markerFrame(bool selected, double scale)
{
    return (selected ? 30.0 : 24.0) * boundedScale(scale);
}

double MapImageProvider::markerCanvas(bool selected, double scale)
{
    return markerFrame(selected, scale) + 2 * shadowRoom;
}

double MapImageProvider::badgeSide(double scale)
{
    return 6.0 * boundedScale(scale) + 2 * 2.0;
}

QString MapImageProvider::markerId(const QColor &fill, bool selected, bool highContrast, double scale,
                                   std::optional<int> angle, double dpr)
{
    return u"marker/%1/%2/%3/%4/%5/%6"_qs.arg(colorText(fill))
        .arg(int(selected))
        .arg(int(highContrast))
        .arg(boundedScale(scale))
        .arg(angle ? QString::number(*angle) : u"none"_qs)
        .arg(boundedDpr(dpr));
}

QString MapImageProvider::badgeId(bool emergency, double scale, double dpr)
{
    return u"badge/%1/%2/%3"_qs.arg(emergency ? u"emergency"_qs : u"military"_qs)
        .arg(boundedScale(scale))
        .arg(boundedDpr(dpr));
}

QString MapImageProvider::labelId(const QString &text, bool onImagery, double dpr)
{
    return u"label/%1/%2/%3"_qs
        .arg(QString::fromLatin1(QUrl::toPercentEncoding(text)), onImagery ? u"light"_qs : u"dark"_qs)
        .arg(boundedDpr(dpr));
}

QString MapImageProvider::symbolId(const QString &name, const QColor &color, double size, double dpr)
{
    return u"symbol/%1/%2/%3/%4"_qs.arg(name, colorText(color)).arg(size).arg(boundedDpr(dpr));
}

QString MapImageProvider::homeId(double size, double dpr)
{
    return u"home/%1/%2"_qs.arg(size).arg(boundedDpr(dpr));
}

QImage MapImageProvider::marker(const QColor &fill, bool selected, bool highContrast, double scale,
                                std::optional<int> angle, double dpr)
{
    scale = boundedScale(scale);
    dpr = boundedDpr(dpr);
    const double side = markerCanvas(selected, scale);
    const double frame = markerFrame(selected, scale);
    QImage image = canvas(side, dpr);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    if (highContrast)
        paintShadow(painter, side, frame, 3.0, 1.0, 0.7, dpr);
    else
        paintShadow(painter, side, frame, 2.0, 0.0, 0.45, dpr);

    const QPointF centre(side / 2.0, side / 2.0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawEllipse(centre, frame / 2.0, frame / 2.0);

    const double ringWidth = (selected ? 2.5 : 1.5) + (highContrast ? 1.0 : 0.0);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(MarkerColors::ringColor(fill, selected || highContrast), ringWidth));
    const double ringRadius = (frame - ringWidth) / 2.0;
    painter.drawEllipse(centre, ringRadius, ringRadius);

    // The glyph's box: the symbol's point size with the room a symbol font gives its outline.
    const double glyph = (selected ? 15.0 : 12.0) * scale * 1.15;
    paintSymbol(painter, u"airplane"_qs,
                QRectF(centre.x() - glyph / 2.0, centre.y() - glyph / 2.0, glyph, glyph),
                MarkerColors::glyphColor(fill), angle.value_or(0), dpr);
    return image;
}

QImage MapImageProvider::badge(bool emergency, double scale, double dpr)
{
    scale = boundedScale(scale);
    dpr = boundedDpr(dpr);
    const double side = badgeSide(scale);
    QImage image = canvas(side, dpr);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::white);
    painter.setPen(QPen(QColor::fromRgbF(0, 0, 0, 0.4f), 0.5));
    painter.drawEllipse(QRectF(0.25, 0.25, side - 0.5, side - 0.5));
    const double glyph = 6.0 * scale;
    paintSymbol(painter, emergency ? u"exclamationmark"_qs : u"star.fill"_qs,
                QRectF((side - glyph) / 2.0, (side - glyph) / 2.0, glyph, glyph), Qt::black, 0, dpr);
    return image;
}

QImage MapImageProvider::label(const QString &text, bool onImagery, double dpr)
{
    dpr = boundedDpr(dpr);
    QFont font;
    font.setPixelSize(11);
    font.setWeight(QFont::DemiBold);
    const QFontMetricsF metrics(font);
    const double halo = 2.0;
    const QSizeF logical(std::ceil(metrics.horizontalAdvance(text) + 2 * halo + 2),
                         std::ceil(metrics.height() + 2 * halo));
    QImage image(std::max(1, int(std::ceil(logical.width() * dpr))),
                 std::max(1, int(std::ceil(logical.height() * dpr))), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    image.setDevicePixelRatio(dpr);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath path;
    path.addText(QPointF(halo + 1, halo + metrics.ascent()), font, text);
    const QColor haloColor = onImagery ? QColor(0, 0, 0, 170) : QColor(255, 255, 255, 215);
    const QColor textColor = onImagery ? QColor(Qt::white) : QColor(0x1c, 0x1c, 0x1e);
    painter.setPen(QPen(haloColor, 2 * halo, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(path);
    painter.setPen(Qt::NoPen);
    painter.setBrush(textColor);
    painter.drawPath(path);
    return image;
}

QImage MapImageProvider::home(double size, double dpr)
{
    dpr = boundedDpr(dpr);
    size = std::clamp(size, 4.0, 256.0);
    const double side = size + 2 * shadowRoom;
    QImage image = canvas(side, dpr);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    paintShadow(painter, side, size, 2.0, 0.0, 0.33, dpr);
    const QPointF centre(side / 2.0, side / 2.0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(SystemColors::blue());
    painter.drawEllipse(centre, size / 2.0, size / 2.0);
    const double glyph = size * 0.58;
    paintSymbol(painter, u"house.fill"_qs,
                QRectF(centre.x() - glyph / 2.0, centre.y() - glyph / 2.0, glyph, glyph), Qt::white, 0, dpr);
    return image;
}

QImage MapImageProvider::requestImage(const QString &id, QSize *size, const QSize &)
{
    const QStringList parts = id.split(u'/');
    const QString kind = parts.value(0);
    const double dpr = parts.isEmpty() ? 1.0 : parts.constLast().toDouble();
    QImage image;
    if (kind == u"marker" && parts.size() == 7) {
        bool hasAngle = false;
        const int angle = parts[5].toInt(&hasAngle);
        image = marker(parseColor(parts[1]), parts[2] == u"1", parts[3] == u"1", parts[4].toDouble(),
                       hasAngle ? std::optional(angle) : std::nullopt, dpr);
    } else if (kind == u"badge" && parts.size() == 4) {
        image = badge(parts[1] == u"emergency", parts[2].toDouble(), dpr);
    } else if (kind == u"label" && parts.size() == 4) {
        image = label(QUrl::fromPercentEncoding(parts[1].toLatin1()), parts[2] == u"light", dpr);
    } else if (kind == u"symbol" && parts.size() == 5) {
        const double side = std::clamp(parts[3].toDouble(), 1.0, 512.0);
        image = Symbols::render(
            parts[1], QSize(int(std::ceil(side * boundedDpr(dpr))), int(std::ceil(side * boundedDpr(dpr)))),
            parseColor(parts[2]));
        image.setDevicePixelRatio(boundedDpr(dpr));
    } else if (kind == u"home" && parts.size() == 3) {
        image = home(parts[1].toDouble(), dpr);
    } else {
        image = QImage(1, 1, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
    }
    if (size)
        *size = image.size();
    return image;
}
