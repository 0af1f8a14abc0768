#include "ExportTestSupport.h"

#include "export/OfficePackage.h"
#include "export/SermonPowerPointExporter.h"
#include "export/SermonWordExporter.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>

namespace quillon::exports {

namespace {

/// Each entry of a ZIP as `unzip -Zv` describes it: name, compression method and sub-type, and
/// file attributes; sorted by name, since the zip tool walks folders in directory order.
std::vector<std::string> describedEntries(const std::filesystem::path& zip) {
    const std::string listing = testing::commandOutput("unzip -Zv '" + zip.string() + "'");
    std::vector<std::string> entries;
    const std::regex entry(R"(Central directory entry #\d+:\n-+\n\n  (.*)\n)");
    const std::regex detail(
        R"(  (compression method|compression sub-type \(deflation\)|Unix file attributes \(\d+ octal\)|MS-DOS file attributes \(\w+ hex\)):\s+(.*)\n)");
    std::vector<std::size_t> starts;
    for (auto it = std::sregex_iterator(listing.begin(), listing.end(), entry); it != std::sregex_iterator(); ++it)
        starts.push_back(static_cast<std::size_t>(it->position()));
    starts.push_back(listing.size());
    for (std::size_t i = 0; i + 1 < starts.size(); ++i) {
        const std::string block = listing.substr(starts[i], starts[i + 1] - starts[i]);
        std::smatch name;
        std::regex_search(block, name, entry);
        std::string described = name[1].str();
        for (auto it = std::sregex_iterator(block.begin(), block.end(), detail); it != std::sregex_iterator(); ++it)
            described += " | " + (*it)[1].str() + ": " + (*it)[2].str();
        entries.push_back(described);
    }
    std::sort(entries.begin(), entries.end());
    return entries;
}

} // namespace

TEST(OfficePackage, packsPartsAsTheZipToolPacksTheirFolder) {
    testing::FixedVerses verses;
    const auto sermon = testing::largeSermon(3);
    const std::vector<std::pair<OfficePackage, std::vector<std::string>>> packages{
        {SermonWordExporter(verses).package(sermon), {"[Content_Types].xml", "_rels", "docProps", "word"}},
        {SermonPowerPointExporter(verses).package(sermon), {"[Content_Types].xml", "_rels", "docProps", "ppt"}},
    };
    for (const auto& [package, roots] : packages) {
        testing::TemporaryFolder folder;
        for (const auto& [path, content] : package.parts())
            folder.write("parts/" + path, content);
        std::string arguments;
        for (const std::string& root : roots)
            arguments += " '" + root + "'";
        testing::commandOutput("cd '" + (folder / "parts").string() + "' && /usr/bin/zip -qr ../tool.zip" + arguments);
        const auto ours = folder.write("ours.zip", package.zipBytes("failed"));

        const auto expected = describedEntries(folder / "tool.zip");
        ASSERT_GT(expected.size(), package.parts().size()) << roots.back();
        EXPECT_EQ(describedEntries(ours), expected) << roots.back();

        // In our own order, each folder comes just before the first part inside it.
        const auto entries = testing::zipEntries(package.zipBytes("failed"));
        EXPECT_EQ(entries.front().first, "[Content_Types].xml");
        for (std::size_t i = 0; i < entries.size(); ++i) {
            const std::string& name = entries[i].first;
            const std::size_t slash = name.find_last_of('/', name.size() - 2);
            if (slash == std::string::npos)
                continue;
            const std::string parent = name.substr(0, slash + 1);
            const auto found = std::find_if(entries.begin(), entries.end(), [&](auto& e) { return e.first == parent; });
            ASSERT_NE(found, entries.end()) << name;
            EXPECT_LT(found - entries.begin(), static_cast<std::ptrdiff_t>(i)) << name;
        }
    }
}

} // namespace quillon::exports
