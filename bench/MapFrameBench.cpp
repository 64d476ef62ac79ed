// Frame times of the radar map while the camera pans without pause, with a few hundred and with thousands
// of aircraft and their trails, on a loopback feed and loopback tiles. Each frame is timed as the work it
// costs: moving the camera (every marker follows) plus the scene graph's frame, from the start of the
// frame (polish) to its end, with the idle wait between frames left out.
//
//   MapFrameBench [--aircraft 200,2000] [--frames 600] [--size 1280x800] [--shot PREFIX]
//
// Run it offscreen (QT_QPA_PLATFORM=offscreen: Qt Quick's software renderer) or on an X server
// (Xvfb: OpenGL through Mesa's llvmpipe); both draw on the CPU. Build in Release for real figures.
#include "../tests/map/TileServer.h"
#include "DefaultsStore.h"
#include "FlightStore.h"
#include "MapPaintedLayer.h"
#include "MapViewport.h"
#include "TileMapItem.h"
#include "WidgetReloader.h"

#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QSGRendererInterface>
#include <QTemporaryDir>
#include <QTimer>
#include <QtQml/qqmlextensionplugin.h>
#include <cmath>
#include <cstdio>
#include <random>

Q_IMPORT_QML_PLUGIN(Aerolume_MapPlugin)

namespace {

const HomeLocation home(45.5, -122.6, u"Portland"_qs);

struct Plane
{
    QString hex;
    double lat;
    double lon;
    double track;
    double speed; // degrees per refresh
    int altitude;
    int flags;
};

// Traffic spread over the 25 nm ring and a little beyond, in straight lines; a few emergencies and
// military aircraft so every marker colour is drawn.
QList<Plane> traffic(int count)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> unit(0, 1);
    QList<Plane> planes;
    for (int i = 0; i < count; ++i) {
        const double angle = unit(random) * 2 * M_PI;
        const double reach = std::sqrt(unit(random)) * 0.55;
        planes.append({QString::asprintf("b%05x", i), home.latitude + reach * std::cos(angle) * 0.7,
                       home.longitude + reach * std::sin(angle), unit(random) * 360,
                       0.004 + unit(random) * 0.006, int(unit(random) * 40000), i % 50 == 0 ? 1 : 0});
    }
    return planes;
}

QByteArray feedAnswer(const QList<Plane> &planes, int step)
{
    QJsonArray rows;
    for (const Plane &plane : planes) {
        const double radians = plane.track * M_PI / 180;
        QJsonObject row{{u"hex"_qs, plane.hex},
                        {u"lat"_qs, plane.lat + std::cos(radians) * plane.speed * step},
                        {u"lon"_qs, plane.lon + std::sin(radians) * plane.speed * step / 0.7},
                        {u"track"_qs, plane.track},
                        {u"alt_baro"_qs, plane.altitude},
                        {u"gs"_qs, 300},
                        {u"flight"_qs, u"ASA%1"_qs.arg(plane.hex.mid(3))},
                        {u"dst"_qs, 10.0}};
        if (plane.flags)
            row.insert(u"dbFlags"_qs, plane.flags);
        if (plane.hex.endsWith(u"77"))
            row.insert(u"squawk"_qs, u"7700"_qs);
        rows.append(row);
    }
    return QJsonDocument(QJsonObject{{u"ac"_qs, rows}}).toJson(QJsonDocument::Compact);
}

double percentile(QList<double> values, double fraction)
{
    std::sort(values.begin(), values.end());
    if (values.isEmpty())
        return 0;
    const qsizetype index =
        std::min<qsizetype>(values.size() - 1, qsizetype(std::ceil(fraction * values.size())) - 1);
    return values[std::max<qsizetype>(0, index)];
}

bool waitFor(const std::function<bool()> &condition, int timeoutMs)
{
    QElapsedTimer clock;
    clock.start();
    while (!condition()) {
        if (clock.elapsed() > timeoutMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return true;
}

struct Result
{
    QList<double> frame; // milliseconds: camera move plus the frame's work
    QList<double> move;
    QList<double> polish;
    QList<double> sync;
    QList<double> render;
    QList<double> repainted; // frames in which the trails were painted anew
    QList<double> retiled;   // frames in which tiles came into view or left it
};

// The item of that name under `root`, through the visual tree.
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

Result measure(int aircraft, int frames, QSize size, const QString &root, const QString &shot)
{
    TileServer tiles;
    qputenv("AEROLUME_TILE_URL_STANDARD", tiles.urlTemplate(u"standard"_qs).toUtf8());
    const QList<Plane> planes = traffic(aircraft);
    int step = 0;
    tiles.server().route("/v2/point/", [&](const LoopbackHttpServer::Request &) {
        LoopbackHttpServer::Response response;
        response.body = feedAnswer(planes, step);
        return response;
    });
    qputenv("AEROLUME_PRIMARY_FEED_URL", tiles.server().baseUrl().toUtf8());
    qputenv("AEROLUME_FALLBACK_FEED_URL", tiles.server().baseUrl().toUtf8());

    DefaultsStore defaults(root + u"/config/Aerolume.conf"_qs);
    defaults.setValue(u"homeLocation"_qs, home.encode());
    WidgetReloader reloader;
    FlightStore store(FlightStore::Dependencies{&defaults, &reloader, {}, {}, 0});
    // Twelve refreshes: every aircraft has a full trail of twelve points.
    for (step = 0; step < 12; ++step) {
        int applied = 0;
        const auto connection = QObject::connect(&store, &FlightStore::refreshApplied, [&] { ++applied; });
        store.fetchNow();
        waitFor([&] { return applied > 0; }, 10000);
        QObject::disconnect(connection);
    }

    QQuickView view;
    view.engine()->addImportPath(u"qrc:/qt/qml"_qs);
    view.setInitialProperties({{u"store"_qs, QVariant::fromValue<QObject *>(&store)},
                               {u"defaults"_qs, QVariant::fromValue<QObject *>(&defaults)}});
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.resize(size);
    view.setSource(QUrl(u"qrc:/qt/qml/Aerolume/Map/RadarMapView.qml"_qs));
    if (view.status() != QQuickView::Ready) {
        for (const auto &error : view.errors())
            std::fprintf(stderr, "%s\n", qPrintable(error.toString()));
        return {};
    }
    view.show();
    auto *map = view.rootObject()->property("map").value<QObject *>();
    auto *viewport = map->property("viewport").value<MapViewport *>();
    waitFor([&] { return map->property("tilesComplete").toBool(); }, 10000);
    waitFor([] { return false; }, 1200); // the markers' glide into place, the first tiles

    auto *trails = qobject_cast<MapPaintedLayer *>(findItem(view.rootObject(), u"trailLayer"_qs));
    int paints = trails ? trails->paintCount() : 0;
    auto *tileMap = map->property("tileMap").value<TileMapItem *>();
    QString tileSet = tileMap->drawnTileKeys();
    Result result;
    QElapsedTimer clock;
    clock.start();
    qint64 frameBegin = 0, synchronizing = 0, synchronized = 0, rendering = 0;
    double moveMs = 0;
    int done = -30; // the first frames warm the caches and aren't counted
    bool finished = false;
    QObject::connect(&view, &QQuickWindow::beforeFrameBegin, [&] { frameBegin = clock.nsecsElapsed(); });
    QObject::connect(&view, &QQuickWindow::beforeSynchronizing,
                     [&] { synchronizing = clock.nsecsElapsed(); });
    QObject::connect(&view, &QQuickWindow::afterSynchronizing, [&] { synchronized = clock.nsecsElapsed(); });
    QObject::connect(&view, &QQuickWindow::beforeRendering, [&] { rendering = clock.nsecsElapsed(); });
    const auto next = [&] {
        // A steady pan, east then back west, so the tiles come round again as they would.
        const double dx = ((done + 30) / 150) % 2 == 0 ? -4.0 : 4.0;
        const qint64 start = clock.nsecsElapsed();
        viewport->pan(dx, 1.0 * (dx > 0 ? 1 : -1));
        moveMs = (clock.nsecsElapsed() - start) / 1e6;
        view.update();
    };
    QObject::connect(&view, &QQuickWindow::afterFrameEnd, [&] {
        const qint64 end = clock.nsecsElapsed();
        if (done >= 0) {
            result.move.append(moveMs);
            result.polish.append((synchronizing - frameBegin) / 1e6);
            result.sync.append((synchronized - synchronizing) / 1e6);
            result.render.append((end - rendering) / 1e6);
            result.frame.append(moveMs + (end - frameBegin) / 1e6);
            if (trails && trails->paintCount() != paints)
                result.repainted.append(result.frame.constLast());
            else if (tileMap->drawnTileKeys() != tileSet)
                result.retiled.append(result.frame.constLast());
        }
        tileSet = tileMap->drawnTileKeys();
        paints = trails ? trails->paintCount() : 0;
        if (++done >= frames) {
            finished = true;
            return;
        }
        QTimer::singleShot(0, &view, next);
    });
    next();
    waitFor([&] { return finished; }, 600000);
    if (!shot.isEmpty())
        view.grabWindow().save(shot);
    qunsetenv("AEROLUME_TILE_URL_STANDARD");
    return result;
}

} // namespace

int main(int argc, char **argv)
{
    // Frames on the main thread, so that each frame's stages can be timed from here.
    qputenv("QSG_RENDER_LOOP", "basic");
    QGuiApplication app(argc, argv);
    QCommandLineParser parser;
    parser.addOption(
        {u"aircraft"_qs, u"Counts of aircraft, comma-separated."_qs, u"list"_qs, u"200,2000"_qs});
    parser.addOption({u"frames"_qs, u"Frames measured per count."_qs, u"n"_qs, u"600"_qs});
    parser.addOption({u"size"_qs, u"Window size."_qs, u"WxH"_qs, u"1280x800"_qs});
    parser.addOption({u"shot"_qs, u"Saves the last frame of each run as PREFIX-COUNT.png."_qs, u"prefix"_qs});
    parser.addHelpOption();
    parser.process(app);

    QTemporaryDir root;
    for (const char *name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME"})
        qputenv(name, QFile::encodeName(root.filePath(QString::fromLatin1(name).toLower())));
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + QFile::encodeName(root.filePath(u"no-bus"_qs)));

    const QStringList sizeParts = parser.value(u"size"_qs).split(u'x');
    const QSize size(sizeParts.value(0).toInt(), sizeParts.value(1).toInt());
    const int frames = parser.value(u"frames"_qs).toInt();
    std::printf("platform %s, window %dx%d, %d frames per run\n", qPrintable(QGuiApplication::platformName()),
                size.width(), size.height(), frames);
    for (const QString &count : parser.value(u"aircraft"_qs).split(u',')) {
        const QString shot =
            parser.isSet(u"shot"_qs) ? parser.value(u"shot"_qs) + u'-' + count + u".png"_qs : QString();
        const Result result = measure(count.toInt(), frames, size, root.filePath(u"run-"_qs + count), shot);
        if (result.frame.isEmpty())
            return 1;
        std::printf("%5d aircraft: frame median %6.2f ms  p95 %6.2f ms | median move %5.2f  polish %5.2f  "
                    "sync %5.2f  render %5.2f ms\n",
                    count.toInt(), percentile(result.frame, 0.5), percentile(result.frame, 0.95),
                    percentile(result.move, 0.5), percentile(result.polish, 0.5),
                    percentile(result.sync, 0.5), percentile(result.render, 0.5));
        QList<double> steady = result.frame;
        for (double value : result.repainted + result.retiled)
            steady.removeOne(value);
        std::printf("       tiles entered or left the view in %lld frames (median %.2f ms)\n",
                    qlonglong(result.retiled.size()), percentile(result.retiled, 0.5));
        std::printf(
            "       trails painted anew in %lld frames (median %.2f ms); the other frames: median %.2f ms, "
            "p95 %.2f ms\n",
            qlonglong(result.repainted.size()), percentile(result.repainted, 0.5), percentile(steady, 0.5),
            percentile(steady, 0.95));
        std::fflush(stdout);
    }
    return 0;
}
