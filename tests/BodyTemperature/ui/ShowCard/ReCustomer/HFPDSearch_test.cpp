// Frequent-person record search against the emulator: polling until the task
// is complete, channel mapping, large tasks, cancel and transport failures.
#include <QElapsedTimer>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <thread>

#include "Base/Base.h"
#include "support/DeviceSim.h"
#include "commlayer/CRequestCancel.h"
#include "ui/ShowCard/ReCustomer/CHFPDRecordBuilder.h"
#include "ui/ShowCard/ReCustomer/CHFPDSearchManager.h"

using namespace BodyTemperature;

namespace {

class HFPDSearchTest : public testsupport::SimTest {
protected:
    static void SetUpTestSuite() { startSim({QStringLiteral("--hfpd-polls"), QStringLiteral("3")}); }

    static void Script(const nlohmann::json& script)
    {
        ASSERT_TRUE(s_sim->control("POST", "/control/hfpd", QByteArray::fromStdString(script.dump())).contains("true"));
    }
    static int Polls(const std::string& task)
    {
        const std::string path = "/control/hfpd/" + task;
        return nlohmann::json::parse(s_sim->control("GET", path.c_str()).toStdString()).value("polls", -1);
    }
};

// The search below sees zoned, "Z" and bare capture times and channels that
// parse or not; these are the texts it never meets.
TEST(HFPDRecordBuilderTest, CaptureTimeAndChannelTexts)
{
    EXPECT_EQ(CHFPDRecordBuilder::RewriteCaptureTime("2020-05-01 10:20:30"), "2020-05-01 10:20:30");
    EXPECT_EQ(CHFPDRecordBuilder::RewriteCaptureTime(""), "");
    const struct { const char* text; bool ok; int channel; const char* error; } rows[] = {
        {" 7", true, 7, ""}, {"5abc", true, 5, ""}, {"", false, 0, "invalid stoi argument"},
        {"99999999999", false, 0, "stoi argument out of range"}};
    for (const auto& row : rows) {
        int channel = 0;
        std::string error;
        EXPECT_EQ(CHFPDRecordBuilder::ParseChannel(row.text, channel, error), row.ok) << row.text;
        EXPECT_EQ(row.ok ? std::to_string(channel) : error, row.ok ? std::to_string(row.channel) : row.error) << row.text;
    }
}

TEST_F(HFPDSearchTest, CompletesAfterTheDevicesPollsWithChannelsMappedInDeviceOrder)
{
    // Channels: SDK 2 and IP channels 33/34 map; 99 and "abc" cannot and are dropped.
    Script({{"taskID", "t-order"}, {"count", 7},
        {"targets", {{{"channelID", "2"}, {"captureTime", "2020-05-01T10:20:30+08:00"}},
                        {{"channelID", "99"}},
                        {{"channelID", "33"}, {"captureTime", "2020-05-01T10:20:30Z"}},
                        {{"channelID", "abc"}},
                        {{"channelID", "34"}, {"captureTime", "2020-05-01T10:20:30"}},
                        {{"channelID", "1"}},
                        {{"channelID", "4"}}}}});
    HFPDRecordList records{HFPDRecord()};
    QElapsedTimer clock;
    clock.start();
    ASSERT_TRUE(CHFPDSearchManager::Instance()->SearchRecords("TEST0001", "t-order", records));
    EXPECT_EQ(Polls("t-order"), 3);
    EXPECT_GE(clock.elapsed(), 2 * 1000 - 50);  // one second between unfinished polls

    const struct { int index; const char* channel; } expected[] = {{1, "2"}, {3, "1"}, {5, "2"}, {6, "1"}, {7, "4"}};
    ASSERT_EQ(records.size(), std::size(expected));
    for (size_t i = 0; i < records.size(); ++i) {
        EXPECT_EQ(records[i].index, expected[i].index) << i;
        EXPECT_EQ(records[i].channelID, expected[i].channel) << i;
        EXPECT_FALSE(records[i].picUrl.empty());
        EXPECT_GT(records[i].width, 0.f);
    }
    for (size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(records[i].captureTime, "2020-05-01 10:20:30") << i;
        EXPECT_EQ(records[i].captureSeconds, Base::TimeUtil::StrDatetime2TimeT("2020-05-01 10:20:30")) << i;
    }
}

// A task's records come in one answer: 100 000 of them (about 40 MB, well
// over the limit of other answers) are read as whole as 20 000 are.
TEST_F(HFPDSearchTest, LargeTasksAreReadWhole)
{
    for (int count : {20000, 100000}) {
        SCOPED_TRACE(count);
        const std::string task = "t-large-" + std::to_string(count);
        Script({{"taskID", task}, {"polls", 1}, {"count", count}});
        HFPDRecordList records;
        ASSERT_TRUE(CHFPDSearchManager::Instance()->SearchRecords("TEST0001", task, records));
        ASSERT_EQ(records.size(), size_t(count));
        EXPECT_EQ(records.back().index, count);
        EXPECT_FALSE(records.back().picUrl.empty());
        EXPECT_FALSE(records.back().channelID.empty());
    }
}

// (A finished task without records: FrequenterDetails_test's "NoDetails".)
TEST_F(HFPDSearchTest, MissingDeviceAsksNothing)
{
    Script({{"taskID", "t-empty"}, {"polls", 1}, {"count", 0}});
    HFPDRecordList records{HFPDRecord()};
    EXPECT_FALSE(CHFPDSearchManager::Instance()->SearchRecords("", "t-empty", records));
    EXPECT_TRUE(records.empty());
    EXPECT_EQ(Polls("t-empty"), 0);
}

TEST_F(HFPDSearchTest, StuckTaskEndsAtOnceWhenCancelled)
{
    Script({{"taskID", "t-stuck"}, {"polls", -1}});
    commlayer::CRequestCancel cancel;
    bool result = true;
    HFPDRecordList records;
    std::thread search([&] { result = CHFPDSearchManager::Instance()->SearchRecords("TEST0001", "t-stuck", records, &cancel); });
    EXPECT_TRUE(testsupport::waitUntil([] { return Polls("t-stuck") >= 3; }, 6000));
    QElapsedTimer clock;
    clock.start();
    cancel.Cancel();
    search.join();
    EXPECT_FALSE(result);
    // The search was asleep between polls: the cancel wakes it instead of
    // letting the second run out.
    EXPECT_LT(clock.elapsed(), 500);
    const int polls = Polls("t-stuck");
    testsupport::pump(1200);
    EXPECT_EQ(Polls("t-stuck"), polls);
}

TEST_F(HFPDSearchTest, TransportFailureMidPollEndsTheSearch)
{
    Script({{"taskID", "t-drop"}, {"polls", 4}, {"dropAtPoll", 2}});
    HFPDRecordList records;
    EXPECT_FALSE(CHFPDSearchManager::Instance()->SearchRecords("TEST0001", "t-drop", records));
    EXPECT_EQ(Polls("t-drop"), 2);
    EXPECT_NE(Base::Error::GetLastError().first, 0);
}

} // namespace
