#include "StreamPlayer.h"
#include "LiveAudioServer.h"
#include "PrivatePulseAudio.h"

#include <QAudioDevice>
#include <QMediaDevices>
#include <QtTest>

using namespace Qt::Literals::StringLiterals;

using ItemStatus = StreamPlayer::ItemStatus;
using TimeControl = StreamPlayer::TimeControl;

class StreamPlayerTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();

    void liveStreamWaitsThenPlaysIntoTheSink();
    void refusedConnectionFails();
    void silentServerKeepsItWaiting();
    void droppedStreamWaitsAgainWithoutFailing();
    void pauseIsReportedOnce();
    void volumeIsTheOutputsVolume();
    void releasedPlayerHangsUp();

private:
    struct Recorder
    {
        explicit Recorder(StreamPlayer *player)
        {
            QObject::connect(player, &StreamPlayer::itemStatusChanged, player,
                             [this](ItemStatus status) { items.append(status); });
            QObject::connect(player, &StreamPlayer::timeControlStatusChanged, player,
                             [this](TimeControl status) { times.append(status); });
        }
        QList<ItemStatus> items;
        QList<TimeControl> times;
    };

    QTemporaryDir m_mediaFiles;
    std::unique_ptr<PrivatePulseAudio> m_pulse;
    std::unique_ptr<LiveAudioServer> m_server;
};

void StreamPlayerTest::initTestCase()
{
    qputenv("QT_MEDIA_BACKEND", "gstreamer");
    // GStreamer keeps its plugin registry under the home directory unless told otherwise.
    QVERIFY(m_mediaFiles.isValid());
    qputenv("GST_REGISTRY", QFile::encodeName(m_mediaFiles.filePath(u"gstreamer-registry.bin"_s)));
    m_pulse = std::make_unique<PrivatePulseAudio>();
    QVERIFY2(m_pulse->isRunning(), qPrintable(m_pulse->errorString()));
    // Sound goes to the test's own sink, not to a device of the machine (nor nowhere).
    QCOMPARE(QMediaDevices::defaultAudioOutput().description(), u"AerolumeTestSink"_s);
}

void StreamPlayerTest::cleanupTestCase()
{
    m_pulse.reset();
}

void StreamPlayerTest::init()
{
    m_server = std::make_unique<LiveAudioServer>();
}

void StreamPlayerTest::cleanup()
{
    m_server.reset();
    // Players of a finished test are gone before the next one counts streams.
    QTRY_COMPARE(m_pulse->activeStreamCount(), 0);
}

void StreamPlayerTest::liveStreamWaitsThenPlaysIntoTheSink()
{
    StreamPlayer player(QUrl(m_server->liveUrl()));
    Recorder recorder(&player);
    QCOMPARE(player.itemStatus(), ItemStatus::Unknown);
    QCOMPARE(player.timeControlStatus(), TimeControl::Paused);

    player.play();
    QTRY_COMPARE_WITH_TIMEOUT(player.timeControlStatus(), TimeControl::Playing, 10000);
    QCOMPARE(recorder.times, QList<TimeControl>({TimeControl::WaitingToPlay, TimeControl::Playing}));
    QCOMPARE(recorder.items, QList<ItemStatus>({ItemStatus::ReadyToPlay}));
    QCOMPARE(player.source(), QUrl(m_server->liveUrl()));
    QTRY_COMPARE(m_pulse->activeStreamCount(), 1);
}

void StreamPlayerTest::refusedConnectionFails()
{
    StreamPlayer player{QUrl(LiveAudioServer::deadUrl())};
    Recorder recorder(&player);
    player.play();
    QTRY_COMPARE_WITH_TIMEOUT(player.itemStatus(), ItemStatus::Failed, 10000);
    QCOMPARE(recorder.items, QList<ItemStatus>({ItemStatus::Failed}));
    QCOMPARE(player.timeControlStatus(), TimeControl::Paused);
    QCOMPARE(recorder.times, QList<TimeControl>({TimeControl::WaitingToPlay, TimeControl::Paused}));
}

void StreamPlayerTest::silentServerKeepsItWaiting()
{
    StreamPlayer silent{QUrl(m_server->silentUrl())};
    Recorder recorder(&silent);
    QSignalSpy opened(m_server.get(), &LiveAudioServer::connectionOpened);
    silent.play();
    QVERIFY(opened.wait(10000));

    // A live stream started afterwards gets all the way to playing; the silent one in the same time
    // gets nowhere.
    StreamPlayer witness{QUrl(m_server->liveUrl())};
    witness.play();
    QTRY_COMPARE_WITH_TIMEOUT(witness.timeControlStatus(), TimeControl::Playing, 10000);
    QCOMPARE(silent.timeControlStatus(), TimeControl::WaitingToPlay);
    QCOMPARE(silent.itemStatus(), ItemStatus::Unknown);
    QCOMPARE(recorder.times, QList<TimeControl>({TimeControl::WaitingToPlay}));
    QVERIFY(recorder.items.isEmpty());
}

void StreamPlayerTest::droppedStreamWaitsAgainWithoutFailing()
{
    StreamPlayer player{QUrl(m_server->liveUrl())};
    Recorder recorder(&player);
    player.play();
    QTRY_COMPARE_WITH_TIMEOUT(player.timeControlStatus(), TimeControl::Playing, 10000);

    m_server->dropAll();
    QTRY_COMPARE_WITH_TIMEOUT(player.timeControlStatus(), TimeControl::WaitingToPlay, 10000);
    QCOMPARE(player.itemStatus(), ItemStatus::ReadyToPlay);
    QCOMPARE(recorder.times, QList<TimeControl>({TimeControl::WaitingToPlay, TimeControl::Playing,
                                                 TimeControl::WaitingToPlay}));
}

void StreamPlayerTest::pauseIsReportedOnce()
{
    StreamPlayer player{QUrl(m_server->liveUrl())};
    Recorder recorder(&player);
    player.play();
    QTRY_COMPARE_WITH_TIMEOUT(player.timeControlStatus(), TimeControl::Playing, 10000);
    player.pause();
    player.pause();
    QCOMPARE(player.timeControlStatus(), TimeControl::Paused);
    QCOMPARE(recorder.times,
             QList<TimeControl>({TimeControl::WaitingToPlay, TimeControl::Playing, TimeControl::Paused}));
    QTRY_COMPARE(m_pulse->activeStreamCount(), 0);
}

void StreamPlayerTest::volumeIsTheOutputsVolume()
{
    StreamPlayer player{QUrl(m_server->liveUrl())};
    QCOMPARE(player.volume(), 1.0f);
    player.setVolume(0.25f);
    QCOMPARE(player.volume(), 0.25f);
    player.play();
    QTRY_COMPARE_WITH_TIMEOUT(player.timeControlStatus(), TimeControl::Playing, 10000);
    player.setVolume(0.6f);
    QCOMPARE(player.volume(), 0.6f);
}

void StreamPlayerTest::releasedPlayerHangsUp()
{
    auto *player = new StreamPlayer(QUrl(m_server->liveUrl()));
    player->play();
    QTRY_COMPARE_WITH_TIMEOUT(player->timeControlStatus(), TimeControl::Playing, 10000);
    QCOMPARE(m_server->openConnections(), 1);
    QSignalSpy closed(m_server.get(), &LiveAudioServer::connectionClosed);
    delete player;
    QVERIFY(closed.wait(10000));
    QCOMPARE(m_server->openConnections(), 0);
}

QTEST_MAIN(StreamPlayerTest)
#include "StreamPlayerTest.moc"
