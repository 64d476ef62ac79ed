import QtQuick
import QtQuick.Controls
import Aerolume.App

// One choice of appearance: a miniature window drawn in that mode, and its name under it. "auto" is
// drawn half light, half dark.
RadioButton {
    id: option
    property string mode
    property string label
    // The stored appearanceChoice; choosing writes mode through the same setting.
    property SettingValue selection
    readonly property bool chosen: selection !== null && selection.value === mode

    readonly property color lightBackground: "#f4f4f6"
    readonly property color lightLines: "#c7c7cc"
    readonly property color darkBackground: "#2c2c2e"
    readonly property color darkLines: "#5a5a5f"

    activeFocusOnTab: true
    checked: chosen
    indicator: null
    padding: 0
    onClicked: if (selection) selection.value = mode

    Accessible.name: label
    Accessible.selected: chosen
    Accessible.onPressAction: clicked()

    implicitWidth: 118
    implicitHeight: content.implicitHeight

    contentItem: Column {
        id: content
        spacing: 6

        Rectangle {
            id: face
            width: 118
            height: 80
            radius: 8
            color: "transparent"
            clip: true

            Item {
                anchors.fill: parent
                anchors.margins: 3
                // The light window, whole or as the left half.
                Item {
                    width: option.mode === "auto" ? parent.width / 2 : parent.width
                    height: parent.height
                    clip: true
                    visible: option.mode !== "dark"
                    WindowThumb {
                        width: face.width - 6
                        height: face.height - 6
                        background: option.lightBackground
                        lines: option.lightLines
                    }
                }
                // The dark window, whole or as the right half.
                Item {
                    x: option.mode === "auto" ? parent.width / 2 : 0
                    width: option.mode === "auto" ? parent.width / 2 : parent.width
                    height: parent.height
                    clip: true
                    visible: option.mode !== "light"
                    WindowThumb {
                        x: -parent.x
                        width: face.width - 6
                        height: face.height - 6
                        background: option.darkBackground
                        lines: option.darkLines
                    }
                }
            }

            Rectangle {
                anchors.fill: parent
                radius: 8
                color: "transparent"
                border.width: option.chosen || option.activeFocus ? 2.5 : 1
                border.color: option.chosen || option.activeFocus
                              ? Theme.accent : Qt.rgba(Theme.text.r, Theme.text.g, Theme.text.b, 0.15)
            }
        }

        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            text: option.label
            font.pixelSize: 12
            color: Theme.text
            Accessible.ignored: true
        }
    }
}
