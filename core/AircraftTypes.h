#pragma once

#include <QHash>
#include <QString>
#include <optional>

// ICAO type designators to the names people read.
namespace AircraftTypes {

// Upper-case designator -> display name; built once, never changed.
[[nodiscard]] const QHash<QString, QString> &table();

// Upper-cases the code (no trimming) and looks it up; absent for an absent or unknown code.
[[nodiscard]] std::optional<QString> name(const std::optional<QString> &code);

} // namespace AircraftTypes
