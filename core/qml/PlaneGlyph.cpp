#include "PlaneGlyph.h"

#include "PlaneShape.h"

#include <QPainter>

PlaneGlyph::PlaneGlyph(QQuickItem *parent) : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
}

void PlaneGlyph::setColor(const QColor &color)
{
    if (color == m_color)
        return;
    m_color = color;
    emit colorChanged();
    update();
}

void PlaneGlyph::setHeading(double heading)
{
    if (heading == m_heading)
        return;
    m_heading = heading;
    emit headingChanged();
    update();
}

void PlaneGlyph::paint(QPainter *painter)
{
    const double side = std::min(width(), height());
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(width() / 2, height() / 2);
    painter->rotate(m_heading);
    painter->fillPath(PlaneShape::path(QRectF(-side / 2, -side / 2, side, side)), m_color);
}
