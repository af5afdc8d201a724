// The returning-person card's details against the emulator: the search under
// the waiting dialog, failures, every way of ending the wait, a burst meanwhile.
#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <functional>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Base/CSingleton.h"
#include "CAppRscManager.h"
#include "CameraModel.h"
#include "VantorGUIToolkit/CInformationDlg.h"
#include "support/DeviceSim.h"
#include "../../DashboardRecords.h"
#include "ui/BTShowLiveView.h"
#include "ui/CBTShowWidget.h"
#include "ui/ShowCard/CWaitShowWid.h"
#include "ui/ShowCard/ReCustomer/CFrequenterUnit.h"
#include "ui/ShowCard/ReCustomer/CHFPDShowDetailWid.h"

using namespace BodyTemperature;

namespace {

class FrequenterDetailsTest : public testsupport::SimTest {
protected:
    static void SetUpTestSuite() { startSim({QStringLiteral("--hfpd-polls"), QStringLiteral("2")}); }
    void SetUp() override { VantorGUIToolkit::CInformationDlg::ClearShownMessages(); }

    static void Script(const std::string& task, int polls, int count)
    {
        const nlohmann::json s{{"taskID", task}, {"polls", polls}, {"count", count}};
        s_sim->control("POST", "/control/hfpd", QByteArray::fromStdString(s.dump()));
    }
    static int Polls(const std::string& task)
    {
        const std::string path = "/control/hfpd/" + task;
        return nlohmann::json::parse(s_sim->control("GET", path.c_str()).toStdString()).value("polls", -1);
    }
    static AlarmShowInfo Info(const std::string& task)
    {
        AlarmShowInfo info;
        info.kind = EventKind::Returning;
        info.deviceID = "TEST0001";
        info.strSecondID = task;
        info.alarmInfo.comparison.people.name = "Lena Park";
        info.alarmInfo.comparison.people.Sex = 2;
        return info;
    }
    // Runs step from the nested loop of whatever dialog the card runs, every 20 ms,
    // until it returns true.
    static void WhileModal(QObject* context, std::function<bool()> step)
    {
        auto* timer = new QTimer(context);
        QObject::connect(timer, &QTimer::timeout, context, [timer, step] {
            if (step())
                timer->deleteLater();
        });
        timer->start(20);
    }
    template <typename T>
    static T* Visible(const QString& name = QString())
    {
        for (QWidget* w : QApplication::topLevelWidgets())
            if (auto* t = qobject_cast<T*>(w); t != nullptr && t->isVisible() && (name.isEmpty() || t->objectName() == name))
                return t;
        return nullptr;
    }
};

TEST_F(FrequenterDetailsTest, EachClickSearchesAndOpensAFreshDetailView)
{
    Script("t-open", 2, 23);
    QWidget page;
    auto* card = new CFrequenterUnit(&page);
    card->SetFrequenterInfo(Info("t-open"));
    page.show();
    QPointer<CHFPDShowDetailWid> first;
    for (int click = 0; click < 2; ++click) {
        QString count;
        WhileModal(&page, [&] {
            auto* view = Visible<CHFPDShowDetailWid>(QStringLiteral("ReCustomerDetailsDlg"));
            if (view == nullptr)
                return false;
            EXPECT_EQ(view->parentWidget(), &page);
            count = view->findChild<QLabel*>(QStringLiteral("m_pCountLabel"))->text();
            if (click == 0)
                first = view;
            view->findChild<QPushButton*>(QStringLiteral("m_pCloseBtn"))->click();
            return true;
        });
        card->findChild<QPushButton*>()->click();
        EXPECT_EQ(count, QStringLiteral("AllIn 23 Records")) << click;
    }
    EXPECT_TRUE(first.isNull()) << "the earlier view is deleted before the next one opens";
    EXPECT_EQ(page.findChildren<CHFPDShowDetailWid*>().size(), 1);
    EXPECT_EQ(Polls("t-open"), 3);  // the task stays complete once it is
    EXPECT_TRUE(VantorGUIToolkit::CInformationDlg::ShownMessages().isEmpty());
}

TEST_F(FrequenterDetailsTest, NoRecordsAndFailedSearchAreReported)
{
    Script("t-none", 1, 0);
    const nlohmann::json fault{{"path", "/DVAPI/SDT/HFPD/searchTask/result/recordData/t-fail"}, {"status", 503}};
    s_sim->control("POST", "/control/fault", QByteArray::fromStdString(fault.dump()));
    const struct { const char *task, *message; } rows[] = {{"t-none", "NoDetails"}, {"t-fail", "ObtainingDetailsFailed"}};
    for (const auto& row : rows) {
        VantorGUIToolkit::CInformationDlg::ClearShownMessages();
        QWidget page;
        auto* card = new CFrequenterUnit(&page);
        card->SetFrequenterInfo(Info(row.task));
        card->ShowDetails();
        EXPECT_EQ(VantorGUIToolkit::CInformationDlg::ShownMessages(), QStringList{QString::fromLatin1(row.message)});
        EXPECT_TRUE(page.findChildren<CHFPDShowDetailWid*>().isEmpty()) << row.task;
    }
}

// However the wait ends (Escape, the page left, the page torn down while the
// host window stays, as when the module is unloaded), it ends at once and the
// search polls no more.
TEST_F(FrequenterDetailsTest, TheWaitEndsAtOnceAndTheSearchStopsPolling)
{
    enum class End { Escape, LeavePage, TearDown };
    for (const End end : {End::Escape, End::LeavePage, End::TearDown}) {
        const std::string task = "t-end" + std::to_string(int(end));
        SCOPED_TRACE(task);
        Script(task, -1, 5);
        QWidget host;
        auto* page = new QWidget(&host);
        QPointer<CFrequenterUnit> card = new CFrequenterUnit(page);
        card->SetFrequenterInfo(Info(task));
        QElapsedTimer sinceEnd;
        int pollsAtEnd = -1;
        WhileModal(&host, [&] {
            auto* wait = Visible<CWaitShowWid>();
            if (wait == nullptr || Polls(task) < 2)
                return false;
            sinceEnd.start();
            if (end == End::Escape)
                QTest::keyClick(wait, Qt::Key_Escape);
            else if (end == End::LeavePage)
                CFrequenterUnit::StopAllDetails(page);
            else
                delete page;
            pollsAtEnd = Polls(task);
            return true;
        });
        card->ShowDetails();
        EXPECT_LT(sinceEnd.elapsed(), CWaitShowWid::kTickMs) << "not left to the next tick";
        EXPECT_EQ(card.isNull(), end == End::TearDown);
        ASSERT_GE(pollsAtEnd, 2);
        // Escape ends the search at its next poll; leaving waits for it.
        const int polls = end == End::Escape ? Polls(task) : pollsAtEnd;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_TRUE(host.findChildren<CWaitShowWid*>().isEmpty());
        EXPECT_TRUE(host.findChildren<CHFPDShowDetailWid*>().isEmpty());
        EXPECT_TRUE(VantorGUIToolkit::CInformationDlg::ShownMessages().isEmpty());
        testsupport::pump(1200);
        EXPECT_EQ(Polls(task), polls) << "the search stopped";
    }
}

TEST_F(FrequenterDetailsTest, CardOutlivesItsSearchAndViewWhileAlarmsTrimTheList)
{
    Script("t-burst", 3, 4);
    dashtest::VoiceLog voices;  // outlives the display
    dashtest::storeSettings(dashtest::voiceConfig());
    CBTShowWidget w;
    w.resize(1642, 1080);
    w.LiveView()->Init(Base::CSingleton<CAppRscManager>::Instance()->GetCameraModel());
    w.restorePlayingCameras({QStringLiteral("CAM1")});
    w.show();
    auto returning = [](const std::string& id) {
        auto r = dashtest::record(dashtest::kReturning, dashtest::face(1, 0, 2), id, "CAM1");
        r.deviceID = "TEST0001";
        r.secondID = "t-burst";
        return r;
    };
    w.DealAlarmInfo(returning("R0"));
    QPointer<CFrequenterUnit> card = w.findChild<CFrequenterUnit*>();
    ASSERT_FALSE(card.isNull());

    bool pushed = false, viewSeen = false;
    WhileModal(&w, [&] {
        if (!pushed && Visible<CWaitShowWid>() != nullptr) {
            for (int i = 1; i <= 50; ++i)
                w.DealAlarmInfo(returning("R" + std::to_string(i)));
            pushed = true;
            // Cards of a burst are built a few event-loop turns later.
            EXPECT_TRUE(QTest::qWaitFor([&] { return card.isNull() || card->isHidden(); }, 5000));
            EXPECT_FALSE(card.isNull()) << "trimmed but held";
            EXPECT_TRUE(!card.isNull() && card->isHidden()) << "no longer listed";
            return false;
        }
        auto* view = Visible<CHFPDShowDetailWid>(QStringLiteral("ReCustomerDetailsDlg"));
        if (view == nullptr)
            return false;
        viewSeen = true;
        for (int i = 51; i <= 80; ++i)
            w.DealAlarmInfo(returning("R" + std::to_string(i)));
        view->OnBtnClose();
        return true;
    });
    card->ShowDetails();
    EXPECT_TRUE(pushed);
    EXPECT_TRUE(viewSeen);
    EXPECT_FALSE(card.isNull()) << "still inside its own slot";
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(card.isNull()) << "retired once nothing holds it";
}

// The waiting dialog alone: it closes only at its timer tick after the owner
// reports the end of the request (at once when told to stop immediately), and
// reports a cancel through SignalCancel. Escape: the tests above.
const QString kLoading = QStringLiteral(":/VantorDesk/Dialog/Images/Public/Control/Dialog/Loading.gif");

TEST(WaitShowWid, ModalRunClosesAtTheTickAfterTheOwnerReportsTheEnd)
{
    enum class End { Accept, Reject, Immediately };
    for (const End end : {End::Accept, End::Reject, End::Immediately}) {
        SCOPED_TRACE(int(end));
        CWaitShowWid dlg(nullptr, kLoading);
        QSignalSpy cancelled(&dlg, &CWaitShowWid::SignalCancel);
        bool openWhileWorking = false, openRightAfterTheReport = false;
        // Two ticks pass with nothing reported, then the request ends between ticks.
        QTimer::singleShot(CWaitShowWid::kTickMs * 5 / 2, &dlg, [&] {
            openWhileWorking = dlg.isVisible();
            if (end == End::Immediately)
                dlg.OnImmediatelyStopChase();
            else
                end == End::Accept ? dlg.OnStopChaseByAccept() : dlg.OnStopChaseByReject();
            openRightAfterTheReport = dlg.isVisible();
        });
        EXPECT_EQ(dlg.exec(), end == End::Reject ? QDialog::Rejected : QDialog::Accepted);
        EXPECT_TRUE(openWhileWorking);
        EXPECT_EQ(openRightAfterTheReport, end != End::Immediately);
        EXPECT_EQ(cancelled.count(), end == End::Reject ? 1 : 0);
        EXPECT_EQ(dlg.ChaseState(), 2);  // a reused dialog waits again
    }
}

} // namespace
