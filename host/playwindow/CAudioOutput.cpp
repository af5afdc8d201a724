#include "playwindow/CAudioOutput.h"

#include <pulse/error.h>
#include <pulse/simple.h>

#include "Base/Log.h"

namespace playwindow {

CAudioOutput::~CAudioOutput()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_stop = true;
    }
    m_cv.notify_all();
    if (m_thread.joinable())
        m_thread.join();
    if (m_pa != nullptr)
        pa_simple_free(m_pa);
}

bool CAudioOutput::Open()
{
    pa_sample_spec sample;
    sample.format = PA_SAMPLE_S16LE;
    sample.rate = kRate;
    sample.channels = kChannels;
    int err = 0;
    m_pa = pa_simple_new(nullptr, "vantordesk", PA_STREAM_PLAYBACK, nullptr, "live view", &sample, nullptr, nullptr, &err);
    if (m_pa == nullptr) {
        BASE_LOG_WARN("sound server unavailable: %s", pa_strerror(err));
        return false;
    }
    m_thread = std::thread(&CAudioOutput::Run, this);
    return true;
}

void CAudioOutput::Push(std::vector<int16_t> samples)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_queued += samples.size();
    m_queue.push_back(std::move(samples));
    while (m_queued > static_cast<size_t>(kRate * kChannels) && m_queue.size() > 1) {
        m_queued -= m_queue.front().size();
        m_queue.pop_front();
    }
    m_cv.notify_one();
}

void CAudioOutput::Run()
{
    for (;;) {
        std::vector<int16_t> chunk;
        {
            std::unique_lock<std::mutex> lock(m_mutex);
            m_cv.wait(lock, [this] { return m_stop || !m_queue.empty(); });
            if (m_stop)
                return;
            chunk = std::move(m_queue.front());
            m_queue.pop_front();
            m_queued -= chunk.size();
        }
        int err = 0;
        if (pa_simple_write(m_pa, chunk.data(), chunk.size() * sizeof(int16_t), &err) < 0) {
            BASE_LOG_WARN("sound write failed: %s", pa_strerror(err));
            return;
        }
    }
}

} // namespace playwindow
