#pragma once

#include <QString>

// Where Aerolume keeps its files on Linux. XDG variables are honoured when set (and absolute), else the
// real user's home directory from the password database, then $HOME.
namespace UserDirectories {

[[nodiscard]] QString home();
// $XDG_DATA_HOME/Aerolume
[[nodiscard]] QString data();
// $XDG_CONFIG_HOME/Aerolume
[[nodiscard]] QString config();
// $XDG_CACHE_HOME/Aerolume
[[nodiscard]] QString cache();
// $XDG_STATE_HOME/Aerolume
[[nodiscard]] QString state();
// $XDG_RUNTIME_DIR/aerolume, else a private /tmp/aerolume-UID (made with mode 0700)
[[nodiscard]] QString runtime();

} // namespace UserDirectories
