#include "PrivatePulseAudio.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QProcessEnvironment>
#include <csignal>
#include <sys/prctl.h>

PrivatePulseAudio::PrivatePulseAudio()
{
    if (!m_dir.isValid()) {
        m_error = QStringLiteral("no temporary directory");
        return;
    }
    const QString home = m_dir.filePath(QStringLiteral("home"));
    const QString runtime = m_dir.filePath(QStringLiteral("runtime"));
    QDir().mkpath(home);
    QDir().mkpath(runtime);
    QFile::setPermissions(runtime, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    const QString socket = m_dir.filePath(QStringLiteral("native"));
    const QString cookie = m_dir.filePath(QStringLiteral("cookie"));

    // Both sides keep their files in the temporary directory, never under the real home.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), home);
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home + QStringLiteral("/.config"));
    environment.insert(QStringLiteral("XDG_STATE_HOME"), home + QStringLiteral("/.local/state"));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtime);
    environment.insert(QStringLiteral("PULSE_RUNTIME_PATH"), runtime);
    environment.insert(QStringLiteral("PULSE_STATE_PATH"), m_dir.filePath(QStringLiteral("state")));
    environment.insert(QStringLiteral("PULSE_COOKIE"), cookie);
    environment.remove(QStringLiteral("PULSE_SERVER"));
    environment.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
    m_daemon.setProcessEnvironment(environment);

    m_daemon.setProgram(QStringLiteral("pulseaudio"));
    m_daemon.setArguments({
        QStringLiteral("--daemonize=no"),
        QStringLiteral("--system=no"),
        QStringLiteral("-n"), // no default script: only the modules named here
        QStringLiteral("--exit-idle-time=-1"),
        QStringLiteral("--use-pid-file=no"),
        QStringLiteral("--disable-shm=yes"),
        QStringLiteral("--realtime=no"),
        QStringLiteral("--high-priority=no"),
        QStringLiteral("--log-target=stderr"),
        QStringLiteral("--log-level=info"),
        QStringLiteral("--load=module-native-protocol-unix auth-anonymous=1 socket=") + socket,
        QStringLiteral("--load=module-null-sink sink_name=") + sinkName() +
            QStringLiteral(" sink_properties=device.description=AerolumeTestSink"),
    });
    // A test that crashes takes its daemon with it.
    m_daemon.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
    m_daemon.setStandardOutputFile(QProcess::nullDevice());
    m_daemon.setReadChannel(QProcess::StandardError);
    m_daemon.start();
    if (!m_daemon.waitForStarted(5000)) {
        m_error = QStringLiteral("pulseaudio did not start: ") + m_daemon.errorString();
        return;
    }
    // The daemon says so once its socket listens and the sink is there.
    const QDeadlineTimer deadline(10000);
    while (!m_log.contains("Daemon startup complete") && !deadline.hasExpired() &&
           m_daemon.state() == QProcess::Running) {
        if (m_daemon.waitForReadyRead(int(deadline.remainingTime())))
            m_log += m_daemon.readAllStandardError();
    }
    if (!m_log.contains("Daemon startup complete")) {
        m_error = QStringLiteral("pulseaudio did not come up: ") + QString::fromLocal8Bit(m_log.right(2000));
        return;
    }
    // Keep reading what it logs, so that it never blocks on a full pipe.
    QObject::connect(&m_daemon, &QProcess::readyReadStandardError, &m_daemon, [this] {
        m_log += m_daemon.readAllStandardError();
        if (m_log.size() > 64 * 1024)
            m_log = m_log.right(16 * 1024);
    });

    // This process and its children talk to this daemon only, and never start one themselves.
    const QString clientConfig = m_dir.filePath(QStringLiteral("client.conf"));
    QFile config(clientConfig);
    if (!config.open(QIODevice::WriteOnly)) {
        m_error = config.errorString();
        return;
    }
    config.write("autospawn = no\n");
    config.close();
    qputenv("PULSE_SERVER", QByteArray("unix:") + QFile::encodeName(socket));
    qputenv("PULSE_CLIENTCONFIG", QFile::encodeName(clientConfig));
    qputenv("PULSE_COOKIE", QFile::encodeName(cookie));
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR"))
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtime));
    m_running = true;
}

PrivatePulseAudio::~PrivatePulseAudio()
{
    if (m_daemon.state() != QProcess::NotRunning) {
        m_daemon.disconnect();
        m_daemon.terminate();
        if (!m_daemon.waitForFinished(3000)) {
            m_daemon.kill();
            m_daemon.waitForFinished(3000);
        }
    }
}

int PrivatePulseAudio::activeStreamCount() const
{
    QProcess pactl;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    pactl.setProcessEnvironment(environment);
    pactl.start(QStringLiteral("pactl"), {QStringLiteral("list"), QStringLiteral("sink-inputs")});
    if (!pactl.waitForFinished(5000) || pactl.exitCode() != 0)
        return -1;
    const QByteArray output = pactl.readAllStandardOutput();
    int count = 0;
    for (const QByteArray &line : output.split('\n')) {
        if (line.trimmed() == "Corked: no")
            ++count;
    }
    return count;
}
