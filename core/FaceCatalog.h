#pragma once

#include <QList>
#include <QSizeF>
#include <QString>
#include <optional>

// The widget faces and the frames they are shown in, the same for the widget program and for the
// application's previews and pictures.
namespace FaceCatalog {

enum class Face
{
    Nearest,     // "Nearest Aircraft", small
    RadarSmall,  // "Sky Radar", small
    RadarMedium, // "Sky Radar", medium
    Board,       // "Sky Board", large
};

// Space between a face's frame and its content, and the rounding of the frame's corners, in points.
inline constexpr double padding = 14;
inline constexpr double cornerRadius = 22;

[[nodiscard]] QList<Face> all();
// A stable name for files and settings: "nearest", "radar-small", "radar-medium", "board".
[[nodiscard]] QString key(Face face);
[[nodiscard]] std::optional<Face> fromKey(const QString &key);
// The name a user picks a face by: "Nearest Aircraft", "Sky Radar" or "Sky Board".
[[nodiscard]] QString title(Face face);
// "Small", "Medium" or "Large".
[[nodiscard]] QString sizeName(Face face);
// The whole frame, padding included: 170 × 170, 364 × 170 or 364 × 382 points.
[[nodiscard]] QSizeF pointSize(Face face);

} // namespace FaceCatalog
