import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Aerolume.App

// The notification rules that the alert engine reads, the watchlist, and starting at login. A key's
// default is what a control shows; nothing is written until the control is changed.
SettingsPane {
    id: pane
    title: qsTr("Alerts")

    // The pane's own state; made by the window so that the login item is read when the pane appears.
    property AlertsPaneState paneState: AlertsPaneState {}

    SettingValue { id: alertsEnabled; key: "alertsEnabled"; fallback: false }
    SettingValue { id: alertFlyover; key: "alertFlyover"; fallback: false }
    SettingValue { id: alertRangeMiles; key: "alertRangeMiles"; fallback: 0.0 }
    SettingValue { id: flyoverMissMiles; key: "flyoverMissMiles"; fallback: 0.75 }
    SettingValue { id: alertWatchlist; key: "alertWatchlist"; fallback: "" }

    // Sections of this pane stand 26 points apart.
    sectionSpacing: 26

    SettingsSection {
        title: qsTr("Notifications")
        SettingsToggle {
            objectName: "alertsEnabledSwitch"
            text: qsTr("Enable alerts")
            key: "alertsEnabled"
            writesKey: false
            onToggled: pane.paneState.setAlertsEnabled(checked)
        }
        SettingsCaption {
            text: qsTr("Aerolume checks every data refresh (5 seconds) against the rules below and posts a notification. Each aircraft triggers a given rule at most once every 30 minutes. Alerts fire while Aerolume is running.")
        }
    }

    SettingsSection {
        objectName: "rulesSection"
        title: qsTr("Rules")
        enabled: alertsEnabled.value
        opacity: enabled ? 1.0 : 0.5

        SegmentedPicker {
            objectName: "alertRangePicker"
            title: qsTr("Alert range")
            choices: [
                { label: qsTr("2 mi"), value: 2 },
                { label: qsTr("5 mi"), value: 5 },
                { label: qsTr("10 mi"), value: 10 },
                { label: qsTr("25 mi"), value: 25 },
                { label: qsTr("Any distance"), value: 0 }
            ]
            value: alertRangeMiles.value
            onPicked: choice => alertRangeMiles.value = choice
        }
        SettingsCaption {
            text: qsTr("How close an aircraft must be to home before the rules below alert. \"Any distance\" means anywhere in the search radius.")
        }
        ColumnLayout {
            spacing: 10
            SettingsToggle { text: qsTr("Emergency squawks (7500 / 7600 / 7700)"); key: "alertEmergency"; fallback: true }
            SettingsToggle { text: qsTr("Military aircraft"); key: "alertMilitary" }
            SettingsToggle { text: qsTr("Helicopters"); key: "alertHelicopters" }
            SettingsToggle { text: qsTr("Low altitude (below 2,000 ft)"); key: "alertLowAltitude" }
            SettingsToggle {
                Layout.topMargin: 8
                text: qsTr("Aircraft about to pass overhead")
                key: "alertFlyover"
            }
        }
        SegmentedPicker {
            objectName: "flyoverClosenessPicker"
            title: qsTr("Fly-over closeness")
            enabled: alertFlyover.value
            choices: [
                { label: qsTr("½ mi"), value: 0.5 },
                { label: qsTr("¾ mi"), value: 0.75 },
                { label: qsTr("1 mi"), value: 1 },
                { label: qsTr("2 mi"), value: 2 }
            ]
            value: flyoverMissMiles.value
            onPicked: choice => flyoverMissMiles.value = choice
        }
        SettingsCaption {
            text: qsTr("Predicts each aircraft's closest approach and warns up to two minutes ahead, with which way to look. Closeness sets how directly overhead the pass must be.")
        }
    }

    SettingsSection {
        title: qsTr("Watchlist")
        TextField {
            objectName: "watchlistField"
            Layout.fillWidth: true
            Layout.maximumWidth: 380
            placeholderText: "N516AS, ASA512, a499c3"
            text: alertWatchlist.value
            // Every keystroke is stored; the engine parses the text when it runs.
            onTextEdited: alertWatchlist.value = text
            font.pixelSize: 13
            color: Theme.text
            placeholderTextColor: Theme.tertiaryText
            background: Rectangle {
                implicitHeight: 26
                radius: 5
                color: Theme.background
                border.width: parent.activeFocus ? 2 : 1
                border.color: parent.activeFocus ? Theme.accent : Theme.separator
            }
            Accessible.name: qsTr("Watchlist")
            Accessible.description: placeholderText
        }
        SettingsCaption {
            text: qsTr("Comma-separated callsigns, registrations, or ICAO hex codes — get notified whenever one enters your radius.")
        }
    }

    SettingsSection {
        title: qsTr("Startup")
        Switch {
            id: loginSwitch
            objectName: "launchAtLoginSwitch"
            text: qsTr("Launch Aerolume at login")
            checked: pane.paneState.launchAtLogin
            onToggled: pane.paneState.launchAtLogin = checked
            font.pixelSize: 13
            palette.windowText: Theme.text
            palette.text: Theme.text
            palette.button: Theme.barBackground
            palette.highlight: Theme.accent
            Accessible.name: text
            Accessible.onPressAction: flip()
            Accessible.onToggleAction: flip()
            function flip() {
                loginSwitch.toggle()
                loginSwitch.toggled()
            }
        }
        SettingsCaption {
            text: qsTr("Keeps the sky watched (and alerts live) from the moment you log in.")
        }
        Label {
            objectName: "loginItemError"
            visible: pane.paneState.loginItemError.length > 0
            text: pane.paneState.loginItemError
            font.pixelSize: 10
            color: Theme.systemRed
            wrapMode: Text.WordWrap
            Layout.fillWidth: true
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
            // It appears under the switch, which may be the last row in sight.
            onVisibleChanged: if (visible) pane.reveal(this)
        }
    }
}
