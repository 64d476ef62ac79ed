#include "ATCAudio.h"
#include "DefaultsStore.h"
#include "FlightStore.h"
#include "LiveAudioServer.h"
#include "LoopbackHttpServer.h"
#include "PrivatePulseAudio.h"
#include "SymbolImageProvider.h"

#include <QAccessible>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QQmlExpression>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>
#include <memory>

// The main window holds the map, whose QML module is linked in statically.
Q_IMPORT_QML_PLUGIN(Aerolume_MapPlugin)

namespace {

const QByteArray traffic =
    R"({"ac":[{"hex":"a1b2c3","flight":"ASA512","t":"B739","alt_baro":12500,"lat":45.6,"lon":-122.6,"dst":4.2,"dir":10}]})";

// Player states end up on the screen within this long; a live stream needs its first second of sound.
constexpr int playTimeoutMs = 15000;

QQuickItem *findItem(QQuickItem *root, const QString &name)
{
    if (!root)
        return nullptr;
    if (root->objectName() == name)
        return root;
    for (QQuickItem *child : root->childItems()) {
        if (QQuickItem *found = findItem(child, name))
            return found;
    }
    return nullptr;
}

QPoint centre(QQuickItem *item)
{
    return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
}

QString accessibleName(QQuickItem *item)
{
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(item);
    return interface ? interface->text(QAccessible::Name) : u"(not accessible)"_qs;
}

} // namespace

// The tower audio panel as a person uses it: from the toolbar, in the main window, over a live stream
// on loopback played into a sound server of the test's own.
class ATCAudioViewTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QTemporaryDir m_mediaFiles;
    std::unique_ptr<PrivatePulseAudio> m_pulse;
    std::unique_ptr<LoopbackHttpServer> m_feed;
    std::unique_ptr<LiveAudioServer> m_streams;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    QString m_pictures;

    static ATCAudio *audio() { return ATCAudio::shared(); }

    QQuickWindow *window() const { return qobject_cast<QQuickWindow *>(m_engine->rootObjects().value(0)); }

    QQuickItem *toolButton(const QString &name) const { return window()->findChild<QQuickItem *>(name); }

    QObject *popover() const { return window()->findChild<QObject *>(u"atcPopover"_qs); }

    QQuickItem *panel() const { return popover()->property("contentItem").value<QQuickItem *>(); }

    QQuickItem *part(const QString &name) const { return findItem(panel(), name); }

    bool panelOpen() const { return popover()->property("visible").toBool(); }

    QVariant evaluate(QQuickItem *scope, const QString &expression) const
    {
        QQmlExpression evaluation(qmlContext(scope), scope, expression);
        const QVariant value = evaluation.evaluate();
        if (evaluation.hasError())
            qWarning() << evaluation.error();
        return value;
    }

    QColor themeColor(const QString &name) const
    {
        return evaluate(panel(), u"Theme."_qs + name).value<QColor>();
    }

    void click(QQuickItem *item) { QTest::mouseClick(window(), Qt::LeftButton, {}, centre(item)); }

    void openPanel()
    {
        if (!panelOpen())
            click(toolButton(u"atcButton"_qs));
        QTRY_VERIFY(panelOpen());
        QTRY_VERIFY(popover()->property("opened").toBool());
    }

    void closePanel()
    {
        if (panelOpen())
            QTest::keyClick(window(), Qt::Key_Escape);
        QTRY_VERIFY(!panelOpen());
    }

    // The rows of the list, in order, as the view has made them.
    QList<QQuickItem *> rows() const
    {
        QList<QQuickItem *> found;
        auto *list = part(u"atcStreamList"_qs);
        if (!list || !list->isVisible())
            return found;
        QQuickItem *content = list->property("contentItem").value<QQuickItem *>();
        for (QQuickItem *row : content->childItems()) {
            if (row->property("favoriteId").isValid() && row->isVisible())
                found.append(row);
        }
        std::sort(found.begin(), found.end(), [](QQuickItem *a, QQuickItem *b) { return a->y() < b->y(); });
        return found;
    }

    QQuickItem *row(const QString &name) const
    {
        for (QQuickItem *candidate : rows()) {
            if (candidate->property("name").toString() == name)
                return candidate;
        }
        return nullptr;
    }

    QQuickItem *rowPart(const QString &rowName, const QString &partName) const
    {
        QQuickItem *found = row(rowName);
        return found ? findItem(found, partName) : nullptr;
    }

    QString statusText() const { return part(u"atcStatusText"_qs)->property("text").toString(); }

    QString atcIcon() const
    {
        return evaluate(toolButton(u"atcButton"_qs), u"icon.source.toString()"_qs).toString();
    }

    void clearFavorites()
    {
        const QList<ATCFavorite> favorites = audio()->favorites();
        for (const ATCFavorite &favorite : favorites)
            audio()->remove(favorite);
        QTRY_COMPARE(m_pulse->activeStreamCount(), 0);
    }

    void save(const QString &name)
    {
        const QImage image = window()->grabWindow();
        QVERIFY(!image.isNull());
        QVERIFY(image.save(m_pictures + u"/"_qs + name + u".png"_qs));
        // The panel and the toolbar above it, for a closer look.
        QQuickItem *pane = panel();
        const QRectF area = pane->mapRectToScene(QRectF(0, 0, pane->width(), pane->height()));
        const QRect crop = QRect(int(area.left()) - 24, 0, int(area.width()) + 48, int(area.bottom()) + 24)
                               .intersected(image.rect());
        QVERIFY(image.copy(crop).save(m_pictures + u"/"_qs + name + u"-panel.png"_qs));
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid() && m_mediaFiles.isValid());
        for (const char *variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR"})
            qputenv(variable, m_dir.filePath(QString::fromLatin1(variable)).toUtf8());
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
        qputenv("QT_MEDIA_BACKEND", "gstreamer");
        qputenv("GST_REGISTRY", QFile::encodeName(m_mediaFiles.filePath(u"gstreamer-registry.bin"_qs)));
        // Before QtMultimedia's first use, which connects to the sound server once.
        m_pulse = std::make_unique<PrivatePulseAudio>();
        QVERIFY2(m_pulse->isRunning(), qPrintable(m_pulse->errorString()));

        m_feed = std::make_unique<LoopbackHttpServer>();
        m_feed->route("/v2/point/", [](const LoopbackHttpServer::Request &) {
            return LoopbackHttpServer::Response{200, traffic, "application/json", false, false};
        });
        m_streams = std::make_unique<LiveAudioServer>();
        for (const char *variable : {"AEROLUME_PRIMARY_FEED_URL", "AEROLUME_FALLBACK_FEED_URL",
                                     "AEROLUME_ROUTE_URL", "AEROLUME_PHOTO_URL", "AEROLUME_GEOCODER_URL"})
            qputenv(variable, m_feed->baseUrl().toUtf8());
        for (const char *variable :
             {"AEROLUME_TILE_URL_STANDARD", "AEROLUME_TILE_URL_IMAGERY", "AEROLUME_TILE_URL_LABELS"})
            qputenv(variable, (m_feed->baseUrl() + u"/tiles/{z}/{x}/{y}.png"_qs).toUtf8());
        // Page links name their mount on the stream host, which is the live server here.
        qputenv("AEROLUME_STREAM_URL", m_streams->baseUrl().toUtf8());

        m_pictures = QDir::currentPath() + u"/pictures"_qs;
        QDir().mkpath(m_pictures);
        QQuickStyle::setStyle(u"Fusion"_qs);
        m_engine = std::make_unique<QQmlApplicationEngine>();
        // The modules linked into this program, before any copy on disk.
        m_engine->addImportPath(u"qrc:/qt/qml"_qs);
        m_engine->addImageProvider(u"symbol"_qs, new SymbolImageProvider());
        m_engine->load(QUrl(u"qrc:/qt/qml/Aerolume/App/Main.qml"_qs));
        QVERIFY(window());
        FlightStore::shared()->setHomeLocation(45.5887, -122.5975, u"Portland"_qs);
        QVERIFY(QTest::qWaitForWindowExposed(window()));
        QTRY_VERIFY(toolButton(u"atcButton"_qs) && toolButton(u"atcButton"_qs)->isVisible());
        QCOMPARE(audio()->favorites().size(), 0);
    }

    void cleanup()
    {
        // What a test left typed in the form stays there, as it would for a person.
        part(u"atcNameField"_qs)->setProperty("text", QString());
        part(u"atcUrlField"_qs)->setProperty("text", QString());
        closePanel();
        clearFavorites();
        DefaultsStore::shared()->setValue(u"appearanceChoice"_qs, u"light"_qs);
    }

    void toolbarItemsInOrder()
    {
        const QStringList labels{u"Pause"_qs, u"ATC Audio"_qs, u"Logbook"_qs, u"Legend"_qs, u"Home Location"_qs};
        const QStringList tips{u"Pause live updates"_qs, u"Listen to live air traffic control"_qs,
                               u"Sighting statistics"_qs, u"What the icons and colors mean"_qs,
                               u"Change home location"_qs};
        QQuickItem *bar = window()->property("header").value<QQuickItem *>();
        QVERIFY(bar);
        QList<QQuickItem *> buttons;
        std::function<void(QQuickItem *)> collect = [&](QQuickItem *item) {
            for (QQuickItem *child : item->childItems()) {
                if (child->inherits("QQuickToolButton"))
                    buttons.append(child);
                else
                    collect(child);
            }
        };
        collect(bar);
        std::sort(buttons.begin(), buttons.end(),
                  [](QQuickItem *a, QQuickItem *b) { return a->mapToScene({}).x() < b->mapToScene({}).x(); });
        QStringList shown;
        for (QQuickItem *button : buttons)
            shown.append(button->property("text").toString());
        // The radius menu leads; the rest stand in this order.
        QCOMPARE(shown.mid(1), labels);
        for (qsizetype i = 0; i < labels.size(); ++i) {
            QQuickItem *button = buttons[i + 1];
            QCOMPARE(accessibleName(button), labels[i]);
            QCOMPARE(evaluate(button, u"ToolTip.text"_qs).toString(), tips[i]);
        }
        QVERIFY(accessibleName(buttons[0]).startsWith(u"Radius"));
        QVERIFY(atcIcon().startsWith(u"image://symbol/headphones?"));
        QVERIFY(evaluate(toolButton(u"logbookButton"_qs), u"icon.source.toString()"_qs)
                    .toString()
                    .startsWith(u"image://symbol/chart.bar?"));
    }

    void panelOpensUnderItsButtonAndEscapeCloses()
    {
        QQuickItem *button = toolButton(u"atcButton"_qs);
        click(button);
        QTRY_VERIFY(panelOpen());
        QTRY_VERIFY(popover()->property("opened").toBool());
        QCOMPARE(panel()->width(), 320.0);
        const QRectF buttonArea = button->mapRectToScene(QRectF(0, 0, button->width(), button->height()));
        const QRectF panelArea = panel()->mapRectToScene(QRectF(0, 0, panel()->width(), panel()->height()));
        QVERIFY(panelArea.top() >= buttonArea.bottom());
        QVERIFY(panelArea.left() < buttonArea.right() && panelArea.right() > buttonArea.left());
        QVERIFY(QRectF(0, 0, window()->width(), window()->height()).contains(panelArea));

        // Empty: the explanation stands where the rows will be, naming the tower feed directory.
        auto *explanation = part(u"atcExplanation"_qs);
        QVERIFY(explanation && explanation->isVisible());
        QCOMPARE(explanation->property("text").toString(),
                 u"Listen to live air traffic control while you watch the sky. Find your airport's feed at "
                 u"LiveATC.net, copy the stream or .pls link, and save it below."_qs);
        QCOMPARE(rows().size(), 0);
        QCOMPARE(statusText(), u"Not playing"_qs);
        QCOMPARE(accessibleName(part(u"atcVolumeSlider"_qs)), u"Volume"_qs);
        QCOMPARE(part(u"atcNameField"_qs)->property("placeholderText").toString(),
                 u"Name — e.g. PDX Tower"_qs);
        QCOMPARE(part(u"atcUrlField"_qs)->property("placeholderText").toString(), u"Stream or .pls URL"_qs);
        QVERIFY(!accessibleName(part(u"atcNameField"_qs)).isEmpty());
        QVERIFY(!accessibleName(part(u"atcUrlField"_qs)).isEmpty());
        QCOMPARE(part(u"atcAddButton"_qs)->property("text").toString(), u"Add Stream"_qs);

        QTest::keyClick(window(), Qt::Key_Escape);
        QTRY_VERIFY(!panelOpen());

        // The button toggles the panel.
        click(button);
        QTRY_VERIFY(popover()->property("opened").toBool());
        click(button);
        QTRY_VERIFY(!panelOpen());
    }

    void addRule_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("address");
        QTest::addColumn<bool>("byEnter");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<QString>("storedName");
        QTest::addColumn<QString>("storedAddress");

        QTest::newRow("page link") << u"PDX Tower"_qs
                                   << u"https://www.liveatc.net/hlisten.php?mount=kpdx_twr"_qs << false
                                   << true << u"PDX Tower"_qs
                                   << u"https://www.liveatc.net/hlisten.php?mount=kpdx_twr"_qs;
        QTest::newRow("blank-only name accepted and kept")
            << u"   "_qs << u"http://feeds.example/kpdx.pls"_qs << false << true << u"   "_qs
            << u"http://feeds.example/kpdx.pls"_qs;
        QTest::newRow("name kept untrimmed")
            << u" \tSEA Ground "_qs << u"https://s.example/ksea_gnd"_qs << true << true
            << u" \tSEA Ground "_qs << u"https://s.example/ksea_gnd"_qs;
        QTest::newRow("address with blanks and tabs trimmed")
            << u"Approach"_qs << u" \t https://d.example/kpdx_app \t "_qs << false << true << u"Approach"_qs
            << u"https://d.example/kpdx_app"_qs;
        QTest::newRow("Enter adds too") << u"Ground"_qs << u"https://d.example/kpdx_gnd"_qs << true << true
                                        << u"Ground"_qs << u"https://d.example/kpdx_gnd"_qs;
        QTest::newRow("a scheme the resolver refuses is still saved")
            << u"Old FTP"_qs << u"ftp://tower.example/feed.pls"_qs << false << true << u"Old FTP"_qs
            << u"ftp://tower.example/feed.pls"_qs;
        QTest::newRow("no name") << QString() << u"https://d.example/kpdx_twr"_qs << false << false
                                 << QString() << QString();
        QTest::newRow("no name, Enter")
            << QString() << u"https://d.example/kpdx_twr"_qs << true << false << QString() << QString();
        QTest::newRow("no address") << u"PDX"_qs << QString() << false << false << QString() << QString();
        QTest::newRow("only blanks and tabs")
            << u"PDX"_qs << u" \t "_qs << false << false << QString() << QString();
        QTest::newRow("unparsable: blank inside")
            << u"PDX"_qs << u"https://d.example/kpdx twr"_qs << true << false << QString() << QString();
        QTest::newRow("unparsable: open bracket")
            << u"PDX"_qs << u"http://[fe80::1"_qs << false << false << QString() << QString();
        QTest::newRow("a line end is not trimmed")
            << u"PDX"_qs << u"https://d.example/kpdx\n"_qs << false << false << QString() << QString();
    }

    void addRule()
    {
        QFETCH(QString, name);
        QFETCH(QString, address);
        QFETCH(bool, byEnter);
        QFETCH(bool, enabled);
        QFETCH(QString, storedName);
        QFETCH(QString, storedAddress);

        openPanel();
        auto *nameField = part(u"atcNameField"_qs);
        auto *urlField = part(u"atcUrlField"_qs);
        auto *addButton = part(u"atcAddButton"_qs);
        QVERIFY(nameField && urlField && addButton);
        QVERIFY(part(u"atcExplanation"_qs)->isVisible());
        nameField->setProperty("text", name);
        urlField->setProperty("text", address);
        QCOMPARE(addButton->property("enabled").toBool(), enabled);

        QSignalSpy stored(DefaultsStore::shared(), &DefaultsStore::changed);
        if (byEnter) {
            urlField->forceActiveFocus();
            QTest::keyClick(window(), Qt::Key_Return);
        } else {
            click(addButton);
        }

        if (!enabled) {
            QCOMPARE(audio()->favorites().size(), 0);
            QCOMPARE(nameField->property("text").toString(), name);
            QCOMPARE(urlField->property("text").toString(), address);
            QVERIFY(part(u"atcExplanation"_qs)->isVisible());
            return;
        }
        QCOMPARE(audio()->favorites().size(), 1);
        QCOMPARE(audio()->favorites().first().name, storedName);
        QCOMPARE(audio()->favorites().first().url, storedAddress);
        // Saved at once, both fields emptied, nothing playing.
        QVERIFY(std::any_of(stored.cbegin(), stored.cend(), [](const QList<QVariant> &args) {
            return args.value(0).toString() == u"atcFavorites";
        }));
        QCOMPARE(nameField->property("text").toString(), QString());
        QCOMPARE(urlField->property("text").toString(), QString());
        QCOMPARE(audio()->status().kind, ATCAudio::StatusKind::Idle);
        QVERIFY(!addButton->property("enabled").toBool());

        // The row takes the explanation's place, and the last removal brings it back.
        QTRY_COMPARE(rows().size(), 1);
        QVERIFY(!part(u"atcExplanation"_qs)->isVisible());
        click(rowPart(storedName, u"atcRemoveButton"_qs));
        QCOMPARE(audio()->favorites().size(), 0);
        QTRY_VERIFY(part(u"atcExplanation"_qs)->isVisible());
    }

    void statusLine_data()
    {
        QTest::addColumn<QString>("state");
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("tone");
        QTest::addColumn<bool>("busy");
        QTest::addColumn<bool>("asked");

        QTest::newRow("idle") << u"idle"_qs << QString() << u"Not playing"_qs << u"tertiaryText"_qs << false
                              << false;
        // A server that takes the call and never sends a byte keeps the player waiting.
        QTest::newRow("buffering") << u"buffering"_qs << u"silent"_qs << u"Buffering…"_qs
                                   << u"secondaryText"_qs << true << true;
        QTest::newRow("playing") << u"playing"_qs << u"page"_qs << u"Playing PDX Tower"_qs << u"accent"_qs
                                 << false << true;
        QTest::newRow("offline")
            << u"offline"_qs << u"dead"_qs
            << u"PDX Tower appears offline — feeds are volunteer-run; try again later or use "
               u"another feed."_qs
            << u"systemOrange"_qs << false << false;
    }

    void statusLine()
    {
        QFETCH(QString, state);
        QFETCH(QString, address);
        QFETCH(QString, text);
        QFETCH(QString, tone);
        QFETCH(bool, busy);
        QFETCH(bool, asked);

        const QString url = address == u"silent" ? m_streams->silentUrl()
                            : address == u"dead" ? LiveAudioServer::deadUrl()
                            : address == u"page" ? m_streams->baseUrl() + u"/hlisten.php?mount=live"_qs
                                                 : m_streams->liveUrl();
        QVERIFY(audio()->addFavorite(u"PDX Tower"_qs, url));
        QVERIFY(audio()->addFavorite(u"SEA Approach"_qs, m_streams->liveUrl()));
        openPanel();
        QTRY_COMPARE(rows().size(), 2);
        if (!address.isEmpty())
            click(rowPart(u"PDX Tower"_qs, u"atcPlayButton"_qs));
        QTRY_COMPARE_WITH_TIMEOUT(statusText(), text, playTimeoutMs);

        QCOMPARE(part(u"atcStatusText"_qs)->property("color").value<QColor>(), themeColor(tone));
        QCOMPARE(part(u"atcBusyIndicator"_qs)->isVisible(), busy);
        QCOMPARE(accessibleName(part(u"atcStatusText"_qs)), text);
        // The stop symbol from the moment of asking until it stops or fails, on the row and the toolbar.
        QQuickItem *playButton = rowPart(u"PDX Tower"_qs, u"atcPlayButton"_qs);
        QCOMPARE(accessibleName(playButton), asked ? u"Stop PDX Tower"_qs : u"Play PDX Tower"_qs);
        QVERIFY(
            evaluate(playButton, u"icon.source.toString()"_qs)
                .toString()
                .startsWith(asked ? u"image://symbol/stop.circle.fill?" : u"image://symbol/play.circle?"));
        QCOMPARE(rowPart(u"PDX Tower"_qs, u"atcStreamName"_qs)->property("color").value<QColor>(),
                 themeColor(asked ? u"accent"_qs : u"text"_qs));
        QCOMPARE(rowPart(u"SEA Approach"_qs, u"atcStreamName"_qs)->property("color").value<QColor>(),
                 themeColor(u"text"_qs));
        QVERIFY(atcIcon().startsWith(asked ? u"image://symbol/headphones.circle.fill?"
                                           : u"image://symbol/headphones?"));
        if (state == u"playing")
            QTRY_COMPARE(m_pulse->activeStreamCount(), 1);

        save(u"atc-%1-light"_qs.arg(state));
        DefaultsStore::shared()->setValue(u"appearanceChoice"_qs, u"dark"_qs);
        QCOMPARE(part(u"atcStatusText"_qs)->property("color").value<QColor>(), themeColor(tone));
        save(u"atc-%1-dark"_qs.arg(state));

        // A feed that plays or waits stops from its row.
        if (asked) {
            click(playButton);
            QCOMPARE(statusText(), u"Not playing"_qs);
            QVERIFY(atcIcon().startsWith(u"image://symbol/headphones?"));
            QTRY_COMPARE(m_pulse->activeStreamCount(), 0);
        }
    }

    void closingThePanelKeepsPlaying()
    {
        QVERIFY(audio()->addFavorite(u"PDX Tower"_qs, m_streams->liveUrl()));
        openPanel();
        QTRY_COMPARE(rows().size(), 1);
        click(rowPart(u"PDX Tower"_qs, u"atcPlayButton"_qs));
        QTRY_COMPARE_WITH_TIMEOUT(statusText(), u"Playing PDX Tower"_qs, playTimeoutMs);
        QTRY_COMPARE(m_pulse->activeStreamCount(), 1);

        closePanel();
        QTest::qWait(300);
        QCOMPARE(audio()->status().kind, ATCAudio::StatusKind::Playing);
        QCOMPARE(m_pulse->activeStreamCount(), 1);
        QVERIFY(atcIcon().startsWith(u"image://symbol/headphones.circle.fill?"));

        openPanel();
        QCOMPARE(statusText(), u"Playing PDX Tower"_qs);
        QCOMPARE(accessibleName(rowPart(u"PDX Tower"_qs, u"atcPlayButton"_qs)), u"Stop PDX Tower"_qs);
    }

    void removingThePlayingRowEndsAtNotPlaying()
    {
        QVERIFY(audio()->addFavorite(u"PDX Tower"_qs, m_streams->liveUrl()));
        QVERIFY(audio()->addFavorite(u"SEA Approach"_qs, m_streams->liveUrl()));
        openPanel();
        QTRY_COMPARE(rows().size(), 2);
        click(rowPart(u"PDX Tower"_qs, u"atcPlayButton"_qs));
        QTRY_COMPARE_WITH_TIMEOUT(statusText(), u"Playing PDX Tower"_qs, playTimeoutMs);
        QTRY_COMPARE(m_pulse->activeStreamCount(), 1);

        QQuickItem *remove = rowPart(u"PDX Tower"_qs, u"atcRemoveButton"_qs);
        QCOMPARE(evaluate(remove, u"ToolTip.text"_qs).toString(), u"Remove this stream"_qs);
        click(remove);
        // At once, with no question asked.
        QCOMPARE(statusText(), u"Not playing"_qs);
        QCOMPARE(part(u"atcStatusText"_qs)->property("color").value<QColor>(),
                 themeColor(u"tertiaryText"_qs));
        QCOMPARE(audio()->favorites().size(), 1);
        QCOMPARE(audio()->favorites().first().name, u"SEA Approach"_qs);
        QTRY_COMPARE(rows().size(), 1);
        QVERIFY(atcIcon().startsWith(u"image://symbol/headphones?"));
        QTRY_COMPARE(m_pulse->activeStreamCount(), 0);
        QVERIFY(panelOpen());
    }

    void sliderWithNothingPlayingStoresTheVolume()
    {
        openPanel();
        QVERIFY(!audio()->playingFavoriteID());
        QQuickItem *slider = part(u"atcVolumeSlider"_qs);
        QVERIFY(slider);
        QCOMPARE(slider->property("value").toDouble(), audio()->volume());

        // A click a quarter of the way along, then a step by keyboard: each is stored as it happens.
        const QPointF quarter(slider->width() * 0.25, slider->height() / 2);
        QTest::mouseClick(window(), Qt::LeftButton, {}, slider->mapToScene(quarter).toPoint());
        const double clicked = audio()->volume();
        QVERIFY2(clicked > 0.1 && clicked < 0.4, qPrintable(QString::number(clicked)));
        QCOMPARE(slider->property("value").toDouble(), clicked);
        QCOMPARE(DefaultsStore::shared()->doubleValue(u"atcVolume"_qs), std::optional(clicked));

        slider->forceActiveFocus();
        QTest::keyClick(window(), Qt::Key_Right);
        QVERIFY(audio()->volume() > clicked);
        QCOMPARE(DefaultsStore::shared()->doubleValue(u"atcVolume"_qs), std::optional(audio()->volume()));
        // Written through to the settings file, where the next launch reads it.
        QSettings file(DefaultsStore::shared()->filePath(), QSettings::IniFormat);
        QCOMPARE(file.value(u"atcVolume"_qs).toDouble(), audio()->volume());
        QVERIFY(!audio()->playingFavoriteID());
        QVERIFY(!audio()->player());

        // A change made elsewhere moves the slider.
        audio()->setVolume(0.8);
        QCOMPARE(slider->property("value").toDouble(), 0.8);
    }

    void longNamesElide()
    {
        const QString longName = u"Portland International Tower and Approach, combined overnight feed with "
                                 u"ground and clearance delivery on the same frequency"_qs;
        QVERIFY(audio()->addFavorite(longName, LiveAudioServer::deadUrl()));
        QVERIFY(audio()->addFavorite(u"PDX Tower"_qs, m_streams->liveUrl()));
        openPanel();
        QTRY_COMPARE(rows().size(), 2);
        QCOMPARE(panel()->width(), 320.0);
        QQuickItem *name = rowPart(longName, u"atcStreamName"_qs);
        QVERIFY(name->property("truncated").toBool());
        const QRectF panelArea = panel()->mapRectToScene(QRectF(0, 0, panel()->width(), panel()->height()));
        for (const QString &partName : {u"atcPlayButton"_qs, u"atcStreamName"_qs, u"atcRemoveButton"_qs}) {
            QQuickItem *item = rowPart(longName, partName);
            QVERIFY(panelArea.contains(item->mapRectToScene(QRectF(0, 0, item->width(), item->height()))));
        }

        // The offline message wraps within the panel, however long the name.
        click(rowPart(longName, u"atcPlayButton"_qs));
        QTRY_VERIFY_WITH_TIMEOUT(
            statusText().endsWith(u" appears offline — feeds are volunteer-run; try again "
                                  u"later or use another feed."),
            playTimeoutMs);
        QQuickItem *status = part(u"atcStatusText"_qs);
        QTRY_VERIFY(status->property("lineCount").toInt() > 1);
        const QRectF grown = panel()->mapRectToScene(QRectF(0, 0, panel()->width(), panel()->height()));
        QCOMPARE(grown.width(), 320.0);
        QVERIFY(grown.contains(status->mapRectToScene(QRectF(0, 0, status->width(), status->height()))));
        save(u"atc-long-names-light"_qs);
    }

    void logbookOpensOneWindow()
    {
        const auto logbooks = [] {
            QList<QWindow *> found;
            for (QWindow *candidate : QGuiApplication::topLevelWindows()) {
                if (candidate->title() == u"Logbook")
                    found.append(candidate);
            }
            return found;
        };
        QCOMPARE(logbooks().size(), 0);
        click(toolButton(u"logbookButton"_qs));
        QTRY_COMPARE(logbooks().size(), 1);
        QWindow *first = logbooks().first();
        QTRY_VERIFY(first->isVisible());
        QCOMPARE(first->size(), QSize(560, 640));

        // A second click brings the same window forward.
        click(toolButton(u"logbookButton"_qs));
        QCOMPARE(logbooks().size(), 1);
        QCOMPARE(logbooks().first(), first);

        // Closed and opened again: still the one window.
        first->close();
        QTRY_VERIFY(!first->isVisible());
        click(toolButton(u"logbookButton"_qs));
        QTRY_VERIFY(first->isVisible());
        QCOMPARE(logbooks().size(), 1);
        first->close();
    }
};

QTEST_MAIN(ATCAudioViewTest)
#include "ATCAudioViewTest.moc"
