#pragma once
// The host's logic model of the camera tree: one row per area with its cameras
// as children, built from the group manager (the host's device list). Item
// roles carry the node data the pages filter and decorate on. Elements are
// owned by the model. The availability flags of cameras follow the
// communication layer's device-state notifier (signals on the GUI thread);
// a device it has not heard from reads as unreachable. GUI thread.
#include <QStandardItemModel>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "UiDataController/ICamera.h"
#include "clientcommonlogical/CGroupManagerDeletage.h"

namespace UiDataController {

enum LogicModelRole {
    RoleDecoration = Qt::DecorationRole,   // 1: state icon
    RoleRightPixmap = 436,                 // play button picture
    RoleRightPixmapTip = 466,              // play button tooltip
    RoleNodeType = 657,                    // 1 area, 2 camera
    RoleGroupID = 659,
    RoleCameraID = 662,
    RoleFilter = 767,                      // value a proxy filters on
};

enum NodeType { NodeArea = 1, NodeCamera = 2 };

// Options of the host model; the pages pass defaults.
struct StruResouceOfElementParam {
    bool bShowOffline = true;
    bool bShowEmptyArea = true;
    std::string strFilter;
    int iElementMask = 256;
    int iReserved[4] = {0, 0, 0, 0};
};

class CLogicModel : public QStandardItemModel {
    Q_OBJECT
public:
    CLogicModel(const StruResouceOfElementParam& param,
        std::shared_ptr<clientcommonlogical::CGroupManagerDeletage> groups, QObject* parent);
    ~CLogicModel() override;

    // Rebuilds rows from the group manager (emits the usual row signals).
    void Reload();

    std::vector<std::string> GetAreaIDs() const;
    // Identifiers of the cameras of one area, in row order.
    std::vector<std::string> GetElementIDsOfArea(const std::string& areaId) const;
    QModelIndex GetElementIndexByElementID(const std::string& elementId) const;
    vantordesk::IElement* GetElementByID(const std::string& elementId) const;
    // The element of a row of this model or of a proxy over it.
    vantordesk::IElement* GetElementByIndex(const QModelIndex& index) const;
    // Camera identifiers in tree order (areas, then their cameras).
    std::vector<std::string> GetAllCameraIDs() const;

    // Applies a change of availability (the device, or one channel when channel > 0).
    void SetDeviceOnline(const std::string& deviceId, bool online);
    void SetChannelOnline(const std::string& deviceId, int channel, bool online);

signals:
    // A camera's availability changed; its row's data may need refreshing.
    void signalCameraStateChanged(const QString& cameraId);

private:
    class Area;
    class Camera;
    QStandardItem* ItemOf(const std::string& elementId) const;

    StruResouceOfElementParam m_param;
    std::shared_ptr<clientcommonlogical::CGroupManagerDeletage> m_groups;
    std::map<std::string, std::unique_ptr<vantordesk::IElement>> m_elements;
    std::vector<std::string> m_areaOrder;
};

} // namespace UiDataController
