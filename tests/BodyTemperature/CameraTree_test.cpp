// The camera model and the camera tree over the host's real logic model,
// built from a device list in the host configuration.
#include <QMimeData>
#include <QSignalSpy>
#include <QStandardItem>
#include <QTest>
#include <gtest/gtest.h>

#include "Base/CSingleton.h"
#include "CAppRscManager.h"
#include "CameraModel.h"
#include "clientcommonlogical/CConfigMgr.h"
#include "commlayer/CDeviceStateNotifier.h"
#include "playwindow/CLiveViewEvent.h"
#include "support/TestSupport.h"
#include "ui/CBTViewTree.h"

using namespace BodyTemperature;
using UiDataController::RoleNodeType;

namespace {

const QString kOffline = QStringLiteral(":/publicIcon/Images/public/PublicIcon/CameraOffline.svg");
const QString kPlaying = QStringLiteral(":/publicIcon/Images/public/PublicIcon/CameraPlaying.svg");
const QString kIdle = QStringLiteral(":/publicIcon/Images/public/PublicIcon/Camera.svg");

class CameraTreeTest : public testsupport::TempDirTest {
protected:
    // Two areas of one device whose channels all have a signal.
    void SetUp() override
    {
        TempDirTest::SetUp();
        clientcommonlogical::DeviceConfig dev;
        dev.id = "DEV1";
        dev.address = "127.0.0.1";
        dev.port = 1;
        dev.channels = {{1, "DEV1-CH1", "Gate", "Lobby", ""}, {2, "DEV1-CH2", "Hall", "Lobby", ""},
            {3, "DEV1-CH3", "Yard", "Outside", ""}};
        clientcommonlogical::CConfigMgr::Instance()->SetDevices({dev});
        auto* notifier = commlayer::CDeviceStateNotifier::Instance();
        notifier->SetDeviceOnline(QStringLiteral("DEV1"), true);
        for (int ch = 1; ch <= 3; ++ch)
            notifier->SetChannelOnline(QStringLiteral("DEV1"), ch, true);
        auto* rsc = Base::CSingleton<CAppRscManager>::Instance();
        rsc->GetGroupManager()->Reload();
        model = rsc->GetCameraModel();
        model->Reload();
    }
    QModelIndex Camera(const char* id) const { return model->GetElementIndexByElementID(id); }
    QString IconOf(const char* id) const { return Camera(id).data(CameraModel::IconPathRole).toString(); }
    CameraModel* model = nullptr;
};

TEST_F(CameraTreeTest, LaterRowsCarryTheGroupTooltipOnlyTheFirstIsDecorated)
{
    // Cameras present at construction: "Preview"; cameras that arrive later
    // (here: the reload in SetUp) carry the group text.
    CameraModel fresh(nullptr, true);
    const QModelIndex early = fresh.GetElementIndexByElementID("DEV1-CH1");
    EXPECT_EQ(early.data(UiDataController::RoleRightPixmapTip).toString(), QStringLiteral("Preview"));
    EXPECT_TRUE(early.data(UiDataController::RoleRightPixmap).isValid());
    EXPECT_EQ(Camera("DEV1-CH1").data(UiDataController::RoleRightPixmapTip).toString(), QStringLiteral("ViewAllCamerasInGroup"));
    // Two camera rows inserted at once: only the first is decorated, with the group text;
    // a model without preview buttons decorates nothing.
    CameraModel plain(nullptr, false);
    EXPECT_FALSE(plain.GetElementIndexByElementID("DEV1-CH1").data(UiDataController::RoleRightPixmapTip).isValid());
    for (CameraModel* m : {model, &plain}) {
        QList<QStandardItem*> rows{new QStandardItem(QStringLiteral("late 0")), new QStandardItem(QStringLiteral("late 1"))};
        for (QStandardItem* it : rows)
            it->setData(2, RoleNodeType);
        m->item(0)->insertRows(m->item(0)->rowCount(), rows);
        EXPECT_EQ(rows[0]->data(UiDataController::RoleRightPixmapTip).toString(),
            m == model ? QStringLiteral("ViewAllCamerasInGroup") : QString());
        EXPECT_EQ(rows[0]->data(UiDataController::RoleRightPixmap).isValid(), m == model);
        EXPECT_FALSE(rows[1]->data(UiDataController::RoleRightPixmap).isValid());
    }
}

TEST_F(CameraTreeTest, StateIconFollowsAvailabilityAndPlaying)
{
    // Through the host's notifier, as the alarm intake reports availability.
    auto* notifier = commlayer::CDeviceStateNotifier::Instance();
    enum { Idle, Play, Keep };
    const struct {
        bool device, channel;
        int playing;
        const QString& icon;
    } rows[] = {
        {true, true, Idle, kIdle},
        {true, true, Play, kPlaying},
        {false, true, Keep, kOffline},  // offline but playing: offline wins
        {true, true, Keep, kPlaying},   // back online: still playing
        {true, false, Keep, kOffline},
        {true, true, Keep, kPlaying},
        {false, false, Idle, kOffline},
        {true, true, Keep, kIdle},
    };
    for (const auto& r : rows) {
        notifier->SetDeviceOnline(QStringLiteral("DEV1"), r.device);
        notifier->SetChannelOnline(QStringLiteral("DEV1"), 2, r.channel);
        if (r.playing != Keep)
            model->UpdateCameraIcon(Camera("DEV1-CH2"), r.playing == Play);
        SCOPED_TRACE(testing::Message() << r.device << r.channel << r.playing);
        EXPECT_EQ(IconOf("DEV1-CH2"), r.icon);
        EXPECT_EQ(dynamic_cast<vantordesk::ICamera*>(model->GetElementByID("DEV1-CH2"))->IsChannelOnline(), r.channel);
        EXPECT_EQ(IconOf("DEV1-CH1"), r.device ? kIdle : kOffline);  // the channel's state is its own
    }
}

TEST_F(CameraTreeTest, LiveViewEventsSetThePlayingIcon)
{
    CBTViewTree tree;
    const struct {
        int type;
        const QString& expected;
    } steps[] = {{0, kPlaying}, {1, kIdle}, {6, kPlaying}, {3, kPlaying} /* other kinds change nothing */, {1, kIdle}};
    for (const auto& s : steps) {
        tree.UpdateCameraState(CLiveViewEvent(s.type, "DEV1-CH1"));
        EXPECT_EQ(IconOf("DEV1-CH1"), s.expected) << s.type;
    }
    tree.UpdateCameraState(CLiveViewEvent(0, "unknown"));  // ignored, no crash
}

TEST_F(CameraTreeTest, OnlyThePlayIconOfACameraRowStartsLiveView)
{
    CBTViewTree tree;
    tree.setModel(model);
    tree.resize(278, 400);
    tree.expandAll();
    tree.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&tree));
    QSignalSpy spy(&tree, &CBTViewTree::signalStartLiveView);
    const QRect row = tree.visualRect(Camera("DEV1-CH1"));
    const QPoint icon(row.right() - 14, row.center().y());
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::NoModifier, row.topLeft() + QPoint(20, row.height() / 2));
    EXPECT_EQ(spy.count(), 0);
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::NoModifier, icon);
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(spy.at(0).at(0).value<QModelIndex>(), Camera("DEV1-CH1"));
    // The same spot on an area row starts nothing.
    const QRect areaRow = tree.visualRect(model->index(0, 0));
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(row.right() - 14, areaRow.center().y()));
    EXPECT_EQ(spy.count(), 1);
}

TEST_F(CameraTreeTest, DragCarriesGroupAndCamera)
{
    CBTViewTree tree;
    CBTViewTree::DragData d;
    ASSERT_TRUE(tree.DragDataOf(Camera("DEV1-CH3"), d));
    EXPECT_EQ(d.cameraGuid, QStringLiteral("DEV1-CH3"));
    EXPECT_EQ(d.groupGuid, model->index(1, 0).data(UiDataController::RoleGroupID).toString());
    EXPECT_EQ(d.pixmap, QStringLiteral(":/public/btn/Public/Camera.svg"));

    ASSERT_TRUE(tree.DragDataOf(model->index(0, 0), d));
    EXPECT_FALSE(d.groupGuid.isEmpty());
    EXPECT_TRUE(d.cameraGuid.isEmpty());
    EXPECT_EQ(d.pixmap, QStringLiteral(":/public/btn/Public/Group.svg"));

    // A row of no known type still drags, carrying nothing.
    QStandardItemModel other;
    other.appendRow(new QStandardItem(QStringLiteral("x")));
    ASSERT_TRUE(tree.DragDataOf(other.index(0, 0), d));
    EXPECT_TRUE(d.groupGuid.isEmpty() && d.cameraGuid.isEmpty());

    // A camera row the logic model does not know starts no drag.
    auto* ghost = new QStandardItem(QStringLiteral("ghost"));
    ghost->setData(2, RoleNodeType);
    ghost->setData(QStringLiteral("GHOST"), UiDataController::RoleCameraID);
    other.appendRow(ghost);
    EXPECT_FALSE(tree.DragDataOf(other.index(1, 0), d));

    std::unique_ptr<QMimeData> mime(CBTViewTree::CreateMimeData({QStringLiteral("g"), QStringLiteral("c"), QString()}));
    EXPECT_EQ(mime->property("GroupGUID").toString(), QStringLiteral("g"));
    EXPECT_EQ(mime->property("CameraGUID").toString(), QStringLiteral("c"));
}

} // namespace
