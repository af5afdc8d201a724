// Screening journal and shift report figures. Prints:
//  - GUI-thread cost of one journal append (what the information display pays
//    per alarm) against copying the alarm's display record (the baseline every
//    card already pays);
//  - sustained journal throughput (events/s committed, faces encoded on the worker);
//  - journal file size per 100 000 events;
//  - export time of 100 000 events: CSV, and PDF with the faces of the flagged events.
// Usage: bench_screening_record [events]   (default 100000)
#include <QApplication>
#include <QBuffer>
#include <QPainter>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>
#include <cstdio>

#include "record/CEventJournal.h"
#include "record/CScreeningRecord.h"
#include "report/CShiftReportExporter.h"

using namespace BodyTemperature;

namespace {
QByteArray faceJpeg()
{
    QImage img(120, 160, QImage::Format_RGB32);
    QPainter p(&img);
    QLinearGradient g(0, 0, 120, 160);
    g.setColorAt(0, QColor(40, 60, 90));
    g.setColorAt(1, QColor(220, 180, 150));
    p.fillRect(img.rect(), g);
    p.setBrush(QColor(230, 200, 170));
    p.drawEllipse(25, 30, 70, 95);
    p.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    img.save(&buffer, "JPEG", 85);
    return bytes;
}
} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int events = argc > 1 ? std::max(1000, atoi(argv[1])) : 100000;
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("journal.db"));
    const int64_t start = QDateTime::currentSecsSinceEpoch() - 20 * 3600;

    // A display record as the cards leave it: face picture decoded and cached.
    publicdatacontroller::IntelAlarmEventInfo record;
    record.eventType = 100119;
    record.deviceID = "TEST0001";
    record.cameraID = "TEST0001-CH1";
    record.cameraName = "入口 1";
    protocol::IntelAlarmFaceInfo face;
    face.TemperatureEnabled = 1;
    face.Temperature = 36.6;
    face.Mask = 2;
    face.SubPic = faceJpeg();
    record.faceInfoList.push_back(face);

    // Every event shares the pictures of the first one, decoded once as a card
    // would: the loop then measures the journal, not the decoder.
    const std::shared_ptr<CEventPictures> pictures = std::make_shared<CEventPictures>();
    pictures->Image(CEventPictures::FaceSourceOf(face));

    CScreeningRecord screening(nullptr, path);
    QElapsedTimer gui;
    qint64 guiNs = 0;
    qint64 copyNs = 0;
    QElapsedTimer all;
    all.start();
    for (int i = 0; i < events; ++i) {
        gui.start();
        AlarmShowInfo info = AlarmShowInfo::FromRecord(record);
        copyNs += gui.nsecsElapsed();
        info.captureTime = start + int64_t(i) * 20 * 3600 / events;
        info.kind = EventKind::TemperatureCapture;
        const bool abnormal = i % 12 == 0;
        const bool noMask = i % 10 == 0;
        info.temperatureType = abnormal ? 0 : 2;
        info.maskType = noMask ? (abnormal ? MaskState::NoMaskAbnormal : MaskState::NoMask) : MaskState::Worn;
        info.faceInfoList.front().Mask = noMask ? 1 : 2;
        // (same picture bytes: the face source still finds the shared decode)
        info.pictures = pictures;
        gui.start();
        screening.Append(info, 1);
        guiNs += gui.nsecsElapsed();
    }
    const qint64 appendMs = all.elapsed();
    if (!screening.Journal()->Flush(600000)) {
        std::fprintf(stderr, "journal flush failed\n");
        return 1;
    }
    const qint64 committedMs = all.elapsed();
    const qint64 bytes = QFileInfo(path).size() + QFileInfo(path + QStringLiteral("-wal")).size();
    std::printf("journal: GUI thread per event %.4f ms (display record copy %.4f ms, ratio %.2f)\n",
        guiNs / 1e6 / events, copyNs / 1e6 / events, double(guiNs) / double(std::max<qint64>(1, copyNs)));
    std::printf("journal: %d events handed over in %lld ms, all committed after %lld ms: %.0f events/s sustained\n",
        events, (long long)appendMs, (long long)committedMs, events * 1000.0 / std::max<qint64>(1, committedMs));
    std::printf("journal: file %.1f MB, %.1f MB per 100000 events (%.0f bytes per event)\n", bytes / 1e6,
        bytes / 1e6 * 100000.0 / events, double(bytes) / events);

    ShiftReportRequest request;
    request.journalPath = path;
    request.from = QDateTime::fromSecsSinceEpoch(start - 60);
    request.to = QDateTime::fromSecsSinceEpoch(start + 21 * 3600);
    request.folder = dir.path();
    request.language = 2;
    for (int format = 0; format < 2; ++format) {
        request.csv = format == 0;
        request.pdf = format == 1;
        std::atomic<bool> cancel{false};
        std::atomic<int> progress{0};
        QElapsedTimer t;
        t.start();
        const auto result = CShiftReportExporter::Run(request, cancel, progress);
        const qint64 ms = t.elapsed();
        const qint64 size = result.files.isEmpty() ? 0 : QFileInfo(result.files.front()).size();
        std::printf("export %s of %d events: %lld ms, %.1f MB%s\n", format == 0 ? "CSV" : "PDF", events, (long long)ms,
            size / 1e6, result.outcome == CShiftReportExporter::Outcome::Written ? "" : " (FAILED)");
    }
    return 0;
}
