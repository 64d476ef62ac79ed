#pragma once

#include <QString>
#include <QStringList>

class QQmlEngine;

// The modes of aerolume-widgets: the faces on the desktop (the default), pictures of every face
// (--render DIR, from the live configuration or with --sample from the sample sky), and the check that
// every face loads (--self-test).
class WidgetProgram
{
public:
    enum class Mode
    {
        Desktop,
        Render,
        SelfTest
    };

    struct Options
    {
        Mode mode = Mode::Desktop;
        QString renderDirectory;
        bool sample = false;
    };

    // Settles what must be settled before the application object exists: the platform plug-in and the
    // renderer. Reads only the raw arguments.
    static void prepare(int argc, char **argv);

    // Parses the arguments of the running application; exits with a message on bad ones.
    [[nodiscard]] static Options parse(const QStringList &arguments);

    // Runs one mode to its end and gives the exit code.
    static int run(const Options &options);

private:
    static int runDesktop(QQmlEngine &engine);
    static int runRender(QQmlEngine &engine, const Options &options);
};
