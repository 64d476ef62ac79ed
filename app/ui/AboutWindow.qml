import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Aerolume.App

// "About Aerolume": the icon, the version, and two lines of credit, in a window the size of its content,
// centred on the screen.
Window {
    id: window
    title: qsTr("About Aerolume")
    // 300 wide with 28 of padding all round; as tall as the column.
    width: content.width + 2 * 28
    height: Math.ceil(content.implicitHeight) + 2 * 28
    minimumWidth: width
    maximumWidth: width
    minimumHeight: height
    maximumHeight: height
    x: Math.round((Screen.desktopAvailableWidth - width) / 2)
    y: Math.round((Screen.desktopAvailableHeight - height) / 2)
    color: Theme.background
    flags: Qt.Dialog

    SettingValue {
        id: reduceMotionSetting
        key: "reduceMotion"
        fallback: false
    }

    ColumnLayout {
        id: content
        objectName: "aboutContent"
        spacing: 10
        x: 28
        y: 28
        width: 300

        AnimatedRadarIcon {
            id: radarIcon
            objectName: "radarIcon"
            Layout.alignment: Qt.AlignHCenter
            side: 128
            cycle: 2.4
            reduceMotion: reduceMotionSetting.value === true
            systemReduceMotion: Appearance.desktopReducesMotion
        }
        Label {
            Layout.alignment: Qt.AlignHCenter
            text: "Aerolume"
            font.pixelSize: 22
            font.bold: true
            color: Theme.text
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        Label {
            objectName: "versionLabel"
            Layout.alignment: Qt.AlignHCenter
            text: AboutInfo.version
            font.pixelSize: 12
            color: Theme.secondaryText
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Label {
            Layout.alignment: Qt.AlignHCenter
            text: qsTr("Live aircraft around your home")
            font.pixelSize: 12
            color: Theme.secondaryText
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Label {
            id: releaseLink
            objectName: "releaseHistoryLink"
            visible: AboutInfo.releaseHistoryUrl.length > 0
            Layout.alignment: Qt.AlignHCenter
            text: qsTr("Release history")
            font.pixelSize: 11
            font.underline: linkArea.containsMouse || activeFocus
            color: Theme.accent
            activeFocusOnTab: true
            Accessible.role: Accessible.Link
            Accessible.name: text
            Accessible.onPressAction: open()
            Keys.onReturnPressed: open()
            Keys.onEnterPressed: open()
            Keys.onSpacePressed: open()
            function open() { Qt.openUrlExternally(AboutInfo.releaseHistoryUrl) }
            MouseArea {
                id: linkArea
                anchors.fill: parent
                hoverEnabled: true
                cursorShape: Qt.PointingHandCursor
                onClicked: releaseLink.open()
            }
        }
        Rectangle {
            Layout.alignment: Qt.AlignHCenter
            implicitWidth: 180
            implicitHeight: 1
            color: Theme.separator
            Accessible.ignored: true
        }
        Label {
            Layout.alignment: Qt.AlignHCenter
            Layout.maximumWidth: 300
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            text: AboutInfo.dataLine
            font.pixelSize: 11
            color: Theme.tertiaryText
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Label {
            Layout.alignment: Qt.AlignHCenter
            Layout.maximumWidth: 300
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            text: AboutInfo.ownershipLine
            font.pixelSize: 11
            color: Theme.secondaryText
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }

    Shortcut {
        sequences: [StandardKey.Close, "Escape"]
        onActivated: window.close()
    }
}
