import QtQuick
import QtQuick.Controls
import Aerolume.App

// A row of segments of which at most one is chosen: the one whose value equals the stored value. A value
// that matches no segment leaves all of them unselected. The title is for screen readers only.
FocusScope {
    id: picker
    property string title
    // [{label, value}]
    property var choices: []
    property var value
    signal picked(var value)

    readonly property int selectedIndex: {
        for (let i = 0; i < choices.length; ++i) {
            if (choices[i].value === value)
                return i
        }
        return -1
    }

    implicitWidth: frame.implicitWidth
    implicitHeight: frame.implicitHeight
    activeFocusOnTab: true
    opacity: enabled ? 1.0 : 0.45

    Accessible.role: Accessible.Grouping
    Accessible.name: title

    Keys.onLeftPressed: move(-1)
    Keys.onRightPressed: move(1)

    function move(step: int) {
        const from = selectedIndex < 0 ? (step > 0 ? -1 : choices.length) : selectedIndex
        const to = Math.max(0, Math.min(choices.length - 1, from + step))
        if (to !== selectedIndex)
            picked(choices[to].value)
    }

    Rectangle {
        id: frame
        implicitWidth: row.implicitWidth + 4
        implicitHeight: row.implicitHeight + 4
        radius: 6
        color: Theme.barBackground
        border.width: picker.activeFocus ? 2 : 1
        border.color: picker.activeFocus ? Theme.accent : Theme.separator

        Row {
            id: row
            anchors.centerIn: parent
            spacing: 0
            Repeater {
                model: picker.choices
                // A radio button for screen readers, drawn as a segment.
                RadioButton {
                    id: segment
                    required property var modelData
                    required property int index
                    readonly property bool chosen: index === picker.selectedIndex
                    text: modelData.label
                    focusPolicy: Qt.NoFocus
                    checked: chosen
                    indicator: null
                    padding: 0
                    implicitWidth: Math.max(label.implicitWidth + 20, 44)
                    implicitHeight: 24
                    onClicked: picker.picked(modelData.value)

                    Accessible.name: text
                    Accessible.onPressAction: clicked()

                    background: Rectangle {
                        radius: 5
                        color: segment.chosen ? Theme.background : "transparent"
                        border.width: segment.chosen ? 1 : 0
                        border.color: Theme.separator
                    }
                    contentItem: Label {
                        id: label
                        text: segment.text
                        font.pixelSize: 12
                        font.weight: segment.chosen ? Font.DemiBold : Font.Normal
                        color: Theme.text
                        horizontalAlignment: Text.AlignHCenter
                        verticalAlignment: Text.AlignVCenter
                        Accessible.ignored: true
                    }
                }
            }
        }
    }
}
