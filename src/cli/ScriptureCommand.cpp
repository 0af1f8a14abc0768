#include "cli/ScriptureCommand.h"

#include "model/BibleVersion.h"

namespace quillon::cli {

namespace {

std::vector<std::string> versionCodes() {
    std::vector<std::string> codes;
    for (auto version : model::allBibleVersions)
        codes.emplace_back(model::rawValue(version));
    return codes;
}

} // namespace

void ScriptureCommand::configure(CLI::App& command) {
    command.require_subcommand(1);
    const auto sermonOption = [this](CLI::App* sub) {
        sub->add_option("ID", m_sermon, "The sermon's id (or a unique beginning of it)")->required();
    };
    const auto scriptureOption = [this](CLI::App* sub) {
        sub->add_option("SCRIPTURE", m_item, "The scripture's number in show (2.1.3) or its id")->required();
    };

    m_add = command.add_subcommand("add", "Attach a passage, typed as a reference, to a subtopic");
    sermonOption(m_add);
    m_add->add_option("SUBTOPIC", m_item, "The subtopic's number in show (2.1) or its id")->required();
    m_add->add_option("REFERENCE", m_reference, "The reference as you would type it (\"rom 8 28-30\")")->required();
    m_add->add_option("--version", m_version, "The Bible version to quote")->check(CLI::IsMember(versionCodes()));

    m_move = command.add_subcommand("move", "Move a scripture within its subtopic or to another subtopic");
    sermonOption(m_move);
    scriptureOption(m_move);
    m_move->add_option("--to", m_to, "Its new place, 1 for first")->required()->check(CLI::PositiveNumber);
    m_move->add_option("--subtopic", m_subtopic, "The subtopic to move it under (default: its own)");

    m_delete = command.add_subcommand("delete", "Remove a scripture from its subtopic");
    sermonOption(m_delete);
    scriptureOption(m_delete);
    m_delete->add_flag("--yes", m_yes, "Delete without asking");

    m_setVersion = command.add_subcommand("version", "Quote a scripture from another Bible version");
    sermonOption(m_setVersion);
    scriptureOption(m_setVersion);
    m_setVersion->add_option("VERSION", m_version, "The Bible version")
        ->required()
        ->check(CLI::IsMember(versionCodes()));

    m_highlight = command.add_subcommand("highlight", "Highlight a word of the passage, or clear its highlight");
    sermonOption(m_highlight);
    scriptureOption(m_highlight);
    m_highlight->add_option("WORD", m_word, "The word's position in the passage, from 0")
        ->required()
        ->check(CLI::NonNegativeNumber);
    m_highlight->add_option("COLOUR", m_colour, "The highlighter colour (none clears the highlight)");

    m_break = command.add_subcommand("break", "Show a line break after a word of the passage");
    sermonOption(m_break);
    scriptureOption(m_break);
    m_break->add_option("WORD", m_word, "The word's position in the passage, from 0")
        ->required()
        ->check(CLI::NonNegativeNumber);
    m_break->add_flag("--off", m_off, "Remove the line break instead");
}

int ScriptureCommand::runOnDesk(CommandContext& context, Desk& desk) {
    auto& controller = desk.controller();
    const model::SermonNote& sermon = desk.sermon(m_sermon);
    const model::Uuid sermonId = sermon.id;
    const auto version = m_version ? model::bibleVersionFromRawValue(*m_version) : std::nullopt;
    if (m_add->parsed()) {
        const auto subTopic = desk.item(sermon, m_item, app::DeleteType::subTopic);
        const auto added = controller.addScripture(sermonId, *subTopic.subTopicId, m_reference, version);
        return desk.report(context, added ? desk.addedItem(sermonId, *added) : nlohmann::ordered_json::object());
    }
    const auto scripture = desk.item(sermon, m_item, app::DeleteType::scripture);
    const model::Uuid scriptureId = *scripture.scriptureId;
    if (m_delete->parsed())
        return desk.deleteOutlineItem(context, scripture, m_yes);
    if (m_move->parsed()) {
        std::optional<model::Uuid> subTopic;
        if (m_subtopic)
            subTopic = desk.item(sermon, *m_subtopic, app::DeleteType::subTopic).subTopicId;
        controller.moveScripture(sermonId, scriptureId, m_to - 1, subTopic);
    } else if (m_setVersion->parsed()) {
        controller.setScriptureVersion(sermonId, scriptureId, version.value_or(model::BibleVersion::kjv));
    } else if (m_highlight->parsed()) {
        controller.setWordHighlight(sermonId, scriptureId, m_word, m_colour);
    } else {
        controller.setLineBreak(sermonId, scriptureId, m_word, !m_off);
    }
    return desk.report(context);
}

} // namespace quillon::cli
