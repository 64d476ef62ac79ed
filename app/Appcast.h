#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <optional>

// One release as the update feed lists it.
struct AppcastItem
{
    QString title;
    QString version;        // sparkle:version, on the item or its enclosure: what is compared
    QString displayVersion; // sparkle:shortVersionString, else the version: what people are shown
    QString releaseNotes;   // the item's description, often HTML
    QString releaseNotesLink;
    QString link;         // the release's page
    QString enclosureUrl; // the download itself
    QString pubDate;

    // Where "Download" goes: the release's page, else the download itself.
    [[nodiscard]] QString downloadPage() const { return link.isEmpty() ? enclosureUrl : link; }
};

// An appcast: RSS 2.0 whose items carry their versions in the sparkle: namespace.
namespace Appcast {

[[nodiscard]] QString sparkleNamespace();

// The items in feed order; absent when the text is not well-formed XML or no RSS channel. Items without
// any version are left out, since nothing can be said about them.
[[nodiscard]] std::optional<QList<AppcastItem>> parse(const QByteArray &xml);

// The item with the highest version newer than `currentVersion`, if any.
[[nodiscard]] std::optional<AppcastItem> newestUpdate(const QList<AppcastItem> &items,
                                                      const QString &currentVersion);

} // namespace Appcast
