#include "ATCAudio.h"

#include "DefaultsStore.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>

namespace {

const QString favoritesKey = u"atcFavorites"_qs;
const QString volumeKey = u"atcVolume"_qs;

QString uuidText(const QUuid &id)
{
    return id.toString(QUuid::WithoutBraces).toUpper();
}

// Only the canonical hyphenated form, in either case, names a favorite.
std::optional<QUuid> uuidFromText(const QString &text)
{
    if (text.size() != 36)
        return std::nullopt;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool hyphen = i == 8 || i == 13 || i == 18 || i == 23;
        const char16_t c = text[i].unicode();
        const bool hex = (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
        if (hyphen ? c != u'-' : !hex)
            return std::nullopt;
    }
    return QUuid::fromString(text);
}

// The whole list or nothing: one entry short of a key makes the stored data unreadable.
std::optional<QList<ATCFavorite>> decodeFavorites(const QByteArray &data)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(data, &error);
    if (error.error != QJsonParseError::NoError || !document.isArray())
        return std::nullopt;
    QList<ATCFavorite> favorites;
    for (const QJsonValue &value : document.array()) {
        if (!value.isObject())
            return std::nullopt;
        const QJsonObject object = value.toObject();
        const QJsonValue id = object.value(u"id");
        const QJsonValue name = object.value(u"name");
        const QJsonValue url = object.value(u"url");
        if (!id.isString() || !name.isString() || !url.isString())
            return std::nullopt;
        const std::optional<QUuid> uuid = uuidFromText(id.toString());
        if (!uuid)
            return std::nullopt;
        favorites.append({*uuid, name.toString(), url.toString()});
    }
    return favorites;
}

QByteArray encodeFavorites(const QList<ATCFavorite> &favorites)
{
    QJsonArray array;
    for (const ATCFavorite &favorite : favorites)
        array.append(QJsonObject{
            {u"id"_qs, uuidText(favorite.id)}, {u"name"_qs, favorite.name}, {u"url"_qs, favorite.url}});
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

QString trimmedOfSpacesAndTabs(const QString &text)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && (text[begin] == u' ' || text[begin] == u'\t'))
        ++begin;
    while (end > begin && (text[end - 1] == u' ' || text[end - 1] == u'\t'))
        --end;
    return text.sliced(begin, end - begin);
}

} // namespace

ATCAudio::ATCAudio(DefaultsStore *defaults, const StreamResolver::Options &resolverOptions, QObject *parent)
    : QObject(parent), m_defaults(defaults), m_resolverOptions(resolverOptions)
{
    load();
}

ATCAudio::~ATCAudio()
{
    stopPlayerOnly();
}

ATCAudio *ATCAudio::shared()
{
    static ATCAudio *audio = new ATCAudio(DefaultsStore::shared());
    return audio;
}

void ATCAudio::resolveStream(const QString &from, QObject *context, StreamResolver::Done done)
{
    StreamResolver::resolve(from, context, std::move(done));
}

void ATCAudio::load()
{
    if (const std::optional<QByteArray> data = m_defaults->dataValue(favoritesKey)) {
        // Unreadable data stays where it is until the next change of the list replaces it.
        if (std::optional<QList<Favorite>> favorites = decodeFavorites(*data)) {
            setFavorites(*favorites);
            persist();
        }
    }
    if (const std::optional<double> volume = m_defaults->doubleValue(volumeKey))
        setVolume(*volume);
}

QString ATCAudio::playingFavoriteIDText() const
{
    return m_playingFavoriteID ? uuidText(*m_playingFavoriteID) : QString();
}

void ATCAudio::persist()
{
    m_defaults->setValue(favoritesKey, encodeFavorites(m_favorites));
}

void ATCAudio::setVolume(double volume)
{
    const bool changed = volume != m_volume;
    m_volume = volume;
    if (m_player)
        m_player->setVolume(float(volume));
    // Every step of a dragged slider is stored; there are few enough.
    m_defaults->setValue(volumeKey, volume);
    if (changed)
        emit volumeChanged();
}

void ATCAudio::toggle(const Favorite &favorite)
{
    if (m_playingFavoriteID == favorite.id) {
        stopPlayerOnly();
        setStatus({StatusKind::Idle, {}});
        setPlayingFavoriteID(std::nullopt);
        return;
    }
    play(favorite);
}

void ATCAudio::play(const Favorite &favorite)
{
    stopPlayerOnly();
    setPlayingFavoriteID(favorite.id);
    setStatus({StatusKind::Buffering, {}});
    StreamResolver::resolve(
        favorite.url, this,
        [this, favorite](std::optional<QUrl> stream) {
            // The user may have stopped, or picked another feed, while the address was looked up.
            if (m_playingFavoriteID == favorite.id) {
                if (stream)
                    startPlayer(*stream, favorite);
                else
                    markOffline(favorite);
            }
            emit resolved(favorite.id);
        },
        m_resolverOptions);
}

void ATCAudio::stopPlayerOnly()
{
    // Observers go first, so that pausing reports nothing.
    disconnect(m_itemObservation);
    disconnect(m_timeControlObservation);
    if (m_player) {
        m_player->pause();
        m_player->deleteLater();
        m_player = nullptr;
    }
}

void ATCAudio::startPlayer(const QUrl &url, const Favorite &favorite)
{
    auto *player = new StreamPlayer(url, this);
    player->setVolume(float(m_volume));
    // A second resolution of the same feed can land here while the first one's player runs.
    disconnect(m_itemObservation);
    disconnect(m_timeControlObservation);
    if (m_player)
        m_player->deleteLater();
    m_player = player;

    // Queued, so that a handler never tears down the player whose signal it is in; every handler checks
    // the token first, as the user may have moved on since the event was sent.
    m_itemObservation = connect(
        player, &StreamPlayer::itemStatusChanged, this,
        [this, favorite](StreamPlayer::ItemStatus itemStatus) {
            if (m_playingFavoriteID != favorite.id)
                return;
            if (itemStatus == StreamPlayer::ItemStatus::Failed)
                markOffline(favorite);
        },
        Qt::QueuedConnection);
    m_timeControlObservation = connect(
        player, &StreamPlayer::timeControlStatusChanged, this,
        [this, favorite](StreamPlayer::TimeControl timeControl) {
            if (m_playingFavoriteID != favorite.id)
                return;
            switch (timeControl) {
            case StreamPlayer::TimeControl::WaitingToPlay:
                setStatus({StatusKind::Buffering, {}});
                break;
            case StreamPlayer::TimeControl::Playing:
                setStatus({StatusKind::Playing, favorite.name});
                break;
            case StreamPlayer::TimeControl::Paused:
                break;
            }
        },
        Qt::QueuedConnection);

    // The status stays at buffering until the player says it plays.
    player->play();
}

void ATCAudio::markOffline(const Favorite &favorite)
{
    stopPlayerOnly();
    setStatus({StatusKind::Offline, favorite.name});
    setPlayingFavoriteID(std::nullopt);
}

void ATCAudio::remove(const Favorite &favorite)
{
    if (m_playingFavoriteID == favorite.id) {
        stopPlayerOnly();
        setStatus({StatusKind::Idle, {}});
        setPlayingFavoriteID(std::nullopt);
    }
    QList<Favorite> favorites = m_favorites;
    favorites.removeIf([&](const Favorite &entry) { return entry.id == favorite.id; });
    setFavorites(favorites);
    persist();
}

bool ATCAudio::canAddFavorite(const QString &name, const QString &url)
{
    // The scheme is not looked at here: an address the resolver refuses can be saved, and shows
    // offline when played.
    return !name.isEmpty() && QUrl(trimmedOfSpacesAndTabs(url), QUrl::StrictMode).isValid();
}

bool ATCAudio::addFavorite(const QString &name, const QString &url)
{
    if (!canAddFavorite(name, url))
        return false;
    QList<Favorite> favorites = m_favorites;
    favorites.append({QUuid::createUuid(), name, trimmedOfSpacesAndTabs(url)});
    setFavorites(favorites);
    persist();
    return true;
}

void ATCAudio::toggleFavorite(const QString &id)
{
    if (const std::optional<Favorite> favorite = favoriteWithID(id))
        toggle(*favorite);
}

void ATCAudio::removeFavorite(const QString &id)
{
    if (const std::optional<Favorite> favorite = favoriteWithID(id))
        remove(*favorite);
}

std::optional<ATCAudio::Favorite> ATCAudio::favoriteWithID(const QString &id) const
{
    const std::optional<QUuid> uuid = uuidFromText(id);
    if (!uuid)
        return std::nullopt;
    const auto found = std::find_if(m_favorites.begin(), m_favorites.end(),
                                    [&](const Favorite &favorite) { return favorite.id == *uuid; });
    return found == m_favorites.end() ? std::nullopt : std::optional(*found);
}

void ATCAudio::setStatus(const Status &status)
{
    if (status == m_status)
        return;
    m_status = status;
    emit statusChanged();
}

void ATCAudio::setPlayingFavoriteID(const std::optional<QUuid> &id)
{
    if (id == m_playingFavoriteID)
        return;
    m_playingFavoriteID = id;
    emit playingFavoriteIDChanged();
}

void ATCAudio::setFavorites(const QList<Favorite> &favorites)
{
    if (favorites == m_favorites)
        return;
    m_favorites = favorites;
    m_model.update(favorites);
    emit favoritesChanged();
}
