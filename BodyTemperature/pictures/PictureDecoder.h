#pragma once
// Decoding of the encoded pictures that arrive with face events (JPEG from
// the devices, any format QImage reads otherwise), with a size check made on
// the header before any pixel memory is allocated.
//
// Pure functions, callable from any thread; the results are plain QImages.
#include <QByteArray>
#include <QImage>
#include <QRect>
#include <QSize>

#include "protocol/IntelAlarmInfo.h"

namespace BodyTemperature {
namespace PictureDecoder {

// Pictures above these are refused like undecodable ones: a hostile or broken
// header must not make a card allocate gigabytes.
constexpr int kMaxSide = 8192;
constexpr qint64 kMaxPixels = 40LL * 1000 * 1000;

// The size the header declares; an invalid size when the header cannot be read.
QSize DeclaredSize(const QByteArray& bytes);
bool IsSizeAllowed(const QSize& size);

// The pixel rectangle of a face rectangle on a picture of the given size:
// each coordinate truncated from size * fraction, clamped to the picture first.
QRect CropRectFor(const QSize& pictureSize, const protocol::PictureRect& rect);

// Decodes the whole picture; a null image when it is undecodable or too big
// (the refusal is logged).
QImage Decode(const QByteArray& bytes);

// The whole picture decoded straight to `size` (aspect ignored): a JPEG is
// read at a reduced scale first, so no full-size picture is decoded to be
// thrown away. A null image on failure or refusal.
QImage DecodeScaled(const QByteArray& bytes, const QSize& size);

// The rectangle `crop` (pixels of the whole picture) of the picture, equal
// pixel for pixel to Decode(bytes).copy(crop): pixels outside the picture are
// 0. The image reader cuts the rectangle while it decodes, so no picture of
// the whole scene is ever held. A null image on failure or refusal.
QImage DecodeRegion(const QByteArray& bytes, const QRect& crop);

} // namespace PictureDecoder
} // namespace BodyTemperature
