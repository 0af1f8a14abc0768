#pragma once

#include "app/CatalogueSearch.h"

#include <string>
#include <string_view>
#include <vector>

namespace quillon::app {

/// The settings window's search field: finds settings by their label, explanation, area and key.
class SettingsSearch {
public:
    SettingsSearch();
    /// The keys of the matching settings, best first; empty for an empty query.
    std::vector<std::string> keys(std::string_view query) const;
    /// "Showing results for …" when a word was corrected, else empty.
    std::string banner(std::string_view query) const;

private:
    CatalogueSearch m_search;
};

} // namespace quillon::app
