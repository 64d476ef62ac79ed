#include "Aircraft.h"

#include "AircraftTypes.h"
#include "Airlines.h"
#include "FeedDecoder.h"
#include "PackedText.h"
#include "TextRules.h"

#include <QVariantMap>
#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <vector>

namespace {

constexpr double milesPerNauticalMile = 1.15078;
constexpr double kilometresPerNauticalMile = 1.852;
constexpr double metresPerNauticalMile = 1852.0;
constexpr double metresPerFoot = 0.3048;
// Rates smaller than this, either way, count as level flight.
constexpr qint64 levelFlightBand = 64;

template <typename T>
QVariant toVariant(const std::optional<T> &value)
{
    return value ? QVariant::fromValue(*value) : QVariant();
}

// A number with the locale's digit grouping; magnitudes as unsigned so that the smallest integer can't
// overflow when its sign is dropped.
QString groupedMagnitude(qint64 value, const QLocale &locale)
{
    const quint64 magnitude = value < 0 ? quint64(0) - quint64(value) : quint64(value);
    return locale.toString(qulonglong(magnitude));
}

} // namespace

Decoded<Aircraft> Aircraft::decode(const QByteArray &json)
{
    return FeedDecoder::decodeAircraft(json);
}

const QSet<QString> &Aircraft::helicopterTypes()
{
    static const QSet<QString> types{
        u"R22"_qs,  u"R44"_qs,  u"R66"_qs,  u"B06"_qs,  u"B407"_qs, u"B412"_qs, u"B429"_qs,
        u"B505"_qs, u"AS50"_qs, u"EC30"_qs, u"EC35"_qs, u"EC45"_qs, u"EC55"_qs, u"EC75"_qs,
        u"A109"_qs, u"A139"_qs, u"A169"_qs, u"S76"_qs,  u"S92"_qs,  u"H60"_qs,  u"MD50"_qs,
        u"UH1"_qs,  u"H64"_qs,  u"H47"_qs,  u"B212"_qs, u"B222"_qs, u"B230"_qs,
    };
    return types;
}

QString Aircraft::displayName() const
{
    if (m_flight) {
        QString trimmed = TextRules::trimmed(*m_flight);
        if (!trimmed.isEmpty())
            return trimmed;
    }
    if (m_registration && !m_registration->isEmpty())
        return *m_registration;
    return TextRules::upperCased(m_hex);
}

std::optional<Aircraft::Coordinate> Aircraft::coordinate() const
{
    if (!m_lat || !m_lon)
        return std::nullopt;
    return Coordinate{*m_lat, *m_lon};
}

bool Aircraft::isOnGround() const
{
    return m_altBaro && m_altBaro->isGround();
}

std::optional<qint64> Aircraft::altitudeFeet() const
{
    if (m_altBaro && !m_altBaro->isGround())
        return m_altBaro->feetValue();
    return m_altGeom;
}

QString Aircraft::altitudeText(const QLocale &locale) const
{
    if (isOnGround())
        return u"On ground"_qs;
    const auto feet = altitudeFeet();
    if (!feet)
        return u"—"_qs;
    return locale.toString(qlonglong(*feet)) + u" ft"_qs;
}

QString Aircraft::speedText() const
{
    if (!m_groundSpeed)
        return u"—"_qs;
    // Half away from zero; formatted from the double so that no speed can overflow an integer, and
    // "+ 0.0" turns a negative zero into a plain 0.
    const double rounded = std::round(*m_groundSpeed) + 0.0;
    return QString::number(rounded, 'f', 0) + u" kt"_qs;
}

std::optional<qint64> Aircraft::verticalRate() const
{
    return m_baroRate ? m_baroRate : m_geomRate;
}

std::optional<QString> Aircraft::verticalText(const QLocale &locale) const
{
    const auto rate = verticalRate();
    if (!rate || (*rate > -levelFlightBand && *rate < levelFlightBand))
        return std::nullopt;
    const QString arrow = *rate > 0 ? u"↑"_qs : u"↓"_qs;
    return arrow + u' ' + groupedMagnitude(*rate, locale) + u" ft/min"_qs;
}

bool Aircraft::isEmergency() const
{
    if (m_squawk && m_squawk->size() == 4) {
        const QStringView squawk(*m_squawk);
        if (squawk == u"7500" || squawk == u"7600" || squawk == u"7700")
            return true;
    }
    return m_emergency && QStringView(*m_emergency) != u"none";
}

bool Aircraft::isMilitary() const
{
    return m_dbFlags && (*m_dbFlags & 1) != 0;
}

std::optional<double> Aircraft::distanceMiles() const
{
    if (!m_distanceNM)
        return std::nullopt;
    return *m_distanceNM * milesPerNauticalMile;
}

std::optional<QString> Aircraft::typeName() const
{
    if (auto name = AircraftTypes::name(m_typeCode))
        return name;
    if (m_typeDescription && !m_typeDescription->isEmpty())
        return TextRules::capitalizedWords(*m_typeDescription);
    return std::nullopt;
}

std::optional<QString> Aircraft::operatorDisplayName() const
{
    if (m_operatorName && !m_operatorName->isEmpty())
        return TextRules::capitalizedWords(*m_operatorName);
    if (!m_flight)
        return std::nullopt;
    return Airlines::nameForCallsign(TextRules::upperCased(TextRules::trimmed(*m_flight)));
}

bool Aircraft::isHelicopter() const
{
    if (m_category && QStringView(*m_category) == helicopterCategory)
        return true;
    if (!m_typeCode)
        return false;
    // Every listed code is up to four ASCII letters and digits: those are compared as one number each,
    // which the alert rules do for every aircraft of every refresh.
    static const std::vector<quint32> packedTypes = [] {
        std::vector<quint32> packed;
        for (const QString &code : helicopterTypes())
            packed.push_back(*PackedText::pack(code, 4, PackedText::LetterCase::Upper));
        std::sort(packed.begin(), packed.end());
        return packed;
    }();
    if (const auto packed = PackedText::pack(*m_typeCode, 4, PackedText::LetterCase::Upper))
        return std::binary_search(packedTypes.cbegin(), packedTypes.cend(), *packed);
    return m_typeCode->size() <= 4 && helicopterTypes().contains(m_typeCode->toUpper());
}

QString Aircraft::compassPoint(double bearingDegrees)
{
    static constexpr std::array<QStringView, 16> points{u"N",  u"NNE", u"NE", u"ENE", u"E",  u"ESE",
                                                        u"SE", u"SSE", u"S",  u"SSW", u"SW", u"WSW",
                                                        u"W",  u"WNW", u"NW", u"NNW"};
    const double sector = std::fmod((bearingDegrees + 11.25) / 22.5, 16.0);
    // Negative bearings land below 0 and are clamped to N; a bearing that isn't a number has no sector.
    const int index = std::isfinite(sector) ? std::clamp(int(std::trunc(sector)), 0, 15) : 0;
    return points[std::size_t(index)].toString();
}

std::optional<QString> Aircraft::lookDirection() const
{
    if (!m_directionDeg || !m_distanceNM)
        return std::nullopt;
    const QString point = compassPoint(*m_directionDeg);

    // On the ground there is nothing to look up at, whatever the geometric altitude says.
    std::optional<qint64> knownAltitude;
    if (m_altBaro)
        knownAltitude = m_altBaro->feetValue();
    else
        knownAltitude = m_altGeom;

    if (!knownAltitude || !(*m_distanceNM > 0))
        return u"Look "_qs + point;
    const double elevation = std::atan2(double(*knownAltitude) * metresPerFoot,
                                        *m_distanceNM * metresPerNauticalMile) *
                             180.0 / std::numbers::pi;
    return u"Look %1, %2° up"_qs.arg(point, TextRules::fixedPoint(elevation, 0));
}

QString Aircraft::accessibilityText(const QString &distanceUnit) const
{
    QStringList parts{displayName(), altitudeText()};
    if (const auto distance = distanceText(distanceUnit, false))
        parts.append(*distance);
    if (isEmergency())
        parts.append(u"emergency"_qs);
    if (isMilitary())
        parts.append(u"military"_qs);
    return parts.join(u", "_qs);
}

std::optional<QString> Aircraft::distanceText(const QString &unit, bool compact) const
{
    if (!m_distanceNM)
        return std::nullopt;
    double value = *m_distanceNM * milesPerNauticalMile;
    QString suffix = u"mi"_qs;
    if (unit == u"nm") {
        value = *m_distanceNM;
        suffix = u"nm"_qs;
    } else if (unit == u"km") {
        value = *m_distanceNM * kilometresPerNauticalMile;
        suffix = u"km"_qs;
    }
    return TextRules::fixedPoint(value, 1) + (compact ? QString() : u" "_qs) + suffix;
}

QVariant Aircraft::distanceTextFor(const QString &unit, bool compact) const
{
    return toVariant(distanceText(unit, compact));
}

QVariant Aircraft::flightVariant() const { return toVariant(m_flight); }
QVariant Aircraft::registrationVariant() const { return toVariant(m_registration); }
QVariant Aircraft::typeCodeVariant() const { return toVariant(m_typeCode); }
QVariant Aircraft::squawkVariant() const { return toVariant(m_squawk); }
QVariant Aircraft::categoryVariant() const { return toVariant(m_category); }
QVariant Aircraft::latVariant() const { return toVariant(m_lat); }
QVariant Aircraft::lonVariant() const { return toVariant(m_lon); }
QVariant Aircraft::trackVariant() const { return toVariant(m_track); }
QVariant Aircraft::groundSpeedVariant() const { return toVariant(m_groundSpeed); }
QVariant Aircraft::distanceNMVariant() const { return toVariant(m_distanceNM); }
QVariant Aircraft::directionDegVariant() const { return toVariant(m_directionDeg); }
QVariant Aircraft::altitudeFeetVariant() const { return toVariant(altitudeFeet()); }
QVariant Aircraft::verticalRateVariant() const { return toVariant(verticalRate()); }
QVariant Aircraft::verticalTextVariant() const { return toVariant(verticalText()); }
QVariant Aircraft::distanceMilesVariant() const { return toVariant(distanceMiles()); }
QVariant Aircraft::typeNameVariant() const { return toVariant(typeName()); }
QVariant Aircraft::operatorDisplayNameVariant() const { return toVariant(operatorDisplayName()); }
QVariant Aircraft::lookDirectionVariant() const { return toVariant(lookDirection()); }

QVariant Aircraft::coordinateVariant() const
{
    const auto point = coordinate();
    if (!point)
        return {};
    return QVariantMap{{u"latitude"_qs, point->latitude}, {u"longitude"_qs, point->longitude}};
}
