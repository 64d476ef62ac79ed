#include "UserDirectories.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace UserDirectories {

namespace {

QString fromVariable(const char *variable, const QString &underHome)
{
    const QString value = qEnvironmentVariable(variable);
    if (!value.isEmpty() && QDir::isAbsolutePath(value))
        return value;
    return home() + u'/' + underHome;
}

} // namespace

QString home()
{
    if (const passwd *entry = getpwuid(getuid()); entry && entry->pw_dir && *entry->pw_dir)
        return QFile::decodeName(entry->pw_dir);
    return QDir::homePath();
}

QString data()
{
    return fromVariable("XDG_DATA_HOME", u".local/share"_qs) + u"/Aerolume"_qs;
}

QString config()
{
    return fromVariable("XDG_CONFIG_HOME", u".config"_qs) + u"/Aerolume"_qs;
}

QString cache()
{
    return fromVariable("XDG_CACHE_HOME", u".cache"_qs) + u"/Aerolume"_qs;
}

QString state()
{
    return fromVariable("XDG_STATE_HOME", u".local/state"_qs) + u"/Aerolume"_qs;
}

QString runtime()
{
    const QString runtimeDir = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!runtimeDir.isEmpty() && QDir::isAbsolutePath(runtimeDir))
        return runtimeDir + u"/aerolume"_qs;
    // A shared /tmp: the folder must be ours alone, or another user could plant files in it. Every
    // process tries the same names in the same order, so all of ours meet in the same folder.
    for (int attempt = 0; attempt < 8; ++attempt) {
        const QString path = u"/tmp/aerolume-%1%2"_qs.arg(getuid()).arg(attempt ? u"-%1"_qs.arg(attempt) : QString());
        const QByteArray encoded = QFile::encodeName(path);
        mkdir(encoded.constData(), 0700);
        struct stat info {};
        if (lstat(encoded.constData(), &info) == 0 && S_ISDIR(info.st_mode) && info.st_uid == getuid()) {
            if ((info.st_mode & 0077) != 0)
                chmod(encoded.constData(), 0700);
            return path;
        }
    }
    return config() + u"/runtime"_qs;
}

} // namespace UserDirectories
