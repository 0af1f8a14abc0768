#include "screens/OpenLpBibleChoice.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace quillon::screens {

namespace {

struct Version {
    std::string_view code;
    /// Lower-case spelled-out names, longest first.
    std::array<std::string_view, 2> names;
    std::array<std::string_view, 3> kin;
};

// Ordered so a name that contains another's is tried first: NKJV before KJV.
constexpr std::array<Version, 7> versions = {{
    {"NKJV", {"new king james", ""}, {"KJV", "ASV", "NLT"}},
    {"KJV", {"king james", "authorized version"}, {"NKJV", "ASV", "YLT"}},
    {"ASV", {"american standard", ""}, {"KJV", "AMP", "NKJV"}},
    {"YLT", {"young's literal", "youngs literal"}, {"LSV", "KJV", "ASV"}},
    {"LSV", {"literal standard", ""}, {"YLT", "ASV", "KJV"}},
    {"NLT", {"new living", ""}, {"AMP", "NKJV", "KJV"}},
    {"AMP", {"amplified", ""}, {"ASV", "NKJV", "NLT"}},
}};

std::string lower(std::string_view text) {
    std::string result(text);
    for (auto& c : result)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return result;
}

/// The name's words, lower case, split at anything that is not a letter, digit or apostrophe.
std::vector<std::string> words(std::string_view name) {
    std::vector<std::string> result(1);
    for (char c : lower(name)) {
        if (std::isalnum(static_cast<unsigned char>(c)) || c == '\'')
            result.back() += c;
        else if (!result.back().empty())
            result.emplace_back();
    }
    if (result.back().empty())
        result.pop_back();
    return result;
}

/// Which of Quillon's versions a Bible's name stands for, if any.
std::optional<std::string_view> identify(std::string_view name) {
    const auto nameWords = words(name);
    const std::string spelled = lower(name);
    for (const auto& version : versions) {
        if (std::find(nameWords.begin(), nameWords.end(), lower(version.code)) != nameWords.end())
            return version.code;
        for (auto written : version.names)
            if (!written.empty() && spelled.find(written) != std::string::npos)
                return version.code;
    }
    return std::nullopt;
}

std::optional<std::string> bibleThatIs(std::string_view code, const std::vector<std::string>& bibles) {
    for (const auto& bible : bibles)
        if (identify(bible) == code)
            return bible;
    return std::nullopt;
}

} // namespace

std::optional<std::string> closestOpenLpBible(std::string_view announcedVersion,
                                              const std::vector<std::string>& bibles) {
    const std::string wanted = lower(announcedVersion);
    auto version = std::find_if(versions.begin(), versions.end(),
                                [&](const Version& candidate) { return lower(candidate.code) == wanted; });
    if (version == versions.end()) {
        // A version Quillon does not know by kin can still be matched by its code.
        for (const auto& bible : bibles) {
            const auto nameWords = words(bible);
            if (!wanted.empty() && std::find(nameWords.begin(), nameWords.end(), wanted) != nameWords.end())
                return bible;
        }
        return std::nullopt;
    }
    if (auto same = bibleThatIs(version->code, bibles))
        return same;
    for (auto kin : version->kin)
        if (auto near = bibleThatIs(kin, bibles))
            return near;
    return std::nullopt;
}

} // namespace quillon::screens
