import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Aerolume.App

// The detail pane beside the list: the radar map when the map module is installed.
Pane {
    id: pane
    padding: 0
    background: Rectangle { color: Theme.barBackground }

    ContentState { id: contentState }
    Loader {
        id: mapLoader
        anchors.fill: parent
        source: contentState.mapView
    }

    ColumnLayout {
        anchors.centerIn: parent
        visible: mapLoader.status !== Loader.Ready
        spacing: 8
        SymbolIcon {
            Layout.alignment: Qt.AlignHCenter
            name: "map"
            tint: Theme.secondaryText
            size: 32
        }
        Label {
            Layout.alignment: Qt.AlignHCenter
            text: FlightStore.hasSelection ? FlightStore.selectedAircraft.displayName : qsTr("Select an aircraft in the list")
            color: Theme.secondaryText
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
}
