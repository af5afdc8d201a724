// Prints what RTSP live view costs, on a 1920x1080 X server of its own
// (Xvfb, started here) against the emulator's RTSP server (a child process,
// not counted), beside two players that also show the picture:
//  - per codec (H.264, H.265), stream (sub 640x360, main 1920x1080) and
//    window count (1, 4, 9 in the grid cells the page gives them, odd
//    widths included): the host's CPU, ffplay's and mpv's playing the same
//    streams in windows of the same sizes and places, each with the X
//    server's CPU while it ran (the display is part of the cost); rounds
//    alternate host and players, and min and median over the rounds are
//    printed with host/ffplay and host/mpv;
//  - the host's own cost per picture by step: decoding, conversion and
//    scaling (one step), painting (with the copy into the backing store),
//    the rest of the GUI thread (events, hand-over to X), the X server;
//  - the pictures each of them gets on the screen per second (counted from
//    the X server's damage reports, the slowest window of a row): a player
//    that drops pictures would look cheap; a row where one shows fewer than
//    the streams' 25 per window is marked "short";
//  - one 1600x900 window of a sub stream;
//  - time from start to first frame, and from maximising a grid window to
//    the first picture of its main stream.
// Other processes on the machine move the figures: compare within a run.
// Usage: bench_rtsp_windows [seconds per run, default 6] [rounds, default 3] [only: h264 h265 sub main 1 4 9 1600]
//        bench_rtsp_windows --quick [only: ...]   (4 s per run, 2 rounds: the whole table in about ten minutes)
// --snapshot DIR (before the rest) writes what the host's windows paint, one
// PNG per row (host-h264-sub-4.png), to look at.
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFrame>
#include <QProcess>
#include <QSocketNotifier>
#include <QTemporaryDir>
#include <QTimer>
#include <QUrl>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

#include "UiDataController/CLogicModel.h"
#include "aiguitoolkit/CWidgetLayoutMgr.h"
#include "clientcommonlogical/CConfigMgr.h"
#include "playwindow/CLiveViewControllerPlugin.h"
#include "playwindow/CStreamPlayWindowWithTask.h"

#include "ScreenFrames.h"

namespace {

const char* kUser = "admin";
const char* kPassword = "bench-pw";

double CpuSeconds(int who)
{
    rusage u{};
    getrusage(who, &u);
    return u.ru_utime.tv_sec + u.ru_stime.tv_sec + (u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
}

double ThreadCpuSeconds()
{
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return ts.tv_sec + ts.tv_nsec / 1e9;
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

// The grid cells the page gives its play windows on a 1920x1080 screen.
struct Grid {
    int count;
    QPoint origin;
    QSize cell;
    int columns;
    QRect Cell(int i) const
    {
        return QRect(origin + QPoint((i % columns) * cell.width(), (i / columns) * cell.height()), cell);
    }
};

struct Run {
    double cores = 0;      // the player's process, share of one core
    double xCores = 0;     // the X server's while it ran
    double shownFps = 0;   // pictures on the screen per second, slowest window
    double Total() const { return cores + xCores; }
};

constexpr double kStreamFps = 25;
// Below this a window visibly drops pictures.
constexpr double kShortFps = kStreamFps * 0.92;

std::vector<QRect> Cells(const Grid& grid)
{
    std::vector<QRect> cells;
    for (int i = 0; i < grid.count; ++i)
        cells.push_back(grid.Cell(i));
    return cells;
}

// Counts what reaches the screen in the grid's cells while the event loop turns.
class ScreenWatch final {
public:
    explicit ScreenWatch(const Grid& grid) : m_frames(Cells(grid))
    {
        if (!m_frames.Valid())
            return;
        m_notifier = std::make_unique<QSocketNotifier>(m_frames.Socket(), QSocketNotifier::Read);
        QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] { m_frames.Read(); });
    }
    bool EveryCellShown()
    {
        m_frames.Read();
        const auto& c = m_frames.Counts();
        return !m_frames.Valid() || std::all_of(c.begin(), c.end(), [](int n) { return n > 0; });
    }
    void Reset() { m_frames.Reset(); }
    // Pictures per second in the slowest cell since Reset().
    double SlowestFps(double wall)
    {
        m_frames.Read();
        const auto& c = m_frames.Counts();
        return c.empty() || !m_frames.Valid() ? 0 : *std::min_element(c.begin(), c.end()) / wall;
    }

private:
    ScreenFrames m_frames;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

struct HostRun : Run {
    double fps = 0;         // decoded pictures per second and window
    double paintedFps = 0;  // painted, slowest window
    double perPictureMs = 0, decodeMs = 0, convertMs = 0, paintMs = 0, guiRestMs = 0, xMs = 0;
};

QString g_snapshotDir;

HostRun PlayHost(const QStringList& urls, const Grid& grid, int seconds, qint64 xPid)
{
    QWidget top(nullptr, Qt::FramelessWindowHint);
    top.setGeometry(QRect(0, 0, 1920, 1080));
    std::vector<CStreamPlayWindowWithTask*> windows;
    for (int i = 0; i < grid.count; ++i) {
        auto* w = new CStreamPlayWindowWithTask(i, &top);
        w->setGeometry(grid.Cell(i));
        windows.push_back(w);
    }
    top.show();
    ScreenWatch screen(grid);
    for (int i = 0; i < grid.count; ++i)
        windows[size_t(i)]->StartPreviewUrl(urls[i % urls.size()], "bench");
    WaitFor([&] {
        for (auto* w : windows)
            if (!w->HasFrame())
                return false;
        return true;
    }, 10000);
    Spin(1000);
    if (!g_snapshotDir.isEmpty()) {
        const QUrl first(urls.value(0));
        top.grab().save(QStringLiteral("%1/host%2-%3.png")
                            .arg(g_snapshotDir, first.path().mid(first.path().indexOf(QLatin1Char('/'), 1))
                                                    .replace(QLatin1Char('/'), QLatin1Char('-')))
                            .arg(grid.count));
    }
    std::vector<uint64_t> dec0, paint0;
    CStreamPlayWindowWithTask::StepCost cost0;
    for (auto* w : windows) {
        dec0.push_back(w->DecodedFrames());
        paint0.push_back(w->PaintedFrames());
        const auto c = w->StepCosts();
        cost0.decodeNs += c.decodeNs;
        cost0.convertNs += c.convertNs;
        cost0.paintNs += c.paintNs;
    }
    const double cpu0 = CpuSeconds(RUSAGE_SELF);
    const double gui0 = ThreadCpuSeconds();
    const double x0 = ProcessCpu(xPid);
    screen.Reset();
    QElapsedTimer t;
    t.start();
    Spin(seconds * 1000);
    const double wall = t.elapsed() / 1000.0;
    HostRun r;
    r.shownFps = screen.SlowestFps(wall);
    const double cpu = CpuSeconds(RUSAGE_SELF) - cpu0;
    const double gui = ThreadCpuSeconds() - gui0;
    const double x = ProcessCpu(xPid) - x0;
    r.cores = cpu / wall;
    r.xCores = x / wall;
    uint64_t frames = 0;
    r.paintedFps = 1e9;
    CStreamPlayWindowWithTask::StepCost cost1;
    for (size_t i = 0; i < windows.size(); ++i) {
        frames += windows[i]->DecodedFrames() - dec0[i];
        r.paintedFps = std::min(r.paintedFps, double(windows[i]->PaintedFrames() - paint0[i]) / wall);
        const auto c = windows[i]->StepCosts();
        cost1.decodeNs += c.decodeNs;
        cost1.convertNs += c.convertNs;
        cost1.paintNs += c.paintNs;
    }
    r.fps = double(frames) / wall / grid.count;
    if (frames > 0) {
        const double n = double(frames);
        r.perPictureMs = 1000 * (cpu + x) / n;
        r.decodeMs = (cost1.decodeNs - cost0.decodeNs) / 1e6 / n;
        r.convertMs = (cost1.convertNs - cost0.convertNs) / 1e6 / n;
        r.paintMs = (cost1.paintNs - cost0.paintNs) / 1e6 / n;
        r.guiRestMs = 1000 * gui / n - r.paintMs;
        r.xMs = 1000 * x / n;
    }
    for (auto* w : windows)
        w->StopPreview();
    return r;
}

enum class Player { Ffplay, Mpv };

// count players of the urls in the grid's cells; CPU once they play.
Run PlayPlayers(Player player, const QStringList& urls, const Grid& grid, int seconds, qint64 xPid)
{
    ScreenWatch screen(grid);
    std::vector<std::unique_ptr<QProcess>> players;
    for (int i = 0; i < grid.count; ++i) {
        const QRect c = grid.Cell(i);
        const QString url = urls[i % urls.size()];
        auto p = std::make_unique<QProcess>();
        p->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        p->setStandardOutputFile(QProcess::nullDevice());
        if (player == Player::Ffplay) {
            // No GPU here: SDL's software renderer, as on a desktop without one.
            QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
            env.insert(QStringLiteral("SDL_RENDER_DRIVER"), QStringLiteral("software"));
            p->setProcessEnvironment(env);
            p->start(QStringLiteral("ffplay"), {QStringLiteral("-loglevel"), QStringLiteral("quiet"),
                QStringLiteral("-rtsp_transport"), QStringLiteral("tcp"), QStringLiteral("-an"),
                QStringLiteral("-noborder"), QStringLiteral("-x"), QString::number(c.width()), QStringLiteral("-y"),
                QString::number(c.height()), QStringLiteral("-left"), QString::number(c.x()), QStringLiteral("-top"),
                QString::number(c.y()), url});
        } else {
            p->start(QStringLiteral("mpv"), {QStringLiteral("--no-config"), QStringLiteral("--really-quiet"),
                QStringLiteral("--no-audio"), QStringLiteral("--vo=x11"), QStringLiteral("--hwdec=no"),
                QStringLiteral("--rtsp-transport=tcp"), QStringLiteral("--no-border"),
                QStringLiteral("--geometry=%1x%2+%3+%4").arg(c.width()).arg(c.height()).arg(c.x()).arg(c.y()),
                QStringLiteral("--force-window=immediate"), url});
        }
        players.push_back(std::move(p));
    }
    // Connected, probed and playing: a picture in every window, then a second to settle.
    WaitFor([&screen] { return screen.EveryCellShown(); }, 10000);
    Spin(1000);
    double cpu0 = 0;
    for (auto& p : players)
        cpu0 += ProcessCpu(p->processId());
    const double x0 = ProcessCpu(xPid);
    screen.Reset();
    QElapsedTimer t;
    t.start();
    Spin(seconds * 1000);
    const double wall = t.elapsed() / 1000.0;
    const double shownFps = screen.SlowestFps(wall);
    double cpu = 0;
    int alive = 0;
    for (auto& p : players) {
        cpu += ProcessCpu(p->processId());
        alive += p->state() == QProcess::Running ? 1 : 0;
    }
    Run r;
    r.shownFps = shownFps;
    r.cores = (cpu - cpu0) / wall;
    r.xCores = (ProcessCpu(xPid) - x0) / wall;
    if (alive != grid.count)
        fprintf(stderr, "  (%d of %d players ran to the end)\n", alive, grid.count);
    for (auto& p : players) {
        p->terminate();
        if (!p->waitForFinished(3000))
            p->kill();
        p->waitForFinished(2000);
    }
    return r;
}

double Median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.empty() ? 0 : v[v.size() / 2];
}

double Min(const std::vector<double>& v)
{
    return v.empty() ? 0 : *std::min_element(v.begin(), v.end());
}

// Starts an X server at 1920x1080 on a free display; its pid, or 0.
qint64 StartX(QProcess& x)
{
    for (int display = 90 + int(getpid() % 50); display < 200; ++display) {
        if (QFile::exists(QStringLiteral("/tmp/.X11-unix/X%1").arg(display))
            || QFile::exists(QStringLiteral("/tmp/.X%1-lock").arg(display)))
            continue;
        x.setStandardOutputFile(QProcess::nullDevice());
        x.setStandardErrorFile(QProcess::nullDevice());
        x.start(QStringLiteral("Xvfb"), {QStringLiteral(":%1").arg(display), QStringLiteral("-screen"),
            QStringLiteral("0"), QStringLiteral("1920x1080x24"), QStringLiteral("-nolisten"), QStringLiteral("tcp")});
        if (!x.waitForStarted(3000))
            return 0;
        for (int i = 0; i < 50 && !QFile::exists(QStringLiteral("/tmp/.X11-unix/X%1").arg(display)); ++i)
            usleep(100000);
        qputenv("DISPLAY", QStringLiteral(":%1").arg(display).toLatin1());
        return x.processId();
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    QStringList filters;
    for (int i = 1; i < argc; ++i)
        filters << QString::fromLatin1(argv[i]);
    const int snapshotAt = filters.indexOf(QStringLiteral("--snapshot"));
    if (snapshotAt >= 0 && snapshotAt + 1 < filters.size()) {
        g_snapshotDir = filters.takeAt(snapshotAt + 1);
        filters.removeAt(snapshotAt);
    }
    // --quick takes no figures of its own: what follows it only picks rows.
    const bool quick = filters.removeAll(QStringLiteral("--quick")) > 0;
    int seconds = quick ? 4 : 6;
    int rounds = quick ? 2 : 3;
    if (!quick && !filters.isEmpty())
        seconds = std::max(2, filters.takeFirst().toInt());
    if (!quick && !filters.isEmpty())
        rounds = std::max(1, filters.takeFirst().toInt());
    QProcess xServer;
    const qint64 xPid = StartX(xServer);
    if (xPid == 0) {
        fprintf(stderr, "Xvfb did not start\n");
        return 1;
    }
    qputenv("QT_QPA_PLATFORM", "xcb");
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
    // The players get the emulator's throwaway credentials in the URL; no
    // device's password ever goes there.
    auto url = [rtspPort](int ch, const char* codec, const char* profile) {
        return QStringLiteral("rtsp://%1:%2@127.0.0.1:%3/ch%4/%5/%6")
            .arg(QLatin1String(kUser), QLatin1String(kPassword))
            .arg(rtspPort)
            .arg(ch)
            .arg(QLatin1String(codec), QLatin1String(profile));
    };
    printf("%s%d s per run, %d rounds, %u cores shared with other work (figures move between runs; the ratios are "
           "within one run); X server Xvfb 1920x1080x24\n",
        quick ? "quick: " : "", seconds, rounds, std::thread::hardware_concurrency());

    // The page's grids on a 1920x1080 screen, as its snapshot places them
    // (its cells are 564 to 566 and 376 or 377 wide: odd widths included).
    const Grid grids[] = {
        {1, QPoint(350, 72), QSize(1131, 795), 1},
        {4, QPoint(350, 72), QSize(565, 397), 2},
        {9, QPoint(350, 72), QSize(377, 265), 3},
    };
    // Table rows run unless only the 1600x900 window is asked for.
    const bool table = filters.isEmpty() || filters != QStringList{QStringLiteral("1600")};
    const auto wanted = [&filters, table](const QString& word, const QStringList& group) {
        bool any = false;
        for (const QString& f : filters)
            any = any || group.contains(f);
        return table && (!any || filters.contains(word));
    };
    const QStringList codecs{QStringLiteral("h264"), QStringLiteral("h265")};
    const QStringList kinds{QStringLiteral("sub"), QStringLiteral("main")};
    const QStringList counts{QStringLiteral("1"), QStringLiteral("4"), QStringLiteral("9")};

    printf("\n| stream | windows (cell) | host cores (+X) min / median | ffplay (+X) min / median | mpv (+X) min / "
           "median | host/ffplay | host/mpv | shown fps host / ffplay / mpv | host decoded, painted |\n"
           "|---|---|---|---|---|---|---|---|---|\n");
    std::vector<std::pair<QString, HostRun>> profiles;
    for (const QString& codec : codecs) {
        if (!wanted(codec, codecs))
            continue;
        for (const QString& kind : kinds) {
            if (!wanted(kind, kinds))
                continue;
            for (const Grid& grid : grids) {
                if (!wanted(QString::number(grid.count), counts))
                    continue;
                QStringList urls;
                for (int ch = 1; ch <= 4; ++ch)
                    urls << url(ch, qPrintable(codec), qPrintable(kind));
                std::vector<double> host, ff, mpv, hostFps, ffFps, mpvFps;
                HostRun last;
                for (int round = 0; round < rounds; ++round) {
                    // The order turns each round, so a neighbour's burst does not always hit the same one.
                    for (int k = 0; k < 3; ++k) {
                        switch ((k + round) % 3) {
                        case 0:
                            last = PlayHost(urls, grid, seconds, xPid);
                            host.push_back(last.Total());
                            hostFps.push_back(last.shownFps);
                            break;
                        case 1: {
                            const Run r = PlayPlayers(Player::Ffplay, urls, grid, seconds, xPid);
                            ff.push_back(r.Total());
                            ffFps.push_back(r.shownFps);
                            break;
                        }
                        default: {
                            const Run r = PlayPlayers(Player::Mpv, urls, grid, seconds, xPid);
                            mpv.push_back(r.Total());
                            mpvFps.push_back(r.shownFps);
                            break;
                        }
                        }
                    }
                }
                // Median over the rounds of the slowest window.
                const double shown[] = {Median(hostFps), Median(ffFps), Median(mpvFps)};
                const bool isShort = *std::min_element(std::begin(shown), std::end(shown)) < kShortFps;
                printf("| %s %s | %d (%dx%d) | %.3f / %.3f | %.3f / %.3f | %.3f / %.3f | %.2f / %.2f | %.2f / %.2f | "
                       "%.1f / %.1f / %.1f%s | %.1f, %.1f |\n",
                    qPrintable(codec), qPrintable(kind), grid.count, grid.cell.width(), grid.cell.height(), Min(host),
                    Median(host), Min(ff), Median(ff), Min(mpv), Median(mpv), Min(host) / Min(ff),
                    Median(host) / Median(ff), Min(host) / Min(mpv), Median(host) / Median(mpv), shown[0], shown[1],
                    shown[2], isShort ? " short" : "", last.fps, last.paintedFps);
                fflush(stdout);
                profiles.emplace_back(QStringLiteral("%1 %2 x%3").arg(codec, kind).arg(grid.count), last);
            }
        }
    }
    printf("\nhost per picture (last round), ms of CPU: total incl. X | decode | convert+scale | paint (incl. copy to "
           "backing store) | rest of GUI thread | X server\n");
    for (const auto& p : profiles) {
        const HostRun& r = p.second;
        printf("  %-14s %6.2f | %5.2f | %5.2f | %5.2f | %5.2f | %5.2f\n", qPrintable(p.first), r.perPictureMs,
            r.decodeMs, r.convertMs, r.paintMs, r.guiRestMs, r.xMs);
    }

    if (filters.isEmpty() || filters.contains(QStringLiteral("1600"))) {
        const Grid big{1, QPoint(100, 100), QSize(1600, 900), 1};
        std::vector<double> host, withX, fps, ff, ffFps, mpv, mpvFps;
        HostRun last;
        for (int round = 0; round < rounds; ++round) {
            last = PlayHost({url(1, "h264", "sub")}, big, seconds, xPid);
            host.push_back(last.cores);
            withX.push_back(last.Total());
            fps.push_back(last.shownFps);
            const Run f = PlayPlayers(Player::Ffplay, {url(1, "h264", "sub")}, big, seconds, xPid);
            ff.push_back(f.Total());
            ffFps.push_back(f.shownFps);
            const Run m = PlayPlayers(Player::Mpv, {url(1, "h264", "sub")}, big, seconds, xPid);
            mpv.push_back(m.Total());
            mpvFps.push_back(m.shownFps);
        }
        const double shown[] = {Median(fps), Median(ffFps), Median(mpvFps)};
        printf("\none 1600x900 window of an H.264 sub stream: host %.3f / %.3f cores, with the X server %.3f / %.3f "
               "(min / median; ffplay %.3f / %.3f, mpv %.3f / %.3f with the X server); shown fps host / ffplay / mpv "
               "%.1f / %.1f / %.1f%s\n",
            Min(host), Median(host), Min(withX), Median(withX), Min(ff), Median(ff), Min(mpv), Median(mpv), shown[0],
            shown[1], shown[2], *std::min_element(std::begin(shown), std::end(shown)) < kShortFps ? " short" : "");
        printf("  per picture (last round), ms of CPU: total incl. X %.2f | decode %.2f | convert+scale %.2f | paint "
               "%.2f | rest of GUI thread %.2f | X server %.2f\n",
            last.perPictureMs, last.decodeMs, last.convertMs, last.paintMs, last.guiRestMs, last.xMs);
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
    printf("\nstart to first frame (sub stream): %lld ms\n", t.elapsed());
    Spin(500);
    t.restart();
    layout.MaximizeWindow(w);
    WaitFor([w] { return w->PlayingUrl().endsWith(QLatin1String("/main")); }, 10000);
    printf("maximise to the main stream's first picture: %lld ms (the sub stream stays on screen meanwhile)\n",
        t.elapsed());
    w->StopPreview();

    sim.terminate();
    sim.waitForFinished(5000);
    xServer.terminate();
    xServer.waitForFinished(3000);
    return 0;
}
