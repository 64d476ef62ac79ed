#include "Appcast.h"

#include "VersionNumber.h"

#include <QXmlStreamReader>

namespace Appcast {

QString sparkleNamespace()
{
    return u"http://www.andymatuschak.org/xml-namespaces/sparkle"_qs;
}

namespace {

bool isSparkle(const QXmlStreamReader &xml)
{
    return xml.namespaceUri() == sparkleNamespace();
}

AppcastItem readItem(QXmlStreamReader &xml)
{
    AppcastItem item;
    QString enclosureVersion;
    QString enclosureShortVersion;
    while (xml.readNextStartElement()) {
        const QStringView name = xml.name();
        if (isSparkle(xml)) {
            if (name == u"version")
                item.version = xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
            else if (name == u"shortVersionString")
                item.displayVersion = xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
            else if (name == u"releaseNotesLink")
                item.releaseNotesLink = xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
            else
                xml.skipCurrentElement();
        } else if (xml.namespaceUri().isEmpty()) {
            if (name == u"title") {
                item.title = xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
            } else if (name == u"description") {
                item.releaseNotes = xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
            } else if (name == u"link") {
                item.link = xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
            } else if (name == u"pubDate") {
                item.pubDate = xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
            } else if (name == u"enclosure") {
                const QXmlStreamAttributes attributes = xml.attributes();
                item.enclosureUrl = attributes.value(QLatin1StringView("url")).toString().trimmed();
                enclosureVersion =
                    attributes.value(sparkleNamespace(), QLatin1StringView("version")).toString().trimmed();
                enclosureShortVersion =
                    attributes.value(sparkleNamespace(), QLatin1StringView("shortVersionString"))
                        .toString()
                        .trimmed();
                xml.skipCurrentElement();
            } else {
                xml.skipCurrentElement();
            }
        } else {
            xml.skipCurrentElement();
        }
    }
    if (item.version.isEmpty())
        item.version = enclosureVersion;
    if (item.displayVersion.isEmpty())
        item.displayVersion = enclosureShortVersion;
    if (item.displayVersion.isEmpty())
        item.displayVersion = item.version;
    return item;
}

} // namespace

std::optional<QList<AppcastItem>> parse(const QByteArray &text)
{
    QXmlStreamReader xml(text);
    QList<AppcastItem> items;
    bool sawChannel = false;
    if (!xml.readNextStartElement() || xml.name() != u"rss")
        return std::nullopt;
    while (xml.readNextStartElement()) {
        if (xml.name() != u"channel" || !xml.namespaceUri().isEmpty()) {
            xml.skipCurrentElement();
            continue;
        }
        sawChannel = true;
        while (xml.readNextStartElement()) {
            if (xml.name() == u"item" && xml.namespaceUri().isEmpty()) {
                AppcastItem item = readItem(xml);
                if (VersionNumber(item.version).isValid())
                    items.append(std::move(item));
            } else {
                xml.skipCurrentElement();
            }
        }
    }
    // Read to the end, so that a fault after the last item still counts.
    while (!xml.atEnd())
        xml.readNext();
    if (xml.hasError() || !sawChannel)
        return std::nullopt;
    return items;
}

std::optional<AppcastItem> newestUpdate(const QList<AppcastItem> &items, const QString &currentVersion)
{
    const VersionNumber current(currentVersion);
    const AppcastItem *best = nullptr;
    for (const AppcastItem &item : items) {
        const VersionNumber version(item.version);
        if (VersionNumber::compare(version, current) <= 0)
            continue;
        if (!best || VersionNumber::compare(version, VersionNumber(best->version)) > 0)
            best = &item;
    }
    if (!best)
        return std::nullopt;
    return *best;
}

} // namespace Appcast
