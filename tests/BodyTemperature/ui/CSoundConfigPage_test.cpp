// The voice settings dialog on the real settings file: defaults written on
// opening, Save with and without changes, choosing a file, failing saves,
// Cancel and Close.
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QToolButton>
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
    std::unique_ptr<CSoundConfigPage> openPage(const AlarmDisplayConfig& c)
    {
        EXPECT_TRUE(store(c));
        auto page = std::make_unique<CSoundConfigPage>();
        page->SetConfig(c);
        page->show();
        return page;
    }
    int m_language = 2;
};

TEST_F(SoundConfigPageTest, OpeningWithNoVoiceFilesWritesTheLanguagesDefaultsAtOnce)
{
    struct Row {
        int language;
        const char* noMask;
        const char* normal;
        const char* abnormal;
    };
    const Row rows[] = {
        {1, "no_mask.wav", "normal.wav", "abnormal.wav"},
        {2, "no_mask_en.wav", "normal_en.wav", "abnormal_en.wav"},
        {0, "no_mask_en.wav", "normal_en.wav", "abnormal_en.wav"},
    };
    for (const Row& r : rows) {
        settingstest::recreateTable();
        CConfigMgr::Instance()->SetLanguage(r.language);
        AlarmDisplayConfig c;  // a fresh install: no row, empty paths
        c.bSoundNormal = false;
        CSoundConfigPage page;
        page.SetConfig(c);

        AlarmDisplayConfig expected = c;
        expected.strNoMaskVoice = VantorGUIToolkit::GetTargetPathFile(QString::fromLatin1(r.noMask));
        expected.strNormalVoice = VantorGUIToolkit::GetTargetPathFile(QString::fromLatin1(r.normal));
        expected.strAbnormalVoice = VantorGUIToolkit::GetTargetPathFile(QString::fromLatin1(r.abnormal));
        EXPECT_TRUE(QDir::isAbsolutePath(expected.strNormalVoice)) << r.language;
        EXPECT_TRUE(page.GetConfig() == expected) << r.language;
        EXPECT_TRUE(reloaded() == expected) << r.language;
        EXPECT_EQ(page.NormalPath()->currentPath(), expected.strNormalVoice);
        EXPECT_EQ(page.AbnormalPath()->currentPath(), expected.strAbnormalVoice);
        EXPECT_EQ(page.NoMaskPath()->currentPath(), expected.strNoMaskVoice);
        EXPECT_FALSE(page.NormalCheckBox()->isChecked());
        EXPECT_TRUE(messages().isEmpty());
    }
}

TEST_F(SoundConfigPageTest, OneChosenVoiceFileIsEnoughToKeepTheDefaultsOut)
{
    AlarmDisplayConfig c;
    c.strAbnormalVoice = QStringLiteral("/voices/mine.wav");
    auto page = openPage(c);
    EXPECT_TRUE(page->GetConfig() == c);
    EXPECT_TRUE(reloaded() == c);
    EXPECT_TRUE(page->NormalPath()->currentPath().isEmpty());
}

TEST_F(SoundConfigPageTest, SaveWithoutChangesReportsSuccessAndWritesNothing)
{
    auto page = openPage(withVoices());
    const QByteArray before = fileBytes();
    page->NoMaskCheckBox()->click();
    page->NoMaskCheckBox()->click();
    page->SaveButton()->click();
    EXPECT_EQ(messages(), QStringList{QStringLiteral("SaveSuccessfulYCFI2BGO")});
    EXPECT_FALSE(page->isVisible());
    EXPECT_TRUE(fileBytes() == before);
}

TEST_F(SoundConfigPageTest, SwitchingAPromptOffKeepsItsPath)
{
    auto page = openPage(withVoices());
    page->NormalCheckBox()->click();
    page->AbnormalCheckBox()->click();
    page->SaveButton()->click();

    AlarmDisplayConfig expected = withVoices();
    expected.bSoundNormal = false;
    expected.bSoundAbnormal = true;
    EXPECT_EQ(messages(), QStringList{QStringLiteral("SaveSuccessfulYCFI2BGO")});
    EXPECT_TRUE(page->GetConfig() == expected);
    EXPECT_TRUE(reloaded() == expected);
}

TEST_F(SoundConfigPageTest, AFileChosenWithTheBrowserIsSaved)
{
    const QString wav = path(QStringLiteral("my voice.wav"));
    {
        QFile f(wav);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("RIFF");
    }
    auto page = openPage(withVoices());
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
    page->NoMaskPath()->browseButton()->click();
    ASSERT_TRUE(sawDialog);
    EXPECT_EQ(page->NoMaskPath()->currentPath(), wav);

    page->SaveButton()->click();
    AlarmDisplayConfig expected = withVoices();
    expected.strNoMaskVoice = wav;
    EXPECT_TRUE(reloaded() == expected);
}

TEST_F(SoundConfigPageTest, AFailedSaveIsReportedAndTheCopyKeepsTheNewValues)
{
    // (Every way of failing is tried on the pop-up page; the path is the same.)
    const settingstest::SaveFailure& failure = settingstest::saveFailures().front();
    auto page = openPage(withVoices());
    page->NormalCheckBox()->click();
    page->NormalPath()->comboBox()->setEditText(QStringLiteral("/elsewhere/n.wav"));

    sqlite3* holder = nullptr;
    failure.breakIt(&holder);
    page->SaveButton()->click();
    failure.repair(&holder);

    EXPECT_EQ(messages(), QStringList{QStringLiteral("SaveFailed")});
    EXPECT_FALSE(page->isVisible());
    EXPECT_FALSE(page->GetConfig().bSoundNormal);
    EXPECT_EQ(page->GetConfig().strNormalVoice, QStringLiteral("/elsewhere/n.wav"));
}

TEST_F(SoundConfigPageTest, CancelAndCloseLeaveTheCopyAndTheFileAlone)
{
    struct Row {
        const char* name;
        std::function<void(CSoundConfigPage&)> close;
    };
    const Row rows[] = {
        {"cancel button", [](CSoundConfigPage& p) { p.CancelButton()->click(); }},
        {"close button", [](CSoundConfigPage& p) { p.CloseButton()->click(); }},
        {"escape key", [](CSoundConfigPage& p) { QTest::keyClick(&p, Qt::Key_Escape); }},
    };
    for (const Row& r : rows) {
        auto page = openPage(withVoices());
        const QByteArray before = fileBytes();
        page->NoMaskCheckBox()->click();
        page->AbnormalPath()->comboBox()->setEditText(QStringLiteral("/other.wav"));
        r.close(*page);
        EXPECT_FALSE(page->isVisible()) << r.name;
        EXPECT_EQ(page->result(), QDialog::Rejected) << r.name;
        EXPECT_TRUE(page->GetConfig() == withVoices()) << r.name;
        EXPECT_TRUE(fileBytes() == before) << r.name;
        EXPECT_TRUE(messages().isEmpty()) << r.name;
    }
}

TEST_F(SoundConfigPageTest, Renders)
{
    settingstest::renderInLanguages(QStringLiteral("SoundConfigPage"), [](int language) {
        CConfigMgr::Instance()->SetLanguage(language);
        auto page = std::make_unique<CSoundConfigPage>();
        page->SetConfig(AlarmDisplayConfig());
        return std::unique_ptr<QWidget>(page.release());
    });
}

} // namespace
