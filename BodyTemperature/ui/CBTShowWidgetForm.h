#pragma once
// The form of the information display: live-view frame, bottom strip with its
// retract button, and the right-hand panel (header, alarm tool bar, list
// area). Built once by CBTShowWidget, which owns every widget through Qt
// parenthood; this struct only keeps the pointers. GUI thread.
class QFrame;
class QHBoxLayout;
class QScrollArea;
class QToolButton;
class QVBoxLayout;
class QWidget;

namespace aiguitoolkit {
class CShakeButton;
}

namespace BodyTemperature {

class BTShowLiveView;
class CBottomWidget;
class CBTShowWidget;

struct CBTShowWidgetForm {
    void setupUi(CBTShowWidget* owner);
    void setupLeftColumn(CBTShowWidget* owner, QVBoxLayout* leftColumn);
    void setupRightPanel(CBTShowWidget* owner, QHBoxLayout* main);
    QWidget* setupToolBar();

    QFrame* m_pLiveViewFrame = nullptr;
    BTShowLiveView* m_pLiveView = nullptr;
    QToolButton* m_pBottomRetractBtn = nullptr;
    QScrollArea* m_pBottomScrollArea = nullptr;
    CBottomWidget* m_pBottomWidget = nullptr;
    QWidget* m_pRightPanel = nullptr;
    QWidget* m_pToolBar = nullptr;
    aiguitoolkit::CShakeButton* m_pEnableAlarmBtn = nullptr;
    aiguitoolkit::CShakeButton* m_pAlarmTypeBtn = nullptr;
    aiguitoolkit::CShakeButton* m_pPopBtn = nullptr;
    aiguitoolkit::CShakeButton* m_pSoundBtn = nullptr;
    aiguitoolkit::CShakeButton* m_pReportBtn = nullptr;
    QScrollArea* m_pRightScrollArea = nullptr;
    QWidget* m_pRightListWidget = nullptr;
};

} // namespace BodyTemperature
