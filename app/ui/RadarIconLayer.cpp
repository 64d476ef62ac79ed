#include "RadarIconLayer.h"

#include "PlaneShape.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

RadarIconLayer::RadarIconLayer(QQuickItem *parent) : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
}

void RadarIconLayer::setPart(Part part)
{
    if (m_part == part)
        return;
    m_part = part;
    update();
    emit changed();
}

void RadarIconLayer::setSide(qreal side)
{
    if (qFuzzyCompare(m_side, side))
        return;
    m_side = side;
    update();
    emit changed();
}

void RadarIconLayer::setMargin(qreal margin)
{
    if (qFuzzyCompare(m_margin, margin))
        return;
    m_margin = margin;
    update();
    emit changed();
}

void RadarIconLayer::paint(QPainter *painter)
{
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(m_margin, m_margin);
    if (m_part == Part::Backdrop)
        paintBackdrop(painter);
    else
        paintPlane(painter);
}

void RadarIconLayer::paintBackdrop(QPainter *painter) const
{
    const qreal s = m_side;
    const QRectF square(0, 0, s, s);
    const qreal radius = s * 0.226;

    // A soft shadow, 3 points down: black at 0.25 spread over about 6 points, laid down as rings of
    // falling strength, which keeps the layer a plain painting with no effect pass.
    const qreal blur = 6;
    const int steps = 12;
    painter->setPen(Qt::NoPen);
    for (int i = steps; i >= 1; --i) {
        const qreal grow = blur * qreal(i) / steps;
        const qreal weight = 1.0 - qreal(i - 1) / steps;
        QColor shade(0, 0, 0);
        shade.setAlphaF(float(0.25 * weight * weight / steps * 3.0));
        painter->setBrush(shade);
        painter->drawRoundedRect(square.translated(0, 3).adjusted(-grow, -grow, grow, grow), radius + grow,
                                 radius + grow);
    }

    QLinearGradient gradient(square.topLeft(), square.bottomLeft());
    gradient.setColorAt(0, QColor::fromRgbF(0.1f, 0.24f, 0.5f));
    gradient.setColorAt(1, QColor::fromRgbF(0.02f, 0.06f, 0.17f));
    painter->setBrush(gradient);
    painter->drawRoundedRect(square, radius, radius);

    // The scope sits a little below the middle.
    const QPointF centre(s / 2, s / 2 + s * 0.03);
    QColor ring(255, 255, 255);
    ring.setAlphaF(0.15f);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen(ring, s * 0.007));
    for (const qreal diameter : {0.27, 0.49, 0.7}) {
        const qreal r = s * diameter / 2;
        painter->drawEllipse(centre, r, r);
    }
}

void RadarIconLayer::paintPlane(QPainter *painter) const
{
    const qreal s = m_side;
    const QPointF centre(s / 2, s / 2 + s * 0.03 - s * 0.038);
    const qreal width = s * 0.4;
    const qreal height = s * 0.45;
    painter->translate(centre);
    painter->rotate(45); // clockwise on screen: heading to the upper right
    painter->setPen(Qt::NoPen);
    painter->setBrush(Qt::white);
    painter->drawPath(PlaneShape::path(QRectF(-width / 2, -height / 2, width, height)));
}
