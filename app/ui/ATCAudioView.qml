import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Aerolume.App

// The tower audio panel: the saved feeds with play and remove, the form that adds one, the volume and
// what is playing. It holds only the two fields of the form: playback belongs to ATCAudio, so closing
// the panel changes nothing about it.
Pane {
    id: view

    // Sizes of the type styles used here.
    readonly property int headlineSize: 13
    readonly property int captionSize: 11
    readonly property int rowIconSize: 20
    // Rows shown before the list scrolls, so a long list can't push the form out of the window.
    readonly property int visibleRows: 8

    readonly property bool canAdd: ATCAudio.canAddFavorite(nameField.text, urlField.text)

    function addStream() {
        if (ATCAudio.addFavorite(nameField.text, urlField.text)) {
            nameField.clear()
            urlField.clear()
        }
    }

    // Fixed: the explanation and long names wrap or elide inside it rather than widen it.
    implicitWidth: 320
    padding: 16
    background: null
    // The window's palette gives disabled controls the enabled shades; here they must look off.
    palette.disabled.buttonText: Theme.tertiaryText
    palette.disabled.text: Theme.tertiaryText
    palette.disabled.windowText: Theme.tertiaryText

    ColumnLayout {
        width: view.availableWidth
        spacing: 12

        Label {
            text: qsTr("ATC Audio")
            font.pixelSize: view.headlineSize
            font.bold: true
            color: Theme.text
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        Label {
            objectName: "atcExplanation"
            Layout.fillWidth: true
            visible: ATCAudio.favorites.count === 0
            text: qsTr("Listen to live air traffic control while you watch the sky. Find your airport's feed at LiveATC.net, copy the stream or .pls link, and save it below.")
            wrapMode: Text.WordWrap
            font.pixelSize: view.captionSize
            color: Theme.secondaryText
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        ListView {
            id: streamList
            objectName: "atcStreamList"
            Layout.fillWidth: true
            Layout.preferredHeight: Math.min(contentHeight, view.visibleRows * (view.rowIconSize + 10) + (view.visibleRows - 1) * spacing)
            visible: count > 0
            model: ATCAudio.favorites
            spacing: 6
            clip: true
            interactive: contentHeight > height
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ScrollBar { policy: streamList.interactive ? ScrollBar.AsNeeded : ScrollBar.AlwaysOff }
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Saved streams")

            delegate: RowLayout {
                id: row
                required property string favoriteId
                required property string name
                readonly property bool current: ATCAudio.playingFavoriteID === favoriteId
                readonly property int playIconSize: view.rowIconSize
                readonly property int removeIconSize: view.captionSize + 2

                width: ListView.view.width
                spacing: 6
                Accessible.role: Accessible.ListItem
                Accessible.name: current ? qsTr("%1, selected to play").arg(name) : name
                Accessible.selectable: true
                Accessible.selected: current
                Accessible.onPressAction: ATCAudio.toggleFavorite(favoriteId)

                ToolButton {
                    objectName: "atcPlayButton"
                    flat: true
                    padding: 2
                    icon.source: Theme.symbol(row.current ? "stop.circle.fill" : "play.circle", Theme.text)
                    icon.width: row.playIconSize
                    icon.height: row.playIconSize
                    icon.color: "transparent"
                    display: AbstractButton.IconOnly
                    text: row.current ? qsTr("Stop %1").arg(row.name) : qsTr("Play %1").arg(row.name)
                    onClicked: ATCAudio.toggleFavorite(row.favoriteId)
                    Accessible.name: text
                    Accessible.onPressAction: clicked()
                }
                Label {
                    objectName: "atcStreamName"
                    Layout.fillWidth: true
                    text: row.name
                    elide: Text.ElideRight
                    color: row.current ? Theme.accent : Theme.text
                    Accessible.ignored: true
                }
                ToolButton {
                    objectName: "atcRemoveButton"
                    flat: true
                    padding: 2
                    icon.source: Theme.symbol("trash", Theme.secondaryText)
                    icon.width: row.removeIconSize
                    icon.height: row.removeIconSize
                    icon.color: "transparent"
                    display: AbstractButton.IconOnly
                    text: qsTr("Remove %1").arg(row.name)
                    onClicked: ATCAudio.removeFavorite(row.favoriteId)
                    ToolTip.visible: hovered
                    ToolTip.text: qsTr("Remove this stream")
                    Accessible.name: text
                    Accessible.description: ToolTip.text
                    Accessible.onPressAction: clicked()
                }
            }
        }

        MenuSeparator {
            Layout.fillWidth: true
            padding: 0
        }

        TextField {
            id: nameField
            objectName: "atcNameField"
            Layout.fillWidth: true
            placeholderText: qsTr("Name — e.g. PDX Tower")
            Accessible.name: qsTr("Name")
            Accessible.description: placeholderText
        }

        TextField {
            id: urlField
            objectName: "atcUrlField"
            Layout.fillWidth: true
            placeholderText: qsTr("Stream or .pls URL")
            inputMethodHints: Qt.ImhUrlCharactersOnly | Qt.ImhNoAutoUppercase
            onAccepted: {
                if (view.canAdd)
                    view.addStream()
            }
            Accessible.name: qsTr("Stream address")
            Accessible.description: placeholderText
        }

        Button {
            objectName: "atcAddButton"
            text: qsTr("Add Stream")
            enabled: view.canAdd
            onClicked: view.addStream()
            Accessible.name: text
            Accessible.onPressAction: clicked()
        }

        MenuSeparator {
            Layout.fillWidth: true
            padding: 0
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: 8
            SymbolIcon {
                name: "speaker.fill"
                tint: Theme.secondaryText
                size: view.captionSize + 1
            }
            Slider {
                objectName: "atcVolumeSlider"
                Layout.fillWidth: true
                from: 0
                to: 1
                value: ATCAudio.volume
                // Every step of a drag is stored, as the volume itself asks.
                onMoved: ATCAudio.volume = value
                Accessible.name: qsTr("Volume")
            }
            SymbolIcon {
                name: "speaker.wave.3.fill"
                tint: Theme.secondaryText
                size: view.captionSize + 1
            }
        }

        // What the player is doing, in one line (two or more when a feed is offline).
        RowLayout {
            id: statusLine
            objectName: "atcStatusLine"
            readonly property int kind: ATCAudio.status
            readonly property color tone: {
                switch (kind) {
                case ATCAudio.Buffering: return Theme.secondaryText
                case ATCAudio.Playing: return Theme.accent
                case ATCAudio.Offline: return Theme.systemOrange
                default: return Theme.tertiaryText
                }
            }
            Layout.fillWidth: true
            spacing: 6

            BusyIndicator {
                id: busy
                objectName: "atcBusyIndicator"
                visible: statusLine.kind === ATCAudio.Buffering
                running: visible
                padding: 0
                Layout.preferredWidth: 12
                Layout.preferredHeight: 12
                Accessible.ignored: true
                // A thin turning arc in the line's own shade; the style's ring is lost on these backgrounds.
                contentItem: Item {
                    implicitWidth: 12
                    implicitHeight: 12
                    Canvas {
                        anchors.fill: parent
                        readonly property color tone: statusLine.tone
                        onToneChanged: requestPaint()
                        onPaint: {
                            const context = getContext("2d")
                            context.reset()
                            context.strokeStyle = tone
                            context.lineWidth = 1.6
                            context.lineCap = "round"
                            context.beginPath()
                            context.arc(width / 2, height / 2, width / 2 - 1, 0, Math.PI * 1.5)
                            context.stroke()
                        }
                    }
                    RotationAnimator on rotation {
                        from: 0
                        to: 360
                        duration: 900
                        loops: Animation.Infinite
                        running: busy.running
                    }
                }
            }
            SymbolIcon {
                Layout.alignment: statusLine.kind === ATCAudio.Offline ? Qt.AlignTop : Qt.AlignVCenter
                Layout.topMargin: statusLine.kind === ATCAudio.Offline ? 1 : 0
                visible: statusLine.kind === ATCAudio.Playing || statusLine.kind === ATCAudio.Offline
                name: statusLine.kind === ATCAudio.Offline ? "exclamationmark.triangle" : "waveform"
                tint: statusLine.tone
                size: view.captionSize + 1
            }
            // A long name is cut short, so the advice after it always shows.
            TextMetrics {
                id: statusName
                font: statusText.font
                text: ATCAudio.statusName
                elide: Text.ElideRight
                elideWidth: statusText.width * 1.5
            }
            Label {
                id: statusText
                objectName: "atcStatusText"
                Layout.fillWidth: true
                text: {
                    switch (statusLine.kind) {
                    case ATCAudio.Buffering: return qsTr("Buffering…")
                    case ATCAudio.Playing: return qsTr("Playing %1").arg(ATCAudio.statusName)
                    case ATCAudio.Offline: return qsTr("%1 appears offline — feeds are volunteer-run; try again later or use another feed.").arg(statusName.elidedText)
                    default: return qsTr("Not playing")
                    }
                }
                color: statusLine.tone
                font.pixelSize: view.captionSize
                wrapMode: statusLine.kind === ATCAudio.Offline ? Text.Wrap : Text.NoWrap
                elide: Text.ElideRight
                Accessible.role: Accessible.StaticText
                Accessible.name: statusLine.kind === ATCAudio.Offline
                                 ? qsTr("%1 appears offline — feeds are volunteer-run; try again later or use another feed.").arg(ATCAudio.statusName)
                                 : text
            }
        }
    }
}
