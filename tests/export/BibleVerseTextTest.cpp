#include "ExportTestSupport.h"

#include "export/BibleVerseText.h"
#include "export/ScriptureText.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace quillon::exports {

TEST(BibleVerseText, quotesEachPassageInItsOwnVersionOrSaysWhyNot) {
    testing::TemporaryFolder folder;
    folder.write("KJV.txt", "Joh 3:16|For God so loved the world\nJoh 3:17|For God sent not his Son\n");
    scripture::BibleLoader loader(scripture::BibleResourceBundle({folder.path()}));
    const BibleVerseText verses(loader);
    using model::BibleVersion;
    struct Case {
        model::SermonScripture scripture;
        std::string shown;
    };
    const std::vector<Case> cases{
        {testing::scripture("John", 3, 16, 17), "For God so loved the world For God sent not his Son"},
        {testing::scripture("john", 3, 17, 16), "For God sent not his Son"},
        {testing::scripture("John", 3, 16, 2'000'000'000), "For God so loved the world For God sent not his Son"},
        {testing::scripture("John", 3, 16, 16, BibleVersion::nkjv),
         "The NKJV text is not available in this Bible library."},
        {testing::scripture("Hezekiah", 3, 16, 16), "Hezekiah 3:16 was not found in the KJV text."},
        {testing::scripture("John", 99, 1, 1), "John 99:1 was not found in the KJV text."},
    };
    for (const auto& c : cases)
        EXPECT_EQ(passageOrNote(c.scripture, verses), c.shown) << referenceText(c.scripture);
}

} // namespace quillon::exports
