// The camera tree and the live-view area with real play windows over the host's
// logic model; cameras stream from loopback servers.
#include <QDropEvent>
#include <QLayout>
#include <QMimeData>
#include <QPushButton>
#include <QSignalSpy>
#include <QStandardItem>
#include <QStandardItemModel>
#include <QTest>
#include <QToolButton>
#include <algorithm>
#include <gtest/gtest.h>

#include "Base/CSingleton.h"
#include "CAppRscManager.h"
#include "CameraModel.h"
#include "VantorGUIToolkit/CInformationDlg.h"
#include "VantorGUIToolkit/CSecondarySortFilterModel.h"
#include "aiguitoolkit/CCutNumFrame.h"
#include "aiguitoolkit/CFullScreenWidget.h"
#include "aiguitoolkit/CWidgetLayoutMgr.h"
#include "clientcommonlogical/CConfigMgr.h"
#include "commlayer/CDeviceStateNotifier.h"
#include "playwindow/CLiveViewEvent.h"
#include "playwindow/CStreamDecoder.h"
#include "playwindow/CStreamPlayWindowWithTask.h"
#include "support/LoopbackStream.h"
#include "support/TestSupport.h"
#include "ui/BTShowLiveView.h"
#include "ui/CBTViewTree.h"
#include "ui/CBodyTemperatureDlg.h"
#include "ui/CSelectBoder.h"

using namespace BodyTemperature;
using UiDataController::RoleNodeType;

namespace {

// The play windows of a live view, in their order.
QList<CStreamPlayWindowWithTask*> PlayWindowsOf(const QWidget& view)
{
    QList<CStreamPlayWindowWithTask*> windows =
        view.findChildren<CStreamPlayWindowWithTask*>(QStringLiteral("m_pStreamPlayWnd"));
    std::sort(windows.begin(), windows.end(),
        [](const CStreamPlayWindowWithTask* a, const CStreamPlayWindowWithTask* b) { return a->GetIndex() < b->GetIndex(); });
    return windows;
}

const QString kPlaying = QStringLiteral(":/publicIcon/Images/public/PublicIcon/CameraPlaying.svg");
const QString kIdle = QStringLiteral(":/publicIcon/Images/public/PublicIcon/Camera.svg");
const QString kOffline = QStringLiteral(":/publicIcon/Images/public/PublicIcon/CameraOffline.svg");

class LiveViewTest : public testsupport::TempDirTest {
protected:
    void SetUp() override
    {
        TempDirTest::SetUp();
        // CAM1 streams; the others point at a port that refuses (they retry quietly).
        const std::string refused = QStringLiteral("http://127.0.0.1:%1/x").arg(testsupport::FreePort()).toStdString();
        clientcommonlogical::DeviceConfig dev;
        dev.id = "DEV";
        dev.address = "127.0.0.1";
        dev.port = testsupport::FreePort();
        dev.channels = {{1, "CAM1", "One", "Lobby", server.url.toStdString()}, {2, "CAM2", "Two", "Lobby", refused},
            {3, "CAM3", "Three", "Lobby", refused}, {4, "CAM4", "Four", "Yard", refused}, {5, "CAM5", "Five", "Yard", refused}};
        clientcommonlogical::CConfigMgr::Instance()->SetDevices({dev});
        clientcommonlogical::CConfigMgr::Instance()->SetLanguage(2);
        auto* notifier = commlayer::CDeviceStateNotifier::Instance();
        notifier->SetDeviceOnline(QStringLiteral("DEV"), true);
        for (int ch = 1; ch <= 5; ++ch)
            notifier->SetChannelOnline(QStringLiteral("DEV"), ch, true);
        auto* rsc = Base::CSingleton<CAppRscManager>::Instance();
        rsc->Init();
        rsc->GetGroupManager()->Reload();
        model = rsc->GetCameraModel();
        model->Reload();
    }
    void TearDown() override
    {
        view.reset();
        tree.reset();
        EXPECT_EQ(playwindow::CStreamDecoder::LiveDecoders(), 0);
        TempDirTest::TearDown();
    }
    void Build(int language)
    {
        clientcommonlogical::CConfigMgr::Instance()->SetLanguage(language);
        tree = std::make_unique<CBTViewTree>();
        tree->setModel(model);
        view = std::make_unique<BTShowLiveView>();
        view->resize(855, 597);
        view->SetCameraTree(tree.get());
        view->Init(model);
        view->show();
        testsupport::pump(10);
        // Taken now: in full screen the windows' container leaves the view.
        windows = PlayWindowsOf(*view);
        fullScreen = view->findChild<aiguitoolkit::CFullScreenWidget*>();
    }
    CStreamPlayWindowWithTask* Window(int i) const { return windows.at(i); }
    CStreamPlayWindowWithTask* Selected() const
    {
        for (CStreamPlayWindowWithTask* w : windows)
            if (w->IsSelected())
                return w;
        return nullptr;
    }
    aiguitoolkit::CWidgetLayoutMgr* LayoutMgr() const { return view->findChild<aiguitoolkit::CWidgetLayoutMgr*>(); }
    aiguitoolkit::CCutNumFrame* CutNumFrame() const
    {
        return view->findChild<aiguitoolkit::CCutNumFrame*>(QStringLiteral("m_pSelectCutNum"));
    }
    // What a play window hands on when a drag from the tree is dropped on it.
    void Drop(int window, const QVariant& group, const QVariant& camera)
    {
        QMimeData mime;
        mime.setProperty("GroupGUID", group);  // an invalid value sets nothing
        mime.setProperty("CameraGUID", camera);
        QDropEvent ev(QPointF(10, 10), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        emit Window(window)->SignalDrop(&ev);
    }
    QString IconOf(const char* id) const { return model->GetElementIndexByElementID(id).data(CameraModel::IconPathRole).toString(); }
    testsupport::PartServer server{{testsupport::makeJpeg(320, 180)}};
    CameraModel* model = nullptr;
    std::unique_ptr<CBTViewTree> tree;
    std::unique_ptr<BTShowLiveView> view;
    QList<CStreamPlayWindowWithTask*> windows;
    aiguitoolkit::CFullScreenWidget* fullScreen = nullptr;
};

TEST_F(LiveViewTest, WindowCountAndDivisionsFollowTheLanguage)
{
    const struct { int language, windows; QList<int> offered; } rows[] = {{1, 9, {1, 4, 9}}, {2, 4, {1, 4}}, {0, 4, {1, 4}}};
    for (const auto& r : rows) {
        SCOPED_TRACE(r.language);
        Build(r.language);
        EXPECT_EQ(windows.size(), r.windows);
        EXPECT_EQ(CutNumFrame()->OfferedWindowCounts(), r.offered);
        EXPECT_EQ(CutNumFrame()->ButtonOfType(3)->isHidden(), r.windows < 9);
        EXPECT_EQ(LayoutMgr()->GetCurrentType(), 2);
        EXPECT_EQ(LayoutMgr()->DisplayedWindows().size(), 4);
        EXPECT_EQ(Selected(), Window(0));
    }
}

TEST_F(LiveViewTest, FewerWindowsThanTheSelectedPositionSelectsTheFirst)
{
    Build(1);
    const struct { int selected, type, expected; } rows[] = {{6, 2, 0}, {2, 2, 2}, {3, 1, 0}, {0, 1, 0}, {8, 3, 8}};
    for (const auto& r : rows) {
        view->OnCutBtnNumClicked(3);
        QTest::mouseClick(Window(r.selected), Qt::LeftButton);
        ASSERT_EQ(Selected(), Window(r.selected));
        view->OnCutBtnNumClicked(r.type);
        EXPECT_EQ(Selected(), Window(r.expected)) << r.selected << " " << r.type;
        EXPECT_EQ(LayoutMgr()->GetCurrentType(), r.type);
    }
}

TEST_F(LiveViewTest, DropRules)
{
    Build(2);
    Drop(1, QStringLiteral("g"), QVariant());                  // no camera
    Drop(1, QVariant(), QStringLiteral("CAM2"));               // no group
    Drop(1, QStringLiteral("g"), QString());                   // empty camera
    EXPECT_FALSE(Window(1)->IsPreviewing());
    EXPECT_EQ(Selected(), Window(0));

    Drop(1, QStringLiteral("g"), QStringLiteral("CAM2"));
    EXPECT_TRUE(Window(1)->IsPreviewing());
    EXPECT_EQ(Selected(), Window(1));
    EXPECT_EQ(view->openViewCameraIds(), QVector<std::string>{"CAM2"});

    // The same camera again: no restart, no selection.
    QTest::mouseClick(Window(0), Qt::LeftButton);
    int restarts = 0;
    QObject::connect(Window(1), &CStreamPlayWindowWithTask::SignalLiveViewEvent, Window(1), [&restarts] { ++restarts; });
    Drop(1, QStringLiteral("g"), QStringLiteral("CAM2"));
    EXPECT_EQ(restarts, 0);
    EXPECT_EQ(Selected(), Window(0));

    // The same camera in two windows keeps its playing icon until both stop.
    Drop(0, QStringLiteral("g"), QStringLiteral("CAM2"));
    EXPECT_EQ(IconOf("CAM2"), kPlaying);
    Window(0)->StopPreview();
    EXPECT_EQ(IconOf("CAM2"), kPlaying);
    EXPECT_EQ(view->openViewCameraIds(), QVector<std::string>{"CAM2"});
    Window(1)->StopPreview();
    EXPECT_EQ(IconOf("CAM2"), kIdle);
    EXPECT_TRUE(view->openViewCameraIds().isEmpty());

    // A camera the model does not know takes the window, which says so.
    Drop(2, QStringLiteral("g"), QStringLiteral("NOPE"));
    EXPECT_TRUE(Window(2)->IsPreviewing());
    EXPECT_FALSE(Window(2)->HasStream());
    EXPECT_FALSE(Window(2)->MessageText().isEmpty());
}

TEST_F(LiveViewTest, SelectFreeWindowTakesTheFirstIdleInDisplayOrder)
{
    Build(2);
    view->restorePlayingCameras({QStringLiteral("CAM2"), QStringLiteral("CAM3")});
    view->SelectFreeWindow();
    EXPECT_EQ(Selected(), Window(2));
    view->OpenCamera("CAM4", 100);
    view->SelectFreeWindow();
    EXPECT_EQ(Selected(), Window(3));
    view->OpenCamera("CAM5", 100);
    EXPECT_EQ(Window(3)->GetStartValue(), 100);
    view->SelectFreeWindow();  // every window plays: nothing changes
    EXPECT_EQ(Selected(), Window(3));
    EXPECT_EQ(view->GetPlayingCameraIds(),
        (QList<QByteArray>{QByteArrayLiteral("CAM2"), QByteArrayLiteral("CAM3"), QByteArrayLiteral("CAM4"), QByteArrayLiteral("CAM5")}));
    view->RemoveCamera("CAM3");
    EXPECT_FALSE(Window(1)->IsPreviewing());
    view->stopAllLiveView();
    EXPECT_TRUE(view->openViewCameraIds().isEmpty());
    for (auto* w : windows)
        EXPECT_FALSE(w->IsPreviewing());
}

TEST_F(LiveViewTest, RestoreSkipsEmptyAndKeepsUnknownIdentifiers)
{
    Build(2);
    view->restorePlayingCameras({QString(), QStringLiteral("GONE"), QStringLiteral("CAM4"), QStringLiteral("CAM5"),
        QStringLiteral("CAM2")});
    EXPECT_FALSE(Window(0)->IsPreviewing());
    // A camera that has left the model keeps its window (and its place in the saved state).
    EXPECT_TRUE(Window(1)->IsPreviewing());
    EXPECT_FALSE(Window(1)->HasStream());
    EXPECT_EQ(Window(2)->GetPreviewCameraID(), "CAM4");
    EXPECT_TRUE(Window(2)->HasStream());
    EXPECT_EQ(Window(3)->GetPreviewCameraID(), "CAM5");
    EXPECT_EQ(view->openViewCameraIds(), (QVector<std::string>{"GONE", "CAM4", "CAM5"}));
    // Closing it frees the window.
    Window(1)->GetCloseButton()->click();
    EXPECT_FALSE(Window(1)->IsPreviewing());
    EXPECT_EQ(view->openViewCameraIds(), (QVector<std::string>{"CAM4", "CAM5"}));
}

TEST_F(LiveViewTest, InsideThePage)
{
    CBodyTemperatureDlg page;
    auto* live = page.findChild<BTShowLiveView*>();
    // Selecting a playing window makes its camera the tree's current row.
    live->restorePlayingCameras({QString(), QStringLiteral("CAM4")});
    emit PlayWindowsOf(*live).at(1)->SignalSelected();
    const auto* pageTree = testsupport::child<CBTViewTree>(&page, "m_pCameraTree");
    const auto* proxy = qobject_cast<const VantorGUIToolkit::CSecondarySortFilterModel*>(pageTree->model());
    ASSERT_NE(proxy, nullptr);
    ASSERT_EQ(proxy->sourceModel(), model);
    EXPECT_EQ(proxy->mapToSource(pageTree->currentIndex()), model->GetElementIndexByElementID("CAM4"));

    // The tree passes filter values 0 to 2; a double click opens only a camera
    // of the model whose channel has a signal.
    commlayer::CDeviceStateNotifier::Instance()->SetChannelOnline(QStringLiteral("DEV"), 5, false);
    QStandardItem* yard = model->item(1);
    // Rows the model has no camera for; roles: 657 node type, 662 camera id, 767 filter value.
    const auto item = [](const char* id, int filter) {
        auto* i = new QStandardItem(QString::fromLatin1(id));
        i->setData(2, 657);
        i->setData(QString::fromLatin1(id), 662);
        i->setData(filter, 767);
        return i;
    };
    QStandardItem* unknown = item("CAM-X", 2);
    yard->appendRows({unknown, item("CAM-F", 3)});
    EXPECT_EQ(proxy->rowCount(proxy->mapFromSource(yard->index())), 3) << "filter value 3 is not shown";
    for (const QModelIndex& refused : {unknown->index(), model->GetElementIndexByElementID("CAM5"), yard->index()})
        page.OnCameraTreeDoubleClicked(proxy->mapFromSource(refused));
    EXPECT_EQ(page.GetPlayingCameraIds(), (QList<QByteArray>{"CAM4"}));
    page.OnCameraTreeDoubleClicked(proxy->mapFromSource(model->GetElementIndexByElementID("CAM3")));
    EXPECT_TRUE(page.GetPlayingCameraIds().contains("CAM3"));

    // The page may go while the video is in full screen (the host closes).
    auto* full = live->findChild<aiguitoolkit::CFullScreenWidget*>();
    live->OnFullScreenBtnPressed();
    ASSERT_TRUE(full->IsFullScreen());
}

TEST_F(LiveViewTest, SelectionFrameFollowsItsWindow)
{
    Build(2);
    const auto* frame = testsupport::child<CSelectBoder>(view.get(), "m_pSelectBoderWnd");
    QTest::mouseClick(Window(3), Qt::LeftButton);
    EXPECT_EQ(frame->geometry(), Window(3)->geometry().adjusted(-1, -1, 1, 1));
    EXPECT_TRUE(Window(3)->IsSelected());
    EXPECT_FALSE(Window(0)->IsSelected());
    Window(3)->setGeometry(50, 60, 200, 100);
    EXPECT_EQ(frame->geometry(), QRect(49, 59, 202, 102));
    view->resize(1200, 800);  // the grid re-lays out; the frame goes along
    testsupport::pump(10);
    EXPECT_EQ(frame->geometry(), Window(3)->geometry().adjusted(-1, -1, 1, 1));
    // Maximising by double click and back.
    QTest::mouseDClick(Window(3), Qt::LeftButton);
    EXPECT_EQ(LayoutMgr()->MaximizedWindow(), Window(3));
    EXPECT_FALSE(Window(0)->isVisible());
    QTest::mouseDClick(Window(3), Qt::LeftButton);
    EXPECT_EQ(LayoutMgr()->MaximizedWindow(), nullptr);
    EXPECT_TRUE(Window(0)->isVisible());
}

TEST_F(LiveViewTest, FullScreenAndDivisionSelector)
{
    Build(1);
    QSignalSpy screen(view.get(), &BTShowLiveView::SignalScreenChanged);
    QTest::mouseClick(Window(5), Qt::LeftButton);
    auto* fullBtn = view->findChild<QToolButton*>(QStringLiteral("m_pFullScreenBtn"));
    ASSERT_NE(fullBtn, nullptr);
    auto* full = fullScreen;
    for (int round = 0; round < 2; ++round) {  // and a second time after coming back
        fullBtn->click();
        EXPECT_TRUE(full->isWindow());
        EXPECT_EQ(view->layout()->indexOf(full), -1);
        // The grid stays as it was (maximise and restore at once), inside the full-screen container.
        EXPECT_EQ(LayoutMgr()->MaximizedWindow(), nullptr);
        EXPECT_TRUE(Window(0)->isVisible());
        QTest::keyClick(full, Qt::Key_Escape);
        EXPECT_FALSE(full->isWindow());
        EXPECT_EQ(full->parentWidget(), view.get());
        EXPECT_EQ(view->layout()->indexOf(full), 0);  // back in its place above the tool bar
    }
    ASSERT_EQ(screen.count(), 4);
    EXPECT_TRUE(screen.at(0).at(0).toBool());
    EXPECT_FALSE(screen.at(1).at(0).toBool());

    auto* cutBtn = view->findChild<QToolButton*>(QStringLiteral("m_pCutWndBtn"));
    cutBtn->click();
    aiguitoolkit::CCutNumFrame* selector = CutNumFrame();
    EXPECT_TRUE(selector->isVisible());
    const QPoint btn = cutBtn->mapToGlobal(QPoint(0, 0));
    EXPECT_EQ(selector->x() + selector->width(), btn.x() + cutBtn->width());
    EXPECT_EQ(selector->y() + selector->height(), btn.y());
    selector->ButtonOfType(3)->click();
    EXPECT_FALSE(selector->isVisible());
    EXPECT_EQ(LayoutMgr()->DisplayedWindows().size(), 9);
    EXPECT_EQ(Selected(), Window(5));
}

// The real stream of CAM1 shows in its window; it carries no sound.
TEST_F(LiveViewTest, AStreamShowsItsFramesAndItsMissingSoundIsReported)
{
    Build(2);
    view->restorePlayingCameras({});
    EXPECT_TRUE(view->openViewCameraIds().isEmpty());
    view->restorePlayingCameras({QStringLiteral("CAM1")});
    ASSERT_TRUE(testsupport::waitUntil([this] { return Window(0)->HasFrame(); }, 3000));
    VantorGUIToolkit::CInformationDlg::ClearShownMessages();
    view->OnSoundBtnClicked();
    EXPECT_FALSE(Window(0)->IsSoundOpen());
    EXPECT_EQ(VantorGUIToolkit::CInformationDlg::ShownMessages(), QStringList{QStringLiteral("OpeningSoundFailed")});
}

TEST_F(LiveViewTest, LaterRowsCarryTheGroupTooltipOnlyTheFirstIsDecorated)
{
    // Cameras present at construction: "Preview"; cameras that arrive later
    // (here: the reload in SetUp) carry the group text.
    CameraModel fresh(nullptr, true);
    const QModelIndex early = fresh.GetElementIndexByElementID("CAM1");
    EXPECT_EQ(early.data(UiDataController::RoleRightPixmapTip).toString(), QStringLiteral("Preview"));
    EXPECT_TRUE(early.data(UiDataController::RoleRightPixmap).isValid());
    EXPECT_EQ(model->GetElementIndexByElementID("CAM1").data(UiDataController::RoleRightPixmapTip).toString(), QStringLiteral("ViewAllCamerasInGroup"));
    // Two camera rows inserted at once: only the first is decorated, with the group text;
    // a model without preview buttons decorates nothing.
    CameraModel plain(nullptr, false);
    EXPECT_FALSE(plain.GetElementIndexByElementID("CAM1").data(UiDataController::RoleRightPixmapTip).isValid());
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

TEST_F(LiveViewTest, StateIconFollowsAvailabilityAndPlaying)
{
    // Through the host's notifier, as the alarm intake reports availability.
    auto* notifier = commlayer::CDeviceStateNotifier::Instance();
    enum { Idle, Play, Keep };
    const struct { bool device, channel; int playing; const QString& icon; } rows[] = {
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
        notifier->SetDeviceOnline(QStringLiteral("DEV"), r.device);
        notifier->SetChannelOnline(QStringLiteral("DEV"), 2, r.channel);
        if (r.playing != Keep)
            model->UpdateCameraIcon(model->GetElementIndexByElementID("CAM2"), r.playing == Play);
        SCOPED_TRACE(testing::Message() << r.device << r.channel << r.playing);
        EXPECT_EQ(IconOf("CAM2"), r.icon);
        EXPECT_EQ(dynamic_cast<vantordesk::ICamera*>(model->GetElementByID("CAM2"))->IsChannelOnline(), r.channel);
        EXPECT_EQ(IconOf("CAM1"), r.device ? kIdle : kOffline);  // the channel's state is its own
    }
}

TEST_F(LiveViewTest, LiveViewEventsSetThePlayingIcon)
{
    tree = std::make_unique<CBTViewTree>();
    // Kinds other than start (0, 6) and stop (1) change nothing.
    const struct { int type; const QString& expected; } steps[] = {
        {0, kPlaying}, {1, kIdle}, {6, kPlaying}, {3, kPlaying}, {1, kIdle}};
    for (const auto& s : steps) {
        tree->UpdateCameraState(CLiveViewEvent(s.type, "CAM1"));
        EXPECT_EQ(IconOf("CAM1"), s.expected) << s.type;
    }
    tree->UpdateCameraState(CLiveViewEvent(0, "unknown"));  // ignored, no crash
}

TEST_F(LiveViewTest, OnlyThePlayIconOfACameraRowStartsLiveView)
{
    tree = std::make_unique<CBTViewTree>();
    tree->setModel(model);
    tree->resize(278, 400);
    tree->expandAll();
    tree->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(tree.get()));
    QSignalSpy spy(tree.get(), &CBTViewTree::signalStartLiveView);
    const QRect row = tree->visualRect(model->GetElementIndexByElementID("CAM1"));
    const QPoint icon(row.right() - 14, row.center().y());
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, row.topLeft() + QPoint(20, row.height() / 2));
    EXPECT_EQ(spy.count(), 0);
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, icon);
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(spy.at(0).at(0).value<QModelIndex>(), model->GetElementIndexByElementID("CAM1"));
    // The same spot on an area row starts nothing.
    const QRect areaRow = tree->visualRect(model->index(0, 0));
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(row.right() - 14, areaRow.center().y()));
    EXPECT_EQ(spy.count(), 1);
}

TEST_F(LiveViewTest, DragCarriesGroupAndCamera)
{
    tree = std::make_unique<CBTViewTree>();
    CBTViewTree::DragData d;
    ASSERT_TRUE(tree->DragDataOf(model->GetElementIndexByElementID("CAM4"), d));
    EXPECT_EQ(d.cameraGuid, QStringLiteral("CAM4"));
    EXPECT_EQ(d.groupGuid, model->index(1, 0).data(UiDataController::RoleGroupID).toString());
    EXPECT_EQ(d.pixmap, QStringLiteral(":/public/btn/Public/Camera.svg"));

    ASSERT_TRUE(tree->DragDataOf(model->index(0, 0), d));
    EXPECT_FALSE(d.groupGuid.isEmpty());
    EXPECT_TRUE(d.cameraGuid.isEmpty());
    EXPECT_EQ(d.pixmap, QStringLiteral(":/public/btn/Public/Group.svg"));

    // A row of no known type still drags, carrying nothing.
    QStandardItemModel other;
    other.appendRow(new QStandardItem(QStringLiteral("x")));
    ASSERT_TRUE(tree->DragDataOf(other.index(0, 0), d));
    EXPECT_TRUE(d.groupGuid.isEmpty() && d.cameraGuid.isEmpty());

    // A camera row the logic model does not know starts no drag.
    auto* ghost = new QStandardItem(QStringLiteral("ghost"));
    ghost->setData(2, RoleNodeType);
    ghost->setData(QStringLiteral("GHOST"), UiDataController::RoleCameraID);
    other.appendRow(ghost);
    EXPECT_FALSE(tree->DragDataOf(other.index(1, 0), d));

    std::unique_ptr<QMimeData> mime(CBTViewTree::CreateMimeData({QStringLiteral("g"), QStringLiteral("c"), QString()}));
    EXPECT_EQ(mime->property("GroupGUID").toString(), QStringLiteral("g"));
    EXPECT_EQ(mime->property("CameraGUID").toString(), QStringLiteral("c"));
}

} // namespace
