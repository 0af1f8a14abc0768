#include "orvane/TrashFolder.h"

#include "platform/FileError.h"
#include "support/FakeClock.h"
#include "support/ScopedTimeZone.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <optional>

using namespace std::string_literals;

namespace {
using namespace std::chrono;
using orvane::TrashFolder;
using quillon::testing::FakeClock;
using quillon::testing::ScopedTimeZone;
using quillon::testing::TemporaryFolder;

sys_seconds utc(int y, int m, int d, int h, int min = 0) {
    return sys_days{year{y} / m / d} + hours{h} + minutes{min};
}

TEST(TrashFolder, keepsItemsWithTheMomentTheyWereDiscarded) {
    TemporaryFolder root;
    FakeClock clock;
    TrashFolder trash(root / "Nested" / "Trash", clock);

    const auto first = trash.put("B", "{\"n\":2}");
    clock.advance(minutes{3});
    trash.put("A", "{\"n\":1}");
    root.write("Nested/Trash/notes.txt", "not an item");
    root.write("Nested/Trash/.A.json.1234.tmp", "left by a crash");

    auto items = trash.items();
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(items[0].id, "B");
    EXPECT_EQ(items[0].bytes, "{\"n\":2}");
    EXPECT_EQ(items[0].trashedAt, first);
    EXPECT_EQ(items[1].id, "A");
    EXPECT_EQ(items[1].trashedAt, clock.now());

    EXPECT_TRUE(trash.remove("B"));
    EXPECT_FALSE(trash.remove("B"));
    EXPECT_FALSE(trash.item("B"));
    EXPECT_TRUE(trash.item("A"));
}

TEST(TrashFolder, refusesIdentitiesThatWouldLeaveTheFolder) {
    TemporaryFolder root;
    FakeClock clock;
    TrashFolder trash(root / "Trash", clock);
    root.write("outside.json", "{}");

    for (const std::string& id : std::vector<std::string>{"", ".", "..", "../outside", "a/b", "a\0b"s}) {
        SCOPED_TRACE(id);
        EXPECT_THROW(trash.put(id, "{}"), quillon::platform::FileError);
        EXPECT_FALSE(trash.item(id));
        EXPECT_FALSE(trash.remove(id));
    }
    EXPECT_TRUE(std::filesystem::exists(root / "outside.json"));
}

TEST(TrashFolder, removesOnlyItemsStrictlyOlderThanTheCutoff) {
    TemporaryFolder root;
    FakeClock clock(utc(2025, 6, 1, 12));
    TrashFolder trash(root / "Trash", clock);
    trash.put("old", "{}");
    clock.advance(hours{1});
    trash.put("edge", "{}");
    clock.advance(seconds{1});
    trash.put("new", "{}");

    auto removed = trash.removeOlderThan(utc(2025, 6, 1, 13));
    EXPECT_EQ(removed, std::vector<std::string>{"old"});
    ASSERT_EQ(trash.items().size(), 2u);
}

TEST(TrashFolder, subtractsCalendarDaysInLocalTimeAcrossDaylightSavingChanges) {
    struct Case {
        const char* zone;
        sys_seconds now;
        int days;
        sys_seconds expected;
    };
    const Case cases[] = {
        // New York springs forward on 2025-03-09: noon EDT on the 12th back to noon EST on the 5th is
        // 7 days and 1 hour, not 7 × 86,400 seconds.
        {"America/New_York", utc(2025, 3, 12, 16), 7, utc(2025, 3, 5, 17)},
        // Falls back on 2025-11-02: one hour less than a fixed week.
        {"America/New_York", utc(2025, 11, 5, 17), 7, utc(2025, 10, 29, 16)},
        // London, crossing 2025-03-30.
        {"Europe/London", utc(2025, 4, 2, 11), 30, utc(2025, 3, 3, 12)},
        // Without a change in between it is plain arithmetic.
        {"UTC", utc(2025, 3, 12, 16), 7, utc(2025, 3, 5, 16)},
        {"America/New_York", utc(2025, 7, 20, 16), 0, utc(2025, 7, 20, 16)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.zone);
        ScopedTimeZone zone(c.zone);
        EXPECT_EQ(TrashFolder::calendarDaysBefore(c.now, c.days), c.expected);
    }
}

} // namespace
