#pragma once

#include <QColor>
#include <QList>
#include <QString>
#include <optional>

// The five altitude bands that colour markers, list discs and trails, lowest first.
namespace AltitudeColors {

struct Band
{
    QString label;  // in thousands of feet: "<2", "2–10", ...
    qint64 lowerFeet; // the band begins here (the first band has no lower end)
    QColor color;
};

[[nodiscard]] const QList<Band> &bands();
// The band of an altitude; negative altitudes fall in the first. Absent for no altitude.
[[nodiscard]] std::optional<qsizetype> bandIndex(std::optional<qint64> feet);
// The band's colour, or `unknown` (the system gray) when there is no altitude.
[[nodiscard]] QColor color(std::optional<qint64> feet, const QColor &unknown);

} // namespace AltitudeColors
