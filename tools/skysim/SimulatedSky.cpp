#include "SimulatedSky.h"

#include "GeoMath.h"
#include "SimRandom.h"
#include "TrafficCatalog.h"

#include <QSet>
#include <algorithm>
#include <cmath>

namespace {

// Separate streams of numbers for what lasts as long as the sky, a crossing, and one second.
constexpr quint64 slotStream = 0x51075107;
constexpr quint64 lapStream = 0x1A9C0DE;
constexpr quint64 tickStream = 0x71C7;

quint64 asSeed(qint64 value)
{
    return quint64(value);
}

qint64 roundedTo(double value, qint64 step)
{
    return qint64(std::llround(value / double(step))) * step;
}

double roundedDecimals(double value, int decimals)
{
    const double factor = std::pow(10.0, decimals);
    return std::round(value * factor) / factor;
}

// Four octal digits that are no special code: not 7xxx, not the VFR codes.
QString instrumentSquawk(SimRandom &random)
{
    for (;;) {
        QString code = QString::number(random.integer(0, 6));
        for (int i = 0; i < 3; ++i)
            code.append(QString::number(random.integer(0, 7)));
        if (code != u"1200" && code != u"0000")
            return code;
    }
}

// Climb rates come in steps of 64 ft/min from the transponder.
constexpr qint64 rateStep = 64;

} // namespace

SimulatedSky::SimulatedSky(quint64 seed, int count, double spreadNM, std::optional<GeoPoint> fixedCentre)
    : m_seed(seed), m_count(std::clamp(count, 0, maxCount)), m_spreadNM(std::max(1.0, spreadNM)),
      m_fixedCentre(fixedCentre)
{
    if (m_fixedCentre)
        m_areas.append(makeArea(*m_fixedCentre));
}

QList<GeoPoint> SimulatedSky::areaCentres() const
{
    QList<GeoPoint> centres;
    for (const Area &area : m_areas)
        centres.append(area.centre);
    return centres;
}

void SimulatedSky::setCount(int count)
{
    m_count = std::clamp(count, 0, maxCount);
    ++m_generation;
    for (Area &area : m_areas)
        fillSlots(area);
}

void SimulatedSky::forgetAreas()
{
    m_areas.clear();
    ++m_generation;
    if (m_fixedCentre)
        m_areas.append(makeArea(*m_fixedCentre));
}

SimulatedSky::Area SimulatedSky::makeArea(GeoPoint centre) const
{
    Area area;
    area.centre = centre;
    // From the centre to the fifth decimal, which is what the client sends.
    area.seed = SimRandom::mix(
        {m_seed, asSeed(std::llround(centre.lat * 1e5)), asSeed(std::llround(centre.lon * 1e5))});
    fillSlots(area);
    return area;
}

void SimulatedSky::fillSlots(Area &area) const
{
    const auto wanted = std::size_t(m_count);
    if (area.lanes.size() > wanted)
        area.lanes.resize(wanted);
    for (std::size_t index = area.lanes.size(); index < wanted; ++index)
        area.lanes.push_back(makeSlot(area, int(index)));
}

SimulatedSky::Area &SimulatedSky::areaFor(GeoPoint point)
{
    qsizetype nearest = -1;
    double nearestDistance = 0.0;
    for (qsizetype i = 0; i < m_areas.size(); ++i) {
        const double distance = GeoMath::distanceNM(m_areas[i].centre, point);
        if (distance <= m_spreadNM && (nearest < 0 || distance < nearestDistance)) {
            nearest = i;
            nearestDistance = distance;
        }
    }
    if (nearest >= 0)
        return m_areas[nearest];
    if (m_areas.size() >= maxAreas)
        m_areas.removeAt(m_fixedCentre ? 1 : 0);
    m_areas.append(makeArea(point));
    ++m_generation;
    return m_areas.last();
}

SimulatedSky::Slot SimulatedSky::makeSlot(const Area &area, int index) const
{
    SimRandom random(SimRandom::mix({area.seed, slotStream, quint64(index)}));
    Slot slot;
    const double kind = random.unit();
    if (kind < 0.05) {
        // On the ground: parked or taxiing to and fro near a spot inside the disc.
        slot.onGround = true;
        slot.speedClass = random.chance(0.7) ? SpeedClass::Jet : SpeedClass::Light;
        slot.speedKnots = random.chance(0.35) ? 0.0 : random.between(3.0, 20.0);
        slot.lengthNM = random.between(0.4, 3.0);
        slot.taxiCentre = GeoMath::destination(area.centre, random.between(0.0, 360.0),
                                               m_spreadNM * 0.85 * std::sqrt(random.unit()));
        slot.phaseNM = random.between(0.0, slot.lengthNM);
        return slot;
    }
    if (kind < 0.12)
        slot.speedClass = SpeedClass::Helicopter;
    else if (kind < 0.135)
        slot.speedClass = SpeedClass::MilitaryHelicopter;
    else if (kind < 0.17)
        slot.speedClass = SpeedClass::MilitaryJet;
    else if (kind < 0.39)
        slot.speedClass = SpeedClass::Light;
    else
        slot.speedClass = SpeedClass::Jet;

    auto climbOrDescent = [&] { return random.chance(0.5) ? Vertical::Climb : Vertical::Descent; };
    switch (slot.speedClass) {
    case SpeedClass::Helicopter:
    case SpeedClass::MilitaryHelicopter:
        slot.speedKnots = random.between(60.0, 140.0);
        slot.vertical = random.chance(0.75) ? Vertical::Level : climbOrDescent();
        break;
    case SpeedClass::Light:
        slot.speedKnots = random.between(90.0, 160.0);
        slot.vertical = random.chance(0.7) ? Vertical::Level : climbOrDescent();
        break;
    case SpeedClass::Jet: {
        const double profile = random.unit();
        if (profile < 0.55) { // cruising
            slot.vertical = Vertical::Level;
            slot.speedKnots = random.between(380.0, 500.0);
        } else if (profile < 0.65) { // level down low, slowed for the terminal area
            slot.vertical = Vertical::Level;
            slot.speedKnots = random.between(250.0, 320.0);
        } else {
            slot.vertical = climbOrDescent();
            slot.speedKnots = random.between(250.0, 380.0);
        }
        break;
    }
    case SpeedClass::MilitaryJet:
        slot.speedKnots = random.between(250.0, 500.0);
        slot.vertical = random.chance(0.6) ? Vertical::Level : climbOrDescent();
        break;
    }
    // Some chords pass straight over the centre, which is where the user usually stands.
    slot.offsetNM = random.chance(0.08) ? 0.0 : random.between(0.0, 0.97 * m_spreadNM);
    slot.lengthNM = 2.0 * std::sqrt(m_spreadNM * m_spreadNM - slot.offsetNM * slot.offsetNM);
    slot.phaseNM = random.between(0.0, slot.lengthNM);
    return slot;
}

QList<SkyAircraft> SimulatedSky::aircraftAround(GeoPoint point, double seconds)
{
    return observeArea(areaFor(point), seconds);
}

QList<SkyAircraft> SimulatedSky::everyAircraft(double seconds) const
{
    QList<SkyAircraft> result;
    for (const Area &area : m_areas)
        result += observeArea(area, seconds);
    return result;
}

QList<SkyAircraft> SimulatedSky::observeArea(const Area &area, double seconds) const
{
    QList<SkyAircraft> result;
    result.reserve(qsizetype(area.lanes.size()));
    QSet<QString> taken;
    for (std::size_t index = 0; index < area.lanes.size(); ++index) {
        SkyAircraft aircraft = observe(area, area.lanes[index], int(index), seconds);
        // Addresses are drawn at random; two aircraft of one answer must never share one.
        while (taken.contains(aircraft.hex)) {
            const bool nonIcao = aircraft.hex.startsWith(u'~');
            const quint32 value = (aircraft.hex.mid(nonIcao ? 1 : 0).toUInt(nullptr, 16) + 1) & 0xFFFFFF;
            aircraft.hex =
                (nonIcao ? u"~"_qs : QString()) + QString::number(value, 16).rightJustified(6, u'0');
        }
        taken.insert(aircraft.hex);
        result.append(std::move(aircraft));
    }
    return result;
}

SkyAircraft SimulatedSky::observe(const Area &area, const Slot &slot, int index, double seconds) const
{
    // Where on its chord the aircraft is, and which crossing (lap) this is.
    const double travelled = slot.phaseNM + slot.speedKnots * seconds / 3600.0;
    const double lapNumber = std::floor(travelled / slot.lengthNM);
    const double along = travelled - lapNumber * slot.lengthNM - slot.lengthNM / 2.0;
    const double secondsIntoLap =
        slot.speedKnots > 0.0 ? (along + slot.lengthNM / 2.0) / slot.speedKnots * 3600.0 : 0.0;
    SimRandom lap(SimRandom::mix({area.seed, lapStream, quint64(index), asSeed(qint64(lapNumber))}));
    SimRandom tick(SimRandom::mix({area.seed, tickStream, quint64(index), asSeed(qint64(lapNumber)),
                                   asSeed(qint64(std::floor(seconds)))}));

    const double chordBearing = lap.between(0.0, 360.0);
    const GeoPoint chordMiddle = slot.onGround
                                     ? slot.taxiCentre
                                     : GeoMath::destination(area.centre, chordBearing + 90.0, slot.offsetNM);

    using Fleet = TrafficCatalog::Fleet;
    Fleet fleet = Fleet::Airliner;
    const bool military =
        slot.speedClass == SpeedClass::MilitaryJet || slot.speedClass == SpeedClass::MilitaryHelicopter;
    switch (slot.speedClass) {
    case SpeedClass::Helicopter:
        fleet = Fleet::Helicopter;
        break;
    case SpeedClass::MilitaryHelicopter:
        fleet = Fleet::MilitaryHelicopter;
        break;
    case SpeedClass::MilitaryJet:
        fleet = Fleet::MilitaryJet;
        break;
    case SpeedClass::Light:
        fleet = lap.chance(0.12) ? Fleet::Feeder : Fleet::LightPlane;
        break;
    case SpeedClass::Jet: {
        const double share = lap.unit();
        fleet = share < 0.6    ? Fleet::Airliner
                : share < 0.78 ? Fleet::Regional
                : share < 0.86 ? Fleet::Cargo
                               : Fleet::BusinessJet;
        break;
    }
    }
    const FlightIdentity identity = TrafficCatalog::instance().draw(fleet, lap);

    // What this crossing lacks or has wrong, as real feeds do now and then.
    const bool tisb = !military && lap.chance(0.01);
    const bool mlat = !tisb && lap.chance(0.05);
    const bool lastPositionOnly = lap.chance(0.015);
    const bool stale = !lastPositionOnly && lap.chance(0.03);
    const bool unknownToDatabase = !military && lap.chance(0.04);
    const bool noCallsign = tisb || lap.chance(0.03);
    const bool basicTransponder = !tisb && !mlat && lap.chance(0.05);
    const bool noSquawk = lap.chance(0.04);
    const bool emergency = !slot.onGround && lap.chance(0.01);
    const qint64 emergencyKind = lap.integer(0, 9);
    const double staleSeconds = lap.between(60.0, 400.0);
    const qint64 geomOffset = lap.integer(-8, 24) * 25;
    const qint64 messageBase = lap.integer(40, 6000);
    const double messageRate = lap.between(1.5, 9.0);
    const bool airData = lap.chance(0.6);
    const bool navData = lap.chance(0.7);
    const double qnh = roundedDecimals(lap.between(1005.0, 1025.0), 1);

    // Vertical profile of this crossing.
    double levelAltitude = 0.0;
    double bottom = 0.0;
    double top = 0.0;
    qint64 rate = 0;
    switch (slot.speedClass) {
    case SpeedClass::Helicopter:
    case SpeedClass::MilitaryHelicopter:
        levelAltitude = lap.between(500.0, 3000.0);
        bottom = lap.between(300.0, 800.0);
        top = lap.between(1500.0, 3000.0);
        rate = lap.integer(5, 14) * rateStep;
        break;
    case SpeedClass::Light:
        levelAltitude = lap.between(1500.0, 12500.0);
        bottom = lap.between(1000.0, 2500.0);
        top = lap.between(4500.0, 12500.0);
        rate = lap.integer(5, 16) * rateStep;
        break;
    case SpeedClass::Jet:
        levelAltitude =
            slot.speedKnots >= 380.0 ? double(lap.integer(24, 41) * 1000) : double(lap.integer(12, 34) * 500);
        bottom = lap.between(2000.0, 6000.0);
        top = double(lap.integer(24, 37) * 1000);
        rate = lap.integer(19, 55) * rateStep;
        break;
    case SpeedClass::MilitaryJet:
        levelAltitude = double(lap.integer(10, 70) * 500);
        bottom = lap.between(2000.0, 6000.0);
        top = double(lap.integer(18, 35) * 1000);
        rate = lap.integer(19, 70) * rateStep;
        break;
    }
    double altitude = levelAltitude;
    double target = levelAltitude;
    qint64 currentRate = 0;
    if (slot.vertical == Vertical::Climb) {
        altitude = std::min(top, bottom + double(rate) * secondsIntoLap / 60.0);
        currentRate = altitude < top ? rate : 0;
        target = top;
    } else if (slot.vertical == Vertical::Descent) {
        altitude = std::max(bottom, top - double(rate) * secondsIntoLap / 60.0);
        currentRate = altitude > bottom ? -rate : 0;
        target = bottom;
    }

    // How old the position is, and so where it was taken.
    double seenPos = 0.0;
    if (lastPositionOnly || stale)
        seenPos = staleSeconds + tick.unit();
    else
        seenPos = tick.chance(0.9) ? tick.between(0.0, 2.5) : tick.between(2.5, 40.0);
    seenPos = roundedDecimals(seenPos, 3);
    const double reportedAlong = along - slot.speedKnots * seenPos / 3600.0;
    const GeoPoint position = GeoMath::destination(chordMiddle, chordBearing, reportedAlong);
    const GeoPoint ahead = GeoMath::destination(chordMiddle, chordBearing, reportedAlong + 0.05);
    const double track = GeoMath::initialBearing(position, ahead);

    SkyAircraft aircraft;
    aircraft.hex = tisb ? u"~"_qs + identity.hex : identity.hex;
    aircraft.messageType = tisb ? u"tisb_trackfile"_qs : mlat ? u"mlat"_qs : u"adsb_icao"_qs;
    if (identity.callsign && !noCallsign)
        aircraft.flight = identity.callsign->leftJustified(8, u' ');
    if (!unknownToDatabase && !tisb) {
        aircraft.registration = identity.registration;
        aircraft.typeCode = identity.typeCode;
        aircraft.description = identity.description;
        aircraft.ownerOperator = identity.ownerOperator;
        aircraft.year = identity.year;
        aircraft.dbFlags = identity.dbFlags;
    }
    aircraft.onGround = slot.onGround;
    aircraft.altBaro = roundedTo(altitude, 25);
    aircraft.groundSpeed = roundedDecimals(slot.speedKnots, 1);
    aircraft.track = roundedDecimals(track, 2);
    const bool modern = !tisb && !mlat && !basicTransponder;
    if (!slot.onGround) {
        const qint64 reportedRate =
            currentRate != 0 ? currentRate : tick.pick(QList<qint64>{-64, 0, 0, 0, 64});
        aircraft.baroRate = reportedRate;
        if (modern) {
            aircraft.altGeom = aircraft.altBaro + geomOffset;
            aircraft.geomRate = reportedRate + tick.integer(-1, 1) * 32;
        }
    }
    const bool jet = slot.speedClass == SpeedClass::Jet || slot.speedClass == SpeedClass::MilitaryJet;
    if (modern && jet && !slot.onGround && airData) {
        // True airspeed from ground speed and a wind; indicated and Mach from a standard atmosphere.
        const double trueAirspeed = slot.speedKnots + lap.between(-40.0, 40.0);
        const double soundSpeed = 661.47 * std::sqrt(std::max(0.75, 1.0 - 6.875e-6 * altitude));
        aircraft.trueAirspeed = std::llround(trueAirspeed);
        aircraft.indicatedAirspeed = std::llround(trueAirspeed / (1.0 + 0.02 * altitude / 1000.0));
        aircraft.mach = roundedDecimals(trueAirspeed / soundSpeed, 3);
    }
    if (emergency) {
        static const QList<std::pair<QString, QString>> codes{
            {u"7700"_qs, u"general"_qs}, {u"7600"_qs, u"nordo"_qs}, {u"7500"_qs, u"unlawful"_qs}};
        const auto &[squawk, word] = codes[emergencyKind < 7 ? 0 : emergencyKind < 9 ? 1 : 2];
        aircraft.squawk = squawk;
        if (modern)
            aircraft.emergency = word;
    } else {
        if (!noSquawk && !tisb)
            aircraft.squawk =
                identity.instrumentRules || military ? instrumentSquawk(lap) : identity.vfrSquawk;
        if (modern)
            aircraft.emergency = u"none"_qs;
    }
    if (modern)
        aircraft.category = identity.category;
    if (modern && !slot.onGround && navData && (identity.instrumentRules || military)) {
        aircraft.navQnh = qnh;
        aircraft.navAltitudeMcp = roundedTo(target, 100);
        aircraft.navHeading = roundedDecimals(track, 1);
        if (jet) {
            aircraft.navModes = {u"autopilot"_qs,
                                 slot.vertical == Vertical::Level ? u"althold"_qs : u"vnav"_qs, u"lnav"_qs,
                                 u"tcas"_qs};
        }
    }
    aircraft.lat = roundedDecimals(position.lat, 6);
    aircraft.lon = roundedDecimals(position.lon, 6);
    aircraft.positionCurrent = !lastPositionOnly;
    aircraft.seenPos = seenPos;
    aircraft.seen = roundedDecimals(
        stale || lastPositionOnly ? tick.between(0.0, 8.0) : std::min(seenPos, tick.between(0.0, 1.2)), 1);
    if (!tisb && !mlat)
        aircraft.version = basicTransponder ? 0 : 2;
    if (mlat)
        aircraft.mlat = {u"lat"_qs, u"lon"_qs, u"gs"_qs, u"track"_qs, u"baro_rate"_qs};
    if (tisb)
        aircraft.tisb = {u"altitude"_qs, u"gs"_qs, u"track"_qs, u"lat"_qs, u"lon"_qs};
    aircraft.messages = messageBase + qint64(secondsIntoLap * messageRate);
    const double reach = std::min(1.2, GeoMath::distanceNM(area.centre, position) / m_spreadNM);
    aircraft.rssi = roundedDecimals(-3.0 - 27.0 * reach + tick.between(-1.5, 1.5), 1);
    return aircraft;
}
