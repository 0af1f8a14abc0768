#include "orvane/TextDistance.h"

#include "orvane/UnicodeText.h"

#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <unordered_map>

namespace orvane {
namespace {

// Optimal string alignment over any two random-access sequences of comparable elements. Three rolling rows keep
// memory linear however long the texts are.
template <typename Sequence>
std::size_t optimalStringAlignment(const Sequence& a, const Sequence& b) {
    const std::size_t m = a.size();
    const std::size_t n = b.size();
    if (m == 0)
        return n;
    if (n == 0)
        return m;
    std::vector<std::size_t> beforePrevious(n + 1), previous(n + 1), current(n + 1);
    for (std::size_t j = 0; j <= n; ++j)
        previous[j] = j;
    for (std::size_t i = 1; i <= m; ++i) {
        current[0] = i;
        for (std::size_t j = 1; j <= n; ++j) {
            const std::size_t cost = a[i - 1] == b[j - 1] ? 0 : 1;
            std::size_t best = std::min({previous[j] + 1, current[j - 1] + 1, previous[j - 1] + cost});
            if (i >= 2 && j >= 2 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                best = std::min(best, beforePrevious[j - 2] + cost);
            current[j] = best;
        }
        std::swap(beforePrevious, previous);
        std::swap(previous, current);
    }
    return previous[n];
}

bool isPlainAscii(std::string_view text) {
    // CR LF counts as one character, so such text takes the general path.
    return UnicodeText::isAscii(text) && text.find('\r') == std::string_view::npos;
}

// Canonically equivalent spellings ("é" precomposed or as "e" and a combining accent) are the same character.
std::string composed(std::string_view text) {
    const std::string valid = UnicodeText::repaired(text);
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* nfc = icu::Normalizer2::getNFCInstance(status);
    if (U_FAILURE(status))
        return valid;
    const auto unicode = icu::UnicodeString::fromUTF8(valid);
    const icu::UnicodeString normal = nfc->normalize(unicode, status);
    if (U_FAILURE(status))
        return valid;
    std::string result;
    normal.toUTF8String(result);
    return result;
}

bool isAsciiAlphanumeric(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

} // namespace

std::size_t TextDistance::distance(std::string_view a, std::string_view b) {
    if (isPlainAscii(a) && isPlainAscii(b))
        return optimalStringAlignment(a, b);
    // Number each distinct character so the table compares integers.
    std::unordered_map<std::string, int> numbers;
    auto numbered = [&](std::string_view text) {
        std::vector<int> result;
        for (auto& character : UnicodeText::characters(composed(text)))
            result.push_back(numbers.try_emplace(std::move(character), static_cast<int>(numbers.size())).first->second);
        return result;
    };
    const std::vector<int> first = numbered(a);
    const std::vector<int> second = numbered(b);
    return optimalStringAlignment(first, second);
}

double TextDistance::similarity(std::string_view a, std::string_view b) {
    const std::size_t longest = std::max(UnicodeText::characterCount(a), UnicodeText::characterCount(b));
    if (longest == 0)
        return 1.0;
    return 1.0 - static_cast<double>(distance(a, b)) / static_cast<double>(longest);
}

std::string TextDistance::normalised(std::string_view text) {
    std::string result;
    if (UnicodeText::isAscii(text)) {
        bool inRun = false;
        for (char c : text) {
            if (isAsciiAlphanumeric(c)) {
                if (!inRun && !result.empty())
                    result.push_back(' ');
                result.push_back(c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c);
                inRun = true;
            } else {
                inRun = false;
            }
        }
        return result;
    }
    bool inRun = false;
    for (const std::string& character : UnicodeText::characters(UnicodeText::folded(text))) {
        if (UnicodeText::isLetter(character) || UnicodeText::isNumber(character)) {
            if (!inRun && !result.empty())
                result.push_back(' ');
            result += character;
            inRun = true;
        } else {
            inRun = false;
        }
    }
    return result;
}

std::optional<std::string> TextDistance::closestMatch(std::string_view query,
                                                      const std::vector<std::string>& candidates,
                                                      double minimumSimilarity) {
    const std::string wanted = normalised(query);
    if (wanted.empty())
        return std::nullopt;
    const std::string* best = nullptr;
    double bestSimilarity = 0.0;
    for (const std::string& candidate : candidates) {
        const std::string normal = normalised(candidate);
        if (normal == wanted)
            return candidate;
        const double score = similarity(wanted, normal);
        if (score >= minimumSimilarity && (best == nullptr || score > bestSimilarity)) {
            best = &candidate;
            bestSimilarity = score;
        }
    }
    if (best == nullptr)
        return std::nullopt;
    return *best;
}

} // namespace orvane
