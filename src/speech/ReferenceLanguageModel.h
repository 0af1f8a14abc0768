#pragma once

#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace quillon::speech {

/// What the recogniser is taught so that spoken references come through: a small bigram model of
/// the ways a reference is said ("to first corinthians chapter thirteen verse four", "psalm
/// twenty three"), mixed into the general English model, and the book names the stock
/// dictionary cannot spell.
namespace referenceLanguageModel {

/// The model as ARPA text: the book names (ordinals spoken as words), "chapter", "verse",
/// "through" and the number words, with the words that lead into a reference ("to", "in").
std::string arpa();

/// Book names missing from the US English dictionary, with their phones in its phone set.
std::span<const std::pair<std::string_view, std::string_view>> pronunciations();

} // namespace referenceLanguageModel

} // namespace quillon::speech
