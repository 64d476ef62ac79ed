#pragma once

#include "FlightIdentity.h"

#include <QHash>
#include <QString>
#include <QStringList>

class SimRandom;

// What flies: groups of type designators and airline designators taken from the program's own type and
// airline tables, and the registries that registrations and transponder addresses come from. Every list
// is sorted, so that a seed draws the same aircraft whatever order the tables' hashes iterate in.
class TrafficCatalog
{
public:
    // The fleets a sky draws from. Each flies in one speed class of the sky (see SimulatedSky).
    enum class Fleet
    {
        Airliner, // mainline carriers, narrow and wide bodies
        Regional, // regional carriers' jets and turboprops
        Cargo,
        BusinessJet, // fractional fleets and private jets
        LightPlane,  // general aviation singles and twins
        Feeder,      // small cargo and commuter turboprops
        Helicopter,
        MilitaryJet,
        MilitaryHelicopter,
    };

    [[nodiscard]] static const TrafficCatalog &instance();

    // A fresh identity of the fleet.
    [[nodiscard]] FlightIdentity draw(Fleet fleet, SimRandom &random) const;

    // The type designators a fleet flies, each one a key of the type table.
    [[nodiscard]] QStringList typeCodes(Fleet fleet) const;

    // Whether the sky flies this designator as an airline of some fleet; air forces' are not.
    [[nodiscard]] bool isAirline(const QString &designator) const;
    // The country an airline's aircraft are registered in, as an ISO 3166 code ("US" when unknown).
    [[nodiscard]] QString homeCountry(const QString &designator) const;

private:
    struct Registry
    {
        QString pattern; // '@' a letter, '#' a digit, "N" alone the US scheme
        quint32 hexLow;
        quint32 hexHigh;
        QString vfrSquawk;
    };

    TrafficCatalog();

    [[nodiscard]] const Registry &registryFor(const QString &airline) const;
    [[nodiscard]] static QString registration(const Registry &registry, SimRandom &random);
    [[nodiscard]] static QString hexIn(const Registry &registry, SimRandom &random);
    [[nodiscard]] static QString categoryOf(const QString &typeCode);
    [[nodiscard]] QString description(const QString &typeCode) const;
    void fillType(FlightIdentity &identity, const QStringList &types, SimRandom &random) const;

    QHash<int, QStringList> m_types;    // by Group (in the .cpp)
    QHash<int, QStringList> m_airlines; // by Group
    QHash<QString, QString> m_airlineRegistry;
    QHash<QString, Registry> m_registries;
};
