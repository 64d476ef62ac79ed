#include "FeedDecoder.h"

#include "TextCache.h"

#include <simdjson.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>

namespace ondemand = simdjson::ondemand;

namespace {

// How a row's fields are kept, in the order a row is read; an error on an earlier key wins.
enum class Key : int
{
    Hex,
    Flight,
    Squawk,
    Emergency,
    Category,
    Lat,
    Lon,
    Seen,
    Track,
    DbFlags,
    Registration,
    TypeCode,
    TypeDescription,
    OperatorName,
    AltBaro,
    AltGeom,
    GroundSpeed,
    BaroRate,
    GeomRate,
    SeenPos,
    DistanceNM,
    DirectionDeg,
    Count,
    Unknown = Count
};
constexpr std::size_t keyCount = std::size_t(Key::Count);

Key keyFor(std::string_view name)
{
    // Exact matches only: feeds send dozens of further keys, and case matters.
    switch (name.size()) {
    case 1:
        if (name == "r")
            return Key::Registration;
        if (name == "t")
            return Key::TypeCode;
        break;
    case 2:
        if (name == "gs")
            return Key::GroundSpeed;
        break;
    case 3:
        if (name == "hex")
            return Key::Hex;
        if (name == "lat")
            return Key::Lat;
        if (name == "lon")
            return Key::Lon;
        if (name == "dst")
            return Key::DistanceNM;
        if (name == "dir")
            return Key::DirectionDeg;
        break;
    case 4:
        if (name == "seen")
            return Key::Seen;
        if (name == "desc")
            return Key::TypeDescription;
        break;
    case 5:
        if (name == "track")
            return Key::Track;
        if (name == "ownOp")
            return Key::OperatorName;
        break;
    case 6:
        if (name == "flight")
            return Key::Flight;
        if (name == "squawk")
            return Key::Squawk;
        break;
    case 7:
        if (name == "dbFlags")
            return Key::DbFlags;
        break;
    case 8:
        if (name == "category")
            return Key::Category;
        if (name == "alt_baro")
            return Key::AltBaro;
        if (name == "alt_geom")
            return Key::AltGeom;
        if (name == "seen_pos")
            return Key::SeenPos;
        break;
    case 9:
        if (name == "emergency")
            return Key::Emergency;
        if (name == "baro_rate")
            return Key::BaroRate;
        if (name == "geom_rate")
            return Key::GeomRate;
        break;
    default:
        break;
    }
    return Key::Unknown;
}

constexpr std::array<const char *, keyCount> keyNames{
    "hex",   "flight",    "squawk",    "emergency", "category", "lat",   "lon",      "seen",
    "track", "dbFlags",   "r",         "t",         "desc",     "ownOp", "alt_baro", "alt_geom",
    "gs",    "baro_rate", "geom_rate", "seen_pos",  "dst",      "dir"};

QString typeWord(ondemand::json_type type)
{
    switch (type) {
    case ondemand::json_type::array:
        return u"a list"_qs;
    case ondemand::json_type::object:
        return u"an object"_qs;
    case ondemand::json_type::number:
        return u"a number"_qs;
    case ondemand::json_type::string:
        return u"a string"_qs;
    case ondemand::json_type::boolean:
        return u"a boolean"_qs;
    case ondemand::json_type::null:
        return u"null"_qs;
    }
    return u"something else"_qs;
}

// A JSON syntax problem: the whole answer is not JSON, whatever row it is in.
struct SyntaxError
{
    simdjson::error_code code;
};

QString syntaxMessage(simdjson::error_code code)
{
    return u"the answer is not valid JSON (%1)"_qs.arg(QString::fromUtf8(simdjson::error_message(code)));
}

std::string_view trimmedToken(std::string_view token)
{
    while (!token.empty() &&
           (token.back() == ' ' || token.back() == '\t' || token.back() == '\n' || token.back() == '\r'))
        token.remove_suffix(1);
    return token;
}

enum class WholeNumber
{
    Exact,
    Fraction,
    OutOfRange,
    Malformed
};

constexpr bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Whether a token is a number by JSON's grammar. Feeds send dozens of numbers per row that the record
// never reads, so this check, not the parsing below, is what most numbers cost.
bool isJsonNumber(std::string_view token)
{
    const char *p = token.data();
    const char *const end = p + token.size();
    if (p != end && *p == '-')
        ++p;
    if (p == end)
        return false;
    if (*p == '0') {
        ++p;
    } else if (isDigit(*p)) {
        while (++p != end && isDigit(*p)) {
        }
    } else {
        return false;
    }
    if (p != end && *p == '.') {
        const char *const digits = ++p;
        while (p != end && isDigit(*p))
            ++p;
        if (p == digits)
            return false;
    }
    if (p != end && (*p == 'e' || *p == 'E')) {
        ++p;
        if (p != end && (*p == '+' || *p == '-'))
            ++p;
        const char *const digits = p;
        while (p != end && isDigit(*p))
            ++p;
        if (p == digits)
            return false;
    }
    return p == end;
}

// Reads a JSON number token exactly, as decimal text, so that 12000.0 and 1.2e4 give 12000 while 1200.5,
// 1e-400 and numbers past 64 bits are refused, with no detour through binary floating point. Also tells
// whether the token is a number by JSON's grammar at all.
WholeNumber parseWholeNumber(std::string_view token, qint64 &out)
{
    // The common case first: a plain integer of up to 18 digits, which can't overflow.
    {
        const bool negative = !token.empty() && token[0] == '-';
        const std::string_view digits = token.substr(negative ? 1 : 0);
        if (!digits.empty() && digits.size() <= 18 && (digits[0] != '0' || digits.size() == 1)) {
            qint64 value = 0;
            std::size_t i = 0;
            while (i < digits.size() && isDigit(digits[i]))
                value = value * 10 + (digits[i++] - '0');
            if (i == digits.size()) {
                out = negative ? -value : value;
                return WholeNumber::Exact;
            }
        }
    }
    constexpr std::size_t maxDigits = 19; // 10^19 > 2^63, so more significant digits can't fit
    std::size_t i = 0;
    const bool negative = i < token.size() && token[i] == '-';
    if (negative)
        ++i;
    // The number is S x 10^exponent, where S are all the digits from the first nonzero one on.
    char stored[maxDigits];
    std::size_t significant = 0;   // digits of S so far
    std::size_t trailingZeros = 0; // current run of zeros at the end of S
    long long exponent = 0;
    auto takeDigit = [&](char c, bool fraction) {
        if (fraction)
            --exponent;
        if (significant == 0 && c == '0')
            return;
        if (significant < maxDigits)
            stored[significant] = c;
        ++significant;
        trailingZeros = c == '0' ? trailingZeros + 1 : 0;
    };
    const std::size_t integerStart = i;
    while (i < token.size() && token[i] >= '0' && token[i] <= '9')
        takeDigit(token[i++], false);
    const std::size_t integerLength = i - integerStart;
    if (integerLength == 0 || (integerLength > 1 && token[integerStart] == '0'))
        return WholeNumber::Malformed;
    if (i < token.size() && token[i] == '.') {
        const std::size_t fractionStart = ++i;
        while (i < token.size() && token[i] >= '0' && token[i] <= '9')
            takeDigit(token[i++], true);
        if (i == fractionStart)
            return WholeNumber::Malformed;
    }
    if (i < token.size() && (token[i] == 'e' || token[i] == 'E')) {
        ++i;
        bool negativeExponent = false;
        if (i < token.size() && (token[i] == '+' || token[i] == '-'))
            negativeExponent = token[i++] == '-';
        const std::size_t exponentStart = i;
        long long written = 0;
        while (i < token.size() && token[i] >= '0' && token[i] <= '9') {
            if (written < 1'000'000'000) // far past any range that matters
                written = written * 10 + (token[i] - '0');
            ++i;
        }
        if (i == exponentStart)
            return WholeNumber::Malformed;
        exponent += negativeExponent ? -written : written;
    }
    if (i != token.size())
        return WholeNumber::Malformed;

    const std::size_t digits = significant - trailingZeros;
    exponent += (long long)trailingZeros;
    if (digits == 0) {
        out = 0;
        return WholeNumber::Exact;
    }
    // The last digit kept is nonzero, so a negative exponent leaves a real fraction.
    if (exponent < 0)
        return WholeNumber::Fraction;
    if ((long long)digits + exponent > (long long)maxDigits)
        return WholeNumber::OutOfRange;
    unsigned __int128 magnitude = 0;
    for (std::size_t d = 0; d < digits; ++d)
        magnitude = magnitude * 10 + unsigned(stored[d] - '0');
    for (long long e = 0; e < exponent; ++e)
        magnitude *= 10;
    const auto largest = (unsigned __int128)std::numeric_limits<qint64>::max();
    if (magnitude > (negative ? largest + 1 : largest))
        return WholeNumber::OutOfRange;
    out = negative ? qint64(-(__int128)magnitude) : qint64(magnitude);
    return WholeNumber::Exact;
}

// Walks a value the record doesn't use, so that malformed JSON anywhere still fails the answer.
simdjson::error_code validate(ondemand::value value)
{
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
            ondemand::value child;
            if (auto error = field.value().get(child))
                return error;
            if (auto error = validate(child))
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
            if (auto error = validate(item))
                return error;
        }
        return simdjson::SUCCESS;
    }
    case ondemand::json_type::number: {
        // Checked by grammar alone: integers beyond 64 bits are valid JSON, merely not representable.
        return isJsonNumber(trimmedToken(value.raw_json_token())) ? simdjson::SUCCESS
                                                                  : simdjson::NUMBER_ERROR;
    }
    case ondemand::json_type::string:
        return value.get_string().error();
    case ondemand::json_type::boolean:
        return value.get_bool().error();
    case ondemand::json_type::null: {
        bool isNull = false;
        if (auto error = value.is_null().get(isNull))
            return error;
        return isNull ? simdjson::SUCCESS : simdjson::INCORRECT_TYPE;
    }
    }
    return simdjson::INCORRECT_TYPE;
}

QString shortToken(std::string_view token)
{
    constexpr std::size_t shown = 40;
    QString text = QString::fromUtf8(token.data(), qsizetype(std::min(token.size(), shown)));
    if (token.size() > shown)
        text += u'…';
    return text;
}

} // namespace

// Reads one row into a record, remembering the first problem in key order.
class FeedDecoder::RowReader
{
public:
    // Without a cache every text is a string of its own.
    explicit RowReader(TextCache *cache = nullptr) : m_cache(cache) {}

    // Returns a syntax error code, or SUCCESS with either a record or a row error set.
    simdjson::error_code read(ondemand::value rowValue)
    {
        ondemand::json_type type;
        if (auto error = rowValue.type().get(type))
            return error;
        if (type != ondemand::json_type::object) {
            if (auto error = validate(rowValue))
                return error;
            m_rowError = u"must be an object, not %1"_qs.arg(typeWord(type));
            return simdjson::SUCCESS;
        }
        ondemand::object object;
        if (auto error = rowValue.get_object().get(object))
            return error;
        bool hexSeen = false;
        for (auto field : object) {
            std::string_view name;
            if (auto error = field.unescaped_key().get(name))
                return error;
            const Key key = keyFor(name);
            ondemand::value value;
            if (auto error = field.value().get(value))
                return error;
            if (key == Key::Unknown) {
                if (auto error = validate(value))
                    return error;
                continue;
            }
            m_errors[std::size_t(key)].clear(); // a repeated key: the last one stands
            simdjson::error_code error = simdjson::SUCCESS;
            switch (key) {
            case Key::Hex: {
                std::optional<QString> hex;
                error = readText(value, key, hex, m_cache);
                hexSeen = true;
                if (!error && !hex && m_errors[0].isEmpty())
                    m_errors[0] = u"\"hex\" must be a string, not null"_qs;
                m_record.m_hex = hex.value_or(QString());
                break;
            }
            case Key::Flight:
                error = readText(value, key, m_record.m_flight, m_cache);
                break;
            case Key::Squawk:
                error = readText(value, key, m_record.m_squawk, m_cache);
                break;
            case Key::Emergency:
                error = readText(value, key, m_record.m_emergency, m_cache);
                break;
            case Key::Category:
                error = readText(value, key, m_record.m_category, m_cache);
                break;
            case Key::Registration:
                error = readText(value, key, m_record.m_registration, m_cache);
                break;
            case Key::TypeCode:
                error = readText(value, key, m_record.m_typeCode, m_cache);
                break;
            case Key::TypeDescription:
                error = readText(value, key, m_record.m_typeDescription, m_cache);
                break;
            case Key::OperatorName:
                error = readText(value, key, m_record.m_operatorName, m_cache);
                break;
            case Key::Lat:
                error = readFloat(value, key, m_record.m_lat);
                break;
            case Key::Lon:
                error = readFloat(value, key, m_record.m_lon);
                break;
            case Key::Seen:
                error = readFloat(value, key, m_record.m_seen);
                break;
            case Key::Track:
                error = readFloat(value, key, m_record.m_track);
                break;
            case Key::GroundSpeed:
                error = readFloat(value, key, m_record.m_groundSpeed);
                break;
            case Key::SeenPos:
                error = readFloat(value, key, m_record.m_seenPos);
                break;
            case Key::DistanceNM:
                error = readFloat(value, key, m_record.m_distanceNM);
                break;
            case Key::DirectionDeg:
                error = readFloat(value, key, m_record.m_directionDeg);
                break;
            case Key::DbFlags:
                error = readInteger(value, key, m_record.m_dbFlags);
                break;
            case Key::AltGeom:
                error = readInteger(value, key, m_record.m_altGeom);
                break;
            case Key::BaroRate:
                error = readInteger(value, key, m_record.m_baroRate);
                break;
            case Key::GeomRate:
                error = readInteger(value, key, m_record.m_geomRate);
                break;
            case Key::AltBaro:
                error = readAltitude(value, m_record.m_altBaro);
                break;
            case Key::Count:
                break;
            }
            if (error)
                return error;
        }
        if (!hexSeen)
            m_errors[0] = u"\"hex\" is missing"_qs;
        for (const QString &message : m_errors) {
            if (!message.isEmpty()) {
                m_rowError = message;
                break;
            }
        }
        return simdjson::SUCCESS;
    }

    [[nodiscard]] bool failed() const { return !m_rowError.isEmpty(); }
    // "row 17 (a1b2c3): "squawk" must be a string, not a number"
    [[nodiscard]] QString rowError(qsizetype index) const
    {
        const QString where = m_record.m_hex.isEmpty() ? u"row %1"_qs.arg(index)
                                                       : u"row %1 (%2)"_qs.arg(index).arg(m_record.m_hex);
        return where + u": "_qs + m_rowError;
    }
    [[nodiscard]] const QString &bareError() const { return m_rowError; }
    Aircraft takeRecord() { return std::move(m_record); }

    static simdjson::error_code readAltitude(ondemand::value value, std::optional<Aircraft::Altitude> &out)
    {
        ondemand::json_type type;
        if (auto error = value.type().get(type))
            return error;
        if (type == ondemand::json_type::number) {
            qint64 feet = 0;
            switch (parseWholeNumber(trimmedToken(value.raw_json_token()), feet)) {
            case WholeNumber::Exact:
                out = Aircraft::Altitude::feet(feet);
                return simdjson::SUCCESS;
            case WholeNumber::Malformed:
                return simdjson::NUMBER_ERROR;
            case WholeNumber::Fraction:
            case WholeNumber::OutOfRange:
                out = Aircraft::Altitude::ground();
                return simdjson::SUCCESS;
            }
        }
        if (auto error = validate(value))
            return error;
        // Whatever does not read as a whole number means the ground; the word itself is never compared.
        if (type == ondemand::json_type::null)
            out.reset();
        else
            out = Aircraft::Altitude::ground();
        return simdjson::SUCCESS;
    }

private:
    void outOfRange(Key key, std::string_view token)
    {
        m_errors[std::size_t(key)] = u"\"%1\" is out of range: %2"_qs.arg(
            QLatin1StringView(keyNames[std::size_t(key)]), shortToken(token));
    }

    void fail(Key key, const QString &expected, const QString &got)
    {
        m_errors[std::size_t(key)] =
            u"\"%1\" must be %2, not %3"_qs.arg(QLatin1StringView(keyNames[std::size_t(key)]), expected, got);
    }

    // Null is absent; any other wrong type fails the row (once the value is known to be valid JSON).
    simdjson::error_code wrongType(ondemand::value value, ondemand::json_type type, Key key,
                                   const QString &expected)
    {
        if (auto error = validate(value))
            return error;
        if (type != ondemand::json_type::null)
            fail(key, expected, typeWord(type));
        return simdjson::SUCCESS;
    }

    simdjson::error_code readText(ondemand::value value, Key key, std::optional<QString> &out,
                                  TextCache *cache = nullptr)
    {
        ondemand::json_type type;
        if (auto error = value.type().get(type))
            return error;
        if (type != ondemand::json_type::string) {
            auto error = wrongType(value, type, key, u"a string"_qs);
            out.reset();
            return error;
        }
        std::string_view text;
        if (auto error = value.get_string().get(text))
            return error;
        out = cache ? cache->text(text) : QString::fromUtf8(text.data(), qsizetype(text.size()));
        return simdjson::SUCCESS;
    }

    simdjson::error_code readFloat(ondemand::value value, Key key, std::optional<double> &out)
    {
        ondemand::json_type type;
        if (auto error = value.type().get(type))
            return error;
        if (type != ondemand::json_type::number) {
            auto error = wrongType(value, type, key, u"a number"_qs);
            out.reset();
            return error;
        }
        double number = 0;
        if (auto error = value.get_double().get(number)) {
            const std::string_view token = trimmedToken(value.raw_json_token());
            qint64 ignored = 0;
            if (parseWholeNumber(token, ignored) == WholeNumber::Malformed)
                return error;
            // A well-formed number beyond a double's range, such as 1e400.
            out.reset();
            outOfRange(key, token);
            return simdjson::SUCCESS;
        }
        out = number;
        return simdjson::SUCCESS;
    }

    simdjson::error_code readInteger(ondemand::value value, Key key, std::optional<qint64> &out)
    {
        ondemand::json_type type;
        if (auto error = value.type().get(type))
            return error;
        if (type != ondemand::json_type::number) {
            auto error = wrongType(value, type, key, u"a whole number"_qs);
            out.reset();
            return error;
        }
        const std::string_view token = trimmedToken(value.raw_json_token());
        qint64 number = 0;
        out.reset();
        switch (parseWholeNumber(token, number)) {
        case WholeNumber::Exact:
            out = number;
            break;
        case WholeNumber::Malformed:
            return simdjson::NUMBER_ERROR;
        case WholeNumber::Fraction:
            fail(key, u"a whole number"_qs, shortToken(token));
            break;
        case WholeNumber::OutOfRange:
            outOfRange(key, token);
            break;
        }
        return simdjson::SUCCESS;
    }

    TextCache *m_cache;
    Aircraft m_record;
    std::array<QString, keyCount> m_errors;
    QString m_rowError;
};

// One parse of one answer, reusing a parser: the decoder runs only on the main thread.
class FeedDecoder::Document
{
public:
    explicit Document(const QByteArray &json)
    {
        static ondemand::parser parser;
        // Avoid a copy when the buffer already has the padding simdjson reads past the end.
        if (json.capacity() - json.size() >= qsizetype(simdjson::SIMDJSON_PADDING)) {
            m_error = parser.iterate(json.constData(), std::size_t(json.size()), std::size_t(json.capacity()))
                          .get(m_doc);
        } else {
            m_copy = simdjson::padded_string(json.constData(), std::size_t(json.size()));
            m_error = parser.iterate(m_copy).get(m_doc);
        }
    }

    simdjson::error_code error() const { return m_error; }
    ondemand::document &doc() { return m_doc; }

    // Nothing but blanks may follow the value.
    bool atEnd() { return m_doc.current_location().error() == simdjson::OUT_OF_BOUNDS; }

private:
    simdjson::padded_string m_copy;
    ondemand::document m_doc;
    simdjson::error_code m_error = simdjson::SUCCESS;
};

namespace {

struct ListOutcome
{
    std::optional<QList<Aircraft>> rows;
    QString error; // the first failing row, if any
};

} // namespace

Decoded<APIResponse> FeedDecoder::decodeResponse(const QByteArray &json)
{
    Document document(json);
    if (document.error())
        return Decoded<APIResponse>::failure(syntaxMessage(document.error()));
    ondemand::document &doc = document.doc();
    ondemand::json_type type;
    if (auto error = doc.type().get(type))
        return Decoded<APIResponse>::failure(syntaxMessage(error));
    if (type != ondemand::json_type::object)
        return Decoded<APIResponse>::failure(
            u"the answer must be a JSON object, not %1"_qs.arg(typeWord(type)));
    ondemand::object root;
    if (auto error = doc.get_object().get(root))
        return Decoded<APIResponse>::failure(syntaxMessage(error));

    // "ac" is read before "aircraft", so its problems are the ones reported.
    std::array<ListOutcome, 2> lists;
    // Like the parser, one for the main thread, kept from answer to answer.
    static TextCache texts;
    texts.nextRound();
    auto readList = [](ondemand::value value, const char *name,
                            ListOutcome &outcome) -> simdjson::error_code {
        outcome = {};
        ondemand::json_type listType;
        if (auto error = value.type().get(listType))
            return error;
        if (listType != ondemand::json_type::array) {
            if (auto error = validate(value))
                return error;
            if (listType != ondemand::json_type::null)
                outcome.error =
                    u"\"%1\" must be a list, not %2"_qs.arg(QLatin1StringView(name), typeWord(listType));
            return simdjson::SUCCESS;
        }
        ondemand::array array;
        if (auto error = value.get_array().get(array))
            return error;
        QList<Aircraft> rows;
        qsizetype index = 0;
        for (auto element : array) {
            ondemand::value rowValue;
            if (auto error = element.get(rowValue))
                return error;
            RowReader reader(&texts);
            if (auto error = reader.read(rowValue))
                return error;
            if (reader.failed()) {
                if (outcome.error.isEmpty())
                    outcome.error = reader.rowError(index);
            } else if (outcome.error.isEmpty()) {
                rows.append(reader.takeRecord());
            }
            ++index;
        }
        outcome.rows = std::move(rows);
        return simdjson::SUCCESS;
    };

    for (auto field : root) {
        std::string_view name;
        if (auto error = field.unescaped_key().get(name))
            return Decoded<APIResponse>::failure(syntaxMessage(error));
        ondemand::value value;
        simdjson::error_code error = field.value().get(value);
        if (error)
            return Decoded<APIResponse>::failure(syntaxMessage(error));
        if (name == "ac")
            error = readList(value, "ac", lists[0]);
        else if (name == "aircraft")
            error = readList(value, "aircraft", lists[1]);
        else
            error = validate(value);
        if (error)
            return Decoded<APIResponse>::failure(syntaxMessage(error));
    }
    if (!document.atEnd())
        return Decoded<APIResponse>::failure(syntaxMessage(simdjson::TRAILING_CONTENT));

    for (std::size_t i = 0; i < lists.size(); ++i) {
        if (lists[i].error.isEmpty())
            continue;
        // Name the list only where it isn't obvious which one was meant.
        const bool ambiguous = i == 1 && lists[0].rows;
        return Decoded<APIResponse>::failure(ambiguous ? u"\"aircraft\" "_qs + lists[i].error
                                                       : lists[i].error);
    }
    APIResponse response;
    response.ac = std::move(lists[0].rows);
    response.aircraft = std::move(lists[1].rows);
    return Decoded<APIResponse>::success(std::move(response));
}

namespace {

// Reads a single JSON value of any kind. simdjson won't hand out a scalar document as a value, so the text
// is read as the only element of a list; anything that would smuggle in a second element fails.
template <typename Result, typename Read> Result decodeSingleValue(const QByteArray &json, Read read)
{
    const QByteArray wrapped = '[' + json + ']';
    FeedDecoder::Document document(wrapped);
    if (document.error())
        return Result::failure(syntaxMessage(document.error()));
    ondemand::array array;
    if (auto error = document.doc().get_array().get(array))
        return Result::failure(syntaxMessage(error));
    std::optional<Result> result;
    for (auto element : array) {
        ondemand::value value;
        if (auto error = element.get(value))
            return Result::failure(syntaxMessage(error));
        if (result)
            return Result::failure(syntaxMessage(simdjson::TRAILING_CONTENT));
        result = read(value);
    }
    if (!document.atEnd())
        return Result::failure(syntaxMessage(simdjson::TRAILING_CONTENT));
    if (!result)
        return Result::failure(syntaxMessage(simdjson::EMPTY));
    return *std::move(result);
}

} // namespace

Decoded<Aircraft> FeedDecoder::decodeAircraft(const QByteArray &json)
{
    return decodeSingleValue<Decoded<Aircraft>>(json, [](ondemand::value value) {
        RowReader reader;
        if (auto error = reader.read(value))
            return Decoded<Aircraft>::failure(syntaxMessage(error));
        if (reader.failed())
            return Decoded<Aircraft>::failure(reader.bareError());
        return Decoded<Aircraft>::success(reader.takeRecord());
    });
}

Decoded<std::optional<Aircraft::Altitude>> FeedDecoder::decodeAltitude(const QByteArray &json)
{
    using Result = Decoded<std::optional<Aircraft::Altitude>>;
    return decodeSingleValue<Result>(json, [](ondemand::value value) {
        std::optional<Aircraft::Altitude> altitude;
        if (auto error = RowReader::readAltitude(value, altitude))
            return Result::failure(syntaxMessage(error));
        return Result::success(altitude);
    });
}
