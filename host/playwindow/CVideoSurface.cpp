#include "playwindow/CVideoSurface.h"

#include <QPainter>
#include <ctime>

#include "playwindow/CPictureFit.h"

namespace playwindow {
namespace {
uint64_t ThreadCpuNs()
{
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return uint64_t(ts.tv_sec) * 1000000000u + uint64_t(ts.tv_nsec);
}
} // namespace

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
    m_bDimmed = false;
    update();
}

void CVideoSurface::Clear()
{
    m_frame = QImage();
    m_bDimmed = false;
    update();
}

void CVideoSurface::SetDimmed(bool dimmed)
{
    if (m_bDimmed == dimmed)
        return;
    m_bDimmed = dimmed;
    update();
}

void CVideoSurface::paintEvent(QPaintEvent*)
{
    const uint64_t start = ThreadCpuNs();
    QPainter p(this);
    if (m_frame.isNull()) {
        p.fillRect(rect(), Qt::black);
        return;
    }
    // The decoder already converted the picture for this size; after a resize
    // the old picture is stretched until the next one arrives.
    QRect target(QPoint(0, 0), CPictureFit::Shown(m_frame.size(), size()));
    target.moveCenter(rect().center());
    const QRegion bars = QRegion(rect()).subtracted(target);
    for (const QRect& r : bars)
        p.fillRect(r, Qt::black);
    if (target.size() == m_frame.size())
        p.drawImage(target.topLeft(), m_frame);
    else
        p.drawImage(target, m_frame);
    if (m_bDimmed)
        p.fillRect(target, QColor(0, 0, 0, 140));
    if (m_bNew) {
        m_bNew = false;
        ++m_painted;
    }
    m_paintNs += ThreadCpuNs() - start;
}

} // namespace playwindow
