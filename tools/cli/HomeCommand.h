#pragma once

#include <QStringList>

// `aerolume-cli home`, `home set LAT LON [LABEL]`, `home clear` and `radius NM`: the stored home and
// radius, changed exactly as the application changes them (stored, and shared with the widgets).
class HomeCommand
{
public:
    // Runs the command given by the arguments after "aerolume-cli"; returns the exit status.
    [[nodiscard]] static int run(const QStringList &arguments);
    [[nodiscard]] static QString usage();
};
