#pragma once

#include <cstddef>
#include <iterator>
#include <random>
#include <string>

namespace quillon::bench {

/// Sentences of `count` words drawn from a sermon's common vocabulary, stop words included, so
/// generated libraries tokenise, index and save like real ones.
inline std::string sermonWords(std::mt19937_64& random, int count) {
    static const char* const vocabulary[] = {
        "grace",   "faith",  "the",   "and",  "of",    "love", "kingdom", "mercy", "to",  "in",    "light", "world",
        "promise", "spirit", "heart", "hope", "glory", "a",    "bread",   "peace", "joy", "cross", "for",   "with"};
    std::uniform_int_distribution<std::size_t> pick(0, std::size(vocabulary) - 1);
    std::string text;
    for (int index = 0; index < count; ++index)
        text += (index ? " " : "") + std::string(vocabulary[pick(random)]);
    return text + ".";
}

} // namespace quillon::bench
