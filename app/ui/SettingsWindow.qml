import QtQuick
import QtQuick.Controls
import Aerolume.App

// The one Settings window, fixed in size; closing only hides it.
ApplicationWindow {
    id: window
    objectName: "settingsWindow"
    title: qsTr("Settings — ") + settings.paneTitle
    width: 760
    height: 560
    minimumWidth: 760
    maximumWidth: 760
    minimumHeight: 560
    maximumHeight: 560
    transientParent: null
    color: Theme.background

    palette.window: Theme.background
    palette.windowText: Theme.text
    palette.base: Theme.background
    palette.alternateBase: Theme.barBackground
    palette.text: Theme.text
    palette.button: Theme.barBackground
    palette.buttonText: Theme.text
    palette.highlight: Theme.accent
    palette.highlightedText: "white"
    palette.placeholderText: Theme.tertiaryText
    palette.mid: Theme.separator

    SettingsView {
        id: settings
        objectName: "settingsView"
        anchors.fill: parent
    }

    Shortcut {
        sequences: [StandardKey.Close, "Escape"]
        onActivated: window.close()
    }
}
