// Renders the event cards on a 1920 x 1080 dashboard-coloured page with the
// module style sheet: alarm cards of the four colour levels (comparison and
// capture), both pop-up kinds, returning-person cards, a strip of capture
// cards and the waiting dialog, once in English and once in Chinese. Writes
// cards_en.png and cards_zh_CN.png into the folder given as argument, and the
// comparison detail dialog of a comparison and of a temperature capture, each
// over the dashboard at 1920 x 1080: detail_comparison_<lang>.png and
// detail_capture_<lang>.png. Under a display (QT_QPA_PLATFORM=xcb) also the
// screen with the add-to-library form's waiting dialog and the two upload
// outcomes reported after a cancel: facelib_<lang>.png.
//
//   xvfb-run -a -s "-screen 0 1920x1080x24 -nolisten tcp" bin/bench_card_gallery OUTDIR
#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QPainter>
#include <QScreen>
#include <QThread>
#include <QTranslator>
#include <cstdio>

#include "AlarmShowInfo.h"
#include "support/JpegEncoder.h"
#include "VantorGUIToolkit/CChaseDialog.h"
#include "VantorGUIToolkit/CInformationDlg.h"
#include "ui/ShowCard/CAlarmUnit.h"
#include "ui/ShowCard/CComparisonDetail.h"
#include "ui/ShowCard/CPopUpUnit.h"
#include "ui/ShowCard/CSnapUnit.h"
#include "ui/ShowCard/CWaitShowWid.h"
#include "ui/ShowCard/ReCustomer/CFrequenterUnit.h"

using namespace BodyTemperature;

namespace {

// A picture of width x height with a person whose face fills `face` (fractions).
QByteArray Picture(int width, int height, const QRectF& face, const QColor& shirt, bool mask)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(QColor(100, 106, 116));
    QPainter p(&image);
    const QRectF f(face.x() * width, face.y() * height, face.width() * width, face.height() * height);
    p.setPen(Qt::NoPen);
    p.setBrush(shirt);
    p.drawRoundedRect(QRectF(f.center().x() - f.width() * 1.3, f.bottom() + f.height() * 0.15, f.width() * 2.6,
                             f.height() * 3), f.width() * 0.5, f.width() * 0.5);
    p.setBrush(QColor(226, 186, 150));
    p.drawEllipse(f);
    p.setBrush(QColor(50, 36, 30));
    p.drawChord(f.adjusted(-2, -f.height() * 0.08, 2, 0), 0, 180 * 16);  // hair
    for (double ex : {0.32, 0.68})
        p.drawEllipse(QPointF(f.left() + f.width() * ex, f.top() + f.height() * 0.48), f.width() * 0.06, f.height() * 0.04);
    p.setBrush(QColor(170, 215, 235));
    if (mask)
        p.drawRoundedRect(QRectF(f.left() + f.width() * 0.12, f.top() + f.height() * 0.6, f.width() * 0.76, f.height() * 0.32), 8, 8);
    p.end();
    return testsupport::EncodeJpeg(image, 88);
}

// Colour level, event type, the card's mask and temperature states, the measured value.
struct Sample { uint32_t level; EventKind kind; MaskState mask; uint32_t temperatureState; double temperature; bool wearsMask; };

AlarmShowInfo MakeInfo(const Sample& s, int index)
{
    static const QColor shirts[] = {QColor(170, 50, 50), QColor(60, 90, 160), QColor(40, 130, 90), QColor(120, 100, 60)};
    AlarmShowInfo info;
    info.kind = s.kind;
    info.alarmType = s.level;
    info.maskType = s.mask;
    info.temperatureType = s.temperatureState;
    info.popType = s.level == 0 ? PopUpType::AbnormalTemperature : (s.level == 1 ? PopUpType::NoMask : PopUpType::None);
    info.captureTime = QDateTime(QDate(2026, 11, 21), QTime(9, 14, 5 + index)).toSecsSinceEpoch();
    info.cameraName = index % 2 ? "Lobby entrance" : "Back office";
    protocol::IntelAlarmFaceInfo face;
    const double x = 0.40 + 0.02 * index;
    face.bkPic = Picture(1920, 1080, QRectF(x, 0.22, 0.09, 0.22), shirts[index % 4], s.wearsMask);
    face.bNoSubPic = true;
    face.faceRects.push_back({x - 0.015, 0.20, 0.12, 0.27});
    face.Mask = s.wearsMask ? 2 : 1;
    face.TemperatureEnabled = info.alarmInfo.thermometry.TemperatureEnabled = s.temperatureState == 3 ? 0 : 1;
    face.Temperature = info.alarmInfo.thermometry.Temperature = s.temperature;
    if (!IsCaptureKind(s.kind)) {
        info.faceInfo = face;
        info.alarmInfo.comparison.similarity = 0.87 + 0.03 * (index % 3);
        info.alarmInfo.comparison.libraryPic = Picture(300, 400, QRectF(0.3, 0.2, 0.4, 0.4), shirts[(index + 1) % 4], false);
        info.alarmInfo.comparison.people.name = index % 2 ? "Lena Park" : "Wang Lei";
        info.alarmInfo.comparison.people.libraryName = "Staff";
    } else {
        info.faceInfoList.push_back(face);
    }
    return info;
}

void RenderPage(const QString& lang, const QString& outDir)
{
    QWidget page;
    page.setObjectName(QStringLiteral("BTShowWidget"));
    page.setAttribute(Qt::WA_StyledBackground);
    QFile qss(QStringLiteral(":/BodyTemperature/Qss/BodyTemperature/BodyTemperature.qss"));
    qss.open(QIODevice::ReadOnly);
    page.setStyleSheet(QString::fromUtf8(qss.readAll()));
    page.setGeometry(0, 0, 1920, 1080);

    const Sample samples[] = {
        {0, EventKind::Comparison, MaskState::NoMaskAbnormal, 0, 38.2, false},
        {1, EventKind::Stranger, MaskState::NoMask, 1, 36.6, false},
        {2, EventKind::ComparisonFailed, MaskState::Worn, 3, 65535.0, true},
        {3, EventKind::Comparison, MaskState::Worn, 2, 36.4, true},
        {0, EventKind::TemperatureCapture, MaskState::Unknown, 0, 37.9, true},
        {1, EventKind::Capture, MaskState::NoMask, 3, 65535.0, false},
        {2, EventKind::TemperatureCapture, MaskState::Worn, 3, 65535.0, true},
        {3, EventKind::TemperatureCapture, MaskState::Worn, 2, 36.5, true},
    };
    for (int i = 0; i < 8; ++i) {
        auto* card = new CAlarmUnit(&page);
        card->SetIsSnap(IsCaptureKind(samples[i].kind));
        card->SetAlarmInfo(MakeInfo(samples[i], i), false);
        card->move(20 + (i / 4) * 400, 20 + (i % 4) * 240);
    }
    const Sample pops[] = {{0, EventKind::Comparison, MaskState::NoMaskAbnormal, 0, 38.6, false},  // red comparison
                           {1, EventKind::TemperatureCapture, MaskState::NoMask, 1, 99.1, false}};  // yellow capture
    for (int i = 0; i < 2; ++i) {
        auto* pop = new CPopUpUnit(&page);
        pop->SetAlarmInfo(MakeInfo(pops[i], i + 1), true);
        pop->move(820, 20 + i * 500);
    }

    // Returning persons: without a library name, then with one and no scene picture.
    AlarmShowInfo fre = MakeInfo({3, EventKind::Comparison, MaskState::Worn, 2, 36.5, true}, 3);
    fre.kind = EventKind::Returning;
    fre.alarmInfo.comparison.people.libraryName.clear();
    for (int y : {20, 260}) {
        auto* frequent = new CFrequenterUnit(&page);
        frequent->SetFrequenterInfo(fre);
        frequent->move(1480, y);
        fre.alarmInfo.comparison.people.libraryName = "VIP visitors";
        fre.faceInfo.bkPic.clear();
    }

    auto* strip = new QWidget(&page);
    strip->setObjectName(QStringLiteral("m_pBottomWidget"));
    strip->setAttribute(Qt::WA_StyledBackground);
    strip->setGeometry(1470, 500, 440, 340);
    for (int i = 0; i < 6; ++i) {
        auto* snap = new CSnapUnit(strip);
        AlarmShowInfo record = MakeInfo(samples[4 + i % 4], i);
        if (i == 5)
            record.faceInfoList.clear();  // an event without a face: time only
        snap->SetAlarmInfo(record);
        snap->move(8 + (i % 3) * 140, 12 + (i / 3) * 160);
        if (i == 1) {  // as under the mouse: the add-to-library button shows
            QEvent enter(QEvent::Enter);
            QCoreApplication::sendEvent(snap, &enter);
        }
    }
    // The waiting dialog, embedded in the page so it is drawn on the dashboard colour.
    auto* wait = new CWaitShowWid(&page, QStringLiteral(":/VantorDesk/Dialog/Images/Public/Control/Dialog/Loading.gif"));
    wait->setWindowFlags(Qt::Widget);
    wait->setAttribute(Qt::WA_TranslucentBackground);
    wait->move(1480, 860);
    page.show();
    QApplication::processEvents();
    page.grab().save(QDir(outDir).filePath(QStringLiteral("cards_%1.png").arg(lang)));
}

// A matched person with library data and extension fields, and a temperature
// capture with every face attribute the device reports.
void RenderDetails(const QString& lang, const QString& outDir)
{
    AlarmShowInfo comparison = MakeInfo({0, EventKind::Comparison, MaskState::NoMask, 0, 38.4, false}, 2);
    protocol::PeopleInfo& person = comparison.alarmInfo.comparison.people;
    person.name = "Lena Park";
    person.contact = "+1 555 0142";
    person.IDType = "ID";
    person.IDNo = "ID4400111";
    person.birthDate = "1984-03-15";
    person.listName = "allowList";
    person.Sex = 2;
    person.Mask = 1;
    person.extendList = {{"Department", "Logistics"}, {"Employee No.", "E1042"}, {"Badge", ""}};
    comparison.eventID = "E-detail-1";

    AlarmShowInfo capture = MakeInfo({3, EventKind::TemperatureCapture, MaskState::Worn, 2, 36.5, true}, 3);
    protocol::IntelAlarmFaceInfo& face = capture.faceInfoList.front();
    face.Sex = 1;
    face.Glass = 2;
    face.AgeGroup = 8;
    face.Expression = 2;
    face.Beard = 1;
    face.Hat = 1;
    face.TemperatureAnomaly = 0;

    const std::pair<const char*, const AlarmShowInfo*> shots[] = {{"comparison", &comparison}, {"capture", &capture}};
    for (const auto& shot : shots) {
        QWidget page;
        page.setObjectName(QStringLiteral("BTShowWidget"));
        page.setAttribute(Qt::WA_StyledBackground);
        QFile qss(QStringLiteral(":/BodyTemperature/Qss/BodyTemperature/BodyTemperature.qss"));
        qss.open(QIODevice::ReadOnly);
        page.setStyleSheet(QString::fromUtf8(qss.readAll()));
        page.setGeometry(0, 0, 1920, 1080);
        auto* card = new CAlarmUnit(&page);  // the card the dialog was opened from, behind it
        card->SetAlarmInfo(*shot.second, false);
        card->move(1520, 20);
        auto* dialog = new CComparisonDetail(&page);
        dialog->setWindowFlags(Qt::Widget);
        dialog->SetAlarmInfo(*shot.second);
        dialog->move((1920 - dialog->width()) / 2, (1080 - dialog->height()) / 2);
        page.show();
        QApplication::processEvents();
        page.grab().save(QDir(outDir).filePath(QStringLiteral("detail_%1_%2.png").arg(QLatin1String(shot.first), lang)));
    }
}

} // namespace

// The toasts are windows of their own: the whole screen is grabbed.
void RenderFaceLibraryWaits(const QString& lang, const QString& outDir)
{
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        return;
    QWidget page;
    page.setStyleSheet(QStringLiteral("background:#0B1A2E;"));
    page.setGeometry(0, 0, 1920, 1080);
    page.show();
    VantorGUIToolkit::CChaseDialog chase(
        QStringLiteral(":/VantorDesk/Dialog/Images/Public/Control/Dialog/Loading.gif"), "Processing", &page);
    chase.show();
    for (const char* key : {"FaceStoredBeforeTheCancelTookEffect", "FaceUploadOutcomeUnknown"})
        VantorGUIToolkit::CInformationDlg::ShowInformationAtScreenRightBottom(
            QCoreApplication::translate("BodyTemperature::CFaceUploadOutcome", key));
    for (int i = 0; i < 30; ++i) {
        QApplication::processEvents();
        QThread::msleep(10);
    }
    QGuiApplication::primaryScreen()->grabWindow(0).save(
        QDir(outDir).filePath(QStringLiteral("facelib_%1.png").arg(lang)));
    for (auto* toast : VantorGUIToolkit::CInformationDlg::VisibleMessages())
        toast->deleteLater();
    QApplication::processEvents();
}

int main(int argc, char** argv)
{
    // Headless unless told otherwise (QT_QPA_PLATFORM=xcb under a display).
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const QString outDir = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QDir::currentPath();
    QDir().mkpath(outDir);
    for (const QString& lang : {QStringLiteral("en"), QStringLiteral("zh_CN")}) {
        QTranslator translator;
        if (!translator.load(QStringLiteral(":/BodyTemperature/i18n/BodyTemperature_%1.qm").arg(lang)))
            std::fprintf(stderr, "no translation for %s\n", qUtf8Printable(lang));
        QCoreApplication::installTranslator(&translator);
        QTranslator host;
        if (host.load(QStringLiteral(":/vantordesk/i18n/vantordesk_%1.qm").arg(lang)))
            QCoreApplication::installTranslator(&host);
        RenderPage(lang, outDir);
        RenderDetails(lang, outDir);
        RenderFaceLibraryWaits(lang, outDir);
        QCoreApplication::removeTranslator(&host);
        QCoreApplication::removeTranslator(&translator);
    }
    std::printf("written to %s\n", qUtf8Printable(outDir));
    return 0;
}
