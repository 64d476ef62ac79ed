import QtQuick
import QtQuick.Controls
import Qt.labs.platform as Platform
import Aerolume.App

// Preset colours as discs, then the colour well, which opens the desktop's colour dialog. A swatch is
// selected when the stored text equals its hex exactly, so "#ff8a00" typed by hand selects none.
Row {
    id: swatches
    property var presets: []
    // The ColorBinding of the key.
    property ColorBinding binding
    // Said before each swatch's hex: "Preset color #FF8A00".
    property string prefix
    property string wellTitle: qsTr("Custom color")

    // The well sits 6 points after the last preset.
    spacing: 6

    Row {
        spacing: 8
        Repeater {
            model: swatches.presets
            AbstractButton {
                id: swatch
                required property string modelData
                readonly property bool chosen: swatches.binding.hex === modelData
                readonly property color parsed: swatches.binding.colorOf(modelData, Theme.systemGray)
                width: 22
                height: 22
                activeFocusOnTab: true
                onClicked: swatches.binding.hex = modelData

                Accessible.role: Accessible.Button
                Accessible.name: swatches.prefix + " " + modelData
                Accessible.checkable: true
                Accessible.checked: chosen
                Accessible.selected: chosen
                Accessible.onPressAction: clicked()

                background: Rectangle {
                    radius: width / 2
                    color: swatch.parsed
                    // A focus ring outside the disc.
                    Rectangle {
                        anchors.centerIn: parent
                        width: parent.width + 6
                        height: width
                        radius: width / 2
                        color: "transparent"
                        border.width: 2
                        border.color: Theme.accent
                        visible: swatch.activeFocus
                    }
                    Rectangle {
                        anchors.fill: parent
                        anchors.margins: swatch.chosen ? 2 : 1
                        radius: width / 2
                        color: "transparent"
                        border.width: swatch.chosen ? 2 : 1
                        border.color: swatch.chosen ? Theme.text : Qt.rgba(Theme.text.r, Theme.text.g, Theme.text.b, 0.15)
                    }
                }
            }
        }
    }

    AbstractButton {
        id: well
        width: 38
        height: 22
        activeFocusOnTab: true
        onClicked: {
            dialog.currentColor = swatches.binding.color
            dialog.open()
        }
        Accessible.role: Accessible.Button
        Accessible.name: swatches.wellTitle
        Accessible.description: swatches.binding.hex
        Accessible.onPressAction: clicked()

        background: Rectangle {
            radius: 5
            color: Theme.barBackground
            border.width: well.activeFocus ? 2 : 1
            border.color: well.activeFocus ? Theme.accent : Theme.separator
            Rectangle {
                anchors.fill: parent
                anchors.margins: 4
                radius: 3
                color: swatches.binding.color
                border.width: 1
                border.color: Qt.rgba(0, 0, 0, 0.2)
            }
        }

        Platform.ColorDialog {
            id: dialog
            title: swatches.wellTitle
            onAccepted: swatches.binding.color = dialog.color
        }
    }
}
