// The alarm-type panel: each click reports all three switches at once, the
// panel's size and place follow the language, and it behaves as a pop-up
// (its shift back onto the screen is tested through the display).
#include <QCheckBox>
#include <QTest>
#include <gtest/gtest.h>

#include "support/TestSupport.h"
#include "ui/CTypeConfigPage.h"

using BodyTemperature::AlarmDisplayConfig;
using BodyTemperature::CTypeConfigPage;
using BodyTemperature::TemperatureAlarm;

namespace {

TemperatureAlarm alarm(bool temperature, bool comparison, bool capture)
{
    TemperatureAlarm a;
    a.bFaceTemperatureCapture = temperature;
    a.bFacePictureComparison = comparison;
    a.bFaceCapture = capture;
    return a;
}

TEST(TypeConfigPage, EveryClickReportsAllThreeSwitches)
{
    AlarmDisplayConfig c;
    c.bFaceCapture = false;
    c.iPopDuration = 77;
    CTypeConfigPage page;
    page.SetConfig(c);  // the steps below start from these boxes
    QList<TemperatureAlarm> reported;
    QObject::connect(&page, &CTypeConfigPage::signalCheckState, [&reported](TemperatureAlarm& a) { reported.append(a); });
    struct Step {
        QCheckBox* box;
        TemperatureAlarm expected;
    };
    const Step steps[] = {
        {testsupport::child<QCheckBox>(&page, "m_pFaceCaptureCheckBox"), alarm(true, true, true)},
        {testsupport::child<QCheckBox>(&page, "m_pFaceComparisonCheckBox"), alarm(true, false, true)},
        {testsupport::child<QCheckBox>(&page, "m_pFaceTemperatureCaptureCheckBox"), alarm(false, false, true)},
        {testsupport::child<QCheckBox>(&page, "m_pFaceCaptureCheckBox"), alarm(false, false, false)},
        {testsupport::child<QCheckBox>(&page, "m_pFaceComparisonCheckBox"), alarm(false, true, false)},
    };
    for (const Step& s : steps) {
        reported.clear();
        QTest::mouseClick(s.box, Qt::LeftButton, {}, QPoint(8, s.box->height() / 2));
        ASSERT_EQ(reported.size(), 1) << qPrintable(s.box->objectName());
        EXPECT_TRUE(reported.first() == s.expected) << qPrintable(s.box->objectName());
        EXPECT_TRUE(static_cast<const TemperatureAlarm&>(page.GetConfig()) == s.expected);
    }
    // The rest of the copy is not the panel's business.
    EXPECT_EQ(page.GetConfig().iPopDuration, 77);
}

TEST(TypeConfigPage, SizeAndPlaceFollowTheLanguage)
{
    struct Row {
        int language;
        QRect bar;
        QSize size;
        QPoint pos;
    };
    const Row rows[] = {
        {1, QRect(0, 0, 1920, 60), QSize(190, 130), QPoint(1690, 7)},
        {2, QRect(0, 0, 1920, 60), QSize(290, 150), QPoint(1590, 7)},
        {0, QRect(0, 0, 1920, 60), QSize(290, 150), QPoint(1590, 7)},
        // 1500 - 1500 * 230 / 1920 = 1320.3; (40 + 48) * 142 / 1080 = 11.57: truncated
        {1, QRect(10, 40, 1500, 48), QSize(190, 130), QPoint(1330, 11)},
        {2, QRect(10, 40, 1500, 48), QSize(290, 150), QPoint(1252, 11)},
    };
    for (const Row& r : rows) {
        EXPECT_EQ(CTypeConfigPage::PageSize(r.language), r.size) << r.language;
        EXPECT_EQ(CTypeConfigPage::PagePosition(r.bar, r.language), r.pos) << r.language << " " << r.bar.width();
    }
}

TEST(TypeConfigPage, IsAPopUpOfTheToolBarThatClosesOnAClickElsewhere)
{
    QWidget window;
    window.setGeometry(0, 0, 600, 400);  // the panel's place fits on the 800 x 600 test screen
    auto* bar = new QWidget(&window);
    bar->setGeometry(0, 0, 600, 40);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));

    auto* page = new CTypeConfigPage(bar);
    page->PlaceUnder(bar, 2);
    page->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(page));
    EXPECT_TRUE(page->isWindow());
    EXPECT_EQ(page->geometry(), QRect(bar->mapToGlobal(CTypeConfigPage::PagePosition(bar->geometry(), 2)), QSize(290, 150)));

    // A click inside keeps it open; a click outside closes it.
    QTest::mouseClick(testsupport::child<QCheckBox>(page, "m_pFaceCaptureCheckBox"), Qt::LeftButton, {}, QPoint(8, 8));
    EXPECT_TRUE(page->isVisible());
    QTest::mouseClick(page, Qt::LeftButton, {}, QPoint(-20, 300));
    EXPECT_TRUE(testsupport::waitUntil([page] { return !page->isVisible(); }, 2000));
}

} // namespace
