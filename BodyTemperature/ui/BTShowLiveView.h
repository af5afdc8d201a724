#pragma once
// The live-view area of the dashboard: a grid of play windows (4, or 9 when
// the client's language is 1) with stop-all, division and full-screen buttons,
// a selection frame around the selected window and drops of cameras from the
// camera tree. Held by the information display, which also reads its table of
// open views. Play windows are created once by Init and live with the widget;
// their decode threads are joined when they stop. GUI thread.
#include <QByteArray>
#include <QList>
#include <QMap>
#include <QPointer>
#include <QStringList>
#include <QVector>
#include <QWidget>
#include <memory>
#include <string>

#include "UiDataController/IVideoSystemConfigObserver.h"
#include "playwindow/CLiveViewEvent.h"

class CStreamPlayWindowWithTask;
class QToolButton;
class QDropEvent;

namespace UiDataController {
class CLogicModel;
}
namespace aiguitoolkit {
class CWidgetLayoutMgr;
class CCutNumFrame;
class CFullScreenWidget;
}

namespace BodyTemperature {

class CBTViewTree;
class CBTLiveViewPlugin;
class CSelectBoder;

class BTShowLiveView : public QWidget, public vantordesk::IVideoSystemConfigObserver {
    Q_OBJECT
public:
    explicit BTShowLiveView(QWidget* parent = nullptr);
    ~BTShowLiveView() override;

    // Builds the play windows over the host logic model; nothing without a model.
    void Init(UiDataController::CLogicModel* logicModel);
    void SetCameraTree(CBTViewTree* tree);

    // Opens camera i of the list in play window i (empty identifiers skipped);
    // an empty list opens nothing.
    void restorePlayingCameras(const QStringList& cameraIds);
    void stopAllLiveView();
    void SelectFreeWindow();
    // Opens a camera in the selected window (value: the start value, 100 from the tree).
    void OpenCamera(const std::string& cameraId, int value);
    // A camera is being removed from the host's model: its windows stop.
    void RemoveCamera(const std::string& cameraId);

    // The identifiers of the cameras open now, in window order.
    QList<QByteArray> GetPlayingCameraIds() const;
    // The table of open views: one camera identifier per playing window, in window order.
    QVector<std::string> openViewCameraIds() const;

    void OnVideoSystemConfigChanged() override;

signals:
    void SignalScreenChanged(bool bFull);
    void SignalLeaveFullScreen(bool bLeave);
    void SignalResized();
    void signalUpdateGroupSelectState(std::string guidCamera);

public slots:
    void OnSoundBtnClicked();
    void OnCloseAllBtnClicked();
    void OnCutWndBtnPressed();
    void OnFullScreenBtnPressed();
    void OnPlayWindowSelected();
    void OnWindowPlayState();
    void OnWindowDoubleClicked();
    void OnCutBtnNumClicked(int iWndNum);
    void OnUpdateLiveViewState(CLiveViewEvent eventLiveView);
    void onDropAccept(QDropEvent* event);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void SelectWindow(CStreamPlayWindowWithTask* window);
    bool StartCamera(CStreamPlayWindowWithTask* window, const std::string& cameraId, int value);

    int m_iMaxWndNum;
    QList<CStreamPlayWindowWithTask*> m_listPlayWnd;
    QMap<CStreamPlayWindowWithTask*, std::string> m_mapOpenViews;
    CStreamPlayWindowWithTask* m_pSelectedWnd = nullptr;

    std::unique_ptr<CBTLiveViewPlugin> m_pPlugin;
    QPointer<CBTViewTree> m_pCameraTree;
    aiguitoolkit::CWidgetLayoutMgr* m_pLayoutMgr = nullptr;
    aiguitoolkit::CCutNumFrame* m_pSelectCutNum = nullptr;
    aiguitoolkit::CFullScreenWidget* m_pFullScreen = nullptr;
    CSelectBoder* m_pSelectBoder = nullptr;

    QToolButton* m_pStopAllBtn = nullptr;
    QToolButton* m_pCutWndBtn = nullptr;
    QToolButton* m_pFullScreenBtn = nullptr;
};

} // namespace BodyTemperature
