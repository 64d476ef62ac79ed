#pragma once

#include "SkySimulator.h"

#include <QHash>
#include <QList>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <memory>
#include <utility>

// The simulator's tests as its client: one request at a time, waited for and read in full.
class SkySimClient
{
public:
    static constexpr int waitMs = 10000;

    struct Answer
    {
        bool finished = false;
        QNetworkReply::NetworkError error = QNetworkReply::NoError;
        int status = 0; // 0: no HTTP answer at all
        QByteArray body;
        QByteArray contentType;
        QHash<QByteArray, QByteArray> headers; // names in lower case
    };

    SkySimClient();

    // A simulator listening on a free loopback port; not listening ends the test run.
    [[nodiscard]] static std::unique_ptr<SkySimulator> start(const SkySimOptions &options);

    // Every GET is read fresh: the client's own cache must not answer for the server.
    Answer get(const SkySimulator &sky, const QString &path,
               const QList<std::pair<QByteArray, QByteArray>> &headers = {});
    Answer post(const SkySimulator &sky, const QString &pathAndQuery);
    // Waits for a reply (up to waitMs) and takes what it brought.
    Answer finish(QNetworkReply *reply);

    [[nodiscard]] QNetworkAccessManager &network() { return m_network; }

private:
    QNetworkAccessManager m_network;
};
