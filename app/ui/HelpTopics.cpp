#include "HelpTopics.h"

#include "Services.h"

#include <QRegularExpression>
#include <QVariantMap>

namespace {

using Kind = HelpTopics::Kind;
using Block = HelpTopics::Block;

Block title(const QString &text)
{
    return {Kind::Title, text, {}, {}, {}};
}

Block heading(const QString &text)
{
    return {Kind::Heading, text, {}, {}, {}};
}

Block paragraph(const QString &text)
{
    return {Kind::Paragraph, text, {}, {}, {}};
}

Block item(const QString &itemTitle, const QString &symbol, const QString &color, const QString &text)
{
    return {Kind::Item, text, itemTitle, symbol, color};
}

Block legend(const QString &which)
{
    return {Kind::Legend, which, {}, {}, {}};
}

QString kindName(Kind kind)
{
    switch (kind) {
    case Kind::Title:
        return u"title"_qs;
    case Kind::Heading:
        return u"heading"_qs;
    case Kind::Paragraph:
        return u"paragraph"_qs;
    case Kind::Item:
        return u"item"_qs;
    case Kind::Legend:
        return u"legend"_qs;
    }
    return {};
}

} // namespace

HelpTopics::HelpTopics(QObject *parent) : QObject(parent) {}

QList<HelpTopics::Topic> HelpTopics::all()
{
    const QString primary = Services::primaryFeedName();
    const QString fallback = Services::fallbackFeedName();

    return {
        {u"gettingStarted"_qs, u"Getting Started"_qs, u"figure.wave"_qs,
         {
             title(u"Getting Started"_qs),
             paragraph(u"Aerolume shows every aircraft currently flying near a point you choose — usually your "
                       "home — on a live map that updates every 5 seconds."_qs),
             heading(u"Set your home location"_qs),
             paragraph(u"On first launch, Aerolume asks where home is. Type an address and click **Look Up**, use "
                       "**Use this computer's location**, or enter latitude and longitude by hand. Change it anytime "
                       "with the house button in the toolbar."_qs),
             heading(u"Choose a radius"_qs),
             paragraph(u"The toolbar radius menu sets how far out to look: 5 to 250 nautical miles. Small radii "
                       "show what's audible from your backyard; 250 nm covers most of the region. The blue ring on "
                       "the map marks the edge of the search area."_qs),
             heading(u"The toolbar"_qs),
             paragraph(u"Left to right: the radius menu, pause/resume, **ATC Audio** (live control-tower streams), "
                       "the **Logbook** (sighting statistics), the **Legend** (what every icon and color means), and "
                       "the house button for changing your home location."_qs),
             heading(u"Pause"_qs),
             paragraph(u"The pause button stops updates until you resume."_qs),
         }},
        {u"map"_qs, u"The Map"_qs, u"map"_qs,
         {
             title(u"The Map"_qs),
             paragraph(u"Each chip on the map is one aircraft, rotated to its actual direction of flight."_qs),
             item(u"Your color"_qs, u"circle.fill"_qs, u"orange"_qs,
                  u"Normal traffic, in the color chosen in Settings."_qs),
             item(u"Red"_qs, u"circle.fill"_qs, u"red"_qs,
                  u"An aircraft squawking an emergency code, always shown red."_qs),
             item(u"Green"_qs, u"circle.fill"_qs, u"green"_qs,
                  u"Military aircraft, identified from the community aircraft database."_qs),
             heading(u"Details"_qs),
             paragraph(u"Click any aircraft (on the map or in the sidebar) for its detail card: a community photo "
                       "of the actual airframe, operator, type, route (for airline flights), altitude, speed, climb "
                       "rate, track, squawk, distance — and **Spot it**, which tells you which way to look and how "
                       "high (\"Look WSW, 38° up\")."_qs),
             heading(u"Trails & altitude colors"_qs),
             paragraph(u"Each aircraft drags a trail of its recent travel — 30 seconds to 5 minutes, set in "
                       "Settings → Map — toggled from **View → Show Flight Trails** (Ctrl+Shift+T). **View → Color "
                       "Aircraft by Altitude** (Ctrl+Shift+A) switches markers to altitude bands — orange low, "
                       "violet high. Both also live in Settings → Map."_qs),
             heading(u"Navigation"_qs),
             paragraph(u"Scroll and pinch to move around. Bottom-left: **Fit All** reframes the map to the full "
                       "search radius, **Home** recenters on your home at the current zoom, and **Style** switches "
                       "between standard, muted, satellite, and hybrid maps (also in Settings)."_qs),
         }},
        {u"sidebar"_qs, u"The Sidebar"_qs, u"sidebar.left"_qs,
         {
             title(u"The Sidebar"_qs),
             paragraph(u"Aircraft are listed nearest first, with callsign, type and registration, altitude, and "
                       "distance. The search field matches callsigns, types, and registrations, and the filter menu "
                       "above the list narrows to any combination of emergencies, military, helicopters, airliners, "
                       "general aviation, and low-altitude traffic. Filters and search apply to the map too — the "
                       "list and map always show the same aircraft. Note that \"Airliners\" means airline-operated "
                       "flights, which includes cargo feeders flying small aircraft under airline callsigns."_qs),
             heading(u"Badges"_qs),
             item(u"EMERG"_qs, u"exclamationmark.triangle.fill"_qs, u"red"_qs,
                  u"Squawking 7500, 7600, or 7700, or a declared emergency."_qs),
             item(u"MIL"_qs, u"shield.fill"_qs, u"green"_qs, u"Military aircraft."_qs),
             heading(u"Status line"_qs),
             paragraph(u"The bottom line shows the live data source. A green dot means updates are flowing; orange "
                       "means paused or a connection problem. \"On ground\" altitude means the aircraft is taxiing "
                       "or parked at a nearby airport — it's broadcasting, just not flying."_qs),
         }},
        {u"icons"_qs, u"Icons & Colors"_qs, u"info.circle"_qs,
         {
             title(u"Icons & Colors"_qs),
             paragraph(u"Everything Aerolume draws, decoded. The quick version also lives behind the **?** button "
                       "in the toolbar."_qs),
             heading(u"In the app"_qs),
             legend(u"app"_qs),
             heading(u"On the widget scopes"_qs),
             legend(u"widget"_qs),
         }},
        {u"widgets"_qs, u"Widgets"_qs, u"square.grid.2x2"_qs,
         {
             title(u"Widgets"_qs),
             paragraph(u"Aerolume ships three desktop widgets in a radar-scope style. To add one, start **Aerolume "
                       "Widgets** from your applications menu and pick the faces you want."_qs),
             item(u"Nearest Aircraft (small)"_qs, u"airplane"_qs, u"green"_qs,
                  u"The closest aircraft: callsign, type, distance, altitude, and how many are in range."_qs),
             item(u"Sky Radar (small & medium)"_qs, u"dot.radiowaves.left.and.right"_qs, u"green"_qs,
                  u"Home at the center; every aircraft plotted at its true bearing and distance. Rings mark "
                  "thirds of your radius. The medium size lists the nearest three alongside."_qs),
             item(u"Sky Board (large)"_qs, u"list.bullet.rectangle"_qs, u"green"_qs,
                  u"The radar plus a board of the five nearest aircraft."_qs),
             heading(u"Colors on the scope"_qs),
             paragraph(u"Blips use the widget accent color (radar green by default — change it in Settings → Map → "
                       "Widgets); **gold** marks military aircraft and **red** an emergency. A dim \"QUIET SKY\" "
                       "label means the widget is working and there's genuinely nothing in range."_qs),
             heading(u"Refresh"_qs),
             paragraph(u"Widgets refresh on their own schedule — roughly every 5 minutes. Each widget shows its "
                       "last-updated time. Widgets use the home and radius from the app, and work even when the app "
                       "is closed."_qs),
             heading(u"Opening the app"_qs),
             paragraph(u"Click any widget to open Aerolume. The Nearest Aircraft widget — and individual aircraft "
                       "rows in the medium and large widgets — jump straight to that aircraft, selected on the "
                       "map."_qs),
         }},
        {u"settings"_qs, u"Settings"_qs, u"gearshape"_qs,
         {
             title(u"Settings"_qs),
             paragraph(u"Open Settings with **Ctrl+,** or from the File menu. Settings are organized into four "
                       "panes."_qs),
             heading(u"General"_qs),
             paragraph(u"Override Aerolume's appearance (Automatic follows your desktop; Light or Dark force it for "
                       "this app only) and choose distance units — miles, nautical miles, or kilometers — used "
                       "everywhere distances appear, widgets included."_qs),
             heading(u"Map"_qs),
             paragraph(u"Pick a marker color from the presets or any custom color — the plane glyph automatically "
                       "switches between white and black to stay visible on whatever color you choose. Marker size "
                       "comes in small, medium, and large. Emergency red and military green always override the "
                       "chosen color, or switch to altitude-band coloring. Flight trails have length (30 s – 5 min) "
                       "and width controls. Map styles: Standard, **Muted** (grays the basemap so markers "
                       "dominate), **Satellite**, and **Hybrid** — plus the widget accent color."_qs),
             heading(u"Alerts"_qs),
             paragraph(u"Get notified about aircraft worth stepping outside for: emergencies, **fly-overs** "
                       "(predicted up to two minutes before something passes nearly overhead, with which way to "
                       "look), military aircraft, helicopters, anything below 2,000 ft, or a personal watchlist of "
                       "callsigns and registrations. Each aircraft triggers a rule at most once per half hour. The "
                       "**alert range** setting gates the rules by distance from home, and **fly-over closeness** "
                       "tunes how directly overhead a pass must be. Clicking a notification opens Aerolume with that "
                       "aircraft selected. There's also a launch-at-login option so alerts are always armed."_qs),
             heading(u"Accessibility"_qs),
             paragraph(u"**Reduce motion** stops map animations and the About window's radar ping (the system-wide "
                       "setting is honored automatically). **Text size** scales the aircraft list and detail card "
                       "from 80% to 140%. **Increase contrast** thickens marker outlines. **Differentiate without "
                       "color** adds an ! symbol to emergency aircraft and a ★ to military ones, so status never "
                       "relies on color alone. Descriptions for screen readers such as Orca are always on."_qs),
             heading(u"Privacy"_qs),
             paragraph(u"A plain-language summary of what leaves your computer, and a **Forget Home Location** "
                       "button that clears your home from the app and its widgets."_qs),
         }},
        {u"data"_qs, u"Data & Privacy"_qs, u"antenna.radiowaves.left.and.right"_qs,
         {
             title(u"Data & Privacy"_qs),
             heading(u"Where the aircraft come from"_qs),
             paragraph(u"Nearly all aircraft continuously broadcast their GPS position, altitude, speed, and "
                       "identity over a radio protocol called **ADS-B**. Thousands of volunteers run small receivers "
                       "that pool these broadcasts into community networks. Aerolume queries **"_qs
                       + primary + u"** first and fails over to **"_qs + fallback
                       + u"** — both free, no account required. Because a source can serve an empty answer during "
                         "an outage, Aerolume only believes \"no aircraft\" when every source agrees."_qs),
             heading(u"What leaves your computer"_qs),
             paragraph(u"Your home coordinates and radius go to those two services as the query area. When you "
                       "select an aircraft, its callsign may be sent to **"_qs
                       + Services::routeServiceName() + u"** for the route and its ICAO code to **"_qs + Services::photoServiceName()
                       + u"** for a photo. ATC audio connects directly to stream URLs you provide. Address lookup is "
                         "done by OpenStreetMap's Nominatim service. No accounts, no analytics; your home location "
                         "and settings stay on this computer."_qs),
             heading(u"Coverage"_qs),
             paragraph(u"Coverage depends on volunteer receivers: excellent near cities, thinner over oceans and "
                       "remote terrain. A few aircraft appear with only a hex code — they're broadcasting without a "
                       "callsign, or the database has no record for them."_qs),
         }},
        {u"faq"_qs, u"FAQ"_qs, u"questionmark.circle"_qs,
         {
             title(u"FAQ"_qs),
             heading(u"The map is empty. Is it broken?"_qs),
             paragraph(u"Usually the sky is just quiet — common late at night. The status line at the bottom of the "
                       "sidebar confirms a live connection and names the source that answered. If there were a total "
                       "data outage, an error would appear there."_qs),
             heading(u"A widget looks stuck"_qs),
             paragraph(u"Check its last-updated time. Your desktop sometimes defers widget refreshes to save energy; "
                       "removing the widget and adding it again forces a fresh start."_qs),
             heading(u"What is a squawk?"_qs),
             paragraph(u"A four-digit transponder code assigned by air traffic control. **1200** is standard for "
                       "uncontrolled VFR flying in the US. **7500**, **7600**, and **7700** are emergency codes, "
                       "which Aerolume highlights in red."_qs),
             heading(u"What does \"FL240\" mean in widgets?"_qs),
             paragraph(u"A flight level — FL240 ≈ 24,000 ft. Widgets abbreviate altitudes above 18,000 ft this way, "
                       "as aviation does."_qs),
             heading(u"Why do planes jump slightly on the map?"_qs),
             paragraph(u"Positions update every 5 seconds, so fast aircraft move a noticeable step each refresh."_qs),
             heading(u"Can I listen to air traffic control?"_qs),
             paragraph(u"Yes — the headphones button in the toolbar plays any internet audio stream. Find your "
                       "airport's feed at **"_qs
                       + Services::towerFeedsName()
                       + u"**, copy its stream or playlist (.pls) link, and save it as a named favorite. Feeds are "
                         "volunteer-run and sometimes go offline; Aerolume says so when one is."_qs),
             heading(u"Distance to what, exactly?"_qs),
             paragraph(u"Straight-line distance from your home point to the aircraft's position over the ground, in "
                       "your chosen unit (Settings → General; miles by default)."_qs),
         }},
    };
}

std::optional<HelpTopics::Topic> HelpTopics::find(const QString &key)
{
    for (Topic &topic : all()) {
        if (topic.key == key)
            return std::move(topic);
    }
    return std::nullopt;
}

QString HelpTopics::richText(const QString &markup)
{
    static const QRegularExpression bold(u"\\*\\*(.+?)\\*\\*"_qs);
    QString text = markup.toHtmlEscaped();
    text.replace(bold, u"<b>\\1</b>"_qs);
    return text;
}

QString HelpTopics::plainText(const QString &markup)
{
    static const QRegularExpression bold(u"\\*\\*(.+?)\\*\\*"_qs);
    QString text = markup;
    text.replace(bold, u"\\1"_qs);
    return text;
}

QVariantList HelpTopics::topicList() const
{
    QVariantList list;
    for (const Topic &topic : all())
        list.append(QVariantMap{{u"key"_qs, topic.key}, {u"title"_qs, topic.title}, {u"symbol"_qs, topic.symbol}});
    return list;
}

QVariantList HelpTopics::page(const QString &key) const
{
    std::optional<Topic> topic = find(key);
    if (!topic)
        topic = find(defaultTopic());
    QVariantList blocks;
    for (const Block &block : topic->blocks) {
        blocks.append(QVariantMap{
            {u"kind"_qs, kindName(block.kind)},
            {u"text"_qs, block.kind == Kind::Legend ? block.text : richText(block.text)},
            {u"plain"_qs, plainText(block.text)},
            {u"title"_qs, block.title},
            {u"symbol"_qs, block.symbol},
            {u"color"_qs, block.color},
        });
    }
    return blocks;
}
