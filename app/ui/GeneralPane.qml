import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Aerolume.App

// Appearance and the unit of distances.
SettingsPane {
    id: pane
    title: qsTr("General")

    SettingValue { id: appearanceChoice; key: "appearanceChoice"; fallback: "auto" }
    SettingValue { id: distanceUnit; key: "distanceUnit"; fallback: "mi" }

    SettingsSection {
        title: qsTr("Appearance")
        Row {
            spacing: 18
            AppearanceOption { objectName: "appearance-auto"; mode: "auto"; label: qsTr("Automatic"); selection: appearanceChoice }
            AppearanceOption { objectName: "appearance-light"; mode: "light"; label: qsTr("Light"); selection: appearanceChoice }
            AppearanceOption { objectName: "appearance-dark"; mode: "dark"; label: qsTr("Dark"); selection: appearanceChoice }
        }
        SettingsCaption {
            text: qsTr("Automatic follows your desktop's Light or Dark setting. Choose Light or Dark to override it for Aerolume only.")
        }
    }

    SettingsSection {
        title: qsTr("Distances")
        SegmentedPicker {
            objectName: "distanceUnitPicker"
            title: qsTr("Distances")
            choices: [
                { label: qsTr("Miles"), value: "mi" },
                { label: qsTr("Nautical miles"), value: "nm" },
                { label: qsTr("Kilometers"), value: "km" }
            ]
            value: distanceUnit.value
            onPicked: choice => distanceUnit.value = choice
        }
        SettingsCaption {
            text: qsTr("Used for aircraft distances in the sidebar, detail card, and widgets. The search radius stays in nautical miles, as aviation does.")
        }
    }
}
