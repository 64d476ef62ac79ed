#include "RadarPlot.h"

#include "PlaneShape.h"
#include "RadarGeometry.h"

#include <QPainter>
#include <QPen>
#include <cmath>
#include <numbers>

RadarPlot::RadarPlot(const SkyEntry &entry, int maxBlips, const QSizeF &size)
    : m_palette(entry.palette()), m_side(std::min(size.width(), size.height())),
      m_centre(size.width() / 2, size.height() / 2)
{
    const RadarGeometry geometry(entry.radiusNM(), entry.home());
    const QList<Aircraft> &all = entry.aircraft();
    const qsizetype considered = std::clamp<qsizetype>(maxBlips, 0, all.size());
    for (qsizetype i = 0; i < considered; ++i) {
        const Aircraft &aircraft = all[i];
        const auto polar = geometry.polar(aircraft);
        if (!polar)
            continue;
        const double bearing = polar->bearingDeg * std::numbers::pi / 180.0;
        const double reach = radius() * polar->fraction * edgeInset;
        const QPointF centre(m_centre.x() + reach * std::sin(bearing),
                             m_centre.y() - reach * std::cos(bearing));
        m_blips.append(Blip{aircraft.hex(), centre, aircraft.track().value_or(polar->bearingDeg),
                            m_palette.blipColor(aircraft)});
    }
}

QList<QRectF> RadarPlot::rings() const
{
    QList<QRectF> circles;
    for (int i = 1; i <= 3; ++i) {
        const double diameter = m_side * i / 3;
        circles.append(QRectF(m_centre.x() - diameter / 2, m_centre.y() - diameter / 2, diameter, diameter));
    }
    return circles;
}

void RadarPlot::paint(QPainter &painter) const
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);

    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(m_palette.faint(), ringWidth));
    for (const QRectF &ring : rings())
        painter.drawEllipse(ring);

    const double r = radius();
    painter.setPen(QPen(m_palette.faint(), crosshairWidth));
    painter.drawLine(QPointF(m_centre.x() - r, m_centre.y()), QPointF(m_centre.x() + r, m_centre.y()));
    painter.drawLine(QPointF(m_centre.x(), m_centre.y() - r), QPointF(m_centre.x(), m_centre.y() + r));

    painter.setPen(Qt::NoPen);
    painter.setBrush(m_palette.phosphor());
    painter.drawEllipse(m_centre, homeDotSize / 2, homeDotSize / 2);

    // The outline points north, so turning it by the heading points it along the track.
    const QPainterPath glyph = PlaneShape::path(QRectF(-blipSize / 2, -blipSize / 2, blipSize, blipSize));
    for (const Blip &blip : m_blips) {
        painter.save();
        painter.translate(blip.centre);
        painter.rotate(blip.headingDeg);
        painter.fillPath(glyph, blip.color);
        painter.restore();
    }
    painter.restore();
}
