#include "pictures/FaceRectClamp.h"

#include <algorithm>
#include <cmath>

namespace BodyTemperature {

namespace {
double unit(double v)
{
    return std::min(1.0, std::max(0.0, v));
}

// One axis: origin and length clipped to 0..1. A length that fits is kept
// exactly as sent (no round trip through the far edge).
bool clipAxis(double origin, double length, double& outOrigin, double& outLength)
{
    double start = origin;
    double size = length;
    if (start < 0.0) {
        size += start;
        start = 0.0;
    }
    start = unit(start);
    size = std::min(size, 1.0 - start);
    if (!(size > 0.0))
        return false;
    outOrigin = start;
    outLength = size;
    return true;
}

} // namespace

protocol::PictureRect ClampFaceRect(const protocol::PictureRect& rect)
{
    if (!std::isfinite(rect.x) || !std::isfinite(rect.y) || !std::isfinite(rect.width) || !std::isfinite(rect.height))
        return protocol::PictureRect();
    protocol::PictureRect out;
    if (!clipAxis(rect.x, rect.width, out.x, out.width) || !clipAxis(rect.y, rect.height, out.y, out.height))
        return protocol::PictureRect();
    return out;
}

QRect FaceRectInPixels(const QSize& pictureSize, const protocol::PictureRect& rect)
{
    if (pictureSize.width() <= 0 || pictureSize.height() <= 0)
        return QRect();
    // Fractions within 0..1 whose sums stay within 1: truncated pixels stay inside the picture.
    const protocol::PictureRect r = ClampFaceRect(rect);
    const double w = pictureSize.width();
    const double h = pictureSize.height();
    return QRect(static_cast<int>(w * r.x), static_cast<int>(h * r.y), static_cast<int>(w * r.width),
        static_cast<int>(h * r.height));
}

} // namespace BodyTemperature
