// The pop-up settings dialog on the real settings file: what the duration
// field lets through, Save with and without changes, failing saves, closing.
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <gtest/gtest.h>

#include "SettingsFileFixture.h"
#include "ui/CPopConfigPage.h"

using BodyTemperature::AlarmDisplayConfig;
using BodyTemperature::CPopConfigPage;

namespace {

class PopConfigPageTest : public settingstest::SettingsFileTest {
protected:
    // A page as the information display opens it, with a stored row behind it.
    std::unique_ptr<CPopConfigPage> openPage(const AlarmDisplayConfig& c = AlarmDisplayConfig())
    {
        EXPECT_TRUE(store(c));
        auto page = std::make_unique<CPopConfigPage>();
        page->SetConfig(c);
        page->show();
        return page;
    }
};

TEST_F(PopConfigPageTest, DurationFieldTakesOnlyOneTo1800WithoutLeadingZero)
{
    struct Row {
        const char* start;
        bool cursorHome;
        const char* typed;
        const char* expected;
    };
    const Row rows[] = {
        {"", false, "0", ""},
        {"", false, "01", "1"},
        {"", false, "1801", "180"},
        {"", false, "1900", "190"},
        {"", false, "1", "1"},
        {"", false, "1800", "1800"},
        {"", false, "1799", "1799"},
        {"", false, "9x-5 .", "95"},
        {"5", true, "0", "5"},   // would become "05"
        {"5", false, "0", "50"},
    };
    auto page = openPage();
    QLineEdit* edit = page->DurationEdit();
    for (const Row& r : rows) {
        edit->setText(QString::fromLatin1(r.start));
        if (r.cursorHome)
            edit->setCursorPosition(0);
        QTest::keyClicks(edit, QString::fromLatin1(r.typed));
        EXPECT_EQ(edit->text(), QString::fromLatin1(r.expected)) << r.start << " + " << r.typed;
    }
}

TEST_F(PopConfigPageTest, NothingCanBePasted)
{
    auto page = openPage();
    QLineEdit* edit = page->DurationEdit();
    EXPECT_EQ(edit->contextMenuPolicy(), Qt::NoContextMenu);
    struct Row {
        const char* clipboard;
        const char* start;
        Qt::Key key;
        Qt::KeyboardModifiers mods;
    };
    // "7" after "5" is a valid duration: only the filter keeps it out.
    const Row rows[] = {
        {"7", "5", Qt::Key_V, Qt::ControlModifier},
        {"7", "5", Qt::Key_Insert, Qt::ShiftModifier},
        {"120", "", Qt::Key_V, Qt::ControlModifier},
    };
    for (const Row& r : rows) {
        QApplication::clipboard()->setText(QString::fromLatin1(r.clipboard));
        edit->setText(QString::fromLatin1(r.start));
        QTest::keyClick(edit, r.key, r.mods);
        EXPECT_EQ(edit->text(), QString::fromLatin1(r.start)) << r.clipboard;
    }
}

TEST_F(PopConfigPageTest, AutoCloseOffDisablesTheFieldButItsValueIsSaved)
{
    AlarmDisplayConfig c;
    c.iPopDuration = 17;
    auto page = openPage(c);
    EXPECT_TRUE(page->DurationEdit()->isEnabled());
    page->AutoCloseCheckBox()->click();
    EXPECT_FALSE(page->DurationEdit()->isEnabled());
    EXPECT_EQ(page->DurationEdit()->text(), QStringLiteral("17"));
    page->AutoCloseCheckBox()->click();
    EXPECT_TRUE(page->DurationEdit()->isEnabled());

    page->AutoCloseCheckBox()->click();
    page->SaveButton()->click();
    const AlarmDisplayConfig saved = reloaded();
    EXPECT_FALSE(saved.bPopAutoClose);
    EXPECT_EQ(saved.iPopDuration, 17);

    // Opened again with auto-close off, the field starts disabled.
    CPopConfigPage again;
    again.SetConfig(saved);
    EXPECT_FALSE(again.DurationEdit()->isEnabled());
}

TEST_F(PopConfigPageTest, SaveWritesTheChangedFieldsAndKeepsTheOthers)
{
    AlarmDisplayConfig c;
    c.bFaceCapture = false;
    c.strNormalVoice = QStringLiteral("/voices/n.wav");
    auto page = openPage(c);
    page->NoMaskCheckBox()->click();
    page->DurationEdit()->clear();
    QTest::keyClicks(page->DurationEdit(), QStringLiteral("1800"));
    page->SaveButton()->click();

    EXPECT_FALSE(page->isVisible());
    EXPECT_EQ(page->result(), QDialog::Accepted);
    EXPECT_EQ(messages(), QStringList{QStringLiteral("SaveSuccessfulYCFI2BGO")});
    AlarmDisplayConfig expected = c;
    expected.bPopNoMask = false;
    expected.iPopDuration = 1800;
    EXPECT_TRUE(page->GetConfig() == expected);
    EXPECT_TRUE(reloaded() == expected);
    EXPECT_EQ(rowCount(), 1);
}

TEST_F(PopConfigPageTest, SaveWithoutChangesReportsSuccessAndWritesNothing)
{
    AlarmDisplayConfig c;
    c.iPopDuration = 9;
    auto page = openPage(c);
    const QByteArray before = fileBytes();
    ASSERT_FALSE(before.isEmpty());
    // Toggling twice is no change either.
    page->AbnormalCheckBox()->click();
    page->AbnormalCheckBox()->click();
    page->SaveButton()->click();
    EXPECT_EQ(messages(), QStringList{QStringLiteral("SaveSuccessfulYCFI2BGO")});
    EXPECT_FALSE(page->isVisible());
    EXPECT_TRUE(fileBytes() == before);
}

TEST_F(PopConfigPageTest, EmptyDurationKeepsTheDialogOpen)
{
    auto page = openPage();
    const QByteArray before = fileBytes();
    page->DurationEdit()->clear();
    page->SaveButton()->click();
    EXPECT_EQ(messages(), QStringList{QStringLiteral("TimeCannotBeEmpty")});
    EXPECT_TRUE(page->isVisible());
    EXPECT_TRUE(fileBytes() == before);
    EXPECT_EQ(page->GetConfig().iPopDuration, 5);
}

TEST_F(PopConfigPageTest, AFailedSaveIsReportedAndTheCopyKeepsTheNewValues)
{
    for (const settingstest::SaveFailure& failure : settingstest::saveFailures()) {
        SCOPED_TRACE(failure.name);
        VantorGUIToolkit::CInformationDlg::ClearShownMessages();
        AlarmDisplayConfig c;
        auto page = openPage(c);
        page->DurationEdit()->setText(QStringLiteral("42"));
        page->AbnormalCheckBox()->click();

        sqlite3* holder = nullptr;
        failure.breakIt(&holder);
        page->SaveButton()->click();
        failure.repair(&holder);

        EXPECT_EQ(messages(), QStringList{QStringLiteral("SaveFailed")});
        EXPECT_FALSE(page->isVisible());
        EXPECT_EQ(page->GetConfig().iPopDuration, 42);
        EXPECT_FALSE(page->GetConfig().bPopAbnormal);
        EXPECT_NE(reloaded().iPopDuration, 42);
    }
}

TEST_F(PopConfigPageTest, ClosingPutsTheFieldsBackAndWritesNothing)
{
    struct Row {
        const char* name;
        std::function<void(CPopConfigPage&)> close;
    };
    const Row rows[] = {
        {"close button", [](CPopConfigPage& p) { p.CloseButton()->click(); }},
        {"cancel button", [](CPopConfigPage& p) { p.CancelButton()->click(); }},
        {"escape key", [](CPopConfigPage& p) { QTest::keyClick(&p, Qt::Key_Escape); }},
    };
    AlarmDisplayConfig c;
    c.bPopNoMask = false;
    c.iPopDuration = 300;
    for (const Row& r : rows) {
        auto page = openPage(c);
        const QByteArray before = fileBytes();
        page->NoMaskCheckBox()->click();
        page->AutoCloseCheckBox()->click();
        page->DurationEdit()->setText(QStringLiteral("7"));
        r.close(*page);

        EXPECT_FALSE(page->isVisible()) << r.name;
        EXPECT_EQ(page->result(), QDialog::Rejected) << r.name;
        EXPECT_TRUE(page->GetConfig() == c) << r.name;
        EXPECT_FALSE(page->NoMaskCheckBox()->isChecked()) << r.name;
        EXPECT_TRUE(page->AutoCloseCheckBox()->isChecked()) << r.name;
        EXPECT_TRUE(page->DurationEdit()->isEnabled()) << r.name;
        EXPECT_EQ(page->DurationEdit()->text(), QStringLiteral("300")) << r.name;
        EXPECT_TRUE(fileBytes() == before) << r.name;
        EXPECT_TRUE(messages().isEmpty()) << r.name;
    }
}

TEST_F(PopConfigPageTest, TheFramelessDialogIsDraggedByItsTitle)
{
    auto page = openPage();
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

TEST_F(PopConfigPageTest, Renders)
{
    settingstest::renderInLanguages(QStringLiteral("PopConfigPage"), [](int) {
        auto page = std::make_unique<CPopConfigPage>();
        page->SetConfig(AlarmDisplayConfig());
        return std::unique_ptr<QWidget>(page.release());
    });
}

} // namespace
