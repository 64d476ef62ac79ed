#pragma once

#include <QPainterPath>
#include <QRectF>
#include <QString>

// The outline of an aircraft seen from above, nose up, in a 112 by 112 design space centred on the origin.
namespace PlaneShape {

// The outline fitted into `rect`: one unit is the smaller side divided by 112, the origin at its centre.
[[nodiscard]] QPainterPath path(const QRectF &rect);
// The same outline as SVG path data in design units (for QML Shapes), origin at the centre.
[[nodiscard]] QString svgPathData();

} // namespace PlaneShape
