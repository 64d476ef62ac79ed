#pragma once

#include <QByteArray>
#include <QtGlobal>

// The body of an answer that never ends, such as a live audio feed: the server asks it every so often
// for what is due by then and sends that, so the client receives it at the pace of real time.
class SkySimStream
{
public:
    virtual ~SkySimStream() = default;

    // The bytes due once elapsedMs have passed since the head of the answer went out, less those handed
    // out before. Called with a growing elapsedMs, first with 0.
    [[nodiscard]] virtual QByteArray take(qint64 elapsedMs) = 0;

    // How often the server asks, in milliseconds.
    static constexpr int intervalMs = 100;

protected:
    SkySimStream() = default;
    SkySimStream(const SkySimStream &) = default;
    SkySimStream &operator=(const SkySimStream &) = default;
};
