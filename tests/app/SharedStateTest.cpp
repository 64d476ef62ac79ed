#include "SharedState.h"
#include "UserDirectories.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

using Config = SharedState::Config;
using OptionalConfig = std::optional<Config>;
Q_DECLARE_METATYPE(OptionalConfig)

namespace {

const HomeLocation zurich(47.3769, 8.5417, u"Zürich \"Altstadt\" \\ 1"_qs);

// Sets an environment variable for one scope and puts the old value back.
class EnvironmentGuard
{
public:
    EnvironmentGuard(const char *name, const QByteArray &value)
        : m_name(name), m_had(qEnvironmentVariableIsSet(name)), m_old(qgetenv(name))
    {
        if (value.isNull())
            qunsetenv(name);
        else
            qputenv(name, value);
    }
    ~EnvironmentGuard()
    {
        if (m_had)
            qputenv(m_name, m_old);
        else
            qunsetenv(m_name);
    }
    EnvironmentGuard(const EnvironmentGuard &) = delete;
    EnvironmentGuard &operator=(const EnvironmentGuard &) = delete;

private:
    const char *m_name;
    bool m_had;
    QByteArray m_old;
};

// JSON written with single quotes, which read better in C++ strings.
QByteArray json(const char *text)
{
    return QByteArray(text).replace('\'', '"');
}

} // namespace

class SharedStateTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;

    [[nodiscard]] QString dataHome() const { return m_dir->filePath(u"not/yet/there"_qs); }

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        qputenv("XDG_DATA_HOME", QFile::encodeName(dataHome()));
    }

    void cleanup() { m_dir.reset(); }

    void fileIsInTheDataDirectory()
    {
        QCOMPARE(SharedState::directory(), dataHome() + u"/Aerolume"_qs);
        QCOMPARE(SharedState::filePath(), dataHome() + u"/Aerolume/widget-config.json"_qs);
    }

    void decode_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<OptionalConfig>("expected");

        const HomeLocation home(45.5, -122.6, u"Portland"_qs);
        const QByteArray homeJson = json("'home':{'latitude':45.5,'longitude':-122.6,'label':'Portland'}");
        const auto object = [&](const QByteArray &rest) { return "{" + homeJson + rest + "}"; };

        QTest::newRow("all keys") << object(json(
                                         ",'radiusNM':25,'distanceUnit':'km','widgetColorHex':'#FF0000'"))
                                  << OptionalConfig(Config{home, 25, u"km"_qs, u"#FF0000"_qs});
        QTest::newRow("optional keys missing")
            << object(json(",'radiusNM':12.5")) << OptionalConfig(Config{home, 12.5, {}, {}});
        QTest::newRow("optional keys null")
            << object(json(",'radiusNM':25,'distanceUnit':null,'widgetColorHex':null"))
            << OptionalConfig(Config{home, 25, {}, {}});
        QTest::newRow("keys of others are passed over")
            << object(json(",'radiusNM':25,'theme':'dark'")) << OptionalConfig(Config{home, 25, {}, {}});
        QTest::newRow("no home") << json("{'radiusNM':25}") << OptionalConfig();
        QTest::newRow("no radius") << object("") << OptionalConfig();
        QTest::newRow("radius null") << object(json(",'radiusNM':null")) << OptionalConfig();
        QTest::newRow("radius as text") << object(json(",'radiusNM':'25'")) << OptionalConfig();
        QTest::newRow("home as text") << json("{'home':'Portland','radiusNM':25}") << OptionalConfig();
        QTest::newRow("home without label")
            << json("{'home':{'latitude':45.5,'longitude':-122.6},'radiusNM':25}") << OptionalConfig();
        QTest::newRow("latitude as text")
            << json("{'home':{'latitude':'45.5','longitude':-122.6,'label':'P'},'radiusNM':25}")
            << OptionalConfig();
        QTest::newRow("label as a number")
            << json("{'home':{'latitude':45.5,'longitude':-122.6,'label':7},'radiusNM':25}")
            << OptionalConfig();
        QTest::newRow("unit as a number")
            << object(json(",'radiusNM':25,'distanceUnit':1")) << OptionalConfig();
        QTest::newRow("colour as true")
            << object(json(",'radiusNM':25,'widgetColorHex':true")) << OptionalConfig();
        QTest::newRow("colour as a list")
            << object(json(",'radiusNM':25,'widgetColorHex':['#FF0000']")) << OptionalConfig();
        QTest::newRow("a list") << QByteArray("[]") << OptionalConfig();
        QTest::newRow("cut short") << object(json(",'radiusNM':25")).chopped(1) << OptionalConfig();
        QTest::newRow("empty") << QByteArray() << OptionalConfig();
    }

    void decode()
    {
        QFETCH(QByteArray, json);
        QFETCH(OptionalConfig, expected);
        QCOMPARE(SharedState::decode(json), expected);
    }

    void encodeLeavesOutWhatIsAbsent_data()
    {
        QTest::addColumn<Config>("config");
        QTest::addColumn<QStringList>("keys");

        QTest::newRow("all") << Config{zurich, 25, u"nm"_qs, u"#73FF99"_qs}
                             << QStringList{u"distanceUnit"_qs, u"home"_qs, u"radiusNM"_qs,
                                            u"widgetColorHex"_qs};
        QTest::newRow("no unit") << Config{zurich, 25, {}, u"#73FF99"_qs}
                                 << QStringList{u"home"_qs, u"radiusNM"_qs, u"widgetColorHex"_qs};
        QTest::newRow("neither") << Config{zurich, 0.1 + 0.2, {}, {}}
                                 << QStringList{u"home"_qs, u"radiusNM"_qs};
    }

    void encodeLeavesOutWhatIsAbsent()
    {
        QFETCH(Config, config);
        QFETCH(QStringList, keys);

        const QByteArray json = SharedState::encode(config);
        QVERIFY(!json.contains('\n'));
        QVERIFY(json.contains("Z\xc3\xbcrich")); // UTF-8, not escaped
        const QJsonObject object = QJsonDocument::fromJson(json).object();
        QStringList actual = object.keys();
        actual.sort();
        QCOMPARE(actual, keys);
        QStringList homeKeys = object.value(u"home").toObject().keys();
        homeKeys.sort();
        QCOMPARE(homeKeys, QStringList({u"label"_qs, u"latitude"_qs, u"longitude"_qs}));
        // Read back exactly, to the last bit of the radius.
        QCOMPARE(SharedState::decode(json), std::optional(config));
    }

    void writeMakesTheDirectoryAndReadGivesItBack()
    {
        QVERIFY(!QFileInfo::exists(dataHome()));
        const Config config{zurich, 40, u"km"_qs, {}};
        SharedState::write(config);
        QCOMPARE(SharedState::read(), std::optional(config));
        // Nothing else is left beside the file.
        QCOMPARE(
            QDir(SharedState::directory()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
            QStringList({u"widget-config.json"_qs}));
    }

    // Replaced, never rewritten in place: a reader that has the old file open reads all of the old file.
    void writeReplacesTheFileWhole()
    {
        SharedState::write(Config{zurich, 10, {}, {}});
        QFile reader(SharedState::filePath());
        QVERIFY(reader.open(QIODevice::ReadOnly));
        SharedState::write(Config{HomeLocation(1, 2, u"Elsewhere"_qs), 20, u"nm"_qs, u"#000000"_qs});
        QCOMPARE(SharedState::decode(reader.readAll()), std::optional(Config{zurich, 10, {}, {}}));
        QCOMPARE(SharedState::read()->home.label, u"Elsewhere"_qs);
        QCOMPARE(
            QDir(SharedState::directory()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
            QStringList({u"widget-config.json"_qs}));
    }

    void aFailedWriteKeepsWhatWasThere_data()
    {
        QTest::addColumn<bool>("blockDirectory");
        QTest::newRow("the directory is a file") << true;
        QTest::newRow("the file is a directory") << false;
    }

    void aFailedWriteKeepsWhatWasThere()
    {
        QFETCH(bool, blockDirectory);

        QVERIFY(QDir().mkpath(dataHome()));
        const QString blocked = blockDirectory ? SharedState::directory() : SharedState::filePath();
        if (blockDirectory) {
            QFile file(blocked);
            QVERIFY(file.open(QIODevice::WriteOnly));
        } else {
            QVERIFY(QDir().mkpath(blocked));
        }
        SharedState::write(Config{zurich, 10, {}, {}});
        QCOMPARE(SharedState::read(), std::nullopt);
        QCOMPARE(QFileInfo(blocked).isDir(), !blockDirectory);
        SharedState::clear();
        QVERIFY(QFileInfo::exists(blocked));
    }

    void readGivesNothingForWhatIsNotAConfiguration()
    {
        QCOMPARE(SharedState::read(), std::nullopt);
        QVERIFY(QDir().mkpath(SharedState::directory()));
        QFile file(SharedState::filePath());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(json("{'home':{'latitude':1,'longitude':2,'label':'x'}}"));
        file.close();
        QCOMPARE(SharedState::read(), std::nullopt);
    }

    void clearRemovesTheFileAndMindsNoMissingOne()
    {
        SharedState::write(Config{zurich, 10, {}, {}});
        QVERIFY(QFile::exists(SharedState::filePath()));
        SharedState::clear();
        QVERIFY(!QFile::exists(SharedState::filePath()));
        QCOMPARE(SharedState::read(), std::nullopt);
        SharedState::clear();
        QVERIFY(!QFile::exists(SharedState::filePath()));
    }

    void userDirectories_data()
    {
        QTest::addColumn<QByteArray>("variable");
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<QString>("which");
        QTest::addColumn<QString>("expected");

        const QString home = UserDirectories::home();
        QTest::newRow("data, set") << QByteArray("XDG_DATA_HOME") << QByteArray("/srv/data") << u"data"_qs
                                   << u"/srv/data/Aerolume"_qs;
        QTest::newRow("data, relative") << QByteArray("XDG_DATA_HOME") << QByteArray("data") << u"data"_qs
                                        << home + u"/.local/share/Aerolume"_qs;
        QTest::newRow("data, unset") << QByteArray("XDG_DATA_HOME") << QByteArray() << u"data"_qs
                                     << home + u"/.local/share/Aerolume"_qs;
        QTest::newRow("config, set") << QByteArray("XDG_CONFIG_HOME") << QByteArray("/srv/config")
                                     << u"config"_qs << u"/srv/config/Aerolume"_qs;
        QTest::newRow("config, empty") << QByteArray("XDG_CONFIG_HOME") << QByteArray("") << u"config"_qs
                                       << home + u"/.config/Aerolume"_qs;
        QTest::newRow("state, set") << QByteArray("XDG_STATE_HOME") << QByteArray("/srv/state") << u"state"_qs
                                    << u"/srv/state/Aerolume"_qs;
        QTest::newRow("state, unset") << QByteArray("XDG_STATE_HOME") << QByteArray() << u"state"_qs
                                      << home + u"/.local/state/Aerolume"_qs;
        QTest::newRow("runtime, set") << QByteArray("XDG_RUNTIME_DIR") << QByteArray("/run/user/4242")
                                      << u"runtime"_qs << u"/run/user/4242/aerolume"_qs;
    }

    void userDirectories()
    {
        QFETCH(QByteArray, variable);
        QFETCH(QByteArray, value);
        QFETCH(QString, which);
        QFETCH(QString, expected);

        const EnvironmentGuard guard(variable.constData(), value);
        const QString actual = which == u"data"     ? UserDirectories::data()
                               : which == u"config" ? UserDirectories::config()
                               : which == u"state"  ? UserDirectories::state()
                                                    : UserDirectories::runtime();
        QCOMPARE(actual, expected);
    }

    // The widget program may run with another $HOME; both must find the same file.
    void homeIsTheRealUsersNotHOME()
    {
        const passwd *entry = getpwuid(getuid());
        if (!entry || !entry->pw_dir || !*entry->pw_dir)
            QSKIP("this user has no home directory in the password database");
        const EnvironmentGuard home("HOME", QFile::encodeName(m_dir->path()));
        const EnvironmentGuard data("XDG_DATA_HOME", QByteArray());
        QCOMPARE(UserDirectories::home(), QFile::decodeName(entry->pw_dir));
        QCOMPARE(SharedState::directory(), QFile::decodeName(entry->pw_dir) + u"/.local/share/Aerolume"_qs);
    }

    // Without a runtime directory the fallback in /tmp is a folder of this user's alone.
    void runtimeFallbackIsPrivate()
    {
        const EnvironmentGuard runtime("XDG_RUNTIME_DIR", QByteArray());
        const QString path = UserDirectories::runtime();
        QVERIFY2(path.startsWith(u"/tmp/aerolume-%1"_qs.arg(getuid())) ||
                     path.startsWith(QDir::tempPath() + u"/aerolume-%1"_qs.arg(getuid())),
                 qPrintable(path));
        struct stat info
        {
        };
        if (::lstat(QFile::encodeName(path).constData(), &info) != 0)
            QSKIP("the fallback folder is not there (another user's folder took its name)");
        QVERIFY(S_ISDIR(info.st_mode));
        QCOMPARE(info.st_uid, getuid());
        QCOMPARE(info.st_mode & 0777, mode_t(0700));
    }
};

QTEST_GUILESS_MAIN(SharedStateTest)
#include "SharedStateTest.moc"
