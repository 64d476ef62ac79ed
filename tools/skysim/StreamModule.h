#pragma once

#include "FaultPlan.h"
#include "SkySimModule.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <functional>

class SourceBoard;

// The tower-feed directory and its live audio, for a base address of http://127.0.0.1:PORT (what
// AEROLUME_STREAM_URL is set to, so that a page link ?mount=NAME resolves to BASE/NAME):
//   GET /hlisten.php?mount=NAME   the feed's page (HTML); without mount, a list of the feeds; 404 for an
//                                 unknown one
//   GET /NAME                     the live audio: see ToneStream. Sent in real time, 100 ms at a time
//                                 after a head start of 1.5 s, until the client goes; "audio/wav", no
//                                 length, "Connection: close"
//   GET /silent                   takes the request and never answers, not even a head
//   GET /dead                     a mount that is off the air: 404, as a streaming server answers
//   GET /NAME.pls                 a playlist, CRLF line ends:
//                                   [playlist] / File1=BASE/NAME / Title1=TITLE / Length1=-1 /
//                                   NumberOfEntries=1 / Version=2
//   GET /NAME.PLS                 the same; the extension in any case
//   GET /NAME-latin1.pls          Title1 in Latin-1, with bytes outside ASCII (not UTF-8)
//   GET /NAME-lowercase.pls       every key in lower case ("file1=")
//   GET /NAME-blank.pls           a blank after the address in File1
//   GET /NAME-indented.pls        a blank before "File1="
//   GET /NAME-nested.pls          File1 names BASE/NAME.pls, another playlist
//   GET /NAME-lf.pls              LF line ends only
//   GET /OTHER.pls                for any other name: an HTML error page with status 404
// NAME is one of the mounts (KPDX_TWR, KPDX_APP, KSEA_TWR, KSEA_GND), or silent or dead for the pages
// and playlists. Faults of the source "stream" apply to every path here; "malformed" sends an HTML page
// as the audio and a playlist without its File1 line, and "badjson" cuts the audio off after half a
// second and a playlist in the middle.
class StreamModule : public SkySimModule
{
public:
    struct Feed
    {
        QString mount;
        QString title;
        int sampleRate;
    };

    static constexpr int leadMs = 1500;

    [[nodiscard]] static QString source() { return QStringLiteral("stream"); }
    [[nodiscard]] static const QList<Feed> &feeds();
    [[nodiscard]] static QStringList playlistVariants();

    StreamModule(SourceBoard &sources, std::function<QString()> baseUrl);

    [[nodiscard]] std::optional<SkySimReply> handle(const SkySimRequest &request) override;

    // The playlist of a mount in one of its variants ("" for the plain one), as served.
    [[nodiscard]] QByteArray playlist(const QString &mount, const QString &title, const QString &variant,
                                      bool malformed) const;

private:
    [[nodiscard]] SkySimReply page(const SkySimRequest &request) const;
    [[nodiscard]] SkySimReply playlistReply(const QString &name, bool malformed) const;
    [[nodiscard]] static SkySimReply audio(const Feed &feed, FaultPlan::Kind fault);

    SourceBoard &m_sources;
    std::function<QString()> m_baseUrl;
};
