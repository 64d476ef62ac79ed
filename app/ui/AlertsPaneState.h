#pragma once

#include "LoginItem.h"

#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

class DefaultsStore;

// The Alerts pane's own state: the launch-at-login switch with the error of its last change, and the
// master switch, whose turning on is the one moment notifications may be asked for.
class AlertsPaneState : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool launchAtLogin READ launchAtLogin WRITE setLaunchAtLogin NOTIFY launchAtLoginChanged)
    Q_PROPERTY(QString loginItemError READ loginItemError NOTIFY loginItemErrorChanged)

public:
    explicit AlertsPaneState(QObject *parent = nullptr);
    AlertsPaneState(LoginItem loginItem, DefaultsStore *defaults, QObject *parent = nullptr);

    [[nodiscard]] bool launchAtLogin() const { return m_launchAtLogin; }
    // Registers or unregisters the login item. When that fails the error is kept and the switch is set
    // to what the entry now says, without asking for anything again.
    void setLaunchAtLogin(bool launch);
    // Empty when the last change went through.
    [[nodiscard]] QString loginItemError() const { return m_loginItemError; }

    // Stores alertsEnabled; switching on asks for permission to notify, switching off revokes nothing.
    Q_INVOKABLE void setAlertsEnabled(bool enabled);

signals:
    void launchAtLoginChanged();
    void loginItemErrorChanged();

private:
    void setLoginItemError(const QString &error);

    LoginItem m_loginItem;
    QPointer<DefaultsStore> m_defaults;
    bool m_launchAtLogin = false;
    QString m_loginItemError;
};
