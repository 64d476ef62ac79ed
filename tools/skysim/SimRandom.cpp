#include "SimRandom.h"

namespace {

quint64 splitMix(quint64 &state)
{
    quint64 z = (state += 0x9E3779B97F4A7C15ULL);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
}

} // namespace

quint64 SimRandom::mix(std::initializer_list<quint64> parts)
{
    quint64 state = 0x5EED5EED5EED5EEDULL;
    quint64 result = 0;
    for (quint64 part : parts) {
        state ^= part;
        result = splitMix(state);
        state = result;
    }
    return result;
}

quint64 SimRandom::textSeed(QStringView text)
{
    quint64 hash = 0xCBF29CE484222325ULL;
    for (const char byte : text.toUtf8()) {
        hash ^= quint64(static_cast<unsigned char>(byte));
        hash *= 0x100000001B3ULL;
    }
    return hash;
}

quint64 SimRandom::next()
{
    return splitMix(m_state);
}

double SimRandom::unit()
{
    // The top 53 bits make every double in [0, 1) on a 2^-53 grid equally likely.
    return double(next() >> 11) * 0x1.0p-53;
}

double SimRandom::between(double low, double high)
{
    return low + (high - low) * unit();
}

qint64 SimRandom::integer(qint64 low, qint64 high)
{
    if (high <= low)
        return low;
    const quint64 span = quint64(high - low) + 1;
    return low + qint64(next() % span);
}

bool SimRandom::chance(double probability)
{
    return unit() < probability;
}
