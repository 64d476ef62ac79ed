import QtQuick
import QtQuick.Layouts
import Aerolume.App

// One line of a legend: a sample, centred in a fixed slot on the left, and what it means on the right.
// It reads as one line to a screen reader.
RowLayout {
    id: row

    property string title
    property string detail
    // Behind the sample; the widget legend sets the scope's dark background so its colours read as
    // they do on a widget.
    property color slotBackground: "transparent"
    // At least 38 wide; a legend whose widest sample needs more widens all its rows, so the texts align.
    property real slotWidth: 38
    default property alias sample: slot.data

    spacing: 12
    Accessible.role: Accessible.StaticText
    Accessible.name: title + ". " + detail

    Item {
        id: slot
        Layout.preferredWidth: row.slotWidth
        Layout.preferredHeight: 32
        Layout.alignment: Qt.AlignVCenter

        Rectangle {
            anchors.centerIn: parent
            width: 38
            height: 32
            radius: 6
            color: row.slotBackground
            visible: row.slotBackground.a > 0
        }
    }

    ColumnLayout {
        spacing: 1
        Layout.fillWidth: true
        Layout.alignment: Qt.AlignVCenter

        Text {
            text: row.title
            font.pixelSize: 13
            font.weight: Font.Medium
            color: Theme.text
            wrapMode: Text.Wrap
            Layout.fillWidth: true
            Accessible.ignored: true
        }
        Text {
            text: row.detail
            font.pixelSize: 11
            color: Theme.secondaryText
            wrapMode: Text.Wrap
            Layout.fillWidth: true
            Accessible.ignored: true
        }
    }
}
