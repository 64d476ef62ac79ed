import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Aerolume.App

// The settings: a sidebar of five panes and the chosen pane beside it. Every control writes its key at
// once; there is nothing to apply.
Item {
    id: view
    // The pane shown, by name; General each time the view is made.
    property string pane: "general"
    readonly property string paneTitle: model.paneTitle(pane)
    readonly property SettingsModel model: settingsModel

    SettingsModel { id: settingsModel }

    implicitWidth: 760
    implicitHeight: 560

    Rectangle {
        id: sidebar
        width: 208
        height: parent.height
        color: Theme.barBackground
        Accessible.role: Accessible.PageTabList
        Accessible.name: qsTr("Settings")

        Column {
            id: rows
            x: 12
            y: 8
            width: parent.width - 24
            spacing: 3

            Repeater {
                id: paneRows
                model: settingsModel.panes
                TabButton {
                    id: row
                    required property var modelData
                    required property int index
                    readonly property bool chosen: view.pane === modelData.name
                    objectName: "sidebar-" + modelData.name
                    width: rows.width
                    height: 32
                    text: modelData.title
                    activeFocusOnTab: true
                    checked: chosen
                    padding: 0
                    onClicked: view.pane = modelData.name
                    Keys.onUpPressed: moveTo(index - 1)
                    Keys.onDownPressed: moveTo(index + 1)

                    function moveTo(other: int) {
                        const panes = settingsModel.panes
                        if (other < 0 || other >= panes.length)
                            return
                        view.pane = panes[other].name
                        const next = paneRows.itemAt(other)
                        if (next)
                            next.forceActiveFocus()
                    }

                    Accessible.name: text
                    Accessible.selectable: true
                    Accessible.selected: chosen
                    Accessible.onPressAction: clicked()

                    background: Rectangle {
                        radius: 6
                        color: row.chosen ? Theme.accent : "transparent"
                        border.width: row.activeFocus && !row.chosen ? 2 : 0
                        border.color: Theme.accent
                    }
                    contentItem: Row {
                        leftPadding: 9
                        rightPadding: 9
                        spacing: 9
                        SymbolIcon {
                            anchors.verticalCenter: parent.verticalCenter
                            name: row.modelData.symbol
                            size: 16
                            tint: row.chosen ? "white" : Theme.text
                        }
                        Label {
                            anchors.verticalCenter: parent.verticalCenter
                            text: row.text
                            font.pixelSize: 13
                            font.bold: row.activeFocus
                            color: row.chosen ? "white" : Theme.text
                            Accessible.ignored: true
                        }
                    }
                }
            }
        }
    }

    Rectangle {
        id: divider
        x: sidebar.width
        width: 1
        height: parent.height
        color: Theme.separator
    }

    Loader {
        id: detail
        objectName: "settingsDetail"
        x: divider.x + 1
        width: parent.width - x
        height: parent.height
        sourceComponent: {
            switch (view.pane) {
            case "map": return mapPane
            case "alerts": return alertsPane
            case "accessibility": return accessibilityPane
            case "privacy": return privacyPane
            default: return generalPane
            }
        }
    }

    Component { id: generalPane; GeneralPane {} }
    Component { id: mapPane; MapSettingsPane { model: settingsModel } }
    Component { id: alertsPane; AlertsPane {} }
    Component { id: accessibilityPane; AccessibilityPane { model: settingsModel } }
    Component { id: privacyPane; PrivacyPane { model: settingsModel } }
}
