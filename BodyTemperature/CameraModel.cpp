#include "CameraModel.h"

#include <QHash>
#include <QIcon>
#include <QPixmap>

#include "Base/CSingleton.h"
#include "CAppRscManager.h"

namespace BodyTemperature {
namespace {
QPixmap PlayButtonPixmap()
{
    return QPixmap(QStringLiteral(":/publicIcon/Images/public/PublicIcon/PlaywithBg.svg"));
}
} // namespace

CameraModel::CameraModel(QObject* parent, const UiDataController::StruResouceOfElementParam& options, bool showPreviewButtons)
    : UiDataController::CLogicModel(options, Base::CSingleton<CAppRscManager>::Instance()->GetGroupManager(), parent)
    , m_bShowPreviewButtons(showPreviewButtons)
{
    setColumnCount(1);
    setHeaderData(0, Qt::Horizontal, tr("All"), Qt::EditRole);
    setHeaderData(0, Qt::Horizontal, 129, Qt::TextAlignmentRole);
    for (const std::string& cameraId : GetAllCameraIDs())
        UpdateCameraIcon(GetElementIndexByElementID(cameraId), false);
    connect(this, &UiDataController::CLogicModel::signalCameraStateChanged, this, &CameraModel::OnCameraStateChanged);
    if (!m_bShowPreviewButtons)
        return;
    for (const std::string& areaId : GetAreaIDs())
        DecorateArea(areaId, tr("Preview"));
    connect(this, &QAbstractItemModel::rowsInserted, this, &CameraModel::OnGroupRowsAdd);
}

CameraModel::CameraModel(QObject* parent, bool showPreviewButtons)
    : CameraModel(parent, UiDataController::StruResouceOfElementParam(), showPreviewButtons)
{
}

CameraModel::~CameraModel() = default;

void CameraModel::DecorateArea(const std::string& areaId, const QString& tooltip)
{
    const QPixmap play = PlayButtonPixmap();
    for (const std::string& elementId : GetElementIDsOfArea(areaId)) {
        const QModelIndex index = GetElementIndexByElementID(elementId);
        if (!index.isValid())
            continue;
        setData(index, play, UiDataController::RoleRightPixmap);
        setData(index, tooltip, UiDataController::RoleRightPixmapTip);
    }
}

void CameraModel::OnGroupRowsAdd(const QModelIndex& miParent, int iStart, int)
{
    const QModelIndex index = this->index(iStart, 0, miParent);
    if (!index.isValid())
        return;
    const QVariant type = index.data(UiDataController::RoleNodeType);
    if (!type.isValid())
        return;
    switch (type.toInt()) {
    case UiDataController::NodeArea:
        DecorateArea(index.data(UiDataController::RoleGroupID).toString().toStdString(), tr("Preview"));
        break;
    case UiDataController::NodeCamera:
        // A camera that arrives later carries the group's tooltip; intended.
        setData(index, PlayButtonPixmap(), UiDataController::RoleRightPixmap);
        setData(index, tr("ViewAllCamerasInGroup"), UiDataController::RoleRightPixmapTip);
        UpdateCameraIcon(index, false);
        break;
    default:
        break;
    }
}

void CameraModel::UpdateCameraIcon(const QModelIndex& index, bool playing)
{
    if (!index.isValid())
        return;
    vantordesk::IElement* element = GetElementByIndex(index);
    if (element == nullptr || element->GetElementType() != vantordesk::ElementCamera)
        return;
    const auto* camera = dynamic_cast<vantordesk::ICamera*>(element);
    if (camera == nullptr)
        return;
    QString icon;
    if (!camera->IsDeviceOnline() || !camera->IsChannelOnline())
        icon = QStringLiteral(":/publicIcon/Images/public/PublicIcon/CameraOffline.svg");
    else if (playing)
        icon = QStringLiteral(":/publicIcon/Images/public/PublicIcon/CameraPlaying.svg");
    else
        icon = QStringLiteral(":/publicIcon/Images/public/PublicIcon/Camera.svg");
    setData(index, playing, PlayingRole);
    // Three pictures shared by every row.
    static QHash<QString, QIcon> icons;
    auto it = icons.find(icon);
    if (it == icons.end())
        it = icons.insert(icon, QIcon(icon));
    setData(index, it.value(), Qt::DecorationRole);
    setData(index, icon, IconPathRole);
}

bool CameraModel::IsCameraPlaying(const QModelIndex& index) const
{
    return index.data(PlayingRole).toBool();
}

void CameraModel::OnCameraStateChanged(const QString& cameraId)
{
    const QModelIndex index = GetElementIndexByElementID(cameraId.toStdString());
    UpdateCameraIcon(index, IsCameraPlaying(index));
}

} // namespace BodyTemperature
