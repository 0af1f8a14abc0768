#pragma once

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace orvane {

/// A read-only word -> value table over strings of static storage, probed in place. The constant word lists are
/// consulted once per token on hot paths (a whole Bible is tokenised on load), where node-based hash tables
/// spent most of the time.
class WordTable {
public:
    WordTable() = default;
    /// Keys and values must outlive the table (string literals or static arrays).
    explicit WordTable(const std::vector<std::pair<std::string_view, std::string_view>>& entries);

    bool contains(std::string_view word) const noexcept { return find(word) != nullptr; }
    /// The value stored for the word, or null.
    const std::string_view* find(std::string_view word) const noexcept { return lookup<false>(word); }
    /// Looks up the ASCII lowercase form of the word without building it first (the keys are lowercase).
    bool containsLowercased(std::string_view word) const noexcept { return lookup<true>(word) != nullptr; }
    std::size_t size() const noexcept { return m_size; }

private:
    struct Slot {
        std::size_t hash = 0;
        std::string_view key{};
        std::string_view value{};
    };

    static char lowered(char c) noexcept { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + ('a' - 'A')) : c; }

    // Byte by byte on purpose: the words looked up were usually written a byte at a time just before, and wide
    // loads of freshly stored bytes stall.
    template <bool lowering>
    static std::size_t hashOf(std::string_view word) noexcept {
        std::uint64_t hash = word.size();
        for (char c : word) {
            const auto byte = static_cast<unsigned char>(lowering ? lowered(c) : c);
            hash = ((hash << 7) | (hash >> 57)) ^ byte;
        }
        hash *= 0xBF58476D1CE4E5B9ull;
        hash ^= hash >> 31;
        return static_cast<std::size_t>(hash);
    }

    template <bool lowering>
    const std::string_view* lookup(std::string_view word) const noexcept {
        if (m_slots.empty())
            return nullptr;
        const std::size_t hash = hashOf<lowering>(word);
        for (std::size_t index = hash & m_mask;; index = (index + 1) & m_mask) {
            const Slot& slot = m_slots[index];
            if (slot.key.data() == nullptr)
                return nullptr;
            if (slot.hash == hash && slot.key.size() == word.size()) {
                std::size_t i = 0;
                while (i < word.size() && slot.key[i] == (lowering ? lowered(word[i]) : word[i]))
                    ++i;
                if (i == word.size())
                    return &slot.value;
            }
        }
    }

    std::vector<Slot> m_slots;
    std::size_t m_mask = 0;
    std::size_t m_size = 0;
};

inline WordTable::WordTable(const std::vector<std::pair<std::string_view, std::string_view>>& entries) {
    std::size_t capacity = 16;
    while (capacity < entries.size() * 4)
        capacity *= 2;
    m_slots.resize(capacity);
    m_mask = capacity - 1;
    for (const auto& [key, value] : entries) {
        const std::size_t hash = hashOf<false>(key);
        std::size_t index = hash & m_mask;
        while (m_slots[index].key.data() != nullptr && m_slots[index].key != key)
            index = (index + 1) & m_mask;
        if (m_slots[index].key.data() == nullptr)
            ++m_size;
        m_slots[index] = Slot{hash, key, value};
    }
}

/// A table of the words with empty values.
template <typename Words>
WordTable wordTableOf(const Words& words) {
    std::vector<std::pair<std::string_view, std::string_view>> entries;
    for (std::string_view word : words)
        entries.emplace_back(word, std::string_view(""));
    return WordTable(entries);
}

} // namespace orvane
