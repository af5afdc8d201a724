// Which records get cards when they come faster than the page draws: the
// slices are driven by a test clock, the building cost by the test.
#include <string>
#include <vector>
#include <gtest/gtest.h>

#include "alarms/CCardBacklog.h"
#include "support/TestSupport.h"

using BodyTemperature::AlarmShowInfo;
using BodyTemperature::CCardBacklog;

TEST(CardBacklog, OnlyTheRecordsThatStayVisibleGetCards)
{
    // buildMs: clock advance per card built; gapMs: between records (0: all in one turn of the event loop);
    // immediate: built inside Add(); skipped: never built; listFrom, stripFrom: the first record (1-based)
    // that gets a list card, a strip card.
    const struct { const char* name; int records, buildMs, gapMs, immediate, skipped, listFrom, stripFrom; } rows[] = {
        {"a trickle: every record at once", 30, 5, 100, 30, 0, 1, 1},
        {"cheap cards: the slice never runs out", 25, 0, 0, 25, 0, 1, 1},
        {"a burst of 3000", 3000, 5, 0, 5, 2974, 2981, 2980},
        {"a burst just over the lists", 40, 10, 0, 3, 16, 21, 20},
        {"a burst smaller than the lists", 12, 10, 0, 3, 0, 1, 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        qint64 clock = 1000;
        struct Built { std::string id; bool list, strip; };
        std::vector<Built> built;
        CCardBacklog backlog(
            20, 21,
            [&](const AlarmShowInfo& info, int copies, bool list, bool strip) {
                EXPECT_EQ(copies, 1);
                built.push_back({info.eventID, list, strip});
                clock += row.buildMs;
            },
            nullptr, [&] { return clock; });
        for (int i = 1; i <= row.records; ++i) {
            AlarmShowInfo info;
            info.eventID = std::to_string(i);
            backlog.Add(std::move(info));
            clock += row.gapMs;
            if (row.gapMs > 0)
                testsupport::pump(2);  // the event loop has a turn between records
        }
        EXPECT_EQ(int(built.size()), row.immediate);
        ASSERT_TRUE(testsupport::waitUntil([&] { return backlog.Pending() == 0; }));
        EXPECT_EQ(int(backlog.Skipped()), row.skipped);
        EXPECT_EQ(int(backlog.Built()) + row.skipped, row.records);
        // Oldest first, and each card kind only for records that stay visible.
        int previous = 0;
        for (const Built& b : built) {
            const int n = std::stoi(b.id);
            EXPECT_GT(n, previous);
            previous = n;
            const bool immediate = n <= row.immediate;
            EXPECT_EQ(b.list, immediate || n >= row.listFrom) << n;
            EXPECT_EQ(b.strip, immediate || n >= row.stripFrom) << n;
        }
        EXPECT_EQ(built.back().id, std::to_string(row.records));
    }
}
