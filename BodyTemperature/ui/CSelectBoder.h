#pragma once
// The frame drawn around the selected play window (object name
// "m_pSelectBoderWnd"): a sibling of the windows, kept one pixel larger than
// its target on every side while the target moves or resizes. GUI thread.
#include <QFrame>
#include <QPointer>

namespace BodyTemperature {

class CSelectBoder final : public QFrame {
    Q_OBJECT
public:
    explicit CSelectBoder(QWidget* parent = nullptr);
    ~CSelectBoder() override;

    void SetTarget(QWidget* widget);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void FollowTarget();
    QPointer<QWidget> m_pTarget;
};

} // namespace BodyTemperature
