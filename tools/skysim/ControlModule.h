#pragma once

// The control API of aerolume-skysim, on the same loopback address and port as the services. Parameters
// go in the query string; every POST answers 200 with the new state, bad parameters 400 with
// {"error":"..."}, a wrong method 405.
//
//   GET  /control/state
//        {"seed":N,"count":N,"spreadNM":X,
//         "clock":{"now":MS,"elapsedSeconds":S,"frozen":BOOL},
//         "areas":[{"lat":X,"lon":Y},...],
//         "update":{"version":V},
//         "sources":{"primary":{"fault":KIND,"requests":N,"lastTarget":PATH},"fallback":{...},
//                    "route":{...},"photo":{...},"stream":{...},"tiles":{...},"geocoder":{...},
//                    "update":{...}}}
//   POST /control/fault?source=SOURCE&kind=KIND
//        SOURCE: primary | fallback | route | photo | stream | tiles | geocoder | update
//        KIND: none | status:CODE | empty | malformed | badjson | delay:MS | drop
//   POST /control/clock?advance=SECONDS      move simulated time forward (decimal, >= 0)
//   POST /control/clock?frozen=true|false    stop or restart the clock; may be combined with advance
//   POST /control/count?value=N              aircraft per area, 0 to 5000
//   POST /control/update?version=V           the version the update feed offers (digits and dots)
//   POST /control/update?mode=MODE[&delayMs=MS]
//        MODE: newer (offers the release after this build's version, feed healthy) | same (offers this
//        build's version, feed healthy) | malformed (the update source's fault "malformed") | slow (its
//        fault "delay:MS", default 10000); "update" in the state then also says "mode"
//   POST /control/reset                      faults, count, clock and offered version as at start,
//                                            request counts to zero, areas forgotten (the next query
//                                            centres a new one, unless a centre was fixed at start)

#include "SkySimModule.h"

#include <QByteArray>
#include <QString>
#include <optional>

class SimClock;
class SimulatedSky;
class SourceBoard;
class UpdateOffer;

class ControlModule : public SkySimModule
{
public:
    ControlModule(SimulatedSky &sky, SimClock &clock, SourceBoard &sources, UpdateOffer &offer,
                  int startCount);

    [[nodiscard]] std::optional<SkySimReply> handle(const SkySimRequest &request) override;

    // The current settings, as GET /control/state answers them.
    [[nodiscard]] QByteArray state() const;

    // The API in a few lines, for --help.
    [[nodiscard]] static QString usage();

    // How long the update feed's "slow" mode keeps its answer: longer than Aerolume's time-out.
    static constexpr int slowUpdateMs = 10000;

private:
    [[nodiscard]] SkySimReply setFault(const SkySimRequest &request);
    [[nodiscard]] SkySimReply setClock(const SkySimRequest &request);
    [[nodiscard]] SkySimReply setCount(const SkySimRequest &request);
    [[nodiscard]] SkySimReply setUpdate(const SkySimRequest &request);
    [[nodiscard]] SkySimReply reset();
    [[nodiscard]] SkySimReply stateReply() const;
    [[nodiscard]] QString updateMode() const;

    SimulatedSky &m_sky;
    SimClock &m_clock;
    SourceBoard &m_sources;
    UpdateOffer &m_offer;
    int m_startCount;
};
