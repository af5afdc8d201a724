// The event cards on real widgets (offscreen), filled from real JPEGs, and
// device texts on them shown as typed.
#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <functional>
#include <gtest/gtest.h>

#include "VantorGUIToolkit/CInformationDlg.h"
#include "support/TestSupport.h"
#include "support/UiTestSupport.h"
#include "BodyTemperature/ui/ShowCard/ShownPicture.h"
#include "ui/ShowCard/CAlarmUnit.h"
#include "ui/ShowCard/CPopUpUnit.h"
#include "ui/ShowCard/CSnapUnit.h"
#include "ui/ShowCard/ReCustomer/CFrequenterUnit.h"

using namespace BodyTemperature;
using testsupport::child;

namespace {

const protocol::PictureRect kWhole{0, 0, 1, 1};


// The labels of w that pred accepts, in creation order.
QList<QLabel*> Labels(const QWidget* w, const std::function<bool(const QLabel*)>& pred)
{
    QList<QLabel*> out;
    for (QLabel* l : w->findChildren<QLabel*>())
        if (pred(l))
            out.append(l);
    return out;
}

bool ShowsPicture(QWidget* card, const QImage& picture, const QSize& size)
{
    return !Labels(card, [&](const QLabel* l) { return cardtest::ShowsAt(l, picture, size); }).isEmpty();
}

// A record whose face block (the list for capture kinds) carries the scene
// picture; the kind by its number, as the rows give it.
AlarmShowInfo Record(uint32_t kind, const QByteArray& scene, protocol::PictureRect rect = kWhole)
{
    AlarmShowInfo info;
    info.kind = static_cast<EventKind>(kind);
    protocol::IntelAlarmFaceInfo face;
    face.bkPic = scene;
    face.bNoSubPic = true;
    face.faceRects.push_back(rect);
    if (info.isCaptureKind())
        info.faceInfoList.push_back(face);
    else
        info.faceInfo = face;
    info.cameraName = "Gate";
    info.captureTime = 1700000000;
    return info;
}

protocol::IntelAlarmFaceInfo& Face(AlarmShowInfo& info)
{
    return info.isCaptureKind() ? info.faceInfoList.front() : info.faceInfo;
}

// The badge of a card: the label whose style uses one of the badge pictures.
QLabel* Badge(QWidget* card, bool big)
{
    const QLatin1String picture = big ? QLatin1String("temp1.png") : QLatin1String("temp.png");
    return Labels(card, [&](const QLabel* l) { return l->styleSheet().contains(picture); }).value(0);
}

// Badge: one decimal, a space, the unit key of the code, no conversion; 65535
// hides it and state 3 leaves it untouched (a fresh card: no badge style). The
// second picture is the library picture, or the default one when there is none.
TEST(AlarmUnit, SmallCardBadgeSimilarityMaskAndPictures)
{
    const QByteArray scene = testsupport::makeJpeg(300, 200);
    const QByteArray library = testsupport::makeJpeg(80, 100);
    const QImage defaultFace(QStringLiteral(":/reCustomer/Images/AIShowPlugin/reCustomer/DefaultFace.png"));
    // badge, percent: the texts shown, empty when hidden; a null badge: untouched.
    const struct { uint32_t state, unit; double value; const char *badge, *picture; double similarity; const char* percent;
                   uint32_t mask; bool withLibrary; const char* maskText; } rows[] = {
        {0, 0, 36.55, "36.5 DegreeC", "R-temp.png", 0.0, "", 2, false, "WearingAMask"},  // 36.55 is 36.5499.. in binary
        {1, 1, 36.0, "36.0 DegreeF", "Y-temp.png", 0.004, "0%", 1, true, "NoGauzeMask"},
        {2, 2, 309.2, "309.2 xYyCxaTr", "G-temp.png", 0.876, "88%", 0, false, "/"},
        {2, 5, 36.0, "36.0 ", "G-temp.png", 0.995, "100%", 2, true, "WearingAMask"},
        {0, 0, 65535.0, "", "R-temp.png", 0.5, "50%", 1, false, "NoGauzeMask"},
        {3, 0, 37.0, nullptr, nullptr, 0.5, "50%", 0, true, "/"},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.value);
        AlarmShowInfo info = Record(0, scene, {0.2, 0.2, 0.4, 0.5});
        Face(info).Mask = r.mask;
        info.temperatureType = r.state;
        info.alarmType = 2;
        info.alarmInfo.thermometry.TemperatureEnabled = 1;
        info.alarmInfo.thermometry.Temperature = r.value;
        info.alarmInfo.thermometry.TemperatureUnit = r.unit;
        info.alarmInfo.comparison.similarity = r.similarity;
        if (r.withLibrary)
            info.alarmInfo.comparison.libraryPic = library;
        CAlarmUnit card;
        card.show();
        card.SetAlarmInfo(info, false);
        QLabel* badge = Badge(&card, false);
        if (!r.badge) {
            EXPECT_EQ(badge, nullptr);
        } else {
            ASSERT_NE(badge, nullptr);
            EXPECT_EQ(badge->isVisible(), *r.badge != 0);
            EXPECT_EQ(badge->text(), QString::fromLatin1(r.badge));
            EXPECT_TRUE(badge->styleSheet().contains(QLatin1String(r.picture)));
        }
        QLabel* similarity = child<QLabel>(&card, "m_pSimilarityBlue");
        ASSERT_NE(similarity, nullptr);
        EXPECT_EQ(similarity->isVisible(), *r.percent != 0);
        EXPECT_EQ(similarity->text(), QString::fromLatin1(r.percent));
        EXPECT_EQ(child<QLabel>(&card, "m_pFacelibNameBlue")->text(), QString::fromLatin1(r.maskText));
        // The face (pinned by EventPictures), then the second picture.
        const auto pictures = Labels(&card, [](const QLabel* l) { return l->pixmap() && !l->pixmap()->isNull(); });
        ASSERT_EQ(pictures.size(), 2);
        EXPECT_EQ(pictures.at(0)->size(), QSize(120, 160));
        EXPECT_TRUE(cardtest::ShowsAt(pictures.at(1), r.withLibrary ? QImage::fromData(library) : defaultFace, QSize(120, 160)));
    }
}

// The cards are shown before they are filled, so the style sheet's colour of a
// name only reaches its label when the rename re-polishes it.
TEST(CardColours, LevelNamesCardButtonAndLabels)
{
    const QByteArray scene = testsupport::makeJpeg(200, 100);
    QString sheet;
    for (const char* c : {"Red", "Yellow", "Blue", "Green"})
        sheet += QStringLiteral("QLabel#m_pName%1{color:%2;}").arg(QLatin1String(c), QString::fromLatin1(c).toLower());
    // Level 4, and a picture that does not decode, leave the names as they were (none on a fresh card).
    const struct { uint32_t level; const char* colour; bool decodes; } rows[] = {
        {0, "Red", true}, {1, "Yellow", true}, {2, "Blue", true}, {3, "Green", true}, {4, "", true}, {0, "", false}};
    for (const auto& r : rows) {
        for (uint32_t kind : {0u, 4u}) {
            AlarmShowInfo info = Record(kind, r.decodes ? scene : QByteArray("garbage"));
            info.alarmType = r.level;
            info.alarmInfo.comparison.people.name = "Ann";
            QWidget page;
            page.setStyleSheet(sheet);
            auto* card = new CAlarmUnit(&page);
            card->SetIsSnap(kind == 4);
            page.show();
            card->SetAlarmInfo(info, false);
            const QString colour = QString::fromLatin1(r.colour);
            EXPECT_FALSE(Labels(card, [](const QLabel* l) { return l->text() == QStringLiteral("Ann"); }).isEmpty()) << r.level;
            if (colour.isEmpty()) {
                EXPECT_TRUE(card->objectName().isEmpty());
                for (QWidget* w : card->findChildren<QWidget*>())
                    for (const char* c : {"Red", "Yellow", "Blue", "Green"})
                        EXPECT_FALSE(w->objectName().endsWith(QLatin1String(c))) << qPrintable(w->objectName());
                continue;
            }
            EXPECT_EQ(card->objectName(), (kind == 4 ? QStringLiteral("Snap_") : QStringLiteral("Comparison_")) + colour);
            auto* details = child<QPushButton>(card, qPrintable(QStringLiteral("DetailBtn_") + colour));
            ASSERT_NE(details, nullptr) << qPrintable(colour);
            EXPECT_TRUE(details->font().bold());
            for (const char* prefix : {"m_pName", "m_pFacelibName", "m_pTime", "m_pCamera", "m_pSimilarity"})
                child<QLabel>(card, qPrintable(QLatin1String(prefix) + colour));
            QLabel* name = child<QLabel>(card, qPrintable(QStringLiteral("m_pName") + colour));
            EXPECT_TRUE(name->font().bold());
            EXPECT_EQ(name->palette().color(QPalette::WindowText), QColor(colour.toLower())) << qPrintable(colour);
        }
    }
}

TEST(SnapUnit, FacePictureSourcesCropAndFailures)
{
    const QByteArray scene = testsupport::makeJpeg(400, 200);
    const QByteArray facePic = testsupport::makeJpeg(90, 110);
    const protocol::PictureRect cut{0.25, 0.5, 0.5, 0.25};
    QByteArray huge = scene;  // its frame header declares 30000 x 30000: refused before decoding
    huge.replace(huge.indexOf(QByteArray("\xFF\xC0", 2)) + 5, 4, QByteArray("\x75\x30\x75\x30", 4));
    auto withFace = [&](bool unusable) {
        AlarmShowInfo info = Record(4, scene, cut);
        Face(info).SubPic = facePic;
        Face(info).bNoSubPic = unusable;  // the device says the face picture is not usable
        return info;
    };
    AlarmShowInfo noFace = Record(3, scene);
    noFace.faceInfoList.clear();
    // data: what is shown and handed on (one choice: EventPictures below pins the picture).
    const struct { const char* name; AlarmShowInfo info; QByteArray data; bool storesRect; } rows[] = {
        {"crop", Record(3, scene, cut), scene, true},
        {"whole: no crop", Record(3, scene), scene, false},
        {"separate face", withFace(false), facePic, false},
        {"flag falls back to scene", withFace(true), scene, true},
        {"undecodable", Record(3, QByteArray("garbage"), cut), {}, false},
        {"oversized header", Record(3, huge, cut), {}, false},
        {"oversized header, whole", Record(3, huge), {}, false},
        {"empty face list", noFace, {}, false},
    };
    for (const auto& r : rows) {
        CSnapUnit card;
        card.SetAlarmInfo(r.info);
        EXPECT_EQ(testsupport::shownImage(child<QLabel>(&card, "m_pSnapPicLabel")).size(), r.data.isEmpty() ? QSize(0, 0) : QSize(118, 113)) << r.name;
        EXPECT_EQ(card.facePictureData(), r.data) << r.name;
        EXPECT_EQ(card.faceRect().isWhole() || card.faceRect().isNull(), !r.storesRect) << r.name;
        EXPECT_EQ(card.faceRect().x, r.storesRect ? 0.25 : 0.0) << r.name;
        EXPECT_FALSE(child<QLabel>(&card, "m_pSnapTimeLabel")->text().isEmpty()) << r.name;
    }
}

TEST(SnapUnit, AddButtonEmitsOnlyFromItsOwnButtonAndOnlyOnHover)
{
    const QByteArray scene = testsupport::makeJpeg(400, 200);
    CSnapUnit card;
    card.SetAlarmInfo(Record(3, scene, {0.25, 0.5, 0.5, 0.25}));
    card.show();
    std::vector<std::pair<std::string, protocol::PictureRect>> added;
    QObject::connect(&card, &CSnapUnit::SignalAddToLib, &card,
                     [&](std::string pic, protocol::PictureRect rect) { added.emplace_back(pic, rect); });
    auto* add = child<QPushButton>(&card, "m_pAddToLibBtn");
    ASSERT_NE(add, nullptr);
    EXPECT_FALSE(add->isVisible());
    QEvent enter(QEvent::Enter);
    QCoreApplication::sendEvent(&card, &enter);
    EXPECT_TRUE(add->isVisible());

    QTest::mouseClick(add, Qt::LeftButton);
    ASSERT_EQ(added.size(), 1u);
    EXPECT_EQ(added[0].first, scene.toStdString());
    EXPECT_EQ(added[0].second.width, 0.5);

    card.OnAddToLibBtnClicked();  // no sender
    QPushButton other;
    QObject::connect(&other, &QPushButton::clicked, &card, &CSnapUnit::OnAddToLibBtnClicked);
    other.click();
    EXPECT_EQ(added.size(), 1u);

    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&card, &leave);
    EXPECT_FALSE(add->isVisible());
}

TEST(AlarmUnit, TitleByPersonAndKind)
{
    const QByteArray scene = testsupport::makeJpeg(200, 100);
    // The kind's own title, unless a person or stranger label names the face.
    const struct { uint32_t kind; const char *person, *alternative, *title; } rows[] = {
        {0, "", "", "FacePictureComparison"}, {0, "Ann", "", "Ann"}, {1, "", "VIP", "VIP"},
        {4, "", "", "FaceTemperatureCaptureJLMWvg"}, {4, "Bo", "", "Bo"}, {7, "", "", "/"},
    };
    for (const auto& r : rows) {
        AlarmShowInfo info = Record(r.kind, scene);
        info.alarmType = 0;
        info.alarmInfo.comparison.people.name = r.person;
        info.alarmInfo.comparison.people.alternativeName = r.alternative;
        CAlarmUnit card;
        card.SetAlarmInfo(info, false);
        QLabel* title = child<QLabel>(&card, "m_pNameRed");
        ASSERT_NE(title, nullptr) << r.kind;
        EXPECT_EQ(title->text(), QString::fromLatin1(r.title)) << r.kind << r.person;
        // Only an unnamed temperature capture stands on the blacklist background.
        EXPECT_EQ(card.property("temperatureCapture").toBool(), r.kind == 4 && !*r.person);
    }
}

TEST(AlarmUnit, MaskIconSmallCardLeavesState3Untouched)
{
    AlarmShowInfo info = Record(0, testsupport::makeJpeg(200, 100));
    CAlarmUnit card;
    card.show();
    // Filled in turn on the same card: state 3 keeps the previous green icon.
    const struct { uint32_t state; bool visible; const char* picture; } steps[] = {
        {0, true, "R-mask16"}, {2, true, "G-mask16"}, {3, true, "G-mask16"}, {1, true, "Y-mask16"}, {9, false, "Y-mask16"}};
    for (const auto& s : steps) {
        info.maskType = static_cast<MaskState>(s.state);
        card.SetAlarmInfo(info, false);
        QLabel* icon = Labels(&card, [](const QLabel* l) { return l->size() == QSize(16, 16); }).value(0);
        ASSERT_NE(icon, nullptr);
        EXPECT_EQ(icon->isVisible(), s.visible) << s.state;
        EXPECT_TRUE(icon->styleSheet().contains(QLatin1String(s.picture))) << s.state;
    }
}

// One pop-up refilled row after row, as the dashboard reuses it.
TEST(PopUpUnit, KindsVariantsAndRefilling)
{
    const QByteArray scene = testsupport::makeJpeg(400, 300);
    // colour: of the detail button, the title and the renamed labels; empty: none of them.
    const struct { uint32_t popType, kind, mask; const char *cardName, *colour; } rows[] = {
        {0, 4, 0, "Snap_PopUp_Red", ""}, {1, 0, 1, "Cmp_PopUp_Red", "Red"}, {2, 1, 0, "Cmp_PopUp_Yellow", "Yellow"},
        {1, 4, 2, "Snap_PopUp_Red", "Red"}, {2, 3, 3, "Snap_PopUp_Yellow", "Yellow"},
    };
    CPopUpUnit pop;
    pop.show();
    for (const auto& r : rows) {
        SCOPED_TRACE(r.cardName);
        AlarmShowInfo info = Record(r.kind, scene, {0.25, 0.25, 0.5, 0.5});
        Face(info).TemperatureEnabled = 1;
        Face(info).Temperature = 38.4;
        info.popType = static_cast<PopUpType>(r.popType);
        info.maskType = static_cast<MaskState>(r.mask);
        info.temperatureType = 0;
        info.alarmInfo.comparison.similarity = 0.9;
        info.alarmInfo.thermometry.TemperatureEnabled = 1;
        info.alarmInfo.thermometry.Temperature = 38.4;
        info.alarmInfo.comparison.libraryPic = testsupport::makeJpeg(60, 80);
        pop.SetAlarmInfo(info, true);
        const QString colour = QString::fromLatin1(r.colour);
        EXPECT_EQ(pop.objectName(), QString::fromLatin1(r.cardName));
        EXPECT_EQ(pop.size(), QSize(630, 468));
        if (!colour.isEmpty()) {
            child<QPushButton>(&pop, qPrintable(QStringLiteral("DetailBtn_Cmp_PopUp_") + colour));
            ASSERT_NE(pop.titleLabel(), nullptr);
            const bool red = colour == QLatin1String("Red");
            EXPECT_EQ(pop.titleLabel()->objectName(), red ? QStringLiteral("m_pStaPopUpName") : QStringLiteral("m_pStaPopUpNameYellow"));
            EXPECT_EQ(pop.titleLabel()->text(),
                      red ? QStringLiteral("[AbnormalTemperatureAbnPnaZOG]") : QStringLiteral("[AlarmWithoutMaskxBDZWfBH]"));
            EXPECT_TRUE(pop.titleLabel()->isVisible());
            for (const char* prefix : {"m_pName", "m_pSimilarity", "m_pFacelibName", "m_pCamera", "m_pTime"})
                child<QLabel>(&pop, qPrintable(QLatin1String(prefix) + colour + QLatin1String("Big")));
        } else {
            EXPECT_EQ(pop.titleLabel(), nullptr);
            for (QLabel* l : pop.findChildren<QLabel*>())
                EXPECT_FALSE(l->objectName().endsWith(QLatin1String("Big"))) << qPrintable(l->objectName());
        }
        // A capture pop-up shows one picture and no similarity; mask state 3 hides the big mask icon.
        const bool capture = r.kind >= 3;
        const auto shown = [&pop](bool (*pred)(const QLabel*)) {
            return Labels(&pop, [pred](const QLabel* l) { return l->isVisible() && pred(l); }).size();
        };
        EXPECT_EQ(shown([](const QLabel* l) { return l->size() == QSize(182, 242); }), capture ? 1 : 2);
        EXPECT_EQ(shown([](const QLabel* l) { return l->size() == QSize(32, 32); }), r.mask == 3 ? 0 : 1);
        EXPECT_EQ(shown([](const QLabel* l) { return l->text() == QStringLiteral("90%"); }), capture ? 0 : 1);
        const auto titles = Labels(&pop, [](const QLabel* l) { return l->objectName().startsWith(QLatin1String("m_pStaPopUpName")); });
        EXPECT_EQ(titles.size(), colour.isEmpty() ? 0 : 1);
        QLabel* badge = Badge(&pop, true);
        ASSERT_NE(badge, nullptr);
        EXPECT_TRUE(badge->isVisible());
        EXPECT_EQ(badge->text(), QStringLiteral("38.4 DegreeC"));
    }
    QSignalSpy closed(&pop, &CPopUpUnit::signalClose);
    QTest::mouseClick(child<QPushButton>(&pop, "m_pCloseBtn"), Qt::LeftButton);
    EXPECT_EQ(closed.count(), 1);
    EXPECT_FALSE(pop.isVisible());
}

TEST(EventPictures, AllCardsOfAnEventShareOneDecodeAndLookLikeAFullDecode)
{
    const QByteArray scene = testsupport::makeJpeg(1920, 1080);
    const QImage crop = QImage::fromData(scene).copy(806, 270, 230, 324);  // (0.42, 0.25, 0.12, 0.3), truncated
    AlarmShowInfo info = Record(4, scene, {0.42, 0.25, 0.12, 0.3});
    info.popType = PopUpType::AbnormalTemperature;
    info.alarmType = 0;
    CSnapUnit snap;
    snap.SetAlarmInfo(info);
    CAlarmUnit alarm;
    alarm.SetAlarmInfo(AlarmShowInfo(info), false);
    CPopUpUnit pop;
    pop.SetAlarmInfo(AlarmShowInfo(info), true);
    EXPECT_EQ(info.Pictures().DecodeCount(), 1);
    EXPECT_TRUE(ShowsPicture(&snap, crop, QSize(118, 113)));
    EXPECT_TRUE(ShowsPicture(&alarm, crop, QSize(120, 160)));
    EXPECT_TRUE(ShowsPicture(&pop, crop, QSize(182, 242)));
}

// Searches and their failures: FrequenterDetails_test, on the emulator.
TEST(FrequenterUnit, FillsPictureLibraryAndCamera)
{
    const QByteArray scene = testsupport::makeJpeg(400, 200);
    const QByteArray facePic = testsupport::makeJpeg(100, 120);
    // The camera label is the camera's name as it is, even when the device gave none.
    const struct { const char* name; QByteArray sub, bk; std::string library, camera; QImage expected; const char* libraryText; } rows[] = {
        {"face picture", facePic, scene, "Staff", "Hall", QImage::fromData(facePic), "Staff"},
        {"scene cut", {}, scene, "", "Hall", QImage::fromData(scene).copy(100, 100, 200, 50), "\\"},
        {"default", {}, {}, "", "", QImage(QStringLiteral(":/rightBottom/Images/BodyTemperature/rightBottom/DefaultFace.png")), "\\"},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.name);
        AlarmShowInfo info;
        info.kind = EventKind::Returning;
        info.faceInfo.SubPic = r.sub;
        info.faceInfo.bkPic = r.bk;
        info.faceInfo.faceRects.push_back({0.25, 0.5, 0.5, 0.25});
        info.alarmInfo.comparison.people.libraryName = r.library;
        info.cameraName = r.camera;
        CFrequenterUnit card;
        card.SetFrequenterInfo(info);
        EXPECT_EQ(card.objectName(), QStringLiteral("Comparison_ReturningCustomer"));
        EXPECT_EQ(child<QLabel>(&card, "m_pFacelibNameFre")->text(), QString::fromLatin1(r.libraryText));
        EXPECT_EQ(child<QLabel>(&card, "m_pCameraFre")->text(), QString::fromStdString(r.camera));
        EXPECT_TRUE(ShowsPicture(&card, r.expected, QSize(120, 160)));
    }
}

// Texts that come from devices (person, library and camera names) are shown
// as typed: a name that looks like markup must not load a local file or
// change the card's look.
const QString kMarkup[] = {
    QStringLiteral("<img src=/etc/hostname>"),
    QStringLiteral("<b>Bold</b> <a href=\"file:///etc\">link</a>"),
    QStringLiteral("<table><tr><td>x</td></tr></table>"),
};

// Every label of w that holds the text shows it verbatim, as plain text.
void expectShownAsTyped(QWidget* w, const QString& text)
{
    const auto holders = Labels(w, [&](const QLabel* l) { return l->text().contains(text); });
    EXPECT_FALSE(holders.isEmpty());
    for (const QLabel* l : holders)
        EXPECT_EQ(l->textFormat(), Qt::PlainText) << qPrintable(l->objectName());
}

TEST(MarkupFromTheWire, CardsShowDeviceTextsAsTyped)
{
    struct Row { const char* name; uint32_t kind; std::function<void(AlarmShowInfo&, const QString&)> put; };
    const Row rows[] = {
        {"person name", 0, [](AlarmShowInfo& i, const QString& t) { i.alarmInfo.comparison.people.name = t.toStdString(); }},
        {"stranger label", 1, [](AlarmShowInfo& i, const QString& t) {
             i.alarmInfo.comparison.people.alternativeName = t.toStdString(); }},
        {"camera name", 4, [](AlarmShowInfo& i, const QString& t) { i.cameraName = t.toStdString(); }},
        {"library name", 5, [](AlarmShowInfo& i, const QString& t) {
             i.alarmInfo.comparison.people.libraryName = t.toStdString(); }},
    };
    const QByteArray scene = testsupport::makeJpeg(320, 180);
    for (const Row& row : rows) {
        for (const QString& text : kMarkup) {
            SCOPED_TRACE(std::string(row.name) + ": " + text.toStdString());
            AlarmShowInfo info = Record(row.kind, scene, {0.25, 0.25, 0.5, 0.5});
            info.popType = PopUpType::AbnormalTemperature;
            row.put(info, text);
            if (row.kind == 5) {
                CFrequenterUnit card;
                card.SetFrequenterInfo(info);
                expectShownAsTyped(&card, text);
                continue;
            }
            CAlarmUnit card;
            card.SetAlarmInfo(info, false);
            expectShownAsTyped(&card, text);
            CPopUpUnit popUp;
            popUp.SetAlarmInfo(info, true);
            expectShownAsTyped(&popUp, text);
        }
    }
}

TEST(MarkupFromTheWire, MessagesAtTheBottomRightAreShownAsTyped)
{
    VantorGUIToolkit::CInformationDlg::ShowInformationAtScreenRightBottom(kMarkup[0]);
    QList<QLabel*> shown;
    for (QWidget* top : QApplication::topLevelWidgets())
        shown += Labels(top, [](const QLabel* l) { return l->text() == kMarkup[0]; });
    EXPECT_FALSE(shown.isEmpty());
    for (const QLabel* l : shown)
        EXPECT_EQ(l->textFormat(), Qt::PlainText) << qPrintable(l->objectName());
}

} // namespace
