#include "PackedText.h"

std::optional<quint64> PackedText::pack(QStringView text, qsizetype maxChars, LetterCase letterCase)
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
