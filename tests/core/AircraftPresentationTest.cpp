#include "Aircraft.h"

#include <QFile>
#include <QLocale>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <clocale>
#include <cmath>
#include <cstdio>
#include <limits>
#include <numbers>

using OptionalText = std::optional<QString>;
Q_DECLARE_METATYPE(OptionalText)
using OptionalInt = std::optional<qint64>;
Q_DECLARE_METATYPE(OptionalInt)
using OptionalDouble = std::optional<double>;
Q_DECLARE_METATYPE(OptionalDouble)

namespace {

// Records exist only as decoded feed rows, so every case starts from JSON text.
#define DECODE_OR_FAIL(name, json)                                                                           \
    const Decoded<Aircraft> name##Decoded = Aircraft::decode(json);                                          \
    QVERIFY2(name##Decoded.ok(), qPrintable(name##Decoded.error()));                                         \
    const Aircraft &name = name##Decoded.value()

const OptionalText absentText;

// Restores the process-wide default QLocale when a test that changed it ends, also on failure.
class DefaultLocaleGuard
{
public:
    explicit DefaultLocaleGuard(const QLocale &locale) { QLocale::setDefault(locale); }
    ~DefaultLocaleGuard() { QLocale::setDefault(m_previous); }
    DefaultLocaleGuard(const DefaultLocaleGuard &) = delete;
    DefaultLocaleGuard &operator=(const DefaultLocaleGuard &) = delete;

private:
    QLocale m_previous;
};

// The elevation text exactly as C's printf writes "%.0f", worked out from the geometry here rather
// than taken from the code under test.
QString expectedElevation(qint64 altitudeFeet, double distanceNM)
{
    const double elevation =
        std::atan2(double(altitudeFeet) * 0.3048, distanceNM * 1852.0) * 180.0 / std::numbers::pi;
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.0f", elevation);
    return QString::fromLatin1(buffer);
}

// Switches the C library to German, where printf writes a decimal comma. Systems often carry no German
// locale, so one is compiled into a private directory when the locale sources are there.
bool selectGermanCLocale(const QTemporaryDir &scratch)
{
    for (const char *name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE"}) {
        if (std::setlocale(LC_ALL, name))
            return true;
    }
    const QString localedef = QStandardPaths::findExecutable(u"localedef"_qs);
    if (localedef.isEmpty() || !scratch.isValid())
        return false;
    QProcess compile;
    compile.start(localedef,
                  {u"-i"_qs, u"de_DE"_qs, u"-f"_qs, u"UTF-8"_qs, scratch.filePath(u"de_DE.UTF-8"_qs)});
    // Exit status 1 only reports warnings; whether the locale loads is what counts.
    if (!compile.waitForFinished(30000))
        return false;
    qputenv("LOCPATH", QFile::encodeName(scratch.path()));
    if (std::setlocale(LC_ALL, "de_DE.UTF-8"))
        return true;
    qunsetenv("LOCPATH");
    return false;
}

} // namespace

class AircraftPresentationTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void displayName_data();
    void displayName();

    void coordinate_data();
    void coordinate();

    void altitude_data();
    void altitude();
    void altitudeTextFollowsDefaultLocale();

    void speedText_data();
    void speedText();
    void speedTextOfHugeSpeeds_data();
    void speedTextOfHugeSpeeds();

    void verticalText_data();
    void verticalText();

    void isEmergency_data();
    void isEmergency();

    void isMilitary_data();
    void isMilitary();

    void distanceMiles_data();
    void distanceMiles();

    void typeName_data();
    void typeName();

    void operatorDisplayName_data();
    void operatorDisplayName();

    void isHelicopter_data();
    void isHelicopter();
    void helicopterTypesAreTheRotorcraftDesignators();

    void compassPoint_data();
    void compassPoint();
    void compassPointOfNonFiniteBearings_data();
    void compassPointOfNonFiniteBearings();

    void lookDirection_data();
    void lookDirection();
    void lookDirectionElevationFollowsGeometry();

    void distanceText_data();
    void distanceText();
    void distanceTextUsesPointWhateverTheDefaultLocale_data();
    void distanceTextUsesPointWhateverTheDefaultLocale();
    void distanceTextUsesPointWithGermanCLocale();
};

void AircraftPresentationTest::initTestCase()
{
    // Qt writes French groups with a narrow no-break space; the tables below rely on it.
    QCOMPARE(QLocale(u"fr_FR"_qs).groupSeparator(), u"\u202F"_qs);
}

void AircraftPresentationTest::displayName_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("expected");

    QTest::newRow("callsign") << QByteArray(R"({"hex":"a1b2c3","flight":"ASA512"})") << u"ASA512"_qs;
    QTest::newRow("padded callsign") << QByteArray(R"({"hex":"a1b2c3","flight":"ASA512  "})") << u"ASA512"_qs;
    QTest::newRow("no-break space and tab trimmed")
        << QByteArray(R"({"hex":"a1b2c3","flight":"\u00A0ASA512\t"})") << u"ASA512"_qs;
    QTest::newRow("ideographic and em spaces trimmed")
        << QByteArray(R"({"hex":"a1b2c3","flight":"\u3000ASA512\u2003\u202F"})") << u"ASA512"_qs;
    QTest::newRow("trailing line feed kept")
        << QByteArray(R"({"hex":"a1b2c3","flight":"ASA512\n"})") << u"ASA512\n"_qs;
    QTest::newRow("leading carriage return kept")
        << QByteArray(R"({"hex":"a1b2c3","flight":"\rASA512 "})") << u"\rASA512"_qs;
    QTest::newRow("line separator kept")
        << QByteArray(R"({"hex":"a1b2c3","flight":"ASA512\u2028"})") << u"ASA512\u2028"_qs;
    QTest::newRow("zero width space is not a blank")
        << QByteArray(R"({"hex":"a1b2c3","flight":"\u200BASA512"})") << u"\u200BASA512"_qs;
    QTest::newRow("inner blanks kept")
        << QByteArray(R"({"hex":"a1b2c3","flight":" ASA 512 "})") << u"ASA 512"_qs;
    QTest::newRow("callsign not upper-cased")
        << QByteArray(R"({"hex":"a1b2c3","flight":"asa512"})") << u"asa512"_qs;
    QTest::newRow("blank callsign falls to registration")
        << QByteArray(R"({"hex":"a1b2c3","flight":"      ","r":"N512AS"})") << u"N512AS"_qs;
    QTest::newRow("callsign of tabs and no-break spaces falls to registration")
        << QByteArray(R"({"hex":"a1b2c3","flight":"\t\u00A0\t","r":"N512AS"})") << u"N512AS"_qs;
    QTest::newRow("empty callsign falls to registration")
        << QByteArray(R"({"hex":"a1b2c3","flight":"","r":"N512AS"})") << u"N512AS"_qs;
    QTest::newRow("registration as it stands")
        << QByteArray(R"({"hex":"a1b2c3","r":" n512as "})") << u" n512as "_qs;
    QTest::newRow("empty registration falls to hex")
        << QByteArray(R"({"hex":"a1b2c3","r":""})") << u"A1B2C3"_qs;
    QTest::newRow("hex upper-cased") << QByteArray(R"({"hex":"a1b2c3"})") << u"A1B2C3"_qs;
    QTest::newRow("hex with tilde") << QByteArray(R"({"hex":"~a1b2c3"})") << u"~A1B2C3"_qs;
    QTest::newRow("hex upper-cased by Unicode rules")
        << QByteArray(R"({"hex":"stra\u00DFe"})") << u"STRASSE"_qs;
    QTest::newRow("null callsign and registration")
        << QByteArray(R"({"hex":"abc","flight":null,"r":null})") << u"ABC"_qs;
}

void AircraftPresentationTest::displayName()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, expected);
    DECODE_OR_FAIL(aircraft, json);
    QCOMPARE(aircraft.displayName(), expected);
}

void AircraftPresentationTest::coordinate_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<bool>("present");
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");

    QTest::newRow("both") << QByteArray(R"({"hex":"a","lat":45.6,"lon":-122.7})") << true << 45.6 << -122.7;
    QTest::newRow("zero is a place") << QByteArray(R"({"hex":"a","lat":0,"lon":0})") << true << 0.0 << 0.0;
    QTest::newRow("latitude only") << QByteArray(R"({"hex":"a","lat":45.6})") << false << 0.0 << 0.0;
    QTest::newRow("longitude only") << QByteArray(R"({"hex":"a","lon":-122.7})") << false << 0.0 << 0.0;
    QTest::newRow("neither") << QByteArray(R"({"hex":"a"})") << false << 0.0 << 0.0;
}

void AircraftPresentationTest::coordinate()
{
    QFETCH(QByteArray, json);
    QFETCH(bool, present);
    QFETCH(double, latitude);
    QFETCH(double, longitude);
    DECODE_OR_FAIL(aircraft, json);
    const auto point = aircraft.coordinate();
    QCOMPARE(point.has_value(), present);
    if (present) {
        QCOMPARE(point->latitude, latitude);
        QCOMPARE(point->longitude, longitude);
    }
}

void AircraftPresentationTest::altitude_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("onGround");
    QTest::addColumn<OptionalInt>("feet");

    const OptionalInt none;
    QTest::newRow("en_US grouping") << QByteArray(R"({"hex":"a","alt_baro":12500})") << u"en_US"_qs
                                    << u"12,500 ft"_qs << false << OptionalInt(12500);
    QTest::newRow("de_DE grouping") << QByteArray(R"({"hex":"a","alt_baro":12500})") << u"de_DE"_qs
                                    << u"12.500 ft"_qs << false << OptionalInt(12500);
    QTest::newRow("fr_FR grouping") << QByteArray(R"({"hex":"a","alt_baro":12500})") << u"fr_FR"_qs
                                    << u"12\u202F500 ft"_qs << false << OptionalInt(12500);
    QTest::newRow("fr_FR millions") << QByteArray(R"({"hex":"a","alt_baro":1234567})") << u"fr_FR"_qs
                                    << u"1\u202F234\u202F567 ft"_qs << false << OptionalInt(1234567);
    QTest::newRow("below a thousand") << QByteArray(R"({"hex":"a","alt_baro":950})") << u"de_DE"_qs
                                      << u"950 ft"_qs << false << OptionalInt(950);
    QTest::newRow("zero feet is flying")
        << QByteArray(R"({"hex":"a","alt_baro":0})") << u"en_US"_qs << u"0 ft"_qs << false << OptionalInt(0);
    QTest::newRow("negative feet") << QByteArray(R"({"hex":"a","alt_baro":-25})") << u"en_US"_qs
                                   << u"-25 ft"_qs << false << OptionalInt(-25);
    QTest::newRow("negative grouped de_DE") << QByteArray(R"({"hex":"a","alt_baro":-1500})") << u"de_DE"_qs
                                            << u"-1.500 ft"_qs << false << OptionalInt(-1500);
    QTest::newRow("ground") << QByteArray(R"({"hex":"a","alt_baro":"ground"})") << u"en_US"_qs
                            << u"On ground"_qs << true << none;
    QTest::newRow("ground in German")
        << QByteArray(R"({"hex":"a","alt_baro":"ground"})") << u"de_DE"_qs << u"On ground"_qs << true << none;
    QTest::newRow("ground with alt_geom") << QByteArray(R"({"hex":"a","alt_baro":"ground","alt_geom":25})")
                                          << u"en_US"_qs << u"On ground"_qs << true << OptionalInt(25);
    QTest::newRow("fractional alt_baro is ground")
        << QByteArray(R"({"hex":"a","alt_baro":1200.5,"alt_geom":1300})") << u"en_US"_qs << u"On ground"_qs
        << true << OptionalInt(1300);
    QTest::newRow("nothing known") << QByteArray(R"({"hex":"a"})") << u"en_US"_qs << u"\u2014"_qs << false
                                   << none;
    QTest::newRow("null alt_baro, nothing known")
        << QByteArray(R"({"hex":"a","alt_baro":null})") << u"de_DE"_qs << u"\u2014"_qs << false << none;
    QTest::newRow("alt_geom alone") << QByteArray(R"({"hex":"a","alt_geom":1200})") << u"en_US"_qs
                                    << u"1,200 ft"_qs << false << OptionalInt(1200);
    QTest::newRow("alt_geom alone fr_FR") << QByteArray(R"({"hex":"a","alt_geom":35000})") << u"fr_FR"_qs
                                          << u"35\u202F000 ft"_qs << false << OptionalInt(35000);
    QTest::newRow("alt_baro wins over alt_geom")
        << QByteArray(R"({"hex":"a","alt_baro":35000,"alt_geom":35500})") << u"en_US"_qs << u"35,000 ft"_qs
        << false << OptionalInt(35000);
}

void AircraftPresentationTest::altitude()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, locale);
    QFETCH(QString, text);
    QFETCH(bool, onGround);
    QFETCH(OptionalInt, feet);
    DECODE_OR_FAIL(aircraft, json);
    QCOMPARE(aircraft.altitudeText(QLocale(locale)), text);
    QCOMPARE(aircraft.isOnGround(), onGround);
    QCOMPARE(aircraft.altitudeFeet(), feet);
}

void AircraftPresentationTest::altitudeTextFollowsDefaultLocale()
{
    DECODE_OR_FAIL(aircraft, QByteArray(R"({"hex":"a","alt_baro":12500,"baro_rate":-1024})"));
    const DefaultLocaleGuard german(QLocale(u"de_DE"_qs));
    QCOMPARE(aircraft.altitudeText(), u"12.500 ft"_qs);
    QCOMPARE(aircraft.verticalText(), OptionalText(u"↓ 1.024 ft/min"_qs));
}

void AircraftPresentationTest::speedText_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("expected");

    QTest::newRow("absent") << QByteArray(R"({"hex":"a"})") << u"\u2014"_qs;
    QTest::newRow("null") << QByteArray(R"({"hex":"a","gs":null})") << u"\u2014"_qs;
    QTest::newRow("whole") << QByteArray(R"({"hex":"a","gs":320})") << u"320 kt"_qs;
    QTest::newRow("half up") << QByteArray(R"({"hex":"a","gs":320.5})") << u"321 kt"_qs;
    QTest::newRow("half of an even number still up") << QByteArray(R"({"hex":"a","gs":2.5})") << u"3 kt"_qs;
    QTest::newRow("below half") << QByteArray(R"({"hex":"a","gs":320.49})") << u"320 kt"_qs;
    QTest::newRow("largest double below half")
        << QByteArray(R"({"hex":"a","gs":0.49999999999999994})") << u"0 kt"_qs;
    QTest::newRow("odd integer beyond fractions")
        << QByteArray(R"({"hex":"a","gs":4503599627370497})") << u"4503599627370497 kt"_qs;
    QTest::newRow("small") << QByteArray(R"({"hex":"a","gs":0.4})") << u"0 kt"_qs;
    QTest::newRow("zero") << QByteArray(R"({"hex":"a","gs":0})") << u"0 kt"_qs;
    QTest::newRow("negative zero") << QByteArray(R"({"hex":"a","gs":-0.0})") << u"0 kt"_qs;
    QTest::newRow("small negative gives no minus") << QByteArray(R"({"hex":"a","gs":-0.4})") << u"0 kt"_qs;
    QTest::newRow("negative half away from zero") << QByteArray(R"({"hex":"a","gs":-0.5})") << u"-1 kt"_qs;
    QTest::newRow("negative") << QByteArray(R"({"hex":"a","gs":-12.6})") << u"-13 kt"_qs;
    QTest::newRow("no grouping") << QByteArray(R"({"hex":"a","gs":12345.4})") << u"12345 kt"_qs;
    QTest::newRow("beyond 64-bit integers")
        << QByteArray(R"({"hex":"a","gs":1e19})") << u"10000000000000000000 kt"_qs;
}

void AircraftPresentationTest::speedText()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, expected);
    DECODE_OR_FAIL(aircraft, json);
    QCOMPARE(aircraft.speedText(), expected);
    // No locale is involved, so a German default changes nothing.
    const DefaultLocaleGuard german(QLocale(u"de_DE"_qs));
    QCOMPARE(aircraft.speedText(), expected);
}

void AircraftPresentationTest::speedTextOfHugeSpeeds_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<bool>("negative");

    QTest::newRow("1e300") << QByteArray(R"({"hex":"a","gs":1e300})") << false;
    QTest::newRow("largest double") << QByteArray(R"({"hex":"a","gs":1.7976931348623157e308})") << false;
    QTest::newRow("-1e300") << QByteArray(R"({"hex":"a","gs":-1e300})") << true;
}

void AircraftPresentationTest::speedTextOfHugeSpeeds()
{
    QFETCH(QByteArray, json);
    QFETCH(bool, negative);
    DECODE_OR_FAIL(aircraft, json);
    const QString text = aircraft.speedText();
    QVERIFY2(text.endsWith(u" kt"), qPrintable(text));
    QString digits = text.chopped(3);
    if (negative) {
        QVERIFY(digits.startsWith(u'-'));
        digits.remove(0, 1);
    }
    // A plain decimal number: no exponent, no grouping, hundreds of digits.
    QVERIFY2(digits.size() > 300, qPrintable(text));
    for (const QChar c : std::as_const(digits))
        QVERIFY2(c.isDigit(), qPrintable(text));
    QVERIFY(digits.front() != u'0');
}

void AircraftPresentationTest::verticalText_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<OptionalInt>("rate");
    QTest::addColumn<OptionalText>("expected");

    QTest::newRow("absent") << QByteArray(R"({"hex":"a"})") << u"en_US"_qs << OptionalInt() << absentText;
    QTest::newRow("zero") << QByteArray(R"({"hex":"a","baro_rate":0})") << u"en_US"_qs << OptionalInt(0)
                          << absentText;
    QTest::newRow("63 is level") << QByteArray(R"({"hex":"a","baro_rate":63})") << u"en_US"_qs
                                 << OptionalInt(63) << absentText;
    QTest::newRow("-63 is level") << QByteArray(R"({"hex":"a","baro_rate":-63})") << u"en_US"_qs
                                  << OptionalInt(-63) << absentText;
    QTest::newRow("64 climbs") << QByteArray(R"({"hex":"a","baro_rate":64})") << u"en_US"_qs
                               << OptionalInt(64) << OptionalText(u"↑ 64 ft/min"_qs);
    QTest::newRow("-64 descends") << QByteArray(R"({"hex":"a","baro_rate":-64})") << u"en_US"_qs
                                  << OptionalInt(-64) << OptionalText(u"↓ 64 ft/min"_qs);
    QTest::newRow("descent grouped en_US") << QByteArray(R"({"hex":"a","baro_rate":-1024})") << u"en_US"_qs
                                           << OptionalInt(-1024) << OptionalText(u"↓ 1,024 ft/min"_qs);
    QTest::newRow("climb grouped de_DE") << QByteArray(R"({"hex":"a","baro_rate":1234567})") << u"de_DE"_qs
                                         << OptionalInt(1234567) << OptionalText(u"↑ 1.234.567 ft/min"_qs);
    QTest::newRow("descent grouped fr_FR") << QByteArray(R"({"hex":"a","baro_rate":-2048})") << u"fr_FR"_qs
                                           << OptionalInt(-2048) << OptionalText(u"↓ 2\u202F048 ft/min"_qs);
    QTest::newRow("baro_rate 0 hides geom_rate") << QByteArray(R"({"hex":"a","baro_rate":0,"geom_rate":500})")
                                                 << u"en_US"_qs << OptionalInt(0) << absentText;
    QTest::newRow("baro_rate wins") << QByteArray(R"({"hex":"a","baro_rate":-640,"geom_rate":1500})")
                                    << u"en_US"_qs << OptionalInt(-640) << OptionalText(u"↓ 640 ft/min"_qs);
    QTest::newRow("geom_rate when baro_rate absent")
        << QByteArray(R"({"hex":"a","geom_rate":1500})") << u"de_DE"_qs << OptionalInt(1500)
        << OptionalText(u"↑ 1.500 ft/min"_qs);
    QTest::newRow("geom_rate when baro_rate null")
        << QByteArray(R"({"hex":"a","baro_rate":null,"geom_rate":-64})") << u"en_US"_qs << OptionalInt(-64)
        << OptionalText(u"↓ 64 ft/min"_qs);
    QTest::newRow("geom_rate level") << QByteArray(R"({"hex":"a","geom_rate":-63})") << u"en_US"_qs
                                     << OptionalInt(-63) << absentText;
    QTest::newRow("smallest 64-bit rate") << QByteArray(R"({"hex":"a","baro_rate":-9223372036854775808})")
                                          << u"en_US"_qs << OptionalInt(std::numeric_limits<qint64>::min())
                                          << OptionalText(u"↓ 9,223,372,036,854,775,808 ft/min"_qs);
    QTest::newRow("largest 64-bit rate") << QByteArray(R"({"hex":"a","baro_rate":9223372036854775807})")
                                         << u"de_DE"_qs << OptionalInt(std::numeric_limits<qint64>::max())
                                         << OptionalText(u"↑ 9.223.372.036.854.775.807 ft/min"_qs);
}

void AircraftPresentationTest::verticalText()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, locale);
    QFETCH(OptionalInt, rate);
    QFETCH(OptionalText, expected);
    DECODE_OR_FAIL(aircraft, json);
    QCOMPARE(aircraft.verticalRate(), rate);
    QCOMPARE(aircraft.verticalText(QLocale(locale)), expected);
}

void AircraftPresentationTest::isEmergency_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<bool>("expected");

    QTest::newRow("nothing") << QByteArray(R"({"hex":"a"})") << false;
    QTest::newRow("7500") << QByteArray(R"({"hex":"a","squawk":"7500"})") << true;
    QTest::newRow("7600") << QByteArray(R"({"hex":"a","squawk":"7600"})") << true;
    QTest::newRow("7700") << QByteArray(R"({"hex":"a","squawk":"7700"})") << true;
    QTest::newRow("7700 with none") << QByteArray(R"({"hex":"a","squawk":"7700","emergency":"none"})")
                                    << true;
    QTest::newRow("1200") << QByteArray(R"({"hex":"a","squawk":"1200"})") << false;
    QTest::newRow("1200 with none") << QByteArray(R"({"hex":"a","squawk":"1200","emergency":"none"})")
                                    << false;
    QTest::newRow("1200 with general")
        << QByteArray(R"({"hex":"a","squawk":"1200","emergency":"general"})") << true;
    QTest::newRow("code with blank") << QByteArray(R"({"hex":"a","squawk":"7700 "})") << false;
    QTest::newRow("code with leading zero") << QByteArray(R"({"hex":"a","squawk":"07700"})") << false;
    QTest::newRow("full-width code") << QByteArray(R"({"hex":"a","squawk":"\uFF17\uFF17\uFF10\uFF10"})")
                                     << false;
    QTest::newRow("other 7 code") << QByteArray(R"({"hex":"a","squawk":"7777"})") << false;
    QTest::newRow("emergency word alone") << QByteArray(R"({"hex":"a","emergency":"lifeguard"})") << true;
    QTest::newRow("NONE counts") << QByteArray(R"({"hex":"a","emergency":"NONE"})") << true;
    QTest::newRow("None counts") << QByteArray(R"({"hex":"a","emergency":"None"})") << true;
    QTest::newRow("none with blank counts") << QByteArray(R"({"hex":"a","emergency":"none "})") << true;
    QTest::newRow("empty word counts") << QByteArray(R"({"hex":"a","emergency":""})") << true;
    QTest::newRow("none alone") << QByteArray(R"({"hex":"a","emergency":"none"})") << false;
    QTest::newRow("null emergency") << QByteArray(R"({"hex":"a","emergency":null,"squawk":null})") << false;
}

void AircraftPresentationTest::isEmergency()
{
    QFETCH(QByteArray, json);
    QFETCH(bool, expected);
    DECODE_OR_FAIL(aircraft, json);
    QCOMPARE(aircraft.isEmergency(), expected);
}

void AircraftPresentationTest::isMilitary_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<bool>("expected");

    QTest::newRow("absent") << QByteArray(R"({"hex":"a"})") << false;
    QTest::newRow("0") << QByteArray(R"({"hex":"a","dbFlags":0})") << false;
    QTest::newRow("1") << QByteArray(R"({"hex":"a","dbFlags":1})") << true;
    QTest::newRow("2") << QByteArray(R"({"hex":"a","dbFlags":2})") << false;
    QTest::newRow("3") << QByteArray(R"({"hex":"a","dbFlags":3})") << true;
    QTest::newRow("8") << QByteArray(R"({"hex":"a","dbFlags":8})") << false;
    QTest::newRow("9") << QByteArray(R"({"hex":"a","dbFlags":9})") << true;
    QTest::newRow("-1") << QByteArray(R"({"hex":"a","dbFlags":-1})") << true;
    QTest::newRow("-2") << QByteArray(R"({"hex":"a","dbFlags":-2})") << false;
    QTest::newRow("smallest") << QByteArray(R"({"hex":"a","dbFlags":-9223372036854775808})") << false;
    QTest::newRow("largest") << QByteArray(R"({"hex":"a","dbFlags":9223372036854775807})") << true;
}

void AircraftPresentationTest::isMilitary()
{
    QFETCH(QByteArray, json);
    QFETCH(bool, expected);
    DECODE_OR_FAIL(aircraft, json);
    QCOMPARE(aircraft.isMilitary(), expected);
}

void AircraftPresentationTest::distanceMiles_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<OptionalDouble>("expected");

    QTest::newRow("absent") << QByteArray(R"({"hex":"a"})") << OptionalDouble();
    QTest::newRow("zero") << QByteArray(R"({"hex":"a","dst":0})") << OptionalDouble(0.0);
    QTest::newRow("one") << QByteArray(R"({"hex":"a","dst":1})") << OptionalDouble(1.15078);
    QTest::newRow("ten") << QByteArray(R"({"hex":"a","dst":10})") << OptionalDouble(11.5078);
    QTest::newRow("fraction") << QByteArray(R"({"hex":"a","dst":3.2})") << OptionalDouble(3.682496);
}

void AircraftPresentationTest::distanceMiles()
{
    QFETCH(QByteArray, json);
    QFETCH(OptionalDouble, expected);
    DECODE_OR_FAIL(aircraft, json);
    const auto miles = aircraft.distanceMiles();
    QCOMPARE(miles.has_value(), expected.has_value());
    if (expected)
        QVERIFY2(std::abs(*miles - *expected) < 1e-9, qPrintable(QString::number(*miles, 'g', 17)));
}

void AircraftPresentationTest::typeName_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<OptionalText>("expected");

    QTest::newRow("table wins over description")
        << QByteArray(R"({"hex":"a","t":"B739","desc":"BOEING 737-900ER"})")
        << OptionalText(u"Boeing 737-900"_qs);
    QTest::newRow("lower-case code") << QByteArray(R"({"hex":"a","t":"b739"})")
                                     << OptionalText(u"Boeing 737-900"_qs);
    QTest::newRow("mixed-case code") << QByteArray(R"({"hex":"a","t":"e75L"})")
                                     << OptionalText(u"Embraer E175"_qs);
    QTest::newRow("table name kept as written")
        << QByteArray(R"({"hex":"a","t":"as50","desc":"x"})") << OptionalText(u"Airbus H125 (AStar)"_qs);
    QTest::newRow("code upper-cased by Unicode rules")
        << QByteArray(R"({"hex":"a","t":"ep\u0131c"})") << OptionalText(u"Epic E1000"_qs);
    QTest::newRow("unknown code falls to description")
        << QByteArray(R"({"hex":"a","t":"ZZZZ","desc":"CESSNA 172"})") << OptionalText(u"Cessna 172"_qs);
    QTest::newRow("code with blank is unknown")
        << QByteArray(R"({"hex":"a","t":"B739 ","desc":"boeing 737-900er"})")
        << OptionalText(u"Boeing 737-900er"_qs);
    QTest::newRow("description without code")
        << QByteArray(R"({"hex":"a","desc":"DE HAVILLAND-CANADA dhc-6"})")
        << OptionalText(u"De Havilland-Canada Dhc-6"_qs);
    QTest::newRow("parentheses start words")
        << QByteArray(R"json({"hex":"a","desc":"AIRBUS HELICOPTERS as-350 b3 (astar)"})json")
        << OptionalText(u"Airbus Helicopters As-350 B3 (Astar)"_qs);
    QTest::newRow("slash starts a word")
        << QByteArray(R"({"hex":"a","desc":"A\u00C9ROSPATIALE/BAC CONCORDE"})")
        << OptionalText(u"A\u00E9rospatiale/Bac Concorde"_qs);
    QTest::newRow("tab starts a word") << QByteArray(R"({"hex":"a","desc":"PIPER PA-28-181\tarcher"})")
                                       << OptionalText(u"Piper Pa-28-181\tArcher"_qs);
    QTest::newRow("leading digits") << QByteArray(R"({"hex":"a","desc":"737 MAX"})")
                                    << OptionalText(u"737 Max"_qs);
    QTest::newRow("empty description") << QByteArray(R"({"hex":"a","t":"ZZZZ","desc":""})") << absentText;
    QTest::newRow("empty description, no code") << QByteArray(R"({"hex":"a","desc":""})") << absentText;
    QTest::newRow("nothing") << QByteArray(R"({"hex":"a"})") << absentText;
    QTest::newRow("unknown code alone") << QByteArray(R"({"hex":"a","t":"ZZZZ"})") << absentText;
}

void AircraftPresentationTest::typeName()
{
    QFETCH(QByteArray, json);
    QFETCH(OptionalText, expected);
    DECODE_OR_FAIL(aircraft, json);
    QCOMPARE(aircraft.typeName(), expected);
}

void AircraftPresentationTest::operatorDisplayName_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<OptionalText>("expected");

    QTest::newRow("owner capitalised") << QByteArray(R"({"hex":"a","ownOp":"SOUTHWEST AIRLINES CO"})")
                                       << OptionalText(u"Southwest Airlines Co"_qs);
    QTest::newRow("owner wins over callsign")
        << QByteArray(R"({"hex":"a","ownOp":"wells fargo trust co na trustee","flight":"UAL1"})")
        << OptionalText(u"Wells Fargo Trust Co Na Trustee"_qs);
    QTest::newRow("owner with punctuation") << QByteArray(R"({"hex":"a","ownOp":"FEDEX EXPRESS-CORP."})")
                                            << OptionalText(u"Fedex Express-Corp."_qs);
    QTest::newRow("empty owner falls to callsign")
        << QByteArray(R"({"hex":"a","ownOp":"","flight":"ASA512"})") << OptionalText(u"Alaska Airlines"_qs);
    QTest::newRow("padded lower-case callsign")
        << QByteArray(R"({"hex":"a","flight":"asa512  "})") << OptionalText(u"Alaska Airlines"_qs);
    QTest::newRow("callsign in no-break space and tab")
        << QByteArray(R"({"hex":"a","flight":"\u00A0dal12\t"})") << OptionalText(u"Delta Air Lines"_qs);
    QTest::newRow("military operator")
        << QByteArray(R"({"hex":"a","flight":"RCH440"})") << OptionalText(u"US Air Mobility Command"_qs);
    QTest::newRow("shared name") << QByteArray(R"({"hex":"a","flight":"jia5123"})")
                                 << OptionalText(u"PSA Airlines"_qs);
    QTest::newRow("accented name") << QByteArray(R"({"hex":"a","flight":"AMX412"})")
                                   << OptionalText(u"Aerom\u00E9xico"_qs);
    QTest::newRow("private callsign") << QByteArray(R"({"hex":"a","flight":"N512AS"})") << absentText;
    QTest::newRow("unknown airline") << QByteArray(R"({"hex":"a","flight":"ZZZ999"})") << absentText;
    QTest::newRow("designator alone") << QByteArray(R"({"hex":"a","flight":"UAL"})") << absentText;
    QTest::newRow("line break before callsign")
        << QByteArray(R"({"hex":"a","flight":"\nASA512"})") << absentText;
    QTest::newRow("nothing") << QByteArray(R"({"hex":"a"})") << absentText;
    QTest::newRow("empty owner, no callsign") << QByteArray(R"({"hex":"a","ownOp":""})") << absentText;
}

void AircraftPresentationTest::operatorDisplayName()
{
    QFETCH(QByteArray, json);
    QFETCH(OptionalText, expected);
    DECODE_OR_FAIL(aircraft, json);
    QCOMPARE(aircraft.operatorDisplayName(), expected);
}

void AircraftPresentationTest::isHelicopter_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<bool>("expected");

    QTest::newRow("nothing") << QByteArray(R"({"hex":"a"})") << false;
    QTest::newRow("category A7") << QByteArray(R"({"hex":"a","category":"A7"})") << true;
    QTest::newRow("A7 with airliner type") << QByteArray(R"({"hex":"a","category":"A7","t":"B738"})") << true;
    QTest::newRow("category a7") << QByteArray(R"({"hex":"a","category":"a7"})") << false;
    QTest::newRow("category A7 with blank") << QByteArray(R"({"hex":"a","category":"A7 "})") << false;
    QTest::newRow("R44") << QByteArray(R"({"hex":"a","category":"A1","t":"R44"})") << true;
    QTest::newRow("r44 lower case") << QByteArray(R"({"hex":"a","t":"r44"})") << true;
    QTest::newRow("ec35 lower case") << QByteArray(R"({"hex":"a","t":"ec35"})") << true;
    QTest::newRow("B230 not in type table") << QByteArray(R"({"hex":"a","t":"B230"})") << true;
    QTest::newRow("R44 with blank") << QByteArray(R"({"hex":"a","t":"R44 "})") << false;
    QTest::newRow("airliner") << QByteArray(R"({"hex":"a","category":"A3","t":"B738"})") << false;
    QTest::newRow("V22 tilt-rotor is not listed") << QByteArray(R"({"hex":"a","t":"V22"})") << false;
}

void AircraftPresentationTest::isHelicopter()
{
    QFETCH(QByteArray, json);
    QFETCH(bool, expected);
    DECODE_OR_FAIL(aircraft, json);
    QCOMPARE(aircraft.isHelicopter(), expected);
}

void AircraftPresentationTest::helicopterTypesAreTheRotorcraftDesignators()
{
    const QSet<QString> expected{u"R22"_qs,  u"R44"_qs,  u"R66"_qs,  u"B06"_qs,  u"B407"_qs, u"B412"_qs,
                                 u"B429"_qs, u"B505"_qs, u"AS50"_qs, u"EC30"_qs, u"EC35"_qs, u"EC45"_qs,
                                 u"EC55"_qs, u"EC75"_qs, u"A109"_qs, u"A139"_qs, u"A169"_qs, u"S76"_qs,
                                 u"S92"_qs,  u"H60"_qs,  u"MD50"_qs, u"UH1"_qs,  u"H64"_qs,  u"H47"_qs,
                                 u"B212"_qs, u"B222"_qs, u"B230"_qs};
    QCOMPARE(expected.size(), 27);
    QCOMPARE(Aircraft::helicopterTypes(), expected);
}

void AircraftPresentationTest::compassPoint_data()
{
    QTest::addColumn<double>("bearing");
    QTest::addColumn<QString>("expected");

    QTest::newRow("0") << 0.0 << u"N"_qs;
    QTest::newRow("11.2499") << 11.2499 << u"N"_qs;
    QTest::newRow("11.25") << 11.25 << u"NNE"_qs;
    QTest::newRow("22.5") << 22.5 << u"NNE"_qs;
    QTest::newRow("33.75") << 33.75 << u"NE"_qs;
    QTest::newRow("45") << 45.0 << u"NE"_qs;
    QTest::newRow("67.5") << 67.5 << u"ENE"_qs;
    QTest::newRow("90") << 90.0 << u"E"_qs;
    QTest::newRow("112.5") << 112.5 << u"ESE"_qs;
    QTest::newRow("135") << 135.0 << u"SE"_qs;
    QTest::newRow("157.5") << 157.5 << u"SSE"_qs;
    QTest::newRow("180") << 180.0 << u"S"_qs;
    QTest::newRow("202.5") << 202.5 << u"SSW"_qs;
    QTest::newRow("225") << 225.0 << u"SW"_qs;
    QTest::newRow("236.2499") << 236.2499 << u"SW"_qs;
    QTest::newRow("236.25") << 236.25 << u"WSW"_qs;
    QTest::newRow("247.5") << 247.5 << u"WSW"_qs;
    QTest::newRow("270") << 270.0 << u"W"_qs;
    QTest::newRow("292.5") << 292.5 << u"WNW"_qs;
    QTest::newRow("315") << 315.0 << u"NW"_qs;
    QTest::newRow("337.5") << 337.5 << u"NNW"_qs;
    QTest::newRow("348.7499") << 348.7499 << u"NNW"_qs;
    QTest::newRow("348.75") << 348.75 << u"N"_qs;
    QTest::newRow("359.9") << 359.9 << u"N"_qs;
    QTest::newRow("360") << 360.0 << u"N"_qs;
    QTest::newRow("371.25") << 371.25 << u"NNE"_qs;
    QTest::newRow("450") << 450.0 << u"E"_qs;
    QTest::newRow("720") << 720.0 << u"N"_qs;
    QTest::newRow("-0") << -0.0 << u"N"_qs;
    QTest::newRow("-5") << -5.0 << u"N"_qs;
    QTest::newRow("-11.25") << -11.25 << u"N"_qs;
    // Below -11.25 the remainder is negative and is clamped to N rather than wrapped round.
    QTest::newRow("-20") << -20.0 << u"N"_qs;
    QTest::newRow("-90") << -90.0 << u"N"_qs;
    QTest::newRow("-359") << -359.0 << u"N"_qs;
    QTest::newRow("-400") << -400.0 << u"N"_qs;
}

void AircraftPresentationTest::compassPoint()
{
    QFETCH(double, bearing);
    QFETCH(QString, expected);
    QCOMPARE(Aircraft::compassPoint(bearing), expected);
}

void AircraftPresentationTest::compassPointOfNonFiniteBearings_data()
{
    QTest::addColumn<double>("bearing");

    QTest::newRow("NaN") << std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("+inf") << std::numeric_limits<double>::infinity();
    QTest::newRow("-inf") << -std::numeric_limits<double>::infinity();
    QTest::newRow("largest") << std::numeric_limits<double>::max();
    QTest::newRow("lowest") << std::numeric_limits<double>::lowest();
}

void AircraftPresentationTest::compassPointOfNonFiniteBearings()
{
    QFETCH(double, bearing);
    static const QStringList points{u"N"_qs,  u"NNE"_qs, u"NE"_qs, u"ENE"_qs, u"E"_qs,  u"ESE"_qs,
                                    u"SE"_qs, u"SSE"_qs, u"S"_qs,  u"SSW"_qs, u"SW"_qs, u"WSW"_qs,
                                    u"W"_qs,  u"WNW"_qs, u"NW"_qs, u"NNW"_qs};
    const QString point = Aircraft::compassPoint(bearing);
    QVERIFY2(points.contains(point), qPrintable(point));
}

void AircraftPresentationTest::lookDirection_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<OptionalText>("expected");

    // Elevations worked out by hand: atan(altitude * 0.3048 / (distance * 1852)) in degrees.
    QTest::newRow("WSW 37.9 degrees") << QByteArray(R"({"hex":"a","dir":247.5,"dst":7.4,"alt_baro":35000})")
                                      << OptionalText(u"Look WSW, 38° up"_qs);
    QTest::newRow("E 39.45 degrees") << QByteArray(R"({"hex":"a","dir":90,"dst":1,"alt_baro":5000})")
                                     << OptionalText(u"Look E, 39° up"_qs);
    QTest::newRow("N 0.94 degrees") << QByteArray(R"({"hex":"a","dir":0,"dst":10,"alt_baro":1000})")
                                    << OptionalText(u"Look N, 1° up"_qs);
    QTest::newRow("S 89.1 degrees") << QByteArray(R"({"hex":"a","dir":180,"dst":0.1,"alt_baro":40000})")
                                    << OptionalText(u"Look S, 89° up"_qs);
    QTest::newRow("zero feet") << QByteArray(R"({"hex":"a","dir":300,"dst":5,"alt_baro":0})")
                               << OptionalText(u"Look WNW, 0° up"_qs);
    QTest::newRow("below sea level, as printf rounds")
        << QByteArray(R"({"hex":"a","dir":350,"dst":10,"alt_baro":-25})")
        << OptionalText(u"Look N, -0° up"_qs);
    QTest::newRow("alt_geom when alt_baro absent")
        << QByteArray(R"({"hex":"a","dir":45,"dst":3.0,"alt_geom":10000})")
        << OptionalText(u"Look NE, 29° up"_qs);
    QTest::newRow("alt_baro wins over alt_geom")
        << QByteArray(R"({"hex":"a","dir":45,"dst":2.0,"alt_baro":2500,"alt_geom":10000})")
        << OptionalText(u"Look NE, 12° up"_qs);
    QTest::newRow("negative direction clamps to N")
        << QByteArray(R"({"hex":"a","dir":-30,"dst":2.0,"alt_baro":2500})")
        << OptionalText(u"Look N, 12° up"_qs);
    QTest::newRow("distance 0, no elevation")
        << QByteArray(R"({"hex":"a","dir":45,"dst":0,"alt_baro":5000})") << OptionalText(u"Look NE"_qs);
    QTest::newRow("negative distance, no elevation")
        << QByteArray(R"({"hex":"a","dir":45,"dst":-1,"alt_baro":5000})") << OptionalText(u"Look NE"_qs);
    QTest::newRow("ground, no elevation")
        << QByteArray(R"({"hex":"a","dir":45,"dst":5,"alt_baro":"ground"})") << OptionalText(u"Look NE"_qs);
    QTest::newRow("ground ignores alt_geom")
        << QByteArray(R"({"hex":"a","dir":45,"dst":5,"alt_baro":"ground","alt_geom":3000})")
        << OptionalText(u"Look NE"_qs);
    QTest::newRow("no altitude") << QByteArray(R"({"hex":"a","dir":202.5,"dst":5})")
                                 << OptionalText(u"Look SSW"_qs);
    QTest::newRow("no direction") << QByteArray(R"({"hex":"a","dst":5,"alt_baro":5000})") << absentText;
    QTest::newRow("no distance") << QByteArray(R"({"hex":"a","dir":45,"alt_baro":5000})") << absentText;
    QTest::newRow("nothing") << QByteArray(R"({"hex":"a"})") << absentText;
}

void AircraftPresentationTest::lookDirection()
{
    QFETCH(QByteArray, json);
    QFETCH(OptionalText, expected);
    DECODE_OR_FAIL(aircraft, json);
    QCOMPARE(aircraft.lookDirection(), expected);
}

void AircraftPresentationTest::lookDirectionElevationFollowsGeometry()
{
    const qint64 altitudes[] = {-1000, -25, 0, 300, 1500, 3000, 12000, 35000, 45000};
    const double distances[] = {0.05, 0.3, 1.0, 2.5, 7.4, 12.0, 80.0, 250.0};
    for (const qint64 altitude : altitudes) {
        for (const double distance : distances) {
            const QByteArray json = R"({"hex":"a","dir":90,"alt_baro":)" + QByteArray::number(altitude) +
                                    R"(,"dst":)" + QByteArray::number(distance, 'g', 17) + '}';
            DECODE_OR_FAIL(aircraft, json);
            const QString expected = u"Look E, "_qs + expectedElevation(altitude, distance) + u"° up"_qs;
            QCOMPARE(aircraft.lookDirection(), OptionalText(expected));
        }
    }
}

void AircraftPresentationTest::distanceText_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("unit");
    QTest::addColumn<bool>("compact");
    QTest::addColumn<OptionalText>("expected");

    const QByteArray d32 = R"({"hex":"a","dst":3.2})";
    QTest::newRow("nm") << d32 << u"nm"_qs << false << OptionalText(u"3.2 nm"_qs);
    QTest::newRow("nm compact") << d32 << u"nm"_qs << true << OptionalText(u"3.2nm"_qs);
    QTest::newRow("mi") << d32 << u"mi"_qs << false << OptionalText(u"3.7 mi"_qs);
    QTest::newRow("mi compact") << d32 << u"mi"_qs << true << OptionalText(u"3.7mi"_qs);
    QTest::newRow("unknown unit is miles") << d32 << u"furlongs"_qs << false << OptionalText(u"3.7 mi"_qs);
    QTest::newRow("empty unit is miles") << d32 << QString() << false << OptionalText(u"3.7 mi"_qs);
    QTest::newRow("NM upper case is miles") << d32 << u"NM"_qs << false << OptionalText(u"3.7 mi"_qs);
    QTest::newRow("km") << d32 << u"km"_qs << false << OptionalText(u"5.9 km"_qs);
    QTest::newRow("km compact") << d32 << u"km"_qs << true << OptionalText(u"5.9km"_qs);
    QTest::newRow("zero") << QByteArray(R"({"hex":"a","dst":0})") << u"mi"_qs << false
                          << OptionalText(u"0.0 mi"_qs);
    QTest::newRow("no grouping") << QByteArray(R"({"hex":"a","dst":12345.67})") << u"nm"_qs << false
                                 << OptionalText(u"12345.7 nm"_qs);
    // printf rounds the exact binary value: a true tie goes to even, 0.35 lies just below its tie.
    QTest::newRow("tie 0.25 to even")
        << QByteArray(R"({"hex":"a","dst":0.25})") << u"nm"_qs << false << OptionalText(u"0.2 nm"_qs);
    QTest::newRow("tie 0.75 to even")
        << QByteArray(R"({"hex":"a","dst":0.75})") << u"nm"_qs << false << OptionalText(u"0.8 nm"_qs);
    QTest::newRow("0.35 below tie") << QByteArray(R"({"hex":"a","dst":0.35})") << u"nm"_qs << false
                                    << OptionalText(u"0.3 nm"_qs);
    QTest::newRow("12.35 below tie") << QByteArray(R"({"hex":"a","dst":12.35})") << u"nm"_qs << false
                                     << OptionalText(u"12.3 nm"_qs);
    QTest::newRow("0.45 above tie") << QByteArray(R"({"hex":"a","dst":0.45})") << u"nm"_qs << false
                                    << OptionalText(u"0.5 nm"_qs);
    QTest::newRow("0.25 nm in miles")
        << QByteArray(R"({"hex":"a","dst":0.25})") << u"mi"_qs << false << OptionalText(u"0.3 mi"_qs);
    QTest::newRow("absent") << QByteArray(R"({"hex":"a"})") << u"nm"_qs << false << absentText;
    QTest::newRow("absent compact") << QByteArray(R"({"hex":"a"})") << u"km"_qs << true << absentText;
}

void AircraftPresentationTest::distanceText()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, unit);
    QFETCH(bool, compact);
    QFETCH(OptionalText, expected);
    DECODE_OR_FAIL(aircraft, json);
    QCOMPARE(aircraft.distanceText(unit, compact), expected);
}

void AircraftPresentationTest::distanceTextUsesPointWhateverTheDefaultLocale_data()
{
    QTest::addColumn<QString>("locale");

    QTest::newRow("de_DE") << u"de_DE"_qs;
    QTest::newRow("fr_FR") << u"fr_FR"_qs;
}

void AircraftPresentationTest::distanceTextUsesPointWhateverTheDefaultLocale()
{
    QFETCH(QString, locale);
    DECODE_OR_FAIL(aircraft, QByteArray(R"({"hex":"a","dst":12345.67,"dir":247.5,"alt_baro":35000})"));
    const DefaultLocaleGuard guard{QLocale(locale)};
    QCOMPARE(aircraft.distanceText(u"nm"_qs, false), OptionalText(u"12345.7 nm"_qs));
    QCOMPARE(aircraft.distanceText(u"km"_qs, true), OptionalText(u"22864.2km"_qs));
    QCOMPARE(aircraft.distanceText(u"mi"_qs, false), OptionalText(u"14207.2 mi"_qs));
}

void AircraftPresentationTest::distanceTextUsesPointWithGermanCLocale()
{
    DECODE_OR_FAIL(aircraft, QByteArray(R"({"hex":"a","dst":3.25,"dir":247.5,"alt_baro":35000})"));
    const QByteArray previous = std::setlocale(LC_ALL, nullptr);
    QTemporaryDir localeDir;
    if (!selectGermanCLocale(localeDir))
        QSKIP("No German C locale is installed, and none could be compiled with localedef");
    struct Restore
    {
        QByteArray name;
        ~Restore()
        {
            qunsetenv("LOCPATH");
            std::setlocale(LC_ALL, name.constData());
        }
    } restore{previous};

    // The C library now writes a decimal comma; the texts must not follow it.
    char probe[16];
    std::snprintf(probe, sizeof probe, "%.1f", 3.5);
    QCOMPARE(QByteArray(probe), QByteArray("3,5"));

    QCOMPARE(aircraft.distanceText(u"nm"_qs, false), OptionalText(u"3.2 nm"_qs));
    QCOMPARE(aircraft.distanceText(u"km"_qs, true), OptionalText(u"6.0km"_qs));
    QCOMPARE(aircraft.distanceText(u"mi"_qs, false), OptionalText(u"3.7 mi"_qs));
    DECODE_OR_FAIL(fast, QByteArray(R"({"hex":"a","gs":12345.5})"));
    QCOMPARE(fast.speedText(), u"12346 kt"_qs);
}

QTEST_GUILESS_MAIN(AircraftPresentationTest)
#include "AircraftPresentationTest.moc"
