import QtQuick

// The settings the map, its markers and the card read, each a live binding to its key in the defaults
// store: a change made anywhere shows at once. A key's default applies while the key is absent.
QtObject {
    id: settings

    // The DefaultsStore.
    property var defaults: null
    // Moves on at every change of a key, so every reading below is taken again.
    property int revision: 0

    readonly property string planeColorHex: readText("planeColorHex", "#FF8A00", revision)
    readonly property real markerScale: readNumber("markerScale", 1.0, revision)
    readonly property string mapStyleChoice: readText("mapStyleChoice", "standard", revision)
    readonly property string distanceUnit: readText("distanceUnit", "mi", revision)
    readonly property bool increaseContrast: readFlag("increaseContrast", false, revision)
    readonly property bool differentiateWithoutColor: readFlag("differentiateWithoutColor", false, revision)
    readonly property bool reduceMotion: readFlag("reduceMotion", false, revision)
    readonly property bool colorByAltitude: readFlag("colorByAltitude", false, revision)
    readonly property bool showTrails: readFlag("showTrails", true, revision)
    readonly property real trailWidth: readNumber("trailWidth", 2.0, revision)
    readonly property real textScale: readNumber("textScale", 1.0, revision)

    function readText(key: string, fallback: string, at: int): string {
        if (!defaults)
            return fallback
        const value = defaults.value(key)
        return value === undefined || value === null ? fallback : String(value)
    }

    function readNumber(key: string, fallback: real, at: int): real {
        if (!defaults)
            return fallback
        const value = defaults.value(key)
        if (value === undefined || value === null || value === "")
            return fallback
        const number = Number(value)
        return isFinite(number) ? number : fallback
    }

    function readFlag(key: string, fallback: bool, at: int): bool {
        if (!defaults || !defaults.contains(key))
            return fallback
        return defaults.boolValue(key)
    }

    property Connections watcher: Connections {
        target: settings.defaults
        function onChanged(key: string) {
            settings.revision++
        }
    }
}
