#include "MapPolylineLayer.h"

#include "TileMath.h"

#include <QPainter>

MapPolylineLayer::MapPolylineLayer(QQuickItem *parent) : MapPaintedLayer(parent) {}

QVariantList MapPolylineLayer::polylines() const
{
    QVariantList list;
    for (const Line &line : m_lines) {
        QVariantList path;
        for (const QPointF &point : line.path)
            path.append(QVariantMap{{u"latitude"_qs, point.x()}, {u"longitude"_qs, point.y()}});
        list.append(QVariantMap{{u"path"_qs, path}, {u"color"_qs, line.color}, {u"width"_qs, line.width}});
    }
    return list;
}

void MapPolylineLayer::setPolylines(const QVariantList &polylines)
{
    QList<Line> lines;
    for (const QVariant &entry : polylines) {
        const QVariantMap map = entry.toMap();
        Line line;
        for (const QVariant &point : map.value(u"path"_qs).toList()) {
            const QVariantMap coordinate = point.toMap();
            line.path.append(QPointF(coordinate.value(u"latitude"_qs).toDouble(),
                                     coordinate.value(u"longitude"_qs).toDouble()));
        }
        line.color = map.value(u"color"_qs).value<QColor>();
        line.width = map.value(u"width"_qs, 1.0).toDouble();
        lines.append(line);
    }
    setLines(std::move(lines));
}

void MapPolylineLayer::setLines(QList<Line> lines)
{
    if (lines == m_lines)
        return;
    m_lines = std::move(lines);
    m_world.clear();
    m_world.reserve(m_lines.size());
    for (const Line &line : std::as_const(m_lines)) {
        QList<QPointF> world;
        world.reserve(line.path.size());
        for (const QPointF &point : line.path)
            world.append(TileMath::worldPoint(point.x(), point.y()));
        m_world.append(world);
    }
    emit polylinesChanged();
    contentChanged();
}

void MapPolylineLayer::paintContent(QPainter &painter, const Projection &project, const QRectF &bounds)
{
    QPolygonF points;
    for (qsizetype i = 0; i < m_lines.size(); ++i) {
        const Line &line = m_lines[i];
        const QList<QPointF> &world = m_world[i];
        if (world.size() < 2 || line.color.alpha() == 0 || line.width <= 0)
            continue;
        points.resize(world.size());
        for (qsizetype p = 0; p < world.size(); ++p)
            points[p] = project(world[p]);
        // Lines wholly outside the image cost nothing to leave out.
        if (!points.boundingRect()
                 .adjusted(-line.width, -line.width, line.width, line.width)
                 .intersects(bounds))
            continue;
        painter.setPen(QPen(line.color, line.width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPolyline(points);
    }
}
