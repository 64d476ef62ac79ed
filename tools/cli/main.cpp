#include "NearbyCommand.h"

#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(u"aerolume-cli"_qs);
    QCoreApplication::setApplicationVersion(QStringLiteral(AEROLUME_VERSION));

    QStringList arguments = app.arguments().mid(1);
    QTextStream err(stderr);
    if (arguments.isEmpty() || arguments.constFirst() == u"--help" || arguments.constFirst() == u"-h") {
        QTextStream(stdout) << NearbyCommand::usage() << '\n';
        return arguments.isEmpty() ? 2 : 0;
    }
    if (arguments.constFirst() != u"nearby") {
        err << "unknown command: " << arguments.constFirst() << '\n' << NearbyCommand::usage() << '\n';
        return 2;
    }
    QString error;
    const auto options = NearbyCommand::parse(arguments.mid(1), &error);
    if (!options) {
        err << error << '\n' << NearbyCommand::usage() << '\n';
        return 2;
    }
    NearbyCommand command(*options);
    QObject::connect(&command, &NearbyCommand::finished, &app, &QCoreApplication::exit, Qt::QueuedConnection);
    command.start();
    return app.exec();
}
