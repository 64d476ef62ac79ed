#pragma once

#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

class AppShell;

// The status icon that shows Aerolume runs with no window open, with "Show Aerolume" and "Quit". A click
// on it counts as the application becoming active. Desktops without a tray get none.
class TrayIcon : public QObject
{
    Q_OBJECT

public:
    explicit TrayIcon(AppShell *shell, QObject *parent = nullptr);

    // False where the desktop offers no tray.
    bool show();

private:
    AppShell *m_shell;
    QMenu m_menu;
    QSystemTrayIcon m_icon;
};
