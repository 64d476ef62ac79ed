#pragma once

#include "Aircraft.h"
#include "HomeLocation.h"

#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QStringList>
#include <functional>
#include <optional>

class DefaultsStore;
class DesktopNotifier;

// Turns each fresh aircraft list into desktop notifications: six rules, each under a 30-minute cooldown
// per aircraft. Settings are read at every evaluation, so a change in Settings counts at the next refresh.
class AlertEngine : public QObject
{
    Q_OBJECT

public:
    // A notification the engine posted.
    struct Alert
    {
        QString rule;
        QString hex;
        QString title;
        QString body;
        QString identifier;
    };

    static constexpr double cooldownSeconds = 1800;

    AlertEngine(DefaultsStore *defaults, DesktopNotifier *notifier, std::function<QDateTime()> now = {},
                QObject *parent = nullptr);

    [[nodiscard]] static AlertEngine *shared();
    // There is no permission step for notifications on Linux; kept so callers need not know.
    static void requestPermission() {}

    void evaluate(const QList<Aircraft> &aircraft, const HomeLocation &home);

    // The rules' parts, on their own.
    [[nodiscard]] static QStringList parseWatchlist(const QString &text);
    [[nodiscard]] static bool matches(const Aircraft &aircraft, const QStringList &watchlist);
    // Seconds until the aircraft passes overhead on its present course, if it will within two minutes and
    // closer than the miss limit (statute miles; absent: 0.75).
    [[nodiscard]] static std::optional<double> flyoverETA(const Aircraft &aircraft, const HomeLocation &home,
                                                          std::optional<double> missMiles);
    [[nodiscard]] static QString body(const Aircraft &aircraft);

    // When each rule last fired for each aircraft, under "rule-hex".
    [[nodiscard]] QHash<QString, QDateTime> lastAlerted() const;

signals:
    void alerted(const AlertEngine::Alert &alert);

private:
    // The same with the home's latitude cosine and the miss limit in metres worked out once a refresh.
    [[nodiscard]] static std::optional<double> flyoverETA(const Aircraft &aircraft, const HomeLocation &home,
                                                          double cosHomeLatitude, double limitMetres);
    // Posts unless the rule fired for this aircraft within the cooldown; the title is made only then.
    void fire(const QString &rule, const Aircraft &aircraft, qint64 nowMs, const std::function<QString()> &title);

    DefaultsStore *m_defaults;
    DesktopNotifier *m_notifier;
    std::function<QDateTime()> m_now;
    // Milliseconds since the epoch: the cooldown test runs for every match of every refresh.
    QHash<QString, qint64> m_lastAlerted;
};

Q_DECLARE_METATYPE(AlertEngine::Alert)
