#pragma once

#include <QString>
#include <QUrl>
#include <functional>
#include <optional>

class QNetworkAccessManager;
class QObject;

// Turns what a user saved as a tower feed (a directory page link, a .pls playlist or a direct stream)
// into an address the audio player can open. It holds no state: the answer depends only on the text,
// the environment and, for a playlist, what its server sends.
class StreamResolver
{
public:
    struct Options
    {
        // A playlist is a few lines; a server that stalls or sends more than this is not serving one.
        int playlistTimeoutMs = 15000;
        qint64 maxPlaylistBytes = 64 * 1024;
        QNetworkAccessManager *network = nullptr; // the shared client when null
    };

    using Done = std::function<void(std::optional<QUrl> stream)>;

    // Reports once, from the event loop and never before this returns, with the stream's address or
    // with nothing for every failure. Nothing is reported once context is gone.
    static void resolve(const QString &text, QObject *context, Done done, const Options &options);
    static void resolve(const QString &text, QObject *context, Done done);

    // The base address of the directory's direct streams: scheme, host, optional port and path, without
    // a trailing slash. AEROLUME_STREAM_URL replaces it, so a local server can stand in over plain HTTP.
    [[nodiscard]] static QString streamBaseURL();
    // The domain that all of the directory's hosts end with; AEROLUME_TOWERFEEDS_DOMAIN replaces it.
    [[nodiscard]] static QString towerFeedsDomain();
};
