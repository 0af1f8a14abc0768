#include "cli/SubtopicCommand.h"

namespace quillon::cli {

void SubtopicCommand::configure(CLI::App& command) {
    command.require_subcommand(1);
    m_add = command.add_subcommand("add", "Add a subtopic after the last one of a topic");
    m_add->add_option("ID", m_sermon, "The sermon's id (or a unique beginning of it)")->required();
    m_add->add_option("TOPIC", m_item, "The topic's number in show (2) or its id")->required();
    m_add->add_option("TITLE", m_title, "The subtopic's title")->required();

    m_rename = command.add_subcommand("rename", "Rename a subtopic");
    m_rename->add_option("ID", m_sermon, "The sermon's id (or a unique beginning of it)")->required();
    m_rename->add_option("SUBTOPIC", m_item, "The subtopic's number in show (2.1) or its id")->required();
    m_rename->add_option("TITLE", m_title, "The new title")->required();

    m_move = command.add_subcommand("move", "Move a subtopic within its topic or to another topic");
    m_move->add_option("ID", m_sermon, "The sermon's id (or a unique beginning of it)")->required();
    m_move->add_option("SUBTOPIC", m_item, "The subtopic's number in show (2.1) or its id")->required();
    m_move->add_option("--to", m_to, "Its new place, 1 for first")->required()->check(CLI::PositiveNumber);
    m_move->add_option("--topic", m_topic, "The topic to move it under (default: its own)");

    m_delete = command.add_subcommand("delete", "Delete a subtopic with its scriptures");
    m_delete->add_option("ID", m_sermon, "The sermon's id (or a unique beginning of it)")->required();
    m_delete->add_option("SUBTOPIC", m_item, "The subtopic's number in show (2.1) or its id")->required();
    m_delete->add_flag("--yes", m_yes, "Delete without asking");
}

int SubtopicCommand::runOnDesk(CommandContext& context, Desk& desk) {
    auto& controller = desk.controller();
    const model::SermonNote& sermon = desk.sermon(m_sermon);
    const model::Uuid sermonId = sermon.id;
    if (m_add->parsed()) {
        const auto topic = desk.item(sermon, m_item, app::DeleteType::topic);
        const auto added = controller.addSubTopic(sermonId, topic.topicId, m_title);
        return desk.report(context, added ? desk.addedItem(sermonId, *added) : nlohmann::ordered_json::object());
    }
    const auto subTopic = desk.item(sermon, m_item, app::DeleteType::subTopic);
    if (m_rename->parsed()) {
        controller.renameOutlineItem(sermonId, *subTopic.subTopicId, m_title);
    } else if (m_move->parsed()) {
        std::optional<model::Uuid> topic;
        if (m_topic)
            topic = desk.item(sermon, *m_topic, app::DeleteType::topic).topicId;
        controller.moveSubTopic(sermonId, *subTopic.subTopicId, m_to - 1, topic);
    } else {
        return desk.deleteOutlineItem(context, subTopic, m_yes);
    }
    return desk.report(context);
}

} // namespace quillon::cli
