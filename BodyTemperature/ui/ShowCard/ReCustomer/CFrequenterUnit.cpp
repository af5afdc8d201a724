#include "ui/ShowCard/ReCustomer/CFrequenterUnit.h"

#include <QDateTime>
#include <QFile>
#include <QFutureWatcher>
#include <QLabel>
#include <QPushButton>
#include <algorithm>

#include "Base/Log.h"
#include "CThreadHandOff.h"
#include "VantorGUIToolkit/CInformationDlg.h"
#include "ui/AddIntoFaceLib/CBTAddFaceWnd.h"
#include "ui/CBottomWidget.h"
#include "ui/ShowCard/CCardHold.h"
#include "ui/ShowCard/CardStyle.h"
#include "ui/ShowCard/CWaitShowWid.h"
#include "ui/ShowCard/ReCustomer/CHFPDAttributes.h"
#include "commlayer/CRequestCancel.h"
#include "ui/ShowCard/ReCustomer/CHFPDSearchManager.h"
#include "ui/ShowCard/ReCustomer/CHFPDShowDetailWid.h"

namespace BodyTemperature {

namespace {

const QSize kPicture(120, 160);

} // namespace

CFrequenterUnit::CFrequenterUnit(QWidget* parent) : CRightUnitBase(parent)
{
    setFixedSize(380, 222);
    setObjectName(QStringLiteral("Comparison_ReturningCustomer"));
    m_pDetailBtn->setObjectName(QStringLiteral("DetailBtn_ReturningCustomer"));

    m_pReCustomer = new QLabel(tr("RegularCustomer"), this);
    m_pReCustomer->setObjectName(QStringLiteral("m_pReCustomer"));
    m_pFacelibName = new QLabel(this);
    m_pFacelibName->setTextFormat(Qt::PlainText);  // a library name from the device
    m_pFacelibName->setObjectName(QStringLiteral("m_pFacelibNameFre"));
    m_pTimeLabel->setObjectName(QStringLiteral("m_pTimeFre"));
    m_pCameraLabel->setObjectName(QStringLiteral("m_pCameraFre"));

    const Qt::Alignment leftCentre = Qt::AlignLeft | Qt::AlignVCenter;
    m_pFacePicLabel->setGeometry(10, 10, kPicture.width(), kPicture.height());
    m_pReCustomer->setGeometry(140, 23, 200, 20);
    m_pReCustomer->setAlignment(leftCentre);
    m_pReCustomer->adjustSize();
    m_pFacelibName->setGeometry(154, 64, 200, 20);
    m_pFacelibName->setAlignment(leftCentre);
    // Time above camera on this card, the other way round from the alarm card.
    m_pTimeLabel->setGeometry(154, 104, 200, 20);
    m_pTimeLabel->setAlignment(leftCentre);
    m_pCameraLabel->setGeometry(154, 144, 200, 20);
    m_pCameraLabel->setAlignment(leftCentre);
    m_pDetailBtn->setGeometry(10, 180, 361, 32);
    QFont bold = m_pDetailBtn->font();
    bold.setBold(true);
    m_pDetailBtn->setFont(bold);
    m_pReCustomer->setFont(bold);

    setStyleSheet(CardStyle::ModuleStyleSheet());
}

CFrequenterUnit::~CFrequenterUnit()
{
    BASE_LOG_DEBUG("CFrequenterUnit Destruct.");
    // Torn down with its page while a dialog of its own may still run.
    StopDetails();
    delete m_pDetailWid.data();
}

void CFrequenterUnit::SetAlarmInfo(const AlarmShowInfo&, bool) {}

void CFrequenterUnit::SetFrequenterInfo(const AlarmShowInfo& info)
{
    m_info = info;
    const PictureSource source = CEventPictures::ReturningFaceSourceOf(m_info.faceInfo);
    const QPixmap face = source.isEmpty()
        ? QPixmap(QStringLiteral(":/rightBottom/Images/BodyTemperature/rightBottom/DefaultFace.png"))
              .scaled(kPicture, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        : m_info.Pictures().Scaled(source, kPicture);
    if (face.isNull())
        return;
    m_pFacePicLabel->setPixmap(face);

    m_pTimeLabel->setText(
        QDateTime::fromSecsSinceEpoch(m_info.captureTime).toString(QStringLiteral("MM/dd hh:mm:ss")));
    m_pCameraLabel->setText(QString::fromStdString(m_info.cameraName));
    const std::string& library = m_info.alarmInfo.comparison.people.libraryName;
    // A missing library shows a backslash here, unlike the "/" of the other cards.
    m_pFacelibName->setText(library.empty() ? QStringLiteral("\\") : QString::fromStdString(library));
}

void CFrequenterUnit::ShowDetails()
{
    if (m_pWaitWid || (m_pDetailWid && m_pDetailWid->isVisible()))
        return;  // already searching or showing (a click from a nested loop)
    // Searches abandoned by a cancel end within milliseconds; keep only the running ones.
    // The last copy of a finished future frees the task's result here.
    m_fetches.erase(std::remove_if(m_fetches.begin(), m_fetches.end(),
                        [](const Fetch& f) {
                            if (!f.future.isFinished())
                                return false;
                            handoff::Acquire(f.token.get());
                            return true;
                        }),
        m_fetches.end());

    // The lists keep trimming while the dialogs below run their own loops.
    CCardHold hold(this);
    const QPointer<CFrequenterUnit> self(this);
    m_strSearchDevice = m_info.deviceID;
    m_strSearchTask = m_info.strSecondID;
    m_pCancel = std::make_shared<commlayer::CRequestCancel>();
    const std::shared_ptr<commlayer::CRequestCancel> cancel = m_pCancel;

    auto* wait = new CWaitShowWid(window(), QStringLiteral(":/VantorDesk/Dialog/Images/Public/Control/Dialog/Loading.gif"));
    m_pWaitWid = wait;
    auto* watcher = new QFutureWatcher<FetchResult>(wait);
    connect(watcher, &QFutureWatcher<FetchResult>::finished, wait, &CWaitShowWid::OnStopChaseByAccept);
    // Cancelling closes the dialog at once and cuts the search's request in flight.
    connect(wait, &CWaitShowWid::SignalCancel, wait, [cancel] { cancel->Cancel(); });
    const QFuture<FetchResult> future = handoff::Run(QThreadPool::globalInstance(), cancel,
        [device = m_strSearchDevice, task = m_strSearchTask, cancel] { return FetchRecords(device, task, cancel); });
    m_fetches.push_back({future, cancel});
    watcher->setFuture(future);
    const QPointer<CWaitShowWid> waitGuard(wait);
    const int answer = wait->exec();
    if (!self) {
        // Torn down with its page while the dialog ran (the search was stopped then).
        if (waitGuard)
            waitGuard->deleteLater();
        return;
    }
    m_pWaitWid = nullptr;
    wait->deleteLater();
    if (answer != QDialog::Accepted || cancel->IsCancelled() || !future.isFinished())
        return;

    handoff::Acquire(cancel.get());
    FetchResult result = future.result();
    m_records = std::move(result.records);
    m_bFetchFailed = result.bFailed;
    if (m_bFetchFailed) {
        m_bFetchFailed = false;
        VantorGUIToolkit::CInformationDlg::ShowInformationAtScreenRightBottom(tr("ObtainingDetailsFailed"));
        return;
    }
    if (!m_records || m_records->empty()) {
        VantorGUIToolkit::CInformationDlg::ShowInformationAtScreenRightBottom(tr("NoDetails"));
        return;
    }
    delete m_pDetailWid.data();
    auto* view = new CHFPDShowDetailWid(parentWidget());
    view->setObjectName(QStringLiteral("ReCustomerDetailsDlg"));
    m_pDetailWid = view;
    connect(view, &CHFPDShowDetailWid::SignalAddHFPDFaceToLibrary, view,
        [view](const QString& deviceId, const QString&, const QByteArray& face, const QByteArray& scene,
            const QRectF& rect) {
            // Without a face picture of its own the capture's face is cut from its scene.
            QByteArray jpeg = face;
            if (jpeg.isEmpty() && !scene.isEmpty())
                jpeg = CBottomWidget::CutFace(scene.toStdString(),
                    protocol::PictureRect{rect.x(), rect.y(), rect.width(), rect.height()});
            CBTAddFaceWnd::OpenForFace(view, deviceId.toStdString(), jpeg);
        });
    if (view->SetHFPDRecords(m_records, m_strSearchDevice, CHFPDAttributes::kReturningPersonMask, personInfo()))
        view->exec();
}

void CFrequenterUnit::StopDetails()
{
    if (m_pCancel)
        m_pCancel->Cancel();
    if (m_pWaitWid)
        m_pWaitWid->reject();
    if (m_pDetailWid)
        m_pDetailWid->reject();
    waitForFetches();
}

void CFrequenterUnit::StopAllDetails(QObject* root)
{
    if (root == nullptr)
        return;
    for (CFrequenterUnit* card : root->findChildren<CFrequenterUnit*>())
        card->StopDetails();
}

CFrequenterUnit::FetchResult CFrequenterUnit::FetchRecords(std::string deviceId, std::string taskId,
    std::shared_ptr<commlayer::CRequestCancel> cancel)
{
    FetchResult result;
    auto records = std::make_shared<HFPDRecordList>();
    result.bFailed = !CHFPDSearchManager::Instance()->SearchRecords(deviceId, taskId, *records, cancel.get());
    if (!result.bFailed)
        result.records = std::move(records);
    return result;
}

void CFrequenterUnit::waitForFetches()
{
    for (Fetch& f : m_fetches) {
        f.future.waitForFinished();
        handoff::Acquire(f.token.get());
    }
    m_fetches.clear();
}

HFPDPersonInfo CFrequenterUnit::personInfo() const
{
    HFPDPersonInfo person;
    const protocol::PeopleInfo& people = m_info.alarmInfo.comparison.people;
    person.valid = !people.name.empty() || !people.PID.empty();
    person.name = people.name;
    person.gender = people.Sex == 1 || people.Sex == 2 ? people.Sex : 3;
    person.contact = people.contact;
    return person;
}

} // namespace BodyTemperature
