import QtQuick
import QtQuick.Controls
import Aerolume.App

// The last-resort window, for when opening a main window the usual way brought nothing: the whole
// content on the same state as any main window. Closing it only hides it; it comes back as it was.
ApplicationWindow {
    id: window
    objectName: "fallback"
    title: "Aerolume"
    width: 1180
    height: 740
    minimumWidth: 900
    minimumHeight: 560
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

    ContentView {
        id: content
        anchors.fill: parent
    }

    Shortcut {
        sequence: StandardKey.Find
        onActivated: content.focusSearch()
    }
    Shortcut {
        sequences: [StandardKey.Close]
        onActivated: window.close()
    }
    Shortcut {
        sequences: [StandardKey.Quit]
        onActivated: AppShell.quit()
    }
}
