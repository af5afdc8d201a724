#pragma once
// A tool button drawn from a numbered picture series. Hovering runs the series
// forward (the small "shake" of the icon), leaving runs it back to the first
// picture. The pattern holds %1 for the picture number; pictures that do not
// exist are skipped, and with none at all the button keeps its style-sheet
// look. GUI thread; the button owns its timer.
#include <QPixmap>
#include <QToolButton>
#include <QVector>

class QTimer;

namespace aiguitoolkit {

class CShakeButton : public QToolButton {
    Q_OBJECT
public:
    explicit CShakeButton(QWidget* parent = nullptr);
    ~CShakeButton() override;

    // Loads pictures pattern.arg(first) .. pattern.arg(last) and shows the first.
    // (The name's spelling is the toolkit's and is kept.)
    void setPictureAttibute(const QString& strPattern, int iFirst, int iLast);

    int frameCount() const { return m_frames.size(); }
    int currentFrame() const { return m_iFrame; }
    QString pattern() const { return m_strPattern; }

protected:
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    void step();
    void showFrame(int frame);

    QString m_strPattern;
    QVector<QPixmap> m_frames;
    QTimer* m_pTimer = nullptr;
    int m_iFrame = 0;
    int m_iDirection = 0;  // +1 forward while hovered, -1 back after leaving
};

} // namespace aiguitoolkit
