import QtQuick
import QtQuick.Layouts
import Aerolume.Core

// Sky Radar: the scope alone with its numbers in the corners (small), or the scope beside the three
// nearest aircraft (medium).
Item {
    id: view

    property skyEntry entry: WidgetFaces.emptyEntry()
    // "small" or "medium" when a preview fixes the size; empty to follow the space given.
    property string forcedFamily: ""
    property string environmentFamily: view.width > view.height * 1.5 ? "medium" : "small"
    readonly property string family: view.forcedFamily !== "" ? view.forcedFamily : view.environmentFamily
    property bool linksEnabled: false
    readonly property scopePalette colors: view.entry.palette

    signal openRequested(string url)

    // The rows of the medium size, each with what it needs to draw and link itself.
    function rowModel(count) {
        const leading = WidgetFaces.leading(view.entry, count)
        let rows = []
        for (let i = 0; i < leading.length; ++i)
            rows.push({
                          "aircraft": leading[i],
                          "unit": view.entry.unit,
                          "palette": view.colors,
                          "linksEnabled": view.linksEnabled
                      })
        return rows
    }

    SetupPrompt {
        anchors.fill: parent
        visible: view.entry.needsSetup
        scopePalette: view.colors
    }

    Item {
        id: small
        anchors.fill: parent
        visible: !view.entry.needsSetup && view.family !== "medium"

        RadarView {
            anchors.fill: small
            entry: view.entry
            maxBlips: 40
        }
        Text {
            anchors.left: small.left
            anchors.top: small.top
            text: WidgetFaces.radius(view.entry) + "nm"
            color: view.colors.dim
            font.family: WidgetFaces.monospaceFamily
            font.pixelSize: 8
            Accessible.role: Accessible.StaticText
            Accessible.name: qsTr("%1 nautical miles").arg(WidgetFaces.radius(view.entry))
        }
        Text {
            anchors.horizontalCenter: small.horizontalCenter
            anchors.top: small.top
            visible: view.entry.count === 0
            text: qsTr("QUIET SKY")
            color: view.colors.dim
            font.family: WidgetFaces.monospaceFamily
            font.pixelSize: 8
            font.weight: Font.DemiBold
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Text {
            anchors.left: small.left
            anchors.bottom: small.bottom
            text: view.entry.count
            color: view.colors.phosphor
            font.family: WidgetFaces.monospaceFamily
            font.pixelSize: 10
            font.bold: true
            Accessible.role: Accessible.StaticText
            Accessible.name: qsTr("%n aircraft", "", view.entry.count)
        }
        Text {
            anchors.right: small.right
            anchors.bottom: small.bottom
            text: WidgetFaces.shortTime(view.entry)
            color: view.colors.dim
            font.pixelSize: 8
            Accessible.role: Accessible.StaticText
            Accessible.name: WidgetFaces.asOf(view.entry)
        }
    }

    RowLayout {
        anchors.fill: parent
        spacing: 12
        visible: !view.entry.needsSetup && view.family === "medium"

        RadarView {
            Layout.fillHeight: true
            Layout.preferredWidth: height
            entry: view.entry
            maxBlips: 40
        }

        ColumnLayout {
            Layout.fillWidth: true
            Layout.alignment: Qt.AlignLeft | Qt.AlignVCenter
            spacing: 5

            Text {
                text: WidgetFaces.countHead(view.entry)
                color: view.colors.dim
                font.family: WidgetFaces.monospaceFamily
                font.pixelSize: 9
                font.weight: Font.DemiBold
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }

            Repeater {
                model: view.rowModel(3)
                delegate: LinkedAircraftRow {
                    required property var modelData
                    Layout.fillWidth: true
                    aircraft: modelData.aircraft
                    unit: modelData.unit
                    scopePalette: modelData.palette
                    linksEnabled: modelData.linksEnabled
                }
                onItemAdded: (index, item) => item.openRequested.connect(view.openRequested)
            }

            Text {
                text: WidgetFaces.asOf(view.entry)
                color: view.colors.dim
                font.family: WidgetFaces.monospaceFamily
                font.pixelSize: 8
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
    }
}
