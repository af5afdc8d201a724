#include "PreviewLogical/PreviewLogical.h"

#include "Base/Log.h"

namespace PreviewLogical {
namespace {
bool g_initialised = false;
std::shared_ptr<publicdatacontroller::CLocalDataManagerDelegate> g_localData;
std::shared_ptr<clientcommonlogical::CGroupManagerDeletage> g_playGroups;
} // namespace

void InitPreviewLogical(IAbstractSMSManager*, std::shared_ptr<publicdatacontroller::CLocalDataManagerDelegate> localData)
{
    g_localData = std::move(localData);
    if (!g_initialised)
        BASE_LOG_INFO("preview services initialised");
    g_initialised = true;
}

bool IsPreviewLogicalInitialised() { return g_initialised; }
std::shared_ptr<publicdatacontroller::CLocalDataManagerDelegate> LocalDataManager() { return g_localData; }

void InitPlayWindowComponent(std::shared_ptr<clientcommonlogical::CGroupManagerDeletage> groups,
    std::shared_ptr<publicdatacontroller::CLocalDataManagerDelegate> localData)
{
    g_playGroups = std::move(groups);
    if (!g_localData)
        g_localData = std::move(localData);
}

std::shared_ptr<clientcommonlogical::CGroupManagerDeletage> PlayWindowGroupManager() { return g_playGroups; }

} // namespace PreviewLogical
