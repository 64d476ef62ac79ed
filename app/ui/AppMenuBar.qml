import QtQuick
import QtQuick.Controls
import Aerolume.App

// The menus of a main window. An item that opens one of the application's single windows is one line:
// Action { text: qsTr("…"); onTriggered: AppShell.openWindow("id") }.
MenuBar {
    id: bar
    // The window whose menus these are: Close Window closes it.
    property Window window: null

    SettingValue {
        id: showTrails
        key: "showTrails"
        fallback: true
    }
    SettingValue {
        id: colorByAltitude
        key: "colorByAltitude"
        fallback: false
    }

    Menu {
        id: fileMenu
        title: qsTr("&File")
        Action {
            text: qsTr("New Window")
            shortcut: "Ctrl+N"
            onTriggered: AppShell.newMainWindow()
        }
        Action {
            id: settingsAction
            text: qsTr("Settings…")
            shortcut: "Ctrl+,"
            onTriggered: AppShell.openWindow("settings")
        }
        MenuSeparator {}
        Action {
            text: qsTr("Close Window")
            shortcut: "Ctrl+W"
            onTriggered: {
                if (bar.window)
                    bar.window.close()
            }
        }
        Action {
            text: qsTr("Quit")
            shortcut: "Ctrl+Q"
            onTriggered: AppShell.quit()
        }
    }

    Menu {
        title: qsTr("&View")
        // The checks follow the keys, whoever changes them.
        Action {
            text: qsTr("Show Flight Trails")
            shortcut: "Ctrl+Shift+T"
            checkable: true
            checked: showTrails.value
            onTriggered: {
                showTrails.value = checked
                checked = Qt.binding(() => showTrails.value)
            }
        }
        Action {
            text: qsTr("Color Aircraft by Altitude")
            shortcut: "Ctrl+Shift+A"
            checkable: true
            checked: colorByAltitude.value
            onTriggered: {
                colorByAltitude.value = checked
                checked = Qt.binding(() => colorByAltitude.value)
            }
        }
    }

    Menu {
        id: helpMenu
        title: qsTr("&Help")
        Action {
            text: qsTr("Aerolume Help")
            shortcut: "F1"
            onTriggered: AppShell.openWindow("help")
        }
        MenuItem {
            id: websiteItem
            text: qsTr("Aerolume Website")
            onTriggered: Qt.openUrlExternally(AppShell.websiteUrl)
        }
        MenuItem {
            id: releasesItem
            text: qsTr("Release History")
            onTriggered: Qt.openUrlExternally(AppShell.releaseHistoryUrl)
        }
        MenuSeparator {}
        MenuItem {
            id: updatesItem
            text: qsTr("Check for Updates…")
            onTriggered: UpdateDialogPresenter.checkForUpdates()
        }
        Action {
            text: qsTr("About Aerolume")
            onTriggered: AppShell.openWindow("about")
        }
    }

    // What has nothing to open yet is not shown.
    Component.onCompleted: {
        if (!AppShell.hasWindowSource("settings"))
            fileMenu.removeAction(settingsAction)
        if (AppShell.websiteUrl.length === 0) {
            helpMenu.removeItem(websiteItem)
            helpMenu.removeItem(releasesItem)
        }
        // Without an update feed there is nothing to check.
        if (!UpdateDialogPresenter.canCheckForUpdates)
            helpMenu.removeItem(updatesItem)
    }
}
