import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Aerolume.App
import Aerolume.Map

// The aircraft's colour and size, trails, the map's style, the widgets' accent, and a reset of all these.
SettingsPane {
    id: pane
    title: qsTr("Map")

    // The settings window's SettingsModel.
    property SettingsModel model

    ColorBinding {
        id: planeColor
        key: "planeColorHex"
        defaultHex: "#FF8A00"
        fallbackColor: Theme.systemOrange
    }
    ColorBinding {
        id: widgetColor
        key: "widgetColorHex"
        defaultHex: "#73FF99"
        fallbackColor: Theme.systemGreen
    }
    SettingValue { id: colorByAltitude; key: "colorByAltitude"; fallback: false }
    SettingValue { id: markerScale; key: "markerScale"; fallback: 1.0 }
    SettingValue { id: showTrails; key: "showTrails"; fallback: true }
    SettingValue { id: trailMinutes; key: "trailMinutes"; fallback: 1.0 }
    SettingValue { id: trailWidth; key: "trailWidth"; fallback: 2.0 }
    SettingValue { id: mapStyleChoice; key: "mapStyleChoice"; fallback: "standard" }

    SettingsSection {
        title: qsTr("Aircraft color")
        SwatchRow {
            objectName: "planeSwatches"
            presets: pane.model ? pane.model.presets : []
            binding: planeColor
            prefix: qsTr("Preset color")
        }
        SettingsCaption {
            text: qsTr("Tints the aircraft on the map and in the sidebar. The plane glyph automatically switches between black and white to stay visible. Emergency aircraft always show red; military always show green.")
        }
        SettingsToggle {
            text: qsTr("Color aircraft by altitude")
            key: "colorByAltitude"
            fallback: false
        }
        SettingsCaption {
            text: qsTr("Overrides the color above with altitude bands — orange below 2,000 ft up to violet above 30,000. A key appears on the map while this is on.")
        }
    }

    SettingsSection {
        title: qsTr("Marker size")
        Row {
            spacing: 10
            SegmentedPicker {
                objectName: "markerScalePicker"
                anchors.verticalCenter: parent.verticalCenter
                title: qsTr("Marker size")
                choices: [
                    { label: qsTr("Small"), value: 0.8 },
                    { label: qsTr("Medium"), value: 1.0 },
                    { label: qsTr("Large"), value: 1.3 }
                ]
                value: markerScale.value
                onPicked: choice => markerScale.value = choice
            }
            Label {
                anchors.verticalCenter: parent.verticalCenter
                visible: preview.visible
                text: qsTr("Preview")
                font.pixelSize: 13
                color: Theme.secondaryText
                Accessible.ignored: true
            }
            // Room for the largest marker, so the row does not jump when the size changes.
            Item {
                id: preview
                anchors.verticalCenter: parent.verticalCenter
                visible: pane.model !== null && pane.model.hasPreview
                width: 24 * 1.3 + 4
                height: width
                PlaneMarker {
                    objectName: "previewMarker"
                    anchors.centerIn: parent
                    aircraft: pane.model ? pane.model.previewAircraft : undefined
                    baseColor: planeColor.color
                    markerScale: markerScale.value
                    isSelected: false
                    animate: false
                    accessibleName: qsTr("Preview of an aircraft marker")
                }
            }
        }
    }

    SettingsSection {
        title: qsTr("Flight trails")
        SettingsToggle {
            text: qsTr("Show flight trails")
            key: "showTrails"
            fallback: true
        }
        RowLayout {
            objectName: "trailPickers"
            visible: showTrails.value
            spacing: 18
            ColumnLayout {
                spacing: 4
                Label {
                    text: qsTr("Length")
                    font.pixelSize: 10
                    color: Theme.secondaryText
                    Accessible.ignored: true
                }
                SegmentedPicker {
                    objectName: "trailLengthPicker"
                    title: qsTr("Trail length")
                    choices: [
                        { label: qsTr("30 sec"), value: 0.5 },
                        { label: qsTr("1 min"), value: 1 },
                        { label: qsTr("2 min"), value: 2 },
                        { label: qsTr("5 min"), value: 5 }
                    ]
                    value: trailMinutes.value
                    onPicked: choice => trailMinutes.value = choice
                }
            }
            ColumnLayout {
                spacing: 4
                Label {
                    text: qsTr("Width")
                    font.pixelSize: 10
                    color: Theme.secondaryText
                    Accessible.ignored: true
                }
                SegmentedPicker {
                    objectName: "trailWidthPicker"
                    title: qsTr("Trail width")
                    choices: [
                        { label: qsTr("Thin"), value: 1.0 },
                        { label: qsTr("Regular"), value: 2.0 },
                        { label: qsTr("Thick"), value: 3.5 }
                    ]
                    value: trailWidth.value
                    onPicked: choice => trailWidth.value = choice
                }
            }
        }
        SettingsCaption {
            text: qsTr("Each aircraft drags its recent path. Longer trails build up over a few minutes of watching. Also in View → Show Flight Trails (Ctrl+Shift+T).")
        }
    }

    SettingsSection {
        title: qsTr("Map style")
        SegmentedPicker {
            objectName: "mapStylePicker"
            title: qsTr("Map style")
            choices: [
                { label: qsTr("Standard"), value: "standard" },
                { label: qsTr("Muted"), value: "muted" },
                { label: qsTr("Satellite"), value: "imagery" },
                { label: qsTr("Hybrid"), value: "hybrid" }
            ]
            value: mapStyleChoice.value
            onPicked: choice => mapStyleChoice.value = choice
        }
        SettingsCaption {
            text: qsTr("Muted grays out the basemap so aircraft markers dominate. On Satellite and Hybrid, the range ring switches to white automatically.")
        }
    }

    SettingsSection {
        title: qsTr("Widgets")
        SwatchRow {
            objectName: "widgetSwatches"
            presets: pane.model ? pane.model.widgetPresets : []
            binding: widgetColor
            prefix: qsTr("Widget accent")
        }
        SettingsCaption {
            text: qsTr("Accent color for the widget radar scopes — blips, text, and a matching dark background. Military gold and emergency red stay fixed. Widgets refresh on their own schedule.")
        }
    }

    Button {
        objectName: "resetButton"
        text: qsTr("Reset to Defaults")
        onClicked: if (pane.model) pane.model.resetToDefaults()
        Accessible.name: text
        Accessible.onPressAction: clicked()
    }
}
