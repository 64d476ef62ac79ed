#include "WidgetProgram.h"

#include "FaceBoard.h"
#include "FaceRenderer.h"
#include "SelfTest.h"
#include "SkyTimeline.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QQmlEngine>
#include <cstdio>
#include <cstring>

namespace {

bool hasArgument(int argc, char **argv, const char *name)
{
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], name) == 0)
            return true;
    }
    return false;
}

void printError(const QString &message)
{
    std::fprintf(stderr, "aerolume-widgets: %s\n", qPrintable(message));
}

} // namespace

void WidgetProgram::prepare(int argc, char **argv)
{
    if (hasArgument(argc, argv, "--render") || hasArgument(argc, argv, "--self-test")) {
        // Pictures and checks need no screen, and come out the same on every machine.
        qputenv("QT_QPA_PLATFORM", "offscreen");
        FaceRenderer::useSoftwareRendering();
        return;
    }
    // On Wayland, Qt 6.4 can neither place a window nor keep it below others; XWayland can.
    const bool wayland = qEnvironmentVariable("XDG_SESSION_TYPE") == u"wayland" ||
                         qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
    if (wayland && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "xcb");
}

WidgetProgram::Options WidgetProgram::parse(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(u"The Aerolume desktop widgets: the sky near your home at a glance."_qs);
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption render(u"render"_qs,
                                    u"Write every face as a PNG picture into <dir> and exit."_qs, u"dir"_qs);
    const QCommandLineOption sample(u"sample"_qs,
                                    u"With --render: draw the sample sky, not the live one."_qs);
    const QCommandLineOption selfTest(u"self-test"_qs, u"Load every face, report problems and exit."_qs);
    parser.addOptions({render, sample, selfTest});
    parser.process(arguments);

    Options options;
    if (parser.isSet(selfTest)) {
        options.mode = Mode::SelfTest;
    } else if (parser.isSet(render)) {
        options.mode = Mode::Render;
        options.renderDirectory = parser.value(render);
    }
    options.sample = parser.isSet(sample);
    if (options.sample && options.mode != Mode::Render) {
        printError(u"--sample goes with --render"_qs);
        std::exit(2);
    }
    return options;
}

int WidgetProgram::run(const Options &options)
{
    QQmlEngine engine;
    engine.addImportPath(u"qrc:/qt/qml"_qs);
    switch (options.mode) {
    case Mode::SelfTest: {
        SelfTest test(&engine);
        const QStringList problems = test.run();
        for (const QString &problem : problems)
            printError(problem);
        return problems.isEmpty() ? 0 : 1;
    }
    case Mode::Render:
        return runRender(engine, options);
    case Mode::Desktop:
        break;
    }
    return runDesktop(engine);
}

int WidgetProgram::runRender(QQmlEngine &engine, const Options &options)
{
    FaceRenderer renderer(&engine);
    if (options.sample) {
        if (!renderer.writeAll(options.renderDirectory, SkyEntry::sample(u"#73FF99"_qs))) {
            printError(renderer.errorString());
            return 1;
        }
        return 0;
    }
    // The live sky: the shared file, then one fetch; a failed fetch draws the empty form.
    SkyTimeline timeline;
    int exitCode = 0;
    QObject::connect(
        &timeline, &SkyTimeline::refreshed, qApp,
        [&] {
            if (!renderer.writeAll(options.renderDirectory, timeline.entry())) {
                printError(renderer.errorString());
                exitCode = 1;
            }
            QCoreApplication::exit(exitCode);
        },
        Qt::QueuedConnection); // the first refresh may be over before the event loop runs
    timeline.start();
    QApplication::exec();
    return exitCode;
}

int WidgetProgram::runDesktop(QQmlEngine &engine)
{
    QApplication::setQuitOnLastWindowClosed(false);
    SkyTimeline timeline;
    FaceBoard board(&timeline, &engine, FaceLayoutStore());
    QObject::connect(&board, &FaceBoard::quitRequested, qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    timeline.start();
    if (!board.restore()) {
        printError(board.errorString());
        return 1;
    }
    const int code = QApplication::exec();
    board.saveNow();
    return code;
}
