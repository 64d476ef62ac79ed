#include "DefaultsStore.h"
#include "FlightStore.h"
#include "HelpTopics.h"
#include "LegendSamples.h"
#include "LoopbackHttpServer.h"
#include "MarkerColors.h"
#include "SymbolImageProvider.h"
#include "Symbols.h"

#include "ItemTexts.h"
#include <QDir>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQmlComponent>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>

Q_IMPORT_QML_PLUGIN(Aerolume_MapPlugin)
Q_IMPORT_QML_PLUGIN(Aerolume_CorePlugin)

namespace {

const QString receiverName = u"Backyard Receiver"_qs;

// A block of a help page as first written: kind T(itle), H(eading), P(aragraph), I(tem) or L(egend);
// an item has its title, symbol and colour too.
struct Written
{
    char kind;
    QString text;
    QString title = {};
    QString symbol = {};
    QString color = {};
};

struct WrittenPage
{
    QString key;
    QString title;
    QString symbol;
    QList<Written> blocks;
};

// The help pages word for word as first written for another desktop, in sidebar order.
const QList<WrittenPage> &writtenPages()
{
    static const QList<WrittenPage> pages{
        {u"gettingStarted"_qs, u"Getting Started"_qs, u"figure.wave"_qs,
         {
             {'T', u"Getting Started"_qs},
             {'P', u"Aerolume shows every aircraft currently flying near a point you choose — usually your home — on a live map that updates every 5 seconds."_qs},
             {'H', u"Set your home location"_qs},
             {'P', u"On first launch, Aerolume asks where home is. Type an address and click **Look Up**, use **Use this Mac's location**, or enter latitude and longitude by hand. Change it anytime with the house button in the toolbar."_qs},
             {'H', u"Choose a radius"_qs},
             {'P', u"The toolbar radius menu sets how far out to look: 5 to 250 nautical miles. Small radii show what's audible from your backyard; 250 nm covers most of the region. The blue ring on the map marks the edge of the search area."_qs},
             {'H', u"The toolbar"_qs},
             {'P', u"Left to right: the radius menu, pause/resume, **ATC Audio** (live control-tower streams), the **Logbook** (sighting statistics), the **Legend** (what every icon and color means), and the house button for changing your home location."_qs},
             {'H', u"Pause"_qs},
             {'P', u"The pause button stops updates until you resume."_qs},
         }},
        {u"map"_qs, u"The Map"_qs, u"map"_qs,
         {
             {'T', u"The Map"_qs},
             {'P', u"Each chip on the map is one aircraft, rotated to its actual direction of flight."_qs},
             {'I', u"Normal traffic, in the color chosen in Settings."_qs, u"Your color"_qs, u"circle.fill"_qs, u"orange"_qs},
             {'I', u"An aircraft squawking an emergency code, always shown red."_qs, u"Red"_qs, u"circle.fill"_qs, u"red"_qs},
             {'I', u"Military aircraft, identified from the community aircraft database."_qs, u"Green"_qs, u"circle.fill"_qs, u"green"_qs},
             {'H', u"Details"_qs},
             {'P', u"Click any aircraft (on the map or in the sidebar) for its detail card: a community photo of the actual airframe, operator, type, route (for airline flights), altitude, speed, climb rate, track, squawk, distance — and **Spot it**, which tells you which way to look and how high (\"Look WSW, 38° up\")."_qs},
             {'H', u"Trails & altitude colors"_qs},
             {'P', u"Each aircraft drags a trail of its recent travel — 30 seconds to 5 minutes, set in Settings → Map — toggled from **View → Show Flight Trails** (⇧⌘T). **View → Color Aircraft by Altitude** (⇧⌘A) switches markers to altitude bands — orange low, violet high. Both also live in Settings → Map."_qs},
             {'H', u"Navigation"_qs},
             {'P', u"Scroll and pinch to move around. Bottom-left: **Fit All** reframes the map to the full search radius, **Home** recenters on your home at the current zoom, and **Style** switches between standard, muted, satellite, and hybrid maps (also in Settings)."_qs},
         }},
        {u"sidebar"_qs, u"The Sidebar"_qs, u"sidebar.left"_qs,
         {
             {'T', u"The Sidebar"_qs},
             {'P', u"Aircraft are listed nearest first, with callsign, type and registration, altitude, and distance. The search field matches callsigns, types, and registrations, and the filter menu above the list narrows to any combination of emergencies, military, helicopters, airliners, general aviation, and low-altitude traffic. Filters and search apply to the map too — the list and map always show the same aircraft. Note that \"Airliners\" means airline-operated flights, which includes cargo feeders flying small aircraft under airline callsigns."_qs},
             {'H', u"Badges"_qs},
             {'I', u"Squawking 7500, 7600, or 7700, or a declared emergency."_qs, u"EMERG"_qs, u"exclamationmark.triangle.fill"_qs, u"red"_qs},
             {'I', u"Military aircraft."_qs, u"MIL"_qs, u"shield.fill"_qs, u"green"_qs},
             {'H', u"Status line"_qs},
             {'P', u"The bottom line shows the live data source. A green dot means updates are flowing; orange means paused or a connection problem. \"On ground\" altitude means the aircraft is taxiing or parked at a nearby airport — it's broadcasting, just not flying."_qs},
         }},
        {u"icons"_qs, u"Icons & Colors"_qs, u"info.circle"_qs,
         {
             {'T', u"Icons & Colors"_qs},
             {'P', u"Everything Aerolume draws, decoded. The quick version also lives behind the **?** button in the toolbar."_qs},
             {'H', u"In the app"_qs},
             {'L', u"app"_qs},
             {'H', u"On the widget scopes"_qs},
             {'L', u"widget"_qs},
         }},
        {u"widgets"_qs, u"Widgets"_qs, u"square.grid.2x2"_qs,
         {
             {'T', u"Widgets"_qs},
             {'P', u"Aerolume ships three desktop widgets in a radar-scope style. To add one, right-click the desktop, choose **Edit Widgets…**, and search for Aerolume."_qs},
             {'I', u"The closest aircraft: callsign, type, distance, altitude, and how many are in range."_qs, u"Nearest Aircraft (small)"_qs, u"airplane"_qs, u"green"_qs},
             {'I', u"Home at the center; every aircraft plotted at its true bearing and distance. Rings mark thirds of your radius. The medium size lists the nearest three alongside."_qs, u"Sky Radar (small & medium)"_qs, u"dot.radiowaves.left.and.right"_qs, u"green"_qs},
             {'I', u"The radar plus a board of the five nearest aircraft."_qs, u"Sky Board (large)"_qs, u"list.bullet.rectangle"_qs, u"green"_qs},
             {'H', u"Colors on the scope"_qs},
             {'P', u"Blips use the widget accent color (radar green by default — change it in Settings → Map → Widgets); **gold** marks military aircraft and **red** an emergency. A dim \"QUIET SKY\" label means the widget is working and there's genuinely nothing in range."_qs},
             {'H', u"Refresh"_qs},
             {'P', u"macOS refreshes widgets on its own schedule — roughly every 5 minutes. Each widget shows its last-updated time. Widgets use the home and radius from the app, and work even when the app is closed."_qs},
             {'H', u"Opening the app"_qs},
             {'P', u"Click any widget to open Aerolume. The Nearest Aircraft widget — and individual aircraft rows in the medium and large widgets — jump straight to that aircraft, selected on the map."_qs},
         }},
        {u"settings"_qs, u"Settings"_qs, u"gearshape"_qs,
         {
             {'T', u"Settings"_qs},
             {'P', u"Open Settings with **⌘,** or from the Aerolume menu. Settings are organized into four panes."_qs},
             {'H', u"General"_qs},
             {'P', u"Override Aerolume's appearance (Automatic follows macOS; Light or Dark force it for this app only) and choose distance units — miles, nautical miles, or kilometers — used everywhere distances appear, widgets included."_qs},
             {'H', u"Map"_qs},
             {'P', u"Pick a marker color from the presets or any custom color — the plane glyph automatically switches between white and black to stay visible on whatever color you choose. Marker size comes in small, medium, and large. Emergency red and military green always override the chosen color, or switch to altitude-band coloring. Flight trails have length (30 s – 5 min) and width controls. Map styles: Standard, **Muted** (grays the basemap so markers dominate), **Satellite**, and **Hybrid** — plus the widget accent color."_qs},
             {'H', u"Alerts"_qs},
             {'P', u"Get notified about aircraft worth stepping outside for: emergencies, **fly-overs** (predicted up to two minutes before something passes nearly overhead, with which way to look), military aircraft, helicopters, anything below 2,000 ft, or a personal watchlist of callsigns and registrations. Each aircraft triggers a rule at most once per half hour. The **alert range** setting gates the rules by distance from home, and **fly-over closeness** tunes how directly overhead a pass must be. Clicking a notification opens Aerolume with that aircraft selected. There's also a launch-at-login option so alerts are always armed."_qs},
             {'H', u"Accessibility"_qs},
             {'P', u"**Reduce motion** stops map animations and the About window's radar ping (the system-wide setting is honored automatically). **Text size** scales the aircraft list and detail card from 80% to 140%. **Increase contrast** thickens marker outlines. **Differentiate without color** adds an ! symbol to emergency aircraft and a ★ to military ones, so status never relies on color alone. VoiceOver descriptions are always on."_qs},
             {'H', u"Privacy"_qs},
             {'P', u"A plain-language summary of what leaves your Mac, and a **Forget Home Location** button that clears your home from the app and its widgets."_qs},
         }},
        {u"data"_qs, u"Data & Privacy"_qs, u"antenna.radiowaves.left.and.right"_qs,
         {
             {'T', u"Data & Privacy"_qs},
             {'H', u"Where the aircraft come from"_qs},
             {'P', u"Nearly all aircraft continuously broadcast their GPS position, altitude, speed, and identity over a radio protocol called **ADS-B**. Thousands of volunteers run small receivers that pool these broadcasts into community networks. Aerolume queries **FeedAlpha** first and fails over to **FeedBravo** — both free, no account required. Because a source can serve an empty answer during an outage, Aerolume only believes \"no aircraft\" when every source agrees."_qs},
             {'H', u"What leaves your Mac"_qs},
             {'P', u"Your home coordinates and radius go to those two services as the query area. When you select an aircraft, its callsign may be sent to **RouteBase** for the route and its ICAO code to **PhotoBase** for a photo. ATC audio connects directly to stream URLs you provide. Address lookup is done by Apple's geocoding service. No accounts, no analytics; your home location and settings stay on this Mac."_qs},
             {'H', u"Coverage"_qs},
             {'P', u"Coverage depends on volunteer receivers: excellent near cities, thinner over oceans and remote terrain. A few aircraft appear with only a hex code — they're broadcasting without a callsign, or the database has no record for them."_qs},
         }},
        {u"faq"_qs, u"FAQ"_qs, u"questionmark.circle"_qs,
         {
             {'T', u"FAQ"_qs},
             {'H', u"The map is empty. Is it broken?"_qs},
             {'P', u"Usually the sky is just quiet — common late at night. The status line at the bottom of the sidebar confirms a live connection and names the source that answered. If there were a total data outage, an error would appear there."_qs},
             {'H', u"A widget looks stuck"_qs},
             {'P', u"Check its last-updated time. macOS sometimes defers widget refreshes to save energy; removing the widget and adding it again forces a fresh start."_qs},
             {'H', u"What is a squawk?"_qs},
             {'P', u"A four-digit transponder code assigned by air traffic control. **1200** is standard for uncontrolled VFR flying in the US. **7500**, **7600**, and **7700** are emergency codes, which Aerolume highlights in red."_qs},
             {'H', u"What does \"FL240\" mean in widgets?"_qs},
             {'P', u"A flight level — FL240 ≈ 24,000 ft. Widgets abbreviate altitudes above 18,000 ft this way, as aviation does."_qs},
             {'H', u"Why do planes jump slightly on the map?"_qs},
             {'P', u"Positions update every 5 seconds, so fast aircraft move a noticeable step each refresh."_qs},
             {'H', u"Can I listen to air traffic control?"_qs},
             {'P', u"Yes — the headphones button in the toolbar plays any internet audio stream. Find your airport's feed at **TowerFeeds**, copy its stream or playlist (.pls) link, and save it as a named favorite. Feeds are volunteer-run and sometimes go offline; Aerolume says so when one is."_qs},
             {'H', u"Distance to what, exactly?"_qs},
             {'P', u"Straight-line distance from your home point to the aircraft's position over the ground, in your chosen unit (Settings → General; miles by default)."_qs},
         }},
    };
    return pages;
}

// Words that name another desktop, its keys or placeholder service names, and what Linux users read
// instead. Longer phrases first, so that "this Mac's location" is not caught by "this Mac".
QList<std::pair<QString, QString>> linuxWords()
{
    return {
        {u"Use this Mac's location"_qs, u"Use this computer's location"_qs},
        {u"(⇧⌘T)"_qs, u"(Ctrl+Shift+T)"_qs},
        {u"(⇧⌘A)"_qs, u"(Ctrl+Shift+A)"_qs},
        {u"**⌘,**"_qs, u"**Ctrl+,**"_qs},
        {u"the Aerolume menu"_qs, u"the File menu"_qs},
        {u"Automatic follows macOS"_qs, u"Automatic follows your desktop"_qs},
        {u"VoiceOver descriptions are always on."_qs,
         u"Descriptions for screen readers such as Orca are always on."_qs},
        {u"right-click the desktop, choose **Edit Widgets…**, and search for Aerolume"_qs,
         u"start **Aerolume Widgets** from your applications menu and pick the faces you want"_qs},
        {u"macOS refreshes widgets on its own schedule"_qs, u"Widgets refresh on their own schedule"_qs},
        {u"macOS sometimes defers"_qs, u"Your desktop sometimes defers"_qs},
        {u"Apple's geocoding service"_qs, u"OpenStreetMap's Nominatim service"_qs},
        {u"your Mac"_qs, u"your computer"_qs},
        {u"this Mac"_qs, u"this computer"_qs},
        {u"FeedAlpha"_qs, receiverName},
        {u"FeedBravo"_qs, u"adsb.fi"_qs},
        {u"RouteBase"_qs, u"adsbdb"_qs},
        {u"PhotoBase"_qs, u"Planespotters.net"_qs},
        {u"TowerFeeds"_qs, u"LiveATC.net"_qs},
    };
}

QString sayTheLinuxWay(QString text)
{
    for (const auto &[written, said] : linuxWords())
        text.replace(written, said);
    return text;
}

// Left anywhere, these would send a Linux user looking for things that are not there.
const QStringList foreignWords{u"⌘"_qs, u"⇧"_qs, u"Mac"_qs, u"VoiceOver"_qs, u"Apple"_qs, u"Edit Widgets"_qs,
                               u"right-click the desktop"_qs, u"FeedAlpha"_qs, u"FeedBravo"_qs, u"RouteBase"_qs,
                               u"PhotoBase"_qs, u"TowerFeeds"_qs};

QString kindOf(HelpTopics::Kind kind)
{
    switch (kind) {
    case HelpTopics::Kind::Title:
        return u"T"_qs;
    case HelpTopics::Kind::Heading:
        return u"H"_qs;
    case HelpTopics::Kind::Paragraph:
        return u"P"_qs;
    case HelpTopics::Kind::Item:
        return u"I"_qs;
    case HelpTopics::Kind::Legend:
        return u"L"_qs;
    }
    return {};
}

// By the visual tree, which reaches into loaders, repeaters and popups alike.
QQuickItem *findItem(QQuickItem *item, const QString &name)
{
    if (!item)
        return nullptr;
    if (item->objectName() == name)
        return item;
    for (QQuickItem *child : item->childItems()) {
        if (QQuickItem *found = findItem(child, name))
            return found;
    }
    return nullptr;
}

QQuickItem *findItem(QQuickWindow *window, const QString &name)
{
    return findItem(window->contentItem(), name);
}

bool isRed(const QColor &color)
{
    return color.red() > 200 && color.green() < 90 && color.blue() < 90;
}

} // namespace

// Aerolume Help and the two legends: the pages' texts against how they were first written, the words of
// another desktop replaced, the services named as configured, bold markup, keyboard use, and the legend
// samples drawn by the map's own markers and the widgets' own blips. The pages are saved as pictures.
class HelpWindowTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    LoopbackHttpServer m_server;
    QQmlApplicationEngine *m_engine = nullptr;
    QQuickWindow *m_window = nullptr;
    QString m_pictures;

    void save(QQuickWindow *window, const QString &name)
    {
        const QImage image = window->grabWindow();
        QVERIFY(!image.isNull());
        QVERIFY(image.save(m_pictures + u'/' + name));
    }

    QString selection() const { return m_window->property("selection").toString(); }

    static QWindow *visibleHelpWindow()
    {
        for (QWindow *window : QGuiApplication::topLevelWindows()) {
            if (window->isVisible() && window->title() == u"Aerolume Help"_qs)
                return window;
        }
        return nullptr;
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        for (const char *variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR", "XDG_CACHE_HOME"})
            qputenv(variable, m_dir.filePath(QString::fromLatin1(variable)).toUtf8());
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
        // The main window's feeds, lookups and tiles all go to a loopback server with an empty sky.
        for (const char *variable : {"AEROLUME_PRIMARY_FEED_URL", "AEROLUME_FALLBACK_FEED_URL", "AEROLUME_ROUTE_URL",
                                     "AEROLUME_PHOTO_URL", "AEROLUME_GEOCODER_URL"})
            qputenv(variable, m_server.baseUrl().toUtf8());
        for (const char *variable : {"AEROLUME_TILE_URL_STANDARD", "AEROLUME_TILE_URL_IMAGERY", "AEROLUME_TILE_URL_LABELS"})
            qputenv(variable, (m_server.baseUrl() + u"/tiles/{z}/{x}/{y}.png"_qs).toUtf8());
        m_server.route("/v2/point/", [](const LoopbackHttpServer::Request &) {
            return LoopbackHttpServer::Response{200, R"({"ac":[]})", "application/json", false, false};
        });
        qputenv("AEROLUME_PRIMARY_FEED_NAME", receiverName.toUtf8());
        qunsetenv("AEROLUME_FALLBACK_FEED_NAME");
        m_pictures = QDir::currentPath() + u"/pictures"_qs;
        QDir().mkpath(m_pictures);

        QQuickStyle::setStyle(u"Fusion"_qs);
        m_engine = new QQmlApplicationEngine(this);
        m_engine->addImportPath(u"qrc:/qt/qml"_qs);
        m_engine->addImageProvider(u"symbol"_qs, new SymbolImageProvider());
        QQmlComponent component(m_engine, QUrl(u"qrc:/qt/qml/Aerolume/App/HelpWindow.qml"_qs));
        QObject *object = component.create();
        QVERIFY2(object, qPrintable(component.errorString()));
        m_window = qobject_cast<QQuickWindow *>(object);
        QVERIFY(m_window);
        m_window->show();
        m_window->requestActivate();
        QVERIFY(QTest::qWaitForWindowExposed(m_window));
    }

    void cleanupTestCase() { delete m_window; }

    // A binding that fails while the window runs is a broken view, whatever the pictures show.
    void init() { QTest::failOnWarning(QRegularExpression(u"qrc:/"_qs)); }

    void topicsInSidebarOrder()
    {
        const QList<HelpTopics::Topic> topics = HelpTopics::all();
        QCOMPARE(topics.size(), writtenPages().size());
        const QStringList known = Symbols::names();
        for (qsizetype i = 0; i < topics.size(); ++i) {
            QCOMPARE(topics[i].key, writtenPages()[i].key);
            QCOMPARE(topics[i].title, writtenPages()[i].title);
            QCOMPARE(topics[i].symbol, writtenPages()[i].symbol);
            // A name missing from the icon table would draw nothing at all.
            QVERIFY2(known.contains(topics[i].symbol), qPrintable(topics[i].symbol));
            for (const HelpTopics::Block &block : topics[i].blocks) {
                if (block.kind == HelpTopics::Kind::Item)
                    QVERIFY2(known.contains(block.symbol), qPrintable(block.symbol));
            }
        }
    }

    void pageTexts_data()
    {
        QTest::addColumn<QString>("key");
        for (const WrittenPage &page : writtenPages())
            QTest::newRow(qPrintable(page.key)) << page.key;
    }

    // Word for word, after the words of another desktop are said the Linux way.
    void pageTexts()
    {
        QFETCH(QString, key);
        const auto written = std::find_if(writtenPages().begin(), writtenPages().end(),
                                          [&](const WrittenPage &page) { return page.key == key; });
        const std::optional<HelpTopics::Topic> topic = HelpTopics::find(key);
        QVERIFY(topic);
        QCOMPARE(topic->blocks.size(), written->blocks.size());
        for (qsizetype i = 0; i < topic->blocks.size(); ++i) {
            const HelpTopics::Block &block = topic->blocks[i];
            const Written &expected = written->blocks[i];
            QCOMPARE(kindOf(block.kind), QString(QLatin1Char(expected.kind)));
            QCOMPARE(block.text, sayTheLinuxWay(expected.text));
            QCOMPARE(block.title, expected.title);
            QCOMPARE(block.symbol, expected.symbol);
            QCOMPARE(block.color, expected.color);
        }
    }

    void noWordsOfAnotherDesktop()
    {
        for (const HelpTopics::Topic &topic : HelpTopics::all()) {
            for (const HelpTopics::Block &block : topic.blocks) {
                for (const QString &word : foreignWords) {
                    QVERIFY2(!block.text.contains(word), qPrintable(topic.key + u": "_qs + block.text));
                    QVERIFY2(!block.title.contains(word), qPrintable(block.title));
                }
            }
        }
    }

    void servicesNamedAsConfigured()
    {
        const std::optional<HelpTopics::Topic> data = HelpTopics::find(u"data"_qs);
        QVERIFY(data);
        QVERIFY(data->blocks[2].text.contains(u"queries **Backyard Receiver** first and fails over to **adsb.fi**"_qs));
        qputenv("AEROLUME_FALLBACK_FEED_NAME", "Club Receiver");
        QVERIFY(HelpTopics::find(u"data"_qs)->blocks[2].text.contains(u"fails over to **Club Receiver**"_qs));
        qunsetenv("AEROLUME_FALLBACK_FEED_NAME");
    }

    void boldMarkup_data()
    {
        QTest::addColumn<QString>("markup");
        QTest::addColumn<QString>("rich");
        QTest::addColumn<QString>("plain");
        QTest::newRow("one pair") << u"click **Look Up**, then"_qs << u"click <b>Look Up</b>, then"_qs
                                  << u"click Look Up, then"_qs;
        QTest::newRow("several pairs") << u"**7500**, **7600**, and **7700**"_qs
                                       << u"<b>7500</b>, <b>7600</b>, and <b>7700</b>"_qs
                                       << u"7500, 7600, and 7700"_qs;
        QTest::newRow("comma inside") << u"with **Ctrl+,** or"_qs << u"with <b>Ctrl+,</b> or"_qs << u"with Ctrl+, or"_qs;
        // Markup characters in the words themselves are shown, not obeyed.
        QTest::newRow("angle brackets") << u"a <b> & **\"x\"**"_qs << u"a &lt;b&gt; &amp; <b>&quot;x&quot;</b>"_qs
                                        << u"a <b> & \"x\""_qs;
        QTest::newRow("unpaired") << u"an ** alone"_qs << u"an ** alone"_qs << u"an ** alone"_qs;
    }

    void boldMarkup()
    {
        QFETCH(QString, markup);
        QFETCH(QString, rich);
        QFETCH(QString, plain);
        QCOMPARE(HelpTopics::richText(markup), rich);
        QCOMPARE(HelpTopics::plainText(markup), plain);
    }

    void opensOnGettingStarted()
    {
        QCOMPARE(m_window->title(), u"Aerolume Help"_qs);
        QCOMPARE(m_window->size(), QSize(780, 540));
        QCOMPARE(m_window->minimumSize(), QSize(720, 480));
        QCOMPARE(selection(), QString());
        const QStringList texts = ItemTexts::ofWindow(m_window);
        QVERIFY2(texts.contains(u"Getting Started"_qs), qPrintable(texts.join(u" | ")));
        QVERIFY(texts.contains(u"Set your home location"_qs));
        // Bold shows as bold: the asterisks never reach the screen.
        QVERIFY(texts.contains(u"On first launch, Aerolume asks where home is. Type an address and click <b>Look Up</b>, "
                               "use <b>Use this computer's location</b>, or enter latitude and longitude by hand. "
                               "Change it anytime with the house button in the toolbar."_qs));
        for (const QString &text : texts)
            QVERIFY2(!text.contains(u"**"_qs), qPrintable(text));
        auto *list = findItem(m_window, u"topicList"_qs);
        QVERIFY(list);
        QCOMPARE(list->property("count").toInt(), 8);
        save(m_window, u"help-start.png"_qs);
    }

    // The sidebar takes the arrow keys; every page comes up, and each is saved for a look.
    void keyboardWalksThroughTopics()
    {
        auto *list = findItem(m_window, u"topicList"_qs);
        QTRY_VERIFY(list->hasActiveFocus());
        const QList<HelpTopics::Topic> topics = HelpTopics::all();
        for (const HelpTopics::Topic &topic : topics) {
            QTest::keyClick(m_window, Qt::Key_Down);
            QCOMPARE(selection(), topic.key);
            QTest::qWait(0);
            const QStringList texts = ItemTexts::ofWindow(m_window);
            QVERIFY2(texts.contains(topic.blocks.first().text), qPrintable(topic.key));
            for (const QString &text : texts) {
                for (const QString &word : foreignWords)
                    QVERIFY2(!text.contains(word), qPrintable(text));
            }
            QVERIFY(QTest::qWaitForWindowExposed(m_window));
            save(m_window, u"help-%1.png"_qs.arg(topic.key));
        }
        QTest::keyClick(m_window, Qt::Key_Up);
        QCOMPARE(selection(), topics[topics.size() - 2].key);
    }

    void pageScrollsFromTheKeyboard()
    {
        auto *list = findItem(m_window, u"topicList"_qs);
        list->setProperty("currentIndex", 3); // Icons & Colors, the longest page
        QCOMPARE(selection(), u"icons"_qs);
        auto *page = findItem(m_window, u"helpPage"_qs);
        QVERIFY(page);
        QCOMPARE(page->property("contentY").toDouble(), 0.0);
        QTest::keyClick(m_window, Qt::Key_Tab);
        QTRY_VERIFY(page->hasActiveFocus());
        QTest::keyClick(m_window, Qt::Key_PageDown);
        QVERIFY(page->property("contentY").toDouble() > 100);
        save(m_window, u"help-icons-scrolled.png"_qs);
        QTest::keyClick(m_window, Qt::Key_Home);
        QCOMPARE(page->property("contentY").toDouble(), 0.0);
        QTest::keyClick(m_window, Qt::Key_Backtab);
        QTRY_VERIFY(list->hasActiveFocus());
    }

    void legendSamplesDecodeAsTheMapSeesThem()
    {
        QCOMPARE(LegendSamples::normal().hex(), u"sample1"_qs);
        QVERIFY(!LegendSamples::normal().isEmergency());
        QVERIFY(!LegendSamples::normal().isMilitary());
        QCOMPARE(LegendSamples::normal().track(), std::optional<double>(45));
        QVERIFY(LegendSamples::emergency().isEmergency());
        QVERIFY(LegendSamples::military().isMilitary());
        QVERIFY(!LegendSamples::military().isEmergency());
    }

    void appLegendMarkers()
    {
        auto *list = findItem(m_window, u"topicList"_qs);
        list->setProperty("currentIndex", 3);
        QTest::qWait(0);
        QQuickItem *normal = findItem(m_window, u"legendMarkerNormal"_qs);
        QQuickItem *selected = findItem(m_window, u"legendMarkerSelected"_qs);
        QQuickItem *emergency = findItem(m_window, u"legendMarkerEmergency"_qs);
        QQuickItem *military = findItem(m_window, u"legendMarkerMilitary"_qs);
        QVERIFY(normal && selected && emergency && military);

        QCOMPARE(normal->property("fill").value<QColor>(), QColor(u"#FF8A00"_qs));
        QVERIFY(isRed(emergency->property("fill").value<QColor>()));
        QCOMPARE(military->property("fill").value<QColor>(), MarkerColors::militaryGreen());
        QVERIFY(selected->property("isSelected").toBool());
        QVERIFY(selected->width() > normal->width());

        // Never pulsing, even with motion allowed everywhere.
        DefaultsStore::shared()->setValue(u"reduceMotion"_qs, false);
        for (QQuickItem *marker : {normal, selected, emergency, military})
            QVERIFY(!marker->property("animate").toBool());

        // The legend follows the marker colour at once; a colour that doesn't parse gives orange.
        DefaultsStore::shared()->setValue(u"planeColorHex"_qs, u"#3366FF"_qs);
        QTRY_COMPARE(normal->property("fill").value<QColor>(), QColor(u"#3366FF"_qs));
        QVERIFY(isRed(emergency->property("fill").value<QColor>()));
        save(m_window, u"help-icons-blue.png"_qs);
        DefaultsStore::shared()->setValue(u"planeColorHex"_qs, u"not a colour"_qs);
        QTRY_COMPARE(normal->property("fill").value<QColor>(), QColor::fromRgb(255, 149, 0));
        DefaultsStore::shared()->remove(u"planeColorHex"_qs);
        QTRY_COMPARE(normal->property("fill").value<QColor>(), QColor(u"#FF8A00"_qs));
    }

    void widgetLegendBlips()
    {
        auto *list = findItem(m_window, u"topicList"_qs);
        list->setProperty("currentIndex", 3);
        QTest::qWait(0);
        QQuickItem *accent = findItem(m_window, u"legendBlipAccent"_qs);
        QQuickItem *military = findItem(m_window, u"legendBlipMilitary"_qs);
        QQuickItem *emergency = findItem(m_window, u"legendBlipEmergency"_qs);
        QVERIFY(accent && military && emergency);
        // The widgets' own glyph, pointing up and to the right.
        QVERIFY(accent->inherits("PlaneGlyph"));
        QCOMPARE(accent->property("heading").toDouble(), 45.0);
        QCOMPARE(accent->property("color").value<QColor>(), QColor(u"#73FF99"_qs));
        QCOMPARE(military->property("color").value<QColor>(), QColor::fromRgbF(1.0f, 0.85f, 0.3f));
        QVERIFY(isRed(emergency->property("color").value<QColor>()));

        DefaultsStore::shared()->setValue(u"widgetColorHex"_qs, u"#FF66CC"_qs);
        QTRY_COMPARE(accent->property("color").value<QColor>(), QColor(u"#FF66CC"_qs));
        DefaultsStore::shared()->setValue(u"widgetColorHex"_qs, u"#12345"_qs);
        QTRY_COMPARE(accent->property("color").value<QColor>(), QColor::fromRgbF(0.45f, 1.0f, 0.6f));
        DefaultsStore::shared()->remove(u"widgetColorHex"_qs);
        QTRY_COMPARE(accent->property("color").value<QColor>(), QColor(u"#73FF99"_qs));
    }

    void legendRowsSayWhatTheyShow()
    {
        auto *list = findItem(m_window, u"topicList"_qs);
        list->setProperty("currentIndex", 3);
        QTest::qWait(0);
        const QStringList texts = ItemTexts::ofWindow(m_window);
        const QStringList expected{
            u"Aircraft"_qs, u"Points in its direction of flight, in your chosen color."_qs,
            u"Selected aircraft"_qs, u"Larger, with a pulsing halo; the map flies to it and shows its details."_qs,
            u"Always red — squawking 7500, 7600, or 7700."_qs,
            u"Always green — flagged military in the aircraft database."_qs,
            u"With Color by Altitude on (Ctrl+Shift+A): orange below 2,000 ft, then yellow, green, cyan, and violet above 30,000 ft."_qs,
            u"The center of your search area."_qs, u"The edge of the search radius. White on satellite maps."_qs,
            u"EMERG and MIL mark the same statuses in the list."_qs,
            u"Green: live updates. Orange: paused or connection trouble."_qs,
            u"Aircraft blip"_qs, u"In your widget accent color, pointing in its direction of flight."_qs,
            u"Gold on the scope."_qs, u"Red on the scope."_qs,
            u"Home — every blip is plotted at its true bearing and distance."_qs,
            u"Thirds of your radius — at 25 nm they mark roughly 8, 17, and 25 nm."_qs,
            u"Flight level ≈ 24,000 ft (used above 18,000 ft); GND means on the ground."_qs,
            u"Nothing in range right now — the widget is working, the sky is just empty."_qs,
            u"FL240"_qs, u"QUIET"_qs, u"EMERG"_qs, u"MIL"_qs,
        };
        for (const QString &text : expected)
            QVERIFY2(texts.contains(text), qPrintable(text));
    }

    // Closing forgets the topic: the next opening starts at Getting Started again.
    void closingForgetsTheSelection()
    {
        auto *list = findItem(m_window, u"topicList"_qs);
        list->setProperty("currentIndex", 5);
        QCOMPARE(selection(), u"settings"_qs);
        m_window->close();
        QTRY_VERIFY(!m_window->isVisible());
        QCOMPARE(selection(), QString());
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window));
        QVERIFY(ItemTexts::ofWindow(m_window).contains(u"Set your home location"_qs));
    }

    // The toolbar's Legend opens the popover with the same legend; its link closes it and opens help,
    // and F1 opens help from the main window.
    void legendPopoverLeadsToHelp()
    {
        m_window->hide();
        QSignalSpy applied(FlightStore::shared(), &FlightStore::refreshApplied);
        FlightStore::shared()->setHomeLocation(47.6062, -122.3321, u"Seattle"_qs);
        m_engine->load(QUrl(u"qrc:/qt/qml/Aerolume/App/Main.qml"_qs));
        QVERIFY(!m_engine->rootObjects().isEmpty());
        auto *main = qobject_cast<QQuickWindow *>(m_engine->rootObjects().constLast());
        QVERIFY(main);
        main->requestActivate();
        QVERIFY(QTest::qWaitForWindowExposed(main));
        QVERIFY(applied.wait());

        auto *button = findItem(main, u"legendButton"_qs);
        QObject *popover = main->findChild<QObject *>(u"legendPopover"_qs);
        QVERIFY(button && popover);
        QCOMPARE(button->property("text").toString(), u"Legend"_qs);
        QTest::mouseClick(main, Qt::LeftButton, {}, button->mapToScene(button->boundingRect().center()).toPoint());
        QTRY_VERIFY(popover->property("opened").toBool());
        QCOMPARE(popover->property("width").toDouble(), 360.0);
        auto *legend = findItem(main, u"popoverLegend"_qs);
        QVERIFY(legend);
        QVERIFY(legend->findChild<QQuickItem *>(u"legendMarkerEmergency"_qs));
        save(main, u"legend-popover.png"_qs);

        auto *guide = findItem(main, u"fullGuideButton"_qs);
        QVERIFY(guide);
        QCOMPARE(guide->property("text").toString(), u"Full guide in Aerolume Help"_qs);
        QTest::mouseClick(main, Qt::LeftButton, {}, guide->mapToScene(guide->boundingRect().center()).toPoint());
        QTRY_VERIFY(!popover->property("visible").toBool());
        QWindow *help = nullptr;
        QTRY_VERIFY((help = visibleHelpWindow()) != nullptr);
        QVERIFY(help != m_window);

        help->close();
        QTRY_VERIFY(!visibleHelpWindow());
        main->requestActivate();
        QTRY_VERIFY(main->isActive());
        QTest::keyClick(main, Qt::Key_F1);
        QTRY_VERIFY(visibleHelpWindow() == help);
    }
};

QTEST_MAIN(HelpWindowTest)
#include "HelpWindowTest.moc"
