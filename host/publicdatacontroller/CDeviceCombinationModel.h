#pragma once
// The host's devices as a flat list model for device combo boxes: one row per
// configured device (clientcommonlogical::CConfigMgr), its name as text and
// its identifier in DeviceIDRole. Views show it through a sorting proxy.
// GUI thread; Reload() after the configuration changed.
#include <QStandardItemModel>
#include <string>

namespace publicdatacontroller {

class CDeviceCombinationModel final : public QStandardItemModel {
    Q_OBJECT
public:
    static constexpr int DeviceIDRole = Qt::UserRole + 1;

    explicit CDeviceCombinationModel(QObject* parent = nullptr);
    ~CDeviceCombinationModel() override;

    void Reload();
    // Row of the device, -1 when it is not listed.
    int RowOfDevice(const std::string& deviceId) const;
    // The device a camera belongs to, or the identifier itself when it names
    // a device; empty when neither is configured.
    static std::string ResolveDevice(const std::string& deviceOrCameraId);
};

} // namespace publicdatacontroller
