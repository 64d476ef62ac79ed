#include "StreamModule.h"

#include "SimRandom.h"
#include "SourceBoard.h"
#include "ToneStream.h"

#include <QUrl>

namespace {

const QString silentMount = u"silent"_qs;
const QString deadMount = u"dead"_qs;

SkySimReply htmlPage(const QString &title, const QString &body, int status = 200)
{
    SkySimReply reply = SkySimReply::empty(status);
    reply.contentType = "text/html; charset=utf-8";
    reply.body = (u"<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>%1</title></head>\n"
                  "<body><h1>%1</h1>\n%2\n</body></html>\n"_qs)
                     .arg(title.toHtmlEscaped(), body)
                     .toUtf8();
    return reply;
}

const StreamModule::Feed *feedFor(const QString &mount)
{
    for (const StreamModule::Feed &feed : StreamModule::feeds()) {
        if (feed.mount == mount)
            return &feed;
    }
    return nullptr;
}

// The title of a mount for pages and playlists; the two test mounts included.
std::optional<QString> titleFor(const QString &mount)
{
    if (const StreamModule::Feed *feed = feedFor(mount))
        return feed->title;
    if (mount == silentMount)
        return u"Silent Feed"_qs;
    if (mount == deadMount)
        return u"Dead Feed"_qs;
    return std::nullopt;
}

} // namespace

const QList<StreamModule::Feed> &StreamModule::feeds()
{
    static const QList<Feed> list{
        {u"KPDX_TWR"_qs, u"KPDX Tower"_qs, 8000},
        {u"KPDX_APP"_qs, u"KPDX Approach"_qs, 8000},
        {u"KSEA_TWR"_qs, u"KSEA Tower"_qs, 16000},
        {u"KSEA_GND"_qs, u"KSEA Ground"_qs, 16000},
    };
    return list;
}

QStringList StreamModule::playlistVariants()
{
    return {QString(), u"latin1"_qs, u"lowercase"_qs, u"blank"_qs, u"indented"_qs, u"nested"_qs, u"lf"_qs};
}

StreamModule::StreamModule(SourceBoard &sources, std::function<QString()> baseUrl)
    : m_sources(sources), m_baseUrl(std::move(baseUrl))
{
    if (!m_sources.contains(source()))
        m_sources.addSource(source());
}

std::optional<SkySimReply> StreamModule::handle(const SkySimRequest &request)
{
    const QString &path = request.path;
    const QString name = path.mid(1);
    const bool isPage = path == u"/hlisten.php";
    const bool isPlaylist = !name.contains(u'/') && name.endsWith(u".pls", Qt::CaseInsensitive);
    const Feed *feed = feedFor(name);
    if (!isPage && !isPlaylist && !feed && name != silentMount && name != deadMount)
        return std::nullopt;
    if (!request.isRead()) {
        return SkySimReply::readOnly();
    }

    m_sources.noteRequest(source(), QString::fromUtf8(request.target));
    const FaultPlan fault = m_sources.fault(source());
    if (fault.kind() == FaultPlan::Kind::Drop)
        return SkySimReply::drop();
    const bool malformed = fault.kind() == FaultPlan::Kind::Malformed;
    SkySimReply reply;
    if (isPage)
        reply = page(request);
    else if (isPlaylist)
        reply = playlistReply(name.chopped(4), malformed);
    else if (feed)
        reply = audio(*feed, fault.kind());
    else if (name == silentMount)
        reply = SkySimReply::silence();
    else
        reply = SkySimReply::text("mount point not found", 404);
    // The audio's own way of being cut off is already in it.
    if (!feed || fault.kind() != FaultPlan::Kind::BadJson)
        fault.applyTo(reply);
    return reply;
}

SkySimReply StreamModule::page(const SkySimRequest &request) const
{
    const QString mount = request.query.queryItemValue(u"mount"_qs, QUrl::FullyDecoded);
    if (mount.isEmpty()) {
        QString list = u"<ul>\n"_qs;
        for (const Feed &feed : feeds())
            list += u"<li><a href=\"/hlisten.php?mount=%1\">%2</a></li>\n"_qs.arg(feed.mount,
                                                                                  feed.title.toHtmlEscaped());
        return htmlPage(u"Tower feeds"_qs, list + u"</ul>"_qs);
    }
    const std::optional<QString> title = titleFor(mount);
    if (!title)
        return htmlPage(u"No such feed"_qs,
                        u"<p>There is no feed named %1.</p>"_qs.arg(mount.toHtmlEscaped()), 404);
    const QString escaped = mount.toHtmlEscaped();
    return htmlPage(*title, u"<p><a href=\"/%1.pls\">Listen with your player</a> or open the "
                            "<a href=\"/%1\">direct stream</a>.</p>"_qs.arg(escaped));
}

SkySimReply StreamModule::playlistReply(const QString &name, bool malformed) const
{
    // NAME or NAME-VARIANT; mounts never hold a dash.
    const QString mount = name.section(u'-', 0, 0);
    const QString variant = name.contains(u'-') ? name.section(u'-', 1) : QString();
    const std::optional<QString> title = titleFor(mount);
    if (!title || !playlistVariants().contains(variant))
        return htmlPage(
            u"404 Not Found"_qs,
            u"<p>The playlist %1.pls was not found on this server.</p>"_qs.arg(name.toHtmlEscaped()), 404);
    SkySimReply reply = SkySimReply::empty(200);
    reply.contentType = "audio/x-scpls";
    reply.body = playlist(mount, *title, variant, malformed);
    return reply;
}

QByteArray StreamModule::playlist(const QString &mount, const QString &title, const QString &variant,
                                  bool malformed) const
{
    const QString stream = m_baseUrl() + u'/' + mount;
    QString address = stream;
    QString fileKey = u"File1="_qs;
    QString shownTitle = title;
    if (variant == u"blank")
        address += u' ';
    else if (variant == u"indented")
        fileKey.prepend(u' ');
    else if (variant == u"nested")
        address += u".pls"_qs;
    else if (variant == u"latin1")
        shownTitle += u" · Fréquence tour"_qs;

    QStringList lines{u"[playlist]"_qs};
    if (!malformed)
        lines.append(fileKey + address);
    lines += QStringList{u"Title1="_qs + shownTitle, u"Length1=-1"_qs,
                         u"NumberOfEntries="_qs + (malformed ? u"0"_qs : u"1"_qs), u"Version=2"_qs};
    if (variant == u"lowercase") {
        for (QString &line : lines) {
            const qsizetype equals = line.indexOf(u'=');
            if (equals > 0)
                line = line.left(equals).toLower() + line.mid(equals);
        }
    }
    const QString lineEnd = variant == u"lf" ? u"\n"_qs : u"\r\n"_qs;
    const QString text = lines.join(lineEnd) + lineEnd;
    return variant == u"latin1" ? text.toLatin1() : text.toUtf8();
}

SkySimReply StreamModule::audio(const Feed &feed, FaultPlan::Kind fault)
{
    if (fault == FaultPlan::Kind::Malformed)
        return htmlPage(u"Stream unavailable"_qs, u"<p>This stream is not available in your region.</p>"_qs);
    const quint64 seed = SimRandom::textSeed(feed.mount);
    if (fault == FaultPlan::Kind::BadJson) {
        // Half a second of the sound, then the end: a feed that breaks off.
        ToneStream cut(feed.sampleRate, seed, 0);
        SkySimReply reply = SkySimReply::empty(200);
        reply.contentType = "audio/wav";
        reply.body = cut.take(500);
        return reply;
    }
    SkySimReply reply =
        SkySimReply::streaming("audio/wav", std::make_shared<ToneStream>(feed.sampleRate, seed, leadMs));
    reply.headers = {{QByteArrayLiteral("Cache-Control"), QByteArrayLiteral("no-cache, no-store")},
                     {QByteArrayLiteral("icy-name"), feed.title.toUtf8()}};
    return reply;
}
