#include "PictureDecoder.h"

#include <QBuffer>
#include <QImageReader>
#include <atomic>
#include <csetjmp>
#include <cstdio>
#include <cstring>

#include <jpeglib.h>

#include "Base/Log.h"
#include "FaceRectClamp.h"

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

// A baseline JPEG with restart markers can be entered at a restart marker:
// the decoder's state (the DC predictions) starts afresh there. When the
// intervals line up with MCU rows, the rows above a face need not be entropy
// decoded at all -- the part of the work that skipping scanlines cannot save.
// The entered stream is the headers (with the height reduced) followed by the
// scan from that marker on, its markers renumbered from RST0.
struct RestartEntry {
    QByteArray stream;  // headers + the scan from the chosen marker on
    int rowOffset = 0;  // picture rows left out above
    QSize declared;     // size of the original picture
};

std::atomic<int> g_restartEntries{0};

// A decoder expects RST0, RST1, ... RST7, RST0 ... from the start of a scan:
// number the markers of a stream entered midway afresh.
void RenumberRestartMarkers(QByteArray& stream, int scanStart)
{
    auto* p = reinterpret_cast<unsigned char*>(stream.data());
    const int n = stream.size();
    int count = 0;
    for (int j = scanStart; j + 1 < n;) {
        void* hit = std::memchr(p + j, 0xFF, static_cast<size_t>(n - j - 1));
        if (!hit)
            return;
        j = static_cast<int>(static_cast<unsigned char*>(hit) - p);
        const unsigned char next = p[j + 1];
        if (next >= 0xD0 && next <= 0xD7) {
            p[j + 1] = static_cast<unsigned char>(0xD0 + (count++ & 7));
            j += 2;
        } else if (next == 0x00 || next == 0xFF) {
            j += next == 0x00 ? 2 : 1;
        } else {
            return;  // end of the scan
        }
    }
}

// Reads the frame, restart interval and scan header; false for anything but a
// baseline picture in one interleaved scan with row-aligned restart intervals.
bool EnterAtRestart(const QByteArray& bytes, int firstNeededRow, RestartEntry* entry)
{
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.constData());
    const int n = bytes.size();
    int restartInterval = 0, width = 0, height = 0, components = 0, maxH = 1, maxV = 1, sof = -1;
    int i = 2;
    while (i + 4 <= n) {
        if (p[i] != 0xFF)
            return false;
        const unsigned char marker = p[i + 1];
        if (marker == 0xFF) {
            ++i;
            continue;
        }
        const int length = (p[i + 2] << 8) | p[i + 3];
        if (length < 2 || i + 2 + length > n)
            return false;
        if (marker == 0xC0 || marker == 0xC1) {
            if (length < 8)
                return false;
            sof = i;
            height = (p[i + 5] << 8) | p[i + 6];
            width = (p[i + 7] << 8) | p[i + 8];
            components = p[i + 9];
            if (length < 8 + 3 * components)
                return false;
            for (int c = 0; c < components; ++c) {
                maxH = qMax(maxH, p[i + 11 + 3 * c] >> 4);
                maxV = qMax(maxV, p[i + 11 + 3 * c] & 0x0F);
            }
        } else if (marker >= 0xC2 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC) {
            return false;  // progressive, lossless or arithmetic coding
        } else if (marker == 0xDD && length >= 4) {
            restartInterval = (p[i + 4] << 8) | p[i + 5];
        } else if (marker == 0xDA) {
            if (length < 3 || sof < 0 || restartInterval == 0 || width <= 0 || height <= 0 || p[i + 4] != components)
                return false;
            // One component alone is coded in single 8 x 8 blocks.
            const int mcuW = components == 1 ? 8 : 8 * maxH;
            const int mcuH = components == 1 ? 8 : 8 * maxV;
            const int mcusPerRow = (width + mcuW - 1) / mcuW;
            if (mcusPerRow % restartInterval != 0)
                return false;
            const int intervalsPerRow = mcusPerRow / restartInterval;
            const int row = firstNeededRow / mcuH;
            if (row <= 0)
                return false;
            const int wanted = row * intervalsPerRow;
            const int scanStart = i + 2 + length;
            int seen = 0;
            for (int j = scanStart; j + 1 < n;) {
                const void* hit = std::memchr(p + j, 0xFF, static_cast<size_t>(n - j - 1));
                if (!hit)
                    return false;
                j = static_cast<int>(static_cast<const unsigned char*>(hit) - p);
                const unsigned char next = p[j + 1];
                if (next >= 0xD0 && next <= 0xD7) {
                    j += 2;
                    if (++seen == wanted) {
                        entry->stream = bytes.left(scanStart) + bytes.mid(j);
                        const int newHeight = height - row * mcuH;
                        entry->stream[sof + 5] = static_cast<char>(newHeight >> 8);
                        entry->stream[sof + 6] = static_cast<char>(newHeight & 0xFF);
                        RenumberRestartMarkers(entry->stream, scanStart);
                        entry->rowOffset = row * mcuH;
                        entry->declared = QSize(width, height);
                        return true;
                    }
                } else if (next == 0x00 || next == 0xFF) {
                    j += next == 0x00 ? 2 : 1;  // stuffed byte or fill
                } else {
                    return false;  // end of the scan before the row
                }
            }
            return false;
        }
        i += 2 + length;
    }
    return false;
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

int RestartEntryCount()
{
    return g_restartEntries.load();
}

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
    return FaceRectInPixels(pictureSize, rect);
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
    RestartEntry entry;
    const bool entered = crop.top() - kRegionMargin > 0 && EnterAtRestart(bytes, crop.top() - kRegionMargin, &entry);
    if (entered) {
        if (!IsSizeAllowed(entry.declared)) {
            BASE_LOG_WARN("Picture refused: it declares %d x %d pixels.", entry.declared.width(), entry.declared.height());
            return QImage();
        }
        if (crop.top() >= entry.declared.height())
            entry = RestartEntry();  // below the picture: the general path fills it
        else
            ++g_restartEntries;
    }
    const QByteArray& stream = entry.stream.isEmpty() ? bytes : entry.stream;
    const int shift = entry.rowOffset;
    RegionContext ctx;
    ctx.keep = crop.translated(0, -shift);
    RegionJob job;
    job.data = reinterpret_cast<const unsigned char*>(stream.constData());
    job.size = static_cast<unsigned long>(stream.size());
    job.x0 = crop.left() - kRegionMargin;
    job.y0 = crop.top() - shift - kRegionMargin;
    job.x1 = crop.right() + 1 + kRegionMargin;
    job.y1 = crop.bottom() - shift + 1 + kRegionMarginBelow;
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
        if (job.width > 0 && (crop.right() < 0 || crop.bottom() < 0 || crop.left() >= job.width || crop.top() >= job.height + shift)) {
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
