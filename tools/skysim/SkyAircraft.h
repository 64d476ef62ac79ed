#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>
#include <optional>

// One aircraft as a feed reports it at one moment: the content of one row, before the distance and
// bearing from the queried point are added. Absent optionals are keys the row leaves out.
struct SkyAircraft
{
    QString hex;
    QString messageType = QStringLiteral("adsb_icao"); // "type": adsb_icao, mlat, tisb_trackfile
    std::optional<QString> flight;                     // padded on the right to eight characters
    std::optional<QString> registration;
    std::optional<QString> typeCode;
    std::optional<QString> description;
    std::optional<QString> ownerOperator;
    std::optional<QString> year;
    qint64 dbFlags = 0; // written only when not zero, as the feeds do

    bool onGround = false;
    qint64 altBaro = 0; // feet; "ground" is written instead when onGround
    std::optional<qint64> altGeom;
    double groundSpeed = 0.0;
    std::optional<qint64> indicatedAirspeed;
    std::optional<qint64> trueAirspeed;
    std::optional<double> mach;
    double track = 0.0;
    std::optional<qint64> baroRate;
    std::optional<qint64> geomRate;
    std::optional<QString> squawk;
    std::optional<QString> emergency;
    std::optional<QString> category;
    std::optional<double> navQnh;
    std::optional<qint64> navAltitudeMcp;
    std::optional<double> navHeading;
    QStringList navModes;

    // The last known position, rounded to the six decimals the feeds print.
    double lat = 0.0;
    double lon = 0.0;
    // False when the feed has only an old position, which it sends under "lastPosition".
    bool positionCurrent = true;
    double seenPos = 0.0;
    double seen = 0.0;
    std::optional<int> version; // ADS-B version; absent for multilateration and TIS-B
    QStringList mlat;           // fields that came from multilateration
    QStringList tisb;           // fields that came from TIS-B
    qint64 messages = 0;
    double rssi = 0.0;
};
