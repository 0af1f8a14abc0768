#include "cli/Desk.h"

#include "cli/ExportVerses.h"

#include <unistd.h>

#include <iostream>

namespace quillon::cli {

namespace {

std::string_view kindName(app::DeleteType kind) {
    switch (kind) {
    case app::DeleteType::topic:
        return "topic";
    case app::DeleteType::subTopic:
        return "subtopic";
    case app::DeleteType::scripture:
        return "scripture";
    } // no default case, so the compiler can warn about missing cases
    return "item";
}

} // namespace

Desk::Desk(Library& library) : m_library(library), m_verses(exportVerseSource()) {
    m_controller = std::make_unique<app::SermonNotesViewModel>(library.manager(), library.preferences(), *m_verses);
    m_controller->addListener(*this);
}

Desk::~Desk() {
    m_controller->removeListener(*this);
}

app::OutlineLocation Desk::item(const model::SermonNote& sermon, std::string_view address,
                                std::optional<app::DeleteType> kind) const {
    const auto location = app::resolveOutlineAddress(sermon, address);
    if (!location)
        throw UserError("“" + sermon.title + "” has no outline item “" + std::string(address) +
                        "”. Run “quillon show " + sermon.id.text().substr(0, 8) + "” to see the numbers.");
    if (kind && location->type() != *kind)
        throw UserError("“" + std::string(address) + "” is a " + std::string(kindName(location->type())) + ", not a " +
                        std::string(kindName(*kind)) + ".");
    return *location;
}

int Desk::report(CommandContext& context, const nlohmann::ordered_json& extra) const {
    if (!m_last)
        return 1;
    const bool failed = m_last->kind == app::StatusMessage::Kind::alert;
    if (context.json) {
        nlohmann::ordered_json object{
            {"title", m_last->title}, {"detail", m_last->detail}, {"kind", failed ? "alert" : "toast"}};
        for (const auto& [key, value] : extra.items())
            object[key] = value;
        context.out << object.dump(2) << "\n";
    } else {
        std::ostream& stream = failed ? context.err : context.out;
        stream << m_last->title << "\n";
        if (!m_last->detail.empty())
            stream << m_last->detail << "\n";
    }
    return failed ? 1 : 0;
}

int Desk::deleteOutlineItem(CommandContext& context, const app::OutlineLocation& location, bool yes) {
    auto& controller = *m_controller;
    controller.requestDeletion(location.type(), location.itemId());
    const std::string question = controller.deletionMessage();
    if (!confirm(context, question, yes)) {
        controller.cancelDeletion();
        return 1;
    }
    controller.confirmDeletion();
    return report(context, {{"confirmation", question}});
}

nlohmann::ordered_json Desk::addedItem(const model::Uuid& sermonId, const model::Uuid& itemId) const {
    const model::SermonNote* sermon = m_controller->sermon(sermonId);
    return {{"id", itemId.text()}, {"number", sermon ? app::outlineNumber(*sermon, itemId) : std::string()}};
}

int DeskCommand::run(CommandContext& context, Library& library) {
    Desk desk(library);
    return runOnDesk(context, desk);
}

bool confirm(CommandContext& context, const std::string& question, bool yes) {
    // The question is printed even when answered in advance, so a log of the run says what was agreed to.
    if (!context.json)
        context.out << question << "\n";
    if (yes)
        return true;
    if (!isatty(STDIN_FILENO)) {
        if (context.json)
            context.err << question << "\n";
        context.err << "Nothing was changed: confirm with --yes, or run this in a terminal.\n";
        return false;
    }
    context.out << "Continue? [y/N] " << std::flush;
    std::string answer;
    std::getline(std::cin, answer);
    if (answer == "y" || answer == "Y" || answer == "yes" || answer == "Yes")
        return true;
    context.err << "Nothing was changed.\n";
    return false;
}

} // namespace quillon::cli
