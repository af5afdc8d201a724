#pragma once
// The modal "Processing" dialog shown while a slow request runs on a worker.
//
// The owner starts the request, connects its end to OnStopChaseByAccept() (or
// OnStopChaseByReject()) and exec()s the dialog. The dialog closes only at its
// next 500 ms tick, so it never flashes up and away; Esc or a reject emits
// SignalCancel(), by which the owner abandons the request. GUI thread.
#include <QDialog>

class QLabel;
class QMovie;
class QTimer;

namespace BodyTemperature {

class CWaitShowWid final : public QDialog {
    Q_OBJECT
public:
    static constexpr int kTickMs = 500;

    CWaitShowWid(QWidget* parent, const QString& strAnimationFile);
    ~CWaitShowWid() override;

    // 0 stop with reject, 1 stop with accept, 2 keep waiting.
    int ChaseState() const { return m_iChaseState; }
    QLabel* captionLabel() const { return m_pCaptionLabel; }
    QMovie* movie() const { return m_pMovie; }

signals:
    void SignalCancel();

public slots:
    void OnWaitTimeOut();
    void OnStopChaseByAccept();
    void OnStopChaseByReject();
    void OnImmediatelyStopChase();
    void OnSetProgressValue(int iValue);

private:
    QLabel* m_pCaptionLabel = nullptr;
    QLabel* m_pAnimationLabel = nullptr;
    QMovie* m_pMovie = nullptr;
    QTimer* m_pTimer = nullptr;
    int m_iChaseState = 2;
};

} // namespace BodyTemperature
