#include "Appearance.h"

#include "DefaultsStore.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QQmlEngine>

namespace {

const QString portalService = u"org.freedesktop.portal.Desktop"_qs;
const QString portalPath = u"/org/freedesktop/portal/desktop"_qs;
const QString settingsInterface = u"org.freedesktop.portal.Settings"_qs;

// The portal wraps values in variants, sometimes twice.
QVariant unwrap(QVariant value)
{
    while (value.canConvert<QDBusVariant>() && value.userType() == qMetaTypeId<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

Appearance::Appearance(DefaultsStore *defaults, QObject *parent) : QObject(parent), m_defaults(defaults)
{
    if (m_defaults)
        connect(m_defaults, &DefaultsStore::changed, this, [this](const QString &key) {
            if (key == u"appearanceChoice")
                emit changed();
        });
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (bus.isConnected()) {
        bus.connect(portalService, portalPath, settingsInterface, u"SettingChanged"_qs, this,
                    SLOT(onPortalSettingChanged(QString, QString, QDBusVariant)));
        readPortal();
    }
}

Appearance *Appearance::shared()
{
    static Appearance *appearance = new Appearance(DefaultsStore::shared());
    return appearance;
}

Appearance *Appearance::create(QQmlEngine *, QJSEngine *)
{
    Appearance *instance = shared();
    QQmlEngine::setObjectOwnership(instance, QQmlEngine::CppOwnership);
    return instance;
}

bool Appearance::dark() const
{
    const QString choice = m_defaults ? m_defaults->stringValue(u"appearanceChoice"_qs).value_or(u"auto"_qs) : u"auto"_qs;
    if (choice == u"light")
        return false;
    if (choice == u"dark")
        return true;
    return m_desktopDark;
}

void Appearance::readPortal()
{
    const auto ask = [this](const QString &group, const QString &key) {
        QDBusMessage call = QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface, u"Read"_qs);
        call << group << key;
        auto *watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, group, key] {
            watcher->deleteLater();
            const QDBusPendingReply<QVariant> reply = *watcher;
            if (!reply.isError())
                onPortalSettingChanged(group, key, QDBusVariant(reply.value()));
        });
    };
    ask(u"org.freedesktop.appearance"_qs, u"color-scheme"_qs);
    ask(u"org.gnome.desktop.interface"_qs, u"enable-animations"_qs);
}

void Appearance::onPortalSettingChanged(const QString &group, const QString &key, const QDBusVariant &value)
{
    const QVariant plain = unwrap(value.variant());
    if (group == u"org.freedesktop.appearance" && key == u"color-scheme") {
        // 1 is "prefer dark"; 0 (no preference) and 2 (prefer light) are light.
        m_desktopDark = plain.toUInt() == 1;
        emit changed();
    } else if (group == u"org.gnome.desktop.interface" && key == u"enable-animations") {
        m_desktopReducesMotion = !plain.toBool();
        emit changed();
    }
}
