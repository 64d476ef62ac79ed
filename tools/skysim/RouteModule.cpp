#include "RouteModule.h"

#include "Airlines.h"
#include "AirportTable.h"
#include "SimRandom.h"
#include "SkyIndex.h"
#include "SourceBoard.h"
#include "TrafficCatalog.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

namespace {

// Separate draws for whether a route is known, which airports it joins, and what it lacks.
constexpr quint64 knownStream = 0x4B4E4F57;
constexpr quint64 airportStream = 0xA1B0;
constexpr quint64 gapStream = 0x6A9;

SkySimReply answer(const QJsonValue &response, int status)
{
    return SkySimReply::json(
        QJsonDocument(QJsonObject{{u"response"_qs, response}}).toJson(QJsonDocument::Compact), status);
}

QJsonObject airportObject(const Airport &airport)
{
    const AirportTable &table = AirportTable::instance();
    return QJsonObject{{u"country_iso_name"_qs, airport.countryIso},
                       {u"country_name"_qs, table.countryName(airport.countryIso)},
                       {u"elevation"_qs, airport.elevationFeet},
                       {u"iata_code"_qs, airport.iata},
                       {u"icao_code"_qs, airport.icao},
                       {u"latitude"_qs, airport.lat},
                       {u"longitude"_qs, airport.lon},
                       {u"municipality"_qs, airport.municipality},
                       {u"name"_qs, airport.name}};
}

const Airport &pickOther(const QList<Airport> &airports, const Airport &avoid, SimRandom &random)
{
    for (;;) {
        const Airport &airport = random.pick(airports);
        if (airport.icao != avoid.icao)
            return airport;
    }
}

} // namespace

RouteModule::RouteModule(SkyIndex &sky, SourceBoard &sources) : m_sky(sky), m_sources(sources)
{
    if (!m_sources.contains(source()))
        m_sources.addSource(source());
}

std::optional<SkySimReply> RouteModule::handle(const SkySimRequest &request)
{
    static const QString prefix = u"/v0/callsign/"_qs;
    if (!request.path.startsWith(prefix) && request.path != u"/v0/callsign")
        return std::nullopt;
    if (!request.isRead()) {
        SkySimReply reply = answer(u"only GET is served here"_qs, 405);
        reply.allowReadsOnly();
        return reply;
    }
    static const QRegularExpression valid(u"^[A-Za-z0-9]{2,8}$"_qs);
    const QString given = request.path.mid(prefix.size());
    if (!valid.match(given).hasMatch())
        return answer(u"invalid callsign: "_qs + given, 400);

    m_sources.noteRequest(source(), QString::fromUtf8(request.target));
    const FaultPlan fault = m_sources.fault(source());
    if (fault.kind() == FaultPlan::Kind::Drop)
        return SkySimReply::drop();
    const QString callsign = given.toUpper();
    const std::optional<QByteArray> route =
        m_sky.byCallsign(callsign) ? routeAnswer(callsign, fault.kind() == FaultPlan::Kind::Malformed)
                                   : std::nullopt;
    SkySimReply reply = route ? SkySimReply::json(*route) : answer(u"unknown callsign"_qs, 404);
    fault.applyTo(reply);
    return reply;
}

std::optional<QByteArray> RouteModule::routeAnswer(const QString &callsign, bool malformed)
{
    const TrafficCatalog &catalog = TrafficCatalog::instance();
    const QString designator = callsign.left(3);
    if (!Airlines::isAirlineCallsign(callsign) || !catalog.isAirline(designator))
        return std::nullopt;
    const quint64 seed = SimRandom::textSeed(callsign);
    if (SimRandom(SimRandom::mix({seed, knownStream})).chance(0.05))
        return std::nullopt;

    const AirportTable &table = AirportTable::instance();
    const QString home = catalog.homeCountry(designator);
    QList<Airport> homeAirports = table.inCountry(home);
    if (homeAirports.isEmpty())
        homeAirports = table.inCountry(u"US"_qs);
    const bool northAmerican = home == u"US" || home == u"CA" || home == u"MX";
    QList<Airport> away;
    if (northAmerican) {
        away = table.northAmerican();
    } else {
        for (const Airport &airport : table.airports()) {
            if (airport.countryIso != home)
                away.append(airport);
        }
    }
    SimRandom random(SimRandom::mix({seed, airportStream}));
    Airport origin = random.pick(homeAirports);
    Airport destination = pickOther(away, origin, random);
    if (random.chance(0.5))
        std::swap(origin, destination);

    QJsonObject originObject = airportObject(origin);
    QJsonObject destinationObject = airportObject(destination);
    const qint64 gap = SimRandom(SimRandom::mix({seed, gapStream})).integer(0, 99);
    if (gap < 8)
        originObject.remove(u"iata_code"_qs);
    else if (gap < 16)
        originObject.remove(u"municipality"_qs);
    else if (gap < 22)
        destinationObject.insert(u"municipality"_qs, QJsonValue::Null);
    if (malformed)
        originObject.insert(u"iata_code"_qs, 404);

    const QJsonObject airline{{u"name"_qs, Airlines::table().value(designator)},
                              {u"icao"_qs, designator},
                              {u"iata"_qs, QJsonValue::Null},
                              {u"country"_qs, table.countryName(home)},
                              {u"country_iso"_qs, home},
                              {u"callsign"_qs, QJsonValue::Null}};
    const QJsonObject flightroute{
        {u"callsign"_qs, callsign}, {u"callsign_icao"_qs, callsign}, {u"callsign_iata"_qs, QJsonValue::Null},
        {u"airline"_qs, airline},   {u"origin"_qs, originObject},    {u"destination"_qs, destinationObject}};
    return QJsonDocument(QJsonObject{{u"response"_qs, QJsonObject{{u"flightroute"_qs, flightroute}}}})
        .toJson(QJsonDocument::Compact);
}
