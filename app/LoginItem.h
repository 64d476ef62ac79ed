#pragma once

#include <QString>
#include <optional>

// Starting Aerolume at login, the freedesktop way: an autostart entry "aerolume.desktop" in the user's
// autostart folder. The entry is enabled while the file exists and does not say Hidden=true; a desktop's
// own startup settings switch an entry off by adding that line.
class LoginItem
{
public:
    enum class Status {
        NotRegistered, // no entry
        Enabled,       // an entry that the desktop starts
        Disabled,      // an entry switched off with Hidden=true
    };

    // The entry at autostartFile, starting the program at program.
    LoginItem(QString autostartFile, QString program);

    // $XDG_CONFIG_HOME/autostart/aerolume.desktop for the running program.
    [[nodiscard]] static LoginItem forThisProgram();
    [[nodiscard]] static QString defaultFilePath();

    [[nodiscard]] const QString &filePath() const { return m_file; }
    [[nodiscard]] const QString &program() const { return m_program; }
    [[nodiscard]] Status status() const;

    // Each gives the system's reason when the entry could not be written or removed.
    [[nodiscard]] std::optional<QString> registerItem() const;
    [[nodiscard]] std::optional<QString> unregisterItem() const;

    // The entry's text: an application entry whose Exec line starts program, quoted as the format asks.
    [[nodiscard]] static QByteArray entryText(const QString &program);

private:
    QString m_file;
    QString m_program;
};
