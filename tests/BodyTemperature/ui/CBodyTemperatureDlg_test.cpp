// The dashboard page as the host builds it: form, tree proxy, folding the
// left panel, the statistics title fed from the host's alarm source, and the
// saved-state forwards.
#include <QGuiApplication>
#include <QHeaderView>
#include <QScreen>
#include <QLabel>
#include <QPushButton>
#include <QStandardItemModel>
#include <QToolButton>
#include <memory>
#include <gtest/gtest.h>

#include "AlarmListener.h"
#include "Base/CSingleton.h"
#include "CAppRscManager.h"
#include "CameraModel.h"
#include "DashboardRecords.h"
#include "VantorGUIToolkit/CSecondarySortFilterModel.h"
#include "publicdatacontroller/AlarmTransfer.h"
#include "ui/BTShowTitle.h"
#include "ui/CBTShowWidget.h"
#include "ui/CBTViewTree.h"
#include "ui/CBodyTemperatureDlg.h"
#include "ui/CVoicePlayer.h"

using BodyTemperature::CBodyTemperatureDlg;
using BodyTemperature::CVoicePlayer;
using namespace dashtest;

namespace {

class DashboardDlgTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        CVoicePlayer::SetSink([](const std::string&) { return true; });
        storeSettings(voiceConfig());
        m_dlg = std::make_unique<CBodyTemperatureDlg>();
    }
    void TearDown() override
    {
        m_dlg.reset();
        ASSERT_TRUE(testsupport::waitUntil([] { return CVoicePlayer::IsIdle(); }));
        CVoicePlayer::SetSink({});
    }
    QString label(const char* name) const
    {
        const auto* l = m_dlg->ShowTitle()->findChild<QLabel*>(QString::fromLatin1(name));
        return l != nullptr ? l->text() : QString();
    }

    std::unique_ptr<CBodyTemperatureDlg> m_dlg;
};

TEST_F(DashboardDlgTest, FormAndTreeProxy)
{
    EXPECT_EQ(m_dlg->objectName(), QStringLiteral("BodyTemperatureDlg"));
    EXPECT_EQ(m_dlg->size(), QSize(1911, 1080));
    EXPECT_EQ(m_dlg->LeftFrame()->objectName(), QStringLiteral("m_pLeftFrame"));
    EXPECT_EQ(m_dlg->LeftFrame()->maximumWidth(), 278);
    EXPECT_EQ(m_dlg->LeftFrame()->minimumWidth(), 278);
    EXPECT_EQ(m_dlg->ShowWidget()->objectName(), QStringLiteral("AIShowAddInWidget"));
    EXPECT_EQ(m_dlg->CameraTree()->objectName(), QStringLiteral("m_pCameraTree"));
    EXPECT_TRUE(m_dlg->CameraTree()->isHeaderHidden());
    for (const char* name : {"pushButton_2", "pushButton_3"}) {
        const auto* b = m_dlg->findChild<QPushButton*>(QString::fromLatin1(name));
        ASSERT_NE(b, nullptr) << name;
        EXPECT_TRUE(b->isHidden()) << name;
    }
    EXPECT_TRUE(m_dlg->acceptDrops());
    EXPECT_EQ(m_dlg->ShrinkButton()->size(), QSize(11, 115));

    auto* proxy = m_dlg->TreeProxy();
    EXPECT_EQ(m_dlg->CameraTree()->model(), proxy);
    EXPECT_EQ(proxy->filterRole(), 767);
    EXPECT_TRUE(proxy->dynamicSortFilter());
    EXPECT_EQ(proxy->sourceModel(), Base::CSingleton<BodyTemperature::CAppRscManager>::Instance()->GetCameraModel());
    for (const char* value : {"0", "1", "2"})
        EXPECT_TRUE(proxy->filterRegExp().exactMatch(QString::fromLatin1(value))) << value;
    for (const char* value : {"3", "12", ""})
        EXPECT_FALSE(proxy->filterRegExp().exactMatch(QString::fromLatin1(value))) << value;
}

TEST_F(DashboardDlgTest, ShrinkButtonStaysBesideTheLeftPanel)
{
    m_dlg->show();
    testsupport::pump();
    QToolButton* button = m_dlg->ShrinkButton();
    const auto expectAt = [&](const char* name, bool folded) {
        SCOPED_TRACE(name);
        EXPECT_EQ(button->objectName(), QString::fromLatin1(name));
        EXPECT_EQ(m_dlg->IsLeftFolded(), folded);
        EXPECT_EQ(m_dlg->LeftFrame()->isVisible(), !folded);
        const int x = folded ? m_dlg->LeftFrame()->x() + 12 : m_dlg->LeftFrame()->width() + 3;
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

TEST_F(DashboardDlgTest, TitleIsSizedFromTheScreen)
{
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    BodyTemperature::BTShowTitle* title = m_dlg->ShowTitle();
    EXPECT_EQ(title->parentWidget(), m_dlg.get());
    EXPECT_EQ(title->geometry(), QRect(screen.width() * 565 / 1920, screen.height() * 23 / 1080,
                                     screen.width() * 790 / 1920, screen.height() * 36 / 1080));
}

TEST_F(DashboardDlgTest, AlarmsFromTheHostReachTheTitle)
{
    m_dlg->SetAlarmListening(true);
    ASSERT_TRUE(m_dlg->alarmListener()->isListening());
    auto* transfer = Base::CSingleton<publicdatacontroller::AlarmTransfer>::Instance();

    publicdatacontroller::IntelAlarmEventInfo abnormalNoMask = record(kTemperatureCapture, face(1, 1, 1), "A");
    abnormalNoMask.faceInfoList.front().facePicID = 101;
    transfer->publishAlarm(std::make_shared<publicdatacontroller::CIntelAlarmObject>(abnormalNoMask));
    ASSERT_TRUE(testsupport::waitUntil([&] { return label("labelAllNum") == QStringLiteral("1"); }));
    EXPECT_EQ(label("labelAbnormal"), QStringLiteral("1"));
    EXPECT_EQ(label("labelNoMask"), QStringLiteral("1"));
    EXPECT_EQ(label("labelNormal"), QStringLiteral("0"));

    // A returning person raises only the total.
    m_dlg->RestorePlayingCameras({QStringLiteral("CAM1")});
    publicdatacontroller::IntelAlarmEventInfo returning = record(kReturning, face(1, 1, 1), "R");
    returning.faceInfo.facePicID = 102;
    transfer->publishAlarm(std::make_shared<publicdatacontroller::CIntelAlarmObject>(returning));
    ASSERT_TRUE(testsupport::waitUntil([&] { return label("labelAllNum") == QStringLiteral("2"); }));
    EXPECT_EQ(label("labelAbnormal"), QStringLiteral("1"));
    EXPECT_EQ(label("labelNoMask"), QStringLiteral("1"));

    // Leaving the page stops the intake.
    m_dlg->SetAlarmListening(false);
    abnormalNoMask.faceInfoList.front().facePicID = 103;
    transfer->publishAlarm(std::make_shared<publicdatacontroller::CIntelAlarmObject>(abnormalNoMask));
    testsupport::pump(50);
    EXPECT_EQ(label("labelAllNum"), QStringLiteral("2"));
}

TEST_F(DashboardDlgTest, SavedStateForwardsReachTheLiveView)
{
    m_dlg->RestorePlayingCameras({QStringLiteral("CAM1"), QString(), QStringLiteral("CAM3")});
    EXPECT_EQ(m_dlg->GetPlayingCameraIds(), (QList<QByteArray>{"CAM1", "CAM3"}));
    m_dlg->StopAllLiveView();
    EXPECT_TRUE(m_dlg->GetPlayingCameraIds().isEmpty());
}

TEST_F(DashboardDlgTest, DoubleClickOpensOnlyAvailableCameras)
{
    auto* model = qobject_cast<QStandardItemModel*>(m_dlg->TreeProxy()->sourceModel());
    if (model == nullptr)
        GTEST_SKIP() << "the camera model is not an item model this test can fill";
    auto* area = new QStandardItem(QStringLiteral("Lobby"));
    area->setData(1, 657);
    area->setData(0, 767);
    auto* online = new QStandardItem(QStringLiteral("Door"));
    online->setData(2, 657);
    online->setData(QStringLiteral("CAM-ON"), 662);
    online->setData(1, 767);
    auto* offline = new QStandardItem(QStringLiteral("Gate"));
    offline->setData(2, 657);
    offline->setData(QStringLiteral("CAM-OFF"), 662);
    offline->setData(1, 767);
    offline->setEnabled(false);
    auto* hidden = new QStandardItem(QStringLiteral("Filtered"));
    hidden->setData(2, 657);
    hidden->setData(3, 767);
    area->appendRow({online});
    area->appendRow({offline});
    area->appendRow({hidden});
    model->appendRow(area);

    const QModelIndex proxyArea = m_dlg->TreeProxy()->mapFromSource(area->index());
    ASSERT_TRUE(proxyArea.isValid());
    EXPECT_EQ(m_dlg->TreeProxy()->rowCount(proxyArea), 2) << "filter value 3 is not shown";

    m_dlg->OnCameraTreeDoubleClicked(m_dlg->TreeProxy()->mapFromSource(offline->index()));
    EXPECT_TRUE(m_dlg->GetPlayingCameraIds().isEmpty());
    m_dlg->OnCameraTreeDoubleClicked(proxyArea);
    EXPECT_TRUE(m_dlg->GetPlayingCameraIds().isEmpty());
    m_dlg->OnCameraTreeDoubleClicked(m_dlg->TreeProxy()->mapFromSource(online->index()));
    EXPECT_EQ(m_dlg->GetPlayingCameraIds(), (QList<QByteArray>{"CAM-ON"}));

    m_dlg->onUpdateGroupTreeSelectedCamera("CAM-ON");
    EXPECT_EQ(m_dlg->TreeProxy()->mapToSource(m_dlg->CameraTree()->currentIndex()), online->index());

    model->removeRow(area->row());
}

} // namespace
