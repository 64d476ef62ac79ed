import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Aerolume.App

// One figure of the Logbook: a count over its title, on a softly filled rounded card.
Rectangle {
    id: tile
    required property string title
    property double value: 0

    readonly property string valueText: Number(value).toLocaleString(Qt.locale(), "f", 0)

    radius: 10
    // The foreground's faintest shade, so the card reads in light and dark alike.
    color: Qt.rgba(Theme.text.r, Theme.text.g, Theme.text.b, Theme.dark ? 0.1 : 0.06)
    implicitHeight: column.implicitHeight + 20
    Accessible.role: Accessible.StaticText
    Accessible.name: qsTr("%1: %2").arg(title).arg(valueText)

    ColumnLayout {
        id: column
        anchors.fill: parent
        anchors.margins: 10
        spacing: 3

        Label {
            objectName: "statValue"
            Layout.fillWidth: true
            text: tile.valueText
            font.pixelSize: 17
            font.bold: true
            elide: Text.ElideRight
            color: Theme.text
            Accessible.ignored: true
        }
        Label {
            Layout.fillWidth: true
            text: tile.title
            font.pixelSize: 11
            elide: Text.ElideRight
            color: Theme.secondaryText
            Accessible.ignored: true
        }
    }
}
