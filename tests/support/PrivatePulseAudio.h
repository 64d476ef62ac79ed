#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

// A PulseAudio daemon of a test's own, with one null sink and no sound card: players in the test play
// to it as they would to speakers, in real time, on machines with no audio device or desktop session.
// It must be made before the first use of QtMultimedia, which connects to the sound server once. The
// daemon, its socket, cookie and state live in a temporary directory; this process is pointed at it
// through PULSE_SERVER and a client configuration that never starts a daemon of its own.
class PrivatePulseAudio
{
public:
    PrivatePulseAudio();
    ~PrivatePulseAudio();

    PrivatePulseAudio(const PrivatePulseAudio &) = delete;
    PrivatePulseAudio &operator=(const PrivatePulseAudio &) = delete;

    [[nodiscard]] bool isRunning() const { return m_running; }
    [[nodiscard]] QString errorString() const { return m_error; }
    [[nodiscard]] static QString sinkName() { return QStringLiteral("aerolume_test_sink"); }

    // How many streams play into the sink right now and are not paused (corked), as pactl sees them.
    [[nodiscard]] int activeStreamCount() const;

private:
    QTemporaryDir m_dir;
    QProcess m_daemon;
    QByteArray m_log;
    QString m_error;
    bool m_running = false;
};
