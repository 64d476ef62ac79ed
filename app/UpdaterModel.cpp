#include "UpdaterModel.h"

#include "AppLinks.h"
#include "DefaultsStore.h"
#include "ServiceRequest.h"
#include "VersionNumber.h"

#include <QTimer>

namespace {

// An appcast lists a handful of releases; anything this big is not one.
constexpr qint64 maxFeedBytes = 4 * 1024 * 1024;

} // namespace

UpdaterModel *UpdaterModel::shared()
{
    static UpdaterModel *model = new UpdaterModel(defaultDependencies());
    return model;
}

UpdaterModel::Dependencies UpdaterModel::defaultDependencies()
{
    Dependencies dependencies;
    dependencies.feedUrl = AppLinks::updateFeed();
    dependencies.currentVersion = QStringLiteral(AEROLUME_VERSION);
    dependencies.defaults = DefaultsStore::shared();
    return dependencies;
}

UpdaterModel::UpdaterModel(Dependencies dependencies, QObject *parent)
    : QObject(parent), m_dependencies(std::move(dependencies))
{
    if (m_dependencies.defaults) {
        connect(m_dependencies.defaults, &DefaultsStore::changed, this, [this](const QString &key) {
            if (key == QLatin1StringView(automaticChecksKey))
                emit automaticallyChecksForUpdatesChanged();
        });
    }
    if (!hasFeed())
        return;
    // The first look at the feed waits until the program has settled.
    schedule(m_dependencies.launchDelay, [this] { probeQuietly(); });
    scheduleDailyCheck();
}

UpdaterModel::~UpdaterModel()
{
    if (m_quietRequest)
        m_quietRequest->abort();
    if (m_sessionRequest)
        m_sessionRequest->abort();
}

void UpdaterModel::schedule(std::chrono::milliseconds delay, std::function<void()> action)
{
    if (m_dependencies.schedule)
        m_dependencies.schedule(delay, std::move(action));
    else
        QTimer::singleShot(delay, this, std::move(action));
}

void UpdaterModel::scheduleDailyCheck()
{
    schedule(m_dependencies.scheduledInterval, [this] {
        probeQuietly();
        scheduleDailyCheck();
    });
}

bool UpdaterModel::automaticallyChecksForUpdates() const
{
    const QString key = QString::fromLatin1(automaticChecksKey);
    if (!m_dependencies.defaults || !m_dependencies.defaults->contains(key))
        return true;
    return m_dependencies.defaults->boolValue(key);
}

void UpdaterModel::setAutomaticallyChecksForUpdates(bool on)
{
    if (m_dependencies.defaults)
        m_dependencies.defaults->setValue(QString::fromLatin1(automaticChecksKey), on);
}

std::optional<QString> UpdaterModel::skippedVersion() const
{
    if (!m_dependencies.defaults)
        return std::nullopt;
    return m_dependencies.defaults->stringValue(QString::fromLatin1(skippedVersionKey));
}

void UpdaterModel::set(const QString &version)
{
    if (m_updateAvailable && m_availableVersion == version)
        return;
    m_updateAvailable = true;
    m_availableVersion = version;
    emit updateChanged();
}

void UpdaterModel::clear()
{
    if (!m_updateAvailable && !m_availableVersion)
        return;
    m_updateAvailable = false;
    m_availableVersion.reset();
    emit updateChanged();
}

void UpdaterModel::setSession(SessionState state, std::optional<AppcastItem> item)
{
    m_sessionState = state;
    m_sessionItem = std::move(item);
    emit sessionChanged();
}

ServiceRequest *UpdaterModel::fetch(void (UpdaterModel::*handler)(const std::optional<QByteArray> &))
{
    ServiceRequest::Options options;
    options.timeoutMs = m_dependencies.timeoutMs;
    options.maxBodyBytes = maxFeedBytes;
    return ServiceRequest::get(
        m_dependencies.feedUrl, options,
        [this, handler](std::optional<QByteArray> body) { (this->*handler)(body); }, this,
        m_dependencies.network);
}

void UpdaterModel::probeQuietly()
{
    if (!hasFeed() || !automaticallyChecksForUpdates() || sessionInProgress())
        return;
    if (m_quietRequest)
        m_quietRequest->abort();
    m_quietRequest = fetch(&UpdaterModel::onQuietAnswer);
}

void UpdaterModel::onQuietAnswer(const std::optional<QByteArray> &body)
{
    m_quietRequest.clear();
    // A failed check says nothing about the releases: what is shown stays.
    const auto items = body ? Appcast::parse(*body) : std::nullopt;
    if (!items) {
        emit quietCheckFinished(false);
        return;
    }
    const auto update = Appcast::newestUpdate(*items, m_dependencies.currentVersion);
    const auto skipped = skippedVersion();
    if (update && !(skipped && VersionNumber::compare(update->version, *skipped) <= 0))
        set(update->displayVersion);
    else
        clear();
    emit quietCheckFinished(true);
}

void UpdaterModel::checkForUpdates()
{
    if (sessionInProgress()) {
        emit sessionRaiseRequested();
        return;
    }
    // The session's own check supersedes a quiet one still under way.
    if (m_quietRequest)
        m_quietRequest->abort();
    m_quietRequest.clear();
    setSession(SessionState::Checking, std::nullopt);
    emit sessionStarted();
    // The dialog is open: that is the user's attention.
    clear();
    if (!hasFeed()) {
        setSession(SessionState::Failed, std::nullopt);
        return;
    }
    m_sessionRequest = fetch(&UpdaterModel::onSessionAnswer);
}

void UpdaterModel::onSessionAnswer(const std::optional<QByteArray> &body)
{
    m_sessionRequest.clear();
    if (!sessionInProgress())
        return;
    const auto items = body ? Appcast::parse(*body) : std::nullopt;
    if (!items) {
        setSession(SessionState::Failed, std::nullopt);
        return;
    }
    // Asked for by the user, so a skipped release is offered all the same.
    auto update = Appcast::newestUpdate(*items, m_dependencies.currentVersion);
    if (update)
        setSession(SessionState::UpdateFound, std::move(update));
    else
        setSession(SessionState::UpToDate, std::nullopt);
}

void UpdaterModel::endSession()
{
    if (!sessionInProgress())
        return;
    if (m_sessionRequest)
        m_sessionRequest->abort();
    m_sessionRequest.clear();
    clear();
    setSession(SessionState::Idle, std::nullopt);
    schedule(m_dependencies.sessionEndDelay, [this] { probeQuietly(); });
}

void UpdaterModel::remindMeLater()
{
    endSession();
}

void UpdaterModel::skipThisVersion()
{
    if (m_sessionItem && m_dependencies.defaults)
        m_dependencies.defaults->setValue(QString::fromLatin1(skippedVersionKey), m_sessionItem->version);
    endSession();
}
