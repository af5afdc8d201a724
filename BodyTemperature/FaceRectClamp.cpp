#include "FaceRectClamp.h"

#include <algorithm>
#include <cmath>

namespace BodyTemperature {

namespace {
double unit(double v)
{
    return std::min(1.0, std::max(0.0, v));
}
} // namespace

protocol::PictureRect ClampFaceRect(const protocol::PictureRect& rect)
{
    if (!std::isfinite(rect.x) || !std::isfinite(rect.y) || !std::isfinite(rect.width) || !std::isfinite(rect.height))
        return protocol::PictureRect();
    // The far edges may overflow to infinity (1e308 + 1e308): clamping handles that too.
    const double left = unit(rect.x);
    const double top = unit(rect.y);
    const double right = unit(rect.x + rect.width);
    const double bottom = unit(rect.y + rect.height);
    if (!(right > left) || !(bottom > top))
        return protocol::PictureRect();
    protocol::PictureRect out;
    out.x = left;
    out.y = top;
    out.width = right - left;
    out.height = bottom - top;
    return out;
}

QRect FaceRectInPixels(const QSize& pictureSize, const protocol::PictureRect& rect)
{
    if (pictureSize.width() <= 0 || pictureSize.height() <= 0)
        return QRect();
    const protocol::PictureRect r = ClampFaceRect(rect);
    const double w = pictureSize.width();
    const double h = pictureSize.height();
    const QRect pixels(static_cast<int>(w * r.x), static_cast<int>(h * r.y), static_cast<int>(w * r.width),
        static_cast<int>(h * r.height));
    return pixels.intersected(QRect(QPoint(0, 0), pictureSize));
}

} // namespace BodyTemperature
