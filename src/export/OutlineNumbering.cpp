#include "export/OutlineNumbering.h"

#include <array>
#include <string_view>
#include <utility>

namespace quillon::exports {

std::string romanNumeral(int number) {
    static constexpr std::array<std::pair<int, std::string_view>, 13> values{{
        {1000, "M"},
        {900, "CM"},
        {500, "D"},
        {400, "CD"},
        {100, "C"},
        {90, "XC"},
        {50, "L"},
        {40, "XL"},
        {10, "X"},
        {9, "IX"},
        {5, "V"},
        {4, "IV"},
        {1, "I"},
    }};
    std::string numeral;
    for (const auto& [value, letters] : values) {
        while (number >= value) {
            numeral += letters;
            number -= value;
        }
    }
    return numeral;
}

std::string subTopicLetter(int number) {
    std::string letters;
    while (number > 0) {
        --number;
        letters.insert(letters.begin(), static_cast<char>('A' + number % 26));
        number /= 26;
    }
    return letters;
}

} // namespace quillon::exports
