#include "BarChartLook.h"

#include <QAbstractAxis>
#include <QAbstractBarSeries>
#include <QBarSet>
#include <QLinearGradient>
#include <QPen>
#include <QValueAxis>
#include <cmath>

BarChartLook::BarChartLook(QObject *parent) : QObject(parent) {}

QObject *BarChartLook::series() const
{
    return m_series;
}

void BarChartLook::setSeries(QObject *series)
{
    auto *bars = qobject_cast<QAbstractBarSeries *>(series);
    if (bars == m_series)
        return;
    if (m_series)
        disconnect(m_series, nullptr, this, nullptr);
    m_series = bars;
    if (m_series) {
        connect(m_series, &QAbstractBarSeries::barsetsAdded, this, [this] { watchBars(); });
        connect(m_series, &QAbstractBarSeries::barsetsRemoved, this, [this] { watchBars(); });
    }
    watchBars();
    emit changed();
}

QObject *BarChartLook::categoryAxis() const
{
    return m_categoryAxis;
}

void BarChartLook::setCategoryAxis(QObject *axis)
{
    auto *typed = qobject_cast<QAbstractAxis *>(axis);
    if (typed == m_categoryAxis)
        return;
    if (m_categoryAxis)
        disconnect(m_categoryAxis, nullptr, this, nullptr);
    m_categoryAxis = typed;
    watchAxis(m_categoryAxis);
    applyAxes();
    emit changed();
}

QObject *BarChartLook::valueAxis() const
{
    return m_valueAxis;
}

void BarChartLook::setValueAxis(QObject *axis)
{
    auto *typed = qobject_cast<QValueAxis *>(axis);
    if (typed == m_valueAxis)
        return;
    if (m_valueAxis)
        disconnect(m_valueAxis, nullptr, this, nullptr);
    m_valueAxis = typed;
    watchAxis(m_valueAxis);
    applyAxes();
    applyRange();
    emit changed();
}

void BarChartLook::setColor(const QColor &color)
{
    if (color == m_color)
        return;
    m_color = color;
    applyBars();
    emit changed();
}

void BarChartLook::setTextColor(const QColor &color)
{
    if (color == m_textColor)
        return;
    m_textColor = color;
    applyAxes();
    emit changed();
}

void BarChartLook::setLineColor(const QColor &color)
{
    if (color == m_lineColor)
        return;
    m_lineColor = color;
    applyAxes();
    emit changed();
}

int BarChartLook::ceilingFor(qreal tallest)
{
    const int steps = valueTicks - 1;
    if (!(tallest > 0))
        return steps;
    const qreal wanted = tallest / steps;
    for (qreal magnitude = 1;; magnitude *= 10) {
        for (const qreal mantissa : {1.0, 1.5, 2.0, 2.5, 3.0, 4.0, 5.0, 6.0, 8.0}) {
            const qreal step = mantissa * magnitude;
            // Counts are whole: a step with a fraction would put one on the axis.
            if (step != std::floor(step))
                continue;
            if (step >= wanted)
                return int(step * steps);
        }
    }
}

void BarChartLook::watchBars()
{
    for (const QMetaObject::Connection &connection : std::as_const(m_barConnections))
        disconnect(connection);
    m_barConnections.clear();
    if (m_series) {
        for (QBarSet *set : m_series->barSets()) {
            m_barConnections.append(connect(set, &QBarSet::valuesAdded, this, &BarChartLook::applyRange));
            m_barConnections.append(connect(set, &QBarSet::valuesRemoved, this, &BarChartLook::applyRange));
            m_barConnections.append(connect(set, &QBarSet::valueChanged, this, &BarChartLook::applyRange));
        }
    }
    applyBars();
    applyRange();
}

void BarChartLook::applyBars()
{
    if (!m_series)
        return;
    // Full colour at the top of each bar, fading towards the axis: the gradient runs over each bar's
    // own box, so short and tall bars look alike.
    QLinearGradient gradient(0, 0, 0, 1);
    gradient.setCoordinateMode(QGradient::ObjectBoundingMode);
    QColor bottom = m_color;
    bottom.setAlphaF(0.45f);
    gradient.setColorAt(0, m_color);
    gradient.setColorAt(1, bottom);
    for (QBarSet *set : m_series->barSets()) {
        set->setBrush(gradient);
        set->setPen(Qt::NoPen);
    }
}

void BarChartLook::applyAxis(QAbstractAxis *axis)
{
    if (!axis)
        return;
    axis->setLabelsColor(m_textColor);
    axis->setTitleBrush(m_textColor);
    axis->setLinePenColor(m_lineColor);
    axis->setGridLineColor(m_lineColor);
    axis->setShadesVisible(false);
    matchTitleFont(axis);
}

void BarChartLook::matchTitleFont(QAbstractAxis *axis)
{
    // The title in the labels' font, not the chart theme's own, however late either is set.
    if (axis && axis->titleFont() != axis->labelsFont())
        axis->setTitleFont(axis->labelsFont());
}

void BarChartLook::watchAxis(QAbstractAxis *axis)
{
    if (!axis)
        return;
    connect(axis, &QAbstractAxis::labelsFontChanged, this, [this, axis] { matchTitleFont(axis); });
    connect(axis, &QAbstractAxis::titleFontChanged, this, [this, axis] { matchTitleFont(axis); });
}

void BarChartLook::applyAxes()
{
    applyAxis(m_categoryAxis);
    applyAxis(m_valueAxis);
}

void BarChartLook::applyRange()
{
    qreal tallest = 0;
    if (m_series) {
        for (const QBarSet *set : m_series->barSets()) {
            for (int i = 0; i < set->count(); ++i)
                tallest = std::max(tallest, set->at(i));
        }
    }
    const int ceiling = ceilingFor(tallest);
    if (m_valueAxis) {
        m_valueAxis->setRange(0, ceiling);
        m_valueAxis->setTickCount(valueTicks);
        m_valueAxis->setLabelFormat(u"%d"_qs);
    }
    if (ceiling != m_valueCeiling) {
        m_valueCeiling = ceiling;
        emit valueCeilingChanged();
    }
}
