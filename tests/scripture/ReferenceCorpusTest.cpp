// The reference table: several hundred references as preachers type and paste them, each with the
// passage it stands for, read once by the parser as written and once through the normalising step.
#include "scripture/ReferenceParser.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iostream>
#include <set>
#include <string>
#include <vector>

using namespace quillon::scripture;

namespace {

struct Entry {
    std::string typed;
    std::string passage;
    std::string source;
};

std::vector<Entry> referenceTable() {
    std::ifstream file(quillon::testing::sourceDirectory() / "tests" / "scripture" / "data" / "references.tsv");
    std::vector<Entry> entries;
    std::string line;
    while (std::getline(file, line)) {
        if (line.empty() || line[0] == '#')
            continue;
        std::size_t first = line.find('\t');
        std::size_t second = line.find('\t', first + 1);
        if (first == std::string::npos || second == std::string::npos)
            continue;
        entries.push_back({line.substr(0, first), line.substr(first + 1, second - first - 1), line.substr(second + 1)});
    }
    return entries;
}

/// "Romans 8:28-39", "Psalms 23", "John 3:16-18,20", or "-" for no reference.
std::string printed(const std::optional<ScriptureReference>& reference) {
    if (!reference)
        return "-";
    std::string text = reference->book.name + " " + std::to_string(reference->chapter);
    if (!reference->verses)
        return text;
    const auto& verses = *reference->verses;
    text += ":";
    for (std::size_t i = 0; i < verses.size();) {
        std::size_t end = i;
        while (end + 1 < verses.size() && verses[end + 1] == verses[end] + 1)
            ++end;
        text += (i ? "," : "") + std::to_string(verses[i]) + (end > i ? "-" + std::to_string(verses[end]) : "");
        i = end + 1;
    }
    return text;
}

/// The table writes lists with ", "; the printed form has none.
std::string withoutSpacesAfterCommas(std::string text) {
    for (std::size_t at = text.find(", "); at != std::string::npos; at = text.find(", ", at))
        text.erase(at + 1, 1);
    return text;
}

} // namespace

TEST(ReferenceCorpus, readsNearlyEveryReferenceOfTheTableAndReportsTheShare) {
    const std::vector<Entry> entries = referenceTable();
    ASSERT_GE(entries.size(), 500u);
    // Forms the book table deliberately reads otherwise, and a reading as written is never changed:
    // two letters name no book alone ("Jo", "Ez"), and "JOL" is one edit from "Job".
    const std::set<std::string> expectedMisses = {"Jo 1:9", "Ez 36:26", "JOL 2:28"};

    std::size_t before = 0, after = 0;
    std::set<std::string> misses;
    for (const Entry& entry : entries) {
        const std::string passage = withoutSpacesAfterCommas(entry.passage);
        if (printed(parseAsWritten(entry.typed)) == passage)
            ++before;
        if (printed(parse(entry.typed)) == passage)
            ++after;
        else
            misses.insert(entry.typed);
    }
    const auto share = [&](std::size_t count) { return 100.0 * static_cast<double>(count) / entries.size(); };
    std::cout << "Reference table: " << entries.size() << " references; read as written " << before << " ("
              << share(before) << "%), with the normalising step " << after << " (" << share(after) << "%)\n";
    RecordProperty("readAsWritten", static_cast<int>(before));
    RecordProperty("readNormalised", static_cast<int>(after));
    EXPECT_EQ(misses, expectedMisses);
}

TEST(ReferenceCorpus, neverChangesAReadingTheParserAlreadyHas) {
    for (const Entry& entry : referenceTable()) {
        auto asWritten = parseAsWritten(entry.typed);
        if (asWritten) {
            EXPECT_EQ(parse(entry.typed), asWritten) << entry.typed;
        }
    }
}
