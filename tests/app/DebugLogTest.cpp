#include "DebugLog.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

// The debug log as files on disk show it: its line form, folder and file made when missing, a file
// deleted meanwhile made again, and a link planted at its path left alone.
class DebugLogTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QDateTime m_now;

    QByteArray contents(const QString &path) const
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private slots:
    void init()
    {
        QVERIFY(m_dir.isValid());
        m_now = QDateTime(QDate(2026, 11, 16), QTime(22, 38, 23), Qt::UTC);
    }

    void lineForm_data()
    {
        QTest::addColumn<QDateTime>("when");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("line");
        QTest::newRow("utc") << QDateTime(QDate(2026, 11, 16), QTime(22, 38, 23), Qt::UTC) << u"launched"_qs
                             << u"2026-11-16 22:38:23 +0000 launched\n"_qs;
        QTest::newRow("another zone is told in utc")
            << QDateTime(QDate(2026, 11, 17), QTime(0, 8, 5, 900), QTimeZone(2 * 3600)) << u"x"_qs
            << u"2026-11-16 22:08:05 +0000 x\n"_qs;
        QTest::newRow("several lines") << QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5), Qt::UTC)
                                       << u"windows before:\n  [before] 'Aerolume'"_qs
                                       << u"2026-01-02 03:04:05 +0000 windows before:\n  [before] 'Aerolume'\n"_qs;
    }

    void lineForm()
    {
        QFETCH(QDateTime, when);
        QFETCH(QString, message);
        QFETCH(QString, line);
        QCOMPARE(DebugLog::line(when, message), line);
    }

    void makesFolderAndFileThenAppends()
    {
        const QString path = m_dir.filePath(u"state/Aerolume/debug.log"_qs);
        DebugLog log(path, [this] { return m_now; });
        log.write(u"no main window — calling captured openWindow(id: main)"_qs);
        m_now = m_now.addSecs(1);
        log.write(u"GetURL: aerolume://open"_qs);
        QCOMPARE(QString::fromUtf8(contents(path)),
                 u"2026-11-16 22:38:23 +0000 no main window — calling captured openWindow(id: main)\n"
                 "2026-11-16 22:38:24 +0000 GetURL: aerolume://open\n"_qs);
        QCOMPARE(QFileInfo(path).permissions() & (QFile::ReadOther | QFile::WriteOther), QFile::Permissions());
    }

    void aDeletedFileIsMadeAgain()
    {
        const QString path = m_dir.filePath(u"again/debug.log"_qs);
        DebugLog log(path, [this] { return m_now; });
        log.write(u"first"_qs);
        QVERIFY(QFile::remove(path));
        log.write(u"second"_qs);
        QCOMPARE(contents(path), QByteArray("2026-11-16 22:38:23 +0000 second\n"));
    }

    void aPlantedLinkIsLeftAlone()
    {
        const QString target = m_dir.filePath(u"someone-elses-file"_qs);
        QFile file(target);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("theirs\n");
        file.close();
        QDir().mkpath(m_dir.filePath(u"linked"_qs));
        const QString path = m_dir.filePath(u"linked/debug.log"_qs);
        QVERIFY(QFile::link(target, path));
        DebugLog log(path, [this] { return m_now; });
        log.write(u"never written"_qs);
        QVERIFY(QFileInfo(path).isSymLink());
        QCOMPARE(contents(target), QByteArray("theirs\n"));
    }

    void aFailureIsDropped()
    {
        // The folder can't be made: a file stands where it would go.
        const QString blocker = m_dir.filePath(u"blocker"_qs);
        QFile file(blocker);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        DebugLog log(blocker + u"/Aerolume/debug.log"_qs, [this] { return m_now; });
        log.write(u"dropped"_qs);
        QVERIFY(!QFile::exists(log.path()));
    }
};

QTEST_GUILESS_MAIN(DebugLogTest)
#include "DebugLogTest.moc"
