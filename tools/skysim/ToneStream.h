#pragma once

#include "SkySimStream.h"

#include <QByteArray>
#include <QtGlobal>

// A tower frequency as a live feed sends it: a WAV head that claims the longest data a WAV can hold,
// then 16-bit mono PCM without end. Every few seconds a transmission may come: a warbling tone of a
// second or three, then silence, as a scanner's squelch gives it. The sound follows from the seed alone.
// A live server sends a little audio ahead on connecting, so that a player starts without waiting.
class ToneStream : public SkySimStream
{
public:
    static constexpr int headerBytes = 44;
    static constexpr int bytesPerSample = 2;
    static constexpr int slotSeconds = 4; // a transmission may start at the start of each slot

    ToneStream(int sampleRate, quint64 seed, int leadMs);

    [[nodiscard]] QByteArray take(qint64 elapsedMs) override;

    // All bytes due by elapsedMs, the head included.
    [[nodiscard]] qint64 bytesDueAt(qint64 elapsedMs) const;
    [[nodiscard]] int sampleRate() const { return m_rate; }
    [[nodiscard]] static QByteArray wavHeader(int sampleRate);

private:
    struct Slot
    {
        qint64 index = -1;
        qint64 start = 0; // first sample of the transmission, from the slot's start; none when length is 0
        qint64 length = 0;
        double toneHz = 0.0;
        double warbleHz = 0.0;
    };

    [[nodiscard]] qint16 sampleAt(qint64 index);
    void loadSlot(qint64 slot);

    int m_rate;
    quint64 m_seed;
    int m_leadMs;
    qint64 m_samplesSent = 0;
    bool m_headerSent = false;
    Slot m_slot;
};
