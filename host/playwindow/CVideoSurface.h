#pragma once
// The painting part of a play window: the newest picture centred on black.
// GUI thread.
#include <QImage>
#include <QWidget>

namespace playwindow {

class CVideoSurface final : public QWidget {
    Q_OBJECT
public:
    explicit CVideoSurface(QWidget* parent);
    void SetFrame(QImage frame);
    void Clear();
    const QImage& Frame() const { return m_frame; }
    uint64_t PaintedFrames() const { return m_painted; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage m_frame;
    bool m_bNew = false;
    uint64_t m_painted = 0;
};

} // namespace playwindow
