#pragma once
// Notified by the host when the video-system configuration (stream settings,
// layouts) changes. GUI thread.
namespace vantordesk {

class IVideoSystemConfigObserver {
public:
    virtual ~IVideoSystemConfigObserver() = default;
    virtual void OnVideoSystemConfigChanged() {}
};

} // namespace vantordesk
