#pragma once

#include "model/SermonTopic.h"

#include <array>
#include <optional>
#include <string_view>
#include <vector>

namespace quillon::store {

/// A fixed starting outline offered when a new sermon is created. The raw value is the case name.
enum class SermonTemplate { blank, expository, topical, textual, seriesKickoff };

inline constexpr std::array<SermonTemplate, 5> allSermonTemplates = {SermonTemplate::blank, SermonTemplate::expository,
                                                                     SermonTemplate::topical, SermonTemplate::textual,
                                                                     SermonTemplate::seriesKickoff};

/// "blank", "expository", "topical", "textual", "seriesKickoff".
std::string_view rawValue(SermonTemplate sermonTemplate);
/// The template whose raw value is exactly `text`; else nothing.
std::optional<SermonTemplate> sermonTemplateFromRawValue(std::string_view text);

/// The name shown in the new-sermon form ("Topical (Three Points)").
std::string_view displayName(SermonTemplate sermonTemplate);
/// The sentence shown under the name in the new-sermon form.
std::string_view templateDescription(SermonTemplate sermonTemplate);

/// The template's topics: fresh random identities, empty details, no scriptures, `sortOrder`
/// equal to each topic's and sub-topic's position from 0.
std::vector<model::SermonTopic> outline(SermonTemplate sermonTemplate);

} // namespace quillon::store
