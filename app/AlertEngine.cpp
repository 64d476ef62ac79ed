#include "AlertEngine.h"

#include "DefaultsStore.h"
#include "DesktopNotifier.h"
#include "PackedText.h"
#include "TextRules.h"

#include <QSet>
#include <QVarLengthArray>
#include <algorithm>
#include <cmath>
#include <vector>
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

// The watchlist's entries (upper case already) ready for thousands of lookups a refresh.
class WatchSet
{
public:
    explicit WatchSet(const QStringList &entries)
    {
        for (const QString &entry : entries) {
            if (const auto key = PackedText::pack(entry, 8))
                m_packed.push_back(*key);
            else
                m_others.insert(entry);
        }
        std::sort(m_packed.begin(), m_packed.end());
    }

    [[nodiscard]] bool isEmpty() const { return m_packed.empty() && m_others.isEmpty(); }

    // Whether the text, upper-cased and trimmed of blanks when asked, is listed.
    [[nodiscard]] bool contains(QStringView text, bool trim) const
    {
        if (trim) {
            while (!text.isEmpty() && isBlank(text.front().unicode()))
                text = text.sliced(1);
            while (!text.isEmpty() && isBlank(text.back().unicode()))
                text.chop(1);
        }
        if (const auto key = PackedText::pack(text, 8, PackedText::LetterCase::Upper))
            return std::binary_search(m_packed.cbegin(), m_packed.cend(), *key);
        // Long or non-ASCII: the full Unicode mapping, which may also make the text short and plain.
        const QString upper = TextRules::upperCased(text);
        if (const auto key = PackedText::pack(upper, 8))
            return std::binary_search(m_packed.cbegin(), m_packed.cend(), *key);
        return m_others.contains(upper);
    }

private:
    // ASCII has no blanks but space and tab; anything else is asked of Unicode.
    static bool isBlank(char16_t unit)
    {
        return unit == u' ' || unit == u'\t' || (unit >= 0x80 && TextRules::isBlank(unit));
    }

    std::vector<quint64> m_packed;
    QSet<QString> m_others;
};

// An aircraft's identities as a watchlist names them: callsign trimmed, registration and address, all
// upper case; absent ones take no part.
bool matchesAny(const Aircraft &aircraft, const WatchSet &watchlist)
{
    if (aircraft.flight() && watchlist.contains(*aircraft.flight(), true))
        return true;
    if (aircraft.registration() && watchlist.contains(*aircraft.registration(), false))
        return true;
    return watchlist.contains(aircraft.hex(), false);
}

} // namespace

bool AlertEngine::matches(const Aircraft &aircraft, const QStringList &watchlist)
{
    return matchesAny(aircraft, WatchSet(watchlist));
}

std::optional<double> AlertEngine::flyoverETA(const Aircraft &aircraft, const HomeLocation &home,
                                              std::optional<double> missMiles)
{
    return flyoverETA(aircraft, home, std::cos(home.latitude * std::numbers::pi / 180.0),
                      missMiles ? *missMiles * metresPerMile : defaultMissMetres);
}

std::optional<double> AlertEngine::flyoverETA(const Aircraft &aircraft, const HomeLocation &home,
                                              double cosHomeLatitude, double limitMetres)
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

    const double offsetEast = cosHomeLatitude * metresPerDegree * (*aircraft.lon() - home.longitude);
    const double offsetNorth = (*aircraft.lat() - home.latitude) * metresPerDegree;
    const double speed = *aircraft.groundSpeed() * metresPerSecondPerKnot;
    // Farther away than it can fly in two minutes plus the miss limit, it can't come close enough in
    // time, whatever its track: most aircraft of a refresh end here, before any trigonometry. The margin
    // covers the rounding of the exact test below.
    const double reach = speed * 120 + limitMetres;
    if (offsetEast * offsetEast + offsetNorth * offsetNorth > reach * reach * 1.000001 + 1)
        return std::nullopt;

    const double trackRadians = *aircraft.track() * std::numbers::pi / 180.0;
    const double east = std::sin(trackRadians) * speed;
    const double north = std::cos(trackRadians) * speed;
    const double speedSquared = east * east + north * north;
    if (!(speedSquared > 1.0))
        return std::nullopt;

    const double t = -(offsetEast * east + offsetNorth * north) / speedSquared;
    if (!(t > 5 && t < 120))
        return std::nullopt;

    const double missEast = offsetEast + east * t;
    const double missNorth = offsetNorth + north * t;
    if (!(std::sqrt(missEast * missEast + missNorth * missNorth) < limitMetres))
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
    const WatchSet watchSet(watchlist);
    const double rangeMiles = m_defaults->doubleValue(u"alertRangeMiles"_qs).value_or(0);
    const bool flyoverOn = m_defaults->boolValue(u"alertFlyover"_qs);
    const bool militaryOn = m_defaults->boolValue(u"alertMilitary"_qs);
    const bool helicoptersOn = m_defaults->boolValue(u"alertHelicopters"_qs);
    const bool lowOn = m_defaults->boolValue(u"alertLowAltitude"_qs);
    const std::optional<double> missMiles = flyoverOn ? m_defaults->doubleValue(u"flyoverMissMiles"_qs) : std::nullopt;
    const double missLimitMetres = missMiles ? *missMiles * metresPerMile : defaultMissMetres;
    const double cosHomeLatitude = std::cos(home.latitude * std::numbers::pi / 180.0);

    // One moment for the whole list, taken when the first rule matches.
    std::optional<qint64> nowMs;
    const auto fireNow = [&](const QString &rule, const Aircraft &plane, const std::function<QString()> &title) {
        if (!nowMs)
            nowMs = m_now().toMSecsSinceEpoch();
        fire(rule, plane, *nowMs, title);
    };
    for (const Aircraft &plane : aircraft) {
        if (rangeMiles > 0 && plane.distanceNM() && rangeMiles < *plane.distanceNM() * milesPerNauticalMile)
            continue;
        if (emergencyOn && plane.isEmergency())
            fireNow(u"emergency"_qs, plane, [&] { return u"Emergency squawk "_qs + plane.squawk().value_or(QString()); });
        if (flyoverOn) {
            if (const auto eta = flyoverETA(plane, home, cosHomeLatitude, missLimitMetres))
                fireNow(u"flyover"_qs, plane,
                        [&] { return u"Passing overhead in about %1 seconds"_qs.arg(qint64(std::trunc(*eta))); });
        }
        if (militaryOn && plane.isMilitary())
            fireNow(u"military"_qs, plane, [] { return u"Military aircraft in range"_qs; });
        if (helicoptersOn && plane.isHelicopter())
            fireNow(u"heli"_qs, plane, [] { return u"Helicopter in range"_qs; });
        if (lowOn) {
            const auto feet = alertAltitude(plane);
            if (feet && *feet < 2000)
                fireNow(u"low"_qs, plane, [] { return u"Low-flying aircraft"_qs; });
        }
        if (!watchSet.isEmpty() && matchesAny(plane, watchSet))
            fireNow(u"watch"_qs, plane, [&] { return u"Watchlist: "_qs + plane.displayName(); });
    }
}

QHash<QString, QDateTime> AlertEngine::lastAlerted() const
{
    QHash<QString, QDateTime> stamps;
    stamps.reserve(m_lastAlerted.size());
    for (auto it = m_lastAlerted.cbegin(); it != m_lastAlerted.cend(); ++it)
        stamps.insert(it.key(), QDateTime::fromMSecsSinceEpoch(it.value(), Qt::UTC));
    return stamps;
}

void AlertEngine::fire(const QString &rule, const Aircraft &aircraft, qint64 nowMs, const std::function<QString()> &title)
{
    // The key is put together on the stack: most matches of a refresh end at the cooldown.
    QVarLengthArray<QChar, 32> written;
    written.append(rule.constData(), rule.size());
    written.append(u'-');
    written.append(aircraft.hex().constData(), aircraft.hex().size());
    const auto last = m_lastAlerted.constFind(QString::fromRawData(written.constData(), written.size()));
    if (last != m_lastAlerted.constEnd() && nowMs - *last < qint64(cooldownSeconds * 1000))
        return;
    const QString key(written.constData(), written.size());
    // Stamped before posting, whether or not the desktop shows it.
    m_lastAlerted.insert(key, nowMs);
    const QString identifier = key + u'-' + shortestDouble(double(nowMs) / 1000.0);
    const QString heading = title();
    const QString text = body(aircraft);
    if (m_notifier)
        m_notifier->post(heading, text, aircraft.hex(), identifier);
    emit alerted(Alert{rule, aircraft.hex(), heading, text, identifier});
}
