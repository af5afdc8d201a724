#include "pictures/PictureDecoder.h"

#include <QBuffer>
#include <QImageReader>
#include <cstring>

#include "Base/Log.h"
#include "pictures/FaceRectClamp.h"

namespace BodyTemperature {
namespace PictureDecoder {

namespace {

// One reader per picture: the header it reads for the size check is the one
// the decode goes on from.
class PictureReader final {
public:
    explicit PictureReader(const QByteArray& bytes) : m_bytes(bytes), m_buffer(&m_bytes)
    {
        m_buffer.open(QIODevice::ReadOnly);
        m_reader.setDevice(&m_buffer);
    }

    QSize size() { return m_reader.size(); }

    // The header was read and the size is acceptable; logs why not otherwise.
    bool checkHeader(QSize* declared)
    {
        *declared = size();
        if (!declared->isValid()) {
            BASE_LOG_WARN("Picture of %d bytes has no readable header.", static_cast<int>(m_bytes.size()));
            return false;
        }
        if (!IsSizeAllowed(*declared)) {
            BASE_LOG_WARN("Picture refused: it declares %d x %d pixels.", declared->width(), declared->height());
            return false;
        }
        return true;
    }

    // The whole picture, or only `clip` of it when given; scaled to `scaled`
    // (aspect ignored) when that is given.
    QImage read(const QRect& clip = QRect(), const QSize& scaled = QSize())
    {
        if (!clip.isNull())
            m_reader.setClipRect(clip);
        if (scaled.isValid())
            m_reader.setScaledSize(scaled);
        QImage image = m_reader.read();
        const QSize expected = scaled.isValid() ? scaled : clip.isNull() ? QSize() : clip.size();
        if (image.isNull() || (expected.isValid() && image.size() != expected)) {
            BASE_LOG_WARN("Picture of %d bytes could not be decoded.", static_cast<int>(m_bytes.size()));
            return QImage();
        }
        return image;
    }

private:
    QByteArray m_bytes;  // shares the data; QBuffer needs a non-const array
    QBuffer m_buffer;
    QImageReader m_reader;
};

} // namespace

QSize DeclaredSize(const QByteArray& bytes)
{
    if (bytes.isEmpty())
        return QSize();
    return PictureReader(bytes).size();
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
    PictureReader reader(bytes);
    QSize size;
    return reader.checkHeader(&size) ? reader.read() : QImage();
}

QImage DecodeScaled(const QByteArray& bytes, const QSize& size)
{
    if (bytes.isEmpty() || size.isEmpty())
        return QImage();
    PictureReader reader(bytes);
    QSize declared;
    return reader.checkHeader(&declared) ? reader.read(QRect(), size) : QImage();
}

QImage DecodeRegion(const QByteArray& bytes, const QRect& crop)
{
    if (bytes.isEmpty() || crop.isEmpty())
        return QImage();
    PictureReader reader(bytes);
    QSize size;
    if (!reader.checkHeader(&size))
        return QImage();
    const QRect inside = crop & QRect(QPoint(0, 0), size);
    if (inside == crop)
        return reader.read(crop);
    // Partly or wholly outside the picture: what a copy of a full decode gives.
    QImage part;
    if (!inside.isEmpty()) {
        part = reader.read(inside);
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
