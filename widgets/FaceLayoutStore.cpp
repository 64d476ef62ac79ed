#include "FaceLayoutStore.h"

#include "UserDirectories.h"

#include <QSettings>

FaceLayoutStore::FaceLayoutStore() : FaceLayoutStore(UserDirectories::config() + u"/Widgets.conf"_qs) {}

FaceLayoutStore::FaceLayoutStore(QString filePath) : m_filePath(std::move(filePath)) {}

std::optional<QList<FaceLayoutStore::Placement>> FaceLayoutStore::load() const
{
    QSettings settings(m_filePath, QSettings::IniFormat);
    if (!settings.contains(u"faces/size"_qs))
        return std::nullopt;
    QList<Placement> placements;
    const int count = settings.beginReadArray(u"faces"_qs);
    for (int i = 0; i < count; ++i) {
        settings.setArrayIndex(i);
        // A face this version doesn't know is dropped rather than guessed.
        const auto face = FaceCatalog::fromKey(settings.value(u"face"_qs).toString());
        if (!face)
            continue;
        placements.append({*face, QPoint(settings.value(u"x"_qs).toInt(), settings.value(u"y"_qs).toInt())});
    }
    settings.endArray();
    return placements;
}

void FaceLayoutStore::save(const QList<Placement> &placements)
{
    QSettings settings(m_filePath, QSettings::IniFormat);
    settings.remove(u"faces"_qs);
    settings.beginWriteArray(u"faces"_qs, int(placements.size()));
    for (int i = 0; i < placements.size(); ++i) {
        settings.setArrayIndex(i);
        settings.setValue(u"face"_qs, FaceCatalog::key(placements[i].face));
        settings.setValue(u"x"_qs, placements[i].position.x());
        settings.setValue(u"y"_qs, placements[i].position.y());
    }
    settings.endArray();
    settings.sync();
}
