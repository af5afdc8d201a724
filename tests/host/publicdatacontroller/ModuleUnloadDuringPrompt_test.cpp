// Unloading the module while a voice prompt plays must stop and join the prompt's
// worker before the code goes away (a private PulseAudio server, null sink).
#include <QLibrary>
#include <QWidget>
#include <memory>
#include <unistd.h>
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
    const QString why = pulse.start();
    if (!why.isEmpty())
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
    record.faceInfoList.resize(1);
    record.faceInfoList[0].facePicID = 4711;
    record.faceInfoList[0].TemperatureEnabled = 1;
    record.faceInfoList[0].TemperatureAnomaly = 1;
    record.faceInfoList[0].Mask = 2;
    Base::CSingleton<AlarmTransfer>::Instance()->publishAlarm(std::make_shared<CIntelAlarmObject>(record));
    ASSERT_TRUE(testsupport::waitUntil(playing, 5000)) << "the prompt started on the sound server";

    // A hang here is the failure this test is about: the alarm signal ends the
    // process instead of leaving ctest waiting.
    alarm(20);
    frame.reset();
    descriptor.reset();
    EXPECT_TRUE(lib.unload()) << qPrintable(lib.errorString());
    alarm(0);
    EXPECT_TRUE(testsupport::waitUntil([&] { return !playing(); }, 5000)) << "the prompt stopped with the module";
    // Give a stray worker, if there were one, the time to run into unmapped code.
    testsupport::pump(300);

    CUserDataPath::Instance()->setComponentPath(std::string());
}

} // namespace
