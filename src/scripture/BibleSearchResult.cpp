#include "scripture/BibleSearchResult.h"

namespace quillon::scripture {

nlohmann::ordered_json encodeBibleSearchResult(const BibleSearchResult& result) {
    nlohmann::ordered_json json = nlohmann::ordered_json::object();
    json["id"] = result.id;
    json["version"] = std::string(model::rawValue(result.version));
    json["verse"] = encodeBibleVerse(result.verse);
    return json;
}

} // namespace quillon::scripture
