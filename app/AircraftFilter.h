#pragma once

#include "Aircraft.h"

#include <QList>
#include <QObject>
#include <QString>
#include <optional>

// The six classes the list can be narrowed to. Several filters add up: an aircraft shows when it
// matches any filter that is on.
namespace AircraftFilters {
Q_NAMESPACE

enum class AircraftFilter { Emergency, Military, Helicopters, Airliners, GeneralAviation, LowAltitude };
Q_ENUM_NS(AircraftFilter)

// In the order they are presented.
[[nodiscard]] const QList<AircraftFilter> &all();
// The text that names a filter, stored and shown: "emergency", "generalAviation", ...
[[nodiscard]] QString rawValue(AircraftFilter filter);
[[nodiscard]] std::optional<AircraftFilter> fromRawValue(QStringView text);
[[nodiscard]] bool matches(AircraftFilter filter, const Aircraft &aircraft);

} // namespace AircraftFilters

using AircraftFilter = AircraftFilters::AircraftFilter;

inline size_t qHash(AircraftFilter filter, size_t seed = 0) noexcept
{
    return ::qHash(int(filter), seed);
}
