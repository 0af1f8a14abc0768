#include "cli/ShowCommand.h"

#include "model/SermonCoding.h"
#include "platform/AtomicFile.h"

#include <ostream>

namespace quillon::cli {

namespace {

void printIndented(std::ostream& out, const std::string& text, const std::string& indent) {
    std::size_t start = 0;
    while (start <= text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos)
            end = text.size();
        out << indent << std::string_view(text).substr(start, end - start) << "\n";
        start = end + 1;
    }
}

std::string passage(const model::SermonScripture& scripture) {
    std::string text =
        scripture.bookName + " " + std::to_string(scripture.chapter) + ":" + std::to_string(scripture.startVerse);
    if (scripture.endVerse != scripture.startVerse)
        text += "-" + std::to_string(scripture.endVerse);
    return text + " (" + std::string(model::rawValue(scripture.version)) + ")";
}

void printSermon(std::ostream& out, const model::SermonNote& sermon) {
    auto field = [&](const char* label, const std::string& value) { out << label << value << "\n"; };
    out << sermon.title << "\n";
    field("ID:        ", sermon.id.text());
    field("Date:      ", model::formatDateTime(sermon.date).substr(0, 10));
    field("Speaker:   ", sermon.speaker);
    if (sermon.series)
        field("Series:    ", *sermon.series);
    if (sermon.venue)
        field("Venue:     ", *sermon.venue);
    if (!sermon.tags.empty()) {
        std::string tags;
        for (const auto& tag : sermon.tags)
            tags += (tags.empty() ? "" : ", ") + tag;
        field("Tags:      ", tags);
    }
    field("Created:   ", model::formatDateTime(sermon.createdAt));
    field("Modified:  ", model::formatDateTime(sermon.modifiedAt));

    int topicNumber = 0;
    for (const auto& topic : sermon.topics) {
        out << "\n" << ++topicNumber << ". " << topic.title << "\n";
        if (!topic.details.empty())
            printIndented(out, topic.details, "   ");
        int subNumber = 0;
        for (const auto& subTopic : topic.subTopics) {
            out << "   " << topicNumber << "." << ++subNumber << " " << subTopic.title << "\n";
            if (!subTopic.details.empty())
                printIndented(out, subTopic.details, "       ");
            int scriptureNumber = 0;
            for (const auto& scripture : subTopic.scriptures)
                out << "       " << topicNumber << "." << subNumber << "." << ++scriptureNumber << " "
                    << passage(scripture) << "\n";
        }
    }
    if (!sermon.notes.empty()) {
        out << "\nNotes:\n";
        printIndented(out, sermon.notes, "");
    }
}

} // namespace

void ShowCommand::configure(CLI::App& command) {
    command.add_option("ID", m_id, "The sermon's id (or a unique beginning of it)")->required();
}

int ShowCommand::run(CommandContext& context, Library& library) {
    const model::SermonNote& sermon = library.find(m_id);
    if (!context.json) {
        printSermon(context.out, sermon);
        return 0;
    }
    // The file as stored, byte for byte; when it cannot be read (a save that failed earlier), the
    // encoding it would have.
    std::string stored;
    try {
        stored = platform::readFile(library.storage().sermonFile(sermon.id));
    } catch (const platform::FileError&) {
        stored = model::encodeSermonFile(sermon);
    }
    context.out << stored;
    if (stored.empty() || stored.back() != '\n')
        context.out << "\n";
    return 0;
}

} // namespace quillon::cli
