#include "cli/TemplatesCommand.h"

#include "store/SermonTemplate.h"

#include <nlohmann/json.hpp>

#include <ostream>

namespace quillon::cli {

std::string templateList() {
    std::string list;
    for (auto sermonTemplate : store::allSermonTemplates)
        list += std::string(store::rawValue(sermonTemplate)) + ": " + std::string(store::displayName(sermonTemplate)) +
                " — " + std::string(store::templateDescription(sermonTemplate)) + "\n";
    return list;
}

int TemplatesCommand::execute(CommandContext& context) {
    if (!context.json) {
        context.out << templateList();
        return 0;
    }
    auto list = nlohmann::ordered_json::array();
    for (auto sermonTemplate : store::allSermonTemplates)
        list.push_back({{"template", store::rawValue(sermonTemplate)},
                        {"name", store::displayName(sermonTemplate)},
                        {"description", store::templateDescription(sermonTemplate)}});
    context.out << list.dump(2) << "\n";
    return 0;
}

} // namespace quillon::cli
