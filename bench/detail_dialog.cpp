// Time from a click on an alarm card's "ViewDetails" to the end of the detail
// dialog's first paint, for an event whose face comes from a 1920 x 1080 scene
// JPEG (no separate face picture), median of N clicks each on a fresh event
// whose card has already been filled (as on the dashboard). Two events: a
// comparison (captured face beside a library face) and a temperature capture
// (the dialog also shows the whole scene). Printed beside them, in the same run:
//   baseline  an empty dialog of the same size, from click to first paint;
//   warm      the same click on an event whose pictures the dialog already
//             decoded once, so cold - warm is the time spent decoding.
//
//   bench_detail_dialog [N]          (headless: offscreen unless a display is set)
#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <vector>

#include "AlarmShowInfo.h"
#include "support/JpegEncoder.h"
#include "ui/ShowCard/CAlarmUnit.h"
#include "ui/ShowCard/CComparisonDetail.h"

using namespace BodyTemperature;

namespace {

// A camera-like scene of about 150 KB: shading, pixel noise and a person.
QByteArray MakeScene()
{
    QImage img(1920, 1080, QImage::Format_RGB32);
    quint32 seed = 7;
    for (int y = 0; y < img.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(img.scanLine(y));
        for (int x = 0; x < img.width(); ++x) {
            seed = seed * 1664525u + 1013904223u;
            const int n = static_cast<int>(seed >> 29);
            line[x] = qRgb(qBound(0, 90 + y / 12 + n, 255), qBound(0, 100 + x / 30 + n, 255), qBound(0, 110 + n, 255));
        }
    }
    QPainter p(&img);
    p.setBrush(QColor(60, 70, 120));
    p.drawRoundedRect(QRectF(720, 560, 480, 520), 80, 80);
    p.setBrush(QColor(226, 186, 150));
    p.drawEllipse(QRectF(840, 300, 200, 280));
    p.end();
    return testsupport::EncodeJpeg(img, 85);
}

AlarmShowInfo MakeEvent(EventKind kind, const QByteArray& scene, const QByteArray& library)
{
    AlarmShowInfo info;
    info.kind = kind;
    info.alarmType = 0;
    info.maskType = MaskState::NoMask;
    info.temperatureType = 0;
    info.cameraName = "Lobby entrance";
    info.captureTime = 1763716445;
    protocol::IntelAlarmFaceInfo face;
    face.bkPic = scene;
    face.bNoSubPic = true;
    face.faceRects.push_back({0.42, 0.25, 0.12, 0.30});
    face.Sex = 1;
    face.Mask = 1;
    face.TemperatureEnabled = 1;
    face.Temperature = 38.2;
    info.alarmInfo.thermometry.TemperatureEnabled = 1;
    info.alarmInfo.thermometry.Temperature = 38.2;
    if (kind == EventKind::TemperatureCapture) {
        info.faceInfoList.push_back(face);
    } else {
        info.faceInfo = face;
        info.alarmInfo.comparison.similarity = 0.91;
        info.alarmInfo.comparison.libraryPic = library;
        info.alarmInfo.comparison.people.name = "Lena Park";
    }
    return info;
}

// CPU time of this (the GUI) thread: on a shared machine wall time mostly
// measures the other processes.
double ThreadCpuMs()
{
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return static_cast<double>(ts.tv_sec) * 1e3 + static_cast<double>(ts.tv_nsec) / 1e6;
}

struct Sample { double wall, cpu; };

// Runs `click`, which opens a modal dialog, and returns the milliseconds until
// that dialog's first paint has finished; the dialog is then closed.
class FirstPaintClock final : public QObject {
public:
    Sample Measure(const std::function<void()>& click)
    {
        m_bDone = false;
        m_sample = {-1, -1};
        qApp->installEventFilter(this);
        m_dCpuStart = ThreadCpuMs();
        m_timer.start();
        click();
        qApp->removeEventFilter(this);
        return m_sample;
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (!m_bDone && event->type() == QEvent::Paint) {
            auto* dialog = qobject_cast<QDialog*>(watched);
            if (dialog != nullptr) {
                m_bDone = true;
                // Queued: runs once the whole paint pass (the dialog and its children) is done.
                QPointer<QDialog> guard(dialog);
                QTimer::singleShot(0, this, [this, guard] {
                    m_sample = {static_cast<double>(m_timer.nsecsElapsed()) / 1e6, ThreadCpuMs() - m_dCpuStart};
                    if (guard)
                        guard->reject();
                });
            }
        }
        return false;
    }

private:
    QElapsedTimer m_timer;
    double m_dCpuStart = 0;
    bool m_bDone = false;
    Sample m_sample{-1, -1};
};

double Median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.empty() ? 0.0 : v[v.size() / 2];
}

Sample Median(const std::vector<Sample>& samples)
{
    std::vector<double> wall, cpu;
    for (const Sample& s : samples) {
        wall.push_back(s.wall);
        cpu.push_back(s.cpu);
    }
    return {Median(wall), Median(cpu)};
}

QPushButton* DetailsButton(QWidget* card)
{
    for (QPushButton* b : card->findChildren<QPushButton*>())
        if (b->objectName().startsWith(QLatin1String("DetailBtn_")))
            return b;
    return nullptr;
}

struct Figures { Sample cold, warm; double decodeCpu; };

Figures MeasureKind(EventKind kind, const QByteArray& scene, const QByteArray& library, int rounds, QWidget& page)
{
    FirstPaintClock clock;
    std::vector<Sample> cold, warm;
    std::vector<double> decodeCpu;
    for (int i = 0; i < rounds; ++i) {
        // A fresh event: only what its card decoded is cached.
        auto* card = new CAlarmUnit(&page);
        card->SetAlarmInfo(MakeEvent(kind, scene, library), false);
        card->move(1500, 20);
        card->show();
        QApplication::processEvents();
        QPushButton* button = DetailsButton(card);
        cold.push_back(clock.Measure([button] { button->click(); }));
        warm.push_back(clock.Measure([button] { button->click(); }));
        delete card;

        // The decode the dialog adds to the card's, timed on its own: the whole
        // scene of a capture (a comparison's faces were all decoded by its card).
        if (kind == EventKind::TemperatureCapture) {
            AlarmShowInfo alone = MakeEvent(kind, scene, library);
            PictureSource whole;
            whole.bytes = scene;
            const double start = ThreadCpuMs();
            alone.Pictures().Image(whole);
            decodeCpu.push_back(ThreadCpuMs() - start);
        }
    }
    return {Median(cold), Median(warm), Median(decodeCpu)};
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 20;

    QWidget page;
    page.setGeometry(0, 0, 1920, 1080);
    page.show();
    QApplication::processEvents();

    const QByteArray scene = MakeScene();
    QImage face(300, 400, QImage::Format_RGB32);
    face.fill(QColor(200, 170, 150));
    const QByteArray library = testsupport::EncodeJpeg(face, 90);

    FirstPaintClock clock;
    std::vector<Sample> baseline;
    for (int i = 0; i < rounds; ++i) {
        QPushButton button(&page);
        QObject::connect(&button, &QPushButton::clicked, &page, [&page] {
            QDialog empty(&page, Qt::Dialog | Qt::FramelessWindowHint);
            empty.setFixedSize(1290, 580);
            empty.exec();
        });
        baseline.push_back(clock.Measure([&button] { button.click(); }));
    }
    const Sample base = Median(baseline);

    std::printf("click on ViewDetails to first paint of the detail dialog, median of %d, scene 1920x1080 (%d KB), "
                "no face picture; wall ms and GUI-thread CPU ms\n", rounds, static_cast<int>(scene.size() / 1024));
    std::printf("%-24s %8s %8s %8s %8s %8s %10s %8s\n", "event", "wall", "cpu", "warm cpu", "x empty", "decode",
                "decode/cpu", "(c-w)/c");
    std::printf("%-24s %8.2f %8.2f %8s %8s\n", "empty dialog (baseline)", base.wall, base.cpu, "-", "1.00");
    const struct { const char* name; EventKind kind; } kinds[] = {{"comparison (type 0)", EventKind::Comparison},
                                                                  {"temperature capture (4)", EventKind::TemperatureCapture}};
    for (const auto& k : kinds) {
        const Figures f = MeasureKind(k.kind, scene, library, rounds, page);
        const double share = f.cold.cpu > 0 ? f.decodeCpu / f.cold.cpu : 0.0;
        const double diff = f.cold.cpu > 0 ? (f.cold.cpu - f.warm.cpu) / f.cold.cpu : 0.0;
        std::printf("%-24s %8.2f %8.2f %8.2f %8.1f %8.2f %9.0f%% %7.0f%%\n", k.name, f.cold.wall, f.cold.cpu, f.warm.cpu,
                    base.cpu > 0 ? f.cold.cpu / base.cpu : 0.0, f.decodeCpu, 100.0 * share, 100.0 * diff);
    }
    std::printf("decode: CPU ms of the decode the dialog adds to its card's, alone; decode/cpu: its share of the "
                "cold click; (c-w)/c: the same share from a warm second click\n");
    return 0;
}
