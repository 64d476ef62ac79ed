#include "TileSources.h"

#include <QtGlobal>

namespace TileSources {

namespace {

QString fromEnvironment(const char *variable, const QString &fallback)
{
    const QString value = qEnvironmentVariable(variable).trimmed();
    return value.isEmpty() ? fallback : value;
}

const QString osmCredit = u"© OpenStreetMap contributors"_qs;
const QString esriCredit =
    u"Tiles © Esri — Source: Esri, Maxar, Earthstar Geographics, and the GIS User Community"_qs;

} // namespace

TileSource standard()
{
    return {
        u"standard"_qs,
        fromEnvironment("AEROLUME_TILE_URL_STANDARD", u"https://tile.openstreetmap.org/{z}/{x}/{y}.png"_qs),
        fromEnvironment("AEROLUME_TILE_ATTRIBUTION_STANDARD", osmCredit),
        0,
        19,
        false};
}

TileSource imagery()
{
    return {
        u"imagery"_qs,
        fromEnvironment(
            "AEROLUME_TILE_URL_IMAGERY",
            u"https://server.arcgisonline.com/ArcGIS/rest/services/World_Imagery/MapServer/tile/{z}/{y}/{x}"_qs),
        fromEnvironment("AEROLUME_TILE_ATTRIBUTION_IMAGERY", esriCredit),
        0,
        19,
        false};
}

TileSource labels()
{
    return {
        u"labels"_qs,
        fromEnvironment(
            "AEROLUME_TILE_URL_LABELS",
            u"https://server.arcgisonline.com/ArcGIS/rest/services/Reference/World_Boundaries_and_Places/MapServer/tile/{z}/{y}/{x}"_qs),
        fromEnvironment("AEROLUME_TILE_ATTRIBUTION_LABELS", esriCredit),
        0,
        19,
        false};
}

QList<TileSource> layers(const QString &styleChoice)
{
    if (styleChoice == u"muted") {
        TileSource muted = standard();
        muted.muted = true;
        return {muted};
    }
    if (styleChoice == u"imagery")
        return {imagery()};
    if (styleChoice == u"hybrid")
        return {imagery(), labels()};
    return {standard()};
}

QString attribution(const QString &styleChoice)
{
    QStringList credits;
    for (const TileSource &source : layers(styleChoice)) {
        if (!source.attribution.isEmpty() && !credits.contains(source.attribution))
            credits.append(source.attribution);
    }
    return credits.join(u" · "_qs);
}

QString styleName(const QString &styleChoice)
{
    if (styleChoice == u"muted")
        return u"Muted"_qs;
    if (styleChoice == u"imagery")
        return u"Satellite"_qs;
    if (styleChoice == u"hybrid")
        return u"Hybrid"_qs;
    return u"Standard"_qs;
}

} // namespace TileSources
