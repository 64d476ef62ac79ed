// What one refresh of the feed costs the client, from the request to the sorted list, with a 2,000-aircraft
// answer on loopback. The answer is taken once from the sky simulator and then served as fixed bytes, so
// the server's work is only the copy onto the socket:
//   Fetch/servedAnswer   - ADSB::fetch against the fixed answer, until it reports;
//   Fetch/liveSimulator  - the same against the simulator itself, which builds the answer every time;
//   Decode               - APIResponse::decode of the same bytes;
//   FilterAndSort        - ADSB::filteredAndSorted of the decoded rows.
// The share of a fetch spent decoding is (Decode + FilterAndSort) / Fetch/servedAnswer.
// Meaningful only in a Release build.
#include "../tests/support/LoopbackHttpServer.h"
#include "BenchHome.h"
#include "ADSB.h"
#include "APIResponse.h"
#include "FeedFetch.h"
#include "SkySimulator.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

constexpr int aircraftCount = 2000;
const HomeLocation home(47.449, -122.309, u"Sea-Tac"_qs);
// Wider than the simulator's spread, so every aircraft of the area is in the answer.
constexpr double radiusNM = 60;

SkySimulator *simulator = nullptr;
LoopbackHttpServer *fixedServer = nullptr;
QByteArray fixedAnswer;

SkySimOptions simulatorOptions()
{
    SkySimOptions options;
    options.port = 0;
    options.count = aircraftCount;
    options.centre = GeoPoint{home.latitude, home.longitude};
    options.frozen = true;
    options.startEpochMs = 1718445600000;
    return options;
}

// One fetch through the process-wide client, as the app makes it; the number of aircraft it gave back.
qsizetype fetchOnce()
{
    FeedFetch *task = ADSB::fetch(home, radiusNM);
    QEventLoop loop;
    qsizetype count = -1;
    QObject::connect(task, &FeedFetch::succeeded, &loop, [&](const ADSB::FetchResult &result) {
        count = result.aircraft.size();
        loop.quit();
    });
    QObject::connect(task, &FeedFetch::failed, &loop, [&](const ADSB::FetchError &error) {
        qWarning("fetch failed: %s", qPrintable(error.description()));
        loop.quit();
    });
    loop.exec();
    return count;
}

void runFetches(benchmark::State &state, const QString &baseUrl)
{
    qputenv("AEROLUME_PRIMARY_FEED_URL", baseUrl.toUtf8());
    qputenv("AEROLUME_FALLBACK_FEED_URL", baseUrl.toUtf8());
    qsizetype count = fetchOnce(); // the first connection and the client's own setup are not a refresh
    for (auto _ : state) {
        count = fetchOnce();
        if (count < 0) {
            state.SkipWithError("fetch failed");
            return;
        }
    }
    state.counters["aircraft"] = double(count);
}

void servedAnswer(benchmark::State &state)
{
    runFetches(state, fixedServer->baseUrl());
}

void liveSimulator(benchmark::State &state)
{
    runFetches(state, simulator->baseUrl());
}

void decode(benchmark::State &state)
{
    qsizetype rows = 0;
    for (auto _ : state) {
        const auto decoded = APIResponse::decode(fixedAnswer);
        rows = decoded.value().list().size();
        benchmark::DoNotOptimize(rows);
    }
    state.counters["rows"] = double(rows);
    state.SetBytesProcessed(state.iterations() * fixedAnswer.size());
}

void filterAndSort(benchmark::State &state)
{
    const QList<Aircraft> rows = APIResponse::decode(fixedAnswer).value().list();
    qsizetype kept = 0;
    for (auto _ : state) {
        const QList<Aircraft> sorted = ADSB::filteredAndSorted(rows);
        kept = sorted.size();
        benchmark::DoNotOptimize(kept);
    }
    state.counters["kept"] = double(kept);
}

} // namespace

BENCHMARK(servedAnswer)
    ->Name("Fetch/servedAnswer")
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(10)
    ->ReportAggregatesOnly();
BENCHMARK(liveSimulator)
    ->Name("Fetch/liveSimulator")
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(10)
    ->ReportAggregatesOnly();
BENCHMARK(decode)->Name("Decode")->Unit(benchmark::kMillisecond)->Repetitions(10)->ReportAggregatesOnly();
BENCHMARK(filterAndSort)
    ->Name("FilterAndSort")
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(10)
    ->ReportAggregatesOnly();

int main(int argc, char **argv)
{
    // Nothing may touch the real home: every XDG directory is a fresh temporary one.
    QTemporaryDir scratch;
    if (!scratch.isValid())
        return 1;
    BenchHome::isolate(scratch);
    QCoreApplication app(argc, argv);

    SkySimulator sky(simulatorOptions());
    if (!sky.listen(0))
        qFatal("simulator cannot listen: %s", qPrintable(sky.errorString()));
    simulator = &sky;
    fixedAnswer = BenchHome::getOnce(sky.baseUrl() + u"/v2/point/47.44900/-122.30900/60"_qs);

    LoopbackHttpServer server;
    server.route("/v2/point/", [](const LoopbackHttpServer::Request &) {
        LoopbackHttpServer::Response response;
        response.body = fixedAnswer;
        return response;
    });
    fixedServer = &server;
    std::printf("answer: %lld bytes\n", static_cast<long long>(fixedAnswer.size()));

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
