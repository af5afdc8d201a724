// While a detail dialog runs its own event loop, alarms keep arriving and trim its
// card, the pop-up keeps its timer, and leaving or tearing down the page closes it.
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QLayout>
#include <gtest/gtest.h>
#include <memory>

#include "BodyTemperatureWid.h"
#include "DashboardRecords.h"
#include "ui/CBTShowWidget.h"
#include "ui/History/CHistoryWindow.h"
#include "ui/ShowCard/CCardHold.h"
#include "ui/ShowCard/CComparisonDetail.h"
#include "ui/ShowCard/CPopUpUnit.h"

using namespace BodyTemperature;
using namespace dashtest;

namespace {

class DetailLifetimeTest : public ::testing::Test {
protected:
    static QLayout* rightList(const QWidget& display)
    {
        return testsupport::child<QWidget>(&display, "m_pRightListWidget")->layout();
    }
    static void store(bool popUps)
    {
        AlarmDisplayConfig config = voiceConfig();
        config.bPopAbnormal = config.bPopNoMask = popUps;
        config.iPopDuration = 1;
        storeSettings(config);
    }

    VoiceLog voices;
};

publicdatacontroller::IntelAlarmEventInfo Alarm(int i, uint32_t anomaly = 0)
{
    auto r = record(kComparison, face(1, anomaly, 2), "E" + std::to_string(i));
    r.cameraName = "Camera " + std::to_string(i);
    r.faceInfo.facePicID = static_cast<uint32_t>(i);
    return r;
}

QPushButton* DetailsButton(QWidget* card)
{
    for (QPushButton* b : card->findChildren<QPushButton*>())
        if (b->objectName().startsWith(QLatin1String("DetailBtn_")))
            return b;
    ADD_FAILURE() << "no details button";
    return nullptr;
}

QString CameraShown(const CComparisonDetail* dialog)
{
    const auto* label = dialog->findChild<QLabel*>(QStringLiteral("m_pCameraLbl"));
    return label != nullptr ? label->text() : QString();
}

TEST_F(DetailLifetimeTest, BurstTrimsTheCardWhoseDialogIsOpen)
{
    store(false);
    CBTShowWidget w;
    w.resize(1642, 1080);
    w.show();
    for (int i = 0; i < CBTShowWidget::kMaxRightCards; ++i)
        w.DealAlarmInfo(Alarm(i));
    ASSERT_TRUE(cardsBuilt(w));
    QPointer<QWidget> oldest = rightList(w)->itemAt(1)->widget();

    QString shown;
    int cardsDuring = 0;
    bool keptHidden = false;
    QObject context;
    QTimer::singleShot(0, &context, [&] {
        CComparisonDetail* dialog = w.findChild<CComparisonDetail*>();
        if (dialog == nullptr || !dialog->isVisible())
            return;
        shown = CameraShown(dialog);
        for (int i = 0; i < 50; ++i)
            w.DealAlarmInfo(Alarm(100 + i));
        // Cards of a burst are built a few event-loop turns later.
        EXPECT_TRUE(QTest::qWaitFor([&] { return oldest.isNull() || !oldest->isVisible(); }, 5000));
        cardsDuring = rightList(w)->count() - 1;
        keptHidden = !oldest.isNull() && !oldest->isVisible();
        dialog->reject();
    });
    DetailsButton(oldest)->click();

    EXPECT_EQ(shown, QStringLiteral("Camera 0"));  // the card's own copy of its record
    EXPECT_EQ(cardsDuring, CBTShowWidget::kMaxRightCards);
    EXPECT_TRUE(keptHidden);
    QTRY_VERIFY(oldest.isNull());
    EXPECT_EQ(w.findChild<CComparisonDetail*>(), nullptr);
    EXPECT_EQ(rightList(w)->count() - 1, CBTShowWidget::kMaxRightCards);
}

TEST_F(DetailLifetimeTest, PopUpKeepsItsTimerWhileItsDialogIsOpen)
{
    store(true);
    CBTShowWidget w;
    w.resize(1642, 1080);
    w.show();
    deal(w, Alarm(0, 1));
    QPointer<CPopUpUnit> pop = w.findChild<CPopUpUnit*>();
    ASSERT_TRUE(pop && pop->isVisible());

    QString shown;
    bool closedByTimer = false, refilled = false;
    QObject context;
    QTimer::singleShot(0, &context, [&] {
        CComparisonDetail* dialog = w.findChild<CComparisonDetail*>();
        if (dialog == nullptr)
            return;
        shown = CameraShown(dialog);
        closedByTimer = testsupport::waitUntil([&] { return pop && !pop->isVisible(); }, 4000) && dialog->isVisible();
        for (int i = 1; i <= 50; ++i)
            w.DealAlarmInfo(Alarm(i, 1));
        cardsBuilt(w);
        refilled = pop && pop->isVisible() && CameraShown(dialog) == QStringLiteral("Camera 0");
        dialog->reject();
    });
    DetailsButton(pop)->click();

    EXPECT_EQ(shown, QStringLiteral("Camera 0"));
    EXPECT_TRUE(closedByTimer);
    EXPECT_TRUE(refilled);
    ASSERT_FALSE(pop.isNull());
    const auto* camera = pop->findChild<QLabel*>(QStringLiteral("m_pCameraRedBig"));
    ASSERT_NE(camera, nullptr);
    EXPECT_EQ(camera->text(), QStringLiteral("Camera 1"));  // the first alarm after the timer closed it
}

TEST_F(DetailLifetimeTest, LeavingOrTearingDownThePageClosesTheDialog)
{
    for (const bool tearDown : {false, true}) {
        SCOPED_TRACE(tearDown ? "page torn down" : "page left");
        store(false);
        auto frame = std::make_unique<QWidget>();
        QPointer<BodyTemperatureWid> page = new BodyTemperatureWid(frame.get());
        auto* display = page->findChild<CBTShowWidget*>();
        deal(*display, Alarm(0));
        QPointer<QWidget> card = rightList(*display)->itemAt(1)->widget();
        // The screening history window goes with the page too.
        page->findChild<QToolButton*>(QStringLiteral("m_pReportBtn"))->click();
        QPointer<CHistoryWindow> history = page->findChild<CHistoryWindow*>();
        ASSERT_FALSE(history.isNull());

        QPointer<CComparisonDetail> dialog;
        bool closed = false;
        QObject context;
        QTimer::singleShot(0, &context, [&] {
            dialog = page->findChild<CComparisonDetail*>();
            if (dialog.isNull())
                return;
            if (tearDown)
                frame.reset();
            else
                page->saveState();
            closed = dialog.isNull() || !dialog->isVisible();
            if (!closed)
                dialog->reject();
        });
        DetailsButton(card)->click();

        EXPECT_TRUE(closed);
        EXPECT_TRUE(dialog.isNull());
        EXPECT_EQ(page.isNull(), tearDown);
        EXPECT_EQ(card.isNull(), tearDown);
        EXPECT_TRUE(testsupport::waitUntil([&] { return history.isNull(); }));
    }
}

// A trimmed card lives while something started from it still runs.
TEST(CardHold, RetireDeletesOnlyWhenNothingHolds)
{
    const struct {
        const char* name;
        int holds;  // taken before the card is retired
        bool retire;
    } rows[] = {
        {"unheld goes at once", 0, true},
        {"one hold defers", 1, true},
        {"two holds defer", 2, true},
        {"held, never retired, stays", 1, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        QWidget list;
        QPointer<QWidget> card = new QWidget(&list);
        card->show();
        std::vector<std::unique_ptr<CCardHold>> holds;
        for (int i = 0; i < row.holds; ++i)
            holds.push_back(std::make_unique<CCardHold>(card.data()));
        EXPECT_EQ(IsCardHeld(card.data()), row.holds > 0);
        if (row.retire)
            RetireCard(card.data());
        EXPECT_EQ(!card.isNull(), row.holds > 0);
        if (card.isNull())
            continue;
        EXPECT_EQ(card->isHidden(), row.retire);
        while (holds.size() > 1) {
            holds.pop_back();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            EXPECT_FALSE(card.isNull());
        }
        holds.clear();
        if (row.retire) {
            QTRY_VERIFY(card.isNull());
        } else {
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            ASSERT_FALSE(card.isNull());
            EXPECT_FALSE(IsCardHeld(card.data()));
        }
    }
}

TEST(CardHold, AHoldOutlivingItsCardIsHarmless)
{
    auto list = std::make_unique<QWidget>();
    auto* card = new QWidget(list.get());
    CCardHold hold(card);
    RetireCard(card);
    list.reset(); // the page goes, taking the card with it
    EXPECT_EQ(hold.card(), nullptr);
}

} // namespace
