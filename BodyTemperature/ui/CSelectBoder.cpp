#include "ui/CSelectBoder.h"

#include <QEvent>

namespace BodyTemperature {

CSelectBoder::CSelectBoder(QWidget* parent) : QFrame(parent)
{
    setObjectName(QStringLiteral("m_pSelectBoderWnd"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setStyleSheet(QStringLiteral("QFrame#m_pSelectBoderWnd{border:1px solid #2f8cff;background:transparent;}"));
}

CSelectBoder::~CSelectBoder() = default;

void CSelectBoder::SetTarget(QWidget* widget)
{
    if (widget == nullptr)
        return;
    if (m_pTarget)
        m_pTarget->removeEventFilter(this);
    m_pTarget = widget;
    FollowTarget();
    widget->installEventFilter(this);
}

void CSelectBoder::FollowTarget()
{
    if (m_pTarget)
        setGeometry(m_pTarget->geometry().adjusted(-1, -1, 1, 1));
}

bool CSelectBoder::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_pTarget && (event->type() == QEvent::Move || event->type() == QEvent::Resize))
        FollowTarget();
    return QFrame::eventFilter(watched, event);
}

} // namespace BodyTemperature
