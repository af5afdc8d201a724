// Feeds a burst of alarm records of every kind into a full dashboard page and
// prints the time per record taken in (classification, counters, record; the
// cards follow once their pictures are decoded) and when the last cards stand. With --snapshot FILE the page is saved as a
// picture afterwards (run under a 1920x1080 X server to see it at full size).
//   bench_dashboard_burst [--records N] [--snapshot FILE]
#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QScreen>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <vector>

#include "pictures/CPicturePreparer.h"
#include "CommonMethodLib/CUserDataPath.h"
#include "support/JpegEncoder.h"
#include "ui/CBTShowWidget.h"
#include "ui/CBodyTemperatureDlg.h"

namespace {

QByteArray scenePicture(int seed)
{
    QImage img(640, 360, QImage::Format_RGB32);
    img.fill(QColor::fromHsv((seed * 37) % 360, 90, 120));
    QPainter p(&img);
    p.setBrush(QColor(230, 190, 160));
    p.drawEllipse(250, 80, 140, 180);
    p.end();
    return testsupport::EncodeJpeg(img, 80);
}

publicdatacontroller::IntelAlarmEventInfo makeRecord(int i)
{
    static const uint32_t kinds[] = {100119, 100119, 100101, 100103, 100112, 100119};
    publicdatacontroller::IntelAlarmEventInfo r;
    r.eventType = kinds[i % 6];
    r.cameraID = "DEMO0001-CH" + std::to_string(1 + i % 4);
    r.cameraName = "Lobby " + std::to_string(1 + i % 4);
    r.deviceID = "DEMO0001";
    r.eventID = "EV" + std::to_string(i);
    r.secondID = "TASK1";
    r.captureTime = 1700000000 + i;
    protocol::IntelAlarmFaceInfo f;
    f.facePicID = static_cast<uint32_t>(i);
    f.TemperatureEnabled = i % 5 == 0 ? 0 : 1;
    f.TemperatureAnomaly = i % 3 == 0 ? 1 : 0;
    f.Mask = 1 + static_cast<uint32_t>(i % 2);
    f.Temperature = f.TemperatureAnomaly ? 38.2 : 36.6;
    f.bkPic = scenePicture(i);
    f.faceRects.push_back({0.39, 0.22, 0.22, 0.5});
    if (r.eventType == 100101 || r.eventType == 100119)
        r.faceInfoList.push_back(f);
    else
        r.faceInfo = f;
    return r;
}

} // namespace

int main(int argc, char** argv)
{
    // Headless unless told otherwise (QT_QPA_PLATFORM=xcb under a display).
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    int records = 200;
    QString snapshot;
    const QStringList args = app.arguments();
    for (int i = 1; i + 1 < args.size(); ++i) {
        if (args[i] == QStringLiteral("--records"))
            records = args[i + 1].toInt();
        else if (args[i] == QStringLiteral("--snapshot"))
            snapshot = args[i + 1];
    }

    QTemporaryDir dir;
    CUserDataPath::Instance()->setComponentPath(dir.filePath(QStringLiteral("component")).toStdString());

    BodyTemperature::CBodyTemperatureDlg dlg;
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    dlg.setGeometry(screen);
    dlg.show();
    dlg.RestorePlayingCameras({QStringLiteral("DEMO0001-CH1"), QStringLiteral("DEMO0001-CH2"),
        QStringLiteral("DEMO0001-CH3"), QStringLiteral("DEMO0001-CH4")});
    app.processEvents();

    std::vector<publicdatacontroller::IntelAlarmEventInfo> input;
    input.reserve(static_cast<size_t>(records));
    for (int i = 0; i < records; ++i)
        input.push_back(makeRecord(i));

    // The page's own total, as the statistics title receives it.
    int shown = 0;
    QObject::connect(dlg.findChild<BodyTemperature::CBTShowWidget*>(), &BodyTemperature::CBTShowWidget::signalNum, &dlg,
        [&shown](int all, int, int, int) { shown = all; });

    std::vector<double> micros;
    micros.reserve(input.size());
    QElapsedTimer total;
    total.start();
    for (const auto& r : input) {
        QElapsedTimer t;
        t.start();
        dlg.onNewAlarmComing(r);
        micros.push_back(static_cast<double>(t.nsecsElapsed()) / 1000.0);
    }
    const double totalMs = static_cast<double>(total.nsecsElapsed()) / 1e6;
    auto* preparer = dlg.findChild<BodyTemperature::CPicturePreparer*>();
    while (preparer->Pending() > 0)
        app.processEvents(QEventLoop::WaitForMoreEvents);
    const double cardsMs = static_cast<double>(total.nsecsElapsed()) / 1e6;
    // Let the layouts settle as the running host would.
    QElapsedTimer settle;
    settle.start();
    while (settle.elapsed() < 300)
        app.processEvents(QEventLoop::AllEvents, 20);

    std::sort(micros.begin(), micros.end());
    const auto pct = [&](double p) { return micros[static_cast<size_t>(p * static_cast<double>(micros.size() - 1))]; };
    std::printf("records %d, taken in within %.1f ms, per record median %.0f us, p95 %.0f us, max %.0f us, shown %d;"
                " pictures of the cards ready after %.1f ms\n",
        records, totalMs, pct(0.5), pct(0.95), micros.back(), shown, cardsMs);

    if (qEnvironmentVariableIsSet("BT_BENCH_DEBUG")) {
        for (QWidget* w : dlg.findChildren<QWidget*>())
            if (w->metaObject()->className() == QByteArray("BodyTemperature::CAlarmUnit") || w->objectName().startsWith(QStringLiteral("m_pRight")))
                std::printf("%s %s %d,%d %dx%d min %dx%d vis %d\n", w->metaObject()->className(), qUtf8Printable(w->objectName()), w->x(), w->y(), w->width(), w->height(), w->minimumWidth(), w->minimumHeight(), w->isVisible());
    }
    if (!snapshot.isEmpty()) {
        const bool ok = dlg.grab().save(snapshot);
        std::printf("snapshot %s: %s\n", qUtf8Printable(snapshot), ok ? "saved" : "failed");
    }
    return 0;
}
