#include "TileRenderer.h"

#include "PixelFont.h"

#include <QBuffer>
#include <QPainter>
#include <array>
#include <cmath>
#include <numbers>
#include <vector>

namespace {

// Waves of the land function: amplitude, and frequencies and phases in latitude and longitude (per
// degree). Each is a product of a function of longitude and one of latitude, so a tile works each out
// once per column and once per row. Finer waves are weaker: continents first, then coastlines.
struct Wave
{
    double amplitude;
    double lonFrequency;
    double lonPhase;
    double latFrequency;
    double latPhase;
};

constexpr std::array<Wave, 7> waves{{
    {1.00, 0.031, 0.4, 0.043, 1.1},
    {0.55, 0.083, 2.1, 0.071, 0.3},
    {0.30, 0.37, 1.3, 0.29, 2.6},
    {0.16, 1.9, 0.7, 1.7, 1.9},
    {0.09, 9.1, 2.9, 8.3, 0.5},
    {0.05, 47.0, 1.7, 41.0, 2.2},
    {0.03, 230.0, 0.9, 210.0, 1.4},
}};

double latitudeOfRow(double globalRow, double worldPixels)
{
    const double n = std::numbers::pi * (1.0 - 2.0 * globalRow / worldPixels);
    return std::atan(std::sinh(n)) * 180.0 / std::numbers::pi;
}

double longitudeOfColumn(double globalColumn, double worldPixels)
{
    return globalColumn / worldPixels * 360.0 - 180.0;
}

// Small deterministic grain for the imagery, from a pixel's place in the world.
int grain(qint64 column, qint64 row)
{
    quint64 h = quint64(column) * 0x9E3779B97F4A7C15ULL ^ quint64(row) * 0xC2B2AE3D27D4EB4FULL;
    h ^= h >> 29;
    h *= 0xBF58476D1CE4E5B9ULL;
    h ^= h >> 32;
    return int(h % 17) - 8;
}

QRgb mixed(QRgb a, QRgb b, double t)
{
    auto channel = [t](int x, int y) { return int(std::lround(x + (y - x) * t)); };
    return qRgb(channel(qRed(a), qRed(b)), channel(qGreen(a), qGreen(b)), channel(qBlue(a), qBlue(b)));
}

QRgb shifted(QRgb colour, int by)
{
    auto clamp = [](int v) { return std::clamp(v, 0, 255); };
    return qRgb(clamp(qRed(colour) + by), clamp(qGreen(colour) + by), clamp(qBlue(colour) + by));
}

} // namespace

bool TileRenderer::isValid(int zoom, qint64 x, qint64 y)
{
    if (zoom < 0 || zoom > maxZoom)
        return false;
    const qint64 side = qint64(1) << zoom;
    return x >= 0 && y >= 0 && x < side && y < side;
}

double TileRenderer::landness(double lat, double lon)
{
    double sum = 0.0;
    for (const Wave &wave : waves)
        sum += wave.amplitude * std::sin(wave.lonFrequency * lon + wave.lonPhase) *
               std::cos(wave.latFrequency * lat + wave.latPhase);
    return sum - 0.1;
}

QImage TileRenderer::render(Style style, int zoom, int x, int y)
{
    const bool labels = style == Style::Labels;
    QImage image(tileSize, tileSize, labels ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    const QString name = u"%1/%2/%3"_qs.arg(zoom).arg(x).arg(y);

    if (labels) {
        image.fill(Qt::transparent);
    } else {
        const double worldPixels = double(tileSize) * std::ldexp(1.0, zoom);
        std::vector<std::array<double, waves.size()>> columns(tileSize);
        std::vector<std::array<double, waves.size()>> rows(tileSize);
        for (int i = 0; i < tileSize; ++i) {
            const double lon = longitudeOfColumn(double(x) * tileSize + i + 0.5, worldPixels);
            const double lat = latitudeOfRow(double(y) * tileSize + i + 0.5, worldPixels);
            for (std::size_t k = 0; k < waves.size(); ++k) {
                columns[std::size_t(i)][k] =
                    waves[k].amplitude * std::sin(waves[k].lonFrequency * lon + waves[k].lonPhase);
                rows[std::size_t(i)][k] = std::cos(waves[k].latFrequency * lat + waves[k].latPhase);
            }
        }
        const bool imagery = style == Style::Imagery;
        for (int row = 0; row < tileSize; ++row) {
            auto *line = reinterpret_cast<QRgb *>(image.scanLine(row));
            for (int column = 0; column < tileSize; ++column) {
                double land = -0.1;
                for (std::size_t k = 0; k < waves.size(); ++k)
                    land += columns[std::size_t(column)][k] * rows[std::size_t(row)][k];
                QRgb colour;
                if (imagery) {
                    colour = land < 0.0
                                 ? mixed(qRgb(0x2a, 0x4d, 0x6e), qRgb(0x12, 0x26, 0x3d),
                                         std::min(1.0, -land * 2.0))
                                 : mixed(qRgb(0x5b, 0x6e, 0x3a), qRgb(0x8a, 0x7a, 0x55), std::min(1.0, land));
                    colour =
                        shifted(colour, grain(qint64(x) * tileSize + column, qint64(y) * tileSize + row));
                } else if (land < 0.0) {
                    colour = qRgb(0xaa, 0xd3, 0xdf);
                } else {
                    colour = land < 0.06 ? qRgb(0xc8, 0xfa, 0xcc) : qRgb(0xf2, 0xef, 0xe9);
                }
                line[column] = colour;
            }
        }
    }

    QPainter painter(&image);
    const QColor ink = style == Style::Standard ? QColor(0x55, 0x55, 0x55) : QColor(Qt::white);
    if (!labels) {
        // The tile's edges, so that a misplaced tile shows.
        painter.setPen(style == Style::Standard ? QColor(0xd0, 0xcc, 0xc4) : QColor(0x30, 0x30, 0x30));
        painter.drawLine(0, tileSize - 1, tileSize - 1, tileSize - 1);
        painter.drawLine(tileSize - 1, 0, tileSize - 1, tileSize - 1);
    }
    const int scale = 2;
    const QSize textSize = PixelFont::size(name, scale);
    const QPoint at((tileSize - textSize.width()) / 2, (tileSize - textSize.height()) / 2);
    if (style != Style::Standard)
        PixelFont::draw(painter, at + QPoint(1, 1), name, scale, QColor(0, 0, 0, 200));
    PixelFont::draw(painter, at, name, scale, ink);
    return image;
}

QByteArray TileRenderer::png(Style style, int zoom, int x, int y)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    render(style, zoom, x, y).save(&buffer, "PNG");
    return bytes;
}
