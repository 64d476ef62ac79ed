#include "AlertEngine.h"
#include "DefaultsStore.h"
#include "DesktopNotifier.h"
#include "FakeNotificationServer.h"
#include "PrivateSessionBus.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

#include <cmath>
#include <memory>
#include <numbers>

namespace {

// Home for every case; the geometry below puts aircraft around it.
const HomeLocation home(52.5, 13.4, u"Home"_qs);
// The same point on the equator, where east-west distances need no cosine.
const HomeLocation equatorHome(0.0, 0.0, u"Null Island"_qs);

constexpr double metresPerDegree = 111320;
constexpr double metresPerSecondPerKnot = 0.514444;

Aircraft plane(const QJsonObject &row)
{
    const Decoded<Aircraft> decoded = Aircraft::decode(QJsonDocument(row).toJson(QJsonDocument::Compact));
    if (!decoded.ok())
        qFatal("bad test row: %s", qPrintable(decoded.error()));
    return decoded.value();
}

QList<Aircraft> planes(const QJsonArray &rows)
{
    QList<Aircraft> list;
    for (const QJsonValue &row : rows)
        list.append(plane(row.toObject()));
    return list;
}

QJsonObject with(QJsonObject row, const QJsonObject &extra)
{
    for (auto it = extra.begin(); it != extra.end(); ++it)
        row.insert(it.key(), it.value());
    return row;
}

// An aircraft `southMetres` south and `eastMetres` east of `centre`, on `track` at `metresPerSecond`,
// at 3000 ft unless `extra` says otherwise.
QJsonObject approach(const HomeLocation &centre, double southMetres, double eastMetres, double track,
                     double metresPerSecond, const QJsonObject &extra = {})
{
    const double lat = centre.latitude - southMetres / metresPerDegree;
    const double lon = centre.longitude +
                       eastMetres / (std::cos(centre.latitude * std::numbers::pi / 180.0) * metresPerDegree);
    return with(QJsonObject{{u"hex"_qs, u"4b1a2f"_qs},
                            {u"lat"_qs, lat},
                            {u"lon"_qs, lon},
                            {u"track"_qs, track},
                            {u"gs"_qs, metresPerSecond / metresPerSecondPerKnot},
                            {u"alt_baro"_qs, 3000}},
                extra);
}

// The prediction for an aircraft flying due north towards the equator home, written out step by step as
// the geometry goes, only to find inputs that land exactly on a boundary of the time window.
double plainPrediction(double lat, double knots)
{
    const double speed = knots * metresPerSecondPerKnot;
    const double east = std::sin(0.0) * speed;
    const double north = std::cos(0.0) * speed;
    const double squares = east * east + north * north;
    const double offsetEast = std::cos(0.0) * metresPerDegree * (0.0 - 0.0);
    const double offsetNorth = (lat - 0.0) * metresPerDegree;
    return -(offsetEast * east + offsetNorth * north) / squares;
}

// An aircraft south of the equator home flying north whose time to the pass is exactly `seconds`, then
// `nudge` steps of its ground speed further (to just inside the window); a NaN speed when none is found.
QJsonObject exactApproach(double seconds, int nudge)
{
    for (int k = 1; k <= 64; ++k) {
        const double lat = -k / 128.0; // a binary fraction: its metres come out exact
        double knots = (-lat * metresPerDegree / seconds) / metresPerSecondPerKnot;
        if (knots <= 31)
            continue;
        for (int i = 0; i < 64; ++i)
            knots = std::nextafter(knots, -INFINITY);
        for (int i = 0; i < 128; ++i, knots = std::nextafter(knots, INFINITY)) {
            if (plainPrediction(lat, knots) != seconds)
                continue;
            const double direction = nudge < 0 ? -INFINITY : INFINITY;
            for (int step = 0;
                 step < std::abs(nudge) || (nudge != 0 && plainPrediction(lat, knots) == seconds); ++step)
                knots = std::nextafter(knots, direction);
            return QJsonObject{{u"hex"_qs, u"4b1a30"_qs}, {u"lat"_qs, lat},  {u"lon"_qs, 0.0},
                               {u"track"_qs, 0.0},        {u"gs"_qs, knots}, {u"alt_baro"_qs, 3000}};
        }
    }
    return QJsonObject{{u"hex"_qs, u"4b1a30"_qs}, {u"gs"_qs, std::nan("")}};
}

const QJsonObject emergencyRow{{u"hex"_qs, u"a499c3"_qs},
                               {u"squawk"_qs, u"7700"_qs},
                               {u"flight"_qs, u"DLH4AX  "_qs},
                               {u"alt_baro"_qs, 8000}};
const QJsonObject militaryRow{{u"hex"_qs, u"ae1234"_qs}, {u"dbFlags"_qs, 1}, {u"alt_baro"_qs, 9000}};
const QJsonObject lowRow{{u"hex"_qs, u"3c6444"_qs}, {u"alt_baro"_qs, 500}};
const QJsonObject heliRow{{u"hex"_qs, u"3c0001"_qs}, {u"category"_qs, u"A7"_qs}, {u"alt_baro"_qs, 2500}};
const QJsonObject combinedRow{
    {u"hex"_qs, u"ae01ce"_qs}, {u"squawk"_qs, u"7700"_qs}, {u"dbFlags"_qs, 1}, {u"alt_baro"_qs, 500}};

QString describe(const AlertEngine::Alert &alert)
{
    return alert.rule + u'|' + alert.hex + u'|' + alert.title;
}

} // namespace

class AlertEngineTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void rules_data();
    void rules();
    void rangeGate_data();
    void rangeGate();
    void parseWatchlist_data();
    void parseWatchlist();
    void matches_data();
    void matches();
    void flyoverETA_data();
    void flyoverETA();
    void body_data();
    void body();
    void cooldownPerRuleAndAircraft();
    void identifierCarriesTheMoment_data();
    void identifierCarriesTheMoment();
    void settingsAreReadAtEachEvaluation();
    void restartForgetsCooldowns();
    void notificationsReachTheService();
    void withoutNotificationServiceStillStamps();
    void withoutBusStillStamps();

private:
    // Runs one evaluation at the current clock and gives what the engine posted in it.
    QList<AlertEngine::Alert> evaluate(const QList<Aircraft> &aircraft, const HomeLocation &where = home);
    void setSettings(const QVariantMap &settings);
    // Waits until the service has received this many notifications in all.
    bool waitForNotifications(qsizetype count);

    std::unique_ptr<PrivateSessionBus> m_bus;
    std::unique_ptr<FakeNotificationServer> m_server;
    int m_connections = 0;

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<DefaultsStore> m_defaults;
    std::unique_ptr<DesktopNotifier> m_notifier;
    std::unique_ptr<AlertEngine> m_engine;
    QDateTime m_now;
    QList<AlertEngine::Alert> m_alerts;
    qsizetype m_serverBaseline = 0;
};

void AlertEngineTest::initTestCase()
{
    // Numbers in titles and bodies must not follow the user's locale.
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    m_bus = std::make_unique<PrivateSessionBus>();
    QVERIFY2(m_bus->isRunning(), qPrintable(m_bus->errorString()));
    m_server = std::make_unique<FakeNotificationServer>();
    QVERIFY(m_server->registerOn(m_bus->connect(u"notification-service"_qs)));
}

void AlertEngineTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    m_defaults = std::make_unique<DefaultsStore>(m_dir->filePath(u"Aerolume.conf"_qs));
    m_notifier = std::make_unique<DesktopNotifier>(m_bus->connect(u"app-%1"_qs.arg(++m_connections)));
    m_now = QDateTime::fromSecsSinceEpoch(1795000000, QTimeZone::utc());
    m_engine = std::make_unique<AlertEngine>(m_defaults.get(), m_notifier.get(), [this] { return m_now; });
    m_alerts.clear();
    connect(m_engine.get(), &AlertEngine::alerted, this,
            [this](const AlertEngine::Alert &alert) { m_alerts.append(alert); });
    m_serverBaseline = m_server->notifications().size();
}

void AlertEngineTest::cleanup()
{
    // Every alert of the test reaches the service before the next test starts, so none of them lands
    // in the next test's count.
    const qsizetype expected = m_serverBaseline + m_alerts.size();
    const bool delivered = waitForNotifications(expected);
    m_engine.reset();
    m_notifier.reset();
    m_defaults.reset();
    m_dir.reset();
    QVERIFY2(delivered, qPrintable(u"%1 of %2 notifications reached the service"_qs
                                       .arg(m_server->notifications().size() - m_serverBaseline)
                                       .arg(expected - m_serverBaseline)));
}

bool AlertEngineTest::waitForNotifications(qsizetype count)
{
    QSignalSpy spy(m_server.get(), &FakeNotificationServer::notified);
    while (m_server->notifications().size() < count) {
        if (!spy.wait(5000))
            return false;
    }
    return m_server->notifications().size() == count;
}

QList<AlertEngine::Alert> AlertEngineTest::evaluate(const QList<Aircraft> &aircraft,
                                                    const HomeLocation &where)
{
    const qsizetype before = m_alerts.size();
    m_engine->evaluate(aircraft, where);
    return m_alerts.mid(before);
}

void AlertEngineTest::setSettings(const QVariantMap &settings)
{
    for (auto it = settings.begin(); it != settings.end(); ++it)
        m_defaults->setValue(it.key(), it.value());
}

void AlertEngineTest::rules_data()
{
    QTest::addColumn<QVariantMap>("settings");
    QTest::addColumn<QJsonArray>("rows");
    QTest::addColumn<QStringList>("expected");

    const QVariantMap on{{u"alertsEnabled"_qs, true}};
    const auto plus = [&](const QVariantMap &more) {
        QVariantMap settings = on;
        settings.insert(more);
        return settings;
    };
    const QVariantMap lowOnly = plus({{u"alertEmergency"_qs, false}, {u"alertLowAltitude"_qs, true}});
    const QVariantMap flyoverOnly = plus({{u"alertEmergency"_qs, false}, {u"alertFlyover"_qs, true}});
    const QJsonObject overhead = approach(home, 2000, 0, 0, 60);

    QTest::newRow("master switch unset: emergency counts as on, still nothing")
        << QVariantMap{} << QJsonArray{emergencyRow} << QStringList{};
    QTest::newRow("master switch off")
        << QVariantMap{{u"alertsEnabled"_qs, false}, {u"alertMilitary"_qs, true}}
        << QJsonArray{emergencyRow, militaryRow} << QStringList{};
    QTest::newRow("fresh settings: only the emergency rule")
        << on << QJsonArray{emergencyRow, militaryRow, lowRow, heliRow, overhead}
        << QStringList{u"emergency|a499c3|Emergency squawk 7700"_qs};
    QTest::newRow("fresh settings with a watchlist: emergency and watchlist")
        << plus({{u"alertWatchlist"_qs, u"dlh4ax, ae1234"_qs}})
        << QJsonArray{emergencyRow, militaryRow, lowRow}
        << QStringList{u"emergency|a499c3|Emergency squawk 7700"_qs, u"watch|a499c3|Watchlist: DLH4AX"_qs,
                       u"watch|ae1234|Watchlist: AE1234"_qs};
    QTest::newRow("range stored as a number")
        << plus({{u"alertRangeMiles"_qs, 10.0}})
        << QJsonArray{with(emergencyRow, {{u"hex"_qs, u"000869"_qs}, {u"dst"_qs, 8.69}}),
                      with(emergencyRow, {{u"hex"_qs, u"000868"_qs}, {u"dst"_qs, 8.68}})}
        << QStringList{u"emergency|000868|Emergency squawk 7700"_qs};
    QTest::newRow("emergency switched off")
        << plus({{u"alertEmergency"_qs, false}}) << QJsonArray{emergencyRow} << QStringList{};
    QTest::newRow("emergency without squawk keeps the blank")
        << on << QJsonArray{QJsonObject{{u"hex"_qs, u"4ca1b2"_qs}, {u"emergency"_qs, u"general"_qs}}}
        << QStringList{u"emergency|4ca1b2|Emergency squawk "_qs};
    QTest::newRow("no emergency: status none, ordinary squawk")
        << on
        << QJsonArray{QJsonObject{
               {u"hex"_qs, u"4ca1b3"_qs}, {u"emergency"_qs, u"none"_qs}, {u"squawk"_qs, u"1200"_qs}}}
        << QStringList{};
    QTest::newRow("three rules of one aircraft in one refresh")
        << plus({{u"alertMilitary"_qs, true}, {u"alertLowAltitude"_qs, true}}) << QJsonArray{combinedRow}
        << QStringList{u"emergency|ae01ce|Emergency squawk 7700"_qs,
                       u"military|ae01ce|Military aircraft in range"_qs,
                       u"low|ae01ce|Low-flying aircraft"_qs};
    QTest::newRow("aircraft in list order")
        << on
        << QJsonArray{QJsonObject{{u"hex"_qs, u"000003"_qs}, {u"squawk"_qs, u"7600"_qs}},
                      QJsonObject{{u"hex"_qs, u"000001"_qs}, {u"squawk"_qs, u"7500"_qs}}}
        << QStringList{u"emergency|000003|Emergency squawk 7600"_qs,
                       u"emergency|000001|Emergency squawk 7500"_qs};
    QTest::newRow("military is bit 0 of the flags")
        << plus({{u"alertEmergency"_qs, false}, {u"alertMilitary"_qs, true}})
        << QJsonArray{QJsonObject{{u"hex"_qs, u"ae0002"_qs}, {u"dbFlags"_qs, 2}},
                      QJsonObject{{u"hex"_qs, u"ae0003"_qs}, {u"dbFlags"_qs, 3}},
                      QJsonObject{{u"hex"_qs, u"ae0004"_qs}}}
        << QStringList{u"military|ae0003|Military aircraft in range"_qs};
    QTest::newRow("helicopters by category and by type")
        << plus({{u"alertEmergency"_qs, false}, {u"alertHelicopters"_qs, true}})
        << QJsonArray{heliRow, QJsonObject{{u"hex"_qs, u"3c0002"_qs}, {u"t"_qs, u"ec35"_qs}},
                      QJsonObject{{u"hex"_qs, u"3c0003"_qs}, {u"t"_qs, u"A320"_qs}}}
        << QStringList{u"heli|3c0001|Helicopter in range"_qs, u"heli|3c0002|Helicopter in range"_qs};

    // Low altitude: the barometric altitude wins; on the ground nothing, whatever the geometric one says.
    const auto lowRowWith = [](const QJsonObject &altitudes) {
        return QJsonArray{with(QJsonObject{{u"hex"_qs, u"c0ffee"_qs}}, altitudes)};
    };
    const QString lowTitle = u"low|c0ffee|Low-flying aircraft"_qs;
    QTest::newRow("low: ground with a geometric altitude")
        << lowOnly << lowRowWith({{u"alt_baro"_qs, u"ground"_qs}, {u"alt_geom"_qs, 100}}) << QStringList{};
    QTest::newRow("low: only a geometric altitude of 100")
        << lowOnly << lowRowWith({{u"alt_geom"_qs, 100}}) << QStringList{lowTitle};
    QTest::newRow("low: barometric 3000 over geometric 100")
        << lowOnly << lowRowWith({{u"alt_baro"_qs, 3000}, {u"alt_geom"_qs, 100}}) << QStringList{};
    QTest::newRow("low: below sea level")
        << lowOnly << lowRowWith({{u"alt_baro"_qs, -50}}) << QStringList{lowTitle};
    QTest::newRow("low: 1999 ft") << lowOnly << lowRowWith({{u"alt_baro"_qs, 1999}}) << QStringList{lowTitle};
    QTest::newRow("low: 2000 ft") << lowOnly << lowRowWith({{u"alt_baro"_qs, 2000}}) << QStringList{};
    QTest::newRow("low: no altitude at all") << lowOnly << lowRowWith({}) << QStringList{};

    // Watchlist: lower case, stray blanks and empty pieces fall away; no prefix matching; a line break
    // is part of its entry.
    const QVariantMap watch = plus({{u"alertEmergency"_qs, false},
                                    {u"alertWatchlist"_qs, u" dlh4ax , ,n123ab,,\t3C6444 ,\nBAW1, DLH"_qs}});
    QTest::newRow(
        "watchlist: flight with trailing blanks, registration, hex, no prefix, no line break trimming")
        << watch
        << QJsonArray{QJsonObject{{u"hex"_qs, u"a00001"_qs}, {u"flight"_qs, u"DLH4AX  "_qs}},
                      QJsonObject{{u"hex"_qs, u"a00002"_qs}, {u"r"_qs, u"n123ab"_qs}},
                      QJsonObject{{u"hex"_qs, u"3c6444"_qs}},
                      QJsonObject{{u"hex"_qs, u"a00004"_qs}, {u"flight"_qs, u"BAW1"_qs}},
                      QJsonObject{{u"hex"_qs, u"a00005"_qs}, {u"flight"_qs, u"DLH4"_qs}}}
        << QStringList{u"watch|a00001|Watchlist: DLH4AX"_qs, u"watch|a00002|Watchlist: n123ab"_qs,
                       u"watch|3c6444|Watchlist: 3C6444"_qs};
    // Short plain identities and long or non-ASCII ones are looked up differently: both must be found,
    // and a prefix of a long entry must not be.
    QTest::newRow("watchlist: long, accented and eight-character entries")
        << plus({{u"alertEmergency"_qs, false},
                 {u"alertWatchlist"_qs, u"verylongcallsign1, stra\u00dfe, abcdefgh, abcdefg"_qs}})
        << QJsonArray{QJsonObject{{u"hex"_qs, u"b00001"_qs}, {u"flight"_qs, u"VERYLONGCALLSIGN1"_qs}},
                      QJsonObject{{u"hex"_qs, u"b00002"_qs}, {u"flight"_qs, u"VERYLONGCALLSIGN"_qs}},
                      QJsonObject{{u"hex"_qs, u"b00003"_qs}, {u"flight"_qs, u"Stra\u00dfe"_qs}},
                      QJsonObject{{u"hex"_qs, u"b00004"_qs}, {u"r"_qs, u"ABCDEFGH"_qs}},
                      QJsonObject{{u"hex"_qs, u"b00005"_qs}, {u"r"_qs, u"ABCDEFGHI"_qs}},
                      QJsonObject{{u"hex"_qs, u"b00006"_qs}, {u"r"_qs, u"BCDEFG"_qs}}}
        << QStringList{u"watch|b00001|Watchlist: VERYLONGCALLSIGN1"_qs, u"watch|b00003|Watchlist: Stra\u00dfe"_qs,
                       u"watch|b00004|Watchlist: ABCDEFGH"_qs};
    QTest::newRow("watchlist of blanks and commas only")
        << plus({{u"alertEmergency"_qs, false}, {u"alertWatchlist"_qs, u" , ,,\t "_qs}})
        << QJsonArray{QJsonObject{{u"hex"_qs, u"a00001"_qs}, {u"flight"_qs, u" "_qs}}} << QStringList{};

    // Fly-over through the settings: the title's number is t cut down, the miss limit from the setting.
    QTest::newRow("flyover: straight at home, 2000 m at 60 m/s")
        << flyoverOnly << QJsonArray{overhead}
        << QStringList{u"flyover|4b1a2f|Passing overhead in about 33 seconds"_qs};
    QTest::newRow("flyover: 87.9 s cut down to 87")
        << flyoverOnly << QJsonArray{approach(home, 87.9 * 50, 0, 0, 50)}
        << QStringList{u"flyover|4b1a2f|Passing overhead in about 87 seconds"_qs};
    QTest::newRow("flyover: after the pass")
        << flyoverOnly << QJsonArray{approach(home, -2000, 0, 0, 60)} << QStringList{};
    QTest::newRow("flyover: switched off by default")
        << plus({{u"alertEmergency"_qs, false}}) << QJsonArray{overhead} << QStringList{};
    const QVariantMap quarterMile = plus(
        {{u"alertEmergency"_qs, false}, {u"alertFlyover"_qs, true}, {u"flyoverMissMiles"_qs, u"0.25"_qs}});
    QTest::newRow("flyover: quarter mile, 402.3 m off")
        << quarterMile << QJsonArray{approach(home, 2000, 402.3, 0, 60)}
        << QStringList{u"flyover|4b1a2f|Passing overhead in about 33 seconds"_qs};
    QTest::newRow("flyover: quarter mile, 402.4 m off")
        << quarterMile << QJsonArray{approach(home, 2000, 402.4, 0, 60)} << QStringList{};
    const QVariantMap unreadableMiss = plus(
        {{u"alertEmergency"_qs, false}, {u"alertFlyover"_qs, true}, {u"flyoverMissMiles"_qs, u"far"_qs}});
    QTest::newRow("flyover: unreadable miss setting, 1206.9 m off")
        << unreadableMiss << QJsonArray{approach(home, 2000, -1206.9, 0, 60)}
        << QStringList{u"flyover|4b1a2f|Passing overhead in about 33 seconds"_qs};
    QTest::newRow("flyover: unreadable miss setting, 1207.1 m off")
        << unreadableMiss << QJsonArray{approach(home, 2000, -1207.1, 0, 60)} << QStringList{};
}

void AlertEngineTest::rules()
{
    QFETCH(QVariantMap, settings);
    QFETCH(QJsonArray, rows);
    QFETCH(QStringList, expected);

    setSettings(settings);
    QStringList fired;
    QStringList keys;
    for (const AlertEngine::Alert &alert : evaluate(planes(rows))) {
        fired.append(describe(alert));
        keys.append(alert.rule + u'-' + alert.hex);
    }
    QCOMPARE(fired, expected);
    // Each notification stands under its own cooldown key.
    QCOMPARE(m_engine->lastAlerted().size(), expected.size());
    for (const QString &key : std::as_const(keys))
        QCOMPARE(m_engine->lastAlerted().value(key), m_now);

    // And each one reaches the notification service, with its title as the summary.
    QVERIFY(waitForNotifications(m_serverBaseline + expected.size()));
    QStringList summaries;
    for (qsizetype i = m_serverBaseline; i < m_server->notifications().size(); ++i)
        summaries.append(m_server->notifications()[i].summary);
    QStringList titles;
    for (const QString &line : expected)
        titles.append(line.section(u'|', 2));
    QCOMPARE(summaries, titles);
}

void AlertEngineTest::rangeGate_data()
{
    QTest::addColumn<QString>("rangeMiles");
    QTest::addColumn<QVariant>("distanceNM");
    QTest::addColumn<bool>("passes");

    // A distance whose statute miles are the range itself, to the last bit.
    const double atLimitNM = 8.7;
    const double atLimitMiles = atLimitNM * 1.15078;
    const double beyondLimitNM = std::nextafter(atLimitNM, INFINITY);
    const QString exactRange = QString::number(atLimitMiles, 'g', 17);

    QTest::newRow("10 mi, 8.69 nm (10.0003 mi)") << u"10"_qs << QVariant(8.69) << false;
    QTest::newRow("10 mi, 8.68 nm") << u"10"_qs << QVariant(8.68) << true;
    QTest::newRow("exactly at the limit") << exactRange << QVariant(atLimitNM) << true;
    QVERIFY(beyondLimitNM * 1.15078 > atLimitMiles);
    QTest::newRow("a hair beyond the limit") << exactRange << QVariant(beyondLimitNM) << false;
    QTest::newRow("10 mi, no distance") << u"10"_qs << QVariant() << true;
    QTest::newRow("no gate: 0, far away") << u"0"_qs << QVariant(500.0) << true;
    QTest::newRow("no gate: unreadable, far away") << u"ten"_qs << QVariant(500.0) << true;
    QTest::newRow("no gate: negative, far away") << u"-3"_qs << QVariant(500.0) << true;
    QTest::newRow("emergency well outside") << u"5"_qs << QVariant(20.0) << false;
}

void AlertEngineTest::rangeGate()
{
    QFETCH(QString, rangeMiles);
    QFETCH(QVariant, distanceNM);
    QFETCH(bool, passes);

    // Emergency and watchlist both: a skipped aircraft is tested for no rule at all.
    setSettings({{u"alertsEnabled"_qs, true},
                 {u"alertRangeMiles"_qs, rangeMiles},
                 {u"alertWatchlist"_qs, u"a499c3"_qs}});
    QJsonObject row = emergencyRow;
    if (distanceNM.isValid())
        row.insert(u"dst"_qs, distanceNM.toDouble());
    const Aircraft aircraft = plane(row);
    if (distanceNM.isValid())
        QCOMPARE(*aircraft.distanceNM(), distanceNM.toDouble());

    QStringList fired;
    for (const AlertEngine::Alert &alert : evaluate({aircraft}))
        fired.append(alert.rule);
    QCOMPARE(fired, passes ? QStringList({u"emergency"_qs, u"watch"_qs}) : QStringList());
}

void AlertEngineTest::parseWatchlist_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("empty") << QString() << QStringList{};
    QTest::newRow("lower case, blanks, empty pieces")
        << u" dlh4ax , ,n123ab,,\tbaw1\t"_qs << QStringList{u"DLH4AX"_qs, u"N123AB"_qs, u"BAW1"_qs};
    QTest::newRow("only blanks and commas") << u" , ,, \t,"_qs << QStringList{};
    QTest::newRow("only commas") << u",,,"_qs << QStringList{};
    QTest::newRow("line breaks stay") << u"\nabc, def\n"_qs << QStringList{u"\nABC"_qs, u"DEF\n"_qs};
    QTest::newRow("order and duplicates kept") << u"b,a,b"_qs << QStringList{u"B"_qs, u"A"_qs, u"B"_qs};
    QTest::newRow("semicolon is no separator") << u"a;b, c"_qs << QStringList{u"A;B"_qs, u"C"_qs};
    QTest::newRow("inner blanks stay") << u" d aibl "_qs << QStringList{u"D AIBL"_qs};
}

void AlertEngineTest::parseWatchlist()
{
    QFETCH(QString, text);
    QFETCH(QStringList, expected);
    QCOMPARE(AlertEngine::parseWatchlist(text), expected);
}

void AlertEngineTest::matches_data()
{
    QTest::addColumn<QJsonObject>("row");
    QTest::addColumn<QStringList>("watchlist");
    QTest::addColumn<bool>("expected");

    const QJsonObject full{
        {u"hex"_qs, u"3c6444"_qs}, {u"flight"_qs, u" dlh4ax\t "_qs}, {u"r"_qs, u"d-aibl"_qs}};
    QTest::newRow("flight trimmed and upper-cased") << full << QStringList{u"DLH4AX"_qs} << true;
    QTest::newRow("registration upper-cased") << full << QStringList{u"D-AIBL"_qs} << true;
    QTest::newRow("hex upper-cased") << full << QStringList{u"3C6444"_qs} << true;
    QTest::newRow("lower-case entry never matches") << full << QStringList{u"3c6444"_qs} << false;
    QTest::newRow("no prefix") << full << QStringList{u"DLH"_qs, u"3C644"_qs, u"D-AIB"_qs} << false;
    QTest::newRow("no longer text") << full << QStringList{u"DLH4AXX"_qs, u"D-AIBLX"_qs, u"3C64440"_qs}
                                    << false;
    QTest::newRow("any entry") << full << QStringList{u"XXX"_qs, u"D-AIBL"_qs} << true;
    QTest::newRow("empty list") << full << QStringList{} << false;
    QTest::newRow("no flight, no registration: hex only")
        << QJsonObject{{u"hex"_qs, u"abc123"_qs}} << QStringList{u"ABC123"_qs} << true;
    QTest::newRow("non-ASCII callsign takes the full mapping")
        << QJsonObject{{u"hex"_qs, u"abc123"_qs}, {u"flight"_qs, u"stra\u00dfe"_qs}} << QStringList{u"STRASSE"_qs} << true;
    QTest::newRow("no-break space trimmed")
        << QJsonObject{{u"hex"_qs, u"abc123"_qs}, {u"flight"_qs, u"\u00a0ual1\u00a0"_qs}} << QStringList{u"UAL1"_qs} << true;
    QTest::newRow("accented registration")
        << QJsonObject{{u"hex"_qs, u"abc123"_qs}, {u"r"_qs, u"\u00e9-abc"_qs}} << QStringList{u"\u00c9-ABC"_qs} << true;
    QTest::newRow("text longer than a short buffer")
        << QJsonObject{{u"hex"_qs, u"abc123"_qs}, {u"r"_qs, u"abcdefghijklmnopqrstuvwxyz"_qs}}
        << QStringList{u"ABCDEFGHIJKLMNOPQRSTUVWXYZ"_qs} << true;
    QTest::newRow("a missing flight matches no empty entry")
        << QJsonObject{{u"hex"_qs, u"abc123"_qs}} << QStringList{QString()} << false;
}

void AlertEngineTest::matches()
{
    QFETCH(QJsonObject, row);
    QFETCH(QStringList, watchlist);
    QFETCH(bool, expected);
    QCOMPARE(AlertEngine::matches(plane(row), watchlist), expected);
}

void AlertEngineTest::flyoverETA_data()
{
    QTest::addColumn<HomeLocation>("centre");
    QTest::addColumn<QJsonObject>("row");
    QTest::addColumn<QVariant>("missMiles");
    QTest::addColumn<QVariant>("expected"); // seconds, or nothing

    const QVariant none;
    const QVariant defaultMiss;
    QTest::newRow("straight at home, 2000 m at 60 m/s")
        << home << approach(home, 2000, 0, 0, 60) << defaultMiss << QVariant(2000.0 / 60.0);
    QTest::newRow("from the east, heading west")
        << home << approach(home, 0, 3000, 270, 100) << defaultMiss << QVariant(30.0);
    QTest::newRow("after the pass") << home << approach(home, -2000, 0, 0, 60) << defaultMiss << none;
    QTest::newRow("heading away") << home << approach(home, 2000, 0, 180, 60) << defaultMiss << none;

    const auto without = [&](const QString &key) {
        QJsonObject row = approach(home, 2000, 0, 0, 60);
        row.remove(key);
        return row;
    };
    QTest::newRow("no latitude") << home << without(u"lat"_qs) << defaultMiss << none;
    QTest::newRow("no longitude") << home << without(u"lon"_qs) << defaultMiss << none;
    QTest::newRow("no track") << home << without(u"track"_qs) << defaultMiss << none;
    QTest::newRow("no ground speed") << home << without(u"gs"_qs) << defaultMiss << none;

    // 500 m south, flying north: about 32 s at 30 knots.
    const auto atKnots = [&](double knots) {
        return with(approach(home, 500, 0, 0, 15), {{u"gs"_qs, knots}});
    };
    QTest::newRow("30.0 knots") << home << atKnots(30.0) << defaultMiss << none;
    QTest::newRow("30.1 knots") << home << atKnots(30.1) << defaultMiss
                                << QVariant(500.0 / (30.1 * 0.514444));

    const auto atAltitude = [&](const QJsonObject &altitudes) {
        QJsonObject row = approach(home, 2000, 0, 0, 60);
        row.remove(u"alt_baro"_qs);
        return with(row, altitudes);
    };
    const QVariant overhead(2000.0 / 60.0);
    QTest::newRow("19999 ft") << home << atAltitude({{u"alt_baro"_qs, 19999}}) << defaultMiss << overhead;
    QTest::newRow("20000 ft") << home << atAltitude({{u"alt_baro"_qs, 20000}}) << defaultMiss << none;
    QTest::newRow("below sea level") << home << atAltitude({{u"alt_baro"_qs, -300}}) << defaultMiss
                                     << overhead;
    QTest::newRow("on the ground") << home
                                   << atAltitude({{u"alt_baro"_qs, u"ground"_qs}, {u"alt_geom"_qs, 300}})
                                   << defaultMiss << none;
    QTest::newRow("geometric altitude only")
        << home << atAltitude({{u"alt_geom"_qs, 5000}}) << defaultMiss << overhead;
    QTest::newRow("barometric over geometric")
        << home << atAltitude({{u"alt_baro"_qs, 5000}, {u"alt_geom"_qs, 25000}}) << defaultMiss << overhead;
    QTest::newRow("no altitude") << home << atAltitude({}) << defaultMiss << none;

    // The time window, open at both ends.
    QTest::newRow("t exactly 5") << equatorHome << exactApproach(5, 0) << defaultMiss << none;
    QTest::newRow("t a hair above 5") << equatorHome << exactApproach(5, -1) << defaultMiss << QVariant(5.0);
    QTest::newRow("t exactly 120") << equatorHome << exactApproach(120, 0) << defaultMiss << none;
    QTest::newRow("t a hair below 120")
        << equatorHome << exactApproach(120, 1) << defaultMiss << QVariant(120.0);
    QTest::newRow("t 5.01") << home << approach(home, 5.01 * 100, 0, 0, 100) << defaultMiss << QVariant(5.01);
    QTest::newRow("t 4.99") << home << approach(home, 4.99 * 100, 0, 0, 100) << defaultMiss << none;
    QTest::newRow("t 119.99") << home << approach(home, 119.99 * 20, 0, 0, 20) << defaultMiss
                              << QVariant(119.99);
    QTest::newRow("t 120.01") << home << approach(home, 120.01 * 20, 0, 0, 20) << defaultMiss << none;

    // The miss limit: below it, never equal.
    QTest::newRow("default limit, 1206.9 m off")
        << home << approach(home, 2000, 1206.9, 0, 60) << defaultMiss << overhead;
    QTest::newRow("default limit, 1207.1 m off")
        << home << approach(home, 2000, 1207.1, 0, 60) << defaultMiss << none;
    QTest::newRow("quarter mile, 402.3 m off")
        << home << approach(home, 2000, 402.3, 0, 60) << QVariant(0.25) << overhead;
    QTest::newRow("quarter mile, 402.4 m off")
        << home << approach(home, 2000, 402.4, 0, 60) << QVariant(0.25) << none;
    QTest::newRow("limit 0: even a direct hit misses")
        << home << approach(home, 2000, 0, 0, 60) << QVariant(0.0) << none;
    QTest::newRow("passing 1 km to the west at the equator")
        << equatorHome << approach(equatorHome, 2000, -1000, 0, 60) << defaultMiss << overhead;
}

void AlertEngineTest::flyoverETA()
{
    QFETCH(HomeLocation, centre);
    QFETCH(QJsonObject, row);
    QFETCH(QVariant, missMiles);
    QFETCH(QVariant, expected);

    const Aircraft aircraft = plane(row);
    // Boundary cases hang on the last bit: the record must hold exactly what the case was built from.
    QVERIFY2(!std::isnan(row.value(u"gs"_qs).toDouble()), "no input found for the boundary");
    if (row.contains(u"lat"_qs))
        QVERIFY(aircraft.lat() && *aircraft.lat() == row.value(u"lat"_qs).toDouble());
    if (row.contains(u"gs"_qs))
        QVERIFY(aircraft.groundSpeed() && *aircraft.groundSpeed() == row.value(u"gs"_qs).toDouble());
    const std::optional<double> miss =
        missMiles.isValid() ? std::optional(missMiles.toDouble()) : std::nullopt;
    const std::optional<double> eta = AlertEngine::flyoverETA(aircraft, centre, miss);
    if (!expected.isValid()) {
        QVERIFY2(!eta, qPrintable(u"t = %1"_qs.arg(eta.value_or(0), 0, 'g', 17)));
        return;
    }
    QVERIFY(eta);
    QVERIFY2(
        std::abs(*eta - expected.toDouble()) < 1e-6,
        qPrintable(u"t = %1, expected %2"_qs.arg(*eta, 0, 'g', 17).arg(expected.toDouble(), 0, 'g', 17)));
}

void AlertEngineTest::body_data()
{
    QTest::addColumn<QJsonObject>("row");
    QTest::addColumn<QString>("expected");

    QTest::newRow("name, type and look")
        << QJsonObject{{u"hex"_qs, u"3c6444"_qs}, {u"flight"_qs, u"DLH4AX "_qs},
                       {u"t"_qs, u"A320"_qs},     {u"dir"_qs, 247.5},
                       {u"dst"_qs, 3.0},          {u"alt_baro"_qs, 10000}}
        << u"DLH4AX · Airbus A320 · Look WSW, 29° up"_qs;
    QTest::newRow("name only") << QJsonObject{{u"hex"_qs, u"3c6444"_qs}} << u"3C6444"_qs;
    QTest::newRow("name and look, no type") << QJsonObject{{u"hex"_qs, u"3c6444"_qs},
                                                           {u"r"_qs, u"D-AIBL"_qs},
                                                           {u"dir"_qs, 90.0},
                                                           {u"dst"_qs, 2.0}}
                                            << u"D-AIBL · Look E"_qs;
    QTest::newRow("name and type, no look") << QJsonObject{{u"hex"_qs, u"3c6444"_qs},
                                                           {u"flight"_qs, u"CHX16"_qs},
                                                           {u"t"_qs, u"EC35"_qs},
                                                           {u"dst"_qs, 2.0}}
                                            << u"CHX16 · Airbus H135"_qs;
    QTest::newRow("unknown type code shows no type")
        << QJsonObject{{u"hex"_qs, u"3c6444"_qs}, {u"flight"_qs, u"XYZ1"_qs}, {u"t"_qs, u"ZZZZ"_qs}}
        << u"XYZ1"_qs;
}

void AlertEngineTest::body()
{
    QFETCH(QJsonObject, row);
    QFETCH(QString, expected);
    QCOMPARE(AlertEngine::body(plane(row)), expected);

    // Every rule's notification carries this same body.
    setSettings({{u"alertsEnabled"_qs, true}, {u"alertWatchlist"_qs, row.value(u"hex"_qs).toString()}});
    const auto alerts = evaluate({plane(with(row, {{u"squawk"_qs, u"7700"_qs}}))});
    QCOMPARE(alerts.size(), 2);
    QCOMPARE(alerts[0].body, expected);
    QCOMPARE(alerts[1].body, expected);
}

void AlertEngineTest::cooldownPerRuleAndAircraft()
{
    setSettings({{u"alertsEnabled"_qs, true}, {u"alertMilitary"_qs, true}});
    const QDateTime start = m_now;
    const Aircraft emergency = plane(emergencyRow);
    const Aircraft emergencyUpper = plane(with(emergencyRow, {{u"hex"_qs, u"A499C3"_qs}}));
    const Aircraft emergencyAndMilitary = plane(with(emergencyRow, {{u"dbFlags"_qs, 1}}));

    QCOMPARE(evaluate({emergency}).size(), 1);

    // A military flag that appears later fires at once: each rule has its own cooldown.
    m_now = start.addSecs(1000);
    QStringList fired;
    for (const auto &alert : evaluate({emergencyAndMilitary}))
        fired.append(alert.rule);
    QCOMPARE(fired, QStringList{u"military"_qs});

    // The same letters in another case are another aircraft.
    fired.clear();
    for (const auto &alert : evaluate({emergencyUpper}))
        fired.append(alert.rule + u'-' + alert.hex);
    QCOMPARE(fired, QStringList{u"emergency-A499C3"_qs});

    // Neither a change of settings nor a change of home resets a cooldown, and a refused repeat leaves
    // the stamp as it was.
    m_defaults->setValue(u"alertEmergency"_qs, false);
    m_defaults->setValue(u"alertEmergency"_qs, true);
    m_now = start.addMSecs(1799999);
    QVERIFY(evaluate({emergency}, equatorHome).isEmpty());
    m_now = start.addSecs(1799);
    QVERIFY(evaluate({emergency}).isEmpty());
    QCOMPARE(m_engine->lastAlerted().value(u"emergency-a499c3"_qs), start);

    m_now = start.addSecs(1800);
    const auto again = evaluate({emergencyAndMilitary});
    QCOMPARE(again.size(), 1);
    QCOMPARE(again[0].rule, u"emergency"_qs);
    QCOMPARE(m_engine->lastAlerted().value(u"emergency-a499c3"_qs), m_now);
    QCOMPARE(m_engine->lastAlerted().value(u"military-a499c3"_qs), start.addSecs(1000));

    // A repeat is a notification of its own, not a replacement of the first.
    m_now = start.addSecs(2800);
    QCOMPARE(evaluate({emergencyAndMilitary}).size(), 1);
    QVERIFY(waitForNotifications(m_serverBaseline + m_alerts.size()));
    QSet<QString> identifiers;
    for (qsizetype i = m_serverBaseline; i < m_server->notifications().size(); ++i) {
        QCOMPARE(m_server->notifications()[i].replacesId, 0u);
        identifiers.insert(m_server->notifications()[i].hints.value(u"x-aerolume-identifier"_qs).toString());
    }
    QCOMPARE(identifiers.size(), m_alerts.size());
}

void AlertEngineTest::identifierCarriesTheMoment_data()
{
    QTest::addColumn<qint64>("msecsSinceEpoch");
    QTest::addColumn<QString>("expected");

    QTest::newRow("whole second") << qint64(1795000000000) << u"emergency-a499c3-1795000000"_qs;
    QTest::newRow("round number") << qint64(1800000000000) << u"emergency-a499c3-1800000000"_qs;
    QTest::newRow("quarter second") << qint64(1795000000250) << u"emergency-a499c3-1795000000.25"_qs;
    QTest::newRow("milliseconds") << qint64(1795000000123) << u"emergency-a499c3-1795000000.123"_qs;
}

void AlertEngineTest::identifierCarriesTheMoment()
{
    QFETCH(qint64, msecsSinceEpoch);
    QFETCH(QString, expected);

    setSettings({{u"alertsEnabled"_qs, true}});
    // The moment is the same whatever zone the clock reports in.
    m_now = QDateTime::fromMSecsSinceEpoch(msecsSinceEpoch, QTimeZone("America/Los_Angeles"));
    const auto alerts = evaluate({plane(emergencyRow)});
    QCOMPARE(alerts.size(), 1);
    QCOMPARE(alerts[0].identifier, expected);
    QVERIFY(waitForNotifications(m_serverBaseline + 1));
    QCOMPARE(m_server->notifications().constLast().hints.value(u"x-aerolume-identifier"_qs).toString(),
             expected);
}

void AlertEngineTest::settingsAreReadAtEachEvaluation()
{
    const Aircraft aircraft = plane(with(emergencyRow, {{u"dbFlags"_qs, 1}}));
    QVERIFY(evaluate({aircraft}).isEmpty());

    // Another program (the command-line tool, say) writes the same file between two refreshes.
    DefaultsStore other(m_defaults->filePath());
    other.setValue(u"alertsEnabled"_qs, true);
    other.setValue(u"alertEmergency"_qs, false);
    other.setValue(u"alertWatchlist"_qs, u"dlh4ax"_qs);
    QStringList fired;
    for (const auto &alert : evaluate({aircraft}))
        fired.append(alert.rule);
    QCOMPARE(fired, QStringList{u"watch"_qs});

    other.setValue(u"alertMilitary"_qs, true);
    fired.clear();
    for (const auto &alert : evaluate({aircraft}))
        fired.append(alert.rule);
    QCOMPARE(fired, QStringList{u"military"_qs});
}

void AlertEngineTest::restartForgetsCooldowns()
{
    setSettings({{u"alertsEnabled"_qs, true}});
    QCOMPARE(evaluate({plane(emergencyRow)}).size(), 1);
    m_now = m_now.addSecs(60);
    QVERIFY(evaluate({plane(emergencyRow)}).isEmpty());

    AlertEngine restarted(m_defaults.get(), m_notifier.get(), [this] { return m_now; });
    QList<AlertEngine::Alert> fired;
    connect(&restarted, &AlertEngine::alerted, this, [&](const AlertEngine::Alert &alert) {
        fired.append(alert);
        m_alerts.append(alert); // so that cleanup waits for its notification too
    });
    restarted.evaluate({plane(emergencyRow)}, home);
    QCOMPARE(fired.size(), 1);
}

void AlertEngineTest::notificationsReachTheService()
{
    setSettings({{u"alertsEnabled"_qs, true}, {u"alertMilitary"_qs, true}, {u"alertLowAltitude"_qs, true}});
    QSignalSpy posted(m_notifier.get(), &DesktopNotifier::posted);
    const Aircraft aircraft = plane(with(combinedRow, {{u"flight"_qs, u"GAF123"_qs}, {u"t"_qs, u"A400"_qs}}));
    const auto alerts = evaluate({aircraft});
    QCOMPARE(alerts.size(), 3);
    QVERIFY(waitForNotifications(m_serverBaseline + 3));

    for (int i = 0; i < 3; ++i) {
        const FakeNotificationServer::Notification &sent = m_server->notifications()[m_serverBaseline + i];
        QCOMPARE(sent.appName, u"Aerolume"_qs);
        QCOMPARE(sent.replacesId, 0u);
        QCOMPARE(sent.appIcon, u"aerolume"_qs);
        QCOMPARE(sent.summary, alerts[i].title);
        QCOMPARE(sent.body, AlertEngine::body(aircraft));
        QVERIFY(!sent.actions.isEmpty());
        QCOMPARE(sent.actions.first(), u"default"_qs);
        QCOMPARE(sent.actions.size() % 2, 0); // pairs of key and label
        QCOMPARE(sent.hints.value(u"desktop-entry"_qs).toString(), u"aerolume"_qs);
    }
    QCOMPARE(m_server->notifications()[m_serverBaseline].summary, u"Emergency squawk 7700"_qs);

    // The notifier remembers which aircraft each notification is about.
    while (posted.size() < 3)
        QVERIFY(posted.wait(5000));
    for (const QList<QVariant> &arguments : std::as_const(posted)) {
        QCOMPARE(arguments.at(1).toString(), u"ae01ce"_qs);
        QCOMPARE(m_notifier->hexFor(arguments.at(0).toUInt()).value_or(QString()), u"ae01ce"_qs);
    }
}

void AlertEngineTest::withoutNotificationServiceStillStamps()
{
    // A bus on which nobody offers notifications: posting fails without a word, the cooldown counts.
    PrivateSessionBus emptyBus;
    QVERIFY2(emptyBus.isRunning(), qPrintable(emptyBus.errorString()));
    const QDBusConnection connection = emptyBus.connect(u"lonely-app"_qs);
    DesktopNotifier notifier(connection);
    AlertEngine engine(m_defaults.get(), &notifier, [this] { return m_now; });
    QList<AlertEngine::Alert> fired;
    connect(&engine, &AlertEngine::alerted, this,
            [&](const AlertEngine::Alert &alert) { fired.append(alert); });
    QSignalSpy posted(&notifier, &DesktopNotifier::posted);
    setSettings({{u"alertsEnabled"_qs, true}});

    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    engine.evaluate({plane(emergencyRow)}, home);
    QCOMPARE(fired.size(), 1);
    QCOMPARE(engine.lastAlerted().value(u"emergency-a499c3"_qs), m_now);

    // The failed calls have come back, and nothing was taken for a notification.
    QVERIFY(PrivateSessionBus::settle(connection));
    QCOMPARE(posted.size(), 0);

    m_now = m_now.addSecs(600);
    engine.evaluate({plane(emergencyRow)}, home);
    QCOMPARE(fired.size(), 1);
}

void AlertEngineTest::withoutBusStillStamps()
{
    DesktopNotifier notifier(
        QDBusConnection::connectToBus(u"unix:path=/nonexistent/aerolume-test-bus"_qs, u"no-bus"_qs));
    AlertEngine engine(m_defaults.get(), &notifier, [this] { return m_now; });
    QList<AlertEngine::Alert> fired;
    connect(&engine, &AlertEngine::alerted, this,
            [&](const AlertEngine::Alert &alert) { fired.append(alert); });
    setSettings({{u"alertsEnabled"_qs, true}});

    engine.evaluate({plane(emergencyRow)}, home);
    QCOMPARE(fired.size(), 1);
    QCOMPARE(engine.lastAlerted().value(u"emergency-a499c3"_qs), m_now);
    m_now = m_now.addSecs(1799);
    engine.evaluate({plane(emergencyRow)}, home);
    QCOMPARE(fired.size(), 1);
    QDBusConnection::disconnectFromBus(u"no-bus"_qs);
}

QTEST_GUILESS_MAIN(AlertEngineTest)
#include "AlertEngineTest.moc"
