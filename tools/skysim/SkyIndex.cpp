#include "SkyIndex.h"

#include "SimClock.h"
#include "SimulatedSky.h"

SkyIndex::SkyIndex(const SimulatedSky &sky, const SimClock &clock) : m_sky(sky), m_clock(clock) {}

std::optional<SkyAircraft> SkyIndex::byCallsign(const QString &callsign)
{
    refresh();
    const auto it = m_byCallsign.constFind(callsign);
    return it == m_byCallsign.cend() ? std::nullopt : std::optional(m_aircraft[*it]);
}

std::optional<SkyAircraft> SkyIndex::byHex(const QString &hex)
{
    refresh();
    const auto it = m_byHex.constFind(hex);
    return it == m_byHex.cend() ? std::nullopt : std::optional(m_aircraft[*it]);
}

void SkyIndex::refresh()
{
    const qint64 second = m_clock.elapsedMs() / 1000;
    const std::pair key{second, m_sky.generation()};
    if (m_builtFor == key)
        return;
    m_builtFor = key;
    m_aircraft = m_sky.everyAircraft(double(second));
    m_byCallsign.clear();
    m_byHex.clear();
    for (qsizetype i = 0; i < m_aircraft.size(); ++i) {
        const SkyAircraft &aircraft = m_aircraft[i];
        if (aircraft.flight && !m_byCallsign.contains(aircraft.flight->trimmed()))
            m_byCallsign.insert(aircraft.flight->trimmed(), i);
        if (!m_byHex.contains(aircraft.hex))
            m_byHex.insert(aircraft.hex, i);
    }
}
