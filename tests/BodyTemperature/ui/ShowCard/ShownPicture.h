#pragma once
// Pictures compared by content (which picture, which cut of it) on a coarse
// grid, whatever smoothing the card or dialog chose to scale them with.
#include <QImage>
#include <QLabel>
#include <cstdlib>

#include "support/UiTestSupport.h"

namespace cardtest {

inline bool Resembles(const QImage& shown, const QImage& expected)
{
    if (shown.isNull() || expected.isNull())
        return false;
    // Transparent pixels of a default picture show black, as on a pixmap.
    const auto coarse = [](const QImage& i) {
        return i.convertToFormat(QImage::Format_ARGB32_Premultiplied).convertToFormat(QImage::Format_RGB32).scaled(6, 6,
            Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    };
    const QImage a = coarse(shown), b = coarse(expected);
    for (int i = 0; i < 36; ++i) {
        const QColor p = a.pixelColor(i % 6, i / 6), q = b.pixelColor(i % 6, i / 6);
        if (std::abs(p.red() - q.red()) > 10 || std::abs(p.green() - q.green()) > 10 || std::abs(p.blue() - q.blue()) > 10)
            return false;
    }
    return true;
}

// Whether label shows expected at size; a null expected: nothing shown.
inline bool ShowsAt(const QLabel* label, const QImage& expected, const QSize& size)
{
    const QImage shown = testsupport::shownImage(label);
    return expected.isNull() ? shown.isNull() : shown.size() == size && Resembles(shown, expected);
}

} // namespace cardtest
