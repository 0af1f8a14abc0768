#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orvane::SentenceTokenizer {

/// The sentences of a UTF-8 text in order, each trimmed of white space and line breaks; empty ones are dropped.
std::vector<std::string> sentences(std::string_view text);

} // namespace orvane::SentenceTokenizer
