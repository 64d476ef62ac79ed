#pragma once

#include <QList>
#include <QStringView>
#include <QtGlobal>
#include <initializer_list>

// A small random generator (SplitMix64) whose every output follows from its seed, so that a seed gives the
// same sky on every machine and Qt version; std:: distributions and QRandomGenerator's helpers don't promise
// that.
class SimRandom
{
public:
    explicit SimRandom(quint64 seed) : m_state(seed) {}

    // One seed from several numbers, e.g. (sky seed, aircraft index, lap).
    [[nodiscard]] static quint64 mix(std::initializer_list<quint64> parts);
    // A seed from text (FNV-1a over its UTF-8), the same in every process, unlike qHash.
    [[nodiscard]] static quint64 textSeed(QStringView text);

    [[nodiscard]] quint64 next();
    // Uniform in [0, 1).
    [[nodiscard]] double unit();
    // Uniform in [low, high).
    [[nodiscard]] double between(double low, double high);
    // Uniform whole number in [low, high], both ends included.
    [[nodiscard]] qint64 integer(qint64 low, qint64 high);
    [[nodiscard]] bool chance(double probability);

    template <typename T> [[nodiscard]] const T &pick(const QList<T> &items)
    {
        Q_ASSERT(!items.isEmpty());
        return items.at(qsizetype(integer(0, items.size() - 1)));
    }

private:
    quint64 m_state;
};
