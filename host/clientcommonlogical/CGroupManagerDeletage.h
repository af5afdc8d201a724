#pragma once
// The host's group manager: areas (groups) and the cameras in them, built
// from the configured devices. GUI thread. (The class name's spelling is the host's.)
// Objects the host keeps must be made by Create(), so that the shared_ptr's
// control block lives in the host's library and outlives an unloaded module.
#include <memory>
#include <string>
#include <vector>

namespace clientcommonlogical {

struct CameraInfo {
    std::string id;         // camera identifier
    std::string name;
    std::string deviceId;
    int channel = 0;
    std::string groupId;
};

struct GroupInfo {
    std::string id;
    std::string name;
    std::vector<CameraInfo> cameras;
};

class CGroupManagerDeletage {
public:
    static std::shared_ptr<CGroupManagerDeletage> Create();
    CGroupManagerDeletage();
    virtual ~CGroupManagerDeletage();

    // Rebuilds the groups from the host configuration's device list.
    void Reload();
    const std::vector<GroupInfo>& Groups() const { return m_groups; }
    bool FindCamera(const std::string& cameraId, CameraInfo& out) const;

private:
    std::vector<GroupInfo> m_groups;
};

} // namespace clientcommonlogical
