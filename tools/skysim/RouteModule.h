#pragma once

#include "SkySimModule.h"

#include <QByteArray>
#include <QString>

class SkyIndex;
class SourceBoard;

// The route service, in its answer shape:
//   GET /v0/callsign/CALLSIGN
//   200 {"response":{"flightroute":{"callsign":CS,"callsign_icao":CS,"callsign_iata":null,
//        "airline":{"name":..,"icao":..,"iata":null,"country":..,"country_iso":..,"callsign":null},
//        "origin":AIRPORT,"destination":AIRPORT}}}
//       AIRPORT: {"country_iso_name","country_name","elevation","iata_code","icao_code","latitude",
//                 "longitude","municipality","name"}
//   404 {"response":"unknown callsign"}
//   400 {"response":"invalid callsign: ..."}   not 2 to 8 letters and digits
// It knows the airline flights flying in the simulated sky at the moment of asking (callsigns in any
// case; a flight that has left is forgotten), less one in twenty that it never knew. A callsign's route
// depends on the callsign alone: a pair of airports that suits its airline, the airline's home country at
// one end. By the callsign too, a few routes lack something the client must cope with: an origin with
// only "icao_code", an origin without "municipality", a destination whose "municipality" is null.
// Faults of the source "route" apply; "malformed" sends the origin's "iata_code" as a number.
class RouteModule : public SkySimModule
{
public:
    [[nodiscard]] static QString source() { return QStringLiteral("route"); }

    RouteModule(SkyIndex &sky, SourceBoard &sources);

    [[nodiscard]] std::optional<SkySimReply> handle(const SkySimRequest &request) override;

    // The answer for a callsign the service knows, upper case; nothing for one it never knew.
    [[nodiscard]] static std::optional<QByteArray> routeAnswer(const QString &callsign, bool malformed);

private:
    SkyIndex &m_sky;
    SourceBoard &m_sources;
};
