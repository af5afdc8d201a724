#include "playwindow/CPtzControlWnd.h"

#include <QGridLayout>
#include <QToolButton>

#include "Base/Log.h"
#include "playwindow/CStreamPlayWindowWithTask.h"

CPtzControlWnd::CPtzControlWnd(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("m_pPtzControlWnd"));
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(4, 4, 4, 4);
    const struct { int command; int row; int col; const char* text; } pads[] = {
        {1, 0, 1, "\u25B2"}, {2, 2, 1, "\u25BC"}, {3, 1, 0, "\u25C0"}, {4, 1, 2, "\u25B6"}, {5, 0, 3, "+"}, {6, 2, 3, "-"}};
    for (const auto& pad : pads) {
        auto* b = new QToolButton(this);
        b->setText(QString::fromUtf8(pad.text));
        b->setFixedSize(24, 24);
        grid->addWidget(b, pad.row, pad.col);
        const int command = pad.command;
        connect(b, &QToolButton::pressed, this, [this, command] { emit SignalPtzCommand(command, true); });
        connect(b, &QToolButton::released, this, [this, command] { emit SignalPtzCommand(command, false); });
    }
    hide();
}

CPtzControlMgr::CPtzControlMgr(CPtzControlWnd* wnd, QObject* parent) : QObject(parent), m_pWnd(wnd)
{
    connect(wnd, &CPtzControlWnd::SignalPtzCommand, this, [this](int command, bool start) {
        if (m_pCurrent && m_pCurrent->IsPreviewing())
            BASE_LOG_INFO("ptz %d %s on %s", command, start ? "start" : "stop", m_pCurrent->GetPreviewCameraID().c_str());
    });
}

void CPtzControlMgr::SetPlayWindows(const QList<CStreamPlayWindowWithTask*>& windows)
{
    m_windows = windows;
    for (CStreamPlayWindowWithTask* w : windows)
        connect(w, &CStreamPlayWindowWithTask::SignalSelected, this, [this, w] { m_pCurrent = w; });
    m_pCurrent = windows.isEmpty() ? nullptr : windows.first();
}
