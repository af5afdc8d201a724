#include "ui/CBodyTemperatureDlg.h"

#include <QCursor>
#include <QFile>
#include <QFrame>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QResizeEvent>
#include <QScreen>
#include <QScrollBar>
#include <QStringList>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

#include "AlarmListener.h"
#include "Base/CSingleton.h"
#include "CAppRscManager.h"
#include "CameraModel.h"
#include "UiDataController/CLogicModel.h"
#include "VantorGUIToolkit/CSecondarySortFilterModel.h"
#include "ui/AddIntoFaceLib/CBTAddFaceWnd.h"
#include "ui/BTShowLiveView.h"
#include "ui/BTShowTitle.h"
#include "ui/CBTShowWidget.h"
#include "ui/CBTViewTree.h"
#include "ui/History/CHistoryWindow.h"
#include "ui/ShowCard/CComparisonDetail.h"
#include "ui/ShowCard/ReCustomer/CFrequenterUnit.h"

namespace BodyTemperature {

namespace {

constexpr int kLeftFrameWidth = 278;
constexpr float kShrinkButtonHeightRatio = 0.48333332f;

void repolish(QWidget* w)
{
    w->style()->unpolish(w);
    w->style()->polish(w);
}

QString loadStyleSheet()
{
    QFile file(QStringLiteral(":/BodyTemperature/Qss/BodyTemperature/BodyTemperature.qss"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QByteArray text = file.readAll();
    const int zero = text.indexOf('\0');
    if (zero >= 0)
        text.truncate(zero);
    return QString::fromUtf8(text);
}

} // namespace

CBodyTemperatureDlg::CBodyTemperatureDlg(QWidget* parent) : QWidget(parent)
{
    buildForm();
    Base::CSingleton<CAppRscManager>::Instance()->Init();
    const QString style = loadStyleSheet();
    if (!style.isEmpty()) {
        setStyleSheet(style);
        m_pShowWidget->setStyleSheet(style);
        // When an ancestor (the host's window) has a sheet of its own, scroll
        // bars polished before this sheet arrived keep their old metrics and
        // look; polish them again so they take the module's thin bars.
        for (QScrollBar* bar : findChildren<QScrollBar*>()) {
            bar->style()->unpolish(bar);
            bar->style()->polish(bar);
        }
    }
    setUp();
    m_pAlarmListener = new AlarmListener(this);
    connect(m_pAlarmListener, &AlarmListener::signalNewAlarmComing, this, &CBodyTemperatureDlg::onNewAlarmComing);
    connect(m_pShowWidget, &CBTShowWidget::signalNum, this, &CBodyTemperatureDlg::onUpdateNum);
    setAcceptDrops(true);
}

CBodyTemperatureDlg::~CBodyTemperatureDlg() = default;

void CBodyTemperatureDlg::buildForm()
{
    setObjectName(QStringLiteral("BodyTemperatureDlg"));
    resize(1911, 1080);
    auto* gridLayout = new QGridLayout(this);
    gridLayout->setObjectName(QStringLiteral("gridLayout"));
    gridLayout->setSpacing(0);
    gridLayout->setContentsMargins(0, 0, 0, 0);

    m_pMainFrame = new QFrame(this);
    m_pMainFrame->setObjectName(QStringLiteral("m_pMainFrame"));
    gridLayout->addWidget(m_pMainFrame, 0, 0);
    auto* gridLayout2 = new QGridLayout(m_pMainFrame);
    gridLayout2->setObjectName(QStringLiteral("gridLayout_2"));
    gridLayout2->setSpacing(0);
    gridLayout2->setContentsMargins(0, 0, 0, 0);

    m_pLeftFrame = new QFrame(m_pMainFrame);
    m_pLeftFrame->setObjectName(QStringLiteral("m_pLeftFrame"));
    m_pLeftFrame->setFixedWidth(kLeftFrameWidth);
    auto* verticalLayout = new QVBoxLayout(m_pLeftFrame);
    verticalLayout->setObjectName(QStringLiteral("verticalLayout"));
    verticalLayout->setSpacing(0);
    verticalLayout->setContentsMargins(0, 0, 0, 0);

    m_pToolBox = new QWidget(m_pLeftFrame);
    m_pToolBox->setObjectName(QStringLiteral("m_pToolBox"));
    m_pToolBox->setFixedHeight(40);
    auto* horizontalLayout = new QHBoxLayout(m_pToolBox);
    horizontalLayout->setObjectName(QStringLiteral("horizontalLayout"));
    auto* toolWidget = new QWidget(m_pToolBox);
    toolWidget->setObjectName(QStringLiteral("widget"));
    horizontalLayout->addWidget(toolWidget, 1);
    m_pToolBtn1 = new QPushButton(m_pToolBox);
    m_pToolBtn1->setObjectName(QStringLiteral("pushButton_2"));
    m_pToolBtn1->setFixedSize(24, 24);
    m_pToolBtn2 = new QPushButton(m_pToolBox);
    m_pToolBtn2->setObjectName(QStringLiteral("pushButton_3"));
    m_pToolBtn2->setFixedSize(24, 24);
    horizontalLayout->addWidget(m_pToolBtn1);
    horizontalLayout->addWidget(m_pToolBtn2);
    verticalLayout->addWidget(m_pToolBox);

    auto* treeFrame = new QFrame(m_pLeftFrame);
    treeFrame->setObjectName(QStringLiteral("frame"));
    auto* verticalLayout2 = new QVBoxLayout(treeFrame);
    verticalLayout2->setObjectName(QStringLiteral("verticalLayout_2"));
    verticalLayout2->setContentsMargins(0, 0, 0, 0);
    m_pCameraTree = new CBTViewTree(treeFrame);
    m_pCameraTree->setObjectName(QStringLiteral("m_pCameraTree"));
    verticalLayout2->addWidget(m_pCameraTree);
    verticalLayout->addWidget(treeFrame, 1);
    gridLayout2->addWidget(m_pLeftFrame, 0, 0);

    m_pRightWidget = new QWidget(m_pMainFrame);
    m_pRightWidget->setObjectName(QStringLiteral("m_pRightWidget"));
    auto* gridLayout3 = new QGridLayout(m_pRightWidget);
    gridLayout3->setObjectName(QStringLiteral("gridLayout_3"));
    gridLayout3->setSpacing(0);
    gridLayout3->setContentsMargins(0, 0, 0, 0);
    m_pShowWidget = new CBTShowWidget(m_pRightWidget);
    m_pShowWidget->setObjectName(QStringLiteral("AIShowAddInWidget"));
    gridLayout3->addWidget(m_pShowWidget, 0, 0);
    gridLayout2->addWidget(m_pRightWidget, 0, 1);
}

void CBodyTemperatureDlg::setUp()
{
    // 1. Tree header and camera model.
    m_pCameraTree->setHeaderHidden(true);
    m_pCameraModel = Base::CSingleton<CAppRscManager>::Instance()->GetCameraModel();
    if (m_pCameraModel != nullptr)
        connect(m_pCameraModel, &QAbstractItemModel::rowsAboutToBeRemoved, this,
            &CBodyTemperatureDlg::OnCameraGroupRemoved);

    // 2. Both ways of starting live view from the tree.
    connect(m_pCameraTree, &QAbstractItemView::doubleClicked, this, &CBodyTemperatureDlg::OnCameraTreeDoubleClicked);
    connect(m_pCameraTree, &CBTViewTree::signalStartLiveView, this, &CBodyTemperatureDlg::OnCameraTreeDoubleClicked);

    // 3. The proxy passes the filter values 0, 1 and 2.
    m_pProxyModel = new VantorGUIToolkit::CSecondarySortFilterModel(this);
    m_pProxyModel->setFilterRole(UiDataController::RoleFilter);
    const QStringList values{QString::number(0), QString::number(1), QString::number(2)};
    m_pProxyModel->setFilterRegExp(QRegExp(values.join(QStringLiteral("|"))));
    m_pProxyModel->setDynamicSortFilter(true);
    m_pProxyModel->setSourceModel(m_pCameraModel);
    m_pCameraTree->setModel(m_pProxyModel);

    // 4. The button that folds the left panel.
    m_pShrinkBtn = new QToolButton(this);
    m_pShrinkBtn->setFixedSize(11, 115);
    m_pShrinkBtn->setObjectName(QStringLiteral("m_pShrinkPushButtonrTol"));
    repolish(m_pShrinkBtn);
    placeShrinkButton();
    connect(m_pShrinkBtn, &QToolButton::clicked, this, &CBodyTemperatureDlg::OnShrinkBtnClicked);

    // 5. The tool-bar buttons have no role on this page.
    m_pToolBtn1->hide();
    m_pToolBtn2->hide();

    // 6. The statistics title, sized from the screen under the mouse.
    m_pShowTitle = new BTShowTitle(this);
    const QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    if (screen == nullptr)
        screen = QGuiApplication::primaryScreen();
    const QRect sg = screen != nullptr ? screen->geometry() : QRect(0, 0, 1920, 1080);
    m_pShowTitle->resize(sg.width() * 790 / 1920, sg.height() * 36 / 1080);
    m_pShowTitle->move(sg.width() * 565 / 1920, sg.height() * 23 / 1080);
    m_pShowTitle->raise();

    // 7. The live view takes drops and selections from the tree and builds its
    //    play windows on the same model.
    m_pShowWidget->LiveView()->SetCameraTree(m_pCameraTree);
    connect(m_pShowWidget->LiveView(), &BTShowLiveView::signalUpdateGroupSelectState, this, &CBodyTemperatureDlg::onUpdateGroupTreeSelectedCamera);
    m_pShowWidget->LiveView()->Init(m_pCameraModel);
}

void CBodyTemperatureDlg::placeShrinkButton()
{
    const int y = static_cast<int>(static_cast<float>(height()) * kShrinkButtonHeightRatio);
    if (m_bLeftFolded)
        m_pShrinkBtn->move(m_pLeftFrame->x() + 12, y);
    else
        m_pShrinkBtn->move(m_pLeftFrame->width() + 3, y);
    m_pShrinkBtn->raise();
}

void CBodyTemperatureDlg::OnShrinkBtnClicked()
{
    // The object name picks the arrow direction in the style sheet.
    if (!m_bLeftFolded) {
        m_pShrinkBtn->setObjectName(QStringLiteral("m_pShrinkPushButtonlTor"));
        repolish(m_pShrinkBtn);
        m_pLeftFrame->hide();
    } else {
        m_pShrinkBtn->setObjectName(QStringLiteral("m_pShrinkPushButtonrTol"));
        repolish(m_pShrinkBtn);
        m_pLeftFrame->show();
    }
    m_bLeftFolded = !m_bLeftFolded;
    placeShrinkButton();
}

void CBodyTemperatureDlg::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    placeShrinkButton();
}

void CBodyTemperatureDlg::OnCameraTreeDoubleClicked(const QModelIndex& miIndex)
{
    const int type = miIndex.data(UiDataController::RoleNodeType).toInt();
    if (type == UiDataController::NodeCamera) {
        // Only a camera the model knows, whose device answers and whose
        // channel has a signal, is opened.
        const auto* camera = m_pCameraModel != nullptr
            ? dynamic_cast<const vantordesk::ICamera*>(m_pCameraModel->GetElementByIndex(miIndex)) : nullptr;
        if (camera == nullptr || !camera->IsDeviceOnline() || !camera->IsChannelOnline())
            return;
        m_pShowWidget->LiveView()->OpenCamera(camera->GetElementID(), 100);
        m_pShowWidget->update();
    }
    // An area (UiDataController::NodeArea) only expands: opening all
    // its cameras at once is not offered on this page.
}

void CBodyTemperatureDlg::OnCameraGroupRemoved(const QModelIndex& miParent, int iFirst, int)
{
    if (m_pCameraModel == nullptr)
        return;
    const QModelIndex index = m_pCameraModel->index(iFirst, 0, miParent);
    if (!index.isValid())
        return;
    const QVariant cameraId = index.data(UiDataController::RoleCameraID);
    if (!cameraId.isValid() || cameraId.toString().isEmpty())
        return;
    m_pShowWidget->LiveView()->RemoveCamera(cameraId.toString().toStdString());
}

void CBodyTemperatureDlg::onUpdateGroupTreeSelectedCamera(std::string cameraGUID)
{
    if (m_pCameraModel == nullptr)
        return;
    const QModelIndex proxyIndex = m_pProxyModel->mapFromSource(m_pCameraModel->GetElementIndexByElementID(cameraGUID));
    if (proxyIndex.isValid())
        m_pCameraTree->setCurrentIndex(proxyIndex);
}

void CBodyTemperatureDlg::onNewAlarmComing(publicdatacontroller::IntelAlarmEventInfo struAlarmInfo)
{
    m_pShowWidget->DealAlarmInfo(struAlarmInfo);
}

void CBodyTemperatureDlg::onUpdateNum(int iAllNum, int iNormalNum, int iNoMaskNum, int iAbnormalNum)
{
    if (m_pShowTitle != nullptr)
        m_pShowTitle->SetNum(iAllNum, iNormalNum, iNoMaskNum, iAbnormalNum);
}

QList<QByteArray> CBodyTemperatureDlg::GetPlayingCameraIds() const
{
    return m_pShowWidget->GetPlayingCameraIds();
}

void CBodyTemperatureDlg::StopAllLiveView()
{
    m_pShowWidget->stopAllLiveView();
}

void CBodyTemperatureDlg::RestorePlayingCameras(const QStringList& cameraIds)
{
    m_pShowWidget->restorePlayingCameras(cameraIds);
}

void CBodyTemperatureDlg::SetAlarmListening(bool on)
{
    m_pAlarmListener->setAlarmListening(on);
}

void CBodyTemperatureDlg::StopBackgroundWork()
{
    CFrequenterUnit::StopAllDetails(this);
    CBTAddFaceWnd::CloseAllUnder(this);
}

void CBodyTemperatureDlg::CloseDetailWindows(QWidget* page)
{
    // A detail dialog left open would keep running its loop over a page that
    // is no longer shown.
    CComparisonDetail::CloseAllUnder(page);
    // The screening history window goes with the page it was opened from.
    for (CHistoryWindow* history : page->findChildren<CHistoryWindow*>())
        history->close();
}

} // namespace BodyTemperature
