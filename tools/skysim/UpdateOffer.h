#pragma once

#include <QString>
#include <QStringView>

// The version the update feed offers as the newest, which the command line sets at start and the control
// API changes while running.
class UpdateOffer
{
public:
    static constexpr const char *defaultVersion = "0.1.0";

    explicit UpdateOffer(const QString &startVersion) : m_startVersion(startVersion), m_version(startVersion)
    {
    }

    [[nodiscard]] QString version() const { return m_version; }
    // False, and nothing changes, for text that is no version.
    bool setVersion(const QString &version);
    void reset() { m_version = m_startVersion; }

    // One to four whole numbers joined by dots: "0.2.0", "1.10", "2024.1.3.7".
    [[nodiscard]] static bool isVersion(QStringView text);

    // The version of the Aerolume this simulator was built with, and one release after it (the second
    // number up by one, the rest zero: 0.1.0 gives 0.2.0).
    [[nodiscard]] static QString programVersion();
    [[nodiscard]] static QString nextVersion(const QString &version);
    // Negative, zero or positive as a is older than, the same as or newer than b; missing parts are 0.
    [[nodiscard]] static int compare(QStringView a, QStringView b);

private:
    QString m_startVersion;
    QString m_version;
};
