#include "ColorHex.h"
#include "HexColor.h"
#include "RadarGeometry.h"
#include "RadarPlot.h"
#include "ScopePalette.h"
#include "SkyEntry.h"
#include "WidgetLinks.h"
#include "WidgetText.h"

#include <QImage>
#include <QPainter>
#include <QTest>
#include <cmath>
#include <numbers>

namespace {

Aircraft decoded(const QByteArray &json)
{
    const auto result = Aircraft::decode(json);
    if (!result.ok())
        qFatal("test row does not decode: %s", qPrintable(result.error()));
    return result.value();
}

// A row with the given extra fields; "hex" is always there.
Aircraft row(const QByteArray &fields = {})
{
    return decoded("{\"hex\":\"abc123\"" + (fields.isEmpty() ? QByteArray() : "," + fields) + "}");
}

bool near(double a, double b, double tolerance)
{
    return std::fabs(a - b) <= tolerance;
}

bool sameColor(const QColor &a, const QColor &b, int tolerance = 2)
{
    const QColor x = a.toRgb();
    const QColor y = b.toRgb();
    return std::abs(x.red() - y.red()) <= tolerance && std::abs(x.green() - y.green()) <= tolerance &&
           std::abs(x.blue() - y.blue()) <= tolerance && std::abs(x.alpha() - y.alpha()) <= tolerance;
}

QString describe(const QColor &color)
{
    return color.name(QColor::HexArgb);
}

const HomeLocation equatorHome(0, 0, u"Null Island"_qs);

} // namespace

class ScopeGeometryTest : public QObject
{
    Q_OBJECT

private slots:
    void placesAircraft_data();
    void placesAircraft();
    void computedDistanceFollowsTheLawOfCosines();
    void hexComponents_data();
    void hexComponents();
    void paletteFromAccent_data();
    void paletteFromAccent();
    void standardPaletteValues();
    void blipColorPrecedence_data();
    void blipColorPrecedence();
    void hexStringOfColours();
    void sampleEntryDecodesItsRows();
    void plotKeepsEdgeBlipsInsideAndLimitsBlips();
    void plotPaintsBlipsInTheirColours();
    void shortAltitude_data();
    void shortAltitude();
    void faceTexts();
    void aircraftLinks_data();
    void aircraftLinks();
};

void ScopeGeometryTest::placesAircraft_data()
{
    QTest::addColumn<double>("radius");
    QTest::addColumn<bool>("withHome");
    QTest::addColumn<QByteArray>("fields");
    QTest::addColumn<bool>("placed");
    QTest::addColumn<double>("fraction");
    QTest::addColumn<double>("bearing");

    QTest::newRow("feed values, half way")
        << 25.0 << false << QByteArray("\"dst\":12.5,\"dir\":200") << true << 0.5 << 200.0;
    QTest::newRow("beyond the edge sits on it")
        << 25.0 << false << QByteArray("\"dst\":40,\"dir\":10") << true << 1.0 << 10.0;
    QTest::newRow("no lower cap") << 25.0 << false << QByteArray("\"dst\":0,\"dir\":10") << true << 0.0
                                  << 10.0;
    QTest::newRow("radius 0 places nothing")
        << 0.0 << true << QByteArray("\"dst\":5,\"dir\":10,\"lat\":1,\"lon\":1") << false << 0.0 << 0.0;
    QTest::newRow("negative radius") << -5.0 << true << QByteArray("\"dst\":5,\"dir\":10") << false << 0.0
                                     << 0.0;
    QTest::newRow("radius not a number")
        << qQNaN() << true << QByteArray("\"dst\":5,\"dir\":10") << false << 0.0 << 0.0;
    QTest::newRow("feed values need neither home nor position")
        << 25.0 << false << QByteArray("\"dst\":5,\"dir\":90") << true << 0.2 << 90.0;
    QTest::newRow("direction alone, no position")
        << 25.0 << true << QByteArray("\"dir\":90") << false << 0.0 << 0.0;
    QTest::newRow("distance alone, no home")
        << 25.0 << false << QByteArray("\"dst\":5,\"lat\":1,\"lon\":0") << false << 0.0 << 0.0;
    // The feed's distance is kept even though the position says otherwise; only the bearing is computed.
    QTest::newRow("distance kept, bearing computed")
        << 25.0 << true << QByteArray("\"dst\":5,\"lat\":1,\"lon\":0") << true << 0.2 << 0.0;
    QTest::newRow("at home, distance computed")
        << 25.0 << true << QByteArray("\"dir\":123,\"lat\":0,\"lon\":0") << true << 0.0 << 123.0;
    QTest::newRow("due east") << 100.0 << true << QByteArray("\"lat\":0,\"lon\":0.5") << true << 0.30001
                              << 90.0;
    QTest::newRow("due west is never negative")
        << 100.0 << true << QByteArray("\"lat\":0,\"lon\":-0.5") << true << 0.30001 << 270.0;
    QTest::newRow("due south") << 100.0 << true << QByteArray("\"lat\":-0.5,\"lon\":0") << true << 0.30001
                               << 180.0;
}

void ScopeGeometryTest::placesAircraft()
{
    QFETCH(double, radius);
    QFETCH(bool, withHome);
    QFETCH(QByteArray, fields);
    QFETCH(bool, placed);
    QFETCH(double, fraction);
    QFETCH(double, bearing);

    const RadarGeometry geometry(radius, withHome ? std::optional(equatorHome) : std::nullopt);
    const auto polar = geometry.polar(row(fields));
    QCOMPARE(polar.has_value(), placed);
    if (!placed)
        return;
    QVERIFY2(near(polar->fraction, fraction, 1e-4), qPrintable(QString::number(polar->fraction, 'g', 10)));
    QVERIFY2(near(polar->bearingDeg, bearing, 1e-6), qPrintable(QString::number(polar->bearingDeg, 'g', 10)));
    QVERIFY(polar->bearingDeg >= 0 && polar->bearingDeg < 360);
}

void ScopeGeometryTest::computedDistanceFollowsTheLawOfCosines()
{
    // Seattle to Portland, worked out here with the haversine instead.
    const HomeLocation seattle(47.6062, -122.3321, u"Seattle"_qs);
    const double lat2 = 45.5152, lon2 = -122.6784;
    auto rad = [](double d) { return d * std::numbers::pi / 180; };
    const double a = std::pow(std::sin(rad(lat2 - seattle.latitude) / 2), 2) +
                     std::cos(rad(seattle.latitude)) * std::cos(rad(lat2)) *
                         std::pow(std::sin(rad(lon2 - seattle.longitude) / 2), 2);
    const double expected = 2 * std::asin(std::sqrt(a)) * 3437.75;

    const RadarGeometry geometry(250, seattle);
    const auto polar = geometry.polar(row("\"lat\":45.5152,\"lon\":-122.6784"));
    QVERIFY(polar);
    QVERIFY2(near(polar->fraction * 250, expected, 1e-6), qPrintable(QString::number(polar->fraction * 250)));
    // Portland lies a little west of due south.
    QVERIFY(polar->bearingDeg > 180 && polar->bearingDeg < 190);
}

void ScopeGeometryTest::hexComponents_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<int>("red");
    QTest::addColumn<int>("green");
    QTest::addColumn<int>("blue");

    QTest::newRow("with number sign") << u"#73FF99"_qs << true << 0x73 << 0xFF << 0x99;
    QTest::newRow("without number sign") << u"73FF99"_qs << true << 0x73 << 0xFF << 0x99;
    QTest::newRow("lower case") << u"#73ff99"_qs << true << 0x73 << 0xFF << 0x99;
    QTest::newRow("blanks and tabs around") << u" \t#73FF99\t "_qs << true << 0x73 << 0xFF << 0x99;
    QTest::newRow("no-break space around") << u"\u00A0#FF8A00\u00A0"_qs << true << 0xFF << 0x8A << 0x00;
    QTest::newRow("orange") << u"#FF8A00"_qs << true << 0xFF << 0x8A << 0x00;
    QTest::newRow("five digits") << u"#73FF9"_qs << false << 0 << 0 << 0;
    QTest::newRow("seven digits") << u"#73FF990"_qs << false << 0 << 0 << 0;
    QTest::newRow("three digits") << u"#FFF"_qs << false << 0 << 0 << 0;
    QTest::newRow("eight digits") << u"#73FF99FF"_qs << false << 0 << 0 << 0;
    QTest::newRow("empty") << QString() << false << 0 << 0 << 0;
    QTest::newRow("letter beyond F") << u"#73FG99"_qs << false << 0 << 0 << 0;
    QTest::newRow("line break is not trimmed") << u"#73FF99\n"_qs << false << 0 << 0 << 0;
    QTest::newRow("two number signs") << u"##73FF99"_qs << false << 0 << 0 << 0;
    QTest::newRow("blank inside") << u"#73 FF99"_qs << false << 0 << 0 << 0;
    QTest::newRow("other script's digits") << u"#٧٣FF99"_qs << false << 0 << 0 << 0;
    QTest::newRow("full-width digits") << u"#７３FF99"_qs << false << 0 << 0 << 0;
}

void ScopeGeometryTest::hexComponents()
{
    QFETCH(QString, text);
    QFETCH(bool, valid);
    const auto components = HexColor::components(text);
    QCOMPARE(components.has_value(), valid);
    if (!valid)
        return;
    QFETCH(int, red);
    QFETCH(int, green);
    QFETCH(int, blue);
    QCOMPARE(components->red, red / 255.0);
    QCOMPARE(components->green, green / 255.0);
    QCOMPARE(components->blue, blue / 255.0);
}

void ScopeGeometryTest::paletteFromAccent_data()
{
    QTest::addColumn<std::optional<QString>>("accent");
    QTest::addColumn<QColor>("phosphor");

    QTest::newRow("absent") << std::optional<QString>() << QColor::fromRgbF(0.45f, 1.0f, 0.6f);
    QTest::newRow("unreadable") << std::optional<QString>(u"greenish"_qs)
                                << QColor::fromRgbF(0.45f, 1.0f, 0.6f);
    QTest::newRow("empty") << std::optional<QString>(QString()) << QColor::fromRgbF(0.45f, 1.0f, 0.6f);
    QTest::newRow("orange") << std::optional<QString>(u"#FF8A00"_qs) << QColor(0xFF, 0x8A, 0x00);
    QTest::newRow("stored default text") << std::optional<QString>(u"#73FF99"_qs) << QColor(0x73, 0xFF, 0x99);
}

void ScopeGeometryTest::paletteFromAccent()
{
    QFETCH(std::optional<QString>, accent);
    QFETCH(QColor, phosphor);
    const ScopePalette palette = ScopePalette::fromHex(accent);
    QVERIFY2(sameColor(palette.phosphor(), phosphor, 0), qPrintable(describe(palette.phosphor())));
    const QColor background = QColor::fromRgbF(float(phosphor.redF() * 0.09), float(phosphor.greenF() * 0.09),
                                               float(phosphor.blueF() * 0.09));
    QVERIFY2(sameColor(palette.background(), background, 0), qPrintable(describe(palette.background())));
    QCOMPARE(palette.background().alphaF(), 1.0f);
    if (!accent || !HexColor::components(*accent))
        QCOMPARE(palette, ScopePalette::standard());
    else
        QVERIFY(palette != ScopePalette::standard()); // "#73FF99" is 0.45098, not quite the default 0.45
    QVERIFY(near(palette.dim().alphaF(), 0.55, 1e-4));
    QVERIFY(near(palette.faint().alphaF(), 0.22, 1e-4));
    QVERIFY(sameColor(QColor(palette.dim().red(), palette.dim().green(), palette.dim().blue()), phosphor, 0));
}

void ScopeGeometryTest::standardPaletteValues()
{
    const ScopePalette &standard = ScopePalette::standard();
    QVERIFY(near(standard.phosphor().redF(), 0.45, 1e-4));
    QVERIFY(near(standard.phosphor().greenF(), 1.0, 1e-4));
    QVERIFY(near(standard.phosphor().blueF(), 0.6, 1e-4));
    QVERIFY(near(standard.background().redF(), 0.0405, 1e-4));
    QVERIFY(near(standard.background().greenF(), 0.09, 1e-4));
    QVERIFY(near(standard.background().blueF(), 0.054, 1e-4));
    // QML makes palettes with the default constructor; they must be the standard one, not black.
    QCOMPARE(ScopePalette(), standard);
}

void ScopeGeometryTest::blipColorPrecedence_data()
{
    QTest::addColumn<QByteArray>("fields");
    QTest::addColumn<QString>("expected");

    QTest::newRow("ordinary") << QByteArray() << u"phosphor"_qs;
    QTest::newRow("military") << QByteArray("\"dbFlags\":1") << u"gold"_qs;
    QTest::newRow("military among other flags") << QByteArray("\"dbFlags\":3") << u"gold"_qs;
    QTest::newRow("other flags only") << QByteArray("\"dbFlags\":2") << u"phosphor"_qs;
    QTest::newRow("hijack") << QByteArray("\"squawk\":\"7500\"") << u"red"_qs;
    QTest::newRow("radio failure") << QByteArray("\"squawk\":\"7600\"") << u"red"_qs;
    QTest::newRow("military squawking 7700") << QByteArray("\"squawk\":\"7700\",\"dbFlags\":1") << u"red"_qs;
    QTest::newRow("ordinary squawk") << QByteArray("\"squawk\":\"1200\"") << u"phosphor"_qs;
    QTest::newRow("emergency field") << QByteArray("\"emergency\":\"general\",\"dbFlags\":1") << u"red"_qs;
    QTest::newRow("emergency none") << QByteArray("\"emergency\":\"none\"") << u"phosphor"_qs;
    QTest::newRow("emergency none, military")
        << QByteArray("\"emergency\":\"none\",\"dbFlags\":1") << u"gold"_qs;
}

void ScopeGeometryTest::blipColorPrecedence()
{
    QFETCH(QByteArray, fields);
    QFETCH(QString, expected);
    const Aircraft aircraft = row(fields);
    // Neither gold nor red follows the accent.
    for (const auto &accent : {std::optional<QString>(), std::optional<QString>(u"#FF8A00"_qs)}) {
        const ScopePalette palette = ScopePalette::fromHex(accent);
        QColor wanted = palette.phosphor();
        if (expected == u"gold")
            wanted = QColor::fromRgbF(1.0f, 0.85f, 0.3f);
        else if (expected == u"red")
            wanted = QColor(Qt::red);
        QVERIFY2(sameColor(palette.blipColor(aircraft), wanted, 0),
                 qPrintable(describe(palette.blipColor(aircraft))));
    }
}

void ScopeGeometryTest::hexStringOfColours()
{
    QCOMPARE(ColorHex::hexString(QColor(Qt::white)), std::optional<QString>(u"#FFFFFF"_qs));
    QVERIFY(!ColorHex::hexString(QColor()));
    const auto parsed = ColorHex::color(u"#73ff99"_qs);
    QVERIFY(parsed);
    QCOMPARE(ColorHex::hexString(*parsed), std::optional<QString>(u"#73FF99"_qs));
    QVERIFY(!ColorHex::color(u"#FFF"_qs));
}

void ScopeGeometryTest::sampleEntryDecodesItsRows()
{
    const QDateTime now(QDate(2024, 5, 1), QTime(14, 5));
    const SkyEntry sample = SkyEntry::sample(std::nullopt, now);
    QCOMPARE(sample.count(), 5);
    QCOMPARE(sample.date(), now);
    QCOMPARE(sample.radiusNM(), 25.0);
    QVERIFY(sample.home());
    QCOMPARE(*sample.home(), HomeLocation(45.5, -122.6, u"Home"_qs));
    QVERIFY(sample.isSample());
    QVERIFY(!sample.needsSetup());
    QCOMPARE(sample.unit(), u"mi"_qs);
    QCOMPARE(sample.palette(), ScopePalette::standard());

    QStringList names;
    for (const Aircraft &aircraft : sample.aircraft())
        names.append(aircraft.displayName());
    QCOMPARE(names, QStringList({u"ASA512"_qs, u"N757LY"_qs, u"QXE201"_qs, u"UPS2914"_qs, u"RCH440"_qs}));
    QCOMPARE(sample.aircraft().first().flight(), std::optional<QString>(u"ASA512  "_qs));
    QCOMPARE(sample.aircraft()[3].flight(), std::optional<QString>(u"UPS2914 "_qs));
    const Aircraft &military = sample.aircraft().last();
    QVERIFY(military.isMilitary());
    QCOMPARE(military.registration(), std::optional<QString>(QString()));
    QCOMPARE(military.typeCode(), std::optional<QString>(u"C17"_qs));
    for (const Aircraft &aircraft : sample.aircraft()) {
        QCOMPARE(aircraft.seenPos(), std::optional<double>(1));
        QVERIFY(!aircraft.isMilitary() || aircraft.hex() == u"ae01ce");
    }
    QCOMPARE(sample.aircraft()[2].altitudeFeet(), std::optional<qint64>(8200));
    QCOMPARE(sample.aircraft()[1].directionDeg(), std::optional<double>(80));

    const SkyEntry orange = SkyEntry::sample(u"#FF8A00"_qs, now);
    QCOMPARE(orange.accentHex(), std::optional<QString>(u"#FF8A00"_qs));
    QCOMPARE(orange.palette(), ScopePalette::fromHex(u"#FF8A00"_qs));

    // Without a home and outside a sample, a face can only ask for a home.
    QVERIFY(SkyEntry().needsSetup());
    SkyEntry noHomeSample(now, {}, 25, std::nullopt, true, u"mi"_qs, std::nullopt);
    QVERIFY(!noHomeSample.needsSetup());
}

void ScopeGeometryTest::plotKeepsEdgeBlipsInsideAndLimitsBlips()
{
    const HomeLocation home(45.5, -122.6, u"Home"_qs);
    // A wide space: the scope is as large as the height, centred.
    QList<Aircraft> rows{row("\"dst\":40,\"dir\":90,\"track\":30")};
    const RadarPlot edge(SkyEntry(QDateTime(), rows, 25, home, false, u"mi"_qs, std::nullopt), 40,
                         QSizeF(200, 100));
    QCOMPARE(edge.side(), 100.0);
    QCOMPARE(edge.centre(), QPointF(100, 50));
    QCOMPARE(edge.blips().size(), 1);
    QVERIFY(near(edge.blips().first().centre.x(), 100 + 50 * 0.94, 1e-9));
    QVERIFY(near(edge.blips().first().centre.y(), 50, 1e-9));
    QCOMPARE(edge.blips().first().headingDeg, 30.0); // the track, not the bearing
    const QList<QRectF> rings = edge.rings();
    QCOMPARE(rings.size(), 3);
    QCOMPARE(rings[0].width(), 100.0 / 3);
    QCOMPARE(rings[2], QRectF(50, 0, 100, 100));

    // North is up, and without a track the glyph points along the bearing.
    const RadarPlot north(
        SkyEntry(QDateTime(), {row("\"dst\":12.5,\"dir\":0")}, 25, home, false, u"mi"_qs, std::nullopt), 40,
        QSizeF(100, 100));
    QVERIFY(near(north.blips().first().centre.y(), 50 - 50 * 0.5 * 0.94, 1e-9));
    QCOMPARE(north.blips().first().headingDeg, 0.0);

    // 50 aircraft, 40 plotted: the nearest, which come first. One that can't be placed still counts.
    QList<Aircraft> many;
    for (int i = 0; i < 50; ++i)
        many.append(decoded(u"{\"hex\":\"%1\",\"dst\":%2,\"dir\":%3}"_qs.arg(i, 6, 16, QLatin1Char('0'))
                                .arg(i * 0.5)
                                .arg(i * 7)
                                .toUtf8()));
    many.insert(3, row("\"flight\":\"NOWHERE\""));
    const SkyEntry crowded(QDateTime(), many, 25, home, false, u"mi"_qs, std::nullopt);
    QCOMPARE(crowded.count(), 51);
    const RadarPlot plot(crowded, 40, QSizeF(300, 300));
    QCOMPARE(plot.blips().size(), 39);
    QCOMPARE(plot.blips().first().hex, u"000000"_qs);
    QCOMPARE(plot.blips().last().hex, u"000026"_qs);
    QCOMPARE(RadarPlot(crowded, 0, QSizeF(300, 300)).blips().size(), 0);
    QCOMPARE(RadarPlot(crowded, 100, QSizeF(300, 300)).blips().size(), 50);
}

void ScopeGeometryTest::plotPaintsBlipsInTheirColours()
{
    const HomeLocation home(45.5, -122.6, u"Home"_qs);
    const QList<Aircraft> rows{
        row("\"dst\":10,\"dir\":90,\"dbFlags\":1"),
        decoded("{\"hex\":\"e1\",\"dst\":10,\"dir\":270,\"squawk\":\"7700\",\"dbFlags\":1}"),
        decoded("{\"hex\":\"p1\",\"dst\":10,\"dir\":0}")};
    const SkyEntry entry(QDateTime(), rows, 20, home, false, u"mi"_qs, u"#FF8A00"_qs);
    const RadarPlot plot(entry, 40, QSizeF(200, 200));

    QImage image(400, 400, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(2);
    image.fill(entry.palette().background());
    QPainter painter(&image);
    plot.paint(painter);
    painter.end();

    auto at = [&](QPointF point) { return image.pixelColor((point * 2).toPoint()); };
    const QPointF centre(100, 100);
    const double reach = 100 * 0.5 * 0.94;
    QVERIFY2(sameColor(at(centre + QPointF(reach, 0)), ScopePalette::gold()),
             qPrintable(describe(at(centre + QPointF(reach, 0)))));
    QVERIFY2(sameColor(at(centre - QPointF(reach, 0)), QColor(Qt::red)),
             qPrintable(describe(at(centre - QPointF(reach, 0)))));
    QVERIFY2(sameColor(at(centre - QPointF(0, reach)), QColor(0xFF, 0x8A, 0x00)),
             qPrintable(describe(at(centre - QPointF(0, reach)))));
    // Home is a phosphor dot; the space between rings is background.
    QVERIFY(sameColor(at(centre), QColor(0xFF, 0x8A, 0x00)));
    QVERIFY(sameColor(at(centre + QPointF(20, 10)), entry.palette().background()));
}

void ScopeGeometryTest::shortAltitude_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QByteArray>("fields");
    QTest::addColumn<QString>("expected");

    QTest::newRow("just below flight levels")
        << u"en_US"_qs << QByteArray("\"alt_baro\":17999") << u"17,999ft"_qs;
    QTest::newRow("German grouping") << u"de_DE"_qs << QByteArray("\"alt_baro\":12500") << u"12.500ft"_qs;
    QTest::newRow("18000") << u"en_US"_qs << QByteArray("\"alt_baro\":18000") << u"FL180"_qs;
    QTest::newRow("18050 cuts down") << u"de_DE"_qs << QByteArray("\"alt_baro\":18050") << u"FL180"_qs;
    QTest::newRow("24000") << u"fr_FR"_qs << QByteArray("\"alt_baro\":24000") << u"FL240"_qs;
    QTest::newRow("ground") << u"en_US"_qs << QByteArray("\"alt_baro\":\"ground\",\"alt_geom\":500")
                            << u"GND"_qs;
    QTest::newRow("nothing known") << u"en_US"_qs << QByteArray() << u"—"_qs;
    QTest::newRow("geometric when barometric missing")
        << u"en_US"_qs << QByteArray("\"alt_geom\":5000") << u"5,000ft"_qs;
    QTest::newRow("barometric wins") << u"en_US"_qs << QByteArray("\"alt_baro\":900,\"alt_geom\":30000")
                                     << u"900ft"_qs;
    QTest::newRow("below sea level") << u"en_US"_qs << QByteArray("\"alt_baro\":-50") << u"-50ft"_qs;
}

void ScopeGeometryTest::shortAltitude()
{
    QFETCH(QString, locale);
    QFETCH(QByteArray, fields);
    QFETCH(QString, expected);
    QCOMPARE(WidgetText::shortAltitude(row(fields), QLocale(locale)), expected);
}

void ScopeGeometryTest::faceTexts()
{
    QCOMPARE(WidgetText::wholeNumber(25.7), u"25"_qs);
    QCOMPARE(WidgetText::wholeNumber(25), u"25"_qs);
    QCOMPARE(WidgetText::wholeNumber(0.4), u"0"_qs);
    QCOMPARE(WidgetText::wholeNumber(249.99), u"249"_qs);

    const QList<Aircraft> rows{decoded(R"({"hex":"a1","r":"N512AS","t":"B739","alt_baro":12500,"dst":3.2})"),
                               decoded(R"({"hex":"a2","r":"","t":"C17","alt_baro":"ground"})"),
                               decoded(R"({"hex":"a3","r":""})")};
    QCOMPARE(WidgetText::identityLine(rows[0]), u"B739 · N512AS"_qs);
    QCOMPARE(WidgetText::identityLine(rows[1]), u"C17"_qs);
    QCOMPARE(WidgetText::identityLine(rows[2]), QString());
    QCOMPARE(WidgetText::rangeLine(rows[0], u"nm"_qs, QLocale(u"de_DE"_qs)), u"3.2 nm · 12.500 ft"_qs);
    QCOMPARE(WidgetText::rangeLine(rows[1], u"mi"_qs), QString());

    const QDateTime date(QDate(2024, 5, 1), QTime(14, 5));
    const SkyEntry entry(date, rows, 25.7, HomeLocation(1, 2, u"Home"_qs), false, u"km"_qs, std::nullopt);
    const QLocale german(u"de_DE"_qs);
    QCOMPARE(WidgetText::footLine(entry, german), u"3 in range · 14:05"_qs);
    QCOMPARE(WidgetText::asOf(date, german), u"as of 14:05"_qs);
    QCOMPARE(WidgetText::countHead(entry), u"3 AIRCRAFT · 25 NM"_qs);
    QCOMPARE(WidgetText::boardHead(entry, german), u"25 NM · 14:05"_qs);
}

void ScopeGeometryTest::aircraftLinks_data()
{
    QTest::addColumn<QString>("hex");
    QTest::addColumn<QString>("expected");

    QTest::newRow("ordinary") << u"a1b2c3"_qs << u"aerolume://aircraft/a1b2c3"_qs;
    QTest::newRow("upper case kept") << u"A1B2C3"_qs << u"aerolume://aircraft/A1B2C3"_qs;
    QTest::newRow("non-ICAO marker") << u"~2a3b4c"_qs << u"aerolume://aircraft/~2a3b4c"_qs;
    QTest::newRow("blank makes no URL") << u"a1 b2"_qs << u"aerolume://open"_qs;
    QTest::newRow("broken escape") << u"%zz"_qs << u"aerolume://open"_qs;
}

void ScopeGeometryTest::aircraftLinks()
{
    QFETCH(QString, hex);
    QFETCH(QString, expected);
    QCOMPARE(WidgetLinks::aircraft(hex).toString(), expected);
    QCOMPARE(WidgetLinks::open().toString(), u"aerolume://open"_qs);
}

QTEST_GUILESS_MAIN(ScopeGeometryTest)
#include "ScopeGeometryTest.moc"
