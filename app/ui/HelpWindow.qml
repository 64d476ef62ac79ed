import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Aerolume.App

// Aerolume Help: the topics in a sidebar, the chosen page beside them. With nothing chosen it shows
// Getting Started. The sidebar takes the keys first; Tab moves to the page, which scrolls with the keys.
ApplicationWindow {
    id: window

    // The topic chosen in the sidebar, empty until one is; forgotten when the window goes away.
    property string selection: ""
    readonly property string shownTopic: selection.length > 0 ? selection : HelpTopics.defaultTopic
    // The legends' sample column, shared so that both legends' texts line up on one page.
    property real legendSlotWidth: 38

    title: qsTr("Aerolume Help")
    width: 780
    height: 540
    minimumWidth: 720
    minimumHeight: 480
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

    function forgetSelection() {
        selection = ""
        topicList.currentIndex = -1
    }

    onClosing: forgetSelection()
    onVisibleChanged: {
        if (!visible)
            forgetSelection()
        else
            topicList.forceActiveFocus()
    }
    onShownTopicChanged: page.contentY = 0

    function showTopic(key: string) {
        const topics = HelpTopics.topics
        for (let i = 0; i < topics.length; ++i) {
            if (topics[i].key === key)
                topicList.currentIndex = i
        }
    }

    RowLayout {
        anchors.fill: parent
        spacing: 0

        Rectangle {
            Layout.fillHeight: true
            Layout.preferredWidth: 185
            Layout.minimumWidth: 170
            color: Theme.barBackground

            ListView {
                id: topicList
                objectName: "topicList"
                anchors.fill: parent
                anchors.margins: 8
                model: HelpTopics.topics
                currentIndex: -1
                focus: true
                activeFocusOnTab: true
                keyNavigationEnabled: true
                boundsBehavior: Flickable.StopAtBounds
                spacing: 2
                onCurrentIndexChanged: {
                    if (currentIndex >= 0)
                        window.selection = HelpTopics.topics[currentIndex].key
                }
                Accessible.role: Accessible.List
                Accessible.name: qsTr("Help topics")

                delegate: ItemDelegate {
                    id: topicRow
                    required property var modelData
                    required property int index
                    readonly property bool current: ListView.isCurrentItem

                    width: ListView.view.width
                    height: 30
                    highlighted: current
                    focusPolicy: Qt.NoFocus
                    leftPadding: 8
                    background: Rectangle {
                        radius: 6
                        color: topicRow.current
                               ? (topicList.activeFocus ? Theme.accent : Theme.selection)
                               : (topicRow.hovered ? Qt.rgba(Theme.text.r, Theme.text.g, Theme.text.b, 0.06) : "transparent")
                    }
                    contentItem: RowLayout {
                        spacing: 8
                        SymbolIcon {
                            name: topicRow.modelData.symbol
                            tint: topicRow.current && topicList.activeFocus ? "white" : Theme.accent
                            size: 16
                        }
                        Label {
                            text: topicRow.modelData.title
                            color: topicRow.current && topicList.activeFocus ? "white" : Theme.text
                            font.pixelSize: 13
                            elide: Text.ElideRight
                            Layout.fillWidth: true
                            Accessible.ignored: true
                        }
                    }
                    onClicked: {
                        topicList.currentIndex = index
                        topicList.forceActiveFocus()
                    }
                    Accessible.role: Accessible.ListItem
                    Accessible.name: modelData.title
                    Accessible.selectable: true
                    Accessible.selected: current
                    Accessible.onPressAction: clicked()
                }
            }
        }

        Rectangle {
            Layout.fillHeight: true
            Layout.preferredWidth: 1
            color: Theme.separator
        }

        Flickable {
            id: page
            objectName: "helpPage"
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            contentWidth: width
            contentHeight: pageColumn.implicitHeight + 52
            boundsBehavior: Flickable.StopAtBounds
            activeFocusOnTab: true
            ScrollBar.vertical: ScrollBar {}
            Accessible.role: Accessible.Pane
            Accessible.name: HelpTopics.page(window.shownTopic)[0].plain

            function scrollBy(delta: real) {
                contentY = Math.max(0, Math.min(contentHeight - height, contentY + delta))
            }
            Keys.onUpPressed: scrollBy(-40)
            Keys.onDownPressed: scrollBy(40)
            Keys.onPressed: event => {
                if (event.key === Qt.Key_PageUp || (event.key === Qt.Key_Space && (event.modifiers & Qt.ShiftModifier)))
                    scrollBy(-(height - 40))
                else if (event.key === Qt.Key_PageDown || event.key === Qt.Key_Space)
                    scrollBy(height - 40)
                else if (event.key === Qt.Key_Home)
                    contentY = 0
                else if (event.key === Qt.Key_End)
                    scrollBy(contentHeight)
                else
                    return
                event.accepted = true
            }

            // Where the keys are: a quiet frame around the page.
            Rectangle {
                parent: page
                anchors.fill: parent
                anchors.margins: 2
                color: "transparent"
                radius: 4
                border.width: 2
                border.color: Theme.accent
                visible: page.activeFocus
                z: 10
            }

            Column {
                id: pageColumn
                x: 26
                y: 26
                width: Math.min(560, page.width - 52)
                spacing: 14

                Repeater {
                    model: HelpTopics.page(window.shownTopic)

                    Column {
                        id: block
                        required property var modelData
                        readonly property string kind: modelData.kind
                        width: pageColumn.width

                        Text {
                            visible: block.kind === "title"
                            width: parent.width
                            text: block.modelData.text
                            textFormat: Text.StyledText
                            font.pixelSize: 22
                            font.weight: Font.DemiBold
                            color: Theme.text
                            wrapMode: Text.Wrap
                            Accessible.role: Accessible.Heading
                            Accessible.name: block.modelData.plain
                        }
                        Text {
                            visible: block.kind === "heading"
                            width: parent.width
                            text: block.modelData.text
                            textFormat: Text.StyledText
                            font.pixelSize: 15
                            font.bold: true
                            color: Theme.text
                            wrapMode: Text.Wrap
                            Accessible.role: Accessible.Heading
                            Accessible.name: block.modelData.plain
                        }
                        Text {
                            visible: block.kind === "paragraph"
                            width: parent.width
                            text: block.modelData.text
                            textFormat: Text.StyledText
                            font.pixelSize: 13
                            lineHeight: 1.15
                            color: Theme.text
                            wrapMode: Text.Wrap
                            Accessible.role: Accessible.Paragraph
                            Accessible.name: block.modelData.plain
                        }
                        RowLayout {
                            visible: block.kind === "item"
                            width: parent.width
                            spacing: 10
                            Accessible.role: Accessible.StaticText
                            Accessible.name: block.modelData.title + ". " + block.modelData.plain

                            SymbolIcon {
                                readonly property var tints: ({ "orange": Theme.systemOrange, "red": Theme.systemRed,
                                                                "green": Theme.systemGreen })
                                name: block.modelData.symbol
                                tint: tints[block.modelData.color] || Theme.accent
                                size: 18
                                Layout.alignment: Qt.AlignTop
                                Layout.topMargin: 1
                            }
                            Column {
                                spacing: 2
                                Layout.fillWidth: true
                                Text {
                                    width: parent.width
                                    text: block.modelData.title
                                    font.pixelSize: 13
                                    font.weight: Font.DemiBold
                                    color: Theme.text
                                    wrapMode: Text.Wrap
                                    Accessible.ignored: true
                                }
                                Text {
                                    width: parent.width
                                    text: block.modelData.text
                                    textFormat: Text.StyledText
                                    font.pixelSize: 13
                                    color: Theme.secondaryText
                                    wrapMode: Text.Wrap
                                    Accessible.ignored: true
                                }
                            }
                        }
                        Loader {
                            active: block.kind === "legend" && block.modelData.text === "app"
                            visible: active
                            width: parent.width
                            sourceComponent: AppLegend {
                                objectName: "appLegend"
                                Component.onCompleted: window.legendSlotWidth = Qt.binding(() => slotWidth)
                            }
                        }
                        Loader {
                            active: block.kind === "legend" && block.modelData.text === "widget"
                            visible: active
                            width: parent.width
                            sourceComponent: WidgetLegend {
                                objectName: "widgetLegend"
                                slotWidth: window.legendSlotWidth
                            }
                        }
                    }
                }
            }
        }
    }

    Shortcut {
        sequences: [StandardKey.Close]
        onActivated: window.close()
    }
}
