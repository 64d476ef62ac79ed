#include "SightingLog.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

#include <memory>

namespace {

const QByteArray berlin = "Europe/Berlin";
const QByteArray losAngeles = "America/Los_Angeles";

Aircraft plane(const QString &hex, const std::optional<QString> &typeCode = std::nullopt)
{
    QJsonObject row{{u"hex"_qs, hex}};
    if (typeCode)
        row.insert(u"t"_qs, *typeCode);
    const Decoded<Aircraft> decoded = Aircraft::decode(QJsonDocument(row).toJson(QJsonDocument::Compact));
    if (!decoded.ok())
        qFatal("bad test row: %s", qPrintable(decoded.error()));
    return decoded.value();
}

QList<Aircraft> planes(const QStringList &hexes)
{
    QList<Aircraft> list;
    for (const QString &hex : hexes)
        list.append(plane(hex));
    return list;
}

QDateTime localTime(const QByteArray &zone, int year, int month, int day, int hour, int minute,
                    int second = 0)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second), QTimeZone(zone));
}

QList<qint64> hours(std::initializer_list<std::pair<int, qint64>> counts)
{
    QList<qint64> byHour(24, 0);
    for (const auto &[hour, count] : counts)
        byHour[hour] = count;
    return byHour;
}

QJsonObject dayJson(qint64 count, const QList<qint64> &byHour)
{
    QJsonArray array;
    for (qint64 value : byHour)
        array.append(value);
    return QJsonObject{{u"count"_qs, count}, {u"byHour"_qs, array}};
}

// A file as the application writes it, with every key; tests take keys away or spoil them.
QJsonObject validFile()
{
    return QJsonObject{{u"days"_qs, QJsonObject{{u"2026-03-10"_qs, dayJson(2, hours({{9, 1}, {23, 1}}))}}},
                       {u"typesFirstSeen"_qs, QJsonObject{{u"A320"_qs, 785548800.0}}},
                       {u"totalUnique"_qs, 57},
                       {u"seenDayKey"_qs, u"2026-03-10"_qs},
                       {u"seenHexes"_qs, QJsonArray{u"3c6444"_qs, u"a499c3"_qs}}};
}

QByteArray compact(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

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

} // namespace

class SightingLogTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void countsEachLocalDay_data();
    void countsEachLocalDay();
    void sameListTwiceCountsOnce();
    void duplicatesAndCaseOfHex();
    void typeCodesShareOneUpperCaseEntry();
    void hourOfTheRefresh();
    void emptyListOnlyRollsTheDayOver();
    void pruningKeepsHundredTwentyDays();
    void encodeDecodeRoundTrip();
    void fileHoldsSecondsSince2001();
    void strictLoad_data();
    void strictLoad();
    void restartResumesTheDay();
    void unreadableFileIsMovedAsideAtFirstSave_data();
    void unreadableFileIsMovedAsideAtFirstSave();
    void missingFileIsCreated();
    void fileLivesInTheDataHome();
    void timerSavesWhatChanged();
    void statisticsOfAnEmptyLog();
    void statistics();
    void recentNewTypes();

private:
    std::unique_ptr<SightingLog> makeLog(const QByteArray &zone = berlin, int saveIntervalMs = 0);
    void writeFile(const QByteArray &bytes);
    [[nodiscard]] QByteArray readFile() const;

    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_path;
    QDateTime m_now;
};

void SightingLogTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    m_path = m_dir->filePath(u"Aerolume/logbook.json"_qs);
    m_now = localTime(berlin, 2026, 3, 10, 12, 0);
}

void SightingLogTest::cleanup()
{
    m_dir.reset();
}

std::unique_ptr<SightingLog> SightingLogTest::makeLog(const QByteArray &zone, int saveIntervalMs)
{
    return std::make_unique<SightingLog>(
        SightingLog::Dependencies{m_path, [this] { return m_now; }, QTimeZone(zone), saveIntervalMs});
}

void SightingLogTest::writeFile(const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(m_path).path());
    QFile file(m_path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QByteArray SightingLogTest::readFile() const
{
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

void SightingLogTest::countsEachLocalDay_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QDateTime>("first");
    QTest::addColumn<QDateTime>("second");
    QTest::addColumn<QString>("firstKey");
    QTest::addColumn<int>("firstHour");
    QTest::addColumn<QString>("secondKey");
    QTest::addColumn<int>("secondHour");

    QTest::newRow("Berlin, 23:59 and 00:01")
        << berlin << localTime(berlin, 2026, 3, 10, 23, 59) << localTime(berlin, 2026, 3, 11, 0, 1)
        << u"2026-03-10"_qs << 23 << u"2026-03-11"_qs << 0;
    QTest::newRow("Los Angeles, 23:59 and 00:01")
        << losAngeles << localTime(losAngeles, 2026, 12, 31, 23, 59)
        << localTime(losAngeles, 2027, 1, 1, 0, 1) << u"2026-12-31"_qs << 23 << u"2027-01-01"_qs << 0;
    // The same two moments are one morning in Berlin and two days in Los Angeles.
    const QDateTime morningUtc(QDate(2026, 3, 11), QTime(6, 50), QTimeZone::utc());
    QTest::newRow("Berlin, 06:50 and 07:10 UTC")
        << berlin << morningUtc << morningUtc.addSecs(1200) << u"2026-03-11"_qs << 7 << u"2026-03-11"_qs << 8;
    QTest::newRow("Los Angeles, 06:50 and 07:10 UTC") << losAngeles << morningUtc << morningUtc.addSecs(1200)
                                                      << u"2026-03-10"_qs << 23 << u"2026-03-11"_qs << 0;
}

void SightingLogTest::countsEachLocalDay()
{
    QFETCH(QByteArray, zone);
    QFETCH(QDateTime, first);
    QFETCH(QDateTime, second);
    QFETCH(QString, firstKey);
    QFETCH(int, firstHour);
    QFETCH(QString, secondKey);
    QFETCH(int, secondHour);

    auto log = makeLog(zone);
    m_now = first;
    log->record(planes({u"3c6444"_qs}));
    m_now = second;
    log->record(planes({u"3c6444"_qs}));

    const SightingLog::Store &store = log->store();
    if (firstKey == secondKey) {
        QCOMPARE(store.days.size(), 1);
        QCOMPARE(store.days.value(firstKey).count, 1);
        QCOMPARE(store.days.value(firstKey).byHour, hours({{firstHour, 1}}));
        QCOMPARE(store.totalUnique, 1);
    } else {
        QCOMPARE(store.days.size(), 2);
        QCOMPARE(store.days.value(firstKey).count, 1);
        QCOMPARE(store.days.value(firstKey).byHour, hours({{firstHour, 1}}));
        QCOMPARE(store.days.value(secondKey).count, 1);
        QCOMPARE(store.days.value(secondKey).byHour, hours({{secondHour, 1}}));
        QCOMPARE(store.totalUnique, 2);
    }
    QCOMPARE(store.seenDayKey, secondKey);
    QCOMPARE(store.seenHexes, QSet<QString>{u"3c6444"_qs});
}

void SightingLogTest::sameListTwiceCountsOnce()
{
    auto log = makeLog();
    QSignalSpy changed(log.get(), &SightingLog::storeChanged);
    const QList<Aircraft> list = planes({u"3c6444"_qs, u"a499c3"_qs});
    QVERIFY(!log->isDirty());
    log->record(list);
    QVERIFY(log->isDirty());
    QCOMPARE(changed.size(), 1);
    log->saveIfDirty();
    QVERIFY(!log->isDirty());
    const QByteArray saved = readFile();
    QVERIFY(!saved.isEmpty());

    m_now = m_now.addSecs(5);
    log->record(list);
    QVERIFY(!log->isDirty());
    QCOMPARE(changed.size(), 1);
    QCOMPARE(log->store().days.value(u"2026-03-10"_qs).count, 2);
    QCOMPARE(log->store().totalUnique, 2);
    log->saveIfDirty();
    QCOMPARE(readFile(), saved);
}

void SightingLogTest::duplicatesAndCaseOfHex()
{
    auto log = makeLog();
    log->record(planes({u"abc123"_qs, u"abc123"_qs, u"ABC123"_qs, u"~abc123"_qs}));
    QCOMPARE(log->store().days.value(u"2026-03-10"_qs).count, 3);
    QCOMPARE(log->store().totalUnique, 3);
    QCOMPARE(log->store().seenHexes, (QSet<QString>{u"abc123"_qs, u"ABC123"_qs, u"~abc123"_qs}));
    QCOMPARE(log->todayCount(), 3);
}

void SightingLogTest::typeCodesShareOneUpperCaseEntry()
{
    auto log = makeLog();
    const QDateTime first = m_now;
    log->record({plane(u"000001"_qs, u"a320"_qs)});
    m_now = m_now.addSecs(3600);
    const QDateTime second = m_now;
    log->record({plane(u"000002"_qs, u"A320"_qs), plane(u"000003"_qs, u"b738"_qs), plane(u"000004"_qs)});
    // An aircraft counted already today brings nothing new, not even a type it shows only now.
    m_now = m_now.addSecs(3600);
    log->record({plane(u"000004"_qs, u"C172"_qs), plane(u"000005"_qs, u"a320"_qs)});

    const SightingLog::Store &store = log->store();
    QCOMPARE(store.typesFirstSeen.size(), 2);
    QCOMPARE(store.typesFirstSeen.value(u"A320"_qs), first);
    QCOMPARE(store.typesFirstSeen.value(u"B738"_qs), second);
    QVERIFY(!store.typesFirstSeen.contains(u"C172"_qs));
    QCOMPARE(store.days.value(u"2026-03-10"_qs).count, 5);
    QCOMPARE(log->typeCount(), 2);
}

void SightingLogTest::hourOfTheRefresh()
{
    auto log = makeLog(losAngeles);
    m_now = localTime(losAngeles, 2026, 7, 4, 9, 59, 59);
    log->record(planes({u"000001"_qs}));
    m_now = localTime(losAngeles, 2026, 7, 4, 10, 0, 0);
    // The aircraft's own position time says nothing about the hour it is logged under.
    QJsonObject stale{{u"hex"_qs, u"000002"_qs}, {u"seen"_qs, 7200.0}, {u"seen_pos"_qs, 7200.0}};
    log->record({Aircraft::decode(compact(stale)).value(), plane(u"000001"_qs)});
    QCOMPARE(log->store().days.value(u"2026-07-04"_qs).byHour, hours({{9, 1}, {10, 1}}));
}

void SightingLogTest::emptyListOnlyRollsTheDayOver()
{
    QJsonObject file = validFile();
    writeFile(compact(file));
    auto log = makeLog();
    const SightingLog::Store before = log->store();
    QCOMPARE(before.seenDayKey, u"2026-03-10"_qs);
    QSignalSpy changed(log.get(), &SightingLog::storeChanged);

    // The same day: nothing at all.
    log->record({});
    QCOMPARE(log->store(), before);
    QCOMPARE(changed.size(), 0);

    // The next day: only the day key and its set move on, and the log has nothing to save.
    m_now = localTime(berlin, 2026, 3, 11, 0, 0, 5);
    log->record({});
    QCOMPARE(log->store().seenDayKey, u"2026-03-11"_qs);
    QVERIFY(log->store().seenHexes.isEmpty());
    QCOMPARE(log->store().days, before.days);
    QCOMPARE(log->store().totalUnique, before.totalUnique);
    QCOMPARE(log->store().typesFirstSeen, before.typesFirstSeen);
    QVERIFY(!log->isDirty());
    QCOMPARE(changed.size(), 1); // "today" is another day now
    QCOMPARE(log->todayCount(), 0);
    log->saveIfDirty();
    QCOMPARE(readFile(), compact(file));
}

void SightingLogTest::pruningKeepsHundredTwentyDays()
{
    // 117 days of 2020, and the two days around the cut-off of the second refresh below: 90 days before
    // 2026-06-16 is 2026-03-18.
    QJsonObject days;
    for (QDate date(2020, 1, 1); days.size() < 117; date = date.addDays(1))
        days.insert(date.toString(u"yyyy-MM-dd"), dayJson(1, hours({{12, 1}})));
    days.insert(u"2026-03-17"_qs, dayJson(1, hours({{12, 1}})));
    days.insert(u"2026-03-18"_qs, dayJson(1, hours({{12, 1}})));
    QJsonObject file = validFile();
    file.insert(u"days"_qs, days);
    file.insert(u"totalUnique"_qs, 1000);
    writeFile(compact(file));

    auto log = makeLog();
    QCOMPARE(log->store().days.size(), 119);

    m_now = localTime(berlin, 2026, 6, 15, 12, 0);
    log->record(planes({u"000001"_qs}));
    QCOMPARE(log->store().days.size(), 120);
    QVERIFY(log->store().days.contains(u"2020-01-01"_qs));

    m_now = localTime(berlin, 2026, 6, 16, 12, 0);
    log->record(planes({u"000002"_qs}));
    QStringList kept = log->store().days.keys();
    kept.sort();
    QCOMPARE(kept, (QStringList{u"2026-03-18"_qs, u"2026-06-15"_qs, u"2026-06-16"_qs}));
    QCOMPARE(log->store().totalUnique, 1002);
    QCOMPARE(log->store().typesFirstSeen.size(), 1);
    QVERIFY(log->isDirty());
}

void SightingLogTest::encodeDecodeRoundTrip()
{
    auto log = makeLog(losAngeles);
    m_now = QDateTime::fromMSecsSinceEpoch(1795000000250, QTimeZone::utc());
    log->record({plane(u"3c6444"_qs, u"a320"_qs), plane(u"A499C3"_qs), plane(u"~1f2e3d"_qs, u"EC35"_qs)});
    m_now = m_now.addDays(1).addMSecs(7);
    log->record({plane(u"3c6444"_qs), plane(u"4ca1b2"_qs, u"b738"_qs)});
    const SightingLog::Store store = log->store();
    QCOMPARE(store.days.size(), 2);

    const QByteArray json = SightingLog::encode(store);
    QVERIFY(!json.contains('\n'));
    const auto decoded = SightingLog::decode(json);
    QVERIFY(decoded);
    QVERIFY(*decoded == store);
    QCOMPARE(decoded->typesFirstSeen.value(u"B738"_qs).toMSecsSinceEpoch(), 1795086400257);

    const auto empty = SightingLog::decode(SightingLog::encode(SightingLog::Store{}));
    QVERIFY(empty);
    QVERIFY(*empty == SightingLog::Store{});

    // What is saved is what a new log reads back.
    log->saveIfDirty();
    auto reread = makeLog(losAngeles);
    QVERIFY(reread->store() == store);
}

void SightingLogTest::fileHoldsSecondsSince2001()
{
    SightingLog::Store store;
    store.days.insert(u"2025-11-23"_qs, SightingLog::DayStats{3, hours({{0, 1}, {23, 2}})});
    store.typesFirstSeen.insert(u"A320"_qs, QDateTime(QDate(2025, 11, 23), QTime(0, 0), QTimeZone::utc()));
    store.typesFirstSeen.insert(u"B738"_qs,
                                QDateTime(QDate(2025, 11, 23), QTime(1, 0, 0, 250), QTimeZone(berlin)));
    store.typesFirstSeen.insert(u"OLD1"_qs, QDateTime(QDate(2000, 12, 31), QTime(0, 0), QTimeZone::utc()));
    store.totalUnique = 9007199254740;
    store.seenDayKey = u"2025-11-23"_qs;
    store.seenHexes = {u"3c6444"_qs, u"a499c3"_qs};

    const QJsonDocument document = QJsonDocument::fromJson(SightingLog::encode(store));
    QVERIFY(document.isObject());
    const QJsonObject root = document.object();
    QStringList keys = root.keys();
    keys.sort();
    QCOMPARE(keys, (QStringList{u"days"_qs, u"seenDayKey"_qs, u"seenHexes"_qs, u"totalUnique"_qs,
                                u"typesFirstSeen"_qs}));
    const QJsonObject types = root.value(u"typesFirstSeen"_qs).toObject();
    QVERIFY(types.value(u"A320"_qs).isDouble());
    QCOMPARE(types.value(u"A320"_qs).toDouble(), 785548800.0);
    QCOMPARE(types.value(u"B738"_qs).toDouble(), 785548800.25);
    QCOMPARE(types.value(u"OLD1"_qs).toDouble(), -86400.0);
    QCOMPARE(root.value(u"totalUnique"_qs).toInteger(), 9007199254740);
    QCOMPARE(root.value(u"seenDayKey"_qs).toString(), u"2025-11-23"_qs);
    QStringList hexes;
    for (const QJsonValue &hex : root.value(u"seenHexes"_qs).toArray())
        hexes.append(hex.toString());
    hexes.sort();
    QCOMPARE(hexes, (QStringList{u"3c6444"_qs, u"a499c3"_qs}));
    const QJsonObject day = root.value(u"days"_qs).toObject().value(u"2025-11-23"_qs).toObject();
    QCOMPARE(day.value(u"count"_qs).toInteger(), 3);
    const QJsonArray byHour = day.value(u"byHour"_qs).toArray();
    QCOMPARE(byHour.size(), 24);
    QCOMPARE(byHour.at(0).toInteger(), 1);
    QCOMPARE(byHour.at(23).toInteger(), 2);

    // And the other way: a number in the file is a moment counted from 2001.
    const auto decoded = SightingLog::decode(compact(validFile()));
    QVERIFY(decoded);
    QCOMPARE(decoded->typesFirstSeen.value(u"A320"_qs),
             QDateTime(QDate(2025, 11, 23), QTime(0, 0), QTimeZone::utc()));
    QCOMPARE(decoded->totalUnique, 57);
    QCOMPARE(decoded->days.value(u"2026-03-10"_qs).byHour, hours({{9, 1}, {23, 1}}));
}

void SightingLogTest::strictLoad_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("loads");

    QTest::newRow("complete file") << compact(validFile()) << true;
    QTest::newRow("extra key beside the five") << compact([] {
        QJsonObject file = validFile();
        file.insert(u"version"_qs, 2);
        return file;
    }()) << true;
    for (const QString &key : validFile().keys()) {
        QJsonObject file = validFile();
        file.remove(key);
        QTest::addRow("without %s", qPrintable(key)) << compact(file) << false;
    }
    const auto withDay = [](const QJsonObject &day) {
        QJsonObject file = validFile();
        file.insert(u"days"_qs, QJsonObject{{u"2026-03-10"_qs, day}});
        return compact(file);
    };
    QTest::newRow("day without count")
        << withDay({{u"byHour"_qs, dayJson(0, hours({})).value(u"byHour"_qs)}}) << false;
    QTest::newRow("day without byHour") << withDay({{u"count"_qs, 2}}) << false;
    QJsonArray short23;
    QJsonArray long25;
    for (int i = 0; i < 25; ++i) {
        if (i < 23)
            short23.append(0);
        long25.append(0);
    }
    QTest::newRow("byHour of 23") << withDay({{u"count"_qs, 0}, {u"byHour"_qs, short23}}) << false;
    QTest::newRow("byHour of 25") << withDay({{u"count"_qs, 0}, {u"byHour"_qs, long25}}) << false;
    QTest::newRow("count 1.5") << withDay({{u"count"_qs, 1.5},
                                           {u"byHour"_qs, dayJson(0, hours({})).value(u"byHour"_qs)}})
                               << false;
    QTest::newRow("count as text") << withDay({{u"count"_qs, u"2"_qs},
                                               {u"byHour"_qs, dayJson(0, hours({})).value(u"byHour"_qs)}})
                                   << false;
    QJsonArray textHour = dayJson(0, hours({})).value(u"byHour"_qs).toArray();
    textHour[5] = u"1"_qs;
    QTest::newRow("hour as text") << withDay({{u"count"_qs, 1}, {u"byHour"_qs, textHour}}) << false;
    QJsonArray fractionHour = dayJson(0, hours({})).value(u"byHour"_qs).toArray();
    fractionHour[5] = 0.5;
    QTest::newRow("hour 0.5") << withDay({{u"count"_qs, 1}, {u"byHour"_qs, fractionHour}}) << false;
    QTest::newRow("day as an empty object") << withDay({}) << false;

    const auto replaced = [](const QString &key, const QJsonValue &value) {
        QJsonObject file = validFile();
        file.insert(key, value);
        return compact(file);
    };
    QTest::newRow("days as an array") << replaced(u"days"_qs, QJsonArray{}) << false;
    QTest::newRow("day as a number") << replaced(u"days"_qs, QJsonObject{{u"2026-03-10"_qs, 3}}) << false;
    QTest::newRow("type date as text")
        << replaced(u"typesFirstSeen"_qs, QJsonObject{{u"A320"_qs, u"2025-11-23"_qs}}) << false;
    QTest::newRow("totalUnique 1.5") << replaced(u"totalUnique"_qs, 1.5) << false;
    QTest::newRow("totalUnique as text") << replaced(u"totalUnique"_qs, u"57"_qs) << false;
    QTest::newRow("seenDayKey null") << replaced(u"seenDayKey"_qs, QJsonValue::Null) << false;
    QTest::newRow("seenHexes with a number")
        << replaced(u"seenHexes"_qs, QJsonArray{u"3c6444"_qs, 7}) << false;
    QTest::newRow("seenHexes as an object") << replaced(u"seenHexes"_qs, QJsonObject{}) << false;
    QTest::newRow("array at the top") << QByteArray("[]") << false;
    QTest::newRow("not JSON") << QByteArray("{\"days\": {") << false;
    QTest::newRow("empty file") << QByteArray() << false;
}

void SightingLogTest::strictLoad()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, loads);

    QCOMPARE(bool(SightingLog::decode(bytes)), loads);
    writeFile(bytes);
    auto log = makeLog();
    QVERIFY(!log->isDirty());
    if (loads) {
        QCOMPARE(log->store().totalUnique, 57);
        QCOMPARE(log->store().seenHexes.size(), 2);
    } else {
        QVERIFY(log->store() == SightingLog::Store{});
    }
    // Reading never writes.
    QCOMPARE(readFile(), bytes);
}

void SightingLogTest::restartResumesTheDay()
{
    m_now = localTime(berlin, 2026, 3, 10, 10, 15);
    {
        auto log = makeLog();
        log->record(planes({u"3c6444"_qs, u"a499c3"_qs}));
        log->saveIfDirty();
    }
    m_now = localTime(berlin, 2026, 3, 10, 11, 40);
    {
        auto log = makeLog();
        QCOMPARE(log->todayCount(), 2);
        log->record(planes({u"3c6444"_qs, u"4ca1b2"_qs}));
        QCOMPARE(log->store().days.value(u"2026-03-10"_qs).count, 3);
        QCOMPARE(log->store().days.value(u"2026-03-10"_qs).byHour, hours({{10, 2}, {11, 1}}));
        QCOMPARE(log->store().totalUnique, 3);
        log->saveIfDirty();
    }
    // The next morning the set starts again, and the day before stays as it was.
    m_now = localTime(berlin, 2026, 3, 11, 7, 0);
    auto log = makeLog();
    log->record(planes({u"3c6444"_qs}));
    QCOMPARE(log->store().days.value(u"2026-03-10"_qs).count, 3);
    QCOMPARE(log->store().days.value(u"2026-03-11"_qs).count, 1);
    QCOMPARE(log->store().totalUnique, 4);
    QCOMPARE(log->store().seenHexes, QSet<QString>{u"3c6444"_qs});
}

void SightingLogTest::unreadableFileIsMovedAsideAtFirstSave_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("not JSON") << QByteArray("\x01\x02 half a logbook {\"days\":");
    QJsonObject withoutHexes = validFile();
    withoutHexes.remove(u"seenHexes"_qs);
    QTest::newRow("without seenHexes") << compact(withoutHexes);
}

void SightingLogTest::unreadableFileIsMovedAsideAtFirstSave()
{
    QFETCH(QByteArray, bytes);

    writeFile(bytes);
    // 13:34:56 in Berlin: the name of the kept file tells the time in UTC.
    m_now = QDateTime(QDate(2026, 3, 10), QTime(12, 34, 56), QTimeZone::utc());
    auto log = makeLog();
    QVERIFY(log->store() == SightingLog::Store{});

    // Nothing new: nothing is saved and the file stays as it is.
    log->saveIfDirty();
    QCOMPARE(readFile(), bytes);
    log->record(planes({u"3c6444"_qs}));
    QCOMPARE(readFile(), bytes);

    log->saveIfDirty();
    const QDir folder = QFileInfo(m_path).dir();
    const QStringList aside = folder.entryList({u"logbook.json.unreadable-*"_qs}, QDir::Files);
    QCOMPARE(aside.size(), 1);
    const QString stamp = aside.first().mid(QStringLiteral("logbook.json.unreadable-").size());
    QVERIFY2(stamp.contains(u"20260310"_qs) && stamp.contains(u"123456"_qs), qPrintable(stamp));
    QVERIFY2(!stamp.contains(u"133456"_qs), qPrintable(stamp));
    QFile kept(folder.filePath(aside.first()));
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QCOMPARE(kept.readAll(), bytes);
    const auto saved = SightingLog::decode(readFile());
    QVERIFY(saved);
    QVERIFY(*saved == log->store());

    // Later saves replace the new file and keep nothing more aside.
    m_now = m_now.addSecs(60);
    log->record(planes({u"a499c3"_qs}));
    log->saveIfDirty();
    QCOMPARE(folder.entryList({u"logbook.json.unreadable-*"_qs}, QDir::Files).size(), 1);
    QCOMPARE(SightingLog::decode(readFile())->totalUnique, 2);
}

void SightingLogTest::missingFileIsCreated()
{
    m_path = m_dir->filePath(u"data/deeper/Aerolume/logbook.json"_qs);
    auto log = makeLog();
    QVERIFY(log->store() == SightingLog::Store{});
    log->record(planes({u"3c6444"_qs}));
    log->saveIfDirty();
    const auto saved = SightingLog::decode(readFile());
    QVERIFY(saved);
    QCOMPARE(saved->totalUnique, 1);
    QCOMPARE(QFileInfo(m_path).dir().entryList(QDir::Files | QDir::Hidden), QStringList{u"logbook.json"_qs});
}

void SightingLogTest::fileLivesInTheDataHome()
{
    const QByteArray previous = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", QFile::encodeName(m_dir->filePath(u"share"_qs)));
    const QString path = SightingLog::defaultFilePath();
    qputenv("XDG_DATA_HOME", previous);
    QCOMPARE(path, m_dir->filePath(u"share/Aerolume/logbook.json"_qs));
}

void SightingLogTest::timerSavesWhatChanged()
{
    auto log = makeLog(berlin, 5);
    log->record(planes({u"3c6444"_qs}));
    QTRY_VERIFY_WITH_TIMEOUT(!readFile().isEmpty(), 5000);
    QVERIFY(!log->isDirty());
    QCOMPARE(SightingLog::decode(readFile())->totalUnique, 1);
}

void SightingLogTest::statisticsOfAnEmptyLog()
{
    auto log = makeLog();
    const auto points = log->lastDays(14);
    QCOMPARE(points.size(), 14);
    for (const auto &point : points)
        QCOMPARE(point.count, 0);
    QCOMPARE(points.first().id, u"2026-02-25"_qs);
    QCOMPARE(points.last().id, u"2026-03-10"_qs);
    QVERIFY(log->lastDays(0).isEmpty());
    QCOMPARE(log->todayCount(), 0);
    QCOMPARE(log->lastSevenDaysCount(), 0);
    QCOMPARE(log->hourlyProfile(), QList<qint64>(24, 0));
    QVERIFY(log->recentNewTypes(8).isEmpty());
}

void SightingLogTest::statistics()
{
    const DefaultLocaleGuard german(QLocale(QLocale::German, QLocale::Germany));
    // Today is 2026-03-05 in Los Angeles, 23:30: in UTC already the next day.
    m_now = localTime(losAngeles, 2026, 3, 5, 23, 30);
    const QDate today(2026, 3, 5);
    QJsonObject days;
    const auto put = [&](int daysAgo, qint64 count, const QList<qint64> &byHour) {
        days.insert(today.addDays(-daysAgo).toString(u"yyyy-MM-dd"), dayJson(count, byHour));
    };
    put(0, 3, hours({{0, 1}, {23, 2}}));
    put(1, 5, hours({{8, 3}, {23, 2}}));
    put(6, 4, hours({{12, 4}}));
    put(7, 6, hours({{12, 6}}));  // in the fortnight, not in the week
    put(13, 1, hours({{0, 1}}));  // the oldest day of the fortnight
    put(14, 9, hours({{23, 9}})); // just outside
    QJsonObject file = validFile();
    file.insert(u"days"_qs, days);
    writeFile(compact(file));
    auto log = makeLog(losAngeles);

    QCOMPARE(log->todayCount(), 3);
    QCOMPARE(log->lastSevenDaysCount(), 3 + 5 + 4);
    const auto points = log->lastDays(14);
    QCOMPARE(points.size(), 14);
    QStringList ids;
    QStringList labels;
    QList<qint64> counts;
    for (const auto &point : points) {
        ids.append(point.id);
        labels.append(point.label);
        counts.append(point.count);
    }
    QCOMPARE(ids.first(), u"2026-02-20"_qs);
    QCOMPARE(ids.last(), u"2026-03-05"_qs);
    QCOMPARE(labels,
             (QStringList{u"2/20"_qs, u"2/21"_qs, u"2/22"_qs, u"2/23"_qs, u"2/24"_qs, u"2/25"_qs, u"2/26"_qs,
                          u"2/27"_qs, u"2/28"_qs, u"3/1"_qs, u"3/2"_qs, u"3/3"_qs, u"3/4"_qs, u"3/5"_qs}));
    QCOMPARE(counts, (QList<qint64>{1, 0, 0, 0, 0, 0, 6, 4, 0, 0, 0, 0, 5, 3}));
    const auto week = log->lastDays(7);
    QCOMPARE(week.size(), 7);
    QCOMPARE(week.first().id, u"2026-02-27"_qs);
    QCOMPARE(log->lastDays(1).size(), 1);
    QCOMPARE(log->lastDays(1).first().id, u"2026-03-05"_qs);

    QList<qint64> profile(24, 0);
    profile[0] = 1 + 1;
    profile[8] = 3;
    profile[12] = 4 + 6;
    profile[23] = 2 + 2;
    QCOMPARE(log->hourlyProfile(), profile);
}

void SightingLogTest::recentNewTypes()
{
    auto log = makeLog();
    const QStringList codes{u"A320"_qs, u"B738"_qs, u"ZZZ9"_qs, u"EC35"_qs, u"C172"_qs,
                            u"A388"_qs, u"B77W"_qs, u"QQQ1"_qs, u"E190"_qs, u"DH8D"_qs};
    // One new type an hour, in the order above.
    const QDateTime start = m_now;
    for (qsizetype i = 0; i < codes.size(); ++i) {
        m_now = start.addSecs(3600 * i);
        log->record({plane(u"00000%1"_qs.arg(i), codes[i])});
    }
    const auto recent = log->recentNewTypes(8);
    QCOMPARE(recent.size(), 8);
    QStringList ids;
    for (const auto &type : recent)
        ids.append(type.id);
    QCOMPARE(ids, (QStringList{u"DH8D"_qs, u"E190"_qs, u"QQQ1"_qs, u"B77W"_qs, u"A388"_qs, u"C172"_qs,
                               u"EC35"_qs, u"ZZZ9"_qs}));
    QCOMPARE(recent.first().date, start.addSecs(3600 * 9));
    QCOMPARE(recent.at(6).name, u"Airbus H135"_qs);
    QCOMPARE(recent.at(7).name, u"ZZZ9"_qs); // unknown to the table: its code
    QCOMPARE(recent.at(2).name, u"QQQ1"_qs);

    const auto few = log->recentNewTypes(20);
    QCOMPARE(few.size(), 10);
    QCOMPARE(few.last().id, u"A320"_qs);
    QCOMPARE(few.last().name, u"Airbus A320"_qs);
    QVERIFY(log->recentNewTypes(0).isEmpty());
}

QTEST_GUILESS_MAIN(SightingLogTest)
#include "SightingLogTest.moc"
