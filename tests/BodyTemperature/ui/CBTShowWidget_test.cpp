// The information display on real widgets and a real settings file: the
// classification of every face, the event dispatch and its switches, the two
// card lists, returning-person cards per open view, the pop-up rules, the
// panel buttons and records that carry broken data. The voice device is
// replaced by a recorder; everything else is the real module.
#include <QLabel>
#include <QPointer>
#include <QLayoutItem>
#include <QScrollArea>
#include <QSignalSpy>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>
#include <mutex>
#include <vector>
#include <gtest/gtest.h>

#include "Base/CSingleton.h"
#include "CAppRscManager.h"
#include "CameraModel.h"
#include "DashboardRecords.h"
#include "aiguitoolkit/CShakeButton.h"
#include "clientcommonlogical/CConfigMgr.h"
#include "ui/BTShowLiveView.h"
#include "ui/CBTShowWidget.h"
#include "ui/CBottomWidget.h"
#include "ui/CRightNoData.h"
#include "ui/CTypeConfigPage.h"
#include "ui/CVoicePlayer.h"
#include "ui/ShowCard/CAlarmUnit.h"
#include "ui/ShowCard/CPopUpUnit.h"
#include "ui/ShowCard/ReCustomer/CFrequenterUnit.h"

using BodyTemperature::AlarmDisplayConfig;
using BodyTemperature::AlarmShowInfo;
using BodyTemperature::CAlarmUnit;
using BodyTemperature::CBTShowWidget;
using BodyTemperature::CFrequenterUnit;
using BodyTemperature::CVoicePlayer;
using namespace dashtest;

namespace {

class ShowWidgetTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        CVoicePlayer::SetSink([this](const std::string& path) {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_played.push_back(path);
            return true;
        });
        storeSettings(voiceConfig());
    }
    void TearDown() override
    {
        ASSERT_TRUE(testsupport::waitUntil([] { return CVoicePlayer::IsIdle(); }));
        CVoicePlayer::SetSink({});
    }

    std::unique_ptr<CBTShowWidget> makeWidget(const AlarmDisplayConfig& config)
    {
        storeSettings(config);
        auto w = std::make_unique<CBTShowWidget>();
        w->resize(1642, 1080);
        return w;
    }

    static int rightCards(const CBTShowWidget& w) { return w.RightListLayout()->count() - 1; }
    // The newest card stands last in the layout (drawn at the top).
    template <typename T>
    static T* newestCard(const CBTShowWidget& w)
    {
        const int n = w.RightListLayout()->count();
        return n > 1 ? qobject_cast<T*>(w.RightListLayout()->itemAt(n - 1)->widget()) : nullptr;
    }
    std::vector<std::string> played()
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_played;
    }

    std::mutex m_mutex;
    std::vector<std::string> m_played;
};

// ---------------------------------------------------------------- classification

enum Voice { None, NoMask, Normal, Abnormal };

struct ClassRow {
    const char* name;
    uint32_t enabled, anomaly, mask;
    bool soundNoMask, soundNormal, soundAbnormal, popNoMask, popAbnormal;
    Voice voice;
    uint32_t popType, maskType, temperatureType, alarmType;
    int normal, noMask, abnormal;
};

const ClassRow kRows[] = {
    // name                          en an mk  sNM   sN    sA    pNM   pA     voice     pop mk tp al  n  nm ab
    {"not measured, no mask",        0, 0, 1, true, true, true, true, true, NoMask,   2, 1, 3, 1, 0, 1, 0},
    {"not measured, no mask, quiet", 0, 0, 1, false, true, true, false, true, None,    0, 1, 3, 1, 0, 1, 0},
    {"not measured, mask worn",      0, 0, 2, true, true, true, true, true, None,     0, 2, 3, 2, 0, 0, 0},
    {"not measured, unknown mask",   2, 1, 0, true, true, true, true, true, None,     0, 3, 3, 2, 0, 0, 0},
    {"abnormal, mask worn",          1, 1, 2, true, true, true, true, true, Abnormal, 1, 2, 0, 0, 0, 0, 1},
    {"abnormal, unknown mask",       1, 1, 5, true, true, true, true, true, Abnormal, 1, 3, 0, 0, 0, 0, 1},
    {"abnormal, mask worn, quiet",   1, 1, 2, true, true, false, true, false, None,   0, 2, 0, 0, 0, 0, 1},
    {"abnormal, no mask",            1, 1, 1, true, true, true, true, true, Abnormal, 1, 0, 0, 0, 0, 1, 1},
    {"abnormal, no mask, falls back",1, 1, 1, true, true, false, true, false, NoMask, 2, 0, 0, 0, 0, 1, 1},
    {"abnormal, no mask, all off",   1, 1, 1, false, true, false, false, false, None, 0, 0, 0, 0, 0, 1, 1},
    {"normal, mask worn",            1, 0, 2, true, true, true, true, true, Normal,   0, 2, 2, 3, 1, 0, 0},
    {"normal, unknown mask",         1, 0, 0, true, true, true, true, true, Normal,   0, 3, 2, 3, 1, 0, 0},
    {"normal, mask worn, quiet",     1, 0, 2, true, false, true, true, true, None,    0, 2, 2, 3, 1, 0, 0},
    {"normal, no mask",              1, 0, 1, true, true, true, true, true, NoMask,   2, 1, 1, 1, 1, 1, 0},
    {"normal, no mask, falls back",  1, 0, 1, false, true, true, false, true, Normal, 0, 1, 1, 1, 1, 1, 0},
    {"anomaly neither 0 nor 1",      1, 7, 1, true, true, true, true, true, None,     0, 3, 3, 0, 0, 0, 0},
};

TEST_F(ShowWidgetTest, ClassifiesEveryFaceAsTheTableSays)
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
        QSignalSpy voices(w.get(), &CBTShowWidget::signalVoiceRequested);
        QSignalSpy nums(w.get(), &CBTShowWidget::signalNum);

        w->DealAlarmInfo(record(kTemperatureCapture, face(row.enabled, row.anomaly, row.mask)));

        const QString expected[] = {QString(), config.strNoMaskVoice, config.strNormalVoice, config.strAbnormalVoice};
        ASSERT_EQ(voices.count(), row.voice == None ? 0 : 1);
        if (row.voice != None) {
            EXPECT_EQ(voices.at(0).at(0).toString(), expected[row.voice]);
        }

        const CAlarmUnit* card = newestCard<CAlarmUnit>(*w);
        ASSERT_NE(card, nullptr);
        const AlarmShowInfo& info = card->info();
        EXPECT_EQ(info.popType, row.popType);
        EXPECT_EQ(info.maskType, row.maskType);
        EXPECT_EQ(info.temperatureType, row.temperatureType);
        EXPECT_EQ(info.alarmType, row.alarmType);
        EXPECT_EQ(info.kind, 4u);

        ASSERT_EQ(nums.count(), 1);
        const QList<QVariant> args = nums.at(0);
        EXPECT_EQ(args.at(0).toInt(), 1);
        EXPECT_EQ(args.at(1).toInt(), row.normal);
        EXPECT_EQ(args.at(2).toInt(), row.noMask);
        EXPECT_EQ(args.at(3).toInt(), row.abnormal);
        EXPECT_EQ(w->PopUpUnit() != nullptr && w->PopUpUnit()->isVisibleTo(w.get()), row.popType != 0);
        ASSERT_TRUE(testsupport::waitUntil([] { return CVoicePlayer::IsIdle(); }));
    }
}

TEST_F(ShowWidgetTest, TheRequestedPromptReachesTheSoundDevice)
{
    auto w = makeWidget(voiceConfig());
    w->DealAlarmInfo(record(kTemperatureCapture, face(1, 1, 1)));
    ASSERT_TRUE(testsupport::waitUntil([] { return CVoicePlayer::IsIdle(); }));
    ASSERT_EQ(played().size(), 1u);
    EXPECT_EQ(played().front(), "/voice/abnormal.wav");
}

// ---------------------------------------------------------------- dispatch

struct DispatchRow {
    uint32_t eventType;
    uint32_t kind;
    bool AlarmDisplayConfig::*switchField;
};

TEST_F(ShowWidgetTest, EachEventCodeHasItsKindAndItsSwitch)
{
    const DispatchRow rows[] = {
        {100103, 0, &AlarmDisplayConfig::bFacePictureComparison},
        {100506, 1, &AlarmDisplayConfig::bFacePictureComparison},
        {100114, 2, &AlarmDisplayConfig::bFacePictureComparison},
        {100101, 3, &AlarmDisplayConfig::bFaceCapture},
        {100119, 4, &AlarmDisplayConfig::bFaceTemperatureCapture},
    };
    for (const DispatchRow& row : rows) {
        SCOPED_TRACE(row.eventType);
        {
            auto w = makeWidget(voiceConfig());
            QSignalSpy nums(w.get(), &CBTShowWidget::signalNum);
            w->DealAlarmInfo(record(row.eventType, face(1, 0, 2)));
            ASSERT_EQ(nums.count(), 1);
            const CAlarmUnit* card = newestCard<CAlarmUnit>(*w);
            ASSERT_NE(card, nullptr);
            EXPECT_EQ(card->info().kind, row.kind);
            EXPECT_EQ(w->BottomWidget()->CardCount(), 1);
        }
        {
            AlarmDisplayConfig config = voiceConfig();
            config.*row.switchField = false;
            auto w = makeWidget(config);
            QSignalSpy nums(w.get(), &CBTShowWidget::signalNum);
            w->DealAlarmInfo(record(row.eventType, face(1, 1, 1)));
            EXPECT_EQ(nums.count(), 0) << "a switched-off kind is not even counted";
            EXPECT_EQ(rightCards(*w), 0);
            EXPECT_EQ(w->BottomWidget()->CardCount(), 0);
            EXPECT_EQ(w->AllNum(), 0);
        }
        ASSERT_TRUE(testsupport::waitUntil([] { return CVoicePlayer::IsIdle(); }));
    }
}

TEST_F(ShowWidgetTest, AlarmDisplayOffIgnoresEverything)
{
    auto w = makeWidget(voiceConfig());
    QSignalSpy nums(w.get(), &CBTShowWidget::signalNum);
    QSignalSpy voices(w.get(), &CBTShowWidget::signalVoiceRequested);
    w->EnableAlarmButton()->click();
    ASSERT_FALSE(w->EnableAlarmButton()->isChecked());
    w->DealAlarmInfo(record(kTemperatureCapture, face(1, 1, 1)));
    EXPECT_EQ(nums.count(), 0);
    EXPECT_EQ(voices.count(), 0);
    EXPECT_EQ(rightCards(*w), 0);

    w->EnableAlarmButton()->click();
    w->DealAlarmInfo(record(kTemperatureCapture, face(1, 1, 1)));
    EXPECT_EQ(nums.count(), 1);
}

TEST_F(ShowWidgetTest, UnknownEventCodeReportsUnchangedCounters)
{
    auto w = makeWidget(voiceConfig());
    w->DealAlarmInfo(record(kTemperatureCapture, face(1, 1, 1)));
    QSignalSpy nums(w.get(), &CBTShowWidget::signalNum);
    w->DealAlarmInfo(record(100999, face(1, 1, 1)));
    ASSERT_EQ(nums.count(), 1);
    EXPECT_EQ(nums.at(0), (QList<QVariant>{1, 0, 1, 1}));
    EXPECT_EQ(rightCards(*w), 1);
    EXPECT_EQ(w->BottomWidget()->CardCount(), 1);
}

// ---------------------------------------------------------------- lists

TEST_F(ShowWidgetTest, ListsKeepTheNewestTwentyAndTwentyOneCards)
{
    AlarmDisplayConfig config = voiceConfig();
    config.bSoundNormal = false;
    auto w = makeWidget(config);
    for (int i = 1; i <= 25; ++i)
        w->DealAlarmInfo(record(kTemperatureCapture, face(1, 0, 2), "E" + std::to_string(i)));

    EXPECT_EQ(w->AllNum(), 25);
    ASSERT_EQ(rightCards(*w), 20);
    EXPECT_EQ(newestCard<CAlarmUnit>(*w)->info().eventID, "E25");
    const auto* oldest = qobject_cast<CAlarmUnit*>(w->RightListLayout()->itemAt(1)->widget());
    ASSERT_NE(oldest, nullptr);
    EXPECT_EQ(oldest->info().eventID, "E6");
    EXPECT_EQ(w->findChildren<CAlarmUnit*>().size() - w->findChildren<BodyTemperature::CPopUpUnit*>().size(), 20)
        << "trimmed cards are deleted, not just taken out of the layout";

    ASSERT_EQ(w->BottomWidget()->CardCount(), 21);
    EXPECT_FALSE(w->RightNoData()->isVisibleTo(w.get()));
}

TEST_F(ShowWidgetTest, ReturningPersonAddsOneCardPerOpenViewOfItsCamera)
{
    auto w = makeWidget(voiceConfig());
    // Play windows exist once the live view has a model (the dialog does this).
    w->LiveView()->Init(Base::CSingleton<BodyTemperature::CAppRscManager>::Instance()->GetCameraModel());
    w->restorePlayingCameras({QStringLiteral("CAM1"), QStringLiteral("CAM2"), QStringLiteral("CAM1")});
    QSignalSpy nums(w.get(), &CBTShowWidget::signalNum);
    QSignalSpy voices(w.get(), &CBTShowWidget::signalVoiceRequested);

    w->DealAlarmInfo(record(kReturning, face(1, 1, 1), "R1", "CAM1"));
    EXPECT_EQ(rightCards(*w), 2);
    const auto* card = newestCard<CFrequenterUnit>(*w);
    ASSERT_NE(card, nullptr);
    EXPECT_EQ(card->info().kind, 5u);
    EXPECT_EQ(card->info().strSecondID, "TASK7");
    EXPECT_EQ(w->BottomWidget()->CardCount(), 2);
    ASSERT_EQ(nums.count(), 1);
    EXPECT_EQ(nums.at(0), (QList<QVariant>{2, 0, 0, 0}));
    EXPECT_EQ(voices.count(), 0);
    EXPECT_EQ(w->PopUpUnit(), nullptr);

    w->DealAlarmInfo(record(kReturning, face(1, 1, 1), "R2", "CAM9"));
    EXPECT_EQ(rightCards(*w), 2);
    ASSERT_EQ(nums.count(), 2);
    EXPECT_EQ(nums.at(1), (QList<QVariant>{2, 0, 0, 0}));
}

// ---------------------------------------------------------------- pop-up

TEST_F(ShowWidgetTest, AutoClosingPopUpKeepsItsContentUntilTheTimerFires)
{
    auto w = makeWidget(voiceConfig());
    w->DealAlarmInfo(record(kTemperatureCapture, face(1, 1, 2), "A"));
    ASSERT_NE(w->PopUpUnit(), nullptr);
    ASSERT_NE(w->PopTimer(), nullptr);
    EXPECT_TRUE(w->PopTimer()->isActive());
    EXPECT_EQ(w->PopTimer()->interval(), 5000);
    EXPECT_FALSE(w->IsPopIdle());

    w->DealAlarmInfo(record(kTemperatureCapture, face(1, 1, 2), "B"));
    EXPECT_EQ(w->PopUpUnit()->info().eventID, "A");
    EXPECT_EQ(rightCards(*w), 2) << "the list still gets every card";

    QSignalSpy fired(w->PopTimer(), &QTimer::timeout);
    w->PopTimer()->setInterval(10);
    ASSERT_TRUE(fired.wait(2000));
    EXPECT_FALSE(w->PopUpUnit()->isVisibleTo(w.get()));
    EXPECT_TRUE(w->IsPopIdle());
    EXPECT_FALSE(w->PopTimer()->isActive());

    w->DealAlarmInfo(record(kTemperatureCapture, face(0, 0, 1), "C"));
    EXPECT_EQ(w->PopUpUnit()->info().eventID, "C");
    EXPECT_EQ(w->PopUpUnit()->info().popType, 2u);
    EXPECT_TRUE(w->PopUpUnit()->isVisibleTo(w.get()));
}

TEST_F(ShowWidgetTest, PopUpThatNeverClosesByItselfTakesEveryNewRecord)
{
    struct Case {
        const char* name;
        bool autoClose;
        int duration;
    };
    for (const Case& c : {Case{"duration -1", true, -1}, Case{"auto-close off", false, 5}}) {
        SCOPED_TRACE(c.name);
        AlarmDisplayConfig config = voiceConfig();
        config.bPopAutoClose = c.autoClose;
        config.iPopDuration = c.duration;
        auto w = makeWidget(config);
        w->DealAlarmInfo(record(kTemperatureCapture, face(1, 1, 2), "A"));
        EXPECT_EQ(w->PopTimer(), nullptr);
        EXPECT_TRUE(w->IsPopIdle());
        w->DealAlarmInfo(record(kTemperatureCapture, face(1, 1, 2), "B"));
        ASSERT_NE(w->PopUpUnit(), nullptr);
        EXPECT_EQ(w->PopUpUnit()->info().eventID, "B");
        EXPECT_TRUE(w->PopUpUnit()->isVisibleTo(w.get()));
        ASSERT_TRUE(testsupport::waitUntil([] { return CVoicePlayer::IsIdle(); }));
    }
}

TEST_F(ShowWidgetTest, ClosingThePopUpFreesIt)
{
    auto w = makeWidget(voiceConfig());
    w->DealAlarmInfo(record(kTemperatureCapture, face(1, 1, 2), "A"));
    ASSERT_FALSE(w->IsPopIdle());
    w->PopUpUnit()->onClose();
    EXPECT_TRUE(w->IsPopIdle());
    w->DealAlarmInfo(record(kTemperatureCapture, face(1, 1, 2), "B"));
    EXPECT_EQ(w->PopUpUnit()->info().eventID, "B");
}

// ---------------------------------------------------------------- settings

TEST_F(ShowWidgetTest, EmptyVoicePathsAreReplacedByTheDefaultsAndSaved)
{
    struct Case {
        int language;
        const char* abnormal;
        const char* noMask;
    };
    const int saved = clientcommonlogical::CConfigMgr::Instance()->GetLanguage();
    for (const Case& c : {Case{1, "abnormal.wav", "no_mask.wav"}, Case{2, "abnormal_en.wav", "no_mask_en.wav"}}) {
        SCOPED_TRACE(c.language);
        clientcommonlogical::CConfigMgr::Instance()->SetLanguage(c.language);
        AlarmDisplayConfig config;
        config.iPopDuration = 9;
        auto w = makeWidget(config);
        AlarmDisplayConfig stored;
        ASSERT_TRUE(BodyTemperature::CBTConfigDB::Instance()->LoadAlarmDisplayConfig(stored));
        EXPECT_TRUE(stored.strAbnormalVoice.endsWith(QStringLiteral("/") + QString::fromLatin1(c.abnormal)));
        EXPECT_TRUE(stored.strNoMaskVoice.endsWith(QStringLiteral("/") + QString::fromLatin1(c.noMask)));
        EXPECT_EQ(stored.iPopDuration, 9);
        EXPECT_EQ(stored, w->Config());
    }
    clientcommonlogical::CConfigMgr::Instance()->SetLanguage(saved);

    // One path set: the others stay empty.
    AlarmDisplayConfig config;
    config.strNormalVoice = QStringLiteral("/mine.wav");
    auto w = makeWidget(config);
    EXPECT_TRUE(w->Config().strAbnormalVoice.isEmpty());
}

TEST_F(ShowWidgetTest, AlarmTypePageIsRecreatedAndItsSwitchesAreSaved)
{
    auto w = makeWidget(voiceConfig());
    w->show();
    auto* button = w->ToolButtonBar()->findChild<QToolButton*>(QStringLiteral("m_pAlarmTypeBtn"));
    ASSERT_NE(button, nullptr);
    button->click();
    QPointer<BodyTemperature::CTypeConfigPage> first = w->TypeConfigPage();
    ASSERT_FALSE(first.isNull());
    button->click();
    EXPECT_TRUE(first.isNull()) << "the previous page is deleted";
    BodyTemperature::CTypeConfigPage* page = w->TypeConfigPage();
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(page->parentWidget(), w->ToolButtonBar());
    EXPECT_TRUE(page->isVisible());
    EXPECT_EQ(page->size(), clientcommonlogical::CConfigMgr::Instance()->GetLanguage() == 1 ? QSize(190, 130)
                                                                                           : QSize(290, 150));

    BodyTemperature::TemperatureAlarm alarm;
    alarm.bFaceTemperatureCapture = false;
    emit page->signalCheckState(alarm);
    AlarmDisplayConfig stored;
    ASSERT_TRUE(BodyTemperature::CBTConfigDB::Instance()->LoadAlarmDisplayConfig(stored));
    EXPECT_FALSE(stored.bFaceTemperatureCapture);
    EXPECT_TRUE(stored.bFaceCapture);
    EXPECT_EQ(stored.strAbnormalVoice, QStringLiteral("/voice/abnormal.wav"));

    QSignalSpy nums(w.get(), &CBTShowWidget::signalNum);
    w->DealAlarmInfo(record(kTemperatureCapture, face(1, 1, 1)));
    EXPECT_EQ(nums.count(), 0);
}

// ---------------------------------------------------------------- panels

TEST_F(ShowWidgetTest, RetractButtonsToggleTheirListsAndNames)
{
    auto w = makeWidget(voiceConfig());
    w->show();
    testsupport::pump();
    QToolButton* bottom = w->BottomRetractButton();
    bottom->click();
    EXPECT_EQ(bottom->objectName(), QStringLiteral("m_pSpreadBottomBtn"));
    EXPECT_FALSE(w->BottomWidget()->isVisible());
    bottom->click();
    EXPECT_EQ(bottom->objectName(), QStringLiteral("m_pRetractBottomBtn"));
    EXPECT_TRUE(w->BottomWidget()->isVisible());

    QToolButton* right = w->RightRetractButton();
    const auto expectPlaced = [&](int offset) {
        testsupport::pump();
        w->OnLiveViewWidgetResized();
        EXPECT_EQ(right->x(), w->LiveViewFrame()->width() - offset);
        EXPECT_EQ(right->y(), (w->LiveViewFrame()->height() - 60) / 2);
    };
    expectPlaced(13);
    right->click();
    EXPECT_EQ(right->objectName(), QStringLiteral("m_pRightSpreadBtn"));
    EXPECT_FALSE(w->RightPanel()->isVisible());
    expectPlaced(23);
    right->click();
    EXPECT_EQ(right->objectName(), QStringLiteral("m_pRightRetractBtn"));
    EXPECT_TRUE(w->RightPanel()->isVisible());
    expectPlaced(13);
}

TEST_F(ShowWidgetTest, FullScreenDetachesTheRightPanelAndBringsItBack)
{
    auto w = makeWidget(voiceConfig());
    w->show();
    testsupport::pump();
    QWidget* panel = w->RightPanel();
    w->OnFullScreenChanged(true);
    EXPECT_TRUE(panel->isWindow());
    EXPECT_TRUE(panel->windowFlags() & Qt::FramelessWindowHint);
    EXPECT_TRUE(panel->windowFlags() & Qt::WindowStaysOnTopHint);
    EXPECT_TRUE(panel->testAttribute(Qt::WA_TranslucentBackground));
    EXPECT_EQ(panel->geometry(), QRect(1497, 0, 423, 654));
    EXPECT_TRUE(panel->isVisible());

    w->OnFullScreenChanged(false);
    EXPECT_FALSE(panel->isWindow());
    EXPECT_FALSE(panel->testAttribute(Qt::WA_TranslucentBackground));
    EXPECT_TRUE(panel->isVisible());
    EXPECT_EQ(panel->parentWidget(), w.get());
}

// ---------------------------------------------------------------- bad input

TEST_F(ShowWidgetTest, BrokenRecordsAreStillCountedAndListed)
{
    auto w = makeWidget(voiceConfig());
    QSignalSpy voices(w.get(), &CBTShowWidget::signalVoiceRequested);

    // A capture with no face at all: listed on the right, nothing to show below.
    publicdatacontroller::IntelAlarmEventInfo noFace = record(kTemperatureCapture, face(1, 1, 1));
    noFace.faceInfoList.clear();
    w->DealAlarmInfo(noFace);
    EXPECT_EQ(w->AllNum(), 1);
    EXPECT_EQ(rightCards(*w), 1);
    EXPECT_EQ(w->BottomWidget()->CardCount(), 0);
    EXPECT_EQ(voices.count(), 0);
    EXPECT_EQ(newestCard<CAlarmUnit>(*w)->info().alarmType, 0u);

    // Pictures that do not decode: classified and shown like any other.
    protocol::IntelAlarmFaceInfo garbled = face(1, 0, 2, false);
    garbled.bkPic = QByteArray("not a picture");
    garbled.SubPic = QByteArray(7, '\xff');
    w->DealAlarmInfo(record(kTemperatureCapture, garbled, "G"));
    w->DealAlarmInfo(record(kComparison, garbled, "G2"));
    EXPECT_EQ(w->AllNum(), 3);
    EXPECT_EQ(w->NormalNum(), 2);
    EXPECT_EQ(w->BottomWidget()->CardCount(), 2);

    // A face without pictures is counted but adds no capture card.
    w->DealAlarmInfo(record(kTemperatureCapture, face(1, 0, 2, false)));
    EXPECT_EQ(w->AllNum(), 4);
    EXPECT_EQ(w->BottomWidget()->CardCount(), 2);
}

} // namespace
