#include "StreamResolver.h"
#include "LoopbackHttpServer.h"

#include <QtTest>

using namespace Qt::Literals::StringLiterals;

namespace {

LoopbackHttpServer::Response playlist(const QByteArray &body, int status = 200)
{
    return {status, body, "audio/x-scpls", false, false};
}

// A valid playlist padded with comment lines to exactly the given size.
QByteArray paddedPlaylist(qsizetype size)
{
    QByteArray body = "[playlist]\nFile1=http://d.liveatc.net/padded\n";
    while (body.size() < size)
        body += QByteArray(std::min<qsizetype>(size - body.size(), 80) - 1, ';') + '\n';
    body.truncate(size);
    return body;
}

} // namespace

class StreamResolverTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void resolvesWhatUsersPaste_data();
    void resolvesWhatUsersPaste();
    void pageLinkUsesTheConfiguredStreamAddress();
    void directoryDomainCanBeReplaced();
    void stalledPlaylistServerGivesNothingAfterTheTimeOut();
    void answersFromTheEventLoopOnly();
    void answersNobodyOnceTheContextIsGone();

private:
    std::optional<QUrl> resolve(const QString &text, const StreamResolver::Options &options = {});

    LoopbackHttpServer m_server;
};

void StreamResolverTest::initTestCase()
{
    const auto serve = [this](const QByteArray &path, LoopbackHttpServer::Response response) {
        m_server.route(path, [response](const LoopbackHttpServer::Request &) { return response; });
    };
    serve("/list.pls", playlist("[playlist]\nFile1=http://d.liveatc.net/list\n"));
    serve("/UP.PLS", playlist("[playlist]\nFile1=http://d.liveatc.net/upper\n"));
    serve("/mixed.Pls", playlist("[playlist]\nFile1=http://d.liveatc.net/mixed\n"));
    serve("/crlf.pls", playlist("[playlist]\r\nNumberOfEntries=2\r\nFile1=http://d.liveatc.net/kpdx2_twr \r\n"
                                "Title1=KPDX Tower\r\nLength1=-1\r\nFile2=http://d.liveatc.net/kpdx2_gnd\r\n"
                                "Version=2\r\n\r\n"));
    serve("/tabs.pls", playlist("File1=\t http://d.liveatc.net/tabs\t \n"));
    serve("/lower.pls", playlist("[playlist]\nfile1=http://d.liveatc.net/kpdx2\n"));
    serve("/indented.pls", playlist("[playlist]\n File1=http://d.liveatc.net/kpdx2\n"));
    serve("/latin1.pls", playlist("[playlist]\nTitle1=Z\xfcrich Tower\nFile1=http://d.liveatc.net/lszh\n"));
    serve("/utf8.pls", playlist("[playlist]\nTitle1=Z\xc3\xbcrich Tower\nFile1=http://d.liveatc.net/lszh\n"));
    serve("/notfound.pls",
          playlist("<html><head><title>404 Not Found</title></head><body>Not Found</body></html>", 404));
    serve("/servererror.pls", playlist("[playlist]\nFile1=http://d.liveatc.net/anyway\n", 500));
    serve("/outside.pls", playlist("[playlist]\nFile1=http://radio.example.org:8000/tower\n"));
    serve("/secure.pls", playlist("[playlist]\nFile1=https://d.liveatc.net/kpdx2\n"));
    serve("/upperscheme.pls", playlist("[playlist]\nFile1=HTTP://d.liveatc.net/kpdx2\n"));
    serve("/nested.pls", playlist("[playlist]\nFile1=http://d.liveatc.net/other.pls\n"));
    serve("/pagelink.pls", playlist("[playlist]\nFile1=http://www.liveatc.net/hlisten.php?mount=KPDX2\n"));
    serve("/unicodebreaks.pls", playlist("[playlist]\xe2\x80\xa8"
                                         "File1=http://d.liveatc.net/ls\xe2\x80\xa9"));
    serve("/nextline.pls", playlist("Title1=x\xc2\x85"
                                    "File1=http://d.liveatc.net/nel"));
    serve("/controlbreaks.pls", playlist("Title1=x\x0b"
                                         "File1=http://d.liveatc.net/vt\x0c"
                                         "File2=y"));
    serve("/order.pls", playlist("File2=http://d.liveatc.net/two\nFile1=http://d.liveatc.net/one\n"
                                 "File1=http://d.liveatc.net/again\n"));
    serve("/noentry.pls", playlist("[playlist]\nNumberOfEntries=0\n"));
    serve("/emptyentry.pls", playlist("[playlist]\nFile1=\n"));
    serve("/badentry.pls", playlist("[playlist]\nFile1=http://bad host/\n"));
    serve("/limit.pls", playlist(paddedPlaylist(64 * 1024)));
    serve("/big.pls", playlist(paddedPlaylist(64 * 1024 + 1)));
}

void StreamResolverTest::init()
{
    // The machine's own settings must not leak into the defaults under test.
    qunsetenv("AEROLUME_STREAM_URL");
    qunsetenv("AEROLUME_TOWERFEEDS_DOMAIN");
}

std::optional<QUrl> StreamResolverTest::resolve(const QString &text, const StreamResolver::Options &options)
{
    bool done = false;
    std::optional<QUrl> result;
    StreamResolver::resolve(
        text, this,
        [&](std::optional<QUrl> stream) {
            QVERIFY(!done);
            done = true;
            result = std::move(stream);
        },
        options);
    if (!QTest::qWaitFor([&] { return done; }, 10000))
        qFatal("no answer for %s", qPrintable(text));
    return result;
}

void StreamResolverTest::resolvesWhatUsersPaste_data()
{
    // "$" stands for the loopback playlist server; an empty expectation is the absent result.
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<int>("reads");

    // What can't be a stream address is refused without a read.
    QTest::newRow("empty") << u""_s << u""_s << 0;
    QTest::newRow("blanks only") << u" \t\n "_s << u""_s << 0;
    QTest::newRow("ftp") << u"ftp://127.0.0.1/list.pls"_s << u""_s << 0;
    QTest::newRow("file") << u"file:///tmp/list.pls"_s << u""_s << 0;
    QTest::newRow("no scheme") << u"d.liveatc.net/kpdx2"_s << u""_s << 0;
    QTest::newRow("scheme-relative") << u"//127.0.0.1/list.pls"_s << u""_s << 0;
    QTest::newRow("upper-case HTTP fails the prefix test") << u"HTTP$/list.pls"_s << u""_s << 0;
    QTest::newRow("capitalised Https") << u"Https://d.liveatc.net/kpdx2"_s << u""_s << 0;
    QTest::newRow("does not parse") << u"http://bad host/kpdx2"_s << u""_s << 0;

    // Direct streams come back as they are, but http on the directory's domain becomes https.
    QTest::newRow("direct stream elsewhere")
        << u"http://radio.example.org:8000/tower"_s << u"http://radio.example.org:8000/tower"_s << 0;
    QTest::newRow("http on the domain")
        << u"http://d.liveatc.net/kpdx2"_s << u"https://d.liveatc.net/kpdx2"_s << 0;
    QTest::newRow("https on the domain unchanged")
        << u"https://d.liveatc.net/kpdx2"_s << u"https://d.liveatc.net/kpdx2"_s << 0;
    QTest::newRow("port and query kept") << u"http://d.liveatc.net:8010/kpdx2?nocache=1"_s
                                         << u"https://d.liveatc.net:8010/kpdx2?nocache=1"_s << 0;
    QTest::newRow("suffix without label boundary")
        << u"http://notliveatc.net/x"_s << u"https://notliveatc.net/x"_s << 0;
    QTest::newRow("domain only in the middle")
        << u"http://liveatc.net.example.org/x"_s << u"http://liveatc.net.example.org/x"_s << 0;
    QTest::newRow("upper-case host is not the domain")
        << u"http://D.LIVEATC.NET/x"_s << u"http://d.liveatc.net/x"_s << 0;
    QTest::newRow("another scheme starting with http")
        << u"httpx://d.liveatc.net/x"_s << u"httpx://d.liveatc.net/x"_s << 0;
    QTest::newRow("blanks and line ends around")
        << u" \t\r\nhttp://d.liveatc.net/kpdx2 \n\t"_s << u"https://d.liveatc.net/kpdx2"_s << 0;

    // Page links name their stream in the first "mount" item.
    QTest::newRow("page link") << u"http://www.liveatc.net/hlisten.php?mount=KPDX2&icao=kpdx"_s
                               << u"https://d.liveatc.net/KPDX2"_s << 0;
    QTest::newRow("page link on any scheme and host")
        << u"https$/archive/hlisten.php?mount=KPDX2"_s << u"https://d.liveatc.net/KPDX2"_s << 0;
    QTest::newRow("page link with an encoded mount")
        << u"https://www.liveatc.net/hlisten.php?mount=KPDX%32"_s << u"https://d.liveatc.net/KPDX2"_s << 0;
    QTest::newRow("page link with an encoded path")
        << u"https://www.liveatc.net/hlisten%2Ephp?mount=KPDX2"_s << u"https://d.liveatc.net/KPDX2"_s << 0;
    QTest::newRow("page link name is case-sensitive")
        << u"http://www.liveatc.net/HLISTEN.php?mount=KPDX2"_s
        << u"https://www.liveatc.net/HLISTEN.php?mount=KPDX2"_s << 0;
    QTest::newRow("page link without mount") << u"http://www.liveatc.net/hlisten.php?icao=kpdx"_s
                                             << u"https://www.liveatc.net/hlisten.php?icao=kpdx"_s << 0;
    QTest::newRow("mount without equals sign")
        << u"http://www.liveatc.net/hlisten.php?mount&icao=kpdx"_s
        << u"https://www.liveatc.net/hlisten.php?mount&icao=kpdx"_s << 0;
    QTest::newRow("first mount without value, second set")
        << u"http://www.liveatc.net/hlisten.php?mount&mount=KPDX2"_s
        << u"https://www.liveatc.net/hlisten.php?mount&mount=KPDX2"_s << 0;
    QTest::newRow("empty mount value")
        << u"http://www.liveatc.net/hlisten.php?mount="_s << u"https://d.liveatc.net/"_s << 0;
    QTest::newRow("first mount empty, second set")
        << u"http://www.liveatc.net/hlisten.php?mount=&mount=KPDX2"_s << u"https://d.liveatc.net/"_s << 0;
    QTest::newRow("mount name is case-sensitive")
        << u"http://www.liveatc.net/hlisten.php?Mount=KPDX2"_s
        << u"https://www.liveatc.net/hlisten.php?Mount=KPDX2"_s << 0;
    QTest::newRow("mount that makes no address") << u"http://www.liveatc.net/hlisten.php?mount=a%20b"_s
                                                 << u"https://www.liveatc.net/hlisten.php?mount=a%20b"_s << 0;
    QTest::newRow("page link elsewhere keeps http")
        << u"http$/hlisten.php?icao=kpdx"_s << u"http$/hlisten.php?icao=kpdx"_s << 0;

    // Playlists: one read, the first "File1=" entry, which is not resolved further.
    QTest::newRow("playlist") << u"http$/list.pls"_s << u"https://d.liveatc.net/list"_s << 1;
    QTest::newRow("playlist with blanks around")
        << u" \t\nhttp$/list.pls \r\n"_s << u"https://d.liveatc.net/list"_s << 1;
    QTest::newRow("upper-case extension") << u"http$/UP.PLS"_s << u"https://d.liveatc.net/upper"_s << 1;
    QTest::newRow("mixed-case extension") << u"http$/mixed.Pls"_s << u"https://d.liveatc.net/mixed"_s << 1;
    QTest::newRow("query does not hide the extension")
        << u"http$/list.pls?listen=1"_s << u"https://d.liveatc.net/list"_s << 1;
    QTest::newRow(".pls in the middle of the path")
        << u"http$/list.pls/stream"_s << u"http$/list.pls/stream"_s << 0;
    QTest::newRow("CRLF with a trailing blank")
        << u"http$/crlf.pls"_s << u"https://d.liveatc.net/kpdx2_twr"_s << 1;
    QTest::newRow("entry trimmed of tabs") << u"http$/tabs.pls"_s << u"https://d.liveatc.net/tabs"_s << 1;
    QTest::newRow("lower-case key") << u"http$/lower.pls"_s << u""_s << 1;
    QTest::newRow("space ahead of the key") << u"http$/indented.pls"_s << u""_s << 1;
    QTest::newRow("Latin-1 text") << u"http$/latin1.pls"_s << u""_s << 1;
    QTest::newRow("UTF-8 text") << u"http$/utf8.pls"_s << u"https://d.liveatc.net/lszh"_s << 1;
    QTest::newRow("HTML error page") << u"http$/notfound.pls"_s << u""_s << 1;
    QTest::newRow("status is not looked at")
        << u"http$/servererror.pls"_s << u"https://d.liveatc.net/anyway"_s << 1;
    QTest::newRow("entry outside the domain")
        << u"http$/outside.pls"_s << u"http://radio.example.org:8000/tower"_s << 1;
    QTest::newRow("https entry unchanged") << u"http$/secure.pls"_s << u"https://d.liveatc.net/kpdx2"_s << 1;
    QTest::newRow("upper-case entry scheme not upgraded")
        << u"http$/upperscheme.pls"_s << u"http://d.liveatc.net/kpdx2"_s << 1;
    QTest::newRow("playlist naming a playlist")
        << u"http$/nested.pls"_s << u"https://d.liveatc.net/other.pls"_s << 1;
    QTest::newRow("playlist naming a page link")
        << u"http$/pagelink.pls"_s << u"https://www.liveatc.net/hlisten.php?mount=KPDX2"_s << 1;
    QTest::newRow("line and paragraph separators")
        << u"http$/unicodebreaks.pls"_s << u"https://d.liveatc.net/ls"_s << 1;
    QTest::newRow("next-line character") << u"http$/nextline.pls"_s << u"https://d.liveatc.net/nel"_s << 1;
    QTest::newRow("vertical tab and form feed")
        << u"http$/controlbreaks.pls"_s << u"https://d.liveatc.net/vt"_s << 1;
    QTest::newRow("first File1 line only") << u"http$/order.pls"_s << u"https://d.liveatc.net/one"_s << 1;
    QTest::newRow("no entry") << u"http$/noentry.pls"_s << u""_s << 1;
    QTest::newRow("empty entry") << u"http$/emptyentry.pls"_s << u""_s << 1;
    QTest::newRow("entry that does not parse") << u"http$/badentry.pls"_s << u""_s << 1;
    QTest::newRow("nobody there") << u"http$/missing.pls"_s << u""_s << 1;
    QTest::newRow("body of exactly 64 KiB") << u"http$/limit.pls"_s << u"https://d.liveatc.net/padded"_s << 1;
    QTest::newRow("body over 64 KiB") << u"http$/big.pls"_s << u""_s << 1;
}

void StreamResolverTest::resolvesWhatUsersPaste()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QFETCH(int, reads);
    const QString authority = m_server.baseUrl().mid(u"http"_s.size());
    text.replace(u'$', authority);
    expected.replace(u'$', authority);

    const qsizetype readsBefore = m_server.requests().size();
    const std::optional<QUrl> stream = resolve(text);
    QCOMPARE(m_server.requests().size() - readsBefore, reads);
    if (expected.isEmpty()) {
        QVERIFY2(!stream, qPrintable(stream ? stream->toString() : QString()));
    } else {
        QVERIFY(stream);
        QCOMPARE(stream->toString(QUrl::FullyEncoded), expected);
    }
    if (reads > 0)
        QCOMPARE(m_server.requests().last().method, QByteArray("GET"));
}

void StreamResolverTest::pageLinkUsesTheConfiguredStreamAddress()
{
    // A local server stands in for the directory: its scheme, port and path are kept.
    qputenv("AEROLUME_STREAM_URL", m_server.baseUrl().toUtf8() + "/streams/");
    const qsizetype readsBefore = m_server.requests().size();
    const std::optional<QUrl> stream = resolve(u"https://www.liveatc.net/hlisten.php?mount=KPDX2"_s);
    QVERIFY(stream);
    QCOMPARE(stream->toString(), m_server.baseUrl() + u"/streams/KPDX2"_s);
    QCOMPARE(m_server.requests().size(), readsBefore); // the stream is only named, not read
}

void StreamResolverTest::directoryDomainCanBeReplaced()
{
    qputenv("AEROLUME_TOWERFEEDS_DOMAIN", "feeds.test");
    QCOMPARE(resolve(u"http://edge.feeds.test/kpdx2"_s), QUrl(u"https://edge.feeds.test/kpdx2"_s));
    QCOMPARE(resolve(u"http://d.liveatc.net/kpdx2"_s), QUrl(u"http://d.liveatc.net/kpdx2"_s));
}

void StreamResolverTest::stalledPlaylistServerGivesNothingAfterTheTimeOut()
{
    m_server.route("/stalled.pls", [](const LoopbackHttpServer::Request &) {
        LoopbackHttpServer::Response response = playlist("[playlist]\nFile1=http://d.liveatc.net/late\n");
        response.hold = true;
        return response;
    });
    StreamResolver::Options options;
    options.playlistTimeoutMs = 200;
    // A time-out is a failed read, so an answer does come, and it is the absent one.
    QCOMPARE(resolve(m_server.baseUrl() + u"/stalled.pls"_s, options), std::nullopt);
    QCOMPARE(m_server.requestCount("/stalled.pls"), 1);
}

void StreamResolverTest::answersFromTheEventLoopOnly()
{
    // Callers set their state after asking; an answer inside the call would come before it.
    bool done = false;
    StreamResolver::resolve(u"ftp://example.org/"_s, this, [&](std::optional<QUrl>) { done = true; });
    QVERIFY(!done);
    QTRY_VERIFY(done);
    done = false;
    StreamResolver::resolve(u"https://d.liveatc.net/kpdx2"_s, this,
                            [&](std::optional<QUrl>) { done = true; });
    QVERIFY(!done);
    QTRY_VERIFY(done);
}

void StreamResolverTest::answersNobodyOnceTheContextIsGone()
{
    auto *context = new QObject;
    bool firstAnswered = false;
    StreamResolver::resolve(u"https://d.liveatc.net/a"_s, context,
                            [&](std::optional<QUrl>) { firstAnswered = true; });
    delete context;
    // Answers without a read come in the order asked: once the second is in, the first would have been.
    QCOMPARE(resolve(u"https://d.liveatc.net/b"_s), QUrl(u"https://d.liveatc.net/b"_s));
    QVERIFY(!firstAnswered);
}

QTEST_GUILESS_MAIN(StreamResolverTest)
#include "StreamResolverTest.moc"
