#include "PrivateSessionBus.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QFile>
#include <QTimer>

namespace {

// Anyone on the bus may own any name and send anything: the test plays every part.
constexpr char configTemplate[] =
    R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path=%1</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

} // namespace

PrivateSessionBus::PrivateSessionBus()
{
    if (!m_dir.isValid()) {
        m_error = u"no temporary directory"_qs;
        return;
    }
    const QString configPath = m_dir.filePath(u"bus.conf"_qs);
    QFile config(configPath);
    if (!config.open(QIODevice::WriteOnly)) {
        m_error = config.errorString();
        return;
    }
    config.write(QString::fromLatin1(configTemplate).arg(m_dir.filePath(u"bus"_qs)).toUtf8());
    config.close();

    m_daemon.setProgram(u"dbus-daemon"_qs);
    m_daemon.setArguments({u"--config-file="_qs + configPath, u"--nofork"_qs, u"--print-address=1"_qs});
    m_daemon.setProcessChannelMode(QProcess::SeparateChannels);
    m_daemon.start();
    if (!m_daemon.waitForStarted(5000)) {
        m_error = m_daemon.errorString();
        return;
    }
    // The daemon prints its address once it listens; until then a connection would fail.
    QByteArray output;
    const QDeadlineTimer deadline(5000);
    while (!output.contains('\n') && !deadline.hasExpired()) {
        if (!m_daemon.waitForReadyRead(int(deadline.remainingTime())))
            break;
        output += m_daemon.readAllStandardOutput();
    }
    if (!output.contains('\n')) {
        m_error =
            u"dbus-daemon told no address: "_qs + QString::fromLocal8Bit(m_daemon.readAllStandardError());
        return;
    }
    m_address = QString::fromUtf8(output.left(output.indexOf('\n'))).trimmed();
}

PrivateSessionBus::~PrivateSessionBus()
{
    for (const QString &name : std::as_const(m_connectionNames))
        QDBusConnection::disconnectFromBus(name);
    if (m_daemon.state() != QProcess::NotRunning) {
        m_daemon.terminate();
        if (!m_daemon.waitForFinished(3000)) {
            m_daemon.kill();
            m_daemon.waitForFinished(3000);
        }
    }
}

QDBusConnection PrivateSessionBus::connect(const QString &name)
{
    m_connectionNames.append(name);
    return QDBusConnection::connectToBus(m_address, name);
}

bool PrivateSessionBus::settle(const QDBusConnection &bus)
{
    for (int i = 0; i < 2; ++i) {
        QDBusPendingCallWatcher watcher(bus.asyncCall(
            QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_qs, u"/org/freedesktop/DBus"_qs,
                                           u"org.freedesktop.DBus"_qs, u"GetId"_qs)));
        // finished comes through the event loop even when the answer is already in, behind the answers
        // that came before it.
        QEventLoop loop;
        bool answered = false;
        QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &loop, [&] {
            answered = true;
            loop.quit();
        });
        QTimer::singleShot(5000, &loop, &QEventLoop::quit);
        loop.exec();
        if (!answered)
            return false;
    }
    return true;
}
