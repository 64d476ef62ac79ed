#pragma once

#include <QStringView>
#include <optional>

// An aircraft address as one number, for the work done on every aircraft of every refresh: matching
// rows, finding trails. Up to seven ASCII characters without NUL fill less than 56 bits, one text to one
// number; that covers every ICAO address and its "~" form for other sources. Any other text has none.
class HexKey
{
public:
    [[nodiscard]] static std::optional<quint64> packed(QStringView hex);

    // Numbers at and above this are never a packed address.
    static constexpr quint64 unpackedBase = quint64(1) << 56;
};
