import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Aerolume.App

// The sidebar: search, filters, the aircraft nearest first, and the status bar. It shows exactly what the
// store displays; the selection is the store's, shared with the map.
Pane {
    id: view
    padding: 0
    background: Rectangle { color: Theme.background }

    AircraftListState {
        id: listState
        store: FlightStore
    }
    SettingValue { id: planeColorSetting; key: "planeColorHex"; fallback: "#FF8A00" }
    SettingValue { id: distanceUnitSetting; key: "distanceUnit"; fallback: "mi" }
    SettingValue { id: textScaleSetting; key: "textScale"; fallback: 1.0 }
    SettingValue { id: colorByAltitudeSetting; key: "colorByAltitude"; fallback: false }

    function focusSearch() {
        searchField.forceActiveFocus()
        searchField.selectAll()
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        TextField {
            id: searchField
            Layout.fillWidth: true
            Layout.margins: 8
            placeholderText: qsTr("Callsign, type, reg")
            text: FlightStore.searchText
            onTextEdited: FlightStore.searchText = text
            Accessible.name: qsTr("Search aircraft")
            Accessible.description: placeholderText
            Keys.onDownPressed: list.forceActiveFocus()
            Keys.onEscapePressed: if (text.length > 0) FlightStore.searchText = ""; else list.forceActiveFocus()
        }

        // Filter bar
        Rectangle {
            Layout.fillWidth: true
            implicitHeight: filterRow.implicitHeight + 12
            color: Theme.barBackground
            RowLayout {
                id: filterRow
                anchors.fill: parent
                anchors.leftMargin: 12
                anchors.rightMargin: 12
                anchors.topMargin: 6
                anchors.bottomMargin: 6
                ToolButton {
                    id: filterButton
                    text: listState.filterLabel
                    flat: true
                    icon.source: Theme.symbol(listState.anyFilter ? "line.3.horizontal.decrease.circle.fill"
                                                              : "line.3.horizontal.decrease.circle",
                                              listState.anyFilter ? Theme.accent : Theme.text)
                    palette.buttonText: listState.anyFilter ? Theme.accent : Theme.text
                    onClicked: filterMenu.open()
                    Accessible.name: qsTr("Filter: %1").arg(listState.filterLabel)
                    Accessible.role: Accessible.ButtonMenu
                    Accessible.onPressAction: clicked()
                    Menu {
                        id: filterMenu
                        y: filterButton.height
                        MenuItem {
                            text: qsTr("All Aircraft")
                            checkable: true
                            checked: !listState.anyFilter
                            onTriggered: FlightStore.activeFilters = []
                        }
                        MenuSeparator {}
                        Repeater {
                            model: listState.filterNames()
                            MenuItem {
                                required property string modelData
                                text: listState.filterMenuLabel(modelData)
                                icon.source: Theme.symbol(listState.filterSymbol(modelData), Theme.text)
                                checkable: true
                                checked: FlightStore.activeFilters.indexOf(modelData) >= 0
                                onTriggered: FlightStore.setFilterActive(modelData, checked)
                            }
                        }
                    }
                }
                Item { Layout.fillWidth: true }
                Label {
                    visible: listState.countText.length > 0
                    text: listState.countText
                    font.pixelSize: 11
                    color: Theme.secondaryText
                    Accessible.role: Accessible.StaticText
                    Accessible.name: qsTr("%1 aircraft shown").arg(text)
                }
            }
        }

        ListView {
            id: list
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            model: FlightStore.displayedModel
            keyNavigationEnabled: true
            activeFocusOnTab: true
            currentIndex: FlightStore.displayedModel.indexOf(FlightStore.selectedHex)
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Aircraft")
            ScrollBar.vertical: ScrollBar {}

            delegate: AircraftRow {
                required property string hex
                selected: hex === FlightStore.selectedHex
                planeColorHex: planeColorSetting.value
                distanceUnit: distanceUnitSetting.value
                textScale: textScaleSetting.value
                colorByAltitude: colorByAltitudeSetting.value
                onClicked: {
                    FlightStore.selectedHex = hex
                    list.forceActiveFocus()
                }
            }

            Keys.onUpPressed: moveSelection(-1)
            Keys.onDownPressed: moveSelection(1)
            Keys.onEscapePressed: FlightStore.selectedHex = ""
            function moveSelection(step) {
                if (count === 0)
                    return
                const from = FlightStore.displayedModel.indexOf(FlightStore.selectedHex)
                const to = from < 0 ? (step > 0 ? 0 : count - 1) : Math.max(0, Math.min(count - 1, from + step))
                positionViewAtIndex(to, ListView.Contain)
                FlightStore.selectedHex = FlightStore.displayedModel.hexAt(to)
            }

            // Placeholder over an empty list
            ColumnLayout {
                anchors.centerIn: parent
                width: Math.min(parent.width - 40, 260)
                visible: listState.placeholder.length > 0
                spacing: 10
                BusyIndicator {
                    visible: listState.placeholder === "checking"
                    running: visible
                    Layout.alignment: Qt.AlignHCenter
                    implicitWidth: 24
                    implicitHeight: 24
                    Accessible.ignored: true
                }
                SymbolIcon {
                    visible: listState.placeholderSymbol.length > 0
                    Layout.alignment: Qt.AlignHCenter
                    name: listState.placeholderSymbol
                    tint: Theme.secondaryText
                    size: 32
                }
                Label {
                    visible: listState.placeholderTitle.length > 0
                    Layout.alignment: Qt.AlignHCenter
                    text: listState.placeholderTitle
                    font.pixelSize: 17
                    font.bold: true
                    color: Theme.text
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
                Label {
                    Layout.fillWidth: true
                    horizontalAlignment: Text.AlignHCenter
                    wrapMode: Text.Wrap
                    text: listState.placeholderDescription
                    font.pixelSize: listState.placeholder === "checking" ? 12 : 13
                    color: Theme.secondaryText
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
                Button {
                    visible: listState.placeholder === "noMatches"
                    Layout.alignment: Qt.AlignHCenter
                    text: qsTr("Show All Aircraft")
                    onClicked: listState.showAll()
                    Accessible.onPressAction: clicked()
                }
            }
        }

        // Status bar
        Rectangle {
            Layout.fillWidth: true
            implicitHeight: statusRow.implicitHeight + 12
            color: Theme.barBackground
            RowLayout {
                id: statusRow
                anchors.fill: parent
                anchors.leftMargin: 12
                anchors.rightMargin: 12
                anchors.topMargin: 6
                anchors.bottomMargin: 6
                spacing: 6
                Rectangle {
                    width: 7
                    height: 7
                    radius: 3.5
                    color: listState.statusDotWarns ? Theme.systemOrange : Theme.systemGreen
                    Accessible.ignored: true
                }
                Label {
                    Layout.fillWidth: true
                    text: listState.statusText
                    elide: Text.ElideRight
                    maximumLineCount: 1
                    font.pixelSize: 11
                    color: listState.statusIsError ? Theme.systemRed : Theme.secondaryText
                    Accessible.role: Accessible.StaticText
                    Accessible.name: qsTr("Status: %1").arg(text)
                }
                // News of a newer release; the dialog it opens takes it away.
                AbstractButton {
                    id: updateBanner
                    objectName: "updateBanner"
                    visible: UpdaterModel.updateAvailable
                    text: UpdaterModel.availableVersion.length > 0
                          ? qsTr("%1 available").arg(UpdaterModel.availableVersion) : qsTr("Update available")
                    padding: 0
                    hoverEnabled: true
                    focusPolicy: Qt.StrongFocus
                    contentItem: RowLayout {
                        spacing: 4
                        SymbolIcon {
                            name: "arrow.down.circle.fill"
                            tint: Theme.accent
                            size: 12
                            Layout.preferredWidth: size
                            Layout.preferredHeight: size
                        }
                        Label {
                            text: updateBanner.text
                            font.pixelSize: 11
                            font.underline: updateBanner.hovered || updateBanner.visualFocus
                            color: Theme.accent
                            Accessible.ignored: true
                        }
                    }
                    background: null
                    onClicked: UpdateDialogPresenter.checkForUpdates()
                    ToolTip.visible: hovered
                    ToolTip.text: qsTr("A new version of Aerolume is ready — click to install")
                    Accessible.role: Accessible.Button
                    Accessible.name: text
                    Accessible.description: ToolTip.text
                    Accessible.onPressAction: clicked()
                }
            }
        }
    }
}
