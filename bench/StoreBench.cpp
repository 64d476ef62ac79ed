// The store's share of a refresh with 2,000 aircraft, and a filtered, searched read of its list.
//
// The store is driven the way the app drives it: fetchNow() starts a FeedFetch on loopback, and the store
// applies what it reports. The answers were taken from the sky simulator at 5-second steps and are served
// in turn, so every refresh moves the aircraft a little, trails grow, and the list model reorders.
//   Store/apply         - from the moment the fetch reports its list to refreshApplied: the list, the
//                         trails, the list model's difference. Our slot on succeeded is connected before
//                         the store's, so it runs first and starts the clock.
//   Store/refresh       - fetchNow() to refreshApplied: the whole refresh as the store sees it.
//   Fetch/only          - the same fetch on the same server and client, without a store: the check
//                         Store/refresh - Fetch/only ~ Store/apply.
//   Store/displayedSearchAndFilters - displayedAircraft() with the search "a" and the military and
//                         helicopter filters on.
// Meaningful only in a Release build.
#include "../tests/support/LoopbackHttpServer.h"
#include "BenchHome.h"
#include "ADSB.h"
#include "DefaultsStore.h"
#include "FeedFetch.h"
#include "FlightStore.h"
#include "SkySimulator.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <memory>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int aircraftCount = 2000;
// More answers than a trail has points, so trails fill and then slide.
constexpr int answerCount = 24;
constexpr qint64 refreshStepMs = 5000;
const HomeLocation home(47.449, -122.309, u"Sea-Tac"_qs);
constexpr double radiusNM = 60;

QTemporaryDir *scratch = nullptr;
QList<QByteArray> answers;
int storeNumber = 0;

double seconds(Clock::duration duration)
{
    return std::chrono::duration<double>(duration).count();
}

void takeAnswers()
{
    SkySimOptions options;
    options.port = 0;
    options.count = aircraftCount;
    options.centre = GeoPoint{home.latitude, home.longitude};
    options.frozen = true;
    options.startEpochMs = 1718445600000;
    SkySimulator sky(options);
    if (!sky.listen(0))
        qFatal("simulator cannot listen: %s", qPrintable(sky.errorString()));
    for (int i = 0; i < answerCount; ++i) {
        answers.append(BenchHome::getOnce(sky.baseUrl() + u"/v2/point/47.44900/-122.30900/60"_qs));
        sky.clock().advance(refreshStepMs);
    }
}

FeedFetch *startFetch(QNetworkAccessManager *network, const HomeLocation &where, double radius,
                      QObject *parent)
{
    auto *task = new FeedFetch(ADSB::sources(), where, radius, network, parent);
    QMetaObject::invokeMethod(task, &FeedFetch::start, Qt::QueuedConnection);
    return task;
}

// A store on its own settings file and client, with a home, its first refresh applied.
struct StoreRig
{
    std::unique_ptr<DefaultsStore> defaults;
    QNetworkAccessManager network;
    std::unique_ptr<FlightStore> store;
    Clock::time_point reported;
    Clock::time_point applied;
    QEventLoop *waiting = nullptr;
    qint64 nowMs = 1718445600000;

    StoreRig()
    {
        defaults = std::make_unique<DefaultsStore>(scratch->filePath(u"store-%1.conf"_qs.arg(++storeNumber)));
        auto starter = [this](const HomeLocation &where, double radius, QObject *parent) {
            FeedFetch *task = startFetch(&network, where, radius, parent);
            // Connected before the store connects its own: runs first when the list arrives.
            QObject::connect(task, &FeedFetch::succeeded, task, [this] { reported = Clock::now(); });
            QObject::connect(task, &FeedFetch::failed, task, [](const ADSB::FetchError &error) {
                qFatal("fetch failed: %s", qPrintable(error.description()));
            });
            return task;
        };
        auto now = [this] {
            nowMs += refreshStepMs;
            return QDateTime::fromMSecsSinceEpoch(nowMs);
        };
        store = std::make_unique<FlightStore>(
            FlightStore::Dependencies{defaults.get(), nullptr, starter, now, 0, true});
        QObject::connect(store.get(), &FlightStore::refreshApplied, store.get(), [this] {
            applied = Clock::now();
            if (waiting)
                waiting->quit();
        });
        store->setHomeLocation(home.latitude, home.longitude, home.label);
        waitForRefresh();
        // Trails full and sliding, as after a minute of use.
        for (int i = 0; i < answerCount; ++i)
            refresh();
    }

    void waitForRefresh()
    {
        QEventLoop loop;
        waiting = &loop;
        loop.exec();
        waiting = nullptr;
    }

    void refresh()
    {
        store->fetchNow();
        waitForRefresh();
    }
};

void apply(benchmark::State &state)
{
    StoreRig rig;
    double totalSeconds = 0;
    for (auto _ : state) {
        const auto start = Clock::now();
        rig.refresh();
        totalSeconds += seconds(rig.applied - start);
        state.SetIterationTime(seconds(rig.applied - rig.reported));
    }
    state.counters["refresh_ms"] =
        benchmark::Counter(totalSeconds * 1000, benchmark::Counter::kAvgIterations);
    state.counters["aircraft"] = double(rig.store->aircraft().size());
    state.counters["trails"] = double(rig.store->trails().size());
}

void refresh(benchmark::State &state)
{
    StoreRig rig;
    for (auto _ : state) {
        const auto start = Clock::now();
        rig.refresh();
        state.SetIterationTime(seconds(rig.applied - start));
    }
}

void fetchOnly(benchmark::State &state)
{
    QNetworkAccessManager network;
    const auto once = [&network] {
        FeedFetch *task = startFetch(&network, home, radiusNM, nullptr);
        QEventLoop loop;
        QObject::connect(task, &FeedFetch::succeeded, &loop, &QEventLoop::quit);
        QObject::connect(task, &FeedFetch::failed, &loop, [](const ADSB::FetchError &error) {
            qFatal("fetch failed: %s", qPrintable(error.description()));
        });
        loop.exec();
    };
    once();
    for (auto _ : state) {
        const auto start = Clock::now();
        once();
        state.SetIterationTime(seconds(Clock::now() - start));
    }
}

void displayedSearchAndFilters(benchmark::State &state)
{
    StoreRig rig;
    rig.store->setSearchText(u"a"_qs);
    rig.store->setActiveFilters({AircraftFilter::Military, AircraftFilter::Helicopters});
    qsizetype shown = 0;
    for (auto _ : state) {
        const QList<Aircraft> list = rig.store->displayedAircraft();
        shown = list.size();
        benchmark::DoNotOptimize(shown);
    }
    state.counters["shown"] = double(shown);
    state.counters["of"] = double(rig.store->aircraft().size());
}

} // namespace

BENCHMARK(apply)
    ->Name("Store/apply")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(10)
    ->ReportAggregatesOnly();
BENCHMARK(refresh)
    ->Name("Store/refresh")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(10)
    ->ReportAggregatesOnly();
BENCHMARK(fetchOnly)
    ->Name("Fetch/only")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(10)
    ->ReportAggregatesOnly();
BENCHMARK(displayedSearchAndFilters)
    ->Name("Store/displayedSearchAndFilters")
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(10)
    ->ReportAggregatesOnly();

int main(int argc, char **argv)
{
    // Nothing may touch the real home: every XDG directory is a fresh temporary one.
    QTemporaryDir dir;
    if (!dir.isValid())
        return 1;
    scratch = &dir;
    BenchHome::isolate(dir);
    QCoreApplication app(argc, argv);

    takeAnswers();
    LoopbackHttpServer loopback;
    loopback.route("/v2/point/", [next = 0](const LoopbackHttpServer::Request &) mutable {
        LoopbackHttpServer::Response response;
        response.body = answers.at(next++ % answers.size());
        return response;
    });
    qputenv("AEROLUME_PRIMARY_FEED_URL", loopback.baseUrl().toUtf8());
    qputenv("AEROLUME_FALLBACK_FEED_URL", loopback.baseUrl().toUtf8());
    std::printf("answers: %lld of about %lld bytes\n", static_cast<long long>(answers.size()),
                static_cast<long long>(answers.constFirst().size()));

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
