#include "AlertsPaneState.h"

#include "AlertEngine.h"
#include "DefaultsStore.h"

AlertsPaneState::AlertsPaneState(QObject *parent)
    : AlertsPaneState(LoginItem::forThisProgram(), DefaultsStore::shared(), parent)
{
}

AlertsPaneState::AlertsPaneState(LoginItem loginItem, DefaultsStore *defaults, QObject *parent)
    : QObject(parent), m_loginItem(std::move(loginItem)), m_defaults(defaults),
      m_launchAtLogin(m_loginItem.status() == LoginItem::Status::Enabled)
{
}

void AlertsPaneState::setLaunchAtLogin(bool launch)
{
    if (launch != m_launchAtLogin) {
        m_launchAtLogin = launch;
        emit launchAtLoginChanged();
    }
    const std::optional<QString> failure = launch ? m_loginItem.registerItem() : m_loginItem.unregisterItem();
    if (!failure) {
        setLoginItemError(QString());
        return;
    }
    setLoginItemError(u"Couldn't update the login item: "_qs + *failure);
    const bool truth = m_loginItem.status() == LoginItem::Status::Enabled;
    if (truth != m_launchAtLogin) {
        m_launchAtLogin = truth;
        emit launchAtLoginChanged();
    }
}

void AlertsPaneState::setLoginItemError(const QString &error)
{
    if (error == m_loginItemError)
        return;
    m_loginItemError = error;
    emit loginItemErrorChanged();
}

void AlertsPaneState::setAlertsEnabled(bool enabled)
{
    if (m_defaults)
        m_defaults->setValue(u"alertsEnabled"_qs, enabled);
    if (enabled)
        AlertEngine::requestPermission();
}
