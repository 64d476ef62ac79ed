#include "ColorHex.h"

#include <cmath>

namespace ColorHex {

std::optional<QColor> color(const QString &text)
{
    QString digits = text.trimmed();
    if (digits.startsWith(u'#'))
        digits.remove(0, 1);
    if (digits.size() != 6)
        return std::nullopt;
    for (QChar c : digits) {
        if (!c.isDigit() && !(c.toLower() >= u'a' && c.toLower() <= u'f'))
            return std::nullopt;
    }
    bool ok = false;
    const uint value = digits.toUInt(&ok, 16);
    if (!ok)
        return std::nullopt;
    return QColor::fromRgbF(float(((value >> 16) & 0xFF) / 255.0), float(((value >> 8) & 0xFF) / 255.0),
                            float((value & 0xFF) / 255.0), 1.0f);
}

std::optional<QString> hexString(const QColor &color)
{
    if (!color.isValid())
        return std::nullopt;
    const QColor rgb = color.toRgb();
    auto byte = [](float component) { return int(std::lround(std::clamp(double(component), 0.0, 1.0) * 255.0)); };
    return QString::asprintf("#%02X%02X%02X", byte(rgb.redF()), byte(rgb.greenF()), byte(rgb.blueF()));
}

double luminance(const QColor &color)
{
    if (!color.isValid())
        return 0;
    const QColor rgb = color.toRgb();
    return 0.299 * rgb.redF() + 0.587 * rgb.greenF() + 0.114 * rgb.blueF();
}

} // namespace ColorHex
