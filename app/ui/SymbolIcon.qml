import QtQuick

// A symbol drawn in one colour at its size, sharp at any scale. Decorative: the control around it speaks.
Image {
    id: icon
    property string name
    property color tint: Theme.text
    property real size: 16

    width: size
    height: size
    sourceSize.width: Math.ceil(size * Screen.devicePixelRatio)
    sourceSize.height: Math.ceil(size * Screen.devicePixelRatio)
    source: name.length > 0 ? Theme.symbol(name, tint) : ""
    fillMode: Image.PreserveAspectFit
    smooth: true
    Accessible.ignored: true
}
