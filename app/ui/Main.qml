import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Aerolume.App

// The main window.
ApplicationWindow {
    id: window
    title: "Aerolume"
    width: 1180
    height: 740
    minimumWidth: 900
    minimumHeight: 560
    visible: true
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

    menuBar: AppMenuBar {
        window: window
    }

    ContentState {
        id: contentState
        store: FlightStore
    }

    // Without a home the setup fills the window, and there is no toolbar.
    header: ToolBar {
        visible: FlightStore.hasHome
        height: visible ? implicitHeight : 0
        background: Rectangle { color: Theme.barBackground }
        RowLayout {
            anchors.fill: parent
            anchors.leftMargin: 12
            anchors.rightMargin: 8
            spacing: 4

            ColumnLayout {
                spacing: 0
                Label {
                    text: window.title
                    font.bold: true
                    color: Theme.text
                    Accessible.ignored: true
                }
                Label {
                    text: contentState.subtitle
                    font.pixelSize: 11
                    color: Theme.secondaryText
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
            }
            Item { Layout.fillWidth: true }

            ToolButton {
                id: radiusButton
                text: qsTr("%1 nm").arg(Math.trunc(FlightStore.radiusNM))
                onClicked: radiusMenu.open()
                ToolTip.visible: hovered
                ToolTip.text: qsTr("Search radius around home")
                Accessible.name: qsTr("Radius: %1 nm").arg(Math.trunc(FlightStore.radiusNM))
                Accessible.role: Accessible.ButtonMenu
                Accessible.onPressAction: clicked()
                Menu {
                    id: radiusMenu
                    y: radiusButton.height
                    title: qsTr("Radius")
                    Repeater {
                        model: contentState.radiusChoices()
                        MenuItem {
                            required property int modelData
                            text: qsTr("%1 nm").arg(modelData)
                            checkable: true
                            checked: FlightStore.radiusNM === modelData
                            onTriggered: FlightStore.radiusNM = modelData
                        }
                    }
                }
            }
            ToolButton {
                text: FlightStore.isPaused ? qsTr("Resume") : qsTr("Pause")
                icon.source: Theme.symbol(FlightStore.isPaused ? "play.fill" : "pause.fill", Theme.text)
                display: AbstractButton.TextBesideIcon
                onClicked: {
                    FlightStore.isPaused = !FlightStore.isPaused
                    if (!FlightStore.isPaused)
                        FlightStore.fetchNow()
                }
                ToolTip.visible: hovered
                ToolTip.text: FlightStore.isPaused ? qsTr("Resume live updates") : qsTr("Pause live updates")
                Accessible.name: text
                Accessible.onPressAction: clicked()
            }
            ToolButton {
                id: atcButton
                objectName: "atcButton"
                text: qsTr("ATC Audio")
                // Filled while a feed is asked for, so playback shows with the panel closed.
                icon.source: Theme.symbol(ATCAudio.playingFavoriteID.length > 0 ? "headphones.circle.fill" : "headphones", Theme.text)
                display: AbstractButton.TextBesideIcon
                checked: atcPopover.visible
                onClicked: atcPopover.visible ? atcPopover.close() : atcPopover.open()
                ToolTip.visible: hovered && !atcPopover.visible
                ToolTip.text: qsTr("Listen to live air traffic control")
                Accessible.name: text
                Accessible.onPressAction: clicked()

                Popup {
                    id: atcPopover
                    objectName: "atcPopover"
                    y: atcButton.height + 4
                    x: Math.round((atcButton.width - width) / 2)
                    // Kept inside the window, however near its edge the button sits.
                    margins: 8
                    width: 320
                    padding: 0
                    focus: true
                    // A press on the button itself is left to the button, which closes the panel.
                    closePolicy: Popup.CloseOnEscape | Popup.CloseOnPressOutsideParent
                    background: Rectangle {
                        color: Theme.background
                        border.color: Theme.separator
                        radius: 10
                    }
                    contentItem: ATCAudioView {
                        objectName: "atcAudioView"
                    }
                }
            }
            ToolButton {
                objectName: "logbookButton"
                text: qsTr("Logbook")
                icon.source: Theme.symbol("chart.bar", Theme.text)
                display: AbstractButton.TextBesideIcon
                onClicked: AppShell.openWindow("logbook")
                ToolTip.visible: hovered
                ToolTip.text: qsTr("Sighting statistics")
                Accessible.name: text
                Accessible.onPressAction: clicked()
            }
            ToolButton {
                id: legendButton
                objectName: "legendButton"
                text: qsTr("Legend")
                icon.source: Theme.symbol("questionmark.circle", Theme.text)
                display: AbstractButton.TextBesideIcon
                checked: legendPopover.visible
                onClicked: legendPopover.visible ? legendPopover.close() : legendPopover.open()
                ToolTip.visible: hovered && !legendPopover.visible
                ToolTip.text: qsTr("What the icons and colors mean")
                Accessible.name: text
                Accessible.onPressAction: clicked()

                Popup {
                    id: legendPopover
                    objectName: "legendPopover"
                    y: legendButton.height + 4
                    x: Math.round((legendButton.width - width) / 2)
                    margins: 8
                    width: 360
                    padding: 16
                    focus: true
                    closePolicy: Popup.CloseOnEscape | Popup.CloseOnPressOutsideParent
                    background: Rectangle {
                        color: Theme.background
                        border.color: Theme.separator
                        radius: 10
                    }
                    contentItem: ColumnLayout {
                        spacing: 14
                        Label {
                            text: qsTr("Legend")
                            font.pixelSize: 14
                            font.bold: true
                            color: Theme.text
                            Accessible.role: Accessible.Heading
                            Accessible.name: text
                        }
                        AppLegend {
                            objectName: "popoverLegend"
                            Layout.fillWidth: true
                        }
                        Rectangle {
                            Layout.fillWidth: true
                            implicitHeight: 1
                            color: Theme.separator
                        }
                        AbstractButton {
                            id: fullGuide
                            objectName: "fullGuideButton"
                            text: qsTr("Full guide in Aerolume Help")
                            focusPolicy: Qt.StrongFocus
                            contentItem: Text {
                                text: fullGuide.text
                                font.pixelSize: 11
                                font.underline: fullGuide.hovered || fullGuide.activeFocus
                                color: Theme.accent
                            }
                            onClicked: {
                                legendPopover.close()
                                window.openHelp()
                            }
                            Keys.onReturnPressed: clicked()
                            Keys.onEnterPressed: clicked()
                            Accessible.role: Accessible.Link
                            Accessible.name: text
                            Accessible.onPressAction: clicked()
                        }
                    }
                }
            }
            ToolButton {
                text: qsTr("Home Location")
                icon.source: Theme.symbol("house", Theme.text)
                display: AbstractButton.TextBesideIcon
                onClicked: homeSheet.open()
                ToolTip.visible: hovered
                ToolTip.text: qsTr("Change home location")
                Accessible.name: text
                Accessible.onPressAction: clicked()
            }
        }
    }

    ContentView {
        id: content
        anchors.fill: parent
    }

    Dialog {
        id: homeSheet
        modal: true
        anchors.centerIn: parent
        padding: 0
        title: qsTr("Home Location")
        header: null
        contentItem: Loader {
            active: homeSheet.visible
            sourceComponent: SetupView {
                isSheet: true
                onDismissed: homeSheet.close()
            }
        }
    }

    // Opening a window from outside (a URL, a notification, the tray) makes one more of these.
    Component.onCompleted: AppShell.mainWindowAppeared()

    // Aerolume Help, one window for the whole application.
    function openHelp() {
        AppShell.openWindow("help")
    }

    Shortcut {
        sequence: StandardKey.Find
        onActivated: content.focusSearch()
    }
}
