// Renders the event cards on a 1920 x 1080 dashboard-coloured page with the
// module style sheet: alarm cards of the four colour levels (comparison and
// capture), both pop-up kinds, capture cards, a returning-person card and the
// waiting dialog, once in English and once in Chinese. Writes
// cards_en.png and cards_zh_CN.png into the folder given as argument.
//
//   xvfb-run -a -s "-screen 0 1920x1080x24 -nolisten tcp" bin/card_gallery OUTDIR
#include <QApplication>
#include <QBuffer>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QTranslator>
#include <cstdio>

#include "AlarmShowInfo.h"
#include "ui/ShowCard/CAlarmUnit.h"
#include "ui/ShowCard/CPopUpUnit.h"
#include "ui/ShowCard/CSnapUnit.h"
#include "ui/ShowCard/CWaitShowWid.h"
#include "ui/ShowCard/ReCustomer/CFrequenterUnit.h"

using namespace BodyTemperature;

namespace {

QByteArray Jpeg(const QImage& image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG", 88);
    return bytes;
}

// A person standing in a corridor; the face fills `face` (pixels).
void DrawPerson(QPainter& p, const QRectF& face, const QColor& shirt, bool mask)
{
    p.setPen(Qt::NoPen);
    p.setBrush(shirt);
    QPainterPath body;
    body.addRoundedRect(QRectF(face.center().x() - face.width() * 1.3, face.bottom() + face.height() * 0.15,
                               face.width() * 2.6, face.height() * 3), face.width() * 0.5, face.width() * 0.5);
    p.drawPath(body);
    p.setBrush(QColor(226, 186, 150));
    p.drawEllipse(face);
    p.setBrush(QColor(50, 36, 30));
    p.drawChord(face.adjusted(-2, -face.height() * 0.08, 2, 0), 0, 180 * 16);
    p.setBrush(QColor(40, 40, 50));
    const double ey = face.top() + face.height() * 0.48;
    p.drawEllipse(QPointF(face.left() + face.width() * 0.32, ey), face.width() * 0.06, face.height() * 0.04);
    p.drawEllipse(QPointF(face.left() + face.width() * 0.68, ey), face.width() * 0.06, face.height() * 0.04);
    if (mask) {
        p.setBrush(QColor(170, 215, 235));
        p.drawRoundedRect(QRectF(face.left() + face.width() * 0.12, face.top() + face.height() * 0.6,
                                 face.width() * 0.76, face.height() * 0.32), 8, 8);
    } else {
        p.setPen(QPen(QColor(150, 70, 70), 3));
        p.drawLine(QPointF(face.left() + face.width() * 0.38, face.top() + face.height() * 0.76),
                   QPointF(face.left() + face.width() * 0.62, face.top() + face.height() * 0.76));
        p.setPen(Qt::NoPen);
    }
}

QByteArray Scene(const QRectF& faceFraction, const QColor& shirt, bool mask)
{
    QImage image(1920, 1080, QImage::Format_RGB32);
    QPainter p(&image);
    QLinearGradient wall(0, 0, 0, 1080);
    wall.setColorAt(0, QColor(120, 128, 140));
    wall.setColorAt(0.7, QColor(90, 96, 106));
    wall.setColorAt(1, QColor(60, 62, 66));
    p.fillRect(image.rect(), wall);
    p.fillRect(QRect(0, 760, 1920, 320), QColor(70, 72, 76));
    for (int x = 100; x < 1920; x += 420)
        p.fillRect(QRect(x, 180, 200, 420), QColor(150, 160, 172));
    const QRectF face(faceFraction.x() * 1920, faceFraction.y() * 1080, faceFraction.width() * 1920,
                      faceFraction.height() * 1080);
    DrawPerson(p, face, shirt, mask);
    p.end();
    return Jpeg(image);
}

QByteArray Portrait(const QColor& shirt)
{
    QImage image(300, 400, QImage::Format_RGB32);
    image.fill(QColor(200, 205, 212));
    QPainter p(&image);
    DrawPerson(p, QRectF(90, 80, 120, 160), shirt, false);
    p.end();
    return Jpeg(image);
}

struct Sample {
    uint32_t level;
    uint32_t kind;
    uint32_t mask;
    uint32_t temperatureState;
    double temperature;
    bool wearsMask;
};

AlarmShowInfo MakeInfo(const Sample& s, int index)
{
    static const QColor shirts[] = {QColor(170, 50, 50), QColor(60, 90, 160), QColor(40, 130, 90), QColor(120, 100, 60)};
    AlarmShowInfo info;
    info.kind = s.kind;
    info.alarmType = s.level;
    info.maskType = s.mask;
    info.temperatureType = s.temperatureState;
    info.popType = s.level == 0 ? 1 : (s.level == 1 ? 2 : 0);
    info.captureTime = QDateTime(QDate(2026, 11, 21), QTime(9, 14, 5 + index)).toSecsSinceEpoch();
    info.cameraName = index % 2 ? "Lobby entrance" : "Back office";
    protocol::IntelAlarmFaceInfo face;
    face.bkPic = Scene(QRectF(0.40 + 0.02 * index, 0.22, 0.09, 0.22), shirts[index % 4], s.wearsMask);
    face.bNoSubPic = true;
    face.faceRects.push_back({0.40 + 0.02 * index - 0.015, 0.20, 0.12, 0.27});
    face.Mask = s.wearsMask ? 2 : 1;
    face.TemperatureEnabled = s.temperatureState == 3 ? 0 : 1;
    face.Temperature = s.temperature;
    face.TemperatureUnit = 0;
    info.alarmInfo.thermometry.TemperatureEnabled = face.TemperatureEnabled;
    info.alarmInfo.thermometry.Temperature = s.temperature;
    if (s.kind < 3) {
        info.faceInfo = face;
        info.alarmInfo.comparison.similarity = 0.87 + 0.03 * (index % 3);
        info.alarmInfo.comparison.libraryPic = Portrait(shirts[(index + 1) % 4]);
        info.alarmInfo.comparison.people.name = index % 2 ? "Lena Park" : "Wang Lei";
        info.alarmInfo.comparison.people.libraryName = "Staff";
    } else {
        info.faceInfoList.push_back(face);
    }
    return info;
}

void LoadTranslator(QTranslator& translator, const QString& lang)
{
    QCoreApplication::removeTranslator(&translator);
    if (translator.load(QStringLiteral(":/BodyTemperature/i18n/BodyTemperature_%1.qm").arg(lang)))
        QCoreApplication::installTranslator(&translator);
    else
        std::fprintf(stderr, "no translation for %s\n", qUtf8Printable(lang));
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
        {0, 0, 0, 0, 38.2, false}, {1, 1, 1, 1, 36.6, false}, {2, 2, 2, 3, 65535.0, true}, {3, 0, 2, 2, 36.4, true},
        {0, 4, 3, 0, 37.9, true},  {1, 3, 1, 3, 65535.0, false}, {2, 4, 2, 3, 65535.0, true}, {3, 4, 2, 2, 36.5, true},
    };
    int index = 0;
    for (const Sample& s : samples) {
        auto* card = new CAlarmUnit(&page);
        card->SetIsSnap(s.kind >= 3);
        card->SetAlarmInfo(MakeInfo(s, index), false);
        card->move(20 + (index / 4) * 400, 20 + (index % 4) * 240);
        ++index;
    }

    auto* popRed = new CPopUpUnit(&page);
    popRed->SetAlarmInfo(MakeInfo({0, 0, 0, 0, 38.6, false}, 1), true);
    popRed->move(820, 20);
    auto* popYellow = new CPopUpUnit(&page);
    popYellow->SetAlarmInfo(MakeInfo({1, 4, 1, 1, 99.1, false}, 2), true);
    popYellow->move(820, 520);

    auto* frequent = new CFrequenterUnit(&page);
    AlarmShowInfo fre = MakeInfo({3, 0, 2, 2, 36.5, true}, 3);
    fre.kind = 5;
    fre.alarmInfo.comparison.people.libraryName.clear();
    frequent->SetFrequenterInfo(fre);
    frequent->move(1480, 20);
    auto* frequent2 = new CFrequenterUnit(&page);
    fre.alarmInfo.comparison.people.libraryName = "VIP visitors";
    fre.faceInfo.bkPic.clear();
    frequent2->SetFrequenterInfo(fre);
    frequent2->move(1480, 260);

    auto* strip = new QWidget(&page);
    strip->setObjectName(QStringLiteral("m_pBottomWidget"));
    strip->setAttribute(Qt::WA_StyledBackground);
    strip->setGeometry(1470, 500, 440, 340);
    for (int i = 0; i < 6; ++i) {
        auto* snap = new CSnapUnit(strip);
        AlarmShowInfo info = MakeInfo(samples[4 + i % 4], i);
        if (i == 5)
            info.faceInfoList.clear();  // an event without a face: time only
        snap->SetAlarmInfo(info);
        snap->move(8 + (i % 3) * 140, 12 + (i / 3) * 160);
    }
    auto* note = new QLabel(QStringLiteral("bottom strip: 5 captures + 1 without face"), strip);
    note->setStyleSheet(QStringLiteral("color: #55657A; font-size: 11px;"));
    note->move(8, 322);

    page.show();
    QApplication::processEvents();
    page.grab().save(QDir(outDir).filePath(QStringLiteral("cards_%1.png").arg(lang)));

    CWaitShowWid wait(nullptr, QStringLiteral(":/VantorDesk/Dialog/Images/Public/Control/Dialog/Loading.gif"));
    wait.setStyleSheet(page.styleSheet());
    wait.setAttribute(Qt::WA_TranslucentBackground);
    wait.show();
    QApplication::processEvents();
    QImage waitShot(wait.size(), QImage::Format_ARGB32);
    waitShot.fill(QColor(11, 22, 38));
    {
        QPainter p(&waitShot);
        wait.render(&p, QPoint(), QRegion(), QWidget::DrawChildren);
    }
    waitShot.save(QDir(outDir).filePath(QStringLiteral("wait_%1.png").arg(lang)));
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const QString outDir = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QDir::currentPath();
    QDir().mkpath(outDir);
    QTranslator translator;
    for (const QString& lang : {QStringLiteral("en"), QStringLiteral("zh_CN")}) {
        LoadTranslator(translator, lang);
        RenderPage(lang, outDir);
    }
    std::printf("written to %s\n", qUtf8Printable(outDir));
    return 0;
}
