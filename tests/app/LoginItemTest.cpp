#include "LoginItem.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

// The login item over a real autostart folder in a temporary directory.
class LoginItemTest : public QObject
{
    Q_OBJECT

    static void writeFile(const QString &path, const QByteArray &text)
    {
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    static void expectSuccess(const std::optional<QString> &failure)
    {
        QVERIFY2(!failure, qPrintable(failure.value_or(QString())));
    }

private slots:
    void statusFollowsTheEntry_data()
    {
        QTest::addColumn<bool>("present");
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("status");

        const auto notRegistered = int(LoginItem::Status::NotRegistered);
        const auto enabled = int(LoginItem::Status::Enabled);
        const auto disabled = int(LoginItem::Status::Disabled);
        QTest::newRow("no entry") << false << QByteArray() << notRegistered;
        QTest::newRow("plain entry") << true << QByteArray("[Desktop Entry]\nType=Application\nExec=aerolume\n") << enabled;
        QTest::newRow("Hidden=true") << true << QByteArray("[Desktop Entry]\nExec=aerolume\nHidden=true\n") << disabled;
        QTest::newRow("Hidden = true with blanks") << true << QByteArray("[Desktop Entry]\nHidden = true\n") << disabled;
        QTest::newRow("Hidden=false") << true << QByteArray("[Desktop Entry]\nHidden=false\n") << enabled;
        QTest::newRow("Hidden in an action group") << true
            << QByteArray("[Desktop Entry]\nExec=aerolume\n\n[Desktop Action quiet]\nHidden=true\n") << enabled;
        QTest::newRow("empty file") << true << QByteArray() << enabled;
    }

    void statusFollowsTheEntry()
    {
        QFETCH(bool, present);
        QFETCH(QByteArray, text);
        QFETCH(int, status);
        QTemporaryDir dir;
        const QString path = dir.filePath(u"autostart/aerolume.desktop"_qs);
        if (present)
            writeFile(path, text);
        QCOMPARE(int(LoginItem(path, u"/usr/bin/aerolume"_qs).status()), status);
    }

    void registeringWritesAnEntryThatStartsTheProgram()
    {
        QTemporaryDir dir;
        // The folder does not exist yet: registering makes it.
        const QString path = dir.filePath(u"config/autostart/aerolume.desktop"_qs);
        const LoginItem item(path, u"/opt/aerolume/bin/aerolume"_qs);
        expectSuccess(item.registerItem());
        QCOMPARE(item.status(), LoginItem::Status::Enabled);

        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QList<QByteArray> lines = file.readAll().split('\n');
        QCOMPARE(lines.first(), QByteArray("[Desktop Entry]"));
        QVERIFY(lines.contains("Type=Application"));
        QVERIFY(lines.contains("Exec=/opt/aerolume/bin/aerolume"));
        QVERIFY(!lines.contains("Hidden=true"));
    }

    void registeringAgainSwitchesAHiddenEntryBackOn()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(u"autostart/aerolume.desktop"_qs);
        writeFile(path, "[Desktop Entry]\nExec=aerolume\nHidden=true\n");
        const LoginItem item(path, u"/usr/bin/aerolume"_qs);
        QCOMPARE(item.status(), LoginItem::Status::Disabled);
        expectSuccess(item.registerItem());
        QCOMPARE(item.status(), LoginItem::Status::Enabled);
    }

    void unregisteringRemovesTheEntry()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(u"autostart/aerolume.desktop"_qs);
        const LoginItem item(path, u"/usr/bin/aerolume"_qs);
        expectSuccess(item.registerItem());
        expectSuccess(item.unregisterItem());
        QVERIFY(!QFile::exists(path));
        QCOMPARE(item.status(), LoginItem::Status::NotRegistered);
        // Nothing to remove is no failure.
        expectSuccess(item.unregisterItem());
    }

    void execQuotesAPathWithBlanks_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QByteArray>("exec");
        QTest::newRow("plain") << u"/usr/bin/aerolume"_qs << QByteArray("Exec=/usr/bin/aerolume");
        QTest::newRow("blank") << u"/home/me/My Apps/aerolume"_qs << QByteArray("Exec=\"/home/me/My Apps/aerolume\"");
        QTest::newRow("dollar and quote") << u"/a b/$x\"y"_qs << QByteArray("Exec=\"/a b/\\$x\\\"y\"");
    }

    void execQuotesAPathWithBlanks()
    {
        QFETCH(QString, program);
        QFETCH(QByteArray, exec);
        QVERIFY(LoginItem::entryText(program).split('\n').contains(exec));
    }

    // A chmod'd folder does not stop root, and the tests may run as root: the autostart folder's place is
    // taken by a regular file instead, which no user can write into.
    void aFolderThatCannotBeWrittenGivesTheSystemsReason()
    {
        QTemporaryDir dir;
        writeFile(dir.filePath(u"autostart"_qs), "not a folder");
        const LoginItem item(dir.filePath(u"autostart/aerolume.desktop"_qs), u"/usr/bin/aerolume"_qs);
        const std::optional<QString> failure = item.registerItem();
        QVERIFY(failure.has_value());
        QVERIFY2(!failure->isEmpty(), "the reason is given");
        QCOMPARE(item.status(), LoginItem::Status::NotRegistered);
    }

    void defaultPathIsInTheConfigFolder()
    {
        QTemporaryDir dir;
        qputenv("XDG_CONFIG_HOME", dir.path().toUtf8());
        QCOMPARE(LoginItem::defaultFilePath(), dir.filePath(u"autostart/aerolume.desktop"_qs));
        QCOMPARE(LoginItem::forThisProgram().program(), QCoreApplication::applicationFilePath());
    }
};

QTEST_GUILESS_MAIN(LoginItemTest)
#include "LoginItemTest.moc"
