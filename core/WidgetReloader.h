#pragma once

#include <QObject>
#include <QString>

// Asks the widget program, if one runs, to read its file again: a signal on the session bus. Nothing
// fails when no widget program runs or no session bus exists.
class WidgetReloader : public QObject
{
    Q_OBJECT

public:
    static constexpr QStringView path = u"/org/aerolume/Widgets";
    static constexpr QStringView interface = u"org.aerolume.Widgets";
    static constexpr QStringView signal = u"ReloadAllTimelines";

    explicit WidgetReloader(QObject *parent = nullptr);

    [[nodiscard]] static WidgetReloader *shared();

    // Sends the signal; returns whether it went out on a bus.
    bool reloadAllTimelines();

signals:
    // For observers in this process (and tests): a reload was asked for.
    void reloadRequested();
};
