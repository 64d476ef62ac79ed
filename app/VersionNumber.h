#pragma once

#include <QList>
#include <QString>
#include <QStringView>

// A release number of dotted whole numbers, "1.10.2", ordered part by part as numbers, so 1.10 comes
// after 1.9, and missing parts count as zero, so 1.1 is the same release as 1.1.0.
class VersionNumber
{
public:
    VersionNumber() = default;
    // Surrounding spaces and a leading "v" are ignored. Each part is read up to its first non-digit
    // ("2b" reads as 2); text that starts with no digit at all gives an invalid number.
    explicit VersionNumber(QStringView text);

    [[nodiscard]] bool isValid() const { return !m_parts.isEmpty(); }
    [[nodiscard]] const QList<qint64> &parts() const { return m_parts; }

    // Negative, zero or positive as a is older than, the same as or newer than b.
    [[nodiscard]] static int compare(const VersionNumber &a, const VersionNumber &b);
    [[nodiscard]] static int compare(QStringView a, QStringView b)
    {
        return compare(VersionNumber(a), VersionNumber(b));
    }

    friend bool operator==(const VersionNumber &a, const VersionNumber &b) { return compare(a, b) == 0; }
    friend bool operator<(const VersionNumber &a, const VersionNumber &b) { return compare(a, b) < 0; }

private:
    QList<qint64> m_parts;
};
