#include "screens/OutletHub.h"

#include <spdlog/spdlog.h>

#include <exception>

namespace quillon::screens {

void OutletHub::add(std::shared_ptr<ScreenOutlet> outlet) {
    if (outlet)
        m_outlets.push_back(std::move(outlet));
}

// An outlet that throws must not keep the passage from the others.
void OutletHub::show(const mesh::LiveScripture& scripture) {
    for (const auto& outlet : m_outlets) {
        try {
            outlet->show(scripture);
        } catch (const std::exception& failure) {
            spdlog::error("The {} could not show {}: {}", outlet->name(), scripture.reference, failure.what());
        }
    }
}

void OutletHub::clear() {
    for (const auto& outlet : m_outlets) {
        try {
            outlet->clear();
        } catch (const std::exception& failure) {
            spdlog::error("The {} could not clear: {}", outlet->name(), failure.what());
        }
    }
}

std::vector<OutletHub::Status> OutletHub::statuses() const {
    std::vector<Status> result;
    for (const auto& outlet : m_outlets)
        result.push_back({outlet->name(), outlet->state()});
    return result;
}

} // namespace quillon::screens
