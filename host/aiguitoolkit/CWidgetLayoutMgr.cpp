#include "aiguitoolkit/CWidgetLayoutMgr.h"

#include <QEvent>
#include <QFile>
#include <QVariant>
#include <QWidget>
#include <QXmlStreamReader>

#include "Base/Log.h"

namespace aiguitoolkit {
namespace {
constexpr int kGap = 1;  // pixels between windows; the container's background shows through
}

CWidgetLayoutMgr::CWidgetLayoutMgr(QObject* parent) : QObject(parent), m_layouts(BuiltInLayouts()) {}

CWidgetLayoutMgr::~CWidgetLayoutMgr() = default;

QVector<CWidgetLayoutMgr::Layout> CWidgetLayoutMgr::BuiltInLayouts()
{
    return {Layout{1, 1, 1, {}}, Layout{2, 2, 2, {}}, Layout{3, 3, 3, {}}};
}

bool CWidgetLayoutMgr::ReadLayoutFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QVector<Layout> layouts;
    QXmlStreamReader xml(&file);
    Layout* current = nullptr;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const auto attrs = xml.attributes();
        if (xml.name() == QLatin1String("Layout")) {
            Layout l;
            l.type = attrs.value(QLatin1String("type")).toInt();
            l.rows = attrs.value(QLatin1String("rows")).toInt();
            l.cols = attrs.value(QLatin1String("cols")).toInt();
            if (l.type <= 0 || l.rows <= 0 || l.cols <= 0 || l.rows * l.cols > 64) {
                current = nullptr;
                continue;
            }
            layouts.push_back(l);
            current = &layouts.back();
        } else if (xml.name() == QLatin1String("Cell") && current != nullptr) {
            auto num = [&attrs](const char* name, int def) {
                bool ok = false;
                const int v = attrs.value(QLatin1String(name)).toInt(&ok);
                return ok ? v : def;
            };
            const QRect cell(num("col", 0), num("row", 0), num("colSpan", 1), num("rowSpan", 1));
            if (cell.left() >= 0 && cell.top() >= 0 && cell.width() > 0 && cell.height() > 0
                && cell.right() < current->cols && cell.bottom() < current->rows)
                current->cells.push_back(cell);
        }
    }
    if (xml.hasError() || layouts.isEmpty()) {
        BASE_LOG_WARN("layout file %s unusable, built-in layouts kept", qUtf8Printable(path));
        return false;
    }
    m_layouts = layouts;
    return true;
}

void CWidgetLayoutMgr::Init(const QString& layoutFile, const QList<QWidget*>& windows, QWidget* container, int startType)
{
    m_bFromFile = ReadLayoutFile(layoutFile);
    m_windows = windows;
    if (m_pContainer)
        m_pContainer->removeEventFilter(this);
    m_pContainer = container;
    for (QWidget* w : m_windows)
        if (w->parentWidget() != container)
            w->setParent(container);
    if (m_pContainer)
        m_pContainer->installEventFilter(this);
    m_pMaximized = nullptr;
    m_iType = LayoutOf(startType) ? startType : m_layouts.front().type;
    Relayout();
}

const CWidgetLayoutMgr::Layout* CWidgetLayoutMgr::LayoutOf(int type) const
{
    for (const Layout& l : m_layouts)
        if (l.type == type)
            return &l;
    return nullptr;
}

int CWidgetLayoutMgr::WindowCountOf(int type) const
{
    const Layout* l = LayoutOf(type);
    if (l == nullptr)
        return 0;
    return l->cells.isEmpty() ? l->rows * l->cols : l->cells.size();
}

QList<int> CWidgetLayoutMgr::Types() const
{
    QList<int> types;
    for (const Layout& l : m_layouts)
        types.append(l.type);
    return types;
}

QList<QWidget*> CWidgetLayoutMgr::DisplayedWindows() const
{
    return m_windows.mid(0, qMin(m_windows.size(), WindowCountOf(m_iType)));
}

void CWidgetLayoutMgr::Redisplay(int type)
{
    if (LayoutOf(type) == nullptr)
        return;
    m_iType = type;
    m_pMaximized = nullptr;
    Relayout();
}

void CWidgetLayoutMgr::MaximizeWindow(QWidget* window)
{
    if (!m_windows.contains(window))
        return;
    m_pMaximized = window;
    Relayout();
}

void CWidgetLayoutMgr::RestoreNormal()
{
    m_pMaximized = nullptr;
    Relayout();
}

bool CWidgetLayoutMgr::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_pContainer && (event->type() == QEvent::Resize || event->type() == QEvent::Show))
        Relayout();
    return QObject::eventFilter(watched, event);
}

void CWidgetLayoutMgr::Relayout()
{
    const Layout* l = LayoutOf(m_iType);
    if (!m_pContainer || l == nullptr)
        return;
    const QRect area = m_pContainer->contentsRect();
    const QList<QWidget*> shown = DisplayedWindows();
    for (QWidget* w : m_windows) {
        if (!shown.contains(w) || (m_pMaximized != nullptr && w != m_pMaximized))
            w->hide();
        // A window that has the container to itself may show its camera's
        // full-resolution stream; one among several, the small one.
        const bool sole = m_pMaximized != nullptr ? w == m_pMaximized : shown.size() == 1 && shown.contains(w);
        if (w->property(kSoleViewProperty).toBool() != sole)
            w->setProperty(kSoleViewProperty, sole);
    }
    if (m_pMaximized != nullptr) {
        m_pMaximized->setGeometry(area);
        m_pMaximized->show();
        m_pMaximized->raise();
        return;
    }
    for (int i = 0; i < shown.size(); ++i) {
        const QRect cell = l->cells.isEmpty() ? QRect(i % l->cols, i / l->cols, 1, 1) : l->cells.at(i);
        const int x0 = area.left() + area.width() * cell.left() / l->cols;
        const int x1 = area.left() + area.width() * (cell.left() + cell.width()) / l->cols;
        const int y0 = area.top() + area.height() * cell.top() / l->rows;
        const int y1 = area.top() + area.height() * (cell.top() + cell.height()) / l->rows;
        const int gapR = cell.left() + cell.width() < l->cols ? kGap : 0;
        const int gapB = cell.top() + cell.height() < l->rows ? kGap : 0;
        shown[i]->setGeometry(x0, y0, x1 - x0 - gapR, y1 - y0 - gapB);
        shown[i]->show();
    }
}

} // namespace aiguitoolkit
