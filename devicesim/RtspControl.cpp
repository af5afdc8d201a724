#include "RtspControl.h"

namespace devicesim {

void RtspControl::setFault(const std::string& path, const RtspFault& fault)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_faults[path] = fault;
}

void RtspControl::clearFaults()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_faults.clear();
}

RtspFault RtspControl::fault(const std::string& path) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    const auto it = m_faults.find(path);
    return it == m_faults.end() ? RtspFault() : it->second;
}

} // namespace devicesim
