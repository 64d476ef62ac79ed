#include "SymbolIcon.h"

#include "Symbols.h"

#include <QPainter>
#include <QQuickWindow>
#include <cmath>

SymbolIcon::SymbolIcon(QQuickItem *parent) : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
}

void SymbolIcon::setName(const QString &name)
{
    if (name == m_name)
        return;
    m_name = name;
    emit nameChanged();
    update();
}

void SymbolIcon::setColor(const QColor &color)
{
    if (color == m_color)
        return;
    m_color = color;
    emit colorChanged();
    update();
}

void SymbolIcon::paint(QPainter *painter)
{
    // The icon is drawn at the pixels the item really covers, not scaled up from its point size.
    const qreal ratio = window() ? window()->effectiveDevicePixelRatio() : 1.0;
    const QSize pixels(int(std::ceil(width() * ratio)), int(std::ceil(height() * ratio)));
    QImage image = Symbols::render(m_name, pixels, m_color);
    image.setDevicePixelRatio(ratio);
    painter->drawImage(QPointF(0, 0), image);
}
