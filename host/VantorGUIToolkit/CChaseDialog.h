#pragma once
// The host's modal waiting dialog: an animation, a translated text and a
// cancel button, shown while a worker does something slow. The owner
// connects SignalCancel (cancel button or Esc) to its worker, the worker's end
// to OnImmediatelyStopChase, starts the worker and calls ExecChase(). The
// dialog never closes itself on cancel: it waits for the worker to answer.
// GUI thread; created with new and a parent.
#include <QDialog>

class QLabel;
class QMovie;
class QPushButton;

namespace VantorGUIToolkit {

class CChaseDialog final : public QDialog {
    Q_OBJECT
public:
    // textKey is translated in the context "VantorGUIToolkit::CChaseDialog".
    CChaseDialog(const QString& animationFile, const char* textKey, QWidget* parent = nullptr);
    ~CChaseDialog() override;

    // Runs the dialog modally unless the worker has already ended.
    int ExecChase();

signals:
    void SignalCancel();

public slots:
    void OnImmediatelyStopChase();

protected:
    void reject() override;

private:
    QLabel* m_pAnimationLabel = nullptr;
    QLabel* m_pTextLabel = nullptr;
    QPushButton* m_pCancelBtn = nullptr;
    QMovie* m_pMovie = nullptr;
    bool m_bStopped = false;
    bool m_bCancelSent = false;
};

} // namespace VantorGUIToolkit
