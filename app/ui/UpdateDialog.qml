import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Aerolume.App

// The update session: what the check found, the release notes, and the choices. Opening it is the
// user's attention to the update; closing it, by any means, ends the session.
Window {
    id: window
    title: qsTr("Software Update")
    width: 560
    height: UpdaterModel.sessionState === UpdaterModel.UpdateFound ? 440 : 200
    minimumWidth: 460
    minimumHeight: 180
    x: Math.round((Screen.desktopAvailableWidth - width) / 2)
    y: Math.round((Screen.desktopAvailableHeight - height) / 3)
    color: Theme.background
    flags: Qt.Dialog

    readonly property int sessionState: UpdaterModel.sessionState
    readonly property bool found: sessionState === UpdaterModel.UpdateFound

    readonly property string headline: {
        switch (sessionState) {
        case UpdaterModel.Checking: return qsTr("Checking for updates…")
        case UpdaterModel.UpdateFound: return qsTr("A new version of Aerolume is available!")
        case UpdaterModel.UpToDate: return qsTr("You’re up to date!")
        case UpdaterModel.Failed: return qsTr("Update Error!")
        }
        return ""
    }
    readonly property string message: {
        switch (sessionState) {
        case UpdaterModel.UpdateFound:
            return qsTr("Aerolume %1 is now available—you have %2. Would you like to download it now?")
                .arg(UpdaterModel.sessionVersion).arg(UpdaterModel.currentVersion)
        case UpdaterModel.UpToDate:
            return qsTr("Aerolume %1 is currently the newest version available.").arg(UpdaterModel.currentVersion)
        case UpdaterModel.Failed:
            return qsTr("The check for updates failed: the update feed could not be read. Please try again later.")
        }
        return ""
    }

    // Shown, it is the session (opened here when something showed the window without starting one);
    // however it goes away, the session ends with it.
    onVisibleChanged: {
        if (visible && !UpdaterModel.sessionInProgress)
            UpdaterModel.checkForUpdates()
        else if (!visible)
            UpdaterModel.endSession()
    }

    function download() {
        if (UpdaterModel.downloadPage.length > 0)
            Qt.openUrlExternally(UpdaterModel.downloadPage)
        window.close()
    }

    SettingValue {
        id: automaticChecks
        key: "automaticallyChecksForUpdates"
        fallback: true
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 20
        spacing: 12

        RowLayout {
            Layout.fillWidth: true
            spacing: 16
            AnimatedRadarIcon {
                Layout.alignment: Qt.AlignTop
                side: 64
                reduceMotion: true // a still picture here: the dialog is no place for movement
                Accessible.ignored: true
            }
            ColumnLayout {
                Layout.fillWidth: true
                spacing: 6
                Label {
                    objectName: "updateHeadline"
                    Layout.fillWidth: true
                    text: window.headline
                    font.pixelSize: 15
                    font.bold: true
                    wrapMode: Text.Wrap
                    color: Theme.text
                    Accessible.role: Accessible.Heading
                    Accessible.name: text
                }
                Label {
                    objectName: "updateMessage"
                    visible: text.length > 0
                    Layout.fillWidth: true
                    text: window.message
                    font.pixelSize: 12
                    wrapMode: Text.Wrap
                    color: Theme.text
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
                BusyIndicator {
                    visible: window.sessionState === UpdaterModel.Checking
                    running: visible
                    implicitWidth: 28
                    implicitHeight: 28
                    Accessible.name: qsTr("Checking")
                }
            }
        }

        Label {
            visible: window.found
            text: qsTr("Release Notes:")
            font.pixelSize: 12
            font.bold: true
            color: Theme.text
            Accessible.ignored: true
        }
        Rectangle {
            visible: window.found
            Layout.fillWidth: true
            Layout.fillHeight: true
            color: Theme.barBackground
            border.color: Theme.separator
            radius: 4
            ScrollView {
                id: notesScroll
                anchors.fill: parent
                anchors.margins: 8
                clip: true
                contentWidth: availableWidth
                Label {
                    objectName: "releaseNotes"
                    width: notesScroll.availableWidth
                    wrapMode: Text.Wrap
                    textFormat: Text.RichText
                    text: UpdaterModel.releaseNotes.length > 0 ? UpdaterModel.releaseNotes
                        : UpdaterModel.releaseNotesLink.length > 0
                          ? qsTr("<a href=\"%1\">Read the release notes</a>").arg(UpdaterModel.releaseNotesLink)
                          : qsTr("No release notes were published with this version.")
                    color: Theme.text
                    linkColor: Theme.accent
                    onLinkActivated: (link) => Qt.openUrlExternally(link)
                    Accessible.role: Accessible.StaticText
                    Accessible.name: qsTr("Release notes")
                    Accessible.description: UpdaterModel.releaseNotes
                }
            }
        }
        Item {
            visible: !window.found
            Layout.fillHeight: true
        }

        CheckBox {
            objectName: "automaticChecksBox"
            text: qsTr("Check for updates automatically")
            checked: automaticChecks.value === true
            onToggled: automaticChecks.value = checked
            Accessible.name: text
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: 8
            Button {
                objectName: "skipButton"
                visible: window.found
                text: qsTr("Skip This Version")
                onClicked: {
                    UpdaterModel.skipThisVersion()
                    window.close()
                }
                Accessible.name: text
                Accessible.onPressAction: clicked()
            }
            Item { Layout.fillWidth: true }
            Button {
                objectName: "remindButton"
                visible: window.found
                text: qsTr("Remind Me Later")
                onClicked: {
                    UpdaterModel.remindMeLater()
                    window.close()
                }
                Accessible.name: text
                Accessible.onPressAction: clicked()
            }
            Button {
                objectName: "downloadButton"
                visible: window.found
                text: qsTr("Download")
                highlighted: true
                focus: visible
                onClicked: window.download()
                Accessible.name: text
                Accessible.onPressAction: clicked()
            }
            Button {
                objectName: "closeButton"
                visible: !window.found
                text: window.sessionState === UpdaterModel.Checking ? qsTr("Cancel") : qsTr("OK")
                focus: visible
                onClicked: window.close()
                Accessible.name: text
                Accessible.onPressAction: clicked()
            }
        }
    }

    Shortcut {
        sequences: [StandardKey.Close, "Escape"]
        onActivated: window.close()
    }
    Shortcut {
        sequences: ["Return", "Enter"]
        onActivated: window.found ? window.download() : window.close()
    }
}
