#pragma once
// The painting part of a play window: the newest picture centred on black,
// dimmed while the stream waits for a whole picture. Painted only when a new
// picture came (or Qt asks, e.g. after being uncovered). GUI thread.
#include <QImage>
#include <QWidget>
#include <cstdint>

namespace playwindow {

class CVideoSurface final : public QWidget {
    Q_OBJECT
public:
    explicit CVideoSurface(QWidget* parent);
    void SetFrame(QImage frame);
    void Clear();
    // The picture stands still and may be old: shown darker.
    void SetDimmed(bool dimmed);
    bool Dimmed() const { return m_bDimmed; }
    const QImage& Frame() const { return m_frame; }
    uint64_t PaintedFrames() const { return m_painted; }
    // GUI thread CPU spent in painting (benches).
    uint64_t PaintNs() const { return m_paintNs; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage m_frame;
    bool m_bNew = false;
    bool m_bDimmed = false;
    uint64_t m_painted = 0;
    uint64_t m_paintNs = 0;
};

} // namespace playwindow
