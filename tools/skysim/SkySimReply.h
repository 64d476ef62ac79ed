#pragma once

#include "SkySimStream.h"

#include <QByteArray>
#include <QList>
#include <memory>
#include <utility>

// What the server does with a request: answer it, now or after a delay; answer with a head and then a
// body that goes on until the client leaves; keep the connection open and never answer; or close the
// connection without a word. Modules return these as plain values, so their answers can be checked
// without a socket.
struct SkySimReply
{
    enum class Action
    {
        Answer,
        Stream,  // the head, then the stream's bytes as they fall due, with no length; never ends
        Silence, // nothing at all, not even a head, for as long as the client waits
        Drop
    };

    Action action = Action::Answer;
    int status = 200;
    QByteArray contentType;
    QByteArray body;
    QList<std::pair<QByteArray, QByteArray>> headers; // further headers
    int delayMs = 0;
    std::shared_ptr<SkySimStream> stream; // for Action::Stream

    [[nodiscard]] static SkySimReply json(QByteArray body, int status = 200);
    [[nodiscard]] static SkySimReply text(QByteArray body, int status);
    // 405 for a method other than GET or HEAD, saying which are allowed.
    [[nodiscard]] static SkySimReply readOnly();
    // Names the methods a 405 allows on a reply of any form.
    void allowReadsOnly();
    [[nodiscard]] static SkySimReply empty(int status);
    [[nodiscard]] static SkySimReply drop();
    [[nodiscard]] static SkySimReply streaming(QByteArray contentType, std::shared_ptr<SkySimStream> stream);
    [[nodiscard]] static SkySimReply silence();

    // A status that may carry no body at all (1xx, 204, 304).
    [[nodiscard]] static bool statusForbidsBody(int status);
    [[nodiscard]] static QByteArray reasonPhrase(int status);
};
