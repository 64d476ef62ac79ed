import QtQuick
import QtQuick.Controls
import Aerolume.App

// A switch over a boolean key; its label is its name for a screen reader.
Switch {
    id: toggle
    // The key, or leave empty and handle toggled yourself.
    property string key
    property bool fallback: false
    // Set when the switch writes through something else than the key.
    property bool writesKey: true

    checked: setting.value
    onToggled: if (writesKey) setting.value = checked
    font.pixelSize: 13
    palette.windowText: Theme.text
    palette.text: Theme.text
    palette.button: Theme.barBackground
    palette.highlight: Theme.accent
    Accessible.name: text
    // A screen reader's action goes the same way as a click.
    Accessible.onPressAction: flip()
    Accessible.onToggleAction: flip()

    function flip() {
        toggle.toggle()
        toggle.toggled()
    }

    SettingValue {
        id: setting
        key: toggle.key
        fallback: toggle.fallback
    }
}
