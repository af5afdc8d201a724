#include "commlayer/CBodyLimit.h"

#include <algorithm>

namespace commlayer {
namespace detail {

size_t CBodyLimit::ForDevicePath(const std::string& path)
{
    static const std::string records = "/DVAPI/SDT/HFPD/searchTask/result/";
    return path.compare(0, records.size(), records) == 0 ? kRecordList : kDocument;
}

void CBodyLimit::StartResponse(long status)
{
    m_status = status;
    m_received = 0;
}

size_t CBodyLimit::CurrentLimit() const
{
    const bool error = m_status < 200 || m_status >= 300;
    return error ? std::min(m_answerLimit, kErrorBody) : m_answerLimit;
}

bool CBodyLimit::Accept(size_t len)
{
    if (len > CurrentLimit() - std::min(m_received, CurrentLimit())) {
        m_exceeded = true;
        return false;
    }
    m_received += len;
    return true;
}

bool CBodyLimit::AcceptUnlessSuccess(size_t len)
{
    if (m_status >= 200 && m_status < 300)
        return true;
    return Accept(len);
}

} // namespace detail
} // namespace commlayer
