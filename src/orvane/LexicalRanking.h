#pragma once

#include "orvane/InverseDocumentFrequency.h"

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace orvane::LexicalRanking {

/// The lexical terms of a text: its distinct tokens of at least two characters, stop words removed, in order of
/// first appearance.
std::vector<std::string> terms(std::string_view text);

/// The weighted share of the query's distinct terms that the document (title twice, then text) holds, in [0, 1].
/// How often a term occurs and how long the document is play no part: documents are short outline items.
/// Without a weighting every query term weighs the same; with one, a term it does not know weighs `unseen`.
double score(std::string_view query, std::string_view title, std::string_view text,
             const InverseDocumentFrequency* weighting, double unseen);

/// The same score over terms tokenised beforehand (`queryTerms` distinct), as an index that keeps each document's
/// terms uses it.
double score(const std::vector<std::string>& queryTerms, const std::unordered_set<std::string>& documentTerms,
             const InverseDocumentFrequency* weighting, double unseen);

} // namespace orvane::LexicalRanking
