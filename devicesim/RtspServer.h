#pragma once
// The emulator's camera streams over RTSP: every channel in H.264 and H.265,
// a main stream (1920x1080) and a sub stream (640x360) at 25 frames per
// second, showing the same scene, channel name and time as the MJPEG stream,
// at rtsp://ADDR:PORT/ch<N>/<h264|h265>/<main|sub>, and the channel's sound
// alone at rtsp://ADDR:PORT/ch<N>/audio. Digest authentication with the
// device's user and password. Each stream loops a two-second clip of the
// scene encoded once when the stream is first played (its clock shows those
// two seconds): encoding live cost a tenth of a core per sub
// stream and a core for 1080p H.265. Faults set through the
// RtspControl (owned by main(), outlives the server) apply to the next frame.
// Owned by main(); start() and stop() on the main thread; GStreamer's own
// threads serve.
#include <memory>
#include <string>
#include <thread>
#include <nlohmann/json.hpp>

#include "SimOptions.h"

namespace devicesim {

class RtspControl;

class RtspServer final {
public:
    RtspServer(SimOptions opts, RtspControl& control);
    ~RtspServer();
    RtspServer(const RtspServer&) = delete;
    RtspServer& operator=(const RtspServer&) = delete;

    bool start(std::string& error);
    void stop();
    // The bound port (the option's port, or the one chosen for port 0).
    int port() const { return m_port; }

    // The streams of a channel for the device API: {"main":{"h264":URL,"h265":URL,"width",...},"sub":{...}}.
    static nlohmann::json describe(const SimOptions& opts, int channel);

    static constexpr int kMainWidth = 1920;
    static constexpr int kMainHeight = 1080;
    static constexpr int kSubWidth = 640;
    static constexpr int kSubHeight = 360;

private:
    struct Gst;
    SimOptions m_opts;
    RtspControl& m_control;
    std::unique_ptr<Gst> m_gst;
    std::thread m_loop;
    int m_port = 0;
};

} // namespace devicesim
