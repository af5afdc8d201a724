#include "playwindow/CSignalQuality.h"

namespace playwindow {

bool CSignalQuality::Pictures(int count, bool lost, int64_t nowMs)
{
    if (count <= 0)
        return false;
    m_entries.push_back({nowMs, count, lost});
    m_total += count;
    m_lost += lost ? count : 0;
    while (!m_entries.empty() && m_entries.front().ms <= nowMs - kSpanMs) {
        m_total -= m_entries.front().count;
        m_lost -= m_entries.front().lost ? m_entries.front().count : 0;
        m_entries.pop_front();
    }
    if (m_total < kLeastPictures)
        return false;
    const double share = double(m_lost) / m_total;
    const bool poor = m_poor ? share > kPoorShare / 2 : share > kPoorShare;
    if (poor == m_poor)
        return false;
    m_poor = poor;
    return true;
}

int CSignalQuality::MissingBefore(int64_t pts)
{
    const int64_t last = m_lastPts;
    m_lastPts = pts;
    if (last == INT64_MIN || m_reordered)
        return 0;
    const int64_t step = pts - last;
    if (step < 0)
        m_reordered = true;
    if (step <= 0)
        return 0;
    if (m_step == 0 || step < m_step) {
        m_step = step;
        return 0;
    }
    // A camera's clock wobbles by a fifth or so; a lost picture makes a step of two.
    if (4 * step < 7 * m_step)
        return 0;
    return int((step + m_step / 2) / m_step) - 1;
}

} // namespace playwindow
