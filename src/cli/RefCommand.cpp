#include "cli/RefCommand.h"

#include "orvane/ScriptureReference.h"
#include "scripture/ReferenceParser.h"

#include <ostream>

namespace quillon::cli {

void RefCommand::configure(CLI::App& command) {
    command.add_option("text", m_text, "The reference as typed, e.g. \"1 cor 13:4-7\"")->required();
}

int RefCommand::execute(CommandContext& context) {
    auto reference = scripture::parse(m_text);
    if (!reference)
        throw UserError("No scripture reference found in “" + m_text + "”.");
    if (context.json) {
        nlohmann::ordered_json json = orvane::encodeScriptureReference(reference->shared());
        json["bookAbbreviation"] = reference->book.abbreviation;
        json["verses"] = reference->verses ? nlohmann::ordered_json(*reference->verses) : nlohmann::ordered_json();
        context.out << json.dump(2) << "\n";
        return 0;
    }
    context.out << "Book: " << reference->book.name << "\n";
    context.out << "Chapter: " << reference->chapter << "\n";
    context.out << "Verses: ";
    if (!reference->verses) {
        context.out << "whole chapter (1-" << reference->book.verseCount(reference->chapter) << ")";
    } else {
        for (std::size_t i = 0; i < reference->verses->size(); ++i)
            context.out << (i ? ", " : "") << (*reference->verses)[i];
    }
    context.out << "\n";
    return 0;
}

} // namespace quillon::cli
