#include "publicdatacontroller/CDeviceCombinationModel.h"

#include "clientcommonlogical/CConfigMgr.h"

namespace publicdatacontroller {

CDeviceCombinationModel::CDeviceCombinationModel(QObject* parent) : QStandardItemModel(parent)
{
    Reload();
}

CDeviceCombinationModel::~CDeviceCombinationModel() = default;

void CDeviceCombinationModel::Reload()
{
    clear();
    for (const clientcommonlogical::DeviceConfig& d : clientcommonlogical::CConfigMgr::Instance()->GetDevices()) {
        auto* item = new QStandardItem(QString::fromStdString(d.name.empty() ? d.id : d.name));
        item->setData(QString::fromStdString(d.id), DeviceIDRole);
        item->setToolTip(QString::fromStdString(d.id));
        item->setEditable(false);
        appendRow(item);
    }
}

int CDeviceCombinationModel::RowOfDevice(const std::string& deviceId) const
{
    const QString id = QString::fromStdString(deviceId);
    for (int r = 0; r < rowCount(); ++r)
        if (item(r)->data(DeviceIDRole).toString() == id)
            return r;
    return -1;
}

std::string CDeviceCombinationModel::ResolveDevice(const std::string& deviceOrCameraId)
{
    auto* config = clientcommonlogical::CConfigMgr::Instance();
    clientcommonlogical::DeviceConfig dev;
    if (config->FindDevice(deviceOrCameraId, dev))
        return dev.id;
    for (const clientcommonlogical::DeviceConfig& d : config->GetDevices())
        for (const clientcommonlogical::ChannelConfig& ch : d.channels)
            if (ch.cameraId == deviceOrCameraId)
                return d.id;
    return std::string();
}

} // namespace publicdatacontroller
