#include "TrafficCatalog.h"

#include "Aircraft.h"
#include "AircraftTypes.h"
#include "Airlines.h"
#include "SimRandom.h"

#include <algorithm>

namespace {

enum Group : int
{
    NarrowBodies,
    WideBodies,
    RegionalTypes,
    CargoTypes,
    FeederTypes,
    BusinessTypes,
    LightTypes,
    HelicopterTypes,
    MilitaryJetTypes,
    MilitaryHelicopterTypes,
    AirliftTypes,
    NorthAmericanAirlines,
    InternationalAirlines,
    RegionalAirlines,
    CargoAirlines,
    FeederAirlines,
    FractionalFleets,
};

// Only designators that the type table knows are ever drawn; the lists say which fleet flies what.
const QStringList narrowBodies{u"A19N"_qs, u"A20N"_qs, u"A21N"_qs, u"A318"_qs, u"A319"_qs, u"A320"_qs,
                               u"A321"_qs, u"B712"_qs, u"B737"_qs, u"B738"_qs, u"B739"_qs, u"B38M"_qs,
                               u"B39M"_qs, u"B752"_qs, u"B753"_qs, u"BCS1"_qs, u"BCS3"_qs, u"E190"_qs,
                               u"E195"_qs, u"E290"_qs, u"E295"_qs};
const QStringList wideBodies{u"A332"_qs, u"A333"_qs, u"A339"_qs, u"A346"_qs, u"A359"_qs, u"A35K"_qs,
                             u"A388"_qs, u"B744"_qs, u"B748"_qs, u"B763"_qs, u"B764"_qs, u"B772"_qs,
                             u"B77L"_qs, u"B77W"_qs, u"B788"_qs, u"B789"_qs, u"B78X"_qs};
// Regional jets only: the sky flies every airline type in the jet speed class.
const QStringList regionalTypes{u"E170"_qs, u"E175"_qs, u"E75L"_qs, u"E145"_qs,
                                u"CRJ2"_qs, u"CRJ7"_qs, u"CRJ9"_qs, u"CRJX"_qs};
const QStringList cargoTypes{u"A306"_qs, u"B738"_qs, u"B744"_qs, u"B748"_qs,
                             u"B752"_qs, u"B763"_qs, u"B77L"_qs, u"MD11"_qs};
const QStringList feederTypes{u"C208"_qs, u"B190"_qs, u"SW4"_qs, u"PC12"_qs, u"BE20"_qs};
const QStringList businessTypes{
    u"C25A"_qs, u"C25B"_qs, u"C25C"_qs, u"C56X"_qs, u"C680"_qs, u"C68A"_qs, u"C700"_qs, u"C750"_qs,
    u"CL30"_qs, u"CL35"_qs, u"CL60"_qs, u"GL5T"_qs, u"GLEX"_qs, u"GL7T"_qs, u"GLF4"_qs, u"GLF5"_qs,
    u"GLF6"_qs, u"GA6C"_qs, u"G280"_qs, u"FA7X"_qs, u"FA8X"_qs, u"F2TH"_qs, u"F900"_qs, u"LJ45"_qs,
    u"LJ60"_qs, u"LJ75"_qs, u"HDJT"_qs, u"E50P"_qs, u"E55P"_qs, u"PC24"_qs, u"SF50"_qs};
const QStringList lightTypes{u"C150"_qs, u"C152"_qs, u"C172"_qs, u"C182"_qs, u"C206"_qs, u"C210"_qs,
                             u"C310"_qs, u"P28A"_qs, u"P28R"_qs, u"PA18"_qs, u"PA32"_qs, u"PA34"_qs,
                             u"PA44"_qs, u"PA46"_qs, u"SR20"_qs, u"SR22"_qs, u"S22T"_qs, u"DA40"_qs,
                             u"DA42"_qs, u"DA62"_qs, u"M20P"_qs, u"BE35"_qs, u"BE36"_qs, u"BE58"_qs,
                             u"RV7"_qs,  u"RV10"_qs, u"TBM9"_qs, u"KODI"_qs};
const QStringList militaryHelicopterTypes{u"H60"_qs, u"UH1"_qs, u"H64"_qs, u"H47"_qs};
const QStringList militaryJetTypes{u"C17"_qs, u"C130"_qs, u"C30J"_qs, u"K35R"_qs, u"KC46"_qs,
                                   u"P8"_qs,  u"E3TF"_qs, u"A400"_qs, u"B52"_qs,  u"F16"_qs,
                                   u"F15"_qs, u"F18S"_qs, u"F35"_qs,  u"TEX2"_qs, u"T38"_qs};
const QStringList airliftTypes{u"C17"_qs, u"C130"_qs, u"C30J"_qs, u"K35R"_qs, u"KC46"_qs};

const QStringList northAmericanAirlines{u"AAL"_qs, u"DAL"_qs, u"UAL"_qs, u"SWA"_qs, u"ASA"_qs, u"JBU"_qs,
                                        u"NKS"_qs, u"FFT"_qs, u"AAY"_qs, u"HAL"_qs, u"SCX"_qs, u"MXY"_qs,
                                        u"VXP"_qs, u"ACA"_qs, u"WJA"_qs, u"POE"_qs, u"TSC"_qs, u"FLE"_qs,
                                        u"AMX"_qs, u"VOI"_qs, u"VIV"_qs};
const QStringList regionalAirlines{u"QXE"_qs, u"SKW"_qs, u"ASH"_qs, u"ENY"_qs, u"RPA"_qs,
                                   u"EDV"_qs, u"PDT"_qs, u"PSA"_qs, u"JIA"_qs, u"GJS"_qs,
                                   u"AWI"_qs, u"UCA"_qs, u"JZA"_qs};
const QStringList cargoAirlines{u"FDX"_qs, u"UPS"_qs, u"GTI"_qs, u"ABX"_qs,
                                u"CKS"_qs, u"PAC"_qs, u"ATN"_qs, u"WGN"_qs};
const QStringList feederAirlines{u"MTN"_qs, u"AMF"_qs};
const QStringList fractionalFleets{u"EJA"_qs, u"LXJ"_qs, u"XOJ"_qs, u"JTL"_qs};
// Air forces' designators in the airline table; never drawn as airlines.
const QStringList airForceDesignators{u"RCH"_qs, u"CFC"_qs, u"GAF"_qs};

// Military callsign prefixes: the registry their tail numbers follow and the operator a feed names.
struct MilitaryUnit
{
    QString prefix;
    QString registry;
    QString ownerOperator;
};
const QList<MilitaryUnit> militaryUnits{
    {u"RCH"_qs, u"USAF"_qs, u"UNITED STATES AIR FORCE"_qs},
    {u"SAM"_qs, u"USAF"_qs, u"UNITED STATES AIR FORCE"_qs},
    {u"SPAR"_qs, u"USAF"_qs, u"UNITED STATES AIR FORCE"_qs},
    {u"EVAC"_qs, u"USAF"_qs, u"UNITED STATES AIR FORCE"_qs},
    {u"PAT"_qs, u"USAF"_qs, u"UNITED STATES ARMY"_qs},
    {u"CNV"_qs, u"USN"_qs, u"UNITED STATES NAVY"_qs},
    {u"CFC"_qs, u"CAF"_qs, u"ROYAL CANADIAN AIR FORCE"_qs},
    {u"GAF"_qs, u"DEAF"_qs, u"GERMAN AIR FORCE"_qs},
};

const QStringList privateOwners{u"SKYWARD FLYING CLUB INC"_qs, u"CASCADE AVIATION LLC"_qs,
                                u"MERIDIAN AIR SERVICES"_qs,   u"JOHNSON ROBERT L"_qs,
                                u"BLUE RIDGE AERO LLC"_qs,     u"WILMINGTON TRUST CO TRUSTEE"_qs,
                                u"BANK OF UTAH TRUSTEE"_qs,    u"PEREZ MARIA"_qs,
                                u"LAKESIDE FLIGHT SCHOOL"_qs,  u"HIGH DESERT AVIATION INC"_qs};
const QStringList helicopterOwners{u"AIR METHODS CORP"_qs, u"LIFE FLIGHT NETWORK LLC"_qs,
                                   u"NORTHWEST HELICOPTERS INC"_qs, u"METRO NEWS AIR LLC"_qs,
                                   u"COUNTY SHERIFF AIR UNIT"_qs};

QStringList knownTypes(const QStringList &codes)
{
    QStringList result;
    for (const QString &code : codes) {
        if (AircraftTypes::table().contains(code))
            result.append(code);
    }
    std::sort(result.begin(), result.end());
    return result;
}

QStringList knownAirlines(const QStringList &designators)
{
    QStringList result;
    for (const QString &designator : designators) {
        if (Airlines::table().contains(designator))
            result.append(designator);
    }
    std::sort(result.begin(), result.end());
    return result;
}

QString letters(SimRandom &random, int count, bool skipIandO)
{
    static const QString all = u"ABCDEFGHIJKLMNOPQRSTUVWXYZ"_qs;
    static const QString usable = u"ABCDEFGHJKLMNPQRSTUVWXYZ"_qs;
    const QString &alphabet = skipIandO ? usable : all;
    QString text;
    for (int i = 0; i < count; ++i)
        text.append(alphabet.at(random.integer(0, alphabet.size() - 1)));
    return text;
}

QString withoutDashes(QString registration)
{
    return registration.remove(u'-').remove(u'+');
}

} // namespace

const TrafficCatalog &TrafficCatalog::instance()
{
    static const TrafficCatalog catalog;
    return catalog;
}

TrafficCatalog::TrafficCatalog()
{
    m_types[NarrowBodies] = knownTypes(narrowBodies);
    m_types[WideBodies] = knownTypes(wideBodies);
    m_types[RegionalTypes] = knownTypes(regionalTypes);
    m_types[CargoTypes] = knownTypes(cargoTypes);
    m_types[FeederTypes] = knownTypes(feederTypes);
    m_types[BusinessTypes] = knownTypes(businessTypes);
    m_types[LightTypes] = knownTypes(lightTypes);
    m_types[MilitaryJetTypes] = knownTypes(militaryJetTypes);
    m_types[MilitaryHelicopterTypes] = knownTypes(militaryHelicopterTypes);
    m_types[AirliftTypes] = knownTypes(airliftTypes);
    // Civil helicopters are every rotorcraft type the program recognises, less the military ones.
    QStringList civilHelicopters;
    for (const QString &code : Aircraft::helicopterTypes()) {
        if (!militaryHelicopterTypes.contains(code))
            civilHelicopters.append(code);
    }
    m_types[HelicopterTypes] = knownTypes(civilHelicopters);

    m_airlines[NorthAmericanAirlines] = knownAirlines(northAmericanAirlines);
    m_airlines[RegionalAirlines] = knownAirlines(regionalAirlines);
    m_airlines[CargoAirlines] = knownAirlines(cargoAirlines);
    m_airlines[FeederAirlines] = knownAirlines(feederAirlines);
    m_airlines[FractionalFleets] = knownAirlines(fractionalFleets);
    // Every other airline of the table flies long haul into the sky.
    QStringList international;
    for (auto it = Airlines::table().cbegin(); it != Airlines::table().cend(); ++it) {
        const QString &designator = it.key();
        if (!northAmericanAirlines.contains(designator) && !regionalAirlines.contains(designator) &&
            !cargoAirlines.contains(designator) && !feederAirlines.contains(designator) &&
            !fractionalFleets.contains(designator) && !airForceDesignators.contains(designator))
            international.append(designator);
    }
    m_airlines[InternationalAirlines] = knownAirlines(international);

    // Registration patterns and the ICAO address blocks of their states.
    m_registries = {
        {u"US"_qs, {u"N"_qs, 0xA00001, 0xADF7C7, u"1200"_qs}},
        {u"USAF"_qs, {u"##-####"_qs, 0xAE0000, 0xAFFFFF, u"1200"_qs}},
        {u"USN"_qs, {u"######"_qs, 0xAE0000, 0xAFFFFF, u"1200"_qs}},
        {u"CA"_qs, {u"C-F@@@"_qs, 0xC00000, 0xC3FFFF, u"1200"_qs}},
        {u"CAF"_qs, {u"1#####"_qs, 0xC2B000, 0xC2FFFF, u"1200"_qs}},
        {u"MX"_qs, {u"XA-@@@"_qs, 0x0D0000, 0x0D7FFF, u"1200"_qs}},
        {u"GB"_qs, {u"G-@@@@"_qs, 0x400000, 0x43FFFF, u"7000"_qs}},
        {u"DE"_qs, {u"D-A@@@"_qs, 0x3C0000, 0x3DFFFF, u"7000"_qs}},
        {u"DEGA"_qs, {u"D-E@@@"_qs, 0x3C0000, 0x3DFFFF, u"7000"_qs}},
        {u"DEAF"_qs, {u"##+##"_qs, 0x3F0000, 0x3FFFFF, u"7000"_qs}},
        {u"FR"_qs, {u"F-G@@@"_qs, 0x380000, 0x3BFFFF, u"7000"_qs}},
        {u"NL"_qs, {u"PH-@@@"_qs, 0x480000, 0x487FFF, u"7000"_qs}},
        {u"IE"_qs, {u"EI-@@@"_qs, 0x4CA000, 0x4CAFFF, u"7000"_qs}},
        {u"CH"_qs, {u"HB-J@@"_qs, 0x4B0000, 0x4B7FFF, u"7000"_qs}},
        {u"AT"_qs, {u"OE-L@@"_qs, 0x440000, 0x447FFF, u"7000"_qs}},
        {u"ES"_qs, {u"EC-@@@"_qs, 0x340000, 0x37FFFF, u"7000"_qs}},
        {u"SE"_qs, {u"SE-R@@"_qs, 0x4A8000, 0x4AFFFF, u"7000"_qs}},
        {u"FI"_qs, {u"OH-L@@"_qs, 0x460000, 0x467FFF, u"7000"_qs}},
        {u"PT"_qs, {u"CS-T@@"_qs, 0x490000, 0x497FFF, u"7000"_qs}},
        {u"PL"_qs, {u"SP-L@@"_qs, 0x488000, 0x48FFFF, u"7000"_qs}},
        {u"TR"_qs, {u"TC-J@@"_qs, 0x4B8000, 0x4BFFFF, u"7000"_qs}},
        {u"AE"_qs, {u"A6-E@@"_qs, 0x896000, 0x896FFF, u"7000"_qs}},
        {u"QA"_qs, {u"A7-B@@"_qs, 0x06A000, 0x06AFFF, u"7000"_qs}},
        {u"IL"_qs, {u"4X-E@@"_qs, 0x738000, 0x73FFFF, u"7000"_qs}},
        {u"JP"_qs, {u"JA###@"_qs, 0x840000, 0x87FFFF, u"7000"_qs}},
        {u"KR"_qs, {u"HL####"_qs, 0x718000, 0x71FFFF, u"7000"_qs}},
        {u"CN"_qs, {u"B-####"_qs, 0x780000, 0x7BFFFF, u"7000"_qs}},
        {u"HK"_qs, {u"B-H@@"_qs, 0x789000, 0x789FFF, u"7000"_qs}},
        {u"TW"_qs, {u"B-#####"_qs, 0x899000, 0x8997FF, u"7000"_qs}},
        {u"SG"_qs, {u"9V-S@@"_qs, 0x768000, 0x76FFFF, u"7000"_qs}},
        {u"AU"_qs, {u"VH-@@@"_qs, 0x7C0000, 0x7FFFFF, u"7000"_qs}},
        {u"NZ"_qs, {u"ZK-@@@"_qs, 0xC80000, 0xC87FFF, u"7000"_qs}},
        {u"IN"_qs, {u"VT-@@@"_qs, 0x800000, 0x83FFFF, u"7000"_qs}},
        {u"PH"_qs, {u"RP-C####"_qs, 0x758000, 0x75FFFF, u"7000"_qs}},
        {u"VN"_qs, {u"VN-A###"_qs, 0x888000, 0x88FFFF, u"7000"_qs}},
        {u"CL"_qs, {u"CC-B@@"_qs, 0xE80000, 0xE80FFF, u"7000"_qs}},
        {u"BR"_qs, {u"PR-@@@"_qs, 0xE40000, 0xE7FFFF, u"7000"_qs}},
        {u"CO"_qs, {u"HK-####"_qs, 0x0AC000, 0x0ACFFF, u"7000"_qs}},
        {u"PA"_qs, {u"HP-####"_qs, 0x0C2000, 0x0C2FFF, u"7000"_qs}},
    };
    const QList<std::pair<QString, QStringList>> homes{
        {u"CA"_qs, {u"ACA"_qs, u"WJA"_qs, u"JZA"_qs, u"POE"_qs, u"TSC"_qs, u"FLE"_qs}},
        {u"MX"_qs, {u"AMX"_qs, u"VOI"_qs, u"VIV"_qs}},
        {u"GB"_qs, {u"BAW"_qs, u"VIR"_qs}},
        {u"FR"_qs, {u"AFR"_qs}},
        {u"NL"_qs, {u"KLM"_qs}},
        {u"DE"_qs, {u"DLH"_qs}},
        {u"CH"_qs, {u"SWR"_qs}},
        {u"AT"_qs, {u"AUA"_qs}},
        {u"ES"_qs, {u"IBE"_qs}},
        {u"IE"_qs, {u"EIN"_qs, u"ITY"_qs}},
        {u"SE"_qs, {u"SAS"_qs}},
        {u"FI"_qs, {u"FIN"_qs}},
        {u"PT"_qs, {u"TAP"_qs}},
        {u"PL"_qs, {u"LOT"_qs}},
        {u"TR"_qs, {u"THY"_qs}},
        {u"AE"_qs, {u"UAE"_qs, u"ETD"_qs}},
        {u"QA"_qs, {u"QTR"_qs}},
        {u"IL"_qs, {u"ELY"_qs}},
        {u"JP"_qs, {u"JAL"_qs, u"ANA"_qs}},
        {u"KR"_qs, {u"KAL"_qs, u"AAR"_qs}},
        {u"HK"_qs, {u"CPA"_qs}},
        {u"TW"_qs, {u"CAL"_qs, u"EVA"_qs}},
        {u"CN"_qs, {u"CCA"_qs, u"CES"_qs, u"CSN"_qs}},
        {u"SG"_qs, {u"SIA"_qs}},
        {u"AU"_qs, {u"QFA"_qs}},
        {u"NZ"_qs, {u"ANZ"_qs}},
        {u"IN"_qs, {u"AIC"_qs}},
        {u"PH"_qs, {u"PAL"_qs}},
        {u"VN"_qs, {u"VJC"_qs, u"HVN"_qs}},
        {u"CL"_qs, {u"LAN"_qs}},
        {u"BR"_qs, {u"TAM"_qs}},
        {u"CO"_qs, {u"AVA"_qs}},
        {u"PA"_qs, {u"CMP"_qs}},
    };
    for (const auto &[registry, airlines] : homes) {
        for (const QString &airline : airlines)
            m_airlineRegistry.insert(airline, registry);
    }
}

QStringList TrafficCatalog::typeCodes(Fleet fleet) const
{
    switch (fleet) {
    case Fleet::Airliner:
        return m_types[NarrowBodies] + m_types[WideBodies];
    case Fleet::Regional:
        return m_types[RegionalTypes];
    case Fleet::Cargo:
        return m_types[CargoTypes];
    case Fleet::BusinessJet:
        return m_types[BusinessTypes];
    case Fleet::LightPlane:
        return m_types[LightTypes];
    case Fleet::Feeder:
        return m_types[FeederTypes];
    case Fleet::Helicopter:
        return m_types[HelicopterTypes];
    case Fleet::MilitaryJet:
        return m_types[MilitaryJetTypes];
    case Fleet::MilitaryHelicopter:
        return m_types[MilitaryHelicopterTypes];
    }
    return {};
}

bool TrafficCatalog::isAirline(const QString &designator) const
{
    for (const QStringList &airlines : m_airlines) {
        if (std::binary_search(airlines.cbegin(), airlines.cend(), designator))
            return true;
    }
    return false;
}

QString TrafficCatalog::homeCountry(const QString &designator) const
{
    return m_airlineRegistry.value(designator, u"US"_qs);
}

const TrafficCatalog::Registry &TrafficCatalog::registryFor(const QString &airline) const
{
    const auto it = m_registries.constFind(m_airlineRegistry.value(airline, u"US"_qs));
    return it != m_registries.cend() ? *it : m_registries.find(u"US"_qs).value();
}

QString TrafficCatalog::registration(const Registry &registry, SimRandom &random)
{
    if (registry.pattern == u"N") {
        // N, a first digit that isn't 0, up to four more digits, then up to two letters (no I or O), at
        // most five characters after the N.
        QString text = u"N"_qs + QString::number(random.integer(1, 9));
        const int moreDigits = int(random.integer(0, 3));
        for (int i = 0; i < moreDigits; ++i)
            text.append(QString::number(random.integer(0, 9)));
        const int letterCount = int(random.integer(0, std::min(2, 4 - moreDigits)));
        return text + letters(random, letterCount, true);
    }
    QString text;
    for (const QChar c : registry.pattern) {
        if (c == u'@')
            text.append(letters(random, 1, false));
        else if (c == u'#')
            text.append(QString::number(random.integer(0, 9)));
        else
            text.append(c);
    }
    return text;
}

QString TrafficCatalog::hexIn(const Registry &registry, SimRandom &random)
{
    const auto value = quint32(random.integer(registry.hexLow, registry.hexHigh));
    return QString::number(value, 16).rightJustified(6, u'0');
}

QString TrafficCatalog::categoryOf(const QString &typeCode)
{
    static const QStringList otherHeavies{u"A306"_qs, u"MD11"_qs, u"C17"_qs, u"K35R"_qs,
                                          u"KC46"_qs, u"E3TF"_qs, u"B52"_qs, u"A400"_qs};
    static const QStringList fast{u"F16"_qs, u"F15"_qs, u"F18S"_qs, u"F35"_qs, u"T38"_qs, u"TEX2"_qs};
    static const QStringList smallAirliners{u"B190"_qs, u"SW4"_qs, u"BE20"_qs};
    if (Aircraft::helicopterTypes().contains(typeCode))
        return u"A7"_qs;
    if (lightTypes.contains(typeCode) || typeCode == u"C208" || typeCode == u"PC12")
        return u"A1"_qs;
    if (businessTypes.contains(typeCode) || smallAirliners.contains(typeCode))
        return u"A2"_qs;
    if (wideBodies.contains(typeCode) || otherHeavies.contains(typeCode))
        return u"A5"_qs;
    if (typeCode == u"B752" || typeCode == u"B753")
        return u"A4"_qs;
    if (fast.contains(typeCode))
        return u"A6"_qs;
    return u"A3"_qs;
}

QString TrafficCatalog::description(const QString &typeCode) const
{
    // Feeds send the aircraft database's description in capitals.
    return AircraftTypes::table().value(typeCode).toUpper();
}

void TrafficCatalog::fillType(FlightIdentity &identity, const QStringList &types, SimRandom &random) const
{
    const QString &code = random.pick(types);
    identity.typeCode = code;
    identity.description = description(code);
    identity.category = categoryOf(code);
}

FlightIdentity TrafficCatalog::draw(Fleet fleet, SimRandom &random) const
{
    FlightIdentity identity;
    const Registry &us = m_registries.find(u"US"_qs).value();
    auto airlineIdentity = [&](const QString &airline, const QStringList &types, qint64 lowNumber,
                               qint64 highNumber) {
        fillType(identity, types, random);
        const Registry &registry = registryFor(airline);
        identity.registration = registration(registry, random);
        identity.hex = hexIn(registry, random);
        identity.callsign = airline + QString::number(random.integer(lowNumber, highNumber));
        if (random.chance(0.6))
            identity.ownerOperator = Airlines::table().value(airline).toUpper();
        identity.year = QString::number(random.integer(1995, 2024));
    };
    auto privateIdentity = [&](const QStringList &types, const QStringList &owners, double foreignShare) {
        fillType(identity, types, random);
        const Registry *registry = &us;
        if (random.chance(foreignShare)) {
            static const QStringList foreign{u"CA"_qs, u"GB"_qs, u"DEGA"_qs, u"MX"_qs};
            registry = &m_registries.find(random.pick(foreign)).value();
        }
        identity.registration = registration(*registry, random);
        identity.hex = hexIn(*registry, random);
        identity.vfrSquawk = registry->vfrSquawk;
        // Private flights file and fly under their registration.
        if (random.chance(0.9))
            identity.callsign = withoutDashes(*identity.registration);
        if (random.chance(0.55))
            identity.ownerOperator = random.pick(owners);
        if (random.chance(0.03))
            identity.dbFlags |= 8; // LADD: the owner asked for the aircraft to be hidden from public sites
        else if (random.chance(0.01))
            identity.dbFlags |= 4; // PIA: a privacy address
        identity.year = QString::number(random.integer(1965, 2023));
    };

    switch (fleet) {
    case Fleet::Airliner: {
        const bool international = random.chance(0.3);
        const QString &airline =
            random.pick(m_airlines[international ? InternationalAirlines : NorthAmericanAirlines]);
        const bool wide = random.chance(international ? 0.75 : 0.15);
        airlineIdentity(airline, m_types[wide ? WideBodies : NarrowBodies], 1, international ? 999 : 2999);
        break;
    }
    case Fleet::Regional:
        airlineIdentity(random.pick(m_airlines[RegionalAirlines]), m_types[RegionalTypes], 3000, 6999);
        break;
    case Fleet::Cargo:
        airlineIdentity(random.pick(m_airlines[CargoAirlines]), m_types[CargoTypes], 1, 1999);
        break;
    case Fleet::Feeder:
        airlineIdentity(random.pick(m_airlines[FeederAirlines]), m_types[FeederTypes], 1000, 9999);
        break;
    case Fleet::BusinessJet:
        if (random.chance(0.5)) {
            airlineIdentity(random.pick(m_airlines[FractionalFleets]), m_types[BusinessTypes], 100, 999);
        } else {
            privateIdentity(m_types[BusinessTypes], privateOwners, 0.15);
            identity.instrumentRules = true;
        }
        break;
    case Fleet::LightPlane:
        privateIdentity(m_types[LightTypes], privateOwners, 0.15);
        identity.instrumentRules = random.chance(0.25);
        break;
    case Fleet::Helicopter:
        privateIdentity(m_types[HelicopterTypes], helicopterOwners, 0.1);
        identity.instrumentRules = false;
        break;
    case Fleet::MilitaryJet:
    case Fleet::MilitaryHelicopter: {
        const MilitaryUnit &unit = random.pick(militaryUnits);
        const bool helicopter = fleet == Fleet::MilitaryHelicopter;
        // Airlift callsigns go with airlifters.
        const QStringList &types = helicopter              ? m_types[MilitaryHelicopterTypes]
                                   : unit.prefix == u"RCH" ? m_types[AirliftTypes]
                                                           : m_types[MilitaryJetTypes];
        fillType(identity, types, random);
        const Registry &registry = m_registries.find(unit.registry).value();
        identity.registration = registration(registry, random);
        identity.hex = hexIn(registry, random);
        identity.callsign =
            unit.prefix + QString::number(random.integer(1, unit.prefix == u"RCH" ? 999 : 99));
        identity.ownerOperator = unit.ownerOperator;
        identity.dbFlags = 1;
        break;
    }
    }
    return identity;
}
