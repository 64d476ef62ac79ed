#include "StreamPlayer.h"

StreamPlayer::StreamPlayer(const QUrl &source, QObject *parent) : QObject(parent)
{
    m_player.setAudioOutput(&m_output);
    connect(&m_player, &QMediaPlayer::mediaStatusChanged, this, &StreamPlayer::update);
    connect(&m_player, &QMediaPlayer::playbackStateChanged, this, &StreamPlayer::update);
    connect(&m_player, &QMediaPlayer::errorOccurred, this, &StreamPlayer::update);
    connect(&m_player, &QMediaPlayer::positionChanged, this, [this](qint64 position) {
        // Sound has come out, whatever the media status says.
        if (position > 0 && !m_prerolled) {
            m_prerolled = true;
            update();
        }
    });
    m_player.setSource(source);
}

QUrl StreamPlayer::source() const
{
    return m_player.source();
}

float StreamPlayer::volume() const
{
    return m_output.volume();
}

void StreamPlayer::setVolume(float volume)
{
    m_output.setVolume(volume);
}

void StreamPlayer::play()
{
    m_playRequested = true;
    m_player.play();
    update();
}

void StreamPlayer::pause()
{
    m_playRequested = false;
    m_player.pause();
    update();
}

void StreamPlayer::update()
{
    const QMediaPlayer::MediaStatus media = m_player.mediaStatus();
    if (m_player.error() != QMediaPlayer::NoError || media == QMediaPlayer::InvalidMedia)
        m_failed = true;
    // Loaded comes once the first data has gone through; a live stream sent at its real rate may then sit
    // in Buffering for as long as it plays, so Buffered is never waited for.
    if (media == QMediaPlayer::LoadedMedia || media == QMediaPlayer::BufferedMedia ||
        media == QMediaPlayer::EndOfMedia)
        m_prerolled = true;

    const ItemStatus item = m_failed      ? ItemStatus::Failed
                            : m_prerolled ? ItemStatus::ReadyToPlay
                                          : ItemStatus::Unknown;

    TimeControl time = TimeControl::WaitingToPlay;
    if (m_failed || !m_playRequested)
        time = TimeControl::Paused;
    else if (m_player.playbackState() != QMediaPlayer::PlayingState)
        // Stopped on its own: a live feed has no end, so the server has gone and the player waits for
        // data that may never come.
        time = TimeControl::WaitingToPlay;
    else if (m_prerolled && (media == QMediaPlayer::LoadedMedia || media == QMediaPlayer::BufferingMedia ||
                             media == QMediaPlayer::BufferedMedia))
        time = TimeControl::Playing;

    if (item != m_itemStatus) {
        m_itemStatus = item;
        emit itemStatusChanged(item);
    }
    if (time != m_timeControl) {
        m_timeControl = time;
        emit timeControlStatusChanged(time);
    }
}
