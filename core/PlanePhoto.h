#pragma once

#include <QMetaType>
#include <QString>
#include <QUrl>
#include <QVariant>
#include <optional>

// A photo of an aircraft and whom to credit for it.
struct PlanePhoto
{
    Q_GADGET
    Q_PROPERTY(QUrl thumbnailURL MEMBER thumbnailURL CONSTANT)
    Q_PROPERTY(QUrl pageURL READ pageURLOrEmpty CONSTANT)
    Q_PROPERTY(QString photographer READ photographerOrEmpty CONSTANT)

public:
    QUrl thumbnailURL;
    std::optional<QUrl> pageURL;
    std::optional<QString> photographer;

    bool operator==(const PlanePhoto &) const = default;

private:
    [[nodiscard]] QUrl pageURLOrEmpty() const { return pageURL.value_or(QUrl()); }
    [[nodiscard]] QString photographerOrEmpty() const { return photographer.value_or(QString()); }
};

Q_DECLARE_METATYPE(PlanePhoto)
