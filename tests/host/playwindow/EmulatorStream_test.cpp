// Play windows against the device emulator's live MJPEG streams (HTTP digest
// authentication, channels going offline and back), over the host's logic model.
#include <gtest/gtest.h>

#include "playwindow/CStreamDecoder.h"
#include "playwindow/CStreamPlayWindowWithTask.h"
#include "support/DeviceSim.h"
#include "support/HostRuns.h"
#include "support/LoopbackStream.h"

namespace {

TEST(EmulatorStream, ChannelPlaysGoesOfflineAndComesBack)
{
    testsupport::DeviceSim sim;
    ASSERT_TRUE(sim.start());
    clientcommonlogical::CConfigMgr::Instance()->SetDevices({sim.device("TEST0001", testsupport::DeviceSim::kPassword)});
    testsupport::LogicModelPlugin plugin;
    testsupport::ShownWindow w;
    w.SetLiveViewControllerPlugin(&plugin);
    std::vector<CLiveViewEvent> events;
    QObject::connect(&w, &CStreamPlayWindowWithTask::SignalLiveViewEvent, &w, [&events](CLiveViewEvent e) { events.push_back(e); });
    const auto nonBlack = [&w] { return testsupport::NonBlack(w.CurrentFrame()); };
    ASSERT_TRUE(w.StartPreview("TEST0001-CH2", 100, 0, 0));
    ASSERT_TRUE(w.HasStream());
    EXPECT_TRUE(testsupport::waitUntil(nonBlack, 3000));
    EXPECT_EQ(w.CurrentFrame().size(), QSize(640, 360));

    sim.control("POST", "/control/channel", R"({"channel":2,"online":false})");
    EXPECT_TRUE(testsupport::waitUntil([&w] { return w.MessageText().contains(QLatin1String("Retrying")); }, 8000));
    EXPECT_FALSE(w.HasFrame());
    sim.control("POST", "/control/channel", R"({"channel":2,"online":true})");
    EXPECT_TRUE(testsupport::waitUntil(nonBlack, 12000));

    w.StopPreview();
    EXPECT_FALSE(w.IsPreviewing());
    EXPECT_EQ(playwindow::CStreamDecoder::LiveDecoders(), 0);  // the decode thread has ended
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[0].GetEventType(), CLiveViewEvent::PreviewStarted);
    EXPECT_EQ(events[1].GetEventType(), CLiveViewEvent::PreviewStopped);
    EXPECT_EQ(events[1].GetCameraID(), "TEST0001-CH2");
}

} // namespace
