#include "SkyEntry.h"

#include "APIResponse.h"

namespace {

// Written as a feed would send it, trailing blanks of the call signs included.
constexpr QByteArrayView sampleRows = R"([
{"hex":"a1b2c3","flight":"ASA512  ","r":"N512AS","t":"B739","alt_baro":12500,"gs":320,"track":45,"lat":45.60,"lon":-122.70,"dst":3.2,"dir":310,"seen_pos":1},
{"hex":"a2c4e6","flight":"N757LY  ","r":"N757LY","t":"C152","alt_baro":1500,"gs":95,"track":180,"lat":45.55,"lon":-122.60,"dst":6.8,"dir":80,"seen_pos":1},
{"hex":"a3d5f7","flight":"QXE201  ","r":"N201QX","t":"E75L","alt_baro":8200,"gs":270,"track":270,"lat":45.40,"lon":-122.75,"dst":10.4,"dir":195,"seen_pos":1},
{"hex":"a4e6a8","flight":"UPS2914 ","r":"N354UP","t":"B763","alt_baro":24000,"gs":450,"track":135,"lat":45.70,"lon":-122.40,"dst":15.1,"dir":48,"seen_pos":1},
{"hex":"ae01ce","flight":"RCH440  ","r":"","t":"C17","alt_baro":18000,"gs":380,"track":10,"lat":45.30,"lon":-122.55,"dst":18.9,"dir":170,"dbFlags":1,"seen_pos":1}
])";

} // namespace

SkyEntry::SkyEntry(QDateTime date, QList<Aircraft> aircraft, double radiusNM,
                   std::optional<HomeLocation> home, bool isSample, QString unit,
                   std::optional<QString> accentHex)
    : m_date(std::move(date)), m_aircraft(std::move(aircraft)), m_radiusNM(radiusNM), m_home(std::move(home)),
      m_isSample(isSample), m_unit(std::move(unit)), m_accentHex(std::move(accentHex))
{
}

QList<Aircraft> SkyEntry::sampleAircraft()
{
    // The decoder reads whole answers; the rows go into the envelope the primary network uses.
    const QByteArray answer = "{\"ac\":" + sampleRows.toByteArray() + "}";
    const auto decoded = APIResponse::decode(answer);
    return decoded.ok() ? decoded.value().list() : QList<Aircraft>();
}

SkyEntry SkyEntry::sample(const std::optional<QString> &accentHex, const QDateTime &now)
{
    return SkyEntry(now, sampleAircraft(), sampleRadiusNM, HomeLocation(45.5, -122.6, u"Home"_qs), true,
                    u"mi"_qs, accentHex);
}

QVariantList SkyEntry::aircraftList() const
{
    QVariantList list;
    list.reserve(m_aircraft.size());
    for (const Aircraft &aircraft : m_aircraft)
        list.append(QVariant::fromValue(aircraft));
    return list;
}

QVariant SkyEntry::accentHexVariant() const
{
    return m_accentHex ? QVariant(*m_accentHex) : QVariant();
}
