import QtQuick
import QtQuick.Controls
import QtQuick.Window
import Aerolume.Map

// The common look of the map's floating controls: an icon and a title in a translucent capsule with a
// faint border and a soft shadow. A plain button; `tip` is its tooltip.
AbstractButton {
    id: capsule

    property string symbol: ""
    property string tip: ""
    readonly property color labelColor: palette.windowText

    leftPadding: 11
    rightPadding: 11
    topPadding: 7
    bottomPadding: 7
    hoverEnabled: true
    font.weight: Font.Medium

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.description: tip
    Accessible.onPressAction: clicked()
    ToolTip.visible: hovered && tip !== ""
    ToolTip.text: tip
    ToolTip.delay: 600

    contentItem: Row {
        spacing: 6

        Image {
            anchors.verticalCenter: parent.verticalCenter
            width: 14
            height: 14
            visible: capsule.symbol !== ""
            source: visible ? RadarSupport.symbolSource(capsule.symbol, capsule.labelColor, 14,
                                                        Screen.devicePixelRatio > 0 ? Screen.devicePixelRatio : 1) : ""
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: capsule.text
            font: capsule.font
            color: capsule.labelColor
            Accessible.ignored: true
        }
    }

    background: Item {
        // The shadow: black at 0.3, a point down, spread a little past the edge.
        Rectangle {
            x: -1
            y: 0
            width: parent.width + 2
            height: parent.height + 2
            radius: height / 2
            color: Qt.rgba(0, 0, 0, 0.14)
        }
        Rectangle {
            anchors.fill: parent
            radius: height / 2
            color: Qt.rgba(capsule.palette.window.r, capsule.palette.window.g, capsule.palette.window.b,
                           capsule.down ? 0.98 : 0.9)
            border.width: 1
            border.color: Qt.rgba(capsule.labelColor.r, capsule.labelColor.g, capsule.labelColor.b, 0.18)
        }
    }
}
