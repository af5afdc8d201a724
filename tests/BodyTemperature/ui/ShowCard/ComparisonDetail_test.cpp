// The comparison detail dialog on real widgets (offscreen): code tables, the
// arrangement by event type, person texts, pictures, badge and mask icon.
#include <QDateTime>
#include <QFrame>
#include <QLabel>
#include <QStackedWidget>
#include <gtest/gtest.h>

#include "support/TestSupport.h"
#include "BodyTemperature/ui/ShowCard/ShownPicture.h"
#include "ui/ShowCard/CComparisonDetail.h"
#include "ui/ShowCard/CDetailContent.h"

using namespace BodyTemperature;
using Attribute = CDetailContent::Attribute;
using testsupport::child;

namespace {

QString Text(const QWidget& w, const char* name)
{
    const QLabel* l = child<QLabel>(&w, name);
    return l != nullptr ? l->text() : QString();
}

bool Shows(const QWidget& dialog, const char* name)
{
    const QWidget* c = child<QWidget>(&dialog, name);
    return c != nullptr && c->isVisibleTo(&dialog);
}

// By the kind's number, as the journal stores it (9: a kind no event has).
AlarmShowInfo Record(uint32_t kind)
{
    static const QByteArray s_scene = testsupport::makeJpeg(640, 360);
    AlarmShowInfo info;
    info.kind = static_cast<EventKind>(kind);
    info.cameraName = "Gate";
    info.captureTime = 1700000000;
    protocol::IntelAlarmFaceInfo face;
    face.bkPic = s_scene;
    face.bNoSubPic = true;
    face.faceRects.push_back({0.25, 0.25, 0.25, 0.5});
    face.Sex = 2;
    face.Mask = 2;
    face.AgeGroup = 9;
    face.Glass = 3;
    face.Expression = 7;
    face.Beard = 1;
    face.Hat = 2;
    face.TemperatureEnabled = 1;
    face.TemperatureAnomaly = 1;
    if (info.isCaptureKind())
        info.faceInfoList.push_back(face);
    else
        info.faceInfo = face;
    info.alarmInfo.comparison.similarity = 0.876;
    return info;
}

TEST(DetailContent, ValueTablesByAttributeFamily)
{
    // The dialog below shows listed codes of every family; these are the
    // codes past each family's end, zero, and the gap in the expressions.
    const struct { Attribute attribute; uint32_t code; const char* key; } rows[] = {
        {Attribute::Gender, 0, nullptr}, {Attribute::Gender, 3, nullptr}, {Attribute::Mask, 1, "NoGauzeMask"},
        {Attribute::Mask, 3, nullptr}, {Attribute::Glasses, 4, nullptr}, {Attribute::AgeGroup, 10, nullptr},
        {Attribute::Expression, 8, "Panic"}, {Attribute::Expression, 9, nullptr}, {Attribute::Hat, 3, nullptr},
        {Attribute::TemperatureState, 0, "TemperatureIsNormalLvoFXpTP"}, {Attribute::TemperatureState, 2, nullptr},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(testing::Message() << static_cast<int>(r.attribute) << " code " << r.code);
        const char* key = CDetailContent::AttributeKey(r.attribute, r.code);
        EXPECT_STREQ(key, r.key);
        // No translator is installed: a listed code shows its key.
        EXPECT_EQ(CDetailContent::AttributeText(r.attribute, r.code),
                  r.key ? QString::fromLatin1(r.key) : QStringLiteral("/"));
    }
}

TEST(ComparisonDetail, ArrangementByEventType)
{
    const struct { uint32_t kind; const char* title; int page, firstX; bool comparison, scene, temperatureRow, faceMeasured; } rows[] = {
        {0, "FacePictureComparisonInformation", 1, 1, true, false, false, true},
        {1, "FacePictureComparisonInformation", 0, 1, true, false, false, true},
        {2, "FacePictureComparisonInformation", 0, 1, true, false, false, true},
        {3, "FaceSnapDetail", 0, 210, false, true, false, true},
        {4, "FaceTemperatureCaptuTpwUkAkA", 0, 210, false, true, true, true},
        // The face block's state code shows whether or not its own measured flag is set.
        {4, "FaceTemperatureCaptuTpwUkAkA", 0, 210, false, true, true, false},
        {9, "FacePictureComparisonInformation", 1, 1, true, false, false, true},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(testing::Message() << "kind " << r.kind << (r.faceMeasured ? "" : ", face not measured"));
        AlarmShowInfo info = Record(r.kind);
        if (!r.faceMeasured)
            info.faceInfoList.front().TemperatureEnabled = 0;
        CComparisonDetail dialog;
        dialog.SetAlarmInfo(info);
        EXPECT_EQ(dialog.objectName(), QStringLiteral("ComparisonDetailClass"));
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("FacePictureComparisonInformation"));
        EXPECT_EQ(Text(dialog, "m_pTitleLbl"), QLatin1String(r.title));
        EXPECT_EQ(child<QStackedWidget>(&dialog, "m_pStackedWidget")->currentIndex(), r.page);
        EXPECT_EQ(child<QFrame>(&dialog, "m_pFirstFrame")->x(), r.firstX);
        for (const char* name : {"m_pSecondFrame", "m_pComparisonFrame", "m_pSimilarityLbl"})
            EXPECT_EQ(Shows(dialog, name), r.comparison) << name;
        EXPECT_EQ(Shows(dialog, "m_pPersonFrame"), r.comparison && r.page == 1);
        EXPECT_EQ(Shows(dialog, "m_pBigPicLbl"), r.scene);
        for (const char* name : {"m_pTemperatureStateValue", "m_pTemperatureStateCaption", "m_pTemperatureStateIcon"})
            EXPECT_EQ(Shows(dialog, name), r.temperatureRow) << name;
        EXPECT_EQ(child<QFrame>(&dialog, "frame")->styleSheet().contains(QLatin1String("zhuapaibg.png")), r.scene);
        EXPECT_EQ(Text(dialog, "m_pSimilarityLbl"), QStringLiteral("88%"));
        EXPECT_EQ(Text(dialog, "m_pCameraLbl"), QStringLiteral("Gate"));
        EXPECT_EQ(Text(dialog, "m_pTimeLbl"),
                  QDateTime::fromSecsSinceEpoch(1700000000).toString(QStringLiteral("MM/dd hh:mm:ss")));
        const char* const attributes[][2] = {{"m_pGenderValue", "Female"}, {"m_pMaskValue", "WearingAMask"},
            {"m_pAgeGroupValue", "MiddleAndOldAge"}, {"m_pGlassesValue", "WithSunglasses"}, {"m_pExpressionValue", "/"},
            {"m_pBeardValue", "No"}, {"m_pHatValue", "Yes"}, {"m_pTemperatureStateValue", "TemperatureAnomaliesWaPooFNo"}};
        for (const auto& a : attributes)  // the face block's, shown on the capture page
            EXPECT_TRUE(r.page != 0 || Text(dialog, a[0]) == QLatin1String(a[1])) << a[0] << qPrintable(Text(dialog, a[0]));
    }
}

TEST(ComparisonDetail, PersonTextsAndExtensionPairs)
{
    using Ext = std::vector<protocol::PersonExtendInfo>;
    const struct { const char* name; Ext list; const char* expected[8]; } rows[] = {
        {"no extensions", {}, {"/", "/", "/", "/", "/", "/", "/", "/"}},
        {"empty texts", {{"Dept", ""}, {"", "E7"}}, {"Dept", "/", "/", "E7", "/", "/", "/", "/"}},
        {"more than four", {{"a", "1"}, {"b", "2"}, {"c", "3"}, {"d", "4"}, {"e", "5"}},
         {"a", "1", "b", "2", "c", "3", "d", "4"}},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.name);
        AlarmShowInfo info = Record(0);
        protocol::PeopleInfo& person = info.alarmInfo.comparison.people;
        person.name = "Lena Park";
        person.IDNo = "ID7";
        person.Sex = 1;
        person.Mask = 5;
        person.extendList = r.list;
        CComparisonDetail dialog;
        dialog.SetAlarmInfo(info);
        const char* const texts[][2] = {{"m_pPersonNameValue", "Lena Park"}, {"m_pContactValue", "/"},
            {"m_pIDNoValue", "ID7"}, {"m_pPersonGenderValue", "Male"}, {"m_pPersonMaskValue", "/"}};
        for (const auto& t : texts)
            EXPECT_EQ(Text(dialog, t[0]), QLatin1String(t[1])) << t[0];
        for (int i = 0; i < 8; ++i) {  // name and value of each pair in turn
            const QString name = QString::fromLatin1(i % 2 ? "m_pExtendValue%1" : "m_pExtendName%1").arg(i / 2);
            EXPECT_EQ(Text(dialog, qPrintable(name)), QLatin1String(r.expected[i])) << qPrintable(name);
        }
    }
}

TEST(ComparisonDetail, PicturesSceneDefaultsAndRefusals)
{
    const QByteArray scene = testsupport::makeJpeg(1920, 1080);
    const QImage sceneImage = QImage::fromData(scene);
    const QByteArray library = testsupport::makeJpeg(300, 400);
    const QByteArray tooWide = testsupport::makeJpeg(8200, 16);
    const QSize big(412, 460), sceneSize(360, 203);
    const QImage face = sceneImage.copy(480, 270, 480, 540);
    const QImage none(QStringLiteral(":/reCustomer/Images/AIShowPlugin/reCustomer/DefaultFaceBig.png"));
    const struct { const char* name; uint32_t kind; QByteArray bk, lib; QImage first, second, shownScene; bool warns; } rows[] = {
        {"capture shows the whole scene", 4, scene, {}, face, {}, sceneImage, false},
        {"capture without a scene", 3, {}, {}, none, {}, none, false},
        {"comparison with library face", 0, scene, library, face, QImage::fromData(library), {}, false},
        {"comparison without library face", 1, scene, {}, face, none, {}, false},
        {"broken library face", 2, scene, QByteArray("not a picture"), face, none, {}, true},
        {"scene over 8192 a side", 4, tooWide, {}, none, {}, none, true},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.name);
        AlarmShowInfo info = Record(r.kind);
        protocol::IntelAlarmFaceInfo& block = info.isCaptureKind() ? info.faceInfoList.front() : info.faceInfo;
        block.bkPic = r.bk;
        info.alarmInfo.comparison.libraryPic = r.lib;
        info.eventID = r.name;
        CComparisonDetail dialog;
        dialog.SetAlarmInfo(info);
        EXPECT_TRUE(cardtest::ShowsAt(child<QLabel>(&dialog, "m_pFirstPicLbl"), r.first, big));
        EXPECT_TRUE(cardtest::ShowsAt(child<QLabel>(&dialog, "m_pSecondPicLbl"), r.second, big));
        EXPECT_TRUE(cardtest::ShowsAt(child<QLabel>(&dialog, "m_pBigPicLbl"), r.shownScene, sceneSize));
        EXPECT_EQ(testsupport::logText().contains(QByteArray("picture of event ") + r.name + " cannot be shown"), r.warns);
    }
}

TEST(ComparisonDetail, BigBadgeAndMaskIcon)
{
    const struct { uint32_t enabled, state, unit; double value; uint32_t mask; const char* text; bool maskShown; } rows[] = {
        {1, 0, 0, 38.26, 0, "38.3 DegreeC", true},  // created on first need, over the pictures
        {1, 2, 1, 97.0, 2, "97.0 DegreeF", true},
        {1, 1, 7, 36.5, 1, "36.5 ", true},
        {1, 0, 0, 65535.0, 3, nullptr, false},  // not measured
        {1, 3, 0, 36.5, 9, nullptr, false},     // state 3 draws nothing
        {0, 0, 0, 38.0, 3, nullptr, false},     // no measurement in the event block
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(testing::Message() << r.value << " state " << r.state);
        AlarmShowInfo info = Record(0);
        info.alarmInfo.thermometry.TemperatureEnabled = r.enabled;
        info.alarmInfo.thermometry.Temperature = r.value;
        info.alarmInfo.thermometry.TemperatureUnit = r.unit;
        info.temperatureType = r.state;
        info.maskType = static_cast<MaskState>(r.mask);
        CComparisonDetail dialog;
        dialog.SetAlarmInfo(info);
        const auto* badge = dialog.findChild<QLabel*>(QStringLiteral("m_pBigTemperatureLbl"));
        const bool shown = badge != nullptr && badge->isVisibleTo(&dialog);
        EXPECT_EQ(shown, r.text != nullptr);
        if (r.text != nullptr) {
            EXPECT_EQ(badge->text(), QLatin1String(r.text));
            EXPECT_EQ(badge->geometry(), QRect(325, 80, 256, 50));
        }
        EXPECT_EQ(Shows(dialog, "m_pBigMaskIcon"), r.maskShown);
    }
}

} // namespace
