#pragma once

#include "SkySimModule.h"

#include <QByteArray>
#include <QCache>
#include <QString>

class SourceBoard;

// Map tiles in the XYZ Web Mercator grid, drawn on request (see TileRenderer), in the URL orders of the
// real tile servers:
//   GET /tiles/standard/Z/X/Y.png     the street map, z/x/y as OpenStreetMap's tile servers have it
//   GET /tiles/imagery/Z/Y/X          imagery, row before column as Esri's tile services have it
//   GET /tiles/labels/Z/Y/X           transparent labels to lay over the imagery, in Esri's order too
// Each answer is a 256 x 256 PNG with "Cache-Control: max-age=604800", an ETag and a Last-Modified; a
// request with a matching If-None-Match, or an If-Modified-Since not before the Last-Modified, gets a
// 304. Zoom runs from 0 to 19 and X and Y from 0 to 2^Z - 1; anything outside, or any other path under
// /tiles/, is a 404. Faults of the source "tiles" apply; "malformed" sends an HTML page as the PNG.
// The last few megabytes of tiles drawn are kept.
class TileModule : public SkySimModule
{
public:
    [[nodiscard]] static QString source() { return QStringLiteral("tiles"); }
    // The date every tile claims to be from.
    static constexpr const char *lastModified = "Mon, 01 Jan 2024 00:00:00 GMT";

    explicit TileModule(SourceBoard &sources);

    [[nodiscard]] std::optional<SkySimReply> handle(const SkySimRequest &request) override;

    // The URL templates that point a tile client at a server with this base address.
    [[nodiscard]] static QString standardTemplate(const QString &baseUrl);
    [[nodiscard]] static QString imageryTemplate(const QString &baseUrl);
    [[nodiscard]] static QString labelsTemplate(const QString &baseUrl);

private:
    [[nodiscard]] QByteArray tile(const QString &set, int zoom, int x, int y);

    SourceBoard &m_sources;
    QCache<QString, QByteArray> m_drawn; // PNGs by set and coordinates; a map view asks for the same again
};
