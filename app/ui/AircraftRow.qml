import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Aerolume.App

// One aircraft in the list: its disc, name with badges, type and registration, altitude and distance.
// It reads as one element to a screen reader.
ItemDelegate {
    id: row
    required property var aircraft
    required property int index
    property bool selected: false
    property string planeColorHex: "#FF8A00"
    property string distanceUnit: "mi"
    property real textScale: 1.0
    property bool colorByAltitude: false

    readonly property color iconColor: AircraftRows.iconColor(aircraft, planeColorHex, colorByAltitude, Theme.accent,
                                                              Theme.systemRed, Theme.systemGreen, Theme.systemGray)
    readonly property bool lightIcon: AircraftRows.isLight(iconColor)
    readonly property var distanceText: aircraft.distanceTextFor(distanceUnit, false)

    width: ListView.view ? ListView.view.width : implicitWidth
    topPadding: 2
    bottomPadding: 2
    leftPadding: 8
    rightPadding: 10
    highlighted: selected
    background: Rectangle { color: row.selected ? Theme.selection : "transparent" }

    Accessible.role: Accessible.ListItem
    Accessible.name: AircraftRows.accessibilityText(aircraft, distanceUnit)
    Accessible.selectable: true
    Accessible.selected: selected
    Accessible.onPressAction: clicked()

    contentItem: RowLayout {
        spacing: 10

        // The icon slot does not follow the text size.
        Item {
            Layout.preferredWidth: 24
            Layout.preferredHeight: 24
            Rectangle {
                anchors.centerIn: parent
                width: 20
                height: 20
                radius: 10
                color: row.iconColor
                border.width: 1
                border.color: row.lightIcon ? Qt.rgba(0, 0, 0, 0.4) : Qt.rgba(1, 1, 1, 0.35)
                SymbolIcon {
                    anchors.centerIn: parent
                    name: "airplane"
                    size: 12
                    tint: row.lightIcon ? Qt.rgba(0, 0, 0, 0.85) : "white"
                    // The glyph points right at rest; a track of 0 points it up.
                    rotation: row.aircraft.track === undefined ? 0 : row.aircraft.track - 90
                }
            }
        }

        ColumnLayout {
            spacing: 2
            Layout.fillWidth: true
            RowLayout {
                spacing: 6
                Label {
                    text: row.aircraft.displayName
                    font.pixelSize: 13 * row.textScale
                    font.weight: Font.DemiBold
                    color: Theme.text
                    elide: Text.ElideRight
                    Layout.fillWidth: false
                }
                Label {
                    id: badge
                    readonly property color badgeColor: row.aircraft.isEmergency ? Theme.systemRed : Theme.systemGreen
                    visible: row.aircraft.isEmergency || row.aircraft.isMilitary
                    text: row.aircraft.isEmergency ? "EMERG" : "MIL"
                    font.pixelSize: 9 * row.textScale
                    font.bold: true
                    color: badgeColor
                    leftPadding: 4
                    rightPadding: 4
                    topPadding: 1
                    bottomPadding: 1
                    background: Rectangle {
                        radius: 4
                        color: Qt.rgba(badge.badgeColor.r, badge.badgeColor.g, badge.badgeColor.b, 0.18)
                    }
                }
            }
            Label {
                text: AircraftRows.secondaryLine(row.aircraft)
                font.pixelSize: 10 * row.textScale
                color: Theme.secondaryText
                elide: Text.ElideRight
                Layout.fillWidth: true
            }
        }

        ColumnLayout {
            spacing: 2
            Layout.alignment: Qt.AlignRight | Qt.AlignVCenter
            Label {
                Layout.alignment: Qt.AlignRight
                text: row.aircraft.altitudeText
                font.pixelSize: 12 * row.textScale
                color: Theme.text
            }
            Label {
                Layout.alignment: Qt.AlignRight
                visible: row.distanceText !== undefined
                text: row.distanceText === undefined ? "" : row.distanceText
                font.pixelSize: 10 * row.textScale
                color: Theme.secondaryText
            }
        }
    }
}
