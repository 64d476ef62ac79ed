import QtQuick
import QtQuick.Layouts
import Aerolume.Core

// Sky Board: a title line, a large scope and the five nearest aircraft.
Item {
    id: view

    property skyEntry entry: WidgetFaces.emptyEntry()
    property bool linksEnabled: false
    readonly property scopePalette colors: view.entry.palette

    signal openRequested(string url)

    // The rows, each with what it needs to draw and link itself.
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

    ColumnLayout {
        anchors.fill: parent
        spacing: 6
        visible: !view.entry.needsSetup

        RowLayout {
            Layout.fillWidth: true
            Text {
                text: "AEROLUME"
                color: view.colors.phosphor
                font.pixelSize: 11
                font.bold: true
                font.letterSpacing: 2
                Accessible.role: Accessible.StaticText
                Accessible.name: "Aerolume"
            }
            Item {
                Layout.fillWidth: true
            }
            Text {
                text: WidgetFaces.boardHead(view.entry)
                color: view.colors.dim
                font.pixelSize: 9
                Accessible.role: Accessible.StaticText
                Accessible.name: qsTr("%1 nautical miles, as of %2").arg(WidgetFaces.radius(view.entry)).arg(
                                     WidgetFaces.shortTime(view.entry))
            }
        }

        RadarView {
            Layout.fillWidth: true
            Layout.fillHeight: true
            entry: view.entry
            maxBlips: 40
        }

        Repeater {
            model: view.rowModel(5)
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
            visible: view.entry.count === 0
            text: qsTr("Quiet skies")
            color: view.colors.dim
            font.pixelSize: 10
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
}
