import QtQuick
import Aerolume.App

// The radar icon of the About window: a rounded square, three fixed rings, a ping that grows from the
// centre and fades out, and an aircraft heading to the upper right. The ping's phase comes from the
// clock, so every icon shows the same moment; with either reduce-motion setting it is not there at all.
Item {
    id: icon

    property real side: 128
    // The defaults key reduceMotion and the desktop's own setting.
    property bool reduceMotion: false
    property bool systemReduceMotion: false
    // Seconds of one ping.
    property real cycle: 2.4
    // Milliseconds since 1970 to draw instead of now; negative follows the clock.
    property real fixedTime: -1

    readonly property bool pingShown: !reduceMotion && !systemReduceMotion
    property real now: Date.now()
    readonly property real time: fixedTime >= 0 ? fixedTime : now
    // 0 to 1 through each cycle.
    readonly property real phase: cycle > 0 ? ((time / 1000) % cycle) / cycle : 0

    implicitWidth: side
    implicitHeight: side
    width: side
    height: side

    Accessible.role: Accessible.Graphic
    Accessible.name: qsTr("Aerolume icon")

    RadarIconLayer {
        objectName: "radarBackdrop"
        part: RadarIconLayer.Backdrop
        side: icon.side
        margin: 12
        x: -margin
        y: -margin
        width: icon.side + 2 * margin
        height: icon.side + 2 * margin
    }

    Loader {
        id: pingLoader
        active: icon.pingShown
        anchors.fill: parent
        sourceComponent: Rectangle {
            objectName: "ping"
            readonly property real lineWidth: icon.side * 0.012
            readonly property real diameter: icon.side * (0.08 + 0.72 * icon.phase)
            // A border lies inside the rectangle; widened by the line, the stroke is centred on the ring.
            width: diameter + lineWidth
            height: width
            radius: width / 2
            x: (icon.side - width) / 2
            y: (icon.side - height) / 2 + icon.side * 0.03
            color: "transparent"
            border.width: lineWidth
            border.color: Qt.rgba(1, 1, 1, (1 - icon.phase) * 0.6)
            antialiasing: true
        }
    }

    RadarIconLayer {
        objectName: "radarPlane"
        part: RadarIconLayer.Plane
        side: icon.side
        anchors.fill: parent
    }

    // At most 30 frames a second, and only while there is a ping to move where it can be seen: a closed
    // window is only hidden, and keeps its items.
    Timer {
        objectName: "pingClock"
        interval: 1000 / 30
        repeat: true
        running: icon.pingShown && icon.fixedTime < 0 && icon.visible
                 && icon.Window.visibility !== Window.Hidden && icon.Window.visibility !== Window.Minimized
        onTriggered: icon.now = Date.now()
    }
}
