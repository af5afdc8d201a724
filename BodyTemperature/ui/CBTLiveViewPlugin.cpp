#include "ui/CBTLiveViewPlugin.h"

#include "UiDataController/CLogicModel.h"

namespace BodyTemperature {

vantordesk::IElement* CBTLiveViewPlugin::GetElement(const std::string& elementId)
{
    if (elementId.empty() || m_pLogicModel == nullptr)
        return nullptr;
    vantordesk::IElement* element = m_pLogicModel->GetElementByID(elementId);
    if (element == nullptr || element->GetElementType() != vantordesk::ElementCamera)
        return nullptr;
    return element;
}

} // namespace BodyTemperature
