// The emulator behaving badly on purpose, end to end through the host kit:
// an alert stream that falls silent without closing, and answers whose body
// never ends.
#include <gtest/gtest.h>

#include "Base/Base.h"
#include "commlayer/CAlarmSubscription.h"
#include "commlayer/CDeviceStateNotifier.h"
#include "commlayer/CommErrors.h"
#include "publicdatacontroller/AlarmTransfer.h"
#include "support/DeviceSim.h"

using testsupport::waitUntil;

TEST(EmulatorHostile, ASilentStreamIsReopenedAndAnIdleOneKeptOpen)
{
    testsupport::DeviceSim sim({"--keepalive-ms", "300"});
    ASSERT_TRUE(sim.start());
    clientcommonlogical::CConfigMgr::Instance()->SetDevices({sim.device()});
    int events = 0;
    QObject context;
    QObject::connect(Base::CSingleton<publicdatacontroller::AlarmTransfer>::Instance(),
        &publicdatacontroller::AlarmTransfer::signalAlarmEventInfo, &context, [&events](void*) { ++events; });
    auto* notifier = commlayer::CDeviceStateNotifier::Instance();
    const QString id = QStringLiteral("TEST0001");

    commlayer::CAlarmSubscription sub(sim.device(), 0);
    sub.SetSilenceLimitMs(1500);
    sub.Start();
    ASSERT_TRUE(waitUntil([&] { return notifier->IsDeviceOnline(id); }));
    // Idle but alive: the keep-alives hold the stream open.
    testsupport::pump(3000);
    EXPECT_EQ(sub.Stats().connects.load(), 1u);
    EXPECT_EQ(sub.Stats().silences.load(), 0u);
    EXPECT_EQ(sub.Stats().errors.load(), 0u);

    // Frozen without closing: caught, reported, and the stream comes back once it speaks again.
    sim.control("POST", "/control/alertStream/silence", R"({"silent":true})");
    ASSERT_TRUE(waitUntil([&] { return !notifier->IsDeviceOnline(id); }, 4000));
    EXPECT_TRUE(notifier->DeviceProblem(id).contains(QStringLiteral("silent")));
    sim.control("POST", "/control/alertStream/silence", R"({"silent":false})");
    ASSERT_TRUE(waitUntil([&] { return notifier->IsDeviceOnline(id); }, 8000));
    ASSERT_TRUE(waitUntil([&] { return sim.control("GET", "/control/stats").contains("\"clients\":1"); }));
    sim.control("POST", "/control/event", R"({"eventCode":100101})");
    EXPECT_TRUE(waitUntil([&] { return events >= 1; }));
}

TEST(EmulatorHostile, EndlessAnswersAreCut)
{
    testsupport::DeviceSim sim;
    ASSERT_TRUE(sim.start());
    clientcommonlogical::CConfigMgr::Instance()->SetDevices({sim.device()});
    const std::pair<int, int> rows[] = {{0, 200}, {500, 500}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.first);
        const QByteArray fault = R"({"path":"/DVAPI/Intelligent/FDLib","endless":true,"status":)"
            + QByteArray::number(row.first) + '}';
        ASSERT_TRUE(sim.control("POST", "/control/fault", fault).contains("true"));
        std::string answer;
        EXPECT_FALSE(testsupport::dvapi("TEST0001", "GET /DVAPI/Intelligent/FDLib\r\n", answer));
        EXPECT_EQ(Base::Error::GetLastError(), std::make_pair(int(commlayer::kErrTooLarge), row.second));
    }
    // The alert stream answered with an endless error page: retried, never streamed, nothing piles up.
    sim.control("DELETE", "/control/fault");
    sim.control("POST", "/control/fault", R"({"path":"/DVAPI/Event","endless":true,"status":500})");
    commlayer::CAlarmSubscription sub(sim.device(), 0);
    sub.Start();
    testsupport::pump(2500);
    EXPECT_EQ(sub.Stats().connects.load(), 0u);
    sim.control("DELETE", "/control/fault");
    EXPECT_TRUE(waitUntil([&] { return sub.Stats().connects >= 1; }, 15000));
}
