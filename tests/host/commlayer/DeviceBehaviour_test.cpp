// Behaviour of the device side as a whole: the emulator's events follow its
// seed, and a subscription must stop even when the device never answers.
#include <gtest/gtest.h>

#include "commlayer/CAlarmSubscription.h"
#include "publicdatacontroller/AlarmTransfer.h"
#include "support/DeviceSim.h"

namespace {

// The first events a device generates, as (code, channel, facePicID, temperature).
std::vector<std::string> firstEvents(unsigned seed, size_t count)
{
    testsupport::DeviceSim sim({QStringLiteral("--seed"), QString::number(seed), QStringLiteral("--rate"), QStringLiteral("40"),
        QStringLiteral("--scene"), QStringLiteral("320x180")});
    EXPECT_TRUE(sim.start());
    std::vector<std::string> out;
    QObject context;
    QObject::connect(Base::CSingleton<publicdatacontroller::AlarmTransfer>::Instance(),
        &publicdatacontroller::AlarmTransfer::signalAlarmEventInfo, &context, [&out](void* p) {
            const auto& e = static_cast<publicdatacontroller::CIntelAlarmObject*>(p)->info();
            const auto& f = e.faceInfoList.at(0);
            EXPECT_TRUE(f.Temperature == 65535.0 || (f.Temperature > 35.0 && f.Temperature < 40.0)) << f.Temperature;
            EXPECT_TRUE(f.Mask == 1 || f.Mask == 2);
            out.push_back(std::to_string(e.eventType) + "/" + std::to_string(e.channel) + "/"
                + std::to_string(f.facePicID) + "/" + std::to_string(f.Temperature));
        });
    commlayer::CAlarmSubscription sub(sim.device(), 0);
    sub.Start();
    EXPECT_TRUE(testsupport::waitUntil([&] { return out.size() >= count; }, 15000));
    sub.Stop();
    out.resize(std::min(out.size(), count));
    return out;
}

TEST(DeviceBehaviour, GeneratedEventsFollowTheSeed)
{
    const auto first = firstEvents(7, 12);
    ASSERT_EQ(first.size(), 12u);
    EXPECT_EQ(firstEvents(7, 12), first);
    EXPECT_NE(firstEvents(8, 12), first);
}

TEST(DeviceBehaviour, SubscriptionStopsWhileADeviceNeverAnswers)
{
    // A port that accepts connections (the kernel does) but never answers.
    testsupport::ListeningSocket silent;
    // Its destructor must return: the open transfer is cut, not waited out.
    commlayer::CAlarmSubscription sub(testsupport::LoopbackDevice("SILENT", silent.port(), "pw"), 100);
    sub.Start();
    testsupport::pump(300);
}

} // namespace
