#include "AircraftFilter.h"

#include "Airlines.h"

namespace AircraftFilters {

const QList<AircraftFilter> &all()
{
    static const QList<AircraftFilter> filters{AircraftFilter::Emergency,      AircraftFilter::Military,
                                               AircraftFilter::Helicopters,    AircraftFilter::Airliners,
                                               AircraftFilter::GeneralAviation, AircraftFilter::LowAltitude};
    return filters;
}

QString rawValue(AircraftFilter filter)
{
    switch (filter) {
    case AircraftFilter::Emergency: return u"emergency"_qs;
    case AircraftFilter::Military: return u"military"_qs;
    case AircraftFilter::Helicopters: return u"helicopters"_qs;
    case AircraftFilter::Airliners: return u"airliners"_qs;
    case AircraftFilter::GeneralAviation: return u"generalAviation"_qs;
    case AircraftFilter::LowAltitude: return u"lowAltitude"_qs;
    }
    return {};
}

std::optional<AircraftFilter> fromRawValue(QStringView text)
{
    for (AircraftFilter filter : all()) {
        if (rawValue(filter) == text)
            return filter;
    }
    return std::nullopt;
}

bool matches(AircraftFilter filter, const Aircraft &aircraft)
{
    switch (filter) {
    case AircraftFilter::Emergency: return aircraft.isEmergency();
    case AircraftFilter::Military: return aircraft.isMilitary();
    case AircraftFilter::Helicopters: return aircraft.isHelicopter();
    case AircraftFilter::Airliners: return Airlines::isAirlineCallsign(aircraft.flight());
    case AircraftFilter::GeneralAviation:
        // Whatever is neither airline, military nor rotorcraft; emergencies are not set apart.
        return !Airlines::isAirlineCallsign(aircraft.flight()) && !aircraft.isMilitary() && !aircraft.isHelicopter();
    case AircraftFilter::LowAltitude: {
        if (aircraft.isOnGround())
            return false;
        const auto feet = aircraft.altitudeFeet();
        return feet && *feet < 2000;
    }
    }
    return false;
}

} // namespace AircraftFilters
