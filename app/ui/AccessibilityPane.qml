import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Aerolume.App

// Motion, text size with a preview row, the vision aids, and what screen readers get.
SettingsPane {
    id: pane
    title: qsTr("Accessibility")

    // The settings window's SettingsModel.
    property SettingsModel model

    SettingValue { id: textScale; key: "textScale"; fallback: 1.0 }
    SettingValue { id: planeColorHex; key: "planeColorHex"; fallback: "#FF8A00" }
    SettingValue { id: distanceUnit; key: "distanceUnit"; fallback: "mi" }
    SettingValue { id: colorByAltitude; key: "colorByAltitude"; fallback: false }

    SettingsSection {
        title: qsTr("Motion")
        SettingsToggle {
            text: qsTr("Reduce motion")
            key: "reduceMotion"
        }
        SettingsCaption {
            text: qsTr("Stops the map's movement animations and the About window's radar ping. Aerolume also honors the system-wide Reduce Motion setting automatically.")
        }
    }

    SettingsSection {
        title: qsTr("Text size")
        RowLayout {
            spacing: 8
            Label {
                text: "A"
                font.pixelSize: 11
                color: Theme.text
                Accessible.ignored: true
            }
            Slider {
                id: slider
                objectName: "textSizeSlider"
                Layout.preferredWidth: 240
                from: 0.8
                to: 1.4
                stepSize: 0.05
                snapMode: Slider.SnapAlways
                value: textScale.value
                // Stored on the step grid, not as the sum of steps.
                onMoved: textScale.value = Math.round(value * 20) / 20
                palette.highlight: Theme.accent
                palette.button: Theme.barBackground
                Accessible.name: qsTr("Text size")
                Accessible.description: percent.text
            }
            Label {
                text: "A"
                font.pixelSize: 21
                font.weight: Font.DemiBold
                color: Theme.text
                Accessible.ignored: true
            }
            Label {
                id: percent
                objectName: "textSizePercent"
                text: pane.model ? pane.model.percentText(textScale.value) : ""
                font.pixelSize: 12
                color: Theme.text
                Layout.preferredWidth: 44
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            Button {
                id: resetLink
                objectName: "textSizeReset"
                visible: textScale.value !== 1.0
                text: qsTr("Reset")
                flat: true
                font.pixelSize: 10
                onClicked: textScale.value = 1.0
                Accessible.name: qsTr("Reset text size")
                Accessible.onPressAction: clicked()
                contentItem: Label {
                    text: resetLink.text
                    font.pixelSize: resetLink.font.pixelSize
                    color: Theme.accent
                    font.underline: resetLink.activeFocus || resetLink.hovered
                }
                background: Item {}
            }
        }
        Rectangle {
            objectName: "textSizePreview"
            visible: pane.model !== null && pane.model.hasPreview
            Layout.topMargin: 2
            Layout.maximumWidth: 340
            Layout.fillWidth: true
            implicitHeight: previewRow.implicitHeight + 12
            radius: 8
            color: Qt.rgba(Theme.text.r, Theme.text.g, Theme.text.b, 0.06)
            Loader {
                id: previewRow
                anchors.fill: parent
                anchors.leftMargin: 10
                anchors.rightMargin: 10
                anchors.topMargin: 6
                anchors.bottomMargin: 6
                active: parent.visible
                sourceComponent: AircraftRow {
                    aircraft: pane.model.previewAircraft
                    index: 0
                    planeColorHex: planeColorHex.value
                    distanceUnit: distanceUnit.value
                    textScale: textScale.value
                    colorByAltitude: colorByAltitude.value
                    leftPadding: 0
                    rightPadding: 0
                    hoverEnabled: false
                    focusPolicy: Qt.NoFocus
                    background: Item {}
                }
            }
        }
        SettingsCaption {
            text: qsTr("Scales the text in the aircraft list and detail card. Widgets keep their compact fixed layout.")
        }
    }

    SettingsSection {
        title: qsTr("Vision")
        SettingsToggle {
            text: qsTr("Increase contrast")
            key: "increaseContrast"
        }
        SettingsCaption {
            text: qsTr("Draws aircraft markers with thicker outlines and stronger shadows so they stand out against any map.")
        }
        SettingsToggle {
            text: qsTr("Differentiate without color")
            key: "differentiateWithoutColor"
        }
        SettingsCaption {
            text: qsTr("Adds an ! symbol to emergency aircraft and a ★ to military aircraft, so status never depends on color alone. The sidebar always carries EMERG and MIL text badges.")
        }
    }

    SettingsSection {
        title: qsTr("Screen readers such as Orca")
        SettingsCaption {
            text: qsTr("Aircraft on the map and in the sidebar describe themselves to screen readers such as Orca — callsign, altitude, distance, and any emergency or military status. No setup needed.")
        }
    }
}
