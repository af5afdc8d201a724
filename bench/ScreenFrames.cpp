#include "ScreenFrames.h"

#include <algorithm>

#include <X11/Xlib.h>
#include <X11/extensions/Xdamage.h>

namespace {
// Half a picture interval at 25 per second: the parts of one put come closer
// together, two pictures farther apart.
constexpr unsigned long kSamePictureMs = 15;
} // namespace

ScreenFrames::ScreenFrames(std::vector<QRect> cells)
    : m_cells(std::move(cells)), m_counts(m_cells.size(), 0), m_last(m_cells.size(), 0)
{
    m_display = XOpenDisplay(nullptr);
    int error = 0;
    if (m_display == nullptr || !XDamageQueryExtension(m_display, &m_eventBase, &error))
        return;
    m_damage = XDamageCreate(m_display, DefaultRootWindow(m_display), XDamageReportRawRectangles);
    XFlush(m_display);
}

ScreenFrames::~ScreenFrames()
{
    if (m_display == nullptr)
        return;
    if (m_damage != 0)
        XDamageDestroy(m_display, m_damage);
    XCloseDisplay(m_display);
}

int ScreenFrames::Socket() const
{
    return m_display != nullptr ? ConnectionNumber(m_display) : -1;
}

void ScreenFrames::Read()
{
    if (m_damage == 0)
        return;
    while (XPending(m_display) > 0) {
        XEvent event;
        XNextEvent(m_display, &event);
        if (event.type != m_eventBase + XDamageNotify)
            continue;
        const auto& d = reinterpret_cast<const XDamageNotifyEvent&>(event);
        const QRect area(d.area.x, d.area.y, d.area.width, d.area.height);
        for (size_t i = 0; i < m_cells.size(); ++i) {
            if (!m_cells[i].intersects(area) || (m_counts[i] > 0 && d.timestamp - m_last[i] < kSamePictureMs))
                continue;
            ++m_counts[i];
            m_last[i] = d.timestamp;
        }
    }
}

void ScreenFrames::Reset()
{
    Read();
    std::fill(m_counts.begin(), m_counts.end(), 0);
}
