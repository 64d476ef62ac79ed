#pragma once

#include <QObject>
#include <QDBusVariant>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

class DefaultsStore;

// Light or dark for every window: the setting appearanceChoice ("auto", "light", "dark"), where "auto"
// follows the desktop's own colour scheme from the freedesktop settings portal, and reduced motion as the
// desktop asks for it.
class Appearance : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool dark READ dark NOTIFY changed)
    Q_PROPERTY(bool desktopPrefersDark READ desktopPrefersDark NOTIFY changed)
    Q_PROPERTY(bool desktopReducesMotion READ desktopReducesMotion NOTIFY changed)

public:
    explicit Appearance(DefaultsStore *defaults, QObject *parent = nullptr);
    [[nodiscard]] static Appearance *shared();
    static Appearance *create(class QQmlEngine *, class QJSEngine *);

    [[nodiscard]] bool dark() const;
    [[nodiscard]] bool desktopPrefersDark() const { return m_desktopDark; }
    [[nodiscard]] bool desktopReducesMotion() const { return m_desktopReducesMotion; }

signals:
    void changed();

private slots:
    void onPortalSettingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    void readPortal();

    QPointer<DefaultsStore> m_defaults;
    bool m_desktopDark = false;
    bool m_desktopReducesMotion = false;
};
