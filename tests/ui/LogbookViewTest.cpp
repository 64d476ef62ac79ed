#include "Aircraft.h"
#include "BarChartLook.h"
#include "DefaultsStore.h"
#include "LogbookFigures.h"
#include "SightingLog.h"
#include "SymbolImageProvider.h"

#include "ItemTexts.h"
#include <QBarCategoryAxis>
#include <QBarSet>
#include <QCategoryAxis>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLinearGradient>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>
#include <QValueAxis>
#include <QtQml/qqmlextensionplugin.h>
#include <memory>

#include <time.h>

// The application's QML module imports the map's, linked in statically.
Q_IMPORT_QML_PLUGIN(Aerolume_MapPlugin)

namespace {

const QTimeZone berlin("Europe/Berlin");

// 23:30 on a Wednesday: the last hour of the day has begun, and the fortnight runs from 2/27 to 3/12.
const QDateTime now(QDate(2025, 3, 12), QTime(23, 30), berlin);

QDateTime at(int month, int day, int hour, int minute = 0)
{
    return QDateTime(QDate(2025, month, day), QTime(hour, minute), berlin);
}

// Dates in the file count seconds from the first moment of 2001, UTC.
double fileSeconds(const QDateTime &moment)
{
    return double(moment.toSecsSinceEpoch() -
                  QDateTime(QDate(2001, 1, 1), QTime(0, 0), QTimeZone::utc()).toSecsSinceEpoch());
}

struct Day
{
    QString key;
    qint64 count;
    QList<std::pair<int, qint64>> hours;
};

QByteArray logbookFile(const QList<Day> &days, const QList<std::pair<QString, QDateTime>> &types,
                       qint64 total)
{
    QJsonObject dayObject;
    for (const Day &day : days) {
        QJsonArray byHour;
        for (int hour = 0; hour < 24; ++hour) {
            qint64 count = 0;
            for (const auto &[h, c] : day.hours)
                count += h == hour ? c : 0;
            byHour.append(count);
        }
        dayObject.insert(day.key, QJsonObject{{u"count"_qs, day.count}, {u"byHour"_qs, byHour}});
    }
    QJsonObject typeObject;
    for (const auto &[code, moment] : types)
        typeObject.insert(code, fileSeconds(moment));
    return QJsonDocument(QJsonObject{{u"days"_qs, dayObject},
                                     {u"typesFirstSeen"_qs, typeObject},
                                     {u"totalUnique"_qs, total},
                                     {u"seenDayKey"_qs, u"2025-03-12"_qs},
                                     {u"seenHexes"_qs, QJsonArray{}}})
        .toJson();
}

QList<qreal> zeros(int count)
{
    return QList<qreal>(count, 0.0);
}

QList<qreal> with(QList<qreal> values, std::initializer_list<std::pair<int, qreal>> changes)
{
    for (const auto &[index, value] : changes)
        values[index] = value;
    return values;
}

QList<qreal> barValues(const QBarSet *set)
{
    QList<qreal> values;
    for (int i = 0; i < set->count(); ++i)
        values.append(set->at(i));
    return values;
}

Aircraft plane(const QString &hex, const QString &typeCode)
{
    const QJsonObject row{{u"hex"_qs, hex}, {u"t"_qs, typeCode}};
    const Decoded<Aircraft> decoded = Aircraft::decode(QJsonDocument(row).toJson(QJsonDocument::Compact));
    if (!decoded.ok())
        qFatal("bad test row: %s", qPrintable(decoded.error()));
    return decoded.value();
}

} // namespace

// The Logbook window over prepared logbook files: what each tile, bar and row says, that it follows the
// log as it changes, and pictures of it empty and full, light and dark.
class LogbookViewTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_pictures;
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<QQmlComponent> m_component;

    struct Opened
    {
        std::unique_ptr<SightingLog> log;
        std::unique_ptr<QQuickWindow> window;
    };

    Opened open(const QByteArray &file)
    {
        static int serial = 0;
        const QString path = m_dir.filePath(u"logbook-%1.json"_qs.arg(++serial));
        if (!file.isEmpty()) {
            QFile out(path);
            if (!out.open(QIODevice::WriteOnly) || out.write(file) != file.size())
                qFatal("cannot write %s", qPrintable(path));
        }
        Opened opened;
        opened.log =
            std::make_unique<SightingLog>(SightingLog::Dependencies{path, [] { return now; }, berlin, 0});
        QObject *object =
            m_component->createWithInitialProperties({{u"log"_qs, QVariant::fromValue(opened.log.get())}});
        if (!object)
            qFatal("%s", qPrintable(m_component->errorString()));
        opened.window.reset(qobject_cast<QQuickWindow *>(object));
        opened.window->show();
        return opened;
    }

    // By object name, or for the chart objects that the chart takes over, by their id in the view.
    template <typename T = QObject> static T *find(QQuickWindow *window, const QString &name)
    {
        if (T *found = window->findChild<T *>(name))
            return found;
        QObject *figures = window->findChild<QObject *>(u"logbookFigures"_qs);
        QQmlContext *context = figures ? qmlContext(figures) : nullptr;
        return context ? qobject_cast<T *>(context->objectForName(name)) : nullptr;
    }

    static QString tileValue(QQuickWindow *window, const QString &tile)
    {
        auto *item = find<QQuickItem>(window, tile);
        return item ? item->property("valueText").toString() : u"(no tile %1)"_qs.arg(tile);
    }

    static QStringList tileValues(QQuickWindow *window)
    {
        QStringList values;
        for (const QString &tile :
             {u"todayTile"_qs, u"lastSevenDaysTile"_qs, u"typesTile"_qs, u"allTimeTile"_qs})
            values.append(tileValue(window, tile));
        return values;
    }

    static QStringList typeRows(QQuickWindow *window, const QString &part)
    {
        QStringList rows;
        auto *column = find<QQuickItem>(window, u"recentTypes"_qs);
        if (!column || !column->isVisible())
            return rows;
        for (QQuickItem *row : column->childItems()) {
            for (QQuickItem *child : row->childItems()) {
                if (child->objectName() == part)
                    rows.append(child->property("text").toString());
            }
        }
        return rows;
    }

    void save(QQuickWindow *window, const QString &name)
    {
        // Charts draw on the next frame.
        QVERIFY(QTest::qWaitForWindowExposed(window));
        QTest::qWait(50);
        const QImage image = window->grabWindow();
        QVERIFY(!image.isNull());
        QVERIFY(image.save(m_pictures + u'/' + name));
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        for (const char *variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR"})
            qputenv(variable, m_dir.filePath(QString::fromLatin1(variable)).toUtf8());
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
        // Dates are shown in the local zone, which is the log's zone here.
        qputenv("TZ", "Europe/Berlin");
        tzset();
        // Numbers are grouped the German way; the day labels must not follow the locale.
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        m_pictures = QDir::currentPath() + u"/pictures"_qs;
        QDir().mkpath(m_pictures);

        QQuickStyle::setStyle(u"Fusion"_qs);
        m_engine = std::make_unique<QQmlEngine>();
        // The modules linked into this program, before any copy on disk.
        m_engine->addImportPath(u"qrc:/qt/qml"_qs);
        m_engine->addImageProvider(u"symbol"_qs, new SymbolImageProvider());
        m_component = std::make_unique<QQmlComponent>(m_engine.get(),
                                                      QUrl(u"qrc:/qt/qml/Aerolume/App/LogbookWindow.qml"_qs));
        QVERIFY2(m_component->isReady(), qPrintable(m_component->errorString()));
    }

    void windowFrame()
    {
        Opened opened = open({});
        QQuickWindow *window = opened.window.get();
        QCOMPARE(window->title(), u"Logbook"_qs);
        QCOMPARE(window->size(), QSize(560, 640));
        QCOMPARE(window->minimumSize(), QSize(540, 560));
        // Beside the main window, never kept above it.
        QCOMPARE(window->transientParent(), nullptr);

        // Shrunk to its least height, the content scrolls rather than squeezes.
        window->resize(540, 560);
        auto *view = find<QQuickItem>(window, u"logbookView"_qs);
        QVERIFY(view);
        QTRY_VERIFY(view->property("contentHeight").toReal() > view->height());
        // Four equal tiles, 12 apart, filling the row.
        auto *tiles = find<QQuickItem>(window, u"logbookTiles"_qs);
        QVERIFY(tiles);
        QVERIFY(tiles->width() <= view->width());
        const QList<QQuickItem *> cards = tiles->childItems();
        QCOMPARE(cards.size(), 4);
        for (QQuickItem *card : cards) {
            QVERIFY(card->height() > 0);
            QCOMPARE(card->width(), cards.first()->width());
        }
        QCOMPARE(cards.first()->width() * 4 + 3 * 12, tiles->width());
        QVERIFY(tiles->width() > 400);
    }

    void figures_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QStringList>("tiles");
        QTest::addColumn<QList<qreal>>("dayBars");
        QTest::addColumn<QList<qreal>>("hourBars");
        QTest::addColumn<QStringList>("typeNames");
        QTest::addColumn<QStringList>("typeDates");

        QTest::newRow("no file yet") << QByteArray() << QStringList{u"0"_qs, u"0"_qs, u"0"_qs, u"0"_qs}
                                     << zeros(14) << zeros(24) << QStringList() << QStringList();

        QTest::newRow("empty log") << logbookFile({}, {}, 0)
                                   << QStringList{u"0"_qs, u"0"_qs, u"0"_qs, u"0"_qs} << zeros(14)
                                   << zeros(24) << QStringList() << QStringList();

        // Large counts show the locale's grouping; an "All time" beyond the days kept is the running sum.
        QTest::newRow("one day") << logbookFile({{u"2025-03-12"_qs, 1234, {{9, 1000}, {23, 234}}}},
                                                {{u"B738"_qs, at(3, 12, 9, 15)}}, 12345)
                                 << QStringList{u"1.234"_qs, u"1.234"_qs, u"1"_qs, u"12.345"_qs}
                                 << with(zeros(14), {{13, 1234}}) << with(zeros(24), {{9, 1000}, {23, 234}})
                                 << QStringList{u"Boeing 737-800"_qs} << QStringList{u"12. März 2025"_qs};

        // Yesterday's and today's last hours add up; a day just outside the fortnight adds to nothing but
        // "All time", a day inside the fortnight but not the week only to the charts.
        QTest::newRow("hour 23 of yesterday and today")
            << logbookFile({{u"2025-03-11"_qs, 5, {{23, 5}}},
                            {u"2025-03-12"_qs, 7, {{23, 7}}},
                            {u"2025-03-05"_qs, 3, {{0, 3}}},
                            {u"2025-02-26"_qs, 100, {{23, 100}}}},
                           {}, 115)
            << QStringList{u"7"_qs, u"12"_qs, u"0"_qs, u"115"_qs}
            << with(zeros(14), {{6, 3}, {12, 5}, {13, 7}}) << with(zeros(24), {{0, 3}, {23, 12}})
            << QStringList() << QStringList();

        // Twenty types, ten hours apart: the eight newest are listed, newest first, and a code the type
        // table doesn't know is listed as itself.
        const QStringList codes{u"A320"_qs, u"ZZZ9"_qs, u"B738"_qs, u"C172"_qs, u"XQ77"_qs,
                                u"A321"_qs, u"B77W"_qs, u"E75L"_qs, u"A359"_qs, u"B789"_qs,
                                u"CRJ9"_qs, u"DH8D"_qs, u"PC12"_qs, u"B712"_qs, u"A332"_qs,
                                u"B752"_qs, u"MD11"_qs, u"GLF5"_qs, u"BE20"_qs, u"AT76"_qs};
        QList<std::pair<QString, QDateTime>> types;
        for (int i = 0; i < codes.size(); ++i)
            types.append({codes[i], now.addSecs(-qint64(i) * 10 * 3600)});
        // The file's order says nothing: newest last in it.
        std::reverse(types.begin(), types.end());
        QTest::newRow("twenty types")
            << logbookFile({{u"2025-03-12"_qs, 20, {{12, 20}}}}, types, 20)
            << QStringList{u"20"_qs, u"20"_qs, u"20"_qs, u"20"_qs} << with(zeros(14), {{13, 20}})
            << with(zeros(24), {{12, 20}})
            << QStringList{u"Airbus A320"_qs,        u"ZZZ9"_qs,        u"Boeing 737-800"_qs,
                           u"Cessna 172 Skyhawk"_qs, u"XQ77"_qs,        u"Airbus A321"_qs,
                           u"Boeing 777-300ER"_qs,   u"Embraer E175"_qs}
            << QStringList{u"12. März 2025"_qs, u"12. März 2025"_qs, u"12. März 2025"_qs,
                           u"11. März 2025"_qs, u"11. März 2025"_qs, u"10. März 2025"_qs,
                           u"10. März 2025"_qs, u"10. März 2025"_qs};
    }

    void figures()
    {
        QFETCH(QByteArray, file);
        QFETCH(QStringList, tiles);
        QFETCH(QList<qreal>, dayBars);
        QFETCH(QList<qreal>, hourBars);
        QFETCH(QStringList, typeNames);
        QFETCH(QStringList, typeDates);

        Opened opened = open(file);
        QQuickWindow *window = opened.window.get();
        QCOMPARE(tileValues(window), tiles);

        auto *days = find<QBarSet>(window, u"dayBars"_qs);
        auto *hours = find<QBarSet>(window, u"hourBars"_qs);
        QVERIFY(days && hours);
        QCOMPARE(barValues(days), dayBars);
        QCOMPARE(barValues(hours), hourBars);

        // A fixed "M/d" in every locale, oldest first, today last.
        auto *dayAxis = find<QBarCategoryAxis>(window, u"dayAxis"_qs);
        QVERIFY(dayAxis);
        QStringList expectedLabels;
        for (int i = 13; i >= 0; --i) {
            const QDate date = now.date().addDays(-i);
            expectedLabels.append(u"%1/%2"_qs.arg(date.month()).arg(date.day()));
        }
        QCOMPARE(dayAxis->categories(), expectedLabels);
        QCOMPARE(expectedLabels.first(), u"2/27"_qs);

        // The value axis always reaches above the tallest bar, and starts at zero.
        auto *dayCounts = find<QValueAxis>(window, u"dayCountAxis"_qs);
        QVERIFY(dayCounts);
        QCOMPARE(dayCounts->min(), 0.0);
        QVERIFY(dayCounts->max() >= *std::max_element(dayBars.cbegin(), dayBars.cend()));
        QVERIFY(dayCounts->max() > 0);

        QCOMPARE(typeRows(window, u"typeName"_qs), typeNames);
        QCOMPARE(typeRows(window, u"typeDate"_qs), typeDates);
        auto *nothingYet = find<QQuickItem>(window, u"noTypesText"_qs);
        QVERIFY(nothingYet);
        QCOMPARE(nothingYet->isVisible(), typeNames.isEmpty());
        if (typeNames.isEmpty())
            QCOMPARE(nothingYet->property("text").toString(),
                     u"Nothing logged yet — the logbook fills in as aircraft pass by."_qs);
    }

    void hourAxisIsMarkedAtFiveHoursOnly()
    {
        Opened opened = open({});
        auto *axis = find<QCategoryAxis>(opened.window.get(), u"hourAxis"_qs);
        QVERIFY(axis);
        QCOMPARE(axis->categoriesLabels(),
                 (QStringList{u"0:00"_qs, u"6:00"_qs, u"12:00"_qs, u"18:00"_qs, u"23:00"_qs}));
        const QList<qreal> marks{0, 6, 12, 18, 23};
        for (qsizetype i = 0; i < marks.size(); ++i)
            QCOMPARE(axis->endValue(axis->categoriesLabels().at(i)), marks[i]);
        QCOMPARE(axis->labelsPosition(), QCategoryAxis::AxisLabelsPositionOnValue);
        // Bars stand on whole hours, so the axis runs half an hour past each end.
        QCOMPARE(axis->min(), -0.5);
        QCOMPARE(axis->max(), 23.5);
        QCOMPARE(axis->titleText(), u"Hour"_qs);
        QCOMPARE(find<QBarCategoryAxis>(opened.window.get(), u"dayAxis"_qs)->titleText(), u"Day"_qs);
        QCOMPARE(find<QValueAxis>(opened.window.get(), u"dayCountAxis"_qs)->titleText(), u"Aircraft"_qs);
        QCOMPARE(find<QValueAxis>(opened.window.get(), u"hourCountAxis"_qs)->titleText(), u"Aircraft"_qs);
        // Axis names in the size of the axis labels, whatever the chart's theme would make them.
        QCOMPARE(axis->titleFont(), axis->labelsFont());
        QCOMPARE(axis->labelsFont().pixelSize(), 10);
    }

    void recordingShowsInTheSameRefresh()
    {
        Opened opened =
            open(logbookFile({{u"2025-03-12"_qs, 2, {{20, 2}}}}, {{u"A320"_qs, at(3, 1, 12)}}, 2));
        QQuickWindow *window = opened.window.get();
        QCOMPARE(tileValues(window), (QStringList{u"2"_qs, u"2"_qs, u"1"_qs, u"2"_qs}));
        auto *days = find<QBarSet>(window, u"dayBars"_qs);
        auto *hours = find<QBarSet>(window, u"hourBars"_qs);
        QVERIFY(days && hours);

        // No turn of the event loop between the record and the look.
        opened.log->record({plane(u"3c6444"_qs, u"B738"_qs), plane(u"a1b2c3"_qs, u"A320"_qs)});
        QCOMPARE(tileValues(window), (QStringList{u"4"_qs, u"4"_qs, u"2"_qs, u"4"_qs}));
        QCOMPARE(days->at(13), 4.0);
        QCOMPARE(hours->at(23), 2.0);
        QCOMPARE(hours->at(20), 2.0);
        QCOMPARE(typeRows(window, u"typeName"_qs), (QStringList{u"Boeing 737-800"_qs, u"Airbus A320"_qs}));
        auto *look = find<BarChartLook>(window, u"dayChartLook"_qs);
        QVERIFY(look);
        QCOMPARE(look->valueCeiling(), 4);

        // An aircraft already counted today changes nothing.
        opened.log->record({plane(u"3c6444"_qs, u"B738"_qs)});
        QCOMPARE(tileValue(window, u"todayTile"_qs), u"4"_qs);
    }

    void barsAreFilledWithTheAccentGradient()
    {
        Opened opened = open(logbookFile({{u"2025-03-12"_qs, 3, {{10, 3}}}}, {}, 3));
        QQuickWindow *window = opened.window.get();
        auto *look = find<BarChartLook>(window, u"dayChartLook"_qs);
        QVERIFY(look);
        for (const QString &name : {u"dayBars"_qs, u"hourBars"_qs}) {
            auto *set = find<QBarSet>(window, name);
            QVERIFY(set);
            const QGradient *gradient = set->brush().gradient();
            QVERIFY2(gradient, qPrintable(name));
            QCOMPARE(gradient->type(), QGradient::LinearGradient);
            QCOMPARE(gradient->coordinateMode(), QGradient::ObjectBoundingMode);
            QCOMPARE(gradient->stops().first().second, look->color());
            QCOMPARE(gradient->stops().last().second.rgb(), look->color().rgb());
            QVERIFY(gradient->stops().last().second.alphaF() < 1.0);
        }

        // The accent follows the appearance, and the bars with it.
        const QColor lightAccent = look->color();
        DefaultsStore::shared()->setValue(u"appearanceChoice"_qs, u"dark"_qs);
        QCOMPARE_NE(look->color(), lightAccent);
        QCOMPARE(find<QBarSet>(window, u"dayBars"_qs)->brush().gradient()->stops().first().second,
                 look->color());
        DefaultsStore::shared()->setValue(u"appearanceChoice"_qs, u"light"_qs);
        QCOMPARE(look->color(), lightAccent);
    }

    void valueCeiling_data()
    {
        QTest::addColumn<qreal>("tallest");
        QTest::addColumn<int>("ceiling");
        QTest::newRow("no bars") << 0.0 << 4;
        QTest::newRow("one") << 1.0 << 4;
        QTest::newRow("exactly four") << 4.0 << 4;
        QTest::newRow("five") << 5.0 << 8;
        QTest::newRow("nine") << 9.0 << 12;
        QTest::newRow("thirty-seven") << 37.0 << 40;
        QTest::newRow("forty-one") << 41.0 << 60;
        QTest::newRow("1234") << 1234.0 << 1600;
        QTest::newRow("fractions never: 2.5 steps skipped at one") << 10.0 << 12;
        QTest::newRow("but taken at ten") << 100.0 << 100;
        QTest::newRow("ninety-one") << 91.0 << 100;
    }

    void valueCeiling()
    {
        QFETCH(qreal, tallest);
        QFETCH(int, ceiling);
        QCOMPARE(BarChartLook::ceilingFor(tallest), ceiling);
        QCOMPARE(ceiling % (BarChartLook::valueTicks - 1), 0);
    }

    void abbreviatedDate_data()
    {
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<QString>("expected");
        QTest::newRow("en_US") << QLocale(u"en_US"_qs) << u"Mar 12, 2025"_qs;
        QTest::newRow("de_DE") << QLocale(u"de_DE"_qs) << u"12. März 2025"_qs;
        QTest::newRow("fr_FR") << QLocale(u"fr_FR"_qs) << u"12 mars 2025"_qs;
        QTest::newRow("en_GB") << QLocale(u"en_GB"_qs) << u"12 Mar 2025"_qs;
        QTest::newRow("weekday last: ja_JP") << QLocale(u"ja_JP"_qs) << u"2025年3月12日"_qs;
        QTest::newRow("Arabic comma: ar_EG") << QLocale(u"ar_EG"_qs) << u"١٢ مارس ٢٠٢٥"_qs;
    }

    void abbreviatedDate()
    {
        QFETCH(QLocale, locale);
        QFETCH(QString, expected);
        QCOMPARE(LogbookFigures::abbreviatedDate(QDate(2025, 3, 12), locale), expected);
    }

    // Pictures for a look by eye: the window empty and full, light and dark.
    void pictures()
    {
        QList<Day> days;
        const QList<qint64> perDay{34, 51, 47, 62, 58, 23, 0, 41, 77, 69, 88, 54, 73, 49};
        for (int i = 0; i < perDay.size(); ++i) {
            const QDate date = now.date().addDays(i - 13);
            const qint64 count = perDay[i];
            days.append({date.toString(u"yyyy-MM-dd"),
                         count,
                         {{7, count / 5},
                          {9, count / 4},
                          {12, count / 6},
                          {17, count / 4},
                          {21, count - count / 5 - count / 4 - count / 6 - count / 4}}});
        }
        QList<std::pair<QString, QDateTime>> types;
        const QStringList codes{u"A359"_qs,
                                u"B789"_qs,
                                u"C172"_qs,
                                u"E75L"_qs,
                                u"DH8D"_qs,
                                u"B38M"_qs,
                                u"PC12"_qs,
                                u"A21N"_qs,
                                u"MD11"_qs,
                                u"B744"_qs,
                                u"A Very Long Type Name That Would Push The Date Out Of The Window"_qs};
        for (int i = 0; i < codes.size(); ++i)
            types.append({codes[i], now.addSecs(-qint64(i) * 7 * 3600)});
        std::swap(types[0], types[codes.size() - 1]);
        types[0].second = now.addSecs(60);
        const QByteArray full = logbookFile(days, types, 48213);

        for (const QString &appearance : {u"light"_qs, u"dark"_qs}) {
            DefaultsStore::shared()->setValue(u"appearanceChoice"_qs, appearance);
            for (const auto &[name, file] :
                 {std::pair{u"empty"_qs, QByteArray()}, std::pair{u"full"_qs, full}}) {
                Opened opened = open(file);
                save(opened.window.get(), u"logbook-%1-%2.png"_qs.arg(name, appearance));
                QStringList texts;
                ItemTexts::collect(opened.window->contentItem(), texts);
                QVERIFY2(
                    texts.contains(
                        u"Counts are unique aircraft seen within your radius each day, while Aerolume is running."_qs),
                    qPrintable(texts.join(u" | ")));
            }
        }
        DefaultsStore::shared()->setValue(u"appearanceChoice"_qs, u"light"_qs);
    }
};

QTEST_MAIN(LogbookViewTest)
#include "LogbookViewTest.moc"
