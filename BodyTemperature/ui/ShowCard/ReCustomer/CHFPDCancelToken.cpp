#include "ui/ShowCard/ReCustomer/CHFPDCancelToken.h"

namespace BodyTemperature {

void CHFPDCancelToken::Cancel()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_bCancelled.store(true, std::memory_order_release);
    }
    m_wake.notify_all();
}

bool CHFPDCancelToken::WaitFor(std::chrono::milliseconds ms)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return !m_wake.wait_for(lock, ms, [this] { return IsCancelled(); });
}

} // namespace BodyTemperature
