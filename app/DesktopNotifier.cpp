#include "DesktopNotifier.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>

namespace {

const QString interfaceName = u"org.freedesktop.Notifications"_qs;

} // namespace

DesktopNotifier::DesktopNotifier(const QDBusConnection &bus, QObject *parent) : QObject(parent), m_bus(bus)
{
    if (!m_bus.isConnected())
        return;
    const QString service = DesktopNotifier::service.toString();
    const QString path = DesktopNotifier::path.toString();
    m_bus.connect(service, path, interfaceName, u"ActionInvoked"_qs, this, SLOT(onActionInvoked(uint, QString)));
    m_bus.connect(service, path, interfaceName, u"ActivationToken"_qs, this, SLOT(onActivationToken(uint, QString)));
    m_bus.connect(service, path, interfaceName, u"NotificationClosed"_qs, this, SLOT(onNotificationClosed(uint, uint)));
    askCapabilities();
}

DesktopNotifier *DesktopNotifier::shared()
{
    static DesktopNotifier *notifier = new DesktopNotifier(QDBusConnection::sessionBus());
    return notifier;
}

void DesktopNotifier::askCapabilities()
{
    const QDBusMessage call = QDBusMessage::createMethodCall(service.toString(), path.toString(), interfaceName,
                                                             u"GetCapabilities"_qs);
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<QStringList> reply = *watcher;
        if (!reply.isError())
            m_bodyMarkup = reply.value().contains(u"body-markup"_qs);
    });
}

bool DesktopNotifier::bodyTakesMarkup()
{
    // Until the service has said, assume markup as nearly every service reads it: an escaped "&amp;" is
    // a smaller harm than a name cut off at a "<".
    if (!m_bodyMarkup) {
        askCapabilities();
        return true;
    }
    return *m_bodyMarkup;
}

void DesktopNotifier::post(const QString &title, const QString &body, const QString &hex, const QString &identifier)
{
    if (!m_bus.isConnected())
        return;
    const QString text = bodyTakesMarkup() ? body.toHtmlEscaped() : body;
    QDBusMessage call =
        QDBusMessage::createMethodCall(service.toString(), path.toString(), interfaceName, u"Notify"_qs);
    const QVariantMap hints{
        {u"desktop-entry"_qs, u"aerolume"_qs},
        {u"sound-name"_qs, u"message-new-instant"_qs},
        {u"x-aerolume-identifier"_qs, identifier},
    };
    call << u"Aerolume"_qs << uint(0) << u"aerolume"_qs << title << text
         << QStringList{u"default"_qs, u"Show"_qs} << hints << int(-1);
    QDBusPendingCallWatcher *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, hex] {
        watcher->deleteLater();
        const QDBusPendingReply<uint> reply = *watcher;
        if (reply.isError())
            return;
        m_hexById.insert(reply.value(), hex);
        emit posted(reply.value(), hex);
    });
}

std::optional<QString> DesktopNotifier::hexFor(uint id) const
{
    const auto it = m_hexById.constFind(id);
    return it == m_hexById.constEnd() ? std::nullopt : std::optional(*it);
}

void DesktopNotifier::onActionInvoked(uint id, const QString &action)
{
    if (action != u"default")
        return;
    const auto it = m_hexById.constFind(id);
    if (it == m_hexById.constEnd())
        return; // another program's notification
    emit notificationClicked(*it, m_tokenById.take(id));
}

void DesktopNotifier::onActivationToken(uint id, const QString &token)
{
    if (m_hexById.contains(id))
        m_tokenById.insert(id, token);
}

void DesktopNotifier::onNotificationClosed(uint id, uint)
{
    // The click's ActionInvoked comes before the close, so the entry has done its work.
    m_hexById.remove(id);
    m_tokenById.remove(id);
}
