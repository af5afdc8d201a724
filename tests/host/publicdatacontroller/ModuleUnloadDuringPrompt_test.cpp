// Unloading the module while a voice prompt is still playing: the prompt's
// worker belongs to the module, so unloading must stop and join it before the
// code goes away. Runs against a private PulseAudio server with a null sink.
#include <QLibrary>
#include <QWidget>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <thread>
#include <gtest/gtest.h>

#include "Base/CSingleton.h"
#include "CommonMethodLib/CUserDataPath.h"
#include "publicdatacontroller/AlarmTransfer.h"
#include "publicdatacontroller/IAIInterface.h"
#include "publicdatacontroller/IAIWidget.h"
#include "support/PrivatePulseServer.h"
#include "support/TestSupport.h"

using namespace publicdatacontroller;

namespace {

TEST(ModuleUnload, StopsAndJoinsAPlayingPrompt)
{
    testsupport::PrivatePulseServer pulse;
    QString why;
    if (!pulse.start(&why))
        GTEST_SKIP() << "no sound server to keep a prompt playing: " << qUtf8Printable(why);
    const auto playing = [] { return testsupport::PrivatePulseServer::somethingPlays(); };

    CUserDataPath::Instance()->setComponentPath(pulse.path(QStringLiteral("component")).toStdString());
    QLibrary lib(testsupport::modulePath());
    ASSERT_TRUE(lib.load()) << qPrintable(lib.errorString());
    auto getInterface = reinterpret_cast<GetAIInterfaceFn>(lib.resolve("getAIInterface"));
    ASSERT_NE(getInterface, nullptr);
    std::unique_ptr<IAIInterface> descriptor(getInterface());
    auto frame = std::make_unique<QWidget>();
    IAIWidget* page = descriptor->getAIWidget(frame.get());
    ASSERT_NE(page, nullptr);
    page->readState();

    // An abnormal temperature speaks the default prompt of the module.
    IntelAlarmEventInfo record;
    record.eventType = 100119;
    record.cameraID = "CAM1";
    protocol::IntelAlarmFaceInfo face;
    face.facePicID = 4711;
    face.TemperatureEnabled = 1;
    face.TemperatureAnomaly = 1;
    face.Mask = 2;
    record.faceInfoList.push_back(face);
    Base::CSingleton<AlarmTransfer>::Instance()->publishAlarm(std::make_shared<CIntelAlarmObject>(record));
    ASSERT_TRUE(testsupport::waitUntil(playing, 5000)) << "the prompt started on the sound server";

    // A hang here is the failure this test is about: fail loudly instead.
    std::mutex mutex;
    std::condition_variable cv;
    bool done = false;
    std::thread watchdog([&] {
        std::unique_lock<std::mutex> lock(mutex);
        if (!cv.wait_for(lock, std::chrono::seconds(20), [&] { return done; })) {
            std::fprintf(stderr, "closing the page and unloading the module hung\n");
            std::abort();
        }
    });
    frame.reset();
    descriptor.reset();
    EXPECT_TRUE(lib.unload()) << qPrintable(lib.errorString());
    {
        std::lock_guard<std::mutex> lock(mutex);
        done = true;
    }
    cv.notify_all();
    watchdog.join();
    EXPECT_TRUE(testsupport::waitUntil([&] { return !playing(); }, 5000)) << "the prompt stopped with the module";
    // Give a stray worker, if there were one, the time to run into unmapped code.
    testsupport::pump(300);

    CUserDataPath::Instance()->setComponentPath(std::string());
}

} // namespace
