#pragma once
// Face rectangles arrive from devices as fractions of their picture, but a
// broken or hostile device may send anything: NaN, negative, huge (1e300) or
// inverted values. Every rectangle is passed through ClampFaceRect where it
// enters the page, so that a crop can never reach outside its picture (a
// 10 x 10 rectangle would ask for a hundred pictures' worth of pixels) and no
// float-to-int conversion ever sees a value out of range.
//
// Pure functions; any thread.
#include <QRect>
#include <QSize>

#include "protocol/IntelAlarmInfo.h"

namespace BodyTemperature {

// The part of rect that lies inside the picture (0..1 on both axes). A
// rectangle with a value that is not a finite number, or with nothing inside
// the picture, becomes all zero: "no rectangle", which shows the whole picture.
protocol::PictureRect ClampFaceRect(const protocol::PictureRect& rect);

// The pixels of rect on a picture of the given size, each coordinate truncated
// from size * fraction after clamping: always inside the picture, empty for
// "no rectangle".
QRect FaceRectInPixels(const QSize& pictureSize, const protocol::PictureRect& rect);

} // namespace BodyTemperature
