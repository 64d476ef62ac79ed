#include "SkySimulator.h"

#include "ControlModule.h"
#include "FeedModule.h"
#include "GeocoderModule.h"
#include "PhotoModule.h"
#include "RouteModule.h"
#include "SkySimServer.h"
#include "StreamModule.h"
#include "TileModule.h"
#include "UpdateFeedModule.h"

#include <QDateTime>

SkySimulator::SkySimulator(const SkySimOptions &options, QObject *parent)
    : QObject(parent),
      m_clock(options.startEpochMs.value_or(QDateTime::currentMSecsSinceEpoch()), options.frozen),
      m_sky(options.seed, options.count, options.spreadNM, options.centre), m_index(m_sky, m_clock),
      m_offer(options.updateVersion), m_server(new SkySimServer)
{
    for (const QString &source : sourceNames())
        m_sources.addSource(source);
    m_sources.addSource(FeedModule::primarySource(), options.primaryFault);
    m_sources.addSource(FeedModule::fallbackSource(), options.fallbackFault);
    for (const auto &[source, fault] : options.faults)
        m_sources.addSource(source, fault);

    const auto base = [this] { return baseUrl(); };
    SkySimRouter &router = m_server->router();
    router.add(std::make_unique<FeedModule>(m_sky, m_clock, m_sources, options.primaryListKey,
                                            options.fallbackListKey));
    router.add(std::make_unique<RouteModule>(m_index, m_sources));
    router.add(std::make_unique<PhotoModule>(m_index, m_sources, base));
    router.add(std::make_unique<TileModule>(m_sources));
    router.add(std::make_unique<GeocoderModule>(m_sources));
    router.add(std::make_unique<UpdateFeedModule>(m_offer, m_clock, m_sources, base));
    m_control =
        &router.add(std::make_unique<ControlModule>(m_sky, m_clock, m_sources, m_offer, options.count));
    // Last: it claims single-segment paths such as /KPDX_TWR and any /NAME.pls.
    router.add(std::make_unique<StreamModule>(m_sources, base));
}

SkySimulator::~SkySimulator() = default;

QStringList SkySimulator::sourceNames()
{
    return {FeedModule::primarySource(), FeedModule::fallbackSource(), RouteModule::source(),
            PhotoModule::source(),       StreamModule::source(),       TileModule::source(),
            GeocoderModule::source(),    UpdateFeedModule::source()};
}

bool SkySimulator::listen(quint16 port)
{
    return m_server->listen(port);
}

quint16 SkySimulator::port() const
{
    return m_server->serverPort();
}

QString SkySimulator::errorString() const
{
    return m_server->errorString();
}

QString SkySimulator::baseUrl() const
{
    return u"http://127.0.0.1:%1"_qs.arg(port());
}

QString SkySimulator::environmentLines() const
{
    const QString base = baseUrl();
    QStringList lines;
    for (const char *variable :
         {"AEROLUME_PRIMARY_FEED_URL", "AEROLUME_FALLBACK_FEED_URL", "AEROLUME_ROUTE_URL",
          "AEROLUME_PHOTO_URL", "AEROLUME_STREAM_URL", "AEROLUME_GEOCODER_URL"})
        lines.append(u"export %1=%2"_qs.arg(QLatin1StringView(variable), base));
    // Stated even though it is the default: a value left over in the shell that 127.0.0.1 ends with
    // would upgrade the playlists' plain-http addresses to https, which the simulator doesn't speak.
    lines.append(u"export AEROLUME_TOWERFEEDS_DOMAIN=liveatc.net"_qs);
    // Quoted, so that no shell reads the braces.
    lines.append(u"export AEROLUME_TILE_URL_STANDARD='%1'"_qs.arg(TileModule::standardTemplate(base)));
    lines.append(u"export AEROLUME_TILE_URL_IMAGERY='%1'"_qs.arg(TileModule::imageryTemplate(base)));
    lines.append(u"export AEROLUME_TILE_URL_LABELS='%1'"_qs.arg(TileModule::labelsTemplate(base)));
    lines.append(u"export AEROLUME_UPDATE_FEED_URL=%1/appcast.xml"_qs.arg(base));
    return lines.join(u'\n') + u'\n';
}
