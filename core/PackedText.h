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

    // Absent for text longer than maxChars (at most 8) or with other characters. Inline: it runs several
    // times for every aircraft of every refresh.
    [[nodiscard]] static std::optional<quint64> pack(QStringView text, qsizetype maxChars,
                                                     LetterCase letterCase = LetterCase::AsWritten)
    {
        if (text.size() > maxChars || text.size() > 8)
            return std::nullopt;
        quint64 packed = 0;
        for (const QChar character : text) {
            char16_t unit = character.unicode();
            if (unit == 0 || unit >= 0x80)
                return std::nullopt;
            if (letterCase == LetterCase::Upper && unit >= u'a' && unit <= u'z')
                unit = char16_t(unit - (u'a' - u'A'));
            packed = packed << 8 | unit;
        }
        return packed;
    }

    // An aircraft address: seven characters at most, which covers every ICAO address and its "~" form
    // for other sources, so the number stays below addressLimit.
    [[nodiscard]] static std::optional<quint64> address(QStringView hex) { return pack(hex, 7); }
    static constexpr quint64 addressLimit = quint64(1) << 56;
};
