// A device that holds each kind of request for 25 s: cancelling, closing the
// view, leaving the page and tearing the page down end the request in flight,
// the GUI thread never waits more than 100 ms for it, and the device sees the
// connection closed. Then the face upload whose answer was not heard: the
// operator is told whether it was stored, and sending it again never stores
// it twice. Meant to run under the sanitizer builds as well.
#include <QApplication>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <vector>
#include <nlohmann/json.hpp>

#include "BodyTemperatureWid.h"
#include "VantorGUIToolkit/CChaseDialog.h"
#include "VantorGUIToolkit/CInformationDlg.h"
#include "support/DeviceSim.h"
#include "support/GuiGapProbe.h"
#include "ui/AddIntoFaceLib/CBTAddFaceWnd.h"
#include "ui/CBodyTemperatureDlg.h"
#include "ui/ShowCard/CWaitShowWid.h"
#include "ui/ShowCard/ReCustomer/CFrequenterUnit.h"
#include "ui/ShowCard/ReCustomer/CHFPDShowDetailWid.h"

using namespace BodyTemperature;
using VantorGUIToolkit::CInformationDlg;

namespace {

constexpr int kHeldMs = 25000;
constexpr qint64 kLongestGapMs = 100;

enum class Kind { Search, Poll, Thumb, Picture, Capability, Upload };
enum class Action { Cancel, Close, LeavePage, TearDown };

struct Row {
    Kind kind;
    Action action;
};

std::string rowName(const Row& r)
{
    static const char* kinds[] = {"Search", "Poll", "Thumbnail", "Picture", "Capability", "Upload"};
    static const char* actions[] = {"Cancel", "Close", "LeavePage", "TearDown"};
    return std::string(kinds[int(r.kind)]) + "_" + actions[int(r.action)];
}

template <typename T>
T* Visible(const char* name = nullptr)
{
    for (QWidget* w : QApplication::allWidgets())
        if (auto* t = qobject_cast<T*>(w);
            t != nullptr && t->isVisible() && (name == nullptr || t->objectName() == QLatin1String(name)))
            return t;
    return nullptr;
}

class CancelFixture : public testsupport::SimTest {
protected:
    static void SetUpTestSuite()
    {
        startSim({"--hfpd-polls", "1"});
        s_face = testsupport::makeJpeg(160, 200);
    }
    void SetUp() override { CInformationDlg::ClearShownMessages(); }

    static void Fault(const std::string& target, nlohmann::json what = nlohmann::json::object())
    {
        what["path"] = target;
        s_sim->control("POST", "/control/fault", QByteArray::fromStdString(what.dump()));
    }
    static int Stat(const char* name)
    {
        return nlohmann::json::parse(s_sim->control("GET", "/control/stats").toStdString()).value(name, -1);
    }
    static int Polls(const std::string& task)
    {
        const std::string path = "/control/hfpd/" + task;
        return nlohmann::json::parse(s_sim->control("GET", path.c_str()).toStdString()).value("polls", -1);
    }
    static nlohmann::json Uploads()
    {
        return nlohmann::json::parse(s_sim->control("GET", "/control/uploads?FDID=1").toStdString())["records"];
    }
    // Runs step every 20 ms from whatever loop runs (modal dialogs' too) until it returns true.
    static void WhileModal(QObject* context, std::function<bool()> step)
    {
        auto* timer = new QTimer(context);
        QObject::connect(timer, &QTimer::timeout, context, [timer, step] {
            if (step()) {
                timer->stop();  // deleted only once the loops nested in step() have unwound
                timer->deleteLater();
            }
        });
        timer->start(20);
    }
    // Opens the add-to-library dialog under parent, types a name and confirms
    // once the dialog shows; returns when the dialog has closed.
    static void AddFace(QWidget* parent, const QString& name)
    {
        QObject context;
        WhileModal(&context, [name] {
            auto* dlg = Visible<CBTAddFaceWnd>();
            if (dlg == nullptr)
                return false;
            dlg->findChild<QLineEdit*>(QStringLiteral("m_pNameEdit"))->setText(name);
            // Confirmed from a timer of its own, so this one goes on ticking in the upload's loops.
            QTimer::singleShot(0, dlg, [dlg] { dlg->findChild<QPushButton*>(QStringLiteral("m_pSaveBtn"))->click(); });
            return true;
        });
        CBTAddFaceWnd::OpenForFace(parent, "TEST0001", s_face);
    }

    static inline QByteArray s_face;
};

class RequestCancelTest : public CancelFixture, public ::testing::WithParamInterface<Row> {};

TEST_P(RequestCancelTest, EndsWithin100msOfGuiTimeAndTheDeviceSeesItClosed)
{
    const Row row = GetParam();
    const std::string task = "cancel-" + rowName(row);
    const nlohmann::json held{{"delayMs", kHeldMs}};
    const std::string pictures = "/DVAPI/pictures/hfpd/" + task + "/1.jpg";
    s_sim->control("POST", "/control/hfpd",
        QByteArray::fromStdString(nlohmann::json{{"taskID", task}, {"polls", row.kind == Kind::Poll ? -1 : 1},
            {"count", 3}}.dump()));
    switch (row.kind) {
    case Kind::Search: Fault("/DVAPI/SDT/HFPD/searchTask/result/recordData/" + task, held); break;
    case Kind::Poll: break;  // the second poll is held, once the first was answered
    case Kind::Thumb: Fault(pictures + "?face=1", held); break;
    case Kind::Picture:
        Fault(pictures, held);
        Fault(pictures + "?face=1");  // the thumbnail answers
        break;
    case Kind::Capability: Fault("/DVAPI/Intelligent/FDLib/capabilities", held); break;
    case Kind::Upload: Fault("/DVAPI/SDK/batch", held); break;
    }
    // The waiting dialog of the add-to-library dialog's requests, of its upload.
    const char* const chaseName = row.kind == Kind::Capability ? "m_pRequestChase" : "m_pChaseDialog";
    const int goneBefore = Stat("clientsGone");

    auto frame = std::make_unique<QWidget>();
    QPointer<BodyTemperatureWid> page = new BodyTemperatureWid(frame.get());
    QWidget* list = page->dialog();
    testsupport::GuiGapProbe probe;
    bool acted = false;
    bool pollHeld = false;
    WhileModal(&probe, [&] {
        if (row.kind == Kind::Poll && !pollHeld) {
            if (Polls(task) < 1)
                return false;
            Fault("/DVAPI/SDT/HFPD/searchTask/result/recordData/" + task, held);
            pollHeld = true;
        }
        const bool shown = row.kind >= Kind::Capability ? Visible<VantorGUIToolkit::CChaseDialog>(chaseName) != nullptr
            : row.kind == Kind::Search || row.kind == Kind::Poll
            ? Visible<CWaitShowWid>() != nullptr
            : Visible<CHFPDShowDetailWid>("ReCustomerDetailsDlg") != nullptr;
        if (!shown || Stat("delaying") < 1)
            return false;
        probe.start();
        acted = true;
        switch (row.action) {
        case Action::Cancel:
            if (row.kind >= Kind::Capability)
                Visible<VantorGUIToolkit::CChaseDialog>(chaseName)
                    ->findChild<QPushButton*>(QStringLiteral("m_pCancelBtn"))
                    ->click();
            else
                QTest::keyClick(Visible<CWaitShowWid>(), Qt::Key_Escape);
            break;
        case Action::Close:
            Visible<CHFPDShowDetailWid>("ReCustomerDetailsDlg")
                ->findChild<QPushButton*>(QStringLiteral("m_pCloseBtn"))
                ->click();
            break;
        case Action::LeavePage: page->saveState(); break;
        case Action::TearDown: frame.reset(); break;
        }
        return true;
    });

    if (row.kind >= Kind::Capability) {
        AddFace(list, QStringLiteral("Held Upload"));
    } else {
        QPointer<CFrequenterUnit> card = new CFrequenterUnit(list);
        AlarmShowInfo info;
        info.kind = EventKind::Returning;
        info.deviceID = "TEST0001";
        info.strSecondID = task;
        card->SetFrequenterInfo(info);
        card->ShowDetails();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const qint64 gap = probe.stop();
    ASSERT_TRUE(acted) << "the request was never held";
    EXPECT_LT(gap, kLongestGapMs) << rowName(row);
    std::printf("[ gap      ] %s: longest GUI gap %lld ms\n", rowName(row).c_str(), static_cast<long long>(gap));
    EXPECT_TRUE(testsupport::waitUntil([&] { return Stat("clientsGone") > goneBefore; }, 3000))
        << "the device saw the connection closed";
    EXPECT_EQ(Stat("delaying"), 0);
    EXPECT_EQ(page.isNull(), row.action == Action::TearDown);
}

// Each attempt adds the same face with the same name; the first is cancelled
// while the device holds the upload (before or after storing it).
TEST_F(CancelFixture, UnheardUploadIsCheckedAndNeverStoredTwice)
{
    struct Attempt {
        const char* batchFault;   // on the upload
        const char* searchFault;  // on the library search that asks whether it was stored
        bool cancel;
        const char* message;
        int stored;  // records the attempt added on the device
    };
    struct Case {
        const char* name;
        std::vector<Attempt> attempts;
    };
    const char* const storedThenHeld = R"({"answerDelayMs":25000,"count":1})";
    const char* const heldBefore = R"({"delayMs":25000,"count":1})";
    const char* const searchFails = R"({"status":503})";
    const Case rows[] = {
        {"stored before the cancel took effect",
            {{storedThenHeld, nullptr, true, "FaceStoredBeforeTheCancelTookEffect", 1},
                {nullptr, nullptr, false, "AddSuccess", 0}}},
        {"cancelled before it was stored",
            {{heldBefore, nullptr, true, "FailedToAddPicture", 0}, {nullptr, nullptr, false, "AddSuccess", 1}}},
        {"the device cannot say",
            {{storedThenHeld, searchFails, true, "FaceUploadOutcomeUnknown", 1},
                {nullptr, searchFails, false, "FaceUploadOutcomeUnknown", 0},
                {nullptr, nullptr, false, "AddSuccess", 0}}},
    };
    for (const Case& row : rows) {
        SCOPED_TRACE(row.name);
        const QString name = QString::fromLatin1(row.name).replace(QLatin1Char(' '), QLatin1Char('_'));
        for (size_t i = 0; i < row.attempts.size(); ++i) {
            const Attempt& a = row.attempts[i];
            SCOPED_TRACE(i);
            s_sim->control("DELETE", "/control/fault");
            if (a.batchFault != nullptr)
                Fault("/DVAPI/SDK/batch", nlohmann::json::parse(a.batchFault));
            if (a.searchFault != nullptr)
                Fault("/DVAPI/Intelligent/FDLib/FDSearch", nlohmann::json::parse(a.searchFault));
            CInformationDlg::ClearShownMessages();
            const size_t before = Uploads().size();
            QWidget page;
            testsupport::GuiGapProbe probe;
            if (a.cancel)
                WhileModal(&probe, [&] {
                    auto* chase = Visible<VantorGUIToolkit::CChaseDialog>("m_pChaseDialog");
                    if (chase == nullptr || Stat("delaying") < 1)
                        return false;
                    probe.start();
                    chase->findChild<QPushButton*>(QStringLiteral("m_pCancelBtn"))->click();
                    return true;
                });
            AddFace(&page, name);
            if (a.cancel) {
                const qint64 gap = probe.stop();
                EXPECT_LT(gap, kLongestGapMs);
                std::printf("[ gap      ] %s: longest GUI gap %lld ms\n", row.name, static_cast<long long>(gap));
            }
            EXPECT_EQ(CInformationDlg::ShownMessages(), QStringList{QString::fromLatin1(a.message)});
            size_t landed = 0;
            for (const auto& r : Uploads())
                landed += r.value("name", std::string()) == name.toStdString() ? 1 : 0;
            EXPECT_EQ(Uploads().size() - before, size_t(a.stored));
            EXPECT_LE(landed, 1u) << "never stored twice";
        }
    }
}

INSTANTIATE_TEST_SUITE_P(HeldRequests, RequestCancelTest,
    ::testing::Values(Row{Kind::Search, Action::Cancel}, Row{Kind::Search, Action::LeavePage},
        Row{Kind::Search, Action::TearDown}, Row{Kind::Poll, Action::Cancel}, Row{Kind::Poll, Action::LeavePage},
        Row{Kind::Poll, Action::TearDown}, Row{Kind::Thumb, Action::Close}, Row{Kind::Thumb, Action::LeavePage},
        Row{Kind::Thumb, Action::TearDown}, Row{Kind::Picture, Action::Close},
        Row{Kind::Picture, Action::LeavePage}, Row{Kind::Picture, Action::TearDown},
        Row{Kind::Capability, Action::Cancel}, Row{Kind::Capability, Action::LeavePage},
        Row{Kind::Capability, Action::TearDown}, Row{Kind::Upload, Action::Cancel}, Row{Kind::Upload, Action::LeavePage},
        Row{Kind::Upload, Action::TearDown}),
    [](const ::testing::TestParamInfo<Row>& p) { return rowName(p.param); });

} // namespace
