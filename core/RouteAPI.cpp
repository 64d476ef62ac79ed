#include "RouteAPI.h"

#include "LookupJson.h"
#include "ServiceRequest.h"
#include "Services.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace RouteAPI {

QByteArray userAgent()
{
    // The version in this text is part of the agreement with the services, not the program's version.
    return QByteArrayLiteral("Aerolume/1.1 (+mailto:" AEROLUME_CONTACT ")");
}

std::optional<FlightRoute> decode(const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject())
        return std::nullopt;
    const QJsonValue response = document.object().value(u"response");
    if (!response.isObject())
        return std::nullopt; // required
    bool failed = false;
    const auto route = LookupJson::object(response.toObject(), u"flightroute", failed);
    std::optional<QJsonObject> origin;
    std::optional<QJsonObject> destination;
    if (route) {
        origin = LookupJson::object(*route, u"origin", failed);
        destination = LookupJson::object(*route, u"destination", failed);
    }
    struct Airport
    {
        std::optional<QString> iata, icao, municipality;
    };
    auto airport = [&failed](const std::optional<QJsonObject> &object) -> std::optional<Airport> {
        if (!object)
            return std::nullopt;
        return Airport{LookupJson::text(*object, u"iata_code", failed), LookupJson::text(*object, u"icao_code", failed),
                       LookupJson::text(*object, u"municipality", failed)};
    };
    const auto from = airport(origin);
    const auto to = airport(destination);
    if (failed || !from || !to)
        return std::nullopt;
    // Only a missing IATA code falls back to ICAO; an empty one is taken as sent.
    const auto fromCode = from->iata ? from->iata : from->icao;
    const auto toCode = to->iata ? to->iata : to->icao;
    if (!fromCode || !toCode)
        return std::nullopt;
    return FlightRoute{*fromCode, from->municipality, *toCode, to->municipality};
}

void fetch(const QString &callsign, QObject *context, std::function<void(std::optional<FlightRoute>)> done)
{
    ServiceRequest::Options options;
    options.headers.append({"User-Agent", userAgent()});
    ServiceRequest::get(
        Services::routeURL() + u"/v0/callsign/"_qs + callsign, options,
        [done = std::move(done)](std::optional<QByteArray> body) { done(body ? decode(*body) : std::nullopt); },
        context);
}

} // namespace RouteAPI
