#pragma once
// Helpers of the widget tests: what a label shows, and texts written as
// Latin-1 literals (the tests build without implicit byte-to-text casts).
#include <QImage>
#include <QLabel>
#include <QPixmap>
#include <QStringList>
#include <initializer_list>

namespace testsupport {

inline QStringList latin1List(std::initializer_list<const char*> texts)
{
    QStringList out;
    for (const char* t : texts)
        out << QString::fromLatin1(t);
    return out;
}

// The picture a label shows, in one format for comparisons; null for none.
inline QImage shownImage(const QLabel* label)
{
    return label != nullptr && label->pixmap() ? label->pixmap()->toImage().convertToFormat(QImage::Format_RGB32) : QImage();
}

} // namespace testsupport
