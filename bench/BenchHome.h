#pragma once

#include <QByteArray>
#include <QString>

class QTemporaryDir;

// What every benchmark that runs the program's own code needs around it.
class BenchHome
{
public:
    // Points every XDG directory into the scratch folder, so that nothing touches the real home. Call
    // before the application object exists.
    static void isolate(const QTemporaryDir &scratch);
    // The body of one GET, waited for; a failure ends the benchmark, whose input it would be.
    [[nodiscard]] static QByteArray getOnce(const QString &url);
};
