// The settings pages alone on the real settings file: what Save, Cancel and Close
// write, what they refuse, and the alarm-type panel's switches and place.
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QValidator>
#include <functional>
#include <utility>

#include "SettingsFileFixture.h"
#include "VantorGUIToolkit/CPathComboBox.h"
#include "VantorGUIToolkit/TargetPath.h"
#include "clientcommonlogical/CConfigMgr.h"
#include "ui/CPopConfigPage.h"
#include "ui/CSoundConfigPage.h"
#include "ui/CTypeConfigPage.h"

using BodyTemperature::AlarmDisplayConfig;
using BodyTemperature::CPopConfigPage;
using BodyTemperature::CSoundConfigPage;
using BodyTemperature::CTypeConfigPage;
using BodyTemperature::TemperatureAlarm;
using clientcommonlogical::CConfigMgr;

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
    // No message when closed without saving.
    struct Row { const char* name; std::function<void(CPopConfigPage&)> act; const char* message; bool staysOpen; };
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
    ASSERT_TRUE(testsupport::writeFile(wav, QByteArray()));
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
