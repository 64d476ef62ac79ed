import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Aerolume.App

// Where the user says where home is: on a first run filling the window, later in a sheet. Nothing takes
// effect until the confirm button.
Pane {
    id: view
    property bool isSheet: false
    signal dismissed()

    padding: 30
    implicitWidth: Math.max(560, column.implicitWidth + 60)
    implicitHeight: Math.max(isSheet ? 400 : 500, column.implicitHeight + 60)
    background: Rectangle { color: Theme.background }

    SetupController {
        id: setup
        store: FlightStore
    }
    Component.onCompleted: setup.appear()

    ColumnLayout {
        id: column
        anchors.centerIn: parent
        width: Math.min(parent.width, 520)
        spacing: 18

        // Heading
        ColumnLayout {
            Layout.alignment: Qt.AlignHCenter
            spacing: 6
            SymbolIcon {
                visible: !view.isSheet
                Layout.alignment: Qt.AlignHCenter
                name: "airplane.circle.fill"
                tint: Theme.systemBlue
                size: 56
            }
            Label {
                Layout.alignment: Qt.AlignHCenter
                text: view.isSheet ? qsTr("Home Location") : qsTr("Welcome to Aerolume")
                font.pixelSize: view.isSheet ? 20 : 28
                font.bold: true
                color: Theme.text
                Accessible.role: Accessible.Heading
            }
            Label {
                visible: !view.isSheet
                Layout.alignment: Qt.AlignHCenter
                text: qsTr("See every aircraft flying near your home.")
                color: Theme.secondaryText
            }
        }

        GroupBox {
            Layout.alignment: Qt.AlignHCenter
            Layout.fillWidth: true
            Layout.maximumWidth: 480
            padding: 8
            background: Rectangle {
                color: Theme.barBackground
                radius: 8
            }

            ColumnLayout {
                width: parent.width
                spacing: 12

                Label {
                    text: qsTr("Where is home?")
                    font.bold: true
                    color: Theme.text
                    Accessible.role: Accessible.Heading
                }

                RowLayout {
                    Layout.fillWidth: true
                    TextField {
                        id: addressField
                        Layout.fillWidth: true
                        placeholderText: qsTr("Street address, city, or place name")
                        text: setup.address
                        onTextEdited: setup.address = text
                        // Return looks up even while another lookup runs; the later answer wins.
                        onAccepted: setup.geocode()
                        Accessible.name: qsTr("Address")
                        Accessible.description: placeholderText
                    }
                    Button {
                        text: qsTr("Look Up")
                        enabled: setup.address.length > 0 && !setup.isWorking
                        onClicked: setup.geocode()
                        Accessible.onPressAction: clicked()
                    }
                }

                Button {
                    text: qsTr("Use this computer's location")
                    icon.source: Theme.symbol("location.fill", Theme.text)
                    enabled: !setup.isWorking
                    onClicked: setup.useCurrentLocation()
                    Accessible.onPressAction: clicked()
                }

                Button {
                    id: disclosure
                    property bool open: false
                    flat: true
                    text: (open ? "▾ " : "▸ ") + qsTr("Enter coordinates manually")
                    onClicked: open = !open
                    Accessible.name: qsTr("Enter coordinates manually")
                    Accessible.role: Accessible.ButtonMenu
                    Accessible.description: open ? qsTr("expanded") : qsTr("collapsed")
                    Accessible.onPressAction: clicked()
                }
                RowLayout {
                    visible: disclosure.open
                    Layout.topMargin: 6
                    Layout.fillWidth: true
                    TextField {
                        id: latitudeField
                        Layout.fillWidth: true
                        placeholderText: qsTr("Latitude")
                        text: setup.latText
                        onTextEdited: setup.latText = text
                        onAccepted: if (setButton.enabled) setup.setManual()
                        Accessible.name: qsTr("Latitude")
                    }
                    TextField {
                        id: longitudeField
                        Layout.fillWidth: true
                        placeholderText: qsTr("Longitude")
                        text: setup.lonText
                        onTextEdited: setup.lonText = text
                        onAccepted: if (setButton.enabled) setup.setManual()
                        Accessible.name: qsTr("Longitude")
                    }
                    Button {
                        id: setButton
                        text: qsTr("Set")
                        enabled: setup.latText.length > 0 && setup.lonText.length > 0
                        onClicked: setup.setManual()
                        Accessible.onPressAction: clicked()
                    }
                }

                BusyIndicator {
                    visible: setup.isWorking
                    running: setup.isWorking
                    implicitWidth: 24
                    implicitHeight: 24
                    Accessible.name: qsTr("Looking up")
                }

                Label {
                    visible: setup.statusMessage.length > 0
                    Layout.fillWidth: true
                    wrapMode: Text.Wrap
                    text: setup.statusMessage
                    color: setup.statusIsError ? Theme.systemRed : Theme.secondaryText
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }

                RowLayout {
                    visible: setup.hasResolved
                    spacing: 6
                    SymbolIcon {
                        name: "checkmark.circle.fill"
                        tint: Theme.systemGreen
                        size: 14
                    }
                    Label {
                        text: setup.resolvedText
                        color: Theme.systemGreen
                        Accessible.role: Accessible.StaticText
                        Accessible.name: text
                    }
                }
            }
        }

        RowLayout {
            Layout.alignment: Qt.AlignHCenter
            spacing: 12
            Button {
                visible: view.isSheet
                text: qsTr("Cancel")
                onClicked: view.dismissed()
                Accessible.onPressAction: clicked()
            }
            Button {
                id: confirmButton
                text: view.isSheet ? qsTr("Save") : qsTr("Start Watching the Sky")
                highlighted: true
                enabled: setup.hasResolved
                onClicked: {
                    setup.confirm()
                    if (view.isSheet)
                        view.dismissed()
                }
                Accessible.onPressAction: clicked()
            }
        }

        Label {
            visible: !view.isSheet
            Layout.alignment: Qt.AlignHCenter
            Layout.maximumWidth: 480
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter
            text: qsTr("Your location is only used to query public ADS-B data. Nothing else leaves this computer.")
            font.pixelSize: 11
            color: Theme.tertiaryText
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }

    // Escape cancels a sheet; Return confirms when there is something to confirm.
    Shortcut {
        sequence: StandardKey.Cancel
        enabled: view.isSheet
        onActivated: view.dismissed()
    }
    Shortcut {
        sequences: ["Ctrl+Return", "Ctrl+Enter"]
        enabled: confirmButton.enabled
        onActivated: confirmButton.clicked()
    }
}
