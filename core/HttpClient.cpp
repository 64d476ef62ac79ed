#include "HttpClient.h"

#include <QNetworkRequest>

HttpClient::HttpClient(QObject *parent) : QNetworkAccessManager(parent)
{
    setRedirectPolicy(QNetworkRequest::NoLessSafeRedirectPolicy);
}

HttpClient *HttpClient::shared()
{
    static HttpClient *client = new HttpClient(); // never released: it lives as long as the process
    return client;
}

QByteArray HttpClient::userAgent()
{
    return QByteArrayLiteral("Aerolume/" AEROLUME_VERSION);
}

QNetworkReply *HttpClient::createRequest(Operation op, const QNetworkRequest &request, QIODevice *outgoingData)
{
    QNetworkRequest withAgent(request);
    // A service with an agreement of its own (route and photo lookups) keeps the agent it was given.
    if (!withAgent.hasRawHeader("User-Agent"))
        withAgent.setHeader(QNetworkRequest::UserAgentHeader, userAgent());
    return QNetworkAccessManager::createRequest(op, withAgent, outgoingData);
}
