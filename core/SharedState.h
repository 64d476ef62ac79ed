#pragma once

#include "HomeLocation.h"

#include <QString>
#include <optional>

// The one small file through which the application tells the widget program what to show. The
// application writes it; the widget program only reads it.
namespace SharedState {

struct Config
{
    HomeLocation home;
    double radiusNM = 0;
    std::optional<QString> distanceUnit;   // left out of the file when absent
    std::optional<QString> widgetColorHex; // left out of the file when absent

    bool operator==(const Config &) const = default;
};

// $XDG_DATA_HOME/Aerolume, else the real user's ~/.local/share/Aerolume: both processes arrive at the
// same place even when one of them runs with another $HOME.
[[nodiscard]] QString directory();
[[nodiscard]] QString filePath();

[[nodiscard]] QByteArray encode(const Config &config);
[[nodiscard]] std::optional<Config> decode(const QByteArray &json);

// Atomic: a reader sees the whole old file or the whole new one. Failures are dropped.
void write(const Config &config);
// Absent when the file is missing, unreadable or doesn't decode.
[[nodiscard]] std::optional<Config> read();
// Removes the file; a file already gone is fine.
void clear();

} // namespace SharedState
