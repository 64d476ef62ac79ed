#include "FeedModule.h"

#include "GeoMath.h"
#include "JsonObjectWriter.h"
#include "SimClock.h"
#include "SimulatedSky.h"
#include "SourceBoard.h"

#include <QElapsedTimer>
#include <cmath>

namespace {

// "-122.70000", "45", "0.5": digits with an optional minus sign and fraction; nothing else (no exponent,
// no comma, no blanks), as the networks' routers accept.
std::optional<double> decimalNumber(QStringView text)
{
    qsizetype i = 0;
    if (i < text.size() && text[i] == u'-')
        ++i;
    const qsizetype integerStart = i;
    while (i < text.size() && text[i] >= u'0' && text[i] <= u'9')
        ++i;
    if (i == integerStart)
        return std::nullopt;
    if (i < text.size() && text[i] == u'.') {
        const qsizetype fractionStart = ++i;
        while (i < text.size() && text[i] >= u'0' && text[i] <= u'9')
            ++i;
        if (i == fractionStart)
            return std::nullopt;
    }
    if (i != text.size())
        return std::nullopt;
    bool ok = false;
    const double value = text.toDouble(&ok);
    if (!ok || !std::isfinite(value))
        return std::nullopt;
    return value;
}

double roundedDecimals(double value, int decimals)
{
    const double factor = std::pow(10.0, decimals);
    return std::round(value * factor) / factor;
}

} // namespace

FeedModule::FeedModule(SimulatedSky &sky, const SimClock &clock, SourceBoard &sources,
                       const QString &primaryListKey, const QString &fallbackListKey)
    : m_sky(sky), m_clock(clock), m_sources(sources),
      m_primaryListKey(JsonObjectWriter::quoted(primaryListKey)),
      m_fallbackListKey(JsonObjectWriter::quoted(fallbackListKey))
{
    // The owner may have registered them already, with the faults to start with.
    for (const QString &source : {primarySource(), fallbackSource()}) {
        if (!m_sources.contains(source))
            m_sources.addSource(source);
    }
}

std::optional<SkySimReply> FeedModule::handle(const SkySimRequest &request)
{
    const QString &path = request.path;
    bool primary = false;
    QString latText;
    QString lonText;
    QString radiusText;
    const QStringList parts = path.split(u'/');
    if (path == u"/v2/point" || path.startsWith(u"/v2/point/")) {
        // "", "v2", "point", LAT, LON, NM
        if (parts.size() != 6)
            return SkySimReply::text("expected /v2/point/LAT/LON/NM", 404);
        primary = true;
        latText = parts[3];
        lonText = parts[4];
        radiusText = parts[5];
    } else if (path == u"/api/v2/lat" || path.startsWith(u"/api/v2/lat/")) {
        // "", "api", "v2", "lat", LAT, "lon", LON, "dist", NM
        if (parts.size() != 9 || parts[5] != u"lon" || parts[7] != u"dist")
            return SkySimReply::text("expected /api/v2/lat/LAT/lon/LON/dist/NM", 404);
        latText = parts[4];
        lonText = parts[6];
        radiusText = parts[8];
    } else {
        return std::nullopt;
    }
    if (!request.isRead()) {
        return SkySimReply::readOnly();
    }

    const auto lat = decimalNumber(latText);
    const auto lon = decimalNumber(lonText);
    const auto radius = decimalNumber(radiusText);
    if (!lat || *lat < -90.0 || *lat > 90.0)
        return SkySimReply::text("bad latitude: " + latText.toUtf8(), 400);
    if (!lon || *lon < -180.0 || *lon > 180.0)
        return SkySimReply::text("bad longitude: " + lonText.toUtf8(), 400);
    if (!radius || *radius < 0.0)
        return SkySimReply::text("bad radius: " + radiusText.toUtf8(), 400);

    const QString source = primary ? primarySource() : fallbackSource();
    m_sources.noteRequest(source, QString::fromUtf8(request.target));
    const FaultPlan fault = m_sources.fault(source);
    if (fault.kind() == FaultPlan::Kind::Drop)
        return SkySimReply::drop();
    SkySimReply reply =
        SkySimReply::json(answer(primary, GeoPoint{*lat, *lon}, std::min(*radius, maxRadiusNM),
                                 fault.kind() == FaultPlan::Kind::Malformed));
    fault.applyTo(reply);
    return reply;
}

QByteArray FeedModule::answer(bool primary, GeoPoint point, double radiusNM, bool malformed) const
{
    QElapsedTimer work;
    work.start();
    const qint64 nowMs = m_clock.nowMs();
    const QList<SkyAircraft> aircraft = m_sky.aircraftAround(point, m_clock.elapsedSeconds());

    QList<const SkyAircraft *> inRange;
    for (const SkyAircraft &one : aircraft) {
        if (GeoMath::distanceNM(point, GeoPoint{one.lat, one.lon}) <= radiusNM)
            inRange.append(&one);
    }
    QList<QByteArray> rows;
    rows.reserve(inRange.size() + 1);
    for (const SkyAircraft *one : inRange)
        rows.append(row(*one, point));
    if (malformed) {
        // One row that lacks the only required key, among good ones.
        const qsizetype middle = rows.size() / 2;
        QByteArray bad;
        if (!inRange.isEmpty()) {
            bad = row(*inRange[middle], point, false);
        } else {
            SkyAircraft stray;
            stray.flight = u"NOHEX1  "_qs;
            stray.lat = point.lat;
            stray.lon = point.lon;
            bad = row(stray, point, false);
        }
        rows.insert(middle, bad);
    }
    const QByteArray list = '[' + rows.join(',') + ']';
    const QByteArray count = QByteArray::number(rows.size());

    if (primary) {
        return '{' + m_primaryListKey + ':' + list +
               ",\"msg\":\"No error\",\"now\":" + QByteArray::number(nowMs) + ",\"total\":" + count +
               ",\"ctime\":" + QByteArray::number(nowMs - nowMs % 1000) +
               ",\"ptime\":" + QByteArray::number(work.elapsed()) + '}';
    }
    return '{' + m_fallbackListKey + ':' + list +
           ",\"now\":" + JsonObjectWriter::number(double(nowMs) / 1000.0, 3) + ",\"resultCount\":" + count +
           '}';
}

QByteArray FeedModule::row(const SkyAircraft &a, GeoPoint from, bool withHex)
{
    const GeoPoint position{a.lat, a.lon};
    const double distance = roundedDecimals(GeoMath::distanceNM(from, position), 3);
    double direction = roundedDecimals(GeoMath::initialBearing(from, position), 1);
    if (direction >= 360.0)
        direction = 0.0;

    // Keys in the order the networks send them.
    JsonObjectWriter w;
    if (withHex)
        w.string("hex", a.hex);
    w.string("type", a.messageType);
    if (a.flight)
        w.string("flight", *a.flight);
    if (a.registration)
        w.string("r", *a.registration);
    if (a.typeCode)
        w.string("t", *a.typeCode);
    if (a.description)
        w.string("desc", *a.description);
    if (a.ownerOperator)
        w.string("ownOp", *a.ownerOperator);
    if (a.year)
        w.string("year", *a.year);
    if (a.dbFlags != 0)
        w.integer("dbFlags", a.dbFlags);
    if (a.onGround)
        w.string("alt_baro", u"ground"_qs);
    else
        w.integer("alt_baro", a.altBaro);
    if (a.altGeom)
        w.integer("alt_geom", *a.altGeom);
    w.fixed("gs", a.groundSpeed, 1);
    if (a.indicatedAirspeed)
        w.integer("ias", *a.indicatedAirspeed);
    if (a.trueAirspeed)
        w.integer("tas", *a.trueAirspeed);
    if (a.mach)
        w.fixed("mach", *a.mach, 3);
    w.fixed("track", a.track, 2);
    if (a.baroRate)
        w.integer("baro_rate", *a.baroRate);
    if (a.geomRate)
        w.integer("geom_rate", *a.geomRate);
    if (a.squawk)
        w.string("squawk", *a.squawk);
    if (a.emergency)
        w.string("emergency", *a.emergency);
    if (a.category)
        w.string("category", *a.category);
    if (a.navQnh)
        w.fixed("nav_qnh", *a.navQnh, 1);
    if (a.navAltitudeMcp)
        w.integer("nav_altitude_mcp", *a.navAltitudeMcp);
    if (a.navHeading)
        w.fixed("nav_heading", *a.navHeading, 1);
    if (!a.navModes.isEmpty())
        w.stringList("nav_modes", a.navModes);
    const bool adsb = a.version.has_value();
    if (a.positionCurrent) {
        w.fixed("lat", a.lat, 6).fixed("lon", a.lon, 6);
        if (adsb)
            w.integer("nic", 8).integer("rc", 186);
        w.fixed("seen_pos", a.seenPos, 3);
    } else {
        JsonObjectWriter last;
        last.fixed("lat", a.lat, 6).fixed("lon", a.lon, 6).integer("nic", 8).integer("rc", 186);
        last.fixed("seen_pos", a.seenPos, 3);
        w.raw("lastPosition", last.finish());
    }
    if (adsb) {
        w.integer("version", *a.version);
        if (*a.version >= 2) {
            w.integer("nic_baro", 1).integer("nac_p", 9).integer("nac_v", 1).integer("sil", 3);
            w.string("sil_type", u"perhour"_qs).integer("gva", 2).integer("sda", 2);
        }
        w.integer("alert", 0).integer("spi", 0);
    }
    w.stringList("mlat", a.mlat).stringList("tisb", a.tisb);
    w.integer("messages", a.messages);
    w.fixed("seen", a.seen, 1);
    w.fixed("rssi", a.rssi, 1);
    w.fixed("dst", distance, 3);
    w.fixed("dir", direction, 1);
    return w.finish();
}
