import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Aerolume.App

// The main window's content: the setup without a home, else the aircraft list beside the map.
Item {
    id: content
    readonly property bool hasHome: FlightStore.hasHome

    Loader {
        anchors.fill: parent
        active: !content.hasHome
        sourceComponent: SetupView {}
    }

    SplitView {
        id: split
        anchors.fill: parent
        visible: content.hasHome
        orientation: Qt.Horizontal

        AircraftListView {
            id: listView
            SplitView.minimumWidth: 270
            SplitView.preferredWidth: 310
        }

        MapPane {
            SplitView.fillWidth: true
            SplitView.minimumWidth: 300
        }
    }

    function focusSearch() {
        if (content.hasHome)
            listView.focusSearch()
    }
}
