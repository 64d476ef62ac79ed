#include "../app/StoreHarness.h"
#include "MapCircle.h"
#include "MapViewport.h"
#include "TileServer.h"

#include <QGuiApplication>
#include <QJsonArray>
#include <QPalette>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QSignalSpy>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>

Q_IMPORT_QML_PLUGIN(Aerolume_MapPlugin)

namespace {

const HomeLocation portland(45.5, -122.6, u"Portland"_qs);

// The distance between two colours, channel by channel, at most 255.
int difference(const QColor &a, const QColor &b)
{
    return std::max(
        {std::abs(a.red() - b.red()), std::abs(a.green() - b.green()), std::abs(a.blue() - b.blue())});
}

// The item of that name under `root`, searched through the visual tree (delegates aren't QObject children).
QQuickItem *findItem(QQuickItem *root, const QString &name)
{
    if (root->objectName() == name)
        return root;
    for (QQuickItem *child : root->childItems()) {
        if (QQuickItem *found = findItem(child, name))
            return found;
    }
    return nullptr;
}

// The closest any pixel in a square around `centre` comes to `wanted`.
int closest(const QImage &image, const QPointF &centre, int half, const QColor &wanted)
{
    int best = 255;
    for (int y = int(centre.y()) - half; y <= int(centre.y()) + half; ++y) {
        for (int x = int(centre.x()) - half; x <= int(centre.x()) + half; ++x) {
            if (image.rect().contains(x, y))
                best = std::min(best, difference(image.pixelColor(x, y), wanted));
        }
    }
    return best;
}

// The share of pixels in a square around `centre` within `tolerance` of `wanted`.
double share(const QImage &image, const QPointF &centre, int half, const QColor &wanted, int tolerance)
{
    int hits = 0;
    int all = 0;
    for (int y = int(centre.y()) - half; y <= int(centre.y()) + half; ++y) {
        for (int x = int(centre.x()) - half; x <= int(centre.x()) + half; ++x) {
            if (!image.rect().contains(x, y))
                continue;
            ++all;
            if (difference(image.pixelColor(x, y), wanted) <= tolerance)
                ++hits;
        }
    }
    return all ? double(hits) / all : 0;
}

QColor blend(const QColor &under, const QColor &over, double alpha)
{
    return QColor::fromRgbF(float(under.redF() * (1 - alpha) + over.redF() * alpha),
                            float(under.greenF() * (1 - alpha) + over.greenF() * alpha),
                            float(under.blueF() * (1 - alpha) + over.blueF() * alpha));
}

} // namespace

class RadarMapRenderTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void mapShowsTilesRingTrailsAndMarkers();
    void selectionShowsTheCardAndMovesTheCamera();
    void lookupsRunOncePerSelection();
    void stylesDrawTheirSourcesAndRing_data();
    void stylesDrawTheirSourcesAndRing();
    void altitudeColoursAndBadges();
    void cameraFollowsHomeAndRadius();
    void markersGlideUnlessMotionIsReduced();
    void markersDescribeThemselves();

private:
    void refresh(const QList<QJsonObject> &rows);
    // Renders the window now; saved under $AEROLUME_RENDER_DIR when set, for a person to look at.
    QImage grab(const QString &name);
    [[nodiscard]] QObject *map() const;
    [[nodiscard]] MapViewport *viewport() const;
    [[nodiscard]] QPointF at(double latitude, double longitude) const;
    // Where the 25 nm ring crosses the parallel east of home.
    [[nodiscard]] QPointF ringEast() const;
    bool waitForTiles();
    static QList<QJsonObject> traffic(double step);

    QTemporaryDir m_cache;
    std::unique_ptr<StoreHarness> m_harness;
    std::unique_ptr<TileServer> m_tiles;
    std::unique_ptr<QQuickView> m_view;
};

void RadarMapRenderTest::initTestCase()
{
    // The tile store is made once per process, on this folder: no test touches the user's cache.
    qputenv("XDG_CACHE_HOME", QFile::encodeName(m_cache.path()));
    QLocale::setDefault(QLocale(u"fr_FR"_qs));
}

void RadarMapRenderTest::init()
{
    m_harness = std::make_unique<StoreHarness>();
    m_tiles = std::make_unique<TileServer>();
    for (const auto &[variable, style] :
         {std::pair{"AEROLUME_TILE_URL_STANDARD", "standard"},
          std::pair{"AEROLUME_TILE_URL_IMAGERY", "imagery"}, std::pair{"AEROLUME_TILE_URL_LABELS", "labels"}})
        qputenv(variable, m_tiles->urlTemplate(QString::fromLatin1(style)).toUtf8());
    // Route and photo lookups on the same loopback server.
    qputenv("AEROLUME_ROUTE_URL", m_tiles->server().baseUrl().toUtf8());
    qputenv("AEROLUME_PHOTO_URL", m_tiles->server().baseUrl().toUtf8());
    m_tiles->server().route("/v0/callsign/", [](const LoopbackHttpServer::Request &) {
        LoopbackHttpServer::Response response;
        response.body = R"({"response":{"flightroute":{"origin":{"iata_code":"PDX","icao_code":"KPDX",)"
                        R"("municipality":"Portland"},"destination":{"iata_code":"SEA","icao_code":"KSEA",)"
                        R"("municipality":"Seattle"}}}})";
        return response;
    });
    const QByteArray photoUrl = m_tiles->server().baseUrl().toUtf8() + "/tiles/imagery/1/0/0.png";
    m_tiles->server().route("/pub/photos/hex/", [photoUrl](const LoopbackHttpServer::Request &) {
        LoopbackHttpServer::Response response;
        response.body = R"({"photos":[{"thumbnail_large":{"src":")" + photoUrl +
                        R"("},"link":"https://example.org/photo/1","photographer":"Jane Doe"}]})";
        return response;
    });

    m_harness->storeHome(portland);
    // Still pictures: no animations of the camera or the markers unless a test asks for them.
    m_harness->defaults().setValue(u"reduceMotion"_qs, true);
    m_harness->makeStore(false);
    refresh(traffic(0));
    refresh(traffic(1));
    refresh(traffic(2));

    m_view = std::make_unique<QQuickView>();
    m_view->engine()->addImportPath(u"qrc:/qt/qml"_qs);
    m_view->setInitialProperties({{u"store"_qs, QVariant::fromValue<QObject *>(&m_harness->store())},
                                  {u"defaults"_qs, QVariant::fromValue<QObject *>(&m_harness->defaults())}});
    m_view->setResizeMode(QQuickView::SizeRootObjectToView);
    m_view->resize(900, 640);
    m_view->setSource(QUrl(u"qrc:/qt/qml/Aerolume/Map/RadarMapView.qml"_qs));
    QVERIFY2(m_view->status() == QQuickView::Ready,
             qPrintable(m_view->errors().isEmpty() ? QString() : m_view->errors().first().toString()));
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    QVERIFY(waitForTiles());
    // The three aircraft with positions have trails of three points.
    auto *trails = findItem(m_view->rootObject(), u"trailLayer"_qs);
    QVERIFY(trails);
    QVERIFY(QTest::qWaitFor([trails] { return trails->property("segmentCount").toInt() == 3; }, 5000));
}

void RadarMapRenderTest::cleanup()
{
    m_view.reset();
    m_harness.reset();
    m_tiles.reset();
}

QList<QJsonObject> RadarMapRenderTest::traffic(double step)
{
    using R = StoreHarness;
    // Three aircraft moving east, north and south-west; a fourth without a position.
    return {
        R::row(u"a0a0a0"_qs, 45.55, -122.75 + 0.02 * step, 6,
               {{u"flight"_qs, u"ASA512"_qs},
                {u"alt_baro"_qs, 12000},
                {u"track"_qs, 90},
                {u"gs"_qs, 380},
                {u"t"_qs, u"B739"_qs},
                {u"dir"_qs, 300.0}}),
        R::row(u"e1e1e1"_qs, 45.35 + 0.02 * step, -122.45, 9,
               {{u"flight"_qs, u"N123AB"_qs},
                {u"alt_baro"_qs, 1500},
                {u"track"_qs, 0},
                {u"squawk"_qs, u"7700"_qs}}),
        R::row(u"ae0001"_qs, 45.62 - 0.015 * step, -122.40 - 0.015 * step, 12,
               {{u"alt_baro"_qs, 31000}, {u"track"_qs, 225}, {u"dbFlags"_qs, 1}}),
        QJsonObject{{u"hex"_qs, u"b0b0b0"_qs}, {u"alt_baro"_qs, 5000}},
    };
}

void RadarMapRenderTest::refresh(const QList<QJsonObject> &rows)
{
    m_harness->queuePrimary(rows);
    const QString outcome = m_harness->refresh();
    QVERIFY2(outcome.startsWith(u"applied"_qs), qPrintable(outcome));
}

QObject *RadarMapRenderTest::map() const
{
    return m_view->rootObject()->property("map").value<QObject *>();
}

MapViewport *RadarMapRenderTest::viewport() const
{
    return map()->property("viewport").value<MapViewport *>();
}

QPointF RadarMapRenderTest::at(double latitude, double longitude) const
{
    return viewport()->coordinateToPoint(latitude, longitude);
}

QPointF RadarMapRenderTest::ringEast() const
{
    const QPointF edge = MapCircle::destination(portland.latitude, portland.longitude, 90, 25 * 1852.0);
    return at(edge.x(), edge.y());
}

bool RadarMapRenderTest::waitForTiles()
{
    return QTest::qWaitFor([this] { return map()->property("tilesComplete").toBool(); }, 10000);
}

QImage RadarMapRenderTest::grab(const QString &name)
{
    // What a change of settings or of the store posted (the trails' rebuild) runs before the frame.
    QCoreApplication::processEvents();
    QImage image = m_view->grabWindow();
    const QString folder = qEnvironmentVariable("AEROLUME_RENDER_DIR");
    if (!folder.isEmpty()) {
        QDir().mkpath(folder);
        image.save(folder + u'/' + name + u".png"_qs);
    }
    return image;
}

void RadarMapRenderTest::mapShowsTilesRingTrailsAndMarkers()
{
    const QImage image = grab(u"radar-standard"_qs);
    QCOMPARE(image.size(), QSize(900, 640));
    const QColor tile = TileServer::colorOf(u"standard"_qs);

    // The camera frames the ring: the whole search area across the shorter side.
    QVERIFY(std::abs(viewport()->distance() - 25 * 1852.0 * 5) < 1);
    // Outside the ring, the tile as served (the top left is free of controls).
    QVERIFY(share(image, QPointF(60, 60), 6, tile, 6) > 0.8);
    // Inside it, the same tile under the ring's faint blue.
    const QColor blue(0, 122, 255);
    QVERIFY(share(image, at(45.5, -122.2), 4, blend(tile, blue, 0.05), 6) > 0.8);
    // The ring's edge, due east of home: blue at half strength over the tile.
    const QPointF east = ringEast();
    QVERIFY2(share(image, east, 2, blend(tile, blue, 0.5), 40) > 0.15,
             qPrintable(image.pixelColor(east.toPoint()).name()));

    // The home pin: a blue disc at home.
    const QPointF home = at(45.5, -122.6);
    QVERIFY(share(image, home + QPointF(-7, 0), 1, blue, 40) > 0.5);

    // An ordinary aircraft: the default orange disc around a white glyph, where the feed put it last.
    const QPointF plane = at(45.55, -122.71);
    QVERIFY(share(image, plane, 11, QColor(0xFF, 0x8A, 0x00), 12) > 0.25);
    QVERIFY(share(image, plane, 4, Qt::white, 30) > 0.2);
    // The emergency is red, the military aircraft green.
    QVERIFY(share(image, at(45.39, -122.45), 11, QColor(255, 59, 48), 12) > 0.25);
    QVERIFY(share(image, at(45.59, -122.43), 11, QColor(0x29, 0x9E, 0x52), 12) > 0.25);

    // Its trail: orange at 45 % over the tile, halfway along the first leg.
    const QPointF leg = (at(45.55, -122.75) + at(45.55, -122.73)) / 2;
    QVERIFY2(closest(image, leg, 3, blend(blend(tile, blue, 0.05), QColor(0xFF, 0x8A, 0x00), 0.45)) < 12,
             qPrintable(image.pixelColor(leg.toPoint()).name()));
    // The ring's faint fill and nothing else a little off the line.
    QVERIFY(share(image, leg + QPointF(0, 8), 1, blend(tile, blue, 0.05), 6) > 0.8);

    // The title under the marker: dark text on a light halo.
    bool dark = false;
    for (int y = int(plane.y()) + 13; y < int(plane.y()) + 28 && !dark; ++y) {
        for (int x = int(plane.x()) - 20; x < int(plane.x()) + 20 && !dark; ++x)
            dark = image.pixelColor(x, y).lightness() < 80;
    }
    QVERIFY(dark);

    // The controls and the credit are there.
    QObject *root = m_view->rootObject();
    QCOMPARE(map()->property("attribution").toString(), u"© OpenStreetMap contributors"_qs);
    auto *fitAll = root->findChild<QQuickItem *>(u"fitAllButton"_qs);
    QVERIFY(fitAll && fitAll->isVisible());
    QCOMPARE(fitAll->property("text").toString(), u"Fit All"_qs);
    QVERIFY(!root->property("detailCard").value<QQuickItem *>()->isVisible());
}

void RadarMapRenderTest::selectionShowsTheCardAndMovesTheCamera()
{
    m_harness->store().setSelectedHex(u"a0a0a0"_qs);
    QObject *card = m_view->rootObject()->property("detailCard").value<QObject *>();
    QVERIFY(card->property("visible").toBool());
    // The camera went to the selection, keeping the zoom (within the selection's clamp).
    QVERIFY(std::abs(viewport()->latitude() - 45.55) < 1e-6);
    QVERIFY(std::abs(viewport()->longitude() + 122.71) < 1e-6);
    QVERIFY(std::abs(viewport()->distance() - 25 * 1852.0 * 5) < 1);
    // Route and photo arrive from the loopback services.
    QVERIFY(QTest::qWaitFor(
        [&] { return card->property("route").isValid() && card->property("photo").isValid(); }, 5000));
    auto *photo = card->findChild<QQuickItem *>(u"photoImage"_qs);
    QVERIFY(photo);
    QVERIFY(QTest::qWaitFor([&] { return photo->property("status").toInt() == 1; }, 5000));
    QVERIFY(waitForTiles());

    QStringList rows;
    for (const QVariant &row : card->property("rows").toList())
        rows.append(row.toMap().value(u"label"_qs).toString() + u'=' +
                    row.toMap().value(u"value"_qs).toString());
    QCOMPARE(rows.first(), u"Route=PDX → SEA"_qs);
    QVERIFY(rows.contains(u"Altitude=12\u202f000 ft"_qs) || rows.contains(u"Altitude=12 000 ft"_qs));
    QCOMPARE(rows.last(), u"ICAO hex=A0A0A0"_qs);

    const QImage image = grab(u"radar-selected"_qs);
    // The selected marker at the centre, larger (30 points): orange reaches further out.
    const QPointF centre(450, 320);
    QVERIFY2(share(image, centre + QPointF(8, -8), 0, QColor(0xFF, 0x8A, 0x00), 20) > 0.5,
             qPrintable(image.pixelColor(458, 312).name()));
    // The card, 12 points from the bottom-trailing corner, 265 wide: the window colour fills its middle.
    const QRectF cardRect(900 - 12 - 265, 640 - 12 - card->property("height").toDouble(), 265,
                          card->property("height").toDouble());
    QCOMPARE(card->property("width").toDouble(), 265.0);
    const QColor window = QGuiApplication::palette().color(QPalette::Window);
    QVERIFY(share(image, cardRect.topLeft() + QPointF(200, 12), 2, window, 12) > 0.5);
    // The photo: the served imagery tile's blue in the card.
    QVERIFY(share(image, photo->mapToScene(QPointF(photo->width() / 2, photo->height() / 2)), 6,
                  TileServer::colorOf(u"imagery"_qs), 10) > 0.5);

    // Closing the card clears the selection and leaves the camera where it is.
    const double distance = viewport()->distance();
    m_harness->store().setSelectedHex(std::nullopt);
    QVERIFY(!card->property("visible").toBool());
    QCOMPARE(viewport()->distance(), distance);
    QVERIFY(std::abs(viewport()->latitude() - 45.55) < 1e-6);
}

void RadarMapRenderTest::lookupsRunOncePerSelection()
{
    m_harness->store().setSelectedHex(u"a0a0a0"_qs);
    QVERIFY(
        QTest::qWaitFor([&] { return m_tiles->server().requestCount("/pub/photos/hex/a0a0a0") == 1; }, 5000));
    QCOMPARE(m_tiles->server().requestCount("/v0/callsign/ASA512"), 1);
    // Refreshes of the same aircraft don't start the lookups again.
    refresh(traffic(3));
    refresh(traffic(4));
    QObject *card = m_view->rootObject()->property("detailCard").value<QObject *>();
    QVERIFY(card->property("visible").toBool());
    QCOMPARE(card->property("aircraft").value<Aircraft>().lon(), std::optional(-122.75 + 0.02 * 4));
    QTest::qWait(30);
    QCOMPARE(m_tiles->server().requestCount("/v0/callsign/"), 1);
    QCOMPARE(m_tiles->server().requestCount("/pub/photos/hex/"), 1);
    // Another selection looks up its own; this one has no callsign of a route's form.
    m_harness->store().setSelectedHex(u"ae0001"_qs);
    QVERIFY(QTest::qWaitFor([&] { return m_tiles->server().requestCount("/pub/photos/hex/") == 2; }, 5000));
    QCOMPARE(m_tiles->server().requestCount("/v0/callsign/"), 1);
}

void RadarMapRenderTest::stylesDrawTheirSourcesAndRing_data()
{
    QTest::addColumn<QString>("choice");
    QTest::addColumn<QColor>("ground");
    QTest::addColumn<QColor>("ring");
    QTest::addColumn<QString>("styleName");

    const QColor tile = TileServer::colorOf(u"standard"_qs);
    const int grey = (tile.red() * 77 + tile.green() * 150 + tile.blue() * 29) >> 8;
    const auto mutedChannel = [grey](int channel) { return ((channel + 3 * grey) / 4 * 2 + 236) / 3; };
    const QColor muted(mutedChannel(tile.red()), mutedChannel(tile.green()), mutedChannel(tile.blue()));
    QTest::newRow("muted") << u"muted"_qs << muted << QColor(0, 122, 255) << u"Muted"_qs;
    QTest::newRow("imagery") << u"imagery"_qs << TileServer::colorOf(u"imagery"_qs) << QColor(Qt::white)
                             << u"Satellite"_qs;
    QTest::newRow("hybrid") << u"hybrid"_qs << TileServer::colorOf(u"imagery"_qs) << QColor(Qt::white)
                            << u"Hybrid"_qs;
    QTest::newRow("unknown draws standard") << u"relief"_qs << tile << QColor(0, 122, 255) << u"Standard"_qs;
}

void RadarMapRenderTest::stylesDrawTheirSourcesAndRing()
{
    QFETCH(QString, choice);
    QFETCH(QColor, ground);
    QFETCH(QColor, ring);
    QFETCH(QString, styleName);

    m_harness->defaults().setValue(u"mapStyleChoice"_qs, choice);
    QCOMPARE(m_view->rootObject()->property("styleName").toString(), styleName);
    QVERIFY(waitForTiles());
    const QImage image = grab(u"radar-"_qs + choice);
    QVERIFY2(share(image, QPointF(60, 60), 6, ground, 8) > 0.7, qPrintable(image.pixelColor(60, 60).name()));
    const QPointF east = ringEast();
    QVERIFY2(share(image, east, 2, blend(ground, ring, 0.5), 40) > 0.15,
             qPrintable(image.pixelColor(east.toPoint()).name()));
    if (choice == u"hybrid") {
        // The label layer's white cross in the middle of each tile lies over the imagery somewhere.
        QVERIFY(share(image, QPointF(450, 320), 450, Qt::white, 10) > 0.01);
        QVERIFY(map()->property("attribution").toString().contains(u"Esri"_qs));
    }
}

void RadarMapRenderTest::altitudeColoursAndBadges()
{
    QObject *legend = m_view->rootObject()->findChild<QObject *>(u"altitudeLegend"_qs);
    QVERIFY(legend);
    QVERIFY(!legend->property("visible").toBool());
    m_harness->defaults().setValue(u"colorByAltitude"_qs, true);
    m_harness->defaults().setValue(u"differentiateWithoutColor"_qs, true);
    QVERIFY(legend->property("visible").toBool());
    const QImage image = grab(u"radar-altitude"_qs);
    // 12,000 ft is the green band; the emergency stays red and gets its badge.
    const QPointF plane = at(45.55, -122.71);
    QVERIFY(share(image, plane, 11, QColor(0x4D, 0xC7, 0x4D), 12) > 0.25);
    const QPointF emergency = at(45.39, -122.45);
    QVERIFY(share(image, emergency, 11, QColor(255, 59, 48), 12) > 0.2);
    // The badge: a white disc past the top-trailing corner of the frame.
    QVERIFY(share(image, emergency + QPointF(12, -12), 2, Qt::white, 40) > 0.3);
    // The ordinary aircraft has none.
    QVERIFY(share(image, plane + QPointF(12, -12), 2, Qt::white, 40) < 0.1);
    QVERIFY(share(image, QPointF(legend->property("x").toDouble() + 20, 640 - 36 - 40), 200,
                  QColor(0x80, 0x80, 0xFF), 10) > 0);
    // Off again: legend gone, orange back, in the same redraw.
    m_harness->defaults().setValue(u"colorByAltitude"_qs, false);
    QVERIFY(!legend->property("visible").toBool());
    QVERIFY(share(grab(u"radar-orange-again"_qs), plane, 11, QColor(0xFF, 0x8A, 0x00), 12) > 0.25);
}

void RadarMapRenderTest::cameraFollowsHomeAndRadius()
{
    // The user zooms in; a change of radius refits to radius × 5 all the same.
    viewport()->zoomAbout(4, 450, 320);
    QVERIFY(viewport()->distance() < 60000);
    m_harness->store().setRadiusNM(40);
    QVERIFY(std::abs(viewport()->distance() - 40 * 1852.0 * 5) < 1);
    // Zoomed far out, "Home" comes down to 2,000 km.
    viewport()->zoomAbout(1.0 / 64, 450, 320);
    QVERIFY(viewport()->distance() > 2e6);
    QMetaObject::invokeMethod(m_view->rootObject(), "centerOnHome");
    QVERIFY(std::abs(viewport()->distance() - 2e6) < 1);
    QVERIFY(std::abs(viewport()->latitude() - 45.5) < 1e-6);
    // Selecting from there zooms in to 600 km.
    m_harness->store().setSelectedHex(u"ae0001"_qs);
    QVERIFY(std::abs(viewport()->distance() - 600000) < 1);
    // A new home recentres; no home, and Fit All does nothing.
    m_harness->store().setHomeLocation(47.6, -122.3, u"Seattle"_qs);
    QVERIFY(std::abs(viewport()->latitude() - 47.6) < 1e-6);
    m_harness->store().forgetHome();
    const double latitude = viewport()->latitude();
    QMetaObject::invokeMethod(m_view->rootObject(), "recenter");
    QCOMPARE(viewport()->latitude(), latitude);
    const QImage image = grab(u"radar-no-home"_qs);
    QVERIFY(share(image, at(47.6, -122.3) + QPointF(-7, 0), 1, QColor(0, 122, 255), 40) < 0.5);
}

void RadarMapRenderTest::markersGlideUnlessMotionIsReduced()
{
    m_harness->defaults().setValue(u"reduceMotion"_qs, false);
    auto *marker = findItem(m_view->rootObject(), u"marker-a0a0a0"_qs);
    QVERIFY(marker);
    auto *annotation = marker->parentItem();
    const QPointF before = annotation->position();
    refresh(traffic(5));
    // Just after the refresh the marker hasn't jumped; it gets there within the glide.
    QVERIFY(QLineF(annotation->position(), before).length() < 2);
    const QPointF target =
        at(45.55, -122.75 + 0.1) - QPointF(annotation->width() / 2, annotation->height() / 2);
    QVERIFY(QTest::qWaitFor([&] { return QLineF(annotation->position(), target).length() < 0.01; }, 5000));

    m_harness->defaults().setValue(u"reduceMotion"_qs, true);
    refresh(traffic(6));
    const QPointF jumped =
        at(45.55, -122.75 + 0.12) - QPointF(annotation->width() / 2, annotation->height() / 2);
    QVERIFY(QLineF(annotation->position(), jumped).length() < 0.01);
}

void RadarMapRenderTest::markersDescribeThemselves()
{
    m_harness->defaults().setValue(u"distanceUnit"_qs, u"km"_qs);
    auto *marker = findItem(m_view->rootObject(), u"marker-e1e1e1"_qs);
    QVERIFY(marker);
    QCOMPARE(marker->property("accessibleName").toString(), u"N123AB, 1\u202f500 ft, 16.7 km, emergency"_qs);
    // The aircraft without a position has no marker on show.
    auto *lost = findItem(m_view->rootObject(), u"marker-b0b0b0"_qs);
    QVERIFY(!lost || !lost->parentItem()->isVisible());
    // Activating a marker as a screen reader does selects its aircraft.
    QMetaObject::invokeMethod(marker, "activated");
    QCOMPARE(m_harness->store().selectedHex(), std::optional(u"e1e1e1"_qs));
}

QTEST_MAIN(RadarMapRenderTest)
#include "RadarMapRenderTest.moc"
