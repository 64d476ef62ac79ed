pragma ComponentBehavior: Bound

import QtQuick
import Aerolume.Map

// The key to the altitude colours: a dot and a label per band, then the unit, in one capsule.
Rectangle {
    id: legend

    readonly property color secondaryText: Qt.rgba(palette.windowText.r, palette.windowText.g,
                                                   palette.windowText.b, 0.65)
    readonly property color tertiaryText: Qt.rgba(palette.windowText.r, palette.windowText.g,
                                                  palette.windowText.b, 0.4)

    implicitWidth: row.implicitWidth + 20
    implicitHeight: row.implicitHeight + 12
    radius: height / 2
    color: Qt.rgba(palette.window.r, palette.window.g, palette.window.b, 0.9)

    Accessible.role: Accessible.StaticText
    Accessible.name: "Altitude colors: orange below 2,000 feet, yellow to 10,000, green to 20,000, cyan to 30,000, violet above"

    Row {
        id: row
        anchors.centerIn: parent
        spacing: 10

        Repeater {
            model: RadarSupport.altitudeBands()

            Row {
                id: band
                required property var modelData
                spacing: 4

                Rectangle {
                    anchors.verticalCenter: parent.verticalCenter
                    width: 9
                    height: 9
                    radius: 4.5
                    color: band.modelData.color
                    border.width: 0.5
                    border.color: Qt.rgba(1, 1, 1, 0.4)
                }
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: band.modelData.label
                    font.pixelSize: 10
                    color: legend.secondaryText
                    Accessible.ignored: true
                }
            }
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: "×1,000 ft"
            font.pixelSize: 10
            color: legend.tertiaryText
            Accessible.ignored: true
        }
    }
}
