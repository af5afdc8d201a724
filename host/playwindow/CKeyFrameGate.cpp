#include "playwindow/CKeyFrameGate.h"

#include <algorithm>

namespace playwindow {

CKeyFrameGate::CKeyFrameGate(bool decoderRecovers, int64_t nowMs)
    : m_decoderRecovers(decoderRecovers), m_waitSinceMs(nowMs)
{
}

bool CKeyFrameGate::Admit(bool key, int64_t nowMs)
{
    if (key) {
        if (m_lastKeyMs >= 0)
            m_longestRun = std::max(m_longestRun, m_sinceKey + 1);
        m_lastKeyMs = nowMs;
        m_sinceKey = 0;
    } else {
        ++m_sinceKey;
        if (m_showing && m_longestRun > 0 && m_sinceKey > 2 * m_longestRun && nowMs - m_lastKeyMs > kWaitMs) {
            m_showing = false;
            m_overdue = true;
        }
    }
    if (!m_showing && (key || (m_decoderRecovers && !m_shownOnce))) {
        m_showing = true;
        m_shownOnce = true;
        m_overdue = false;
        m_waitingSaid = false;
    }
    return m_showing;
}

bool CKeyFrameGate::SayWaiting(int64_t nowMs)
{
    if (m_showing || m_waitingSaid || (!m_overdue && nowMs - m_waitSinceMs <= kWaitMs))
        return false;
    m_waitingSaid = true;
    return true;
}

} // namespace playwindow
