#include "alarms/CCardBacklog.h"

#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>

#include "Base/Log.h"

namespace BodyTemperature {

CCardBacklog::CCardBacklog(int listKeeps, int stripKeeps, Builder builder, QObject* parent, Clock clock)
    : QObject(parent),
      m_iListKeeps(listKeeps),
      m_iStripKeeps(stripKeeps),
      m_builder(std::move(builder)),
      m_clock(std::move(clock))
{
    if (!m_clock) {
        auto started = std::make_shared<QElapsedTimer>();
        started->start();
        m_clock = [started] { return started->elapsed(); };
    }
    // Fires once the event loop has control again: the slice ends there.
    m_pTimer = new QTimer(this);
    m_pTimer->setSingleShot(true);
    m_pTimer->setInterval(0);
    connect(m_pTimer, &QTimer::timeout, this, &CCardBacklog::drain);
}

qint64 CCardBacklog::now() const
{
    return m_clock();
}

bool CCardBacklog::sliceSpent() const
{
    return m_iSliceStart >= 0 && now() - m_iSliceStart >= kSliceMs;
}

void CCardBacklog::openSlice()
{
    if (m_iSliceStart < 0) {
        m_iSliceStart = now();
        m_pTimer->start();
    }
}

void CCardBacklog::Add(AlarmShowInfo info, int copies)
{
    if (m_pending.empty() && !sliceSpent()) {
        openSlice();
        m_builder(info, copies, true, true);
        ++m_uBuilt;
        return;
    }
    if (m_pending.empty())
        BASE_LOG_INFO("alarms arrive faster than the page draws: cards of older ones are skipped");
    m_pending.push_back(Item{std::move(info), copies});
    trim();
    openSlice();
}

void CCardBacklog::trim()
{
    while (static_cast<int>(m_pending.size()) > std::max(m_iListKeeps, m_iStripKeeps)) {
        m_pending.pop_front();
        ++m_uSkipped;
    }
}

void CCardBacklog::drain()
{
    m_iSliceStart = -1;
    if (m_pending.empty())
        return;
    openSlice();
    while (!m_pending.empty() && !sliceSpent()) {
        // Only what remains visible once every waiting record has its cards.
        const int newer = static_cast<int>(m_pending.size());
        Item item = std::move(m_pending.front());
        m_pending.pop_front();
        m_builder(item.info, item.copies, newer <= m_iListKeeps, newer <= m_iStripKeeps);
        ++m_uBuilt;
    }
    if (m_pending.empty())
        BASE_LOG_INFO("page caught up: %llu cards built, %llu records skipped so far", m_uBuilt, m_uSkipped);
}

} // namespace BodyTemperature
