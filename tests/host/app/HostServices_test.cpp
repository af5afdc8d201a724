// The host's background services: one alarm subscription per configured
// device, running while the services object lives.
#include <gtest/gtest.h>

#include "HostServices.h"
#include "publicdatacontroller/AlarmTransfer.h"
#include "support/DeviceSim.h"

TEST(HostServices, AlarmsOfEveryConfiguredDeviceReachTheTransferUntilStopped)
{
    testsupport::DeviceSim a, b;
    for (auto* sim : {&a, &b})
        ASSERT_TRUE(sim->start());
    clientcommonlogical::CConfigMgr::Instance()->SetDevices({a.device("DEV-A"), b.device("DEV-B")});

    std::vector<std::string> seen;
    QObject context;
    QObject::connect(Base::CSingleton<publicdatacontroller::AlarmTransfer>::Instance(),
        &publicdatacontroller::AlarmTransfer::signalAlarmEventInfo, &context, [&seen](void* p) {
            const auto& info = static_cast<publicdatacontroller::CIntelAlarmObject*>(p)->info();
            seen.push_back(info.deviceID + "/" + info.cameraID);
        });

    auto running = HostServices::Start();
    for (auto* sim : {&a, &b})
        ASSERT_TRUE(testsupport::waitUntil([sim] { return sim->control("GET", "/control/stats").contains("\"clients\":1"); }));
    a.control("POST", "/control/event", R"({"eventCode":100119,"channelID":1})");
    b.control("POST", "/control/event", R"({"eventCode":100101,"channelID":3})");
    ASSERT_TRUE(testsupport::waitUntil([&seen] { return seen.size() >= 2; }));
    std::sort(seen.begin(), seen.end());
    EXPECT_EQ(seen, (std::vector<std::string>{"DEV-A/DEV-A-CH1", "DEV-B/DEV-B-CH3"}));

    // Destroying the services closes the streams.
    running.reset();
    for (auto* sim : {&a, &b})
        EXPECT_TRUE(testsupport::waitUntil([sim] { return sim->control("GET", "/control/stats").contains("\"clients\":0"); }));
}
