pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Window
import Aerolume.Map

// The radar map: the search area around home with its ring and pin, the shown aircraft as markers that
// glide between refreshes, their trails, the three map controls, the altitude key, and the detail card of
// the selection. Selecting a marker sets the store's selectedHex; a new selection moves the camera.
Item {
    id: radar

    // The FlightStore and the DefaultsStore.
    property var store: null
    property var defaults: null
    // The camera distance the map last reported; 0 until it reports one.
    property real cameraDistance: 0

    readonly property alias map: mapView
    readonly property alias settings: settings
    readonly property alias detailCard: card
    readonly property string styleName: RadarSupport.styleName(settings.mapStyleChoice)
    readonly property real dpr: Screen.devicePixelRatio > 0 ? Screen.devicePixelRatio : 1

    function apply(target: var) {
        if (target === undefined || target === null)
            return
        mapView.viewport.setCamera(target.latitude, target.longitude, target.distance, target.heading, target.pitch,
                                   settings.reduceMotion ? 0 : target.durationMs, target.easing)
    }

    // Frames the whole search area.
    function recenter() {
        apply(RadarSupport.recenterTarget(store))
    }

    // Back to home at the current zoom.
    function centerOnHome() {
        apply(RadarSupport.centerOnHomeTarget(store, cameraDistance))
    }

    // To the selected aircraft.
    function focusOnSelection() {
        apply(RadarSupport.focusOnSelectionTarget(store, cameraDistance))
    }

    function chooseStyle(choice: string) {
        if (defaults)
            defaults.setValue("mapStyleChoice", choice)
    }

    Component.onCompleted: recenter()

    MapSettings {
        id: settings
        defaults: radar.defaults
    }

    Connections {
        target: radar.store
        function onHomeChanged() {
            radar.recenter()
        }
        function onRadiusNMChanged() {
            radar.recenter()
        }
        function onSelectedHexChanged() {
            radar.focusOnSelection()
        }
    }

    Connections {
        target: mapView.viewport
        function onCameraChanged() {
            if (mapView.width > 0 && mapView.height > 0)
                radar.cameraDistance = mapView.viewport.distance
        }
    }

    MapView {
        id: mapView
        anchors.fill: parent
        styleChoice: settings.mapStyleChoice
        onBackgroundTapped: {
            if (radar.store)
                radar.store.selectedHex = ""
        }

        MapCircle {
            id: rangeRing
            anchors.fill: parent
            viewport: mapView.viewport
            visible: radar.store ? radar.store.hasHome : false
            centerLatitude: visible ? radar.store.home.latitude : 0
            centerLongitude: visible ? radar.store.home.longitude : 0
            radius: radar.store ? radar.store.radiusNM * 1852 : 0
            readonly property color ringColor: RadarSupport.rangeRingColor(settings.mapStyleChoice)
            color: Qt.rgba(ringColor.r, ringColor.g, ringColor.b, 0.05)
            borderColor: Qt.rgba(ringColor.r, ringColor.g, ringColor.b, 0.5)
            borderWidth: 1.5
        }

        MapAnnotation {
            id: homePin
            viewport: mapView.viewport
            visible: radar.store ? radar.store.hasHome : false
            latitude: visible ? radar.store.home.latitude : 0
            longitude: visible ? radar.store.home.longitude : 0
            title: "Home"
            width: 22
            height: 22
            Accessible.role: Accessible.Graphic
            Accessible.name: title

            Image {
                anchors.centerIn: parent
                width: 32
                height: 32
                source: RadarSupport.homeSource(22, radar.dpr)
            }
        }

        RadarTrailLayer {
            id: trails
            objectName: "trailLayer"
            anchors.fill: parent
            viewport: mapView.viewport
            store: radar.store
            showTrails: settings.showTrails
            colorByAltitude: settings.colorByAltitude
            planeColorHex: settings.planeColorHex
            trailWidth: settings.trailWidth
        }

        Repeater {
            id: markers
            model: radar.store ? radar.store.displayedModel : null

            MapAnnotation {
                id: annotation

                required property var aircraft
                required property string hex
                readonly property bool placed: aircraft.lat !== undefined && aircraft.lon !== undefined
                readonly property bool selected: radar.store.selectedHex === hex

                viewport: mapView.viewport
                visible: placed
                latitude: placed ? aircraft.lat : 0
                longitude: placed ? aircraft.lon : 0
                glide: !settings.reduceMotion
                title: aircraft.displayName
                tag: hex
                width: marker.width
                height: marker.height
                z: selected ? 2 : 1

                PlaneMarker {
                    id: marker
                    objectName: "marker-" + annotation.hex
                    aircraft: annotation.aircraft
                    isSelected: annotation.selected
                    baseColor: RadarSupport.markerBaseColor(annotation.aircraft, settings.colorByAltitude,
                                                            settings.planeColorHex)
                    markerScale: settings.markerScale
                    highContrast: settings.increaseContrast
                    showSymbols: settings.differentiateWithoutColor
                    animate: !settings.reduceMotion
                    accessibleName: RadarSupport.accessibilityText(annotation.aircraft, settings.distanceUnit)
                    onActivated: radar.store.selectedHex = annotation.hex
                }

                // The title, under the marker.
                Image {
                    anchors.top: marker.bottom
                    anchors.horizontalCenter: marker.horizontalCenter
                    anchors.topMargin: -1
                    source: RadarSupport.labelSource(annotation.title, mapView.onImagery, radar.dpr)
                    Accessible.ignored: true
                }

                TapHandler {
                    gesturePolicy: TapHandler.DragThreshold
                    onTapped: radar.store.selectedHex = annotation.hex
                }
            }
        }
    }

    Column {
        id: controls
        anchors.left: parent.left
        anchors.bottom: parent.bottom
        anchors.leftMargin: 12
        anchors.bottomMargin: 36
        spacing: 8

        AltitudeLegend {
            id: legend
            objectName: "altitudeLegend"
            visible: settings.colorByAltitude
        }

        Row {
            spacing: 8

            MapControlCapsule {
                id: fitAll
                objectName: "fitAllButton"
                text: "Fit All"
                symbol: "scope"
                tip: "Zoom to show the full search radius"
                onClicked: radar.recenter()
            }
            MapControlCapsule {
                id: homeButton
                text: "Home"
                symbol: "house.fill"
                tip: "Recenter the map on home, keeping the current zoom"
                onClicked: radar.centerOnHome()
            }
            MapControlCapsule {
                id: styleButton
                text: radar.styleName
                symbol: "square.3.layers.3d"
                tip: "Choose the map style"
                Accessible.role: Accessible.ButtonMenu
                onClicked: styleMenu.open()

                Menu {
                    id: styleMenu
                    y: -implicitHeight - 4
                    title: "Map style"

                    Repeater {
                        model: [{
                                "title": "Standard",
                                "choice": "standard"
                            }, {
                                "title": "Muted",
                                "choice": "muted"
                            }, {
                                "title": "Satellite",
                                "choice": "imagery"
                            }, {
                                "title": "Hybrid",
                                "choice": "hybrid"
                            }]

                        MenuItem {
                            required property var modelData
                            text: modelData.title
                            checkable: true
                            checked: settings.mapStyleChoice === modelData.choice
                            onTriggered: radar.chooseStyle(modelData.choice)
                            Accessible.onPressAction: triggered()
                        }
                    }
                }
            }
        }
    }

    AircraftDetailCard {
        id: card
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.margins: 12
        visible: radar.store ? radar.store.hasSelection : false
        store: radar.store
        defaults: radar.defaults
        aircraft: visible ? radar.store.selectedAircraft : null
    }
}
