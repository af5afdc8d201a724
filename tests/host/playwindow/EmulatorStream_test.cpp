// Play windows against the device emulator's live MJPEG streams (HTTP digest
// authentication, channels going offline and back), over the host's logic model.
#include <gtest/gtest.h>

#include "UiDataController/CLogicModel.h"
#include "clientcommonlogical/CConfigMgr.h"
#include "playwindow/CLiveViewControllerPlugin.h"
#include "playwindow/CStreamDecoder.h"
#include "playwindow/CStreamPlayWindowWithTask.h"
#include "support/DeviceSim.h"
#include "support/TestSupport.h"

namespace {

// Finds cameras in the host's logic model, as a page's plugin does.
class ModelPlugin final : public CLiveViewControllerPlugin {
public:
    explicit ModelPlugin(UiDataController::CLogicModel& model) : m_model(model) {}
    vantordesk::IElement* GetElement(const std::string& id) override { return m_model.GetElementByID(id); }

private:
    UiDataController::CLogicModel& m_model;
};

bool NonBlack(const QImage& img)
{
    if (img.isNull())
        return false;
    int bright = 0;
    for (int y = 0; y < img.height(); y += 7)
        for (int x = 0; x < img.width(); x += 7)
            bright += qGray(img.pixel(x, y)) > 40 ? 1 : 0;
    return bright > 20;
}

class EmulatorStreamTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(sim.start()); }
    void Configure(const std::string& password)
    {
        clientcommonlogical::CConfigMgr::Instance()->SetDevices({sim.device("TEST0001", password)});
        groups = std::make_shared<clientcommonlogical::CGroupManagerDeletage>();
        model = std::make_unique<UiDataController::CLogicModel>(UiDataController::StruResouceOfElementParam(), groups, nullptr);
        plugin = std::make_unique<ModelPlugin>(*model);
    }
    void TearDown() override { EXPECT_EQ(playwindow::CStreamDecoder::LiveDecoders(), 0); }

    testsupport::DeviceSim sim;
    std::shared_ptr<clientcommonlogical::CGroupManagerDeletage> groups;
    std::unique_ptr<UiDataController::CLogicModel> model;
    std::unique_ptr<ModelPlugin> plugin;
};

TEST_F(EmulatorStreamTest, ChannelPlaysGoesOfflineAndComesBack)
{
    Configure(testsupport::DeviceSim::kPassword);
    CStreamPlayWindowWithTask w(0);
    w.SetLiveViewControllerPlugin(plugin.get());
    w.resize(640, 360);
    w.show();
    ASSERT_TRUE(w.StartPreview("TEST0001-CH2", 100, 0, 0));
    ASSERT_TRUE(w.HasStream());
    EXPECT_TRUE(testsupport::waitUntil([&w] { return NonBlack(w.CurrentFrame()); }, 3000));
    EXPECT_EQ(w.CurrentFrame().size(), QSize(640, 360));

    sim.control("POST", "/control/channel", R"({"channel":2,"online":false})");
    EXPECT_TRUE(testsupport::waitUntil([&w] { return w.MessageText().contains(QLatin1String("Retrying")); }, 8000));
    EXPECT_FALSE(w.HasFrame());
    sim.control("POST", "/control/channel", R"({"channel":2,"online":true})");
    EXPECT_TRUE(testsupport::waitUntil([&w] { return NonBlack(w.CurrentFrame()); }, 12000));

    w.StopPreview();
    EXPECT_EQ(playwindow::CStreamDecoder::LiveDecoders(), 0);
}

TEST_F(EmulatorStreamTest, WrongPasswordIsRetriedWithAMessage)
{
    Configure("not-the-password");
    CStreamPlayWindowWithTask w(0);
    w.SetLiveViewControllerPlugin(plugin.get());
    w.resize(320, 180);
    ASSERT_TRUE(w.StartPreview("TEST0001-CH1", 100, 0, 0));
    EXPECT_TRUE(testsupport::waitUntil([&w] { return w.MessageText().contains(QLatin1String("Retrying")); }, 5000));
    EXPECT_FALSE(w.HasFrame());
    w.StopPreview();
}

} // namespace
