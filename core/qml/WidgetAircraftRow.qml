import QtQuick
import QtQuick.Layouts
import Aerolume.Core

// One aircraft on one line: glyph, name, and on the right its distance and altitude.
RowLayout {
    id: row

    required property aircraft aircraft
    property string unit: "mi"
    property scopePalette scopePalette: WidgetFaces.standardPalette

    // "GND", "12,500ft", "FL240" or "—".
    function shortAltitude(aircraft) {
        return WidgetFaces.shortAltitude(aircraft)
    }

    spacing: 5
    Accessible.role: Accessible.ListItem
    Accessible.name: WidgetFaces.rowDescription(row.aircraft, row.unit)

    PlaneGlyph {
        implicitWidth: 10
        implicitHeight: 10
        color: row.scopePalette.blipColorOf(row.aircraft)
        // Without a track the glyph lies on its side, pointing east, as the symbol does unturned.
        heading: row.aircraft.track !== undefined ? row.aircraft.track : 90
        Accessible.ignored: true
    }

    Text {
        text: row.aircraft.displayName
        color: row.scopePalette.phosphor
        font.pixelSize: 10
        font.bold: true
        elide: Text.ElideRight
        Layout.maximumWidth: row.width * 0.55
        Accessible.ignored: true
    }

    Item {
        Layout.fillWidth: true
        Layout.minimumWidth: 4
    }

    Text {
        readonly property string distance: WidgetFaces.distance(row.aircraft, row.unit)
        visible: distance.length > 0
        text: distance
        color: row.scopePalette.dim
        font.pixelSize: 9
        Accessible.ignored: true
    }

    Text {
        text: row.shortAltitude(row.aircraft)
        color: row.scopePalette.dim
        font.pixelSize: 9
        Accessible.ignored: true
    }
}
