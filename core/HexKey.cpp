#include "HexKey.h"

std::optional<quint64> HexKey::packed(QStringView hex)
{
    if (hex.size() > 7)
        return std::nullopt;
    quint64 packed = 0;
    for (const QChar character : hex) {
        const char16_t unit = character.unicode();
        if (unit == 0 || unit >= 0x80)
            return std::nullopt;
        packed = packed << 8 | unit;
    }
    return packed;
}
