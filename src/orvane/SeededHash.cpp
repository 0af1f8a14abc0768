#include "orvane/SeededHash.h"

#include <cstring>
#include <random>

namespace orvane {
namespace {

// The finaliser of SplitMix64: every input bit affects every output bit.
std::uint64_t mix(std::uint64_t value) {
    value ^= value >> 30;
    value *= 0xbf58476d1ce4e5b9ULL;
    value ^= value >> 27;
    value *= 0x94d049bb133111ebULL;
    value ^= value >> 31;
    return value;
}

std::uint64_t processSeed() {
    static const std::uint64_t seed = [] {
        std::random_device device;
        return (static_cast<std::uint64_t>(device()) << 32) ^ device();
    }();
    return seed;
}

constexpr std::uint64_t multiplier = 0x9e3779b97f4a7c15ULL;

} // namespace

SeededHash::SeededHash() : m_state(processSeed()) {}

void SeededHash::combine(std::uint64_t value) {
    m_state = mix(m_state ^ (value * multiplier)) + multiplier;
}

void SeededHash::combine(std::string_view bytes) {
    // The length first delimits the piece from its neighbours.
    combine(static_cast<std::uint64_t>(bytes.size()));
    std::size_t offset = 0;
    for (; offset + 8 <= bytes.size(); offset += 8) {
        std::uint64_t word;
        std::memcpy(&word, bytes.data() + offset, 8);
        combine(word);
    }
    if (offset < bytes.size()) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data() + offset, bytes.size() - offset);
        combine(word);
    }
}

std::uint64_t SeededHash::value() const {
    return mix(m_state);
}

std::uint64_t SeededHash::of(std::string_view bytes) {
    SeededHash hash;
    hash.combine(bytes);
    return hash.value();
}

} // namespace orvane
