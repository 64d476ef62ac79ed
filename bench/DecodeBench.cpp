// How fast a whole feed answer becomes records. Three readings of the same 2,000-row answer:
//   FeedDecoder      - ours, building Aircraft records with all the type rules;
//   QJsonDocument    - the obvious Qt way, building equivalent plain records with the same checks;
//   simdjsonWalk     - simdjson On-Demand touching every key and value and building nothing: the floor.
#include "APIResponse.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <benchmark/benchmark.h>
#include <simdjson.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

namespace {

constexpr int rowCount = 2000;

// splitmix64: the same answer on every machine and standard library, unlike std::uniform_*.
class Random
{
public:
    explicit Random(quint64 seed) : m_state(seed) {}

    quint64 next()
    {
        quint64 z = (m_state += 0x9e3779b97f4a7c15ULL);
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ULL;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebULL;
        return z ^ (z >> 31);
    }
    int below(int bound) { return int(next() % quint64(bound)); }
    double between(double low, double high) { return low + (high - low) * double(next() >> 11) * 0x1.0p-53; }
    bool chance(double probability) { return between(0, 1) < probability; }
    template <typename T, std::size_t N> const T &pick(const std::array<T, N> &items)
    {
        return items[std::size_t(below(int(N)))];
    }

private:
    quint64 m_state;
};

struct TypeEntry
{
    const char *code;
    const char *description;
    const char *category;
};

constexpr std::array<TypeEntry, 10> types{{
    {"B738", "BOEING 737-800", "A3"},
    {"A320", "AIRBUS A-320", "A3"},
    {"A21N", "AIRBUS A-321neo", "A3"},
    {"E75L", "EMBRAER ERJ-170-200 (long wing)", "A3"},
    {"B77W", "BOEING 777-300ER", "A5"},
    {"B789", "BOEING 787-9 Dreamliner", "A5"},
    {"DH8D", "DE HAVILLAND CANADA DHC-8-400 Dash 8", "A2"},
    {"C172", "CESSNA 172 Skyhawk", "A1"},
    {"EC35", "EUROCOPTER EC-135", "A7"},
    {"C17", "BOEING C-17 Globemaster 3", "A5"},
}};

constexpr std::array<const char *, 8> operators{
    "ALASKA AIRLINES INC",  "DELTA AIR LINES INC",     "Deutsche Lufthansa AG", "SOCIÉTÉ AIR FRANCE",
    "WELLS FARGO TRUST CO", "UNITED STATES AIR FORCE", "SKYWEST AIRLINES INC",  "Private \"Owner\" LLC"};
constexpr std::array<const char *, 8> airlines{"ASA", "DAL", "DLH", "AFR", "UAL", "SKW", "RCH", "N"};
constexpr std::array<const char *, 6> sources{"adsb_icao", "adsb_icao", "adsb_icao",
                                              "mlat",      "adsr_icao", "tisb_icao"};
constexpr std::array<const char *, 5> navModes{"autopilot", "vnav", "althold", "lnav", "tcas"};

class RowWriter
{
public:
    explicit RowWriter(std::string &out) : m_out(out) {}

    void key(const char *name)
    {
        m_out += m_first ? "{\"" : ",\"";
        m_first = false;
        m_out += name;
        m_out += "\":";
    }
    void text(const char *name, const std::string &value)
    {
        key(name);
        m_out += '"';
        for (char c : value) {
            if (c == '"' || c == '\\')
                m_out += '\\';
            m_out += c;
        }
        m_out += '"';
    }
    void raw(const char *name, const std::string &token)
    {
        key(name);
        m_out += token;
    }
    void number(const char *name, double value, int decimals)
    {
        char buffer[48];
        std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value);
        raw(name, buffer);
    }
    void integer(const char *name, long long value) { raw(name, std::to_string(value)); }
    void close() { m_out += m_first ? "{}" : "}"; }

private:
    std::string &m_out;
    bool m_first = true;
};

void appendRow(std::string &out, Random &random)
{
    RowWriter row(out);
    const bool fake = random.chance(0.03);
    char hex[16];
    std::snprintf(hex, sizeof hex, "%s%06x", fake ? "~" : "", unsigned(random.next() & 0xffffff));
    row.text("hex", hex);
    row.text("type", random.pick(sources));

    const bool onGround = random.chance(0.06);
    const TypeEntry &type = random.pick(types);
    if (random.chance(0.9)) {
        char flight[16];
        std::snprintf(flight, sizeof flight, "%-8s",
                      (random.pick(airlines) + std::to_string(random.below(9000) + 10)).c_str());
        row.text("flight", flight);
    }
    if (random.chance(0.85)) {
        char registration[16];
        std::snprintf(registration, sizeof registration, "N%dAS", 100 + random.below(900));
        row.text("r", registration);
        row.text("t", type.code);
        row.text("desc", type.description);
        if (random.chance(0.8))
            row.text("ownOp", random.pick(operators));
        row.text("year", std::to_string(1990 + random.below(34)));
    }

    const long long altitude = 25LL * random.below(1640);
    if (onGround)
        row.text("alt_baro", "ground");
    else
        row.integer("alt_baro", altitude);
    if (!onGround && random.chance(0.9))
        row.integer("alt_geom", altitude + 25LL * (random.below(40) - 20));
    // Speeds come as decimals, now and then as a whole number.
    if (random.chance(0.1))
        row.integer("gs", onGround ? random.below(30) : 150 + random.below(350));
    else
        row.number("gs", onGround ? random.between(0, 30) : random.between(150, 520), 1);
    const bool airData = !onGround && random.chance(0.7);
    if (airData) {
        row.integer("ias", 140 + random.below(200));
        row.integer("tas", 180 + random.below(320));
        row.number("mach", random.between(0.3, 0.86), 3);
    }
    if (airData && random.chance(0.7)) {
        row.integer("wd", random.below(360));
        row.integer("ws", random.below(120));
        row.integer("oat", -random.below(60));
        row.integer("tat", -random.below(40));
    }
    const double track = random.between(0, 360);
    row.number("track", track, 2);
    if (!onGround && random.chance(0.4))
        row.number("track_rate", random.between(-3, 3), 2);
    if (!onGround && random.chance(0.6))
        row.number("roll", random.between(-25, 25), 2);
    if (random.chance(0.6)) {
        row.number("mag_heading", std::fmod(track + 355, 360), 2);
        row.number("true_heading", std::fmod(track + 1, 360), 2);
    }
    if (!onGround && random.chance(0.9))
        row.integer("baro_rate", 64LL * (random.below(80) - 40));
    if (!onGround && random.chance(0.8))
        row.integer("geom_rate", 32LL * (random.below(160) - 80));
    if (random.chance(0.92)) {
        char squawk[8];
        std::snprintf(squawk, sizeof squawk, "%04o", unsigned(random.below(4096)));
        row.text("squawk", squawk);
    }
    if (random.chance(0.85))
        row.text("emergency", random.chance(0.02) ? "general" : "none");
    if (random.chance(0.9))
        row.text("category", type.category);
    if (!onGround && random.chance(0.6)) {
        row.number("nav_qnh", random.between(990, 1035), 1);
        row.integer("nav_altitude_mcp", 1000LL * random.below(41));
    }
    if (!onGround && random.chance(0.4))
        row.number("nav_heading", random.between(0, 360), 2);
    if (!onGround && random.chance(0.4)) {
        std::string modes = "[";
        const int count = 1 + random.below(3);
        for (int i = 0; i < count; ++i)
            modes += std::string(i ? ",\"" : "\"") + random.pick(navModes) + '"';
        row.raw("nav_modes", modes + ']');
    }
    const bool position = random.chance(0.92);
    if (position) {
        row.number("lat", random.between(46.5, 48.5), 6);
        row.number("lon", random.between(-123.5, -121), 6);
        row.integer("nic", 8);
        row.integer("rc", 186);
        row.number("seen_pos", random.between(0, 30), 3);
        row.number("r_dst", random.between(0, 250), 3);
        row.number("r_dir", random.between(0, 360), 1);
    }
    row.integer("version", 2);
    row.integer("nic_baro", 1);
    row.integer("nac_p", 9 + random.below(2));
    row.integer("nac_v", 1 + random.below(2));
    row.integer("sil", 3);
    row.text("sil_type", "perhour");
    row.integer("gva", 2);
    row.integer("sda", 2);
    row.integer("alert", 0);
    row.integer("spi", 0);
    row.raw("mlat", "[]");
    row.raw("tisb", "[]");
    row.integer("messages", random.below(5'000'000));
    row.number("seen", random.between(0, 60), 1);
    row.number("rssi", random.between(-30, -2), 1);
    if (random.chance(0.3))
        row.integer("dbFlags", random.chance(0.2) ? 1 : random.pick(std::array<int, 3>{0, 8, 2}));
    if (position) {
        row.number("dst", random.between(0, 250), 3);
        row.number("dir", random.between(0, 360), 1);
    }
    row.close();
}

QByteArray syntheticAnswer()
{
    Random random(20240615);
    std::string out = "{\"ac\":[";
    for (int i = 0; i < rowCount; ++i) {
        if (i)
            out += ',';
        appendRow(out, random);
    }
    out += "],\"msg\":\"No error\",\"now\":1718445600123,\"total\":" + std::to_string(rowCount) +
           ",\"ctime\":1718445600118,\"ptime\":4}";
    return QByteArray(out.data(), qsizetype(out.size()));
}

// The baseline's record: the same 22 fields as Aircraft, filled by QJsonDocument.
struct PlainRecord
{
    QString hex;
    std::optional<QString> flight, squawk, emergency, category, registration, typeCode, typeDescription,
        operatorName;
    std::optional<double> lat, lon, seen, track, groundSpeed, seenPos, distanceNM, directionDeg;
    std::optional<qint64> dbFlags, altGeom, baroRate, geomRate;
    bool hasAltBaro = false;
    bool altBaroGround = false;
    qint64 altBaroFeet = 0;
};

// Null and missing are absent; any other wrong type fails.
bool plainText(const QJsonObject &row, QLatin1StringView key, std::optional<QString> &out)
{
    const QJsonValue value = row.value(key);
    if (value.isString())
        out = value.toString();
    else if (!value.isNull() && !value.isUndefined())
        return false;
    return true;
}

bool plainFloat(const QJsonObject &row, QLatin1StringView key, std::optional<double> &out)
{
    const QJsonValue value = row.value(key);
    if (value.isDouble())
        out = value.toDouble();
    else if (!value.isNull() && !value.isUndefined())
        return false;
    return true;
}

bool wholeNumber(const QJsonValue &value, qint64 &out)
{
    const double number = value.toDouble();
    if (number != std::trunc(number) || !(number >= -0x1p63 && number < 0x1p63))
        return false;
    out = value.toInteger(qint64(number));
    return true;
}

bool plainInteger(const QJsonObject &row, QLatin1StringView key, std::optional<qint64> &out)
{
    const QJsonValue value = row.value(key);
    if (value.isDouble()) {
        qint64 number = 0;
        if (!wholeNumber(value, number))
            return false;
        out = number;
    } else if (!value.isNull() && !value.isUndefined()) {
        return false;
    }
    return true;
}

bool plainRow(const QJsonValue &value, PlainRecord &record)
{
    if (!value.isObject())
        return false;
    const QJsonObject row = value.toObject();
    const QJsonValue hex = row.value(QLatin1StringView("hex"));
    if (!hex.isString())
        return false;
    record.hex = hex.toString();
    const QJsonValue altBaro = row.value(QLatin1StringView("alt_baro"));
    if (!altBaro.isNull() && !altBaro.isUndefined()) {
        record.hasAltBaro = true;
        record.altBaroGround = !altBaro.isDouble() || !wholeNumber(altBaro, record.altBaroFeet);
    }
    using L = QLatin1StringView;
    return plainText(row, L("flight"), record.flight) && plainText(row, L("squawk"), record.squawk) &&
           plainText(row, L("emergency"), record.emergency) &&
           plainText(row, L("category"), record.category) && plainFloat(row, L("lat"), record.lat) &&
           plainFloat(row, L("lon"), record.lon) && plainFloat(row, L("seen"), record.seen) &&
           plainFloat(row, L("track"), record.track) && plainInteger(row, L("dbFlags"), record.dbFlags) &&
           plainText(row, L("r"), record.registration) && plainText(row, L("t"), record.typeCode) &&
           plainText(row, L("desc"), record.typeDescription) &&
           plainText(row, L("ownOp"), record.operatorName) &&
           plainInteger(row, L("alt_geom"), record.altGeom) && plainFloat(row, L("gs"), record.groundSpeed) &&
           plainInteger(row, L("baro_rate"), record.baroRate) &&
           plainInteger(row, L("geom_rate"), record.geomRate) &&
           plainFloat(row, L("seen_pos"), record.seenPos) && plainFloat(row, L("dst"), record.distanceNM) &&
           plainFloat(row, L("dir"), record.directionDeg);
}

// One bad row fails its list, and a failed list fails the answer.
bool plainList(const QJsonObject &root, QLatin1StringView key, std::optional<QList<PlainRecord>> &out)
{
    const QJsonValue value = root.value(key);
    if (value.isNull() || value.isUndefined())
        return true;
    if (!value.isArray())
        return false;
    const QJsonArray array = value.toArray();
    QList<PlainRecord> rows;
    rows.reserve(array.size());
    for (const QJsonValue &element : array) {
        PlainRecord record;
        if (!plainRow(element, record))
            return false;
        rows.append(std::move(record));
    }
    out = std::move(rows);
    return true;
}

struct PlainResponse
{
    std::optional<QList<PlainRecord>> ac;
    std::optional<QList<PlainRecord>> aircraft;
};

std::optional<PlainResponse> plainDecode(const QByteArray &json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;
    const QJsonObject root = document.object();
    PlainResponse response;
    if (!plainList(root, QLatin1StringView("ac"), response.ac) ||
        !plainList(root, QLatin1StringView("aircraft"), response.aircraft))
        return std::nullopt;
    return response;
}

bool sameRecord(const Aircraft &a, const PlainRecord &b)
{
    const auto &altBaro = a.altBaro();
    const bool sameAltBaro = altBaro.has_value() == b.hasAltBaro &&
                             (!altBaro || (altBaro->isGround() == b.altBaroGround &&
                                           (b.altBaroGround || altBaro->feetValue() == b.altBaroFeet)));
    return a.hex() == b.hex && a.flight() == b.flight && a.squawk() == b.squawk &&
           a.emergency() == b.emergency && a.category() == b.category && a.lat() == b.lat &&
           a.lon() == b.lon && a.seen() == b.seen && a.track() == b.track && a.dbFlags() == b.dbFlags &&
           a.registration() == b.registration && a.typeCode() == b.typeCode &&
           a.typeDescription() == b.typeDescription && a.operatorName() == b.operatorName && sameAltBaro &&
           a.altGeom() == b.altGeom && a.groundSpeed() == b.groundSpeed && a.baroRate() == b.baroRate &&
           a.geomRate() == b.geomRate && a.seenPos() == b.seenPos && a.distanceNM() == b.distanceNM &&
           a.directionDeg() == b.directionDeg;
}

const QByteArray &answer()
{
    static const QByteArray bytes = syntheticAnswer();
    return bytes;
}

// Both decoders must accept the answer and agree on every field, or the comparison means nothing.
QString checkAnswer()
{
    const auto ours = APIResponse::decode(answer());
    if (!ours)
        return u"FeedDecoder refused the answer: "_qs + ours.error();
    const auto plain = plainDecode(answer());
    if (!plain || !plain->ac)
        return u"the QJsonDocument decoder refused the answer"_qs;
    const QList<Aircraft> &rows = ours.value().list();
    if (rows.size() != rowCount || plain->ac->size() != rowCount)
        return u"wrong row count"_qs;
    for (qsizetype i = 0; i < rows.size(); ++i) {
        if (!sameRecord(rows[i], plain->ac->at(i)))
            return u"row %1 differs between the decoders"_qs.arg(i);
    }
    return {};
}

void report(benchmark::State &state)
{
    state.SetBytesProcessed(qint64(state.iterations()) * answer().size());
    state.counters["rows"] =
        benchmark::Counter(double(state.iterations()) * rowCount, benchmark::Counter::kIsRate);
}

void FeedDecoderDecode(benchmark::State &state)
{
    static const QString problem = checkAnswer();
    if (!problem.isEmpty()) {
        state.SkipWithError(problem.toStdString().c_str());
        return;
    }
    const QByteArray &json = answer();
    for (auto _ : state) {
        auto decoded = APIResponse::decode(json);
        benchmark::DoNotOptimize(decoded);
    }
    report(state);
}

void QJsonDocumentDecode(benchmark::State &state)
{
    const QByteArray &json = answer();
    for (auto _ : state) {
        auto decoded = plainDecode(json);
        benchmark::DoNotOptimize(decoded);
    }
    report(state);
}

namespace ondemand = simdjson::ondemand;

struct Tally
{
    double numbers = 0;
    std::size_t textBytes = 0;
    std::size_t values = 0;
};

// Reads the type and the scalar of every value, keys included, and keeps nothing.
simdjson::error_code walk(ondemand::value value, Tally &tally)
{
    ++tally.values;
    ondemand::json_type type;
    if (auto error = value.type().get(type))
        return error;
    switch (type) {
    case ondemand::json_type::object: {
        ondemand::object object;
        if (auto error = value.get_object().get(object))
            return error;
        for (auto field : object) {
            std::string_view key;
            if (auto error = field.unescaped_key().get(key))
                return error;
            tally.textBytes += key.size();
            ondemand::value child;
            if (auto error = field.value().get(child))
                return error;
            if (auto error = walk(child, tally))
                return error;
        }
        return simdjson::SUCCESS;
    }
    case ondemand::json_type::array: {
        ondemand::array array;
        if (auto error = value.get_array().get(array))
            return error;
        for (auto element : array) {
            ondemand::value item;
            if (auto error = element.get(item))
                return error;
            if (auto error = walk(item, tally))
                return error;
        }
        return simdjson::SUCCESS;
    }
    case ondemand::json_type::number: {
        double number = 0;
        if (auto error = value.get_double().get(number))
            return error;
        tally.numbers += number;
        return simdjson::SUCCESS;
    }
    case ondemand::json_type::string: {
        std::string_view text;
        if (auto error = value.get_string().get(text))
            return error;
        tally.textBytes += text.size();
        return simdjson::SUCCESS;
    }
    case ondemand::json_type::boolean: {
        bool flag = false;
        if (auto error = value.get_bool().get(flag))
            return error;
        tally.values += flag;
        return simdjson::SUCCESS;
    }
    case ondemand::json_type::null: {
        bool isNull = false;
        return value.is_null().get(isNull);
    }
    }
    return simdjson::INCORRECT_TYPE;
}

void SimdjsonWalk(benchmark::State &state)
{
    const QByteArray &json = answer();
    // Padded once outside the loop: the floor leaves out the copy that FeedDecoder may have to make.
    const simdjson::padded_string padded(json.constData(), std::size_t(json.size()));
    ondemand::parser parser;
    for (auto _ : state) {
        Tally tally;
        ondemand::document document;
        simdjson::error_code error = parser.iterate(padded).get(document);
        ondemand::value root;
        if (!error)
            error = document.get_value().get(root);
        if (!error)
            error = walk(root, tally);
        if (error) {
            state.SkipWithError(simdjson::error_message(error));
            return;
        }
        benchmark::DoNotOptimize(tally);
    }
    report(state);
}

} // namespace

BENCHMARK(FeedDecoderDecode)->Unit(benchmark::kMillisecond);
BENCHMARK(QJsonDocumentDecode)->Unit(benchmark::kMillisecond);
BENCHMARK(SimdjsonWalk)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
