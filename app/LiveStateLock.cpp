#include "LiveStateLock.h"

#include "UserDirectories.h"

#include <QDir>
#include <QFileInfo>

LiveStateLock::LiveStateLock(const QString &path) : m_file(path)
{
    // A lock is never stale by age: the owner may run for weeks. A crashed owner's lock is still taken
    // over, since QLockFile sees that its process is gone.
    m_file.setStaleLockTime(0);
}

QString LiveStateLock::defaultPath()
{
    return UserDirectories::runtime() + u"/live-state.lock"_qs;
}

bool LiveStateLock::tryLock()
{
    QDir().mkpath(QFileInfo(m_file.fileName()).absolutePath());
    return m_file.tryLock(0);
}

void LiveStateLock::unlock()
{
    m_file.unlock();
}

QString LiveStateLock::holder() const
{
    qint64 pid = 0;
    QString hostname;
    QString application;
    if (!m_file.getLockInfo(&pid, &hostname, &application))
        return {};
    return u"%1 (process %2)"_qs.arg(application.isEmpty() ? u"another program"_qs : application).arg(pid);
}
