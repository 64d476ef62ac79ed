#pragma once

#include "Aircraft.h"

#include <QColor>
#include <QObject>
#include <QUrl>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

// What the QML of the radar map, its markers and the detail card ask of C++: the colour and contrast
// rules, the altitude bands, the camera operations' targets, the texts, and the addresses of the map's
// images. Its creation installs the image provider in the engine, so the components work in any engine.
class RadarSupport : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    // QML makes the one instance through this, which installs the image provider first.
    static RadarSupport *create(QQmlEngine *engine, QJSEngine *scriptEngine);

    // [{label, color}] in the table's order.
    Q_INVOKABLE [[nodiscard]] QVariantList altitudeBands() const;
    // `feet` a number, or undefined for none.
    Q_INVOKABLE [[nodiscard]] QColor altitudeColor(const QVariant &feet) const;
    Q_INVOKABLE [[nodiscard]] QColor markerBaseColor(const Aircraft &aircraft, bool colorByAltitude,
                                                     const QString &planeColorHex) const;
    Q_INVOKABLE [[nodiscard]] QColor effectiveFill(const Aircraft &aircraft, const QColor &baseColor) const;
    Q_INVOKABLE [[nodiscard]] QColor glyphColor(const QColor &fill) const;
    Q_INVOKABLE [[nodiscard]] QColor ringColor(const QColor &fill, bool strong) const;
    Q_INVOKABLE [[nodiscard]] double luminance(const QColor &color) const;
    // The colour of a text "#RRGGBB", or the given fallback when it doesn't parse.
    Q_INVOKABLE [[nodiscard]] QColor parseColor(const QString &hex, const QColor &fallback) const;
    Q_INVOKABLE [[nodiscard]] QColor systemColor(const QString &name) const;
    // White over imagery, system blue over drawn maps.
    Q_INVOKABLE [[nodiscard]] QColor rangeRingColor(const QString &styleChoice) const;
    Q_INVOKABLE [[nodiscard]] QString styleName(const QString &styleChoice) const;
    Q_INVOKABLE [[nodiscard]] QString accessibilityText(const Aircraft &aircraft,
                                                        const QString &distanceUnit) const;

    // The camera targets, as {latitude, longitude, distance, heading, pitch, durationMs, easing}, or
    // undefined when there is nothing to go to. `store` is the FlightStore.
    Q_INVOKABLE [[nodiscard]] QVariant recenterTarget(QObject *store) const;
    Q_INVOKABLE [[nodiscard]] QVariant centerOnHomeTarget(QObject *store, double cameraDistance) const;
    Q_INVOKABLE [[nodiscard]] QVariant focusOnSelectionTarget(QObject *store, double cameraDistance) const;

    // [{label, value, tooltip}] for the card; `route` a FlightRoute or undefined.
    Q_INVOKABLE [[nodiscard]] QVariantList detailRows(const Aircraft &aircraft, const QVariant &route,
                                                      const QString &distanceUnit) const;
    Q_INVOKABLE [[nodiscard]] QUrl trackUrl(const QString &hex) const;
    Q_INVOKABLE [[nodiscard]] QString trackLinkText() const;

    // Image addresses of the provider; `track` a number of degrees or undefined.
    Q_INVOKABLE [[nodiscard]] QString markerSource(const QColor &fill, bool selected, bool highContrast,
                                                   double scale, const QVariant &track, double dpr) const;
    Q_INVOKABLE [[nodiscard]] double markerCanvas(bool selected, double scale) const;
    Q_INVOKABLE [[nodiscard]] double markerFrame(bool selected, double scale) const;
    Q_INVOKABLE [[nodiscard]] QString badgeSource(bool emergency, double scale, double dpr) const;
    Q_INVOKABLE [[nodiscard]] double badgeSide(double scale) const;
    Q_INVOKABLE [[nodiscard]] QString labelSource(const QString &text, bool onImagery, double dpr) const;
    Q_INVOKABLE [[nodiscard]] QString symbolSource(const QString &name, const QColor &color, double size,
                                                   double dpr) const;
    Q_INVOKABLE [[nodiscard]] QString homeSource(double size, double dpr) const;

    // The glyph's turn for a track: track − 90 (the glyph points right at rest), in steps of two degrees
    // so that markers share images; none without a track.
    [[nodiscard]] static std::optional<int> glyphAngle(const QVariant &track);

private:
    explicit RadarSupport(QObject *parent = nullptr);
};
