#pragma once

#include "Aircraft.h"

#include <QColor>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

// The three aircraft the legends draw, decoded once through the feed decoder so that each shows exactly
// the marker the map would give it, and the colours of the widget legend's blips.
class LegendSamples : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(Aircraft normal READ normal CONSTANT)
    Q_PROPERTY(Aircraft emergency READ emergency CONSTANT)
    Q_PROPERTY(Aircraft military READ military CONSTANT)
    Q_PROPERTY(QColor widgetGold READ widgetGold CONSTANT)
    Q_PROPERTY(QColor widgetRed READ widgetRed CONSTANT)

public:
    explicit LegendSamples(QObject *parent = nullptr);

    [[nodiscard]] static const Aircraft &normal();
    [[nodiscard]] static const Aircraft &emergency();
    [[nodiscard]] static const Aircraft &military();

    [[nodiscard]] static QColor widgetGold();
    [[nodiscard]] static QColor widgetRed();
    // The widget accent of a colour text; the scope's own green when it does not parse.
    Q_INVOKABLE [[nodiscard]] static QColor widgetAccent(const QString &hex);
    // The scope's background for that accent, so the legend's blips sit on what they sit on in a widget.
    Q_INVOKABLE [[nodiscard]] static QColor widgetBackground(const QString &hex);
};
