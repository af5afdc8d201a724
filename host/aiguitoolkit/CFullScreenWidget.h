#pragma once
// A container that can leave its place in the page and cover the whole screen
// (of the page's screen), and come back into the same layout slot. Esc leaves
// full screen. GUI thread.
#include <QPointer>
#include <QWidget>

class QLayout;

namespace aiguitoolkit {

class CFullScreenWidget : public QWidget {
    Q_OBJECT
public:
    explicit CFullScreenWidget(QWidget* parent = nullptr);
    ~CFullScreenWidget() override;

    bool IsFullScreen() const { return m_bFull; }
    void EnterFullScreen();
    void LeaveFullScreen();

signals:
    void SignalScreenChanged(bool bFull);
    void SignalLeaveFullScreen(bool bLeave);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    bool m_bFull = false;
    QPointer<QWidget> m_pOldParent;
    QPointer<QLayout> m_pOldLayout;
    int m_iLayoutIndex = -1;
    int m_gridPos[4] = {0, 0, 1, 1};
    QRect m_oldGeometry;
};

} // namespace aiguitoolkit
