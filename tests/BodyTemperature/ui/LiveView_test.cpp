// The live-view area with real play windows over the host's logic model;
// cameras stream from loopback servers.
#include <QDropEvent>
#include <QHBoxLayout>
#include <QFile>
#include <QMimeData>
#include <QPushButton>
#include <QSignalSpy>
#include <QToolButton>
#include <gtest/gtest.h>

#include "Base/CSingleton.h"
#include "CAppRscManager.h"
#include "CameraModel.h"
#include "aiguitoolkit/CCutNumFrame.h"
#include "aiguitoolkit/CFullScreenWidget.h"
#include "aiguitoolkit/CWidgetLayoutMgr.h"
#include "clientcommonlogical/CConfigMgr.h"
#include "commlayer/CDeviceStateNotifier.h"
#include "playwindow/CStreamDecoder.h"
#include "playwindow/CStreamPlayWindowWithTask.h"
#include "support/LoopbackStream.h"
#include "support/TestSupport.h"
#include "ui/BTShowLiveView.h"
#include "ui/CBTViewTree.h"
#include "ui/CSelectBoder.h"
#include "VantorGUIToolkit/CInformationDlg.h"
#include <QTest>

using namespace BodyTemperature;

namespace {

const QString kPlaying = QStringLiteral(":/publicIcon/Images/public/PublicIcon/CameraPlaying.svg");
const QString kIdle = QStringLiteral(":/publicIcon/Images/public/PublicIcon/Camera.svg");

class LiveViewTest : public testsupport::TempDirTest {
protected:
    void SetUp() override
    {
        TempDirTest::SetUp();
        server = std::make_unique<testsupport::PartServer>(std::vector<QByteArray>{testsupport::makeJpeg(320, 180)});
        // CAM1 streams; the others point at a port that refuses (they retry quietly).
        const std::string refused = QStringLiteral("http://127.0.0.1:%1/x").arg(testsupport::FreePort()).toStdString();
        clientcommonlogical::DeviceConfig dev;
        dev.id = "DEV";
        dev.address = "127.0.0.1";
        dev.port = testsupport::FreePort();
        dev.channels = {{1, "CAM1", "One", "Lobby", server->url.toStdString()}, {2, "CAM2", "Two", "Lobby", refused},
            {3, "CAM3", "Three", "Lobby", refused}, {4, "CAM4", "Four", "Yard", refused}, {5, "CAM5", "Five", "Yard", refused}};
        auto* config = clientcommonlogical::CConfigMgr::Instance();
        config->SetDevices({dev});
        commlayer::CDeviceStateNotifier::Instance()->SetDeviceOnline(QStringLiteral("DEV"), true);
        for (int ch = 1; ch <= 5; ++ch)
            commlayer::CDeviceStateNotifier::Instance()->SetChannelOnline(QStringLiteral("DEV"), ch, true);
        config->SetLanguage(2);
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
        server.reset();
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
    }
    CStreamPlayWindowWithTask* Window(int i) const { return view->PlayWindows().at(i); }
    // What a play window hands on when a drag from the tree is dropped on it.
    void Drop(int window, const QVariant& group, const QVariant& camera)
    {
        QMimeData mime;
        if (group.isValid())
            mime.setProperty("GroupGUID", group);
        if (camera.isValid())
            mime.setProperty("CameraGUID", camera);
        QDropEvent ev(QPointF(10, 10), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        emit Window(window)->SignalDrop(&ev);
    }
    QString IconOf(const char* id) const
    {
        return model->GetElementIndexByElementID(id).data(CameraModel::IconPathRole).toString();
    }
    std::unique_ptr<testsupport::PartServer> server;
    CameraModel* model = nullptr;
    std::unique_ptr<CBTViewTree> tree;
    std::unique_ptr<BTShowLiveView> view;
};

TEST_F(LiveViewTest, WindowCountAndDivisionsFollowTheLanguage)
{
    struct Row {
        int language;
        int windows;
        QList<int> offered;
    } rows[] = {{1, 9, {1, 4, 9}}, {2, 4, {1, 4}}, {0, 4, {1, 4}}};
    for (const Row& r : rows) {
        Build(r.language);
        EXPECT_EQ(view->PlayWindows().size(), r.windows) << r.language;
        EXPECT_EQ(view->CutNumFrame()->OfferedWindowCounts(), r.offered) << r.language;
        EXPECT_EQ(view->LayoutMgr()->GetCurrentType(), 2);
        EXPECT_EQ(view->LayoutMgr()->DisplayedWindows().size(), 4);
        EXPECT_EQ(view->SelectedWindow(), Window(0));
        EXPECT_EQ(Window(0)->objectName(), QStringLiteral("m_pStreamPlayWnd"));
    }
}

TEST_F(LiveViewTest, InitWithoutModelBuildsNothing)
{
    BTShowLiveView bare;
    bare.Init(nullptr);
    EXPECT_TRUE(bare.PlayWindows().isEmpty());
    bare.SelectFreeWindow();
    bare.OpenCamera("CAM1", 100);
    bare.restorePlayingCameras({QStringLiteral("CAM1")});
    EXPECT_TRUE(bare.openViewCameraIds().isEmpty());
}

TEST_F(LiveViewTest, FewerWindowsThanTheSelectedPositionSelectsTheFirst)
{
    Build(1);
    struct Row {
        int selected;
        int type;
        int expected;
    } rows[] = {{6, 2, 0}, {2, 2, 2}, {3, 1, 0}, {0, 1, 0}, {8, 3, 8}};
    for (const Row& r : rows) {
        view->OnCutBtnNumClicked(3);
        QTest::mouseClick(Window(r.selected), Qt::LeftButton);
        ASSERT_EQ(view->SelectedWindow(), Window(r.selected));
        view->OnCutBtnNumClicked(r.type);
        EXPECT_EQ(view->SelectedWindow(), Window(r.expected)) << r.selected << " " << r.type;
        EXPECT_EQ(view->CutType(), r.type);
    }
}

TEST_F(LiveViewTest, DropRules)
{
    Build(2);
    Drop(1, QStringLiteral("g"), QVariant());                  // no camera
    Drop(1, QVariant(), QStringLiteral("CAM2"));               // no group
    Drop(1, QStringLiteral("g"), QString());                   // empty camera
    EXPECT_FALSE(Window(1)->IsPreviewing());
    EXPECT_EQ(view->SelectedWindow(), Window(0));

    Drop(1, QStringLiteral("g"), QStringLiteral("CAM2"));
    EXPECT_TRUE(Window(1)->IsPreviewing());
    EXPECT_EQ(view->SelectedWindow(), Window(1));
    EXPECT_EQ(view->openViewCameraIds(), QVector<std::string>{"CAM2"});

    // The same camera again: no restart, no selection.
    QTest::mouseClick(Window(0), Qt::LeftButton);
    int restarts = 0;
    QObject::connect(Window(1), &CStreamPlayWindowWithTask::SignalLiveViewEvent, Window(1), [&restarts] { ++restarts; });
    Drop(1, QStringLiteral("g"), QStringLiteral("CAM2"));
    EXPECT_EQ(restarts, 0);
    EXPECT_EQ(view->SelectedWindow(), Window(0));

    // A camera the model does not know takes the window, which says so.
    Drop(2, QStringLiteral("g"), QStringLiteral("NOPE"));
    EXPECT_TRUE(Window(2)->IsPreviewing());
    EXPECT_FALSE(Window(2)->HasStream());
    EXPECT_FALSE(Window(2)->MessageText().isEmpty());
}

TEST_F(LiveViewTest, CameraInTwoWindowsKeepsItsPlayingIcon)
{
    Build(2);
    Drop(0, QStringLiteral("g"), QStringLiteral("CAM3"));
    Drop(1, QStringLiteral("g"), QStringLiteral("CAM3"));
    EXPECT_EQ(IconOf("CAM3"), kPlaying);
    Window(0)->StopPreview();
    EXPECT_EQ(IconOf("CAM3"), kPlaying);
    EXPECT_EQ(view->openViewCameraIds(), QVector<std::string>{"CAM3"});
    Window(1)->StopPreview();
    EXPECT_EQ(IconOf("CAM3"), kIdle);
    EXPECT_TRUE(view->openViewCameraIds().isEmpty());
}

TEST_F(LiveViewTest, SelectFreeWindowTakesTheFirstIdleInDisplayOrder)
{
    Build(2);
    view->restorePlayingCameras({QStringLiteral("CAM2"), QStringLiteral("CAM3")});
    view->SelectFreeWindow();
    EXPECT_EQ(view->SelectedWindow(), Window(2));
    view->OpenCamera("CAM4", 100);
    view->SelectFreeWindow();
    EXPECT_EQ(view->SelectedWindow(), Window(3));
    view->OpenCamera("CAM5", 100);
    EXPECT_EQ(Window(3)->GetStartValue(), 100);
    view->SelectFreeWindow();  // every window plays: nothing changes
    EXPECT_EQ(view->SelectedWindow(), Window(3));
    EXPECT_EQ(view->GetPlayingCameraIds(),
        (QList<QByteArray>{QByteArrayLiteral("CAM2"), QByteArrayLiteral("CAM3"), QByteArrayLiteral("CAM4"), QByteArrayLiteral("CAM5")}));
    view->RemoveCamera("CAM3");
    EXPECT_FALSE(Window(1)->IsPreviewing());
    view->stopAllLiveView();
    EXPECT_TRUE(view->openViewCameraIds().isEmpty());
    for (auto* w : view->PlayWindows())
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

TEST_F(LiveViewTest, FirstRunOpensTheFirstCamerasOnce)
{
    Build(2);
    ASSERT_FALSE(QFile::exists(BTShowLiveView::FirstRunMarkerPath()));
    view->restorePlayingCameras({});
    EXPECT_EQ(view->openViewCameraIds(), (QVector<std::string>{"CAM1", "CAM2", "CAM3", "CAM4"}));
    // The real stream of CAM1 shows in its window.
    EXPECT_TRUE(testsupport::waitUntil([this] { return Window(0)->HasFrame(); }, 3000));
    // Leaving the page stops everything; from then on an empty list means empty.
    view->stopAllLiveView();
    view->restorePlayingCameras({});
    EXPECT_TRUE(view->openViewCameraIds().isEmpty());
}

TEST_F(LiveViewTest, SelectionFrameFollowsItsWindow)
{
    Build(2);
    QTest::mouseClick(Window(3), Qt::LeftButton);
    EXPECT_EQ(view->SelectBoder()->geometry(), Window(3)->geometry().adjusted(-1, -1, 1, 1));
    EXPECT_TRUE(Window(3)->IsSelected());
    EXPECT_FALSE(Window(0)->IsSelected());
    Window(3)->setGeometry(50, 60, 200, 100);
    EXPECT_EQ(view->SelectBoder()->geometry(), QRect(49, 59, 202, 102));
    view->resize(1200, 800);  // the grid re-lays out; the frame goes along
    testsupport::pump(10);
    EXPECT_EQ(view->SelectBoder()->geometry(), Window(3)->geometry().adjusted(-1, -1, 1, 1));
    // Maximising by double click and back.
    QTest::mouseDClick(Window(3), Qt::LeftButton);
    EXPECT_EQ(view->LayoutMgr()->MaximizedWindow(), Window(3));
    EXPECT_FALSE(Window(0)->isVisible());
    QTest::mouseDClick(Window(3), Qt::LeftButton);
    EXPECT_EQ(view->LayoutMgr()->MaximizedWindow(), nullptr);
    EXPECT_TRUE(Window(0)->isVisible());
}

TEST_F(LiveViewTest, FullScreenAndDivisionSelector)
{
    Build(1);
    QSignalSpy screen(view.get(), &BTShowLiveView::SignalScreenChanged);
    QTest::mouseClick(Window(5), Qt::LeftButton);
    auto* fullBtn = view->findChild<QToolButton*>(QStringLiteral("m_pFullScreenBtn"));
    ASSERT_NE(fullBtn, nullptr);
    fullBtn->click();
    EXPECT_TRUE(view->FullScreenWidget()->isWindow());
    ASSERT_EQ(screen.count(), 1);
    EXPECT_TRUE(screen.at(0).at(0).toBool());
    // The grid stays as it was (maximise and restore at once), inside the full-screen container.
    EXPECT_EQ(view->LayoutMgr()->MaximizedWindow(), nullptr);
    EXPECT_TRUE(Window(0)->isVisible());
    QTest::keyClick(view->FullScreenWidget(), Qt::Key_Escape);
    EXPECT_FALSE(view->FullScreenWidget()->isWindow());
    EXPECT_EQ(screen.count(), 2);

    auto* cutBtn = view->findChild<QToolButton*>(QStringLiteral("m_pCutWndBtn"));
    cutBtn->click();
    aiguitoolkit::CCutNumFrame* selector = view->CutNumFrame();
    EXPECT_TRUE(selector->isVisible());
    const QPoint btn = cutBtn->mapToGlobal(QPoint(0, 0));
    EXPECT_EQ(selector->x() + selector->width(), btn.x() + cutBtn->width());
    EXPECT_EQ(selector->y() + selector->height(), btn.y());
    selector->ButtonOfType(3)->click();
    EXPECT_EQ(view->LayoutMgr()->DisplayedWindows().size(), 9);
    EXPECT_EQ(view->SelectedWindow(), Window(5));
}

TEST_F(LiveViewTest, SoundOfAStreamWithoutAudioReportsFailure)
{
    Build(2);
    view->restorePlayingCameras({QStringLiteral("CAM1")});
    ASSERT_TRUE(testsupport::waitUntil([this] { return Window(0)->HasFrame(); }, 3000));
    VantorGUIToolkit::CInformationDlg::ClearShownMessages();
    view->OnSoundBtnClicked();
    EXPECT_FALSE(Window(0)->IsSoundOpen());
    EXPECT_EQ(VantorGUIToolkit::CInformationDlg::ShownMessages(), QStringList{QStringLiteral("OpeningSoundFailed")});
}

} // namespace

namespace {

// The tree and four playing windows side by side, as the page shows them;
// the picture goes to $BT_RENDER_DIR (or the test's folder) for a look.
TEST_F(LiveViewTest, RendersTreeAndPlayingWindows)
{
    std::vector<std::unique_ptr<testsupport::FfmpegServer>> streams;
    std::vector<clientcommonlogical::ChannelConfig> channels;
    for (int i = 1; i <= 4; ++i) {
        streams.push_back(std::make_unique<testsupport::FfmpegServer>(
            QStringLiteral("testsrc2=size=640x360:rate=25"), QStringList{QStringLiteral("-q:v"), QStringLiteral("5")}));
        const std::string id = "R" + std::to_string(i);
        channels.push_back({i, id, "Camera " + std::to_string(i), i <= 2 ? "Lobby" : "Back office", streams.back()->url.toStdString()});
    }
    channels.push_back({5, "R5", "Camera 5", "Back office", QStringLiteral("http://127.0.0.1:%1/x").arg(testsupport::FreePort()).toStdString()});
    clientcommonlogical::DeviceConfig dev;
    dev.id = "RDEV";
    dev.address = "127.0.0.1";
    dev.channels = channels;
    clientcommonlogical::CConfigMgr::Instance()->SetDevices({dev});
    Base::CSingleton<CAppRscManager>::Instance()->GetGroupManager()->Reload();
    model->Reload();

    QWidget page;
    page.setStyleSheet(QStringLiteral("QWidget{background-color:#1b2129;color:#dfe6ee;} QTreeView{border:none;}"));
    auto* row = new QHBoxLayout(&page);
    row->setContentsMargins(0, 0, 0, 0);
    auto* pageTree = new CBTViewTree(&page);
    pageTree->setFixedWidth(278);
    pageTree->setModel(model);
    pageTree->setHeaderHidden(true);
    pageTree->expandAll();
    auto* live = new BTShowLiveView(&page);
    live->SetCameraTree(pageTree);
    live->Init(model);
    row->addWidget(pageTree);
    row->addWidget(live, 1);
    page.setGeometry(0, 0, 1920, 1080);
    page.show();
    live->restorePlayingCameras({QStringLiteral("R1"), QStringLiteral("R2"), QStringLiteral("R3"), QStringLiteral("R5")});
    QTest::mouseClick(live->PlayWindows().at(1), Qt::LeftButton);
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(testsupport::waitUntil([&] { return live->PlayWindows().at(i)->HasFrame(); }, 3000)) << i;
    EXPECT_TRUE(testsupport::waitUntil([&] { return live->PlayWindows().at(3)->MessageText().contains(QLatin1String("Retrying")); }, 3000));
    testsupport::pump(300);
    const QString dir = qEnvironmentVariableIsSet("BT_RENDER_DIR") ? qEnvironmentVariable("BT_RENDER_DIR") : m_dir.path();
    const QImage shot = page.grab().toImage();
    EXPECT_TRUE(shot.save(dir + QStringLiteral("/liveview.png")));
    EXPECT_FALSE(shot.isNull());
    live->stopAllLiveView();
}

} // namespace
