#pragma once
// The dashboard page: camera tree on the left (foldable), information display
// on the right, statistics title floating over it. Creates the alarm listener
// and routes its records to the information display and the display's counts
// to the title. Created by the page widget, which calls the saved-state
// forwards on leaving and re-entering the page. GUI thread; owns its panels.
#include <QByteArray>
#include <QList>
#include <QModelIndex>
#include <QStringList>
#include <QWidget>
#include <string>

#include "publicdatacontroller/IntelAlarmEventInfo.h"

class QFrame;
class QToolButton;
class QPushButton;

namespace VantorGUIToolkit {
class CSecondarySortFilterModel;
}

namespace BodyTemperature {

class AlarmListener;
class BTShowTitle;
class CameraModel;
class CBTShowWidget;
class CBTViewTree;

class CBodyTemperatureDlg final : public QWidget {
    Q_OBJECT
public:
    explicit CBodyTemperatureDlg(QWidget* parent = nullptr);
    ~CBodyTemperatureDlg() override;

    // Saved-state forwards of the page widget.
    QList<QByteArray> GetPlayingCameraIds() const;
    void StopAllLiveView();
    void RestorePlayingCameras(const QStringList& cameraIds);
    void SetAlarmListening(bool on);
    // Stops the device searches of returning-person cards and the face uploads
    // under this dialog (module code on other threads); their requests are
    // cut, so this returns at once.
    void StopBackgroundWork();
    // Closes the comparison detail dialogs and the screening history windows
    // opened under the page widget.
    static void CloseDetailWindows(QWidget* page);

public slots:
    void onNewAlarmComing(publicdatacontroller::IntelAlarmEventInfo struAlarmInfo);
    void OnShrinkBtnClicked();
    void OnCameraTreeDoubleClicked(const QModelIndex& miIndex);
    void OnCameraGroupRemoved(const QModelIndex& miParent, int iFirst, int iLast);
    void onUpdateGroupTreeSelectedCamera(std::string cameraGUID);
    void onUpdateNum(int iAllNum, int iNormalNum, int iNoMaskNum, int iAbnormalNum);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void buildForm();
    void setUp();
    void placeShrinkButton();

    // Form.
    QFrame* m_pMainFrame = nullptr;
    QFrame* m_pLeftFrame = nullptr;
    QWidget* m_pToolBox = nullptr;
    QPushButton* m_pToolBtn1 = nullptr;
    QPushButton* m_pToolBtn2 = nullptr;
    CBTViewTree* m_pCameraTree = nullptr;
    QWidget* m_pRightWidget = nullptr;

    CBTShowWidget* m_pShowWidget = nullptr;
    AlarmListener* m_pAlarmListener = nullptr;
    CameraModel* m_pCameraModel = nullptr;
    VantorGUIToolkit::CSecondarySortFilterModel* m_pProxyModel = nullptr;
    QToolButton* m_pShrinkBtn = nullptr;
    bool m_bLeftFolded = false;
    BTShowTitle* m_pShowTitle = nullptr;
};

} // namespace BodyTemperature
