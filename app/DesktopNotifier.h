#pragma once

#include <QDBusConnection>
#include <QHash>
#include <QList>
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

    // Posts at once, or as soon as the service has said whether it reads markup. Fails silently when no
    // notification service runs. `hex` may be empty.
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
    struct Post
    {
        QString title;
        QString body;
        QString hex;
        QString identifier;
    };

    void askCapabilities();
    void send(const Post &post, bool bodyMarkup);

    QDBusConnection m_bus;
    QHash<uint, QString> m_hexById;
    QHash<uint, QString> m_tokenById;
    std::optional<bool> m_bodyMarkup;
    bool m_askingCapabilities = false;
    // Posted while the service had not yet said whether it reads markup.
    QList<Post> m_waiting;
};
