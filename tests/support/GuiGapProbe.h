#pragma once
// The longest time the GUI thread went without running its event loop, from a
// 10 ms timer on it (nested loops of modal dialogs tick it too). GUI thread.
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <algorithm>

namespace testsupport {

class GuiGapProbe final : public QObject {
public:
    GuiGapProbe()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, this, [this] { tick(); });
    }

    void start()
    {
        m_longest = 0;
        m_clock.start();
        m_timer.start(10);
    }
    // The longest gap so far, the one still open included.
    qint64 longestMs() const { return std::max(m_longest, m_clock.isValid() ? m_clock.elapsed() : 0); }
    qint64 stop()
    {
        tick();
        m_timer.stop();
        return m_longest;
    }

private:
    void tick()
    {
        m_longest = std::max(m_longest, m_clock.restart());
    }

    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_longest = 0;
};

} // namespace testsupport
