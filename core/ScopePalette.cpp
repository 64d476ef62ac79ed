#include "ScopePalette.h"

#include "Aircraft.h"

namespace {

QColor withOpacity(QColor color, double opacity)
{
    color.setAlphaF(float(opacity));
    return color;
}

} // namespace

ScopePalette::ScopePalette() : ScopePalette(standard()) {}

ScopePalette::ScopePalette(const QColor &phosphor, const QColor &background)
    : m_phosphor(phosphor), m_background(background)
{
}

const ScopePalette &ScopePalette::standard()
{
    static const ScopePalette palette = fromAccent(defaultAccent);
    return palette;
}

ScopePalette ScopePalette::fromHex(const std::optional<QString> &accentHex)
{
    if (accentHex) {
        if (const auto accent = HexColor::components(*accentHex))
            return fromAccent(*accent);
    }
    return standard();
}

ScopePalette ScopePalette::fromAccent(const HexColor::Components &accent)
{
    const QColor phosphor = QColor::fromRgbF(float(accent.red), float(accent.green), float(accent.blue));
    const QColor background =
        QColor::fromRgbF(float(accent.red * backgroundFactor), float(accent.green * backgroundFactor),
                         float(accent.blue * backgroundFactor));
    return ScopePalette(phosphor, background);
}

QColor ScopePalette::gold()
{
    return QColor::fromRgbF(1.0f, 0.85f, 0.3f);
}

QColor ScopePalette::emergency()
{
    return QColor(Qt::red);
}

QColor ScopePalette::dim() const
{
    return withOpacity(m_phosphor, dimOpacity);
}

QColor ScopePalette::faint() const
{
    return withOpacity(m_phosphor, faintOpacity);
}

QColor ScopePalette::blipColor(const Aircraft &aircraft) const
{
    // An emergency outranks the military gold.
    if (aircraft.isEmergency())
        return emergency();
    if (aircraft.isMilitary())
        return gold();
    return m_phosphor;
}
