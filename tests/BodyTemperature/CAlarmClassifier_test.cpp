// The decision for one alarm record: a row per line of the classification
// table (with the sound and pop-up switches that pick the fallbacks), then the
// event codes with their kinds and switches.
#include <gtest/gtest.h>

#include "CAlarmClassifier.h"
#include "ui/DashboardRecords.h"

using namespace BodyTemperature;
using Action = AlarmDecision::Action;

namespace {

using dashtest::kTemperatureCapture;
using dashtest::voiceConfig;

publicdatacontroller::IntelAlarmEventInfo record(uint32_t eventType, uint32_t enabled, uint32_t anomaly, uint32_t mask)
{
    return dashtest::record(eventType, dashtest::face(enabled, anomaly, mask, false));
}

enum Voice { None, NoMask, Normal, Abnormal };

struct FaceRow {
    const char* name;
    uint32_t enabled, anomaly, mask;
    bool soundNoMask, soundNormal, soundAbnormal, popNoMask, popAbnormal;
    Voice voice;
    uint32_t popType, maskType, temperatureType, alarmType;
    int normal, noMask, abnormal;
};

const FaceRow kFaceRows[] = {
    // name                          en an mk  sNM   sN    sA    pNM   pA     voice     pop mk tp al  n  nm ab
    {"not measured, no mask",        0, 0, 1, true, true, true, true, true, NoMask,   2, 1, 3, 1, 0, 1, 0},
    {"not measured, no mask, quiet", 0, 0, 1, false, true, true, false, true, None,    0, 1, 3, 1, 0, 1, 0},
    {"not measured, mask worn",      0, 0, 2, true, true, true, true, true, None,     0, 2, 3, 2, 0, 0, 0},
    {"not measured, unknown mask",   2, 1, 0, true, true, true, true, true, None,     0, 3, 3, 2, 0, 0, 0},
    {"abnormal, mask worn",          1, 1, 2, true, true, true, true, true, Abnormal, 1, 2, 0, 0, 0, 0, 1},
    {"abnormal, mask worn, quiet",   1, 1, 2, true, true, false, true, false, None,   0, 2, 0, 0, 0, 0, 1},
    {"abnormal, unknown mask",       1, 1, 5, true, true, true, true, true, Abnormal, 1, 3, 0, 0, 0, 0, 1},
    {"abnormal, no mask",            1, 1, 1, true, true, true, true, true, Abnormal, 1, 0, 0, 0, 0, 1, 1},
    {"abnormal, no mask, falls back",1, 1, 1, true, true, false, true, false, NoMask, 2, 0, 0, 0, 0, 1, 1},
    {"abnormal, no mask, all off",   1, 1, 1, false, true, false, false, false, None, 0, 0, 0, 0, 0, 1, 1},
    {"normal, mask worn",            1, 0, 2, true, true, true, true, true, Normal,   0, 2, 2, 3, 1, 0, 0},
    {"normal, mask worn, quiet",     1, 0, 2, true, false, true, true, true, None,    0, 2, 2, 3, 1, 0, 0},
    {"normal, unknown mask",         1, 0, 0, true, true, true, true, true, Normal,   0, 3, 2, 3, 1, 0, 0},
    {"normal, no mask",              1, 0, 1, true, true, true, true, true, NoMask,   2, 1, 1, 1, 1, 1, 0},
    {"normal, no mask, falls back",  1, 0, 1, false, true, true, false, true, Normal, 0, 1, 1, 1, 1, 1, 0},
    {"anomaly neither 0 nor 1",      1, 7, 1, true, true, true, true, true, None,     0, 3, 3, 0, 0, 0, 0},
};

TEST(AlarmClassifier, ClassifiesEveryFaceAsTheTableSays)
{
    for (const FaceRow& row : kFaceRows) {
        SCOPED_TRACE(row.name);
        AlarmDisplayConfig config = voiceConfig();
        config.bSoundNoMask = row.soundNoMask;
        config.bSoundNormal = row.soundNormal;
        config.bSoundAbnormal = row.soundAbnormal;
        config.bPopNoMask = row.popNoMask;
        config.bPopAbnormal = row.popAbnormal;

        const AlarmDecision d =
            CAlarmClassifier::Classify(record(kTemperatureCapture, row.enabled, row.anomaly, row.mask), config);

        const QString paths[] = {QString(), config.strNoMaskVoice, config.strNormalVoice, config.strAbnormalVoice};
        EXPECT_EQ(d.action, Action::ShowFace);
        EXPECT_EQ(d.voicePath, paths[row.voice]);
        // The columns hold the codes' numbers: the journal and the cards' icon tables store them.
        EXPECT_EQ(std::vector<uint32_t>({uint32_t(d.popType), uint32_t(d.maskType), d.temperatureType, d.alarmType}),
            std::vector<uint32_t>({row.popType, row.maskType, row.temperatureType, row.alarmType}));
        EXPECT_EQ(d.kind, EventKind::TemperatureCapture);
        EXPECT_EQ(std::vector<int>({d.normalDelta, d.noMaskDelta, d.abnormalDelta}),
            std::vector<int>({row.normal, row.noMask, row.abnormal}));
        EXPECT_EQ(d.raisesPopUp(), row.popType != 0);
    }
}

TEST(AlarmClassifier, EachEventCodeHasItsKindSwitchAndFaceBlock)
{
    const struct {
        uint32_t eventType;
        Action action;
        uint32_t kind;  // the number the journal stores
        bool AlarmDisplayConfig::*switchField;
    } rows[] = {
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
