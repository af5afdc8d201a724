#include "playwindow/CPictureConverter.h"

extern "C" {
#include <libavutil/frame.h>
#include <libavutil/mem.h>
#include <libswscale/swscale.h>
}

#include "playwindow/CPictureFit.h"

namespace playwindow {
namespace {

// The JPEG pixel formats are deprecated aliases: use the plain ones and tell
// the scaler the range instead, which also keeps it from warning per frame.
AVPixelFormat PlainFormat(int fmt, bool& fullRange)
{
    switch (fmt) {
    case AV_PIX_FMT_YUVJ420P: fullRange = true; return AV_PIX_FMT_YUV420P;
    case AV_PIX_FMT_YUVJ422P: fullRange = true; return AV_PIX_FMT_YUV422P;
    case AV_PIX_FMT_YUVJ444P: fullRange = true; return AV_PIX_FMT_YUV444P;
    case AV_PIX_FMT_YUVJ440P: fullRange = true; return AV_PIX_FMT_YUV440P;
    default: return static_cast<AVPixelFormat>(fmt);
    }
}

// The converter's fast paths write whole blocks of 16 pixels: a row padded to
// them keeps its neighbour (and the end of the buffer) untouched.
int PaddedStride(int width)
{
    return ((width + 15) & ~15) * 4;
}

} // namespace

CPictureConverter::~CPictureConverter()
{
    sws_freeContext(m_sws);
    sws_freeContext(m_scale);
    av_frame_free(&m_scaled);
}

QImage CPictureConverter::Convert(const AVFrame& frame, const QSize& area)
{
    const QSize shown = CPictureFit::Shown(QSize(frame.width, frame.height), area);
    const int w = shown.width(), h = shown.height();
    bool fullRange = frame.color_range == AVCOL_RANGE_JPEG;
    AVPixelFormat format = PlainFormat(frame.format, fullRange);
    const uint8_t* const* planes = frame.data;
    const int* strides = frame.linesize;
    if (shown != QSize(frame.width, frame.height) || format != AV_PIX_FMT_YUV420P) {
        // Scaled in YUV first, then converted without scaling: the converter's
        // fast path takes only unscaled pictures, and the two steps together
        // cost about half of one scaling conversion to RGB.
        if (!ScaleToYuv(frame, format, w, h))
            return QImage();
        planes = m_scaled->data;
        strides = m_scaled->linesize;
        format = AV_PIX_FMT_YUV420P;
    }
    m_sws = sws_getCachedContext(m_sws, w, h, format, w, h, AV_PIX_FMT_RGB32, SWS_FAST_BILINEAR, nullptr, nullptr,
        nullptr);
    if (m_sws == nullptr)
        return QImage();
    const int* coeffs = sws_getCoefficients(SWS_CS_DEFAULT);
    int* invTable = nullptr; int* table = nullptr; int srcRange = 0, dstRange = 0, b = 0, c = 0, sat = 0;
    if (sws_getColorspaceDetails(m_sws, &invTable, &srcRange, &table, &dstRange, &b, &c, &sat) >= 0
        && srcRange != int(fullRange))
        sws_setColorspaceDetails(m_sws, coeffs, fullRange ? 1 : 0, coeffs, 1, b, c, sat);
    // Written in place (the pool holds the only reference), then shared with the window.
    QImage& pooled = PooledImage(w, h);
    if (pooled.isNull())
        return QImage();
    uint8_t* dst[4] = {pooled.bits(), nullptr, nullptr, nullptr};
    int dstStride[4] = {static_cast<int>(pooled.bytesPerLine()), 0, 0, 0};
    sws_scale(m_sws, planes, strides, 0, h, dst, dstStride);
    return pooled;
}

bool CPictureConverter::ScaleToYuv(const AVFrame& frame, int format, int w, int h)
{
    if (m_scaled == nullptr)
        m_scaled = av_frame_alloc();
    if (m_scaled == nullptr)
        return false;
    if (m_scaled->width != w || m_scaled->height != h) {
        av_frame_unref(m_scaled);
        m_scaled->format = AV_PIX_FMT_YUV420P;
        m_scaled->width = w;
        m_scaled->height = h;
        if (av_frame_get_buffer(m_scaled, 64) < 0) {
            av_frame_unref(m_scaled);
            return false;
        }
    }
    // The range stays the source's; the conversion to RGB is told it.
    m_scale = sws_getCachedContext(m_scale, frame.width, frame.height, static_cast<AVPixelFormat>(format), w, h, AV_PIX_FMT_YUV420P,
        SWS_FAST_BILINEAR, nullptr, nullptr, nullptr);
    if (m_scale == nullptr)
        return false;
    return sws_scale(m_scale, frame.data, frame.linesize, 0, frame.height, m_scaled->data, m_scaled->linesize) > 0;
}

QImage& CPictureConverter::PooledImage(int w, int h)
{
    // A picture is reused once nobody else holds it (the window has moved on
    // to a newer one), which saves an allocation and page faults per picture.
    for (QImage& img : m_pool) {
        if (img.isDetached() && img.width() == w && img.height() == h)
            return img;
    }
    QImage* slot = &m_pool[0];  // when every picture is still held (the window is behind): the oldest
    for (QImage& img : m_pool) {
        if (img.isNull() || img.isDetached()) {
            slot = &img;
            break;
        }
    }
    const int stride = PaddedStride(w);
    auto* bytes = static_cast<uchar*>(av_malloc(size_t(stride) * size_t(h)));
    *slot = bytes != nullptr ? QImage(bytes, w, h, stride, QImage::Format_RGB32, &av_free, bytes) : QImage();
    return *slot;
}

} // namespace playwindow
