#include "cli/OutputPath.h"

#include <nlohmann/json.hpp>

#include <ostream>

namespace quillon::cli {

void printOutputPath(CommandContext& context, const std::filesystem::path& file) {
    if (context.json)
        context.out << nlohmann::ordered_json{{"path", file.string()}}.dump(2) << "\n";
    else
        context.out << file.string() << "\n";
}

} // namespace quillon::cli
