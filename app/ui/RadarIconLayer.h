#pragma once

#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

// One still layer of the About window's radar icon, drawn once for its size: the backdrop (shadow,
// gradient square and the three fixed rings) or the aircraft on top. The moving ping lies between the
// two, so that it is the only thing that redraws. Every length follows `side`, the icon's side; the
// backdrop layer reaches `margin` beyond the icon on every side for its shadow.
class RadarIconLayer : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(Part part READ part WRITE setPart NOTIFY changed)
    Q_PROPERTY(qreal side READ side WRITE setSide NOTIFY changed)
    Q_PROPERTY(qreal margin READ margin WRITE setMargin NOTIFY changed)

public:
    enum class Part
    {
        Backdrop,
        Plane
    };
    Q_ENUM(Part)

    explicit RadarIconLayer(QQuickItem *parent = nullptr);

    [[nodiscard]] Part part() const { return m_part; }
    void setPart(Part part);
    [[nodiscard]] qreal side() const { return m_side; }
    void setSide(qreal side);
    [[nodiscard]] qreal margin() const { return m_margin; }
    void setMargin(qreal margin);

    void paint(QPainter *painter) override;

signals:
    void changed();

private:
    void paintBackdrop(QPainter *painter) const;
    void paintPlane(QPainter *painter) const;

    Part m_part = Part::Backdrop;
    qreal m_side = 128;
    qreal m_margin = 0;
};
