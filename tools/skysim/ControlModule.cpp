#include "ControlModule.h"

#include "FaultPlan.h"
#include "SimClock.h"
#include "SimulatedSky.h"
#include "SourceBoard.h"
#include "UpdateFeedModule.h"
#include "UpdateOffer.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cmath>

namespace {

SkySimReply error(const QString &message, int status = 400)
{
    return SkySimReply::json(
        QJsonDocument(QJsonObject{{u"error"_qs, message}}).toJson(QJsonDocument::Compact), status);
}

SkySimReply wrongMethod(const QByteArray &allowed)
{
    SkySimReply reply = error(u"use "_qs + QString::fromLatin1(allowed), 405);
    reply.headers.append({QByteArrayLiteral("Allow"), allowed});
    return reply;
}

QString parameter(const SkySimRequest &request, const QString &name)
{
    return request.query.queryItemValue(name, QUrl::FullyDecoded);
}

} // namespace

ControlModule::ControlModule(SimulatedSky &sky, SimClock &clock, SourceBoard &sources, UpdateOffer &offer,
                             int startCount)
    : m_sky(sky), m_clock(clock), m_sources(sources), m_offer(offer), m_startCount(startCount)
{
}

std::optional<SkySimReply> ControlModule::handle(const SkySimRequest &request)
{
    const QString &path = request.path;
    if (path != u"/control" && !path.startsWith(u"/control/"))
        return std::nullopt;
    if (path == u"/control/state") {
        if (!request.isRead())
            return wrongMethod("GET");
        return stateReply();
    }
    using Handler = SkySimReply (ControlModule::*)(const SkySimRequest &);
    Handler handler = nullptr;
    if (path == u"/control/fault")
        handler = &ControlModule::setFault;
    else if (path == u"/control/clock")
        handler = &ControlModule::setClock;
    else if (path == u"/control/count")
        handler = &ControlModule::setCount;
    else if (path == u"/control/update")
        handler = &ControlModule::setUpdate;
    else if (path != u"/control/reset")
        return error(u"no such control: "_qs + path, 404);
    if (request.method != "POST")
        return wrongMethod("POST");
    return handler ? (this->*handler)(request) : reset();
}

SkySimReply ControlModule::setFault(const SkySimRequest &request)
{
    const QString source = parameter(request, u"source"_qs);
    if (!m_sources.contains(source))
        return error(u"unknown source \"%1\"; known: %2"_qs.arg(source, m_sources.sources().join(u", ")));
    const auto fault = FaultPlan::parse(parameter(request, u"kind"_qs));
    if (!fault)
        return error(u"unknown fault kind \"%1\""_qs.arg(parameter(request, u"kind"_qs)));
    m_sources.setFault(source, *fault);
    return stateReply();
}

SkySimReply ControlModule::setClock(const SkySimRequest &request)
{
    const bool hasAdvance = request.query.hasQueryItem(u"advance"_qs);
    const bool hasFrozen = request.query.hasQueryItem(u"frozen"_qs);
    if (!hasAdvance && !hasFrozen)
        return error(u"give advance=SECONDS and/or frozen=true|false"_qs);
    qint64 advanceMs = 0;
    if (hasAdvance) {
        bool ok = false;
        const double seconds = parameter(request, u"advance"_qs).toDouble(&ok);
        if (!ok || !std::isfinite(seconds) || seconds < 0.0 || seconds > 1e9)
            return error(u"advance must be a number of seconds, 0 or more"_qs);
        advanceMs = std::llround(seconds * 1000.0);
    }
    std::optional<bool> frozen;
    if (hasFrozen) {
        const QString text = parameter(request, u"frozen"_qs);
        if (text == u"true" || text == u"1")
            frozen = true;
        else if (text == u"false" || text == u"0")
            frozen = false;
        else
            return error(u"frozen must be true or false"_qs);
    }
    if (frozen)
        m_clock.setFrozen(*frozen);
    m_clock.advance(advanceMs);
    return stateReply();
}

SkySimReply ControlModule::setCount(const SkySimRequest &request)
{
    bool ok = false;
    const int count = parameter(request, u"value"_qs).toInt(&ok);
    if (!ok || count < 0 || count > SimulatedSky::maxCount)
        return error(u"value must be a whole number from 0 to %1"_qs.arg(SimulatedSky::maxCount));
    m_sky.setCount(count);
    return stateReply();
}

SkySimReply ControlModule::setUpdate(const SkySimRequest &request)
{
    const bool hasMode = request.query.hasQueryItem(u"mode"_qs);
    const bool hasVersion = request.query.hasQueryItem(u"version"_qs);
    if (!hasMode && !hasVersion)
        return error(u"give mode=newer|same|malformed|slow or version=V"_qs);
    const QString version = parameter(request, u"version"_qs);
    if (hasVersion && !UpdateOffer::isVersion(version))
        return error(u"version must be one to four whole numbers joined by dots, e.g. 0.2.0"_qs);
    // Checked whole before anything changes, so a bad request leaves the feed as it was.
    std::optional<QString> offered;
    std::optional<FaultPlan> fault;
    if (hasMode) {
        const QString mode = parameter(request, u"mode"_qs);
        if (mode == u"newer") {
            offered = UpdateOffer::nextVersion(UpdateOffer::programVersion());
            fault = FaultPlan();
        } else if (mode == u"same") {
            offered = UpdateOffer::programVersion();
            fault = FaultPlan();
        } else if (mode == u"malformed") {
            fault = FaultPlan::parse(u"malformed");
        } else if (mode == u"slow") {
            const QString delay = request.query.hasQueryItem(u"delayMs"_qs)
                                      ? parameter(request, u"delayMs"_qs)
                                      : QString::number(slowUpdateMs);
            fault = FaultPlan::parse(QString(u"delay:"_qs + delay));
            if (!fault)
                return error(u"delayMs must be a whole number from 0 to %1"_qs.arg(FaultPlan::maxDelayMs));
        } else {
            return error(u"unknown update mode \"%1\"; known: newer, same, malformed, slow"_qs.arg(mode));
        }
    }
    if (hasVersion)
        offered = version;
    if (offered)
        m_offer.setVersion(*offered);
    if (fault)
        m_sources.setFault(UpdateFeedModule::source(), *fault);
    return stateReply();
}

QString ControlModule::updateMode() const
{
    const FaultPlan fault = m_sources.fault(UpdateFeedModule::source());
    if (fault.kind() == FaultPlan::Kind::Malformed)
        return u"malformed"_qs;
    if (fault.kind() == FaultPlan::Kind::Delay)
        return u"slow"_qs;
    if (fault.kind() != FaultPlan::Kind::None)
        return u"fault"_qs;
    const int order = UpdateOffer::compare(m_offer.version(), UpdateOffer::programVersion());
    return order > 0 ? u"newer"_qs : order == 0 ? u"same"_qs : u"older"_qs;
}

SkySimReply ControlModule::reset()
{
    m_sources.reset();
    m_offer.reset();
    m_sky.setCount(m_startCount);
    m_sky.forgetAreas();
    m_clock.reset();
    return stateReply();
}

SkySimReply ControlModule::stateReply() const
{
    return SkySimReply::json(state());
}

QByteArray ControlModule::state() const
{
    QJsonArray areas;
    for (const GeoPoint &centre : m_sky.areaCentres())
        areas.append(QJsonObject{{u"lat"_qs, centre.lat}, {u"lon"_qs, centre.lon}});
    QJsonObject sources;
    for (const QString &source : m_sources.sources()) {
        sources.insert(source, QJsonObject{{u"fault"_qs, m_sources.fault(source).toString()},
                                           {u"requests"_qs, m_sources.requestCount(source)},
                                           {u"lastTarget"_qs, m_sources.lastTarget(source)}});
    }
    const QJsonObject clock{{u"now"_qs, m_clock.nowMs()},
                            {u"elapsedSeconds"_qs, m_clock.elapsedSeconds()},
                            {u"frozen"_qs, m_clock.isFrozen()}};
    const QJsonObject state{{u"seed"_qs, qint64(m_sky.seed())},
                            {u"count"_qs, m_sky.count()},
                            {u"spreadNM"_qs, m_sky.spreadNM()},
                            {u"clock"_qs, clock},
                            {u"areas"_qs, areas},
                            {u"update"_qs, QJsonObject{{u"version"_qs, m_offer.version()},
                                                       {u"mode"_qs, updateMode()}}},
                            {u"sources"_qs, sources}};
    return QJsonDocument(state).toJson(QJsonDocument::Compact);
}

QString ControlModule::usage()
{
    return u"Control API (same address and port; parameters in the query string):\n"
           "  GET  /control/state                         current settings as JSON\n"
           "  POST /control/fault?source=SOURCE&kind=KIND  SOURCE "
           "primary|fallback|route|photo|stream|tiles|\n"
           "                                              geocoder|update; KIND as for the flags\n"
           "  POST /control/clock?advance=SECONDS          move simulated time forward\n"
           "  POST /control/clock?frozen=true|false        stop or restart the clock\n"
           "  POST /control/count?value=N                  aircraft per area, 0-5000\n"
           "  POST /control/update?version=V               the version the update feed offers\n"
           "  POST /control/update?mode=MODE               the update feed as a test needs it: newer (the\n"
           "                                              next release after this build's), same (this\n"
           "                                              build's version), malformed (a feed no reader\n"
           "                                              accepts), slow (answers after delayMs, default\n"
           "                                              10000: past Aerolume's 8-second time-out)\n"
           "  POST /control/reset                          faults, count, clock, offered version as at\n"
           "                                              start; areas forgotten\n"
           "Every POST answers with the new state; bad parameters give 400 {\"error\":...}.\n"_qs;
}
