import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Aerolume.App

// One section of a settings pane: a bold title, then its content, 10 points between the items.
ColumnLayout {
    id: section
    property string title
    default property alias content: body.data

    spacing: 10
    Layout.fillWidth: true

    // Text rather than Label: a heading to screen readers, which a control would make plain text.
    Text {
        text: section.title
        font.pixelSize: 15
        font.bold: true
        color: Theme.text
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    ColumnLayout {
        id: body
        spacing: 10
        Layout.fillWidth: true
    }
}
