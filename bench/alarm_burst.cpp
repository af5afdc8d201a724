// A burst of alarm events with 1080p scenes arriving at once, as a device
// that reconnects with a backlog sends them: they are published from a worker
// thread through the host's alarm signal into a full dashboard page.
// Prints the longest GUI stall (gap between ticks of a 2 ms timer), the time
// until the counters are exact, the time until the last card is built, and
// peak memory. The baseline, measured in the same run, is the GUI thread's
// cost of one event handled alone (trickle), its cards built and painted: a
// page that built every card of the burst would stall for about events x that.
//   bench_alarm_burst [--events 3000] [--scene 1920x1080]
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QScreen>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <memory>
#include <thread>
#include <ctime>
#include <vector>

#include "pictures/CPicturePreparer.h"
#include "CommonMethodLib/CUserDataPath.h"
#include "publicdatacontroller/AlarmTransfer.h"
#include "support/JpegEncoder.h"
#include "ui/CBTShowWidget.h"
#include "ui/CBodyTemperatureDlg.h"

namespace {

double threadCpuMs()
{
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return double(ts.tv_sec) * 1e3 + double(ts.tv_nsec) / 1e6;
}

long statusKb(const char* key)
{
    QFile f(QStringLiteral("/proc/self/status"));
    f.open(QIODevice::ReadOnly);
    for (const QByteArray& line : f.readAll().split('\n'))
        if (line.startsWith(key))
            return line.mid(int(qstrlen(key))).trimmed().split(' ').first().toLong();
    return 0;
}

QByteArray scene(int seed, const QSize& size)
{
    QImage img(size, QImage::Format_RGB32);
    QPainter p(&img);
    QLinearGradient g(0, 0, size.width(), size.height());
    g.setColorAt(0, QColor::fromHsv((seed * 53) % 360, 80, 140));
    g.setColorAt(1, QColor::fromHsv((seed * 53 + 120) % 360, 60, 60));
    p.fillRect(img.rect(), g);
    p.setBrush(QColor(230, 190, 160));
    p.drawEllipse(size.width() * 2 / 5, size.height() / 5, size.width() / 8, size.height() / 3);
    p.end();
    return testsupport::EncodeJpeg(img, 80);
}

std::shared_ptr<const publicdatacontroller::CIntelAlarmObject> makeEvent(int i, const QByteArray& picture)
{
    publicdatacontroller::IntelAlarmEventInfo r;
    r.eventType = i % 7 == 3 ? 100101 : 100119;
    r.deviceID = "DEMO0001";
    r.cameraID = "DEMO0001-CH" + std::to_string(1 + i % 4);
    r.cameraName = "Lobby " + std::to_string(1 + i % 4);
    r.eventID = "EV" + std::to_string(i);
    r.captureTime = 1700000000 + i;
    protocol::IntelAlarmFaceInfo f;
    f.facePicID = uint32_t(100000 + i);
    f.TemperatureEnabled = 1;
    f.TemperatureAnomaly = i % 9 == 0 ? 1 : 0;
    f.Mask = 1 + uint32_t(i % 2);
    f.Temperature = f.TemperatureAnomaly ? 38.2 : 36.6;
    // Every event brings its own copy of the scene, as a device sends them.
    f.bkPic = QByteArray(picture.constData(), picture.size()) + QByteArray::number(i);
    f.bNoSubPic = true;
    f.faceRects.push_back({0.39, 0.18, 0.14, 0.36});
    r.faceInfoList.push_back(f);
    return std::make_shared<const publicdatacontroller::CIntelAlarmObject>(std::move(r));
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    int events = 3000;
    QSize sceneSize(1920, 1080);
    const QStringList args = app.arguments();
    for (int i = 1; i + 1 < args.size(); ++i) {
        if (args[i] == QStringLiteral("--events"))
            events = args[i + 1].toInt();
        else if (args[i] == QStringLiteral("--scene")) {
            const QStringList wh = args[i + 1].split(QLatin1Char('x'));
            sceneSize = QSize(wh.value(0).toInt(), wh.value(1).toInt());
        }
    }
    QTemporaryDir dir;
    CUserDataPath::Instance()->setComponentPath(dir.filePath(QStringLiteral("component/")).toStdString());

    BodyTemperature::CBodyTemperatureDlg dlg;
    dlg.setGeometry(QGuiApplication::primaryScreen()->geometry());
    dlg.show();
    dlg.SetAlarmListening(true);
    auto* page = dlg.findChild<BodyTemperature::CBTShowWidget*>();
    int shownAll = 0;  // the display's own count, as it reports it
    QObject::connect(page, &BodyTemperature::CBTShowWidget::signalNum, &app,
        [&shownAll](int all, int, int, int) { shownAll = all; });
    // Pop-ups stay idle so that every event could take the pop-up.
    app.processEvents();

    std::vector<QByteArray> scenes;
    for (int s = 0; s < 8; ++s)
        scenes.push_back(scene(s, sceneSize));
    auto* transfer = Base::CSingleton<publicdatacontroller::AlarmTransfer>::Instance();

    // Baseline: events one at a time, the page idle in between; the GUI
    // thread's time from the event to its cards painted (the picture decode
    // runs on the worker meanwhile).
    auto* preparer = page->findChild<BodyTemperature::CPicturePreparer*>();
    std::vector<double> single;
    for (int i = 0; i < 20; ++i) {
        auto ev = makeEvent(1000000 + i, scenes[size_t(i) % scenes.size()]);
        const double cpu = threadCpuMs();
        transfer->publishAlarm(ev);  // GUI thread: counted at once, cards once the pictures are ready
        while (preparer->Pending() > 0)
            app.processEvents(QEventLoop::WaitForMoreEvents);
        app.processEvents();
        single.push_back(threadCpuMs() - cpu);
    }
    std::sort(single.begin(), single.end());
    const double perEventMs = single[single.size() / 2];
    const int before = shownAll;

    std::vector<std::shared_ptr<const publicdatacontroller::CIntelAlarmObject>> burst;
    burst.reserve(size_t(events));
    for (int i = 0; i < events; ++i)
        burst.push_back(makeEvent(i, scenes[size_t(i) % scenes.size()]));
    const long rssBeforeKb = statusKb("VmRSS:");

    // The GUI's pulse: the longest gap between ticks is the longest stall.
    QElapsedTimer clock;
    clock.start();
    qint64 lastTick = 0;
    qint64 longestGap = 0;
    QTimer tick;
    QObject::connect(&tick, &QTimer::timeout, &app, [&] {
        const qint64 now = clock.nsecsElapsed();
        longestGap = std::max(longestGap, now - lastTick);
        lastTick = now;
    });
    tick.start(2);
    // The same pulse with nothing to do: the machine's own noise (other processes).
    app.processEvents();
    lastTick = clock.nsecsElapsed();
    while (clock.nsecsElapsed() - lastTick < 1500000000LL && clock.elapsed() < 1600)
        app.processEvents(QEventLoop::AllEvents, 5);
    const qint64 quietGap = longestGap;
    longestGap = 0;
    qint64 exactAt = -1;
    QObject::connect(page, &BodyTemperature::CBTShowWidget::signalNum, &app, [&](int all, int, int, int) {
        if (exactAt < 0 && all == before + events)
            exactAt = clock.nsecsElapsed();
    });
    app.processEvents();
    lastTick = clock.nsecsElapsed();
    const qint64 start = clock.nsecsElapsed();
    std::thread publisher([&] {
        for (auto& ev : burst)
            transfer->publishAlarm(std::move(ev));
    });
    qint64 settledAt = -1;
    while (clock.nsecsElapsed() - start < 30000000000LL) {
        app.processEvents(QEventLoop::AllEvents, 5);
        if (exactAt >= 0 && settledAt < 0 && clock.nsecsElapsed() - exactAt > 1500000000LL)
            settledAt = clock.nsecsElapsed();
        if (settledAt >= 0)
            break;
    }
    publisher.join();
    burst.clear();
    tick.stop();
    const int allAfterBurst = shownAll;

    // The part of each event that is never skipped (copies, classification,
    // counters): the same burst handled on the GUI thread in one go.
    std::vector<std::shared_ptr<const publicdatacontroller::CIntelAlarmObject>> again;
    for (int i = 0; i < events; ++i)
        again.push_back(makeEvent(2000000 + i, scenes[size_t(i) % scenes.size()]));
    QElapsedTimer sync;
    sync.start();
    for (auto& ev : again)
        transfer->publishAlarm(ev);
    const double syncMs = double(sync.nsecsElapsed()) / 1e6;
    again.clear();
    app.processEvents();

    std::printf("burst of %d events with %dx%d scenes\n", events, sceneSize.width(), sceneSize.height());
    std::printf("  one event alone (baseline): %.2f ms -> a page building every card: ~%.0f ms of stall\n",
        perEventMs, perEventMs * events);
    std::printf("  longest GUI stall: %.1f ms (%.3f of the baseline's; with no events at all: %.1f ms)\n",
        double(longestGap) / 1e6, double(longestGap) / 1e6 / (perEventMs * events), double(quietGap) / 1e6);
    std::printf("  counters exact after: %.1f ms (all = %d, expected %d)\n",
        exactAt < 0 ? -1.0 : double(exactAt - start) / 1e6, allAfterBurst, before + events);
    std::printf("  the same burst handled in one go on the GUI thread: %.1f ms (%.1f us per event)\n", syncMs,
        syncMs * 1000.0 / events);
    std::printf("  memory: %.0f MB before the burst's delivery, peak %.0f MB\n", double(rssBeforeKb) / 1024.0,
        double(statusKb("VmHWM:")) / 1024.0);
    return exactAt < 0 ? 1 : 0;
}
