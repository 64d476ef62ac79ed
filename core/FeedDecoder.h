#pragma once

#include "APIResponse.h"
#include "Aircraft.h"
#include "Decoded.h"

#include <QByteArray>
#include <optional>

// Strict decoding of the feed networks' JSON answers into records. Everything not listed in the record
// is ignored but must still be valid JSON; one bad row fails the whole answer.
class FeedDecoder
{
public:
    FeedDecoder() = delete;

    // A whole answer: a JSON object with the lists "ac" and/or "aircraft".
    [[nodiscard]] static Decoded<APIResponse> decodeResponse(const QByteArray &json);
    // A single row, a JSON object.
    [[nodiscard]] static Decoded<Aircraft> decodeAircraft(const QByteArray &json);
    // A single "alt_baro" value: absent for null, feet for a whole number, ground for anything else. Fails
    // only on text that isn't JSON.
    [[nodiscard]] static Decoded<std::optional<Aircraft::Altitude>> decodeAltitude(const QByteArray &json);

    // One parse of one answer (internal).
    class Document;

private:
    class RowReader;
};
