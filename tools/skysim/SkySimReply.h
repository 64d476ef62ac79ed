#pragma once

#include <QByteArray>
#include <QList>
#include <utility>

// What the server does with a request: answer it, now or after a delay, or close the connection without
// a word. Modules return these as plain values, so their answers can be checked without a socket.
struct SkySimReply
{
    enum class Action
    {
        Answer,
        Drop
    };

    Action action = Action::Answer;
    int status = 200;
    QByteArray contentType;
    QByteArray body;
    QList<std::pair<QByteArray, QByteArray>> headers; // further headers
    int delayMs = 0;

    [[nodiscard]] static SkySimReply json(QByteArray body, int status = 200);
    [[nodiscard]] static SkySimReply text(QByteArray body, int status);
    [[nodiscard]] static SkySimReply empty(int status);
    [[nodiscard]] static SkySimReply drop();

    // A status that may carry no body at all (1xx, 204, 304).
    [[nodiscard]] static bool statusForbidsBody(int status);
    [[nodiscard]] static QByteArray reasonPhrase(int status);
};
