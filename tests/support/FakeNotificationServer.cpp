#include "FakeNotificationServer.h"

namespace {

const QString serviceName = u"org.freedesktop.Notifications"_qs;
const QString objectPath = u"/org/freedesktop/Notifications"_qs;

} // namespace

FakeNotificationServer::FakeNotificationServer(QObject *parent) : QObject(parent), m_bus(QString()) {}

bool FakeNotificationServer::registerOn(QDBusConnection bus)
{
    m_bus = bus;
    if (!m_bus.registerObject(objectPath, this,
                              QDBusConnection::ExportScriptableSlots |
                                  QDBusConnection::ExportScriptableSignals))
        return false;
    return m_bus.registerService(serviceName);
}

void FakeNotificationServer::unregister()
{
    m_bus.unregisterService(serviceName);
    m_bus.unregisterObject(objectPath);
}

uint FakeNotificationServer::Notify(const QString &appName, uint replacesId, const QString &appIcon,
                                    const QString &summary, const QString &body, const QStringList &actions,
                                    const QVariantMap &hints, int expireTimeout)
{
    const uint id = replacesId != 0 ? replacesId : m_nextId++;
    m_notifications.append(
        Notification{id, appName, replacesId, appIcon, summary, body, actions, hints, expireTimeout});
    emit notified(id);
    return id;
}

QStringList FakeNotificationServer::GetCapabilities()
{
    ++m_capabilityQueries;
    emit capabilitiesAsked();
    return m_capabilities;
}

void FakeNotificationServer::CloseNotification(uint id)
{
    m_closeRequests.append(id);
}

QString FakeNotificationServer::GetServerInformation(QString &vendor, QString &version, QString &specVersion)
{
    vendor = u"Aerolume tests"_qs;
    version = u"1"_qs;
    specVersion = u"1.2"_qs;
    return u"fake-notifications"_qs;
}
