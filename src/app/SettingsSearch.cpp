#include "app/SettingsSearch.h"

#include "app/SettingsCatalogue.h"

namespace quillon::app {

namespace {

std::vector<orvane::IndexedDocument> settingDocuments() {
    std::vector<orvane::IndexedDocument> documents;
    for (const SettingDescription& setting : SettingsCatalogue::all()) {
        // The key's words ("undoCoalesceInterval" is one) are found too, for preachers who read the file.
        std::string key = setting.key;
        for (char& c : key)
            if (c == '.')
                c = ' ';
        documents.push_back(
            {setting.key, setting.label, std::string(setting.group) + ". " + setting.explanation + " " + key});
    }
    return documents;
}

} // namespace

SettingsSearch::SettingsSearch() : m_search(settingDocuments()) {}

std::vector<std::string> SettingsSearch::keys(std::string_view query) const {
    std::vector<std::string> keys;
    for (const orvane::SearchHit& hit : m_search.search(query, static_cast<int>(SettingsCatalogue::all().size())).hits)
        keys.push_back(hit.documentID);
    return keys;
}

std::string SettingsSearch::banner(std::string_view query) const {
    return orvane::QueryCorrection::bannerText(m_search.search(query, 1).corrections).value_or("");
}

} // namespace quillon::app
