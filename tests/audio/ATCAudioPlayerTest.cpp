#include "ATCAudio.h"
#include "DefaultsStore.h"
#include "LiveAudioServer.h"
#include "LoopbackHttpServer.h"
#include "PrivatePulseAudio.h"
#include "StreamPlayer.h"

#include <QtTest>

using namespace Qt::Literals::StringLiterals;

using Kind = ATCAudio::StatusKind;

char *toString(const ATCAudio::Status &status)
{
    const QString kind = QString::fromLatin1(QMetaEnum::fromType<Kind>().valueToKey(int(status.kind)));
    return QTest::toString(status.name.isEmpty() ? kind : kind + u'(' + status.name + u')');
}

namespace {

ATCAudio::Status idle()
{
    return {Kind::Idle, {}};
}

ATCAudio::Status buffering()
{
    return {Kind::Buffering, {}};
}

ATCAudio::Status playing(const QString &name)
{
    return {Kind::Playing, name};
}

ATCAudio::Status offline(const QString &name)
{
    return {Kind::Offline, name};
}

} // namespace

class ATCAudioPlayerTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();

    void liveFeedBuffersThenPlays();
    void deadAddressGoesOffline();
    void refusedAddressGoesOfflineWithoutAPlayer();
    void silentServerStaysBuffering();
    void stopWhileBufferingIsFinal();
    void stopWhilePlayingHangsUp();
    void lateResolutionAfterPickingAnotherDoesNothing();
    void removingTheCurrentFavoriteWhileBufferingGoesIdle();
    void removingTheCurrentFavoriteDuringResolutionIsFinal();
    void removingAnotherFavoriteLeavesTheStatus();
    void removingAnOfflineFavoriteKeepsTheMessage();
    void pressingAgainAfterOfflineTriesAfresh();
    void stopAndPlayAgainDuringResolutionEndsWithOnePlayer();
    void droppedFeedShowsBufferingNotOffline();
    void volumeWithNoPlayerIsStoredAndAppliedAtTheNextStart();

private:
    ATCAudio::Favorite add(const QString &name, const QString &url);
    void waitForResolution(const ATCAudio::Favorite &favorite);

    QTemporaryDir m_mediaFiles;
    std::unique_ptr<PrivatePulseAudio> m_pulse;
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<DefaultsStore> m_store;
    std::unique_ptr<LiveAudioServer> m_streams;
    std::unique_ptr<LoopbackHttpServer> m_playlists;
    std::unique_ptr<ATCAudio> m_audio;
    std::unique_ptr<QSignalSpy> m_resolved;
    QList<ATCAudio::Status> m_history;
};

void ATCAudioPlayerTest::initTestCase()
{
    qputenv("QT_MEDIA_BACKEND", "gstreamer");
    // GStreamer keeps its plugin registry under the home directory unless told otherwise.
    QVERIFY(m_mediaFiles.isValid());
    qputenv("GST_REGISTRY", QFile::encodeName(m_mediaFiles.filePath(u"gstreamer-registry.bin"_s)));
    m_pulse = std::make_unique<PrivatePulseAudio>();
    QVERIFY2(m_pulse->isRunning(), qPrintable(m_pulse->errorString()));
}

void ATCAudioPlayerTest::cleanupTestCase()
{
    m_pulse.reset();
}

void ATCAudioPlayerTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_store = std::make_unique<DefaultsStore>(m_dir->filePath(u"Aerolume.conf"_s));
    m_streams = std::make_unique<LiveAudioServer>();
    m_playlists = std::make_unique<LoopbackHttpServer>();
    m_audio = std::make_unique<ATCAudio>(m_store.get());
    m_resolved = std::make_unique<QSignalSpy>(m_audio.get(), &ATCAudio::resolved);
    m_history.clear();
    connect(m_audio.get(), &ATCAudio::statusChanged, this, [this] { m_history.append(m_audio->status()); });
}

void ATCAudioPlayerTest::cleanup()
{
    m_resolved.reset();
    m_audio.reset();
    m_playlists.reset();
    m_streams.reset();
    m_store.reset();
    m_dir.reset();
    QTRY_COMPARE(m_pulse->activeStreamCount(), 0);
}

ATCAudio::Favorite ATCAudioPlayerTest::add(const QString &name, const QString &url)
{
    if (!m_audio->addFavorite(name, url))
        qFatal("could not add %s", qPrintable(url));
    return m_audio->favorites().last();
}

void ATCAudioPlayerTest::waitForResolution(const ATCAudio::Favorite &favorite)
{
    QTRY_VERIFY_WITH_TIMEOUT(std::any_of(m_resolved->begin(), m_resolved->end(),
                                         [&](const QList<QVariant> &arguments) {
                                             return arguments.at(0).toUuid() == favorite.id;
                                         }),
                             20000);
}

void ATCAudioPlayerTest::liveFeedBuffersThenPlays()
{
    const ATCAudio::Favorite tower = add(u"PDX Tower"_s, m_streams->liveUrl());
    QSignalSpy idChanges(m_audio.get(), &ATCAudio::playingFavoriteIDChanged);

    m_audio->toggle(tower);
    // From the moment of asking, before anything is resolved.
    QCOMPARE(m_audio->status(), buffering());
    QCOMPARE(m_audio->playingFavoriteID(), tower.id);
    QCOMPARE(m_audio->playingFavoriteIDText(), tower.id.toString(QUuid::WithoutBraces).toUpper());
    QCOMPARE(idChanges.size(), 1);

    QTRY_COMPARE_WITH_TIMEOUT(m_audio->status(), playing(u"PDX Tower"_s), 10000);
    QCOMPARE(m_history, QList<ATCAudio::Status>({buffering(), playing(u"PDX Tower"_s)}));
    QCOMPARE(m_audio->playingFavoriteID(), tower.id);
    QVERIFY(m_audio->player());
    QCOMPARE(m_audio->player()->source(), QUrl(m_streams->liveUrl()));
    QCOMPARE(m_audio->player()->volume(), 0.8f);
    // Sound reaches the sound server.
    QTRY_COMPARE(m_pulse->activeStreamCount(), 1);
    QCOMPARE(idChanges.size(), 1);
}

void ATCAudioPlayerTest::deadAddressGoesOffline()
{
    const ATCAudio::Favorite dead = add(u"Closed Tower"_s, LiveAudioServer::deadUrl());
    m_audio->toggle(dead);
    QTRY_COMPARE_WITH_TIMEOUT(m_audio->status(), offline(u"Closed Tower"_s), 10000);
    QCOMPARE(m_history, QList<ATCAudio::Status>({buffering(), offline(u"Closed Tower"_s)}));
    QCOMPARE(m_audio->playingFavoriteID(), std::nullopt);
    QVERIFY(!m_audio->player());
}

void ATCAudioPlayerTest::refusedAddressGoesOfflineWithoutAPlayer()
{
    const ATCAudio::Favorite ftp = add(u"FTP"_s, u"ftp://127.0.0.1/tower"_s);
    m_audio->toggle(ftp);
    QCOMPARE(m_audio->status(), buffering());
    waitForResolution(ftp);
    QCOMPARE(m_audio->status(), offline(u"FTP"_s));
    QCOMPARE(m_audio->playingFavoriteID(), std::nullopt);
    QVERIFY(!m_audio->player());
}

void ATCAudioPlayerTest::silentServerStaysBuffering()
{
    const ATCAudio::Favorite silent = add(u"Silent"_s, m_streams->silentUrl());
    m_audio->toggle(silent);
    waitForResolution(silent);
    QVERIFY(m_audio->player());
    QSignalSpy opened(m_streams.get(), &LiveAudioServer::connectionOpened);
    QVERIFY(opened.wait(10000));

    // A stream started afterwards plays through; in that time the silent one gets nowhere, and nothing
    // gives up on it.
    StreamPlayer witness{QUrl(m_streams->liveUrl())};
    witness.play();
    QTRY_COMPARE_WITH_TIMEOUT(witness.timeControlStatus(), StreamPlayer::TimeControl::Playing, 10000);
    QCOMPARE(m_audio->status(), buffering());
    QCOMPARE(m_history, QList<ATCAudio::Status>({buffering()}));
    QCOMPARE(m_audio->playingFavoriteID(), silent.id);
}

void ATCAudioPlayerTest::stopWhileBufferingIsFinal()
{
    const ATCAudio::Favorite silent = add(u"Silent"_s, m_streams->silentUrl());
    QSignalSpy opened(m_streams.get(), &LiveAudioServer::connectionOpened);
    QSignalSpy closed(m_streams.get(), &LiveAudioServer::connectionClosed);
    m_audio->toggle(silent);
    QVERIFY(opened.wait(10000));

    m_audio->toggle(silent);
    QCOMPARE(m_audio->status(), idle());
    QCOMPARE(m_audio->playingFavoriteID(), std::nullopt);
    QVERIFY(!m_audio->player());
    // The player is really gone: it hangs up, and nothing of it comes back.
    QVERIFY(closed.wait(10000));
    QCOMPARE(m_audio->status(), idle());
    QCOMPARE(m_history, QList<ATCAudio::Status>({buffering(), idle()}));
    QCOMPARE(m_streams->openConnections(), 0);
}

void ATCAudioPlayerTest::stopWhilePlayingHangsUp()
{
    const ATCAudio::Favorite tower = add(u"PDX Tower"_s, m_streams->liveUrl());
    m_audio->toggle(tower);
    QTRY_COMPARE_WITH_TIMEOUT(m_audio->status(), playing(u"PDX Tower"_s), 10000);
    QSignalSpy closed(m_streams.get(), &LiveAudioServer::connectionClosed);

    m_audio->toggle(tower);
    QCOMPARE(m_audio->status(), idle());
    QCOMPARE(m_audio->playingFavoriteID(), std::nullopt);
    QVERIFY(closed.wait(10000));
    QTRY_COMPARE(m_pulse->activeStreamCount(), 0);
    QCOMPARE(m_audio->status(), idle());
}

void ATCAudioPlayerTest::lateResolutionAfterPickingAnotherDoesNothing()
{
    // The first feed's playlist is held back until the second feed plays.
    m_playlists->route("/first.pls", [this](const LoopbackHttpServer::Request &) {
        return LoopbackHttpServer::Response{200,
                                            "[playlist]\nFile1=" + m_streams->liveUrl().toUtf8() + "?first\n",
                                            "audio/x-scpls", false, true};
    });
    const ATCAudio::Favorite first = add(u"First"_s, m_playlists->baseUrl() + u"/first.pls"_s);
    const ATCAudio::Favorite second = add(u"Second"_s, m_streams->liveUrl());
    QSignalSpy requested(m_playlists.get(), &LoopbackHttpServer::requestReceived);

    m_audio->toggle(first);
    QVERIFY(requested.wait(10000));
    m_audio->toggle(second);
    QCOMPARE(m_audio->playingFavoriteID(), second.id);
    QTRY_COMPARE_WITH_TIMEOUT(m_audio->status(), playing(u"Second"_s), 10000);

    m_playlists->release();
    waitForResolution(first);
    QCOMPARE(m_audio->status(), playing(u"Second"_s));
    QCOMPARE(m_audio->playingFavoriteID(), second.id);
    QCOMPARE(m_audio->player()->source(), QUrl(m_streams->liveUrl()));
    QCOMPARE(m_streams->connectionCount(), 1);
}

void ATCAudioPlayerTest::removingTheCurrentFavoriteWhileBufferingGoesIdle()
{
    const ATCAudio::Favorite other = add(u"Other"_s, m_streams->liveUrl());
    const ATCAudio::Favorite silent = add(u"Silent"_s, m_streams->silentUrl());
    QSignalSpy opened(m_streams.get(), &LiveAudioServer::connectionOpened);
    QSignalSpy closed(m_streams.get(), &LiveAudioServer::connectionClosed);
    m_audio->toggle(silent);
    QVERIFY(opened.wait(10000));

    m_audio->remove(silent);
    QCOMPARE(m_audio->status(), idle());
    QCOMPARE(m_audio->playingFavoriteID(), std::nullopt);
    QVERIFY(!m_audio->player());
    QCOMPARE(m_audio->favorites(), QList<ATCAudio::Favorite>({other}));
    QCOMPARE(ATCAudio(m_store.get()).favorites(), QList<ATCAudio::Favorite>({other}));
    QVERIFY(closed.wait(10000));
    QCOMPARE(m_audio->status(), idle());
}

void ATCAudioPlayerTest::removingTheCurrentFavoriteDuringResolutionIsFinal()
{
    m_playlists->route("/held.pls", [this](const LoopbackHttpServer::Request &) {
        return LoopbackHttpServer::Response{200, "[playlist]\nFile1=" + m_streams->liveUrl().toUtf8() + "\n",
                                            "audio/x-scpls", false, true};
    });
    const ATCAudio::Favorite held = add(u"Held"_s, m_playlists->baseUrl() + u"/held.pls"_s);
    QSignalSpy requested(m_playlists.get(), &LoopbackHttpServer::requestReceived);
    m_audio->toggle(held);
    QVERIFY(requested.wait(10000));

    m_audio->remove(held);
    QCOMPARE(m_audio->status(), idle());
    m_playlists->release();
    waitForResolution(held);
    QCOMPARE(m_audio->status(), idle());
    QCOMPARE(m_audio->playingFavoriteID(), std::nullopt);
    QVERIFY(!m_audio->player());
    QCOMPARE(m_streams->connectionCount(), 0);
}

void ATCAudioPlayerTest::removingAnotherFavoriteLeavesTheStatus()
{
    const ATCAudio::Favorite tower = add(u"PDX Tower"_s, m_streams->liveUrl());
    const ATCAudio::Favorite ground = add(u"PDX Ground"_s, u"https://d.liveatc.net/kpdx_gnd"_s);
    m_audio->toggle(tower);
    QTRY_COMPARE_WITH_TIMEOUT(m_audio->status(), playing(u"PDX Tower"_s), 10000);

    m_audio->remove(ground);
    QCOMPARE(m_audio->favorites(), QList<ATCAudio::Favorite>({tower}));
    QCOMPARE(m_audio->status(), playing(u"PDX Tower"_s));
    QCOMPARE(m_audio->playingFavoriteID(), tower.id);
    QVERIFY(m_audio->player());
    QCOMPARE(m_streams->openConnections(), 1);
}

void ATCAudioPlayerTest::removingAnOfflineFavoriteKeepsTheMessage()
{
    const ATCAudio::Favorite dead = add(u"Closed Tower"_s, LiveAudioServer::deadUrl());
    m_audio->toggle(dead);
    QTRY_COMPARE_WITH_TIMEOUT(m_audio->status(), offline(u"Closed Tower"_s), 10000);

    m_audio->remove(dead);
    QVERIFY(m_audio->favorites().isEmpty());
    QCOMPARE(m_audio->status(), offline(u"Closed Tower"_s));
}

void ATCAudioPlayerTest::pressingAgainAfterOfflineTriesAfresh()
{
    m_playlists->route("/dead.pls", [](const LoopbackHttpServer::Request &) {
        return LoopbackHttpServer::Response{200,
                                            "[playlist]\nFile1=" + LiveAudioServer::deadUrl().toUtf8() + "\n",
                                            "audio/x-scpls", false, false};
    });
    const ATCAudio::Favorite dead = add(u"Closed Tower"_s, m_playlists->baseUrl() + u"/dead.pls"_s);
    m_audio->toggle(dead);
    QTRY_COMPARE_WITH_TIMEOUT(m_audio->status(), offline(u"Closed Tower"_s), 10000);
    QCOMPARE(m_playlists->requestCount("/dead.pls"), 1);

    // The same row's button: the failure cleared the token, so this plays rather than stops.
    m_audio->toggle(dead);
    QCOMPARE(m_audio->status(), buffering());
    QCOMPARE(m_audio->playingFavoriteID(), dead.id);
    QTRY_COMPARE_WITH_TIMEOUT(m_audio->status(), offline(u"Closed Tower"_s), 10000);
    QCOMPARE(m_playlists->requestCount("/dead.pls"), 2);
    QCOMPARE(m_history, QList<ATCAudio::Status>({buffering(), offline(u"Closed Tower"_s), buffering(),
                                                 offline(u"Closed Tower"_s)}));
}

void ATCAudioPlayerTest::stopAndPlayAgainDuringResolutionEndsWithOnePlayer()
{
    m_playlists->route("/held.pls", [this](const LoopbackHttpServer::Request &) {
        return LoopbackHttpServer::Response{200, "[playlist]\nFile1=" + m_streams->liveUrl().toUtf8() + "\n",
                                            "audio/x-scpls", false, true};
    });
    const ATCAudio::Favorite held = add(u"Held"_s, m_playlists->baseUrl() + u"/held.pls"_s);
    QSignalSpy requested(m_playlists.get(), &LoopbackHttpServer::requestReceived);
    m_audio->toggle(held);
    m_audio->toggle(held);
    QCOMPARE(m_audio->status(), idle());
    m_audio->toggle(held);
    QTRY_COMPARE_WITH_TIMEOUT(requested.size(), 2, 10000);

    // The token can't tell the two resolutions apart: both start a player, the second replaces the first.
    m_playlists->release();
    QTRY_COMPARE_WITH_TIMEOUT(m_resolved->size(), 2, 10000);
    QTRY_COMPARE_WITH_TIMEOUT(m_audio->status(), playing(u"Held"_s), 10000);
    QTRY_COMPARE_WITH_TIMEOUT(m_streams->openConnections(), 1, 10000);
    QTRY_COMPARE(m_pulse->activeStreamCount(), 1);
}

void ATCAudioPlayerTest::droppedFeedShowsBufferingNotOffline()
{
    const ATCAudio::Favorite tower = add(u"PDX Tower"_s, m_streams->liveUrl());
    m_audio->toggle(tower);
    QTRY_COMPARE_WITH_TIMEOUT(m_audio->status(), playing(u"PDX Tower"_s), 10000);

    m_streams->dropAll();
    QTRY_COMPARE_WITH_TIMEOUT(m_audio->status(), buffering(), 10000);
    QCOMPARE(m_audio->playingFavoriteID(), tower.id);
    QCOMPARE(m_history, QList<ATCAudio::Status>({buffering(), playing(u"PDX Tower"_s), buffering()}));
}

void ATCAudioPlayerTest::volumeWithNoPlayerIsStoredAndAppliedAtTheNextStart()
{
    const ATCAudio::Favorite tower = add(u"PDX Tower"_s, m_streams->liveUrl());
    m_audio->setVolume(0.25);
    QCOMPARE(DefaultsStore(m_store->filePath()).doubleValue(u"atcVolume"_s), 0.25);

    m_audio->toggle(tower);
    waitForResolution(tower);
    QVERIFY(m_audio->player());
    QCOMPARE(m_audio->player()->volume(), 0.25f);

    // While playing, the player follows every change.
    m_audio->setVolume(0.6);
    QCOMPARE(m_audio->player()->volume(), 0.6f);
    QCOMPARE(DefaultsStore(m_store->filePath()).doubleValue(u"atcVolume"_s), 0.6);
}

QTEST_MAIN(ATCAudioPlayerTest)
#include "ATCAudioPlayerTest.moc"
