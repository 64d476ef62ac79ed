#pragma once

#include "Aircraft.h"

#include <QColor>
#include <QObject>
#include <QtQml/qqmlregistration.h>

// The texts and colours of an aircraft's row in the list, for QML.
class AircraftRows : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    explicit AircraftRows(QObject *parent = nullptr);

    // Type (or raw code), then the registration when it isn't the name shown; the upper-case address when
    // neither exists. Joined with " · ".
    Q_INVOKABLE [[nodiscard]] static QString secondaryLine(const Aircraft &aircraft);
    // What a screen reader says for the row: name, altitude, distance, "emergency", "military".
    Q_INVOKABLE [[nodiscard]] static QString accessibilityText(const Aircraft &aircraft, const QString &distanceUnit);
    // The disc's fill: red for an emergency, green for military, the altitude band when colouring by
    // altitude, else the user's colour, else the accent.
    Q_INVOKABLE [[nodiscard]] static QColor iconColor(const Aircraft &aircraft, const QString &planeColorHex,
                                                      bool colorByAltitude, const QColor &accent, const QColor &red,
                                                      const QColor &green, const QColor &gray);
    // Whether a glyph on this fill must be dark.
    Q_INVOKABLE [[nodiscard]] static bool isLight(const QColor &fill);
};
