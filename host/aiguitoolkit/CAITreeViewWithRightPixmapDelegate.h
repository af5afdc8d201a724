#pragma once
// Tree delegate that draws the row's picture of role 436 (when it holds one)
// at the right end of the row, 16 x 16, on hover or selection, so a camera row
// shows its play button there. GUI thread.
#include <QStyledItemDelegate>

namespace aiguitoolkit {

class CAITreeViewWithRightPixmapDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    explicit CAITreeViewWithRightPixmapDelegate(QObject* parent = nullptr);
    ~CAITreeViewWithRightPixmapDelegate() override;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
        const QModelIndex& index) override;

    // Where the picture of this row lies (invalid when the row has none).
    static QRect RightPixmapRect(const QRect& rowRect, const QModelIndex& index);
};

} // namespace aiguitoolkit
