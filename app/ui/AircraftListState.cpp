#include "AircraftListState.h"

#include "AircraftFilter.h"
#include "FlightStore.h"

AircraftListState::AircraftListState(QObject *parent) : QObject(parent) {}

void AircraftListState::setStore(FlightStore *store)
{
    if (store == m_store)
        return;
    if (m_store)
        m_store->disconnect(this);
    m_store = store;
    if (m_store) {
        for (auto signal : {&FlightStore::aircraftChanged, &FlightStore::activeFiltersChanged,
                            &FlightStore::searchTextChanged, &FlightStore::isPausedChanged,
                            &FlightStore::lastErrorChanged, &FlightStore::lastUpdatedChanged,
                            &FlightStore::activeSourceChanged, &FlightStore::radiusNMChanged})
            connect(m_store, signal, this, &AircraftListState::changed);
    }
    emit storeChanged();
    emit changed();
}

QStringList AircraftListState::filterNames()
{
    QStringList names;
    for (AircraftFilter filter : AircraftFilters::all())
        names.append(AircraftFilters::rawValue(filter));
    return names;
}

QString AircraftListState::filterMenuLabel(const QString &filter)
{
    switch (AircraftFilters::fromRawValue(filter).value_or(AircraftFilter::Emergency)) {
    case AircraftFilter::Emergency: return u"Emergency"_qs;
    case AircraftFilter::Military: return u"Military"_qs;
    case AircraftFilter::Helicopters: return u"Helicopters"_qs;
    case AircraftFilter::Airliners: return u"Airliners"_qs;
    case AircraftFilter::GeneralAviation: return u"General Aviation"_qs;
    case AircraftFilter::LowAltitude: return u"Low Altitude (<2,000 ft)"_qs;
    }
    return {};
}

QString AircraftListState::filterSymbol(const QString &filter)
{
    switch (AircraftFilters::fromRawValue(filter).value_or(AircraftFilter::Emergency)) {
    case AircraftFilter::Emergency: return u"exclamationmark.triangle"_qs;
    case AircraftFilter::Military: return u"shield"_qs;
    case AircraftFilter::Helicopters: return u"fanblades"_qs;
    case AircraftFilter::Airliners: return u"airplane.departure"_qs;
    case AircraftFilter::GeneralAviation: return u"paperplane"_qs;
    case AircraftFilter::LowAltitude: return u"arrow.down.to.line"_qs;
    }
    return {};
}

bool AircraftListState::anyFilter() const
{
    return m_store && !m_store->activeFilters().isEmpty();
}

QString AircraftListState::filterLabel() const
{
    if (!m_store || m_store->activeFilters().isEmpty())
        return u"All Aircraft"_qs;
    const auto &filters = m_store->activeFilters();
    if (filters.size() == 1)
        return filterMenuLabel(AircraftFilters::rawValue(*filters.cbegin()));
    return QString::number(filters.size()) + u" Filters"_qs;
}

QString AircraftListState::countText() const
{
    if (!anyFilter())
        return {};
    return u"%1 of %2"_qs.arg(m_store->displayedAircraft().size()).arg(m_store->aircraft().size());
}

QString AircraftListState::placeholder() const
{
    if (!m_store)
        return {};
    if (!m_store->aircraft().isEmpty())
        return m_store->displayedAircraft().isEmpty() ? u"noMatches"_qs : QString();
    if (m_store->lastError())
        return u"noData"_qs;
    if (!m_store->lastUpdated())
        return m_store->isPaused() ? u"paused"_qs : u"checking"_qs;
    return u"quiet"_qs;
}

QString AircraftListState::placeholderTitle() const
{
    const QString kind = placeholder();
    if (kind == u"noMatches")
        return u"No Matches"_qs;
    if (kind == u"noData")
        return u"No Data"_qs;
    if (kind == u"paused")
        return u"Paused"_qs;
    if (kind == u"quiet")
        return u"Quiet Skies"_qs;
    return {};
}

QString AircraftListState::placeholderSymbol() const
{
    const QString kind = placeholder();
    if (kind == u"noMatches")
        return u"line.3.horizontal.decrease.circle"_qs;
    if (kind == u"noData")
        return u"wifi.exclamationmark"_qs;
    if (kind == u"paused")
        return u"pause.circle"_qs;
    if (kind == u"quiet")
        return u"airplane.departure"_qs;
    return {};
}

QString AircraftListState::placeholderDescription() const
{
    const QString kind = placeholder();
    if (kind == u"noMatches")
        return m_store->searchText().isEmpty() ? u"Nothing in range matches the selected filters."_qs
                                               : u"Nothing matches the current filters and search."_qs;
    if (kind == u"noData")
        return *m_store->lastError();
    if (kind == u"paused")
        return u"Resume updates to check for aircraft."_qs;
    if (kind == u"checking")
        return u"Checking for aircraft…"_qs;
    if (kind == u"quiet")
        return u"No aircraft within %1 nm right now."_qs.arg(qint64(m_store->radiusNM()));
    return {};
}

QString AircraftListState::statusText() const
{
    if (!m_store)
        return {};
    if (m_store->isPaused())
        return u"Paused"_qs;
    if (m_store->lastError())
        return *m_store->lastError();
    if (m_store->activeSource())
        return u"Live via "_qs + *m_store->activeSource();
    return u"Connecting…"_qs;
}

bool AircraftListState::statusIsError() const
{
    return m_store && !m_store->isPaused() && m_store->lastError();
}

bool AircraftListState::statusDotWarns() const
{
    return m_store && (m_store->lastError() || m_store->isPaused());
}

void AircraftListState::showAll()
{
    if (!m_store)
        return;
    m_store->setActiveFilters({});
    m_store->setSearchText({});
}
