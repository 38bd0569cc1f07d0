#pragma once

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tarn {

/// Words with a value each, for tables that every start of a program fills and then asks a few
/// times: a hash that costs little for short words, and no allocation for each of them.
///
/// The words stay where they are, and must outlive the map. Filled by one thread, it may be asked
/// by any number.
template <class Value>
class WordMap {
public:
    /// Has room for so many words, at most 32,767.
    explicit WordMap(std::size_t most) : slots_(std::bit_ceil(2 * std::max<std::size_t>(1, most))) {
        assert(most < 1 << 15);
        entries_.reserve(most);
    }

    /// What the word has already, or else `value`. The reference is good until a word is added.
    Value& add(std::string_view word, const Value& value = {}) {
        std::uint16_t& slot = slots_[slotOf(word)];
        if (slot == 0) {
            assert(entries_.size() < entries_.capacity());
            entries_.push_back({word, value});
            slot = static_cast<std::uint16_t>(entries_.size());
        }
        return entries_[slot - 1U].value;
    }

    /// Null for a word that is not there.
    const Value* find(std::string_view word) const {
        const std::uint16_t slot = slots_[slotOf(word)];
        return slot == 0 ? nullptr : &entries_[slot - 1U].value;
    }

private:
    struct Entry {
        std::string_view word;
        Value value;
    };

    /// Where the word is, or would be. Half of the slots stay free, so there is one.
    std::size_t slotOf(std::string_view word) const {
        const std::size_t mask = slots_.size() - 1;
        std::size_t slot = hash(word) & mask;
        while (slots_[slot] != 0 && entries_[slots_[slot] - 1U].word != word)
            slot = (slot + 1) & mask;
        return slot;
    }

    /// FNV-1a of 32 bits, whose upper half is the better one.
    static std::size_t hash(std::string_view word) {
        std::uint32_t hash = 2166136261U;
        for (const char c : word) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
        return hash ^ hash >> 16;
    }

    std::vector<std::uint16_t> slots_;  ///< Places in `entries_`, counted from 1; 0 for none.
    std::vector<Entry> entries_;
};

}  // namespace tarn
