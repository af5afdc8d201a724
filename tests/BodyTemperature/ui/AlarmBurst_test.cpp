// A burst of 3000 events from the emulator through the host kit into the
// page: every event is counted exactly, the lists end with the newest cards.
#include <QLabel>
#include <QVBoxLayout>
#include <gtest/gtest.h>

#include "AlarmListener.h"
#include "alarms/CAlarmClassifier.h"
#include "DashboardRecords.h"
#include "commlayer/CAlarmSubscription.h"
#include "support/DeviceSim.h"
#include "ui/CBodyTemperatureDlg.h"
#include "ui/CBottomWidget.h"
#include "ui/ShowCard/CAlarmUnit.h"

using namespace BodyTemperature;

TEST(AlarmBurst, EveryEventIsCountedAndTheListsEndWithTheNewest)
{
    dashtest::VoiceLog voices;  // outlives the page
    dashtest::storeSettings(dashtest::voiceConfig());
    testsupport::DeviceSim sim({QStringLiteral("--scene"), QStringLiteral("320x180")});
    ASSERT_TRUE(sim.start());

    CBodyTemperatureDlg dlg;
    dlg.show();
    dlg.SetAlarmListening(true);
    // The counters as the classification rules give them, reckoned apart.
    int passed = 0, normal = 0, noMask = 0, abnormal = 0;
    std::string lastEvent;
    const AlarmDisplayConfig config = dashtest::voiceConfig();
    QObject::connect(dlg.findChild<AlarmListener*>(), &AlarmListener::signalNewAlarmComing, &dlg,
        [&](const publicdatacontroller::IntelAlarmEventInfo& r) {
            const AlarmDecision d = CAlarmClassifier::Classify(r, config);
            ++passed;
            normal += d.normalDelta;
            noMask += d.noMaskDelta;
            abnormal += d.abnormalDelta;
            lastEvent = r.eventID;
        });

    commlayer::CAlarmSubscription sub(sim.device(), 0);
    sub.Start();
    ASSERT_TRUE(testsupport::waitUntil([&] { return sim.control("GET", "/control/stats").contains("\"clients\":1"); }));
    ASSERT_TRUE(sim.control("POST", "/control/burst", R"({"count":3000,"eventCode":100119})").contains("true"));
    ASSERT_TRUE(testsupport::waitUntil([&] { return sub.Stats().events >= 3000; }, 60000));
    const auto shown = [&](const char* name) { return testsupport::child<QLabel>(&dlg, name)->text().toInt(); };
    // On a loaded machine the page takes events in long after the subscription read
    // them: wait for nearly all (the listener drops repeats), then for the label.
    EXPECT_TRUE(testsupport::waitUntil([&] { return shown("labelAllNum") == passed && passed > 2900; }, 30000))
        << passed << " events reached the page";
    sub.Stop();
    EXPECT_TRUE(testsupport::waitUntil([&] { return shown("labelAllNum") == passed; }));
    EXPECT_EQ(shown("labelNormal"), normal);
    EXPECT_EQ(shown("labelNoMask"), noMask);
    EXPECT_EQ(shown("labelAbnormal"), abnormal);

    QLayout* list = testsupport::child<QWidget>(&dlg, "m_pRightListWidget")->layout();
    ASSERT_TRUE(testsupport::waitUntil([&] {
        const auto* newest = qobject_cast<CAlarmUnit*>(list->itemAt(list->count() - 1)->widget());
        return newest != nullptr && newest->info().eventID == lastEvent;
    }));
    EXPECT_EQ(list->count(), 21);  // the spacer and 20 cards
    EXPECT_EQ(dlg.findChild<CBottomWidget*>()->layout()->count(), 22);  // the spacer and 21 cards
}
