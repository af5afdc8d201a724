#include "playwindow/CPictureFit.h"

#include <algorithm>

namespace playwindow {

QSize CPictureFit::Shown(const QSize& picture, const QSize& area)
{
    if (picture.isEmpty() || area.isEmpty())
        return picture;
    const double k = std::min(double(area.width()) / picture.width(), double(area.height()) / picture.height());
    if (k >= 0.99 && k <= 1.01)
        return picture;
    const int width = std::max(2, int(picture.width() * k) & ~1);
    // The height follows the even width, so the aspect stays true, and is
    // even too (the converter's fast path takes only even heights).
    const int height = std::min(area.height(), int(double(width) * picture.height() / picture.width())) & ~1;
    return QSize(width, std::max(2, height));
}

} // namespace playwindow
