#pragma once
// Elements of the host's logic model: areas (groups) and cameras. Owned by the
// CLogicModel that created them; valid until the model reloads or is destroyed.
// GUI thread.
#include <string>

namespace vantordesk {

// Element kinds of the logic model; only cameras can be played.
enum ElementType { ElementUnknown = 0, ElementCamera = 1, ElementArea = 2 };

class IElement {
public:
    virtual ~IElement() = default;
    virtual int GetElementType() const = 0;
    virtual std::string GetElementID() const = 0;
    virtual std::string GetElementName() const = 0;
    // The area the element belongs to (an area: its own identifier).
    virtual std::string GetGroupID() const = 0;
};

// A camera: one channel of a device. Its two availability flags follow the
// device: the device answers, and the channel has a signal.
class ICamera : public IElement {
public:
    int GetElementType() const override { return ElementCamera; }
    virtual std::string GetDeviceID() const = 0;
    virtual int GetChannel() const = 0;
    // An explicit stream URL configured for this camera; empty: the device's own.
    virtual std::string GetStreamUrl() const = 0;
    virtual bool IsDeviceOnline() const = 0;
    virtual bool IsChannelOnline() const = 0;
};

} // namespace vantordesk
