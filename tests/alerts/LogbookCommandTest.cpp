#include "LogbookCommand.h"
#include "SightingLog.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

#include <ctime>
#include <memory>

namespace {

const QByteArray zone = "Europe/Berlin";

QJsonObject dayJson(qint64 count, int hour)
{
    QJsonArray byHour;
    for (int i = 0; i < 24; ++i)
        byHour.append(i == hour ? count : 0);
    return QJsonObject{{u"count"_qs, count}, {u"byHour"_qs, byHour}};
}

// A log as the application saves it: today 1234 aircraft, 2 the day before, 7 a fortnight ago (outside
// every figure but the total); three types, the newest first seen late in the evening UTC, which is the
// next day in Berlin.
QByteArray knownLog()
{
    const QJsonObject days{{u"2026-03-05"_qs, dayJson(1234, 9)},
                           {u"2026-03-04"_qs, dayJson(2, 23)},
                           {u"2026-02-19"_qs, dayJson(7, 23)}};
    const QJsonObject types{{u"A320"_qs, 785548800.0},         // 2025-11-23T00:00:00Z
                            {u"ZZZ9"_qs, 785548800.0 + 86400}, // 2025-11-24T00:00:00Z
                            {u"B738"_qs, 794273400.0}};        // 2026-03-03T23:30:00Z
    const QJsonObject root{{u"days"_qs, days},
                           {u"typesFirstSeen"_qs, types},
                           {u"totalUnique"_qs, 98765},
                           {u"seenDayKey"_qs, u"2026-03-05"_qs},
                           {u"seenHexes"_qs, QJsonArray{u"3c6444"_qs}}};
    return QJsonDocument(root).toJson(QJsonDocument::Compact);
}

} // namespace

class LogbookCommandTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void json();
    void text();
    void textOfAnEmptyLog();

private:
    std::unique_ptr<SightingLog> makeLog();

    QTemporaryDir m_dir;
    QString m_path;
    QDateTime m_now;
};

void LogbookCommandTest::initTestCase()
{
    QVERIFY(m_dir.isValid());
    // Dates the command shows are in the local zone: make it a known one.
    qputenv("TZ", zone);
    tzset();
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}

void LogbookCommandTest::init()
{
    m_path = m_dir.filePath(u"%1.json"_qs.arg(QString::fromLatin1(QTest::currentTestFunction())));
    // 2026-03-05, 12:00 in Berlin.
    m_now = QDateTime(QDate(2026, 3, 5), QTime(12, 0), QTimeZone(zone));
}

std::unique_ptr<SightingLog> LogbookCommandTest::makeLog()
{
    return std::make_unique<SightingLog>(
        SightingLog::Dependencies{m_path, [this] { return m_now; }, QTimeZone(zone), 0});
}

void LogbookCommandTest::json()
{
    QFile file(m_path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(knownLog());
    file.close();
    auto log = makeLog();

    const QJsonDocument document = QJsonDocument::fromJson(LogbookCommand::toJson(*log));
    QVERIFY(document.isObject());
    const QJsonObject root = document.object();
    QCOMPARE(root.value(u"today"_qs).toInteger(), 1234);
    QCOMPARE(root.value(u"lastSevenDays"_qs).toInteger(), 1236);
    QCOMPARE(root.value(u"aircraftTypes"_qs).toInteger(), 3);
    QCOMPARE(root.value(u"allTime"_qs).toInteger(), 98765);

    const QJsonArray days = root.value(u"lastDays"_qs).toArray();
    QCOMPARE(days.size(), 14);
    QCOMPARE(days.first().toObject().value(u"day"_qs).toString(), u"2026-02-20"_qs);
    QCOMPARE(days.first().toObject().value(u"label"_qs).toString(), u"2/20"_qs);
    QCOMPARE(days.last().toObject().value(u"day"_qs).toString(), u"2026-03-05"_qs);
    QCOMPARE(days.last().toObject().value(u"label"_qs).toString(), u"3/5"_qs);
    QCOMPARE(days.last().toObject().value(u"count"_qs).toInteger(), 1234);
    QCOMPARE(days.at(12).toObject().value(u"count"_qs).toInteger(), 2);

    const QJsonArray hours = root.value(u"hourlyProfile"_qs).toArray();
    QCOMPARE(hours.size(), 24);
    QCOMPARE(hours.at(9).toInteger(), 1234);
    QCOMPARE(hours.at(23).toInteger(), 2);

    const QJsonArray types = root.value(u"recentTypes"_qs).toArray();
    QCOMPARE(types.size(), 3);
    QCOMPARE(types.at(0).toObject().value(u"code"_qs).toString(), u"B738"_qs);
    QCOMPARE(types.at(0).toObject().value(u"name"_qs).toString(), u"Boeing 737-800"_qs);
    QCOMPARE(types.at(0).toObject().value(u"firstSeen"_qs).toString(), u"2026-03-03T23:30:00Z"_qs);
    QCOMPARE(types.at(1).toObject().value(u"code"_qs).toString(), u"ZZZ9"_qs);
    QCOMPARE(types.at(1).toObject().value(u"name"_qs).toString(), u"ZZZ9"_qs);
    QCOMPARE(types.at(2).toObject().value(u"firstSeen"_qs).toString(), u"2025-11-23T00:00:00Z"_qs);
}

void LogbookCommandTest::text()
{
    QFile file(m_path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(knownLog());
    file.close();
    auto log = makeLog();

    const QString text = LogbookCommand::toText(*log);
    const QStringList lines = text.split(u'\n');
    // Figures grouped as the user's language groups them.
    QVERIFY2(lines.first().contains(u"Today: 1.234"_qs), qPrintable(lines.first()));
    QVERIFY2(lines.first().contains(u"Last 7 days: 1.236"_qs), qPrintable(lines.first()));
    QVERIFY2(lines.first().contains(u"Aircraft types: 3"_qs), qPrintable(lines.first()));
    QVERIFY2(lines.first().contains(u"All time: 98.765"_qs), qPrintable(lines.first()));

    const qsizetype perDay = lines.indexOf(u"Aircraft per day — last 14 days"_qs);
    QVERIFY(perDay > 0);
    QVERIFY2(lines.at(perDay + 1).trimmed().startsWith(u"2/20"_qs), qPrintable(lines.at(perDay + 1)));
    QVERIFY2(lines.at(perDay + 14).trimmed().startsWith(u"3/5"_qs), qPrintable(lines.at(perDay + 14)));
    QVERIFY2(lines.at(perDay + 14).trimmed().endsWith(u"1.234"_qs), qPrintable(lines.at(perDay + 14)));

    const qsizetype perHour = lines.indexOf(u"Busiest hours — last 14 days"_qs);
    QVERIFY(perHour > perDay + 14);
    QVERIFY2(lines.at(perHour + 1).trimmed().startsWith(u"00:00"_qs), qPrintable(lines.at(perHour + 1)));
    QVERIFY2(lines.at(perHour + 24).trimmed().startsWith(u"23:00"_qs), qPrintable(lines.at(perHour + 24)));
    QVERIFY2(lines.at(perHour + 24).trimmed().endsWith(u" 2"_qs), qPrintable(lines.at(perHour + 24)));

    const qsizetype recent = lines.indexOf(u"Recently spotted types"_qs);
    QVERIFY(recent > perHour + 24);
    // First seen at 23:30 UTC, which was already the 4th in Berlin.
    QVERIFY2(lines.at(recent + 1).contains(u"Boeing 737-800 (B738)"_qs), qPrintable(lines.at(recent + 1)));
    QVERIFY2(lines.at(recent + 1).contains(u"04.03.26"_qs), qPrintable(lines.at(recent + 1)));
    QVERIFY2(lines.at(recent + 2).contains(u"ZZZ9 (ZZZ9)"_qs), qPrintable(lines.at(recent + 2)));
    QVERIFY2(lines.at(recent + 3).contains(u"Airbus A320 (A320)"_qs), qPrintable(lines.at(recent + 3)));
    QVERIFY(!text.contains(u"Nothing logged yet"_qs));
}

void LogbookCommandTest::textOfAnEmptyLog()
{
    auto log = makeLog();
    const QString text = LogbookCommand::toText(*log);
    QVERIFY(text.contains(u"Today: 0"_qs));
    QVERIFY(text.contains(u"Nothing logged yet — the logbook fills in as aircraft pass by."_qs));
    const QJsonObject root = QJsonDocument::fromJson(LogbookCommand::toJson(*log)).object();
    QCOMPARE(root.value(u"lastDays"_qs).toArray().size(), 14);
    QCOMPARE(root.value(u"hourlyProfile"_qs).toArray().size(), 24);
    QVERIFY(root.value(u"recentTypes"_qs).toArray().isEmpty());
}

QTEST_GUILESS_MAIN(LogbookCommandTest)
#include "LogbookCommandTest.moc"
