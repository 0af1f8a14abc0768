#include "app/OutlineAddress.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <vector>

namespace quillon::app {

namespace {

constexpr std::size_t shortestIdPrefix = 4;

/// "2.1.3" as {2, 1, 3}; nothing unless it is one to three positive numbers joined by dots.
std::optional<std::vector<std::size_t>> numbers(std::string_view address) {
    std::vector<std::size_t> parts;
    while (true) {
        const auto dot = address.find('.');
        const std::string_view piece = address.substr(0, dot);
        std::size_t value = 0;
        const auto [end, error] = std::from_chars(piece.data(), piece.data() + piece.size(), value);
        if (piece.empty() || error != std::errc() || end != piece.data() + piece.size() || value == 0)
            return std::nullopt;
        parts.push_back(value);
        if (dot == std::string_view::npos)
            break;
        address.remove_prefix(dot + 1);
    }
    if (parts.size() > 3)
        return std::nullopt;
    return parts;
}

std::optional<OutlineLocation> byNumbers(const model::SermonNote& sermon, const std::vector<std::size_t>& parts) {
    if (parts[0] > sermon.topics.size())
        return std::nullopt;
    const auto& topic = sermon.topics[parts[0] - 1];
    OutlineLocation location{topic.id, std::nullopt, std::nullopt};
    if (parts.size() == 1)
        return location;
    if (parts[1] > topic.subTopics.size())
        return std::nullopt;
    const auto& subTopic = topic.subTopics[parts[1] - 1];
    location.subTopicId = subTopic.id;
    if (parts.size() == 2)
        return location;
    if (parts[2] > subTopic.scriptures.size())
        return std::nullopt;
    location.scriptureId = subTopic.scriptures[parts[2] - 1].id;
    return location;
}

std::optional<OutlineLocation> byIdPrefix(const model::SermonNote& sermon, std::string_view address) {
    if (address.size() < shortestIdPrefix)
        return std::nullopt;
    std::string wanted(address);
    std::transform(wanted.begin(), wanted.end(), wanted.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    std::optional<OutlineLocation> match;
    int matches = 0;
    auto consider = [&](const model::Uuid& id, const OutlineLocation& location) {
        if (id.text().starts_with(wanted)) {
            match = location;
            ++matches;
        }
    };
    for (const auto& topic : sermon.topics) {
        consider(topic.id, {topic.id, std::nullopt, std::nullopt});
        for (const auto& subTopic : topic.subTopics) {
            consider(subTopic.id, {topic.id, subTopic.id, std::nullopt});
            for (const auto& scripture : subTopic.scriptures)
                consider(scripture.id, {topic.id, subTopic.id, scripture.id});
        }
    }
    return matches == 1 ? match : std::nullopt;
}

} // namespace

std::optional<OutlineLocation> resolveOutlineAddress(const model::SermonNote& sermon, std::string_view address) {
    if (auto parts = numbers(address)) {
        if (auto found = byNumbers(sermon, *parts))
            return found;
        // An id may begin with digits only ("4729…"); a number with dots cannot be one.
        if (parts->size() > 1)
            return std::nullopt;
    }
    return byIdPrefix(sermon, address);
}

std::string outlineNumber(const model::SermonNote& sermon, const model::Uuid& itemId) {
    for (std::size_t t = 0; t < sermon.topics.size(); ++t) {
        const auto& topic = sermon.topics[t];
        const std::string topicNumber = std::to_string(t + 1);
        if (topic.id == itemId)
            return topicNumber;
        for (std::size_t s = 0; s < topic.subTopics.size(); ++s) {
            const auto& subTopic = topic.subTopics[s];
            const std::string subNumber = topicNumber + "." + std::to_string(s + 1);
            if (subTopic.id == itemId)
                return subNumber;
            for (std::size_t p = 0; p < subTopic.scriptures.size(); ++p)
                if (subTopic.scriptures[p].id == itemId)
                    return subNumber + "." + std::to_string(p + 1);
        }
    }
    return {};
}

} // namespace quillon::app
