#pragma once

#include "Gazetteer.h"
#include "SkySimModule.h"

#include <QByteArray>
#include <QString>

class SourceBoard;

// The address search of the geocoder (Nominatim's API) over the built-in gazetteer:
//   GET /search?q=TEXT&format=jsonv2&addressdetails=1&limit=N     (also /search.php)
//       200 [RESULT,...]; [] when nothing matches or q is blank
//   GET /reverse?lat=X&lon=Y&format=jsonv2
//       200 RESULT of the nearest place within 300 km, else {"error":"Unable to geocode"}
//   RESULT {"place_id","licence","osm_type","osm_id","lat","lon","category","type","place_rank",
//           "importance","addresstype","name","display_name","address":{...},"boundingbox":[...]}
//          "lat" and "lon" are strings with seven decimals, as Nominatim writes them; format=json says
//          "class" instead of "category". "address" holds the locality under "city", "town", "village"
//          or "hamlet" (none for a mountain), then "county", "state", "country", "country_code", each only
//          when the place has it; /search sends it only with addressdetails=1, /reverse unless
//          addressdetails=0.
// q is matched as the gazetteer says (in any case, with or without accents; "+" is a blank, as in a
// form). limit defaults to 10 and is capped at 40. A missing q, a format other than json or jsonv2, a
// limit or coordinate that is not a number: 400 {"error":{"code":400,"message":...}}. Faults of the
// source "geocoder" apply; "malformed" leaves "lat" out of every result.
class GeocoderModule : public SkySimModule
{
public:
    static constexpr int defaultLimit = 10;
    static constexpr int maxLimit = 40;
    static constexpr double reverseReachKm = 300.0;

    [[nodiscard]] static QString source() { return QStringLiteral("geocoder"); }

    explicit GeocoderModule(SourceBoard &sources);

    [[nodiscard]] std::optional<SkySimReply> handle(const SkySimRequest &request) override;

private:
    [[nodiscard]] SkySimReply search(const SkySimRequest &request, bool malformed) const;
    [[nodiscard]] SkySimReply reverse(const SkySimRequest &request, bool malformed) const;

    SourceBoard &m_sources;
};
