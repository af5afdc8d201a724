#include "ScreenFrames.h"

#include <algorithm>

#include <X11/Xlib.h>
#include <X11/extensions/Xdamage.h>

namespace {
// Half a picture interval at 25 per second: the parts of one put come closer
// together, two pictures farther apart.
constexpr unsigned long kSamePictureMs = 15;

// A window may go away between listing and watching it.
int IgnoreErrors(Display*, XErrorEvent*)
{
    return 0;
}
} // namespace

ScreenFrames::ScreenFrames(std::vector<QRect> cells)
    : m_cells(std::move(cells)), m_counts(m_cells.size(), 0), m_last(m_cells.size(), 0)
{
    m_display = XOpenDisplay(nullptr);
    int error = 0;
    m_valid = m_display != nullptr && XDamageQueryExtension(m_display, &m_eventBase, &error);
    if (!m_valid)
        return;
    // New and moved top-level windows are told.
    XSelectInput(m_display, DefaultRootWindow(m_display), SubstructureNotifyMask);
    Track();
}

ScreenFrames::~ScreenFrames()
{
    // The server frees the damage objects with the connection.
    if (m_display != nullptr)
        XCloseDisplay(m_display);
}

int ScreenFrames::Socket() const
{
    return m_display != nullptr ? ConnectionNumber(m_display) : -1;
}

void ScreenFrames::Track()
{
    // Each top-level window is watched on its own: a player's window may be
    // drawn off screen and composited, which the root window's damage misses.
    Window root = 0, parent = 0;
    Window* children = nullptr;
    unsigned count = 0;
    if (!XQueryTree(m_display, DefaultRootWindow(m_display), &root, &parent, &children, &count))
        return;
    for (unsigned i = 0; i < count; ++i)
        Watch(children[i]);
    if (children != nullptr)
        XFree(children);
}

void ScreenFrames::Watch(unsigned long window)
{
    const auto old = XSetErrorHandler(&IgnoreErrors);
    XWindowAttributes a;
    if (m_windows.count(window) == 0 && XGetWindowAttributes(m_display, window, &a) && a.map_state == IsViewable) {
        XDamageCreate(m_display, window, XDamageReportRawRectangles);
        m_windows[window] = QPoint(a.x + a.border_width, a.y + a.border_width);
    }
    XSync(m_display, False);
    XSetErrorHandler(old);
}

void ScreenFrames::Read()
{
    if (!m_valid)
        return;
    while (XPending(m_display) > 0) {
        XEvent event;
        XNextEvent(m_display, &event);
        if (event.type == MapNotify) {
            Watch(event.xmap.window);
            continue;
        }
        if (event.type == ConfigureNotify) {
            const XConfigureEvent& c = event.xconfigure;
            if (m_windows.count(c.window) > 0)
                m_windows[c.window] = QPoint(c.x + c.border_width, c.y + c.border_width);
            continue;
        }
        if (event.type != m_eventBase + XDamageNotify)
            continue;
        const auto& d = reinterpret_cast<const XDamageNotifyEvent&>(event);
        const auto window = m_windows.find(d.drawable);
        if (window == m_windows.end())
            continue;
        const QRect area = QRect(d.area.x, d.area.y, d.area.width, d.area.height).translated(window->second);
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
