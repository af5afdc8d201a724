#pragma once
// Ends device requests in flight from another thread. The thread that makes
// the requests passes the object to the communication layer's calls; any
// thread may call Cancel(), which cuts the connections of those calls at once
// (they fail with kErrCancelled within milliseconds) and makes every later
// call with this object fail before it connects. A cancelled object stays
// cancelled. Share it (std::shared_ptr) between the canceller and the worker
// when either may outlive the other.
//
// It also remembers whether the last request made with it reached the device
// (the connection was open when the request failed or ended), so the caller
// of a request that changes something can tell "never arrived" from "the
// device may have done it".
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <vector>

namespace commlayer {

class CRequestCancel final {
public:
    CRequestCancel() = default;
    CRequestCancel(const CRequestCancel&) = delete;
    CRequestCancel& operator=(const CRequestCancel&) = delete;

    void Cancel();
    bool IsCancelled() const { return m_cancelled.load(std::memory_order_acquire); }
    // Sleeps for the time or until Cancel(); true when the whole time passed uncancelled.
    bool WaitFor(std::chrono::milliseconds time);
    // Whether the last request made with this object reached the device.
    bool LastRequestReached() const { return m_reached.load(std::memory_order_acquire); }

    // The transport's side: the flag it polls, the connections it opens and
    // closes (an open fails once cancelled), and what it learnt.
    const std::atomic<bool>* Flag() const { return &m_cancelled; }
    int OpenSocket(int family, int type, int protocol);
    int CloseSocket(int fd);
    void SetReached(bool reached) { m_reached.store(reached, std::memory_order_release); }

private:
    std::atomic<bool> m_cancelled{false};
    std::atomic<bool> m_reached{false};
    std::mutex m_mutex;  // guards the sockets; the wait of WaitFor
    std::condition_variable m_wake;
    std::vector<int> m_sockets;  // open connections of the requests in flight
};

} // namespace commlayer
