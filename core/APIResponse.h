#pragma once

#include "Aircraft.h"
#include "Decoded.h"

#include <QByteArray>
#include <QList>
#include <optional>

// The envelope of a feed answer. The two networks name their list differently.
struct APIResponse
{
    std::optional<QList<Aircraft>> ac;
    std::optional<QList<Aircraft>> aircraft;

    // The list a consumer uses: "ac" when it was present (even empty), else "aircraft", else none.
    [[nodiscard]] const QList<Aircraft> &list() const;

    [[nodiscard]] static Decoded<APIResponse> decode(const QByteArray &json);

    bool operator==(const APIResponse &) const = default;
};
