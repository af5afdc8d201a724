// The settings pages as the display opens them: each change applies at once,
// lasts across a restart, and applies even when unsaved.
#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <sqlite3.h>
#include <functional>

#include "DashboardRecords.h"
#include "SettingsFileFixture.h"
#include "clientcommonlogical/CConfigMgr.h"
#include "ui/CBTShowWidget.h"
#include "ui/CPopConfigPage.h"
#include "ui/CSoundConfigPage.h"
#include "ui/CTypeConfigPage.h"
#include "ui/ShowCard/CPopUpUnit.h"

using BodyTemperature::AlarmDisplayConfig;
using BodyTemperature::CBTShowWidget;
using BodyTemperature::CPopConfigPage;
using BodyTemperature::CSoundConfigPage;
using BodyTemperature::CTypeConfigPage;
using clientcommonlogical::CConfigMgr;
using publicdatacontroller::IntelAlarmEventInfo;

namespace {

// A measured face without pictures (its cards are built at once); abnormal
// temperature on request, mask worn unless told.
IntelAlarmEventInfo record(uint32_t code, bool abnormal = false, uint32_t mask = 2)
{
    return dashtest::record(code, dashtest::face(1, abnormal ? 1 : 0, mask, false));
}

class SettingsThroughDisplayTest : public settingstest::SettingsFileTest {
protected:
    void SetUp() override
    {
        SettingsFileTest::SetUp();
        m_language = CConfigMgr::Instance()->GetLanguage();
    }
    void TearDown() override
    {
        CConfigMgr::Instance()->SetLanguage(m_language);
        SettingsFileTest::TearDown();
    }
    static void showDisplay(CBTShowWidget& w)
    {
        w.setGeometry(0, 0, 1600, 900);
        w.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&w));
    }
    static QWidget* toolBar(const CBTShowWidget& w) { return testsupport::child<QWidget>(&w, "m_pToolBtnWidget"); }
    static void press(CBTShowWidget& w, const char* button)
    {
        auto* b = testsupport::child<QToolButton>(toolBar(w), button);
        ASSERT_NE(b, nullptr);
        b->click();
    }
    static CTypeConfigPage* openTypePanel(CBTShowWidget& w)
    {
        press(w, "m_pAlarmTypeBtn");
        return toolBar(w)->findChild<CTypeConfigPage*>();
    }
    static bool popUpShown(const CBTShowWidget& w)
    {
        const auto* card = w.findChild<BodyTemperature::CPopUpUnit*>();
        return card != nullptr && card->isVisible();
    }
    static void clickBox(QCheckBox* box) { QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, 8)); }
    // True when the display took the record in (it reports its counters).
    static bool accepted(CBTShowWidget& w, const IntelAlarmEventInfo& r)
    {
        QSignalSpy spy(&w, &CBTShowWidget::signalNum);
        w.DealAlarmInfo(r);
        return spy.count() == 1;
    }
    // Presses the display's button that opens a modal page and acts on the
    // page from inside its event loop.
    template <typename Page>
    static void runModal(CBTShowWidget& w, const char* button, const std::function<void(Page&)>& act)
    {
        bool acted = false;
        QTimer::singleShot(0, qApp, [&] {
            auto* page = qobject_cast<Page*>(QApplication::activeModalWidget());
            ASSERT_NE(page, nullptr);
            acted = true;
            act(*page);
        });
        press(w, button);
        EXPECT_TRUE(acted);
    }
    int m_language = 2;
    dashtest::VoiceLog voices;
};

TEST_F(SettingsThroughDisplayTest, TheTypePanelIsSizedAndPlacedByLanguage)
{
    for (int language : {1, 2}) {
        CConfigMgr::Instance()->SetLanguage(language);
        CBTShowWidget w;
        showDisplay(w);
        CTypeConfigPage* page = openTypePanel(w);
        ASSERT_NE(page, nullptr);
        EXPECT_EQ(page->parentWidget(), toolBar(w));
        EXPECT_TRUE(page->isVisible());
        // Each press replaces the previous panel.
        QPointer<CTypeConfigPage> first = page;
        page = openTypePanel(w);
        EXPECT_TRUE(first.isNull());
        EXPECT_EQ(toolBar(w)->findChildren<CTypeConfigPage*>().size(), 1);
        EXPECT_EQ(page->size(), CTypeConfigPage::PageSize(language));
        // The computed place, unless the panel would run off the screen there
        // (as it does on the 800 x 600 test screen: then it is shifted back).
        QWidget* bar = toolBar(w);
        const QPoint place = bar->mapToGlobal(CTypeConfigPage::PagePosition(bar->geometry(), language));
        const QRect area = page->screen()->availableGeometry();
        EXPECT_EQ(page->y(), place.y());
        if (place.x() + page->width() - 1 <= area.right())
            EXPECT_EQ(page->x(), place.x());
        else
            EXPECT_EQ(page->frameGeometry().right(), area.right());
        // A pop-up: a click inside keeps it open, a click outside closes it.
        EXPECT_TRUE(page->isWindow());
        clickBox(testsupport::child<QCheckBox>(page, "m_pFaceCaptureCheckBox"));
        EXPECT_TRUE(page->isVisible());
        QTest::mouseClick(page, Qt::LeftButton, {}, QPoint(-20, 300));
        EXPECT_TRUE(testsupport::waitUntil([page] { return !page->isVisible(); }, 2000));
    }
}

TEST_F(SettingsThroughDisplayTest, UncheckedTypesStopAtOnceAndAcrossARestartButReturningPersonsPass)
{
    CBTShowWidget w;
    showDisplay(w);
    ASSERT_TRUE(accepted(w, record(100101)));

    CTypeConfigPage* page = openTypePanel(w);
    ASSERT_NE(page, nullptr);
    {
        // A switch that cannot be saved is told and still applies.
        settingstest::ReadOnlySettings readOnly;
        clickBox(testsupport::child<QCheckBox>(page, "m_pFaceCaptureCheckBox"));
    }
    EXPECT_EQ(messages(), QStringList{QStringLiteral("SaveFailed")});
    EXPECT_TRUE(reloaded().bFaceCapture);
    ASSERT_TRUE(page->isVisible());  // still open: the change is already in effect
    EXPECT_FALSE(accepted(w, record(100101)));
    QSignalSpy nums(&w, &CBTShowWidget::signalNum);
    EXPECT_TRUE(accepted(w, record(100119)));
    ASSERT_EQ(nums.count(), 1);
    EXPECT_EQ(nums.at(0).at(0).toInt(), 2);

    clickBox(testsupport::child<QCheckBox>(page, "m_pFaceComparisonCheckBox"));
    const AlarmDisplayConfig saved = reloaded();
    EXPECT_FALSE(saved.bFaceCapture || saved.bFacePictureComparison);
    EXPECT_TRUE(saved.bFaceTemperatureCapture);
    // All three off: returning persons are not one of the three.
    clickBox(testsupport::child<QCheckBox>(page, "m_pFaceTemperatureCaptureCheckBox"));
    for (uint32_t code : {100103u, 100506u, 100114u, 100101u, 100119u})
        EXPECT_FALSE(accepted(w, record(code))) << code;
    EXPECT_TRUE(accepted(w, record(100112)));
    // The next start of the display reads them back.
    CBTShowWidget restarted;
    EXPECT_FALSE(accepted(restarted, record(100119)));
}

TEST_F(SettingsThroughDisplayTest, ThePopUpPageChangesTheDisplayEvenWhenTheSaveFails)
{
    for (bool readOnly : {false, true}) {
        SCOPED_TRACE(readOnly ? "read-only settings" : "saved");
        settingstest::emptyTable();
        CBTShowWidget w;
        showDisplay(w);
        // An abnormal temperature raises the pop-up card to begin with.
        ASSERT_TRUE(accepted(w, record(100119, true)));
        ASSERT_TRUE(popUpShown(w));
        w.findChild<BodyTemperature::CPopUpUnit*>()->onClose();
        runModal<CPopConfigPage>(w, "m_pPopBtn", [&](CPopConfigPage& page) {
            testsupport::child<QCheckBox>(&page, "m_pAbnormalCheckBox")->click();
            testsupport::child<QLineEdit>(&page, "m_pDurationEdit")->setText(QStringLiteral("12"));
            clickSave(testsupport::child<QPushButton>(&page, "m_pSaveBtn"), readOnly);
        });

        // An abnormal temperature no longer raises the pop-up card; a missing
        // mask still does, for the new duration.
        EXPECT_TRUE(accepted(w, record(100119, true)));
        EXPECT_FALSE(popUpShown(w));
        EXPECT_TRUE(accepted(w, record(100119, true, 1)));
        EXPECT_TRUE(popUpShown(w));
        const auto* timer = w.findChild<QTimer*>(QStringLiteral("m_pPopTimer"));
        ASSERT_NE(timer, nullptr);
        EXPECT_EQ(timer->interval(), 12000);
    }
}

TEST_F(SettingsThroughDisplayTest, TheVoicePagesCopyIsTakenBack)
{
    CBTShowWidget w;
    const AlarmDisplayConfig before = reloaded();
    ASSERT_FALSE(before.strNormalVoice.isEmpty());  // the display filled in the shipped files
    // The file the display plays for a normal temperature, if any.
    const auto normalPrompt = [&w, this] {
        const int known = voices.played().size();
        w.DealAlarmInfo(record(100119));
        return voices.played().mid(known);
    };
    ASSERT_EQ(normalPrompt(), QStringList{before.strNormalVoice});

    runModal<CSoundConfigPage>(w, "m_pSoundBtn", [](CSoundConfigPage& page) {
        testsupport::child<QCheckBox>(&page, "m_pNormalCheckBox")->click();
        testsupport::child<QPushButton>(&page, "m_pSaveBtn")->click();
    });
    EXPECT_TRUE(normalPrompt().isEmpty());
    const AlarmDisplayConfig after = reloaded();
    EXPECT_FALSE(after.bSoundNormal);
    EXPECT_EQ(after.strNormalVoice, before.strNormalVoice);
}

// Locked at the start, the file is not written with the defaults; the user's row is
// read once the lock clears, and a save the user asks for starts from it.
AlarmDisplayConfig userRow()
{
    AlarmDisplayConfig c;
    c.bFaceCapture = false;
    c.bPopAutoClose = false;
    c.iPopDuration = 1800;
    c.strNoMaskVoice = QStringLiteral("/srv/voice/mask.wav");
    c.strNormalVoice = QStringLiteral("/srv/voice/ok.wav");
    c.strAbnormalVoice = QStringLiteral("/srv/voice/fever.wav");
    c.bSoundNormal = false;
    return c;
}

// Another program that holds the file exclusively until the lock goes.
using FileLock = std::unique_ptr<sqlite3, int (*)(sqlite3*)>;
FileLock lockSettingsFile()
{
    sqlite3* other = nullptr;
    sqlite3_open(BodyTemperature::CBTConfigDB::DatabasePath().c_str(), &other);
    FileLock lock(other, &sqlite3_close);  // closing drops the transaction with its lock
    EXPECT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE;", nullptr, nullptr, nullptr), SQLITE_OK);
    return lock;
}

TEST_F(SettingsThroughDisplayTest, ALockedFileAtStartIsNeverOverwrittenAndIsReadOnceFree)
{
    // userToggles: the user unchecks face comparison right after the lock clears.
    const struct { const char* name; bool userToggles; } cases[] = {
        {"nobody touches the settings", false}, {"the user saves a switch", true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        settingstest::emptyTable();
        ASSERT_TRUE(store(userRow()));
        const QByteArray before = fileBytes();
        FileLock lock = lockSettingsFile();
        CBTShowWidget w;
        // The defaults are in use (face captures shown), and written nowhere.
        EXPECT_TRUE(accepted(w, record(100101)));
        testsupport::pump(1500);
        EXPECT_EQ(fileBytes(), before);
        lock.reset();

        AlarmDisplayConfig expected = userRow();
        if (c.userToggles) {
            CTypeConfigPage* page = openTypePanel(w);
            ASSERT_NE(page, nullptr);
            // The panel shows the stored switches, not the defaults.
            EXPECT_FALSE(testsupport::child<QCheckBox>(page, "m_pFaceCaptureCheckBox")->isChecked());
            clickBox(testsupport::child<QCheckBox>(page, "m_pFaceComparisonCheckBox"));
            expected.bFacePictureComparison = false;
        } else {
            // The user's row is read once the lock clears: face captures are off again.
            ASSERT_TRUE(testsupport::waitUntil([&] { return !accepted(w, record(100101)); }, 15000));
            EXPECT_EQ(fileBytes(), before);
        }
        EXPECT_TRUE(reloaded() == expected);
    }
}

} // namespace
