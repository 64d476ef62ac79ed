#include "AircraftTypes.h"
#include "Airlines.h"

#include <QRegularExpression>
#include <QTest>

using OptionalText = std::optional<QString>;
Q_DECLARE_METATYPE(OptionalText)

namespace {

const OptionalText absentText;

// The published lists, entry by entry: a key, one blank, the name; entries parted by semicolons.
constexpr QStringView referenceTypes = uR"(
A19N Airbus A319neo; A20N Airbus A320neo; A21N Airbus A321neo; A318 Airbus A318; A319 Airbus A319;
A320 Airbus A320; A321 Airbus A321; A306 Airbus A300-600; A310 Airbus A310; A332 Airbus A330-200;
A333 Airbus A330-300; A338 Airbus A330-800neo; A339 Airbus A330-900neo; A342 Airbus A340-200;
A343 Airbus A340-300; A345 Airbus A340-500; A346 Airbus A340-600; A359 Airbus A350-900;
A35K Airbus A350-1000; A388 Airbus A380; A400 Airbus A400M Atlas; BCS1 Airbus A220-100;
BCS3 Airbus A220-300; B712 Boeing 717; B721 Boeing 727-100; B722 Boeing 727-200; B731 Boeing 737-100;
B732 Boeing 737-200; B733 Boeing 737-300; B734 Boeing 737-400; B735 Boeing 737-500;
B736 Boeing 737-600; B737 Boeing 737-700; B738 Boeing 737-800; B739 Boeing 737-900;
B37M Boeing 737 MAX 7; B38M Boeing 737 MAX 8; B39M Boeing 737 MAX 9; B3XM Boeing 737 MAX 10;
B741 Boeing 747-100; B742 Boeing 747-200; B743 Boeing 747-300; B744 Boeing 747-400;
B748 Boeing 747-8; B752 Boeing 757-200; B753 Boeing 757-300; B762 Boeing 767-200;
B763 Boeing 767-300; B764 Boeing 767-400; B772 Boeing 777-200; B77L Boeing 777-200LR;
B773 Boeing 777-300; B77W Boeing 777-300ER; B778 Boeing 777-8; B779 Boeing 777-9; B788 Boeing 787-8;
B789 Boeing 787-9; B78X Boeing 787-10; MD11 McDonnell Douglas MD-11; MD82 McDonnell Douglas MD-82;
MD83 McDonnell Douglas MD-83; MD87 McDonnell Douglas MD-87; MD88 McDonnell Douglas MD-88;
MD90 McDonnell Douglas MD-90; DC10 McDonnell Douglas DC-10; DC3 Douglas DC-3; E135 Embraer ERJ-135;
E145 Embraer ERJ-145; E170 Embraer E170; E175 Embraer E175; E75L Embraer E175; E75S Embraer E175;
E190 Embraer E190; E195 Embraer E195; E290 Embraer E190-E2; E295 Embraer E195-E2;
E545 Embraer Legacy 450; E550 Embraer Legacy 500; E50P Embraer Phenom 100; E55P Embraer Phenom 300;
CRJ2 Bombardier CRJ200; CRJ7 Bombardier CRJ700; CRJ9 Bombardier CRJ900; CRJX Bombardier CRJ1000;
CL30 Bombardier Challenger 300; CL35 Bombardier Challenger 350; CL60 Bombardier Challenger 600;
GL5T Bombardier Global 5000; GLEX Bombardier Global Express; GL7T Bombardier Global 7500;
DH8A De Havilland Dash 8-100; DH8B De Havilland Dash 8-200; DH8C De Havilland Dash 8-300;
DH8D De Havilland Dash 8-400; DHC2 De Havilland Beaver; DHC3 De Havilland Otter;
DHC6 De Havilland Twin Otter; CL2T Canadair CL-415; AT43 ATR 42-300; AT45 ATR 42-500;
AT46 ATR 42-600; AT72 ATR 72-200; AT75 ATR 72-500; AT76 ATR 72-600; SF34 Saab 340; SB20 Saab 2000;
SW4 Swearingen Metroliner; B190 Beechcraft 1900; F50 Fokker 50; F70 Fokker 70; F100 Fokker 100;
C150 Cessna 150; C152 Cessna 152; C162 Cessna 162 Skycatcher; C170 Cessna 170;
C172 Cessna 172 Skyhawk; C175 Cessna 175; C177 Cessna 177 Cardinal; C180 Cessna 180;
C182 Cessna 182 Skylane; C185 Cessna 185 Skywagon; C206 Cessna 206 Stationair; C207 Cessna 207;
C210 Cessna 210 Centurion; C337 Cessna 337 Skymaster; C310 Cessna 310; C340 Cessna 340;
C402 Cessna 402; C414 Cessna 414; C421 Cessna 421 Golden Eagle; C208 Cessna 208 Caravan;
C425 Cessna 425 Conquest I; C441 Cessna 441 Conquest II; C500 Cessna Citation I;
C510 Cessna Citation Mustang; C525 Cessna CitationJet; C25A Cessna Citation CJ2;
C25B Cessna Citation CJ3; C25C Cessna Citation CJ4; C550 Cessna Citation II; C560 Cessna Citation V;
C56X Cessna Citation Excel; C650 Cessna Citation VII; C680 Cessna Citation Sovereign;
C68A Cessna Citation Latitude; C700 Cessna Citation Longitude; C750 Cessna Citation X;
P28A Piper Cherokee/Archer; P28B Piper Dakota; P28R Piper Arrow; P28T Piper Turbo Arrow;
PA24 Piper Comanche; PA30 Piper Twin Comanche; PA31 Piper Navajo; PA32 Piper Saratoga;
PA34 Piper Seneca; PA44 Piper Seminole; PA46 Piper Malibu/Mirage; P46T Piper Meridian;
PA18 Piper Super Cub; J3 Piper J-3 Cub; SR20 Cirrus SR20; SR22 Cirrus SR22; S22T Cirrus SR22T;
SF50 Cirrus Vision Jet; DA20 Diamond DA20; DA40 Diamond DA40; DA42 Diamond DA42; DA62 Diamond DA62;
M20P Mooney M20; M20T Mooney M20 Turbo; BE33 Beechcraft Debonair; BE35 Beechcraft Bonanza V35;
BE36 Beechcraft Bonanza 36; BE55 Beechcraft Baron 55; BE58 Beechcraft Baron 58;
BE76 Beechcraft Duchess; AA5 Grumman Traveler; BL8 Bellanca Super Decathlon; RV4 Van's RV-4;
RV6 Van's RV-6; RV7 Van's RV-7; RV8 Van's RV-8; RV9 Van's RV-9; RV10 Van's RV-10; RV12 Van's RV-12;
GLST Glasair Sportsman; PC12 Pilatus PC-12; PC6T Pilatus PC-6 Porter; PC24 Pilatus PC-24;
TBM7 TBM 700; TBM8 TBM 850; TBM9 TBM 900/930/960; BE9L Beechcraft King Air 90;
BE20 Beechcraft King Air 200; B350 Beechcraft King Air 350; BE40 Beechjet 400; EPIC Epic E1000;
KODI Quest Kodiak; GLF3 Gulfstream III; GLF4 Gulfstream IV; GLF5 Gulfstream V; GLF6 Gulfstream G650;
GA5C Gulfstream G500; GA6C Gulfstream G600; G280 Gulfstream G280; G150 Gulfstream G150;
FA10 Dassault Falcon 10; FA20 Dassault Falcon 20; FA50 Dassault Falcon 50; F2TH Dassault Falcon 2000;
F900 Dassault Falcon 900; FA7X Dassault Falcon 7X; FA8X Dassault Falcon 8X; LJ31 Learjet 31;
LJ35 Learjet 35; LJ45 Learjet 45; LJ55 Learjet 55; LJ60 Learjet 60; LJ75 Learjet 75; HDJT HondaJet;
R22 Robinson R22; R44 Robinson R44; R66 Robinson R66; B06 Bell 206 JetRanger; B407 Bell 407;
B412 Bell 412; B429 Bell 429; B505 Bell 505; AS50 Airbus H125 (AStar); EC30 Airbus H130;
EC35 Airbus H135; EC45 Airbus H145; EC55 Airbus H155; EC75 Airbus H175; A109 Leonardo AW109;
A139 Leonardo AW139; A169 Leonardo AW169; S76 Sikorsky S-76; S92 Sikorsky S-92;
H60 Sikorsky H-60 Black Hawk; MD50 MD 500; C17 Boeing C-17 Globemaster III;
C130 Lockheed C-130 Hercules; C30J Lockheed C-130J Super Hercules; K35R Boeing KC-135 Stratotanker;
KC46 Boeing KC-46 Pegasus; B52 Boeing B-52 Stratofortress; F16 F-16 Fighting Falcon; F15 F-15 Eagle;
F18S F/A-18 Super Hornet; F35 F-35 Lightning II; F22 F-22 Raptor; A10 A-10 Thunderbolt II;
T38 Northrop T-38 Talon; TEX2 T-6 Texan II; V22 Bell-Boeing V-22 Osprey; P8 Boeing P-8 Poseidon;
E3TF Boeing E-3 Sentry; UH1 Bell UH-1 Huey; H64 Boeing AH-64 Apache; H47 Boeing CH-47 Chinook;
GLID Glider; BALL Balloon; ULAC Ultralight; SIRA Sonex; LNC2 Lancair 360; LNC4 Lancair IV;
COL3 Lancair Columbia 300; COL4 Cessna Corvalis; AN2 Antonov An-2; A124 Antonov An-124.)";

constexpr QStringView referenceAirlines = uR"(
AAL American Airlines; DAL Delta Air Lines; UAL United Airlines; SWA Southwest Airlines;
ASA Alaska Airlines; JBU JetBlue; NKS Spirit Airlines; FFT Frontier Airlines; AAY Allegiant Air;
HAL Hawaiian Airlines; SCX Sun Country Airlines; MXY Breeze Airways; VXP Avelo Airlines;
QXE Horizon Air; SKW SkyWest Airlines; ASH Mesa Airlines; ENY Envoy Air; RPA Republic Airways;
EDV Endeavor Air; PDT Piedmont Airlines; PSA PSA Airlines; JIA PSA Airlines; GJS GoJet Airlines;
AWI Air Wisconsin; UCA CommuteAir; FDX FedEx Express; UPS UPS Airlines; GTI Atlas Air; ABX ABX Air;
CKS Kalitta Air; PAC Polar Air Cargo; ATN Air Transport International; WGN Western Global;
MTN Mountain Air Cargo; AMF Ameriflight; EJA NetJets; LXJ Flexjet; XOJ XOJet; JTL Jet Linx;
ACA Air Canada; WJA WestJet; JZA Air Canada Jazz; POE Porter Airlines; TSC Air Transat;
FLE Flair Airlines; AMX Aeroméxico; VOI Volaris; VIV Viva Aerobus; BAW British Airways;
VIR Virgin Atlantic; AFR Air France; KLM KLM; DLH Lufthansa; SWR Swiss; AUA Austrian; IBE Iberia;
EIN Aer Lingus; SAS SAS; FIN Finnair; TAP TAP Air Portugal; ITY ITA Airways; LOT LOT Polish;
THY Turkish Airlines; UAE Emirates; QTR Qatar Airways; ETD Etihad Airways; ELY El Al;
JAL Japan Airlines; ANA All Nippon Airways; KAL Korean Air; AAR Asiana Airlines; CPA Cathay Pacific;
CAL China Airlines; EVA EVA Air; SIA Singapore Airlines; QFA Qantas; ANZ Air New Zealand;
CCA Air China; CES China Eastern; CSN China Southern; AIC Air India; PAL Philippine Airlines;
VJC VietJet Air; HVN Vietnam Airlines; LAN LATAM; TAM LATAM Brasil; AVA Avianca; CMP Copa Airlines;
GAF German Air Force; RCH US Air Mobility Command; CFC Canadian Forces.)";

QHash<QString, QString> parseReference(QStringView list)
{
    QHash<QString, QString> table;
    QString text = list.toString().simplified();
    if (text.endsWith(u'.'))
        text.chop(1);
    for (const QString &entry : text.split(u';')) {
        const QString trimmed = entry.trimmed();
        const qsizetype blank = trimmed.indexOf(u' ');
        const QString key = trimmed.left(blank);
        if (blank < 1 || table.contains(key))
            return {}; // a malformed or doubled entry makes the comparison fail loudly
        table.insert(key, trimmed.mid(blank + 1));
    }
    return table;
}

// Names every key whose entry differs, so that a failure says which row is wrong.
QString differences(const QHash<QString, QString> &actual, const QHash<QString, QString> &expected)
{
    QStringList lines;
    for (auto it = expected.cbegin(); it != expected.cend(); ++it) {
        if (!actual.contains(it.key()))
            lines << u"missing %1"_qs.arg(it.key());
        else if (actual.value(it.key()) != it.value())
            lines << u"%1: \"%2\" instead of \"%3\""_qs.arg(it.key(), actual.value(it.key()), it.value());
    }
    for (auto it = actual.cbegin(); it != actual.cend(); ++it) {
        if (!expected.contains(it.key()))
            lines << u"unexpected %1"_qs.arg(it.key());
    }
    lines.sort();
    return lines.join(u"; ");
}

} // namespace

class AircraftTablesTest : public QObject
{
    Q_OBJECT

private slots:
    void typeTableHoldsTheListedEntries();
    void airlineTableHoldsTheListedEntries();
    void typeKeysAreUpperCaseDesignators();
    void airlineKeysAreThreeUpperCaseLetters();

    void tableEntries_data();
    void tableEntries();

    void typeName_data();
    void typeName();

    void isAirlineCallsign_data();
    void isAirlineCallsign();

    void nameForCallsign_data();
    void nameForCallsign();
};

void AircraftTablesTest::typeTableHoldsTheListedEntries()
{
    const QHash<QString, QString> expected = parseReference(referenceTypes);
    QCOMPARE(expected.size(), 272);
    QCOMPARE(AircraftTypes::table().size(), 272);
    const QString diff = differences(AircraftTypes::table(), expected);
    QVERIFY2(diff.isEmpty(), qPrintable(diff));
}

void AircraftTablesTest::airlineTableHoldsTheListedEntries()
{
    const QHash<QString, QString> expected = parseReference(referenceAirlines);
    QCOMPARE(expected.size(), 91);
    QCOMPARE(Airlines::table().size(), 91);
    const QString diff = differences(Airlines::table(), expected);
    QVERIFY2(diff.isEmpty(), qPrintable(diff));
}

void AircraftTablesTest::typeKeysAreUpperCaseDesignators()
{
    static const QRegularExpression designator(u"^[A-Z0-9]{2,4}$"_qs);
    for (auto it = AircraftTypes::table().cbegin(); it != AircraftTypes::table().cend(); ++it) {
        QVERIFY2(designator.match(it.key()).hasMatch(), qPrintable(it.key()));
        QVERIFY2(!it.value().isEmpty() && it.value() == it.value().trimmed(), qPrintable(it.key()));
    }
}

void AircraftTablesTest::airlineKeysAreThreeUpperCaseLetters()
{
    static const QRegularExpression designator(u"^[A-Z]{3}$"_qs);
    for (auto it = Airlines::table().cbegin(); it != Airlines::table().cend(); ++it) {
        QVERIFY2(designator.match(it.key()).hasMatch(), qPrintable(it.key()));
        QVERIFY2(!it.value().isEmpty() && it.value() == it.value().trimmed(), qPrintable(it.key()));
    }
}

void AircraftTablesTest::tableEntries_data()
{
    QTest::addColumn<bool>("airline");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("name");

    QTest::newRow("E175") << false << u"E175"_qs << u"Embraer E175"_qs;
    QTest::newRow("E75L same name") << false << u"E75L"_qs << u"Embraer E175"_qs;
    QTest::newRow("E75S same name") << false << u"E75S"_qs << u"Embraer E175"_qs;
    QTest::newRow("RV4 apostrophe") << false << u"RV4"_qs << u"Van's RV-4"_qs;
    QTest::newRow("AS50 parentheses") << false << u"AS50"_qs << u"Airbus H125 (AStar)"_qs;
    QTest::newRow("TBM9 slashes") << false << u"TBM9"_qs << u"TBM 900/930/960"_qs;
    QTest::newRow("F18S") << false << u"F18S"_qs << u"F/A-18 Super Hornet"_qs;
    QTest::newRow("two-character J3") << false << u"J3"_qs << u"Piper J-3 Cub"_qs;
    QTest::newRow("two-character P8") << false << u"P8"_qs << u"Boeing P-8 Poseidon"_qs;
    QTest::newRow("first A19N") << false << u"A19N"_qs << u"Airbus A319neo"_qs;
    QTest::newRow("last A124") << false << u"A124"_qs << u"Antonov An-124"_qs;
    QTest::newRow("PSA") << true << u"PSA"_qs << u"PSA Airlines"_qs;
    QTest::newRow("JIA same name") << true << u"JIA"_qs << u"PSA Airlines"_qs;
    QTest::newRow("AMX accent") << true << u"AMX"_qs << u"Aerom\u00E9xico"_qs;
    QTest::newRow("FDX operator") << true << u"FDX"_qs << u"FedEx Express"_qs;
    QTest::newRow("EJA operator") << true << u"EJA"_qs << u"NetJets"_qs;
    QTest::newRow("GAF military") << true << u"GAF"_qs << u"German Air Force"_qs;
    QTest::newRow("RCH military") << true << u"RCH"_qs << u"US Air Mobility Command"_qs;
    QTest::newRow("CFC military") << true << u"CFC"_qs << u"Canadian Forces"_qs;
}

void AircraftTablesTest::tableEntries()
{
    QFETCH(bool, airline);
    QFETCH(QString, key);
    QFETCH(QString, name);
    const QHash<QString, QString> &table = airline ? Airlines::table() : AircraftTypes::table();
    QVERIFY2(table.contains(key), qPrintable(key));
    QCOMPARE(table.value(key), name);
}

void AircraftTablesTest::typeName_data()
{
    QTest::addColumn<OptionalText>("code");
    QTest::addColumn<OptionalText>("expected");

    QTest::newRow("B739") << OptionalText(u"B739"_qs) << OptionalText(u"Boeing 737-900"_qs);
    QTest::newRow("b739") << OptionalText(u"b739"_qs) << OptionalText(u"Boeing 737-900"_qs);
    QTest::newRow("e75s") << OptionalText(u"e75s"_qs) << OptionalText(u"Embraer E175"_qs);
    QTest::newRow("tbm9") << OptionalText(u"tbm9"_qs) << OptionalText(u"TBM 900/930/960"_qs);
    QTest::newRow("dotless i upper-cases to I")
        << OptionalText(u"ep\u0131c"_qs) << OptionalText(u"Epic E1000"_qs);
    QTest::newRow("long s upper-cases to S")
        << OptionalText(u"\u017Fr22"_qs) << OptionalText(u"Cirrus SR22"_qs);
    QTest::newRow("trailing blank") << OptionalText(u"B739 "_qs) << absentText;
    QTest::newRow("leading blank") << OptionalText(u" B739"_qs) << absentText;
    QTest::newRow("full-width letters") << OptionalText(u"\uFF22739"_qs) << absentText;
    QTest::newRow("unknown") << OptionalText(u"ZZZZ"_qs) << absentText;
    QTest::newRow("empty") << OptionalText(QString()) << absentText;
    QTest::newRow("absent") << absentText << absentText;
}

void AircraftTablesTest::typeName()
{
    QFETCH(OptionalText, code);
    QFETCH(OptionalText, expected);
    QCOMPARE(AircraftTypes::name(code), expected);
}

void AircraftTablesTest::isAirlineCallsign_data()
{
    QTest::addColumn<OptionalText>("callsign");
    QTest::addColumn<bool>("expected");

    QTest::newRow("absent") << absentText << false;
    QTest::newRow("empty") << OptionalText(QString()) << false;
    QTest::newRow("blanks only") << OptionalText(u"    "_qs) << false;
    QTest::newRow("ASA512") << OptionalText(u"ASA512"_qs) << true;
    QTest::newRow("asa512") << OptionalText(u"asa512"_qs) << true;
    QTest::newRow("ASA512 padded") << OptionalText(u"ASA512   "_qs) << true;
    QTest::newRow("tabs and no-break spaces") << OptionalText(u"\t\u00A0ASA512\u2003"_qs) << true;
    QTest::newRow("leading line feed") << OptionalText(u"\nASA512"_qs) << false;
    QTest::newRow("RCH440") << OptionalText(u"RCH440"_qs) << true;
    QTest::newRow("AAL too short") << OptionalText(u"AAL"_qs) << false;
    QTest::newRow("AAL padded still too short") << OptionalText(u"  AAL  "_qs) << false;
    QTest::newRow("AAL1") << OptionalText(u"AAL1"_qs) << true;
    QTest::newRow("ABCD1 fourth is a letter") << OptionalText(u"ABCD1"_qs) << false;
    QTest::newRow("A1B2 second is a digit") << OptionalText(u"A1B2"_qs) << false;
    QTest::newRow("N123AB") << OptionalText(u"N123AB"_qs) << false;
    QTest::newRow("ZZZ999 unknown but an airline's") << OptionalText(u"ZZZ999"_qs) << true;
    QTest::newRow("inner blank") << OptionalText(u"ASA 512"_qs) << false;
    QTest::newRow("what follows the fourth is not looked at") << OptionalText(u"ASA5!?~"_qs) << true;
    // Characters are grapheme clusters, judged by their first code point.
    QTest::newRow("combining accent on a letter") << OptionalText(u"A\u0301BC1"_qs) << true;
    QTest::newRow("combining accent before the digit") << OptionalText(u"ABC\u03011"_qs) << true;
    QTest::newRow("three clusters in four code units") << OptionalText(u"AB\u0301C"_qs) << false;
    QTest::newRow("letter outside the BMP") << OptionalText(u"\U0001D400BC1"_qs) << true;
    QTest::newRow("emoji is not a letter") << OptionalText(u"\U0001F600BC1"_qs) << false;
    QTest::newRow("emoji in fourth place") << OptionalText(u"ABC\U0001F600"_qs) << false;
    QTest::newRow("keycap digit") << OptionalText(u"ABC1\uFE0F\u20E3"_qs) << true;
    QTest::newRow("full-width digit") << OptionalText(u"ABC\uFF11"_qs) << true;
    QTest::newRow("full-width letters") << OptionalText(u"\uFF21\uFF22\uFF23\uFF11"_qs) << true;
    QTest::newRow("Arabic-Indic digit") << OptionalText(u"ABC\u0661"_qs) << true;
    QTest::newRow("Roman numeral") << OptionalText(u"ABC\u216B"_qs) << true;
    QTest::newRow("vulgar fraction") << OptionalText(u"ABC\u00BD"_qs) << true;
    QTest::newRow("Greek letters") << OptionalText(u"\u03B1\u03B2\u03B31"_qs) << true;
    QTest::newRow("CJK letters") << OptionalText(u"\u65E5\u672C\u822A1"_qs) << true;
    QTest::newRow("digit first") << OptionalText(u"1ABC"_qs) << false;
    QTest::newRow("underscore") << OptionalText(u"AB_1"_qs) << false;
    // "ßa1" has three characters, but upper-casing comes first and makes it "SSA1".
    QTest::newRow("sharp s grows to four") << OptionalText(u"\u00DFa1"_qs) << true;
}

void AircraftTablesTest::isAirlineCallsign()
{
    QFETCH(OptionalText, callsign);
    QFETCH(bool, expected);
    QCOMPARE(Airlines::isAirlineCallsign(callsign), expected);
}

void AircraftTablesTest::nameForCallsign_data()
{
    QTest::addColumn<OptionalText>("callsign");
    QTest::addColumn<OptionalText>("expected");

    QTest::newRow("ASA512") << OptionalText(u"ASA512"_qs) << OptionalText(u"Alaska Airlines"_qs);
    QTest::newRow("asa512") << OptionalText(u"asa512"_qs) << OptionalText(u"Alaska Airlines"_qs);
    QTest::newRow("ASA512 padded") << OptionalText(u"ASA512   "_qs) << OptionalText(u"Alaska Airlines"_qs);
    QTest::newRow("tab and no-break space")
        << OptionalText(u"\tasa512\u00A0"_qs) << OptionalText(u"Alaska Airlines"_qs);
    QTest::newRow("RCH440") << OptionalText(u"RCH440"_qs) << OptionalText(u"US Air Mobility Command"_qs);
    QTest::newRow("AAL1") << OptionalText(u"AAL1"_qs) << OptionalText(u"American Airlines"_qs);
    QTest::newRow("PSA") << OptionalText(u"PSA2701"_qs) << OptionalText(u"PSA Airlines"_qs);
    QTest::newRow("JIA") << OptionalText(u"jia5123"_qs) << OptionalText(u"PSA Airlines"_qs);
    QTest::newRow("AMX") << OptionalText(u"amx412"_qs) << OptionalText(u"Aerom\u00E9xico"_qs);
    QTest::newRow("FDX") << OptionalText(u"FDX1234"_qs) << OptionalText(u"FedEx Express"_qs);
    QTest::newRow("full-width digit") << OptionalText(u"ASA\uFF15"_qs) << OptionalText(u"Alaska Airlines"_qs);
    QTest::newRow("Arabic-Indic digit")
        << OptionalText(u"DAL\u0661\u0662"_qs) << OptionalText(u"Delta Air Lines"_qs);
    QTest::newRow("dotless i upper-cases to I")
        << OptionalText(u"\u0131be31"_qs) << OptionalText(u"Iberia"_qs);
    QTest::newRow("long s upper-cases to S")
        << OptionalText(u"\u017Fwa1"_qs) << OptionalText(u"Southwest Airlines"_qs);
    QTest::newRow("ZZZ999 unknown") << OptionalText(u"ZZZ999"_qs) << absentText;
    QTest::newRow("N123AB private") << OptionalText(u"N123AB"_qs) << absentText;
    QTest::newRow("AAL too short") << OptionalText(u"AAL"_qs) << absentText;
    QTest::newRow("ASA 512") << OptionalText(u"ASA 512"_qs) << absentText;
    QTest::newRow("accent makes another designator") << OptionalText(u"A\u0301SA1"_qs) << absentText;
    QTest::newRow("full-width letters") << OptionalText(u"\uFF21\uFF33\uFF211"_qs) << absentText;
    QTest::newRow("sharp s") << OptionalText(u"\u00DFa1"_qs) << absentText;
    QTest::newRow("empty") << OptionalText(QString()) << absentText;
    QTest::newRow("absent") << absentText << absentText;
}

void AircraftTablesTest::nameForCallsign()
{
    QFETCH(OptionalText, callsign);
    QFETCH(OptionalText, expected);
    QCOMPARE(Airlines::nameForCallsign(callsign), expected);
}

QTEST_GUILESS_MAIN(AircraftTablesTest)
#include "AircraftTablesTest.moc"
