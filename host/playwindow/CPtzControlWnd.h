#pragma once
// Pan-tilt-zoom control of the selected play window: a small pad created
// hidden; its manager follows which window is selected. GUI thread.
#include <QList>
#include <QObject>
#include <QPointer>
#include <QWidget>

class CStreamPlayWindowWithTask;

class CPtzControlWnd final : public QWidget {
    Q_OBJECT
public:
    explicit CPtzControlWnd(QWidget* parent = nullptr);

signals:
    void SignalPtzCommand(int command, bool start);
};

class CPtzControlMgr final : public QObject {
    Q_OBJECT
public:
    CPtzControlMgr(CPtzControlWnd* wnd, QObject* parent);
    void SetPlayWindows(const QList<CStreamPlayWindowWithTask*>& windows);

private:
    QPointer<CPtzControlWnd> m_pWnd;
    QList<CStreamPlayWindowWithTask*> m_windows;
    QPointer<CStreamPlayWindowWithTask> m_pCurrent;
};
