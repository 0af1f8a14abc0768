#include "app/CommandMatching.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quillon::app {
namespace {

const std::vector<std::string> names = {"File › New Sermon",
                                        "File › Open",
                                        "Edit › Undo",
                                        "Tools › Preach Preview",
                                        "Tools › Settings",
                                        "Assistant › Tag Suggestions",
                                        "Assistant › Ask Your Library",
                                        "View › Reading Mode",
                                        "Help › Run Self-Test"};

TEST(CommandMatching, FindsCommandsByInitialsFragmentsAndMisspellings) {
    struct Case {
        std::string query;
        std::string best;
    };
    const std::vector<Case> cases = {
        {"new", "File › New Sermon"},
        {"nws", "File › New Sermon"},
        {"pp", "Tools › Preach Preview"},
        {"preach", "Tools › Preach Preview"},
        {"settings", "Tools › Settings"},
        {"tag", "Assistant › Tag Suggestions"},
        {"ayl", "Assistant › Ask Your Library"},
        {"self test", "Help › Run Self-Test"},
        {"settnigs", "Tools › Settings"},
    };
    for (const Case& c : cases) {
        const std::vector<std::size_t> order = CommandMatching::rank(c.query, names);
        ASSERT_FALSE(order.empty()) << c.query;
        EXPECT_EQ(names[order.front()], c.best) << c.query;
    }
    EXPECT_EQ(CommandMatching::rank("", names).size(), names.size());
    EXPECT_TRUE(CommandMatching::rank("qqqq", names).empty());
    EXPECT_FALSE(CommandMatching::score("zz", "Undo"));
}

} // namespace
} // namespace quillon::app
