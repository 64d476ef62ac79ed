#pragma once

#include "SkySimOptions.h"

#include <QString>
#include <QStringList>

// The command line of aerolume-skysim, read into options.
class SkySimCommandLine
{
public:
    enum class Outcome
    {
        Run,
        Help,
        Error
    };

    struct Result
    {
        Outcome outcome = Outcome::Run;
        SkySimOptions options;
        QString error; // for Outcome::Error
    };

    SkySimCommandLine() = delete;

    // The arguments as the process got them, program name first.
    [[nodiscard]] static Result parse(const QStringList &arguments);

    [[nodiscard]] static QString helpText();
};
