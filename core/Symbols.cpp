#include "Symbols.h"

#include <QFile>
#include <QHash>
#include <QPainter>
#include <QSvgRenderer>

namespace Symbols {

namespace {

const QHash<QString, QString> &table()
{
    static const QHash<QString, QString> files{
        {u"accessibility"_qs, u"outline-accessible.svg"_qs},
        {u"airplane"_qs, u"filled-plane.svg"_qs},
        {u"airplane.circle.fill"_qs, u"filled-plane-tilt.svg"_qs},
        {u"airplane.departure"_qs, u"filled-plane-departure.svg"_qs},
        {u"antenna.radiowaves.left.and.right"_qs, u"outline-antenna.svg"_qs},
        {u"arrow.down.circle.fill"_qs, u"filled-arrow-down-circle.svg"_qs},
        {u"arrow.down.to.line"_qs, u"outline-download.svg"_qs},
        {u"bell.badge"_qs, u"filled-bell-ringing.svg"_qs},
        {u"chart.bar"_qs, u"outline-chart-bar.svg"_qs},
        {u"checkmark"_qs, u"outline-check.svg"_qs},
        {u"checkmark.circle.fill"_qs, u"filled-circle-check.svg"_qs},
        {u"circle.fill"_qs, u"filled-circle.svg"_qs},
        {u"dot.radiowaves.left.and.right"_qs, u"outline-broadcast.svg"_qs},
        {u"exclamationmark"_qs, u"outline-exclamation-mark.svg"_qs},
        {u"exclamationmark.triangle"_qs, u"outline-alert-triangle.svg"_qs},
        {u"exclamationmark.triangle.fill"_qs, u"filled-alert-triangle.svg"_qs},
        {u"fanblades"_qs, u"outline-propeller.svg"_qs},
        {u"figure.wave"_qs, u"outline-user-circle.svg"_qs},
        {u"gearshape"_qs, u"filled-settings.svg"_qs},
        {u"hand.raised"_qs, u"outline-hand-stop.svg"_qs},
        {u"headphones"_qs, u"outline-headphones.svg"_qs},
        {u"headphones.circle.fill"_qs, u"filled-headphones.svg"_qs},
        {u"house"_qs, u"outline-home.svg"_qs},
        {u"house.circle.fill"_qs, u"filled-home.svg"_qs},
        {u"house.fill"_qs, u"filled-home.svg"_qs},
        {u"info.circle"_qs, u"outline-info-circle.svg"_qs},
        {u"line.3.horizontal.decrease.circle"_qs, u"outline-filter.svg"_qs},
        {u"line.3.horizontal.decrease.circle.fill"_qs, u"filled-filter.svg"_qs},
        {u"list.bullet.rectangle"_qs, u"outline-list-details.svg"_qs},
        {u"location.fill"_qs, u"filled-location.svg"_qs},
        {u"map"_qs, u"outline-map.svg"_qs},
        {u"paperplane"_qs, u"outline-send.svg"_qs},
        {u"pause.circle"_qs, u"outline-player-pause.svg"_qs},
        {u"pause.fill"_qs, u"filled-player-pause.svg"_qs},
        {u"play.circle"_qs, u"outline-player-play.svg"_qs},
        {u"play.fill"_qs, u"filled-player-play.svg"_qs},
        {u"questionmark.circle"_qs, u"outline-help-circle.svg"_qs},
        {u"scope"_qs, u"outline-focus-2.svg"_qs},
        {u"shield"_qs, u"outline-shield.svg"_qs},
        {u"shield.fill"_qs, u"filled-shield.svg"_qs},
        {u"sidebar.left"_qs, u"outline-layout-sidebar.svg"_qs},
        {u"sparkles"_qs, u"filled-sparkles.svg"_qs},
        {u"speaker.fill"_qs, u"outline-volume-3.svg"_qs},
        {u"speaker.wave.3.fill"_qs, u"outline-volume.svg"_qs},
        {u"square.3.layers.3d"_qs, u"filled-stack-2.svg"_qs},
        {u"square.grid.2x2"_qs, u"filled-layout-grid.svg"_qs},
        {u"star.fill"_qs, u"filled-star.svg"_qs},
        {u"stop.circle.fill"_qs, u"filled-player-stop.svg"_qs},
        {u"trash"_qs, u"outline-trash.svg"_qs},
        {u"waveform"_qs, u"outline-wave-sine.svg"_qs},
        {u"wifi.exclamationmark"_qs, u"outline-wifi-off.svg"_qs},
        {u"xmark.circle.fill"_qs, u"filled-circle-x.svg"_qs},
    };
    return files;
}

} // namespace

QStringList names()
{
    QStringList all = table().keys();
    all.sort();
    return all;
}

QString resourcePath(const QString &name)
{
    const auto it = table().constFind(name);
    return it == table().constEnd() ? QString() : u":/aerolume/icons/"_qs + *it;
}

QImage render(const QString &name, const QSize &size, const QColor &color)
{
    QImage image(size.expandedTo(QSize(1, 1)), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QFile file(resourcePath(name));
    if (!file.open(QIODevice::ReadOnly))
        return image;
    QByteArray svg = file.readAll();
    svg.replace("currentColor", color.name(QColor::HexRgb).toLatin1());
    QSvgRenderer renderer(svg);
    if (!renderer.isValid())
        return image;
    QSizeF fitted = renderer.defaultSize();
    fitted.scale(QSizeF(size), Qt::KeepAspectRatio);
    const QRectF target((size.width() - fitted.width()) / 2.0, (size.height() - fitted.height()) / 2.0,
                        fitted.width(), fitted.height());
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(color.alphaF());
    renderer.render(&painter, target);
    return image;
}

} // namespace Symbols
