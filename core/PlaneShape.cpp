#include "PlaneShape.h"

#include <QTransform>
#include <array>

namespace PlaneShape {

namespace {

constexpr double designSize = 112.0;

// The straight stretch between the two curves at the nose.
constexpr std::array<QPointF, 20> body{{{6, -16}, {50, 8},  {50, 15}, {7, 8},    {5, 36},  {21, 48}, {21, 54},
                                        {4, 50},  {4, 56},  {0, 56},  {-4, 56},  {-4, 50}, {-21, 54}, {-21, 48},
                                        {-5, 36}, {-7, 8},  {-50, 15}, {-50, 8}, {-6, -16}, {-6, -46}}};

QPainterPath designPath()
{
    QPainterPath path;
    path.moveTo(0, -56);
    path.cubicTo(4, -54, 6, -50, 6, -46);
    for (const QPointF &point : body)
        path.lineTo(point);
    path.cubicTo(-6, -50, -4, -54, 0, -56);
    path.closeSubpath();
    return path;
}

} // namespace

QPainterPath path(const QRectF &rect)
{
    const double unit = std::min(rect.width(), rect.height()) / designSize;
    QTransform transform;
    transform.translate(rect.center().x(), rect.center().y());
    transform.scale(unit, unit);
    return transform.map(designPath());
}

QString svgPathData()
{
    QString data = u"M 0 -56 C 4 -54 6 -50 6 -46"_qs;
    for (const QPointF &point : body)
        data += u" L %1 %2"_qs.arg(point.x()).arg(point.y());
    data += u" C -6 -50 -4 -54 0 -56 Z"_qs;
    return data;
}

} // namespace PlaneShape
