#pragma once
// How the page's play windows find a camera: in the host logic model, and
// only elements that are cameras. Owned by the live-view area. GUI thread.
#include "playwindow/CLiveViewControllerPlugin.h"

namespace UiDataController {
class CLogicModel;
}

namespace BodyTemperature {

class CBTLiveViewPlugin final : public CLiveViewControllerPlugin {
public:
    explicit CBTLiveViewPlugin(UiDataController::CLogicModel* model) : m_pLogicModel(model) {}
    vantordesk::IElement* GetElement(const std::string& elementId) override;

private:
    UiDataController::CLogicModel* m_pLogicModel;
};

} // namespace BodyTemperature
