#pragma once
// A tool button drawn from a small numbered picture series and given a short
// shake when clicked, so the operator sees the press register. The pattern
// holds %1 for the picture number: first + 0 normal, + 1 hovered, + 2 pressed
// or checked, + 3 disabled. A missing picture falls back to the normal one;
// with no pictures at all the button keeps its style-sheet look.
// GUI thread; the button owns its timer.
#include <QIcon>
#include <QPixmap>
#include <QPoint>
#include <QToolButton>

class QTimer;

namespace aiguitoolkit {

class CShakeButton : public QToolButton {
    Q_OBJECT
public:
    enum PictureState { Normal = 0, Hover = 1, Pressed = 2, Disabled = 3, StateCount = 4 };

    explicit CShakeButton(QWidget* parent = nullptr);
    ~CShakeButton() override;

    // Loads pattern.arg(iFirst + state) for each state; iShakeRange is how far
    // (pixels) the button swings sideways when clicked, 0 for no shake.
    // (The name's spelling is the toolkit's and is kept.)
    void setPictureAttibute(const QString& strPattern, int iFirst, int iShakeRange);

    QString pattern() const { return m_strPattern; }
    bool hasPicture(PictureState state) const { return !m_pictures[state].isNull(); }
    PictureState shownState() const { return m_eShown; }
    bool isShaking() const;

protected:
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void refreshPicture();
    void startShake();
    void shakeStep();

    QString m_strPattern;
    QPixmap m_pictures[StateCount];
    PictureState m_eShown = Normal;
    bool m_bHovered = false;
    bool m_bPressed = false;
    int m_iShakeRange = 0;
    int m_iShakeStep = 0;
    QPoint m_restPos;
    QTimer* m_pShakeTimer = nullptr;
};

} // namespace aiguitoolkit
