import QtQuick
import Aerolume.Core

// The round scope: rings at thirds of the radius, a crosshair, home in the centre, and the nearest
// aircraft at their bearing and distance, north up.
Item {
    id: view

    property skyEntry entry: WidgetFaces.emptyEntry()
    property int maxBlips: 40

    Accessible.role: Accessible.Graphic
    Accessible.name: WidgetFaces.scopeDescription(view.entry, scope.plottedCount)

    RadarScope {
        id: scope
        anchors.fill: view
        entry: view.entry
        maxBlips: view.maxBlips
    }
}
