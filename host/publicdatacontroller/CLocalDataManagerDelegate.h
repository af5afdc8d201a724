#pragma once
// The host's local (per-client) data: here the live-view stream settings.
// GUI thread.
namespace publicdatacontroller {

struct StreamSettings {
    int streamType = 0;  // 0 main stream, 1 sub stream
};

class CLocalDataManagerDelegate {
public:
    CLocalDataManagerDelegate() = default;
    virtual ~CLocalDataManagerDelegate() = default;

    StreamSettings GetStreamSettings() const { return m_stream; }
    void SetStreamSettings(const StreamSettings& s) { m_stream = s; }

private:
    StreamSettings m_stream;
};

} // namespace publicdatacontroller
