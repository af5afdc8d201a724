// The pop-up settings dialog on the real settings file: what the duration
// field lets through, Save with and without changes, failing saves, closing.
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <QValidator>
#include <functional>
#include <gtest/gtest.h>

#include "SettingsFileFixture.h"
#include "ui/CPopConfigPage.h"

using BodyTemperature::AlarmDisplayConfig;
using BodyTemperature::CPopConfigPage;

namespace {

class PopConfigPageTest : public settingstest::SettingsFileTest {
protected:
    static std::unique_ptr<CPopConfigPage> openPage(const AlarmDisplayConfig& c = AlarmDisplayConfig())
    {
        return SettingsFileTest::openPage<CPopConfigPage>(c);
    }
};

TEST_F(PopConfigPageTest, DurationFieldTakesOnlyOneTo1800WithoutLeadingZeroNorPaste)
{
    struct Row { const char* start; bool cursorHome; const char* typed; const char* expected; };
    const Row rows[] = {
        {"", false, "0", ""}, {"", false, "01", "1"}, {"", false, "1801", "180"}, {"", false, "1900", "190"},
        {"", false, "1", "1"}, {"", false, "1800", "1800"}, {"", false, "1799", "1799"}, {"", false, "9x-5 .", "95"},
        {"5", true, "0", "5"},  // would become "05"
        {"5", false, "0", "50"},
    };
    auto page = openPage();
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
        auto page = openPage(c);
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
        auto page = openPage(c);
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

} // namespace
