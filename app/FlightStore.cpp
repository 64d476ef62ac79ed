#include "FlightStore.h"

#include "ADSB.h"
#include "AlertEngine.h"
#include "DefaultsStore.h"
#include "FeedFetch.h"
#include "PackedIndex.h"
#include "PackedText.h"
#include "PhotoAPI.h"
#include "RouteAPI.h"
#include "SharedState.h"
#include "SightingLog.h"
#include "TextRules.h"
#include "WidgetReloader.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr double defaultRadiusNM = 25.0;
constexpr int refreshesPerMinute = 12;
constexpr int shortestTrail = 6;
// Positions closer than this, in both axes, are the same point of a trail.
constexpr double samePositionDegrees = 0.000001;
const QString defaultDistanceUnit = u"mi"_qs;
const QString defaultWidgetColor = u"#73FF99"_qs;

} // namespace

FlightStore::FlightStore(Dependencies dependencies, QObject *parent)
    : QObject(parent), m_dependencies(std::move(dependencies))
{
    if (!m_dependencies.startFetch)
        m_dependencies.startFetch = &ADSB::fetch;
    if (!m_dependencies.now)
        m_dependencies.now = [] { return QDateTime::currentDateTime(); };
    Q_ASSERT(m_dependencies.defaults);

    // Loading the home is not a change of home: none of the reactions to an assignment runs.
    if (const auto data = m_dependencies.defaults->dataValue(u"homeLocation"_qs)) {
        auto decoded = HomeLocation::decode(*data);
        if (decoded.ok())
            m_home = std::move(decoded).value();
    }
    const auto radius = m_dependencies.defaults->doubleValue(u"radiusNM"_qs);
    m_radiusNM = radius && *radius > 0 ? *radius : defaultRadiusNM;

    shareWithWidgets();

    if (m_dependencies.tickIntervalMs > 0) {
        m_timer.setInterval(m_dependencies.tickIntervalMs);
        connect(&m_timer, &QTimer::timeout, this, &FlightStore::tick);
        m_timer.start();
    }
    fetchNow();
}

FlightStore *FlightStore::shared()
{
    static FlightStore *store = new FlightStore(Dependencies{DefaultsStore::shared(), WidgetReloader::shared(), {}, {},
                                                             5000, true, AlertEngine::shared(),
                                                             SightingLog::shared()});
    return store;
}

void FlightStore::tick()
{
    // The tick only posts the request, and only while the store exists.
    QMetaObject::invokeMethod(this, &FlightStore::fetchNow, Qt::QueuedConnection);
}

void FlightStore::fetchNow()
{
    if (!m_home || m_isPaused || !m_dependencies.polling)
        return; // a running refresh is left alone
    if (m_fetchTask)
        m_fetchTask->cancel();
    FeedFetch *task = m_dependencies.startFetch(*m_home, m_radiusNM, this);
    m_fetchTask = task;
    connect(task, &FeedFetch::succeeded, this, [this, task](const ADSB::FetchResult &result) {
        // A cancelled task reports nothing; this guards against one that was merely superseded.
        if (task != m_fetchTask || task->isCancelled())
            return;
        apply(result.aircraft, result.source);
    });
    connect(task, &FeedFetch::failed, this, [this, task](const ADSB::FetchError &error) {
        if (task != m_fetchTask || task->isCancelled())
            return;
        setLastError(error.description());
        emit refreshFailed(error.description());
    });
}

void FlightStore::apply(const QList<Aircraft> &list, const QString &source)
{
    const bool glide = !m_dependencies.defaults->boolValue(u"reduceMotion"_qs);
    if (glide != m_glides) {
        m_glides = glide;
        emit glidesChanged();
    }
    setAircraft(list);
    setLastUpdated(m_dependencies.now());
    setLastError(std::nullopt);
    if (m_activeSource != source) {
        m_activeSource = source;
        emit activeSourceChanged();
    }
    rebuildTrails();
    if (m_selectedHex) {
        const bool stillThere = std::any_of(m_aircraft.cbegin(), m_aircraft.cend(),
                                            [&](const Aircraft &aircraft) { return aircraft.hex() == *m_selectedHex; });
        if (!stillThere)
            setSelectedHex(std::nullopt);
    }
    // The alerts first, then the logbook, which sees every list, also an empty one.
    if (m_home && m_dependencies.alerts)
        m_dependencies.alerts->evaluate(m_aircraft, *m_home);
    if (m_dependencies.log)
        m_dependencies.log->record(m_aircraft);
    emit refreshApplied(source, int(m_aircraft.size()));
}

void FlightStore::setAircraft(const QList<Aircraft> &list)
{
    m_aircraft = list;
    refreshDisplayed();
    emit aircraftChanged();
    emit selectedAircraftChanged();
}

void FlightStore::refreshDisplayed()
{
    m_displayedModel.update(displayedAircraft());
}

int FlightStore::trailLength() const
{
    int length = refreshesPerMinute;
    if (const auto minutes = m_dependencies.defaults->doubleValue(u"trailMinutes"_qs); minutes && std::isfinite(*minutes)) {
        // Counted in refreshes, not in time; bounded so a silly setting can't overflow.
        length = int(std::trunc(std::clamp(*minutes * refreshesPerMinute, -1e6, 1e6)));
    }
    return std::max(length, shortestTrail);
}

void FlightStore::rebuildTrails()
{
    const qsizetype length = trailLength();
    const auto extend = [length](Trail &trail, const Coordinate &position) {
        const bool moved = trail.isEmpty() ||
                           std::abs(trail.constLast().latitude - position.latitude) > samePositionDegrees ||
                           std::abs(trail.constLast().longitude - position.longitude) > samePositionDegrees;
        if (moved && trail.size() == length) {
            // A full trail slides within its storage, where appending would reallocate it.
            std::move(trail.begin() + 1, trail.end(), trail.begin());
            trail.last() = position;
            return;
        }
        if (moved)
            trail.append(position);
        if (trail.size() > length)
            trail.remove(0, trail.size() - length);
    };

    // The usual refresh: every address plain and listed once. The trails are then kept in place: one pass
    // over them extends those of aircraft still listed with a position and drops the others, matching by
    // number rather than hashing each address; aircraft new to the sky then start theirs.
    const QList<Aircraft> &aircraft = m_aircraft; // read only: the list is shared and must not detach
    const qsizetype count = aircraft.size();
    PackedIndex listed{size_t(count)};
    bool plain = true;
    for (qsizetype at = 0; at < count && plain; ++at) {
        if (!aircraft[at].coordinate())
            continue;
        const auto key = PackedText::address(aircraft[at].hex());
        plain = key && listed.exchange(*key, at) < 0;
    }
    if (plain) {
        std::vector<bool> extended(size_t(count), false);
        for (auto it = m_trails.begin(); it != m_trails.end();) {
            const auto key = PackedText::address(it.key());
            const qsizetype at = key ? listed.find(*key) : -1;
            if (at < 0) {
                it = m_trails.erase(it);
                continue;
            }
            // Erasing can bring a trail already seen round again; extending is the same the second time.
            extend(*it, *aircraft[at].coordinate());
            extended[size_t(at)] = true;
            ++it;
        }
        for (qsizetype at = 0; at < count; ++at) {
            if (extended[size_t(at)])
                continue;
            if (const auto position = aircraft[at].coordinate())
                extend(m_trails[aircraft[at].hex()], *position);
        }
        emit trailsChanged();
        return;
    }

    QHash<QString, Trail> rebuilt;
    rebuilt.reserve(m_aircraft.size());
    // Backwards: of an address the feed sent twice, the later row is the one kept, and it must find the
    // old trail still there. Each address is taken over once, so moving the old trail out reuses its
    // storage; the old table is dropped afterwards.
    for (auto it = m_aircraft.crbegin(); it != m_aircraft.crend(); ++it) {
        const Aircraft &aircraft = *it;
        const auto position = aircraft.coordinate();
        if (!position)
            continue;
        const qsizetype before = rebuilt.size();
        Trail &trail = rebuilt[aircraft.hex()];
        if (rebuilt.size() == before)
            continue;
        if (const auto old = m_trails.find(aircraft.hex()); old != m_trails.end())
            trail = std::move(*old);
        extend(trail, *position);
    }
    m_trails = std::move(rebuilt);
    emit trailsChanged();
}

QList<Aircraft> FlightStore::displayedAircraft() const
{
    const QString search = TextRules::trimmed(m_searchText).toLower();
    if (m_activeFilters.isEmpty() && search.isEmpty())
        return m_aircraft;
    QList<Aircraft> shown;
    for (const Aircraft &aircraft : m_aircraft) {
        if (!m_activeFilters.isEmpty() &&
            std::none_of(m_activeFilters.cbegin(), m_activeFilters.cend(),
                         [&](AircraftFilter filter) { return AircraftFilters::matches(filter, aircraft); }))
            continue;
        if (!search.isEmpty()) {
            const auto found = [&](const std::optional<QString> &field) {
                return field && field->toLower().contains(search);
            };
            if (!found(aircraft.displayName()) && !found(aircraft.typeCode()) && !found(aircraft.typeName()) &&
                !found(aircraft.registration()))
                continue;
        }
        shown.append(aircraft);
    }
    return shown;
}

std::optional<Aircraft> FlightStore::selectedAircraft() const
{
    if (!m_selectedHex)
        return std::nullopt;
    for (const Aircraft &aircraft : m_aircraft) {
        if (aircraft.hex() == *m_selectedHex)
            return aircraft;
    }
    return std::nullopt;
}

void FlightStore::setHome(const std::optional<HomeLocation> &home)
{
    const bool changed = home != m_home;
    m_home = home;
    if (changed)
        emit homeChanged();
    persistHome();
    setAircraft({});
    setSelectedHex(std::nullopt);
    setLastUpdated(std::nullopt);
    setLastError(std::nullopt);
    fetchNow();
}

void FlightStore::setHomeLocation(double latitude, double longitude, const QString &label)
{
    setHome(HomeLocation(latitude, longitude, label));
}

void FlightStore::forgetHome()
{
    setHome(std::nullopt);
}

void FlightStore::setRadiusNM(double radiusNM)
{
    const bool changed = radiusNM != m_radiusNM;
    m_radiusNM = radiusNM;
    if (changed)
        emit radiusNMChanged();
    m_dependencies.defaults->setValue(u"radiusNM"_qs, radiusNM);
    shareWithWidgets();
    fetchNow();
}

void FlightStore::setPaused(bool paused)
{
    const bool changed = paused != m_isPaused;
    m_isPaused = paused;
    if (changed)
        emit isPausedChanged();
    // Pausing doesn't cancel a refresh under way: its result is applied when it comes.
    if (!paused)
        fetchNow();
}

void FlightStore::setSelectedHex(const std::optional<QString> &hex)
{
    if (hex == m_selectedHex)
        return;
    m_selectedHex = hex;
    emit selectedHexChanged();
    emit selectedAircraftChanged();
}

void FlightStore::setSelectedHexText(const QString &hex)
{
    setSelectedHex(hex.isEmpty() ? std::nullopt : std::optional(hex));
}

void FlightStore::setActiveFilters(const QSet<AircraftFilter> &filters)
{
    if (filters == m_activeFilters)
        return;
    m_activeFilters = filters;
    refreshDisplayed();
    emit activeFiltersChanged();
}

void FlightStore::setFilterActive(const QString &filter, bool active)
{
    const auto kind = AircraftFilters::fromRawValue(filter);
    if (!kind)
        return;
    QSet<AircraftFilter> filters = m_activeFilters;
    if (active)
        filters.insert(*kind);
    else
        filters.remove(*kind);
    setActiveFilters(filters);
}

QStringList FlightStore::activeFilterNames() const
{
    QStringList names;
    for (AircraftFilter filter : AircraftFilters::all()) {
        if (m_activeFilters.contains(filter))
            names.append(AircraftFilters::rawValue(filter));
    }
    return names;
}

void FlightStore::setActiveFilterNames(const QStringList &names)
{
    QSet<AircraftFilter> filters;
    for (const QString &name : names) {
        if (const auto filter = AircraftFilters::fromRawValue(name))
            filters.insert(*filter);
    }
    setActiveFilters(filters);
}

void FlightStore::setSearchText(const QString &text)
{
    if (text == m_searchText)
        return;
    m_searchText = text;
    refreshDisplayed();
    emit searchTextChanged();
}

void FlightStore::setLastError(const std::optional<QString> &error)
{
    if (error == m_lastError)
        return;
    m_lastError = error;
    emit lastErrorChanged();
}

void FlightStore::setLastUpdated(const std::optional<QDateTime> &when)
{
    if (when == m_lastUpdated)
        return;
    m_lastUpdated = when;
    emit lastUpdatedChanged();
}

QVariantList FlightStore::trailFor(const QString &hex) const
{
    QVariantList points;
    for (const Coordinate &point : m_trails.value(hex))
        points.append(QVariantMap{{u"latitude"_qs, point.latitude}, {u"longitude"_qs, point.longitude}});
    return points;
}

void FlightStore::persistHome()
{
    if (m_home)
        m_dependencies.defaults->setValue(u"homeLocation"_qs, m_home->encode());
    else
        m_dependencies.defaults->remove(u"homeLocation"_qs);
    shareWithWidgets();
}

void FlightStore::shareWithWidgets()
{
    if (!m_home) {
        if (!SharedState::read())
            return;
        SharedState::clear();
    } else {
        DefaultsStore &defaults = *m_dependencies.defaults;
        const SharedState::Config wanted{*m_home, m_radiusNM,
                                         defaults.stringValue(u"distanceUnit"_qs).value_or(defaultDistanceUnit),
                                         defaults.stringValue(u"widgetColorHex"_qs).value_or(defaultWidgetColor)};
        if (const auto current = SharedState::read()) {
            // Absent unit and colour read as their defaults, so a file without them isn't rewritten.
            const bool same = current->home == wanted.home && current->radiusNM == wanted.radiusNM &&
                              current->distanceUnit.value_or(defaultDistanceUnit) == wanted.distanceUnit &&
                              current->widgetColorHex.value_or(defaultWidgetColor) == wanted.widgetColorHex;
            if (same)
                return;
        }
        SharedState::write(wanted);
    }
    if (m_dependencies.reloader)
        m_dependencies.reloader->reloadAllTimelines();
}

QString FlightStore::routeKey(const QString &flight)
{
    return TextRules::trimmed(flight);
}

void FlightStore::loadRoute(const Aircraft &aircraft)
{
    if (!aircraft.flight())
        return;
    const QString key = routeKey(*aircraft.flight());
    // A lighter gate than the airline test: three letters and at least a fourth character.
    const QStringList characters = TextRules::graphemeClusters(key, 4);
    if (characters.size() < 4)
        return;
    for (int i = 0; i < 3; ++i) {
        if (!TextRules::isLetter(characters[i]))
            return;
    }
    if (m_routes.contains(key) || m_routeMisses.contains(key) || m_routeLookups.contains(key))
        return;
    m_routeLookups.insert(key);
    RouteAPI::fetch(key, this, [this, key](std::optional<FlightRoute> route) {
        m_routeLookups.remove(key);
        if (route) {
            m_routes.insert(key, *route);
            emit routesChanged();
        } else {
            m_routeMisses.insert(key);
        }
    });
}

void FlightStore::loadPhoto(const Aircraft &aircraft)
{
    const QString &hex = aircraft.hex();
    if (m_photos.contains(hex) || m_photoMisses.contains(hex) || m_photoLookups.contains(hex))
        return;
    m_photoLookups.insert(hex);
    PhotoAPI::fetch(hex, this, [this, hex](std::optional<PlanePhoto> photo) {
        m_photoLookups.remove(hex);
        if (photo) {
            m_photos.insert(hex, *photo);
            emit photosChanged();
        } else {
            m_photoMisses.insert(hex);
        }
    });
}

QVariant FlightStore::routeFor(const Aircraft &aircraft) const
{
    if (!aircraft.flight())
        return {};
    const auto it = m_routes.constFind(routeKey(*aircraft.flight()));
    return it == m_routes.constEnd() ? QVariant() : QVariant::fromValue(*it);
}

QVariant FlightStore::photoFor(const Aircraft &aircraft) const
{
    const auto it = m_photos.constFind(aircraft.hex());
    return it == m_photos.constEnd() ? QVariant() : QVariant::fromValue(*it);
}
