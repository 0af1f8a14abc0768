#pragma once

#include <string>

namespace quillon::exports {

/// Greedy Roman numerals from M, CM, D, CD, C, XC, L, XL, X, IX, V, IV, I; empty for 0 or less.
std::string romanNumeral(int number);

/// The letter of the n-th sub-point counted from 1: A … Z, then AA, AB, … like spreadsheet columns.
std::string subTopicLetter(int number);

} // namespace quillon::exports
