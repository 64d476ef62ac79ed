#include "BenchHome.h"

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTemporaryDir>

void BenchHome::isolate(const QTemporaryDir &scratch)
{
    for (const char *variable :
         {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR"})
        qputenv(variable, scratch.filePath(QString::fromLatin1(variable)).toUtf8());
}

QByteArray BenchHome::getOnce(const QString &url)
{
    QNetworkAccessManager network;
    QNetworkReply *reply = network.get(QNetworkRequest(QUrl(url)));
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
    if (reply->error() != QNetworkReply::NoError)
        qFatal("simulator answer failed: %s", qPrintable(reply->errorString()));
    const QByteArray body = reply->readAll();
    delete reply;
    return body;
}
