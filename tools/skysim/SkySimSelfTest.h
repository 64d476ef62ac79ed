#pragma once

#include "GeoPoint.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>

class QNetworkAccessManager;

// Asks every service of a running simulator once, over real HTTP, and checks each answer: the feeds
// decode with the program's own decoder and list aircraft, a route and a photo of one of those aircraft
// decode with the program's lookup decoders, a playlist names its stream, the stream starts as WAV audio,
// a tile is a 256 pixel PNG, the geocoder finds Seattle, and the appcast is XML with a sparkle:version.
class SkySimSelfTest : public QObject
{
    Q_OBJECT

public:
    explicit SkySimSelfTest(const QString &baseUrl, GeoPoint point, QObject *parent = nullptr);

    void start();

signals:
    // One line that says what was found.
    void finished(bool ok, const QString &summary);

private:
    struct Check
    {
        QString name;
        std::function<QString()> path; // worked out when its turn comes, from what earlier checks found
        // What was found; clears ok on a failure.
        std::function<QString(int status, const QByteArray &body, bool &ok)> verdict;
        bool endless = false; // read the first bytes, then hang up
    };

    void run(qsizetype index);
    void conclude(qsizetype index, const QString &finding, bool ok);
    [[nodiscard]] QString feedVerdict(const QString &name, int status, const QByteArray &body, bool &ok);

    QNetworkAccessManager *m_network;
    QString m_baseUrl;
    GeoPoint m_point;
    QList<Check> m_checks;
    QStringList m_findings;
    QString m_callsign; // an airline flight the primary feed listed
    QString m_hex;      // an aircraft it listed
    bool m_ok = true;
};
