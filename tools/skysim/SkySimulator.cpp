#include "SkySimulator.h"

#include "ControlModule.h"
#include "FeedModule.h"
#include "SkySimServer.h"

#include <QDateTime>

SkySimulator::SkySimulator(const SkySimOptions &options, QObject *parent)
    : QObject(parent),
      m_clock(options.startEpochMs.value_or(QDateTime::currentMSecsSinceEpoch()), options.frozen),
      m_sky(options.seed, options.count, options.spreadNM, options.centre), m_server(new SkySimServer)
{
    m_sources.addSource(FeedModule::primarySource(), options.primaryFault);
    m_sources.addSource(FeedModule::fallbackSource(), options.fallbackFault);
    m_server->router().add(std::make_unique<FeedModule>(m_sky, m_clock, m_sources, options.primaryListKey,
                                                        options.fallbackListKey));
    m_control =
        &m_server->router().add(std::make_unique<ControlModule>(m_sky, m_clock, m_sources, options.count));
}

SkySimulator::~SkySimulator() = default;

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
    return u"export AEROLUME_PRIMARY_FEED_URL=%1\nexport AEROLUME_FALLBACK_FEED_URL=%1\n"_qs.arg(baseUrl());
}
