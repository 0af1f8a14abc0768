#include "cli/TextInput.h"

#include "cli/Command.h"

#include <nlohmann/json.hpp>

#include <cctype>

namespace quillon::cli {

void requireText(std::string_view text, std::string_view what) {
    try {
        // The JSON writer is the one that would refuse the text later, so let it judge now.
        (void)nlohmann::json(std::string(text)).dump();
    } catch (const nlohmann::json::type_error&) {
        throw UserError("The " + std::string(what) + " is not valid UTF-8 text.");
    }
}

std::string_view trimmed(std::string_view text) {
    auto isSpace = [](char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; };
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

model::DateTime parseDay(std::string_view text) {
    auto wrong = [&] { return UserError("The date “" + std::string(text) + "” is not a day of the form YYYY-MM-DD."); };
    if (text.size() != 10 || text[4] != '-' || text[7] != '-')
        throw wrong();
    auto number = [&](std::size_t from, std::size_t length) {
        int value = 0;
        for (std::size_t i = from; i < from + length; ++i) {
            if (!std::isdigit(static_cast<unsigned char>(text[i])))
                throw wrong();
            value = value * 10 + (text[i] - '0');
        }
        return value;
    };
    std::chrono::year_month_day day{std::chrono::year{number(0, 4)}, std::chrono::month{unsigned(number(5, 2))},
                                    std::chrono::day{unsigned(number(8, 2))}};
    if (!day.ok())
        throw wrong();
    return std::chrono::sys_days(day);
}

} // namespace quillon::cli
