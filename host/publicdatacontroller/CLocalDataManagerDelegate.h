#pragma once
// The host's local (per-client) data: here the live-view stream settings.
// GUI thread. Objects the host keeps must be made by Create(): a module may
// be unloaded while the host still holds them, so their code and the
// shared_ptr's control block have to live in the host's library.
#include <memory>

namespace publicdatacontroller {

struct StreamSettings {
    int streamType = 0;  // 0 main stream, 1 sub stream
};

class CLocalDataManagerDelegate {
public:
    static std::shared_ptr<CLocalDataManagerDelegate> Create();
    CLocalDataManagerDelegate();
    virtual ~CLocalDataManagerDelegate();

    StreamSettings GetStreamSettings() const { return m_stream; }
    void SetStreamSettings(const StreamSettings& s) { m_stream = s; }

private:
    StreamSettings m_stream;
};

} // namespace publicdatacontroller
