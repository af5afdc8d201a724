// The waiting dialog closes only at its timer tick after the owner reports
// the end of the request, and reports a cancel through SignalCancel.
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

#include "ui/ShowCard/CWaitShowWid.h"

using namespace BodyTemperature;

namespace {

const QString kLoading = QStringLiteral(":/VantorDesk/Dialog/Images/Public/Control/Dialog/Loading.gif");

TEST(WaitShowWid, ModalRunClosesAtTheTickAfterTheOwnerReportsTheEnd)
{
    for (bool accept : {true, false}) {
        CWaitShowWid dlg(nullptr, kLoading);
        QSignalSpy cancelled(&dlg, &CWaitShowWid::SignalCancel);
        bool openWhileWorking = false, openRightAfterTheReport = false;
        // Two ticks pass with nothing reported, then the request ends between ticks.
        QTimer::singleShot(CWaitShowWid::kTickMs * 5 / 2, &dlg, [&] {
            openWhileWorking = dlg.isVisible();
            accept ? dlg.OnStopChaseByAccept() : dlg.OnStopChaseByReject();
            openRightAfterTheReport = dlg.isVisible();
        });
        EXPECT_EQ(dlg.exec(), accept ? QDialog::Accepted : QDialog::Rejected);
        EXPECT_TRUE(openWhileWorking) << accept;
        EXPECT_TRUE(openRightAfterTheReport) << accept;
        EXPECT_EQ(cancelled.count(), accept ? 0 : 1);
        EXPECT_EQ(dlg.ChaseState(), 2);  // a reused dialog waits again
    }
}

TEST(WaitShowWid, ImmediateStopAndEscape)
{
    CWaitShowWid dlg(nullptr, kLoading);
    QSignalSpy accepted(&dlg, &QDialog::accepted);
    dlg.show();
    dlg.OnImmediatelyStopChase();
    EXPECT_EQ(accepted.count(), 1);
    EXPECT_FALSE(dlg.isVisible());
    EXPECT_EQ(dlg.ChaseState(), 2);

    CWaitShowWid esc(nullptr, kLoading);
    QSignalSpy cancelled(&esc, &CWaitShowWid::SignalCancel);
    esc.show();
    QTest::keyClick(&esc, Qt::Key_Escape);
    EXPECT_EQ(cancelled.count(), 1);
}

} // namespace
