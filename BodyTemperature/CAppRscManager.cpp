#include "CAppRscManager.h"

#include "CameraModel.h"
#include "PreviewLogical/PreviewLogical.h"

namespace BodyTemperature {

CAppRscManager::CAppRscManager() : QObject(nullptr) {}

CAppRscManager::~CAppRscManager() = default;

void CAppRscManager::Init()
{
    if (m_bInitialised)
        return;
    m_bInitialised = true;
    auto groups = GetGroupManager();
    m_localDataManager = publicdatacontroller::CLocalDataManagerDelegate::Create();
    PreviewLogical::InitPlayWindowComponent(groups, m_localDataManager);
    PreviewLogical::InitPreviewLogical(nullptr, m_localDataManager);
}

std::shared_ptr<clientcommonlogical::CGroupManagerDeletage> CAppRscManager::GetGroupManager()
{
    if (!m_groupManager)
        m_groupManager = clientcommonlogical::CGroupManagerDeletage::Create();
    return m_groupManager;
}

std::shared_ptr<publicdatacontroller::CLocalDataManagerDelegate> CAppRscManager::GetLocalDataManager() const
{
    return m_localDataManager;
}

CameraModel* CAppRscManager::GetCameraModel()
{
    if (m_pCameraModel == nullptr)
        m_pCameraModel = new CameraModel(this, true);
    return m_pCameraModel;
}

} // namespace BodyTemperature
