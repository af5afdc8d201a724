#include "aiguitoolkit/CAITreeViewWithRightPixmapDelegate.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QPixmap>
#include <QToolTip>

#include "VantorGUIToolkit/CItemDataRole.h"

namespace aiguitoolkit {
namespace {
constexpr int kPixmapRole = VantorGUIToolkit::ItemRightPixmapRole;
constexpr int kPixmapTipRole = 466;
constexpr int kIconSize = 16;
constexpr int kRightMargin = 8;
} // namespace

CAITreeViewWithRightPixmapDelegate::CAITreeViewWithRightPixmapDelegate(QObject* parent) : QStyledItemDelegate(parent) {}

CAITreeViewWithRightPixmapDelegate::~CAITreeViewWithRightPixmapDelegate() = default;

QRect CAITreeViewWithRightPixmapDelegate::RightPixmapRect(const QRect& rowRect, const QModelIndex& index)
{
    if (!index.isValid() || !index.data(kPixmapRole).isValid() || rowRect.isEmpty())
        return {};
    return QRect(rowRect.right() - kRightMargin - kIconSize + 1, rowRect.center().y() - kIconSize / 2 + 1,
        kIconSize, kIconSize);
}

void CAITreeViewWithRightPixmapDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
    const QModelIndex& index) const
{
    QStyleOptionViewItem opt(option);
    const QRect pixRect = RightPixmapRect(option.rect, index);
    if (pixRect.isValid())
        opt.rect.setRight(pixRect.left() - 4);
    QStyledItemDelegate::paint(painter, opt, index);
    const bool active = option.state & (QStyle::State_MouseOver | QStyle::State_Selected);
    if (!pixRect.isValid() || !active)
        return;
    const QVariant v = index.data(kPixmapRole);
    QPixmap pix = v.value<QPixmap>();
    if (pix.isNull())
        pix = v.value<QIcon>().pixmap(kIconSize, kIconSize);
    if (!pix.isNull())
        painter->drawPixmap(pixRect, pix);
}

QSize CAITreeViewWithRightPixmapDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QSize s = QStyledItemDelegate::sizeHint(option, index);
    s.setHeight(qMax(s.height(), 28));
    return s;
}

bool CAITreeViewWithRightPixmapDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
    const QStyleOptionViewItem& option, const QModelIndex& index)
{
    const QRect pixRect = RightPixmapRect(option.rect, index);
    if (event != nullptr && event->type() == QEvent::ToolTip && pixRect.contains(event->pos())) {
        const QString tip = index.data(kPixmapTipRole).toString();
        if (!tip.isEmpty()) {
            QToolTip::showText(event->globalPos(), tip, view);
            return true;
        }
    }
    return QStyledItemDelegate::helpEvent(event, view, option, index);
}

} // namespace aiguitoolkit
