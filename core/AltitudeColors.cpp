#include "AltitudeColors.h"

#include <limits>

namespace AltitudeColors {

const QList<Band> &bands()
{
    static const QList<Band> table{
        {u"<2"_qs, std::numeric_limits<qint64>::min(), QColor::fromRgbF(1.0f, 0.45f, 0.2f)},
        {u"2–10"_qs, 2000, QColor::fromRgbF(1.0f, 0.78f, 0.0f)},
        {u"10–20"_qs, 10000, QColor::fromRgbF(0.3f, 0.78f, 0.3f)},
        {u"20–30"_qs, 20000, QColor::fromRgbF(0.2f, 0.72f, 0.9f)},
        {u"30+"_qs, 30000, QColor::fromRgbF(0.5f, 0.5f, 1.0f)},
    };
    return table;
}

std::optional<qsizetype> bandIndex(std::optional<qint64> feet)
{
    if (!feet)
        return std::nullopt;
    qsizetype index = 0;
    for (qsizetype i = 1; i < bands().size(); ++i) {
        if (*feet >= bands()[i].lowerFeet)
            index = i;
    }
    return index;
}

QColor color(std::optional<qint64> feet, const QColor &unknown)
{
    const auto index = bandIndex(feet);
    return index ? bands()[*index].color : unknown;
}

} // namespace AltitudeColors
