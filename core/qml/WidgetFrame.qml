import QtQuick
import Aerolume.Core

// One face as a desktop widget shows it: its frame with rounded corners in the scope's background, the
// face inset by the padding, and a click anywhere outside a row opening the application.
Rectangle {
    id: frame

    // "nearest", "radar-small", "radar-medium" or "board".
    property string face: "radar-small"
    property skyEntry entry: WidgetFaces.emptyEntry()
    property bool linksEnabled: true
    // Where a click outside the rows leads: the nearest aircraft on its face, else the application.
    readonly property string link: frame.face === "nearest" && frame.entry.count > 0
                                   ? WidgetFaces.aircraftLink(frame.entry.nearest.hex) : WidgetFaces.openLink

    signal openRequested(string url)

    implicitWidth: WidgetFaces.faceSize(frame.face).width
    implicitHeight: WidgetFaces.faceSize(frame.face).height
    radius: WidgetFaces.cornerRadius
    color: frame.entry.palette.background
    antialiasing: true
    Accessible.role: frame.linksEnabled ? Accessible.Button : Accessible.Pane
    Accessible.name: WidgetFaces.faceTitle(frame.face)
    Accessible.onPressAction: {
        if (frame.linksEnabled)
            frame.openRequested(frame.link)
    }

    MouseArea {
        anchors.fill: frame
        enabled: frame.linksEnabled
        onClicked: frame.openRequested(frame.link)
    }

    // Only the face asked for is made; the others stay empty.
    Item {
        id: content
        anchors.fill: frame
        anchors.margins: WidgetFaces.padding

        NearestAircraftView {
            anchors.fill: content
            visible: frame.face === "nearest"
            entry: visible ? frame.entry : WidgetFaces.emptyEntry()
        }

        RadarWidgetView {
            anchors.fill: content
            visible: frame.face === "radar-small" || frame.face === "radar-medium"
            entry: visible ? frame.entry : WidgetFaces.emptyEntry()
            environmentFamily: frame.face === "radar-medium" ? "medium" : "small"
            linksEnabled: frame.linksEnabled
            onOpenRequested: url => frame.openRequested(url)
        }

        SkyBoardView {
            anchors.fill: content
            visible: frame.face === "board"
            entry: visible ? frame.entry : WidgetFaces.emptyEntry()
            linksEnabled: frame.linksEnabled
            onOpenRequested: url => frame.openRequested(url)
        }
    }
}
