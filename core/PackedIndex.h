#pragma once

#include <QtGlobal>

#include <algorithm>
#include <bit>
#include <utility>
#include <vector>

// A table from packed texts (see PackedText) to row numbers, for matching thousands of aircraft on every
// refresh: one pass to fill and one to look up, where sorting both sides or hashing text costs several
// times more. Sized up front for the rows it will hold; it grows only past that. Inline: it runs for
// every aircraft.
class PackedIndex
{
public:
    explicit PackedIndex(std::size_t expected) : m_slots(std::bit_ceil(std::max<std::size_t>(16, expected * 2)))
    {
        m_mask = m_slots.size() - 1;
    }

    // Stores the value for the key and returns the one it replaces, or -1 when the key is new.
    qsizetype exchange(quint64 key, qsizetype value)
    {
        Slot *slot = &slotOf(key);
        if (slot->used)
            return std::exchange(slot->value, value);
        if ((m_size + 1) * 2 > m_slots.size()) {
            grow();
            slot = &slotOf(key);
        }
        *slot = {key, value, true};
        ++m_size;
        return -1;
    }

    // The value stored for the key, or -1.
    [[nodiscard]] qsizetype find(quint64 key) const
    {
        for (std::size_t at = start(key);; at = (at + 1) & m_mask) {
            const Slot &slot = m_slots[at];
            if (!slot.used)
                return -1;
            if (slot.key == key)
                return slot.value;
        }
    }

private:
    struct Slot
    {
        quint64 key = 0;
        qsizetype value = -1;
        bool used = false;
    };

    // Fibonacci hashing: packed addresses differ mostly in their low bytes, and the multiplication spreads
    // every bit into the high ones that pick the slot.
    [[nodiscard]] std::size_t start(quint64 key) const
    {
        return std::size_t((key * 0x9E3779B97F4A7C15ull) >> 32) & m_mask;
    }

    Slot &slotOf(quint64 key)
    {
        for (std::size_t at = start(key);; at = (at + 1) & m_mask) {
            Slot &slot = m_slots[at];
            if (!slot.used || slot.key == key)
                return slot;
        }
    }

    void grow()
    {
        std::vector<Slot> old = std::exchange(m_slots, std::vector<Slot>(m_slots.size() * 2));
        m_mask = m_slots.size() - 1;
        for (const Slot &slot : old) {
            if (slot.used)
                slotOf(slot.key) = slot;
        }
    }

    std::vector<Slot> m_slots; // at most half full, so probing stops at a free slot soon
    std::size_t m_mask = 0;
    std::size_t m_size = 0;
};
