#include "AltitudeColors.h"
#include "CameraOperations.h"
#include "ColorHex.h"
#include "MarkerColors.h"
#include "RadarSupport.h"
#include "RadarTexts.h"
#include "SystemColors.h"
#include "TileSources.h"
#include "TrailSegment.h"

#include <QLocale>
#include <QTest>

namespace {

Aircraft decoded(const QByteArray &json)
{
    const Decoded<Aircraft> result = Aircraft::decode(json);
    if (!result.ok())
        qFatal("test record doesn't decode: %s", qPrintable(result.error()));
    return result.value();
}

QString hexOf(const QColor &color)
{
    return ColorHex::hexString(color).value_or(u"none"_qs);
}

} // namespace

Q_DECLARE_METATYPE(std::optional<qint64>)

class RadarRulesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void altitudeBandEdges_data();
    void altitudeBandEdges();
    void markerFillAndContrast_data();
    void markerFillAndContrast();
    void ringGetsStrongerWhenSelectedOrContrasted();
    void trailSegments_data();
    void trailSegments();
    void cameraOperations_data();
    void cameraOperations();
    void accessibilityText_data();
    void accessibilityText();
    void detailRows_data();
    void detailRows();
    void trackLinkFollowsTheViewerAddress_data();
    void trackLinkFollowsTheViewerAddress();
    void glyphTurnsWithTrack_data();
    void glyphTurnsWithTrack();
    void stylesAndTheirSources_data();
    void stylesAndTheirSources();
};

void RadarRulesTest::initTestCase()
{
    // Thousands separators in the texts below are German: the card shows what the locale says.
    QLocale::setDefault(QLocale(u"de_DE"_qs));
}

void RadarRulesTest::altitudeBandEdges_data()
{
    QTest::addColumn<std::optional<qint64>>("feet");
    QTest::addColumn<int>("band"); // -1: none, gray

    QTest::newRow("no altitude") << std::optional<qint64>() << -1;
    QTest::newRow("below sea level") << std::optional<qint64>(-50) << 0;
    QTest::newRow("1,999") << std::optional<qint64>(1999) << 0;
    QTest::newRow("2,000") << std::optional<qint64>(2000) << 1;
    QTest::newRow("9,999") << std::optional<qint64>(9999) << 1;
    QTest::newRow("10,000") << std::optional<qint64>(10000) << 2;
    QTest::newRow("19,999") << std::optional<qint64>(19999) << 2;
    QTest::newRow("20,000") << std::optional<qint64>(20000) << 3;
    QTest::newRow("29,999") << std::optional<qint64>(29999) << 3;
    QTest::newRow("30,000") << std::optional<qint64>(30000) << 4;
    QTest::newRow("cruise") << std::optional<qint64>(41000) << 4;
}

void RadarRulesTest::altitudeBandEdges()
{
    QFETCH(std::optional<qint64>, feet);
    QFETCH(int, band);

    const QStringList labels{u"<2"_qs, u"2–10"_qs, u"10–20"_qs, u"20–30"_qs, u"30+"_qs};
    const QStringList colours{u"#FF7333"_qs, u"#FFC700"_qs, u"#4DC74D"_qs, u"#33B8E6"_qs, u"#8080FF"_qs};
    QCOMPARE(AltitudeColors::bands().size(), 5);
    for (int i = 0; i < 5; ++i) {
        QCOMPARE(AltitudeColors::bands()[i].label, labels[i]);
        QCOMPARE(hexOf(AltitudeColors::bands()[i].color), colours[i]);
    }
    const QColor colour = AltitudeColors::color(feet, SystemColors::gray());
    QCOMPARE(hexOf(colour), band < 0 ? hexOf(SystemColors::gray()) : colours[band]);
}

void RadarRulesTest::markerFillAndContrast_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<bool>("colorByAltitude");
    QTest::addColumn<QString>("planeColorHex");
    QTest::addColumn<QString>("fill");
    QTest::addColumn<bool>("darkGlyph");

    // #FF8A00 has luminance 0.6167, just under 0.62: white glyph.
    QTest::newRow("default colour") << QByteArray(R"({"hex":"a1"})") << false << u"#FF8A00"_qs
                                    << u"#FF8A00"_qs << false;
    QTest::newRow("yellow user colour")
        << QByteArray(R"({"hex":"a1"})") << false << u"#FFD60A"_qs << u"#FFD60A"_qs << true;
    QTest::newRow("lower case with blanks")
        << QByteArray(R"({"hex":"a1"})") << false << u" ffffff "_qs << u"#FFFFFF"_qs << true;
    QTest::newRow("unparsable colour is orange")
        << QByteArray(R"({"hex":"a1"})") << false << u"#FF8A0"_qs << hexOf(SystemColors::orange()) << true;
    QTest::newRow("military beats the user colour")
        << QByteArray(R"({"hex":"a1","dbFlags":1})") << false << u"#FFD60A"_qs << u"#299E52"_qs << false;
    QTest::newRow("emergency military is red")
        << QByteArray(R"({"hex":"a1","dbFlags":1,"squawk":"7700"})") << false << u"#FFD60A"_qs
        << hexOf(SystemColors::red()) << false;
    QTest::newRow("by altitude, yellow band")
        << QByteArray(R"({"hex":"a1","alt_baro":5000})") << true << u"#0A84FF"_qs << u"#FFC700"_qs << true;
    QTest::newRow("by altitude, on the ground without geometric altitude is gray")
        << QByteArray(R"({"hex":"a1","alt_baro":"ground"})") << true << u"#0A84FF"_qs
        << hexOf(SystemColors::gray()) << false;
    QTest::newRow("by altitude, violet")
        << QByteArray(R"({"hex":"a1","alt_baro":36000})") << true << u"#FFFFFF"_qs << u"#8080FF"_qs << false;
}

void RadarRulesTest::markerFillAndContrast()
{
    QFETCH(QByteArray, json);
    QFETCH(bool, colorByAltitude);
    QFETCH(QString, planeColorHex);
    QFETCH(QString, fill);
    QFETCH(bool, darkGlyph);

    const Aircraft aircraft = decoded(json);
    const QColor base = MarkerColors::baseColor(aircraft, colorByAltitude, planeColorHex);
    const QColor effective = MarkerColors::effectiveFill(aircraft, base);
    QCOMPARE(hexOf(effective), fill);
    QCOMPARE(hexOf(MarkerColors::trailColor(aircraft, colorByAltitude, planeColorHex)), fill);
    const QColor glyph = MarkerColors::glyphColor(effective);
    if (darkGlyph) {
        QCOMPARE(glyph.rgb(), QColor(Qt::black).rgb());
        QCOMPARE(glyph.alphaF(), 0.85f);
    } else {
        QCOMPARE(glyph, QColor(Qt::white));
    }
}

void RadarRulesTest::ringGetsStrongerWhenSelectedOrContrasted()
{
    const QColor light = *ColorHex::color(u"#FFD60A"_qs);
    const QColor dark = *ColorHex::color(u"#FF8A00"_qs);
    QCOMPARE(MarkerColors::ringColor(light, false), QColor::fromRgbF(0, 0, 0, 0.5f));
    QCOMPARE(MarkerColors::ringColor(light, true), QColor::fromRgbF(0, 0, 0, 0.8f));
    QCOMPARE(MarkerColors::ringColor(dark, false), QColor::fromRgbF(1, 1, 1, 0.85f));
    QCOMPARE(MarkerColors::ringColor(dark, true), QColor::fromRgbF(1, 1, 1, 1.0f));
    QVERIFY(std::abs(ColorHex::luminance(dark) - 0.6167) < 0.0005);
}

void RadarRulesTest::trailSegments_data()
{
    QTest::addColumn<bool>("showTrails");
    QTest::addColumn<bool>("colorByAltitude");
    QTest::addColumn<QString>("planeColorHex");
    QTest::addColumn<QStringList>("expected"); // "id colour"

    QTest::newRow("trails off") << false << false << u"#FF8A00"_qs << QStringList{};
    QTest::newRow("user colour, shown order, short trails left out")
        << true << false << u"#32D74B"_qs
        << QStringList{u"trail-c2 #32D74B"_qs, u"trail-m1 #299E52"_qs, u"trail-e1 #FF3B30"_qs};
    QTest::newRow("unparsable colour is orange")
        << true << false << u"green"_qs
        << QStringList{u"trail-c2 #FF9500"_qs, u"trail-m1 #299E52"_qs, u"trail-e1 #FF3B30"_qs};
    QTest::newRow("by altitude") << true << true << u"#32D74B"_qs
                                 << QStringList{u"trail-c2 #8080FF"_qs, u"trail-m1 #299E52"_qs,
                                                u"trail-e1 #FF3B30"_qs};
}

void RadarRulesTest::trailSegments()
{
    QFETCH(bool, showTrails);
    QFETCH(bool, colorByAltitude);
    QFETCH(QString, planeColorHex);
    QFETCH(QStringList, expected);

    const QList<Aircraft> displayed{
        decoded(R"({"hex":"one","lat":1,"lon":1})"),
        decoded(R"({"hex":"c2","lat":1,"lon":1,"alt_baro":35000})"),
        decoded(R"({"hex":"none","lat":1,"lon":1})"),
        decoded(R"({"hex":"m1","dbFlags":1})"),
        decoded(R"({"hex":"e1","emergency":"general","alt_baro":1000})"),
    };
    using C = Aircraft::Coordinate;
    const QHash<QString, QList<C>> trails{
        {u"one"_qs, {C{1, 1}}}, // one point makes no line
        {u"c2"_qs, {C{1, 1}, C{1.1, 1.1}, C{1.2, 1.2}}},
        {u"m1"_qs, {C{2, 2}, C{2.1, 2.1}}},
        {u"e1"_qs, {C{3, 3}, C{3.1, 3.1}}},
        {u"hidden"_qs, {C{4, 4}, C{4.1, 4.1}}}, // not shown: no segment although it has a trail
    };
    const auto segments =
        TrailSegment::segments(displayed, trails, {showTrails, colorByAltitude, planeColorHex});
    QStringList got;
    for (const TrailSegment &segment : segments)
        got.append(segment.id + u' ' + hexOf(segment.color));
    QCOMPARE(got, expected);
    if (!segments.isEmpty())
        QCOMPARE(segments.first().coordinates, trails.value(u"c2"_qs));
}

void RadarRulesTest::cameraOperations_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<bool>("hasTarget"); // home, or a selection with a position
    QTest::addColumn<double>("radiusNM");
    QTest::addColumn<double>("cameraDistance");
    QTest::addColumn<double>("distance"); // -1: nothing happens
    QTest::addColumn<int>("durationMs");

    QTest::newRow("recenter frames radius × 5")
        << u"recenter"_qs << true << 25.0 << 3000.0 << 231500.0 << 350;
    QTest::newRow("recenter without home") << u"recenter"_qs << false << 25.0 << 0.0 << -1.0 << 0;
    QTest::newRow("home before any report: radius × 3")
        << u"home"_qs << true << 25.0 << 0.0 << 138900.0 << 500;
    QTest::newRow("home keeps the zoom") << u"home"_qs << true << 25.0 << 50000.0 << 50000.0 << 500;
    QTest::newRow("home zoomed far out comes down to 2,000 km")
        << u"home"_qs << true << 25.0 << 5e6 << 2e6 << 500;
    QTest::newRow("home zoomed far in goes out to 2 km")
        << u"home"_qs << true << 25.0 << 500.0 << 2000.0 << 500;
    QTest::newRow("home without home") << u"home"_qs << false << 25.0 << 50000.0 << -1.0 << 0;
    QTest::newRow("selection zoomed out beyond 600 km")
        << u"focus"_qs << true << 25.0 << 900000.0 << 600000.0 << 600;
    QTest::newRow("selection zoomed in below 8 km") << u"focus"_qs << true << 25.0 << 3000.0 << 8000.0 << 600;
    QTest::newRow("selection keeps the zoom") << u"focus"_qs << true << 25.0 << 120000.0 << 120000.0 << 600;
    QTest::newRow("selection before any report, small radius")
        << u"focus"_qs << true << 1.0 << 0.0 << 8000.0 << 600;
    QTest::newRow("selection without a position") << u"focus"_qs << false << 25.0 << 50000.0 << -1.0 << 0;
}

void RadarRulesTest::cameraOperations()
{
    QFETCH(QString, operation);
    QFETCH(bool, hasTarget);
    QFETCH(double, radiusNM);
    QFETCH(double, cameraDistance);
    QFETCH(double, distance);
    QFETCH(int, durationMs);

    const std::optional<HomeLocation> home =
        hasTarget ? std::optional(HomeLocation(45.5, -122.6, u"Portland"_qs)) : std::nullopt;
    const Aircraft placed = decoded(R"({"hex":"a1","lat":46.0,"lon":-122.0})");
    const Aircraft lost = decoded(R"({"hex":"a2","lat":46.0})");
    std::optional<CameraOperations::Target> target;
    if (operation == u"recenter")
        target = CameraOperations::recenter(home, radiusNM);
    else if (operation == u"home")
        target = CameraOperations::centerOnHome(home, radiusNM, cameraDistance);
    else
        target = CameraOperations::focusOnSelection(hasTarget ? placed : lost, radiusNM, cameraDistance);

    QCOMPARE(target.has_value(), distance >= 0);
    if (!target)
        return;
    QCOMPARE(target->distance, distance);
    QCOMPARE(target->durationMs, durationMs);
    // Every operation turns the map north-up and flat.
    QCOMPARE(target->heading, 0.0);
    QCOMPARE(target->pitch, 0.0);
    QCOMPARE(target->latitude, operation == u"focus" ? 46.0 : 45.5);
    QVERIFY(!CameraOperations::focusOnSelection(std::nullopt, radiusNM, cameraDistance));
}

void RadarRulesTest::accessibilityText_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("unit");
    QTest::addColumn<QString>("text");

    QTest::newRow("airliner, kilometres")
        << QByteArray(R"({"hex":"a1","flight":"ASA512","alt_baro":12500,"dst":3.2})") << u"km"_qs
        << u"ASA512, 12.500 ft, 5.9 km"_qs;
    QTest::newRow("no distance") << QByteArray(R"({"hex":"a1","flight":"ASA512","alt_baro":"ground"})")
                                 << u"mi"_qs << u"ASA512, On ground"_qs;
    QTest::newRow("emergency military")
        << QByteArray(R"({"hex":"ae01","dbFlags":1,"squawk":"7500","dst":10})") << u"nm"_qs
        << u"AE01, —, 10.0 nm, emergency, military"_qs;
}

void RadarRulesTest::accessibilityText()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, unit);
    QFETCH(QString, text);
    QCOMPARE(decoded(json).accessibilityText(unit), text);
}

void RadarRulesTest::detailRows_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<bool>("routeKnown");
    QTest::addColumn<QStringList>("rows");

    QTest::newRow("full record with route")
        << QByteArray(
               R"({"hex":"a1b2c3","flight":"ASA512 ","t":"B739","r":"N512AS","alt_baro":12500,"gs":420.4,)"
               R"("baro_rate":-640,"track":359.6,"squawk":"4521","dst":3.2,"dir":247.5,"lat":45.6,"lon":-122.7})")
        << true
        << QStringList{u"Route|SEA → SFO|Seattle → San Francisco"_qs,
                       u"Operator|Alaska Airlines|"_qs,
                       u"Type|B739|"_qs,
                       u"Registration|N512AS|"_qs,
                       u"Altitude|12.500 ft|"_qs,
                       u"Ground speed|420 kt|"_qs,
                       u"Vertical|↓ 640 ft/min|"_qs,
                       u"Track|360°|"_qs,
                       u"Squawk|4521|"_qs,
                       u"Distance|3.7 mi|"_qs,
                       u"Spot it|Look WSW, 33° up|"_qs,
                       u"ICAO hex|A1B2C3|"_qs};
    QTest::newRow("no callsign, no route row; no position, no distance")
        << QByteArray(R"({"hex":"abc","track":0.2})") << true
        << QStringList{u"Altitude|—|"_qs, u"Ground speed|—|"_qs, u"Track|0°|"_qs, u"ICAO hex|ABC|"_qs};
    QTest::newRow("route not known yet") << QByteArray(R"({"hex":"abc","flight":"ASA512"})") << false
                                         << QStringList{u"Operator|Alaska Airlines|"_qs, u"Altitude|—|"_qs,
                                                        u"Ground speed|—|"_qs, u"ICAO hex|ABC|"_qs};
}

void RadarRulesTest::detailRows()
{
    QFETCH(QByteArray, json);
    QFETCH(bool, routeKnown);
    QFETCH(QStringList, rows);

    const Aircraft aircraft = decoded(json);
    FlightRoute route{u"SEA"_qs, u"Seattle"_qs, u"SFO"_qs, u"San Francisco"_qs};
    QStringList got;
    for (const auto &row :
         RadarTexts::detailRows(aircraft, routeKnown ? std::optional(route) : std::nullopt, u"mi"_qs))
        got.append(row.label + u'|' + row.value + u'|' + row.tooltip);
    QCOMPARE(got, rows);

    // Without city names the tooltip is the summary itself.
    route.originCity.reset();
    const auto withoutCities = RadarTexts::detailRows(aircraft, route, u"mi"_qs);
    if (aircraft.flight())
        QCOMPARE(withoutCities.first().tooltip, u"SEA → SFO"_qs);
}

void RadarRulesTest::trackLinkFollowsTheViewerAddress_data()
{
    QTest::addColumn<QByteArray>("environment");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("url");

    QTest::newRow("default") << QByteArray() << u"Track on adsb.lol"_qs
                             << u"https://adsb.lol/?icao=a1b2c3"_qs;
    QTest::newRow("own viewer with trailing slash")
        << QByteArray("http://127.0.0.1:8080/") << u"Track on 127.0.0.1"_qs
        << u"http://127.0.0.1:8080/?icao=a1b2c3"_qs;
    QTest::newRow("not an address: no link")
        << QByteArray("not a url") << u"Track on not a url"_qs << QString();
}

void RadarRulesTest::trackLinkFollowsTheViewerAddress()
{
    QFETCH(QByteArray, environment);
    QFETCH(QString, text);
    QFETCH(QString, url);

    if (environment.isEmpty())
        qunsetenv("AEROLUME_GLOBE_URL");
    else
        qputenv("AEROLUME_GLOBE_URL", environment);
    QCOMPARE(RadarTexts::trackLinkText(), text);
    QCOMPARE(RadarTexts::trackUrl(u"a1b2c3"_qs).toString(), url);
    qunsetenv("AEROLUME_GLOBE_URL");
}

void RadarRulesTest::glyphTurnsWithTrack_data()
{
    QTest::addColumn<QVariant>("track");
    QTest::addColumn<int>("angle"); // -1: not turned

    QTest::newRow("north points up") << QVariant(0.0) << 270;
    QTest::newRow("east points right, as at rest") << QVariant(90.0) << 0;
    QTest::newRow("south") << QVariant(180.0) << 90;
    QTest::newRow("two-degree steps") << QVariant(45.9) << 316;
    QTest::newRow("no track") << QVariant() << -1;
}

void RadarRulesTest::glyphTurnsWithTrack()
{
    QFETCH(QVariant, track);
    QFETCH(int, angle);
    const auto turned = RadarSupport::glyphAngle(track);
    QCOMPARE(turned.value_or(-1), angle);
}

void RadarRulesTest::stylesAndTheirSources_data()
{
    QTest::addColumn<QString>("choice");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("layers");
    QTest::addColumn<bool>("muted");

    QTest::newRow("standard") << u"standard"_qs << u"Standard"_qs << QStringList{u"standard"_qs} << false;
    QTest::newRow("muted") << u"muted"_qs << u"Muted"_qs << QStringList{u"standard"_qs} << true;
    QTest::newRow("imagery") << u"imagery"_qs << u"Satellite"_qs << QStringList{u"imagery"_qs} << false;
    QTest::newRow("hybrid") << u"hybrid"_qs << u"Hybrid"_qs << QStringList{u"imagery"_qs, u"labels"_qs}
                            << false;
    QTest::newRow("unknown is standard")
        << u"terrain"_qs << u"Standard"_qs << QStringList{u"standard"_qs} << false;
}

void RadarRulesTest::stylesAndTheirSources()
{
    QFETCH(QString, choice);
    QFETCH(QString, name);
    QFETCH(QStringList, layers);
    QFETCH(bool, muted);

    qputenv("AEROLUME_TILE_URL_STANDARD", "http://127.0.0.1:9/tiles/standard/{z}/{x}/{y}.png");
    QCOMPARE(TileSources::styleName(choice), name);
    QStringList names;
    for (const TileSource &source : TileSources::layers(choice)) {
        names.append(source.name);
        QCOMPARE(source.muted, muted && source.name == u"standard");
        if (source.name == u"standard")
            QCOMPARE(source.urlTemplate, u"http://127.0.0.1:9/tiles/standard/{z}/{x}/{y}.png"_qs);
    }
    QCOMPARE(names, layers);
    QVERIFY(!TileSources::attribution(choice).isEmpty());
    qunsetenv("AEROLUME_TILE_URL_STANDARD");
}

QTEST_GUILESS_MAIN(RadarRulesTest)
#include "RadarRulesTest.moc"
