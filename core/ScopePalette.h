#pragma once

#include "HexColor.h"

#include <QColor>
#include <QMetaType>
#include <QString>
#include <optional>

class Aircraft;

// The two colours of the green phosphor scope, both derived from one accent colour: the phosphor draws
// blips, rings and text, the background is the accent darkened to 9 %.
class ScopePalette
{
    Q_GADGET
    Q_PROPERTY(QColor phosphor READ phosphor CONSTANT)
    Q_PROPERTY(QColor background READ background CONSTANT)
    Q_PROPERTY(QColor dim READ dim CONSTANT)
    Q_PROPERTY(QColor faint READ faint CONSTANT)

public:
    static constexpr HexColor::Components defaultAccent{0.45, 1.0, 0.6};
    static constexpr double backgroundFactor = 0.09;
    static constexpr double dimOpacity = 0.55;
    static constexpr double faintOpacity = 0.22;

    // The standard palette, so that a default-constructed value (as QML makes them) is usable.
    ScopePalette();
    ScopePalette(const QColor &phosphor, const QColor &background);

    // The palette of the default accent.
    [[nodiscard]] static const ScopePalette &standard();
    // The palette of an accent text; an absent or unreadable text gives the default accent.
    [[nodiscard]] static ScopePalette fromHex(const std::optional<QString> &accentHex);

    // Military aircraft and emergencies keep their own colours whatever the accent.
    [[nodiscard]] static QColor gold();
    [[nodiscard]] static QColor emergency();

    [[nodiscard]] QColor phosphor() const { return m_phosphor; }
    [[nodiscard]] QColor background() const { return m_background; }
    [[nodiscard]] QColor dim() const;
    [[nodiscard]] QColor faint() const;

    // The colour of an aircraft's blip: an emergency is red, a military aircraft gold, any other the
    // phosphor.
    [[nodiscard]] QColor blipColor(const Aircraft &aircraft) const;
    Q_INVOKABLE QColor blipColorOf(const Aircraft &aircraft) const { return blipColor(aircraft); }

    bool operator==(const ScopePalette &) const = default;

private:
    static ScopePalette fromAccent(const HexColor::Components &accent);

    QColor m_phosphor;
    QColor m_background;
};

Q_DECLARE_METATYPE(ScopePalette)
