#pragma once

#include "SharedState.h"
#include "SkyEntry.h"

#include <QDBusConnection>
#include <QDateTime>
#include <QFileSystemWatcher>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <functional>
#include <optional>

class FeedFetch;

// The widgets' view of the sky, kept by the widget program itself so that widgets work while the
// application is closed. It reads the file the application shares, fetches from the feed networks,
// and refreshes every five minutes, whenever that file changes, and when the application asks for it
// on the session bus.
class SkyTimeline : public QObject
{
    Q_OBJECT
    Q_PROPERTY(SkyEntry entry READ entry NOTIFY entryChanged)

public:
    using Clock = std::function<QDateTime()>;

    static constexpr int refreshIntervalMs = 5 * 60 * 1000;
    // Several change notices of one write (the new file, its rename) make one refresh.
    static constexpr int settleMs = 100;

    explicit SkyTimeline(QObject *parent = nullptr);
    SkyTimeline(QDBusConnection bus, Clock clock, QObject *parent = nullptr);
    ~SkyTimeline() override;

    // Reads the file and fetches, then keeps watching. The entry before is an empty sky without home.
    void start();

    [[nodiscard]] const SkyEntry &entry() const { return m_entry; }
    [[nodiscard]] int refreshInterval() const { return m_timer.interval(); }
    void setRefreshInterval(int ms) { m_timer.setInterval(ms); }
    // Whether the application's reload signal reaches this timeline.
    [[nodiscard]] bool isListening() const { return m_listening; }

public slots:
    // Reads the file again and fetches now.
    void reload();

signals:
    void entryChanged();
    // One refresh is over: its fetch answered or failed, or there was nothing to fetch.
    void refreshed();

private:
    void scheduleReload();
    void watchFile();
    void setEntry(const SkyEntry &entry);
    [[nodiscard]] SkyEntry entryFor(const SharedState::Config &config, QDateTime date,
                                    QList<Aircraft> aircraft) const;

    QDBusConnection m_bus;
    Clock m_clock;
    bool m_listening = false;
    QTimer m_timer;
    QTimer m_settle;
    QFileSystemWatcher m_watcher;
    std::optional<SharedState::Config> m_config;
    QPointer<FeedFetch> m_fetch;
    SkyEntry m_entry;
};
