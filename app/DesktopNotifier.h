#pragma once

#include <QDBusConnection>
#include <QHash>
#include <QObject>
#include <QString>
#include <optional>

// Desktop notifications through the freedesktop notification service on the session bus. Remembers which
// aircraft each notification is about, so that a click on it can select that aircraft.
class DesktopNotifier : public QObject
{
    Q_OBJECT

public:
    static constexpr QStringView service = u"org.freedesktop.Notifications";
    static constexpr QStringView path = u"/org/freedesktop/Notifications";

    explicit DesktopNotifier(const QDBusConnection &bus, QObject *parent = nullptr);

    // On the user's session bus; made on first use.
    [[nodiscard]] static DesktopNotifier *shared();

    // Posts at once. Fails silently when no notification service runs. `hex` may be empty.
    void post(const QString &title, const QString &body, const QString &hex, const QString &identifier);

    // The notifications posted and not yet closed, by the id the service gave them.
    [[nodiscard]] std::optional<QString> hexFor(uint id) const;

signals:
    // The user clicked a notification; the token, when the service sent one, lets the window come forward.
    void notificationClicked(const QString &hex, const QString &activationToken);
    // The service took a notification and gave it this id.
    void posted(uint id, const QString &hex);

private slots:
    void onActionInvoked(uint id, const QString &action);
    void onActivationToken(uint id, const QString &token);
    void onNotificationClosed(uint id, uint reason);

private:
    void askCapabilities();
    [[nodiscard]] bool bodyTakesMarkup();

    QDBusConnection m_bus;
    QHash<uint, QString> m_hexById;
    QHash<uint, QString> m_tokenById;
    std::optional<bool> m_bodyMarkup;
};
