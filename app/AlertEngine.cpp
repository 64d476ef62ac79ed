#include "AlertEngine.h"

#include "DefaultsStore.h"
#include "DesktopNotifier.h"
#include "TextRules.h"

#include <QSet>
#include <cmath>
#include <functional>
#include <numbers>

namespace {

constexpr double milesPerNauticalMile = 1.15078;
constexpr double metresPerSecondPerKnot = 0.514444;
constexpr double metresPerDegree = 111320;
constexpr double metresPerMile = 1609.34;
constexpr double defaultMissMetres = 1207.005;

// Feet when the barometric altitude holds feet, else the geometric one when there is no barometric one;
// on the ground there is none.
std::optional<qint64> alertAltitude(const Aircraft &aircraft)
{
    if (aircraft.altBaro())
        return aircraft.altBaro()->feetValue();
    return aircraft.altGeom();
}

// Plain digits, never an exponent: 'g' would write a whole second such as 1800000000 as "1.8e+09".
QString shortestDouble(double value)
{
    return QString::number(value, 'f', QLocale::FloatingPointShortest);
}

} // namespace

AlertEngine::AlertEngine(DefaultsStore *defaults, DesktopNotifier *notifier, std::function<QDateTime()> now,
                         QObject *parent)
    : QObject(parent), m_defaults(defaults), m_notifier(notifier), m_now(std::move(now))
{
    if (!m_now)
        m_now = [] { return QDateTime::currentDateTimeUtc(); };
}

AlertEngine *AlertEngine::shared()
{
    static AlertEngine *engine = new AlertEngine(DefaultsStore::shared(), DesktopNotifier::shared());
    return engine;
}

QStringList AlertEngine::parseWatchlist(const QString &text)
{
    QStringList entries;
    for (const QString &piece : text.split(u',', Qt::SkipEmptyParts)) {
        const QString entry = TextRules::upperCased(TextRules::trimmed(piece));
        if (!entry.isEmpty())
            entries.append(entry);
    }
    return entries;
}

namespace {

// An aircraft's identities as a watchlist names them: callsign trimmed, registration and address, all
// upper case; absent ones take no part.
bool matchesAny(const Aircraft &aircraft, const std::function<bool(const QString &)> &listed)
{
    if (aircraft.flight() && listed(TextRules::upperCased(TextRules::trimmed(*aircraft.flight()))))
        return true;
    if (aircraft.registration() && listed(TextRules::upperCased(*aircraft.registration())))
        return true;
    return listed(TextRules::upperCased(aircraft.hex()));
}

} // namespace

bool AlertEngine::matches(const Aircraft &aircraft, const QStringList &watchlist)
{
    return matchesAny(aircraft, [&](const QString &identity) { return watchlist.contains(identity); });
}

std::optional<double> AlertEngine::flyoverETA(const Aircraft &aircraft, const HomeLocation &home,
                                              std::optional<double> missMiles)
{
    if (!aircraft.lat() || !aircraft.lon() || !aircraft.track() || !aircraft.groundSpeed())
        return std::nullopt;
    if (!(*aircraft.groundSpeed() > 30))
        return std::nullopt;
    std::optional<qint64> altitude;
    if (aircraft.altBaro()) {
        if (aircraft.altBaro()->isGround())
            return std::nullopt;
        altitude = aircraft.altBaro()->feetValue();
    } else {
        altitude = aircraft.altGeom();
    }
    if (!altitude || *altitude > 19999)
        return std::nullopt;

    const double speed = *aircraft.groundSpeed() * metresPerSecondPerKnot;
    const double trackRadians = *aircraft.track() * std::numbers::pi / 180.0;
    const double east = std::sin(trackRadians) * speed;
    const double north = std::cos(trackRadians) * speed;
    const double speedSquared = east * east + north * north;
    if (!(speedSquared > 1.0))
        return std::nullopt;

    const double offsetEast =
        std::cos(home.latitude * std::numbers::pi / 180.0) * metresPerDegree * (*aircraft.lon() - home.longitude);
    const double offsetNorth = (*aircraft.lat() - home.latitude) * metresPerDegree;
    const double t = -(offsetEast * east + offsetNorth * north) / speedSquared;
    if (!(t > 5 && t < 120))
        return std::nullopt;

    const double limit = missMiles ? *missMiles * metresPerMile : defaultMissMetres;
    const double missEast = offsetEast + east * t;
    const double missNorth = offsetNorth + north * t;
    if (!(std::sqrt(missEast * missEast + missNorth * missNorth) < limit))
        return std::nullopt;
    return t;
}

QString AlertEngine::body(const Aircraft &aircraft)
{
    QStringList parts{aircraft.displayName()};
    if (const auto type = aircraft.typeName())
        parts.append(*type);
    if (const auto look = aircraft.lookDirection())
        parts.append(*look);
    return parts.join(u" · "_qs);
}

void AlertEngine::evaluate(const QList<Aircraft> &aircraft, const HomeLocation &home)
{
    if (!m_defaults->boolValue(u"alertsEnabled"_qs))
        return;
    // One reading of the settings for the whole list: a change between two aircraft of one refresh is
    // nothing a person could notice.
    const bool emergencyOn = !m_defaults->contains(u"alertEmergency"_qs) || m_defaults->boolValue(u"alertEmergency"_qs);
    const QStringList watchlist = parseWatchlist(m_defaults->stringValue(u"alertWatchlist"_qs).value_or(QString()));
    const QSet<QString> watchSet(watchlist.cbegin(), watchlist.cend());
    const double rangeMiles = m_defaults->doubleValue(u"alertRangeMiles"_qs).value_or(0);
    const bool flyoverOn = m_defaults->boolValue(u"alertFlyover"_qs);
    const bool militaryOn = m_defaults->boolValue(u"alertMilitary"_qs);
    const bool helicoptersOn = m_defaults->boolValue(u"alertHelicopters"_qs);
    const bool lowOn = m_defaults->boolValue(u"alertLowAltitude"_qs);
    const std::optional<double> missMiles = flyoverOn ? m_defaults->doubleValue(u"flyoverMissMiles"_qs) : std::nullopt;

    for (const Aircraft &plane : aircraft) {
        if (rangeMiles > 0 && plane.distanceNM() && rangeMiles < *plane.distanceNM() * milesPerNauticalMile)
            continue;
        if (emergencyOn && plane.isEmergency())
            fire(u"emergency"_qs, plane, u"Emergency squawk "_qs + plane.squawk().value_or(QString()), body(plane));
        if (flyoverOn) {
            if (const auto eta = flyoverETA(plane, home, missMiles))
                fire(u"flyover"_qs, plane,
                     u"Passing overhead in about %1 seconds"_qs.arg(qint64(std::trunc(*eta))), body(plane));
        }
        if (militaryOn && plane.isMilitary())
            fire(u"military"_qs, plane, u"Military aircraft in range"_qs, body(plane));
        if (helicoptersOn && plane.isHelicopter())
            fire(u"heli"_qs, plane, u"Helicopter in range"_qs, body(plane));
        if (lowOn) {
            const auto feet = alertAltitude(plane);
            if (feet && *feet < 2000)
                fire(u"low"_qs, plane, u"Low-flying aircraft"_qs, body(plane));
        }
        // The same whole-text test as matches(), with the list looked up rather than walked.
        if (!watchlist.isEmpty() && matchesAny(plane, [&](const QString &identity) { return watchSet.contains(identity); }))
            fire(u"watch"_qs, plane, u"Watchlist: "_qs + plane.displayName(), body(plane));
    }
}

void AlertEngine::fire(const QString &rule, const Aircraft &aircraft, const QString &title, const QString &body)
{
    const QString key = rule + u'-' + aircraft.hex();
    const QDateTime now = m_now();
    const auto last = m_lastAlerted.constFind(key);
    if (last != m_lastAlerted.constEnd() && last->msecsTo(now) < qint64(cooldownSeconds * 1000))
        return;
    // Stamped before posting, whether or not the desktop shows it.
    m_lastAlerted.insert(key, now);
    const QString identifier = key + u'-' + shortestDouble(double(now.toMSecsSinceEpoch()) / 1000.0);
    if (m_notifier)
        m_notifier->post(title, body, aircraft.hex(), identifier);
    emit alerted(Alert{rule, aircraft.hex(), title, body, identifier});
}
