#pragma once

#include <QAudioOutput>
#include <QMediaPlayer>
#include <QObject>
#include <QUrl>

// One live audio stream on the default output. QMediaPlayer's media status, playback state and errors
// come out as two plain events, each sent only when its value changes: whether the stream could be
// opened (unknown, ready, failed) and whether sound is coming (paused, waiting, playing).
class StreamPlayer : public QObject
{
    Q_OBJECT

public:
    enum class ItemStatus
    {
        Unknown,
        ReadyToPlay,
        Failed
    };
    Q_ENUM(ItemStatus)
    enum class TimeControl
    {
        Paused,
        WaitingToPlay,
        Playing
    };
    Q_ENUM(TimeControl)

    // Opens the address at once; nothing is heard before play().
    explicit StreamPlayer(const QUrl &source, QObject *parent = nullptr);

    [[nodiscard]] QUrl source() const;
    [[nodiscard]] float volume() const;
    [[nodiscard]] ItemStatus itemStatus() const { return m_itemStatus; }
    [[nodiscard]] TimeControl timeControlStatus() const { return m_timeControl; }

    // 0 to 1, linear.
    void setVolume(float volume);
    void play();
    void pause();

signals:
    void itemStatusChanged(StreamPlayer::ItemStatus status);
    void timeControlStatusChanged(StreamPlayer::TimeControl status);

private:
    void update();

    QAudioOutput m_output;
    QMediaPlayer m_player;
    ItemStatus m_itemStatus = ItemStatus::Unknown;
    TimeControl m_timeControl = TimeControl::Paused;
    bool m_prerolled = false;
    bool m_failed = false;
    bool m_playRequested = false;
};
