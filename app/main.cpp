#include "AppShell.h"
#include "Appearance.h"
#include "DesktopNotifier.h"
#include "FlightStore.h"
#include "HttpClient.h"
#include "LiveStateLock.h"
#include "SingleInstance.h"
#include "SymbolImageProvider.h"
#include "TrayIcon.h"

#include <QApplication>
#include <QDirIterator>
#include <QFile>
#include <QIcon>
#include <QMessageBox>
#include <QQmlApplicationEngine>
#include <QQmlNetworkAccessManagerFactory>
#include <QtQml/qqmlextensionplugin.h>
#include <QQmlComponent>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QTextStream>
#include <QTimer>
#include <QUrl>

Q_IMPORT_QML_PLUGIN(Aerolume_MapPlugin)
Q_IMPORT_QML_PLUGIN(Aerolume_CorePlugin)

namespace {

// Images the views load themselves (photos, tiles drawn by QML) name Aerolume like every other request.
class NamedNetworkFactory : public QQmlNetworkAccessManagerFactory
{
public:
    QNetworkAccessManager *create(QObject *parent) override { return new HttpClient(parent); }
};

const QUrl mainUrl(u"qrc:/qt/qml/Aerolume/App/Main.qml"_qs);

int warningCount = 0;
QtMessageHandler previousHandler = nullptr;

// During the self-test every warning counts: a binding that fails at run time is a broken view.
void countingHandler(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type != QtDebugMsg && type != QtInfoMsg)
        ++warningCount;
    if (previousHandler)
        previousHandler(type, context, message);
}

// Loads every QML file of the program's modules and reports what does not load.
int selfTest(QQmlApplicationEngine &engine)
{
    previousHandler = qInstallMessageHandler(countingHandler);
    int failures = 0;
    int files = 0;
    QDirIterator it(u":/qt/qml/Aerolume"_qs, {u"*.qml"_qs}, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        ++files;
        // A singleton can't be made on its own; its users load it.
        QFile file(path);
        if (file.open(QIODevice::ReadOnly) && file.readAll().contains("pragma Singleton"))
            continue;
        QQmlComponent component(&engine, QUrl(u"qrc"_qs + path));
        if (component.isError()) {
            ++failures;
            QTextStream(stderr) << component.errorString();
        }
    }
    engine.load(mainUrl);
    if (engine.rootObjects().isEmpty())
        ++failures;
    // Let the first frame's bindings and loaders run.
    QCoreApplication::processEvents();
    QTextStream(stdout) << "aerolume self-test: " << files << " QML files, " << failures << " failed, "
                        << warningCount << " warnings\n";
    return failures == 0 && warningCount == 0 && files > 0 ? 0 : 1;
}

QStringList urlArguments(const QStringList &arguments)
{
    QStringList urls;
    for (const QString &argument : arguments) {
        if (argument.startsWith(u"aerolume:", Qt::CaseInsensitive))
            urls.append(argument);
    }
    return urls;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(u"aerolume"_qs);
    QApplication::setApplicationDisplayName(u"Aerolume"_qs);
    QApplication::setApplicationVersion(QStringLiteral(AEROLUME_VERSION));
    QApplication::setDesktopFileName(u"aerolume"_qs);
    QApplication::setWindowIcon(QIcon::fromTheme(u"aerolume"_qs, QIcon(u":/icons/aerolume.svg"_qs)));
    QQuickStyle::setStyle(u"Fusion"_qs);

    const QStringList arguments = app.arguments().mid(1);
    const bool testing = arguments.contains(u"--self-test"_qs);

    QQmlApplicationEngine engine;
    NamedNetworkFactory networkFactory;
    engine.setNetworkAccessManagerFactory(&networkFactory);
    // Where our QML modules live in the resources (Qt 6.4 does not look there by itself).
    engine.addImportPath(u"qrc:/qt/qml"_qs);
    engine.addImageProvider(u"symbol"_qs, new SymbolImageProvider());
    if (testing)
        return selfTest(engine);

    SingleInstance instance;
    if (!instance.claim(urlArguments(arguments), qEnvironmentVariable("XDG_ACTIVATION_TOKEN")))
        return 0; // the running Aerolume takes over

    LiveStateLock lock;
    if (!lock.tryLock()) {
        const QString message = u"Aerolume's live state is already run by %1. Stop it, then start Aerolume again."_qs
                                    .arg(lock.holder());
        QTextStream(stderr) << message << '\n';
        QMessageBox::critical(nullptr, u"Aerolume"_qs, message);
        return 1;
    }

    // With every window closed Aerolume goes on watching: polling, alerts, the logbook and audio.
    QApplication::setQuitOnLastWindowClosed(false);
    AppShell shell(&engine);
    shell.attach(&instance);
    QObject::connect(&engine, &QQmlApplicationEngine::objectCreationFailed, &app,
                     [] { QCoreApplication::exit(1); }, Qt::QueuedConnection);
    // The store exists before any window, so polling runs whatever the windows do.
    (void)FlightStore::shared();
    (void)Appearance::shared();
    engine.load(mainUrl);
    shell.attach(DesktopNotifier::shared());
    TrayIcon tray(&shell);
    tray.show();
    shell.finishLaunching();
    // URLs of the first launch arrive like those of later ones, once the event loop runs.
    QTimer::singleShot(0, &shell, [&shell, urls = urlArguments(arguments)] {
        for (const QString &url : urls)
            shell.handleGetURL(url);
    });
    return app.exec();
}
