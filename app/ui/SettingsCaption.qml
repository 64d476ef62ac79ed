import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Aerolume.App

// Explanatory text under a setting: secondary, wrapping freely.
Label {
    topPadding: 2
    font.pixelSize: 12
    color: Theme.secondaryText
    wrapMode: Text.WordWrap
    Layout.fillWidth: true
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
