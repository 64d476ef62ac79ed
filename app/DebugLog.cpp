#include "DebugLog.h"

#include "UserDirectories.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

DebugLog::DebugLog(QString path, std::function<QDateTime()> now) : m_path(std::move(path)), m_now(std::move(now))
{
    if (!m_now)
        m_now = [] { return QDateTime::currentDateTimeUtc(); };
}

DebugLog *DebugLog::shared()
{
    static DebugLog *log = new DebugLog(defaultPath());
    return log;
}

QString DebugLog::defaultPath()
{
    return UserDirectories::state() + u"/debug.log"_qs;
}

QString DebugLog::line(const QDateTime &when, const QString &message)
{
    return when.toUTC().toString(u"yyyy-MM-dd HH:mm:ss"_qs) + u" +0000 "_qs + message + u'\n';
}

void DebugLog::write(const QString &message) const
{
    const QByteArray bytes = line(m_now(), message).toUtf8();
    QDir().mkpath(QFileInfo(m_path).absolutePath());
    // Appends, making the file when it is missing (or was deleted meanwhile). A link planted at the path
    // is refused rather than followed, and anything but a plain file is left alone (a FIFO would block).
    const int fd = ::open(QFile::encodeName(m_path).constData(),
                          O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0600);
    if (fd < 0)
        return;
    struct stat status {};
    if (::fstat(fd, &status) == 0 && S_ISREG(status.st_mode)) {
        const char *data = bytes.constData();
        qsizetype left = bytes.size();
        while (left > 0) {
            const ssize_t written = ::write(fd, data, size_t(left));
            if (written < 0 && errno == EINTR)
                continue;
            if (written <= 0)
                break;
            data += written;
            left -= written;
        }
    }
    ::close(fd);
}

void dbg(const QString &message)
{
    DebugLog::shared()->write(message);
}
