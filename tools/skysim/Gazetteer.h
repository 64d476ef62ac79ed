#pragma once

#include "GeoPoint.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

// The places the simulated geocoder knows: some thirty real towns and cities with their coordinates,
// written as OpenStreetMap writes them (local names, so "München" in "Bayern", "東京"), plus a few that
// test a client's reading of an address: a town, a village, a hamlet, a mountain in no locality, a city
// with no state, and two Portlands and two Vancouvers.
class Gazetteer
{
public:
    struct Place
    {
        QString name;
        QStringList otherNames; // found by these too: "Munich", "Tokyo"
        GeoPoint position;
        QString kind; // city, town, village, hamlet: the address key of its locality; else a feature (peak)
        QString county;
        QString state; // empty: none
        QString country;
        QString countryCode; // lower case, as the geocoder writes it
        double importance = 0.5;
        int index = 0; // place in the table, from which the identifiers come
    };

    [[nodiscard]] static const Gazetteer &instance();

    [[nodiscard]] const QList<Place> &places() const { return m_places; }

    // Places whose name, or another name, begins with the text before the first comma of the query,
    // or that the query names with more after a blank ("Seattle WA"); in any case and with or without
    // accents. The most important first; at most limit.
    [[nodiscard]] QList<Place> search(const QString &query, int limit) const;
    // The place nearest to a point, if one lies within maxKm.
    [[nodiscard]] std::optional<Place> nearest(GeoPoint point, double maxKm) const;

    // Lower case, accents dropped, blanks collapsed: the form names are compared in.
    [[nodiscard]] static QString folded(const QString &text);

private:
    Gazetteer();

    QList<Place> m_places;
};
