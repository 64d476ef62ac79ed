#include "HexColor.h"

#include "TextRules.h"

namespace HexColor {

std::optional<Components> components(QStringView text)
{
    QString digits = TextRules::trimmed(text);
    if (digits.startsWith(u'#'))
        digits.remove(0, 1);
    if (digits.size() != 6)
        return std::nullopt;
    uint value = 0;
    for (const QChar c : std::as_const(digits)) {
        // ASCII digits only: QChar::isDigit would let other scripts' digits through.
        const char16_t u = c.unicode();
        int digit = -1;
        if (u >= u'0' && u <= u'9')
            digit = u - u'0';
        else if (u >= u'a' && u <= u'f')
            digit = u - u'a' + 10;
        else if (u >= u'A' && u <= u'F')
            digit = u - u'A' + 10;
        if (digit < 0)
            return std::nullopt;
        value = value * 16 + uint(digit);
    }
    return Components{((value >> 16) & 0xFF) / 255.0, ((value >> 8) & 0xFF) / 255.0, (value & 0xFF) / 255.0};
}

} // namespace HexColor
