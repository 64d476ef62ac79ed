#include "SkySimCommandLine.h"
#include "SkySimSelfTest.h"
#include "SkySimServer.h"
#include "SkySimulator.h"

#include <QCoreApplication>
#include <QTextStream>
#include <QTimer>

namespace {

// Where the self-test looks when no centre is given.
constexpr GeoPoint selfTestPoint{47.449, -122.309};

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(u"aerolume-skysim"_qs);
    QCoreApplication::setApplicationVersion(QStringLiteral(AEROLUME_VERSION));
    QTextStream out(stdout);
    QTextStream err(stderr);

    const SkySimCommandLine::Result parsed = SkySimCommandLine::parse(QCoreApplication::arguments());
    if (parsed.outcome == SkySimCommandLine::Outcome::Help) {
        out << SkySimCommandLine::helpText();
        return 0;
    }
    if (parsed.outcome == SkySimCommandLine::Outcome::Error) {
        err << "aerolume-skysim: " << parsed.error << "\nTry 'aerolume-skysim --help'.\n";
        return 2;
    }
    const SkySimOptions &options = parsed.options;
    SkySimulator simulator(options);

    if (options.selfTest) {
        if (!simulator.listen(0)) {
            err << "aerolume-skysim self-test: FAILED: cannot listen: " << simulator.errorString() << '\n';
            return 1;
        }
        SkySimSelfTest test(simulator.baseUrl(), options.centre.value_or(selfTestPoint));
        QObject::connect(&test, &SkySimSelfTest::finished, &app, [&](bool ok, const QString &summary) {
            out << summary << Qt::endl;
            QCoreApplication::exit(ok ? 0 : 1);
        });
        QTimer::singleShot(0, &test, &SkySimSelfTest::start);
        return QCoreApplication::exec();
    }

    if (!simulator.listen(options.port)) {
        err << "aerolume-skysim: cannot listen on 127.0.0.1:" << options.port << ": "
            << simulator.errorString() << '\n';
        return 1;
    }
    if (options.logRequests) {
        QObject::connect(&simulator.server(), &SkySimServer::served, &app,
                         [&err](const QByteArray &method, const QByteArray &target, int status) {
                             err << method << ' ' << target << " -> "
                                 << (status == 0 ? u"dropped"_qs : QString::number(status)) << Qt::endl;
                         });
    }
    out << simulator.environmentLines() << "# aerolume-skysim listening on 127.0.0.1:" << simulator.port()
        << Qt::endl;
    return QCoreApplication::exec();
}
