#include "Aircraft.h"

#include <QLocale>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QTest>

#include <memory>

// Hands a record to QML the way views get them: as a property of a QObject. It is also the root type of
// the QML below, so that reading needs no QML module from disk.
class AircraftHolder : public QObject
{
    Q_OBJECT
    Q_PROPERTY(Aircraft aircraft READ aircraft WRITE setAircraft NOTIFY aircraftChanged)

public:
    explicit AircraftHolder(QObject *parent = nullptr) : QObject(parent) {}

    [[nodiscard]] Aircraft aircraft() const { return m_aircraft; }
    void setAircraft(const Aircraft &aircraft)
    {
        if (aircraft == m_aircraft)
            return;
        m_aircraft = aircraft;
        emit aircraftChanged();
    }

signals:
    void aircraftChanged();

private:
    Aircraft m_aircraft;
};

namespace {

// Every value is read in QML and handed back as a property of the created object.
constexpr QByteArrayView reader = R"(
import AerolumeTest

AircraftHolder {
    readonly property bool isEmpty: aircraft.isEmpty
    readonly property string displayName: aircraft.displayName
    readonly property string altitudeText: aircraft.altitudeText
    readonly property string speedText: aircraft.speedText
    readonly property bool isOnGround: aircraft.isOnGround
    readonly property bool typeNameDefined: aircraft.typeName !== undefined
    readonly property var typeName: aircraft.typeName
    readonly property var operatorDisplayName: aircraft.operatorDisplayName
    readonly property var verticalText: aircraft.verticalText
    readonly property var lookDirection: aircraft.lookDirection
    readonly property var flight: aircraft.flight
    readonly property var altitudeFeet: aircraft.altitudeFeet
    readonly property bool distanceDefined: aircraft.distanceTextFor("nm", true) !== undefined
    readonly property var distanceNmCompact: aircraft.distanceTextFor("nm", true)
    readonly property var distanceMiles: aircraft.distanceTextFor("mi", false)
    readonly property var latitude: aircraft.coordinate ? aircraft.coordinate.latitude : undefined
}
)";

} // namespace

class AircraftQmlTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void qmlReadsPresentation_data();
    void qmlReadsPresentation();
    void qmlReadsDefaultRecordAsEmpty();

private:
    // Creates the reader for one record; null, with QML's own errors logged, when that fails.
    std::unique_ptr<QObject> read(const Aircraft &aircraft);

    QQmlEngine m_engine;
};

void AircraftQmlTest::initTestCase()
{
    // Grouping in the texts below is English.
    QLocale::setDefault(QLocale(u"en_US"_qs));
    qmlRegisterType<AircraftHolder>("AerolumeTest", 1, 0, "AircraftHolder");
}

std::unique_ptr<QObject> AircraftQmlTest::read(const Aircraft &aircraft)
{
    QQmlComponent component(&m_engine);
    component.setData(reader.toByteArray(), QUrl(u"qrc:/AircraftReader.qml"_qs));
    if (component.isError()) {
        qWarning().noquote() << component.errorString();
        return {};
    }
    std::unique_ptr<QObject> object(
        component.createWithInitialProperties({{u"aircraft"_qs, QVariant::fromValue(aircraft)}}));
    if (!object)
        qWarning().noquote() << component.errorString();
    return object;
}

void AircraftQmlTest::qmlReadsPresentation_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("displayName");
    QTest::addColumn<QString>("altitudeText");
    QTest::addColumn<QVariant>("typeName");
    QTest::addColumn<QVariant>("distanceNmCompact");

    QTest::newRow("full record")
        << QByteArray(
               R"({"hex":"a1b2c3","flight":"ASA512  ","t":"b739","alt_baro":12500,"dst":3.2,"dir":247.5,"lat":45.6,"lon":-122.7})")
        << u"ASA512"_qs << u"12,500 ft"_qs << QVariant(u"Boeing 737-900"_qs) << QVariant(u"3.2nm"_qs);
    QTest::newRow("sparse record") << QByteArray(R"({"hex":"~a1b2c3","alt_baro":"ground"})") << u"~A1B2C3"_qs
                                   << u"On ground"_qs << QVariant() << QVariant();
    QTest::newRow("described type") << QByteArray(R"({"hex":"abc","desc":"CESSNA 172","dst":0.25})")
                                    << u"ABC"_qs << u"\u2014"_qs << QVariant(u"Cessna 172"_qs)
                                    << QVariant(u"0.2nm"_qs);
}

void AircraftQmlTest::qmlReadsPresentation()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, displayName);
    QFETCH(QString, altitudeText);
    QFETCH(QVariant, typeName);
    QFETCH(QVariant, distanceNmCompact);

    const Decoded<Aircraft> decoded = Aircraft::decode(json);
    QVERIFY2(decoded.ok(), qPrintable(decoded.error()));
    const Aircraft &aircraft = decoded.value();
    const auto object = read(aircraft);
    QVERIFY(object);

    QCOMPARE(object->property("isEmpty").toBool(), false);
    QCOMPARE(object->property("displayName").toString(), displayName);
    QCOMPARE(object->property("altitudeText").toString(), altitudeText);
    QCOMPARE(object->property("speedText").toString(), aircraft.speedText());
    QCOMPARE(object->property("isOnGround").toBool(), aircraft.isOnGround());

    // Absent values reach QML as undefined, which a var property hands back as an invalid QVariant.
    QCOMPARE(object->property("typeNameDefined").toBool(), typeName.isValid());
    QCOMPARE(object->property("typeName"), typeName);
    QCOMPARE(object->property("distanceDefined").toBool(), distanceNmCompact.isValid());
    QCOMPARE(object->property("distanceNmCompact"), distanceNmCompact);

    const auto miles = aircraft.distanceText(u"mi"_qs, false);
    QCOMPARE(object->property("distanceMiles"), miles ? QVariant(*miles) : QVariant());
    const auto look = aircraft.lookDirection();
    QCOMPARE(object->property("lookDirection"), look ? QVariant(*look) : QVariant());
    const auto flight = aircraft.flight();
    QCOMPARE(object->property("flight"), flight ? QVariant(*flight) : QVariant());
    const auto point = aircraft.coordinate();
    QCOMPARE(object->property("latitude"), point ? QVariant(point->latitude) : QVariant());
    const auto feet = aircraft.altitudeFeet();
    QCOMPARE(object->property("altitudeFeet").isValid(), feet.has_value());
    if (feet)
        QCOMPARE(object->property("altitudeFeet").toLongLong(), *feet);
}

void AircraftQmlTest::qmlReadsDefaultRecordAsEmpty()
{
    const auto object = read(Aircraft());
    QVERIFY(object);
    QCOMPARE(object->property("isEmpty").toBool(), true);
    QCOMPARE(object->property("typeNameDefined").toBool(), false);
    QCOMPARE(object->property("distanceDefined").toBool(), false);
    QVERIFY(!object->property("flight").isValid());
    QVERIFY(!object->property("lookDirection").isValid());
    QVERIFY(!object->property("latitude").isValid());
    QCOMPARE(object->property("altitudeText").toString(), u"\u2014"_qs);
}

QTEST_GUILESS_MAIN(AircraftQmlTest)
#include "AircraftQmlTest.moc"
