#pragma once

#include <QString>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The texts of one feed answer, kept for the next. Nearly every text of an answer (addresses, call signs,
// squawks, types, operators) was in the last one too: it then shares the string made then instead of
// allocating its own, and the records of the last list free nothing when they go. Texts not asked for in
// the current round or the one before are forgotten, so the cache holds about two answers' texts at most.
class TextCache
{
public:
    // Texts longer than this are made afresh each time; feed texts are far shorter.
    static constexpr std::size_t maxLength = 64;

    // The text of these UTF-8 bytes: the same string as before when it was asked for lately.
    [[nodiscard]] QString text(std::string_view utf8);
    // A new answer begins.
    void nextRound();
    // How many texts are kept.
    [[nodiscard]] qsizetype size() const { return m_size; }

private:
    struct Entry
    {
        std::string bytes;
        QString text;
        std::uint32_t hash = 0;
        std::uint32_t round = 0; // 0: the slot is free
    };
    // Rebuilds the table with room for `capacity` slots, keeping the entries asked for since `oldestRound`.
    void rehash(std::size_t capacity, std::uint32_t oldestRound);

    std::vector<Entry> m_entries; // open addressing, linear probing; a power of two in size
    qsizetype m_size = 0;
    std::uint32_t m_round = 1;
    qsizetype m_askedThisRound = 0; // distinct texts asked for in this round
};
