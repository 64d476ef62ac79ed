#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QUrlQuery>

// One HTTP request as the server read it.
struct SkySimRequest
{
    QByteArray method; // as sent, e.g. "GET"
    QByteArray target; // the request target, e.g. "/v2/point/45.60000/-122.70000/25?x=1"
    QString path;      // the target's path, percent-decoded
    QUrlQuery query;
    QHash<QByteArray, QByteArray> headers; // names in lower case
    QByteArray body;

    [[nodiscard]] bool isRead() const { return method == "GET" || method == "HEAD"; }
};
