#pragma once

#include <QDateTime>
#include <QString>
#include <functional>

// The plain text log of the application shell: one line per event, "2026-11-16 22:38:23 +0000 message",
// always on, never rotated. Writing never fails loudly: a line that cannot be written is dropped.
class DebugLog
{
public:
    explicit DebugLog(QString path, std::function<QDateTime()> now = {});

    // $XDG_STATE_HOME/Aerolume/debug.log; made on first use.
    [[nodiscard]] static DebugLog *shared();
    [[nodiscard]] static QString defaultPath();

    [[nodiscard]] QString path() const { return m_path; }
    void write(const QString &message) const;

    // The line for a message at a time, line feed included.
    [[nodiscard]] static QString line(const QDateTime &when, const QString &message);

private:
    QString m_path;
    std::function<QDateTime()> m_now;
};

// Appends a line to the shared log.
void dbg(const QString &message);
