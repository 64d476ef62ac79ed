pragma Singleton
import QtQuick
import Aerolume.App

// The few fixed colours of the interface, in a light and a dark form.
QtObject {
    readonly property bool dark: Appearance.dark
    readonly property color systemRed: dark ? "#ff453a" : "#ff3b30"
    readonly property color systemGreen: dark ? "#30d158" : "#34c759"
    readonly property color systemOrange: dark ? "#ff9f0a" : "#ff9500"
    readonly property color systemGray: "#8e8e93"
    readonly property color systemBlue: dark ? "#0a84ff" : "#007aff"
    readonly property color accent: systemBlue
    readonly property color background: dark ? "#1e1e1e" : "#ffffff"
    readonly property color barBackground: dark ? "#2a2a2a" : "#f2f2f2"
    readonly property color text: dark ? "#f2f2f2" : "#1c1c1e"
    readonly property color secondaryText: dark ? "#a1a1a6" : "#6e6e73"
    readonly property color tertiaryText: dark ? "#78787d" : "#8e8e93"
    readonly property color separator: dark ? "#3a3a3c" : "#d1d1d6"
    readonly property color selection: dark ? "#0a3d7a" : "#cfe3ff"

    function symbol(name: string, tint: color): string {
        return "image://symbol/" + name + "?color=" + encodeURIComponent(tint.toString())
    }
}
