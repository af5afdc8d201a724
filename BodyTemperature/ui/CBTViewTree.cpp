#include "ui/CBTViewTree.h"

#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QPixmap>

#include "Base/CSingleton.h"
#include "CAppRscManager.h"
#include "CameraModel.h"
#include "aiguitoolkit/CAITreeViewWithRightPixmapDelegate.h"
#include "playwindow/CLiveViewEvent.h"

namespace BodyTemperature {
namespace {
CameraModel* Model()
{
    return Base::CSingleton<CAppRscManager>::Instance()->GetCameraModel();
}
} // namespace

CBTViewTree::CBTViewTree(QWidget* parent) : aiguitoolkit::CAIExpandTreeView(parent)
{
    setObjectName(QStringLiteral("m_pCameraTree"));
    setMouseTracking(true);
    setAcceptDrops(true);
    setDragEnabled(true);
    setDragDropMode(QAbstractItemView::DragOnly);
    setItemDelegate(new aiguitoolkit::CAITreeViewWithRightPixmapDelegate(this));
    SetDefaultMenuEnabled(false);
    setContextMenuPolicy(Qt::CustomContextMenu);
    connect(this, &QWidget::customContextMenuRequested, this, &CBTViewTree::OnShowMenu);
    connect(this, &aiguitoolkit::CAIExpandTreeView::SignalClicked, this, &CBTViewTree::OnItemClicked);
}

CBTViewTree::~CBTViewTree() = default;

void CBTViewTree::setModel(QAbstractItemModel* model)
{
    if (this->model() != nullptr)
        disconnect(this->model(), nullptr, this, nullptr);
    aiguitoolkit::CAIExpandTreeView::setModel(model);
    if (model == nullptr)
        return;
    expandAll();
    connect(model, &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex& parent, int first, int last) {
        for (int r = first; r <= last; ++r)
            expand(this->model()->index(r, 0, parent));
    });
}

void CBTViewTree::OnItemClicked(const QModelIndex& index, VantorGUIToolkit::CItemDataRole enumTypeRole)
{
    if (index.data(UiDataController::RoleNodeType).toInt() == UiDataController::NodeCamera
        && index.data(UiDataController::RoleRightPixmap).isValid()
        && enumTypeRole == VantorGUIToolkit::ItemRightPixmapRole)
        emit signalStartLiveView(index);
}

void CBTViewTree::mousePressEvent(QMouseEvent* event)
{
    aiguitoolkit::CAIExpandTreeView::mousePressEvent(event);
    if (event->button() == Qt::LeftButton)
        m_ptPress = event->pos();
    const QModelIndex index = indexAt(event->pos());
    if (index.isValid())
        setCurrentIndex(index);
}

void CBTViewTree::mouseReleaseEvent(QMouseEvent* event)
{
    m_ptPress = QPoint();
    aiguitoolkit::CAIExpandTreeView::mouseReleaseEvent(event);
}

void CBTViewTree::mouseMoveEvent(QMouseEvent* event)
{
    const QModelIndex index = indexAt(event->pos());
    if (index.data(UiDataController::RoleNodeType).toInt() == UiDataController::NodeCamera) {
        // A camera row the model no longer knows as a camera starts nothing.
        vantordesk::IElement* element = Model()->GetElementByID(index.data(UiDataController::RoleCameraID).toString().toStdString());
        if (element == nullptr || element->GetElementType() != vantordesk::ElementCamera)
            return;
    }
    aiguitoolkit::CAIExpandTreeView::mouseMoveEvent(event);
}

bool CBTViewTree::DragDataOf(const QModelIndex& index, DragData& out) const
{
    out = DragData();
    CameraModel* model = Model();
    switch (index.data(UiDataController::RoleNodeType).toInt()) {
    case UiDataController::NodeArea: {
        vantordesk::IElement* area = model->GetElementByID(index.data(UiDataController::RoleGroupID).toString().toStdString());
        if (area != nullptr)
            out.groupGuid = QString::fromStdString(area->GetElementID());
        out.pixmap = QStringLiteral(":/public/btn/Public/Group.svg");
        return true;
    }
    case UiDataController::NodeCamera: {
        const QString cameraId = index.data(UiDataController::RoleCameraID).toString();
        vantordesk::IElement* element = model->GetElementByID(cameraId.toStdString());
        if (element == nullptr || element->GetElementType() != vantordesk::ElementCamera)
            return false;
        out.cameraGuid = cameraId;
        out.groupGuid = QString::fromStdString(element->GetGroupID());
        out.pixmap = QStringLiteral(":/public/btn/Public/Camera.svg");
        return true;
    }
    default:
        // Carries nothing; the live view ignores such a drop.
        out.pixmap = QStringLiteral(":/public/btn/Public/Group.svg");
        return true;
    }
}

QMimeData* CBTViewTree::CreateMimeData(const DragData& data)
{
    auto* mime = new QMimeData;
    mime->setProperty("GroupGUID", data.groupGuid);
    mime->setProperty("CameraGUID", data.cameraGuid);
    return mime;
}

void CBTViewTree::startDrag(Qt::DropActions)
{
    DragData dragData;
    if (!DragDataOf(currentIndex(), dragData))
        return;
    auto* drag = new QDrag(this);
    drag->setMimeData(CreateMimeData(dragData));
    drag->setPixmap(QPixmap(dragData.pixmap));
    drag->exec(Qt::CopyAction);
}

void CBTViewTree::UpdateCameraState(const CLiveViewEvent& eventLiveView)
{
    CameraModel* model = Model();
    if (model == nullptr)
        return;
    const QModelIndex index = model->GetElementIndexByElementID(eventLiveView.GetCameraID());
    if (!index.isValid())
        return;
    switch (eventLiveView.GetEventType()) {
    case CLiveViewEvent::PreviewStarted:
    case CLiveViewEvent::PreviewRestarted:
        model->UpdateCameraIcon(index, true);
        break;
    case CLiveViewEvent::PreviewStopped:
        model->UpdateCameraIcon(index, false);
        break;
    default:
        break;
    }
}

} // namespace BodyTemperature
