#include "cli/RefCommand.h"

#include "orvane/ScriptureReference.h"
#include "scripture/ReferenceParser.h"

#include <ostream>

namespace quillon::cli {

namespace {

nlohmann::ordered_json readingJson(const scripture::ReferenceReading& reading) {
    nlohmann::ordered_json json;
    json["readAs"] = reading.readAs;
    json["translation"] =
        reading.translation.empty() ? nlohmann::ordered_json() : nlohmann::ordered_json(reading.translation);
    json["version"] = reading.version ? nlohmann::ordered_json(std::string(model::rawValue(*reading.version)))
                                      : nlohmann::ordered_json();
    json["changes"] = reading.changes;
    return json;
}

void printExplanation(std::ostream& out, const std::string& typed, const scripture::ReferenceReading& reading) {
    out << "Typed: “" << typed << "”\n";
    if (reading.changes.empty())
        out << "Nothing needed normalising: the text is read as written.\n";
    for (const std::string& change : reading.changes)
        out << "- " << change << "\n";
    out << "Read as: “" << reading.readAs << "”\n";
}

} // namespace

void RefCommand::configure(CLI::App& command) {
    command.add_option("text", m_text, "The reference as typed, e.g. \"1 cor 13:4-7\"")->required();
    command.add_flag("--explain", m_explain, "Show what was done to the text before it was read");
}

int RefCommand::execute(CommandContext& context) {
    const scripture::ReferenceReading reading = scripture::readReference(m_text, m_explain);
    if (m_explain && !context.json)
        printExplanation(context.out, m_text, reading);
    const auto& reference = reading.reference;
    if (!reference)
        throw UserError("No scripture reference found in “" + m_text + "”.");
    if (context.json) {
        nlohmann::ordered_json json = orvane::encodeScriptureReference(reference->shared());
        json["bookAbbreviation"] = reference->book.abbreviation;
        json["verses"] = reference->verses ? nlohmann::ordered_json(*reference->verses) : nlohmann::ordered_json();
        if (!reading.translation.empty())
            json["translation"] = reading.translation;
        if (m_explain)
            json["normalised"] = readingJson(reading);
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
    if (!reading.translation.empty() && !m_explain)
        context.out << "Translation: " << reading.translation << "\n";
    return 0;
}

} // namespace quillon::cli
