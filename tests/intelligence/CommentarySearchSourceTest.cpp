#include "intelligence/CommentarySearchSource.h"

#include <gtest/gtest.h>

namespace quillon::intelligence {

TEST(CommentarySearchSource, listsEachCommentarysNotesOnAPassageAndNothingForWords) {
    auto library = std::make_shared<const CommentaryLibrary>(std::vector<std::filesystem::path>{"/usr/share/sword"});
    if (library->commentaries().empty())
        GTEST_SKIP() << "no SWORD commentary is installed (scripts/bootstrap installs them)";
    search::UnifiedSearch unified;
    unified.setSource(search::SearchGroup::commentaries, commentarySearchSource(library));

    auto groups = unified.search("Rom. 8:28 (NIV)", search::allSearchGroups, 3);
    ASSERT_EQ(groups.size(), 1u);
    ASSERT_FALSE(groups[0].hits.empty());
    EXPECT_LE(groups[0].hits.size(), 3u);
    for (const auto& hit : groups[0].hits) {
        ASSERT_NE(hit.referenceWork(), nullptr);
        EXPECT_FALSE(hit.referenceWork()->work.empty());
        EXPECT_LE(hit.referenceWork()->snippet.size(), 160u + std::string("…").size());
        EXPECT_EQ(hit.kind(), search::SearchHit::Kind::commentary);
    }
    EXPECT_TRUE(unified.search("grace and peace").empty());
}

} // namespace quillon::intelligence
