// The dashboard page as the host builds it: a burst from the emulator, folding the left
// panel, the right-hand list, scroll bars and the statistics title.
#include <QLabel>
#include <QLayout>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolButton>
#include <memory>
#include <string>
#include <gtest/gtest.h>

#include "AlarmListener.h"
#include "Base/CSingleton.h"
#include "CAppRscManager.h"
#include "CameraModel.h"
#include "DashboardRecords.h"
#include "alarms/CAlarmClassifier.h"
#include "clientcommonlogical/CConfigMgr.h"
#include "commlayer/CAlarmSubscription.h"
#include "support/DeviceSim.h"
#include "ui/BTShowTitle.h"
#include "ui/CBodyTemperatureDlg.h"
#include "ui/CBottomWidget.h"
#include "ui/ShowCard/CAlarmUnit.h"
#include "ui/ShowCard/CRightUnitBase.h"

using namespace BodyTemperature;
using namespace dashtest;
using testsupport::waitUntil;

namespace {

class DashboardDlgTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        storeSettings(voiceConfig());
        m_dlg = std::make_unique<CBodyTemperatureDlg>();
    }
    VoiceLog m_voices;  // outlives the page
    std::unique_ptr<CBodyTemperatureDlg> m_dlg;
};

TEST_F(DashboardDlgTest, ShrinkButtonStaysBesideTheLeftPanel)
{
    m_dlg->show();
    testsupport::pump();
    auto* button = testsupport::child<QToolButton>(m_dlg.get(), "m_pShrinkPushButtonrTol");
    const auto* left = testsupport::child<QFrame>(m_dlg.get(), "m_pLeftFrame");
    const auto expectAt = [&](const char* name, bool folded) {
        SCOPED_TRACE(name);
        EXPECT_EQ(button->objectName(), QString::fromLatin1(name));
        EXPECT_EQ(left->isVisible(), !folded);
        const int x = folded ? left->x() + 12 : left->width() + 3;
        EXPECT_EQ(button->pos(), QPoint(x, static_cast<int>(static_cast<float>(m_dlg->height()) * 0.48333332f)));
    };
    expectAt("m_pShrinkPushButtonrTol", false);

    button->click();
    expectAt("m_pShrinkPushButtonlTor", true);
    m_dlg->resize(1500, 777);
    testsupport::pump();
    expectAt("m_pShrinkPushButtonlTor", true);

    button->click();
    expectAt("m_pShrinkPushButtonrTol", false);
    m_dlg->resize(1700, 901);
    testsupport::pump();
    expectAt("m_pShrinkPushButtonrTol", false);
}

// A burst of 3000 events from the emulator through the host kit into the page.
TEST_F(DashboardDlgTest, EveryEventOfABurstIsCountedAndTheListsEndWithTheNewest)
{
    testsupport::DeviceSim sim({QStringLiteral("--scene"), QStringLiteral("320x180")});
    ASSERT_TRUE(sim.start());

    m_dlg->show();
    m_dlg->SetAlarmListening(true);
    // The counters as the classification rules give them, reckoned apart.
    int passed = 0, normal = 0, noMask = 0, abnormal = 0;
    std::string lastEvent;
    const AlarmDisplayConfig config = voiceConfig();
    QObject::connect(m_dlg->findChild<AlarmListener*>(), &AlarmListener::signalNewAlarmComing, m_dlg.get(),
        [&](const publicdatacontroller::IntelAlarmEventInfo& r) {
            const AlarmDecision d = CAlarmClassifier::Classify(r, config);
            ++passed;
            normal += d.normalDelta;
            noMask += d.noMaskDelta;
            abnormal += d.abnormalDelta;
            lastEvent = r.eventID;
        });

    commlayer::CAlarmSubscription sub(sim.device(), 0);
    sub.Start();
    ASSERT_TRUE(testsupport::waitUntil([&] { return sim.control("GET", "/control/stats").contains("\"clients\":1"); }));
    ASSERT_TRUE(sim.control("POST", "/control/burst", R"({"count":3000,"eventCode":100119})").contains("true"));
    ASSERT_TRUE(testsupport::waitUntil([&] { return sub.Stats().events >= 3000; }, 60000));
    const auto shown = [&](const char* name) { return testsupport::child<QLabel>(m_dlg.get(), name)->text().toInt(); };
    // On a loaded machine the page takes events in long after the subscription read
    // them: wait for nearly all (the listener drops repeats), then for the label.
    EXPECT_TRUE(testsupport::waitUntil([&] { return shown("labelAllNum") == passed && passed > 2900; }, 30000))
        << passed << " events reached the page";
    sub.Stop();
    EXPECT_TRUE(testsupport::waitUntil([&] { return shown("labelAllNum") == passed; }));
    EXPECT_EQ(std::make_tuple(shown("labelNormal"), shown("labelNoMask"), shown("labelAbnormal")),
        std::make_tuple(normal, noMask, abnormal));

    QLayout* list = testsupport::child<QWidget>(m_dlg.get(), "m_pRightListWidget")->layout();
    ASSERT_TRUE(testsupport::waitUntil([&] {
        const auto* newest = qobject_cast<CAlarmUnit*>(list->itemAt(list->count() - 1)->widget());
        return newest != nullptr && newest->info().eventID == lastEvent;
    }));
    EXPECT_EQ(list->count(), 21);  // the spacer and 20 cards
    EXPECT_EQ(m_dlg->findChild<CBottomWidget*>()->layout()->count(), 22);  // the spacer and 21 cards
}

// On the full page every card of the right-hand list has its own fixed size
// and lies wholly inside the list, whose horizontal scroll bar is off.
TEST_F(DashboardDlgTest, CardsOfTheRightListAreWhollyVisible)
{
    m_dlg->resize(1911, 1080);
    m_dlg->show();
    testsupport::pump();
    m_dlg->RestorePlayingCameras({QStringLiteral("CAM1")});
    m_dlg->onNewAlarmComing(record(kTemperatureCapture, face(1, 0, 2), "T"));
    m_dlg->onNewAlarmComing(record(kComparison, face(1, 1, 1), "C"));
    publicdatacontroller::IntelAlarmEventInfo noFace = record(kCapture, face(1, 0, 2), "N");
    noFace.faceInfoList.clear();
    m_dlg->onNewAlarmComing(noFace);
    m_dlg->onNewAlarmComing(record(kReturning, face(1, 0, 2), "R"));

    auto* area = m_dlg->findChild<QScrollArea*>(QStringLiteral("m_pRightScrollArea"));
    ASSERT_NE(area, nullptr);
    QWidget* list = area->widget();
    const auto cardsOf = [list] {
        return list->findChildren<BodyTemperature::CRightUnitBase*>(QString(), Qt::FindDirectChildrenOnly);
    };
    // On a busy machine the cards of a burst are built a few event-loop turns later.
    ASSERT_TRUE(testsupport::waitUntil([&] { return cardsOf().size() == 4; })) << cardsOf().size();
    testsupport::pump();
    const QList<BodyTemperature::CRightUnitBase*> cards = cardsOf();
    EXPECT_EQ(area->horizontalScrollBar()->maximum(), 0);
    for (const BodyTemperature::CRightUnitBase* card : cards) {
        SCOPED_TRACE(qPrintable(card->objectName()));
        EXPECT_EQ(card->size(), QSize(380, 222));
        const QRect inViewport(card->mapTo(area->viewport(), QPoint(0, 0)), card->size());
        EXPECT_GE(inViewport.left(), 0);
        EXPECT_LE(inViewport.right(), area->viewport()->rect().right());
    }
}

TEST(DashboardDlgStyle, ScrollBarsTakeTheModuleLookUnderAStyledHost)
{
    // The host window carries a sheet of its own, as the real host does.
    for (const bool hostSheet : {false, true}) {
        SCOPED_TRACE(hostSheet ? "host with a sheet" : "host without a sheet");
        QWidget host;
        if (hostSheet)
            host.setStyleSheet(QStringLiteral("QLabel#hostOnly { color: red; }"));
        auto* dlg = new CBodyTemperatureDlg(&host);
        const auto bars = dlg->findChildren<QScrollBar*>();
        ASSERT_FALSE(bars.isEmpty());
        for (QScrollBar* bar : bars) {
            const QSize hint = bar->sizeHint();
            EXPECT_EQ(bar->orientation() == Qt::Horizontal ? hint.height() : hint.width(), 6)
                << qPrintable(bar->parentWidget()->parentWidget()->objectName());
        }
    }
}

QString text(const QWidget& parent, const char* name)
{
    const auto* label = parent.findChild<QLabel*>(QString::fromLatin1(name));
    return label != nullptr ? label->text() : QStringLiteral("<missing>");
}

TEST(BTShowTitle, GroupsCaptionsToolTipsAndNumbers)
{
    BTShowTitle title;
    title.show();
    ASSERT_NE(title.findChild<QWidget*>(QStringLiteral("widgetTopBtns")), nullptr);
    const struct { const char *group, *caption, *key, *number, *value; } groups[] = {
        {"btnAllNum", "m_pAll", "TheTotalNumberOfyDridGtt", "labelAllNum", "12"},
        {"btnAbnormal", "m_pAbnormal", "TemperatureAnomaliesWaPooFNo", "labelAbnormal", "40"},
        {"btnNoMask", "m_pMask", "NoGauzeMask", "labelNoMask", "3"},
        {"btnNormal", "m_pNormal", "TemperatureIsNormalLvoFXpTP", "labelNormal", "7"},
    };
    for (const auto& g : groups)
        EXPECT_EQ(text(title, g.number), QStringLiteral("0")) << g.number;
    title.SetNum(12, 7, 3, 40);  // all, normal, no mask, abnormal

    int previousX = -1;
    for (const auto& g : groups) {
        SCOPED_TRACE(g.group);
        const auto* group = title.findChild<QWidget*>(QString::fromLatin1(g.group));
        ASSERT_NE(group, nullptr);
        EXPECT_EQ(group->toolTip(), QString::fromLatin1(g.key));
        EXPECT_GT(group->x(), previousX) << "display order: total, abnormal, no mask, normal";
        previousX = group->x();
        EXPECT_EQ(text(*group, g.caption), QString::fromLatin1(g.key) + QStringLiteral(":"));
        EXPECT_EQ(text(*group, g.number), QString::fromLatin1(g.value));
    }
}

} // namespace

