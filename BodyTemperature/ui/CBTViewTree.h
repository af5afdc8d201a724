#pragma once
// The tree of camera groups and cameras from which the user starts live view:
// the play icon of a camera row (signalStartLiveView), a double click (handled
// by the dialog), or a drag onto a play window carrying the mime-data
// properties "GroupGUID" and "CameraGUID". Rows come from the camera model of
// CAppRscManager, usually through a proxy. GUI thread.
#include <QModelIndex>
#include <QPoint>
#include <QString>

#include "aiguitoolkit/CAIExpandTreeView.h"

class CLiveViewEvent;
class QMimeData;

namespace BodyTemperature {

class CBTViewTree : public aiguitoolkit::CAIExpandTreeView {
    Q_OBJECT
public:
    explicit CBTViewTree(QWidget* parent = nullptr);
    ~CBTViewTree() override;

    // Areas open as they appear, so every camera is in view.
    void setModel(QAbstractItemModel* model) override;

    // Keeps the camera's playing icon in step with a live-view event.
    void UpdateCameraState(const CLiveViewEvent& eventLiveView);

    // What a drag of this row carries: false when the row starts no drag.
    struct DragData {
        QString groupGuid;
        QString cameraGuid;
        QString pixmap;
    };
    bool DragDataOf(const QModelIndex& index, DragData& out) const;
    static QMimeData* CreateMimeData(const DragData& data);

signals:
    void signalStartLiveView(const QModelIndex& miIndex);

public slots:
    void OnItemClicked(const QModelIndex& index, VantorGUIToolkit::CItemDataRole enumTypeRole);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void startDrag(Qt::DropActions supportedActions) override;

private:
    QPoint m_ptPress;
};

} // namespace BodyTemperature
