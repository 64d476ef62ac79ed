#pragma once

#include "SkyAircraft.h"

#include <QHash>
#include <QList>
#include <QString>
#include <optional>

class SimClock;
class SimulatedSky;

// Who flies in every area of the sky at one whole second of simulated time, found by callsign or by
// address, for the lookup services. Working out a large sky is slow beside a lookup, so the index is
// kept until the second or the sky changes; within a second only positions move, never identities, but
// for the rare crossing that ends just then.
class SkyIndex
{
public:
    SkyIndex(const SimulatedSky &sky, const SimClock &clock);

    // The first aircraft flying under this callsign (without the feeds' padding); nothing if none does.
    [[nodiscard]] std::optional<SkyAircraft> byCallsign(const QString &callsign);
    // The first aircraft with this address (lower case); nothing if none has it.
    [[nodiscard]] std::optional<SkyAircraft> byHex(const QString &hex);

private:
    void refresh();

    const SimulatedSky &m_sky;
    const SimClock &m_clock;
    std::optional<std::pair<qint64, quint64>> m_builtFor; // second, sky generation
    QList<SkyAircraft> m_aircraft;
    QHash<QString, qsizetype> m_byCallsign;
    QHash<QString, qsizetype> m_byHex;
};
