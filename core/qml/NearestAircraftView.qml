import QtQuick
import QtQuick.Layouts
import Aerolume.Core

// The nearest aircraft in large type, what it is, how far and how high, and how many are around.
Item {
    id: view

    property skyEntry entry: WidgetFaces.emptyEntry()
    readonly property scopePalette colors: view.entry.palette
    readonly property aircraft nearest: view.entry.nearest
    readonly property bool quiet: !view.entry.needsSetup && view.entry.count === 0
    readonly property bool showsAircraft: !view.entry.needsSetup && view.entry.count > 0

    SetupPrompt {
        anchors.fill: parent
        visible: view.entry.needsSetup
        scopePalette: view.colors
    }

    Column {
        id: quietColumn
        anchors.centerIn: parent
        width: view.width
        spacing: 2
        visible: view.quiet

        SymbolIcon {
            anchors.horizontalCenter: quietColumn.horizontalCenter
            width: 18
            height: 18
            name: "airplane.departure"
            color: view.colors.phosphor
            Accessible.ignored: true
        }
        Text {
            width: quietColumn.width
            horizontalAlignment: Text.AlignHCenter
            text: qsTr("Quiet skies")
            color: view.colors.phosphor
            font.pixelSize: 10
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Text {
            width: quietColumn.width
            horizontalAlignment: Text.AlignHCenter
            text: WidgetFaces.asOf(view.entry)
            color: view.colors.dim
            font.family: WidgetFaces.monospaceFamily
            font.pixelSize: 8
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }

    ColumnLayout {
        anchors.left: view.left
        anchors.right: view.right
        anchors.verticalCenter: view.verticalCenter
        spacing: 2
        visible: view.showsAircraft

        RowLayout {
            Layout.fillWidth: true
            Text {
                text: qsTr("NEAREST")
                color: view.colors.dim
                font.family: WidgetFaces.monospaceFamily
                font.pixelSize: 9
                font.weight: Font.DemiBold
                Accessible.role: Accessible.StaticText
                Accessible.name: qsTr("Nearest aircraft")
            }
            Item {
                Layout.fillWidth: true
            }
            PlaneGlyph {
                implicitWidth: 13
                implicitHeight: 13
                color: view.colors.blipColorOf(view.nearest)
                // Without a track the glyph lies on its side, pointing east, as the symbol does unturned.
                heading: view.nearest.track !== undefined ? view.nearest.track : 90
                Accessible.ignored: true
            }
        }

        Text {
            Layout.fillWidth: true
            text: view.nearest.displayName
            color: view.colors.phosphor
            font.pixelSize: 19
            font.bold: true
            maximumLineCount: 1
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 11
            elide: Text.ElideRight
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        Text {
            Layout.fillWidth: true
            text: WidgetFaces.identityLine(view.nearest)
            color: view.colors.dim
            font.family: WidgetFaces.monospaceFamily
            font.pixelSize: 10
            elide: Text.ElideRight
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        Text {
            readonly property string range: WidgetFaces.rangeLine(view.nearest, view.entry.unit)
            Layout.fillWidth: true
            visible: range.length > 0
            text: range
            color: view.colors.phosphor
            opacity: 0.85
            font.pixelSize: 10
            font.weight: Font.DemiBold
            maximumLineCount: 1
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 7
            elide: Text.ElideRight
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        Text {
            Layout.fillWidth: true
            text: WidgetFaces.footLine(view.entry)
            color: view.colors.dim
            font.family: WidgetFaces.monospaceFamily
            font.pixelSize: 8
            elide: Text.ElideRight
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
}
