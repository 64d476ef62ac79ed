import QtQuick

// A miniature window: a title bar with its three dots, then a few short lines of text.
Rectangle {
    id: thumb
    property color background: "#f4f4f6"
    property color lines: "#c7c7cc"

    radius: 6
    color: background

    Row {
        x: 7
        y: 6
        spacing: 4
        Repeater {
            model: ["#ff5f57", "#febc2e", "#28c840"]
            Rectangle {
                required property string modelData
                width: 6
                height: 6
                radius: 3
                color: modelData
            }
        }
    }

    Column {
        x: 10
        y: 22
        spacing: 6
        Repeater {
            model: [0.62, 0.78, 0.45, 0.7, 0.36]
            Rectangle {
                required property real modelData
                width: (thumb.width - 20) * modelData
                height: 4
                radius: 2
                color: thumb.lines
            }
        }
    }
}
