#include "Services.h"

#include <QtGlobal>

namespace Services {

namespace {

QString fromEnvironment(const char *variable, const QString &fallback)
{
    const QString value = qEnvironmentVariable(variable).trimmed();
    return value.isEmpty() ? fallback : value;
}

QString baseAddress(const char *variable, const QString &fallback)
{
    QString address = fromEnvironment(variable, fallback);
    while (address.endsWith(u'/'))
        address.chop(1);
    return address;
}

} // namespace

QString primaryFeedURL()
{
    return baseAddress("AEROLUME_PRIMARY_FEED_URL", u"https://api.adsb.lol"_qs);
}

QString fallbackFeedURL()
{
    return baseAddress("AEROLUME_FALLBACK_FEED_URL", u"https://opendata.adsb.fi"_qs);
}

QString primaryFeedName()
{
    return fromEnvironment("AEROLUME_PRIMARY_FEED_NAME", u"adsb.lol"_qs);
}

QString fallbackFeedName()
{
    return fromEnvironment("AEROLUME_FALLBACK_FEED_NAME", u"adsb.fi"_qs);
}

QString routeServiceName()
{
    return u"adsbdb"_qs;
}

QString photoServiceName()
{
    return u"Planespotters.net"_qs;
}

QString towerFeedsName()
{
    return u"LiveATC.net"_qs;
}

QString routeURL()
{
    return baseAddress("AEROLUME_ROUTE_URL", u"https://api.adsbdb.com"_qs);
}

QString photoURL()
{
    return baseAddress("AEROLUME_PHOTO_URL", u"https://api.planespotters.net"_qs);
}

QString globeViewerURL()
{
    return baseAddress("AEROLUME_GLOBE_URL", u"https://adsb.lol"_qs);
}

QString streamURL()
{
    return baseAddress("AEROLUME_STREAM_URL", u"https://d.liveatc.net"_qs);
}

QString towerFeedsDomain()
{
    return fromEnvironment("AEROLUME_TOWERFEEDS_DOMAIN", u"liveatc.net"_qs);
}

} // namespace Services
