#include "SkyTimeline.h"

#include "ADSB.h"
#include "FeedFetch.h"
#include "WidgetReloader.h"

#include <QDir>
#include <QFileInfo>

SkyTimeline::SkyTimeline(QObject *parent)
    : SkyTimeline(
          QDBusConnection::sessionBus(), [] { return QDateTime::currentDateTime(); }, parent)
{
}

SkyTimeline::SkyTimeline(QDBusConnection bus, Clock clock, QObject *parent)
    : QObject(parent), m_bus(std::move(bus)), m_clock(std::move(clock))
{
    m_timer.setInterval(refreshIntervalMs);
    connect(&m_timer, &QTimer::timeout, this, &SkyTimeline::reload);
    m_settle.setSingleShot(true);
    m_settle.setInterval(settleMs);
    connect(&m_settle, &QTimer::timeout, this, &SkyTimeline::reload);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &SkyTimeline::scheduleReload);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &SkyTimeline::scheduleReload);
}

SkyTimeline::~SkyTimeline()
{
    if (m_fetch)
        m_fetch->cancel();
}

void SkyTimeline::start()
{
    // Without a session bus the widgets still refresh on their own schedule and on file changes.
    if (m_bus.isConnected()) {
        m_listening =
            m_bus.connect(QString(), WidgetReloader::path.toString(), WidgetReloader::interface.toString(),
                          WidgetReloader::signal.toString(), this, SLOT(reload()));
    }
    reload();
}

void SkyTimeline::scheduleReload()
{
    m_settle.start();
}

void SkyTimeline::watchFile()
{
    // A write replaces the file, which ends the watch on it, and the folder may not exist yet: watch the
    // file, its folder, or the nearest folder above that exists, whichever are there now.
    const QStringList watched = m_watcher.files() + m_watcher.directories();
    if (!watched.isEmpty())
        m_watcher.removePaths(watched);
    const QString file = SharedState::filePath();
    if (QFileInfo::exists(file))
        m_watcher.addPath(file);
    QDir folder(SharedState::directory());
    while (!folder.exists() && !folder.isRoot()) {
        if (!folder.cdUp())
            break;
    }
    if (folder.exists())
        m_watcher.addPath(folder.absolutePath());
}

void SkyTimeline::reload()
{
    m_settle.stop();
    m_timer.start(); // the next scheduled refresh counts from this one
    watchFile();
    if (m_fetch) {
        m_fetch->cancel();
        m_fetch = nullptr;
    }

    const std::optional<SharedState::Config> previous = m_config;
    m_config = SharedState::read();
    if (!m_config) {
        setEntry(SkyEntry(m_clock(), {}, 0, std::nullopt, false, u"mi"_qs, std::nullopt));
        emit refreshed();
        return;
    }

    // New settings show at once; the aircraft stay only while they were fetched for the same sky.
    const bool sameSky =
        previous && previous->home == m_config->home && previous->radiusNM == m_config->radiusNM;
    if (sameSky)
        setEntry(entryFor(*m_config, m_entry.date(), m_entry.aircraft()));
    else
        setEntry(entryFor(*m_config, m_clock(), {}));

    const SharedState::Config config = *m_config;
    m_fetch = ADSB::fetch(config.home, config.radiusNM, this);
    connect(m_fetch, &FeedFetch::succeeded, this, [this, config](const ADSB::FetchResult &result) {
        m_fetch = nullptr;
        setEntry(entryFor(config, m_clock(), result.aircraft));
        emit refreshed();
    });
    // A failed fetch keeps what was shown, with the time it was true; widgets have no error state.
    connect(m_fetch, &FeedFetch::failed, this, [this] {
        m_fetch = nullptr;
        emit refreshed();
    });
}

SkyEntry SkyTimeline::entryFor(const SharedState::Config &config, QDateTime date,
                               QList<Aircraft> aircraft) const
{
    return SkyEntry(std::move(date), std::move(aircraft), config.radiusNM, config.home, false,
                    config.distanceUnit.value_or(u"mi"_qs), config.widgetColorHex);
}

void SkyTimeline::setEntry(const SkyEntry &entry)
{
    if (entry == m_entry)
        return;
    m_entry = entry;
    emit entryChanged();
}
