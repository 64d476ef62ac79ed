#include "TileMath.h"

#include <QTest>
#include <cmath>

Q_DECLARE_METATYPE(TileId)

class TileMathTest : public QObject
{
    Q_OBJECT

private slots:
    void worldPointsRoundTrip_data();
    void worldPointsRoundTrip();
    void spanRuleFramesTheShorterSide_data();
    void spanRuleFramesTheShorterSide();
    void tilesOfACamera_data();
    void tilesOfACamera();
    void turnedViewTouchesMoreTiles();
    void ancestorsCoverTheirDescendants_data();
    void ancestorsCoverTheirDescendants();
    void tileAddresses_data();
    void tileAddresses();
    void columnsWrapAroundTheWorld_data();
    void columnsWrapAroundTheWorld();
};

void TileMathTest::worldPointsRoundTrip_data()
{
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");
    QTest::addColumn<QPointF>("world");

    QTest::newRow("null island") << 0.0 << 0.0 << QPointF(0.5, 0.5);
    QTest::newRow("antimeridian west") << 0.0 << -180.0 << QPointF(0.0, 0.5);
    QTest::newRow("north edge") << TileMath::maxLatitude << 90.0 << QPointF(0.75, 0.0);
    QTest::newRow("portland") << 45.5 << -122.6 << QPointF(0.1594444, 0.3577522);
    QTest::newRow("sydney") << -33.87 << 151.21 << QPointF(0.9200278, 0.6000963);
}

void TileMathTest::worldPointsRoundTrip()
{
    QFETCH(double, latitude);
    QFETCH(double, longitude);
    QFETCH(QPointF, world);

    const QPointF point = TileMath::worldPoint(latitude, longitude);
    QVERIFY2(std::abs(point.x() - world.x()) < 1e-6 && std::abs(point.y() - world.y()) < 1e-6,
             qPrintable(u"got %1, %2"_qs.arg(point.x(), 0, 'f', 6).arg(point.y(), 0, 'f', 6)));
    const TileMath::Coordinate back = TileMath::coordinate(point);
    QVERIFY(std::abs(back.latitude - latitude) < 1e-9);
    QVERIFY(std::abs(back.longitude - longitude) < 1e-9);
}

void TileMathTest::spanRuleFramesTheShorterSide_data()
{
    QTest::addColumn<double>("distance");
    QTest::addColumn<double>("latitude");
    QTest::addColumn<QSizeF>("size");

    // A camera at radius × 1852 × 5 frames the whole ring of a 25 nm search area.
    QTest::newRow("25 nm ring, wide view") << 25 * 1852.0 * 5 << 45.5 << QSizeF(1200, 800);
    QTest::newRow("tall view") << 100000.0 << 10.0 << QSizeF(500, 900);
    QTest::newRow("close in, far north") << 2000.0 << 70.0 << QSizeF(640, 480);
}

void TileMathTest::spanRuleFramesTheShorterSide()
{
    QFETCH(double, distance);
    QFETCH(double, latitude);
    QFETCH(QSizeF, size);

    const double shorter = std::min(size.width(), size.height());
    const double zoom = TileMath::zoomForDistance(distance, latitude, shorter);
    const double ground = TileMath::metresPerPixel(latitude, zoom) * shorter;
    QVERIFY2(std::abs(ground - 0.4 * distance) < 1e-6 * distance, qPrintable(QString::number(ground)));
    QVERIFY(std::abs(TileMath::distanceForZoom(zoom, latitude, shorter) - distance) < 1e-6 * distance);
    // A ring of the radius fits inside: its diameter is 2 / 5 of the distance.
    QVERIFY(2 * distance / 5 <= ground + 1e-6);
}

void TileMathTest::tilesOfACamera_data()
{
    QTest::addColumn<QPointF>("centre");
    QTest::addColumn<double>("zoom");
    QTest::addColumn<QSizeF>("size");
    QTest::addColumn<int>("level");
    QTest::addColumn<QList<TileId>>("expected");

    // The centre of tile (2, 1, 1) at level 2, a view of exactly one tile: that tile and its neighbours
    // it touches on no side, so one.
    QTest::newRow("one tile") << QPointF(0.375, 0.375) << 2.0 << QSizeF(256, 256) << 2
                              << QList<TileId>{{2, 1, 1}};
    // Centred on a corner: the four around it.
    QTest::newRow("corner of four") << QPointF(0.5, 0.5) << 2.0 << QSizeF(200, 200) << 2
                                    << QList<TileId>{{2, 1, 1}, {2, 2, 1}, {2, 1, 2}, {2, 2, 2}};
    // The same view at a fractional zoom drawn from level 3 needs twice the tiles along each axis.
    QTest::newRow("finer level") << QPointF(0.5, 0.5) << 2.0 << QSizeF(200, 200) << 3
                                 << QList<TileId>{{3, 3, 3}, {3, 4, 3}, {3, 3, 4}, {3, 4, 4}};
    // Rows above the map are left out; columns past the antimeridian stay unwrapped.
    QTest::newRow("top left corner of the world")
        << QPointF(0.0, 0.0) << 1.0 << QSizeF(100, 100) << 1 << QList<TileId>{{1, -1, 0}, {1, 0, 0}};
}

void TileMathTest::tilesOfACamera()
{
    QFETCH(QPointF, centre);
    QFETCH(double, zoom);
    QFETCH(QSizeF, size);
    QFETCH(int, level);
    QFETCH(QList<TileId>, expected);

    QList<TileId> tiles = TileMath::visibleTiles(centre, zoom, 0, size, level);
    const auto order = [](const TileId &a, const TileId &b) {
        return std::tie(a.y, a.x) < std::tie(b.y, b.x);
    };
    std::sort(tiles.begin(), tiles.end(), order);
    std::sort(expected.begin(), expected.end(), order);
    QCOMPARE(tiles, expected);
}

void TileMathTest::turnedViewTouchesMoreTiles()
{
    // A wide, low view turned by 90 degrees is tall: it reaches rows it didn't reach unturned.
    const QPointF centre(0.5 + 0.5 / 1024, 0.5 + 0.5 / 1024); // the middle of tile (10, 512, 512)
    const QSizeF size(256 * 5, 256);
    const QList<TileId> flat = TileMath::visibleTiles(centre, 10, 0, size, 10);
    const QList<TileId> turned = TileMath::visibleTiles(centre, 10, 90, size, 10);
    QCOMPARE(flat.size(), 5);
    QCOMPARE(turned.size(), 5);
    for (const TileId &tile : flat)
        QCOMPARE(tile.y, 512);
    for (const TileId &tile : turned)
        QCOMPARE(tile.x, 512);
    // Nearest first: the tile under the centre leads.
    QCOMPARE(flat.first(), (TileId{10, 512, 512}));
}

void TileMathTest::ancestorsCoverTheirDescendants_data()
{
    QTest::addColumn<TileId>("tile");
    QTest::addColumn<int>("up");
    QTest::addColumn<TileId>("ancestor");
    QTest::addColumn<QRectF>("part");

    QTest::newRow("one up, bottom right")
        << TileId{3, 5, 7} << 1 << TileId{2, 2, 3} << QRectF(128, 128, 128, 128);
    QTest::newRow("two up") << TileId{4, 9, 2} << 2 << TileId{2, 2, 0} << QRectF(64, 128, 64, 64);
    QTest::newRow("unwrapped column west")
        << TileId{2, -1, 1} << 1 << TileId{1, -1, 0} << QRectF(128, 128, 128, 128);
    QTest::newRow("beyond the top") << TileId{1, 1, 1} << 5 << TileId{0, 0, 0} << QRectF(128, 128, 128, 128);
}

void TileMathTest::ancestorsCoverTheirDescendants()
{
    QFETCH(TileId, tile);
    QFETCH(int, up);
    QFETCH(TileId, ancestor);
    QFETCH(QRectF, part);

    QCOMPARE(TileMath::ancestor(tile, up), ancestor);
    QCOMPARE(TileMath::ancestorSourceRect(tile, up), part);
}

void TileMathTest::tileAddresses_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<TileId>("tile");
    QTest::addColumn<bool>("highDensity");
    QTest::addColumn<QString>("url");

    QTest::newRow("xyz") << u"https://t.example/{z}/{x}/{y}.png"_qs << TileId{5, 3, 9} << false
                         << u"https://t.example/5/3/9.png"_qs;
    QTest::newRow("row before column") << u"https://i.example/tile/{z}/{y}/{x}"_qs << TileId{5, 3, 9} << false
                                       << u"https://i.example/tile/5/9/3"_qs;
    QTest::newRow("dense tiles") << u"http://h/{z}/{x}/{y}{r}.png"_qs << TileId{1, 0, 1} << true
                                 << u"http://h/1/0/1@2x.png"_qs;
    QTest::newRow("ordinary tiles of a dense source")
        << u"http://h/{z}/{x}/{y}{r}.png"_qs << TileId{1, 0, 1} << false << u"http://h/1/0/1.png"_qs;
    QTest::newRow("wrapped column, subdomain")
        << u"http://{s}.h/{z}/{x}/{y}"_qs << TileId{2, -1, 2} << false << u"http://c.h/2/3/2"_qs;
}

void TileMathTest::tileAddresses()
{
    QFETCH(QString, pattern);
    QFETCH(TileId, tile);
    QFETCH(bool, highDensity);
    QFETCH(QString, url);

    QCOMPARE(TileMath::tileUrl(pattern, tile, highDensity), url);
}

void TileMathTest::columnsWrapAroundTheWorld_data()
{
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("z");
    QTest::addColumn<int>("wrapped");

    QTest::newRow("inside") << 3 << 2 << 3;
    QTest::newRow("one past the east") << 4 << 2 << 0;
    QTest::newRow("one past the west") << -1 << 2 << 3;
    QTest::newRow("far west") << -9 << 3 << 7;
    QTest::newRow("level 0") << 5 << 0 << 0;
}

void TileMathTest::columnsWrapAroundTheWorld()
{
    QFETCH(int, x);
    QFETCH(int, z);
    QFETCH(int, wrapped);
    QCOMPARE(TileMath::wrapX(x, z), wrapped);
}

QTEST_GUILESS_MAIN(TileMathTest)
#include "TileMathTest.moc"
