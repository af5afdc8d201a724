#pragma once
// Turns decoded pictures into RGB at the size their window shows them
// (CPictureFit): scaled in YUV first, then converted without scaling, into
// pictures from a small pool whose rows are padded for the converter's fast
// path. One per decode session, used on its decode thread only; the pictures
// it gives may be held by any thread.
#include <QImage>
#include <QSize>

struct AVFrame;
struct SwsContext;

namespace playwindow {

class CPictureConverter final {
public:
    CPictureConverter() = default;
    ~CPictureConverter();
    CPictureConverter(const CPictureConverter&) = delete;
    CPictureConverter& operator=(const CPictureConverter&) = delete;

    // The picture fitted to area (null when it cannot be converted).
    QImage Convert(const AVFrame& frame, const QSize& area);

private:
    bool ScaleToYuv(const AVFrame& frame, int format, int w, int h);
    QImage& PooledImage(int w, int h);

    SwsContext* m_sws = nullptr;    // to RGB at the shown size
    SwsContext* m_scale = nullptr;  // to the shown size, in YUV
    AVFrame* m_scaled = nullptr;
    QImage m_pool[3];
};

} // namespace playwindow
