#pragma once

#include <cstddef>

namespace quillon::intelligence {

/// The sizes the generation features ask for and enforce, kept together so the instructions, the
/// reply checks and the fallbacks agree.
namespace generationLimits {
inline constexpr std::size_t tags = 5;
inline constexpr std::size_t highlights = 5;
inline constexpr std::size_t titles = 3;
/// User-perceived characters.
inline constexpr std::size_t titleCharacters = 60;
inline constexpr std::size_t summaryCharacters = 280;
inline constexpr std::size_t seriesProposals = 3;
/// Distinctive sentences offered for publishing copy and used as pull quotes.
inline constexpr std::size_t distinctiveSentences = 5;
inline constexpr std::size_t pullQuotes = 3;
} // namespace generationLimits

} // namespace quillon::intelligence
