// Measures the live alarm intake: the emulator replays pre-encoded pictures
// (a 1920x1080 scene JPEG and a face JPEG per event) as fast as it can, and
// the intake turns them into host alarm records delivered by AlarmTransfer on
// the GUI thread. Prints events/s, ms/event, intake CPU per event and the
// bytes copied out of the network buffers per picture byte.
//
// usage: bench_alarm_intake [events]   (default 3000)
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <arpa/inet.h>
#include <cstdio>
#include <netinet/in.h>
#include <random>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include "Base/Log.h"
#include "clientcommonlogical/CConfigMgr.h"
#include "commlayer/CAlarmSubscription.h"
#include "publicdatacontroller/AlarmTransfer.h"
#include "support/JpegEncoder.h"

namespace {

int freePort()
{
    const int fd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in addr{};
    addr.sin_family = AF_INET;
    addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t len = sizeof addr;
    int port = 0;
    if (bind(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0
        && getsockname(fd, reinterpret_cast<sockaddr*>(&addr), &len) == 0)
        port = ntohs(addr.sin_port);
    close(fd);
    return port;
}

QByteArray control(int port, const QByteArray& method, const QByteArray& path, const QByteArray& body = QByteArray())
{
    const int fd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in addr{};
    addr.sin_family = AF_INET;
    addr.sin_port = htons(uint16_t(port));
    addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    QByteArray answer;
    if (::connect(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0) {
        const QByteArray req = method + ' ' + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\n"
            + "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
        if (send(fd, req.constData(), size_t(req.size()), MSG_NOSIGNAL) == req.size()) {
            char buf[65536];
            ssize_t n;
            while ((n = recv(fd, buf, sizeof buf, 0)) > 0)
                answer.append(buf, int(n));
        }
    }
    close(fd);
    return answer.mid(answer.indexOf("\r\n\r\n") + 4);
}

// A camera-like 1080p picture: gradients with sensor noise (compresses like a real scene).
QByteArray sceneJpeg()
{
    QImage img(1920, 1080, QImage::Format_RGB32);
    std::mt19937 rng(5);
    for (int y = 0; y < img.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(img.scanLine(y));
        for (int x = 0; x < img.width(); ++x) {
            const int n = int(rng() % 24);
            line[x] = qRgb((x / 8 + n) % 256, (y / 5 + n) % 256, ((x + y) / 12 + n) % 256);
        }
    }
    return testsupport::EncodeJpeg(img, 80);
}

QByteArray faceJpeg()
{
    QImage img(240, 320, QImage::Format_RGB32);
    img.fill(QColor(200, 180, 160));
    QPainter p(&img);
    p.setBrush(QColor(230, 190, 160));
    p.drawEllipse(40, 40, 160, 220);
    p.end();
    return testsupport::EncodeJpeg(img, 85);
}

double processCpuSeconds()
{
    rusage ru{};
    getrusage(RUSAGE_SELF, &ru);
    return double(ru.ru_utime.tv_sec + ru.ru_stime.tv_sec) + double(ru.ru_utime.tv_usec + ru.ru_stime.tv_usec) / 1e6;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const int count = argc > 1 ? std::max(10, std::atoi(argv[1])) : 3000;
    QTemporaryDir dir;
    Base::Log::Init(dir.filePath(QStringLiteral("bench.log")).toStdString());

    const int port = freePort();
    QProcess sim;
    sim.setProgram(QStringLiteral(BT_BIN_DIR "/devicesim"));
    sim.setArguments({QStringLiteral("--port"), QString::number(port), QStringLiteral("--rate"), QStringLiteral("0"),
        QStringLiteral("--user"), QStringLiteral("admin"), QStringLiteral("--password"), QStringLiteral("bench"),
        QStringLiteral("--db"), dir.filePath(QStringLiteral("sim.db")), QStringLiteral("--serial"),
        QStringLiteral("BENCH001"), QStringLiteral("--log"), dir.filePath(QStringLiteral("sim.log"))});
    sim.setStandardOutputFile(QProcess::nullDevice());
    sim.setStandardErrorFile(QProcess::nullDevice());
    sim.start();
    for (int i = 0; i < 200 && !control(port, "GET", "/control/stats").contains("clients"); ++i)
        QThread::msleep(25);

    clientcommonlogical::DeviceConfig dev;
    dev.id = "BENCH001";
    dev.address = "127.0.0.1";
    dev.port = port;
    dev.user = "admin";
    dev.password = "bench";
    clientcommonlogical::CConfigMgr::Instance()->SetDevices({dev});

    uint64_t received = 0;
    QObject context;
    auto* transfer = Base::CSingleton<publicdatacontroller::AlarmTransfer>::Instance();
    QObject::connect(transfer, &publicdatacontroller::AlarmTransfer::signalAlarmEventInfo, &context, [&](void* p) {
        const auto& info = static_cast<publicdatacontroller::CIntelAlarmObject*>(p)->info();
        if (!info.faceInfoList.empty() && !info.faceInfoList[0].bkPic.isEmpty())
            ++received;
    });

    commlayer::CAlarmSubscription sub(dev, 0);
    sub.Start();
    auto pumpUntil = [&](uint64_t target, int timeoutMs) {
        QElapsedTimer t;
        t.start();
        while (received < target && t.elapsed() < timeoutMs)
            app.processEvents(QEventLoop::AllEvents, 5);
        return received >= target;
    };
    QElapsedTimer wait;
    wait.start();
    while (!control(port, "GET", "/control/stats").contains("\"clients\":1") && wait.elapsed() < 5000)
        QThread::msleep(10);

    const QByteArray scene = sceneJpeg();
    const QByteArray face = faceJpeg();
    auto burst = [&](int n) {
        control(port, "POST", "/control/burst",
            "{\"count\":" + QByteArray::number(n) + ",\"eventCode\":100119,\"scene\":\"" + scene.toBase64()
                + "\",\"face\":\"" + face.toBase64() + "\"}");
    };
    burst(50);  // warm-up
    if (!pumpUntil(50, 20000)) {
        fprintf(stderr, "warm-up events did not arrive (%llu)\n", (unsigned long long)received);
        return 1;
    }

    const auto& st = sub.Stats();
    const uint64_t cpu0 = st.cpuNs, events0 = st.events, copied0 = st.copiedBytes, pictures0 = st.pictureBytes;
    const double proc0 = processCpuSeconds();
    QElapsedTimer timer;
    timer.start();
    burst(count);
    const bool all = pumpUntil(50 + uint64_t(count), 120000);
    const double seconds = double(timer.nsecsElapsed()) / 1e9;
    const double proc = processCpuSeconds() - proc0;
    const uint64_t events = st.events - events0;
    const double intakeCpuMs = double(st.cpuNs - cpu0) / 1e6 / double(std::max<uint64_t>(1, events));
    const double copies = double(st.copiedBytes - copied0) / double(std::max<uint64_t>(1, st.pictureBytes - pictures0));

    printf("alarm intake: %d events, scene JPEG %d bytes (1920x1080), face JPEG %d bytes\n", count, int(scene.size()),
        int(face.size()));
    printf("  delivered          %llu%s\n", (unsigned long long)(received - 50), all ? "" : " (incomplete)");
    printf("  wall time          %.3f s (includes the emulator serving the burst)\n", seconds);
    printf("  events/s           %.0f\n", double(received - 50) / seconds);
    printf("  ms/event           %.3f\n", seconds * 1000.0 / double(std::max<uint64_t>(1, received - 50)));
    printf("  intake CPU/event   %.3f ms (intake thread) -> %.0f events/s on one core\n", intakeCpuMs,
        intakeCpuMs > 0 ? 1000.0 / intakeCpuMs : 0.0);
    printf("  process CPU/event  %.3f ms (intake + libcurl + delivery on the GUI thread)\n",
        proc * 1000.0 / double(std::max<uint64_t>(1, events)));
    printf("  copies of picture bytes per event: %.3f (bytes copied out of network buffers / picture bytes)\n", copies);
    printf("  errors             %llu\n", (unsigned long long)st.errors.load());
    sub.Stop();
    sim.terminate();
    sim.waitForFinished(5000);
    return all ? 0 : 1;
}
