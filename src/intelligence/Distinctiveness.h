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

/// Up to `count` content words repeated in `text` (at least twice, four letters or more, stop
/// words left out), most frequent first, ties in order of first use.
std::vector<std::string> repeatedWords(const std::string& text, std::size_t count);

} // namespace distinctiveness

} // namespace quillon::intelligence
