#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

// A D-Bus daemon of a test's own: nothing the test sends reaches the desktop it runs on, and no service
// of that desktop (a notification daemon, say) answers in place of the test's own. The daemon has no
// service directory, so a name nobody owns is never started on demand.
class PrivateSessionBus
{
public:
    PrivateSessionBus();
    ~PrivateSessionBus();

    PrivateSessionBus(const PrivateSessionBus &) = delete;
    PrivateSessionBus &operator=(const PrivateSessionBus &) = delete;

    // The daemon started and told its address.
    [[nodiscard]] bool isRunning() const { return !m_address.isEmpty(); }
    [[nodiscard]] QString address() const { return m_address; }
    // What went wrong when the daemon did not start.
    [[nodiscard]] QString errorString() const { return m_error; }

    // A new connection of its own to this bus; it is closed when the bus goes.
    [[nodiscard]] QDBusConnection connect(const QString &name);

    // Two calls to the bus daemon itself, one after the other, each waited for: every answer to what the
    // connection sent before has been handled, and so has the answer to anything sent while handling
    // those. False when the daemon did not answer within five seconds.
    static bool settle(const QDBusConnection &bus);

private:
    QTemporaryDir m_dir;
    QProcess m_daemon;
    QString m_address;
    QString m_error;
    QStringList m_connectionNames;
};
