#include "MapViewport.h"
#include "CameraOperations.h"
#include "MapAnnotation.h"
#include "TileMath.h"

#include <QSignalSpy>
#include <QTest>
#include <cmath>

namespace {

// Great-circle distance in metres, for checking what a view spans on the ground.
double groundMetres(const QVariantMap &a, const QVariantMap &b)
{
    constexpr double toRadians = M_PI / 180.0;
    const double lat1 = a.value(u"latitude"_qs).toDouble() * toRadians;
    const double lat2 = b.value(u"latitude"_qs).toDouble() * toRadians;
    const double dLat = lat2 - lat1;
    const double dLon =
        (b.value(u"longitude"_qs).toDouble() - a.value(u"longitude"_qs).toDouble()) * toRadians;
    const double h = std::sin(dLat / 2) * std::sin(dLat / 2) +
                     std::cos(lat1) * std::cos(lat2) * std::sin(dLon / 2) * std::sin(dLon / 2);
    return 2 * 6371008.8 * std::asin(std::sqrt(h));
}

void sized(MapViewport &viewport, double width, double height)
{
    viewport.setWidth(width);
    viewport.setHeight(height);
}

} // namespace

class MapViewportTest : public QObject
{
    Q_OBJECT

private slots:
    void shorterSideSpansFourTenthsOfTheDistance_data();
    void shorterSideSpansFourTenthsOfTheDistance();
    void distanceAskedBeforeTheViewHasASizeIsKept();
    void gesturesKeepTheGroundUnderThePointer_data();
    void gesturesKeepTheGroundUnderThePointer();
    void animatedMoveReportsAllAlongAndLandsOnTarget();
    void unanimatedMoveIsImmediate();
    void flingGoesOnAfterReleaseAndStops();
    void annotationFollowsTheCamera();
    void annotationGlidesOnlyWhenAsked();
};

void MapViewportTest::shorterSideSpansFourTenthsOfTheDistance_data()
{
    QTest::addColumn<double>("width");
    QTest::addColumn<double>("height");
    QTest::addColumn<double>("distance");

    QTest::newRow("wide, the ring of 25 nm")
        << 1200.0 << 800.0 << 25 * CameraOperations::metresPerNauticalMile * 5;
    QTest::newRow("tall") << 400.0 << 900.0 << 40000.0;
    QTest::newRow("square, close") << 600.0 << 600.0 << 8000.0;
}

void MapViewportTest::shorterSideSpansFourTenthsOfTheDistance()
{
    QFETCH(double, width);
    QFETCH(double, height);
    QFETCH(double, distance);

    MapViewport viewport;
    sized(viewport, width, height);
    viewport.setCamera(45.5, -122.6, distance, 0, 0);
    QVERIFY(std::abs(viewport.distance() - distance) < 1e-6 * distance);
    QVERIFY(std::abs(viewport.latitude() - 45.5) < 1e-9);
    // Across the middle of the shorter side, edge to edge.
    const bool wide = width >= height;
    const QVariantMap from =
        wide ? viewport.pointToCoordinate(width / 2, 0) : viewport.pointToCoordinate(0, height / 2);
    const QVariantMap to =
        wide ? viewport.pointToCoordinate(width / 2, height) : viewport.pointToCoordinate(width, height / 2);
    const double spanned = groundMetres(from, to);
    // Mercator's scale changes a little across the view; within half a percent at these sizes.
    QVERIFY2(std::abs(spanned - 0.4 * distance) < 0.005 * distance, qPrintable(QString::number(spanned)));
}

void MapViewportTest::distanceAskedBeforeTheViewHasASizeIsKept()
{
    MapViewport viewport;
    viewport.setCamera(10, 20, 100000, 0, 0, 500);
    QCOMPARE(viewport.distance(), 100000.0);
    sized(viewport, 800, 600);
    QVERIFY(std::abs(viewport.distance() - 100000) < 1e-3);
    QVERIFY(std::abs(viewport.longitude() - 20) < 1e-9);
}

void MapViewportTest::gesturesKeepTheGroundUnderThePointer_data()
{
    QTest::addColumn<QString>("gesture");
    QTest::addColumn<double>("amount");
    QTest::addColumn<QPointF>("pointer");
    QTest::addColumn<double>("heading");

    QTest::newRow("zoom in about a corner") << u"zoom"_qs << 2.0 << QPointF(100, 80) << 0.0;
    QTest::newRow("zoom out about the other") << u"zoom"_qs << 0.37 << QPointF(700, 500) << 0.0;
    QTest::newRow("zoom on a turned map") << u"zoom"_qs << 1.6 << QPointF(150, 420) << 33.0;
    QTest::newRow("turn about a point") << u"turn"_qs << 40.0 << QPointF(600, 120) << 0.0;
    QTest::newRow("turn past north") << u"turn"_qs << -75.0 << QPointF(200, 300) << 20.0;
}

void MapViewportTest::gesturesKeepTheGroundUnderThePointer()
{
    QFETCH(QString, gesture);
    QFETCH(double, amount);
    QFETCH(QPointF, pointer);
    QFETCH(double, heading);

    MapViewport viewport;
    sized(viewport, 800, 600);
    viewport.setCamera(45.5, -122.6, 200000, heading, 0);
    const QVariantMap before = viewport.pointToCoordinate(pointer.x(), pointer.y());
    const double distance = viewport.distance();
    QSignalSpy reports(&viewport, &MapViewport::cameraChanged);
    if (gesture == u"zoom")
        viewport.zoomAbout(amount, pointer.x(), pointer.y());
    else
        viewport.rotateAbout(amount, pointer.x(), pointer.y());
    QCOMPARE(reports.size(), 1);
    const QPointF after = viewport.coordinateToPoint(before.value(u"latitude"_qs).toDouble(),
                                                     before.value(u"longitude"_qs).toDouble());
    QVERIFY2(QLineF(after, pointer).length() < 1e-6, qPrintable(u"%1,%2"_qs.arg(after.x()).arg(after.y())));
    if (gesture == u"zoom") {
        // Distance scales with the zoom, give or take the latitude of the new centre.
        QVERIFY(std::abs(viewport.distance() * amount / distance - 1) < 0.02);
        QCOMPARE(viewport.heading(), heading);
    } else {
        const double expected = std::fmod(std::fmod(heading - amount, 360) + 360, 360);
        QVERIFY(std::abs(viewport.heading() - expected) < 1e-9);
    }
}

void MapViewportTest::animatedMoveReportsAllAlongAndLandsOnTarget()
{
    MapViewport viewport;
    sized(viewport, 800, 600);
    viewport.setCamera(45.5, -122.6, 400000, 90, 0);
    QSignalSpy reports(&viewport, &MapViewport::cameraChanged);
    QSignalSpy animating(&viewport, &MapViewport::animatingChanged);
    viewport.setCamera(46.0, -121.0, 100000, 0, 0, 200, QEasingCurve::InOutQuad);
    QVERIFY(viewport.isAnimating());
    QVERIFY(QTest::qWaitFor([&] { return !viewport.isAnimating(); }, 5000));
    // More than a start and an end: a view following the distance sees the whole way.
    QVERIFY2(reports.size() >= 3, qPrintable(QString::number(reports.size())));
    QVERIFY(std::abs(viewport.latitude() - 46.0) < 1e-9);
    QVERIFY(std::abs(viewport.longitude() + 121.0) < 1e-9);
    QVERIFY(std::abs(viewport.distance() - 100000) < 1);
    QCOMPARE(viewport.heading(), 0.0);
    QVERIFY(animating.size() >= 2);
}

void MapViewportTest::unanimatedMoveIsImmediate()
{
    MapViewport viewport;
    sized(viewport, 800, 600);
    QSignalSpy reports(&viewport, &MapViewport::cameraChanged);
    viewport.setCamera(-33.87, 151.21, 50000, 270, 10, 0);
    QCOMPARE(reports.size(), 1);
    QVERIFY(!viewport.isAnimating());
    QVERIFY(std::abs(viewport.distance() - 50000) < 1e-3);
    QCOMPARE(viewport.heading(), 270.0);
    QCOMPARE(viewport.pitch(), 10.0);
}

void MapViewportTest::flingGoesOnAfterReleaseAndStops()
{
    MapViewport viewport;
    sized(viewport, 800, 600);
    viewport.setCamera(45.5, -122.6, 100000, 0, 0);
    const QPointF start = viewport.coordinateToPoint(45.5, -122.6);
    viewport.fling(1000, 0);
    QVERIFY(viewport.isAnimating());
    QVERIFY(QTest::qWaitFor([&] { return !viewport.isAnimating(); }, 5000));
    // The content moved on to the right by the release speed times 0.3 s.
    const QPointF end = viewport.coordinateToPoint(45.5, -122.6);
    QVERIFY2(std::abs(end.x() - start.x() - 300) < 1 && std::abs(end.y() - start.y()) < 1e-6,
             qPrintable(QString::number(end.x() - start.x())));
    // A slow release is no fling; a new gesture stops one under way.
    viewport.fling(10, 0);
    QVERIFY(!viewport.isAnimating());
    viewport.fling(0, 2000);
    viewport.stop();
    QVERIFY(!viewport.isAnimating());
}

void MapViewportTest::annotationFollowsTheCamera()
{
    MapViewport viewport;
    sized(viewport, 800, 600);
    viewport.setCamera(45.5, -122.6, 100000, 0, 0);
    MapAnnotation annotation;
    annotation.setSize(QSizeF(24, 24));
    annotation.setViewport(&viewport);
    annotation.setCoordinate(45.5, -122.6);
    QCOMPARE(annotation.position(), QPointF(400 - 12, 300 - 12));
    viewport.pan(50, -20);
    QCOMPARE(annotation.position(), QPointF(450 - 12, 280 - 12));
    viewport.rotateAbout(90, 400, 300);
    QVERIFY(QLineF(annotation.position(), QPointF(400 + 20 - 12, 300 + 50 - 12)).length() < 1e-6);
}

void MapViewportTest::annotationGlidesOnlyWhenAsked()
{
    MapViewport viewport;
    sized(viewport, 800, 600);
    viewport.setCamera(0, 0, 100000, 0, 0);
    MapAnnotation annotation;
    annotation.setSize(QSizeF(10, 10));
    annotation.setViewport(&viewport);
    annotation.setCoordinate(0, 0);
    const QPointF start = annotation.position();
    const QPointF east = viewport.coordinateToPoint(0, 0.1) - QPointF(5, 5);

    // Gliding: the new coordinate is reached in a straight line over 0.8 s, the glide driver's ticks
    // moving it along; here the ticks are given by hand.
    annotation.setGlide(true);
    annotation.setCoordinate(0, 0.1);
    QCOMPARE(annotation.position(), start);
    QVERIFY(annotation.isGliding());
    annotation.advanceGlide(MapAnnotation::glideMs / 4);
    QVERIFY(QLineF(annotation.position(), start + (east - start) / 4).length() < 1e-6);
    annotation.advanceGlide(MapAnnotation::glideMs / 4);
    QVERIFY(QLineF(annotation.position(), start + (east - start) / 2).length() < 1e-6);
    // A new coordinate mid-way starts a new glide from where the marker is now.
    annotation.setCoordinate(0, 0);
    const QPointF middle = annotation.position();
    annotation.advanceGlide(MapAnnotation::glideMs);
    QVERIFY(QLineF(annotation.position(), start).length() < 1e-6);
    QVERIFY(!annotation.isGliding());
    QVERIFY(QLineF(middle, start).length() > 1);

    // Not gliding (reduced motion): at once.
    annotation.setGlide(false);
    annotation.setCoordinate(0, 0.1);
    QVERIFY(QLineF(annotation.position(), east).length() < 1e-6);
    QVERIFY(!annotation.isGliding());
}

QTEST_MAIN(MapViewportTest)
#include "MapViewportTest.moc"
