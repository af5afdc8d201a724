#include "aiguitoolkit/CFullScreenWidget.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QKeyEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

namespace aiguitoolkit {

CFullScreenWidget::CFullScreenWidget(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("CFullScreenWidget"));
    setFocusPolicy(Qt::StrongFocus);
}

CFullScreenWidget::~CFullScreenWidget() = default;

void CFullScreenWidget::EnterFullScreen()
{
    if (m_bFull)
        return;
    QScreen* screen = window() != nullptr && window()->windowHandle() != nullptr ? window()->windowHandle()->screen() : nullptr;
    m_pOldParent = parentWidget();
    m_oldGeometry = geometry();
    m_pOldLayout = m_pOldParent ? m_pOldParent->layout() : nullptr;
    m_iLayoutIndex = m_pOldLayout ? m_pOldLayout->indexOf(this) : -1;
    if (auto* grid = qobject_cast<QGridLayout*>(m_pOldLayout.data()); grid != nullptr && m_iLayoutIndex >= 0)
        grid->getItemPosition(m_iLayoutIndex, &m_gridPos[0], &m_gridPos[1], &m_gridPos[2], &m_gridPos[3]);
    if (m_pOldLayout && m_iLayoutIndex >= 0)
        m_pOldLayout->removeWidget(this);
    // No window manager can be relied on to size a full-screen window, so the
    // geometry is set explicitly from the screen.
    setParent(nullptr, Qt::Window | Qt::FramelessWindowHint);
    if (screen == nullptr)
        screen = QGuiApplication::primaryScreen();
    if (screen != nullptr)
        setGeometry(screen->geometry());
    m_bFull = true;
    showFullScreen();
    activateWindow();
    setFocus();
    emit SignalScreenChanged(true);
}

void CFullScreenWidget::LeaveFullScreen()
{
    if (!m_bFull)
        return;
    m_bFull = false;
    setParent(m_pOldParent, Qt::Widget);
    if (m_pOldLayout && m_iLayoutIndex >= 0) {
        if (auto* box = qobject_cast<QBoxLayout*>(m_pOldLayout.data()))
            box->insertWidget(m_iLayoutIndex, this);
        else if (auto* grid = qobject_cast<QGridLayout*>(m_pOldLayout.data()))
            grid->addWidget(this, m_gridPos[0], m_gridPos[1], m_gridPos[2], m_gridPos[3]);
        else
            m_pOldLayout->addWidget(this);
    } else {
        setGeometry(m_oldGeometry);
    }
    show();
    emit SignalScreenChanged(false);
    emit SignalLeaveFullScreen(false);
}

void CFullScreenWidget::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && m_bFull) {
        LeaveFullScreen();
        return;
    }
    QWidget::keyPressEvent(event);
}

} // namespace aiguitoolkit
