#pragma once
// Host preview services. InitPreviewLogical is called once by the first page
// that shows live video, on the GUI thread, before any play window starts.
#include <memory>

#include "clientcommonlogical/CGroupManagerDeletage.h"
#include "publicdatacontroller/CLocalDataManagerDelegate.h"

class IAbstractSMSManager;

namespace PreviewLogical {

void InitPreviewLogical(IAbstractSMSManager* smsManager,
    std::shared_ptr<publicdatacontroller::CLocalDataManagerDelegate> localData);
bool IsPreviewLogicalInitialised();
std::shared_ptr<publicdatacontroller::CLocalDataManagerDelegate> LocalDataManager();

// The play-window component takes the group and local-data managers once.
void InitPlayWindowComponent(std::shared_ptr<clientcommonlogical::CGroupManagerDeletage> groups,
    std::shared_ptr<publicdatacontroller::CLocalDataManagerDelegate> localData);
std::shared_ptr<clientcommonlogical::CGroupManagerDeletage> PlayWindowGroupManager();

} // namespace PreviewLogical
