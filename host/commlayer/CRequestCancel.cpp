#include "commlayer/CRequestCancel.h"

#include <algorithm>
#include <sys/socket.h>
#include <unistd.h>

namespace commlayer {

void CRequestCancel::Cancel()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_cancelled.store(true, std::memory_order_release);
        // Wakes the transfer blocked on the socket at once instead of at its
        // next progress check (up to a second later).
        for (int fd : m_sockets)
            shutdown(fd, SHUT_RDWR);
    }
    m_wake.notify_all();
}

bool CRequestCancel::WaitFor(std::chrono::milliseconds time)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return !m_wake.wait_for(lock, time, [this] { return IsCancelled(); });
}

int CRequestCancel::OpenSocket(int family, int type, int protocol)
{
    // Under the canceller's lock: a cancel either sees this socket or is seen here.
    std::lock_guard<std::mutex> lock(m_mutex);
    if (IsCancelled())
        return -1;
    const int fd = socket(family, type | SOCK_CLOEXEC, protocol);
    if (fd >= 0)
        m_sockets.push_back(fd);
    return fd;
}

int CRequestCancel::CloseSocket(int fd)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_sockets.erase(std::remove(m_sockets.begin(), m_sockets.end(), fd), m_sockets.end());
    return close(fd);
}

} // namespace commlayer
