#pragma once

#include <QString>

// An airport as the route service describes one.
struct Airport
{
    QString iata;
    QString icao;
    QString name;
    QString municipality;
    QString countryIso; // ISO 3166 alpha-2
    double lat = 0.0;
    double lon = 0.0;
    int elevationFeet = 0;
};
