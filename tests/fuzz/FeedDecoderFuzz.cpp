// libFuzzer target: any bytes through the feed decoder, and every record it accepts through the whole
// presentation, under AddressSanitizer and UndefinedBehaviorSanitizer. Besides crashes it checks that the
// decoder's answers agree with themselves:
//   - a buffer with spare capacity (read in place) decodes exactly as one without (copied first), even
//     when the spare bytes hold JSON-looking junk;
//   - a row that decodes alone decodes to the same record as the only row of an answer;
//   - an altitude that decodes alone gives the same altitude inside a row.
#include "APIResponse.h"
#include "Aircraft.h"
#include "FeedDecoder.h"

#include <QByteArray>
#include <QLocale>
#include <QMetaProperty>
#include <QString>
#include <simdjson.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

[[noreturn]] void mismatch(const char *what, const QByteArray &input)
{
    std::fprintf(stderr, "decoder disagrees with itself: %s\ninput: %s\n", what,
                 input.toPercentEncoding().constData());
    std::abort();
}

// The same bytes in a buffer with at least the parser's padding to spare, the spare bytes junk.
QByteArray withSpareCapacity(const QByteArray &bytes)
{
    static constexpr std::string_view junk = "1]}\\\"";
    QByteArray padded(bytes.size() + qsizetype(simdjson::SIMDJSON_PADDING) + 16, Qt::Uninitialized);
    std::copy(bytes.begin(), bytes.end(), padded.begin());
    for (qsizetype i = bytes.size(); i < padded.size(); ++i)
        padded[i] = junk[std::size_t(i) % junk.size()];
    padded.resize(bytes.size()); // keeps the capacity, and the junk after the terminator
    return padded;
}

// Whether the bytes can be put inside another JSON value without changing what they mean: they start
// with a value, not a byte-order mark, and nest far less deeply than the parser allows.
bool embeddable(const QByteArray &bytes)
{
    qsizetype i = 0;
    while (i < bytes.size() && (bytes[i] == ' ' || bytes[i] == '\t' || bytes[i] == '\n' || bytes[i] == '\r'))
        ++i;
    if (i == bytes.size() || std::string_view("{[\"-0123456789tfn").find(bytes[i]) == std::string_view::npos)
        return false;
    return bytes.count('[') + bytes.count('{') < 512;
}

volatile qsizetype presented = 0;

void present(const Aircraft &aircraft)
{
    static const QLocale german(QLocale::German, QLocale::Germany);
    static const QLocale french(QLocale::French, QLocale::France);
    // Results are thrown away: what is looked for is a crash or undefined behaviour on the way.
    qsizetype sink = 0;
    sink += aircraft.id().size() + aircraft.displayName().size();
    sink += aircraft.altitudeText(german).size() + aircraft.altitudeText(french).size();
    sink += aircraft.speedText().size();
    sink += aircraft.verticalText(german).value_or(QString()).size();
    sink += aircraft.typeName().value_or(QString()).size();
    sink += aircraft.operatorDisplayName().value_or(QString()).size();
    sink += aircraft.lookDirection().value_or(QString()).size();
    for (const QString &unit : {u"nm"_qs, u"km"_qs, u"mi"_qs, QString()}) {
        sink += aircraft.distanceText(unit, true).value_or(QString()).size();
        sink += aircraft.distanceText(unit, false).value_or(QString()).size();
    }
    sink += aircraft.isOnGround() + aircraft.isEmergency() + aircraft.isMilitary() + aircraft.isHelicopter();
    sink += aircraft.coordinate().has_value() + aircraft.altitudeFeet().has_value();
    sink += aircraft.verticalRate().has_value() + aircraft.distanceMiles().has_value();
    if (aircraft.directionDeg())
        sink += Aircraft::compassPoint(*aircraft.directionDeg()).size();
    // Everything QML can read, through the same door QML uses.
    const QMetaObject &meta = Aircraft::staticMetaObject;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i)
        sink += meta.property(i).readOnGadget(&aircraft).isValid();
    sink += aircraft.distanceTextFor(u"km"_qs, false).isValid();
    presented = sink;
}

void checkResponse(const QByteArray &bytes)
{
    const auto response = APIResponse::decode(bytes);
    const auto inPlace = APIResponse::decode(withSpareCapacity(bytes));
    if (response.ok() != inPlace.ok() || response.error() != inPlace.error() ||
        (response && !(response.value() == inPlace.value())))
        mismatch("answer, copied and in place", bytes);
    if (!response)
        return;
    for (const auto *list : {&response.value().ac, &response.value().aircraft}) {
        if (*list) {
            for (const Aircraft &aircraft : **list)
                present(aircraft);
        }
    }
    present(Aircraft());
}

void checkRow(const QByteArray &bytes)
{
    const auto row = FeedDecoder::decodeAircraft(bytes);
    const auto inPlace = FeedDecoder::decodeAircraft(withSpareCapacity(bytes));
    if (row.ok() != inPlace.ok() || row.error() != inPlace.error() ||
        (row && !(row.value() == inPlace.value())))
        mismatch("row, copied and in place", bytes);
    if (!row || !embeddable(bytes))
        return;
    present(row.value());
    const auto answer = APIResponse::decode("{\"ac\":[" + bytes + "\n]}");
    if (!answer || answer.value().list().size() != 1 || !(answer.value().list().front() == row.value()))
        mismatch("row alone and in an answer", bytes);
}

void checkAltitude(const QByteArray &bytes)
{
    const auto altitude = FeedDecoder::decodeAltitude(bytes);
    const auto inPlace = FeedDecoder::decodeAltitude(withSpareCapacity(bytes));
    if (altitude.ok() != inPlace.ok() || altitude.error() != inPlace.error() ||
        (altitude && altitude.value() != inPlace.value()))
        mismatch("altitude, copied and in place", bytes);
    if (!altitude || !embeddable(bytes))
        return;
    const auto row = FeedDecoder::decodeAircraft("{\"hex\":\"a\",\"alt_baro\":" + bytes + "\n}");
    if (!row || row.value().altBaro() != altitude.value())
        mismatch("altitude alone and in a row", bytes);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    checkResponse(bytes);
    checkRow(bytes);
    checkAltitude(bytes);
    return 0;
}
