#include "orvane/NumberedChoice.h"

#include "orvane/AsciiText.h"

#include <charconv>
#include <set>

namespace orvane {

namespace {

using ascii::trimmed;

} // namespace

std::string NumberedChoice::format(const std::vector<std::string>& options) {
    std::string text;
    for (std::size_t position = 0; position < options.size(); ++position) {
        if (position > 0)
            text += '\n';
        text += std::to_string(position);
        text += ". ";
        text += options[position];
    }
    return text;
}

std::vector<NumberedChoice::Choice> NumberedChoice::parse(std::string_view reply, int /*optionCount*/,
                                                          bool allowRepeats) {
    std::vector<Choice> choices;
    std::set<int> taken;
    std::size_t start = 0;
    while (start <= reply.size()) {
        std::size_t end = reply.find('\n', start);
        std::string_view line =
            reply.substr(start, end == std::string_view::npos ? std::string_view::npos : end - start);
        start = end == std::string_view::npos ? reply.size() + 1 : end + 1;
        if (line.empty())
            continue;

        std::size_t separator = line.find("||");
        std::string_view head = trimmed(line.substr(0, separator));
        std::size_t digits = head.find_first_of("0123456789");
        if (digits == std::string_view::npos)
            continue;
        std::size_t digitsEnd = head.find_first_not_of("0123456789", digits);
        std::string_view number =
            head.substr(digits, digitsEnd == std::string_view::npos ? std::string_view::npos : digitsEnd - digits);
        int index = 0;
        auto [end_, error] = std::from_chars(number.data(), number.data() + number.size(), index);
        if (error != std::errc() || end_ != number.data() + number.size())
            continue; // too large for an int
        if (!allowRepeats && !taken.insert(index).second)
            continue;
        std::string note;
        if (separator != std::string_view::npos)
            note = std::string(trimmed(line.substr(separator + 2)));
        choices.push_back({index, std::move(note)});
    }
    return choices;
}

} // namespace orvane
