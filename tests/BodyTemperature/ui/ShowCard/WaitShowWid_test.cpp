// The waiting dialog closes only at its timer tick after the owner reports
// the end of the request, and reports a cancel through SignalCancel.
#include <QFutureWatcher>
#include <QLabel>
#include <QMovie>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QtConcurrent>
#include <atomic>
#include <gtest/gtest.h>

#include "support/TestSupport.h"
#include "ui/ShowCard/CWaitShowWid.h"

using namespace BodyTemperature;

namespace {

const QString kLoading = QStringLiteral(":/VantorDesk/Dialog/Images/Public/Control/Dialog/Loading.gif");

TEST(WaitShowWid, FormAndAnimation)
{
    CWaitShowWid dlg(nullptr, kLoading);
    EXPECT_EQ(dlg.objectName(), QStringLiteral("WaitShowWid"));
    EXPECT_EQ(dlg.size(), QSize(300, 210));
    EXPECT_EQ(static_cast<int>(dlg.windowFlags()) & 0x0803, 0x0803);
    EXPECT_EQ(dlg.captionLabel()->text(), QStringLiteral("Processing"));
    ASSERT_TRUE(dlg.movie()->isValid());
    EXPECT_GT(dlg.movie()->frameCount(), 1);
    EXPECT_EQ(dlg.movie()->state(), QMovie::Running);
    EXPECT_EQ(dlg.movie()->scaledSize(), QSize(54, 54));
    EXPECT_EQ(dlg.ChaseState(), 2);
}

TEST(WaitShowWid, StopRequestsWaitForTheNextTick)
{
    struct Row {
        const char* name;
        void (CWaitShowWid::*stop)();
        bool accepted;
    } rows[] = {{"accept", &CWaitShowWid::OnStopChaseByAccept, true},
                {"reject", &CWaitShowWid::OnStopChaseByReject, false}};
    for (const Row& r : rows) {
        CWaitShowWid dlg(nullptr, kLoading);
        QSignalSpy accepted(&dlg, &QDialog::accepted);
        QSignalSpy cancelled(&dlg, &CWaitShowWid::SignalCancel);
        dlg.show();
        (dlg.*r.stop)();
        // Requested but not yet closed: the dialog stays up until its tick.
        EXPECT_TRUE(dlg.isVisible()) << r.name;
        EXPECT_EQ(dlg.ChaseState(), r.accepted ? 1 : 0);
        QSignalSpy finished(&dlg, &QDialog::finished);
        ASSERT_TRUE(finished.wait(3 * CWaitShowWid::kTickMs)) << r.name;
        EXPECT_FALSE(dlg.isVisible());
        EXPECT_EQ(accepted.count(), r.accepted ? 1 : 0) << r.name;
        EXPECT_EQ(cancelled.count(), r.accepted ? 0 : 1) << r.name;
        EXPECT_EQ(dlg.ChaseState(), 2);
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
    esc.OnSetProgressValue(50);  // accepted and ignored
}

TEST(WaitShowWid, ModalRunEndsAfterTheWorkerFinishes)
{
    std::atomic<bool> release{false};
    std::atomic<bool> done{false};
    CWaitShowWid dlg(nullptr, kLoading);
    QFutureWatcher<void> watcher;
    QObject::connect(&watcher, &QFutureWatcher<void>::finished, &dlg, &CWaitShowWid::OnStopChaseByAccept);
    watcher.setFuture(QtConcurrent::run([&] {
        while (!release)
            QThread::msleep(5);
        done = true;
    }));
    bool wasOpenWhileWorking = false;
    QTimer::singleShot(CWaitShowWid::kTickMs * 2, &dlg, [&] {
        wasOpenWhileWorking = dlg.isVisible();
        release = true;
    });
    EXPECT_EQ(dlg.exec(), QDialog::Accepted);
    EXPECT_TRUE(wasOpenWhileWorking);
    EXPECT_TRUE(done);
}

} // namespace
