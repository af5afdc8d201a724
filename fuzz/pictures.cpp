// Fuzz entry: the event pictures' size guard, whole decode and clipped decode of a
// face rectangle taken from the input's last bytes (the asked size, or null).
#include <QByteArray>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "pictures/PictureDecoder.h"

using namespace BodyTemperature;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(data), int(size));
    const QSize declared = PictureDecoder::DeclaredSize(bytes);
    if (!declared.isValid())
        return 0;
    // Whole decodes of big pictures only cost time here; the guard still runs.
    if (qint64(declared.width()) * declared.height() <= 1024 * 1024)
        PictureDecoder::Decode(bytes);
    const uint8_t a = size > 2 ? data[size - 1] : 0, b = size > 2 ? data[size - 2] : 0;
    protocol::PictureRect rect;
    rect.x = (a & 0x0F) / 16.0;
    rect.y = (a >> 4) / 16.0;
    rect.width = ((b & 0x0F) + 1) / 16.0;
    rect.height = ((b >> 4) + 1) / 16.0;
    const QRect crop = PictureDecoder::CropRectFor(declared, rect);
    const QImage region = PictureDecoder::DecodeRegion(bytes, crop);
    if (!region.isNull() && region.size() != crop.size())
        std::abort();
    return 0;
}
