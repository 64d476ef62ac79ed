#pragma once

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

class DefaultsStore;
class FlightStore;

// What the settings window needs beyond the keys it binds to: its panes, the preset colours, the
// aircraft its previews draw, "Reset to Defaults", forgetting home, and keeping the widgets' file in step
// with the two settings that the widgets show.
class SettingsModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QVariantList panes READ panes CONSTANT)
    Q_PROPERTY(QStringList presets READ presets CONSTANT)
    Q_PROPERTY(QStringList widgetPresets READ widgetPresets CONSTANT)
    Q_PROPERTY(bool hasPreview READ hasPreview CONSTANT)
    Q_PROPERTY(QVariant previewAircraft READ previewAircraft CONSTANT)
    Q_PROPERTY(QString privacyText READ privacyText CONSTANT)

public:
    explicit SettingsModel(QObject *parent = nullptr);
    SettingsModel(FlightStore *store, DefaultsStore *defaults, QObject *parent = nullptr);

    // In sidebar order, each {name, title, symbol}.
    [[nodiscard]] static QVariantList panes();
    Q_INVOKABLE [[nodiscard]] static QString paneTitle(const QString &name);
    [[nodiscard]] static QStringList presets();
    [[nodiscard]] static QStringList widgetPresets();
    // The aircraft of the marker and row previews, decoded like any feed row; undefined when that fails.
    [[nodiscard]] static QVariant previewAircraft();
    [[nodiscard]] static bool hasPreview() { return previewAircraft().isValid(); }
    // What leaves the computer, naming the services as configured.
    [[nodiscard]] static QString privacyText();
    // The text size as a whole percentage, "115%".
    Q_INVOKABLE [[nodiscard]] static QString percentText(double textScale);

    // The map settings back to their defaults; appearance, unit, accessibility and alerts stay.
    Q_INVOKABLE void resetToDefaults();
    // No home: the app and the widgets go back to setup.
    Q_INVOKABLE void forgetHome();

private:
    QPointer<FlightStore> m_store;
    QPointer<DefaultsStore> m_defaults;
};
