// Prints what live view costs:
//  1. CPU time of one play window (640x360) against `ffmpeg -f null` decoding
//     the same stream for the same time, and their ratio;
//  2. nine windows of a 1920x1080 grid playing 640x360@25 streams at once:
//     frames decoded and painted per window and second, GUI repaints per
//     second, CPU of the whole process, and the same without what the GUI
//     heartbeat (the probe of GUI responsiveness) costs on its own.
// Streams: an MJPEG clip encoded once by ffmpeg, served over HTTP on
// 127.0.0.1 by a child process of this program (so serving costs nothing here).
// Usage: bench_play_windows [seconds per phase, default 10]
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>
#include <arpa/inet.h>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <netinet/in.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "playwindow/CStreamPlayWindowWithTask.h"

namespace {

double CpuSeconds(int who)
{
    rusage u{};
    getrusage(who, &u);
    return u.ru_utime.tv_sec + u.ru_stime.tv_sec + (u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
}

std::vector<QByteArray> SplitJpegs(const QByteArray& data)
{
    std::vector<QByteArray> parts;
    int start = data.indexOf("\xff\xd8\xff");
    while (start >= 0) {
        const int next = data.indexOf("\xff\xd8\xff", start + 3);
        parts.push_back(data.mid(start, next < 0 ? -1 : next - start));
        start = next;
    }
    return parts;
}

// The child: serves every client the clip in a loop at 25 pictures per second.
[[noreturn]] void Serve(int listenFd, std::vector<QByteArray> parts)
{
    signal(SIGPIPE, SIG_IGN);
    for (;;) {
        const int fd = accept(listenFd, nullptr, nullptr);
        if (fd < 0)
            _exit(0);
        std::thread([fd, &parts] {
            char req[4096];
            (void)recv(fd, req, sizeof(req), 0);
            auto send = [fd](const QByteArray& b) { return ::send(fd, b.constData(), size_t(b.size()), MSG_NOSIGNAL) == b.size(); };
            bool ok = send("HTTP/1.0 200 OK\r\nContent-Type: multipart/x-mixed-replace;boundary=frame\r\n\r\n");
            auto next = std::chrono::steady_clock::now();
            for (size_t i = 0; ok; ++i) {
                const QByteArray& p = parts[i % parts.size()];
                ok = send("--frame\r\nContent-Type: image/jpeg\r\nContent-Length: " + QByteArray::number(p.size()) + "\r\n\r\n")
                    && send(p) && send("\r\n");
                next += std::chrono::milliseconds(40);
                std::this_thread::sleep_until(next);
            }
            close(fd);
        }).detach();
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const int seconds = argc > 1 ? std::max(2, atoi(argv[1])) : 10;

    // Encode the clip before QApplication exists (the child must not inherit Qt state).
    QTemporaryDir tmp;
    const QString clip = tmp.filePath(QStringLiteral("clip.mjpeg"));
    if (QProcess::execute(QStringLiteral("ffmpeg"), {QStringLiteral("-hide_banner"), QStringLiteral("-loglevel"), QStringLiteral("error"),
            QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"), QStringLiteral("testsrc2=size=640x360:rate=25"),
            QStringLiteral("-t"), QStringLiteral("8"), QStringLiteral("-q:v"), QStringLiteral("4"), QStringLiteral("-f"),
            QStringLiteral("mjpeg"), clip}) != 0) {
        fprintf(stderr, "ffmpeg could not encode the clip\n");
        return 1;
    }
    QFile f(clip);
    f.open(QIODevice::ReadOnly);
    std::vector<QByteArray> parts = SplitJpegs(f.readAll());
    const int listenFd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    bind(listenFd, reinterpret_cast<sockaddr*>(&a), sizeof(a));
    listen(listenFd, 32);
    socklen_t len = sizeof(a);
    getsockname(listenFd, reinterpret_cast<sockaddr*>(&a), &len);
    const QString url = QStringLiteral("http://127.0.0.1:%1/live").arg(ntohs(a.sin_port));
    const pid_t server = fork();
    if (server == 0)
        Serve(listenFd, std::move(parts));
    close(listenFd);

    QApplication app(argc, argv);
    printf("clip: %zu pictures 640x360 MJPEG at 25/s, %d s per phase, %u cores\n", parts.size(), seconds,
        std::thread::hardware_concurrency());

    // 1. ffmpeg decoding the stream for the given time.
    const double childBefore = CpuSeconds(RUSAGE_CHILDREN);
    QProcess::execute(QStringLiteral("ffmpeg"), {QStringLiteral("-hide_banner"), QStringLiteral("-loglevel"), QStringLiteral("error"),
        QStringLiteral("-i"), url, QStringLiteral("-t"), QString::number(seconds), QStringLiteral("-f"), QStringLiteral("null"),
        QStringLiteral("-")});
    const double ffmpegCpu = CpuSeconds(RUSAGE_CHILDREN) - childBefore;

    auto run = [&](int count, QSize area, QSize windowSize, bool heartbeat) {
        QWidget top;
        top.resize(area);
        std::vector<CStreamPlayWindowWithTask*> windows;
        const int cols = count == 1 ? 1 : 3;
        for (int i = 0; i < count; ++i) {
            auto* w = new CStreamPlayWindowWithTask(i, &top);
            w->setGeometry((i % cols) * (windowSize.width() + 1), (i / cols) * (windowSize.height() + 1), windowSize.width(),
                windowSize.height());
            windows.push_back(w);
        }
        // GUI heartbeat: a widget asking to repaint 60 times a second.
        int repaints = 0;
        QTimer beat;
        QObject::connect(&beat, &QTimer::timeout, &top, [&top, &repaints] {
            top.repaint(0, 0, 1, 1);
            ++repaints;
        });
        top.show();
        for (auto* w : windows)
            w->StartPreviewUrl(url, "bench");
        // Warm-up: connections, probing.
        auto spin = [](int ms) {
            QEventLoop loop;
            QTimer::singleShot(ms, &loop, &QEventLoop::quit);
            loop.exec();
        };
        spin(1500);
        std::vector<uint64_t> dec0, paint0;
        for (auto* w : windows) {
            dec0.push_back(w->DecodedFrames());
            paint0.push_back(w->PaintedFrames());
        }
        if (heartbeat)
            beat.start(16);
        const double cpu0 = CpuSeconds(RUSAGE_SELF);
        QElapsedTimer t;
        t.start();
        spin(seconds * 1000);
        const double wall = t.elapsed() / 1000.0;
        const double cpu = CpuSeconds(RUSAGE_SELF) - cpu0;
        beat.stop();
        double dec = 0, paint = 0, minPaint = 1e9;
        for (size_t i = 0; i < windows.size(); ++i) {
            dec += double(windows[i]->DecodedFrames() - dec0[i]) / wall;
            const double p = double(windows[i]->PaintedFrames() - paint0[i]) / wall;
            paint += p;
            minPaint = std::min(minPaint, p);
        }
        for (auto* w : windows)
            w->StopPreview();
        struct Result { double cpu, decoded, painted, minPainted, repaints; };
        return Result{cpu, count > 0 ? dec / count : 0.0, count > 0 ? paint / count : 0.0, minPaint, repaints / wall};
    };

    // Alone, the window is compared with ffmpeg: nothing else asks for CPU.
    const auto one = run(1, QSize(640, 360), QSize(640, 360), false);
    printf("ffmpeg -f null, %d s:            CPU %.3f s\n", seconds, ffmpegCpu);
    printf("one play window 640x360, %d s:   CPU %.3f s  decoded %.1f/s painted %.1f/s\n", seconds, one.cpu, one.decoded, one.painted);
    printf("ratio play window / ffmpeg:      %.2f\n", ffmpegCpu > 0 ? one.cpu / ffmpegCpu : 0.0);

    const auto nine = run(9, QSize(1920, 1080), QSize(639, 359), true);
    printf("nine windows 639x359, %d s:      CPU %.3f s (%.0f%% of one core)  per window %.3f s\n", seconds, nine.cpu,
        100.0 * nine.cpu / seconds, nine.cpu / 9);
    printf("  per window: decoded %.1f/s painted %.1f/s (slowest %.1f/s)\n", nine.decoded, nine.painted, nine.minPainted);
    printf("  GUI heartbeat repaints: %.1f/s (asked 60/s)\n", nine.repaints);
    printf("  ratio per window / ffmpeg:     %.2f\n", ffmpegCpu > 0 ? nine.cpu / 9 / ffmpegCpu : 0.0);
    // The heartbeat is the bench's own probe; what it costs alone is not the windows' cost.
    const auto beatAlone = run(0, QSize(1920, 1080), QSize(639, 359), true);
    printf("  heartbeat alone, same grid:    CPU %.3f s\n", beatAlone.cpu);
    printf("  ratio per window / ffmpeg without the heartbeat: %.2f\n",
        ffmpegCpu > 0 ? (nine.cpu - beatAlone.cpu) / 9 / ffmpegCpu : 0.0);

    kill(server, SIGTERM);
    waitpid(server, nullptr, 0);
    return 0;
}
