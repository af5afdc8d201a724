// The history's queries on a real journal file: exact filtered pages newest
// first, index use, and live rows after a watermark.
#include <algorithm>
#include <gtest/gtest.h>

#include "record/CJournalDatabase.h"
#include "record/CJournalHistorySource.h"
#include "record/HistoryMatch.h"
#include "support/SqlFile.h"
#include "support/TestSupport.h"

using namespace BodyTemperature;

namespace {

constexpr int64_t kStart = 1767225600;

JournalEvent synthetic(int i)
{
    JournalEvent e;
    e.time = kStart + i / 3;  // three rows a second: page edges fall inside a second
    e.cameraId = "cam-" + std::to_string(i % 20);
    e.cameraName = "Gate " + std::to_string(i % 20);
    e.kind = uint32_t(i % 6);
    e.temperatureMeasured = i % 9 != 0;
    e.temperatureUnit = i % 4 == 0 ? 1 : 0;
    const double celsius = 36.0 + (i % 25) * 0.12;
    e.temperature = e.temperatureUnit == 1 ? celsius * 1.8 + 32 : celsius;
    e.temperatureType = !e.temperatureMeasured ? 3 : celsius >= 37.3 ? 0 : 1;
    e.maskType = i % 7 == 0 ? 1 : 2;
    e.mask = e.maskType == 1 ? 1 : 2;
    if (e.kind <= 2 && i % 2 == 0) {
        e.personName = i % 10 == 0 ? "Zhang Wei" : "Person " + std::to_string(i % 40) + (i % 3 ? "" : "%_");
        e.library = i % 8 == 0 ? "VIP" : "Staff";
        e.similarity = 0.9;
    }
    return e;
}

class HistorySourceTest : public testsupport::TempDirTest {
protected:
    static constexpr int kRows = 600;

    void SetUp() override
    {
        TempDirTest::SetUp();
        m_path = path(QStringLiteral("journal.db"));
        append(0, kRows);
    }

    // Rows first.. of the synthetic series, under another name when one is given.
    void append(int first, int count, const std::string& name = std::string())
    {
        CJournalDatabase db;
        ASSERT_TRUE(db.Open(m_path, CJournalDatabase::OpenMode::Write)) << qPrintable(db.error());
        std::vector<JournalEvent> rows;
        for (int i = first; i < first + count; ++i) {
            rows.push_back(synthetic(i));
            rows.back().personName = name.empty() ? rows.back().personName : name;
        }
        ASSERT_TRUE(db.Insert(rows));
    }

    // Ids of the rows the filter keeps, newest first, by the row test.
    std::vector<int64_t> expected(const HistoryFilter& f, int rows = kRows) const
    {
        std::vector<JournalEvent> all;
        for (int i = 0; i < rows; ++i) {
            all.push_back(synthetic(i));
            all.back().id = i + 1;
        }
        std::vector<int64_t> ids;
        std::stable_sort(all.begin(), all.end(), [](const JournalEvent& a, const JournalEvent& b) {
            return a.time != b.time ? a.time > b.time : a.id > b.id;
        });
        for (const JournalEvent& e : all)
            if (HistoryMatches(f, e))
                ids.push_back(e.id);
        return ids;
    }

    QString m_path;
};

struct FilterRow { const char* name; HistoryFilter filter; };

std::vector<FilterRow> filterRows()
{
    std::vector<FilterRow> rows;
    auto add = [&](const char* name, auto&& change) {
        HistoryFilter f;
        f.pageSize = 7;
        change(f);
        rows.push_back({name, f});
    };
    add("everything", [](HistoryFilter&) {});
    add("range", [](HistoryFilter& f) { f.from = kStart + 20; f.to = kStart + 150; });
    add("abnormal", [](HistoryFilter& f) { f.kinds = HistoryFilter::KindAbnormal; });
    add("no mask or returning", [](HistoryFilter& f) { f.kinds = HistoryFilter::KindNoMask | HistoryFilter::KindReturning; });
    add("every kind ticked", [](HistoryFilter& f) { f.kinds = HistoryFilter::AllKinds; });
    add("matched, normal", [](HistoryFilter& f) { f.kinds = HistoryFilter::KindMatched | HistoryFilter::KindNormal; });
    add("two cameras", [](HistoryFilter& f) { f.cameraIds = {"cam-3", "cam-4"}; });
    add("cameras and kinds", [](HistoryFilter& f) {
        f.cameraIds = {"cam-0", "cam-7", "cam-11"};
        f.kinds = HistoryFilter::KindAbnormal | HistoryFilter::KindNoMask;
    });
    add("many cameras (one list)", [](HistoryFilter& f) {
        for (int i = 0; i < 18; ++i)
            f.cameraIds.push_back("cam-" + std::to_string(i));
        f.kinds = HistoryFilter::KindNormal;
    });
    add("threshold, Fahrenheit rows converted", [](HistoryFilter& f) { f.thresholdOn = true; f.thresholdCelsius = 38.2; });
    add("name, other case", [](HistoryFilter& f) { f.text = "zhang"; });
    add("library", [](HistoryFilter& f) { f.text = "vip"; f.kinds = HistoryFilter::KindMatched; });
    add("wildcards taken literally", [](HistoryFilter& f) { f.text = "%_"; });
    add("text in many names", [](HistoryFilter& f) { f.text = "person"; f.cameraIds = {"cam-2", "cam-6"}; });
    add("text found nowhere", [](HistoryFilter& f) { f.text = "nobody"; });
    add("everything at once", [](HistoryFilter& f) {
        f.from = kStart + 10;
        f.kinds = HistoryFilter::KindMatched | HistoryFilter::KindAbnormal;
        f.cameraIds = {"cam-0", "cam-10"};
        f.thresholdOn = true;
        f.thresholdCelsius = 36.5;
        f.text = "zhang";
    });
    return rows;
}

TEST_F(HistorySourceTest, PagesHoldExactlyTheFilteredRowsNewestFirst)
{
    for (const FilterRow& row : filterRows()) {
        SCOPED_TRACE(row.name);
        CJournalHistorySource source(m_path);
        std::vector<int64_t> ids;
        HistoryPage page;
        QString error;
        std::optional<HistoryKey> after;
        for (int n = 0; n < 200; ++n) {
            ASSERT_EQ(source.Page(row.filter, after ? &*after : nullptr, page, error), IHistorySource::Result::Ok)
                << qPrintable(error);
            ASSERT_LE(page.rows.size(), size_t(row.filter.pageSize));
            for (const HistoryRow& r : page.rows)
                ids.push_back(r.event.id);
            if (!page.hasMore)
                break;
            ASSERT_FALSE(page.rows.empty());
            after = page.rows.back().key();
        }
        EXPECT_EQ(ids, expected(row.filter));
        EXPECT_EQ(page.watermark, kRows);
    }
}

TEST_F(HistorySourceTest, CommonFiltersWalkAnIndex)
{
    const HistoryKey key{kStart + 100, 300, {}};
    for (const FilterRow& row : filterRows()) {
        SCOPED_TRACE(row.name);
        CJournalHistorySource::TextValues values;
        if (!row.filter.text.empty())
            values.names = {"Zhang Wei"};
        for (const HistoryKey* after : {static_cast<const HistoryKey*>(nullptr), &key})
        for (bool sparse : {false, true}) {
            const auto q = CJournalHistorySource::PageQuery(row.filter, after, row.filter.text.empty() ? nullptr : &values,
                sparse);
            const std::string plan = testsupport::sqlQuery(m_path.toStdString(), "EXPLAIN QUERY PLAN " + q.sql, 3);
            EXPECT_EQ(plan.find("SCAN events"), std::string::npos) << plan;
        }
    }
}

TEST_F(HistorySourceTest, LiveRowsComeAfterTheWatermarkInOrder)
{
    HistoryFilter f;
    f.pageSize = 10;
    f.kinds = HistoryFilter::KindNoMask | HistoryFilter::KindAbnormal;
    CJournalHistorySource source(m_path);
    HistoryPage page;
    QString error;
    ASSERT_EQ(source.Page(f, nullptr, page, error), IHistorySource::Result::Ok);
    int64_t watermark = page.watermark;
    append(kRows, 130);  // a burst larger than a page

    std::vector<int64_t> live;
    for (int n = 0; n < 50; ++n) {
        ASSERT_EQ(source.Newer(f, watermark, page, error), IHistorySource::Result::Ok) << qPrintable(error);
        ASSERT_TRUE(std::is_sorted(page.rows.begin(), page.rows.end(),
            [](const HistoryRow& a, const HistoryRow& b) { return a.event.time > b.event.time; }));
        for (const HistoryRow& r : page.rows)
            live.push_back(r.event.id);
        watermark = page.watermark;
        if (!page.hasMore)
            break;
    }
    std::sort(live.begin(), live.end());
    std::vector<int64_t> want;
    for (int64_t id : expected(f, kRows + 130))
        if (id > kRows)
            want.push_back(id);
    std::sort(want.begin(), want.end());
    EXPECT_EQ(live, want);
    EXPECT_EQ(watermark, kRows + 130);
    // The text search finds a name first recorded after the first search.
    f = HistoryFilter();
    f.text = "Newcomer";
    ASSERT_EQ(source.Page(f, nullptr, page, error), IHistorySource::Result::Ok);
    EXPECT_TRUE(page.rows.empty());
    append(0, 1, "Newcomer");
    ASSERT_EQ(source.Page(f, nullptr, page, error), IHistorySource::Result::Ok);
    ASSERT_EQ(page.rows.size(), 1u);
    EXPECT_EQ(page.rows[0].event.personName, "Newcomer");
}

} // namespace
