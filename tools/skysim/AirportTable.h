#pragma once

#include "Airport.h"

#include <QList>
#include <QString>

// The airports the route service flies between: the hubs of the airlines the sky flies and a spread of
// North American fields, in a fixed order so that a callsign always draws the same pair.
class AirportTable
{
public:
    [[nodiscard]] static const AirportTable &instance();

    [[nodiscard]] const QList<Airport> &airports() const { return m_airports; }
    // Those of one country, in table order; empty for a country without any.
    [[nodiscard]] QList<Airport> inCountry(const QString &countryIso) const;
    // Those of North America (Canada, the United States, Mexico).
    [[nodiscard]] QList<Airport> northAmerican() const;
    // The English name of a country of the table, the code itself for any other.
    [[nodiscard]] QString countryName(const QString &countryIso) const;

private:
    AirportTable();

    QList<Airport> m_airports;
};
