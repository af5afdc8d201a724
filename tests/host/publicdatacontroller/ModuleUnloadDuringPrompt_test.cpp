// Unloading the module while a voice prompt is still playing: the prompt's
// worker belongs to the module, so unloading must stop and join it before the
// code goes away. Runs against a private PulseAudio server with a null sink.
#include <QFile>
#include <QLibrary>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
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
#include "support/TestSupport.h"

using namespace publicdatacontroller;

namespace {

QString run(const QString& program, const QStringList& args)
{
    QProcess p;
    p.setStandardErrorFile(QProcess::nullDevice());
    p.start(program, args);
    if (!p.waitForFinished(5000) || p.exitStatus() != QProcess::NormalExit || p.exitCode() != 0)
        return QStringLiteral("<failed>");
    return QString::fromLocal8Bit(p.readAllStandardOutput());
}

TEST(ModuleUnload, StopsAndJoinsAPlayingPrompt)
{
    if (QStandardPaths::findExecutable(QStringLiteral("pulseaudio")).isEmpty())
        GTEST_SKIP() << "pulseaudio is not installed: no sound server to keep a prompt playing";

    QTemporaryDir dir;
    QFile::setPermissions(dir.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QFile script(dir.filePath(QStringLiteral("test.pa")));
    ASSERT_TRUE(script.open(QIODevice::WriteOnly));
    script.write("load-module module-native-protocol-unix auth-anonymous=1\n"
                 "load-module module-null-sink sink_name=testsink rate=48000\n"
                 "set-default-sink testsink\n");
    script.close();
    qputenv("XDG_RUNTIME_DIR", dir.path().toLocal8Bit());
    qputenv("PULSE_SERVER", "unix:" + dir.filePath(QStringLiteral("pulse/native")).toLocal8Bit());
    QProcess daemon;
    daemon.setStandardOutputFile(QProcess::nullDevice());
    daemon.setStandardErrorFile(QProcess::nullDevice());
    daemon.start(QStringLiteral("pulseaudio"), {QStringLiteral("-n"), QStringLiteral("-F"), script.fileName(),
                                                  QStringLiteral("--daemonize=no"), QStringLiteral("--exit-idle-time=-1")});
    ASSERT_TRUE(daemon.waitForStarted(5000));
    ASSERT_TRUE(testsupport::waitUntil(
        [] { return run(QStringLiteral("pactl"), {QStringLiteral("info")}) != QStringLiteral("<failed>"); }, 10000));
    const auto playing = [] {
        return !run(QStringLiteral("pactl"), {QStringLiteral("list"), QStringLiteral("short"), QStringLiteral("sink-inputs")})
                    .trimmed()
                    .isEmpty();
    };

    CUserDataPath::Instance()->setComponentPath(dir.filePath(QStringLiteral("component")).toStdString());
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

    daemon.terminate();
    daemon.waitForFinished(5000);
    qunsetenv("PULSE_SERVER");
    qunsetenv("XDG_RUNTIME_DIR");
    CUserDataPath::Instance()->setComponentPath(std::string());
}

} // namespace
