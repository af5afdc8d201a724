#include "playwindow/CVideoSurface.h"

#include <QPainter>

#include "playwindow/CStreamDecoder.h"

namespace playwindow {

CVideoSurface::CVideoSurface(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("m_pVideoSurface"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoSystemBackground);
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void CVideoSurface::SetFrame(QImage frame)
{
    m_frame = std::move(frame);
    m_bNew = true;
    update();
}

void CVideoSurface::Clear()
{
    m_frame = QImage();
    update();
}

void CVideoSurface::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    if (m_frame.isNull()) {
        p.fillRect(rect(), Qt::black);
        return;
    }
    // The decoder already converted the picture for this size; after a resize
    // the old picture is stretched until the next one arrives.
    QRect target(QPoint(0, 0), CStreamDecoder::ShownSize(m_frame.size(), size()));
    target.moveCenter(rect().center());
    const QRegion bars = QRegion(rect()).subtracted(target);
    for (const QRect& r : bars)
        p.fillRect(r, Qt::black);
    if (target.size() == m_frame.size())
        p.drawImage(target.topLeft(), m_frame);
    else
        p.drawImage(target, m_frame);
    if (m_bNew) {
        m_bNew = false;
        ++m_painted;
    }
}

} // namespace playwindow
