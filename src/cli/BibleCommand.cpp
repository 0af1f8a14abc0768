#include "cli/BibleCommand.h"

#include "model/BibleVersion.h"
#include "scripture/BibleLoader.h"
#include "scripture/ReferenceParser.h"
#include "scripture/SwordConverter.h"

#include <ostream>
#include <vector>

namespace quillon::cli {

namespace {

model::BibleVersion versionNamed(std::string code) {
    for (char& c : code)
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    auto version = model::bibleVersionFromRawValue(code);
    if (!version)
        throw UserError("Quillon does not know the Bible version “" + code +
                        "”. Known versions: KJV, ASV, YLT, LSV, NLT, NKJV, AMP.");
    return *version;
}

std::vector<model::BibleVersion> versionList(const std::string& text) {
    std::vector<model::BibleVersion> versions;
    std::size_t start = 0;
    while (start <= text.size()) {
        std::size_t comma = text.find(',', start);
        std::string piece = text.substr(start, comma == std::string::npos ? std::string::npos : comma - start);
        piece.erase(0, piece.find_first_not_of(' '));
        piece.erase(piece.find_last_not_of(' ') + 1);
        if (!piece.empty())
            versions.push_back(versionNamed(piece));
        if (comma == std::string::npos)
            break;
        start = comma + 1;
    }
    return versions;
}

} // namespace

void BibleCommand::configure(CLI::App& command) {
    command.add_option("query", m_query, "A reference (John 3:16), a topic (verses about grace) or words")
        ->type_name("QUERY");
    command.add_option("--versions", m_versions, "Comma-separated versions to search (default KJV)")
        ->type_name("KJV,ASV");
    command.add_option("--limit", m_limit, "Most results to show (default 50)")->check(CLI::PositiveNumber);
    command.require_subcommand(0, 1);

    m_versionsCommand = command.add_subcommand("versions", "List the Bible versions and their text files");
    m_importCommand = command.add_subcommand("import-sword", "Convert an installed SWORD Bible module");
    m_importCommand->add_option("module", m_module, "The SWORD module's name, e.g. KJV")->required();
    m_importCommand->add_option("--as", m_code, "The version code the text becomes, e.g. NKJV")->required();
    m_importCommand->add_option("--sword-path", m_swordPath, "A folder holding mods.d and modules")->type_name("DIR");
    m_importCommand->add_option("--to", m_folder, "Write into this folder instead of the user's Bibles folder")
        ->type_name("DIR");
}

int BibleCommand::execute(CommandContext& context) {
    if (m_versionsCommand->parsed())
        return listVersions(context);
    if (m_importCommand->parsed())
        return importSword(context);
    if (m_query.empty())
        throw UserError("Type a reference, a topic or words to search for.");
    return search(context);
}

int BibleCommand::search(CommandContext& context) {
    scripture::BibleLoader loader;
    const std::vector<model::BibleVersion> versions = versionList(m_versions);
    auto results = loader.search(m_query, versions, static_cast<std::size_t>(m_limit));
    // "John 3:16 NIV": say which text stands in for a translation Quillon does not have.
    const scripture::ReferenceReading reading = scripture::readReference(m_query);
    if (reading.reference && !reading.translation.empty() && !results.empty() && versions.empty()) {
        const std::string_view shown = model::rawValue(results.front().version);
        if (!reading.version)
            context.err << "Quillon has no " << reading.translation << " text; showing " << shown << ".\n";
        else if (*reading.version != results.front().version)
            context.err << "The " << model::rawValue(*reading.version) << " text is not available; showing " << shown
                        << ".\n";
    }
    if (context.json) {
        nlohmann::ordered_json json = nlohmann::ordered_json::array();
        for (const auto& result : results)
            json.push_back(scripture::encodeBibleSearchResult(result));
        context.out << json.dump(2) << "\n";
        return 0;
    }
    if (results.empty())
        throw UserError("No verses found for “" + m_query + "”.");
    for (const auto& result : results)
        context.out << result.id << "\t" << result.verse.text << "\n";
    return 0;
}

int BibleCommand::listVersions(CommandContext& context) {
    scripture::BibleLoader loader;
    nlohmann::ordered_json json = nlohmann::ordered_json::array();
    for (model::BibleVersion version : model::allBibleVersions) {
        auto file = loader.resourceBundle().fileFor(version);
        // A missing text is listed with the place where the user can put it.
        std::string path =
            file ? file->string()
                 : (scripture::BibleResourceBundle::userFolder() / (std::string(model::rawValue(version)) + ".txt"))
                       .string();
        if (context.json) {
            nlohmann::ordered_json entry;
            entry["version"] = std::string(model::rawValue(version));
            entry["available"] = file.has_value();
            entry["file"] = path;
            json.push_back(entry);
        } else {
            context.out << model::rawValue(version) << "\t" << (file ? "available" : "not available") << "\t" << path
                        << "\n";
        }
    }
    if (context.json)
        context.out << json.dump(2) << "\n";
    return 0;
}

int BibleCommand::importSword(CommandContext& context) {
    model::BibleVersion version = versionNamed(m_code);
    std::filesystem::path folder =
        m_folder.empty() ? scripture::BibleResourceBundle::userFolder() : std::filesystem::path(m_folder);
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    std::filesystem::path target = folder / (std::string(model::rawValue(version)) + ".txt");
    scripture::SwordConverter converter(m_swordPath.empty() ? std::nullopt
                                                            : std::optional<std::filesystem::path>(m_swordPath));
    scripture::SwordConversion report;
    try {
        report = converter.convertToFile(m_module, target);
    } catch (const scripture::SwordConversionError& failure) {
        throw UserError(failure.what());
    }
    context.out << "Wrote " << report.verseCount << " verses of " << m_module << " to " << target.string() << ".\n";
    if (!report.missingVerses.empty()) {
        context.out << "The module has no text for " << report.missingVerses.size() << " verses:";
        for (const auto& key : report.missingVerses)
            context.out << " " << key << (&key == &report.missingVerses.back() ? "" : ",");
        context.out << "\n";
    }
    return 0;
}

} // namespace quillon::cli
