#include "UpdaterModel.h"
#include "Appcast.h"
#include "DefaultsStore.h"
#include "LoopbackHttpServer.h"
#include "SkySimulator.h"
#include "VersionNumber.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <map>

namespace {

// Time that moves only when the test says so: actions due within a step run in the order they fall due.
class FakeClock
{
public:
    UpdaterModel::Schedule schedule()
    {
        return [this](std::chrono::milliseconds delay, std::function<void()> action) {
            m_pending.emplace(std::make_pair(m_now + delay.count(), m_sequence++), std::move(action));
        };
    }

    void advance(qint64 ms)
    {
        const qint64 target = m_now + ms;
        while (!m_pending.empty() && m_pending.begin()->first.first <= target) {
            auto entry = m_pending.extract(m_pending.begin());
            m_now = entry.key().first;
            entry.mapped()();
        }
        m_now = target;
    }

    [[nodiscard]] qint64 now() const { return m_now; }

private:
    qint64 m_now = 0;
    qint64 m_sequence = 0;
    std::map<std::pair<qint64, qint64>, std::function<void()>> m_pending;
};

constexpr qint64 second = 1000;
constexpr qint64 day = 24 * 60 * 60 * second;

// An appcast as publishers write them: the sparkle version on the item, or only on the enclosure.
QByteArray appcast(const QStringList &versions, bool versionOnEnclosure = false)
{
    QByteArray xml =
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
        "<rss version=\"2.0\" xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\">"
        "<channel><title>Aerolume</title>";
    for (const QString &version : versions) {
        const QByteArray v = version.toUtf8();
        xml += "<item><title>Version " + v + "</title>";
        if (!versionOnEnclosure)
            xml += "<sparkle:version>" + v + "</sparkle:version><sparkle:shortVersionString>" + v +
                   " Beta</sparkle:shortVersionString>";
        xml += "<description><![CDATA[<p>What is new in " + v +
               "</p>]]></description>"
               "<link>https://example.invalid/download/" +
               v +
               "</link>"
               "<enclosure url=\"https://example.invalid/aerolume-" +
               v + ".tar.gz\" length=\"0\"";
        if (versionOnEnclosure)
            xml += " sparkle:version=\"" + v + "\"";
        xml += "/></item>";
    }
    return xml + "</channel></rss>";
}

} // namespace

class UpdaterModelTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<DefaultsStore> m_defaults;
    std::unique_ptr<LoopbackHttpServer> m_server;
    std::unique_ptr<FakeClock> m_clock;
    QByteArray m_feed;
    bool m_holdFeed = false;
    int m_invariantBreaks = 0;
    int m_quietAnswers = 0;

    [[nodiscard]] int feedRequests() const { return m_server->requestCount("/appcast.xml"); }

    std::unique_ptr<UpdaterModel> makeModel(const QString &feedUrl = QString(), int timeoutMs = 8000)
    {
        UpdaterModel::Dependencies dependencies;
        dependencies.feedUrl = feedUrl.isNull() ? m_server->baseUrl() + u"/appcast.xml"_qs : feedUrl;
        dependencies.currentVersion = u"0.1.0"_qs;
        dependencies.defaults = m_defaults.get();
        dependencies.schedule = m_clock->schedule();
        dependencies.timeoutMs = timeoutMs;
        auto model = std::make_unique<UpdaterModel>(dependencies);
        UpdaterModel *raw = model.get();
        connect(raw, &UpdaterModel::updateChanged, this, [this, raw] {
            if (raw->updateAvailable() != raw->availableVersion().has_value())
                ++m_invariantBreaks;
        });
        connect(raw, &UpdaterModel::quietCheckFinished, this, [this] { ++m_quietAnswers; });
        return model;
    }

    // Exactly n requests reached the feed: the last one arrives, and no other follows soon after.
    void expectRequests(int n)
    {
        QTRY_COMPARE(m_server->requests().size(), n);
        QTest::qWait(30);
        QCOMPARE(m_server->requests().size(), n);
        QCOMPARE(feedRequests(), n);
    }

    // Waits until the models have read the answers to this many quiet checks in all.
    void settle(int quietAnswers) { QTRY_COMPARE(m_quietAnswers, quietAnswers); }

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        m_defaults = std::make_unique<DefaultsStore>(m_dir->filePath(u"Aerolume.conf"_qs));
        m_server = std::make_unique<LoopbackHttpServer>();
        m_clock = std::make_unique<FakeClock>();
        m_feed = appcast({u"0.2.0"_qs, u"0.1.0"_qs});
        m_holdFeed = false;
        m_invariantBreaks = 0;
        m_quietAnswers = 0;
        m_server->route("/appcast.xml", [this](const LoopbackHttpServer::Request &) {
            LoopbackHttpServer::Response response;
            response.body = m_feed;
            response.contentType = "application/rss+xml";
            response.hold = m_holdFeed;
            return response;
        });
    }

    void cleanup()
    {
        QCOMPARE(m_invariantBreaks, 0);
        m_server.reset();
        m_clock.reset();
        m_defaults.reset();
        m_dir.reset();
    }

    void versionOrder_data()
    {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::addColumn<int>("expected");

        QTest::newRow("1.10 after 1.9") << u"1.10"_qs << u"1.9"_qs << 1;
        QTest::newRow("1.9 before 1.10") << u"1.9"_qs << u"1.10"_qs << -1;
        QTest::newRow("1.1 equals 1.1.0") << u"1.1"_qs << u"1.1.0"_qs << 0;
        QTest::newRow("1.1.0 equals 1.1") << u"1.1.0"_qs << u"1.1"_qs << 0;
        QTest::newRow("2 after 1.9.9") << u"2"_qs << u"1.9.9"_qs << 1;
        QTest::newRow("1.0.1 after 1") << u"1.0.1"_qs << u"1"_qs << 1;
        QTest::newRow("same") << u"0.1.0"_qs << u"0.1.0"_qs << 0;
        QTest::newRow("10 after 9 (not as text)") << u"10.0"_qs << u"9.9.9"_qs << 1;
        QTest::newRow("leading zero") << u"1.01"_qs << u"1.1"_qs << 0;
        QTest::newRow("leading v, spaces") << u" v1.2 "_qs << u"1.2"_qs << 0;
        QTest::newRow("suffix ends the number") << u"1.3b2"_qs << u"1.3"_qs << 0;
        QTest::newRow("big part") << u"2024.12"_qs << u"2024.9.30"_qs << 1;
    }

    void versionOrder()
    {
        QFETCH(QString, a);
        QFETCH(QString, b);
        QFETCH(int, expected);
        QCOMPARE(VersionNumber::compare(a, b), expected);
    }

    void textThatIsNoVersion()
    {
        QVERIFY(!VersionNumber(u""_qs).isValid());
        QVERIFY(!VersionNumber(u"beta"_qs).isValid());
        QVERIFY(VersionNumber(u"3"_qs).isValid());
    }

    void appcastItems()
    {
        const auto items = Appcast::parse(appcast({u"0.1.5"_qs, u"0.3.0"_qs, u"0.2.0"_qs}));
        QVERIFY(items);
        QCOMPARE(items->size(), 3);
        const AppcastItem &first = items->at(0);
        QCOMPARE(first.version, u"0.1.5"_qs);
        QCOMPARE(first.displayVersion, u"0.1.5 Beta"_qs);
        QCOMPARE(first.title, u"Version 0.1.5"_qs);
        QCOMPARE(first.releaseNotes, u"<p>What is new in 0.1.5</p>"_qs);
        QCOMPARE(first.link, u"https://example.invalid/download/0.1.5"_qs);
        QCOMPARE(first.enclosureUrl, u"https://example.invalid/aerolume-0.1.5.tar.gz"_qs);
        // Not the first listed, the highest.
        const auto newest = Appcast::newestUpdate(*items, u"0.1.0"_qs);
        QVERIFY(newest);
        QCOMPARE(newest->version, u"0.3.0"_qs);
        QVERIFY(!Appcast::newestUpdate(*items, u"0.3"_qs));
        QVERIFY(!Appcast::newestUpdate(*items, u"1.0"_qs));
    }

    void appcastVersionOnTheEnclosure()
    {
        const auto items = Appcast::parse(appcast({u"1.10"_qs, u"1.9"_qs}, true));
        QVERIFY(items);
        QCOMPARE(items->size(), 2);
        QCOMPARE(items->at(0).version, u"1.10"_qs);
        // Without a short version string the version is what people see.
        QCOMPARE(items->at(0).displayVersion, u"1.10"_qs);
        QCOMPARE(Appcast::newestUpdate(*items, u"1.9.5"_qs)->version, u"1.10"_qs);
    }

    void appcastThatIsNot_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("html") << QByteArray("<!DOCTYPE html><html><body>Not found</body></html>");
        QTest::newRow("json") << QByteArray("{\"items\":[]}");
        QTest::newRow("cut off") << appcast({u"0.2.0"_qs}).left(200);
        // The namespace used but never declared.
        QTest::newRow("undeclared namespace")
            << QByteArray("<rss version=\"2.0\"><channel><item><sparkle:version>9</sparkle:version></item>"
                          "</channel></rss>");
        QTest::newRow("rss without channel") << QByteArray("<rss version=\"2.0\"></rss>");
    }

    void appcastThatIsNot()
    {
        QFETCH(QByteArray, text);
        QVERIFY(!Appcast::parse(text));
    }

    void itemsWithoutVersionAreLeftOut()
    {
        const QByteArray xml =
            "<rss version=\"2.0\" xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\">"
            "<channel><item><title>No version</title><enclosure url=\"x\"/></item>"
            "<item><sparkle:version>0.4</sparkle:version></item></channel></rss>";
        const auto items = Appcast::parse(xml);
        QVERIFY(items);
        QCOMPARE(items->size(), 1);
        QCOMPARE(items->at(0).version, u"0.4"_qs);
    }

    // Launch, probe, banner; the dialog takes it away; the session's end brings it back 3 s later.
    void bannerAcrossProbeAttentionAndSessionEnd()
    {
        auto model = makeModel();
        QVERIFY(model->hasFeed());
        QVERIFY(!model->updateAvailable());
        m_clock->advance(5 * second - 1);
        expectRequests(0);

        QSignalSpy changed(model.get(), &UpdaterModel::updateChanged);
        m_clock->advance(1);
        expectRequests(1);
        QTRY_COMPARE(changed.size(), 1);
        QVERIFY(model->updateAvailable());
        QCOMPARE(model->availableVersion(), u"0.2.0 Beta"_qs);
        QCOMPARE(model->property("availableVersion").toString(), u"0.2.0 Beta"_qs);
        QVERIFY(!model->sessionInProgress());

        // The user opens the dialog.
        QSignalSpy started(model.get(), &UpdaterModel::sessionStarted);
        QSignalSpy session(model.get(), &UpdaterModel::sessionChanged);
        model->checkForUpdates();
        QCOMPARE(started.size(), 1);
        QVERIFY(!model->updateAvailable());
        QCOMPARE(model->availableVersion(), std::nullopt);
        QCOMPARE(model->sessionState(), UpdaterModel::SessionState::Checking);
        QTRY_COMPARE(model->sessionState(), UpdaterModel::SessionState::UpdateFound);
        expectRequests(2);
        QCOMPARE(model->sessionVersion(), u"0.2.0 Beta"_qs);
        QCOMPARE(model->downloadPage(), u"https://example.invalid/download/0.2.0"_qs);
        QVERIFY(model->releaseNotes().contains(u"What is new in 0.2.0"_qs));
        // Found while the user looks at it: no banner behind the dialog.
        QVERIFY(!model->updateAvailable());

        // Asking again while it is open only brings the dialog forward.
        QSignalSpy raise(model.get(), &UpdaterModel::sessionRaiseRequested);
        model->checkForUpdates();
        QCOMPARE(raise.size(), 1);
        QCOMPARE(started.size(), 1);
        expectRequests(2);

        model->remindMeLater();
        QVERIFY(!model->sessionInProgress());
        QVERIFY(!model->updateAvailable());
        m_clock->advance(3 * second - 1);
        expectRequests(2);
        m_clock->advance(1);
        expectRequests(3);
        QTRY_VERIFY(model->updateAvailable());
        QCOMPARE(model->availableVersion(), u"0.2.0 Beta"_qs);
    }

    void feedWithNothingNewerClearsTheBanner()
    {
        auto model = makeModel();
        m_clock->advance(5 * second);
        QTRY_VERIFY(model->updateAvailable());

        m_feed = appcast({u"0.1.0"_qs, u"0.0.9"_qs});
        m_clock->advance(day); // the daily check
        expectRequests(2);
        QTRY_VERIFY(!model->updateAvailable());
        QCOMPARE(model->availableVersion(), std::nullopt);
    }

    void dailyChecksKeepComing()
    {
        auto model = makeModel();
        m_clock->advance(5 * second);
        expectRequests(1);
        settle(1);
        m_clock->advance(day - 5 * second - 1);
        expectRequests(1);
        m_clock->advance(1);
        expectRequests(2);
        settle(2);
        m_clock->advance(day);
        expectRequests(3);
        settle(3);
    }

    // Switched off: neither timed probe nor the daily check asks the feed; only the user's check does,
    // and that never raises the banner.
    void automaticChecksOffMeansNoRequest()
    {
        m_defaults->setValue(QString::fromLatin1(UpdaterModel::automaticChecksKey), false);
        auto model = makeModel();
        QVERIFY(!model->automaticallyChecksForUpdates());
        m_clock->advance(2 * day);
        expectRequests(0);

        model->checkForUpdates();
        QTRY_COMPARE(model->sessionState(), UpdaterModel::SessionState::UpdateFound);
        expectRequests(1);
        model->endSession();
        m_clock->advance(2 * day);
        expectRequests(1);
        QVERIFY(!model->updateAvailable());
    }

    // The setting is read when a probe falls due, not when the model is made.
    void switchingOffBeforeTheLaunchProbe()
    {
        auto model = makeModel();
        QVERIFY(model->automaticallyChecksForUpdates());
        QSignalSpy setting(model.get(), &UpdaterModel::automaticallyChecksForUpdatesChanged);
        model->setAutomaticallyChecksForUpdates(false);
        QCOMPARE(setting.size(), 1);
        m_clock->advance(5 * second);
        expectRequests(0);

        m_defaults->setValue(QString::fromLatin1(UpdaterModel::automaticChecksKey), true);
        m_clock->advance(day);
        expectRequests(1);
        QTRY_VERIFY(model->updateAvailable());
    }

    void probeDuringASessionDoesNothing()
    {
        auto model = makeModel();
        m_clock->advance(1 * second);
        model->checkForUpdates();
        QTRY_COMPARE(model->sessionState(), UpdaterModel::SessionState::UpdateFound);
        expectRequests(1);

        // The launch probe and a daily check fall due while the dialog is open.
        m_clock->advance(day);
        expectRequests(1);
        QVERIFY(!model->updateAvailable());
        model->probeQuietly();
        expectRequests(1);

        // Nothing makes up for them but the probe after the session.
        model->endSession();
        m_clock->advance(3 * second);
        expectRequests(2);
        QTRY_VERIFY(model->updateAvailable());
    }

    void skippedVersionNeverRaisesTheBanner()
    {
        auto model = makeModel();
        m_clock->advance(5 * second);
        QTRY_VERIFY(model->updateAvailable());

        model->checkForUpdates();
        QTRY_COMPARE(model->sessionState(), UpdaterModel::SessionState::UpdateFound);
        model->skipThisVersion();
        QCOMPARE(model->skippedVersion(), u"0.2.0"_qs);
        QVERIFY(!model->sessionInProgress());
        m_clock->advance(3 * second);
        expectRequests(3);
        settle(2);
        QVERIFY(!model->updateAvailable());

        // Remembered across a restart.
        auto restarted = makeModel();
        m_clock->advance(5 * second);
        expectRequests(4);
        settle(3);
        QVERIFY(!restarted->updateAvailable());

        // Asked for by the user, the skipped release is still offered.
        restarted->checkForUpdates();
        QTRY_COMPARE(restarted->sessionState(), UpdaterModel::SessionState::UpdateFound);
        QCOMPARE(restarted->sessionVersion(), u"0.2.0 Beta"_qs);
        restarted->endSession();

        // A release newer than the skipped one is news again.
        m_feed = appcast({u"0.3.0"_qs, u"0.2.0"_qs});
        m_clock->advance(day);
        QTRY_VERIFY(restarted->updateAvailable());
        QCOMPARE(restarted->availableVersion(), u"0.3.0 Beta"_qs);
    }

    void malformedFeed()
    {
        auto model = makeModel();
        m_clock->advance(5 * second);
        QTRY_VERIFY(model->updateAvailable());

        // A broken feed says nothing about the releases: the banner stays as it was.
        m_feed = QByteArray("<rss version=\"2.0\"><channel><item><sparkle:version>0.3</sparkle:version>"
                            "</item></channel></rss>");
        m_clock->advance(day);
        expectRequests(2);
        settle(2);
        QVERIFY(model->updateAvailable());
        QCOMPARE(model->availableVersion(), u"0.2.0 Beta"_qs);

        model->checkForUpdates();
        QTRY_COMPARE(model->sessionState(), UpdaterModel::SessionState::Failed);
        QVERIFY(model->sessionVersion().isEmpty());
        QVERIFY(model->downloadPage().isEmpty());
    }

    void slowFeedFailsTheSession()
    {
        m_holdFeed = true;
        auto model = makeModel(QString(), 300);
        model->checkForUpdates();
        QCOMPARE(model->sessionState(), UpdaterModel::SessionState::Checking);
        QTRY_COMPARE_WITH_TIMEOUT(model->sessionState(), UpdaterModel::SessionState::Failed, 5000);
        expectRequests(1);
    }

    // The user's check supersedes a quiet one still under way: its late answer changes nothing.
    void quietCheckSupersededBySession()
    {
        m_holdFeed = true;
        auto model = makeModel();
        m_clock->advance(5 * second);
        expectRequests(1);
        m_holdFeed = false;
        model->checkForUpdates();
        QTRY_COMPARE(model->sessionState(), UpdaterModel::SessionState::UpdateFound);
        m_server->release();
        QTest::qWait(100);
        QVERIFY(!model->updateAvailable());
        model->endSession();
    }

    // Closing the dialog before its check answers drops the check.
    void sessionEndCancelsItsCheck()
    {
        m_holdFeed = true;
        auto model = makeModel();
        model->checkForUpdates();
        expectRequests(1);
        model->endSession();
        m_server->release();
        QTest::qWait(100);
        QCOMPARE(model->sessionState(), UpdaterModel::SessionState::Idle);
        QVERIFY(!model->updateAvailable());
    }

    void noFeedFetchesNothing()
    {
        auto model = makeModel(u""_qs);
        QVERIFY(!model->hasFeed());
        m_clock->advance(2 * day);
        model->probeQuietly();
        model->checkForUpdates();
        QCOMPARE(model->sessionState(), UpdaterModel::SessionState::Failed);
        model->endSession();
        m_clock->advance(day);
        expectRequests(0);
        QVERIFY(!model->updateAvailable());
    }

    // The simulator's update feed in its four cases, switched while it runs, read by the real parser.
    void theSimulatorsFourCases()
    {
        SkySimulator sky{SkySimOptions()};
        QVERIFY(sky.listen(0));
        QNetworkAccessManager network;
        auto control = [&](const QString &query) {
            QNetworkRequest request(QUrl(sky.baseUrl() + u"/control/update?"_qs + query));
            request.setHeader(QNetworkRequest::ContentTypeHeader, u"text/plain"_qs);
            QNetworkReply *reply = network.post(request, QByteArray());
            QSignalSpy finished(reply, &QNetworkReply::finished);
            QVERIFY(finished.wait(5000));
            QCOMPARE(reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), 200);
            reply->deleteLater();
        };
        UpdaterModel::Dependencies dependencies;
        dependencies.feedUrl = sky.baseUrl() + u"/appcast.xml"_qs;
        dependencies.currentVersion = QStringLiteral(AEROLUME_VERSION);
        dependencies.defaults = m_defaults.get();
        dependencies.schedule = m_clock->schedule();
        dependencies.timeoutMs = 500;
        UpdaterModel model(dependencies);

        control(u"mode=newer"_qs);
        m_clock->advance(5 * second);
        QTRY_VERIFY(model.updateAvailable());
        QVERIFY(VersionNumber::compare(*model.availableVersion(), QStringLiteral(AEROLUME_VERSION)) > 0);

        control(u"mode=same"_qs);
        m_clock->advance(day);
        QTRY_VERIFY(!model.updateAvailable());
        model.checkForUpdates();
        QTRY_COMPARE(model.sessionState(), UpdaterModel::SessionState::UpToDate);
        model.endSession();

        control(u"mode=malformed"_qs);
        model.checkForUpdates();
        QTRY_COMPARE(model.sessionState(), UpdaterModel::SessionState::Failed);
        model.endSession();

        control(u"mode=slow&delayMs=3000"_qs);
        model.checkForUpdates();
        QCOMPARE(model.sessionState(), UpdaterModel::SessionState::Checking);
        QTRY_COMPARE_WITH_TIMEOUT(model.sessionState(), UpdaterModel::SessionState::Failed, 2500);
        model.endSession();

        // Back to a healthy feed with news.
        control(u"mode=newer"_qs);
        model.checkForUpdates();
        QTRY_COMPARE(model.sessionState(), UpdaterModel::SessionState::UpdateFound);
        QVERIFY(model.downloadPage().startsWith(sky.baseUrl() + u"/download"_qs));
        model.endSession();
    }
};

QTEST_GUILESS_MAIN(UpdaterModelTest)
#include "UpdaterModelTest.moc"
