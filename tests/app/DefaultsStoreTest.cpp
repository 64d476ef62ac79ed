#include "DefaultsStore.h"
#include "UserDirectories.h"

#include <QDir>
#include <QFile>
#include <QLocale>
#include <QSaveFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using OptionalDouble = std::optional<double>;
Q_DECLARE_METATYPE(OptionalDouble)
using OptionalText = std::optional<QString>;
Q_DECLARE_METATYPE(OptionalText)

class DefaultsStoreTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;

    [[nodiscard]] QString path() const { return m_dir->filePath(u"Aerolume/Aerolume.conf"_qs); }

    // The file as another program writes it: replaced whole.
    void writeRaw(const QByteArray &lines)
    {
        QDir().mkpath(m_dir->filePath(u"Aerolume"_qs));
        QSaveFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[General]\n" + lines + "\n");
        QVERIFY(file.commit());
    }

    [[nodiscard]] QByteArray rawFile() const
    {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // The text after "key=" in the file as it is on disk.
    [[nodiscard]] QByteArray rawValue(const QByteArray &key) const
    {
        for (const QByteArray &line : rawFile().split('\n')) {
            if (line.startsWith(key + '='))
                return line.mid(key.size() + 1);
        }
        return {};
    }

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    void init() { m_dir = std::make_unique<QTemporaryDir>(); }
    void cleanup() { m_dir.reset(); }

    void fileFollowsXdgConfigHome_data()
    {
        QTest::addColumn<QString>("variable");
        QTest::addColumn<QString>("expected");

        const QString home = UserDirectories::home();
        QTest::newRow("absolute") << u"/tmp/aerolume-test-config"_qs
                                  << u"/tmp/aerolume-test-config/Aerolume/Aerolume.conf"_qs;
        QTest::newRow("relative is ignored")
            << u"relative/config"_qs << home + u"/.config/Aerolume/Aerolume.conf"_qs;
        QTest::newRow("empty") << QString() << home + u"/.config/Aerolume/Aerolume.conf"_qs;
    }

    void fileFollowsXdgConfigHome()
    {
        QFETCH(QString, variable);
        QFETCH(QString, expected);

        const QByteArray saved = qgetenv("XDG_CONFIG_HOME");
        qputenv("XDG_CONFIG_HOME", variable.toUtf8());
        const QString actual = DefaultsStore::defaultFilePath();
        qputenv("XDG_CONFIG_HOME", saved);
        QCOMPARE(actual, expected);
    }

    void boolValue_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<bool>("expected");

        QTest::newRow("absent") << QByteArray() << false;
        QTest::newRow("true") << QByteArray("reduceMotion=true") << true;
        QTest::newRow("false") << QByteArray("reduceMotion=false") << false;
        QTest::newRow("1") << QByteArray("reduceMotion=1") << true;
        QTest::newRow("0") << QByteArray("reduceMotion=0") << false;
        QTest::newRow("empty") << QByteArray("reduceMotion=") << false;
        QTest::newRow("text") << QByteArray("reduceMotion=sometimes") << false;
    }

    void boolValue()
    {
        QFETCH(QByteArray, line);
        QFETCH(bool, expected);

        writeRaw(line);
        DefaultsStore store(path());
        QCOMPARE(store.boolValue(u"reduceMotion"_qs), expected);
    }

    void boolWrittenIsReadBack()
    {
        DefaultsStore store(path());
        store.setValue(u"reduceMotion"_qs, true);
        QCOMPARE(rawValue("reduceMotion"), QByteArray("true"));
        QCOMPARE(store.boolValue(u"reduceMotion"_qs), true);
        store.setValue(u"reduceMotion"_qs, false);
        QCOMPARE(store.boolValue(u"reduceMotion"_qs), false);
    }

    void doubleValue_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<OptionalDouble>("expected");

        QTest::newRow("absent") << QByteArray() << OptionalDouble();
        QTest::newRow("12.5") << QByteArray("radiusNM=12.5") << OptionalDouble(12.5);
        QTest::newRow("negative") << QByteArray("radiusNM=-3") << OptionalDouble(-3);
        QTest::newRow("exponent") << QByteArray("radiusNM=1e3") << OptionalDouble(1000);
        QTest::newRow("blanks around") << QByteArray("radiusNM=  7  ") << OptionalDouble(7);
        QTest::newRow("quoted") << QByteArray("radiusNM=\"40\"") << OptionalDouble(40);
        QTest::newRow("text") << QByteArray("radiusNM=abc") << OptionalDouble();
        QTest::newRow("empty") << QByteArray("radiusNM=") << OptionalDouble();
        QTest::newRow("decimal comma") << QByteArray("radiusNM=\"12,5\"") << OptionalDouble();
        QTest::newRow("a list") << QByteArray("radiusNM=12, 5") << OptionalDouble();
        QTest::newRow("number and text") << QByteArray("radiusNM=12nm") << OptionalDouble();
    }

    void doubleValue()
    {
        QFETCH(QByteArray, line);
        QFETCH(OptionalDouble, expected);

        writeRaw(line);
        DefaultsStore store(path());
        QCOMPARE(store.doubleValue(u"radiusNM"_qs), expected);
    }

    // A radius goes to the file as text and must come back as the same number, or every launch would
    // find the widgets' file different from the settings.
    void doublesKeepEveryBit_data()
    {
        QTest::addColumn<double>("value");
        QTest::newRow("0.1 + 0.2") << 0.1 + 0.2;
        QTest::newRow("17 digits") << 12.345678901234567;
        QTest::newRow("small") << 1e-7;
        QTest::newRow("large") << 123456789.125;
    }

    void doublesKeepEveryBit()
    {
        QFETCH(double, value);

        DefaultsStore store(path());
        store.setValue(u"radiusNM"_qs, value);
        bool ok = false;
        const double onDisk = QString::fromLatin1(rawValue("radiusNM")).toDouble(&ok);
        QVERIFY2(ok, rawValue("radiusNM").constData());
        QVERIFY(onDisk == value);
        QVERIFY(store.doubleValue(u"radiusNM"_qs) == value);
    }

    void dataValue()
    {
        QByteArray bytes;
        for (int i = 0; i < 256; ++i)
            bytes.append(char(i));
        bytes.append("{\"label\":\"Z\xc3\xbcrich, \\\"home\\\"\"}");
        {
            DefaultsStore store(path());
            store.setValue(u"homeLocation"_qs, bytes);
            QCOMPARE(store.dataValue(u"homeLocation"_qs), std::optional(bytes));
        }
        QVERIFY(rawFile().contains("@ByteArray("));
        // What another program made of it, read from the file alone.
        const QByteArray text = rawFile();
        QFile::remove(path());
        // (A line more, so that the file can't pass for the one already read.)
        writeRaw(text.mid(text.indexOf('\n') + 1) + "\nradiusNM=1");
        DefaultsStore store(path());
        QCOMPARE(store.dataValue(u"homeLocation"_qs), std::optional(bytes));
    }

    void dataValueOfOtherKinds_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<bool>("present");

        QTest::newRow("bytes") << QByteArray("homeLocation=@ByteArray({})") << true;
        QTest::newRow("empty bytes") << QByteArray("homeLocation=@ByteArray()") << true;
        QTest::newRow("text") << QByteArray("homeLocation={}") << false;
        QTest::newRow("number") << QByteArray("homeLocation=3") << false;
        QTest::newRow("absent") << QByteArray() << false;
    }

    void dataValueOfOtherKinds()
    {
        QFETCH(QByteArray, line);
        QFETCH(bool, present);

        writeRaw(line);
        DefaultsStore store(path());
        QCOMPARE(store.dataValue(u"homeLocation"_qs).has_value(), present);
    }

    void stringValue_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<OptionalText>("expected");

        QTest::newRow("text") << QByteArray("distanceUnit=km") << OptionalText(u"km"_qs);
        QTest::newRow("quoted with a comma")
            << QByteArray("distanceUnit=\"a, b\"") << OptionalText(u"a, b"_qs);
        QTest::newRow("empty") << QByteArray("distanceUnit=") << OptionalText(QString());
        QTest::newRow("number") << QByteArray("distanceUnit=5") << OptionalText(u"5"_qs);
        QTest::newRow("bytes") << QByteArray("distanceUnit=@ByteArray(km)") << OptionalText();
        QTest::newRow("absent") << QByteArray() << OptionalText();
    }

    void stringValue()
    {
        QFETCH(QByteArray, line);
        QFETCH(OptionalText, expected);

        writeRaw(line);
        DefaultsStore store(path());
        QCOMPARE(store.stringValue(u"distanceUnit"_qs), expected);
    }

    void changeSignalNamesTheKey()
    {
        DefaultsStore store(path());
        QSignalSpy changed(&store, &DefaultsStore::changed);
        store.setValue(u"radiusNM"_qs, 30);
        store.setValue(u"radiusNM"_qs, 30); // every assignment, also of the same value
        store.remove(u"homeLocation"_qs);
        QCOMPARE(changed.count(), 3);
        QCOMPARE(changed[0].first().toString(), u"radiusNM"_qs);
        QCOMPARE(changed[1].first().toString(), u"radiusNM"_qs);
        QCOMPARE(changed[2].first().toString(), u"homeLocation"_qs);
    }

    void removeTakesTheKeyOutOfTheFile()
    {
        DefaultsStore store(path());
        store.setValue(u"homeLocation"_qs, QByteArray("{}"));
        store.setValue(u"radiusNM"_qs, 30);
        QVERIFY(store.contains(u"homeLocation"_qs));
        store.remove(u"homeLocation"_qs);
        QVERIFY(!store.contains(u"homeLocation"_qs));
        QVERIFY(!store.value(u"homeLocation"_qs).isValid());
        QVERIFY(!rawFile().contains("homeLocation"));
        QVERIFY(rawFile().contains("radiusNM=30"));
    }

    void writtenElsewhereIsSeenAtTheNextRead()
    {
        writeRaw("radiusNM=10");
        DefaultsStore store(path());
        QCOMPARE(store.doubleValue(u"radiusNM"_qs), OptionalDouble(10));

        // Another program replaces the file.
        writeRaw("radiusNM=12.75\ntrailMinutes=2");
        QCOMPARE(store.doubleValue(u"radiusNM"_qs), OptionalDouble(12.75));
        QCOMPARE(store.doubleValue(u"trailMinutes"_qs), OptionalDouble(2));

        // A second store on the same file, as the widgets' settings or a second window would have.
        DefaultsStore other(path());
        other.setValue(u"distanceUnit"_qs, u"km"_qs);
        QCOMPARE(store.stringValue(u"distanceUnit"_qs), OptionalText(u"km"_qs));
        other.remove(u"trailMinutes"_qs);
        QCOMPARE(store.doubleValue(u"trailMinutes"_qs), OptionalDouble());

        // And a write of this store doesn't lose what the other program wrote before it.
        writeRaw("radiusNM=12.75\ndistanceUnit=nm\nwidgetColorHex=#FF0000");
        store.setValue(u"reduceMotion"_qs, true);
        QCOMPARE(store.stringValue(u"distanceUnit"_qs), OptionalText(u"nm"_qs));
        QCOMPARE(store.stringValue(u"widgetColorHex"_qs), OptionalText(u"#FF0000"_qs));
        QVERIFY(rawFile().contains("widgetColorHex"));
    }

    void noFileReadsAsNothingAndIsNotMade()
    {
        DefaultsStore store(path());
        QCOMPARE(store.boolValue(u"reduceMotion"_qs), false);
        QCOMPARE(store.doubleValue(u"radiusNM"_qs), OptionalDouble());
        QCOMPARE(store.dataValue(u"homeLocation"_qs), std::nullopt);
        QVERIFY(!store.contains(u"radiusNM"_qs));
        QVERIFY(!QFile::exists(path()));
    }
};

QTEST_GUILESS_MAIN(DefaultsStoreTest)
#include "DefaultsStoreTest.moc"
