// Prints what RTSP live view costs, against the emulator's RTSP server
// (a child process; its own CPU is reported apart):
//  - for H.264 and H.265: `ffmpeg -f null` decoding one sub stream (640x360)
//    and one main stream (1920x1080), as CPU per frame once started (its
//    start-up, a fixed cost, is measured by a one-frame run and printed apart);
//  - nine sub-stream windows of a 1920x1080 grid: CPU per frame and window
//    and its ratio to ffmpeg's, decoded and painted frames per second;
//  - one main-stream window at 1920x1080: the same, and the emulator's CPU
//    while it serves that stream;
//  - time from start to first frame, and from maximising a grid window to
//    the first picture of its main stream;
//  - the emulator's CPU while it serves four different sub streams.
// The windows' CPU is taken once they play, so both sides are steady state.
// Usage: rtsp_windows [seconds per phase, default 8] [h264|h265: that codec only]
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFrame>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

#include "UiDataController/CLogicModel.h"
#include "aiguitoolkit/CWidgetLayoutMgr.h"
#include "clientcommonlogical/CConfigMgr.h"
#include "playwindow/CLiveViewControllerPlugin.h"
#include "playwindow/CStreamPlayWindowWithTask.h"

namespace {

const char* kUser = "admin";
const char* kPassword = "bench-pw";
constexpr int kFps = 25;  // the emulator's

double CpuSeconds(int who)
{
    rusage u{};
    getrusage(who, &u);
    return u.ru_utime.tv_sec + u.ru_stime.tv_sec + (u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
}

// CPU seconds a process has used so far (from /proc).
double ProcessCpu(qint64 pid)
{
    QFile f(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!f.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray stat = f.readAll();
    const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    return (fields.value(11).toDouble() + fields.value(12).toDouble()) / double(sysconf(_SC_CLK_TCK));
}

void Spin(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

bool WaitFor(const std::function<bool()>& pred, int ms)
{
    QElapsedTimer t;
    t.start();
    while (!pred() && t.elapsed() < ms)
        Spin(5);
    return pred();
}

class ModelPlugin final : public CLiveViewControllerPlugin {
public:
    explicit ModelPlugin(UiDataController::CLogicModel& model) : m_model(model) {}
    vantordesk::IElement* GetElement(const std::string& id) override { return m_model.GetElementByID(id); }

private:
    UiDataController::CLogicModel& m_model;
};

struct Phase {
    double cpu;
    double perFrame;     // CPU per decoded frame and window
    double decoded;      // per window and second
    double painted;
    double minPainted;
    double simCpu;       // the emulator's share of one core
};

// count windows playing urls[i % urls.size()] for the given time.
Phase Play(const QStringList& urls, int count, QSize cell, int seconds, qint64 simPid)
{
    QWidget top;
    top.resize(cell.width() * std::min(count, 3), cell.height() * ((count + 2) / 3));
    std::vector<CStreamPlayWindowWithTask*> windows;
    for (int i = 0; i < count; ++i) {
        auto* w = new CStreamPlayWindowWithTask(i, &top);
        w->setGeometry((i % 3) * cell.width(), (i / 3) * cell.height(), cell.width() - 1, cell.height() - 1);
        windows.push_back(w);
    }
    top.show();
    for (int i = 0; i < count; ++i)
        windows[size_t(i)]->StartPreviewUrl(urls[i % urls.size()], "bench");
    WaitFor([&] {
        for (auto* w : windows)
            if (!w->HasFrame())
                return false;
        return true;
    }, 8000);
    Spin(1000);
    std::vector<uint64_t> dec0, paint0;
    for (auto* w : windows) {
        dec0.push_back(w->DecodedFrames());
        paint0.push_back(w->PaintedFrames());
    }
    const double cpu0 = CpuSeconds(RUSAGE_SELF);
    const double sim0 = ProcessCpu(simPid);
    QElapsedTimer t;
    t.start();
    Spin(seconds * 1000);
    const double wall = t.elapsed() / 1000.0;
    Phase r{CpuSeconds(RUSAGE_SELF) - cpu0, 0, 0, 0, 1e9, (ProcessCpu(simPid) - sim0) / wall};
    uint64_t frames = 0;
    for (size_t i = 0; i < windows.size(); ++i) {
        frames += windows[i]->DecodedFrames() - dec0[i];
        r.decoded += double(windows[i]->DecodedFrames() - dec0[i]) / wall / count;
        const double p = double(windows[i]->PaintedFrames() - paint0[i]) / wall;
        r.painted += p / count;
        r.minPainted = std::min(r.minPainted, p);
    }
    r.perFrame = frames > 0 ? r.cpu / double(frames) : 0;
    for (auto* w : windows)
        w->StopPreview();
    return r;
}

double FfmpegRun(const QString& url, int frames)
{
    const double before = CpuSeconds(RUSAGE_CHILDREN);
    QProcess::execute(QStringLiteral("ffmpeg"), {QStringLiteral("-hide_banner"), QStringLiteral("-loglevel"),
        QStringLiteral("error"), QStringLiteral("-rtsp_transport"), QStringLiteral("tcp"), QStringLiteral("-i"), url,
        QStringLiteral("-frames:v"), QString::number(frames), QStringLiteral("-f"), QStringLiteral("null"),
        QStringLiteral("-")});
    return CpuSeconds(RUSAGE_CHILDREN) - before;
}

struct FfmpegCost {
    double startup;   // loading, connecting, probing, the first frame
    double perFrame;  // each further frame
};

FfmpegCost Ffmpeg(const QString& url, int seconds)
{
    const int frames = seconds * kFps;
    const double one = FfmpegRun(url, 1);
    const double all = FfmpegRun(url, frames);
    return {one, std::max(0.0, all - one) / (frames - 1)};
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const int seconds = argc > 1 ? std::max(2, atoi(argv[1])) : 8;
    const QString only = argc > 2 ? QString::fromLatin1(argv[2]) : QString();
    QApplication app(argc, argv);

    QTemporaryDir tmp;
    const int httpPort = 18000 + int(getpid() % 1000);
    const int rtspPort = httpPort + 1000;
    QProcess sim;
    sim.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    sim.start(QCoreApplication::applicationDirPath() + QStringLiteral("/devicesim"),
        {QStringLiteral("--listen"), QStringLiteral("127.0.0.1"), QStringLiteral("--port"), QString::number(httpPort),
            QStringLiteral("--rtsp-port"), QString::number(rtspPort), QStringLiteral("--rate"), QStringLiteral("0"),
            QStringLiteral("--user"), QLatin1String(kUser), QStringLiteral("--password"), QLatin1String(kPassword),
            QStringLiteral("--db"), tmp.filePath(QStringLiteral("sim.db")), QStringLiteral("--log"),
            tmp.filePath(QStringLiteral("sim.log"))});
    if (!sim.waitForStarted(5000)) {
        fprintf(stderr, "devicesim did not start\n");
        return 1;
    }
    Spin(1500);
    auto url = [rtspPort](int ch, const char* codec, const char* profile) {
        return QStringLiteral("rtsp://%1:%2@127.0.0.1:%3/ch%4/%5/%6")
            .arg(QLatin1String(kUser), QLatin1String(kPassword))
            .arg(rtspPort)
            .arg(ch)
            .arg(QLatin1String(codec), QLatin1String(profile));
    };
    printf("%d s per phase, %u cores; streams from the emulator's RTSP server over TCP\n", seconds,
        std::thread::hardware_concurrency());

    // The emulator's own cost: four different sub streams played by ffmpeg at once.
    {
        std::vector<std::unique_ptr<QProcess>> players;
        const double simBefore = ProcessCpu(sim.processId());
        for (int ch = 1; ch <= 4; ++ch) {
            players.push_back(std::make_unique<QProcess>());
            players.back()->start(QStringLiteral("ffmpeg"), {QStringLiteral("-loglevel"), QStringLiteral("quiet"),
                QStringLiteral("-rtsp_transport"), QStringLiteral("tcp"), QStringLiteral("-i"), url(ch, "h264", "sub"),
                QStringLiteral("-t"), QString::number(seconds), QStringLiteral("-f"), QStringLiteral("null"),
                QStringLiteral("-")});
        }
        for (auto& p : players)
            p->waitForFinished(seconds * 1000 + 15000);
        const double simCpu = ProcessCpu(sim.processId()) - simBefore;
        printf("emulator serving 4 H.264 sub streams: %.0f%% of one core\n", 100.0 * simCpu / seconds);
    }

    for (const char* codec : {"h264", "h265"}) {
        if (!only.isEmpty() && only != QLatin1String(codec))
            continue;
        const FfmpegCost ffSub = Ffmpeg(url(1, codec, "sub"), seconds);
        const FfmpegCost ffMain = Ffmpeg(url(1, codec, "main"), seconds);
        QStringList subs;
        for (int ch = 1; ch <= 4; ++ch)
            subs << url(ch, codec, "sub");
        const Phase nine = Play(subs, 9, QSize(640, 360), seconds, sim.processId());
        const Phase main = Play({url(1, codec, "main")}, 1, QSize(1920, 1080), seconds, sim.processId());
        const auto ratio = [](double ours, double ff) { return ff > 0 ? ours / ff : 0.0; };
        printf("%s sub 640x360:   ffmpeg %.2f ms/frame (start-up %.2f s) | nine windows %.2f ms/frame each, "
               "ratio %.2f; decoded %.1f/s painted %.1f/s (slowest %.1f/s)\n",
            codec, 1000 * ffSub.perFrame, ffSub.startup, 1000 * nine.perFrame, ratio(nine.perFrame, ffSub.perFrame),
            nine.decoded, nine.painted, nine.minPainted);
        printf("%s main 1920x1080: ffmpeg %.2f ms/frame (start-up %.2f s) | one window %.2f ms/frame, ratio %.2f; "
               "decoded %.1f/s painted %.1f/s; emulator %.0f%% of one core\n",
            codec, 1000 * ffMain.perFrame, ffMain.startup, 1000 * main.perFrame, ratio(main.perFrame, ffMain.perFrame),
            main.decoded, main.painted, 100 * main.simCpu);
    }

    // Start to first frame, and maximise (double click) to the main stream's first picture.
    clientcommonlogical::DeviceConfig dev;
    dev.id = "BENCH";
    dev.address = "127.0.0.1";
    dev.port = httpPort;
    dev.rtspPort = rtspPort;
    dev.user = kUser;
    dev.password = kPassword;
    clientcommonlogical::ChannelConfig ch;
    ch.channel = 2;
    ch.cameraId = "BENCH-CH2";
    ch.mainStream = "/ch2/h264/main";
    ch.subStream = "/ch2/h264/sub";
    dev.channels.push_back(ch);
    clientcommonlogical::CConfigMgr::Instance()->SetDevices({dev});
    UiDataController::CLogicModel model(UiDataController::StruResouceOfElementParam(),
        std::make_shared<clientcommonlogical::CGroupManagerDeletage>(), nullptr);
    ModelPlugin plugin(model);
    QFrame container;
    container.resize(1920, 1080);
    QList<QWidget*> windows;
    for (int i = 0; i < 4; ++i) {
        auto* w = new CStreamPlayWindowWithTask(i, &container);
        w->SetLiveViewControllerPlugin(&plugin);
        windows.append(w);
    }
    aiguitoolkit::CWidgetLayoutMgr layout;
    layout.Init(QString(), windows, &container, 2);
    container.show();
    auto* w = static_cast<CStreamPlayWindowWithTask*>(windows[0]);
    QElapsedTimer t;
    t.start();
    w->StartPreview("BENCH-CH2", 100, 0, 0);
    WaitFor([w] { return w->HasFrame(); }, 10000);
    printf("start to first frame (sub stream): %lld ms\n", t.elapsed());
    Spin(500);
    t.restart();
    layout.MaximizeWindow(w);
    WaitFor([w] { return w->PlayingUrl().endsWith(QLatin1String("/main")); }, 10000);
    printf("maximise to the main stream's first picture: %lld ms (the sub stream stays on screen meanwhile)\n",
        t.elapsed());
    w->StopPreview();

    sim.terminate();
    sim.waitForFinished(5000);
    return 0;
}
