#pragma once
// How play windows find the camera behind an identifier: each page that hosts
// play windows supplies a plugin over its own model. Owned by that page;
// called on the GUI thread.
#include <QString>
#include <string>

#include "UiDataController/ICamera.h"

class CLiveViewControllerPlugin {
public:
    virtual ~CLiveViewControllerPlugin() = default;
    // The element behind the identifier, or null when the page does not know it.
    virtual vantordesk::IElement* GetElement(const std::string& elementId) = 0;
};
