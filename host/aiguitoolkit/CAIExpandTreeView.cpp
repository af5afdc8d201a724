#include "aiguitoolkit/CAIExpandTreeView.h"

#include <QMenu>
#include <QMouseEvent>

#include "aiguitoolkit/CAITreeViewWithRightPixmapDelegate.h"

namespace aiguitoolkit {

CAIExpandTreeView::CAIExpandTreeView(QWidget* parent) : QTreeView(parent)
{
    qRegisterMetaType<VantorGUIToolkit::CItemDataRole>("VantorGUIToolkit::CItemDataRole");
    setExpandsOnDoubleClick(false);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
}

CAIExpandTreeView::~CAIExpandTreeView() = default;

void CAIExpandTreeView::OnShowMenu(const QPoint& pos)
{
    if (!m_bDefaultMenu)
        return;
    QMenu menu(this);
    menu.addAction(tr("ExpandAll"), this, &QTreeView::expandAll);
    menu.addAction(tr("CollapseAll"), this, &QTreeView::collapseAll);
    menu.exec(viewport()->mapToGlobal(pos));
}

void CAIExpandTreeView::mouseReleaseEvent(QMouseEvent* event)
{
    const QModelIndex index = indexAt(event->pos());
    const QPoint pos = event->pos();
    QTreeView::mouseReleaseEvent(event);
    if (event->button() != Qt::LeftButton || !index.isValid())
        return;
    VantorGUIToolkit::CItemDataRole role = VantorGUIToolkit::ItemDisplayRole;
    const QRect pix = CAITreeViewWithRightPixmapDelegate::RightPixmapRect(visualRect(index), index);
    if (pix.isValid() && pix.contains(pos))
        role = VantorGUIToolkit::ItemRightPixmapRole;
    else if (model() != nullptr && model()->hasChildren(index))
        setExpanded(index, !isExpanded(index));
    emit SignalClicked(index, role);
}

} // namespace aiguitoolkit
