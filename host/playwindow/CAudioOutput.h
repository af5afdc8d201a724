#pragma once
// Plays 16-bit stereo 48 kHz samples on the sound server from its own thread,
// so a slow server never stalls video decoding. Samples queue up to about one
// second; older ones are dropped. Created and destroyed by a decoder.
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

typedef struct pa_simple pa_simple;

namespace playwindow {

class CAudioOutput final {
public:
    static constexpr int kRate = 48000;
    static constexpr int kChannels = 2;

    CAudioOutput() = default;
    ~CAudioOutput();
    // Connects to the sound server; false when none answers.
    bool Open();
    void Push(std::vector<int16_t> samples);

private:
    void Run();
    pa_simple* m_pa = nullptr;
    std::thread m_thread;
    std::mutex m_mutex;
    std::condition_variable m_cv;
    std::deque<std::vector<int16_t>> m_queue;
    size_t m_queued = 0;
    bool m_stop = false;
};

} // namespace playwindow
