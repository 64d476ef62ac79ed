#include "FaceProbe.h"

#include <cmath>
#include <numbers>

namespace FaceProbe {

namespace {

// The small face is 170 points square with 14 of padding on every side.
constexpr double faceSide = 170;
constexpr double padding = 14;

} // namespace

QPoint radarSmallCentre(double scale)
{
    return QPoint(int(std::lround(faceSide / 2 * scale)), int(std::lround(faceSide / 2 * scale)));
}

QPoint radarSmallPixel(double fraction, double bearingDeg, double scale)
{
    const double radius = (faceSide - 2 * padding) / 2;
    const double bearing = bearingDeg * std::numbers::pi / 180;
    const double x = faceSide / 2 + radius * fraction * 0.94 * std::sin(bearing);
    const double y = faceSide / 2 - radius * fraction * 0.94 * std::cos(bearing);
    return QPoint(int(std::lround(x * scale)), int(std::lround(y * scale)));
}

bool sameColor(const QColor &a, const QColor &b, int tolerance)
{
    const QColor x = a.toRgb();
    const QColor y = b.toRgb();
    return std::abs(x.red() - y.red()) <= tolerance && std::abs(x.green() - y.green()) <= tolerance &&
           std::abs(x.blue() - y.blue()) <= tolerance && std::abs(x.alpha() - y.alpha()) <= tolerance;
}

bool colorNear(const QImage &image, QPoint centre, int radius, const QColor &color, int tolerance)
{
    for (int y = centre.y() - radius; y <= centre.y() + radius; ++y) {
        for (int x = centre.x() - radius; x <= centre.x() + radius; ++x) {
            if (image.rect().contains(x, y) && sameColor(image.pixelColor(x, y), color, tolerance))
                return true;
        }
    }
    return false;
}

QString describe(const QColor &color)
{
    return color.name(QColor::HexArgb);
}

} // namespace FaceProbe
