#include "UpdateFeedModule.h"

#include "SimClock.h"
#include "SourceBoard.h"
#include "UpdateOffer.h"

#include <QDateTime>
#include <QLocale>
#include <QXmlStreamWriter>

namespace {

constexpr const char *oldestVersion = "0.0.1";

SkySimReply html(const QString &title, const QString &text)
{
    const QString escapedTitle = title.toHtmlEscaped();
    SkySimReply reply = SkySimReply::empty(200);
    reply.contentType = "text/html; charset=utf-8";
    reply.body = (u"<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>%1</title></head>\n"
                  "<body><h1>%1</h1><p>%2</p></body></html>\n"_qs)
                     .arg(escapedTitle, text.toHtmlEscaped())
                     .toUtf8();
    return reply;
}

// The newest release came out the day before the simulated start, the oldest a season before that.
QString pubDate(qint64 startMs, bool newest)
{
    const QDateTime when = QDateTime::fromMSecsSinceEpoch(startMs, Qt::UTC).addDays(newest ? -1 : -90);
    // RFC 822 with the day's name, in English whatever the locale.
    return QLocale::c().toString(when, u"ddd, dd MMM yyyy hh:mm:ss +0000"_qs);
}

} // namespace

UpdateFeedModule::UpdateFeedModule(const UpdateOffer &offer, const SimClock &clock, SourceBoard &sources,
                                   std::function<QString()> baseUrl)
    : m_offer(offer), m_clock(clock), m_sources(sources), m_baseUrl(std::move(baseUrl))
{
    if (!m_sources.contains(source()))
        m_sources.addSource(source());
}

std::optional<SkySimReply> UpdateFeedModule::handle(const SkySimRequest &request)
{
    const QString &path = request.path;
    const bool feed = path == u"/appcast.xml";
    if (!feed && !path.startsWith(u"/releases/") && path != u"/download/" && path != u"/download")
        return std::nullopt;
    if (!request.isRead()) {
        return SkySimReply::readOnly();
    }
    if (path.startsWith(u"/download"))
        return html(u"Download Aerolume"_qs, u"Aerolume %1 for Linux."_qs.arg(m_offer.version()));
    if (!feed) {
        QString version = path.mid(10);
        if (!version.endsWith(u".html") || !UpdateOffer::isVersion(version.chopped(5)))
            return SkySimReply::text("no such release", 404);
        version.chop(5);
        return html(u"Aerolume %1"_qs.arg(version), u"What is new in Aerolume %1."_qs.arg(version));
    }

    m_sources.noteRequest(source(), QString::fromUtf8(request.target));
    const FaultPlan fault = m_sources.fault(source());
    if (fault.kind() == FaultPlan::Kind::Drop)
        return SkySimReply::drop();
    SkySimReply reply = SkySimReply::empty(200);
    reply.contentType = "application/rss+xml; charset=utf-8";
    reply.body = appcast(fault.kind() == FaultPlan::Kind::Malformed);
    fault.applyTo(reply);
    return reply;
}

QByteArray UpdateFeedModule::appcast(bool malformed) const
{
    const QString base = m_baseUrl();
    const QString sparkle = sparkleNamespace();
    QByteArray text;
    QXmlStreamWriter xml(&text);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(u"rss"_qs);
    xml.writeAttribute(u"version"_qs, u"2.0"_qs);
    if (!malformed)
        xml.writeNamespace(sparkle, u"sparkle"_qs);
    xml.writeStartElement(u"channel"_qs);
    xml.writeTextElement(u"title"_qs, u"Aerolume"_qs);
    xml.writeTextElement(u"link"_qs, base + u"/appcast.xml"_qs);
    xml.writeTextElement(u"description"_qs, u"The newest releases of Aerolume."_qs);
    xml.writeTextElement(u"language"_qs, u"en"_qs);

    QStringList versions{m_offer.version()};
    if (m_offer.version() != QLatin1StringView(oldestVersion))
        versions.append(QString::fromLatin1(oldestVersion));
    for (qsizetype i = 0; i < versions.size(); ++i) {
        const QString &version = versions[i];
        // Without the namespace declared, a prefixed name is the fault: the writer would declare it.
        auto sparkleElement = [&](const QString &name, const QString &value) {
            if (malformed)
                xml.writeTextElement(u"sparkle:"_qs + name, value);
            else
                xml.writeTextElement(sparkle, name, value);
        };
        auto sparkleAttribute = [&](const QString &name, const QString &value) {
            if (malformed)
                xml.writeAttribute(u"sparkle:"_qs + name, value);
            else
                xml.writeAttribute(sparkle, name, value);
        };
        xml.writeStartElement(u"item"_qs);
        xml.writeTextElement(u"title"_qs, u"Version "_qs + version);
        sparkleElement(u"version"_qs, version);
        sparkleElement(u"shortVersionString"_qs, version);
        sparkleElement(u"releaseNotesLink"_qs, base + u"/releases/"_qs + version + u".html"_qs);
        xml.writeTextElement(u"pubDate"_qs, pubDate(m_clock.startMs(), i == 0));
        xml.writeTextElement(u"link"_qs, base + u"/download/"_qs);
        xml.writeStartElement(u"enclosure"_qs);
        xml.writeAttribute(u"url"_qs, base + u"/download/aerolume-"_qs + version + u".tar.gz"_qs);
        sparkleAttribute(u"version"_qs, version);
        sparkleAttribute(u"shortVersionString"_qs, version);
        xml.writeAttribute(u"length"_qs, u"0"_qs);
        xml.writeAttribute(u"type"_qs, u"application/octet-stream"_qs);
        xml.writeEndElement();
        xml.writeEndElement();
    }
    xml.writeEndElement();
    xml.writeEndElement();
    xml.writeEndDocument();
    return text;
}
