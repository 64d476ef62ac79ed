#pragma once

#include "MapPaintedLayer.h"

#include <QColor>
#include <QList>
#include <QVariantList>

// Lines on the map: each a list of coordinates joined straight, with round caps and joins, in one colour
// and width. QML gives them as `polylines`, a list of {path: [{latitude, longitude}, ...], color, width};
// C++ hands a whole list over at once with setLines().
class MapPolylineLayer : public MapPaintedLayer
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QVariantList polylines READ polylines WRITE setPolylines NOTIFY polylinesChanged)

public:
    struct Line
    {
        QList<QPointF> path; // (latitude, longitude) pairs
        QColor color;
        double width = 1;
        bool operator==(const Line &) const = default;
    };

    explicit MapPolylineLayer(QQuickItem *parent = nullptr);

    [[nodiscard]] QVariantList polylines() const;
    void setPolylines(const QVariantList &polylines);
    [[nodiscard]] const QList<Line> &lines() const { return m_lines; }
    void setLines(QList<Line> lines);

signals:
    void polylinesChanged();

protected:
    void paintContent(QPainter &painter, const Projection &project, const QRectF &bounds) override;

private:
    QList<Line> m_lines;
    // World coordinates of each line's points, worked out once per change of the lines.
    QList<QList<QPointF>> m_world;
};
