#pragma once

#include "ATCFavorite.h"
#include "ATCFavoriteListModel.h"
#include "StreamPlayer.h"
#include "StreamResolver.h"

#include <QList>
#include <QMetaObject>
#include <QObject>
#include <QPointer>
#include <QUrl>
#include <QUuid>
#include <optional>

class DefaultsStore;

// The process-wide tower feed player: the user's saved feeds and one stream at a time from them. No
// window owns it, so closing the panel or every window leaves a stream playing.
//
// playingFavoriteID is the one token every late answer is checked against: a resolution or a player
// event that arrives after the user stopped, or picked another feed, changes nothing.
class ATCAudio : public QObject
{
    Q_OBJECT
    Q_PROPERTY(ATCFavoriteListModel *favorites READ favoritesModel CONSTANT)
    Q_PROPERTY(StatusKind status READ statusKind NOTIFY statusChanged)
    // The feed that the status speaks of when playing or offline; empty otherwise.
    Q_PROPERTY(QString statusName READ statusName NOTIFY statusChanged)
    // Upper-case UUID text, empty when nothing is asked for.
    Q_PROPERTY(QString playingFavoriteID READ playingFavoriteIDText NOTIFY playingFavoriteIDChanged)
    Q_PROPERTY(double volume READ volume WRITE setVolume NOTIFY volumeChanged)

public:
    using Favorite = ATCFavorite;

    enum class StatusKind
    {
        Idle,
        Buffering,
        Playing,
        Offline
    };
    Q_ENUM(StatusKind)

    struct Status
    {
        StatusKind kind = StatusKind::Idle;
        QString name; // of the favorite, when playing or offline

        friend bool operator==(const Status &, const Status &) = default;
    };

    static constexpr double defaultVolume = 0.8;

    explicit ATCAudio(DefaultsStore *defaults, const StreamResolver::Options &resolverOptions = {},
                      QObject *parent = nullptr);
    ~ATCAudio() override;

    // Made on first use with the user's settings; alive until the process ends.
    [[nodiscard]] static ATCAudio *shared();

    // The address a saved feed plays from; see StreamResolver.
    static void resolveStream(const QString &from, QObject *context, StreamResolver::Done done);

    [[nodiscard]] const QList<Favorite> &favorites() const { return m_favorites; }
    [[nodiscard]] ATCFavoriteListModel *favoritesModel() { return &m_model; }
    [[nodiscard]] Status status() const { return m_status; }
    [[nodiscard]] StatusKind statusKind() const { return m_status.kind; }
    [[nodiscard]] QString statusName() const { return m_status.name; }
    [[nodiscard]] std::optional<QUuid> playingFavoriteID() const { return m_playingFavoriteID; }
    [[nodiscard]] QString playingFavoriteIDText() const;
    [[nodiscard]] double volume() const { return m_volume; }
    // The current player, if any.
    [[nodiscard]] const StreamPlayer *player() const { return m_player; }

    // Stores every change of the volume, and applies it to the player when there is one.
    void setVolume(double volume);

    // The same row button starts a feed and stops it, also while it is only buffering.
    void toggle(const Favorite &favorite);
    void play(const Favorite &favorite);
    void remove(const Favorite &favorite);
    void persist();

    // The add form: a name that is not empty and an address that, trimmed of spaces and tabs, parses
    // as a URL. Nothing starts playing.
    Q_INVOKABLE [[nodiscard]] static bool canAddFavorite(const QString &name, const QString &url);
    Q_INVOKABLE bool addFavorite(const QString &name, const QString &url);
    // For views, which know a favorite by its id; an unknown id does nothing.
    Q_INVOKABLE void toggleFavorite(const QString &id);
    Q_INVOKABLE void removeFavorite(const QString &id);

signals:
    void favoritesChanged();
    void statusChanged();
    void playingFavoriteIDChanged();
    void volumeChanged();
    // A play attempt's address came back (or didn't), whether or not it still mattered.
    void resolved(const QUuid &favoriteID);

private:
    void load();
    void stopPlayerOnly();
    void startPlayer(const QUrl &url, const Favorite &favorite);
    void markOffline(const Favorite &favorite);
    void setStatus(const Status &status);
    void setPlayingFavoriteID(const std::optional<QUuid> &id);
    void setFavorites(const QList<Favorite> &favorites);
    [[nodiscard]] std::optional<Favorite> favoriteWithID(const QString &id) const;

    DefaultsStore *m_defaults;
    StreamResolver::Options m_resolverOptions;
    ATCFavoriteListModel m_model;
    QList<Favorite> m_favorites;
    Status m_status;
    std::optional<QUuid> m_playingFavoriteID;
    double m_volume = defaultVolume;
    QPointer<StreamPlayer> m_player;
    QMetaObject::Connection m_itemObservation;
    QMetaObject::Connection m_timeControlObservation;
};
