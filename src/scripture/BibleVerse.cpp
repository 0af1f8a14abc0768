#include "scripture/BibleVerse.h"

#include <charconv>

namespace quillon::scripture {

std::string verseKey(std::string_view bookAbbreviation, int chapter, int verse) {
    // Built by hand: this runs once per verse while loading a version.
    char digits[24];
    std::string key;
    key.reserve(bookAbbreviation.size() + 9);
    key.append(bookAbbreviation);
    key.push_back(' ');
    auto end = std::to_chars(digits, digits + sizeof digits, chapter).ptr;
    key.append(digits, end);
    key.push_back(':');
    end = std::to_chars(digits, digits + sizeof digits, verse).ptr;
    key.append(digits, end);
    return key;
}

nlohmann::ordered_json encodeBibleVerse(const BibleVerse& verse) {
    nlohmann::ordered_json json = nlohmann::ordered_json::object();
    json["bookAbbreviation"] = verse.bookAbbreviation;
    json["chapter"] = verse.chapter;
    json["verse"] = verse.verse;
    json["text"] = verse.text;
    return json;
}

} // namespace quillon::scripture
