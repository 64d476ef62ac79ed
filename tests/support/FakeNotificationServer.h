#pragma once

#include <QDBusConnection>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

// A desktop notification service for tests, to be put on a private bus: it writes down every
// notification it is given, answers with increasing ids, tells the capabilities it was set up with, and
// sends the service's signals when the test says so, as a person's click would make a real one send them.
class FakeNotificationServer : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    // One Notify call, with every argument as it arrived.
    struct Notification
    {
        uint id = 0;
        QString appName;
        uint replacesId = 0;
        QString appIcon;
        QString summary;
        QString body;
        QStringList actions;
        QVariantMap hints;
        int expireTimeout = 0;
    };

    explicit FakeNotificationServer(QObject *parent = nullptr);

    // Takes the service's well-known name and object path on the given connection.
    bool registerOn(QDBusConnection bus);
    // Gives the name up again, as a service that quits does.
    void unregister();

    void setCapabilities(const QStringList &capabilities) { m_capabilities = capabilities; }
    [[nodiscard]] const QList<Notification> &notifications() const { return m_notifications; }
    [[nodiscard]] int capabilityQueries() const { return m_capabilityQueries; }
    [[nodiscard]] const QList<uint> &closeRequests() const { return m_closeRequests; }

    // The service's signals, sent on the bus.
    void sendActionInvoked(uint id, const QString &action) { emit ActionInvoked(id, action); }
    void sendActivationToken(uint id, const QString &token) { emit ActivationToken(id, token); }
    void sendNotificationClosed(uint id, uint reason) { emit NotificationClosed(id, reason); }

public slots:
    Q_SCRIPTABLE uint Notify(const QString &appName, uint replacesId, const QString &appIcon,
                             const QString &summary, const QString &body, const QStringList &actions,
                             const QVariantMap &hints, int expireTimeout);
    Q_SCRIPTABLE QStringList GetCapabilities();
    Q_SCRIPTABLE void CloseNotification(uint id);
    Q_SCRIPTABLE QString GetServerInformation(QString &vendor, QString &version, QString &specVersion);

signals:
    Q_SCRIPTABLE void ActionInvoked(uint id, const QString &actionKey);
    Q_SCRIPTABLE void ActivationToken(uint id, const QString &activationToken);
    Q_SCRIPTABLE void NotificationClosed(uint id, uint reason);

    // For the test itself, not on the bus.
    void notified(uint id);
    void capabilitiesAsked();

private:
    QDBusConnection m_bus;
    QStringList m_capabilities{u"actions"_qs, u"body"_qs};
    QList<Notification> m_notifications;
    QList<uint> m_closeRequests;
    int m_capabilityQueries = 0;
    // Not 1: a client that assumed its first notification gets id 1 would go unnoticed.
    uint m_nextId = 41;
};
