#pragma once

#include "Aircraft.h"
#include "SkyEntry.h"

#include <QDateTime>
#include <QLocale>
#include <QString>

// The short texts of the widget faces. Numbers follow the given locale, the user's by default.
namespace WidgetText {

// "GND", "—" without any altitude, "12,500ft" below 18,000 feet, a flight level ("FL240") from there up.
[[nodiscard]] QString shortAltitude(const Aircraft &aircraft, const QLocale &locale = QLocale());
// The whole number of a radius, cut rather than rounded: 25.7 is "25".
[[nodiscard]] QString wholeNumber(double value);
// The time of day alone, in the locale's short form.
[[nodiscard]] QString shortTime(const QDateTime &date, const QLocale &locale = QLocale());
// "as of " and the short time.
[[nodiscard]] QString asOf(const QDateTime &date, const QLocale &locale = QLocale());
// Type designator and registration, those known, joined by " · "; empty when neither is.
[[nodiscard]] QString identityLine(const Aircraft &aircraft);
// Distance in the unit and altitude, as "3.7 mi · 12,500 ft"; empty without a distance.
[[nodiscard]] QString rangeLine(const Aircraft &aircraft, const QString &unit,
                                const QLocale &locale = QLocale());
// "5 in range · 14:05".
[[nodiscard]] QString footLine(const SkyEntry &entry, const QLocale &locale = QLocale());
// "5 AIRCRAFT · 25 NM".
[[nodiscard]] QString countHead(const SkyEntry &entry);
// "25 NM · 14:05".
[[nodiscard]] QString boardHead(const SkyEntry &entry, const QLocale &locale = QLocale());

} // namespace WidgetText
