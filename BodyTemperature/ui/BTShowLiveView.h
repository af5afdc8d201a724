#pragma once
// The live-view area of the dashboard: a grid of play windows with stop-all,
// division and full-screen buttons, a selection frame and drops from the
// camera tree. Held by the information display. GUI thread.
#include <QByteArray>
#include <QList>
#include <QStringList>
#include <QVector>
#include <QWidget>
#include <string>

class QAbstractItemModel;

namespace BodyTemperature {

class CBTViewTree;

class BTShowLiveView : public QWidget {
    Q_OBJECT
public:
    explicit BTShowLiveView(QWidget* parent = nullptr);
    ~BTShowLiveView() override;

    // Builds the play windows from the host logic model; nothing without a model.
    void Init(QAbstractItemModel* logicModel);
    void SetCameraTree(CBTViewTree* tree) { m_pCameraTree = tree; }

    // Opens camera i of the list in play window i (empty identifiers skipped).
    void restorePlayingCameras(const QStringList& cameraIds);
    void stopAllLiveView();
    void SelectFreeWindow();
    // Opens a camera in the selected window (value: the start value, 100 from the tree).
    void OpenCamera(const std::string& cameraId, int value);
    // A camera is being removed from the host's model.
    void RemoveCamera(const std::string& cameraId);

    // The identifiers of the cameras open now, in window order.
    QList<QByteArray> GetPlayingCameraIds() const;
    // The table of open views: one camera identifier per playing window.
    QVector<std::string> openViewCameraIds() const;

signals:
    void SignalScreenChanged(bool bFull);
    void SignalLeaveFullScreen(bool bLeave);
    void SignalResized();
    void signalUpdateGroupSelectState(std::string guidCamera);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    CBTViewTree* m_pCameraTree = nullptr;
    QVector<std::string> m_views;  // one entry per window; empty when idle
    int m_iSelected = 0;
};

} // namespace BodyTemperature
