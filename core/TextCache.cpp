#include "TextCache.h"

#include <algorithm>
#include <bit>

namespace {

// Kept in any case, so that a quiet sky doesn't rebuild the table at every answer.
constexpr qsizetype spareEntries = 256;
constexpr std::size_t smallestTable = 64;

std::uint32_t hashOf(std::string_view bytes)
{
    std::uint32_t hash = 2166136261u; // FNV-1a
    for (char c : bytes)
        hash = (hash ^ std::uint8_t(c)) * 16777619u;
    return hash;
}

} // namespace

QString TextCache::text(std::string_view utf8)
{
    if (utf8.size() > maxLength)
        return QString::fromUtf8(utf8.data(), qsizetype(utf8.size()));
    // At most half full, so probing ends at a free slot soon.
    if (std::size_t(m_size + 1) * 2 > m_entries.size())
        rehash(std::max(smallestTable, m_entries.size() * 2), 1);
    const std::uint32_t hash = hashOf(utf8);
    const std::size_t mask = m_entries.size() - 1;
    for (std::size_t slot = hash & mask;; slot = (slot + 1) & mask) {
        Entry &entry = m_entries[slot];
        if (entry.round == 0) {
            entry.bytes.assign(utf8);
            entry.text = QString::fromUtf8(utf8.data(), qsizetype(utf8.size()));
            entry.hash = hash;
            entry.round = m_round;
            ++m_size;
            ++m_askedThisRound;
            return entry.text;
        }
        if (entry.hash == hash && entry.bytes == utf8) {
            if (entry.round != m_round) {
                entry.round = m_round;
                ++m_askedThisRound;
            }
            return entry.text;
        }
    }
}

void TextCache::nextRound()
{
    const qsizetype askedLastRound = m_askedThisRound;
    ++m_round;
    m_askedThisRound = 0;
    // Forgets what the answer just read didn't ask for, once that is a good share of the table: what left
    // the sky goes, and a sweep is rare enough to cost little.
    if (m_size > 2 * askedLastRound + spareEntries) {
        const std::size_t wanted = std::bit_ceil(std::size_t(4 * askedLastRound + spareEntries));
        rehash(std::max(smallestTable, wanted), m_round - 1);
    }
}

void TextCache::rehash(std::size_t capacity, std::uint32_t oldestRound)
{
    std::vector<Entry> old = std::exchange(m_entries, std::vector<Entry>(capacity));
    m_size = 0;
    const std::size_t mask = capacity - 1;
    for (Entry &entry : old) {
        if (entry.round == 0 || entry.round < oldestRound)
            continue;
        std::size_t slot = entry.hash & mask;
        while (m_entries[slot].round != 0)
            slot = (slot + 1) & mask;
        m_entries[slot] = std::move(entry);
        ++m_size;
    }
}
