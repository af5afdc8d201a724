// The settings pages on the real settings file, alone and as the display opens them:
// each change applies at once, lasts across a restart, and applies even when unsaved.
#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QValidator>
#include <sqlite3.h>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <gtest/gtest.h>

#include "CBTConfigDB.h"
#include "CommonMethodLib/CUserDataPath.h"
#include "DashboardRecords.h"
#include "VantorGUIToolkit/CInformationDlg.h"
#include "VantorGUIToolkit/CPathComboBox.h"
#include "VantorGUIToolkit/TargetPath.h"
#include "clientcommonlogical/CConfigMgr.h"
#include "support/TestSupport.h"
#include "ui/CBTShowWidget.h"
#include "ui/CPopConfigPage.h"
#include "ui/ShowCard/CPopUpUnit.h"
#include "ui/CSoundConfigPage.h"
#include "ui/CTypeConfigPage.h"

using BodyTemperature::AlarmDisplayConfig;
using BodyTemperature::CBTShowWidget;
using BodyTemperature::CPopConfigPage;
using BodyTemperature::CSoundConfigPage;
using BodyTemperature::CTypeConfigPage;
using BodyTemperature::TemperatureAlarm;
using clientcommonlogical::CConfigMgr;
using publicdatacontroller::IntelAlarmEventInfo;

// Readable QStrings in failure messages.
inline void PrintTo(const QString& s, std::ostream* os) { *os << '"' << s.toStdString() << '"'; }

namespace settingstest {

// An empty settings table, as a fresh install has it.
inline void emptyTable()
{
    ASSERT_TRUE(BodyTemperature::CBTConfigDB::Instance()->Execute("DELETE FROM TemperatureConfigure;"));
}

// While alive, the settings connection refuses every write, as on a read-only
// file (how the store itself fails is the store's test; pages see false).
struct ReadOnlySettings {
    ReadOnlySettings() { BodyTemperature::CBTConfigDB::Instance()->Execute("PRAGMA query_only = 1;"); }
    ~ReadOnlySettings() { BodyTemperature::CBTConfigDB::Instance()->Execute("PRAGMA query_only = 0;"); }
};

class SettingsFileTest : public testsupport::TempDirTest {
protected:
    void SetUp() override
    {
        TempDirTest::SetUp();
        // The connection is process-wide and opens its file once: one folder per program.
        static QTemporaryDir shared;
        CUserDataPath::Instance()->setComponentPath((shared.path() + QStringLiteral("/component/")).toStdString());
        ASSERT_TRUE(BodyTemperature::CBTConfigDB::Instance()->IsOpen());
        emptyTable();
        VantorGUIToolkit::CInformationDlg::ClearShownMessages();
    }

    // Every write transaction changes the file (its change counter at least).
    static QByteArray fileBytes()
    {
        QFile f(QString::fromStdString(BodyTemperature::CBTConfigDB::DatabasePath()));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    // What a restarted host would load: a fresh connection on the same file.
    static BodyTemperature::AlarmDisplayConfig reloaded()
    {
        BodyTemperature::CBTConfigDB fresh(BodyTemperature::CBTConfigDB::DatabasePath());
        BodyTemperature::AlarmDisplayConfig c;
        EXPECT_TRUE(fresh.LoadAlarmDisplayConfig(c));
        return c;
    }
    static bool store(const BodyTemperature::AlarmDisplayConfig& c)
    {
        return BodyTemperature::CBTConfigDB::Instance()->SaveAlarmDisplayConfig(c);
    }
    // Clicks a page's Save, on read-only settings when asked.
    static void clickSave(QAbstractButton* save, bool readOnly)
    {
        std::optional<ReadOnlySettings> guard;
        if (readOnly)
            guard.emplace();
        save->click();
    }
    // A settings page as the display opens it, with the row it shows stored.
    template <typename Page>
    static std::unique_ptr<Page> openPage(const BodyTemperature::AlarmDisplayConfig& c)
    {
        EXPECT_TRUE(store(c));
        auto page = std::make_unique<Page>();
        page->SetConfig(c);
        page->show();
        return page;
    }
    static QStringList messages() { return VantorGUIToolkit::CInformationDlg::ShownMessages(); }
};

} // namespace settingstest

namespace {

using PopConfigPageTest = settingstest::SettingsFileTest;

TEST_F(PopConfigPageTest, DurationFieldTakesOnlyOneTo1800WithoutLeadingZeroNorPaste)
{
    struct Row { const char* start; bool cursorHome; const char* typed; const char* expected; };
    const Row rows[] = {
        {"", false, "0", ""}, {"", false, "01", "1"}, {"", false, "1801", "180"}, {"", false, "1900", "190"},
        {"", false, "1", "1"}, {"", false, "1800", "1800"}, {"", false, "1799", "1799"}, {"", false, "9x-5 .", "95"},
        {"5", true, "0", "5"},  // would become "05"
        {"5", false, "0", "50"},
    };
    auto page = openPage<CPopConfigPage>(AlarmDisplayConfig());
    QLineEdit* edit = testsupport::child<QLineEdit>(page, "m_pDurationEdit");
    for (const Row& r : rows) {
        edit->setText(QString::fromLatin1(r.start));
        if (r.cursorHome)
            edit->setCursorPosition(0);
        QTest::keyClicks(edit, QString::fromLatin1(r.typed));
        EXPECT_EQ(edit->text(), QString::fromLatin1(r.expected)) << r.start << " + " << r.typed;
    }
    // An Arabic-Indic five is a digit, but not one the settings store.
    ASSERT_NE(edit->validator(), nullptr);
    QString otherDigit = QString::fromUtf8("\xd9\xa5");
    int pos = 1;
    EXPECT_EQ(edit->validator()->validate(otherDigit, pos), QValidator::Invalid);

    // Nothing can be pasted: "7" after "5" is a valid duration, only the filter keeps it out.
    EXPECT_EQ(edit->contextMenuPolicy(), Qt::NoContextMenu);
    for (auto [key, mods] : {std::pair{Qt::Key_V, Qt::ControlModifier}, std::pair{Qt::Key_Insert, Qt::ShiftModifier}}) {
        QApplication::clipboard()->setText(QStringLiteral("7"));
        edit->setText(QStringLiteral("5"));
        QTest::keyClick(edit, key, mods);
        EXPECT_EQ(edit->text(), QStringLiteral("5")) << key;
    }
}

TEST_F(PopConfigPageTest, SaveWritesTheChangesOrReportsTheFailureKeepingThemInTheCopy)
{
    AlarmDisplayConfig c;
    c.bFaceCapture = false;
    c.strNormalVoice = QStringLiteral("/voices/n.wav");
    AlarmDisplayConfig expected = c;  // the other fields are kept
    expected.bPopNoMask = false;
    expected.bPopAutoClose = false;
    expected.iPopDuration = 1800;
    for (bool readOnly : {false, true}) {
        SCOPED_TRACE(readOnly ? "read-only settings" : "saved");
        VantorGUIToolkit::CInformationDlg::ClearShownMessages();
        auto page = openPage<CPopConfigPage>(c);
        testsupport::child<QCheckBox>(page, "m_pNoMaskCheckBox")->click();
        testsupport::child<QLineEdit>(page, "m_pDurationEdit")->clear();
        QTest::keyClicks(testsupport::child<QLineEdit>(page, "m_pDurationEdit"), QStringLiteral("1800"));
        // Auto-close off disables the field but its value is still saved.
        testsupport::child<QCheckBox>(page, "m_pAutoCloseCheckBox")->click();
        EXPECT_FALSE(testsupport::child<QLineEdit>(page, "m_pDurationEdit")->isEnabled());
        clickSave(testsupport::child<QPushButton>(page, "m_pSaveBtn"), readOnly);
        EXPECT_FALSE(page->isVisible());
        EXPECT_EQ(page->result(), QDialog::Accepted);
        EXPECT_EQ(messages(), QStringList{QLatin1String(readOnly ? "SaveFailed" : "SaveSuccessfulYCFI2BGO")});
        EXPECT_TRUE(page->GetConfig() == expected);
        EXPECT_TRUE(reloaded() == (readOnly ? c : expected));
    }
}

TEST_F(PopConfigPageTest, NothingIsWrittenWithoutChangesOrDurationOrWhenClosed)
{
    const auto edit = [](CPopConfigPage& p) {
        testsupport::child<QCheckBox>(&p, "m_pNoMaskCheckBox")->click();
        testsupport::child<QCheckBox>(&p, "m_pAutoCloseCheckBox")->click();
        testsupport::child<QLineEdit>(&p, "m_pDurationEdit")->setText(QStringLiteral("7"));
    };
    struct Row {
        const char* name;
        std::function<void(CPopConfigPage&)> act;
        const char* message;  // none when closed without saving
        bool staysOpen;
    };
    const Row rows[] = {
        {"save after toggling a box twice", [](CPopConfigPage& p) {
             testsupport::child<QCheckBox>(&p, "m_pAbnormalCheckBox")->click();
             testsupport::child<QCheckBox>(&p, "m_pAbnormalCheckBox")->click();
             testsupport::child<QPushButton>(&p, "m_pSaveBtn")->click();
         }, "SaveSuccessfulYCFI2BGO", false},
        {"save with an empty duration", [](CPopConfigPage& p) {
             testsupport::child<QLineEdit>(&p, "m_pDurationEdit")->clear();
             testsupport::child<QPushButton>(&p, "m_pSaveBtn")->click();
         }, "TimeCannotBeEmpty", true},
        {"close button", [&](CPopConfigPage& p) { edit(p); testsupport::child<QToolButton>(&p, "m_pCloseBtn")->click(); }, nullptr, false},
        {"cancel button", [&](CPopConfigPage& p) { edit(p); testsupport::child<QPushButton>(&p, "m_pCancelBtn")->click(); }, nullptr, false},
        {"escape key", [&](CPopConfigPage& p) { edit(p); QTest::keyClick(&p, Qt::Key_Escape); }, nullptr, false},
    };
    AlarmDisplayConfig c;
    c.bPopNoMask = false;
    c.iPopDuration = 300;
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        VantorGUIToolkit::CInformationDlg::ClearShownMessages();
        auto page = openPage<CPopConfigPage>(c);
        const QByteArray before = fileBytes();
        r.act(*page);
        EXPECT_TRUE(fileBytes() == before);
        EXPECT_EQ(messages(), r.message ? QStringList{QString::fromLatin1(r.message)} : QStringList());
        EXPECT_EQ(page->isVisible(), r.staysOpen);
        EXPECT_TRUE(page->GetConfig() == c);
        if (r.message == nullptr) {  // the fields show the copy again
            EXPECT_EQ(page->result(), QDialog::Rejected);
            EXPECT_FALSE(testsupport::child<QCheckBox>(page, "m_pNoMaskCheckBox")->isChecked());
            EXPECT_TRUE(testsupport::child<QCheckBox>(page, "m_pAutoCloseCheckBox")->isChecked());
            EXPECT_TRUE(testsupport::child<QLineEdit>(page, "m_pDurationEdit")->isEnabled());
            EXPECT_EQ(testsupport::child<QLineEdit>(page, "m_pDurationEdit")->text(), QStringLiteral("300"));
        }
    }
}

TEST_F(PopConfigPageTest, TheFramelessDialogIsDraggedByItsTitle)
{
    auto page = openPage<CPopConfigPage>(AlarmDisplayConfig());
    page->move(100, 100);
    auto* title = page->findChild<QLabel*>(QStringLiteral("m_pTitleLabel"));
    ASSERT_NE(title, nullptr);
    const QPoint start = title->mapToGlobal(QPoint(10, 5));
    auto send = [title](QEvent::Type type, const QPoint& global, Qt::MouseButtons buttons) {
        QMouseEvent e(type, title->mapFromGlobal(global), global, Qt::LeftButton, buttons, Qt::NoModifier);
        QApplication::sendEvent(title, &e);
    };
    send(QEvent::MouseButtonPress, start, Qt::LeftButton);
    send(QEvent::MouseMove, start + QPoint(40, 25), Qt::LeftButton);
    send(QEvent::MouseButtonRelease, start + QPoint(40, 25), Qt::NoButton);
    EXPECT_EQ(page->pos(), QPoint(140, 125));
    // Moving without the button does nothing.
    send(QEvent::MouseMove, start + QPoint(90, 90), Qt::NoButton);
    EXPECT_EQ(page->pos(), QPoint(140, 125));
}

AlarmDisplayConfig withVoices()
{
    AlarmDisplayConfig c;
    c.strNormalVoice = QStringLiteral("/voices/normal.wav");
    c.strAbnormalVoice = QStringLiteral("/voices/abnormal.wav");
    c.strNoMaskVoice = QStringLiteral("/voices/no_mask.wav");
    c.bSoundAbnormal = false;
    return c;
}

using SoundConfigPageTest = settingstest::SettingsFileTest;

TEST_F(SoundConfigPageTest, OpeningWithNoVoiceFilesWritesTheLanguagesDefaultsAtOnce)
{
    const int language = CConfigMgr::Instance()->GetLanguage();
    for (auto [lang, suffix] : {std::pair{1, ""}, std::pair{2, "_en"}, std::pair{0, "_en"}}) {
        SCOPED_TRACE(lang);
        settingstest::emptyTable();
        CConfigMgr::Instance()->SetLanguage(lang);
        AlarmDisplayConfig c;  // a fresh install: no row, empty paths
        c.bSoundNormal = false;
        CSoundConfigPage page;
        page.SetConfig(c);

        const auto shipped = [suffix = suffix](const char* name) {
            return VantorGUIToolkit::GetTargetPathFile(QStringLiteral("%1%2.wav").arg(QLatin1String(name), QLatin1String(suffix)));
        };
        AlarmDisplayConfig expected = c;
        expected.strNoMaskVoice = shipped("no_mask");
        expected.strNormalVoice = shipped("normal");
        expected.strAbnormalVoice = shipped("abnormal");
        EXPECT_TRUE(QDir::isAbsolutePath(expected.strNormalVoice));
        EXPECT_TRUE(page.GetConfig() == expected);
        EXPECT_TRUE(reloaded() == expected);
        EXPECT_EQ(testsupport::child<VantorGUIToolkit::CPathComboBox>(&page, "m_pNormalPathCombo")->currentPath(), expected.strNormalVoice);
        EXPECT_EQ(testsupport::child<VantorGUIToolkit::CPathComboBox>(&page, "m_pAbnormalPathCombo")->currentPath(), expected.strAbnormalVoice);
        EXPECT_EQ(testsupport::child<VantorGUIToolkit::CPathComboBox>(&page, "m_pNoMaskPathCombo")->currentPath(), expected.strNoMaskVoice);
        EXPECT_FALSE(testsupport::child<QCheckBox>(&page, "m_pNormalCheckBox")->isChecked());
        EXPECT_TRUE(messages().isEmpty());
    }
    CConfigMgr::Instance()->SetLanguage(language);
}

TEST_F(SoundConfigPageTest, SaveTakesABrowsedFileAndKeepsASwitchedOffPromptsPathEvenWhenItFails)
{
    const QString wav = path(QStringLiteral("my voice.wav"));
    QFile f(wav);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.close();
    AlarmDisplayConfig expected = withVoices();
    expected.bSoundNormal = false;
    expected.bSoundAbnormal = true;
    expected.strNoMaskVoice = wav;
    for (bool readOnly : {false, true}) {
        SCOPED_TRACE(readOnly ? "read-only settings" : "saved");
        VantorGUIToolkit::CInformationDlg::ClearShownMessages();
        auto page = openPage<CSoundConfigPage>(withVoices());
        testsupport::child<QCheckBox>(page, "m_pNormalCheckBox")->click();
        testsupport::child<QCheckBox>(page, "m_pAbnormalCheckBox")->click();
        bool sawDialog = false;
        QTimer::singleShot(0, page.get(), [&] {
            auto* dialog = page->findChild<QFileDialog*>();
            ASSERT_NE(dialog, nullptr);
            sawDialog = true;
            EXPECT_EQ(dialog->fileMode(), QFileDialog::ExistingFile);
            EXPECT_EQ(dialog->windowTitle(), QStringLiteral("OpenAudioFile"));
            EXPECT_EQ(dialog->nameFilters(), QStringList{QStringLiteral("AudioFiles(*.wav)")});
            dialog->selectFile(wav);
            static_cast<QDialog*>(dialog)->accept();
        });
        testsupport::child<VantorGUIToolkit::CPathComboBox>(page, "m_pNoMaskPathCombo")->browseButton()->click();
        ASSERT_TRUE(sawDialog);
        clickSave(testsupport::child<QPushButton>(page, "m_pSaveBtn"), readOnly);
        EXPECT_FALSE(page->isVisible());
        EXPECT_EQ(messages(), QStringList{QLatin1String(readOnly ? "SaveFailed" : "SaveSuccessfulYCFI2BGO")});
        EXPECT_TRUE(page->GetConfig() == expected);
        EXPECT_TRUE(reloaded() == (readOnly ? withVoices() : expected));
    }
}

// A single quote in a path would empty the table: such a file is refused.
TEST_F(SoundConfigPageTest, SaveWithoutChangesCancelCloseAndAQuotedFileLeaveTheCopyAndTheFileAlone)
{
    const QString quoted = path(QStringLiteral("it's mine.wav"));
    ASSERT_TRUE(testsupport::writeFile(quoted, QByteArray()));
    const auto normalVoice = [](CSoundConfigPage& p) {
        return testsupport::child<VantorGUIToolkit::CPathComboBox>(&p, "m_pNormalPathCombo");
    };
    const auto edit = [](CSoundConfigPage& p) {
        testsupport::child<QCheckBox>(&p, "m_pNoMaskCheckBox")->click();
        testsupport::child<VantorGUIToolkit::CPathComboBox>(&p, "m_pAbnormalPathCombo")->comboBox()->setEditText(QStringLiteral("/other.wav"));
    };
    struct Row {
        const char* name;
        std::function<void(CSoundConfigPage&)> act;
        QDialog::DialogCode result;
        QStringList messages;
        bool staysOpen = false;
    };
    const Row rows[] = {
        // Toggling twice is no change.
        {"save without changes", [](CSoundConfigPage& p) {
             testsupport::child<QCheckBox>(&p, "m_pNoMaskCheckBox")->click();
             testsupport::child<QCheckBox>(&p, "m_pNoMaskCheckBox")->click();
             testsupport::child<QPushButton>(&p, "m_pSaveBtn")->click();
         }, QDialog::Accepted, {QStringLiteral("SaveSuccessfulYCFI2BGO")}},
        {"cancel button", [&](CSoundConfigPage& p) { edit(p); testsupport::child<QPushButton>(&p, "m_pCancelBtn")->click(); }, QDialog::Rejected, {}},
        {"close button", [&](CSoundConfigPage& p) { edit(p); testsupport::child<QToolButton>(&p, "m_pCloseBtn")->click(); }, QDialog::Rejected, {}},
        {"escape key", [&](CSoundConfigPage& p) { edit(p); QTest::keyClick(&p, Qt::Key_Escape); }, QDialog::Rejected, {}},
        {"quoted file browsed", [&](CSoundConfigPage& p) {
             QTimer::singleShot(0, &p, [&] {
                 auto* dialog = p.findChild<QFileDialog*>();
                 ASSERT_NE(dialog, nullptr);
                 dialog->selectFile(quoted);
                 static_cast<QDialog*>(dialog)->accept();
             });
             normalVoice(p)->browseButton()->click();
             EXPECT_EQ(normalVoice(p)->currentPath(), withVoices().strNormalVoice);
         }, QDialog::Rejected, {QStringLiteral("VoicePathWithQuote")}, true},
        {"quoted file typed", [&](CSoundConfigPage& p) {
             normalVoice(p)->comboBox()->setEditText(quoted);
             testsupport::child<QPushButton>(&p, "m_pSaveBtn")->click();
         }, QDialog::Rejected, {QStringLiteral("VoicePathWithQuote")}, true},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        VantorGUIToolkit::CInformationDlg::ClearShownMessages();
        auto page = openPage<CSoundConfigPage>(withVoices());
        const QByteArray before = fileBytes();
        r.act(*page);
        EXPECT_EQ(page->isVisible(), r.staysOpen);
        EXPECT_EQ(page->result(), r.result);
        EXPECT_TRUE(page->GetConfig() == withVoices());
        EXPECT_TRUE(fileBytes() == before);
        EXPECT_EQ(messages(), r.messages);
        EXPECT_TRUE(reloaded() == withVoices());
    }
}

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

class SettingsLoadRetryTest : public SettingsThroughDisplayTest {
protected:
    // Another program holds the file exclusively until release().
    void lock()
    {
        ASSERT_EQ(sqlite3_open(BodyTemperature::CBTConfigDB::DatabasePath().c_str(), &m_other), SQLITE_OK);
        ASSERT_EQ(sqlite3_exec(m_other, "BEGIN EXCLUSIVE;", nullptr, nullptr, nullptr), SQLITE_OK);
    }
    void release()
    {
        sqlite3_exec(m_other, "ROLLBACK;", nullptr, nullptr, nullptr);
        sqlite3_close(m_other);
        m_other = nullptr;
    }
    void TearDown() override
    {
        if (m_other)
            release();
        SettingsThroughDisplayTest::TearDown();
    }
    sqlite3* m_other = nullptr;
};

TEST_F(SettingsLoadRetryTest, ALockedFileAtStartIsNeverOverwrittenAndIsReadOnceFree)
{
    struct Case {
        const char* name;
        bool userToggles;  // the user unchecks face comparison right after the lock clears
    };
    const Case cases[] = {{"nobody touches the settings", false}, {"the user saves a switch", true}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        settingstest::emptyTable();
        ASSERT_TRUE(store(userRow()));
        const QByteArray before = fileBytes();
        lock();
        CBTShowWidget w;
        // The defaults are in use (face captures shown), and written nowhere.
        EXPECT_TRUE(accepted(w, record(100101)));
        testsupport::pump(1500);
        EXPECT_EQ(fileBytes(), before);
        release();

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

// The alarm-type panel alone: each click reports all three switches at once.
TEST(TypeConfigPage, EveryClickReportsAllThreeSwitches)
{
    AlarmDisplayConfig c;
    c.bFaceCapture = false;
    c.iPopDuration = 77;
    CTypeConfigPage page;
    page.SetConfig(c);  // the steps below start from these boxes
    QList<TemperatureAlarm> reported;
    QObject::connect(&page, &CTypeConfigPage::signalCheckState, [&reported](TemperatureAlarm& a) { reported.append(a); });
    struct Step { QCheckBox* box; TemperatureAlarm expected; };  // temperature capture, comparison, capture
    const Step steps[] = {
        {testsupport::child<QCheckBox>(&page, "m_pFaceCaptureCheckBox"), {true, true, true}},
        {testsupport::child<QCheckBox>(&page, "m_pFaceComparisonCheckBox"), {true, false, true}},
        {testsupport::child<QCheckBox>(&page, "m_pFaceTemperatureCaptureCheckBox"), {false, false, true}},
        {testsupport::child<QCheckBox>(&page, "m_pFaceCaptureCheckBox"), {false, false, false}},
        {testsupport::child<QCheckBox>(&page, "m_pFaceComparisonCheckBox"), {false, true, false}},
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
    struct Row { int language; QRect bar; QSize size; QPoint pos; };
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

} // namespace
