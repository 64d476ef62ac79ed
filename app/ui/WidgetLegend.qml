import QtQuick
import QtQuick.Layouts
import Aerolume.App
import Aerolume.Core

// What the widget scopes draw, with the widgets' own blip glyph in the accent the user chose. The samples
// sit on the scope's dark background, where those colours are meant to be seen.
ColumnLayout {
    id: legend

    SettingValue {
        id: widgetColorSetting
        key: "widgetColorHex"
        fallback: "#73FF99"
    }

    property string widgetColorHex: widgetColorSetting.value
    readonly property color accent: LegendSamples.widgetAccent(widgetColorHex)
    readonly property color scopeBackground: LegendSamples.widgetBackground(widgetColorHex)
    // Set to the other legend's on a page that shows both, so that their texts line up.
    property real slotWidth: 38

    spacing: 10
    Accessible.role: Accessible.List
    Accessible.name: qsTr("Widget legend")

    // The airplane glyph turned so that it points up and to the right.
    component Blip: PlaneGlyph {
        anchors.centerIn: parent
        width: 14
        height: 14
        heading: 45
        Accessible.ignored: true
    }

    LegendRow {
        title: qsTr("Aircraft blip")
        detail: qsTr("In your widget accent color, pointing in its direction of flight.")
        slotBackground: legend.scopeBackground
        slotWidth: legend.slotWidth
        Layout.fillWidth: true
        Blip {
            objectName: "legendBlipAccent"
            color: legend.accent
        }
    }
    LegendRow {
        title: qsTr("Military")
        detail: qsTr("Gold on the scope.")
        slotBackground: legend.scopeBackground
        slotWidth: legend.slotWidth
        Layout.fillWidth: true
        Blip {
            objectName: "legendBlipMilitary"
            color: LegendSamples.widgetGold
        }
    }
    LegendRow {
        title: qsTr("Emergency")
        detail: qsTr("Red on the scope.")
        slotBackground: legend.scopeBackground
        slotWidth: legend.slotWidth
        Layout.fillWidth: true
        Blip {
            objectName: "legendBlipEmergency"
            color: LegendSamples.widgetRed
        }
    }
    LegendRow {
        title: qsTr("Center dot")
        detail: qsTr("Home — every blip is plotted at its true bearing and distance.")
        slotBackground: legend.scopeBackground
        slotWidth: legend.slotWidth
        Layout.fillWidth: true
        Rectangle {
            anchors.centerIn: parent
            width: 6
            height: 6
            radius: 3
            color: legend.accent
        }
    }
    LegendRow {
        title: qsTr("Rings")
        detail: qsTr("Thirds of your radius — at 25 nm they mark roughly 8, 17, and 25 nm.")
        slotBackground: legend.scopeBackground
        slotWidth: legend.slotWidth
        Layout.fillWidth: true
        Repeater {
            model: 3
            Rectangle {
                required property int index
                anchors.centerIn: parent
                width: 28 * (index + 1) / 3
                height: width
                radius: width / 2
                color: "transparent"
                border.width: 1
                border.color: Qt.rgba(legend.accent.r, legend.accent.g, legend.accent.b, 0.4)
            }
        }
    }
    LegendRow {
        title: qsTr("FL240 / GND")
        detail: qsTr("Flight level ≈ 24,000 ft (used above 18,000 ft); GND means on the ground.")
        slotBackground: legend.scopeBackground
        slotWidth: legend.slotWidth
        Layout.fillWidth: true
        Text {
            anchors.centerIn: parent
            text: "FL240"
            font.family: WidgetFaces.monospaceFamily
            font.pixelSize: 10
            font.bold: true
            color: legend.accent
            Accessible.ignored: true
        }
    }
    LegendRow {
        title: qsTr("QUIET SKY")
        detail: qsTr("Nothing in range right now — the widget is working, the sky is just empty.")
        slotBackground: legend.scopeBackground
        slotWidth: legend.slotWidth
        Layout.fillWidth: true
        Text {
            anchors.centerIn: parent
            text: "QUIET"
            font.family: WidgetFaces.monospaceFamily
            font.pixelSize: 8
            font.weight: Font.DemiBold
            color: legend.accent
            opacity: 0.55
            Accessible.ignored: true
        }
    }
}
