#include "RadarScope.h"

#include "RadarPlot.h"

#include <QPainter>

RadarScope::RadarScope(QQuickItem *parent) : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
}

void RadarScope::setEntry(const SkyEntry &entry)
{
    if (entry == m_entry)
        return;
    m_entry = entry;
    emit entryChanged();
    update();
}

void RadarScope::setMaxBlips(int maxBlips)
{
    if (maxBlips == m_maxBlips)
        return;
    m_maxBlips = maxBlips;
    emit maxBlipsChanged();
    emit entryChanged(); // the plotted count follows
    update();
}

int RadarScope::plottedCount() const
{
    return int(RadarPlot(m_entry, m_maxBlips, size()).blips().size());
}

void RadarScope::paint(QPainter *painter)
{
    RadarPlot(m_entry, m_maxBlips, size()).paint(*painter);
}
