#pragma once
// Module-wide resources: the host's group and local-data managers and the
// camera model. Reached only through Base::CSingleton<CAppRscManager>; lives
// until the module is unloaded. Init() and the getters run on the GUI thread.
#include <QObject>
#include <memory>

#include "clientcommonlogical/CGroupManagerDeletage.h"
#include "publicdatacontroller/CLocalDataManagerDelegate.h"

namespace BodyTemperature {

class CameraModel;

class CAppRscManager final : public QObject {
    Q_OBJECT
public:
    CAppRscManager();
    ~CAppRscManager() override;

    // Runs once: managers, play-window component, host preview services.
    void Init();

    std::shared_ptr<clientcommonlogical::CGroupManagerDeletage> GetGroupManager();
    std::shared_ptr<publicdatacontroller::CLocalDataManagerDelegate> GetLocalDataManager() const;
    CameraModel* GetCameraModel();

private:
    bool m_bInitialised = false;
    std::shared_ptr<clientcommonlogical::CGroupManagerDeletage> m_groupManager;
    std::shared_ptr<publicdatacontroller::CLocalDataManagerDelegate> m_localDataManager;
    CameraModel* m_pCameraModel = nullptr;
};

} // namespace BodyTemperature
