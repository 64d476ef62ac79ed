import QtQuick
import QtQuick.Layouts
import QtQuick.Window
import Aerolume.App
import Aerolume.Map

// What the map and the list draw, each shown by the very marker, badge or dot the views use. The
// markers never pulse here, whatever the motion settings say: a legend is read, not watched.
ColumnLayout {
    id: legend

    SettingValue {
        id: planeColorSetting
        key: "planeColorHex"
        fallback: "#FF8A00"
    }

    property string planeColorHex: planeColorSetting.value
    // The two badges side by side are the widest sample.
    readonly property real slotWidth: Math.max(38, Math.ceil(badges.implicitWidth))
    readonly property color baseColor: RadarSupport.parseColor(planeColorHex, RadarSupport.systemColor("orange"))

    spacing: 10
    Accessible.role: Accessible.List
    Accessible.name: qsTr("Map and list legend")

    component Badge: Text {
        id: badge
        property color tint
        font.pixelSize: 9
        font.bold: true
        color: tint
        leftPadding: 4
        rightPadding: 4
        topPadding: 1
        bottomPadding: 1
        Rectangle {
            anchors.fill: parent
            z: -1
            radius: 4
            color: Qt.rgba(badge.tint.r, badge.tint.g, badge.tint.b, 0.18)
        }
    }

    component Dot: Rectangle {
        width: 8
        height: 8
        radius: 4
    }

    LegendRow {
        title: qsTr("Aircraft")
        detail: qsTr("Points in its direction of flight, in your chosen color.")
        slotWidth: legend.slotWidth
        Layout.fillWidth: true
        PlaneMarker {
            objectName: "legendMarkerNormal"
            anchors.centerIn: parent
            aircraft: LegendSamples.normal
            baseColor: legend.baseColor
            markerScale: 1.0
            isSelected: false
            showSymbols: false
            animate: false
            Accessible.ignored: true
        }
    }
    LegendRow {
        title: qsTr("Selected aircraft")
        detail: qsTr("Larger, with a pulsing halo; the map flies to it and shows its details.")
        slotWidth: legend.slotWidth
        Layout.fillWidth: true
        // Room for the still halo, which reaches beyond the slot.
        Layout.topMargin: 5
        Layout.bottomMargin: 5
        PlaneMarker {
            objectName: "legendMarkerSelected"
            anchors.centerIn: parent
            aircraft: LegendSamples.normal
            baseColor: legend.baseColor
            markerScale: 1.0
            isSelected: true
            showSymbols: false
            animate: false
            Accessible.ignored: true
        }
    }
    LegendRow {
        title: qsTr("Emergency")
        detail: qsTr("Always red — squawking 7500, 7600, or 7700.")
        slotWidth: legend.slotWidth
        Layout.fillWidth: true
        PlaneMarker {
            objectName: "legendMarkerEmergency"
            anchors.centerIn: parent
            aircraft: LegendSamples.emergency
            baseColor: legend.baseColor
            markerScale: 1.0
            isSelected: false
            showSymbols: false
            animate: false
            Accessible.ignored: true
        }
    }
    LegendRow {
        title: qsTr("Military")
        detail: qsTr("Always green — flagged military in the aircraft database.")
        slotWidth: legend.slotWidth
        Layout.fillWidth: true
        PlaneMarker {
            objectName: "legendMarkerMilitary"
            anchors.centerIn: parent
            aircraft: LegendSamples.military
            baseColor: legend.baseColor
            markerScale: 1.0
            isSelected: false
            showSymbols: false
            animate: false
            Accessible.ignored: true
        }
    }
    LegendRow {
        title: qsTr("Altitude colors")
        detail: qsTr("With Color by Altitude on (Ctrl+Shift+A): orange below 2,000 ft, then yellow, green, cyan, and violet above 30,000 ft.")
        slotWidth: legend.slotWidth
        Layout.fillWidth: true
        Row {
            anchors.centerIn: parent
            spacing: 2
            Repeater {
                model: RadarSupport.altitudeBands()
                Dot {
                    required property var modelData
                    color: modelData.color
                }
            }
        }
    }
    LegendRow {
        title: qsTr("Home")
        detail: qsTr("The center of your search area.")
        slotWidth: legend.slotWidth
        Layout.fillWidth: true
        Image {
            anchors.centerIn: parent
            width: 22
            height: 22
            source: RadarSupport.homeSource(22, Screen.devicePixelRatio > 0 ? Screen.devicePixelRatio : 1)
        }
    }
    LegendRow {
        title: qsTr("Range ring")
        detail: qsTr("The edge of the search radius. White on satellite maps.")
        slotWidth: legend.slotWidth
        Layout.fillWidth: true
        Rectangle {
            readonly property color blue: RadarSupport.systemColor("blue")
            anchors.centerIn: parent
            width: 24
            height: 24
            radius: 12
            color: "transparent"
            border.width: 1.5
            border.color: Qt.rgba(blue.r, blue.g, blue.b, 0.55)
        }
    }
    LegendRow {
        title: qsTr("Sidebar badges")
        detail: qsTr("EMERG and MIL mark the same statuses in the list.")
        slotWidth: legend.slotWidth
        Layout.fillWidth: true
        Row {
            id: badges
            anchors.centerIn: parent
            spacing: 3
            Badge {
                text: "EMERG"
                tint: Theme.systemRed
            }
            Badge {
                text: "MIL"
                tint: Theme.systemGreen
            }
        }
    }
    LegendRow {
        title: qsTr("Status light")
        detail: qsTr("Green: live updates. Orange: paused or connection trouble.")
        slotWidth: legend.slotWidth
        Layout.fillWidth: true
        Row {
            anchors.centerIn: parent
            spacing: 5
            Dot {
                color: Theme.systemGreen
            }
            Dot {
                color: Theme.systemOrange
            }
        }
    }
}
