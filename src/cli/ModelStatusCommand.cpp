#include "cli/ModelStatusCommand.h"

#include "intelligence/SharedRouter.h"
#include "platform/Paths.h"
#include "platform/Preferences.h"

#include <nlohmann/json.hpp>

#include <ostream>

namespace quillon::cli {

void ModelStatusCommand::configure(CLI::App& command) {
    command.require_subcommand(1);
    command.add_subcommand("status", "Each backend kind's readiness and the reason when it cannot be used");
}

int ModelStatusCommand::execute(CommandContext& context) {
    platform::Preferences preferences(platform::preferencesFile());
    intelligence::LocalModelSettings settings = intelligence::LocalModelSettings::fromPreferences(preferences);
    auto router = intelligence::makeSharedRouter(preferences);
    orvane::IntelligenceAvailability availability = router->currentAvailability();

    nlohmann::ordered_json json = {
        {"endpoint", settings.endpoint},
        {"model", settings.model.empty() ? nlohmann::json() : nlohmann::json(settings.model)}};
    for (orvane::IntelligenceBackendKind kind : orvane::allIntelligenceBackendKinds) {
        const orvane::IntelligenceReadiness& readiness = availability.readiness(kind);
        std::string kindName(orvane::rawValue(kind));
        if (context.json) {
            json["backends"][kindName] = {
                {"ready", readiness.isReady()},
                {"message", readiness.isReady() ? nlohmann::json() : nlohmann::json(readiness.reason()->message())}};
            continue;
        }
        context.out << kindName << ": ";
        if (readiness.isReady())
            context.out << "ready\n";
        else
            context.out << "unavailable — " << readiness.reason()->message() << "\n";
    }
    if (context.json) {
        context.out << json.dump(2) << "\n";
        return 0;
    }
    context.out << "Model server: " << settings.endpoint
                << " (model: " << (settings.model.empty() ? "the first the server lists" : settings.model) << ")\n";
    return 0;
}

} // namespace quillon::cli
