import QtQuick
import Aerolume.Core

// An aircraft row that, with links on, opens the application on that aircraft.
Item {
    id: linked

    required property aircraft aircraft
    property string unit: "mi"
    property scopePalette scopePalette: WidgetFaces.standardPalette
    property bool linksEnabled: false
    readonly property string link: WidgetFaces.aircraftLink(linked.aircraft.hex)

    signal openRequested(string url)

    implicitWidth: row.implicitWidth
    implicitHeight: row.implicitHeight
    Accessible.role: linked.linksEnabled ? Accessible.Link : Accessible.ListItem
    Accessible.name: row.Accessible.name
    Accessible.onPressAction: {
        if (linked.linksEnabled)
            linked.openRequested(linked.link)
    }

    WidgetAircraftRow {
        id: row
        anchors.fill: linked
        aircraft: linked.aircraft
        unit: linked.unit
        scopePalette: linked.scopePalette
        Accessible.ignored: true
    }

    MouseArea {
        anchors.fill: linked
        enabled: linked.linksEnabled
        cursorShape: Qt.PointingHandCursor
        onClicked: linked.openRequested(linked.link)
    }
}
