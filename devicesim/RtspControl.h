#pragma once
// What the control API changes in the emulator's RTSP streams, for tests that
// need a misbehaving camera (key frames withheld, the picture size switched,
// packets lost), and what it reads back (connections served). main() owns it
// and hands it to the RTSP server and the HTTP server; GStreamer's threads and
// the HTTP worker threads use it concurrently, so every member is guarded.
#include <atomic>
#include <map>
#include <mutex>
#include <string>

namespace devicesim {

struct RtspFault {
    bool dropKeyFrames = false;  // key frames (and the parameter sets sent with them) never leave
    int width = 0;               // picture size from now on; 0: the stream's own
    int height = 0;
    double loss = 0;             // share of RTP packets dropped before they are sent
};

class RtspControl final {
public:
    // path: the stream's mount, e.g. "/ch1/h264/sub".
    void setFault(const std::string& path, const RtspFault& fault);
    void clearFaults();
    RtspFault fault(const std::string& path) const;

    void countConnection() { m_connections.fetch_add(1); }
    int connections() const { return m_connections.load(); }

private:
    mutable std::mutex m_mutex;
    std::map<std::string, RtspFault> m_faults;  // guarded
    std::atomic<int> m_connections{0};
};

} // namespace devicesim
