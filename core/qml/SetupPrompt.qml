import QtQuick
import Aerolume.Core

// Stands in for a whole face while no home is set.
Rectangle {
    id: prompt

    property scopePalette scopePalette: WidgetFaces.standardPalette

    color: prompt.scopePalette.background
    Accessible.role: Accessible.StaticText
    Accessible.name: message.text

    Column {
        anchors.centerIn: parent
        width: parent.width
        spacing: 6

        SymbolIcon {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 18
            height: 18
            name: "house"
            color: prompt.scopePalette.dim
            Accessible.ignored: true
        }

        Text {
            id: message
            width: parent.width
            text: qsTr("Open Aerolume to set your home location")
            color: prompt.scopePalette.dim
            font.pixelSize: 10
            wrapMode: Text.WordWrap
            horizontalAlignment: Text.AlignHCenter
            Accessible.ignored: true
        }
    }
}
