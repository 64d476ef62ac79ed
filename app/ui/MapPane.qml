import QtQuick
import QtQuick.Controls
import Aerolume.App
import Aerolume.Map

// The detail pane beside the list: the radar map with the selected aircraft's card.
Pane {
    id: pane
    padding: 0
    background: Rectangle { color: Theme.barBackground }

    RadarMapView {
        anchors.fill: parent
        store: FlightStore
        defaults: Defaults
    }
}
