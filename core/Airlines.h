#pragma once

#include <QHash>
#include <QString>
#include <optional>

// Three-letter ICAO airline designators, and the test that tells an airline's callsign from a private one.
namespace Airlines {

// Upper-case designator -> name shown; built once, never changed.
[[nodiscard]] const QHash<QString, QString> &table();

// Trimmed and upper-cased: at least four characters (grapheme clusters), the first three letters, the
// fourth a number. What follows the fourth is not looked at.
[[nodiscard]] bool isAirlineCallsign(const std::optional<QString> &callsign);

// The name of the airline whose callsign this is; absent for a private callsign or an unknown designator.
[[nodiscard]] std::optional<QString> nameForCallsign(const std::optional<QString> &callsign);

} // namespace Airlines
