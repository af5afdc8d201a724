#include "clientcommonlogical/CGroupManagerDeletage.h"

#include "clientcommonlogical/CConfigMgr.h"

namespace clientcommonlogical {

std::shared_ptr<CGroupManagerDeletage> CGroupManagerDeletage::Create()
{
    return std::make_shared<CGroupManagerDeletage>();
}

CGroupManagerDeletage::CGroupManagerDeletage()
{
    Reload();
}

CGroupManagerDeletage::~CGroupManagerDeletage() = default;

void CGroupManagerDeletage::Reload()
{
    m_groups.clear();
    for (const DeviceConfig& dev : CConfigMgr::Instance()->GetDevices()) {
        for (const ChannelConfig& ch : dev.channels) {
            const std::string area = ch.area.empty() ? (dev.name.empty() ? dev.id : dev.name) : ch.area;
            GroupInfo* group = nullptr;
            for (GroupInfo& g : m_groups)
                if (g.name == area)
                    group = &g;
            if (group == nullptr) {
                m_groups.push_back(GroupInfo{"group-" + std::to_string(m_groups.size() + 1), area, {}});
                group = &m_groups.back();
            }
            group->cameras.push_back(CameraInfo{ch.cameraId, ch.name, dev.id, ch.channel, group->id});
        }
    }
}

bool CGroupManagerDeletage::FindCamera(const std::string& cameraId, CameraInfo& out) const
{
    for (const GroupInfo& g : m_groups)
        for (const CameraInfo& c : g.cameras)
            if (c.id == cameraId) {
                out = c;
                return true;
            }
    return false;
}

} // namespace clientcommonlogical
