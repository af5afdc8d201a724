#include "ui/CBTShowWidget.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLayoutItem>
#include <QResizeEvent>
#include <QScreen>
#include <QScrollArea>
#include <QSpacerItem>
#include <QStyle>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "Base/CSingleton.h"
#include "alarms/CAlarmClassifier.h"
#include "CAppRscManager.h"
#include "CBTConfigDB.h"
#include "alarms/CCardBacklog.h"
#include "pictures/CPicturePreparer.h"
#include "record/CScreeningRecord.h"
#include "CSettingsLoader.h"
#include "CameraModel.h"
#include "VantorGUIToolkit/CInformationDlg.h"
#include "aiguitoolkit/CShakeButton.h"
#include "clientcommonlogical/CConfigMgr.h"
#include "ui/BTShowLiveView.h"
#include "ui/CBTShowWidgetForm.h"
#include "ui/CBottomWidget.h"
#include "ui/CDeviceHealthBanner.h"
#include "ui/CPopConfigPage.h"
#include "ui/CRightNoData.h"
#include "ui/CSoundConfigPage.h"
#include "ui/CTypeConfigPage.h"
#include "alarms/CVoicePlayer.h"
#include "record/CSiteHistorySource.h"
#include "ui/History/CHistoryWindow.h"
#include "ui/ShowCard/CAlarmUnit.h"
#include "ui/ShowCard/CCardHold.h"
#include "ui/ShowCard/CardShift.h"
#include "ui/ShowCard/CPopUpUnit.h"
#include "ui/ShowCard/ReCustomer/CFrequenterUnit.h"

namespace BodyTemperature {

namespace {

const char* const kNoDataStyle =
    "QWidget#frame\n{\n\tbackground-color:rgba(255,255,255, 0.1);\n}QLabel#label\n{\nborder-image:url(:/rightBottom/"
    "Images/BodyTemperature/rightBottom/NoData.png);}QLabel#m_pNoDataText\n{\nfont-family: Microsoft YaHei;font-size: "
    "12px;color: rgba(255, 255, 255, 0.32);letter-spacing: 0;text-align: center;}";
const char* const kCornerStyle =
    "QLabel\n{\n\tborder-image:url(:/rightBottom/Images/BodyTemperature/rightBottom/NoDataCorner.png);\n}";

// Window-type bits of the right-hand panel around full screen.
constexpr uint32_t kTypeMask = Qt::Desktop | Qt::SubWindow;
constexpr uint32_t kFullScreenFlags =
    Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::NoDropShadowWindowHint;
constexpr uint32_t kFullScreenToggle = Qt::SubWindow;

void repolish(QWidget* w)
{
    w->style()->unpolish(w);
    w->style()->polish(w);
    w->update();
}

} // namespace

CBTShowWidget::CBTShowWidget(QWidget* parent) : QWidget(parent)
{
    m_ui = std::make_unique<CBTShowWidgetForm>();
    m_ui->setupUi(this);
    buildLists();
    loadConfig();
    m_pCardBacklog = new CCardBacklog(kMaxRightCards, CBottomWidget::kMaxCards,
        [this](const AlarmShowInfo& info, int copies, bool list, bool strip) { buildCards(info, copies, list, strip); },
        this);
    // Pictures are decoded off the GUI thread first; only the newest records
    // the page can still show are worth it.
    m_pPicturePreparer = new CPicturePreparer(std::max(kMaxRightCards, CBottomWidget::kMaxCards),
        [this](const AlarmShowInfo& info, int copies) { m_pCardBacklog->Add(info, copies); }, this);
    m_pRecord = new CScreeningRecord(this);
    auto* banner = new CDeviceHealthBanner(m_ui->m_pLiveViewFrame);
    connect(m_pRecord, &CScreeningRecord::signalSiteRecordState, banner, &CDeviceHealthBanner::OnSiteRecord);

    m_ui->m_pEnableAlarmBtn->setToolTip(tr("TurnOnoffAlarmDisplaHyBGelcI"));
    m_ui->m_pAlarmTypeBtn->setPictureAttibute(
        QStringLiteral(":/Buttons/Filiter/Images/BodyTemperature/Buttons/Filiter/%1.png"), 0, 10);
    m_ui->m_pAlarmTypeBtn->setToolTip(tr("AlarmType"));
    m_ui->m_pPopBtn->setPictureAttibute(QStringLiteral(":/Buttons/Pop/Images/BodyTemperature/Buttons/Pop/%1.png"), 0, 10);
    m_ui->m_pPopBtn->setToolTip(tr("AlarmPopoverConfigurrXBbmhnE"));
    m_ui->m_pSoundBtn->setPictureAttibute(
        QStringLiteral(":/Buttons/Sound/Images/BodyTemperature/Buttons/Sound/%1.png"), 0, 10);
    m_ui->m_pSoundBtn->setToolTip(tr("VoiceConfiguration"));
    m_ui->m_pReportBtn->setPictureAttibute(
        QStringLiteral(":/Buttons/Report/Images/BodyTemperature/Buttons/Report/%1.png"), 0, 10);
    m_ui->m_pReportBtn->setToolTip(tr("ShiftReport"));

    connect(m_ui->m_pEnableAlarmBtn, &QToolButton::clicked, this, &CBTShowWidget::OnEnableAlarm);
    connect(m_ui->m_pLiveView, &BTShowLiveView::SignalScreenChanged, this, &CBTShowWidget::OnFullScreenChanged);
    connect(m_ui->m_pLiveView, &BTShowLiveView::SignalLeaveFullScreen, this, &CBTShowWidget::OnLeaveStateChanged);
    connect(m_ui->m_pBottomRetractBtn, &QToolButton::clicked, this, &CBTShowWidget::OnRetarctBottom);
    connect(m_pRightRetractBtn, &QToolButton::clicked, this, &CBTShowWidget::OnRetractRight);
    connect(m_ui->m_pLiveView, &BTShowLiveView::SignalResized, this, &CBTShowWidget::OnLiveViewWidgetResized);
    connect(m_ui->m_pAlarmTypeBtn, &QToolButton::clicked, this, &CBTShowWidget::OnShowTypeConfigPage);
    connect(m_ui->m_pPopBtn, &QToolButton::clicked, this, &CBTShowWidget::OnShowPopConfigPage);
    connect(m_ui->m_pSoundBtn, &QToolButton::clicked, this, &CBTShowWidget::OnShowSoundConfigPage);
    connect(m_ui->m_pReportBtn, &QToolButton::clicked, this, &CBTShowWidget::OnShowReportDialog);
    connect(m_ui->m_pBottomWidget, &CBottomWidget::SignalSnapPicClicked, this, &CBTShowWidget::OnSnapPicClicked);

    RefreshNoData();
}

CBTShowWidget::~CBTShowWidget()
{
    // A prompt still playing is stopped here, on the GUI thread, rather than
    // while the host unloads the module.
    CVoicePlayer::Shutdown();
    delete m_pRightRetractBtn;
    m_pRightRetractBtn = nullptr;
    delete m_pTypeConfigPage;
    m_pTypeConfigPage = nullptr;
    delete m_pPopConfigPage;
    m_pPopConfigPage = nullptr;
    delete m_pSoundConfigPage;
    m_pSoundConfigPage = nullptr;
    while (m_pRightListLayout->count() > 1) {
        QLayoutItem* item = m_pRightListLayout->takeAt(1);
        delete item->widget();
        delete item;
    }
}

void CBTShowWidget::buildLists()
{
    m_pRightRetractBtn = new QToolButton(m_ui->m_pLiveViewFrame);
    m_pRightRetractBtn->setObjectName(QStringLiteral("m_pRightRetractBtn"));
    m_pRightRetractBtn->setFixedSize(11, 115);

    m_pRightListLayout = new QVBoxLayout(m_ui->m_pRightListWidget);
    m_pRightListLayout->setDirection(QBoxLayout::BottomToTop);
    m_pRightListLayout->setContentsMargins(0, 0, 0, 0);
    m_pRightListLayout->setSpacing(12);
    // Cards follow the spacer: the newest stands at the top.
    m_pRightListLayout->addItem(new QSpacerItem(1, 1, QSizePolicy::Minimum, QSizePolicy::Expanding));
    CardShift::SetSolidBackdrop(m_ui->m_pRightListWidget, true);

    // Placeholder and its corner mark float over the empty list.
    m_pNoData = new CRightNoData(m_ui->m_pRightListWidget);
    m_pNoData->setFixedWidth(386);
    m_pNoData->setStyleSheet(QString::fromLatin1(kNoDataStyle));
    m_pNoData->move(0, 0);
    m_pCornerLabel = new QLabel(m_ui->m_pRightListWidget);
    m_pCornerLabel->setObjectName(QStringLiteral("cornerLabel"));
    m_pCornerLabel->setFixedSize(16, 16);
    m_pCornerLabel->setStyleSheet(QString::fromLatin1(kCornerStyle));
}

void CBTShowWidget::loadConfig()
{
    m_pSettingsLoader = new CSettingsLoader(this);
    connect(m_pSettingsLoader, &CSettingsLoader::signalLoaded, this,
        [this](const AlarmDisplayConfig& stored) { m_config = stored; });
    m_pSettingsLoader->Load(m_config);
}

void CBTShowWidget::DealAlarmInfo(const publicdatacontroller::IntelAlarmEventInfo& struAlarmInfo)
{
    if (!m_bEnableAlarm)
        return;

    const AlarmDecision decision = CAlarmClassifier::Classify(struAlarmInfo, m_config);
    if (decision.action == AlarmDecision::Action::Drop)
        return;

    AlarmShowInfo info = AlarmShowInfo::FromRecord(struAlarmInfo);
    decision.applyTo(info);
    const int allBefore = m_iAllNum;
    // Counted (and journaled) at once; the cards follow when their pictures
    // are decoded and as the page can draw them.
    if (decision.action == AlarmDecision::Action::ShowReturning) {
        // One card per open view of the camera: a camera shown twice counts twice.
        const QVector<std::string> views = m_ui->m_pLiveView->openViewCameraIds();
        const int copies = static_cast<int>(std::count(views.begin(), views.end(), struAlarmInfo.cameraID));
        info.strSecondID = struAlarmInfo.secondID;
        m_iAllNum += copies;
        if (copies > 0)
            m_pPicturePreparer->Submit(info, copies);
    } else if (decision.action == AlarmDecision::Action::ShowFace) {
        playVoice(decision.voicePath);
        countFace(decision);
        ++m_iAllNum;
        m_pPicturePreparer->Submit(info);
    }
    if (decision.action != AlarmDecision::Action::CountOnly)
        m_pRecord->Append(info, m_iAllNum - allBefore);
    emit signalNum(m_iAllNum, m_iNormalNum, m_iNoMaskNum, m_iAbnormalNum);
}

void CBTShowWidget::countFace(const AlarmDecision& decision)
{
    m_iNormalNum += decision.normalDelta;
    m_iNoMaskNum += decision.noMaskDelta;
    m_iAbnormalNum += decision.abnormalDelta;
}

void CBTShowWidget::playVoice(const QString& path)
{
    if (path.isEmpty())
        return;
    CVoicePlayer::Play(path);
}

void CBTShowWidget::addAlarmCard(const AlarmShowInfo& info)
{
    if (info.popType != PopUpType::None)
        showPopUp(info);

    auto* card = new CAlarmUnit(this);
    // Sized from the bottom strip, not from the list it goes into.
    card->setFixedWidth(m_ui->m_pBottomWidget->width() - 4);
    card->SetIsSnap(info.isCaptureKind());
    card->SetAlarmInfo(info, false);
    appendRightCard(card);
    m_pNoData->hide();
    m_pCornerLabel->hide();
}

void CBTShowWidget::buildCards(const AlarmShowInfo& info, int copies, bool list, bool strip)
{
    if (info.kind == EventKind::Returning) {
        addFrequenterCards(info, copies, list, strip);
        return;
    }
    if (strip)
        m_ui->m_pBottomWidget->AddSnapInfo(info);
    if (list)
        addAlarmCard(info);
}

void CBTShowWidget::addFrequenterCards(const AlarmShowInfo& info, int copies, bool list, bool strip)
{
    for (int i = 0; i < copies; ++i) {
        if (strip)
            m_ui->m_pBottomWidget->AddSnapInfo(info);
        if (!list)
            continue;
        auto* card = new CFrequenterUnit(this);
        card->SetFrequenterInfo(info);
        appendRightCard(card);
        m_pNoData->hide();
    }
}

void CBTShowWidget::appendRightCard(QWidget* card)
{
    CardShift::InsertNewest(m_pRightListLayout, card);
    if (m_pRightListLayout->count() > kMaxRightCards + 1) {
        QLayoutItem* oldest = m_pRightListLayout->takeAt(1);
        RetireCard(oldest->widget());
        delete oldest;
    }
}

void CBTShowWidget::showPopUp(const AlarmShowInfo& info)
{
    if (m_pPopUpUnit == nullptr) {
        m_pPopUpUnit = new CPopUpUnit(this);
        m_pPopUpUnit->hide();
        connect(m_pPopUpUnit, &CPopUpUnit::signalClose, this, &CBTShowWidget::onChangeUpdate);
    }
    if (!m_bPopIdle)
        return;

    m_pPopUpUnit->SetAlarmInfo(info, true);
    m_pPopUpUnit->raise();
    m_pPopUpUnit->show();
    const int parentWidth = parentWidget() != nullptr ? parentWidget()->width() : width();
    m_pPopUpUnit->move((parentWidth - m_pPopUpUnit->width()) / 2 - 254, (height() - m_pPopUpUnit->height()) / 2 - 35);

    if (m_config.bPopAutoClose && m_config.iPopDuration != -1) {
        if (m_pPopTimer == nullptr) {
            m_pPopTimer = new QTimer(this);
            m_pPopTimer->setObjectName(QStringLiteral("m_pPopTimer"));
            connect(m_pPopTimer, &QTimer::timeout, this, &CBTShowWidget::onTimeOut);
        }
        m_pPopTimer->start(m_config.iPopDuration * 1000);
        m_bPopIdle = false;
    }
}

void CBTShowWidget::RefreshNoData()
{
    m_pNoData->setVisible(m_pRightListLayout->count() <= 1);
}

void CBTShowWidget::SelectFreeWindow()
{
    m_ui->m_pLiveView->SelectFreeWindow();
}

void CBTShowWidget::restorePlayingCameras(const QStringList& cameraIds)
{
    m_ui->m_pLiveView->restorePlayingCameras(cameraIds);
}

void CBTShowWidget::stopAllLiveView()
{
    m_ui->m_pLiveView->stopAllLiveView();
}

QList<QByteArray> CBTShowWidget::GetPlayingCameraIds() const
{
    return m_ui->m_pLiveView->GetPlayingCameraIds();
}

void CBTShowWidget::OnEnableAlarm()
{
    m_bEnableAlarm = m_ui->m_pEnableAlarmBtn->isChecked();
}

void CBTShowWidget::OnSnapPicClicked(const char*, uint) {}

void CBTShowWidget::OnFullScreenChanged(bool bFull)
{
    QWidget* panel = m_ui->m_pRightPanel;
    const uint32_t flags = static_cast<uint32_t>(panel->windowFlags());
    // Floating over the video, the panel is translucent: the list lets it show through.
    CardShift::SetSolidBackdrop(m_ui->m_pRightListWidget, !bFull);
    if (bFull) {
        panel->setAttribute(Qt::WA_TranslucentBackground, true);
        m_uWindowTypeBits = flags & kTypeMask;
        panel->setWindowFlags(Qt::WindowFlags(static_cast<int>((flags | kFullScreenFlags) ^ kFullScreenToggle)));
        panel->setGeometry(1497, 0, 423, 654);
    } else {
        panel->setWindowFlags(Qt::WindowFlags(static_cast<int>((flags ^ kTypeMask) | m_uWindowTypeBits)));
        panel->setAttribute(Qt::WA_TranslucentBackground, false);
    }
    panel->show();
}

void CBTShowWidget::OnLeaveStateChanged(bool bLeave)
{
    m_ui->m_pRightPanel->setVisible(!bLeave);
}

void CBTShowWidget::OnRetarctBottom()
{
    if (m_bBottomRetracted) {
        m_ui->m_pBottomScrollArea->show();
        m_bBottomRetracted = false;
        m_ui->m_pBottomRetractBtn->setObjectName(QStringLiteral("m_pRetractBottomBtn"));
    } else {
        m_ui->m_pBottomScrollArea->hide();
        m_bBottomRetracted = true;
        m_ui->m_pBottomRetractBtn->setObjectName(QStringLiteral("m_pSpreadBottomBtn"));
    }
    repolish(m_ui->m_pBottomRetractBtn);
    update();
}

void CBTShowWidget::OnRetractRight()
{
    if (m_bRightRetracted) {
        m_ui->m_pRightPanel->show();
        m_bRightRetracted = false;
        m_pRightRetractBtn->setObjectName(QStringLiteral("m_pRightRetractBtn"));
    } else {
        m_ui->m_pRightPanel->hide();
        m_bRightRetracted = true;
        m_pRightRetractBtn->setObjectName(QStringLiteral("m_pRightSpreadBtn"));
    }
    repolish(m_pRightRetractBtn);
    update();
}

void CBTShowWidget::OnLiveViewWidgetResized()
{
    if (m_pRightRetractBtn == nullptr)
        return;
    const int w = m_ui->m_pLiveViewFrame->width();
    const int h = m_ui->m_pLiveViewFrame->height();
    m_pRightRetractBtn->move(w - (m_bRightRetracted ? 23 : 13), (h - 60) / 2);
    m_pRightRetractBtn->raise();
}

void CBTShowWidget::OnShowTypeConfigPage()
{
    m_pSettingsLoader->ReadIfPending(m_config);
    delete m_pTypeConfigPage;
    m_pTypeConfigPage = new CTypeConfigPage(m_ui->m_pToolBar);
    m_pTypeConfigPage->SetConfig(m_config);
    m_pTypeConfigPage->PlaceUnder(m_ui->m_pToolBar, clientcommonlogical::CConfigMgr::Instance()->GetLanguage());
    connect(m_pTypeConfigPage, &CTypeConfigPage::signalCheckState, this, &CBTShowWidget::onDealCheck);
    m_pTypeConfigPage->raise();
    m_pTypeConfigPage->show();
}

void CBTShowWidget::OnShowPopConfigPage()
{
    m_pSettingsLoader->ReadIfPending(m_config);
    delete m_pPopConfigPage;
    m_pPopConfigPage = new CPopConfigPage(parentWidget());
    m_pPopConfigPage->SetConfig(m_config);
    m_pPopConfigPage->exec();
    // The page saved what the user kept; take its copy whatever the outcome.
    m_config = m_pPopConfigPage->GetConfig();
}

void CBTShowWidget::OnShowSoundConfigPage()
{
    m_pSettingsLoader->ReadIfPending(m_config);
    delete m_pSoundConfigPage;
    m_pSoundConfigPage = new CSoundConfigPage(parentWidget());
    m_pSoundConfigPage->SetConfig(m_config);
    m_pSoundConfigPage->exec();
    m_config = m_pSoundConfigPage->GetConfig();
}

void CBTShowWidget::OnShowReportDialog()
{
    // One window at a time; it is not modal, so the page goes on while it
    // searches or exports, and it goes away with the page.
    if (m_pHistoryWindow == nullptr) {
        CHistoryTab::Options options;
        if (CameraModel* cameras = Base::CSingleton<CAppRscManager>::Instance()->GetCameraModel())
            for (const std::string& id : cameras->GetAllCameraIDs()) {
                const vantordesk::IElement* camera = cameras->GetElementByID(id);
                options.cameras.emplace_back(id, camera != nullptr ? QString::fromStdString(camera->GetElementName())
                                                                   : QString());
            }
        options.language = clientcommonlogical::CConfigMgr::Instance()->GetLanguage();
        // With a site record the window can also search every station's rows.
        const clientcommonlogical::SiteRecordConfig site = clientcommonlogical::CConfigMgr::Instance()->GetSiteRecord();
        if (site.IsSet()) {
            options.site = std::make_unique<CSiteHistorySource>(site);
            options.siteRecord = std::make_shared<const clientcommonlogical::SiteRecordConfig>(site);
        }
        m_pHistoryWindow = new CHistoryWindow(parentWidget() != nullptr ? parentWidget() : this,
            m_pRecord->JournalPath(), m_pRecord->OpenedAt(), std::move(options));
        m_pHistoryWindow->setAttribute(Qt::WA_DeleteOnClose);
    }
    m_pHistoryWindow->show();
    m_pHistoryWindow->raise();
    m_pHistoryWindow->activateWindow();
}

void CBTShowWidget::onDealCheck(TemperatureAlarm& struInfo)
{
    m_pSettingsLoader->ReadIfPending(m_config);
    m_config.bFaceTemperatureCapture = struInfo.bFaceTemperatureCapture;
    m_config.bFacePictureComparison = struInfo.bFacePictureComparison;
    m_config.bFaceCapture = struInfo.bFaceCapture;
    // The switches apply for this run either way; the operator learns they were not kept.
    if (!CBTConfigDB::Instance()->SaveAlarmDisplayConfig(m_config))
        VantorGUIToolkit::CInformationDlg::ShowInformationAtScreenRightBottom(tr("SaveFailed"));
}

void CBTShowWidget::onTimeOut()
{
    if (m_pPopTimer != nullptr)
        m_pPopTimer->stop();
    if (m_pPopUpUnit != nullptr)
        m_pPopUpUnit->hide();
    m_bPopIdle = true;
}

void CBTShowWidget::onChangeUpdate()
{
    m_bPopIdle = true;
}

void CBTShowWidget::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_pNoData->setMinimumHeight(height() - 1);
    m_pNoData->setMaximumHeight(height() - 1);
    const QWidget* shown = parentWidget() != nullptr ? parentWidget() : this;
    const QScreen* screen = shown->screen();
    const int screenHeight = screen != nullptr ? screen->geometry().height() : 1080;
    m_pCornerLabel->move(368, static_cast<int>(screenHeight * 880.0 / 1080.0 - 18.0));
    m_pCornerLabel->raise();
    m_pCornerLabel->show();
}

} // namespace BodyTemperature
