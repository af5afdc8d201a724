#pragma once
// The tree of camera groups and cameras from which the user starts live view
// (play icon, double click, drag onto a play window). GUI thread.
#include <QModelIndex>
#include <QTreeView>

namespace BodyTemperature {

class CBTViewTree : public QTreeView {
    Q_OBJECT
public:
    explicit CBTViewTree(QWidget* parent = nullptr);
    ~CBTViewTree() override;

signals:
    void signalStartLiveView(const QModelIndex& miIndex);
};

} // namespace BodyTemperature
