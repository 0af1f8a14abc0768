#include "cli/TopicCommand.h"

namespace quillon::cli {

void TopicCommand::configure(CLI::App& command) {
    command.require_subcommand(1);
    m_add = command.add_subcommand("add", "Add a topic after the last one");
    m_add->add_option("ID", m_sermon, "The sermon's id (or a unique beginning of it)")->required();
    m_add->add_option("TITLE", m_title, "The topic's title")->required();

    m_rename = command.add_subcommand("rename", "Rename a topic");
    m_rename->add_option("ID", m_sermon, "The sermon's id (or a unique beginning of it)")->required();
    m_rename->add_option("TOPIC", m_item, "The topic's number in show (2) or its id")->required();
    m_rename->add_option("TITLE", m_title, "The new title")->required();

    m_move = command.add_subcommand("move", "Move a topic to another place in the outline");
    m_move->add_option("ID", m_sermon, "The sermon's id (or a unique beginning of it)")->required();
    m_move->add_option("TOPIC", m_item, "The topic's number in show (2) or its id")->required();
    m_move->add_option("--to", m_to, "Its new place, 1 for first")->required()->check(CLI::PositiveNumber);

    m_delete = command.add_subcommand("delete", "Delete a topic with its subtopics and scriptures");
    m_delete->add_option("ID", m_sermon, "The sermon's id (or a unique beginning of it)")->required();
    m_delete->add_option("TOPIC", m_item, "The topic's number in show (2) or its id")->required();
    m_delete->add_flag("--yes", m_yes, "Delete without asking");
}

int TopicCommand::runOnDesk(CommandContext& context, Desk& desk) {
    auto& controller = desk.controller();
    const model::Uuid sermonId = desk.sermon(m_sermon).id;
    if (m_add->parsed()) {
        const auto added = controller.addTopic(sermonId, m_title);
        return desk.report(context, added ? desk.addedItem(sermonId, *added) : nlohmann::ordered_json::object());
    }
    const auto topic = desk.item(desk.sermon(m_sermon), m_item, app::DeleteType::topic);
    if (m_rename->parsed())
        controller.renameOutlineItem(sermonId, topic.topicId, m_title);
    else if (m_move->parsed())
        controller.moveTopic(sermonId, topic.topicId, m_to - 1);
    else
        return desk.deleteOutlineItem(context, topic, m_yes);
    return desk.report(context);
}

} // namespace quillon::cli
