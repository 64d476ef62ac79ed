import QtQuick
import QtQuick.Controls
import QtQuick.Window
import Aerolume.Map

// An interactive raster map: tiles of the chosen style under a camera, with overlays and annotations on
// top (the default property), drag with fling, wheel and touchpad zoom about the pointer, pinch, rotation
// with two fingers or Ctrl+drag, double-click zoom, the keyboard, a zoom stepper, a compass and the
// credit of the tile source, always on show.
FocusScope {
    id: mapView

    readonly property MapViewport viewport: camera
    property alias styleChoice: tiles.styleChoice
    readonly property alias attribution: tiles.attribution
    readonly property alias tilesComplete: tiles.complete
    readonly property alias tileMap: tiles
    // Overlays and annotations: MapCircle, MapPolylineLayer, MapAnnotation, Repeaters of them.
    default property alias content: overlay.data
    readonly property Item overlay: overlay
    // Dark surroundings (imagery): controls and credit switch to light text.
    readonly property bool onImagery: styleChoice === "imagery" || styleChoice === "hybrid"

    // A click on the map itself, not on an annotation.
    signal backgroundTapped(real x, real y)

    activeFocusOnTab: true
    Accessible.role: Accessible.Graphic
    Accessible.name: qsTr("Map")

    // The annotation under a view point, or null: the topmost visible one whose frame holds the point.
    function annotationAt(x: real, y: real): Item {
        const children = overlay.children
        for (let i = children.length - 1; i >= 0; --i) {
            const child = children[i]
            if (!(child instanceof MapAnnotation) || !child.visible || !child.enabled)
                continue
            if (x >= child.x && x <= child.x + child.width && y >= child.y && y <= child.y + child.height)
                return child
        }
        return null
    }

    // Zooms by a factor about the centre, animated like the stepper's steps.
    function stepZoom(factor: real) {
        camera.setCamera(camera.latitude, camera.longitude, camera.distance / factor, camera.heading, camera.pitch,
                         250, Easing.OutQuad)
    }

    function faceNorth() {
        camera.setCamera(camera.latitude, camera.longitude, camera.distance, 0, 0, 300, Easing.InOutQuad)
    }

    MapViewport {
        id: camera
        width: mapView.width
        height: mapView.height
    }

    TileMap {
        id: tiles
        anchors.fill: parent
        viewport: camera
    }

    Item {
        id: overlay
        anchors.fill: parent
    }

    WholeViewDamage {
        anchors.fill: parent
        viewport: camera
    }

    DragHandler {
        id: panHandler
        target: null
        acceptedModifiers: Qt.NoModifier
        property vector2d last
        onActiveChanged: {
            if (active) {
                camera.stop()
                last = Qt.vector2d(0, 0)
                mapView.forceActiveFocus()
            } else {
                camera.fling(centroid.velocity.x, centroid.velocity.y)
            }
        }
        onTranslationChanged: {
            camera.pan(translation.x - last.x, translation.y - last.y)
            last = translation
        }
    }

    DragHandler {
        id: turnHandler
        target: null
        acceptedModifiers: Qt.ControlModifier
        property vector2d last
        onActiveChanged: {
            if (active) {
                camera.stop()
                last = Qt.vector2d(0, 0)
            }
        }
        onTranslationChanged: {
            // Sideways turns the map; a full width is half a turn.
            camera.rotateAbout((translation.x - last.x) * 180 / Math.max(mapView.width, 1), mapView.width / 2,
                               mapView.height / 2)
            last = translation
        }
    }

    PinchHandler {
        id: pinchHandler
        target: null
        property real lastScale: 1
        property real lastRotation: 0
        onActiveChanged: {
            if (active) {
                camera.stop()
                lastScale = activeScale
                lastRotation = rotation
            }
        }
        onActiveScaleChanged: {
            if (!active)
                return
            camera.zoomAbout(activeScale / lastScale, centroid.position.x, centroid.position.y)
            lastScale = activeScale
        }
        onRotationChanged: {
            if (!active)
                return
            camera.rotateAbout(rotation - lastRotation, centroid.position.x, centroid.position.y)
            lastRotation = rotation
        }
    }

    WheelHandler {
        id: wheelHandler
        target: null
        onWheel: event => {
            camera.stop()
            // A mouse wheel notch is half a level; a touchpad's pixels zoom as smoothly as they come.
            const steps = event.pixelDelta.y !== 0 ? event.pixelDelta.y / 240 : event.angleDelta.y / 240
            camera.zoomAbout(Math.pow(2, steps), wheelHandler.point.position.x, wheelHandler.point.position.y)
        }
    }

    TapHandler {
        id: tapHandler
        gesturePolicy: TapHandler.DragThreshold
        onTapped: (eventPoint, button) => {
            if (!mapView.annotationAt(eventPoint.position.x, eventPoint.position.y))
                mapView.backgroundTapped(eventPoint.position.x, eventPoint.position.y)
        }
        onDoubleTapped: (eventPoint, button) => {
            const there = camera.pointToCoordinate(eventPoint.position.x, eventPoint.position.y)
            // Half the distance, centred between here and the point, so the point stays under the pointer.
            const centre = camera.pointToCoordinate((eventPoint.position.x + mapView.width / 2) / 2,
                                                    (eventPoint.position.y + mapView.height / 2) / 2)
            camera.setCamera(centre.latitude, centre.longitude, camera.distance / 2, camera.heading, camera.pitch,
                             300, Easing.OutQuad)
        }
    }

    Keys.onPressed: event => {
        const step = 120
        switch (event.key) {
        case Qt.Key_Left:
            if (event.modifiers & Qt.ShiftModifier)
                camera.rotateAbout(-15, width / 2, height / 2)
            else
                camera.pan(step, 0)
            break
        case Qt.Key_Right:
            if (event.modifiers & Qt.ShiftModifier)
                camera.rotateAbout(15, width / 2, height / 2)
            else
                camera.pan(-step, 0)
            break
        case Qt.Key_Up:
            camera.pan(0, step)
            break
        case Qt.Key_Down:
            camera.pan(0, -step)
            break
        case Qt.Key_Plus:
        case Qt.Key_Equal:
            mapView.stepZoom(2)
            break
        case Qt.Key_Minus:
            mapView.stepZoom(0.5)
            break
        default:
            return
        }
        event.accepted = true
    }

    // The built-in controls: the zoom stepper and the compass, top trailing.
    Column {
        id: controls
        anchors.top: parent.top
        anchors.right: parent.right
        anchors.margins: 12
        spacing: 8

        Rectangle {
            id: stepper
            width: 32
            height: 64
            radius: 8
            color: Qt.rgba(mapView.palette.window.r, mapView.palette.window.g, mapView.palette.window.b, 0.9)
            border.color: Qt.rgba(0, 0, 0, 0.15)

            Column {
                anchors.fill: parent

                ToolButton {
                    id: zoomIn
                    width: 32
                    height: 32
                    text: "+"
                    font.pixelSize: 18
                    onClicked: mapView.stepZoom(2)
                    Accessible.name: qsTr("Zoom in")
                    Accessible.onPressAction: clicked()
                    ToolTip.visible: hovered
                    ToolTip.text: qsTr("Zoom in")
                }
                ToolButton {
                    id: zoomOut
                    width: 32
                    height: 32
                    text: "−"
                    font.pixelSize: 18
                    onClicked: mapView.stepZoom(0.5)
                    Accessible.name: qsTr("Zoom out")
                    Accessible.onPressAction: clicked()
                    ToolTip.visible: hovered
                    ToolTip.text: qsTr("Zoom out")
                }
            }
        }

        AbstractButton {
            id: compass
            width: 32
            height: 32
            onClicked: mapView.faceNorth()
            Accessible.role: Accessible.Button
            Accessible.name: qsTr("Compass, heading %1 degrees. Turns the map north up").arg(Math.round(camera.heading))
            Accessible.onPressAction: clicked()
            ToolTip.visible: hovered
            ToolTip.text: qsTr("Turn the map north up")

            background: Rectangle {
                radius: width / 2
                color: Qt.rgba(mapView.palette.window.r, mapView.palette.window.g, mapView.palette.window.b, 0.9)
                border.color: Qt.rgba(0, 0, 0, 0.15)
            }
            contentItem: Item {
                rotation: -camera.heading

                Rectangle {
                    // The north half of the needle.
                    x: parent.width / 2 - 2.5
                    y: 5
                    width: 5
                    height: parent.height / 2 - 5
                    radius: 2
                    color: "#FF3B30"
                }
                Rectangle {
                    x: parent.width / 2 - 2.5
                    y: parent.height / 2
                    width: 5
                    height: parent.height / 2 - 5
                    radius: 2
                    color: "#8E8E93"
                }
            }
        }
    }

    // The credit of the tile source: always shown, bottom leading, under the map's own controls.
    Label {
        id: credit
        anchors.left: parent.left
        anchors.bottom: parent.bottom
        anchors.margins: 4
        padding: 2
        leftPadding: 4
        rightPadding: 4
        text: tiles.attribution
        font.pixelSize: 10
        color: mapView.onImagery ? "white" : "#333333"
        width: Math.min(implicitWidth, mapView.width - 8)
        elide: Text.ElideRight
        background: Rectangle {
            radius: 3
            color: mapView.onImagery ? Qt.rgba(0, 0, 0, 0.45) : Qt.rgba(1, 1, 1, 0.7)
        }
        Accessible.name: text
    }
}
