#pragma once

#include <QString>
#include <QtGlobal>
#include <optional>

// Who an aircraft is, as a feed's aircraft database and transponder tell it: everything about a row that
// doesn't change while it crosses the sky.
struct FlightIdentity
{
    QString hex;                          // six lower-case hexadecimal digits
    std::optional<QString> callsign;      // without the feeds' padding
    std::optional<QString> registration;  // "r"
    std::optional<QString> typeCode;      // "t", a designator of the type table
    std::optional<QString> description;   // "desc", the type's name in upper case
    std::optional<QString> ownerOperator; // "ownOp"
    std::optional<QString> year;          // "year", as text
    std::optional<QString> category;      // ADS-B emitter category
    qint64 dbFlags = 0;                   // bit 0 military, bit 2 privacy (PIA), bit 3 LADD
    bool instrumentRules = true;          // false: a VFR flight squawking the registry's VFR code
    QString vfrSquawk = QStringLiteral("1200");
};
