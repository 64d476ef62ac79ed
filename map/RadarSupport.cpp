#include "RadarSupport.h"

#include "AltitudeColors.h"
#include "CameraOperations.h"
#include "ColorHex.h"
#include "FlightRoute.h"
#include "FlightStore.h"
#include "MapImageProvider.h"
#include "MarkerColors.h"
#include "RadarTexts.h"
#include "SystemColors.h"
#include "TileSources.h"

#include <QQmlEngine>
#include <cmath>

namespace {

QVariant targetMap(const std::optional<CameraOperations::Target> &target)
{
    if (!target)
        return {};
    return QVariantMap{{u"latitude"_qs, target->latitude}, {u"longitude"_qs, target->longitude},
                       {u"distance"_qs, target->distance}, {u"heading"_qs, target->heading},
                       {u"pitch"_qs, target->pitch},       {u"durationMs"_qs, target->durationMs},
                       {u"easing"_qs, int(target->easing)}};
}

QString imageUrl(const QString &id)
{
    return u"image://"_qs + QLatin1StringView(MapImageProvider::providerId) + u'/' + id;
}

} // namespace

RadarSupport::RadarSupport(QObject *parent) : QObject(parent) {}

RadarSupport *RadarSupport::create(QQmlEngine *engine, QJSEngine *)
{
    const QString id = QLatin1StringView(MapImageProvider::providerId);
    if (engine && !engine->imageProvider(id))
        engine->addImageProvider(id, new MapImageProvider);
    return new RadarSupport;
}

QVariantList RadarSupport::altitudeBands() const
{
    QVariantList list;
    for (const AltitudeColors::Band &band : AltitudeColors::bands())
        list.append(QVariantMap{{u"label"_qs, band.label}, {u"color"_qs, band.color}});
    return list;
}

QColor RadarSupport::altitudeColor(const QVariant &feet) const
{
    bool ok = false;
    const double value = feet.toDouble(&ok);
    if (!feet.isValid() || feet.isNull() || !ok || !std::isfinite(value))
        return SystemColors::gray();
    return AltitudeColors::color(qint64(std::floor(value)), SystemColors::gray());
}

QColor RadarSupport::markerBaseColor(const Aircraft &aircraft, bool colorByAltitude,
                                     const QString &planeColorHex) const
{
    return MarkerColors::baseColor(aircraft, colorByAltitude, planeColorHex);
}

QColor RadarSupport::effectiveFill(const Aircraft &aircraft, const QColor &baseColor) const
{
    return MarkerColors::effectiveFill(aircraft, baseColor);
}

QColor RadarSupport::glyphColor(const QColor &fill) const
{
    return MarkerColors::glyphColor(fill);
}

QColor RadarSupport::ringColor(const QColor &fill, bool strong) const
{
    return MarkerColors::ringColor(fill, strong);
}

double RadarSupport::luminance(const QColor &color) const
{
    return ColorHex::luminance(color);
}

QColor RadarSupport::parseColor(const QString &hex, const QColor &fallback) const
{
    return ColorHex::color(hex).value_or(fallback);
}

QColor RadarSupport::systemColor(const QString &name) const
{
    if (name == u"red")
        return SystemColors::red();
    if (name == u"orange")
        return SystemColors::orange();
    if (name == u"blue")
        return SystemColors::blue();
    if (name == u"green")
        return SystemColors::green();
    return SystemColors::gray();
}

QColor RadarSupport::rangeRingColor(const QString &styleChoice) const
{
    return styleChoice == u"imagery" || styleChoice == u"hybrid" ? QColor(Qt::white) : SystemColors::blue();
}

QString RadarSupport::styleName(const QString &styleChoice) const
{
    return TileSources::styleName(styleChoice);
}

QString RadarSupport::accessibilityText(const Aircraft &aircraft, const QString &distanceUnit) const
{
    return aircraft.accessibilityText(distanceUnit);
}

QVariant RadarSupport::recenterTarget(QObject *store) const
{
    const auto *flights = qobject_cast<FlightStore *>(store);
    return flights ? targetMap(CameraOperations::recenter(flights->home(), flights->radiusNM())) : QVariant();
}

QVariant RadarSupport::centerOnHomeTarget(QObject *store, double cameraDistance) const
{
    const auto *flights = qobject_cast<FlightStore *>(store);
    return flights ? targetMap(
                         CameraOperations::centerOnHome(flights->home(), flights->radiusNM(), cameraDistance))
                   : QVariant();
}

QVariant RadarSupport::focusOnSelectionTarget(QObject *store, double cameraDistance) const
{
    const auto *flights = qobject_cast<FlightStore *>(store);
    return flights ? targetMap(CameraOperations::focusOnSelection(flights->selectedAircraft(),
                                                                  flights->radiusNM(), cameraDistance))
                   : QVariant();
}

QVariantList RadarSupport::detailRows(const Aircraft &aircraft, const QVariant &route,
                                      const QString &distanceUnit) const
{
    std::optional<FlightRoute> known;
    if (route.canConvert<FlightRoute>() && route.metaType() == QMetaType::fromType<FlightRoute>())
        known = route.value<FlightRoute>();
    QVariantList rows;
    for (const RadarTexts::DetailRow &row : RadarTexts::detailRows(aircraft, known, distanceUnit))
        rows.append(
            QVariantMap{{u"label"_qs, row.label}, {u"value"_qs, row.value}, {u"tooltip"_qs, row.tooltip}});
    return rows;
}

QUrl RadarSupport::trackUrl(const QString &hex) const
{
    return RadarTexts::trackUrl(hex);
}

QString RadarSupport::trackLinkText() const
{
    return RadarTexts::trackLinkText();
}

std::optional<int> RadarSupport::glyphAngle(const QVariant &track)
{
    bool ok = false;
    const double degrees = track.toDouble(&ok);
    if (!track.isValid() || track.isNull() || !ok || !std::isfinite(degrees))
        return std::nullopt;
    const int step = 2 * int(std::lround((degrees - 90.0) / 2.0));
    return ((step % 360) + 360) % 360;
}

QString RadarSupport::markerSource(const QColor &fill, bool selected, bool highContrast, double scale,
                                   const QVariant &track, double dpr) const
{
    return imageUrl(MapImageProvider::markerId(fill, selected, highContrast, scale, glyphAngle(track), dpr));
}

double RadarSupport::markerCanvas(bool selected, double scale) const
{
    return MapImageProvider::markerCanvas(selected, scale);
}

double RadarSupport::markerFrame(bool selected, double scale) const
{
    return MapImageProvider::markerFrame(selected, scale);
}

QString RadarSupport::badgeSource(bool emergency, double scale, double dpr) const
{
    return imageUrl(MapImageProvider::badgeId(emergency, scale, dpr));
}

double RadarSupport::badgeSide(double scale) const
{
    return MapImageProvider::badgeSide(scale);
}

QString RadarSupport::labelSource(const QString &text, bool onImagery, double dpr) const
{
    return imageUrl(MapImageProvider::labelId(text, onImagery, dpr));
}

QString RadarSupport::symbolSource(const QString &name, const QColor &color, double size, double dpr) const
{
    return imageUrl(MapImageProvider::symbolId(name, color, size, dpr));
}

QString RadarSupport::homeSource(double size, double dpr) const
{
    return imageUrl(MapImageProvider::homeId(size, dpr));
}
