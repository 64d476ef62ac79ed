pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import QtQuick.Window
import Aerolume.Map

// The floating card of the selected aircraft: names, photo, route, the flight data, where to look in the
// sky, and a link to the web track viewer. Route and photo are looked up once per selection and appear
// when the store's caches fill; the rows follow the live record at every refresh.
Rectangle {
    id: card

    // The FlightStore and the DefaultsStore.
    property var store: null
    property var defaults: null
    // The current record of the selection.
    property var aircraft: null

    readonly property real textScale: settings.textScale
    readonly property color primaryText: palette.windowText
    readonly property color secondaryText: Qt.rgba(primaryText.r, primaryText.g, primaryText.b, 0.62)
    readonly property color tertiaryText: Qt.rgba(primaryText.r, primaryText.g, primaryText.b, 0.4)

    // Moved on by the store's caches, so that route and photo are read again when they fill.
    property int routesRevision: 0
    property int photosRevision: 0
    readonly property var route: aircraft && store ? routeOf(routesRevision) : undefined
    readonly property var photo: aircraft && store ? photoOf(photosRevision) : undefined
    readonly property var rows: aircraft ? RadarSupport.detailRows(aircraft, route, settings.distanceUnit) : []
    readonly property url trackUrl: aircraft ? RadarSupport.trackUrl(aircraft.hex) : ""

    // The lookups run once per selected aircraft, not at every refresh of its record.
    property string lookedUpHex: ""

    function routeOf(revision: int): var {
        return store.routeFor(aircraft)
    }

    function photoOf(revision: int): var {
        return store.photoFor(aircraft)
    }

    function startLookups() {
        if (!aircraft || !store || aircraft.hex === lookedUpHex)
            return
        lookedUpHex = aircraft.hex
        store.loadRoute(aircraft)
        store.loadPhoto(aircraft)
    }

    onAircraftChanged: startLookups()
    onStoreChanged: startLookups()

    width: 265 * Math.max(textScale, 1.0)
    implicitHeight: column.implicitHeight + 28
    height: implicitHeight
    radius: 12
    color: Qt.rgba(palette.window.r, palette.window.g, palette.window.b, 0.94)
    border.color: Qt.rgba(primaryText.r, primaryText.g, primaryText.b, 0.08)

    Accessible.role: Accessible.Pane
    Accessible.name: aircraft ? qsTr("Details of %1").arg(aircraft.displayName) : ""

    MapSettings {
        id: settings
        defaults: card.defaults
    }

    Connections {
        target: card.store
        function onRoutesChanged() {
            card.routesRevision++
        }
        function onPhotosChanged() {
            card.photosRevision++
        }
    }

    // The shadow: black at 0.33, eight points soft, two down; layered rings stand in for the blur.
    Repeater {
        model: 4
        Rectangle {
            required property int index
            z: -1
            x: -index * 2
            y: 2 - index * 2 + 2
            width: card.width + index * 4
            height: card.height + index * 4
            radius: card.radius + index * 2
            color: "transparent"
            border.width: 2
            border.color: Qt.rgba(0, 0, 0, 0.33 / (index + 2))
        }
    }

    ColumnLayout {
        id: column
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: 14
        spacing: 10

        RowLayout {
            Layout.fillWidth: true
            spacing: 6

            Label {
                text: card.aircraft ? card.aircraft.displayName : ""
                font.pixelSize: 15 * card.textScale
                font.bold: true
                color: card.primaryText
                elide: Text.ElideRight
                Layout.fillWidth: !emergencyBadge.visible
                Accessible.name: text
            }
            Label {
                id: emergencyBadge
                visible: card.aircraft ? card.aircraft.isEmergency : false
                text: "EMERGENCY"
                font.pixelSize: 10 * card.textScale
                font.bold: true
                color: "white"
                leftPadding: 5
                rightPadding: 5
                topPadding: 2
                bottomPadding: 2
                background: Rectangle {
                    radius: 4
                    color: RadarSupport.systemColor("red")
                }
                Accessible.name: text
            }
            Item {
                Layout.fillWidth: emergencyBadge.visible
            }
            AbstractButton {
                id: closeButton
                implicitWidth: 18
                implicitHeight: 18
                onClicked: card.store.selectedHex = ""
                Accessible.role: Accessible.Button
                Accessible.name: qsTr("Close")
                Accessible.onPressAction: clicked()
                contentItem: Image {
                    source: RadarSupport.symbolSource("xmark.circle.fill", card.secondaryText, 18,
                                                      Screen.devicePixelRatio > 0 ? Screen.devicePixelRatio : 1)
                }
            }
        }

        Label {
            visible: card.aircraft !== null && card.aircraft.typeName !== undefined
            text: visible ? card.aircraft.typeName : ""
            font.pixelSize: 10 * card.textScale
            color: card.secondaryText
            elide: Text.ElideRight
            Layout.fillWidth: true
            Layout.topMargin: -6
            Accessible.name: text
        }

        ColumnLayout {
            id: photoBlock
            visible: card.photo !== undefined && card.photo !== null
            spacing: 3
            Layout.fillWidth: true

            Item {
                Layout.fillWidth: true
                Layout.preferredHeight: 96
                clip: true

                // While the image loads, or when it fails, a plain fill of the same size.
                Rectangle {
                    anchors.fill: parent
                    radius: 8
                    color: Qt.rgba(card.primaryText.r, card.primaryText.g, card.primaryText.b, 0.1)
                    visible: photoImage.status !== Image.Ready
                }
                Image {
                    id: photoImage
                    objectName: "photoImage"
                    anchors.fill: parent
                    fillMode: Image.PreserveAspectCrop
                    asynchronous: true
                    source: photoBlock.visible ? card.photo.thumbnailURL : ""
                    Accessible.role: Accessible.Graphic
                    Accessible.name: qsTr("Photo of the aircraft")
                }
                // Rounded corners: the card's own colour drawn over the image's corners.
                Rectangle {
                    anchors.fill: parent
                    anchors.margins: -3
                    radius: 11
                    color: "transparent"
                    border.width: 3
                    border.color: card.color
                }
            }

            Label {
                id: credit
                readonly property bool linked: photoBlock.visible && String(card.photo.pageURL) !== ""
                visible: photoBlock.visible && card.photo.photographer !== ""
                text: visible ? "Photo: " + card.photo.photographer : ""
                font.pixelSize: 8 * card.textScale
                font.underline: linked && creditHover.hovered
                color: card.tertiaryText
                Accessible.role: linked ? Accessible.Link : Accessible.StaticText
                Accessible.name: text
                Accessible.onPressAction: if (linked) Qt.openUrlExternally(card.photo.pageURL)

                HoverHandler {
                    id: creditHover
                    enabled: credit.linked
                    cursorShape: Qt.PointingHandCursor
                }
                TapHandler {
                    enabled: credit.linked
                    onTapped: Qt.openUrlExternally(card.photo.pageURL)
                }
            }
        }

        ColumnLayout {
            spacing: 2
            Layout.fillWidth: true

            Repeater {
                model: card.rows

                RowLayout {
                    id: detailRow
                    required property var modelData
                    Layout.fillWidth: true
                    spacing: 8
                    Accessible.role: Accessible.StaticText
                    Accessible.name: modelData.label + ": " + modelData.value

                    Label {
                        text: detailRow.modelData.label
                        font.pixelSize: 12 * card.textScale
                        color: card.secondaryText
                        Accessible.ignored: true
                    }
                    Item {
                        Layout.fillWidth: true
                    }
                    Label {
                        id: valueLabel
                        text: detailRow.modelData.value
                        font.pixelSize: 12 * card.textScale
                        color: card.primaryText
                        elide: Text.ElideRight
                        maximumLineCount: 1
                        horizontalAlignment: Text.AlignRight
                        Layout.maximumWidth: column.width * 0.7
                        Accessible.ignored: true

                        HoverHandler {
                            id: valueHover
                        }
                        ToolTip.visible: valueHover.hovered && detailRow.modelData.tooltip !== ""
                        ToolTip.text: detailRow.modelData.tooltip
                    }
                }
            }
        }

        Label {
            id: trackLink
            visible: String(card.trackUrl) !== ""
            text: RadarSupport.trackLinkText()
            font.pixelSize: 10 * card.textScale
            font.underline: linkHover.hovered
            color: card.palette.link
            Layout.alignment: Qt.AlignHCenter
            Accessible.role: Accessible.Link
            Accessible.name: text
            Accessible.onPressAction: Qt.openUrlExternally(card.trackUrl)

            HoverHandler {
                id: linkHover
                cursorShape: Qt.PointingHandCursor
            }
            TapHandler {
                onTapped: Qt.openUrlExternally(card.trackUrl)
            }
        }
    }
}
