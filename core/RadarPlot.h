#pragma once

#include "SkyEntry.h"

#include <QColor>
#include <QList>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>

class QPainter;

// The round scope of one entry laid out in a given space: three rings at thirds of the radius, a
// crosshair, the home dot in the centre and one airplane glyph per aircraft that can be placed. North is
// up. Painting is vector drawing, so it is sharp at every size and pixel density.
class RadarPlot
{
public:
    struct Blip
    {
        QString hex;
        QPointF centre;
        double headingDeg = 0; // where the nose points, clockwise from north
        QColor color;
    };

    // Keeps a blip on the edge inside the outer ring.
    static constexpr double edgeInset = 0.94;
    static constexpr double homeDotSize = 5;
    static constexpr double blipSize = 9;
    static constexpr double ringWidth = 1;
    static constexpr double crosshairWidth = 0.5;

    // Only the first maxBlips aircraft of the entry (the nearest) are considered.
    RadarPlot(const SkyEntry &entry, int maxBlips, const QSizeF &size);

    [[nodiscard]] double side() const { return m_side; }
    [[nodiscard]] double radius() const { return m_side / 2; }
    [[nodiscard]] QPointF centre() const { return m_centre; }
    // The circles of the rings, innermost first; the last one is the scope's edge.
    [[nodiscard]] QList<QRectF> rings() const;
    // In drawing order: later ones are drawn over earlier ones.
    [[nodiscard]] const QList<Blip> &blips() const { return m_blips; }

    void paint(QPainter &painter) const;

private:
    ScopePalette m_palette;
    double m_side;
    QPointF m_centre;
    QList<Blip> m_blips;
};
