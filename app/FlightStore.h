#pragma once

#include "Aircraft.h"
#include "AircraftFilter.h"
#include "AircraftListModel.h"
#include "FlightRoute.h"
#include "HomeLocation.h"
#include "PlanePhoto.h"

#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QTimer>
#include <functional>
#include <optional>

class AlertEngine;
class DefaultsStore;
class SightingLog;
class FeedFetch;
class WidgetReloader;

// The application's central state: the live aircraft list around the home point, refreshed every five
// seconds, and what is derived from it (trails, filters, search, selection). Views only read it and set a
// few fields; every assignment of home, radius and pause has its reaction, also of an unchanged value.
class FlightStore : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool hasHome READ hasHome NOTIFY homeChanged)
    Q_PROPERTY(HomeLocation home READ homeOrEmpty NOTIFY homeChanged)
    Q_PROPERTY(double radiusNM READ radiusNM WRITE setRadiusNM NOTIFY radiusNMChanged)
    Q_PROPERTY(bool isPaused READ isPaused WRITE setPaused NOTIFY isPausedChanged)
    Q_PROPERTY(QString selectedHex READ selectedHexOrEmpty WRITE setSelectedHexText NOTIFY selectedHexChanged)
    Q_PROPERTY(Aircraft selectedAircraft READ selectedAircraftOrEmpty NOTIFY selectedAircraftChanged)
    Q_PROPERTY(bool hasSelection READ hasSelection NOTIFY selectedAircraftChanged)
    Q_PROPERTY(int aircraftCount READ aircraftCount NOTIFY aircraftChanged)
    Q_PROPERTY(AircraftListModel *displayedModel READ displayedModel CONSTANT)
    Q_PROPERTY(QStringList activeFilters READ activeFilterNames WRITE setActiveFilterNames NOTIFY activeFiltersChanged)
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY searchTextChanged)
    Q_PROPERTY(QDateTime lastUpdated READ lastUpdatedOrInvalid NOTIFY lastUpdatedChanged)
    Q_PROPERTY(QString lastError READ lastErrorOrEmpty NOTIFY lastErrorChanged)
    Q_PROPERTY(QString activeSource READ activeSourceOrEmpty NOTIFY activeSourceChanged)
    Q_PROPERTY(bool glides READ glides NOTIFY glidesChanged)

public:
    using Coordinate = Aircraft::Coordinate;
    using Trail = QList<Coordinate>;
    using FetchStarter = std::function<FeedFetch *(const HomeLocation &home, double radiusNM, QObject *parent)>;

    // What the store depends on; tests give their own clock, timer interval and fetcher.
    struct Dependencies
    {
        DefaultsStore *defaults = nullptr;
        WidgetReloader *reloader = nullptr;
        FetchStarter startFetch;             // ADSB::fetch when empty
        std::function<QDateTime()> now;      // the current time when empty
        int tickIntervalMs = 5000;           // 0: no timer, ticks come only from tick()
        bool polling = true;                 // false: no refresh is ever started (for one-off commands)
        AlertEngine *alerts = nullptr;       // told of every applied list, when a home is set
        SightingLog *log = nullptr;          // told of every applied list, after the alerts
    };

    // How long markers glide from one refresh to the next.
    static constexpr int glideMs = 800;

    explicit FlightStore(Dependencies dependencies, QObject *parent = nullptr);

    // Made on first use with the real settings, network and bus; alive until the process ends.
    [[nodiscard]] static FlightStore *shared();

    [[nodiscard]] const std::optional<HomeLocation> &home() const { return m_home; }
    void setHome(const std::optional<HomeLocation> &home);
    [[nodiscard]] double radiusNM() const { return m_radiusNM; }
    void setRadiusNM(double radiusNM);
    [[nodiscard]] bool isPaused() const { return m_isPaused; }
    void setPaused(bool paused);
    [[nodiscard]] const std::optional<QString> &selectedHex() const { return m_selectedHex; }
    void setSelectedHex(const std::optional<QString> &hex);

    [[nodiscard]] const QList<Aircraft> &aircraft() const { return m_aircraft; }
    [[nodiscard]] const QSet<AircraftFilter> &activeFilters() const { return m_activeFilters; }
    void setActiveFilters(const QSet<AircraftFilter> &filters);
    [[nodiscard]] const QString &searchText() const { return m_searchText; }
    void setSearchText(const QString &text);
    [[nodiscard]] const QHash<QString, Trail> &trails() const { return m_trails; }
    [[nodiscard]] const std::optional<QDateTime> &lastUpdated() const { return m_lastUpdated; }
    [[nodiscard]] const std::optional<QString> &lastError() const { return m_lastError; }
    [[nodiscard]] const std::optional<QString> &activeSource() const { return m_activeSource; }
    [[nodiscard]] bool glides() const { return m_glides; }

    // Computed at each read: the aircraft after filters and search, nearest first.
    [[nodiscard]] QList<Aircraft> displayedAircraft() const;
    // The selected aircraft from the unfiltered list: a filter may hide it and it stays selected.
    [[nodiscard]] std::optional<Aircraft> selectedAircraft() const;
    [[nodiscard]] AircraftListModel *displayedModel() { return &m_displayedModel; }
    // The number of points a trail keeps, from the setting trailMinutes.
    [[nodiscard]] int trailLength() const;

    // Asks for a refresh now; a newer refresh supersedes any older one.
    Q_INVOKABLE void fetchNow();
    // One tick of the timer, as the timer gives it: the refresh is asked for from the event loop.
    Q_INVOKABLE void tick();
    Q_INVOKABLE void setHomeLocation(double latitude, double longitude, const QString &label);
    Q_INVOKABLE void forgetHome();
    Q_INVOKABLE void setFilterActive(const QString &filter, bool active);
    Q_INVOKABLE [[nodiscard]] QVariantList trailFor(const QString &hex) const;

    // Route and photo of an aircraft, each asked for at most once per key and run; a miss is final.
    Q_INVOKABLE void loadRoute(const Aircraft &aircraft);
    Q_INVOKABLE void loadPhoto(const Aircraft &aircraft);
    // The key routes are kept under: the callsign trimmed of blanks and tabs, case as sent.
    [[nodiscard]] static QString routeKey(const QString &flight);
    [[nodiscard]] const QHash<QString, FlightRoute> &routes() const { return m_routes; }
    [[nodiscard]] const QHash<QString, PlanePhoto> &photos() const { return m_photos; }
    [[nodiscard]] const QSet<QString> &routeMisses() const { return m_routeMisses; }
    [[nodiscard]] const QSet<QString> &routeLookups() const { return m_routeLookups; }
    [[nodiscard]] const QSet<QString> &photoMisses() const { return m_photoMisses; }
    [[nodiscard]] const QSet<QString> &photoLookups() const { return m_photoLookups; }
    // For QML: the route of an aircraft's callsign, the photo of its address; undefined until found.
    Q_INVOKABLE [[nodiscard]] QVariant routeFor(const Aircraft &aircraft) const;
    Q_INVOKABLE [[nodiscard]] QVariant photoFor(const Aircraft &aircraft) const;

    // Stores the home under the key homeLocation (or removes it), then shares with the widgets.
    void persistHome();
    // Brings the widgets' file in line with home, radius, unit and colour; asks for a reload on change.
    void shareWithWidgets();

signals:
    void homeChanged();
    void radiusNMChanged();
    void isPausedChanged();
    void selectedHexChanged();
    void selectedAircraftChanged();
    void aircraftChanged();
    void activeFiltersChanged();
    void searchTextChanged();
    void trailsChanged();
    void routesChanged();
    void photosChanged();
    void lastUpdatedChanged();
    void lastErrorChanged();
    void activeSourceChanged();
    void glidesChanged();
    // One per refresh that reached the store: applied, or failed with its text.
    void refreshApplied(const QString &source, int count);
    void refreshFailed(const QString &message);

private:
    void apply(const QList<Aircraft> &list, const QString &source);
    void setAircraft(const QList<Aircraft> &list);
    void rebuildTrails();
    void refreshDisplayed();
    void setLastError(const std::optional<QString> &error);
    void setLastUpdated(const std::optional<QDateTime> &when);

    [[nodiscard]] bool hasHome() const { return m_home.has_value(); }
    [[nodiscard]] HomeLocation homeOrEmpty() const { return m_home.value_or(HomeLocation()); }
    [[nodiscard]] QString selectedHexOrEmpty() const { return m_selectedHex.value_or(QString()); }
    void setSelectedHexText(const QString &hex);
    [[nodiscard]] Aircraft selectedAircraftOrEmpty() const { return selectedAircraft().value_or(Aircraft()); }
    [[nodiscard]] bool hasSelection() const { return selectedAircraft().has_value(); }
    [[nodiscard]] int aircraftCount() const { return int(m_aircraft.size()); }
    [[nodiscard]] QStringList activeFilterNames() const;
    void setActiveFilterNames(const QStringList &names);
    [[nodiscard]] QDateTime lastUpdatedOrInvalid() const { return m_lastUpdated.value_or(QDateTime()); }
    [[nodiscard]] QString lastErrorOrEmpty() const { return m_lastError.value_or(QString()); }
    [[nodiscard]] QString activeSourceOrEmpty() const { return m_activeSource.value_or(QString()); }

    Dependencies m_dependencies;
    std::optional<HomeLocation> m_home;
    double m_radiusNM = 25.0;
    bool m_isPaused = false;
    std::optional<QString> m_selectedHex;
    QList<Aircraft> m_aircraft;
    QSet<AircraftFilter> m_activeFilters;
    QString m_searchText;
    QHash<QString, Trail> m_trails;
    std::optional<QDateTime> m_lastUpdated;
    std::optional<QString> m_lastError;
    std::optional<QString> m_activeSource;
    bool m_glides = false;
    QTimer m_timer;
    QPointer<FeedFetch> m_fetchTask;
    QHash<QString, FlightRoute> m_routes;
    QSet<QString> m_routeMisses;
    QSet<QString> m_routeLookups;
    QHash<QString, PlanePhoto> m_photos;
    QSet<QString> m_photoMisses;
    QSet<QString> m_photoLookups;
    AircraftListModel m_displayedModel;
};
