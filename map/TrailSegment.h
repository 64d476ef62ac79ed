#pragma once

#include "Aircraft.h"

#include <QColor>
#include <QHash>
#include <QList>
#include <QString>

// One aircraft's track on the map: its whole stored trail, oldest first, in one colour.
struct TrailSegment
{
    QString id; // "trail-" and the aircraft's hex
    QList<Aircraft::Coordinate> coordinates;
    QColor color;

    bool operator==(const TrailSegment &) const = default;

    struct Settings
    {
        bool showTrails = true;
        bool colorByAltitude = false;
        QString planeColorHex = u"#FF8A00"_qs;
    };

    // The segments of the shown aircraft, in their order: none with trails off, and none for a trail of
    // fewer than two points.
    [[nodiscard]] static QList<TrailSegment>
    segments(const QList<Aircraft> &displayed, const QHash<QString, QList<Aircraft::Coordinate>> &trails,
             const Settings &settings);
};
