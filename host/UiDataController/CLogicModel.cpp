#include "UiDataController/CLogicModel.h"

#include "clientcommonlogical/CConfigMgr.h"
#include "commlayer/CDeviceStateNotifier.h"

namespace UiDataController {

class CLogicModel::Area final : public vantordesk::IElement {
public:
    Area(std::string id, std::string name) : m_id(std::move(id)), m_name(std::move(name)) {}
    int GetElementType() const override { return vantordesk::ElementArea; }
    std::string GetElementID() const override { return m_id; }
    std::string GetElementName() const override { return m_name; }
    std::string GetGroupID() const override { return m_id; }
    std::vector<std::string> cameras;

private:
    std::string m_id;
    std::string m_name;
};

class CLogicModel::Camera final : public vantordesk::ICamera {
public:
    Camera(const clientcommonlogical::CameraInfo& info, std::string url) : m_info(info), m_url(std::move(url)) {}
    std::string GetElementID() const override { return m_info.id; }
    std::string GetElementName() const override { return m_info.name; }
    std::string GetGroupID() const override { return m_info.groupId; }
    std::string GetDeviceID() const override { return m_info.deviceId; }
    int GetChannel() const override { return m_info.channel; }
    std::string GetStreamUrl() const override { return m_url; }
    bool IsDeviceOnline() const override { return m_deviceOnline; }
    bool IsChannelOnline() const override { return m_channelOnline; }
    bool m_deviceOnline = true;
    bool m_channelOnline = true;

private:
    clientcommonlogical::CameraInfo m_info;
    std::string m_url;
};

CLogicModel::CLogicModel(const StruResouceOfElementParam& param,
    std::shared_ptr<clientcommonlogical::CGroupManagerDeletage> groups, QObject* parent)
    : QStandardItemModel(parent), m_param(param), m_groups(std::move(groups))
{
    setColumnCount(1);
    auto* notifier = commlayer::CDeviceStateNotifier::Instance();
    connect(notifier, &commlayer::CDeviceStateNotifier::signalDeviceOnline, this,
        [this](const QString& deviceId, bool online) { SetDeviceOnline(deviceId.toStdString(), online); });
    connect(notifier, &commlayer::CDeviceStateNotifier::signalChannelOnline, this,
        [this](const QString& deviceId, int channel, bool online) { SetChannelOnline(deviceId.toStdString(), channel, online); });
    Reload();
}

CLogicModel::~CLogicModel() = default;

void CLogicModel::Reload()
{
    removeRows(0, rowCount());
    m_elements.clear();
    m_areaOrder.clear();
    if (!m_groups)
        return;
    const auto devices = clientcommonlogical::CConfigMgr::Instance()->GetDevices();
    auto urlOf = [&devices](const clientcommonlogical::CameraInfo& cam) {
        for (const auto& dev : devices)
            if (dev.id == cam.deviceId)
                for (const auto& ch : dev.channels)
                    if (ch.channel == cam.channel)
                        return ch.streamUrl;
        return std::string();
    };
    for (const clientcommonlogical::GroupInfo& group : m_groups->Groups()) {
        auto area = std::make_unique<Area>(group.id, group.name);
        Area* pArea = area.get();
        m_elements[group.id] = std::move(area);
        m_areaOrder.push_back(group.id);
        auto* areaItem = new QStandardItem(QString::fromStdString(group.name));
        areaItem->setEditable(false);
        areaItem->setData(NodeArea, RoleNodeType);
        areaItem->setData(QString::fromStdString(group.id), RoleGroupID);
        areaItem->setData(1, RoleFilter);
        // The area row goes in first so rowsInserted reports areas and cameras separately.
        appendRow(areaItem);
        for (const clientcommonlogical::CameraInfo& cam : group.cameras) {
            if (m_elements.count(cam.id) != 0)
                continue;  // a camera listed twice keeps its first area
            auto camera = std::make_unique<Camera>(cam, urlOf(cam));
            // What the device-state notifier knows now; a device it has not
            // heard from yet counts as unreachable until it reports.
            const QString deviceId = QString::fromStdString(cam.deviceId);
            camera->m_deviceOnline = commlayer::CDeviceStateNotifier::Instance()->IsDeviceOnline(deviceId);
            camera->m_channelOnline = commlayer::CDeviceStateNotifier::Instance()->IsChannelOnline(deviceId, cam.channel);
            m_elements[cam.id] = std::move(camera);
            pArea->cameras.push_back(cam.id);
            auto* camItem = new QStandardItem(QString::fromStdString(cam.name.empty() ? cam.id : cam.name));
            camItem->setEditable(false);
            camItem->setData(NodeCamera, RoleNodeType);
            camItem->setData(QString::fromStdString(cam.groupId), RoleGroupID);
            camItem->setData(QString::fromStdString(cam.id), RoleCameraID);
            camItem->setData(2, RoleFilter);
            camItem->setToolTip(QString::fromStdString(cam.name));
            areaItem->appendRow(camItem);
        }
    }
}

std::vector<std::string> CLogicModel::GetAreaIDs() const
{
    return m_areaOrder;
}

std::vector<std::string> CLogicModel::GetElementIDsOfArea(const std::string& areaId) const
{
    auto it = m_elements.find(areaId);
    if (it == m_elements.end() || it->second->GetElementType() != vantordesk::ElementArea)
        return {};
    return static_cast<Area*>(it->second.get())->cameras;
}

QStandardItem* CLogicModel::ItemOf(const std::string& elementId) const
{
    if (elementId.empty())
        return nullptr;
    const QString id = QString::fromStdString(elementId);
    for (int r = 0; r < rowCount(); ++r) {
        QStandardItem* area = item(r);
        if (area->data(RoleNodeType).toInt() == NodeArea && area->data(RoleGroupID).toString() == id)
            return area;
        for (int c = 0; c < area->rowCount(); ++c) {
            QStandardItem* cam = area->child(c);
            if (cam->data(RoleCameraID).toString() == id)
                return cam;
        }
    }
    return nullptr;
}

QModelIndex CLogicModel::GetElementIndexByElementID(const std::string& elementId) const
{
    QStandardItem* it = ItemOf(elementId);
    return it ? it->index() : QModelIndex();
}

vantordesk::IElement* CLogicModel::GetElementByID(const std::string& elementId) const
{
    auto it = m_elements.find(elementId);
    return it == m_elements.end() ? nullptr : it->second.get();
}

vantordesk::IElement* CLogicModel::GetElementByIndex(const QModelIndex& index) const
{
    // Works for indexes of a proxy over this model too: the roles carry the identifiers.
    if (!index.isValid())
        return nullptr;
    const int type = index.data(RoleNodeType).toInt();
    if (type == NodeCamera)
        return GetElementByID(index.data(RoleCameraID).toString().toStdString());
    if (type == NodeArea)
        return GetElementByID(index.data(RoleGroupID).toString().toStdString());
    return nullptr;
}

std::vector<std::string> CLogicModel::GetAllCameraIDs() const
{
    std::vector<std::string> ids;
    for (const std::string& areaId : m_areaOrder)
        for (const std::string& cam : GetElementIDsOfArea(areaId))
            ids.push_back(cam);
    return ids;
}

void CLogicModel::SetDeviceOnline(const std::string& deviceId, bool online)
{
    for (auto& kv : m_elements) {
        if (kv.second->GetElementType() != vantordesk::ElementCamera)
            continue;
        auto* cam = static_cast<Camera*>(kv.second.get());
        if (cam->GetDeviceID() == deviceId && cam->m_deviceOnline != online) {
            cam->m_deviceOnline = online;
            emit signalCameraStateChanged(QString::fromStdString(kv.first));
        }
    }
}

void CLogicModel::SetChannelOnline(const std::string& deviceId, int channel, bool online)
{
    for (auto& kv : m_elements) {
        if (kv.second->GetElementType() != vantordesk::ElementCamera)
            continue;
        auto* cam = static_cast<Camera*>(kv.second.get());
        if (cam->GetDeviceID() == deviceId && cam->GetChannel() == channel && cam->m_channelOnline != online) {
            cam->m_channelOnline = online;
            emit signalCameraStateChanged(QString::fromStdString(kv.first));
        }
    }
}

} // namespace UiDataController
