#include "AirportTable.h"

#include <QHash>

namespace {

const QHash<QString, QString> &countryNames()
{
    static const QHash<QString, QString> names{
        {u"US"_qs, u"United States"_qs},
        {u"CA"_qs, u"Canada"_qs},
        {u"MX"_qs, u"Mexico"_qs},
        {u"GB"_qs, u"United Kingdom"_qs},
        {u"DE"_qs, u"Germany"_qs},
        {u"FR"_qs, u"France"_qs},
        {u"NL"_qs, u"Netherlands"_qs},
        {u"CH"_qs, u"Switzerland"_qs},
        {u"AT"_qs, u"Austria"_qs},
        {u"ES"_qs, u"Spain"_qs},
        {u"IE"_qs, u"Ireland"_qs},
        {u"SE"_qs, u"Sweden"_qs},
        {u"FI"_qs, u"Finland"_qs},
        {u"PT"_qs, u"Portugal"_qs},
        {u"PL"_qs, u"Poland"_qs},
        {u"TR"_qs, u"Turkey"_qs},
        {u"AE"_qs, u"United Arab Emirates"_qs},
        {u"QA"_qs, u"Qatar"_qs},
        {u"IL"_qs, u"Israel"_qs},
        {u"JP"_qs, u"Japan"_qs},
        {u"KR"_qs, u"South Korea"_qs},
        {u"HK"_qs, u"Hong Kong"_qs},
        {u"TW"_qs, u"Taiwan"_qs},
        {u"CN"_qs, u"China"_qs},
        {u"SG"_qs, u"Singapore"_qs},
        {u"AU"_qs, u"Australia"_qs},
        {u"NZ"_qs, u"New Zealand"_qs},
        {u"IN"_qs, u"India"_qs},
        {u"PH"_qs, u"Philippines"_qs},
        {u"VN"_qs, u"Vietnam"_qs},
        {u"CL"_qs, u"Chile"_qs},
        {u"BR"_qs, u"Brazil"_qs},
        {u"CO"_qs, u"Colombia"_qs},
        {u"PA"_qs, u"Panama"_qs},
    };
    return names;
}

} // namespace

const AirportTable &AirportTable::instance()
{
    static const AirportTable table;
    return table;
}

AirportTable::AirportTable()
{
    // IATA, ICAO, name, municipality, country, latitude, longitude, elevation in feet.
    m_airports = {
        {u"SEA"_qs, u"KSEA"_qs, u"Seattle-Tacoma International Airport"_qs, u"Seattle"_qs, u"US"_qs, 47.449,
         -122.309, 433},
        {u"PDX"_qs, u"KPDX"_qs, u"Portland International Airport"_qs, u"Portland"_qs, u"US"_qs, 45.5887,
         -122.5975, 31},
        {u"GEG"_qs, u"KGEG"_qs, u"Spokane International Airport"_qs, u"Spokane"_qs, u"US"_qs, 47.6199,
         -117.5338, 2376},
        {u"BOI"_qs, u"KBOI"_qs, u"Boise Air Terminal/Gowen Field"_qs, u"Boise"_qs, u"US"_qs, 43.5644,
         -116.2228, 2871},
        {u"SFO"_qs, u"KSFO"_qs, u"San Francisco International Airport"_qs, u"San Francisco"_qs, u"US"_qs,
         37.6188, -122.3754, 13},
        {u"LAX"_qs, u"KLAX"_qs, u"Los Angeles International Airport"_qs, u"Los Angeles"_qs, u"US"_qs, 33.9425,
         -118.4081, 125},
        {u"SAN"_qs, u"KSAN"_qs, u"San Diego International Airport"_qs, u"San Diego"_qs, u"US"_qs, 32.7336,
         -117.1897, 17},
        {u"LAS"_qs, u"KLAS"_qs, u"Harry Reid International Airport"_qs, u"Las Vegas"_qs, u"US"_qs, 36.0801,
         -115.1522, 2181},
        {u"PHX"_qs, u"KPHX"_qs, u"Phoenix Sky Harbor International Airport"_qs, u"Phoenix"_qs, u"US"_qs,
         33.4343, -112.0116, 1135},
        {u"SLC"_qs, u"KSLC"_qs, u"Salt Lake City International Airport"_qs, u"Salt Lake City"_qs, u"US"_qs,
         40.7884, -111.9778, 4227},
        {u"DEN"_qs, u"KDEN"_qs, u"Denver International Airport"_qs, u"Denver"_qs, u"US"_qs, 39.8617,
         -104.6731, 5434},
        {u"DFW"_qs, u"KDFW"_qs, u"Dallas Fort Worth International Airport"_qs, u"Dallas-Fort Worth"_qs,
         u"US"_qs, 32.8968, -97.038, 607},
        {u"IAH"_qs, u"KIAH"_qs, u"George Bush Intercontinental Airport"_qs, u"Houston"_qs, u"US"_qs, 29.9844,
         -95.3414, 97},
        {u"MSP"_qs, u"KMSP"_qs, u"Minneapolis-Saint Paul International Airport"_qs, u"Minneapolis"_qs,
         u"US"_qs, 44.882, -93.2218, 841},
        {u"ORD"_qs, u"KORD"_qs, u"Chicago O'Hare International Airport"_qs, u"Chicago"_qs, u"US"_qs, 41.9786,
         -87.9048, 672},
        {u"DTW"_qs, u"KDTW"_qs, u"Detroit Metropolitan Wayne County Airport"_qs, u"Detroit"_qs, u"US"_qs,
         42.2124, -83.3534, 645},
        {u"ATL"_qs, u"KATL"_qs, u"Hartsfield-Jackson Atlanta International Airport"_qs, u"Atlanta"_qs,
         u"US"_qs, 33.6367, -84.4281, 1026},
        {u"MIA"_qs, u"KMIA"_qs, u"Miami International Airport"_qs, u"Miami"_qs, u"US"_qs, 25.7932, -80.2906,
         8},
        {u"MCO"_qs, u"KMCO"_qs, u"Orlando International Airport"_qs, u"Orlando"_qs, u"US"_qs, 28.4294,
         -81.309, 96},
        {u"IAD"_qs, u"KIAD"_qs, u"Washington Dulles International Airport"_qs, u"Washington"_qs, u"US"_qs,
         38.9445, -77.4558, 312},
        {u"JFK"_qs, u"KJFK"_qs, u"John F Kennedy International Airport"_qs, u"New York"_qs, u"US"_qs, 40.6398,
         -73.7789, 13},
        {u"EWR"_qs, u"KEWR"_qs, u"Newark Liberty International Airport"_qs, u"Newark"_qs, u"US"_qs, 40.6925,
         -74.1687, 18},
        {u"BOS"_qs, u"KBOS"_qs, u"General Edward Lawrence Logan International Airport"_qs, u"Boston"_qs,
         u"US"_qs, 42.3643, -71.0052, 20},
        {u"MEM"_qs, u"KMEM"_qs, u"Memphis International Airport"_qs, u"Memphis"_qs, u"US"_qs, 35.0424,
         -89.9767, 341},
        {u"SDF"_qs, u"KSDF"_qs, u"Louisville Muhammad Ali International Airport"_qs, u"Louisville"_qs,
         u"US"_qs, 38.1744, -85.736, 501},
        {u"ANC"_qs, u"PANC"_qs, u"Ted Stevens Anchorage International Airport"_qs, u"Anchorage"_qs, u"US"_qs,
         61.1744, -149.996, 152},
        {u"HNL"_qs, u"PHNL"_qs, u"Daniel K Inouye International Airport"_qs, u"Honolulu"_qs, u"US"_qs,
         21.3187, -157.9225, 13},
        {u"YVR"_qs, u"CYVR"_qs, u"Vancouver International Airport"_qs, u"Vancouver"_qs, u"CA"_qs, 49.1939,
         -123.184, 14},
        {u"YYC"_qs, u"CYYC"_qs, u"Calgary International Airport"_qs, u"Calgary"_qs, u"CA"_qs, 51.1139,
         -114.0203, 3557},
        {u"YYZ"_qs, u"CYYZ"_qs, u"Toronto Pearson International Airport"_qs, u"Toronto"_qs, u"CA"_qs, 43.6772,
         -79.6306, 569},
        {u"YUL"_qs, u"CYUL"_qs, u"Montreal / Pierre Elliott Trudeau International Airport"_qs, u"Montréal"_qs,
         u"CA"_qs, 45.4706, -73.7408, 118},
        {u"MEX"_qs, u"MMMX"_qs, u"Licenciado Benito Juarez International Airport"_qs, u"Ciudad de México"_qs,
         u"MX"_qs, 19.4363, -99.0721, 7316},
        {u"GDL"_qs, u"MMGL"_qs, u"Don Miguel Hidalgo y Costilla International Airport"_qs, u"Guadalajara"_qs,
         u"MX"_qs, 20.5218, -103.3112, 5016},
        {u"CUN"_qs, u"MMUN"_qs, u"Cancún International Airport"_qs, u"Cancún"_qs, u"MX"_qs, 21.0365, -86.8771,
         22},
        {u"LHR"_qs, u"EGLL"_qs, u"London Heathrow Airport"_qs, u"London"_qs, u"GB"_qs, 51.4706, -0.4619, 83},
        {u"LGW"_qs, u"EGKK"_qs, u"London Gatwick Airport"_qs, u"London"_qs, u"GB"_qs, 51.1481, -0.1903, 202},
        {u"FRA"_qs, u"EDDF"_qs, u"Frankfurt am Main Airport"_qs, u"Frankfurt am Main"_qs, u"DE"_qs, 50.0333,
         8.5706, 364},
        {u"MUC"_qs, u"EDDM"_qs, u"Munich Airport"_qs, u"München"_qs, u"DE"_qs, 48.3538, 11.7861, 1487},
        {u"CDG"_qs, u"LFPG"_qs, u"Charles de Gaulle International Airport"_qs, u"Paris"_qs, u"FR"_qs, 49.0128,
         2.55, 392},
        {u"AMS"_qs, u"EHAM"_qs, u"Amsterdam Airport Schiphol"_qs, u"Amsterdam"_qs, u"NL"_qs, 52.3086, 4.7639,
         -11},
        {u"ZRH"_qs, u"LSZH"_qs, u"Zürich Airport"_qs, u"Zürich"_qs, u"CH"_qs, 47.4581, 8.5481, 1416},
        {u"VIE"_qs, u"LOWW"_qs, u"Vienna International Airport"_qs, u"Wien"_qs, u"AT"_qs, 48.1103, 16.5697,
         600},
        {u"MAD"_qs, u"LEMD"_qs, u"Adolfo Suárez Madrid-Barajas Airport"_qs, u"Madrid"_qs, u"ES"_qs, 40.4719,
         -3.5626, 1998},
        {u"DUB"_qs, u"EIDW"_qs, u"Dublin Airport"_qs, u"Dublin"_qs, u"IE"_qs, 53.4213, -6.2701, 242},
        {u"ARN"_qs, u"ESSA"_qs, u"Stockholm-Arlanda Airport"_qs, u"Stockholm"_qs, u"SE"_qs, 59.6519, 17.9186,
         137},
        {u"HEL"_qs, u"EFHK"_qs, u"Helsinki Vantaa Airport"_qs, u"Helsinki"_qs, u"FI"_qs, 60.3172, 24.9633,
         179},
        {u"LIS"_qs, u"LPPT"_qs, u"Humberto Delgado Airport"_qs, u"Lisbon"_qs, u"PT"_qs, 38.7813, -9.1359,
         374},
        {u"WAW"_qs, u"EPWA"_qs, u"Warsaw Chopin Airport"_qs, u"Warsaw"_qs, u"PL"_qs, 52.1657, 20.9671, 362},
        {u"IST"_qs, u"LTFM"_qs, u"İstanbul Airport"_qs, u"İstanbul"_qs, u"TR"_qs, 41.2753, 28.7519, 325},
        {u"DXB"_qs, u"OMDB"_qs, u"Dubai International Airport"_qs, u"Dubai"_qs, u"AE"_qs, 25.2528, 55.3644,
         62},
        {u"AUH"_qs, u"OMAA"_qs, u"Zayed International Airport"_qs, u"Abu Dhabi"_qs, u"AE"_qs, 24.433, 54.6511,
         88},
        {u"DOH"_qs, u"OTHH"_qs, u"Hamad International Airport"_qs, u"Doha"_qs, u"QA"_qs, 25.2731, 51.6081,
         13},
        {u"TLV"_qs, u"LLBG"_qs, u"Ben Gurion International Airport"_qs, u"Tel Aviv"_qs, u"IL"_qs, 32.0114,
         34.8867, 135},
        {u"HND"_qs, u"RJTT"_qs, u"Tokyo Haneda International Airport"_qs, u"Tokyo"_qs, u"JP"_qs, 35.5523,
         139.78, 35},
        {u"NRT"_qs, u"RJAA"_qs, u"Narita International Airport"_qs, u"Narita"_qs, u"JP"_qs, 35.7647, 140.3864,
         141},
        {u"ICN"_qs, u"RKSI"_qs, u"Incheon International Airport"_qs, u"Seoul"_qs, u"KR"_qs, 37.4691, 126.451,
         23},
        {u"HKG"_qs, u"VHHH"_qs, u"Hong Kong International Airport"_qs, u"Hong Kong"_qs, u"HK"_qs, 22.3089,
         113.9146, 28},
        {u"TPE"_qs, u"RCTP"_qs, u"Taiwan Taoyuan International Airport"_qs, u"Taipei"_qs, u"TW"_qs, 25.0777,
         121.2328, 106},
        {u"PEK"_qs, u"ZBAA"_qs, u"Beijing Capital International Airport"_qs, u"Beijing"_qs, u"CN"_qs, 40.0801,
         116.5846, 116},
        {u"PVG"_qs, u"ZSPD"_qs, u"Shanghai Pudong International Airport"_qs, u"Shanghai"_qs, u"CN"_qs,
         31.1434, 121.8052, 13},
        {u"CAN"_qs, u"ZGGG"_qs, u"Guangzhou Baiyun International Airport"_qs, u"Guangzhou"_qs, u"CN"_qs,
         23.3924, 113.2988, 50},
        {u"SIN"_qs, u"WSSS"_qs, u"Singapore Changi Airport"_qs, u"Singapore"_qs, u"SG"_qs, 1.3502, 103.9944,
         22},
        {u"SYD"_qs, u"YSSY"_qs, u"Sydney Kingsford Smith International Airport"_qs, u"Sydney"_qs, u"AU"_qs,
         -33.9461, 151.1772, 21},
        {u"AKL"_qs, u"NZAA"_qs, u"Auckland International Airport"_qs, u"Auckland"_qs, u"NZ"_qs, -37.0081,
         174.7917, 23},
        {u"DEL"_qs, u"VIDP"_qs, u"Indira Gandhi International Airport"_qs, u"New Delhi"_qs, u"IN"_qs, 28.5665,
         77.1031, 777},
        {u"MNL"_qs, u"RPLL"_qs, u"Ninoy Aquino International Airport"_qs, u"Manila"_qs, u"PH"_qs, 14.5086,
         121.0194, 75},
        {u"SGN"_qs, u"VVTS"_qs, u"Tan Son Nhat International Airport"_qs, u"Ho Chi Minh City"_qs, u"VN"_qs,
         10.8188, 106.652, 33},
        {u"SCL"_qs, u"SCEL"_qs, u"Comodoro Arturo Merino Benítez International Airport"_qs, u"Santiago"_qs,
         u"CL"_qs, -33.393, -70.7858, 1555},
        {u"GRU"_qs, u"SBGR"_qs, u"Guarulhos - Governador André Franco Montoro International Airport"_qs,
         u"São Paulo"_qs, u"BR"_qs, -23.4356, -46.4731, 2459},
        {u"BOG"_qs, u"SKBO"_qs, u"El Dorado International Airport"_qs, u"Bogotá"_qs, u"CO"_qs, 4.7016,
         -74.1469, 8361},
        {u"PTY"_qs, u"MPTO"_qs, u"Tocumen International Airport"_qs, u"Panamá"_qs, u"PA"_qs, 9.0714, -79.3835,
         135},
    };
}

QList<Airport> AirportTable::inCountry(const QString &countryIso) const
{
    QList<Airport> result;
    for (const Airport &airport : m_airports) {
        if (airport.countryIso == countryIso)
            result.append(airport);
    }
    return result;
}

QList<Airport> AirportTable::northAmerican() const
{
    return inCountry(u"US"_qs) + inCountry(u"CA"_qs) + inCountry(u"MX"_qs);
}

QString AirportTable::countryName(const QString &countryIso) const
{
    return countryNames().value(countryIso, countryIso);
}
