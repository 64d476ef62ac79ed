#include "StreamResolver.h"

#include "Services.h"

#include "ServiceRequest.h"

#include <QStringDecoder>
#include <QTimer>
#include <QUrlQuery>

namespace {

bool isSpaceOrTab(QChar c)
{
    return c == u' ' || c == u'\t';
}

QString trimmedOfSpacesAndTabs(QStringView text)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && isSpaceOrTab(text[begin]))
        ++begin;
    while (end > begin && isSpaceOrTab(text[end - 1]))
        --end;
    return text.sliced(begin, end - begin).toString();
}

std::optional<QUrl> parsedURL(const QString &text)
{
    QUrl url(text, QUrl::StrictMode);
    if (!url.isValid())
        return std::nullopt;
    return url;
}

// QUrl lower-cases the scheme, yet "HTTP" must not pass for "http": the scheme is read as written.
QString writtenScheme(const QString &text, const QUrl &url)
{
    if (url.scheme().isEmpty())
        return {};
    return text.left(url.scheme().size());
}

// The host as written, for the same reason; QUrl's own form when the text is spelt in a way that can't
// be matched up (percent-escapes, international names).
QString writtenHost(const QString &text, const QUrl &url)
{
    const QString host = url.host();
    if (host.isEmpty())
        return {};
    QStringView rest = QStringView(text).sliced(url.scheme().size() + 1);
    if (!rest.startsWith(u"//"))
        return host;
    rest = rest.sliced(2);
    qsizetype authorityEnd = 0;
    while (authorityEnd < rest.size() && !QStringView(u"/?#").contains(rest[authorityEnd]))
        ++authorityEnd;
    QStringView authority = rest.first(authorityEnd);
    if (const qsizetype at = authority.lastIndexOf(u'@'); at >= 0)
        authority = authority.sliced(at + 1);
    if (authority.startsWith(u'[')) {
        const qsizetype close = authority.indexOf(u']');
        authority = close < 0 ? authority : authority.first(close + 1);
    } else if (const qsizetype colon = authority.lastIndexOf(u':'); colon >= 0) {
        authority = authority.first(colon);
    }
    if (authority.size() >= 2 && authority.startsWith(u'[') && authority.endsWith(u']'))
        authority = authority.sliced(1, authority.size() - 2);
    return authority.compare(host, Qt::CaseInsensitive) == 0 ? authority.toString() : host;
}

// A directory page names its stream in the "mount" item of its query; only the first such item counts.
std::optional<QUrl> pageLinkStream(const QUrl &url)
{
    if (!url.path(QUrl::FullyDecoded).contains(u"hlisten.php"))
        return std::nullopt;
    const QUrlQuery query(url);
    const auto items = query.queryItems(QUrl::FullyDecoded);
    const auto mount =
        std::find_if(items.begin(), items.end(), [](const auto &item) { return item.first == u"mount"; });
    // An item without "=" has no value at all, unlike "mount=", whose value is empty.
    if (mount == items.end() || mount->second.isNull())
        return std::nullopt;
    return parsedURL(StreamResolver::streamBaseURL() + u'/' + mount->second);
}

bool isPlaylist(const QUrl &url)
{
    const QString decodedPath = url.path(QUrl::FullyDecoded); // the views below must not outlive it
    QStringView path = decodedPath;
    while (path.endsWith(u'/'))
        path.chop(1);
    const QStringView name = path.sliced(path.lastIndexOf(u'/') + 1);
    const qsizetype dot = name.lastIndexOf(u'.');
    // A name that only starts with a dot has no extension.
    if (dot <= 0)
        return false;
    return name.sliced(dot + 1).toString().toLower() == u"pls";
}

bool isLineBreak(QChar c)
{
    const char16_t code = c.unicode();
    return (code >= 0x0A && code <= 0x0D) || code == 0x85 || code == 0x2028 || code == 0x2029;
}

// The first entry of a playlist, as written; nothing when the body is not UTF-8 or has no "File1=" line.
std::optional<QString> playlistEntry(const QByteArray &body)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder.decode(body);
    if (decoder.hasError())
        return std::nullopt;
    qsizetype start = 0;
    while (start < text.size()) {
        qsizetype end = start;
        while (end < text.size() && !isLineBreak(text[end]))
            ++end;
        const QStringView line = QStringView(text).sliced(start, end - start);
        if (line.startsWith(u"File1="))
            return trimmedOfSpacesAndTabs(line.sliced(6));
        start = end + 1;
    }
    return std::nullopt;
}

// The directory's own hosts serve every stream over https as well; plain http there is upgraded.
QUrl upgraded(const QString &text, const QUrl &url)
{
    if (writtenScheme(text, url) != u"http")
        return url;
    const QString host = writtenHost(text, url);
    if (host.isEmpty() || !host.endsWith(StreamResolver::towerFeedsDomain()))
        return url;
    QUrl secure = url;
    secure.setScheme(u"https"_qs);
    return secure.isValid() ? secure : url;
}

std::optional<QUrl> resolvedPlaylist(const std::optional<QByteArray> &body)
{
    if (!body)
        return std::nullopt;
    const std::optional<QString> entry = playlistEntry(*body);
    if (!entry)
        return std::nullopt;
    const std::optional<QUrl> url = parsedURL(*entry);
    if (!url)
        return std::nullopt;
    // A playlist that names another playlist is not followed.
    return upgraded(*entry, *url);
}

} // namespace

QString StreamResolver::streamBaseURL()
{
    return Services::streamURL();
}

QString StreamResolver::towerFeedsDomain()
{
    return Services::towerFeedsDomain();
}

void StreamResolver::resolve(const QString &text, QObject *context, Done done)
{
    resolve(text, context, std::move(done), Options());
}

void StreamResolver::resolve(const QString &text, QObject *context, Done done, const Options &options)
{
    const auto deliver = [context, &done](std::optional<QUrl> stream) {
        QTimer::singleShot(0, context,
                           [done = std::move(done), stream = std::move(stream)] { done(stream); });
    };

    const QString trimmed = text.trimmed();
    const std::optional<QUrl> url = parsedURL(trimmed);
    if (!url || !writtenScheme(trimmed, *url).startsWith(u"http")) {
        deliver(std::nullopt);
        return;
    }
    if (std::optional<QUrl> stream = pageLinkStream(*url)) {
        deliver(std::move(stream));
        return;
    }
    if (isPlaylist(*url)) {
        ServiceRequest::Options request;
        request.timeoutMs = options.playlistTimeoutMs;
        request.maxBodyBytes = options.maxPlaylistBytes;
        request.acceptAnyStatus = true;
        ServiceRequest::get(
            url->toString(QUrl::FullyEncoded), request,
            [done = std::move(done)](std::optional<QByteArray> body) { done(resolvedPlaylist(body)); },
            context, options.network);
        return;
    }
    deliver(upgraded(trimmed, *url));
}
