import QtQuick
import QtQuick.Controls
import Aerolume.App

// The Logbook as a window of its own, beside the main one rather than over it.
ApplicationWindow {
    id: window
    property alias log: logbook.log

    title: qsTr("Logbook")
    width: 560
    height: 640
    minimumWidth: 540
    minimumHeight: 560
    transientParent: null
    color: Theme.background

    palette.window: Theme.background
    palette.windowText: Theme.text
    palette.base: Theme.background
    palette.alternateBase: Theme.barBackground
    palette.text: Theme.text
    palette.button: Theme.barBackground
    palette.buttonText: Theme.text
    palette.highlight: Theme.accent
    palette.highlightedText: "white"
    palette.placeholderText: Theme.tertiaryText
    palette.mid: Theme.separator

    LogbookView {
        id: logbook
        objectName: "logbookView"
        anchors.fill: parent
    }

    Shortcut {
        sequences: [StandardKey.Close]
        onActivated: window.close()
    }
}
