#pragma once

#include "Aircraft.h"
#include "ScopePalette.h"
#include "SkyEntry.h"

#include <QObject>
#include <QSizeF>
#include <QString>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

// What the face components ask of the core: the entries, the short texts and links of the faces, the
// frame sizes. Stateless; every engine gets its own.
class WidgetFaces : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString monospaceFamily READ monospaceFamily CONSTANT)
    Q_PROPERTY(QString openLink READ openLink CONSTANT)
    Q_PROPERTY(ScopePalette standardPalette READ standardPalette CONSTANT)
    Q_PROPERTY(double padding READ padding CONSTANT)
    Q_PROPERTY(double cornerRadius READ cornerRadius CONSTANT)

public:
    explicit WidgetFaces(QObject *parent = nullptr);

    [[nodiscard]] static QString monospaceFamily();
    [[nodiscard]] static QString openLink();
    [[nodiscard]] static ScopePalette standardPalette() { return ScopePalette::standard(); }
    [[nodiscard]] static double padding();
    [[nodiscard]] static double cornerRadius();

    // accentHex: a text, or undefined for the default accent.
    Q_INVOKABLE SkyEntry sampleEntry(const QVariant &accentHex) const;
    // No home, no aircraft: the setup prompt.
    Q_INVOKABLE SkyEntry emptyEntry() const { return SkyEntry(); }
    Q_INVOKABLE QVariantList leading(const SkyEntry &entry, int count) const;

    Q_INVOKABLE QString shortAltitude(const Aircraft &aircraft) const;
    Q_INVOKABLE QString distance(const Aircraft &aircraft, const QString &unit) const;
    Q_INVOKABLE QString radius(const SkyEntry &entry) const;
    Q_INVOKABLE QString shortTime(const SkyEntry &entry) const;
    Q_INVOKABLE QString asOf(const SkyEntry &entry) const;
    Q_INVOKABLE QString identityLine(const Aircraft &aircraft) const;
    Q_INVOKABLE QString rangeLine(const Aircraft &aircraft, const QString &unit) const;
    Q_INVOKABLE QString footLine(const SkyEntry &entry) const;
    Q_INVOKABLE QString countHead(const SkyEntry &entry) const;
    Q_INVOKABLE QString boardHead(const SkyEntry &entry) const;
    // What a screen reader says for a row and for a scope.
    Q_INVOKABLE QString rowDescription(const Aircraft &aircraft, const QString &unit) const;
    Q_INVOKABLE QString scopeDescription(const SkyEntry &entry, int plotted) const;

    Q_INVOKABLE QString aircraftLink(const QString &hex) const;
    // The frame of a face by its key ("nearest", "radar-small", ...); empty for an unknown key.
    Q_INVOKABLE QSizeF faceSize(const QString &key) const;
    Q_INVOKABLE QString faceTitle(const QString &key) const;
};
