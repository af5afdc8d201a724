// The decision for one alarm record: a row per line of the classification
// table, then the event codes with their kinds and switches.
#include <gtest/gtest.h>

#include "alarms/CAlarmClassifier.h"
#include "support/ClassificationRows.h"
#include "BodyTemperature/ui/DashboardRecords.h"

using namespace BodyTemperature;
using Action = AlarmDecision::Action;

namespace {

using dashtest::kTemperatureCapture;
using dashtest::voiceConfig;

publicdatacontroller::IntelAlarmEventInfo record(uint32_t eventType, uint32_t enabled, uint32_t anomaly, uint32_t mask)
{
    return dashtest::record(eventType, dashtest::face(enabled, anomaly, mask, false));
}

using testsupport::ClassificationRow;

class FaceClassification : public ::testing::TestWithParam<ClassificationRow> {};

TEST_P(FaceClassification, AsTheRowSays)
{
    const ClassificationRow& row = GetParam();
    const AlarmDisplayConfig config = row.switches(voiceConfig());

    const AlarmDecision d =
        CAlarmClassifier::Classify(record(kTemperatureCapture, row.enabled, row.anomaly, row.mask), config);

    EXPECT_EQ(d.action, Action::ShowFace);
    EXPECT_EQ(d.voicePath, row.voicePath(config));
    // The columns hold the codes' numbers: the journal and the cards' icon tables store them.
    EXPECT_EQ(std::vector<uint32_t>({uint32_t(d.popType), uint32_t(d.maskType), d.temperatureType, d.alarmType}),
        std::vector<uint32_t>({row.popType, row.maskType, row.temperatureType, row.alarmType}));
    EXPECT_EQ(d.kind, EventKind::TemperatureCapture);
    EXPECT_EQ(std::vector<int>({d.normalDelta, d.noMaskDelta, d.abnormalDelta}),
        std::vector<int>({row.normal, row.noMask, row.abnormal}));
    EXPECT_EQ(d.raisesPopUp(), row.popType != 0);
}

INSTANTIATE_TEST_SUITE_P(Rows, FaceClassification, ::testing::ValuesIn(testsupport::kClassificationRows),
    [](const ::testing::TestParamInfo<ClassificationRow>& row) { return std::string(row.param.name); });

TEST(AlarmClassifier, EachEventCodeHasItsKindSwitchAndFaceBlock)
{
    // kind: the number the journal stores.
    const struct { uint32_t eventType; Action action; uint32_t kind; bool AlarmDisplayConfig::*switchField; } rows[] = {
        {100103, Action::ShowFace, 0, &AlarmDisplayConfig::bFacePictureComparison},
        {100506, Action::ShowFace, 1, &AlarmDisplayConfig::bFacePictureComparison},
        {100114, Action::ShowFace, 2, &AlarmDisplayConfig::bFacePictureComparison},
        {100101, Action::ShowFace, 3, &AlarmDisplayConfig::bFaceCapture},
        {100119, Action::ShowFace, 4, &AlarmDisplayConfig::bFaceTemperatureCapture},
        {100112, Action::ShowReturning, 5, nullptr},
        {100999, Action::CountOnly, 0, nullptr},
    };
    for (const auto& row : rows) {
        for (const bool on : {true, false}) {
            SCOPED_TRACE(testing::Message() << row.eventType << (on ? " on" : " off"));
            AlarmDisplayConfig config = voiceConfig();
            // Every switch off when testing one without a switch of its own.
            if (row.switchField != nullptr)
                config.*row.switchField = on;
            else
                config.bFacePictureComparison = config.bFaceCapture = config.bFaceTemperatureCapture = on;

            const AlarmDecision d = CAlarmClassifier::Classify(record(row.eventType, 1, 1, 1), config);
            const bool dropped = row.switchField != nullptr && !on;
            EXPECT_EQ(d.action, dropped ? Action::Drop : row.action);
            if (dropped)
                continue;
            EXPECT_EQ(uint32_t(d.kind), row.kind);
            // Only the faces are classified: abnormal without mask, from the block the kind reads.
            const bool face = row.action == Action::ShowFace;
            EXPECT_EQ(d.alarmType, 0u);
            EXPECT_EQ(d.maskType, face ? MaskState::NoMaskAbnormal : MaskState::Unknown);
            EXPECT_EQ(d.abnormalDelta + d.noMaskDelta, face ? 2 : 0);
            EXPECT_EQ(d.voicePath, face ? config.strAbnormalVoice : QString());
        }
    }

    // A capture without any face keeps the defaults and is still shown.
    publicdatacontroller::IntelAlarmEventInfo empty = record(kTemperatureCapture, 1, 1, 1);
    empty.faceInfoList.clear();
    empty.faceInfo.TemperatureEnabled = 1;
    empty.faceInfo.TemperatureAnomaly = 1;
    const AlarmDecision d = CAlarmClassifier::Classify(empty, voiceConfig());
    EXPECT_EQ(d.action, Action::ShowFace);
    EXPECT_EQ(d.popType, PopUpType::None);
    EXPECT_EQ(d.maskType, MaskState::Unknown);
    EXPECT_EQ(std::vector<uint32_t>({d.temperatureType, d.alarmType}), std::vector<uint32_t>({3, 0}));
    EXPECT_TRUE(d.voicePath.isEmpty());
}

} // namespace
