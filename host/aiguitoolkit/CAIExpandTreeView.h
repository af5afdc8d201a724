#pragma once
// A tree view whose rows expand on a single click and that reports which part
// of a row was clicked (text or the delegate's right-hand picture). Has a
// default context menu (expand / collapse all) that subclasses may switch off.
// GUI thread.
#include <QModelIndex>
#include <QTreeView>

#include "VantorGUIToolkit/CItemDataRole.h"

namespace aiguitoolkit {

class CAIExpandTreeView : public QTreeView {
    Q_OBJECT
public:
    explicit CAIExpandTreeView(QWidget* parent = nullptr);
    ~CAIExpandTreeView() override;

    void SetDefaultMenuEnabled(bool enabled) { m_bDefaultMenu = enabled; }

signals:
    void SignalClicked(const QModelIndex& index, VantorGUIToolkit::CItemDataRole role);

public slots:
    virtual void OnShowMenu(const QPoint& pos);

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    bool m_bDefaultMenu = true;
};

} // namespace aiguitoolkit
