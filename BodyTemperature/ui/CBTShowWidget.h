#pragma once
// The information display: live view, the alarm tool bar, the right-hand list
// of alarm cards, the bottom strip of capture cards and the pop-up card.
// DealAlarmInfo takes every alarm record the dashboard dialog receives,
// classifies it, speaks, counts, adds the cards and emits the four counters.
// GUI thread only (the voice prompt plays on the voice player's worker).
// Owns its cards, the pop-up card with its timer and the settings pages.
#include <QByteArray>
#include <QList>
#include <QPointer>
#include <QStringList>
#include <QWidget>
#include <memory>

#include "AlarmDisplayConfig.h"
#include "AlarmShowInfo.h"
#include "publicdatacontroller/IntelAlarmEventInfo.h"
#include "ui/CBTShowWidgetForm.h"

class QLabel;
class QScrollArea;
class QTimer;
class QToolButton;
class QVBoxLayout;

namespace BodyTemperature {

struct AlarmDecision;
class BTShowLiveView;
class CBottomWidget;
class CCardBacklog;
class CPicturePreparer;

class CPopConfigPage;
class CPopUpUnit;
class CRightNoData;
class CScreeningRecord;
class CSettingsLoader;
class CHistoryWindow;
class CSoundConfigPage;
class CTypeConfigPage;

class CBTShowWidget final : public QWidget {
    Q_OBJECT
public:
    static constexpr int kMaxRightCards = 20;

    explicit CBTShowWidget(QWidget* parent = nullptr);
    ~CBTShowWidget() override;

    void DealAlarmInfo(const publicdatacontroller::IntelAlarmEventInfo& struAlarmInfo);
    void RefreshNoData();

    // Passed on to the live view.
    void SelectFreeWindow();
    void restorePlayingCameras(const QStringList& cameraIds);
    void stopAllLiveView();
    QList<QByteArray> GetPlayingCameraIds() const;

    // The live-view area of the form; the dialog wires it to the camera tree.
    BTShowLiveView* LiveView() const { return m_ui->m_pLiveView; }

signals:
    void signalNum(int iAllNum, int iNormalNum, int iNoMaskNum, int iAbnormalNum);

public slots:
    void OnEnableAlarm();
    void OnSnapPicClicked(const char* pPic, uint uPicLen);
    void OnFullScreenChanged(bool bFull);
    void OnLeaveStateChanged(bool bLeave);
    void OnRetarctBottom();
    void OnRetractRight();
    void OnLiveViewWidgetResized();
    void OnShowTypeConfigPage();
    void OnShowPopConfigPage();
    void OnShowSoundConfigPage();
    void OnShowReportDialog();
    void onDealCheck(BodyTemperature::TemperatureAlarm& struInfo);
    void onTimeOut();
    void onChangeUpdate();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void buildLists();
    void loadConfig();
    void countFace(const AlarmDecision& decision);
    void playVoice(const QString& path);
    void showPopUp(const AlarmShowInfo& info);
    void addAlarmCard(const AlarmShowInfo& info);
    void addFrequenterCards(const AlarmShowInfo& info, int copies, bool list, bool strip);
    void buildCards(const AlarmShowInfo& info, int copies, bool list, bool strip);
    void appendRightCard(QWidget* card);

    std::unique_ptr<CBTShowWidgetForm> m_ui;
    AlarmDisplayConfig m_config;
    bool m_bEnableAlarm = true;
    int m_iAllNum = 0;
    int m_iNormalNum = 0;
    int m_iNoMaskNum = 0;
    int m_iAbnormalNum = 0;
    bool m_bPopIdle = true;
    bool m_bBottomRetracted = false;
    bool m_bRightRetracted = false;
    uint32_t m_uWindowTypeBits = 0;

    QToolButton* m_pRightRetractBtn = nullptr;
    QVBoxLayout* m_pRightListLayout = nullptr;
    CRightNoData* m_pNoData = nullptr;
    QLabel* m_pCornerLabel = nullptr;

    CSettingsLoader* m_pSettingsLoader = nullptr;
    CCardBacklog* m_pCardBacklog = nullptr;
    CPicturePreparer* m_pPicturePreparer = nullptr;
    CPopUpUnit* m_pPopUpUnit = nullptr;
    QTimer* m_pPopTimer = nullptr;
    CTypeConfigPage* m_pTypeConfigPage = nullptr;
    CPopConfigPage* m_pPopConfigPage = nullptr;
    CSoundConfigPage* m_pSoundConfigPage = nullptr;
    CScreeningRecord* m_pRecord = nullptr;
    QPointer<CHistoryWindow> m_pHistoryWindow;
};

} // namespace BodyTemperature
