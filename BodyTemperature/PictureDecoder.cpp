#include "PictureDecoder.h"

#include <QBuffer>
#include <QImageReader>
#include <cstring>

#include "Base/Log.h"
#include "FaceRectClamp.h"

namespace BodyTemperature {
namespace PictureDecoder {

namespace {

// The header was read and the size is acceptable; logs why not otherwise.
bool CheckHeader(const QByteArray& bytes, QSize* declared)
{
    *declared = DeclaredSize(bytes);
    if (!declared->isValid()) {
        BASE_LOG_WARN("Picture of %d bytes has no readable header.", static_cast<int>(bytes.size()));
        return false;
    }
    if (!IsSizeAllowed(*declared)) {
        BASE_LOG_WARN("Picture refused: it declares %d x %d pixels.", declared->width(), declared->height());
        return false;
    }
    return true;
}

QImage ReadClipped(const QByteArray& bytes, const QRect& clip)
{
    QByteArray shared = bytes;  // shares the data; QBuffer needs a non-const array
    QBuffer buffer(&shared);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setClipRect(clip);
    QImage image = reader.read();
    if (image.isNull() || image.size() != clip.size()) {
        BASE_LOG_WARN("Picture of %d bytes could not be decoded.", static_cast<int>(bytes.size()));
        return QImage();
    }
    return image;
}

} // namespace

QSize DeclaredSize(const QByteArray& bytes)
{
    if (bytes.isEmpty())
        return QSize();
    QByteArray shared = bytes;
    QBuffer buffer(&shared);
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
    QSize size;
    if (bytes.isEmpty() || !CheckHeader(bytes, &size))
        return QImage();
    QImage image;
    if (!image.loadFromData(bytes))
        BASE_LOG_WARN("Picture of %d bytes could not be decoded.", static_cast<int>(bytes.size()));
    return image;
}

QImage DecodeRegion(const QByteArray& bytes, const QRect& crop)
{
    QSize size;
    if (bytes.isEmpty() || crop.isEmpty() || !CheckHeader(bytes, &size))
        return QImage();
    const QRect inside = crop & QRect(QPoint(0, 0), size);
    if (inside == crop)
        return ReadClipped(bytes, crop);
    // Partly or wholly outside the picture: what a copy of a full decode gives.
    QImage part;
    if (!inside.isEmpty()) {
        part = ReadClipped(bytes, inside);
        if (part.isNull())
            return QImage();
    }
    QImage result(crop.size(), part.isNull() ? QImage::Format_RGB32 : part.format());
    result.fill(0);
    if (!part.isNull()) {
        // Row copies: QPainter cannot draw on every format a decode gives (grayscale).
        const int bytesPerPixel = part.depth() / 8;
        const QPoint at = inside.topLeft() - crop.topLeft();
        for (int y = 0; y < part.height(); ++y)
            std::memcpy(result.scanLine(at.y() + y) + at.x() * bytesPerPixel, part.constScanLine(y),
                        static_cast<size_t>(part.width() * bytesPerPixel));
    }
    return result;
}

} // namespace PictureDecoder
} // namespace BodyTemperature
