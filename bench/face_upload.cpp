// The add-to-library dialog against the emulator (started on a free loopback
// port). First renders the dialog with every row (region mode 1) on a
// 1920 x 1080 dashboard-coloured screen in English and Chinese
// (add_face_en.png, add_face_zh_CN.png in OUTDIR), then uploads a 30 KB face
// 20 times through the dialog's confirm button and prints the median
// confirm-to-result time and the longest stall of the GUI event loop while
// the uploads ran, against the same upload made by the worker alone.
//
//   xvfb-run -a -s "-screen 0 1920x1080x24 -nolisten tcp" bin/bench_face_upload OUTDIR
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QRandomGenerator>
#include <QScreen>
#include <QTimer>
#include <QTranslator>
#include <algorithm>
#include <cstdio>
#include <vector>

#include "VantorGUIToolkit/CInformationDlg.h"
#include "support/DeviceSim.h"
#include "support/JpegEncoder.h"
#include "ui/AddIntoFaceLib/CBTAddFaceWnd.h"
#include "ui/AddIntoFaceLib/InpotFaceDataRecordThread.h"

using namespace BodyTemperature;

namespace {

void TypeText(QWidget* w, const QString& text)
{
    for (const QChar c : text) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(c));
        QApplication::sendEvent(w, &press);
    }
}

// A face of at least `bytes` bytes: a drawn face over noise, at the lowest
// JPEG quality that reaches that size.
QByteArray Face(int bytes)
{
    QImage image(240, 300, QImage::Format_RGB32);
    QRandomGenerator rng(7);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const int n = int(rng.bounded(60));
            image.setPixel(x, y, qRgb(90 + n, 96 + n, 106 + n));
        }
    QPainter p(&image);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(60, 90, 160));
    p.drawRoundedRect(QRectF(35, 215, 170, 100), 36, 36);
    p.setBrush(QColor(226, 186, 150));
    p.drawEllipse(QRectF(65, 50, 110, 145));
    p.setBrush(QColor(50, 36, 30));
    p.drawChord(QRectF(62, 42, 116, 145), 0, 180 * 16);
    p.drawEllipse(QPointF(98, 122), 7, 6);
    p.drawEllipse(QPointF(142, 122), 7, 6);
    p.end();
    QByteArray jpeg;
    for (int quality = 40; quality <= 98 && jpeg.size() < bytes; ++quality)
        jpeg = testsupport::EncodeJpeg(image, quality);
    return jpeg;
}

void Render(const QString& lang, const QString& outDir, const QByteArray& face)
{
    QTranslator translator;
    translator.load(QStringLiteral(":/BodyTemperature/i18n/BodyTemperature_%1.qm").arg(lang));
    QCoreApplication::installTranslator(&translator);
    QWidget page;
    page.setObjectName(QStringLiteral("page"));
    page.setStyleSheet(QStringLiteral("QWidget#page{background-color:#0A1424;}"));
    page.setGeometry(0, 0, 1920, 1080);
    page.show();
    auto* dlg = new CBTAddFaceWnd(&page);
    dlg->SetFacePicture(face);
    if (!dlg->SetDevice("TEST0001-CH1"))
        std::fprintf(stderr, "the emulator's face libraries cannot be used\n");
    dlg->show();
    QApplication::processEvents();
    dlg->adjustSize();
    dlg->move((1920 - dlg->width()) / 2, (1080 - dlg->height()) / 2);
    TypeText(dlg->findChild<QLineEdit*>(QStringLiteral("m_pNameEdit")),
        lang == QLatin1String("en") ? QStringLiteral("Li Ming") : QString::fromUtf8("\xe6\x9d\x8e\xe6\x98\x8e"));
    TypeText(dlg->findChild<QLineEdit*>(QStringLiteral("m_pContactEdit")), QStringLiteral("13800138000"));
    auto* province = dlg->findChild<QComboBox*>(QStringLiteral("m_pProvinceCombo"));
    province->setCurrentIndex(province->findData(44));
    for (int i = 0; i < 10; ++i) {
        QApplication::processEvents();
        QThread::msleep(20);
    }
    QGuiApplication::primaryScreen()->grabWindow(0).save(QDir(outDir).filePath(QStringLiteral("add_face_%1.png").arg(lang)));
    QCoreApplication::removeTranslator(&translator);
    delete dlg;
}

double Median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.empty() ? 0 : (v[v.size() / 2] + v[(v.size() - 1) / 2]) / 2;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const QString outDir = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QDir::currentPath();
    QDir().mkpath(outDir);
    testsupport::DeviceSim sim;
    if (!sim.start()) {
        std::fprintf(stderr, "the emulator did not start\n");
        return 1;
    }
    clientcommonlogical::CConfigMgr::Instance()->SetDevices({sim.device()});
    clientcommonlogical::CConfigMgr::Instance()->SetRegionMode(1);

    const QByteArray face = Face(30 * 1024);
    for (const QString& lang : {QStringLiteral("en"), QStringLiteral("zh_CN")})
        Render(lang, outDir, face);
    std::printf("dialog rendered to %s\n", qUtf8Printable(outDir));

    constexpr int kRuns = 20;
    // Baseline: the worker alone, started and waited for.
    std::vector<double> worker;
    for (int i = 0; i < kRuns; ++i) {
        CInportFaceDataRecordThread t;
        CapabilitySet::FaceDataRecordCfg rec;
        rec.name = "Bench";
        t.SetTarget("TEST0001", "1", false);
        t.SetPicture(face.constData(), uint32_t(face.size()));
        t.SetPersonRecord(rec);
        QElapsedTimer clock;
        clock.start();
        t.start();
        t.wait();
        worker.push_back(clock.nsecsElapsed() / 1e6);
    }

    // Through the dialog: confirm to the message, with a 1 ms ticker watching the event loop.
    std::vector<double> dialog, stalls;
    QWidget page;
    for (int i = 0; i < kRuns; ++i) {
        auto* dlg = new CBTAddFaceWnd(&page);
        dlg->SetFacePicture(face);
        dlg->SetDevice("TEST0001");
        dlg->show();
        TypeText(dlg->findChild<QLineEdit*>(QStringLiteral("m_pNameEdit")), QStringLiteral("Bench %1").arg(i));
        QElapsedTimer sinceTick;
        double longest = 0;
        QTimer ticker;
        ticker.setTimerType(Qt::PreciseTimer);
        QObject::connect(&ticker, &QTimer::timeout, &page, [&] {
            longest = std::max(longest, sinceTick.nsecsElapsed() / 1e6);
            sinceTick.restart();
        });
        const int before = VantorGUIToolkit::CInformationDlg::ShownMessages().size();
        QElapsedTimer clock;
        clock.start();
        sinceTick.start();
        ticker.start(1);
        dlg->findChild<QPushButton*>(QStringLiteral("m_pSaveBtn"))->click();
        ticker.stop();
        longest = std::max(longest, sinceTick.nsecsElapsed() / 1e6);
        dialog.push_back(clock.nsecsElapsed() / 1e6);
        stalls.push_back(longest);
        const QStringList shown = VantorGUIToolkit::CInformationDlg::ShownMessages();
        if (shown.size() != before + 1 || !dlg->IsAdded())
            std::fprintf(stderr, "upload %d: %s\n", i, qUtf8Printable(shown.value(shown.size() - 1)));
        delete dlg;
    }
    std::printf("face picture: %d bytes, %d uploads each\n", face.size(), kRuns);
    std::printf("worker alone       median %.1f ms\n", Median(worker));
    std::printf("confirm to result  median %.1f ms (ratio %.2f to the worker alone)\n", Median(dialog),
        Median(dialog) / std::max(0.001, Median(worker)));
    std::printf("event-loop stall   longest %.1f ms, median of per-upload longest %.1f ms\n",
        *std::max_element(stalls.begin(), stalls.end()), Median(stalls));
    return 0;
}
