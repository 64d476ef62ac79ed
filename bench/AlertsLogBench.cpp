// The per-refresh bookkeeping over 2,000 aircraft: the alert rules (all six on, a 50-entry watchlist, no
// notifier) and the logbook, one after the other on the same list, as the store calls them.
//   AlertsLog/steady     - the same engine and logbook every refresh: every cooldown runs and every
//                          address is already logged, the usual case after the first refresh;
//   AlertsLog/firstSight - a fresh engine and logbook each time (made outside the timing): every match
//                          fires and every address is new, the worst case;
//   Alerts/steady, Log/steady - the two halves of the steady case on their own.
// The aircraft come from the sky simulator's answer for 2,000 aircraft around the home point, decoded
// as the feed client decodes it. Meaningful only in a Release build.
#include "APIResponse.h"
#include "AlertEngine.h"
#include "BenchHome.h"
#include "DefaultsStore.h"
#include "SightingLog.h"
#include "SkySimulator.h"

#include <QCoreApplication>
#include <QStringList>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <memory>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int aircraftCount = 2000;
constexpr int watchlistLength = 50;
const HomeLocation home(47.449, -122.309, u"Sea-Tac"_qs);

QTemporaryDir *scratch = nullptr;
DefaultsStore *defaults = nullptr;
QList<Aircraft> aircraft;
int logNumber = 0;

QDateTime fixedNow()
{
    return QDateTime::fromMSecsSinceEpoch(1718445600000);
}

QByteArray simulatorAnswer()
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
    return BenchHome::getOnce(sky.baseUrl() + u"/v2/point/47.44900/-122.30900/60"_qs);
}

// Half the entries name aircraft in the list (address, callsign or registration), half name none.
QString watchlist()
{
    QStringList entries;
    for (qsizetype i = 0; entries.size() < watchlistLength / 2 && i < aircraft.size(); i += 37) {
        const Aircraft &plane = aircraft.at(i);
        if (i % 3 == 0 && plane.flight())
            entries.append(plane.flight()->trimmed());
        else if (i % 3 == 1 && plane.registration())
            entries.append(*plane.registration());
        else
            entries.append(plane.hex());
    }
    for (int i = 0; entries.size() < watchlistLength; ++i)
        entries.append(u"ZZ%1"_qs.arg(QString::number(1000 + i)));
    return entries.join(u", "_qs);
}

std::unique_ptr<SightingLog> newLog()
{
    return std::make_unique<SightingLog>(SightingLog::Dependencies{
        scratch->filePath(u"logbook-%1.json"_qs.arg(++logNumber)), &fixedNow, {}, 0});
}

double seconds(Clock::duration duration)
{
    return std::chrono::duration<double>(duration).count();
}

void steady(benchmark::State &state)
{
    AlertEngine engine(defaults, nullptr, &fixedNow);
    const auto log = newLog();
    int alerts = 0;
    QObject::connect(&engine, &AlertEngine::alerted, [&alerts] { ++alerts; });
    engine.evaluate(aircraft, home);
    log->record(aircraft);
    const int firstAlerts = alerts;
    for (auto _ : state) {
        engine.evaluate(aircraft, home);
        log->record(aircraft);
    }
    state.counters["first_alerts"] = firstAlerts;
    state.counters["later_alerts"] = alerts - firstAlerts;
    state.counters["logged"] = double(log->totalUnique());
}

void firstSight(benchmark::State &state)
{
    int alerts = 0;
    for (auto _ : state) {
        AlertEngine engine(defaults, nullptr, &fixedNow);
        const auto log = newLog();
        QObject::connect(&engine, &AlertEngine::alerted, [&alerts] { ++alerts; });
        const auto start = Clock::now();
        engine.evaluate(aircraft, home);
        log->record(aircraft);
        state.SetIterationTime(seconds(Clock::now() - start));
    }
    state.counters["alerts"] = benchmark::Counter(alerts, benchmark::Counter::kAvgIterations);
}

void alertsSteady(benchmark::State &state)
{
    AlertEngine engine(defaults, nullptr, &fixedNow);
    engine.evaluate(aircraft, home);
    for (auto _ : state)
        engine.evaluate(aircraft, home);
}

void logSteady(benchmark::State &state)
{
    const auto log = newLog();
    log->record(aircraft);
    for (auto _ : state)
        log->record(aircraft);
}

} // namespace

BENCHMARK(steady)
    ->Name("AlertsLog/steady")
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(10)
    ->ReportAggregatesOnly();
BENCHMARK(firstSight)
    ->Name("AlertsLog/firstSight")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(10)
    ->ReportAggregatesOnly();
BENCHMARK(alertsSteady)
    ->Name("Alerts/steady")
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(10)
    ->ReportAggregatesOnly();
BENCHMARK(logSteady)
    ->Name("Log/steady")
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

    const auto decoded = APIResponse::decode(simulatorAnswer());
    if (!decoded.ok())
        qFatal("answer does not decode: %s", qPrintable(decoded.error()));
    aircraft = decoded.value().list();

    DefaultsStore settings(dir.filePath(u"Aerolume.conf"_qs));
    for (const QString &key : {u"alertsEnabled"_qs, u"alertFlyover"_qs, u"alertMilitary"_qs,
                               u"alertHelicopters"_qs, u"alertLowAltitude"_qs})
        settings.setValue(key, true);
    settings.setValue(u"alertWatchlist"_qs, watchlist());
    defaults = &settings;
    std::printf("aircraft: %lld\n", static_cast<long long>(aircraft.size()));

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
