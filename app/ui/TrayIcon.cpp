#include "TrayIcon.h"

#include "AppShell.h"

#include <QApplication>

TrayIcon::TrayIcon(AppShell *shell, QObject *parent) : QObject(parent), m_shell(shell)
{
    QAction *showAction = m_menu.addAction(tr("Show Aerolume"));
    connect(showAction, &QAction::triggered, m_shell, &AppShell::restoreMainWindow);
    m_menu.addSeparator();
    QAction *quitAction = m_menu.addAction(tr("Quit"));
    connect(quitAction, &QAction::triggered, m_shell, &AppShell::quit);

    m_icon.setIcon(QApplication::windowIcon());
    m_icon.setToolTip(u"Aerolume"_qs);
    m_icon.setContextMenu(&m_menu);
    connect(&m_icon, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick)
            m_shell->becameActive();
    });
}

bool TrayIcon::show()
{
    if (!QSystemTrayIcon::isSystemTrayAvailable())
        return false;
    m_icon.show();
    return true;
}
