#pragma once

#include <span>
#include <string_view>
#include <vector>

namespace quillon::scripture {

/// One entry of the topic table: a lower-case topic phrase and 8 or 10 references written with
/// full book names ("Psalm" for Psalms), in the order they are shown.
struct BibleTopic {
    std::string_view key;
    std::vector<std::string_view> references;
};

/// The fixed topic table behind searches such as "verses about grace", in table order.
const std::vector<BibleTopic>& bibleTopics();
/// The references of the topic whose key is exactly `key`; empty when there is no such topic.
std::span<const std::string_view> topicReferences(std::string_view key);

} // namespace quillon::scripture
