#include "LoginItem.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>
#include <algorithm>
#include <filesystem>
#include <system_error>

namespace {

// An Exec argument with blanks or reserved characters goes in double quotes, with ", `, $ and \ escaped.
QString quotedArgument(const QString &argument)
{
    static const QString reserved = u" \t\n\"'\\><~|&;$*?#()`"_qs;
    const bool needsQuotes = std::any_of(argument.cbegin(), argument.cend(),
                                         [](QChar c) { return reserved.contains(c); });
    if (!needsQuotes)
        return argument;
    QString quoted;
    for (QChar c : argument) {
        if (c == u'"' || c == u'`' || c == u'$' || c == u'\\')
            quoted.append(u'\\');
        quoted.append(c);
    }
    return u'"' + quoted + u'"';
}

} // namespace

LoginItem::LoginItem(QString autostartFile, QString program)
    : m_file(std::move(autostartFile)), m_program(std::move(program))
{
}

LoginItem LoginItem::forThisProgram()
{
    return LoginItem(defaultFilePath(), QCoreApplication::applicationFilePath());
}

QString LoginItem::defaultFilePath()
{
    // GenericConfigLocation is $XDG_CONFIG_HOME, or ~/.config when that is unset.
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/autostart/aerolume.desktop"_qs;
}

LoginItem::Status LoginItem::status() const
{
    QFile file(m_file);
    if (!file.open(QIODevice::ReadOnly))
        return Status::NotRegistered;
    // Only the main group counts; an action group may have keys of the same name.
    bool inMainGroup = false;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine().trimmed();
        if (line.startsWith('[')) {
            inMainGroup = line == "[Desktop Entry]";
            continue;
        }
        if (!inMainGroup)
            continue;
        const qsizetype equals = line.indexOf('=');
        if (equals < 0)
            continue;
        if (line.left(equals).trimmed() == "Hidden" && line.mid(equals + 1).trimmed() == "true")
            return Status::Disabled;
    }
    return Status::Enabled;
}

QByteArray LoginItem::entryText(const QString &program)
{
    QByteArray text = "[Desktop Entry]\n"
                      "Type=Application\n"
                      "Name=Aerolume\n"
                      "Comment=See every aircraft flying near your home\n";
    text += "Exec=" + quotedArgument(program).toUtf8() + '\n';
    text += "Icon=aerolume\n"
            "Terminal=false\n"
            "X-GNOME-Autostart-enabled=true\n";
    return text;
}

std::optional<QString> LoginItem::registerItem() const
{
    std::error_code error;
    const std::filesystem::path folder = QFileInfo(m_file).absolutePath().toStdString();
    std::filesystem::create_directories(folder, error);
    if (error)
        return QString::fromLocal8Bit(error.message());
    QSaveFile file(m_file);
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    file.write(entryText(m_program));
    if (!file.commit())
        return file.errorString();
    return std::nullopt;
}

std::optional<QString> LoginItem::unregisterItem() const
{
    QFile file(m_file);
    if (!file.exists())
        return std::nullopt;
    if (!file.remove())
        return file.errorString();
    return std::nullopt;
}
