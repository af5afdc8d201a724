// Pictures of one event's cards (capture card 118 x 113, alarm card 120 x 160,
// pop-up 182 x 242) from a 1920 x 1080 scene JPEG without a separate face
// picture, three ways in the same run:
//   (a) naive: decode the whole scene once per card, cut the face, scale;
//   (b) ours:  the event's shared picture cache (one clipped decode per event,
//              the large card's picture scaled once, the smaller ones from it);
//   (c) qt:    QImageReader with a clip rectangle and a scaled size, once per event,
//              the smaller cards scaled from it: the bare cost of the same work.
// Then the full card cycle per event (create, fill, insert, trim the oldest,
// paint) with the module style sheet, on a shown 1920 x 1080 page: the paint is
// the repaint of what the event made dirty, as a screen gets it, through the
// page's backing store. As on the page, the record's pictures are prepared on
// the picture worker first; the GUI thread's share is the cycle, the worker's
// decode is reported beside it. A full-page render is measured apart for
// comparison.
//
//   bench_card_pictures [events]                 timings of (a), (b) and the card cycle
//   bench_card_pictures --only naive|ours|qt N [noiseShift [rst]]   one path, for instruction counts:
//   valgrind --tool=callgrind --collect-atstart=no bench_card_pictures --only ours 5 29
//   bench_card_pictures --cycle N [moved|shifted] just the card cycle, cards moved by the layout and shifted
//                                           by copying pixels, or one of them (instructions of its N
//                                           events: under callgrind as above)
#include <QApplication>
#include <QBoxLayout>
#include <QBuffer>
#include <QImageReader>
#include <QElapsedTimer>
#include <QPainter>
#include <QPaintEvent>
#include <QPixmap>
#include <QScrollArea>
#include <QWindow>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <valgrind/callgrind.h>
#include <vector>

#include "AlarmShowInfo.h"
#include "pictures/CPicturePreparer.h"
#include "support/JpegEncoder.h"
#include "ui/ShowCard/CAlarmUnit.h"
#include "ui/ShowCard/CPopUpUnit.h"
#include "ui/CBottomWidget.h"
#include "ui/ShowCard/CardShift.h"
#include "ui/ShowCard/CardStyle.h"

using namespace BodyTemperature;

namespace {

const QSize kSizes[] = {QSize(118, 113), QSize(120, 160), QSize(182, 242)};
const protocol::PictureRect kFace{0.42, 0.25, 0.12, 0.30};

// A camera-like scene: smooth shading, pixel noise and a person. The noise
// sets how much entropy-coded data the JPEG carries, which is what the
// decoder cannot skip: noiseShift 29 gives about 150 KB (a typical
// device scene picture), 28 about 280 KB, 27 about 500 KB (very noisy).
QByteArray MakeScene(int noiseShift, bool restartMarkers = false)
{
    QImage img(1920, 1080, QImage::Format_RGB32);
    quint32 seed = 7;
    for (int y = 0; y < img.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(img.scanLine(y));
        for (int x = 0; x < img.width(); ++x) {
            seed = seed * 1664525u + 1013904223u;
            const int n = static_cast<int>(seed >> noiseShift);
            line[x] = qRgb(qBound(0, 90 + y / 12 + n, 255), qBound(0, 100 + x / 30 + n, 255), qBound(0, 110 + n, 255));
        }
    }
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    p.setBrush(QColor(60, 70, 120));
    p.drawRoundedRect(QRectF(720, 560, 480, 520), 80, 80);
    p.setBrush(QColor(226, 186, 150));
    p.drawEllipse(QRectF(840, 300, 200, 280));
    p.end();
    if (restartMarkers) {
        // Like a camera's hardware encoder: 4:2:0, a restart marker after every MCU row.
        return testsupport::EncodeWithLibjpeg(img, {3, 2, 2, false, 1});
    }
    return testsupport::EncodeJpeg(img, 85);
}

AlarmShowInfo MakeEvent(const QByteArray& scene, int i)
{
    AlarmShowInfo info;
    info.kind = EventKind::TemperatureCapture;
    info.popType = PopUpType::AbnormalTemperature;
    info.alarmType = static_cast<uint32_t>(i % 4);
    info.maskType = MaskState::Worn;
    info.temperatureType = 0;
    info.captureTime = 1700000000 + i;
    info.cameraName = "Lobby";
    protocol::IntelAlarmFaceInfo face;
    face.bkPic = scene;
    face.bNoSubPic = true;
    face.faceRects.push_back(kFace);
    face.TemperatureEnabled = 1;
    face.Temperature = 37.9;
    info.faceInfoList.push_back(face);
    info.alarmInfo.thermometry.TemperatureEnabled = 1;
    info.alarmInfo.thermometry.Temperature = 37.9;
    return info;
}

// (a): what a card does on its own: full decode, cut, scale.
qint64 NaiveEvent(const QByteArray& scene)
{
    qint64 sink = 0;
    for (const QSize& size : kSizes) {
        QPixmap full;
        full.loadFromData(scene);
        const QRect crop(static_cast<int>(full.width() * kFace.x), static_cast<int>(full.height() * kFace.y),
                         static_cast<int>(full.width() * kFace.width), static_cast<int>(full.height() * kFace.height));
        sink += full.copy(crop).scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).cacheKey() & 1;
    }
    return sink;
}

// (c): Qt's own clipped decode, once per event: QImageReader cuts the face
// rectangle while decoding and scales it to the largest card; the other
// cards scale that picture down.
qint64 QtClippedEvent(const QByteArray& scene)
{
    QByteArray bytes = scene;  // shares the data; QBuffer wants a non-const array
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    const QSize full = reader.size();
    reader.setClipRect(QRect(static_cast<int>(full.width() * kFace.x), static_cast<int>(full.height() * kFace.y),
                             static_cast<int>(full.width() * kFace.width),
                             static_cast<int>(full.height() * kFace.height)));
    reader.setScaledSize(kSizes[2]);
    const QImage face = reader.read();
    qint64 sink = 0;
    for (const QSize& size : kSizes)
        sink += QPixmap::fromImage(size == face.size() ? face : face.scaled(size, Qt::IgnoreAspectRatio,
                                                                              Qt::SmoothTransformation))
                    .cacheKey() & 1;
    return sink;
}

// (b): one record per event, its cards share the decode.
qint64 OursEvent(const QByteArray& scene)
{
    AlarmShowInfo info = MakeEvent(scene, 0);
    const PictureSource source = CEventPictures::FaceSourceOf(info.faceInfoList.front());
    qint64 sink = 0;
    for (const QSize& size : kSizes) {
        AlarmShowInfo cardCopy = info;  // each card keeps its own copy of the record
        sink += cardCopy.Pictures().Scaled(source, size).cacheKey() & 1;
    }
    return sink;
}

double ThreadCpuMs()
{
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return static_cast<double>(ts.tv_sec) * 1e3 + static_cast<double>(ts.tv_nsec) / 1e6;
}

double Median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

// Counts the paint events and the pixels they cover (summed over widgets, so
// a pixel under a card counts for the page and for the card).
class PaintCounter final : public QObject {
public:
    using QObject::QObject;
    qint64 events = 0;
    qint64 pixels = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint) {
            ++events;
            for (const QRect& r : static_cast<QPaintEvent*>(event)->region())
                pixels += static_cast<qint64>(r.width()) * r.height();
        }
        return QObject::eventFilter(watched, event);
    }
};

// copyShift false: the lists' cards are moved by their layouts and painted
// again, the baseline of the same run.
void CardCycle(const QByteArray& scene, int events, bool copyShift)
{
    // The page's frame as the information display builds it: the right-hand
    // column and the bottom strip in scroll areas, the pop-up over the page.
    QWidget page;
    page.setObjectName(QStringLiteral("BTShowWidget"));
    page.setStyleSheet(CardStyle::ModuleStyleSheet());
    page.resize(1920, 1080);
    auto* listArea = new QScrollArea(&page);
    listArea->setFrameShape(QFrame::NoFrame);
    listArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    listArea->setWidgetResizable(true);
    listArea->setGeometry(1497, 60, 423, 1020);
    auto* list = new QWidget();
    list->setObjectName(QStringLiteral("m_pRightListWidget"));
    listArea->setWidget(list);
    listArea->viewport()->setAutoFillBackground(false);
    auto* listLayout = new QBoxLayout(QBoxLayout::BottomToTop, list);
    listLayout->setContentsMargins(0, 0, 0, 0);
    listLayout->setSpacing(12);
    listLayout->addItem(new QSpacerItem(1, 1, QSizePolicy::Minimum, QSizePolicy::Expanding));
    CardShift::SetSolidBackdrop(list, copyShift);
    auto* stripArea = new QScrollArea(&page);
    stripArea->setFrameShape(QFrame::NoFrame);
    stripArea->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    stripArea->setWidgetResizable(true);
    stripArea->setGeometry(0, 900, 1497, 170);
    auto* strip = new CBottomWidget();
    stripArea->setWidget(strip);
    stripArea->viewport()->setAutoFillBackground(false);
    auto* pop = new CPopUpUnit(&page);
    pop->move(400, 200);
    page.show();
    for (int i = 0; i < 200 && !(page.windowHandle() && page.windowHandle()->isExposed()); ++i)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    QCoreApplication::processEvents();
    PaintCounter painted;
    qApp->installEventFilter(&painted);

    // Phases of one event on the GUI thread: the scaling of the prepared
    // picture for the three cards, each card's creation and filling (with the
    // style sheet polish of a refilled pop-up), trimming, the posted events
    // (the cards' show and first polish, layout) and the repaint of what
    // changed. Before them the record waits for the worker's decode; the GUI
    // thread is free meanwhile.
    enum Phase { kScale, kSnap, kAlarm, kPopUp, kTrim, kPosted, kPaint, kPhases };
    const char* const names[kPhases] = {"scaling", "capture card (with its trim)", "alarm card", "pop-up", "list trim",
                                        "show/polish/layout", "paint"};
    std::vector<double> perEvent, guiCpu, workerWait;
    std::vector<std::vector<double>> phases(kPhases);
    qint64 paintEvents = 0, paintPixels = 0;
    // Measured once both lists are full and trim on every event (the right-hand
    // list holds 20): while they fill, they grow, and growing repaints them.
    const int skip = 25;
    std::vector<AlarmShowInfo> ready;
    CPicturePreparer preparer(20, [&ready](const AlarmShowInfo& info, int) { ready.push_back(info); }, nullptr);
    CALLGRIND_TOGGLE_COLLECT;  // instructions of the events only
    for (int i = 0; i < events; ++i) {
        QElapsedTimer w;
        w.start();
        preparer.Submit(MakeEvent(scene, i));
        while (ready.empty())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        workerWait.push_back(w.nsecsElapsed() / 1e6);
        const AlarmShowInfo info = ready.back();
        ready.clear();

        const double cpu0 = ThreadCpuMs();
        QElapsedTimer t, p;
        t.start();
        p.start();
        double at[kPhases] = {};
        auto lap = [&](Phase ph) { at[ph] += p.nsecsElapsed() / 1e6; p.restart(); };
        const PictureSource source = CEventPictures::FaceSourceOf(info.faceInfoList.front());
        for (const QSize& size : kSizes)
            info.Pictures().Scaled(source, size);
        lap(kScale);
        strip->AddSnapInfo(info);  // with its trim: the strip keeps kMaxCards
        if (!copyShift)
            CardShift::SetSolidBackdrop(strip, false);
        lap(kSnap);
        auto* card = new CAlarmUnit(&page);
        card->SetIsSnap(true);
        card->SetAlarmInfo(info, false);
        if (copyShift)
            CardShift::InsertNewest(listLayout, card);
        else
            listLayout->addWidget(card);
        lap(kAlarm);
        if (listLayout->count() > 21) {
            QLayoutItem* oldest = listLayout->takeAt(1);
            delete oldest->widget();
            delete oldest;
        }
        lap(kTrim);
        pop->SetAlarmInfo(info, true);
        pop->show();
        lap(kPopUp);
        // Everything but the repaint: queued shows, polish, layout (twice, as
        // a layout pass can post more).
        for (int round = 0; round < 2; ++round) {
            QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        }
        lap(kPosted);
        const qint64 eventsBefore = painted.events, pixelsBefore = painted.pixels;
        QCoreApplication::sendPostedEvents();
        lap(kPaint);
        if (i >= skip) {
            paintEvents += painted.events - eventsBefore;
            paintPixels += painted.pixels - pixelsBefore;
        }
        perEvent.push_back(t.nsecsElapsed() / 1e6);
        guiCpu.push_back(ThreadCpuMs() - cpu0);
        for (int ph = 0; ph < kPhases; ++ph)
            phases[ph].push_back(at[ph]);
    }
    CALLGRIND_TOGGLE_COLLECT;
    qApp->removeEventFilter(&painted);
    std::vector<double> steady(perEvent.begin() + skip, perEvent.end());
    std::printf("card cycle on the GUI thread (capture card + alarm card + pop-up, insert, trim, repaint of a"
                " 1920x1080 page), %d events, %s:\n"
                "  median %.2f ms/event (GUI thread CPU %.2f ms), max %.2f ms (after the list is full)\n"
                "  before it, on the picture worker: decode and scaling to the largest card, median %.2f ms"
                " from submission to hand-over\n  median per phase:",
                events, copyShift ? "cards shifted by copying pixels" : "baseline: cards moved and painted again",
                Median(steady), Median(std::vector<double>(guiCpu.begin() + skip, guiCpu.end())),
                *std::max_element(steady.begin(), steady.end()),
                Median(std::vector<double>(workerWait.begin() + skip, workerWait.end())));
    for (int ph = 0; ph < kPhases; ++ph)
        std::printf(" %s %.2f ms%s", names[ph], Median(std::vector<double>(phases[ph].begin() + skip, phases[ph].end())),
                    ph + 1 < kPhases ? "," : "\n");
    const double n = static_cast<double>(steady.size());
    std::printf("  repaint per event: %.1f widget paint events, %.0f kpx painted (summed over widgets)\n",
                paintEvents / n, paintPixels / n / 1000.0);
    // What a full-window repaint of the same page would cost, for comparison.
    QImage canvas(1920, 1080, QImage::Format_RGB32);
    std::vector<double> full;
    for (int i = 0; i < 20; ++i) {
        QElapsedTimer t;
        t.start();
        QPainter painter(&canvas);
        page.render(&painter);
        painter.end();
        full.push_back(t.nsecsElapsed() / 1e6);
    }
    std::printf("  full-page render (not part of the cycle): median %.2f ms\n", Median(full));
}

} // namespace

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);

    if (argc >= 3 && std::strcmp(argv[1], "--cycle") == 0) {
        const int n = std::max(60, std::atoi(argv[2]));
        const bool only = argc >= 4;
        if (!only || std::strcmp(argv[3], "moved") == 0)
            CardCycle(MakeScene(29), n, false);
        if (!only || std::strcmp(argv[3], "shifted") == 0)
            CardCycle(MakeScene(29), n, true);
        return 0;
    }
    if (argc >= 4 && std::strcmp(argv[1], "--only") == 0) {
        const QByteArray scene =
            MakeScene(argc >= 5 ? std::atoi(argv[4]) : 29, argc >= 6 && std::strcmp(argv[5], "rst") == 0);
        const char* which = argv[2];
        qint64 (*path)(const QByteArray&) = std::strcmp(which, "naive") == 0 ? NaiveEvent
            : std::strcmp(which, "qt") == 0                                 ? QtClippedEvent
                                                                            : OursEvent;
        const int n = std::atoi(argv[3]);
        qint64 sink = 0;
        CALLGRIND_TOGGLE_COLLECT;
        for (int i = 0; i < n; ++i)
            sink += path(scene);
        CALLGRIND_TOGGLE_COLLECT;
        std::printf("%s: %d events (%lld)\n", which, n, static_cast<long long>(sink));
        return 0;
    }

    const int events = argc > 1 ? std::max(10, std::atoi(argv[1])) : 100;
    const struct {
        int noiseShift;
        bool restartMarkers;
    } scenes[] = {{29, false}, {28, false}, {27, false}, {29, true}, {28, true}, {27, true}};
    for (const auto& sc : scenes) {
        const QByteArray scene = MakeScene(sc.noiseShift, sc.restartMarkers);
        std::printf("scene: 1920x1080 JPEG%s, %d bytes; face rectangle (%.2f, %.2f, %.2f, %.2f)\n",
                    sc.restartMarkers ? " with restart markers" : "", static_cast<int>(scene.size()), kFace.x, kFace.y,
                    kFace.width, kFace.height);
        NaiveEvent(scene);  // warm up every path
        OursEvent(scene);
        QtClippedEvent(scene);
        std::vector<double> naive, ours, qt;
        qint64 sink = 0;
        for (int i = 0; i < events; ++i) {
            QElapsedTimer t;
            t.start();
            sink += NaiveEvent(scene);
            naive.push_back(t.nsecsElapsed() / 1e6);
            t.restart();
            sink += OursEvent(scene);
            ours.push_back(t.nsecsElapsed() / 1e6);
            t.restart();
            sink += QtClippedEvent(scene);
            qt.push_back(t.nsecsElapsed() / 1e6);
        }
        const double a = Median(naive), b = Median(ours), c = Median(qt);
        std::printf("  pictures of 3 cards per event, %d events, median: (a) full decode per card %.2f ms,"
                    " (b) shared picture cache %.2f ms, (c) bare Qt clipped decode %.2f ms; (b)/(c) %.2fx%s\n",
                    events, a, b, c, b / c, (sink & 1) ? " " : "");
    }
    // Refusing an oversized picture: the header is read, nothing decoded.
    QByteArray huge = MakeScene(29);
    const int sof = huge.indexOf(QByteArray("\xFF\xC0", 2));
    for (int k : {5, 6, 7, 8})
        huge[sof + k] = static_cast<char>(k % 2 ? 30000 >> 8 : 30000 & 0xFF);
    std::vector<double> refuse;
    for (int i = 0; i < 200; ++i) {
        QElapsedTimer t;
        t.start();
        AlarmShowInfo info = MakeEvent(huge, i);
        const bool empty = info.Pictures().Scaled(CEventPictures::FaceSourceOf(info.faceInfoList.front()), kSizes[0]).isNull();
        refuse.push_back(t.nsecsElapsed() / 1e6 + (empty ? 0 : 1e9));
    }
    std::printf("30000x30000 header refused: median %.3f ms\n", Median(refuse));

    CardCycle(MakeScene(29), std::max(60, events), false);
    CardCycle(MakeScene(29), std::max(60, events), true);
    return 0;
}
