#include "playwindow/CKeyFrameGate.h"

#include <algorithm>

namespace playwindow {

CKeyFrameGate::CKeyFrameGate(bool decoderRecovers, int64_t nowMs)
    : m_decoderRecovers(decoderRecovers), m_waitSinceMs(nowMs)
{
}

void CKeyFrameGate::Damaged(bool quiet)
{
    if (!m_shownOnce)
        return;  // still waiting for the first picture: that wait is said on its own
    if (m_showing)
        m_waitingSaid = quiet;
    m_showing = false;
    m_broken = true;
}

bool CKeyFrameGate::Admit(bool key, bool damaged, int64_t nowMs)
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
            m_broken = true;
            m_waitingSaid = false;
        }
    }
    if (damaged) {
        Damaged();
        return false;
    }
    if (!m_showing && (key || (m_decoderRecovers && !m_shownOnce))) {
        m_showing = true;
        m_shownOnce = true;
        m_broken = false;
        m_waitingSaid = false;
    }
    return m_showing;
}

bool CKeyFrameGate::SayWaiting(int64_t nowMs)
{
    if (m_showing || m_waitingSaid || (!m_broken && nowMs - m_waitSinceMs <= kWaitMs))
        return false;
    m_waitingSaid = true;
    return true;
}

} // namespace playwindow
