#pragma once
// Cancel flag of one frequent-person search, shared by the GUI thread (which
// cancels) and the search task (which checks it at every poll and sleeps on
// it between polls, so a cancel ends the sleep at once). Any thread.
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace BodyTemperature {

class CHFPDCancelToken final {
public:
    void Cancel();
    bool IsCancelled() const { return m_bCancelled.load(std::memory_order_acquire); }
    // Sleeps for ms or until Cancel(); true when the whole time passed uncancelled.
    bool WaitFor(std::chrono::milliseconds ms);

private:
    std::atomic<bool> m_bCancelled{false};
    std::mutex m_mutex;
    std::condition_variable m_wake;
};

} // namespace BodyTemperature
