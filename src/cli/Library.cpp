#include "cli/Library.h"

#include "platform/Paths.h"

#include <algorithm>
#include <cctype>

namespace quillon::cli {

namespace {

std::string upperCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return result;
}

} // namespace

Library::Library(const CommandContext& context)
    : m_preferences(std::make_unique<platform::Preferences>(platform::preferencesFile())) {
    m_storage = context.library ? std::make_unique<store::SermonStorage>(store::SermonStorage::atRoot(*context.library))
                                : std::make_unique<store::SermonStorage>(*m_preferences);
    m_manager = std::make_unique<store::SermonNotesManager>(*m_storage, *m_preferences);
    m_versions = std::make_unique<store::SermonVersionHistory>([storage = m_storage.get()] { return storage->root(); },
                                                               *m_preferences);
    m_manager->setVersionHistoryHook(m_versions.get());
    m_manager->load();
    m_manager->seedSampleSermons();
}

const model::SermonNote& Library::find(std::string_view idText) const {
    constexpr std::size_t shortestPrefix = 4;
    const std::string wanted = upperCase(idText);
    const model::SermonNote* match = nullptr;
    if (wanted.size() >= shortestPrefix) {
        for (const auto& sermon : m_manager->sermons()) {
            std::string id = sermon.id.text();
            if (id == wanted)
                return sermon;
            if (id.starts_with(wanted)) {
                if (match)
                    throw UserError("The id “" + std::string(idText) + "” matches more than one sermon.");
                match = &sermon;
            }
        }
    }
    if (!match)
        throw UserError("No sermon has the id “" + std::string(idText) + "”.");
    return *match;
}

} // namespace quillon::cli
