#include "APIResponse.h"
#include "Aircraft.h"
#include "FeedDecoder.h"
#include "HomeLocation.h"

#include <QTest>

using Altitude = Aircraft::Altitude;

// What a decoded row should hold, for the fields a case looks at.
struct RowExpectation
{
    bool ok = true;
    QString errorContains;
};
Q_DECLARE_METATYPE(std::optional<Aircraft::Altitude>)

class FeedDecodingTest : public QObject
{
    Q_OBJECT

private:
    static Aircraft decodeRow(const char *json)
    {
        auto decoded = Aircraft::decode(QByteArray(json));
        if (!decoded.ok())
            qFatal("row did not decode: %s", qPrintable(decoded.error()));
        return std::move(decoded).value();
    }

private slots:
    void minimalRowHasOnlyHex()
    {
        const Aircraft aircraft = decodeRow(R"({"hex":"abc123"})");
        QCOMPARE(aircraft.hex(), u"abc123"_qs);
        QCOMPARE(aircraft.id(), u"abc123"_qs);
        QVERIFY(!aircraft.flight() && !aircraft.registration() && !aircraft.typeCode());
        QVERIFY(!aircraft.typeDescription() && !aircraft.operatorName() && !aircraft.altBaro());
        QVERIFY(!aircraft.altGeom() && !aircraft.groundSpeed() && !aircraft.track());
        QVERIFY(!aircraft.baroRate() && !aircraft.geomRate() && !aircraft.squawk() && !aircraft.emergency());
        QVERIFY(!aircraft.category() && !aircraft.lat() && !aircraft.lon() && !aircraft.seen());
        QVERIFY(!aircraft.seenPos() && !aircraft.dbFlags() && !aircraft.distanceNM() &&
                !aircraft.directionDeg());
        QVERIFY(!aircraft.isEmpty());
    }

    void fullRowKeepsEveryFieldAsSent()
    {
        const Aircraft aircraft = decodeRow(
            R"({)"
            R"("hex":"~A1b2C3","flight":"ASA512  ","r":"N512AS","t":"B739","desc":"BOEING 737-900",)"
            R"("ownOp":"ALASKA AIRLINES INC","alt_baro":35000,"alt_geom":35575,"gs":452.3,"track":271.5,)"
            R"("baro_rate":-1024,"geom_rate":-992,"squawk":"2741","emergency":"none","category":"A3",)"
            R"("lat":47.5,"lon":-122.25,"seen":0.4,"seen_pos":1.2,"dbFlags":0,"dst":12.345,"dir":247.2,)"
            R"("mlat":[],"tisb":[],"nav_modes":["autopilot","tcas"],"rssi":-21.3,"type":"adsb_icao"})");
        QCOMPARE(aircraft.hex(), u"~A1b2C3"_qs);
        QCOMPARE(aircraft.flight(), u"ASA512  "_qs);
        QCOMPARE(aircraft.registration(), u"N512AS"_qs);
        QCOMPARE(aircraft.typeCode(), u"B739"_qs);
        QCOMPARE(aircraft.typeDescription(), u"BOEING 737-900"_qs);
        QCOMPARE(aircraft.operatorName(), u"ALASKA AIRLINES INC"_qs);
        QCOMPARE(aircraft.altBaro(), Altitude::feet(35000));
        QCOMPARE(aircraft.altGeom(), 35575);
        QCOMPARE(aircraft.groundSpeed(), 452.3);
        QCOMPARE(aircraft.track(), 271.5);
        QCOMPARE(aircraft.baroRate(), -1024);
        QCOMPARE(aircraft.geomRate(), -992);
        QCOMPARE(aircraft.squawk(), u"2741"_qs);
        QCOMPARE(aircraft.emergency(), u"none"_qs);
        QCOMPARE(aircraft.category(), u"A3"_qs);
        QCOMPARE(aircraft.lat(), 47.5);
        QCOMPARE(aircraft.lon(), -122.25);
        QCOMPARE(aircraft.seen(), 0.4);
        QCOMPARE(aircraft.seenPos(), 1.2);
        QCOMPARE(aircraft.dbFlags(), 0);
        QCOMPARE(aircraft.distanceNM(), 12.345);
        QCOMPARE(aircraft.directionDeg(), 247.2);
    }

    // Each field's type is strict: wrong types fail the row (null is absent), numbers must fit.
    void fieldTypes_data()
    {
        QTest::addColumn<QByteArray>("row");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<QString>("error");

        QTest::newRow("numeric squawk")
            << QByteArray(R"({"hex":"a1","squawk":7700})") << false
            << QString::fromUtf8(R"(row: "squawk" must be a string, not a number)");
        QTest::newRow("null squawk is absent")
            << QByteArray(R"({"hex":"a1","squawk":null})") << true << QString();
        QTest::newRow("boolean flight") << QByteArray(R"({"hex":"a1","flight":true})") << false
                                        << QString::fromUtf8(R"("flight" must be a string, not a boolean)");
        QTest::newRow("list registration") << QByteArray(R"({"hex":"a1","r":["N1"]})") << false
                                           << QString::fromUtf8(R"("r" must be a string, not a list)");
        QTest::newRow("object desc") << QByteArray(R"({"hex":"a1","desc":{}})") << false
                                     << QString::fromUtf8(R"("desc" must be a string, not an object)");
        QTest::newRow("fractional baro_rate")
            << QByteArray(R"({"hex":"a1","baro_rate":-64.5})") << false
            << QString::fromUtf8(R"("baro_rate" must be a whole number, not -64.5)");
        QTest::newRow("whole float reads")
            << QByteArray(R"({"hex":"a1","alt_geom":12000.0})") << true << QString();
        QTest::newRow("exponent reads")
            << QByteArray(R"({"hex":"a1","alt_geom":1.2e4})") << true << QString();
        QTest::newRow("tiny exponent fails") << QByteArray(R"({"hex":"a1","alt_geom":1e-400})") << false
                                             << QString::fromUtf8(R"("alt_geom" must be a whole number)");
        QTest::newRow("quoted digits fail")
            << QByteArray(R"({"hex":"a1","geom_rate":"64"})") << false
            << QString::fromUtf8(R"("geom_rate" must be a whole number, not a string)");
        QTest::newRow("beyond 64 bits")
            << QByteArray(R"({"hex":"a1","dbFlags":9223372036854775808})") << false
            << QString::fromUtf8(R"("dbFlags" is out of range: 9223372036854775808)");
        QTest::newRow("smallest 64-bit")
            << QByteArray(R"({"hex":"a1","dbFlags":-9223372036854775808})") << true << QString();
        QTest::newRow("huge exponent") << QByteArray(R"({"hex":"a1","alt_geom":1e30})") << false
                                       << QString::fromUtf8(R"("alt_geom" is out of range)");
        QTest::newRow("integer float field") << QByteArray(R"({"hex":"a1","gs":320})") << true << QString();
        QTest::newRow("text float field") << QByteArray(R"({"hex":"a1","lat":"47.5"})") << false
                                          << QString::fromUtf8(R"("lat" must be a number, not a string)");
        QTest::newRow("float past double range") << QByteArray(R"({"hex":"a1","track":1e400})") << false
                                                 << QString::fromUtf8(R"("track" is out of range: 1e400)");
        QTest::newRow("missing hex") << QByteArray(R"({"flight":"ASA512"})") << false
                                     << QString::fromUtf8(R"("hex" is missing)");
        QTest::newRow("null hex") << QByteArray(R"({"hex":null})") << false
                                  << QString::fromUtf8(R"("hex" must be a string, not null)");
        QTest::newRow("numeric hex") << QByteArray(R"({"hex":123})") << false
                                     << QString::fromUtf8(R"("hex" must be a string, not a number)");
        QTest::newRow("keys match with case")
            << QByteArray(R"({"hex":"a1","Squawk":7700,"HEX":1})") << true << QString();
        QTest::newRow("unknown keys of any shape")
            << QByteArray(R"({"hex":"a1","x":{"y":[1,{"z":null}]},"n":1e999})") << true << QString();
        QTest::newRow("row not an object")
            << QByteArray(R"("a1")") << false << u"must be an object, not a string"_qs;
        QTest::newRow("the earlier key's error wins")
            << QByteArray(R"({"gs":"x","hex":"a1","squawk":1})") << false
            << QString::fromUtf8(R"("squawk" must be a string)");
        QTest::newRow("escaped key") << QByteArray(R"({"\u0068ex":"a1"})") << true << QString();
        QTest::newRow("malformed unknown value")
            << QByteArray(R"({"hex":"a1","x":tru})") << false << u"not valid JSON"_qs;
        QTest::newRow("malformed number")
            << QByteArray(R"({"hex":"a1","alt_geom":01})") << false << u"not valid JSON"_qs;
        QTest::newRow("trailing content")
            << QByteArray(R"({"hex":"a1"} {})") << false << u"not valid JSON"_qs;
    }

    void fieldTypes()
    {
        QFETCH(QByteArray, row);
        QFETCH(bool, ok);
        QFETCH(QString, error);
        const auto decoded = Aircraft::decode(row);
        QCOMPARE(decoded.ok(), ok);
        if (!ok) {
            // The error of a bare row has no index; the prefix "row: " in the table only reads better.
            QString expected = error;
            expected.remove(u"row: "_qs);
            QVERIFY2(decoded.error().contains(expected), qPrintable(decoded.error()));
        }
    }

    void numbersKeepTheirValue()
    {
        const Aircraft aircraft =
            decodeRow(R"({"hex":"a1","alt_geom":12000.0,"baro_rate":-1.28e2,"dbFlags":-9223372036854775808,)"
                      R"("geom_rate":-0.0,"gs":320,"track":1E2})");
        QCOMPARE(aircraft.altGeom(), 12000);
        QCOMPARE(aircraft.baroRate(), -128);
        QCOMPARE(aircraft.dbFlags(), std::numeric_limits<qint64>::min());
        QCOMPARE(aircraft.geomRate(), 0);
        QCOMPARE(aircraft.groundSpeed(), 320.0);
        QCOMPARE(aircraft.track(), 100.0);
    }

    // "alt_baro" never fails a row: a whole number is feet, anything else the ground.
    void altitude_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<std::optional<Altitude>>("expected");
        QTest::newRow("ground") << QByteArray(R"("ground")") << std::optional(Altitude::ground());
        QTest::newRow("zero is not ground") << QByteArray("0") << std::optional(Altitude::feet(0));
        QTest::newRow("below sea level") << QByteArray("-25") << std::optional(Altitude::feet(-25));
        QTest::newRow("whole float") << QByteArray("12000.0") << std::optional(Altitude::feet(12000));
        QTest::newRow("fraction") << QByteArray("1200.5") << std::optional(Altitude::ground());
        QTest::newRow("other text") << QByteArray(R"("GND")") << std::optional(Altitude::ground());
        QTest::newRow("quoted digits") << QByteArray(R"("35000")") << std::optional(Altitude::ground());
        QTest::newRow("boolean") << QByteArray("true") << std::optional(Altitude::ground());
        QTest::newRow("list") << QByteArray("[1,2]") << std::optional(Altitude::ground());
        QTest::newRow("object") << QByteArray(R"({"ft":1})") << std::optional(Altitude::ground());
        QTest::newRow("beyond 64 bits") << QByteArray("1e19") << std::optional(Altitude::ground());
        QTest::newRow("null is absent") << QByteArray("null") << std::optional<Altitude>();
    }

    void altitude()
    {
        QFETCH(QByteArray, value);
        QFETCH(std::optional<Altitude>, expected);
        const auto decoded = FeedDecoder::decodeAltitude(value);
        QVERIFY2(decoded.ok(), qPrintable(decoded.error()));
        QCOMPARE(decoded.value(), expected);

        // The same inside a row, where it must not fail the row either.
        const auto row = Aircraft::decode(QByteArray(R"({"hex":"a1","alt_baro":)") + value + '}');
        QVERIFY2(row.ok(), qPrintable(row.error()));
        QCOMPARE(row.value().altBaro(), expected);
    }

    void malformedAltitudeIsStillAnError()
    {
        QVERIFY(!FeedDecoder::decodeAltitude("tru").ok());
        QVERIFY(!FeedDecoder::decodeAltitude(R"({"hex":"a1","alt_baro":[1,}])").ok());
        QVERIFY(!Aircraft::decode(R"({"hex":"a1","alt_baro":-})").ok());
    }

    // The envelope: which list is used, and what fails the whole answer.
    void envelope_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<QStringList>("hexes"); // the list used, or the error's expected words
        QTest::newRow("ac") << QByteArray(R"({"ac":[{"hex":"a"},{"hex":"b"}],"msg":"No error","now":1})")
                            << true << QStringList{u"a"_qs, u"b"_qs};
        QTest::newRow("aircraft") << QByteArray(R"({"aircraft":[{"hex":"c"}],"now":1.5})") << true
                                  << QStringList{u"c"_qs};
        QTest::newRow("empty ac wins")
            << QByteArray(R"({"ac":[],"aircraft":[{"hex":"a"}]})") << true << QStringList{};
        QTest::newRow("ac after aircraft still wins")
            << QByteArray(R"({"aircraft":[{"hex":"a"}],"ac":[{"hex":"b"}]})") << true << QStringList{u"b"_qs};
        QTest::newRow("null ac is absent")
            << QByteArray(R"({"ac":null,"aircraft":[{"hex":"a"}]})") << true << QStringList{u"a"_qs};
        QTest::newRow("neither key") << QByteArray(R"({"msg":"No error"})") << true << QStringList{};
        QTest::newRow("one bad row among good ones")
            << hundredRowsWithOneBad() << false << QStringList{u"row 57: \"hex\" is missing"_qs};
        QTest::newRow("bad row in the unused list")
            << QByteArray(R"({"ac":[{"hex":"a"}],"aircraft":[{"hex":"b"},{"hex":"c","squawk":1}]})") << false
            << QStringList{
                   QString::fromUtf8(R"("aircraft" row 1 (c): "squawk" must be a string, not a number)")};
        QTest::newRow("list of the wrong type")
            << QByteArray(R"({"ac":{"hex":"a"}})") << false
            << QStringList{QString::fromUtf8(R"("ac" must be a list, not an object)")};
        QTest::newRow("row of the wrong type") << QByteArray(R"({"ac":[{"hex":"a"},3]})") << false
                                               << QStringList{u"row 1: must be an object, not a number"_qs};
        QTest::newRow("array at top level") << QByteArray(R"([{"hex":"a"}])") << false
                                            << QStringList{u"must be a JSON object, not a list"_qs};
        QTest::newRow("empty answer") << QByteArray() << false << QStringList{u"not valid JSON"_qs};
        QTest::newRow("truncated") << QByteArray(R"({"ac":[{"hex":"a"},{"hex":)") << false
                                   << QStringList{u"not valid JSON"_qs};
        QTest::newRow("invalid UTF-8")
            << QByteArray("{\"ac\":[{\"hex\":\"a\xff\"}]}") << false << QStringList{u"not valid JSON"_qs};
        QTest::newRow("malformed value elsewhere")
            << QByteArray(R"({"ac":[],"now":12.})") << false << QStringList{u"not valid JSON"_qs};
        QTest::newRow("first bad row is reported")
            << QByteArray(R"({"ac":[{"hex":"a","gs":"1"},{"hex":"b","t":2}]})") << false
            << QStringList{QString::fromUtf8(R"(row 0 (a): "gs" must be a number)")};
        QTest::newRow("unicode kept")
            << QByteArray(R"({"ac":[{"hex":"\u00e9\ud83d\ude00"}]})") << true << QStringList{u"é😀"_qs};
    }

    void envelope()
    {
        QFETCH(QByteArray, answer);
        QFETCH(bool, ok);
        QFETCH(QStringList, hexes);
        const auto decoded = APIResponse::decode(answer);
        QCOMPARE(decoded.ok(), ok);
        if (ok) {
            QStringList got;
            for (const Aircraft &aircraft : decoded.value().list())
                got.append(aircraft.hex());
            QCOMPARE(got, hexes);
        } else {
            QVERIFY2(decoded.error().contains(hexes.constFirst()), qPrintable(decoded.error()));
        }
    }

    void bothListsAreKept()
    {
        const auto decoded = APIResponse::decode(R"({"ac":[],"aircraft":[{"hex":"a"}]})");
        QVERIFY(decoded.ok());
        QCOMPARE(decoded.value().ac->size(), 0);
        QCOMPARE(decoded.value().aircraft->size(), 1);
    }

    // The decoder reuses one parser: a failure must not leave anything behind for the next answer, and
    // answers read from buffers with and without spare capacity decode the same.
    void decodesRepeatedlyFromAnyBuffer()
    {
        QByteArray tight(R"({"ac":[{"hex":"a","flight":"X1  "}]})");
        tight.squeeze();
        QByteArray roomy = tight;
        roomy.reserve(4096);
        QVERIFY(!APIResponse::decode(R"({"ac":[{"hex":)").ok());
        const auto first = APIResponse::decode(tight);
        const auto second = APIResponse::decode(roomy);
        QVERIFY(first.ok() && second.ok());
        QCOMPARE(first.value(), second.value());
        QCOMPARE(first.value().list().constFirst().flight(), u"X1  "_qs);
    }

    // The next answer's texts are the strings of the last one wherever they repeat, so letting the last
    // list go frees none of them; texts that changed are their own.
    void repeatedTextsShareTheLastAnswersStrings()
    {
        const auto first = APIResponse::decode(
            R"({"ac":[{"hex":"a1b2c3","flight":"BAW29   ","r":"G-EUPT","t":"A319","squawk":"7700"}]})");
        const auto second = APIResponse::decode(
            R"({"ac":[{"hex":"a1b2c3","flight":"BAW29   ","r":"G-EUPT","t":"A319","squawk":"1200"}]})");
        QVERIFY(first.ok() && second.ok());
        const Aircraft &before = first.value().list().constFirst();
        const Aircraft &after = second.value().list().constFirst();
        QVERIFY(after.hex().isSharedWith(before.hex()));
        QVERIFY(after.flight()->isSharedWith(*before.flight()));
        QVERIFY(after.registration()->isSharedWith(*before.registration()));
        QVERIFY(after.typeCode()->isSharedWith(*before.typeCode()));
        QCOMPARE(before.squawk(), u"7700"_qs);
        QCOMPARE(after.squawk(), u"1200"_qs);
    }
    void recordsCompareByEveryField()
    {
        const Aircraft a = decodeRow(R"({"hex":"a1","gs":320,"alt_baro":"ground"})");
        QCOMPARE(a, decodeRow(R"({"alt_baro":"x","gs":320.0,"hex":"a1"})"));
        QVERIFY(a != decodeRow(R"({"hex":"a1","gs":320,"alt_baro":0})"));
        QVERIFY(a != decodeRow(R"({"hex":"A1","gs":320,"alt_baro":"ground"})"));
        QVERIFY(a != decodeRow(R"({"hex":"a1","gs":320,"alt_baro":"ground","seen":0})"));
    }

    void homeLocation_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<QString>("error");
        QTest::newRow("complete") << QByteArray(R"({"latitude":47.6,"longitude":-122.3,"label":"Seattle"})")
                                  << true << QString();
        QTest::newRow("integers are numbers")
            << QByteArray(R"({"latitude":47,"longitude":-122,"label":""})") << true << QString();
        QTest::newRow("missing label") << QByteArray(R"({"latitude":47.6,"longitude":-122.3})") << false
                                       << QString::fromUtf8(R"("label" is missing)");
        QTest::newRow("null latitude")
            << QByteArray(R"({"latitude":null,"longitude":1,"label":"x"})") << false
            << QString::fromUtf8(R"("latitude" must be a number, not null)");
        QTest::newRow("quoted longitude")
            << QByteArray(R"({"latitude":1,"longitude":"2","label":"x"})") << false
            << QString::fromUtf8(R"("longitude" must be a number, not a string)");
        QTest::newRow("not an object") << QByteArray(R"([1,2,"x"])") << false << u"must be a JSON object"_qs;
        QTest::newRow("not JSON") << QByteArray("lat=1") << false << u"not valid JSON"_qs;
    }

    void homeLocation()
    {
        QFETCH(QByteArray, json);
        QFETCH(bool, ok);
        QFETCH(QString, error);
        const auto decoded = HomeLocation::decode(json);
        QCOMPARE(decoded.ok(), ok);
        if (!ok)
            QVERIFY2(decoded.error().contains(error), qPrintable(decoded.error()));
    }

    void homeLocationRoundTrips()
    {
        const HomeLocation home(47.60621, -122.33207, u"Seattle, Washington — Café"_qs);
        const auto decoded = HomeLocation::decode(home.encode());
        QVERIFY(decoded.ok());
        QCOMPARE(decoded.value(), home);
        QVERIFY(home.encode().contains("\"latitude\":47.60621"));
        QVERIFY(decoded.value() != HomeLocation(47.60621, -122.33207, u"Seattle"_qs));
    }

private:
    static QByteArray hundredRowsWithOneBad()
    {
        QByteArray answer = "{\"ac\":[";
        for (int i = 0; i < 100; ++i) {
            if (i)
                answer += ',';
            answer += i == 57 ? QByteArray("{\"flight\":\"ASA512\"}")
                              : "{\"hex\":\"a" + QByteArray::number(i) + "\"}";
        }
        return answer + "]}";
    }
};

QTEST_GUILESS_MAIN(FeedDecodingTest)
#include "FeedDecodingTest.moc"
