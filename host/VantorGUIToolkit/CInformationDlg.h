#pragma once
// The host's information manager: short messages shown at the lower right of
// the screen under the mouse, each in a small frameless translucent window
// that fades out after a few seconds. Several messages stack upward, the
// newest at the bottom. GUI thread only; the windows delete themselves.
#include <QList>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QWidget>

class QLabel;
class QPropertyAnimation;
class QScreen;

namespace VantorGUIToolkit {

class CInformationDlg final : public QWidget {
    Q_OBJECT
public:
    // Shows text (already translated) for kShowMs, then fades it out over kFadeMs.
    static void ShowInformationAtScreenRightBottom(const QString& text);
    // The texts shown so far in this process, oldest first (diagnostics, tests).
    static QStringList ShownMessages();
    static void ClearShownMessages();
    // The message windows currently on screen, oldest first.
    static QList<CInformationDlg*> VisibleMessages();

    static constexpr int kShowMs = 3000;
    static constexpr int kFadeMs = 800;
    static constexpr int kMargin = 16;   // from the screen's available edges
    static constexpr int kSpacing = 8;   // between stacked messages

    ~CInformationDlg() override;

    QString Text() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    explicit CInformationDlg(const QString& text);
    void startFade();
    // Places every live message, newest at the bottom right of its screen.
    static void restack();

    QLabel* m_pText = nullptr;
    QPointer<QScreen> m_pScreen;
    QPropertyAnimation* m_pFade = nullptr;
};

} // namespace VantorGUIToolkit
