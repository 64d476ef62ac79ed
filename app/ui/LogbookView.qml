import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import QtCharts
import Aerolume.App

// The Logbook: four tiles of counts, aircraft per day and per hour over the last two weeks, and the
// types most recently seen for the first time. It keeps nothing of its own and redraws at every change
// of the log.
ScrollView {
    id: view

    property SightingLog log: SightingLog

    readonly property int headlineSize: 13
    readonly property int captionSize: 11
    readonly property int calloutSize: 12
    readonly property int axisLabelSize: 10

    function countText(value: double): string {
        return Number(value).toLocaleString(Qt.locale(), "f", 0)
    }

    // What a screen reader says for a chart: each bar's label and count.
    function chartDescription(labels: list<string>, counts: list<double>): string {
        const parts = []
        for (let i = 0; i < labels.length && i < counts.length; ++i)
            parts.push(qsTr("%1: %2").arg(labels[i]).arg(countText(counts[i])))
        return parts.join(", ")
    }

    contentWidth: availableWidth
    contentHeight: content.implicitHeight
    ScrollBar.horizontal.policy: ScrollBar.AlwaysOff

    LogbookFigures {
        id: figures
        objectName: "logbookFigures"
        log: view.log
    }

    ColumnLayout {
        id: content
        width: view.availableWidth
        spacing: 0

        ColumnLayout {
            Layout.fillWidth: true
            Layout.margins: 20
            spacing: 22

            // Four equal tiles across the width.
            Row {
                id: tiles
                objectName: "logbookTiles"
                readonly property real tileWidth: (width - 3 * spacing) / 4
                Layout.fillWidth: true
                // The width comes from the column alone, never from the tiles it sizes.
                Layout.preferredWidth: 1
                spacing: 12

                StatTile {
                    objectName: "todayTile"
                    width: tiles.tileWidth
                    title: qsTr("Today")
                    value: figures.todayCount
                }
                StatTile {
                    objectName: "lastSevenDaysTile"
                    width: tiles.tileWidth
                    title: qsTr("Last 7 days")
                    value: figures.lastSevenDaysCount
                }
                StatTile {
                    objectName: "typesTile"
                    width: tiles.tileWidth
                    title: qsTr("Aircraft types")
                    value: figures.typeCount
                }
                StatTile {
                    objectName: "allTimeTile"
                    width: tiles.tileWidth
                    title: qsTr("All time")
                    value: figures.totalUnique
                }
            }

            ColumnLayout {
                Layout.fillWidth: true
                spacing: 10

                Label {
                    text: qsTr("Aircraft per day — last 14 days")
                    font.pixelSize: view.headlineSize
                    font.bold: true
                    color: Theme.text
                    Accessible.role: Accessible.Heading
                    Accessible.name: text
                }
                ChartView {
                    id: dayChart
                    objectName: "dayChart"
                    Layout.fillWidth: true
                    Layout.preferredHeight: 160
                    legend.visible: false
                    antialiasing: true
                    animationOptions: ChartView.NoAnimation
                    backgroundColor: "transparent"
                    plotAreaColor: "transparent"
                    backgroundRoundness: 0
                    margins.top: 0
                    margins.bottom: 0
                    margins.left: 0
                    margins.right: 0
                    Accessible.role: Accessible.Chart
                    Accessible.name: qsTr("Aircraft per day — last 14 days")
                    Accessible.description: view.chartDescription(figures.dayLabels, figures.dayCounts)

                    BarCategoryAxis {
                        id: dayAxis
                        objectName: "dayAxis"
                        categories: figures.dayLabels
                        titleText: qsTr("Day")
                        // "12/28" is the widest a label gets, and it fits its bar's width.
                        truncateLabels: false
                        gridVisible: false
                        labelsFont.pixelSize: view.axisLabelSize
                    }
                    ValueAxis {
                        id: dayCountAxis
                        objectName: "dayCountAxis"
                        titleText: qsTr("Aircraft")
                        labelsFont.pixelSize: view.axisLabelSize
                    }
                    BarSeries {
                        id: daySeries
                        axisX: dayAxis
                        axisY: dayCountAxis
                        barWidth: 0.7
                        BarSet {
                            id: dayBars
                            objectName: "dayBars"
                            label: qsTr("Aircraft")
                            values: figures.dayCounts
                        }
                    }
                }
                BarChartLook {
                    id: dayChartLook
                    objectName: "dayChartLook"
                    series: daySeries
                    categoryAxis: dayAxis
                    valueAxis: dayCountAxis
                    color: Theme.accent
                    textColor: Theme.secondaryText
                    lineColor: Theme.separator
                }
            }

            ColumnLayout {
                Layout.fillWidth: true
                spacing: 10

                Label {
                    text: qsTr("Busiest hours — last 14 days")
                    font.pixelSize: view.headlineSize
                    font.bold: true
                    color: Theme.text
                    Accessible.role: Accessible.Heading
                    Accessible.name: text
                }
                ChartView {
                    id: hourChart
                    objectName: "hourChart"
                    Layout.fillWidth: true
                    Layout.preferredHeight: 140
                    legend.visible: false
                    antialiasing: true
                    animationOptions: ChartView.NoAnimation
                    backgroundColor: "transparent"
                    plotAreaColor: "transparent"
                    backgroundRoundness: 0
                    margins.top: 0
                    margins.bottom: 0
                    margins.left: 0
                    margins.right: 0
                    Accessible.role: Accessible.Chart
                    Accessible.name: qsTr("Busiest hours — last 14 days")
                    Accessible.description: view.chartDescription(hourAxis.hourNames, figures.hourCounts)

                    // One bar per hour, marked only at the quarters of the day and its last hour.
                    CategoryAxis {
                        id: hourAxis
                        objectName: "hourAxis"
                        readonly property list<string> hourNames: {
                            const names = []
                            for (let hour = 0; hour < 24; ++hour)
                                names.push(qsTr("%1:00").arg(hour))
                            return names
                        }
                        min: -0.5
                        max: 23.5
                        startValue: -0.5
                        labelsPosition: CategoryAxis.AxisLabelsPositionOnValue
                        titleText: qsTr("Hour")
                        // A line at each mark, so the marks read across the chart.
                        gridVisible: true
                        labelsFont.pixelSize: view.axisLabelSize
                        CategoryRange { label: hourAxis.hourNames[0]; endValue: 0 }
                        CategoryRange { label: hourAxis.hourNames[6]; endValue: 6 }
                        CategoryRange { label: hourAxis.hourNames[12]; endValue: 12 }
                        CategoryRange { label: hourAxis.hourNames[18]; endValue: 18 }
                        CategoryRange { label: hourAxis.hourNames[23]; endValue: 23 }
                    }
                    ValueAxis {
                        id: hourCountAxis
                        objectName: "hourCountAxis"
                        titleText: qsTr("Aircraft")
                        labelsFont.pixelSize: view.axisLabelSize
                    }
                    BarSeries {
                        id: hourSeries
                        axisX: hourAxis
                        axisY: hourCountAxis
                        barWidth: 0.7
                        BarSet {
                            id: hourBars
                            objectName: "hourBars"
                            label: qsTr("Aircraft")
                            values: figures.hourCounts
                        }
                    }
                }
                BarChartLook {
                    id: hourChartLook
                    objectName: "hourChartLook"
                    series: hourSeries
                    categoryAxis: hourAxis
                    valueAxis: hourCountAxis
                    color: Theme.accent
                    textColor: Theme.secondaryText
                    lineColor: Theme.separator
                }
            }

            ColumnLayout {
                Layout.fillWidth: true
                spacing: 10

                Label {
                    text: qsTr("Recently spotted types")
                    font.pixelSize: view.headlineSize
                    font.bold: true
                    color: Theme.text
                    Accessible.role: Accessible.Heading
                    Accessible.name: text
                }
                Label {
                    objectName: "noTypesText"
                    Layout.fillWidth: true
                    visible: figures.typeCount === 0
                    text: qsTr("Nothing logged yet — the logbook fills in as aircraft pass by.")
                    wrapMode: Text.WordWrap
                    font.pixelSize: view.calloutSize
                    color: Theme.secondaryText
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
                ColumnLayout {
                    objectName: "recentTypes"
                    Layout.fillWidth: true
                    visible: figures.typeCount > 0
                    spacing: 6

                    Repeater {
                        model: figures.recentTypes
                        delegate: RowLayout {
                            id: typeRow
                            required property var modelData
                            Layout.fillWidth: true
                            spacing: 6
                            Accessible.role: Accessible.StaticText
                            Accessible.name: qsTr("%1, first seen %2").arg(modelData.name).arg(modelData.date)

                            SymbolIcon {
                                name: "sparkles"
                                tint: Theme.text
                                size: view.captionSize + 1
                            }
                            Label {
                                objectName: "typeName"
                                Layout.fillWidth: true
                                text: typeRow.modelData.name
                                elide: Text.ElideRight
                                color: Theme.text
                                Accessible.ignored: true
                            }
                            Label {
                                objectName: "typeDate"
                                text: typeRow.modelData.date
                                color: Theme.secondaryText
                                Accessible.ignored: true
                            }
                        }
                    }
                }
            }

            Label {
                Layout.fillWidth: true
                text: qsTr("Counts are unique aircraft seen within your radius each day, while Aerolume is running.")
                wrapMode: Text.WordWrap
                font.pixelSize: view.captionSize
                color: Theme.secondaryText
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
    }
}
