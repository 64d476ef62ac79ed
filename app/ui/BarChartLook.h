#pragma once

#include <QColor>
#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

class QAbstractAxis;
class QAbstractBarSeries;
class QBarSet;
class QValueAxis;

// The look of one bar chart of the Logbook: bars filled with a gradient of one colour, axis labels,
// titles and grid in the window's shades, and a value axis from zero to a round number above the tallest
// bar. QML's BarSet takes no gradient and an axis title takes no plain colour, so this sets both on the
// chart objects directly, and again whenever a colour or the bars change.
class BarChartLook : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QObject *series READ series WRITE setSeries NOTIFY changed)
    Q_PROPERTY(QObject *categoryAxis READ categoryAxis WRITE setCategoryAxis NOTIFY changed)
    Q_PROPERTY(QObject *valueAxis READ valueAxis WRITE setValueAxis NOTIFY changed)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY changed)
    Q_PROPERTY(QColor textColor READ textColor WRITE setTextColor NOTIFY changed)
    Q_PROPERTY(QColor lineColor READ lineColor WRITE setLineColor NOTIFY changed)
    // The top of the value axis, for a look from tests and screen readers alike.
    Q_PROPERTY(int valueCeiling READ valueCeiling NOTIFY valueCeilingChanged)

public:
    // Marks on the value axis, zero included.
    static constexpr int valueTicks = 5;

    explicit BarChartLook(QObject *parent = nullptr);

    [[nodiscard]] QObject *series() const;
    void setSeries(QObject *series);
    [[nodiscard]] QObject *categoryAxis() const;
    void setCategoryAxis(QObject *axis);
    [[nodiscard]] QObject *valueAxis() const;
    void setValueAxis(QObject *axis);
    [[nodiscard]] QColor color() const { return m_color; }
    void setColor(const QColor &color);
    [[nodiscard]] QColor textColor() const { return m_textColor; }
    void setTextColor(const QColor &color);
    [[nodiscard]] QColor lineColor() const { return m_lineColor; }
    void setLineColor(const QColor &color);
    [[nodiscard]] int valueCeiling() const { return m_valueCeiling; }

    // The smallest round top of a value axis with valueTicks marks on whole numbers that the tallest bar
    // fits under: four equal whole steps of 1, 1.5, 2, 2.5, 3, 4, 5, 6 or 8 times a power of ten.
    [[nodiscard]] static int ceilingFor(qreal tallest);

signals:
    void changed();
    void valueCeilingChanged();

private:
    void watchBars();
    void applyBars();
    void applyAxis(QAbstractAxis *axis);
    void matchTitleFont(QAbstractAxis *axis);
    void watchAxis(QAbstractAxis *axis);
    void applyAxes();
    void applyRange();

    QPointer<QAbstractBarSeries> m_series;
    QPointer<QAbstractAxis> m_categoryAxis;
    QPointer<QValueAxis> m_valueAxis;
    QColor m_color = Qt::blue;
    QColor m_textColor = Qt::black;
    QColor m_lineColor = Qt::gray;
    int m_valueCeiling = valueTicks - 1;
    QList<QMetaObject::Connection> m_barConnections;
};
