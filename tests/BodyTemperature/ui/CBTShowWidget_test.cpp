// The information display on real widgets and a real settings file, detail dialogs
// open over it; only the sound device is replaced, by one that plays nothing.
#include <QImage>
#include <QLabel>
#include <QLayout>
#include <QPointer>
#include <QPushButton>
#include <QBackingStore>
#include <QTest>
#include <QSignalSpy>
#include <QTimer>
#include <QToolButton>
#include <gtest/gtest.h>

#include "Base/CSingleton.h"
#include "BodyTemperatureWid.h"
#include "CAppRscManager.h"
#include "CameraModel.h"
#include "DashboardRecords.h"
#include "ui/BTShowLiveView.h"
#include "ui/CBTShowWidget.h"
#include "ui/CBottomWidget.h"
#include "ui/CRightNoData.h"
#include "ui/History/CHistoryWindow.h"
#include "ui/ShowCard/CAlarmUnit.h"
#include "ui/ShowCard/CCardHold.h"
#include "ui/ShowCard/CComparisonDetail.h"
#include "ui/ShowCard/CPopUpUnit.h"
#include "ui/ShowCard/CSnapUnit.h"
#include "ui/ShowCard/CardShift.h"
#include "ui/ShowCard/CardStyle.h"
#include "ui/ShowCard/ReCustomer/CFrequenterUnit.h"

using namespace BodyTemperature;
using namespace dashtest;
using Nums = QList<QVariant>;

namespace {

class ShowWidgetTest : public ::testing::Test {
protected:
    static std::unique_ptr<CBTShowWidget> makeWidget(
        const AlarmDisplayConfig& config = voiceConfig(), bool shown = false)
    {
        storeSettings(config);
        auto w = std::make_unique<CBTShowWidget>();
        w->resize(1642, 1080);
        if (shown) {
            w->show();
            testsupport::pump();
        }
        return w;
    }
    static QLayout* rightList(const CBTShowWidget& w)
    {
        return testsupport::child<QWidget>(&w, "m_pRightListWidget")->layout();
    }
    static int rightCards(const CBTShowWidget& w) { return rightList(w)->count() - 1; }
    static int bottomCards(const CBTShowWidget& w) { return w.findChild<CBottomWidget*>()->layout()->count() - 1; }
    // The newest card stands last in the layout (drawn at the top).
    template <typename T = CAlarmUnit>
    static T* newestCard(const CBTShowWidget& w)
    {
        const int n = rightList(w)->count();
        return n > 1 ? qobject_cast<T*>(rightList(w)->itemAt(n - 1)->widget()) : nullptr;
    }
    static CPopUpUnit* popUp(const CBTShowWidget& w) { return w.findChild<CPopUpUnit*>(); }
    static QTimer* popTimer(const CBTShowWidget& w) { return w.findChild<QTimer*>(QStringLiteral("m_pPopTimer")); }
    // The four counters as they stand: a record of an unknown code reports
    // them unchanged.
    static Nums counters(CBTShowWidget& w)
    {
        QSignalSpy nums(&w, &CBTShowWidget::signalNum);
        deal(w, record(100999, face(1, 1, 1)));
        return nums.count() == 1 ? nums.at(0) : Nums();
    }

    VoiceLog voices;
};

enum Voice { None, NoMask, Normal, Abnormal };

struct ClassRow { const char* name; uint32_t enabled, anomaly, mask; bool soundNoMask, soundNormal, soundAbnormal, popNoMask, popAbnormal;
                  Voice voice; uint32_t popType, maskType, temperatureType, alarmType; int normal, noMask, abnormal; };

// The whole table is CAlarmClassifier_test's; these rows show that each part
// of the decision (codes, prompt, counters, pop-up) reaches the page.
const ClassRow kRows[] = {
    // name                          en an mk  sNM   sN    sA    pNM   pA     voice     pop mk tp al  n  nm ab
    {"not measured, mask worn",      0, 0, 2, true, true, true, true, true, None,     0, 2, 3, 2, 0, 0, 0},
    {"abnormal, no mask",            1, 1, 1, true, true, true, true, true, Abnormal, 1, 0, 0, 0, 0, 1, 1},
    {"abnormal, no mask, falls back",1, 1, 1, true, true, false, true, false, NoMask, 2, 0, 0, 0, 0, 1, 1},
    {"normal, no mask, falls back",  1, 0, 1, false, true, true, false, true, Normal, 0, 1, 1, 1, 1, 1, 0},
};

TEST_F(ShowWidgetTest, TheClassificationReachesCardsVoiceCountersAndPopUp)
{
    for (const ClassRow& row : kRows) {
        SCOPED_TRACE(row.name);
        AlarmDisplayConfig config = voiceConfig();
        config.bSoundNoMask = row.soundNoMask;
        config.bSoundNormal = row.soundNormal;
        config.bSoundAbnormal = row.soundAbnormal;
        config.bPopNoMask = row.popNoMask;
        config.bPopAbnormal = row.popAbnormal;
        auto w = makeWidget(config);
        QSignalSpy nums(w.get(), &CBTShowWidget::signalNum);
        const int before = voices.played().size();

        deal(*w, record(kTemperatureCapture, face(row.enabled, row.anomaly, row.mask)));

        // At most one file per record, and the player plays it.
        const QStringList played = voices.played().mid(before);
        const QString paths[] = {QString(), config.strNoMaskVoice, config.strNormalVoice, config.strAbnormalVoice};
        EXPECT_EQ(played, row.voice == None ? QStringList() : QStringList{paths[row.voice]});
        const CAlarmUnit* card = newestCard(*w);
        ASSERT_NE(card, nullptr);
        const AlarmShowInfo& i = card->info();
        EXPECT_EQ(std::vector<uint32_t>({uint32_t(i.popType), uint32_t(i.maskType), i.temperatureType, i.alarmType}),
            std::vector<uint32_t>({row.popType, row.maskType, row.temperatureType, row.alarmType}));
        EXPECT_EQ(i.kind, EventKind::TemperatureCapture);
        ASSERT_EQ(nums.count(), 1);
        EXPECT_EQ(nums.at(0), (Nums{1, row.normal, row.noMask, row.abnormal}));
        EXPECT_EQ(popUp(*w) != nullptr && popUp(*w)->isVisibleTo(w.get()), row.popType != 0);
    }
}

// With the alarm display off nothing is counted, listed or spoken.
TEST_F(ShowWidgetTest, TheDisplaySwitch)
{
    auto w = makeWidget();
    deal(*w, record(kTemperatureCapture, face(1, 1, 1)));
    const int played = voices.played().size();
    QSignalSpy nums(w.get(), &CBTShowWidget::signalNum);
    auto* enable = testsupport::child<QToolButton>(w.get(), "m_pEnableAlarmBtn");
    enable->click();
    ASSERT_FALSE(enable->isChecked());
    deal(*w, record(kTemperatureCapture, face(1, 1, 1)));
    EXPECT_EQ(nums.count(), 0);
    EXPECT_EQ(voices.played().size(), played);
    EXPECT_EQ(rightCards(*w), 1);

    enable->click();
    deal(*w, record(kTemperatureCapture, face(1, 1, 1)));
    EXPECT_EQ(nums.count(), 1);
}

TEST_F(ShowWidgetTest, ReturningPersonAddsOneCardPerOpenViewOfItsCamera)
{
    auto w = makeWidget();
    // Play windows exist once the live view has a model (the dialog does this).
    w->LiveView()->Init(Base::CSingleton<CAppRscManager>::Instance()->GetCameraModel());
    w->restorePlayingCameras({QStringLiteral("CAM1"), QStringLiteral("CAM2"), QStringLiteral("CAM1")});
    QSignalSpy nums(w.get(), &CBTShowWidget::signalNum);

    deal(*w, record(kReturning, face(1, 1, 1), "R1", "CAM1"));
    EXPECT_EQ(rightCards(*w), 2);
    const auto* card = newestCard<CFrequenterUnit>(*w);
    ASSERT_NE(card, nullptr);
    EXPECT_EQ(card->info().kind, EventKind::Returning);
    EXPECT_EQ(card->info().strSecondID, "TASK7");
    EXPECT_EQ(bottomCards(*w), 2);
    ASSERT_EQ(nums.count(), 1);
    EXPECT_EQ(nums.at(0), (Nums{2, 0, 0, 0}));
    EXPECT_TRUE(voices.played().isEmpty());
    EXPECT_EQ(popUp(*w), nullptr);

    deal(*w, record(kReturning, face(1, 1, 1), "R2", "CAM9"));
    EXPECT_TRUE(testsupport::waitUntil([&w] { return rightCards(*w) == 2; }));
    ASSERT_EQ(nums.count(), 2);
    EXPECT_EQ(nums.at(1), (Nums{2, 0, 0, 0}));
}

TEST_F(ShowWidgetTest, AutoClosingPopUpKeepsItsContentUntilTheTimerFires)
{
    auto w = makeWidget();
    deal(*w, record(kTemperatureCapture, face(1, 1, 2), "A"));
    CPopUpUnit* card = popUp(*w);
    QTimer* timer = popTimer(*w);
    ASSERT_NE(card, nullptr);
    ASSERT_NE(timer, nullptr);
    EXPECT_TRUE(timer->isActive());
    EXPECT_EQ(timer->interval(), 5000);

    deal(*w, record(kTemperatureCapture, face(1, 1, 2), "B"));
    EXPECT_TRUE(testsupport::waitUntil([&w] { return rightCards(*w) == 2; })) << "the list still gets every card";
    EXPECT_EQ(card->info().eventID, "A");

    QSignalSpy fired(timer, &QTimer::timeout);
    timer->setInterval(10);
    ASSERT_TRUE(fired.wait(2000));
    EXPECT_FALSE(card->isVisibleTo(w.get()));
    EXPECT_FALSE(timer->isActive());

    deal(*w, record(kTemperatureCapture, face(0, 0, 1), "C"));
    EXPECT_EQ(card->info().eventID, "C");
    EXPECT_TRUE(card->isVisibleTo(w.get()));
    // Closing it by hand frees it for the next record at once.
    card->onClose();
    deal(*w, record(kTemperatureCapture, face(1, 1, 2), "D"));
    EXPECT_EQ(card->info().eventID, "D");
}

TEST_F(ShowWidgetTest, PopUpThatNeverClosesByItselfTakesEveryNewRecord)
{
    for (const auto& c : {std::make_pair(true, -1), std::make_pair(false, 5)}) {
        SCOPED_TRACE(c.first ? "duration -1" : "auto-close off");
        AlarmDisplayConfig config = voiceConfig();
        std::tie(config.bPopAutoClose, config.iPopDuration) = c;
        auto w = makeWidget(config);
        deal(*w, record(kTemperatureCapture, face(1, 1, 2), "A"));
        EXPECT_EQ(popTimer(*w), nullptr);
        deal(*w, record(kTemperatureCapture, face(1, 1, 2), "B"));
        ASSERT_NE(popUp(*w), nullptr);
        // On a loaded machine the second card may wait for the next event-loop turn.
        EXPECT_TRUE(testsupport::waitUntil([&w] { return popUp(*w)->info().eventID == "B"; }));
        EXPECT_TRUE(popUp(*w)->isVisibleTo(w.get()));
        VoiceLog::waitIdle();
    }
}

// That empty paths are filled with the shipped files, saved and played is
// SettingsThroughDisplay_test's; which file each language gets, the voice page's.
TEST_F(ShowWidgetTest, OneVoicePathSetLeavesTheOthersEmpty)
{
    AlarmDisplayConfig config;
    config.strNormalVoice = QStringLiteral("/mine.wav");
    const int played = voices.played().size();
    makeWidget(config)->DealAlarmInfo(record(kTemperatureCapture, face(1, 1, 2)));
    EXPECT_EQ(voices.played().size(), played);
    AlarmDisplayConfig stored;
    ASSERT_TRUE(CBTConfigDB::Instance()->LoadAlarmDisplayConfig(stored));
    EXPECT_TRUE(stored.strAbnormalVoice.isEmpty());
}

TEST_F(ShowWidgetTest, RetractButtonsToggleTheirListsAndNames)
{
    auto w = makeWidget(voiceConfig(), true);
    auto* bottom = testsupport::child<QToolButton>(w.get(), "m_pRetractBottomBtn");
    auto* right = testsupport::child<QToolButton>(w.get(), "m_pRightRetractBtn");
    const auto* frame = testsupport::child<QWidget>(w.get(), "m_pLiveViewFrame");
    // Clicks button; then it bears name, list shows or not, and the right button sits offset from the edge.
    const auto click = [&](QToolButton* button, const char* name, const QWidget* list, bool shown, int offset) {
        button->click();
        EXPECT_EQ(button->objectName(), QString::fromLatin1(name));
        EXPECT_EQ(list->isVisible(), shown) << name;
        testsupport::pump();
        w->OnLiveViewWidgetResized();
        EXPECT_EQ(right->pos(), QPoint(frame->width() - offset, (frame->height() - 60) / 2)) << name;
    };
    click(bottom, "m_pSpreadBottomBtn", w->findChild<CBottomWidget*>(), false, 13);
    click(bottom, "m_pRetractBottomBtn", w->findChild<CBottomWidget*>(), true, 13);
    const auto* panel = testsupport::child<QWidget>(w.get(), "m_pRightPanel");
    click(right, "m_pRightSpreadBtn", panel, false, 23);
    click(right, "m_pRightRetractBtn", panel, true, 13);
}

TEST_F(ShowWidgetTest, FullScreenDetachesTheRightPanelAndBringsItBack)
{
    auto w = makeWidget(voiceConfig(), true);
    auto* panel = testsupport::child<QWidget>(w.get(), "m_pRightPanel");
    auto* list = testsupport::child<QWidget>(w.get(), "m_pRightListWidget");
    EXPECT_TRUE(list->testAttribute(Qt::WA_OpaquePaintEvent));
    w->OnFullScreenChanged(true);
    EXPECT_FALSE(list->testAttribute(Qt::WA_OpaquePaintEvent)) << "over the video the list lets the panel show through";
    const Qt::WindowFlags onTop = Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint;
    EXPECT_EQ(std::make_tuple(panel->isWindow(), panel->windowFlags() & onTop, panel->isVisible(), panel->geometry()),
        std::make_tuple(true, onTop, true, QRect(1497, 0, 423, 654)));
    EXPECT_TRUE(panel->testAttribute(Qt::WA_TranslucentBackground));

    w->OnFullScreenChanged(false);
    EXPECT_FALSE(panel->isWindow());
    EXPECT_FALSE(panel->testAttribute(Qt::WA_TranslucentBackground));
    EXPECT_TRUE(panel->isVisible());
    EXPECT_EQ(panel->parentWidget(), w.get());
    EXPECT_TRUE(list->testAttribute(Qt::WA_OpaquePaintEvent));
}

TEST_F(ShowWidgetTest, CardsShiftedByCopyingLookAsIfPaintedAfresh)
{
    // Both lists shift their cards by copying pixels: from the first card through a
    // full list that trims, the window must show what a fresh paint gives.
    auto w = makeWidget();
    w->setStyleSheet(CardStyle::ModuleStyleSheet());
    w->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(w.get()));
    const auto settled = [&w] {
        testsupport::pump(20);
        QCoreApplication::sendPostedEvents();
    };
    // What the window shows: the offscreen platform's backing store is an image.
    const auto onScreen = [&w] {
        QPaintDevice* device = w->backingStore()->paintDevice();
        return device->devType() == QInternal::Image
            ? static_cast<QImage*>(device)->convertToFormat(QImage::Format_RGB32) : QImage();
    };
    const auto fresh = [&w] { return w->grab().toImage().convertToFormat(QImage::Format_RGB32); };
    int dealt = 0;
    for (int upTo : {1, 2, 7, CBTShowWidget::kMaxRightCards + 3}) {
        for (; dealt < upTo; ++dealt) {
            // Normal temperature, mask worn: no pop-up that could close between the pictures.
            deal(*w, record(kTemperatureCapture, face(1, 0, 2), "S" + std::to_string(dealt)));
            settled();
        }
        // Under load the last repaint may still be on its way; stale pixels never go.
        EXPECT_TRUE(testsupport::waitUntil([&] { return onScreen() == fresh(); }, 3000)) << upTo << " cards";
    }
    // Each backdrop is the colour that showed through its list.
    auto* list = testsupport::child<QWidget>(w.get(), "m_pRightListWidget");
    auto* strip = w->findChild<CBottomWidget*>();
    ASSERT_TRUE(list->testAttribute(Qt::WA_OpaquePaintEvent) && strip->testAttribute(Qt::WA_OpaquePaintEvent));
    const QImage solid = fresh();
    CardShift::SetSolidBackdrop(list, false);
    CardShift::SetSolidBackdrop(strip, false);
    EXPECT_TRUE(fresh() == solid);
}

TEST_F(ShowWidgetTest, BrokenRecordsAreStillCountedAndListed)
{
    auto w = makeWidget();

    // A capture with no face at all: listed on the right, nothing to show below.
    publicdatacontroller::IntelAlarmEventInfo noFace = record(kTemperatureCapture, face(1, 1, 1));
    noFace.faceInfoList.clear();
    deal(*w, noFace);
    EXPECT_EQ(counters(*w).value(0), 1);
    EXPECT_EQ(rightCards(*w), 1);
    EXPECT_EQ(bottomCards(*w), 0);
    EXPECT_TRUE(voices.played().isEmpty());
    EXPECT_EQ(newestCard(*w)->info().alarmType, 0u);

    // Pictures that do not decode: classified and shown like any other.
    protocol::IntelAlarmFaceInfo garbled = face(1, 0, 2, false);
    garbled.bkPic = QByteArray("not a picture");
    garbled.SubPic = QByteArray(7, '\xff');
    deal(*w, record(kTemperatureCapture, garbled, "G"));
    deal(*w, record(kComparison, garbled, "G2"));
    EXPECT_EQ(counters(*w).mid(0, 2), (Nums{3, 2}));
    EXPECT_EQ(bottomCards(*w), 2);

    // A face without pictures is counted but adds no capture card.
    deal(*w, record(kTemperatureCapture, face(1, 0, 2, false)));
    EXPECT_EQ(counters(*w).value(0), 4);
    EXPECT_EQ(bottomCards(*w), 2);
}

// While a detail dialog runs its own event loop, alarms keep arriving and trim its
// card, the pop-up keeps its timer, and leaving or tearing down the page closes it.
AlarmDisplayConfig popConfig(bool popUps)
{
    AlarmDisplayConfig config = voiceConfig();
    config.bPopAbnormal = config.bPopNoMask = popUps;
    config.iPopDuration = 1;
    return config;
}

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

TEST_F(ShowWidgetTest, BurstTrimsTheCardWhoseDialogIsOpen)
{
    auto w = makeWidget(popConfig(false), true);
    for (int i = 0; i < CBTShowWidget::kMaxRightCards; ++i)
        w->DealAlarmInfo(Alarm(i));
    ASSERT_TRUE(cardsBuilt(*w));
    QPointer<QWidget> oldest = rightList(*w)->itemAt(1)->widget();

    QString shown;
    int cardsDuring = 0;
    bool keptHidden = false;
    QObject context;
    QTimer::singleShot(0, &context, [&] {
        CComparisonDetail* dialog = w->findChild<CComparisonDetail*>();
        if (dialog == nullptr || !dialog->isVisible())
            return;
        shown = CameraShown(dialog);
        for (int i = 0; i < 50; ++i)
            w->DealAlarmInfo(Alarm(100 + i));
        // Cards of a burst are built a few event-loop turns later.
        EXPECT_TRUE(QTest::qWaitFor([&] { return oldest.isNull() || !oldest->isVisible(); }, 5000));
        cardsDuring = rightList(*w)->count() - 1;
        keptHidden = !oldest.isNull() && !oldest->isVisible();
        dialog->reject();
    });
    DetailsButton(oldest)->click();

    EXPECT_EQ(shown, QStringLiteral("Camera 0"));  // the card's own copy of its record
    EXPECT_EQ(cardsDuring, CBTShowWidget::kMaxRightCards);
    EXPECT_TRUE(keptHidden);
    EXPECT_TRUE(QTest::qWaitFor([&] { return oldest.isNull(); }));
    EXPECT_EQ(w->findChild<CComparisonDetail*>(), nullptr);
    EXPECT_EQ(rightList(*w)->count() - 1, CBTShowWidget::kMaxRightCards);
}

TEST_F(ShowWidgetTest, PopUpKeepsItsTimerWhileItsDialogIsOpen)
{
    auto w = makeWidget(popConfig(true), true);
    deal(*w, Alarm(0, 1));
    QPointer<CPopUpUnit> pop = w->findChild<CPopUpUnit*>();
    ASSERT_TRUE(pop && pop->isVisible());

    QString shown;
    bool closedByTimer = false, refilled = false;
    QObject context;
    QTimer::singleShot(0, &context, [&] {
        CComparisonDetail* dialog = w->findChild<CComparisonDetail*>();
        if (dialog == nullptr)
            return;
        shown = CameraShown(dialog);
        closedByTimer = testsupport::waitUntil([&] { return pop && !pop->isVisible(); }, 4000) && dialog->isVisible();
        for (int i = 1; i <= 50; ++i)
            w->DealAlarmInfo(Alarm(i, 1));
        cardsBuilt(*w);
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

TEST_F(ShowWidgetTest, LeavingOrTearingDownThePageClosesTheDialog)
{
    for (const bool tearDown : {false, true}) {
        SCOPED_TRACE(tearDown ? "page torn down" : "page left");
        storeSettings(popConfig(false));
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
    const struct { const char* name; int holds; bool retire; } rows[] = {  // holds taken before the retirement
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
        while (!holds.empty()) {  // the card outlives every hold but the last
            holds.pop_back();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            if (!holds.empty()) {
                ASSERT_FALSE(card.isNull());
            }
        }
        EXPECT_TRUE(QTest::qWaitFor([&] { return card.isNull() == row.retire; }));
        EXPECT_TRUE(card.isNull() || !IsCardHeld(card.data()));
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

// The capture strip: its card limit and order, its two appearances, and the
// face cut handed to the add-to-library step.
AlarmShowInfo captureInfo(const std::string& eventId)
{
    AlarmShowInfo info = AlarmShowInfo::FromRecord(record(kCapture, face(0, 0, 2), eventId));
    info.kind = EventKind::Capture;
    return info;
}

TEST(BottomWidget, KeepsTheTwentyOneNewestCardsBehindTheSpacer)
{
    CBottomWidget strip;
    for (int i = 1; i <= 23; ++i)
        strip.AddSnapInfo(captureInfo("E" + std::to_string(i)));
    QLayout* cards = strip.layout();
    ASSERT_EQ(cards->count(), 22);
    EXPECT_NE(cards->itemAt(0)->spacerItem(), nullptr);
    const auto* oldest = qobject_cast<CSnapUnit*>(cards->itemAt(1)->widget());
    const auto* newest = qobject_cast<CSnapUnit*>(cards->itemAt(21)->widget());
    ASSERT_TRUE(oldest && newest);
    EXPECT_EQ(oldest->info().eventID, "E3");
    EXPECT_EQ(newest->info().eventID, "E23");
    EXPECT_EQ(strip.findChildren<CSnapUnit*>().size(), 21);

    strip.Clear();
    EXPECT_EQ(cards->count(), 1);
    EXPECT_TRUE(strip.findChildren<CSnapUnit*>().isEmpty());
}

TEST(BottomWidget, ObjectNameAndPlaceholderFollowTheContent)
{
    CBottomWidget strip;
    strip.resize(658, 158);
    strip.show();
    testsupport::pump();
    EXPECT_EQ(strip.objectName(), QStringLiteral("m_pBottomWidgetNoData"));
    auto* placeholder = strip.findChild<CRightNoData*>();
    auto* corner = strip.findChild<QLabel*>(QStringLiteral("cornerLabel"));
    ASSERT_TRUE(placeholder && corner);
    EXPECT_TRUE(placeholder->isVisible());
    EXPECT_EQ(placeholder->geometry(), QRect(0, 0, 657, 157));
    EXPECT_TRUE(corner->isVisible());

    strip.AddSnapInfo(captureInfo("E1"));
    strip.resize(700, 158);
    testsupport::pump();
    EXPECT_EQ(strip.objectName(), QStringLiteral("m_pBottomWidget"));
    EXPECT_FALSE(placeholder->isVisible());
    EXPECT_FALSE(corner->isVisible());
}

TEST(BottomWidget, AddToLibOffersTheFaceCut)
{
    CBottomWidget strip;
    QSignalSpy ready(&strip, &CBottomWidget::SignalFaceReady);
    // No picture, or one that does not decode: nothing to add.
    strip.OnAddToLib(std::string(), {0.1, 0.1, 0.5, 0.5});
    strip.OnAddToLib("garbage", {0.1, 0.1, 0.5, 0.5});
    EXPECT_EQ(ready.count(), 0);
    // Without a rectangle the bytes go on untouched (CBTAddFaceWnd_test, from a card).
    const QByteArray picture = testsupport::makeJpeg(400, 200, 95);

    struct Case { protocol::PictureRect rect; QSize size; };
    for (const Case& c : {Case{{0.25, 0.5, 0.5, 0.25}, QSize(200, 50)}, Case{{0.1, 0.1, 0.333, 0.333}, QSize(133, 66)},
             Case{{0.0, 0.0, 1.0, 1.0}, QSize(400, 200)}}) {
        const int before = ready.count();
        strip.OnAddToLib(picture.toStdString(), c.rect);
        ASSERT_EQ(ready.count(), before + 1);
        const QByteArray cut = ready.last().at(0).toByteArray();
        EXPECT_TRUE(cut.startsWith("\xff\xd8\xff")) << "JPEG";
        EXPECT_EQ(QImage::fromData(cut).size(), c.size);
        // Quality 50: even the whole picture shrinks against the original at 95.
        EXPECT_LT(cut.size(), picture.size());
    }
}

} // namespace
