#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>
#include <optional>

// The pages of Aerolume Help, in sidebar order: each a title, headings, paragraphs in light markup
// (a pair of double asterisks marks bold), items with a coloured symbol, and the two legends. The
// services are named as configured, so a user who renamed a feed reads their own name here too.
class HelpTopics : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    // [{key, title, symbol}] in sidebar order.
    Q_PROPERTY(QVariantList topics READ topicList CONSTANT)
    Q_PROPERTY(QString defaultTopic READ defaultTopic CONSTANT)

public:
    enum class Kind { Title, Heading, Paragraph, Item, Legend };

    struct Block
    {
        Kind kind = Kind::Paragraph;
        QString text;   // markup; for a legend, which one: "app" or "widget"
        QString title;  // an item's title
        QString symbol; // an item's symbol
        QString color;  // an item's colour: "orange", "red" or "green"
    };

    struct Topic
    {
        QString key;
        QString title;
        QString symbol;
        QList<Block> blocks;
    };

    explicit HelpTopics(QObject *parent = nullptr);

    // Made on each call: the services' names are read at the moment of use.
    [[nodiscard]] static QList<Topic> all();
    [[nodiscard]] static std::optional<Topic> find(const QString &key);
    [[nodiscard]] static QString defaultTopic() { return u"gettingStarted"_qs; }

    // The markup as rich text for a Text item: everything escaped, bold pairs as <b>.
    Q_INVOKABLE [[nodiscard]] static QString richText(const QString &markup);
    // What a screen reader says: the markup without its asterisks.
    Q_INVOKABLE [[nodiscard]] static QString plainText(const QString &markup);

    [[nodiscard]] QVariantList topicList() const;
    // The blocks of a page as [{kind, text, plain, title, symbol, color}]; kind is "title", "heading",
    // "paragraph", "item" or "legend". An empty or unknown key gives the first page.
    Q_INVOKABLE [[nodiscard]] QVariantList page(const QString &key) const;
};
