// The event cards on real widgets (offscreen), filled from real JPEGs.
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include "VantorGUIToolkit/CInformationDlg.h"
#include "support/TestSupport.h"
#include "ui/ShowCard/CAlarmUnit.h"
#include "ui/ShowCard/CPopUpUnit.h"
#include "ui/ShowCard/CSnapUnit.h"
#include "ui/ShowCard/CardStyle.h"
#include "ui/ShowCard/ReCustomer/CFrequenterUnit.h"

using namespace BodyTemperature;

namespace {

QImage Scaled(const QImage& image, const QSize& size)
{
    return image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

// The default pictures are drawn from resources as pixmaps, at the card's size.
QImage DefaultPicture(const QString& path)
{
    return QPixmap(path).scaled(QSize(120, 160), Qt::IgnoreAspectRatio, Qt::SmoothTransformation).toImage();
}

QImage Shown(const QLabel* label)
{
    return label->pixmap() ? label->pixmap()->toImage().convertToFormat(QImage::Format_RGB32) : QImage();
}

bool SameImage(const QImage& a, const QImage& b)
{
    return a.convertToFormat(QImage::Format_RGB32) == b.convertToFormat(QImage::Format_RGB32);
}

protocol::IntelAlarmFaceInfo SceneFace(const QByteArray& scene, protocol::PictureRect rect)
{
    protocol::IntelAlarmFaceInfo face;
    face.bkPic = scene;
    face.bNoSubPic = true;
    face.faceRects.push_back(rect);
    return face;
}

AlarmShowInfo CaptureRecord(uint32_t kind, const protocol::IntelAlarmFaceInfo& face)
{
    AlarmShowInfo info;
    info.kind = kind;
    info.faceInfoList.push_back(face);
    info.cameraName = "Gate";
    info.captureTime = 1700000000;
    return info;
}

AlarmShowInfo ComparisonRecord(uint32_t kind, const protocol::IntelAlarmFaceInfo& face)
{
    AlarmShowInfo info;
    info.kind = kind;
    info.faceInfo = face;
    info.cameraName = "Gate";
    info.captureTime = 1700000000;
    return info;
}

template <typename T>
T* Named(QWidget* parent, const char* name)
{
    return parent->findChild<T*>(QString::fromLatin1(name));
}

// The badge of a card: the label whose style uses one of the badge pictures.
QLabel* Badge(QWidget* card, bool big)
{
    for (QLabel* l : card->findChildren<QLabel*>())
        if (l->styleSheet().contains(big ? QLatin1String("temp1.png") : QLatin1String("temp.png")))
            return l;
    return nullptr;
}

// ---- temperature badge ----

TEST(CardBadge, FormatsValueAndUnitWithoutConversion)
{
    struct Row {
        const char* text;
        uint32_t state;
        const char* unit;
        bool visible;
        const char* shown;
        const char* picture;
    } rows[] = {
        {"36.55", 0, "C", true, "36.5 C", "R-temp.png"},  // 36.55 is 36.5499.. in binary
        {"36", 1, "F", true, "36.0 F", "Y-temp.png"},
        {"98.04", 2, "", true, "98.0 ", "G-temp.png"},      // unknown unit: a space, then nothing
        {"65535", 0, "C", false, "", "R-temp.png"},
        {"65535.0", 2, "C", false, "", "G-temp.png"},
        {"abc", 0, "C", true, "0.0 C", "R-temp.png"},       // atof: no number is 0
    };
    for (const Row& r : rows) {
        QWidget parent;
        auto* badge = new QLabel(&parent);
        parent.show();
        CardStyle::ApplyTemperatureBadge(badge, r.state, QString::fromLatin1(r.text), QString::fromLatin1(r.unit), false);
        EXPECT_EQ(badge->isVisible(), r.visible) << r.text;
        if (r.visible) {
            EXPECT_EQ(badge->text(), QString::fromLatin1(r.shown)) << r.text;
        }
        EXPECT_TRUE(badge->styleSheet().contains(QLatin1String(r.picture))) << r.text;
        EXPECT_TRUE(badge->styleSheet().contains(QLatin1String("font-size:18px"))) << r.text;
    }
    // State 3 leaves the badge alone.
    QLabel untouched;
    untouched.setText(QStringLiteral("before"));
    CardStyle::ApplyTemperatureBadge(&untouched, 3, QStringLiteral("37.0"), QStringLiteral("C"), false);
    EXPECT_EQ(untouched.text(), QStringLiteral("before"));
    EXPECT_TRUE(untouched.styleSheet().isEmpty());
}

TEST(CardBadge, AlarmCardUsesTheUnitCodeOfItsThermometry)
{
    const QByteArray scene = testsupport::makeJpeg(200, 100);
    struct Row {
        uint32_t unit;
        double value;
        const char* shown;
    } rows[] = {{0, 36.0, "36.0 DegreeC"}, {1, 98.6, "98.6 DegreeF"}, {2, 309.2, "309.2 xYyCxaTr"}, {5, 36.0, "36.0 "}};
    for (const Row& r : rows) {
        AlarmShowInfo info = ComparisonRecord(0, SceneFace(scene, {0, 0, 1, 1}));
        info.temperatureType = 2;
        info.alarmType = 3;
        info.alarmInfo.thermometry.TemperatureEnabled = 1;
        info.alarmInfo.thermometry.Temperature = r.value;
        info.alarmInfo.thermometry.TemperatureUnit = r.unit;
        CAlarmUnit card;
        card.show();
        card.SetAlarmInfo(info, false);
        QLabel* badge = Badge(&card, false);
        ASSERT_NE(badge, nullptr);
        EXPECT_TRUE(badge->isVisible());
        EXPECT_EQ(badge->text(), QString::fromLatin1(r.shown));
    }
}

// ---- colour levels ----

TEST(CardColours, LevelNamesCardButtonAndLabels)
{
    const QByteArray scene = testsupport::makeJpeg(200, 100);
    struct Row {
        uint32_t level;
        const char* colour;  // empty: names unchanged
    } rows[] = {{0, "Red"}, {1, "Yellow"}, {2, "Blue"}, {3, "Green"}, {4, ""}};
    for (const Row& r : rows) {
        for (uint32_t kind : {0u, 4u}) {
            AlarmShowInfo info = kind == 4 ? CaptureRecord(kind, SceneFace(scene, {0, 0, 1, 1}))
                                           : ComparisonRecord(kind, SceneFace(scene, {0, 0, 1, 1}));
            info.alarmType = r.level;
            CAlarmUnit card;
            card.SetIsSnap(kind == 4);
            card.SetAlarmInfo(info, false);
            const QString colour = QString::fromLatin1(r.colour);
            if (colour.isEmpty()) {
                EXPECT_TRUE(card.objectName().isEmpty());
                for (QWidget* w : card.findChildren<QWidget*>())
                    for (const char* c : {"Red", "Yellow", "Blue", "Green"})
                        EXPECT_FALSE(w->objectName().endsWith(QLatin1String(c))) << qPrintable(w->objectName());
                continue;
            }
            EXPECT_EQ(card.objectName(), (kind == 4 ? QStringLiteral("Snap_") : QStringLiteral("Comparison_")) + colour);
            auto* details = Named<QPushButton>(&card, qPrintable(QStringLiteral("DetailBtn_") + colour));
            ASSERT_NE(details, nullptr) << r.colour;
            EXPECT_TRUE(details->font().bold());
            for (const char* prefix : {"m_pName", "m_pFacelibName", "m_pTime", "m_pCamera", "m_pSimilarity"})
                EXPECT_NE(Named<QLabel>(&card, qPrintable(QString::fromLatin1(prefix) + colour)), nullptr)
                    << prefix << r.colour;
            EXPECT_TRUE(Named<QLabel>(&card, qPrintable(QStringLiteral("m_pName") + colour))->font().bold());
        }
    }
}

TEST(CardColours, StyleSheetColoursFollowTheName)
{
    // Renaming must re-polish: the module style sheet's colour for the new
    // name has to reach the label.
    QWidget page;
    page.setStyleSheet(QStringLiteral("QLabel#m_pNameRed{color:#FF0000;} QLabel#m_pNameGreen{color:#00FF00;}"));
    auto* label = new QLabel(QStringLiteral("x"), &page);
    page.show();
    CardStyle::Rename(label, QStringLiteral("m_pNameRed"));
    EXPECT_EQ(label->palette().color(QPalette::WindowText), QColor(0xFF, 0, 0));
    CardStyle::Rename(label, QStringLiteral("m_pNameGreen"));
    EXPECT_EQ(label->palette().color(QPalette::WindowText), QColor(0, 0xFF, 0));
}

// ---- capture card ----

TEST(SnapUnit, CropsTheScenePictureByTheFirstFaceRectangle)
{
    const QByteArray scene = testsupport::makeJpeg(400, 200);
    const QImage full = QImage::fromData(scene);
    struct Row {
        protocol::PictureRect rect;
        QRect expectedCrop;
        bool storesRect;
    } rows[] = {
        {{0.25, 0.5, 0.5, 0.25}, QRect(100, 100, 200, 50), true},
        {{0, 0, 1, 1}, QRect(0, 0, 400, 200), false},
    };
    for (const Row& r : rows) {
        CSnapUnit card;
        card.SetAlarmInfo(CaptureRecord(3, SceneFace(scene, r.rect)));
        const QImage shown = Shown(card.findChild<QLabel*>(QStringLiteral("m_pSnapPicLabel")));
        EXPECT_TRUE(SameImage(shown, Scaled(full.copy(r.expectedCrop), QSize(118, 113))));
        EXPECT_EQ(card.facePictureData(), scene);
        EXPECT_EQ(card.faceRect().isWhole() || card.faceRect().isNull(), !r.storesRect);
        if (r.storesRect) {
            EXPECT_EQ(card.faceRect().x, 0.25);
        }
    }
}

TEST(SnapUnit, FacePictureSourcesAndFailures)
{
    const QByteArray scene = testsupport::makeJpeg(320, 240);
    const QByteArray facePic = testsupport::makeJpeg(90, 110);
    protocol::IntelAlarmFaceInfo withFace = SceneFace(scene, {0.1, 0.1, 0.5, 0.5});
    withFace.SubPic = facePic;
    withFace.bNoSubPic = false;
    protocol::IntelAlarmFaceInfo flagged = withFace;
    flagged.bNoSubPic = true;  // the device says the face picture is not usable
    protocol::IntelAlarmFaceInfo broken = SceneFace(QByteArray("garbage"), {0.1, 0.1, 0.5, 0.5});

    struct Row {
        const char* name;
        AlarmShowInfo info;
        QByteArray expectedData;
        bool picture;
    } rows[] = {
        {"separate face", CaptureRecord(4, withFace), facePic, true},
        {"flag falls back to scene", CaptureRecord(4, flagged), scene, true},
        {"undecodable", CaptureRecord(3, broken), QByteArray(), false},
        {"empty face list", AlarmShowInfo{}, QByteArray(), false},
    };
    rows[3].info.kind = 3;
    rows[3].info.captureTime = 1700000000;
    for (Row& r : rows) {
        CSnapUnit card;
        card.SetAlarmInfo(r.info);
        auto* label = card.findChild<QLabel*>(QStringLiteral("m_pSnapPicLabel"));
        EXPECT_EQ(label->pixmap() != nullptr && !label->pixmap()->isNull(), r.picture) << r.name;
        EXPECT_EQ(card.facePictureData(), r.expectedData) << r.name;
        EXPECT_FALSE(card.findChild<QLabel*>(QStringLiteral("m_pSnapTimeLabel"))->text().isEmpty()) << r.name;
    }
}

TEST(SnapUnit, AddButtonEmitsOnlyFromItsOwnButtonAndOnlyOnHover)
{
    const QByteArray scene = testsupport::makeJpeg(400, 200);
    CSnapUnit card;
    card.SetAlarmInfo(CaptureRecord(3, SceneFace(scene, {0.25, 0.5, 0.5, 0.25})));
    card.show();
    int emitted = 0;
    std::string lastPicture;
    protocol::PictureRect lastRect;
    QObject::connect(&card, &CSnapUnit::SignalAddToLib, &card, [&](std::string pic, protocol::PictureRect rect) {
        ++emitted;
        lastPicture = pic;
        lastRect = rect;
    });
    auto* add = card.findChild<QPushButton*>(QStringLiteral("m_pAddToLibBtn"));
    ASSERT_NE(add, nullptr);
    EXPECT_FALSE(add->isVisible());
    QEvent enter(QEvent::Enter);
    QCoreApplication::sendEvent(&card, &enter);
    EXPECT_TRUE(add->isVisible());

    QTest::mouseClick(add, Qt::LeftButton);
    EXPECT_EQ(emitted, 1);
    EXPECT_EQ(lastPicture, scene.toStdString());
    EXPECT_EQ(lastRect.width, 0.5);

    card.OnAddToLibBtnClicked();  // no sender
    QPushButton other;
    QObject::connect(&other, &QPushButton::clicked, &card, &CSnapUnit::OnAddToLibBtnClicked);
    other.click();
    EXPECT_EQ(emitted, 1);

    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&card, &leave);
    EXPECT_FALSE(add->isVisible());
}

// ---- alarm card ----

TEST(AlarmUnit, SimilarityText)
{
    const QByteArray scene = testsupport::makeJpeg(200, 100);
    struct Row {
        double similarity;
        bool visible;
        const char* text;
    } rows[] = {{0.0, false, ""}, {0.004, true, "0%"}, {0.876, true, "88%"}, {0.995, true, "100%"}};
    for (const Row& r : rows) {
        AlarmShowInfo info = ComparisonRecord(0, SceneFace(scene, {0, 0, 1, 1}));
        info.alarmType = 2;
        info.alarmInfo.comparison.similarity = r.similarity;
        CAlarmUnit card;
        card.show();
        card.SetAlarmInfo(info, false);
        auto* label = Named<QLabel>(&card, "m_pSimilarityBlue");
        ASSERT_NE(label, nullptr);
        EXPECT_EQ(label->isVisible(), r.visible) << r.similarity;
        if (r.visible) {
            EXPECT_EQ(label->text(), QString::fromLatin1(r.text));
        }
    }
}

TEST(AlarmUnit, TitleByPersonAndKind)
{
    const QByteArray scene = testsupport::makeJpeg(200, 100);
    struct Row {
        uint32_t kind;
        const char* person;
        const char* alternative;
        const char* title;
        bool blacklistBackground;
    } rows[] = {
        {0, "", "", "FacePictureComparison", false}, {0, "Ann", "", "Ann", false},
        {1, "", "", "AStranger", false},             {1, "", "VIP", "VIP", false},
        {2, "", "", "FaceFail", false},              {2, "", "Guest", "Guest", false},
        {3, "", "", "FaceCaptured", false},          {4, "", "", "FaceTemperatureCaptureJLMWvg", true},
        {4, "Bo", "", "Bo", false},                  {7, "", "", "/", false},
    };
    for (const Row& r : rows) {
        const protocol::IntelAlarmFaceInfo face = SceneFace(scene, {0, 0, 1, 1});
        AlarmShowInfo info = r.kind == 3 || r.kind == 4 ? CaptureRecord(r.kind, face) : ComparisonRecord(r.kind, face);
        info.alarmType = 0;
        info.alarmInfo.comparison.people.name = r.person;
        info.alarmInfo.comparison.people.alternativeName = r.alternative;
        CAlarmUnit card;
        card.SetAlarmInfo(info, false);
        auto* title = Named<QLabel>(&card, "m_pNameRed");
        ASSERT_NE(title, nullptr) << r.kind;
        EXPECT_EQ(title->text(), QString::fromLatin1(r.title)) << r.kind << r.person;
        EXPECT_EQ(card.styleSheet().contains(QLatin1String("rightBottom/BlacklistBg.png")), r.blacklistBackground);
    }
}

TEST(AlarmUnit, PicturesMaskTextAndDefaults)
{
    const QByteArray scene = testsupport::makeJpeg(300, 200);
    const QByteArray library = testsupport::makeJpeg(80, 100);
    const QImage defaultSmall = DefaultPicture(QStringLiteral(":/reCustomer/Images/AIShowPlugin/reCustomer/DefaultFace.png"));
    ASSERT_FALSE(defaultSmall.isNull());

    protocol::IntelAlarmFaceInfo face = SceneFace(scene, {0.2, 0.2, 0.4, 0.5});
    face.Mask = 2;
    AlarmShowInfo only = ComparisonRecord(0, face);
    only.alarmType = 3;
    CAlarmUnit card;
    card.SetAlarmInfo(only, false);
    // The labels showing pictures, in creation order: the face, then the second picture.
    QList<QLabel*> shown;
    for (QLabel* l : card.findChildren<QLabel*>())
        if (l->pixmap() && !l->pixmap()->isNull())
            shown.append(l);
    ASSERT_EQ(shown.size(), 2);
    QLabel* first = shown.at(0);
    QLabel* second = shown.at(1);
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(first->size(), QSize(120, 160));
    EXPECT_TRUE(SameImage(Shown(first), Scaled(QImage::fromData(scene).copy(60, 40, 120, 100), QSize(120, 160))));
    EXPECT_TRUE(SameImage(Shown(second), defaultSmall));
    EXPECT_EQ(Named<QLabel>(&card, "m_pFacelibNameGreen")->text(), QStringLiteral("WearingAMask"));

    face.Mask = 1;
    AlarmShowInfo withLibrary = ComparisonRecord(0, face);
    withLibrary.alarmInfo.comparison.libraryPic = library;
    withLibrary.alarmType = 3;
    CAlarmUnit card2;
    card2.SetAlarmInfo(withLibrary, false);
    bool libraryShown = false;
    for (QLabel* l : card2.findChildren<QLabel*>())
        libraryShown |= l->pixmap() && SameImage(Shown(l), Scaled(QImage::fromData(library), QSize(120, 160)));
    EXPECT_TRUE(libraryShown);
    EXPECT_EQ(Named<QLabel>(&card2, "m_pFacelibNameGreen")->text(), QStringLiteral("NoGauzeMask"));

    face.Mask = 0;
    AlarmShowInfo unknownMask = ComparisonRecord(0, face);
    unknownMask.alarmType = 3;
    CAlarmUnit card3;
    card3.SetAlarmInfo(unknownMask, false);
    EXPECT_EQ(Named<QLabel>(&card3, "m_pFacelibNameGreen")->text(), QStringLiteral("/"));
}

TEST(AlarmUnit, UndecodablePictureKeepsTextsButNoColours)
{
    AlarmShowInfo info = ComparisonRecord(0, SceneFace(QByteArray("garbage"), {0, 0, 1, 1}));
    info.alarmType = 0;
    info.alarmInfo.comparison.people.name = "Ann";
    CAlarmUnit card;
    card.SetAlarmInfo(info, false);
    EXPECT_TRUE(card.objectName().isEmpty());
    bool nameShown = false;
    for (QLabel* l : card.findChildren<QLabel*>())
        nameShown |= l->text() == QStringLiteral("Ann");
    EXPECT_TRUE(nameShown);
}

TEST(AlarmUnit, MaskIconSmallCardLeavesState3Untouched)
{
    const QByteArray scene = testsupport::makeJpeg(200, 100);
    AlarmShowInfo info = ComparisonRecord(0, SceneFace(scene, {0, 0, 1, 1}));
    CAlarmUnit card;
    card.show();
    auto maskIcon = [&]() -> QLabel* {
        for (QLabel* l : card.findChildren<QLabel*>())
            if (l->size() == QSize(16, 16))
                return l;
        return nullptr;
    };
    struct Step {
        uint32_t state;
        bool visible;
        const char* picture;  // expected in the style sheet
    } steps[] = {{0, true, "R-mask16"}, {2, true, "G-mask16"}, {3, true, "G-mask16"}, {1, true, "Y-mask16"}, {9, false, "Y-mask16"}};
    for (const Step& s : steps) {
        info.maskType = s.state;
        card.SetAlarmInfo(info, false);
        ASSERT_NE(maskIcon(), nullptr);
        EXPECT_EQ(maskIcon()->isVisible(), s.visible) << s.state;
        EXPECT_TRUE(maskIcon()->styleSheet().contains(QLatin1String(s.picture))) << s.state;
    }
}

// ---- pop-up card ----

TEST(PopUpUnit, KindsAndVariants)
{
    const QByteArray scene = testsupport::makeJpeg(400, 300);
    struct Row {
        uint32_t popType;
        uint32_t kind;
        const char* cardName;
        const char* detailName;
        const char* titleName;  // empty: no title label
        const char* title;
        const char* colour;     // of the renamed labels; empty: not renamed
    } rows[] = {
        {1, 0, "Cmp_PopUp_Red", "DetailBtn_Cmp_PopUp_Red", "m_pStaPopUpName", "[AbnormalTemperatureAbnPnaZOG]", "Red"},
        {2, 1, "Cmp_PopUp_Yellow", "DetailBtn_Cmp_PopUp_Yellow", "m_pStaPopUpNameYellow", "[AlarmWithoutMaskxBDZWfBH]", "Yellow"},
        {1, 4, "Snap_PopUp_Red", "DetailBtn_Cmp_PopUp_Red", "m_pStaPopUpName", "[AbnormalTemperatureAbnPnaZOG]", "Red"},
        {2, 3, "Snap_PopUp_Yellow", "DetailBtn_Cmp_PopUp_Yellow", "m_pStaPopUpNameYellow", "[AlarmWithoutMaskxBDZWfBH]", "Yellow"},
        {0, 4, "Snap_PopUp_Red", "", "", "", ""},
    };
    for (const Row& r : rows) {
        protocol::IntelAlarmFaceInfo face = SceneFace(scene, {0.25, 0.25, 0.5, 0.5});
        face.TemperatureEnabled = 1;
        face.Temperature = 38.4;
        const bool capture = r.kind >= 3;
        AlarmShowInfo info = capture ? CaptureRecord(r.kind, face) : ComparisonRecord(r.kind, face);
        info.popType = r.popType;
        info.temperatureType = 0;
        info.alarmInfo.comparison.similarity = 0.9;
        info.alarmInfo.thermometry.TemperatureEnabled = 1;
        info.alarmInfo.thermometry.Temperature = 38.4;
        info.alarmInfo.comparison.libraryPic = testsupport::makeJpeg(60, 80);
        CPopUpUnit pop;
        pop.show();
        pop.SetAlarmInfo(info, true);
        SCOPED_TRACE(r.cardName);
        EXPECT_EQ(pop.objectName(), QString::fromLatin1(r.cardName));
        EXPECT_EQ(pop.size(), QSize(630, 468));
        if (*r.detailName) {
            EXPECT_NE(Named<QPushButton>(&pop, r.detailName), nullptr);
        }
        if (*r.titleName) {
            ASSERT_NE(pop.titleLabel(), nullptr);
            EXPECT_EQ(pop.titleLabel()->objectName(), QString::fromLatin1(r.titleName));
            EXPECT_EQ(pop.titleLabel()->text(), QString::fromLatin1(r.title));
            EXPECT_TRUE(pop.titleLabel()->isVisible());
            for (const char* prefix : {"m_pName", "m_pSimilarity", "m_pFacelibName", "m_pCamera", "m_pTime"})
                EXPECT_NE(Named<QLabel>(&pop, qPrintable(QStringLiteral("%1%2Big").arg(QLatin1String(prefix), QLatin1String(r.colour)))), nullptr) << prefix;
        } else {
            EXPECT_EQ(pop.titleLabel(), nullptr);
            for (QLabel* l : pop.findChildren<QLabel*>())
                EXPECT_FALSE(l->objectName().endsWith(QLatin1String("Big"))) << qPrintable(l->objectName());
        }
        // Pictures: a capture pop-up shows one picture and no similarity.
        int bigPictures = 0;
        for (QLabel* l : pop.findChildren<QLabel*>())
            if (l->size() == QSize(182, 242) && l->isVisible())
                ++bigPictures;
        EXPECT_EQ(bigPictures, capture ? 1 : 2);
        bool similarityShown = false;
        for (QLabel* l : pop.findChildren<QLabel*>())
            similarityShown |= l->isVisible() && l->text() == QStringLiteral("90%");
        EXPECT_EQ(similarityShown, !capture);
        QLabel* badge = Badge(&pop, true);
        ASSERT_NE(badge, nullptr);
        EXPECT_TRUE(badge->isVisible());
        EXPECT_EQ(badge->text(), QStringLiteral("38.4 DegreeC"));
    }
}

TEST(PopUpUnit, RefillingKeepsOneTitleAndHidesMaskState3)
{
    const QByteArray scene = testsupport::makeJpeg(400, 300);
    CPopUpUnit pop;
    pop.show();
    AlarmShowInfo info = ComparisonRecord(0, SceneFace(scene, {0, 0, 1, 1}));
    info.popType = 1;
    info.maskType = 0;
    pop.SetAlarmInfo(info, true);
    info.popType = 2;
    pop.SetAlarmInfo(info, true);
    info.maskType = 3;
    pop.SetAlarmInfo(info, true);
    int titles = 0;
    for (QLabel* l : pop.findChildren<QLabel*>())
        titles += l->objectName().startsWith(QLatin1String("m_pStaPopUpName"));
    EXPECT_EQ(titles, 1);
    for (QLabel* l : pop.findChildren<QLabel*>())
        if (l->size() == QSize(32, 32)) {
            EXPECT_FALSE(l->isVisible());
        }

    QSignalSpy closed(&pop, &CPopUpUnit::signalClose);
    QTest::mouseClick(pop.findChild<QPushButton*>(QStringLiteral("m_pCloseBtn")), Qt::LeftButton);
    EXPECT_EQ(closed.count(), 1);
    EXPECT_FALSE(pop.isVisible());
}

// ---- one decode per event ----

TEST(EventPictures, AllCardsOfAnEventShareOneDecodeAndLookLikeAFullDecode)
{
    const QByteArray scene = testsupport::makeJpeg(1920, 1080);
    const QImage full = QImage::fromData(scene);
    const protocol::PictureRect rect{0.42, 0.25, 0.12, 0.3};
    const QRect crop(static_cast<int>(1920 * 0.42), static_cast<int>(1080 * 0.25), static_cast<int>(1920 * 0.12),
                     static_cast<int>(1080 * 0.3));
    AlarmShowInfo info = CaptureRecord(4, SceneFace(scene, rect));
    info.popType = 1;
    info.alarmType = 0;

    CSnapUnit snap;
    snap.SetAlarmInfo(info);
    CAlarmUnit alarm;
    alarm.SetAlarmInfo(AlarmShowInfo(info), false);
    CPopUpUnit pop;
    pop.SetAlarmInfo(AlarmShowInfo(info), true);
    EXPECT_EQ(info.Pictures().DecodeCount(), 1);

    EXPECT_TRUE(SameImage(Shown(snap.findChild<QLabel*>(QStringLiteral("m_pSnapPicLabel"))),
                          Scaled(full.copy(crop), QSize(118, 113))));
    auto shows = [&](QWidget* card, const QSize& size) {
        for (QLabel* l : card->findChildren<QLabel*>())
            if (l->pixmap() && SameImage(Shown(l), Scaled(full.copy(crop), size)))
                return true;
        return false;
    };
    EXPECT_TRUE(shows(&alarm, QSize(120, 160)));
    EXPECT_TRUE(shows(&pop, QSize(182, 242)));
}

TEST(EventPictures, OversizedPictureLeavesTheLabelEmpty)
{
    // A header that declares 30000 x 30000: refused before decoding.
    QByteArray scene = testsupport::makeJpeg(64, 48);
    const int sof = scene.indexOf(QByteArray("\xFF\xC0", 2));
    ASSERT_GT(sof, 0);
    scene[sof + 5] = static_cast<char>(30000 >> 8);
    scene[sof + 6] = static_cast<char>(30000 & 0xFF);
    scene[sof + 7] = static_cast<char>(30000 >> 8);
    scene[sof + 8] = static_cast<char>(30000 & 0xFF);
    for (protocol::PictureRect rect : {protocol::PictureRect{0, 0, 1, 1}, protocol::PictureRect{0.4, 0.4, 0.1, 0.1}}) {
        CSnapUnit snap;
        snap.SetAlarmInfo(CaptureRecord(3, SceneFace(scene, rect)));
        auto* label = snap.findChild<QLabel*>(QStringLiteral("m_pSnapPicLabel"));
        EXPECT_TRUE(!label->pixmap() || label->pixmap()->isNull());
        EXPECT_TRUE(snap.facePictureData().isEmpty());
    }
}

// ---- returning-person card ----

TEST(FrequenterUnit, FillsPictureLibraryAndReportsNoDetails)
{
    const QByteArray scene = testsupport::makeJpeg(400, 200);
    const QByteArray facePic = testsupport::makeJpeg(100, 120);
    const QImage defaultFace = DefaultPicture(QStringLiteral(":/rightBottom/Images/BodyTemperature/rightBottom/DefaultFace.png"));
    struct Row {
        const char* name;
        QByteArray sub;
        QByteArray bk;
        std::string library;
        QImage expected;
        const char* libraryText;
    } rows[] = {
        {"face picture", facePic, scene, "Staff", Scaled(QImage::fromData(facePic), QSize(120, 160)), "Staff"},
        {"scene cut", QByteArray(), scene, "", Scaled(QImage::fromData(scene).copy(100, 100, 200, 50), QSize(120, 160)), "\\"},
        {"default", QByteArray(), QByteArray(), "", defaultFace, "\\"},
    };
    for (const Row& r : rows) {
        AlarmShowInfo info;
        info.kind = 5;
        info.faceInfo.SubPic = r.sub;
        info.faceInfo.bkPic = r.bk;
        info.faceInfo.faceRects.push_back({0.25, 0.5, 0.5, 0.25});
        info.alarmInfo.comparison.people.libraryName = r.library;
        info.cameraName = "Hall";
        CFrequenterUnit card;
        card.SetFrequenterInfo(info);
        EXPECT_EQ(card.objectName(), QStringLiteral("Comparison_ReturningCustomer")) << r.name;
        EXPECT_EQ(Named<QLabel>(&card, "m_pFacelibNameFre")->text(), QString::fromLatin1(r.libraryText)) << r.name;
        EXPECT_EQ(Named<QLabel>(&card, "m_pCameraFre")->text(), QStringLiteral("Hall"));
        bool shown = false;
        for (QLabel* l : card.findChildren<QLabel*>())
            shown |= l->pixmap() && SameImage(Shown(l), r.expected);
        EXPECT_TRUE(shown) << r.name;
    }

    VantorGUIToolkit::CInformationDlg::ClearShownMessages();
    CFrequenterUnit card;
    QTest::mouseClick(Named<QPushButton>(&card, "DetailBtn_ReturningCustomer"), Qt::LeftButton);
    EXPECT_EQ(VantorGUIToolkit::CInformationDlg::ShownMessages(), QStringList{QStringLiteral("NoDetails")});
}

} // namespace
