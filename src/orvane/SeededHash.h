#pragma once

#include <cstdint>
#include <string_view>

namespace orvane {

/// A running 64-bit hash whose seed is drawn at random once per process. Its values are for comparing within one
/// run only (document signatures, library fingerprints) and must never be stored.
class SeededHash {
public:
    SeededHash();

    /// Feeds a piece of bytes; pieces are delimited, so ("ab", "c") and ("a", "bc") hash differently.
    void combine(std::string_view bytes);
    void combine(std::uint64_t value);
    std::uint64_t value() const;

    /// The hash of one piece of bytes.
    static std::uint64_t of(std::string_view bytes);

private:
    std::uint64_t m_state;
};

} // namespace orvane
