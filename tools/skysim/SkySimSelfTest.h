#pragma once

#include "GeoPoint.h"

#include <QObject>
#include <QString>
#include <QStringList>

class QNetworkAccessManager;

// Asks both feed paths of a running simulator once, over real HTTP, and checks that each answer decodes
// with the program's own feed decoder and lists aircraft.
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
    void fetch(qsizetype index);

    QNetworkAccessManager *m_network;
    QString m_baseUrl;
    GeoPoint m_point;
    QStringList m_paths;
    QStringList m_findings;
    bool m_ok = true;
};
