#pragma once

#include "GeoPoint.h"
#include "SkyAircraft.h"
#include "SkySimModule.h"

#include <QByteArray>
#include <QString>

class SimClock;
class SimulatedSky;
class SourceBoard;

// The two ADS-B networks' point queries, answered from the simulated sky in each network's own shape:
//   primary   GET /v2/point/LAT/LON/NM                  {"ac":[...],"msg":"No error","now":ms,"total":n,
//                                                        "ctime":ms,"ptime":ms}
//   fallback  GET /api/v2/lat/LAT/lon/LON/dist/NM       {"aircraft":[...],"now":seconds,"resultCount":n}
// LAT and LON are decimal numbers with an optional minus sign and fraction, NM a decimal number from 0;
// radii above 250 are served as 250, as the networks cap them. A path of the right shape with a bad
// number is a 400, any other path under these prefixes a 404. Rows carry "dst" (great-circle nautical
// miles, three decimals) and "dir" (initial bearing from the queried point, one decimal), and only
// aircraft within the radius are listed, in no particular order.
class FeedModule : public SkySimModule
{
public:
    static constexpr double maxRadiusNM = 250.0;

    [[nodiscard]] static QString primarySource() { return QStringLiteral("primary"); }
    [[nodiscard]] static QString fallbackSource() { return QStringLiteral("fallback"); }

    // The list keys are the networks' own by default ("ac" and "aircraft").
    FeedModule(SimulatedSky &sky, const SimClock &clock, SourceBoard &sources, const QString &primaryListKey,
               const QString &fallbackListKey);

    [[nodiscard]] std::optional<SkySimReply> handle(const SkySimRequest &request) override;

    // One feed row for an aircraft seen from the queried point; without "hex" when asked, for the fault
    // that sends a malformed row.
    [[nodiscard]] static QByteArray row(const SkyAircraft &aircraft, GeoPoint from, bool withHex = true);

private:
    [[nodiscard]] QByteArray answer(bool primary, GeoPoint point, double radiusNM, bool malformed) const;

    SimulatedSky &m_sky;
    const SimClock &m_clock;
    SourceBoard &m_sources;
    QByteArray m_primaryListKey;
    QByteArray m_fallbackListKey;
};
