#include "ui/BTShowLiveView.h"

#include <QCoreApplication>
#include <QDropEvent>
#include <QHBoxLayout>
#include <QMimeData>
#include <QPainter>
#include <QPushButton>
#include <QResizeEvent>
#include <QToolButton>
#include <QVBoxLayout>

#include "Base/CSingleton.h"
#include "CAppRscManager.h"
#include "UiDataController/CLogicModel.h"
#include "VantorGUIToolkit/CInformationDlg.h"
#include "aiguitoolkit/CCutNumFrame.h"
#include "aiguitoolkit/CFullScreenWidget.h"
#include "aiguitoolkit/CWidgetLayoutMgr.h"
#include "clientcommonlogical/CConfigMgr.h"
#include "playwindow/CPtzControlWnd.h"
#include "playwindow/CStreamPlayWindowWithTask.h"
#include "ui/CBTLiveViewPlugin.h"
#include "ui/CBTViewTree.h"
#include "ui/CSelectBoder.h"

namespace BodyTemperature {
namespace {

publicdatacontroller::StreamSettings CurrentStreamSettings()
{
    auto local = Base::CSingleton<CAppRscManager>::Instance()->GetLocalDataManager();
    return local ? local->GetStreamSettings() : publicdatacontroller::StreamSettings();
}

// The three tool-bar pictures, drawn so the bar works before any theme is loaded.
enum class Glyph { Stop, Division, FullScreen };

QIcon GlyphIcon(Glyph glyph)
{
    QPixmap pix(32, 32);
    pix.fill(Qt::transparent);
    QPainter p(&pix);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(QColor(0xdf, 0xe6, 0xee), 2));
    switch (glyph) {
    case Glyph::Stop:
        p.fillRect(QRect(9, 9, 14, 14), QColor(0xdf, 0xe6, 0xee));
        break;
    case Glyph::Division:
        p.drawRect(QRect(6, 6, 20, 20));
        p.drawLine(16, 6, 16, 26);
        p.drawLine(6, 16, 26, 16);
        break;
    case Glyph::FullScreen:
        for (const QPoint& c : {QPoint(6, 6), QPoint(26, 6), QPoint(6, 26), QPoint(26, 26)}) {
            const int dx = c.x() < 16 ? 7 : -7, dy = c.y() < 16 ? 7 : -7;
            p.drawLine(c, c + QPoint(dx, 0));
            p.drawLine(c, c + QPoint(0, dy));
        }
        break;
    }
    return QIcon(pix);
}

QToolButton* MakeToolButton(QWidget* parent, const char* name, Glyph glyph, const QString& tip)
{
    auto* b = new QToolButton(parent);
    b->setObjectName(QString::fromLatin1(name));
    b->setIcon(GlyphIcon(glyph));
    b->setIconSize(QSize(18, 18));
    b->setToolTip(tip);
    b->setFixedSize(28, 28);
    b->setAutoRaise(true);
    return b;
}

} // namespace

BTShowLiveView::BTShowLiveView(QWidget* parent) : QWidget(parent), m_iMaxWndNum(9)
{
    setObjectName(QStringLiteral("BTShowLiveView"));
    resize(855, 597);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_pFullScreen = new aiguitoolkit::CFullScreenWidget(this);
    m_pFullScreen->setObjectName(QStringLiteral("m_pFullScreenWidget"));
    m_pFullScreen->setAttribute(Qt::WA_StyledBackground);
    m_pFullScreen->setStyleSheet(QStringLiteral("QWidget#m_pFullScreenWidget{background-color:#05080c;}"));
    layout->addWidget(m_pFullScreen, 1);

    auto* bar = new QWidget(this);
    bar->setObjectName(QStringLiteral("m_pLiveViewToolBar"));
    bar->setFixedHeight(32);
    auto* barLayout = new QHBoxLayout(bar);
    barLayout->setContentsMargins(8, 2, 8, 2);
    barLayout->setSpacing(6);
    barLayout->addStretch(1);
    m_pStopAllBtn = MakeToolButton(bar, "m_pStopAllBtn", Glyph::Stop, tr("StopAllLiveView"));
    m_pCutWndBtn = MakeToolButton(bar, "m_pCutWndBtn", Glyph::Division, tr("WindowDivision"));
    m_pFullScreenBtn = MakeToolButton(bar, "m_pFullScreenBtn", Glyph::FullScreen, tr("FullScreen"));
    barLayout->addWidget(m_pStopAllBtn);
    barLayout->addWidget(m_pCutWndBtn);
    barLayout->addWidget(m_pFullScreenBtn);
    layout->addWidget(bar);

    connect(m_pFullScreen, &aiguitoolkit::CFullScreenWidget::SignalScreenChanged, this, &BTShowLiveView::SignalScreenChanged);
    connect(m_pFullScreen, &aiguitoolkit::CFullScreenWidget::SignalLeaveFullScreen, this, &BTShowLiveView::SignalLeaveFullScreen);
}

BTShowLiveView::~BTShowLiveView()
{
    // Windows join their decode threads as they stop; do it before the plugin goes.
    for (CStreamPlayWindowWithTask* w : m_listPlayWnd)
        w->StopPreview();
    // In full screen the container is a top-level window, no child of ours: it
    // (and the windows in it) goes with this widget. It is not put back, since
    // the page it would return to may already be half torn down.
    if (m_pFullScreen->IsFullScreen())
        delete m_pFullScreen;
}

void BTShowLiveView::SetCameraTree(CBTViewTree* tree)
{
    m_pCameraTree = tree;
}

void BTShowLiveView::Init(UiDataController::CLogicModel* logicModel)
{
    if (logicModel == nullptr)
        return;
    if (!m_listPlayWnd.isEmpty())
        return;
    m_pPlugin = std::make_unique<CBTLiveViewPlugin>(logicModel);

    const QList<int> buttons{3, 4, 9, 10, 11, 18};
    const QList<int> extraButtons{17};
    const publicdatacontroller::StreamSettings settings = CurrentStreamSettings();
    auto* config = clientcommonlogical::CConfigMgr::Instance();
    const int count = config->GetLanguage() == 1 ? m_iMaxWndNum : 4;
    const std::vector<int> brand = config->GetBrandValues();
    QString logo;
    if (brand.size() > 1 && brand[1] == 0) {
        logo = brand.size() > 2 && brand[2] == 4
            ? QStringLiteral("QLabel#m_pLiveViewWindow{image:url(:/operation/Images/AIOpenPlatform/operation/corvanetherm.png);}")
            : QStringLiteral("QLabel#m_pLiveViewWindow{image:url(:/operation/Images/AIOpenPlatform/operation/Corvane.png);}");
    }
    const QString closeStyle = QStringLiteral(
        "QPushButton#m_pCloseBtn{ border-image:url(:/MixedTargetOperation/Images/MixedTargetDetectionAlarm/operation/CloseView.svg); }"
        "QPushButton#m_pCloseBtn:hover{ border-image:url(:/MixedTargetOperation/Images/MixedTargetDetectionAlarm/operation/CloseViewHover.svg); }");
    for (int i = 0; i < count; ++i) {
        auto* w = new CStreamPlayWindowWithTask(i, m_pFullScreen);
        w->setObjectName(QStringLiteral("m_pStreamPlayWnd"));
        w->SetLiveViewControllerPlugin(m_pPlugin.get());
        w->SetToolBarBtnList(buttons, extraButtons);
        w->SetStreamSettings(settings);
        if (!logo.isEmpty())
            w->setStyleSheet(w->styleSheet() + logo);
        w->GetCloseButton()->setStyleSheet(closeStyle);
        w->GetCloseButton()->setToolTip(tr("Close"));
        connect(w, &CStreamPlayWindowWithTask::SignalSelected, this, &BTShowLiveView::OnPlayWindowSelected);
        connect(w, &CStreamPlayWindowWithTask::SignalPlayStateChanged, this, &BTShowLiveView::OnWindowPlayState);
        connect(w, &CStreamPlayWindowWithTask::SignalDoubleClicked, this, &BTShowLiveView::OnWindowDoubleClicked);
        connect(w, &CStreamPlayWindowWithTask::SignalLiveViewEvent, this, &BTShowLiveView::OnUpdateLiveViewState);
        connect(w, &CStreamPlayWindowWithTask::SignalDrop, this, &BTShowLiveView::onDropAccept);
        connect(w, &CStreamPlayWindowWithTask::SignalSoundBtnClicked, this, [this, w] {
            SelectWindow(w);
            OnSoundBtnClicked();
        });
        w->EnableToolBar(true);
        m_listPlayWnd.append(w);
    }

    auto* ptzWindow = new CPtzControlWnd(this);
    ptzWindow->hide();
    auto* ptzMgr = new CPtzControlMgr(ptzWindow, this);
    ptzMgr->SetPlayWindows(m_listPlayWnd);

    QList<QWidget*> windows;
    for (CStreamPlayWindowWithTask* w : m_listPlayWnd)
        windows.append(w);
    m_pLayoutMgr = new aiguitoolkit::CWidgetLayoutMgr(this);
    m_pLayoutMgr->Init(QCoreApplication::applicationDirPath() + QStringLiteral("/WidgetLayout/WidgetLayout.xml"),
        windows, m_pFullScreen, 2);

    m_pSelectCutNum = new aiguitoolkit::CCutNumFrame(this);
    m_pSelectCutNum->setObjectName(QStringLiteral("m_pSelectCutNum"));
    m_pSelectCutNum->hide();
    connect(m_pSelectCutNum, &aiguitoolkit::CCutNumFrame::SignalClickedBtn, this, &BTShowLiveView::OnCutBtnNumClicked);
    m_pSelectCutNum->SetMaxWndNum(m_listPlayWnd.size(), true);

    connect(m_pStopAllBtn, &QToolButton::clicked, this, &BTShowLiveView::OnCloseAllBtnClicked);
    connect(m_pCutWndBtn, &QToolButton::clicked, this, &BTShowLiveView::OnCutWndBtnPressed);
    connect(m_pFullScreenBtn, &QToolButton::clicked, this, &BTShowLiveView::OnFullScreenBtnPressed);

    m_pSelectBoder = new CSelectBoder(m_pFullScreen);
    m_pSelectBoder->lower();
    m_pSelectBoder->show();
    SelectWindow(m_listPlayWnd.first());
}

void BTShowLiveView::OnVideoSystemConfigChanged()
{
    const publicdatacontroller::StreamSettings settings = CurrentStreamSettings();
    for (CStreamPlayWindowWithTask* w : m_listPlayWnd)
        w->SetStreamSettings(settings);
}

bool BTShowLiveView::StartCamera(CStreamPlayWindowWithTask* window, const std::string& cameraId, int value)
{
    window->StopPreview();
    window->SetStreamSettings(CurrentStreamSettings());
    // A camera the model no longer knows still takes its window (which says
    // so), so it stays in the saved state until the operator closes it.
    if (!window->StartPreview(cameraId, value, 0, 0))
        return false;
    m_mapOpenViews[window] = cameraId;
    return true;
}

void BTShowLiveView::restorePlayingCameras(const QStringList& cameraIds)
{
    for (int i = 0; i < cameraIds.size() && i < m_listPlayWnd.size(); ++i) {
        if (!cameraIds[i].isEmpty())
            StartCamera(m_listPlayWnd[i], cameraIds[i].toStdString(), 100);
    }
}

void BTShowLiveView::stopAllLiveView()
{
    OnCloseAllBtnClicked();
}

void BTShowLiveView::SelectFreeWindow()
{
    if (m_pLayoutMgr == nullptr)
        return;
    for (QWidget* w : m_pLayoutMgr->DisplayedWindows()) {
        auto* window = static_cast<CStreamPlayWindowWithTask*>(w);
        if (!m_mapOpenViews.contains(window)) {
            SelectWindow(window);
            return;
        }
    }
}

void BTShowLiveView::OpenCamera(const std::string& cameraId, int value)
{
    if (m_pSelectedWnd == nullptr || cameraId.empty())
        return;
    StartCamera(m_pSelectedWnd, cameraId, value);
}

void BTShowLiveView::RemoveCamera(const std::string& cameraId)
{
    for (CStreamPlayWindowWithTask* w : m_listPlayWnd)
        if (m_mapOpenViews.value(w) == cameraId) {
            m_mapOpenViews.remove(w);
            w->StopPreview();
        }
}

QList<QByteArray> BTShowLiveView::GetPlayingCameraIds() const
{
    QList<QByteArray> ids;
    for (const std::string& id : openViewCameraIds())
        ids.append(QByteArray::fromStdString(id));
    return ids;
}

QVector<std::string> BTShowLiveView::openViewCameraIds() const
{
    QVector<std::string> ids;
    for (CStreamPlayWindowWithTask* w : m_listPlayWnd) {
        auto it = m_mapOpenViews.constFind(w);
        if (it != m_mapOpenViews.constEnd())
            ids.append(it.value());
    }
    return ids;
}

void BTShowLiveView::OnSoundBtnClicked()
{
    if (m_pSelectedWnd == nullptr)
        return;
    if (m_pSelectedWnd->IsSoundOpen()) {
        m_pSelectedWnd->CloseSound();
        return;
    }
    if (!m_pSelectedWnd->OpenSound())
        VantorGUIToolkit::CInformationDlg::ShowInformationAtScreenRightBottom(tr("OpeningSoundFailed"));
}

void BTShowLiveView::OnCloseAllBtnClicked()
{
    for (CStreamPlayWindowWithTask* w : m_listPlayWnd)
        w->StopPreview();
    m_mapOpenViews.clear();
}

void BTShowLiveView::OnCutWndBtnPressed()
{
    if (m_pSelectCutNum == nullptr)
        return;
    m_pSelectCutNum->setFocusPolicy(Qt::StrongFocus);
    m_pSelectCutNum->adjustSize();
    const QPoint global = m_pCutWndBtn->mapToGlobal(QPoint(0, 0));
    m_pSelectCutNum->move(global.x() - (m_pSelectCutNum->width() - m_pCutWndBtn->width()),
        global.y() - m_pSelectCutNum->height());
    m_pSelectCutNum->show();
}

void BTShowLiveView::OnFullScreenBtnPressed()
{
    if (m_pFullScreen == nullptr)
        return;
    if (!m_pFullScreen->IsFullScreen())
        m_pFullScreen->EnterFullScreen();
    if (m_pSelectedWnd != nullptr && m_pLayoutMgr != nullptr && m_pLayoutMgr->MaximizedWindow() != m_pSelectedWnd) {
        // Maximise and restore at once: this re-lays the grid inside the full-screen container.
        m_pLayoutMgr->MaximizeWindow(m_pSelectedWnd);
        m_pLayoutMgr->RestoreNormal();
    }
}

void BTShowLiveView::OnPlayWindowSelected()
{
    SelectWindow(qobject_cast<CStreamPlayWindowWithTask*>(sender()));
}

void BTShowLiveView::SelectWindow(CStreamPlayWindowWithTask* window)
{
    if (window == nullptr || !m_listPlayWnd.contains(window))
        return;
    if (m_pSelectedWnd != nullptr && m_pSelectedWnd != window)
        m_pSelectedWnd->SetSelected(false);
    m_pSelectedWnd = window;
    window->SetSelected(true);
    if (m_pSelectBoder != nullptr) {
        m_pSelectBoder->SetTarget(window);
        m_pSelectBoder->lower();
    }
    // Lets the tree show which camera the selected window plays.
    if (window->IsPreviewing())
        emit signalUpdateGroupSelectState(window->GetPreviewCameraID());
}

void BTShowLiveView::OnWindowPlayState() {}

void BTShowLiveView::OnWindowDoubleClicked()
{
    auto* window = qobject_cast<CStreamPlayWindowWithTask*>(sender());
    if (window == nullptr || m_pLayoutMgr == nullptr)
        return;
    if (m_pLayoutMgr->MaximizedWindow() == window)
        m_pLayoutMgr->RestoreNormal();
    else
        m_pLayoutMgr->MaximizeWindow(window);
}

void BTShowLiveView::OnCutBtnNumClicked(int iWndNum)
{
    if (m_listPlayWnd.isEmpty() || iWndNum == 0 || m_pLayoutMgr == nullptr)
        return;
    if (m_pSelectedWnd != nullptr && m_pLayoutMgr->MaximizedWindow() == m_pSelectedWnd)
        m_pLayoutMgr->RestoreNormal();
    if (iWndNum != m_pLayoutMgr->GetCurrentType()) {
        m_pLayoutMgr->Redisplay(iWndNum);
        if (m_pSelectedWnd != nullptr && m_pSelectedWnd->GetIndex() >= m_pLayoutMgr->WindowCountOf(iWndNum))
            SelectWindow(m_listPlayWnd.first());
    }
}

void BTShowLiveView::OnUpdateLiveViewState(CLiveViewEvent eventLiveView)
{
    // A window that stopped by itself (its close button) leaves the table of open views.
    if (auto* window = qobject_cast<CStreamPlayWindowWithTask*>(sender());
        window != nullptr && eventLiveView.GetEventType() == CLiveViewEvent::PreviewStopped)
        m_mapOpenViews.remove(window);

    if (eventLiveView.GetEventType() == CLiveViewEvent::PreviewStopped && !m_listPlayWnd.isEmpty()) {
        for (CStreamPlayWindowWithTask* w : m_listPlayWnd) {
            // The camera still plays in another window: its icon stays at playing.
            if (w->IsPreviewing() && w->GetPreviewCameraID() == eventLiveView.GetCameraID())
                return;
        }
    }
    if (m_pCameraTree)
        m_pCameraTree->UpdateCameraState(eventLiveView);
}

void BTShowLiveView::onDropAccept(QDropEvent* event)
{
    auto* window = qobject_cast<CStreamPlayWindowWithTask*>(sender());
    if (event == nullptr || event->mimeData() == nullptr || window == nullptr)
        return;
    const QString group = event->mimeData()->property("GroupGUID").toString();
    const QString camera = event->mimeData()->property("CameraGUID").toString();
    if (group.isEmpty() || camera.isEmpty())
        return;
    const std::string cameraId = camera.toStdString();
    if (m_mapOpenViews.contains(window) && m_mapOpenViews.value(window) == cameraId)
        return;
    if (StartCamera(window, cameraId, 100))
        SelectWindow(window);
}

void BTShowLiveView::resizeEvent(QResizeEvent* event)
{
    emit SignalResized();
    QWidget::resizeEvent(event);
}

} // namespace BodyTemperature
