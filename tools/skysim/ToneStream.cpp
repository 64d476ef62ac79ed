#include "ToneStream.h"

#include "SimRandom.h"

#include <QtEndian>
#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

void appendLittleEndian32(QByteArray &bytes, quint32 value)
{
    char buffer[4];
    qToLittleEndian(value, buffer);
    bytes.append(buffer, 4);
}

void appendLittleEndian16(QByteArray &bytes, quint16 value)
{
    char buffer[2];
    qToLittleEndian(value, buffer);
    bytes.append(buffer, 2);
}

} // namespace

ToneStream::ToneStream(int sampleRate, quint64 seed, int leadMs)
    : m_rate(sampleRate), m_seed(seed), m_leadMs(leadMs)
{
}

QByteArray ToneStream::wavHeader(int sampleRate)
{
    // The largest sizes the fields hold: a player reads "very long" and plays until the stream ends.
    constexpr quint32 endless = 0xFFFFFFFFu;
    QByteArray header;
    header.reserve(headerBytes);
    header.append("RIFF");
    appendLittleEndian32(header, endless);
    header.append("WAVEfmt ");
    appendLittleEndian32(header, 16);
    appendLittleEndian16(header, 1); // PCM
    appendLittleEndian16(header, 1); // mono
    appendLittleEndian32(header, quint32(sampleRate));
    appendLittleEndian32(header, quint32(sampleRate * bytesPerSample));
    appendLittleEndian16(header, bytesPerSample);
    appendLittleEndian16(header, 16);
    header.append("data");
    appendLittleEndian32(header, endless - 36);
    return header;
}

qint64 ToneStream::bytesDueAt(qint64 elapsedMs) const
{
    const qint64 samples = (std::max<qint64>(0, elapsedMs) + m_leadMs) * m_rate / 1000;
    return headerBytes + samples * bytesPerSample;
}

QByteArray ToneStream::take(qint64 elapsedMs)
{
    QByteArray bytes;
    if (!m_headerSent) {
        bytes = wavHeader(m_rate);
        m_headerSent = true;
    }
    const qint64 due = (bytesDueAt(elapsedMs) - headerBytes) / bytesPerSample;
    bytes.reserve(bytes.size() + qsizetype(std::max<qint64>(0, due - m_samplesSent)) * bytesPerSample);
    for (; m_samplesSent < due; ++m_samplesSent) {
        char buffer[2];
        qToLittleEndian(qint16(sampleAt(m_samplesSent)), buffer);
        bytes.append(buffer, 2);
    }
    return bytes;
}

void ToneStream::loadSlot(qint64 slot)
{
    SimRandom random(SimRandom::mix({m_seed, quint64(slot)}));
    const qint64 slotSamples = qint64(slotSeconds) * m_rate;
    m_slot = Slot();
    m_slot.index = slot;
    if (random.chance(0.6)) {
        m_slot.length = qint64(random.between(1.0, 3.5) * m_rate);
        m_slot.start = random.integer(0, slotSamples - m_slot.length);
        m_slot.toneHz = random.between(300.0, 1100.0);
        m_slot.warbleHz = random.between(3.0, 7.0);
    }
}

qint16 ToneStream::sampleAt(qint64 index)
{
    const qint64 slotSamples = qint64(slotSeconds) * m_rate;
    const qint64 slot = index / slotSamples;
    if (slot != m_slot.index)
        loadSlot(slot);
    const qint64 at = index - slot * slotSamples - m_slot.start;
    if (m_slot.length == 0 || at < 0 || at >= m_slot.length)
        return 0;
    // A short fade at both ends, so a transmission doesn't click.
    const double fade =
        std::min({1.0, double(at) / (0.01 * m_rate), double(m_slot.length - at) / (0.01 * m_rate)});
    const double t = double(at) / m_rate;
    const double envelope = 0.3 * (0.65 + 0.35 * std::sin(2.0 * std::numbers::pi * m_slot.warbleHz * t));
    return qint16(
        std::lround(32767.0 * fade * envelope * std::sin(2.0 * std::numbers::pi * m_slot.toneHz * t)));
}
