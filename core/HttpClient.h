#pragma once

#include <QNetworkAccessManager>

// The process-wide HTTP client. Every request it makes names Aerolume and its version, as a desktop
// application's own HTTP stack does; several services refuse a library's default User-Agent.
class HttpClient : public QNetworkAccessManager
{
    Q_OBJECT

public:
    explicit HttpClient(QObject *parent = nullptr);

    // Made on first use, alive until the process ends.
    [[nodiscard]] static HttpClient *shared();
    [[nodiscard]] static QByteArray userAgent();

protected:
    QNetworkReply *createRequest(Operation op, const QNetworkRequest &request, QIODevice *outgoingData) override;
};
