#pragma once

#include "Appcast.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <chrono>
#include <functional>
#include <optional>

class DefaultsStore;
class QNetworkAccessManager;
class ServiceRequest;

// News of a newer release, told gently. Quiet checks of the appcast (5 s after start, 3 s after an
// update session ends, and once a day while the program runs) never open a window: they only set
// `updateAvailable` and `availableVersion`, which the list's sidebar shows as a banner. The user opens a
// session from that banner or the Help menu; the session is the update dialog, and opening it counts as
// the user's attention, which takes the banner away.
//
// `updateAvailable` and `availableVersion` change together and announce themselves with one signal, so
// no reader ever sees the one without the other.
class UpdaterModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool updateAvailable READ updateAvailable NOTIFY updateChanged)
    // Empty while no update is known.
    Q_PROPERTY(QString availableVersion READ availableVersionText NOTIFY updateChanged)
    Q_PROPERTY(bool hasFeed READ hasFeed CONSTANT)
    Q_PROPERTY(QString currentVersion READ currentVersion CONSTANT)
    Q_PROPERTY(bool automaticallyChecksForUpdates READ automaticallyChecksForUpdates WRITE
                   setAutomaticallyChecksForUpdates NOTIFY automaticallyChecksForUpdatesChanged)
    Q_PROPERTY(bool sessionInProgress READ sessionInProgress NOTIFY sessionChanged)
    Q_PROPERTY(SessionState sessionState READ sessionState NOTIFY sessionChanged)
    // The release the session found: empty unless sessionState is UpdateFound.
    Q_PROPERTY(QString sessionVersion READ sessionVersion NOTIFY sessionChanged)
    Q_PROPERTY(QString releaseNotes READ releaseNotes NOTIFY sessionChanged)
    Q_PROPERTY(QString releaseNotesLink READ releaseNotesLink NOTIFY sessionChanged)
    Q_PROPERTY(QString downloadPage READ downloadPage NOTIFY sessionChanged)

public:
    enum class SessionState
    {
        Idle,
        Checking,
        UpdateFound,
        UpToDate,
        Failed
    };
    Q_ENUM(SessionState)

    // Runs `action` once after `delay`, on the event loop of the model.
    using Schedule = std::function<void(std::chrono::milliseconds delay, std::function<void()> action)>;

    struct Dependencies
    {
        QString feedUrl;        // empty: no feed, nothing is ever fetched
        QString currentVersion; // the release this program is
        DefaultsStore *defaults = nullptr;
        QNetworkAccessManager *network = nullptr; // null: the shared client
        Schedule schedule;                        // null: real timers
        std::chrono::milliseconds launchDelay{5000};
        std::chrono::milliseconds sessionEndDelay{3000};
        std::chrono::milliseconds scheduledInterval{24 * 60 * 60 * 1000};
        int timeoutMs = 8000;
    };

    static constexpr const char *automaticChecksKey = "automaticallyChecksForUpdates";
    static constexpr const char *skippedVersionKey = "skippedUpdateVersion";

    // Made on first use with the built-in feed, the program's version and the shared defaults store.
    [[nodiscard]] static UpdaterModel *shared();
    [[nodiscard]] static Dependencies defaultDependencies();

    explicit UpdaterModel(Dependencies dependencies, QObject *parent = nullptr);
    ~UpdaterModel() override;

    [[nodiscard]] bool updateAvailable() const { return m_updateAvailable; }
    [[nodiscard]] std::optional<QString> availableVersion() const { return m_availableVersion; }
    [[nodiscard]] QString availableVersionText() const { return m_availableVersion.value_or(QString()); }
    [[nodiscard]] bool hasFeed() const { return !m_dependencies.feedUrl.isEmpty(); }
    [[nodiscard]] QString currentVersion() const { return m_dependencies.currentVersion; }

    // Read from the defaults store at the moment of use; true unless switched off.
    [[nodiscard]] bool automaticallyChecksForUpdates() const;
    void setAutomaticallyChecksForUpdates(bool on);
    [[nodiscard]] std::optional<QString> skippedVersion() const;

    [[nodiscard]] bool sessionInProgress() const { return m_sessionState != SessionState::Idle; }
    [[nodiscard]] SessionState sessionState() const { return m_sessionState; }
    [[nodiscard]] QString sessionVersion() const
    {
        return m_sessionItem ? m_sessionItem->displayVersion : QString();
    }
    [[nodiscard]] QString releaseNotes() const
    {
        return m_sessionItem ? m_sessionItem->releaseNotes : QString();
    }
    [[nodiscard]] QString releaseNotesLink() const
    {
        return m_sessionItem ? m_sessionItem->releaseNotesLink : QString();
    }
    [[nodiscard]] QString downloadPage() const
    {
        return m_sessionItem ? m_sessionItem->downloadPage() : QString();
    }

    // The user-driven check: opens a session (announced by sessionStarted, which the dialog answers by
    // showing itself) and checks the feed for it. With a session open already, asks for it to be shown.
    Q_INVOKABLE void checkForUpdates();
    // The session's end, however it ends: clears the banner and probes again shortly after.
    Q_INVOKABLE void endSession();
    Q_INVOKABLE void remindMeLater();
    // Remembers the found release so that it never raises the banner again, and ends the session.
    Q_INVOKABLE void skipThisVersion();

    // A check without any window, unless automatic checks are off or a session is open.
    void probeQuietly();

signals:
    void updateChanged();
    void automaticallyChecksForUpdatesChanged();
    void sessionChanged();
    void sessionStarted();
    // A quiet check has had its answer, or its failure, and the banner shows what it said.
    void quietCheckFinished(bool succeeded);
    // checkForUpdates() while a session is open: bring its window to the front.
    void sessionRaiseRequested();

private:
    void set(const QString &version);
    void clear();
    void setSession(SessionState state, std::optional<AppcastItem> item);
    void scheduleDailyCheck();
    void schedule(std::chrono::milliseconds delay, std::function<void()> action);
    void onQuietAnswer(const std::optional<QByteArray> &body);
    void onSessionAnswer(const std::optional<QByteArray> &body);
    ServiceRequest *fetch(void (UpdaterModel::*handler)(const std::optional<QByteArray> &));

    Dependencies m_dependencies;
    bool m_updateAvailable = false;
    std::optional<QString> m_availableVersion;
    SessionState m_sessionState = SessionState::Idle;
    std::optional<AppcastItem> m_sessionItem;
    QPointer<ServiceRequest> m_quietRequest;
    QPointer<ServiceRequest> m_sessionRequest;
};
