#include "CoordinateText.h"

#include "TextRules.h"

#include <charconv>
#include <cmath>

namespace CoordinateText {

std::optional<double> parse(const QString &text)
{
    QString trimmed = text;
    // Only spaces and tabs are trimmed; a line break inside the field counts as a character.
    while (!trimmed.isEmpty() && (trimmed.front() == u' ' || trimmed.front() == u'\t'))
        trimmed.remove(0, 1);
    while (!trimmed.isEmpty() && (trimmed.back() == u' ' || trimmed.back() == u'\t'))
        trimmed.chop(1);
    if (trimmed.isEmpty())
        return std::nullopt;
    const QByteArray bytes = trimmed.toUtf8();
    const char *begin = bytes.constData();
    const char *end = begin + bytes.size();
    // from_chars rejects a leading '+', as the platform's strict parser accepts it: allow one.
    if (*begin == '+' && begin + 1 < end && *(begin + 1) != '-')
        ++begin;
    double value = 0;
    const auto [stop, error] = std::from_chars(begin, end, value, std::chars_format::general);
    if (error == std::errc::result_out_of_range) {
        // Beyond a double: still a number, and certainly out of bounds.
        return std::copysign(HUGE_VAL, *begin == '-' ? -1.0 : 1.0);
    }
    if (error != std::errc() || stop != end)
        return std::nullopt;
    return value;
}

bool inBounds(double latitude, double longitude)
{
    return std::abs(latitude) <= 90 && std::abs(longitude) <= 180;
}

QString fiveDecimals(double degrees)
{
    return TextRules::fixedPoint(degrees, 5);
}

QString fourDecimals(double degrees)
{
    return TextRules::fixedPoint(degrees, 4);
}

} // namespace CoordinateText
