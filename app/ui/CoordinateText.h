#pragma once

#include <QString>
#include <optional>

// Reading and writing coordinates the way the home setup does: strict decimal numbers, a point as decimal
// mark whatever the locale.
namespace CoordinateText {

// Blanks and tabs around are fine; anything else beside the number fails ("45,6" and "45.6N" fail).
// Exponent forms are numbers ("1e1" is 10), and so are "nan" and "inf", which the bounds then refuse.
[[nodiscard]] std::optional<double> parse(const QString &text);
// Latitude within -90...90 and longitude within -180...180, bounds included.
[[nodiscard]] bool inBounds(double latitude, double longitude);
// "%.5f" and "%.4f" as the fields and the found-point label write them.
[[nodiscard]] QString fiveDecimals(double degrees);
[[nodiscard]] QString fourDecimals(double degrees);

} // namespace CoordinateText
