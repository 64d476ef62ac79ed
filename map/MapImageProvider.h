#pragma once

#include <QColor>
#include <QImage>
#include <QQuickImageProvider>
#include <QString>

// Draws the map's small images once each, for all the markers that share them: a marker (shadow, disc,
// ring and turned glyph in one image, so that thousands of markers are one image node each), the status
// badge, the title under a marker, the home pin and plain symbols. Ids are paths, built by the helpers
// below; sizes are logical points and the last part of every id is the device pixel ratio.
class MapImageProvider : public QQuickImageProvider
{
public:
    static constexpr const char *providerId = "aerolume-map";

    MapImageProvider();

    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;

    // marker/FILL/SELECTED/CONTRAST/SCALE/ANGLE/DPR; ANGLE "none" leaves the glyph pointing right.
    [[nodiscard]] static QString markerId(const QColor &fill, bool selected, bool highContrast, double scale,
                                          std::optional<int> angle, double dpr);
    // The side of a marker image in points: its frame and room for the shadow around it.
    [[nodiscard]] static double markerCanvas(bool selected, double scale);
    [[nodiscard]] static double markerFrame(bool selected, double scale);
    // badge/emergency|military/SCALE/DPR
    [[nodiscard]] static QString badgeId(bool emergency, double scale, double dpr);
    [[nodiscard]] static double badgeSide(double scale);
    // label/TEXT/light|dark/DPR: light text on a dark halo for imagery, dark on a light halo otherwise.
    [[nodiscard]] static QString labelId(const QString &text, bool onImagery, double dpr);
    // symbol/NAME/COLOR/SIZE/DPR
    [[nodiscard]] static QString symbolId(const QString &name, const QColor &color, double size, double dpr);
    // home/SIZE/DPR
    [[nodiscard]] static QString homeId(double size, double dpr);

    [[nodiscard]] static QImage marker(const QColor &fill, bool selected, bool highContrast, double scale,
                                       std::optional<int> angle, double dpr);
    [[nodiscard]] static QImage badge(bool emergency, double scale, double dpr);
    [[nodiscard]] static QImage label(const QString &text, bool onImagery, double dpr);
    [[nodiscard]] static QImage home(double size, double dpr);
};
