#include "aiguitoolkit/CShakeButton.h"

#include <QFile>
#include <QTimer>

namespace aiguitoolkit {

namespace {
constexpr int kFrameIntervalMs = 30;
}

CShakeButton::CShakeButton(QWidget* parent) : QToolButton(parent)
{
    setAutoRaise(true);
    setCursor(Qt::PointingHandCursor);
    m_pTimer = new QTimer(this);
    m_pTimer->setInterval(kFrameIntervalMs);
    connect(m_pTimer, &QTimer::timeout, this, &CShakeButton::step);
}

CShakeButton::~CShakeButton() = default;

void CShakeButton::setPictureAttibute(const QString& strPattern, int iFirst, int iLast)
{
    m_strPattern = strPattern;
    m_frames.clear();
    m_pTimer->stop();
    m_iDirection = 0;
    for (int i = iFirst; i <= iLast; ++i) {
        const QString file = strPattern.arg(i);
        if (!QFile::exists(file))
            continue;
        QPixmap pm(file);
        if (!pm.isNull())
            m_frames.append(pm);
    }
    if (!m_frames.isEmpty()) {
        setIconSize(m_frames.front().size());
        showFrame(0);
    }
}

void CShakeButton::enterEvent(QEvent* event)
{
    QToolButton::enterEvent(event);
    if (m_frames.size() > 1) {
        m_iDirection = 1;
        m_pTimer->start();
    }
}

void CShakeButton::leaveEvent(QEvent* event)
{
    QToolButton::leaveEvent(event);
    if (m_frames.size() > 1) {
        m_iDirection = -1;
        m_pTimer->start();
    }
}

void CShakeButton::step()
{
    const int next = m_iFrame + m_iDirection;
    if (next < 0 || next >= m_frames.size()) {
        m_pTimer->stop();
        return;
    }
    showFrame(next);
}

void CShakeButton::showFrame(int frame)
{
    m_iFrame = frame;
    setIcon(QIcon(m_frames.at(frame)));
}

} // namespace aiguitoolkit
