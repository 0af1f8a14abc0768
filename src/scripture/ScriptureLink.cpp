#include "scripture/ScriptureLink.h"

namespace quillon::scripture {

std::string scriptureLink(const model::Uuid& scripture) {
    return std::string(scriptureLinkScheme) + scripture.text();
}

std::optional<model::Uuid> scriptureFromLink(std::string_view link) {
    if (!link.starts_with(scriptureLinkScheme))
        return std::nullopt;
    link.remove_prefix(scriptureLinkScheme.size());
    // Some editors hand links back with a trailing slash.
    if (link.ends_with('/'))
        link.remove_suffix(1);
    return model::Uuid::parse(link);
}

} // namespace quillon::scripture
