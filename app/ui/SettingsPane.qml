import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Aerolume.App

// The scrolling detail of the settings window: a column of sections, 22 points apart, at most 520 points
// wide, with 26 points of padding, at the leading edge.
ScrollView {
    id: pane
    default property alias content: column.data
    property string title
    property real sectionSpacing: 22

    contentWidth: availableWidth
    clip: true
    Accessible.role: Accessible.Pane
    Accessible.name: title

    ColumnLayout {
        id: column
        x: 26
        y: 26
        width: Math.min(520, pane.availableWidth - 52)
        spacing: pane.sectionSpacing
    }
    // The padding under the last section.
    contentHeight: column.implicitHeight + 52

    // Keyboard focus moving to a control out of sight scrolls it into view.
    Connections {
        target: pane.Window.window
        function onActiveFocusItemChanged() {
            pane.reveal(pane.Window.window.activeFocusItem)
        }
    }

    function reveal(item: Item) {
        let chain = []
        let inside = item
        while (inside && inside !== column) {
            chain.unshift(inside)
            inside = inside.parent
        }
        if (!inside)
            return
        // Layouts place their items when next polished; a row that just appeared needs its place now.
        column.ensurePolished()
        for (const layer of chain)
            layer.ensurePolished()
        const flickable = pane.contentItem
        const top = item.mapToItem(column, 0, 0).y + column.y - 8
        const bottom = top + item.height + 16
        if (top < flickable.contentY)
            flickable.contentY = Math.max(0, top)
        else if (bottom > flickable.contentY + flickable.height)
            flickable.contentY = Math.min(flickable.contentHeight - flickable.height, bottom - flickable.height)
    }
}
