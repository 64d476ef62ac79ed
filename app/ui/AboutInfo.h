#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

// What the About window says about this build of Aerolume: its version and build number, the web site's
// release history, and the feed services the data comes from.
class AboutInfo : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString version READ version CONSTANT)
    Q_PROPERTY(QString releaseHistoryUrl READ releaseHistoryUrl CONSTANT)
    Q_PROPERTY(QString websiteUrl READ websiteUrl CONSTANT)
    Q_PROPERTY(QString dataLine READ dataLine CONSTANT)
    Q_PROPERTY(QString ownershipLine READ ownershipLine CONSTANT)

public:
    explicit AboutInfo(QObject *parent = nullptr);

    // "Version 1.2.0 (417)". A missing version reads "1.0", a missing build number "1".
    [[nodiscard]] static QString versionText(const QString &shortVersion, const QString &buildNumber);

    [[nodiscard]] QString version() const;
    [[nodiscard]] QString releaseHistoryUrl() const { return m_releaseHistoryUrl; }
    [[nodiscard]] QString websiteUrl() const { return m_websiteUrl; }
    [[nodiscard]] QString dataLine() const { return m_dataLine; }
    [[nodiscard]] QString ownershipLine() const;

private:
    // Read once, when the window's engine first asks: what the window shows and opens stays one thing.
    QString m_releaseHistoryUrl;
    QString m_websiteUrl;
    QString m_dataLine;
};
