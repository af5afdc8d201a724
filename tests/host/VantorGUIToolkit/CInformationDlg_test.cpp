// Bottom-right messages: recorded, placed at the lower right of the screen,
// stacked upward newest lowest, gone after their fade.
#include <QGuiApplication>
#include <QScreen>
#include <gtest/gtest.h>

#include "VantorGUIToolkit/CInformationDlg.h"
#include "support/TestSupport.h"

using VantorGUIToolkit::CInformationDlg;

namespace {

TEST(InformationDlg, MessagesStackUpwardAtTheLowerRightAndFadeAway)
{
    CInformationDlg::ClearShownMessages();
    const QStringList texts = {QStringLiteral("SaveFailed"), QStringLiteral("A much longer second message"),
        QStringLiteral("SaveSuccessfulYCFI2BGO")};
    for (const QString& t : texts)
        CInformationDlg::ShowInformationAtScreenRightBottom(t);
    EXPECT_EQ(CInformationDlg::ShownMessages(), texts);

    const QList<CInformationDlg*> shown = CInformationDlg::VisibleMessages();
    ASSERT_EQ(shown.size(), 3);
    const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
    for (int i = 0; i < shown.size(); ++i) {
        CInformationDlg* dlg = shown.at(i);
        EXPECT_EQ(dlg->Text(), texts.at(i));
        EXPECT_TRUE(dlg->isVisible());
        EXPECT_TRUE(dlg->isWindow());
        EXPECT_TRUE(dlg->testAttribute(Qt::WA_TranslucentBackground));
        EXPECT_TRUE(dlg->windowFlags() & Qt::FramelessWindowHint);
        const QRect g = dlg->frameGeometry();
        EXPECT_EQ(g.right(), area.right() - CInformationDlg::kMargin) << i;
        EXPECT_TRUE(area.contains(g)) << i;
    }
    // Newest lowest; each older one sits wholly above the next.
    EXPECT_EQ(shown.last()->frameGeometry().bottom(), area.bottom() - CInformationDlg::kMargin);
    for (int i = 0; i + 1 < shown.size(); ++i)
        EXPECT_LT(shown.at(i)->frameGeometry().bottom(), shown.at(i + 1)->frameGeometry().top()) << i;

    const int timeout = CInformationDlg::kShowMs + CInformationDlg::kFadeMs + 3000;
    EXPECT_TRUE(testsupport::waitUntil([] { return CInformationDlg::VisibleMessages().isEmpty(); }, timeout));
    // The record of what was said outlives the windows.
    EXPECT_EQ(CInformationDlg::ShownMessages(), texts);
}

TEST(InformationDlg, ALaterMessageMovesDownWhenTheOnesBelowGo)
{
    CInformationDlg::ShowInformationAtScreenRightBottom(QStringLiteral("first"));
    CInformationDlg::ShowInformationAtScreenRightBottom(QStringLiteral("second"));
    QList<CInformationDlg*> shown = CInformationDlg::VisibleMessages();
    ASSERT_EQ(shown.size(), 2);
    const int bottom = shown.last()->frameGeometry().bottom();
    CInformationDlg* older = shown.first();
    EXPECT_LT(older->frameGeometry().bottom(), bottom);
    delete shown.last();
    EXPECT_EQ(older->frameGeometry().bottom(), bottom);
    delete older;
    EXPECT_TRUE(CInformationDlg::VisibleMessages().isEmpty());
}

} // namespace
