import QtQuick

// The ring around the selected marker. Animated, it expands and fades again and again; still, it is a
// steady wider ring.
Item {
    id: halo

    property color color: "orange"
    property bool animate: true
    property bool pulsing: false

    // The pulse starts each time the halo appears.
    onVisibleChanged: pulsing = visible
    Component.onCompleted: pulsing = visible

    Rectangle {
        id: still
        anchors.fill: parent
        visible: !halo.animate
        radius: width / 2
        color: "transparent"
        border.color: halo.color
        border.width: 3
        opacity: 0.4
        scale: 1.7
    }

    Rectangle {
        id: pulse
        anchors.fill: parent
        visible: halo.animate
        radius: width / 2
        color: "transparent"
        border.color: halo.color
        border.width: 2.5
        opacity: 0.75
        scale: 1.0

        ParallelAnimation {
            running: halo.animate && halo.pulsing && halo.visible
            loops: Animation.Infinite
            NumberAnimation {
                target: pulse
                property: "opacity"
                from: 0.75
                to: 0
                duration: 1100
                easing.type: Easing.OutQuad
            }
            NumberAnimation {
                target: pulse
                property: "scale"
                from: 1.0
                to: 2.8
                duration: 1100
                easing.type: Easing.OutQuad
            }
        }
    }
}
