#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace quillon::intelligence {

/// Model-free measures of what stands out in a sermon, for the fallbacks.
namespace distinctiveness {

/// Positions of the `count` sentences whose words are rarest across the others (words shared by
/// every sentence weigh nothing; very short sentences are passed over), returned in text order.
std::vector<std::size_t> sentences(const std::vector<std::string>& sentences, std::size_t count);

/// Up to `count` words a sermon is about: content words of four letters or more, counted by stem
/// ("forgive", "forgiven", "forgiveness" together) and shown in their most used form. A word in a
/// heading counts three times; a word must count at least twice. Stop words, the words every
/// sermon uses ("god", "will", "things") and words that would fit any sermon ("good", "life",
/// "people") are left out. Ranked by count, then by how many sentences use it, then by first use.
std::vector<std::string> themeWords(const std::vector<std::string>& headings, const std::string& body,
                                    std::size_t count);

} // namespace distinctiveness

} // namespace quillon::intelligence
