#pragma once
// A channel's scene encoded once as a short clip (two seconds, one group of
// pictures, H.264 or H.265) that the RTSP server loops for one of the
// channel's streams: encoding live costs the emulator a core for 1080p H.265
// and a tenth of one per sub stream, more than it may take from the client it
// serves on a small machine. The clock shows the two seconds after the first
// play, the walker walks them again at each loop.
// The first Frame() call starts the encoder on the clip's own thread; frames
// are handed out as they come, so the first client waits one frame, not the
// clip. Frame() is called from GStreamer's streaming threads; the server's
// stream table and each playing media share the clip (shared_ptr); the last
// one to let go stops and joins the encoder.
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>
#include <vector>

namespace devicesim {

class SceneClip final {
public:
    SceneClip(int channel, int width, int height, int fps, bool h265);

    int width() const { return m_width; }
    int height() const { return m_height; }
    ~SceneClip();
    SceneClip(const SceneClip&) = delete;
    SceneClip& operator=(const SceneClip&) = delete;

    // Access unit n (0, 1, ... forever) of the looped clip, in decoding order;
    // each loop starts with a key frame and its parameter sets. Waits while
    // that frame is being encoded; false when the encoder failed.
    bool Frame(long long n, std::vector<uint8_t>& unit);

private:
    void Encode();

    const int m_channel;
    const int m_width;
    const int m_height;
    const int m_fps;
    const bool m_h265;
    std::mutex m_mutex;
    std::condition_variable m_cv;
    std::vector<std::vector<uint8_t>> m_units;
    bool m_done = false;
    std::atomic<bool> m_stop{false};
    std::thread m_worker;
};

} // namespace devicesim
