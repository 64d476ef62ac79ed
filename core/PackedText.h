#pragma once

#include <QStringView>
#include <optional>

// Short plain text as one number, for the work done on every aircraft of every refresh (matching rows,
// finding trails, watchlists, type codes): numbers compare and hash without reading text. Up to eight
// ASCII characters without NUL fit, one text to one number for a given length limit.
class PackedText
{
public:
    enum class LetterCase { AsWritten, Upper };

    // Absent for text longer than maxChars (at most 8) or with other characters.
    [[nodiscard]] static std::optional<quint64> pack(QStringView text, qsizetype maxChars,
                                                     LetterCase letterCase = LetterCase::AsWritten);

    // An aircraft address: seven characters at most, which covers every ICAO address and its "~" form
    // for other sources, so the number stays below addressLimit.
    [[nodiscard]] static std::optional<quint64> address(QStringView hex) { return pack(hex, 7); }
    static constexpr quint64 addressLimit = quint64(1) << 56;
};
