#include "SkySimCommandLine.h"

#include "ControlModule.h"
#include "SimulatedSky.h"
#include "SkySimulator.h"
#include "UpdateOffer.h"

#include <QCommandLineParser>
#include <cmath>

namespace {

std::optional<double> number(const QString &text)
{
    bool ok = false;
    const double value = text.toDouble(&ok); // always a point as decimal mark
    if (!ok || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<qint64> wholeNumber(const QString &text, qint64 low, qint64 high)
{
    bool ok = false;
    const qint64 value = text.toLongLong(&ok);
    if (!ok || value < low || value > high)
        return std::nullopt;
    return value;
}

} // namespace

SkySimCommandLine::Result SkySimCommandLine::parse(const QStringList &arguments)
{
    Result result;
    SkySimOptions &options = result.options;
    auto fail = [&result](const QString &message) {
        result.outcome = Outcome::Error;
        result.error = message;
        return result;
    };

    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    const QCommandLineOption help({u"h"_qs, u"help"_qs}, u"Show this help."_qs);
    const QCommandLineOption port(u"port"_qs, QString(), u"N"_qs);
    const QCommandLineOption seed(u"seed"_qs, QString(), u"N"_qs);
    const QCommandLineOption count(u"count"_qs, QString(), u"N"_qs);
    const QCommandLineOption spread(u"spread"_qs, QString(), u"NM"_qs);
    const QCommandLineOption lat(u"lat"_qs, QString(), u"X"_qs);
    const QCommandLineOption lon(u"lon"_qs, QString(), u"Y"_qs);
    const QCommandLineOption frozen(u"frozen"_qs, QString());
    const QCommandLineOption epoch(u"epoch"_qs, QString(), u"MS"_qs);
    const QCommandLineOption primaryListKey(u"primary-list-key"_qs, QString(), u"KEY"_qs);
    const QCommandLineOption fallbackListKey(u"fallback-list-key"_qs, QString(), u"KEY"_qs);
    const QCommandLineOption primaryFault(u"primary-fault"_qs, QString(), u"KIND"_qs);
    const QCommandLineOption fallbackFault(u"fallback-fault"_qs, QString(), u"KIND"_qs);
    const QCommandLineOption fault(u"fault"_qs, QString(), u"SOURCE=KIND"_qs);
    const QCommandLineOption updateVersion(u"update-version"_qs, QString(), u"V"_qs);
    const QCommandLineOption selfTest(u"self-test"_qs, QString());
    const QCommandLineOption log(u"log"_qs, QString());
    parser.addOptions({help, port, seed, count, spread, lat, lon, frozen, epoch, primaryListKey,
                       fallbackListKey, primaryFault, fallbackFault, fault, updateVersion, selfTest, log});
    if (!parser.parse(arguments))
        return fail(parser.errorText());
    if (!parser.positionalArguments().isEmpty())
        return fail(u"unexpected argument: "_qs + parser.positionalArguments().constFirst());
    if (parser.isSet(help)) {
        result.outcome = Outcome::Help;
        return result;
    }

    if (parser.isSet(port)) {
        const auto value = wholeNumber(parser.value(port), 0, 65535);
        if (!value)
            return fail(u"--port wants a number from 0 to 65535"_qs);
        options.port = quint16(*value);
    }
    if (parser.isSet(seed)) {
        const auto value = wholeNumber(parser.value(seed), 0, 0xFFFFFFFFLL);
        if (!value)
            return fail(u"--seed wants a whole number from 0 to 4294967295"_qs);
        options.seed = quint64(*value);
    }
    if (parser.isSet(count)) {
        const auto value = wholeNumber(parser.value(count), 0, SimulatedSky::maxCount);
        if (!value)
            return fail(u"--count wants a number from 0 to %1"_qs.arg(SimulatedSky::maxCount));
        options.count = int(*value);
    }
    if (parser.isSet(spread)) {
        const auto value = number(parser.value(spread));
        if (!value || *value < 1.0 || *value > 1000.0)
            return fail(u"--spread wants nautical miles from 1 to 1000"_qs);
        options.spreadNM = *value;
    }
    if (parser.isSet(lat) != parser.isSet(lon))
        return fail(u"--lat and --lon go together"_qs);
    if (parser.isSet(lat)) {
        const auto latitude = number(parser.value(lat));
        const auto longitude = number(parser.value(lon));
        if (!latitude || *latitude < -90.0 || *latitude > 90.0)
            return fail(u"--lat wants degrees from -90 to 90"_qs);
        if (!longitude || *longitude < -180.0 || *longitude > 180.0)
            return fail(u"--lon wants degrees from -180 to 180"_qs);
        options.centre = GeoPoint{*latitude, *longitude};
    }
    options.frozen = parser.isSet(frozen);
    if (parser.isSet(epoch)) {
        const auto value = wholeNumber(parser.value(epoch), 0, 253402300799999LL);
        if (!value)
            return fail(u"--epoch wants milliseconds since 1970"_qs);
        options.startEpochMs = *value;
    }
    for (const auto &[option, key] : {std::pair{&primaryListKey, &options.primaryListKey},
                                      std::pair{&fallbackListKey, &options.fallbackListKey}}) {
        if (parser.isSet(*option)) {
            *key = parser.value(*option);
            if (key->isEmpty())
                return fail(u"--%1 wants a key"_qs.arg(option->names().constFirst()));
        }
    }
    for (const auto &[option, fault] : {std::pair{&primaryFault, &options.primaryFault},
                                        std::pair{&fallbackFault, &options.fallbackFault}}) {
        if (parser.isSet(*option)) {
            const auto parsed = FaultPlan::parse(parser.value(*option));
            if (!parsed)
                return fail(u"--%1: unknown fault \"%2\""_qs.arg(option->names().constFirst(),
                                                                 parser.value(*option)));
            *fault = *parsed;
        }
    }
    for (const QString &value : parser.values(fault)) {
        const QString source = value.section(u'=', 0, 0);
        const auto parsed = FaultPlan::parse(value.section(u'=', 1));
        if (!value.contains(u'=') || !SkySimulator::sourceNames().contains(source))
            return fail(u"--fault wants SOURCE=KIND with SOURCE one of %1"_qs.arg(
                SkySimulator::sourceNames().join(u", ")));
        if (!parsed)
            return fail(u"--fault: unknown fault \"%1\""_qs.arg(value.section(u'=', 1)));
        options.faults.append({source, *parsed});
    }
    if (parser.isSet(updateVersion)) {
        options.updateVersion = parser.value(updateVersion);
        if (!UpdateOffer::isVersion(options.updateVersion))
            return fail(u"--update-version wants one to four whole numbers joined by dots, e.g. 0.2.0"_qs);
    }
    options.selfTest = parser.isSet(selfTest);
    options.logRequests = parser.isSet(log);
    return result;
}

QString SkySimCommandLine::helpText()
{
    return u"Usage: aerolume-skysim [options]\n"
           "\n"
           "A simulated sky served on 127.0.0.1 in the answer shapes of the services Aerolume uses: the two\n"
           "ADS-B feed networks, routes, photos, tower-feed audio, map tiles, address search and the update\n"
           "feed, with faults to order, for testing and demonstrating Aerolume without the internet.\n"
           "\n"
           "Services (one base address, different paths):\n"
           "  primary   GET /v2/point/LAT/LON/NM                 rows under \"ac\"\n"
           "  fallback  GET /api/v2/lat/LAT/lon/LON/dist/NM      rows under \"aircraft\"\n"
           "  route     GET /v0/callsign/CALLSIGN                airline flights now in the sky; others 404\n"
           "  photo     GET /pub/photos/hex/HEX                  most aircraft now in the sky; pictures at\n"
           "                                                     /photos/img/HEX.png\n"
           "  stream    GET /hlisten.php?mount=NAME              a feed's page\n"
           "            GET /NAME.pls                            its playlist; variants NAME-latin1.pls,\n"
           "                                                     -lowercase, -blank, -indented, -nested, "
           "-lf,\n"
           "                                                     NAME.PLS; other names an HTML 404 page\n"
           "            GET /NAME                                live WAV audio at its real pace, endless\n"
           "                                                     (KPDX_TWR, KPDX_APP, KSEA_TWR, KSEA_GND)\n"
           "            GET /silent                              accepts and never answers, not even a head\n"
           "            GET /dead                                404, a mount that is off the air\n"
           "  tiles     GET /tiles/standard/Z/X/Y.png            256 x 256 PNG, cacheable for 7 days\n"
           "            GET /tiles/imagery/Z/Y/X                 (row before column, as Esri's)\n"
           "            GET /tiles/labels/Z/Y/X                  transparent labels\n"
           "  geocoder  GET /search?q=TEXT&format=jsonv2&addressdetails=1&limit=N\n"
           "            GET /reverse?lat=X&lon=Y&format=jsonv2   about thirty real places, nearest within "
           "300 km\n"
           "  update    GET /appcast.xml                         RSS with the sparkle: namespace; newer, same,\n"
           "                                                     malformed or slow by POST /control/update?mode=\n"
           "\n"
           "Options:\n"
           "  --port N                 port to listen on (default 8787; 0 = any free port)\n"
           "  --seed N                 seed of the sky; the same seed gives the same traffic (default 1)\n"
           "  --count N                aircraft per area, 0-5000 (default 60)\n"
           "  --spread NM              radius of an area in nautical miles (default 50)\n"
           "  --lat X --lon Y          centre the sky here (default: on the first point asked about;\n"
           "                           a point farther than the spread from every area gets an area of its "
           "own)\n"
           "  --frozen                 stop the clock (move it with POST /control/clock?advance=SECONDS)\n"
           "  --epoch MS               simulated start time, milliseconds since 1970 (default: now)\n"
           "  --primary-list-key KEY   list key of primary answers (default ac)\n"
           "  --fallback-list-key KEY  list key of fallback answers (default aircraft)\n"
           "  --primary-fault KIND     make the primary feed misbehave (see Faults)\n"
           "  --fallback-fault KIND    make the fallback feed misbehave\n"
           "  --fault SOURCE=KIND      make any source misbehave from the start; may be repeated. SOURCE:\n"
           "                           primary, fallback, route, photo, stream, tiles, geocoder, update\n"
           "  --update-version V       the version the update feed offers (default 0.1.0: nothing newer\n"
           "                           than the first release)\n"
           "  --log                    one line on standard error for each request\n"
           "  --self-test              serve on a free port, ask every service once, check the answers\n"
           "                           (the feeds decode and have rows, and so on), print the result and\n"
           "                           exit 0 or 1\n"
           "  -h, --help               show this help\n"
           "\n"
           "Faults (KIND):\n"
           "  none          answer normally\n"
           "  status:CODE   that HTTP status with an empty body (e.g. status:503, status:204, status:304)\n"
           "  empty         200 with an empty body\n"
           "  malformed     an answer that parses but is wrong: a feed row lacking \"hex\"; a route whose\n"
           "                \"iata_code\" is a number; \"photos\" as an object, a picture that is no image;\n"
           "                a playlist without File1, an HTML page for audio; a tile that is HTML; search\n"
           "                results without \"lat\"; an appcast without its namespace declared\n"
           "  badjson       a good answer cut off in the middle (audio: after half a second)\n"
           "  delay:MS      a good answer after MS milliseconds\n"
           "  drop          close the connection without answering\n"
           "\n"
           "On start it prints the environment that points Aerolume at it, then\n"
           "\"# aerolume-skysim listening on 127.0.0.1:PORT\". AEROLUME_TOWERFEEDS_DOMAIN is set to the "
           "real\n"
           "directory's domain, which 127.0.0.1 never ends with: the plain-http stream addresses of the\n"
           "simulator's playlists are then never upgraded to https, which it doesn't speak.\n"
           "\n"_qs +
           ControlModule::usage();
}
