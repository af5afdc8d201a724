// The voice settings dialog on the real settings file: defaults, Save, choosing a
// file, failing saves, a path the store cannot keep, Cancel and Close.
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <functional>
#include <gtest/gtest.h>

#include "SettingsFileFixture.h"
#include "VantorGUIToolkit/CPathComboBox.h"
#include "VantorGUIToolkit/TargetPath.h"
#include "clientcommonlogical/CConfigMgr.h"
#include "ui/CSoundConfigPage.h"

using BodyTemperature::AlarmDisplayConfig;
using BodyTemperature::CSoundConfigPage;
using clientcommonlogical::CConfigMgr;

namespace {

AlarmDisplayConfig withVoices()
{
    AlarmDisplayConfig c;
    c.strNormalVoice = QStringLiteral("/voices/normal.wav");
    c.strAbnormalVoice = QStringLiteral("/voices/abnormal.wav");
    c.strNoMaskVoice = QStringLiteral("/voices/no_mask.wav");
    c.bSoundAbnormal = false;
    return c;
}

class SoundConfigPageTest : public settingstest::SettingsFileTest {
protected:
    static std::unique_ptr<CSoundConfigPage> openPage() { return SettingsFileTest::openPage<CSoundConfigPage>(withVoices()); }
};

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
        auto page = openPage();
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
        auto page = openPage();
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

} // namespace
