#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// Offers a list to a model by number and reads its numbered choices back.
class NumberedChoice {
public:
    /// One pick: the number the model chose and its short reason (may be empty).
    struct Choice {
        int index = 0;
        std::string note;
        bool operator==(const Choice&) const = default;
    };

    /// "0. first\n1. second": numbered from 0, so the number printed is the position the parser
    /// expects back. No trailing line feed.
    static std::string format(const std::vector<std::string>& options);

    /// Reads lines "<number> || <note>" in the model's order. A line without digits is skipped;
    /// without "||" its note is empty; unless `allowRepeats`, the first line for a number wins.
    /// Whether a number lies among the offered positions is the caller's business.
    static std::vector<Choice> parse(std::string_view reply, int optionCount, bool allowRepeats);
};

} // namespace orvane
