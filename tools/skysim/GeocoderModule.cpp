#include "GeocoderModule.h"

#include "SourceBoard.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>
#include <cmath>

namespace {

const QString licence = u"Data © OpenStreetMap contributors, ODbL 1.0. http://osm.org/copyright"_qs;
const QStringList localities{u"city"_qs, u"town"_qs, u"village"_qs, u"hamlet"_qs};

SkySimReply error(const QString &message)
{
    const QJsonObject inner{{u"code"_qs, 400}, {u"message"_qs, message}};
    return SkySimReply::json(QJsonDocument(QJsonObject{{u"error"_qs, inner}}).toJson(QJsonDocument::Compact),
                             400);
}

// A query value as a form sends it: "+" for a blank, then percent-escapes (UTF-8).
std::optional<QString> formValue(const SkySimRequest &request, const QString &name)
{
    if (!request.query.hasQueryItem(name))
        return std::nullopt;
    QByteArray raw = request.query.queryItemValue(name, QUrl::FullyEncoded).toLatin1();
    raw.replace('+', "%20");
    return QUrl::fromPercentEncoding(raw);
}

QString coordinate(double degrees)
{
    return QString::number(degrees, 'f', 7);
}

QJsonObject result(const Gazetteer::Place &place, bool v2, bool withAddress, bool malformed)
{
    const bool locality = localities.contains(place.kind);
    QStringList displayParts{place.name};
    for (const QString &part : {place.county, place.state, place.country}) {
        if (!part.isEmpty() && part != displayParts.constLast())
            displayParts.append(part);
    }
    QJsonObject object{
        {u"place_id"_qs, 310000 + place.index * 7},
        {u"licence"_qs, licence},
        {u"osm_type"_qs, locality && place.kind == u"city" ? u"relation"_qs : u"node"_qs},
        {u"osm_id"_qs, 5200000 + place.index * 13},
        {u"lat"_qs, coordinate(place.position.lat)},
        {u"lon"_qs, coordinate(place.position.lon)},
        {v2 ? u"category"_qs : u"class"_qs, locality ? u"place"_qs : u"natural"_qs},
        {u"type"_qs, place.kind},
        {u"place_rank"_qs, place.kind == u"city"   ? 16
                           : place.kind == u"town" ? 18
                                                   : 20},
        {u"importance"_qs, place.importance},
        {u"addresstype"_qs, place.kind},
        {u"name"_qs, place.name},
        {u"display_name"_qs, displayParts.join(u", ")},
        {u"boundingbox"_qs,
         QJsonArray{coordinate(place.position.lat - 0.1), coordinate(place.position.lat + 0.1),
                    coordinate(place.position.lon - 0.1), coordinate(place.position.lon + 0.1)}},
    };
    if (withAddress) {
        QJsonObject address{{place.kind, place.name}};
        if (!place.county.isEmpty())
            address.insert(u"county"_qs, place.county);
        if (!place.state.isEmpty())
            address.insert(u"state"_qs, place.state);
        address.insert(u"country"_qs, place.country);
        address.insert(u"country_code"_qs, place.countryCode);
        object.insert(u"address"_qs, address);
    }
    if (malformed)
        object.remove(u"lat"_qs);
    return object;
}

std::optional<bool> formatIsV2(const SkySimRequest &request)
{
    const QString format = request.query.queryItemValue(u"format"_qs, QUrl::FullyDecoded);
    if (format.isEmpty() || format == u"jsonv2")
        return true;
    if (format == u"json")
        return false;
    return std::nullopt;
}

std::optional<double> decimal(const SkySimRequest &request, const QString &name)
{
    bool ok = false;
    const double value = request.query.queryItemValue(name, QUrl::FullyDecoded).toDouble(&ok);
    if (!ok || !std::isfinite(value))
        return std::nullopt;
    return value;
}

} // namespace

GeocoderModule::GeocoderModule(SourceBoard &sources) : m_sources(sources)
{
    if (!m_sources.contains(source()))
        m_sources.addSource(source());
}

std::optional<SkySimReply> GeocoderModule::handle(const SkySimRequest &request)
{
    const bool isSearch = request.path == u"/search" || request.path == u"/search.php";
    const bool isReverse = request.path == u"/reverse" || request.path == u"/reverse.php";
    if (!isSearch && !isReverse)
        return std::nullopt;
    if (!request.isRead()) {
        return SkySimReply::readOnly();
    }
    m_sources.noteRequest(source(), QString::fromUtf8(request.target));
    const FaultPlan fault = m_sources.fault(source());
    if (fault.kind() == FaultPlan::Kind::Drop)
        return SkySimReply::drop();
    const bool malformed = fault.kind() == FaultPlan::Kind::Malformed;
    SkySimReply reply = isSearch ? search(request, malformed) : reverse(request, malformed);
    fault.applyTo(reply);
    return reply;
}

SkySimReply GeocoderModule::search(const SkySimRequest &request, bool malformed) const
{
    const std::optional<QString> query = formValue(request, u"q"_qs);
    if (!query)
        return error(u"Nothing to search for."_qs);
    const std::optional<bool> v2 = formatIsV2(request);
    if (!v2)
        return error(u"Parameter 'format' must be json or jsonv2 here."_qs);
    int limit = defaultLimit;
    if (request.query.hasQueryItem(u"limit"_qs)) {
        bool ok = false;
        limit = request.query.queryItemValue(u"limit"_qs).toInt(&ok);
        if (!ok)
            return error(u"Integer number expected for parameter 'limit'"_qs);
        limit = std::clamp(limit, 1, maxLimit);
    }
    const bool withAddress = request.query.queryItemValue(u"addressdetails"_qs) == u"1";
    QJsonArray results;
    for (const Gazetteer::Place &place : Gazetteer::instance().search(*query, limit))
        results.append(result(place, *v2, withAddress, malformed));
    return SkySimReply::json(QJsonDocument(results).toJson(QJsonDocument::Compact));
}

SkySimReply GeocoderModule::reverse(const SkySimRequest &request, bool malformed) const
{
    const std::optional<bool> v2 = formatIsV2(request);
    if (!v2)
        return error(u"Parameter 'format' must be json or jsonv2 here."_qs);
    const auto lat = decimal(request, u"lat"_qs);
    const auto lon = decimal(request, u"lon"_qs);
    if (!lat || !lon || std::fabs(*lat) > 90.0 || std::fabs(*lon) > 180.0)
        return error(u"Need coordinates or OSM object to lookup."_qs);
    const std::optional<Gazetteer::Place> place =
        Gazetteer::instance().nearest(GeoPoint{*lat, *lon}, reverseReachKm);
    if (!place)
        return SkySimReply::json(R"({"error":"Unable to geocode"})");
    const bool withAddress = request.query.queryItemValue(u"addressdetails"_qs) != u"0";
    return SkySimReply::json(
        QJsonDocument(result(*place, *v2, withAddress, malformed)).toJson(QJsonDocument::Compact));
}
