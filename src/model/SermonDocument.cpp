#include "model/SermonDocument.h"

#include "model/SermonCoding.h"
#include "platform/ApplicationIdentity.h"
#include "platform/AtomicFile.h"

#include <spdlog/spdlog.h>

#include <algorithm>

namespace quillon::model {
namespace fs = std::filesystem;

namespace {

bool isUnsafeFileNameCharacter(char c) {
    switch (c) {
    case '/':
    case '\\':
    case '?':
    case '%':
    case '*':
    case '|':
    case '"':
    case '<':
    case '>':
    case ':':
        return true;
    default:
        return false;
    }
}

bool isWhiteSpaceOrLineEnd(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}

bool hasExtension(const fs::path& file, std::string_view extension) {
    std::string actual = file.extension().string();
    std::transform(actual.begin(), actual.end(), actual.begin(), [](unsigned char c) { return std::tolower(c); });
    return actual == extension;
}

} // namespace

std::string encodeSermonDocument(const SermonNote& sermon) {
    // nlohmann::json keeps members in a sorted map, which gives the sorted-by-name document form.
    nlohmann::json sorted =
        nlohmann::json::parse(encodeSermonNote(sermon).dump(-1, ' ', false, OrderedJSON::error_handler_t::replace));
    return sorted.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

std::string safeFileName(std::string_view title) {
    std::string joined;
    joined.reserve(title.size());
    for (char c : title)
        joined += isUnsafeFileNameCharacter(c) ? '-' : c;
    size_t first = 0;
    while (first < joined.size() && isWhiteSpaceOrLineEnd(joined[first]))
        ++first;
    size_t last = joined.size();
    while (last > first && isWhiteSpaceOrLineEnd(joined[last - 1]))
        --last;
    return joined.substr(first, last - first);
}

fs::path writeSermonDocument(const SermonNote& sermon, const fs::path& folder) {
    std::string name = safeFileName(sermon.title);
    if (name.empty() || name == "." || name == "..")
        name = "Untitled Sermon";
    fs::path file = folder / (name + ".quillet");
    platform::writeFileAtomically(file, encodeSermonDocument(sermon));
    return file;
}

std::string encodeArchive(const std::vector<SermonNote>& sermons, DateTime exportDate) {
    return encodeSermonArchive(sermons, platform::applicationIdentifier, exportDate);
}

std::vector<SermonNote> readArchive(std::string_view bytes) {
    std::optional<JsonTree> tree;
    try {
        tree.emplace(JsonTree::parse(bytes));
    } catch (const DecodingError&) {
        return {};
    }
    try {
        return decodeSermonNoteExport(tree->root()).sermons;
    } catch (const DecodingError&) {
    }
    try {
        return decodeSermonList(tree->root());
    } catch (const DecodingError&) {
    }
    return {};
}

std::optional<fs::path> writeArchive(const std::vector<SermonNote>& sermons, DateTime exportDate,
                                     const fs::path& folder) {
    const fs::path file = folder / "Quillon.vrnsermons";
    try {
        // Atomic, so that a full disk leaves the previous archive (or none), never half of one.
        platform::writeFileAtomically(file, encodeArchive(sermons, exportDate));
        return file;
    } catch (const std::exception& error) {
        spdlog::error("Failed to write the sermon archive: {}", error.what());
        return std::nullopt;
    }
}

std::vector<SermonNote> readSermonImportFile(const fs::path& file) {
    const std::string bytes = platform::readFile(file);
    if (hasExtension(file, ".quillet"))
        return {decodeSermonFile(bytes)};
    return readArchive(bytes);
}

} // namespace quillon::model
