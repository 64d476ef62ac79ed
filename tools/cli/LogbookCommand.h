#pragma once

#include <QStringList>

class SightingLog;

// `aerolume-cli logbook [--json]`: the logbook's figures as the Logbook window shows them.
class LogbookCommand
{
public:
    [[nodiscard]] static int run(const QStringList &arguments);
    [[nodiscard]] static QString usage();
    [[nodiscard]] static QString toText(const SightingLog &log);
    [[nodiscard]] static QByteArray toJson(const SightingLog &log);
};
