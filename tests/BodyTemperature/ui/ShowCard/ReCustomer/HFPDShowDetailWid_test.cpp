// The frequent-person detail view, pictures downloaded from the emulator: pager,
// picture k of page p, attribute items, person panel, failed downloads.
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTranslator>
#include <algorithm>
#include <gtest/gtest.h>

#include "Base/Log.h"
#include "VantorGUIToolkit/CInformationDlg.h"
#include "support/DeviceSim.h"
#include "support/UiTestSupport.h"
#include "ui/ShowCard/ReCustomer/CBTPropItem.h"
#include "ui/ShowCard/ReCustomer/CHFPDAttributes.h"
#include "ui/ShowCard/ReCustomer/CHFPDPicLabel.h"
#include "ui/ShowCard/ReCustomer/CHFPDPaging.h"
#include "ui/ShowCard/ReCustomer/CHFPDPicLabelList.h"
#include "ui/ShowCard/ReCustomer/CHFPDShowDetailWid.h"
#include "ui/ShowCard/ReCustomer/CTargetPageController.h"

using namespace BodyTemperature;
using testsupport::child;
using Item = CHFPDAttributes::Item;

namespace {

HFPDRecordList Records(int count, int brokenFace = 0)
{
    HFPDRecordList list;
    for (int i = 1; i <= count; ++i) {
        HFPDRecord r;
        r.index = i;
        r.captureTime = QStringLiteral("2026-11-20 08:%1:00").arg(i % 60, 2, 10, QLatin1Char('0')).toStdString();
        r.channelID = std::to_string(1 + i % 4);
        r.cameraName = "Camera " + std::to_string(i);
        r.picUrl = "/DVAPI/pictures/hfpd/view/" + std::to_string(i) + ".jpg";
        r.facePicUrl = i == brokenFace ? "/DVAPI/pictures/nothing/here.jpg" : r.picUrl + "?face=1";
        r.gender = i % 2 ? "male" : "female";
        r.ageGroup = "young";
        r.glass = "sunglasses";
        r.mask = "yes";
        r.hat = "no";
        std::tie(r.x, r.y, r.width, r.height) = std::make_tuple(0.4f, 0.2f, 0.1f, 0.2f);
        list.push_back(r);
    }
    return list;
}

class HFPDShowDetailWidTest : public testsupport::SimTest {
protected:
    void SetUp() override { VantorGUIToolkit::CInformationDlg::ClearShownMessages(); }

    static QList<CHFPDPicLabel*> thumbs(const QWidget& w)
    {
        QList<CHFPDPicLabel*> shown;
        for (CHFPDPicLabel* l : w.findChildren<CHFPDPicLabel*>())
            if (l->isVisibleTo(&w))
                shown.append(l);
        // Thumbnails are reused between pages: their order is their number.
        std::sort(shown.begin(), shown.end(), [](auto* a, auto* b) { return a->PicLsh() < b->PicLsh(); });
        return shown;
    }
    static bool loaded(const QWidget& w)
    {
        for (CHFPDPicLabel* l : thumbs(w))
            if (l->property("thumbState").toString() == QLatin1String("loading"))
                return false;
        return true;
    }
    static std::vector<bool> buttons(const QWidget& w)
    {
        return {child<QPushButton>(&w, "pHomePageBtn")->isEnabled(), child<QPushButton>(&w, "pPreviousBtn")->isEnabled(),
            child<QPushButton>(&w, "pNextBtn")->isEnabled(), child<QPushButton>(&w, "pLastPageBtn")->isEnabled()};
    }
};

// In English: previous and next name themselves, first and last show icons,
// and the page count stays next to its slash.
TEST_F(HFPDShowDetailWidTest, PagesOfTwentyWithTheirPager)
{
    QTranslator english;  // leaves the application with the test
    ASSERT_TRUE(english.load(QStringLiteral(":/BodyTemperature/i18n/BodyTemperature_en.qm")));
    QCoreApplication::installTranslator(&english);
    const char* const texts[][2] = {{"pHomePageBtn", ""}, {"pPreviousBtn", "Previous page"},
        {"pNextBtn", "Next page"}, {"pLastPageBtn", ""}};
    const struct { int records; const char* pages; int onFirst, onLast; } rows[] = {{0, "/1 pages", 0, 0},
        {1, "/1 pages", 1, 1}, {20, "/1 pages", 20, 20}, {21, "/2 pages", 20, 1}, {40, "/2 pages", 20, 20},
        {41, "/3 pages", 20, 1}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.records);
        CHFPDShowDetailWid view;
        EXPECT_EQ(view.objectName(), QStringLiteral("ReCustomerDetailWid"));
        ASSERT_TRUE(view.SetHFPDRecords(Records(row.records), "TEST0001", CHFPDAttributes::kReturningPersonMask, {}));
        view.show();
        EXPECT_EQ(child<QLabel>(&view, "m_pCountLabel")->text(), QStringLiteral("Total %1 records").arg(row.records));
        EXPECT_EQ(child<QLabel>(&view, "m_pPageLabel")->text(), QLatin1String(row.pages));
        EXPECT_EQ(child<QLineEdit>(&view, "m_pPageEdit")->text(), QString());
        EXPECT_EQ(child<QLabel>(&view, "m_pNoDetails")->isVisible(), row.records == 0);
        for (const auto& t : texts) {
            EXPECT_EQ(child<QPushButton>(&view, t[0])->text(), QLatin1String(t[1])) << t[0];
            EXPECT_EQ(child<QPushButton>(&view, t[0])->icon().isNull(), *t[1] != '\0') << t[0];
        }
        EXPECT_EQ(thumbs(view).size(), row.onFirst);
        const bool several = row.records > 20;
        EXPECT_EQ(buttons(view), (std::vector<bool>{false, false, several, several}));
        child<QPushButton>(&view, "pLastPageBtn")->click();
        EXPECT_EQ(thumbs(view).size(), row.onLast);
        EXPECT_EQ(buttons(view), (std::vector<bool>{several, several, false, false}));
        EXPECT_TRUE(testsupport::waitUntil([&] { return loaded(view); }));
    }
}

TEST_F(HFPDShowDetailWidTest, JumpsAndPictureKOfPageP)
{
    CHFPDShowDetailWid view;
    view.SetHFPDRecords(Records(45), "TEST0001", CHFPDAttributes::kReturningPersonMask, {});
    view.show();
    auto* pager = view.findChild<CTargetPageController*>();
    QSignalSpy changes(pager, &CTargetPageController::SignalPageChanged);
    auto* edit = child<QLineEdit>(&view, "m_pPageEdit");
    const struct { const char* text; int emitted; unsigned page; } jumps[] = {{"", 0, 1}, {"1", 0, 1}, {"3", 1, 3}, {"3", 1, 3}, {"2", 2, 2}};
    for (const auto& jump : jumps) {
        edit->setText(QLatin1String(jump.text));
        QTest::keyClick(edit, Qt::Key_Return);
        EXPECT_EQ(changes.count(), jump.emitted) << jump.text;
        EXPECT_EQ(pager->CurrentPage(), jump.page) << jump.text;
    }
    EXPECT_EQ(edit->text(), QStringLiteral("2"));
    EXPECT_EQ(buttons(view), (std::vector<bool>{true, true, true, true}));

    // Page 2 opens with its first picture (record 21) selected; picture 5 is record 25.
    auto camera = [&] { return child<QLabel>(&view, "m_pCameraLabel")->text(); };
    EXPECT_TRUE(testsupport::waitUntil([&] { return camera() == QStringLiteral("Camera 21"); }));
    ASSERT_TRUE(testsupport::waitUntil([&] { return loaded(view); }));
    QTest::mouseClick(thumbs(view).at(4), Qt::LeftButton);
    EXPECT_TRUE(testsupport::waitUntil([&] { return camera() == QStringLiteral("Camera 25"); }));
    EXPECT_EQ(child<QLabel>(&view, "m_pTimeLabel")->text(), QStringLiteral("2026-11-20 08:25:00"));
    EXPECT_TRUE(thumbs(view).at(4)->IsChecked());
    EXPECT_FALSE(thumbs(view).at(0)->IsChecked());

    // A number no thumbnail carries changes nothing.
    auto* list = view.findChild<CHFPDPicLabelList*>(QStringLiteral("CPicLabelList"));
    EXPECT_EQ(list->FindPicLabel(99), nullptr);
    EXPECT_FALSE(list->SelectPicLabel(99));
    EXPECT_FALSE(list->RemovePicLabel(99));
    view.OnPictrueClicked(99);
    EXPECT_TRUE(thumbs(view).at(4)->IsChecked());
    EXPECT_EQ(child<QLabel>(&view, "m_pCameraLabel")->text(), QStringLiteral("Camera 25"));
}

// The person panel shows only with a person of a library; gender: as shown there.
TEST_F(HFPDShowDetailWidTest, MaskBitsChooseTheAttributeItemsAndThePersonPanel)
{
    const struct { uint32_t mask; QStringList titles, values; HFPDPersonInfo person; const char* gender; } rows[] = {
        {CHFPDAttributes::kReturningPersonMask, testsupport::latin1List({"Gender", "AgeGroup", "Glasses", "Mask"}),
            testsupport::latin1List({"Male", "AgeYoung", "WithSunglasses", "WearingAMask"}), {true, "Lena Park", 2, "555-0100"},
            "Female"},
        {0x4 | 0x100, testsupport::latin1List({"Glasses", "Hat"}), testsupport::latin1List({"WithSunglasses", "DontWearAHatsatafxnG"}),
            {true, "Wang Lei", 3, ""}, "Unknown"},
        {0x2000 | 0x800000, {}, {}, {false, "", 3, ""}, nullptr},
    };
    for (const auto& row : rows) {
        CHFPDShowDetailWid view;
        view.SetHFPDRecords(Records(3), "TEST0001", row.mask, row.person);
        view.show();
        auto texts = [&view](const char* label) {
            QStringList shown;
            for (CBTPropItem* item : view.findChildren<CBTPropItem*>())
                shown << item->findChild<QLabel*>(QLatin1String(label))->text();
            return shown;
        };
        EXPECT_EQ(texts("m_pLabelTitle"), row.titles) << std::hex << row.mask;
        // The values come with the downloaded picture.
        EXPECT_TRUE(testsupport::waitUntil([&] { return texts("m_pLabelTitleSel") == row.values; }))
            << std::hex << row.mask;
        EXPECT_EQ(child<QWidget>(&view, "m_pPersonPanel")->isVisible(), row.gender != nullptr);
        if (row.gender != nullptr) {
            EXPECT_EQ(child<QLabel>(&view, "m_pPersonName")->text().toStdString(), row.person.name);
            EXPECT_EQ(child<QLabel>(&view, "m_pPersonGender")->text(), QLatin1String(row.gender));
        }
    }
}

TEST_F(HFPDShowDetailWidTest, FailedDownloadsShowOnlyWhereTheyHappened)
{
    CHFPDShowDetailWid view;
    HFPDRecordList records = Records(6, 3);
    records[0].picUrl = "/DVAPI/pictures/nothing/scene.jpg";
    records[3].picUrl = "/DVAPI/Intelligent/FDLib";  // an answer that is not a picture
    view.SetHFPDRecords(records, "TEST0001", CHFPDAttributes::kReturningPersonMask, {});
    view.show();
    ASSERT_TRUE(testsupport::waitUntil([&] { return loaded(view); }));
    QStringList states;
    for (CHFPDPicLabel* l : thumbs(view)) {
        states << l->property("thumbState").toString();
        EXPECT_EQ(l->styleSheet(), QStringLiteral("CHFPDPicLabel{boder-image:url("
                                                  ":/detailBk/Images/MixedTargetDetectionAlarm/detailBk/HFPD_Small.png);}"));
    }
    EXPECT_EQ(states, testsupport::latin1List({"loaded", "loaded", "failed", "loaded", "loaded", "loaded"}));
    // The scene of the selected record failed: the user is told once, and
    // that record's camera and time are not shown over the failure.
    EXPECT_TRUE(testsupport::waitUntil([] {
        return VantorGUIToolkit::CInformationDlg::ShownMessages()
            == QStringList{QStringLiteral("IncorrectPortNoPleaseChangeNATInRemoteConfiguration")};
    }));
    EXPECT_EQ(child<QLabel>(&view, "m_pCameraLabel")->text(), QString());
    EXPECT_EQ(child<QLabel>(&view, "m_pTimeLabel")->text(), QString());

    // Downloaded but not a picture: the picture widget says so in the log, the
    // capture's texts show (the download itself worked).
    Base::Log::SetDebug(true);
    QTest::mouseClick(thumbs(view).at(3), Qt::LeftButton);
    EXPECT_TRUE(testsupport::waitUntil(
        [&] { return child<QLabel>(&view, "m_pCameraLabel")->text() == QStringLiteral("Camera 4"); }));
    Base::Log::SetDebug(false);
    const QByteArray written = testsupport::logText();
    EXPECT_TRUE(written.contains("CPictureWidget::ShowPictureByBuffer: Load Image data failed.dwLength: "));
    EXPECT_TRUE(written.contains("Failed to load image"));

    // The add request carries the device, the mapped channel and the face as downloaded.
    QSignalSpy add(&view, &CHFPDShowDetailWid::SignalAddHFPDFaceToLibrary);
    QTest::mouseClick(thumbs(view).at(1), Qt::LeftButton);
    child<QPushButton>(&view, "m_pAddBtn")->click();
    ASSERT_EQ(add.count(), 1);
    EXPECT_EQ(add.at(0).at(0).toString(), QStringLiteral("TEST0001"));
    EXPECT_EQ(add.at(0).at(1).toString(), QStringLiteral("3"));
    EXPECT_FALSE(QImage::fromData(add.at(0).at(2).toByteArray()).isNull());
    EXPECT_EQ(child<QPushButton>(&view, "m_pAddBtn")->toolTip(), QStringLiteral("AddToFacePictureLibrary"));
}

// Decisions the view above does not reach: page texts it never types, words
// that are nearly right, every mask bit at once, colour and icon edges.
TEST(HFPDPagingTest, JumpTargets)
{
    const struct { const char* text; uint32_t current; bool jumps; uint32_t target; } rows[] = {
        {"   ", 1, false, 0}, {" 3 ", 1, true, 3}, {"4", 1, false, 0}, {"0", 1, false, 0}, {"x", 1, false, 0}};
    for (const auto& r : rows) {
        uint32_t target = 0;
        EXPECT_EQ(CHFPDPaging::JumpTarget(QString::fromLatin1(r.text), r.current, 3, target), r.jumps) << r.text;
        EXPECT_EQ(target, r.target) << r.text;
    }
}

// Words are matched exactly; anything else is the family's unknown value.
TEST(HFPDAttributesTest, UnknownWordsAndColoursAndEveryMaskBit)
{
    EXPECT_EQ(CHFPDAttributes::AgeGroupCode("Young"), 10);
    EXPECT_EQ(CHFPDAttributes::ExpressionCode("calm"), 0);
    EXPECT_EQ(CHFPDAttributes::GenderCode("m"), 0);
    EXPECT_EQ(CHFPDAttributes::ColourValue(17), "none;");
    EXPECT_EQ(CHFPDAttributes::ColourValue(0), "none;");
    EXPECT_STREQ(CHFPDAttributes::HatLook("helmet").icon, "");
    EXPECT_EQ(CHFPDAttributes::ShownItems(0xFFFFFFFF),
        (std::vector<Item>{Item::Gender, Item::AgeGroup, Item::Glasses, Item::Mask, Item::Hat}));
}

} // namespace
