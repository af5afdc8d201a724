#include "ui/ShowCard/PictureDecoder.h"

#include <QBuffer>
#include <QImageReader>
#include <csetjmp>
#include <cstdio>
#include <cstring>

#include <jpeglib.h>

#include "Base/Log.h"

namespace BodyTemperature {
namespace PictureDecoder {

namespace {

// Margin decoded around a region: the chroma upsampling of a subsampled
// picture reads one chroma sample beyond each edge, and the decoder treats the
// left and right edges of a cropped area and the first row after skipped rows
// as picture edges. A block of margin keeps those effects outside the pixels
// we keep. Below the region the decoder reads the rows it needs for
// upsampling by itself, so a couple of rows suffice there -- and every row
// saved below is entropy decoding saved.
constexpr int kRegionMargin = 16;
constexpr int kRegionMarginBelow = 2;

struct JpegErrorManager {
    jpeg_error_mgr pub;
    jmp_buf jump;
};

void OnJpegError(j_common_ptr cinfo)
{
    longjmp(reinterpret_cast<JpegErrorManager*>(cinfo->err)->jump, 1);
}

// Corrupt-data warnings are frequent with devices that cut pictures short;
// the decoder recovers, and logging each one would flood the log.
void OnJpegMessage(j_common_ptr, int) {}

bool IsJpeg(const QByteArray& bytes)
{
    return bytes.size() > 3 && static_cast<unsigned char>(bytes[0]) == 0xFF
        && static_cast<unsigned char>(bytes[1]) == 0xD8;
}

// Everything that touches libjpeg lives in functions without C++ objects in
// their frames, so the longjmp of the error handler skips no destructor.
// Returns false on a decoding error. `out` is allocated by the caller once the
// header is known, through the callback.
struct RegionJob {
    const unsigned char* data = nullptr;
    unsigned long size = 0;
    int x0 = 0, y0 = 0, x1 = 0, y1 = 0;  // decoded area, clipped to the picture
    int width = 0, height = 0;           // declared size
    int components = 0;
    unsigned char* rowBuffer = nullptr;  // set by prepare()
    unsigned char* (*prepare)(void* ctx, RegionJob& job) = nullptr;  // returns the row buffer
    void (*storeRow)(void* ctx, const RegionJob& job, int y, int xOffset) = nullptr;
    void* ctx = nullptr;
    bool refused = false;
    bool unsupported = false;
};

// The decoding steps after the error handler is armed; any libjpeg error
// jumps back to RunRegionJob.
bool DecodeSteps(jpeg_decompress_struct* cinfo, RegionJob& job)
{
    jpeg_mem_src(cinfo, job.data, job.size);
    jpeg_read_header(cinfo, TRUE);
    job.width = static_cast<int>(cinfo->image_width);
    job.height = static_cast<int>(cinfo->image_height);
    if (!IsSizeAllowed(QSize(job.width, job.height))) {
        job.refused = true;
        return false;
    }
    if (cinfo->jpeg_color_space == JCS_GRAYSCALE) {
        cinfo->out_color_space = JCS_GRAYSCALE;
        job.components = 1;
    } else if (cinfo->num_components == 3) {
        cinfo->out_color_space = JCS_EXT_BGRX;
        job.components = 4;
    } else {
        job.unsupported = true;  // CMYK and the like: the caller decodes in full
        return false;
    }
    job.x0 = qMax(0, job.x0);
    job.y0 = qMax(0, job.y0);
    job.x1 = qMin(job.width, job.x1);
    job.y1 = qMin(job.height, job.y1);
    if (job.x1 <= job.x0 || job.y1 <= job.y0)
        return false;
    jpeg_start_decompress(cinfo);
    JDIMENSION xoffset = static_cast<JDIMENSION>(job.x0);
    JDIMENSION cropWidth = static_cast<JDIMENSION>(job.x1 - job.x0);
    if (cropWidth < cinfo->output_width)
        jpeg_crop_scanline(cinfo, &xoffset, &cropWidth);
    else
        xoffset = 0;
    job.rowBuffer = job.prepare(job.ctx, job);
    if (job.y0 > 0)
        jpeg_skip_scanlines(cinfo, static_cast<JDIMENSION>(job.y0));
    JSAMPROW row = job.rowBuffer;
    for (int y = job.y0; y < job.y1; ++y) {
        if (jpeg_read_scanlines(cinfo, &row, 1) != 1)
            break;
        job.storeRow(job.ctx, job, y, static_cast<int>(xoffset));
    }
    // The rows below the region are never decoded: abort instead of finish.
    jpeg_abort_decompress(cinfo);
    return true;
}

bool RunRegionJob(RegionJob& job)
{
    jpeg_decompress_struct cinfo;
    JpegErrorManager err;
    cinfo.err = jpeg_std_error(&err.pub);
    err.pub.error_exit = OnJpegError;
    err.pub.emit_message = OnJpegMessage;
    jpeg_create_decompress(&cinfo);
    if (setjmp(err.jump)) {
        jpeg_destroy_decompress(&cinfo);
        return false;
    }
    if (!DecodeSteps(&cinfo, job)) {
        jpeg_destroy_decompress(&cinfo);
        return false;
    }
    jpeg_destroy_decompress(&cinfo);
    return true;
}

struct RegionContext {
    QRect keep;          // the requested rectangle (pixels of the whole picture)
    QImage image;        // keep.size(), pixels outside the picture stay 0
    QByteArray row;
};

unsigned char* PrepareRegion(void* ctx, RegionJob& job)
{
    auto* c = static_cast<RegionContext*>(ctx);
    c->image = QImage(c->keep.size(), job.components == 1 ? QImage::Format_Grayscale8 : QImage::Format_RGB32);
    if (!c->image.isNull())
        c->image.fill(0);
    c->row.resize(job.width * job.components);
    return reinterpret_cast<unsigned char*>(c->row.data());
}

void StoreRegionRow(void* ctx, const RegionJob& job, int y, int xOffset)
{
    auto* c = static_cast<RegionContext*>(ctx);
    if (c->image.isNull() || y < c->keep.top() || y > c->keep.bottom())
        return;
    const int from = qMax(c->keep.left(), 0);
    const int to = qMin(c->keep.right() + 1, job.width);
    if (to <= from)
        return;
    const auto* src = reinterpret_cast<const unsigned char*>(c->row.constData()) + (from - xOffset) * job.components;
    uchar* dst = c->image.scanLine(y - c->keep.top()) + (from - c->keep.left()) * job.components;
    std::memcpy(dst, src, static_cast<size_t>((to - from) * job.components));
}

QSize JpegHeaderSize(const QByteArray& bytes)
{
    RegionJob job;
    job.data = reinterpret_cast<const unsigned char*>(bytes.constData());
    job.size = static_cast<unsigned long>(bytes.size());
    // An empty area: the job stops right after the header.
    job.x1 = job.y1 = 0;
    RunRegionJob(job);
    if (job.width <= 0 || job.height <= 0)
        return QSize();
    return QSize(job.width, job.height);
}

} // namespace

QSize DeclaredSize(const QByteArray& bytes)
{
    if (bytes.isEmpty())
        return QSize();
    if (IsJpeg(bytes))
        return JpegHeaderSize(bytes);
    QByteArray copy = bytes;  // shares the data; QBuffer needs a non-const array
    QBuffer buffer(&copy);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    return reader.size();
}

bool IsSizeAllowed(const QSize& size)
{
    if (!size.isValid() || size.isEmpty())
        return false;
    if (size.width() > kMaxSide || size.height() > kMaxSide)
        return false;
    return static_cast<qint64>(size.width()) * size.height() <= kMaxPixels;
}

QRect CropRectFor(const QSize& pictureSize, const protocol::PictureRect& rect)
{
    return QRect(static_cast<int>(pictureSize.width() * rect.x), static_cast<int>(pictureSize.height() * rect.y),
                 static_cast<int>(pictureSize.width() * rect.width),
                 static_cast<int>(pictureSize.height() * rect.height));
}

QImage Decode(const QByteArray& bytes)
{
    if (bytes.isEmpty())
        return QImage();
    const QSize size = DeclaredSize(bytes);
    if (!size.isValid()) {
        BASE_LOG_WARN("Picture of %d bytes has no readable header.", static_cast<int>(bytes.size()));
        return QImage();
    }
    if (!IsSizeAllowed(size)) {
        BASE_LOG_WARN("Picture refused: it declares %d x %d pixels.", size.width(), size.height());
        return QImage();
    }
    QImage image;
    if (!image.loadFromData(bytes))
        BASE_LOG_WARN("Picture of %d bytes could not be decoded.", static_cast<int>(bytes.size()));
    return image;
}

QImage DecodeRegion(const QByteArray& bytes, const QRect& crop)
{
    if (bytes.isEmpty() || crop.isEmpty())
        return QImage();
    if (!IsJpeg(bytes)) {
        const QImage whole = Decode(bytes);
        return whole.isNull() ? QImage() : whole.copy(crop);
    }
    RegionContext ctx;
    ctx.keep = crop;
    RegionJob job;
    job.data = reinterpret_cast<const unsigned char*>(bytes.constData());
    job.size = static_cast<unsigned long>(bytes.size());
    job.x0 = crop.left() - kRegionMargin;
    job.y0 = crop.top() - kRegionMargin;
    job.x1 = crop.right() + 1 + kRegionMargin;
    job.y1 = crop.bottom() + 1 + kRegionMarginBelow;
    job.prepare = PrepareRegion;
    job.storeRow = StoreRegionRow;
    job.ctx = &ctx;
    const bool ok = RunRegionJob(job);
    if (job.refused) {
        BASE_LOG_WARN("Picture refused: it declares %d x %d pixels.", job.width, job.height);
        return QImage();
    }
    if (job.unsupported) {
        const QImage whole = Decode(bytes);
        return whole.isNull() ? QImage() : whole.copy(crop);
    }
    if (!ok) {
        if (job.width > 0 && (crop.right() < 0 || crop.bottom() < 0 || crop.left() >= job.width || crop.top() >= job.height)) {
            // Entirely outside the picture: what a copy of a full decode gives.
            QImage outside(crop.size(), QImage::Format_RGB32);
            outside.fill(0);
            return outside;
        }
        BASE_LOG_WARN("Picture of %d bytes could not be decoded.", static_cast<int>(bytes.size()));
        return QImage();
    }
    return ctx.image;
}

} // namespace PictureDecoder
} // namespace BodyTemperature
