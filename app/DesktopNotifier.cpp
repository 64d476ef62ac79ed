#include "DesktopNotifier.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>
#include <utility>

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
    if (m_askingCapabilities)
        return;
    m_askingCapabilities = true;
    const QDBusMessage call = QDBusMessage::createMethodCall(service.toString(), path.toString(), interfaceName,
                                                             u"GetCapabilities"_qs);
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        m_askingCapabilities = false;
        const QDBusPendingReply<QStringList> reply = *watcher;
        if (!reply.isError())
            m_bodyMarkup = reply.value().contains(u"body-markup"_qs);
        // A service that does not answer is asked again at the next post; meanwhile a body is sent as it
        // is, since only a service that says it reads markup gets markup.
        const QList<Post> waiting = std::exchange(m_waiting, {});
        for (const Post &post : waiting)
            send(post, m_bodyMarkup.value_or(false));
    });
}

void DesktopNotifier::post(const QString &title, const QString &body, const QString &hex, const QString &identifier)
{
    if (!m_bus.isConnected())
        return;
    // The body's form depends on the service's answer, so a post waits for it; the order of posts stays.
    if (!m_bodyMarkup) {
        m_waiting.append(Post{title, body, hex, identifier});
        askCapabilities();
        return;
    }
    send(Post{title, body, hex, identifier}, *m_bodyMarkup);
}

void DesktopNotifier::send(const Post &post, bool bodyMarkup)
{
    const QString text = bodyMarkup ? post.body.toHtmlEscaped() : post.body;
    QDBusMessage call =
        QDBusMessage::createMethodCall(service.toString(), path.toString(), interfaceName, u"Notify"_qs);
    const QVariantMap hints{
        {u"desktop-entry"_qs, u"aerolume"_qs},
        {u"sound-name"_qs, u"message-new-instant"_qs},
        {u"x-aerolume-identifier"_qs, post.identifier},
    };
    call << u"Aerolume"_qs << uint(0) << u"aerolume"_qs << post.title << text
         << QStringList{u"default"_qs, u"Show"_qs} << hints << int(-1);
    QDBusPendingCallWatcher *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, hex = post.hex] {
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
