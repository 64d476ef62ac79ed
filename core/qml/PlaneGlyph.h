#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

// The airplane glyph of the rows, filled in one colour and pointing along a heading (0 is north, the
// nose up; 90 points east).
class PlaneGlyph : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    Q_PROPERTY(double heading READ heading WRITE setHeading NOTIFY headingChanged)

public:
    explicit PlaneGlyph(QQuickItem *parent = nullptr);

    [[nodiscard]] QColor color() const { return m_color; }
    void setColor(const QColor &color);
    [[nodiscard]] double heading() const { return m_heading; }
    void setHeading(double heading);

    void paint(QPainter *painter) override;

signals:
    void colorChanged();
    void headingChanged();

private:
    QColor m_color = Qt::white;
    double m_heading = 0;
};
