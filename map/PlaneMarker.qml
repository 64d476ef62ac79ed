import QtQuick
import QtQuick.Window
import Aerolume.Map

// An aircraft on the map: a disc of its colour with a ring and a shadow, the airplane glyph turned to its
// track, a halo while selected, and with differentiateWithoutColor a badge for emergency and military.
// Disc, ring, shadow and glyph come as one shared image, so thousands of markers stay cheap to draw.
Item {
    id: marker

    // The Aircraft shown; its track turns the glyph, its state may override the colour.
    property var aircraft
    property bool isSelected: false
    property color baseColor: "#FF8A00"
    property real markerScale: 1.0
    property bool highContrast: false
    property bool showSymbols: false
    property bool animate: true
    property string accessibleName: aircraft ? aircraft.displayName : ""

    // Asked for by a screen reader's press action: the view selects the aircraft.
    signal activated

    readonly property color fill: aircraft ? RadarSupport.effectiveFill(aircraft, baseColor) : baseColor
    readonly property real frame: RadarSupport.markerFrame(isSelected, markerScale)
    readonly property real dpr: Screen.devicePixelRatio > 0 ? Screen.devicePixelRatio : 1
    readonly property bool hasBadge: showSymbols && aircraft !== undefined && aircraft !== null
                                     && (aircraft.isEmergency || aircraft.isMilitary)
    // The frame's size relative to the size it is heading for: 1 at rest, animated after a change.
    property real growth: 1.0

    width: frame
    height: frame

    Accessible.role: Accessible.Button
    Accessible.name: accessibleName
    Accessible.selectable: true
    Accessible.selected: isSelected
    Accessible.onPressAction: marker.activated()

    onIsSelectedChanged: {
        // From the old frame to the new one: a critically damped spring, approximated by a curve.
        if (animate) {
            const previous = RadarSupport.markerFrame(!isSelected, markerScale)
            growthAnimation.stop()
            growthAnimation.from = previous / frame
            growthAnimation.start()
        } else {
            growthAnimation.stop()
            growth = 1.0
        }
    }

    NumberAnimation {
        id: growthAnimation
        target: marker
        property: "growth"
        to: 1.0
        duration: 300
        easing.type: Easing.BezierSpline
        easing.bezierCurve: [0.25, 0.25, 0.1, 1.0, 1.0, 1.0]
    }

    SelectionHalo {
        anchors.centerIn: parent
        width: marker.frame
        height: marker.frame
        visible: marker.isSelected
        color: marker.fill
        animate: marker.animate
    }

    Image {
        id: body
        anchors.centerIn: parent
        width: RadarSupport.markerCanvas(marker.isSelected, marker.markerScale)
        height: width
        scale: marker.growth
        smooth: true
        source: RadarSupport.markerSource(marker.fill, marker.isSelected, marker.highContrast, marker.markerScale,
                                          marker.aircraft ? marker.aircraft.track : undefined, marker.dpr)
    }

    Image {
        id: badge
        visible: marker.hasBadge
        width: RadarSupport.badgeSide(marker.markerScale)
        height: width
        // Its top-trailing corner on the frame's, then 3 points out to the right and up.
        x: marker.width / 2 + marker.frame * marker.growth / 2 - width + 3
        y: marker.height / 2 - marker.frame * marker.growth / 2 - 3
        source: visible ? RadarSupport.badgeSource(marker.aircraft.isEmergency, marker.markerScale, marker.dpr) : ""
    }
}
