#include "playwindow/CStreamPlayWindowWithTask.h"

#include <QDragEnterEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QStyle>
#include <QTimer>
#include <QToolButton>

#include <algorithm>

#include "Base/Log.h"
#include "aiguitoolkit/CWidgetLayoutMgr.h"
#include "playwindow/CLiveViewControllerPlugin.h"
#include "playwindow/CStreamDecoder.h"
#include "playwindow/CStreamSource.h"
#include "playwindow/CVideoSurface.h"

namespace {
constexpr int kToolBarHeight = 28;
constexpr int kNoSignalMs = 2000;

bool CarriesCamera(const QMimeData* data)
{
    return data != nullptr && (data->property("CameraGUID").isValid() || data->property("GroupGUID").isValid());
}
} // namespace

CStreamPlayWindowWithTask::CStreamPlayWindowWithTask(int index, QWidget* parent) : QFrame(parent), m_iIndex(index)
{
    qRegisterMetaType<CLiveViewEvent>("CLiveViewEvent");
    setObjectName(QStringLiteral("m_pStreamPlayWnd"));
    setAcceptDrops(true);
    setMouseTracking(true);
    setFocusPolicy(Qt::ClickFocus);
    setMinimumSize(40, 30);
    setStyleSheet(QStringLiteral("CStreamPlayWindowWithTask{background-color:#101418;}"
                                 "QLabel#m_pLiveViewWindow{background-color:#101418;}"));

    m_pLiveViewWindow = new QLabel(this);
    m_pLiveViewWindow->setObjectName(QStringLiteral("m_pLiveViewWindow"));
    m_pLiveViewWindow->setAlignment(Qt::AlignCenter);
    m_pLiveViewWindow->setAttribute(Qt::WA_TransparentForMouseEvents);

    m_pVideo = new playwindow::CVideoSurface(this);
    m_pVideo->hide();

    m_pMessage = new QLabel(this);
    m_pMessage->setObjectName(QStringLiteral("m_pMessageLabel"));
    m_pMessage->setTextFormat(Qt::PlainText);
    m_pMessage->setAlignment(Qt::AlignCenter);
    m_pMessage->setWordWrap(true);
    m_pMessage->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_pMessage->setStyleSheet(QStringLiteral(
        "QLabel#m_pMessageLabel{color:#ffffff;background-color:rgba(0,0,0,0.6);padding:6px;border-radius:3px;}"
        "QLabel#m_pMessageLabel[alert=\"true\"]{background-color:rgba(170,30,30,0.85);font-weight:bold;}"));
    m_pMessage->hide();
    // A stream that is connected but sends nothing says so before its read time-out.
    m_pStallTimer = new QTimer(this);
    m_pStallTimer->setInterval(500);
    connect(m_pStallTimer, &QTimer::timeout, this, [this] {
        if (m_decoder && HasFrame() && !m_bStalled && m_frameClock.elapsed() > kNoSignalMs) {
            m_bStalled = true;
            ShowMessage(tr("No signal"));
        }
    });
    m_pMessageTimer = new QTimer(this);
    m_pMessageTimer->setSingleShot(true);
    connect(m_pMessageTimer, &QTimer::timeout, m_pMessage, &QWidget::hide);

    m_pToolBar = new QFrame(this);
    m_pToolBar->setObjectName(QStringLiteral("m_pToolBar"));
    m_pToolBar->setStyleSheet(QStringLiteral("QFrame#m_pToolBar{background-color:rgba(0,0,0,0.55);}"
                                             "QLabel{color:#ffffff;}"));
    auto* bar = new QHBoxLayout(m_pToolBar);
    bar->setContentsMargins(8, 2, 4, 2);
    bar->setSpacing(4);
    m_pTitle = new QLabel(m_pToolBar);
    m_pTitle->setObjectName(QStringLiteral("m_pTitleLabel"));
    m_pTitle->setTextFormat(Qt::PlainText);  // camera names are typed by users and devices
    bar->addWidget(m_pTitle, 1);
    m_pSoundBtn = new QToolButton(m_pToolBar);
    m_pSoundBtn->setObjectName(QStringLiteral("m_pSoundBtn"));
    m_pSoundBtn->setToolTip(tr("Sound"));
    m_pSoundBtn->setText(QStringLiteral("\u266A"));
    m_pSoundBtn->setCheckable(true);
    m_pSoundBtn->setFixedSize(22, 22);
    bar->addWidget(m_pSoundBtn);
    connect(m_pSoundBtn, &QToolButton::clicked, this, [this] {
        m_pSoundBtn->setChecked(m_bSound);
        emit SignalSoundBtnClicked();
    });
    m_pCloseBtn = new QPushButton(m_pToolBar);
    m_pCloseBtn->setObjectName(QStringLiteral("m_pCloseBtn"));
    m_pCloseBtn->setFixedSize(20, 20);
    bar->addWidget(m_pCloseBtn);
    connect(m_pCloseBtn, &QPushButton::clicked, this, &CStreamPlayWindowWithTask::StopPreview);
    m_pToolBar->hide();
    UpdateChildren();
}

CStreamPlayWindowWithTask::~CStreamPlayWindowWithTask()
{
    // Joined here, not by a member destructor, so no callback reaches a half-destroyed window.
    for (auto* d : {&m_decoder, &m_pending})
        if (*d)
            (*d)->Stop();
    for (auto& d : m_retired)
        d->Stop();
    m_decoder.reset();
    m_pending.reset();
    m_retired.clear();
}

void CStreamPlayWindowWithTask::SetToolBarBtnList(const QList<int>& buttons, const QList<int>& extraButtons)
{
    m_toolButtons = buttons + extraButtons;
    m_pSoundBtn->setVisible(m_toolButtons.contains(BtnSound));
}

void CStreamPlayWindowWithTask::EnableToolBar(bool enable)
{
    m_bToolBar = enable;
    UpdateChildren();
}

bool CStreamPlayWindowWithTask::StartPreview(const std::string& cameraId, int iValue, int, int)
{
    if (cameraId.empty())
        return false;
    vantordesk::IElement* element = m_pPlugin != nullptr ? m_pPlugin->GetElement(cameraId) : nullptr;
    const auto* camera = element != nullptr && element->GetElementType() == vantordesk::ElementCamera
        ? static_cast<vantordesk::ICamera*>(element) : nullptr;
    const bool sole = property(aiguitoolkit::CWidgetLayoutMgr::kSoleViewProperty).toBool();
    const playwindow::CStreamSource source = camera != nullptr
        ? playwindow::CStreamSource::OfCamera(*camera, m_settings, sole) : playwindow::CStreamSource();
    if (source.IsEmpty()) {
        StopPreview();
        BeginPreview(cameraId, QString());
        ShowMessage(tr("The camera is not available."));
        m_iStartValue = iValue;
        return true;
    }
    StartSource(source, cameraId);
    m_bProfiles = playwindow::CStreamSource::HasProfiles(*camera);
    m_bMainStream = sole;
    m_iStartValue = iValue;
    m_pTitle->setText(QString::fromStdString(camera->GetElementName()));
    return true;
}

void CStreamPlayWindowWithTask::BeginPreview(const std::string& cameraId, const QString& url)
{
    m_bPreviewing = true;
    m_strCameraID = cameraId;
    m_strUrl = url;
    m_pTitle->setText(QString::fromStdString(cameraId));
    m_pVideo->Clear();
    UpdateChildren();
    BASE_LOG_INFO("window %d: preview of %s started", m_iIndex, cameraId.c_str());
    emit SignalLiveViewEvent(CLiveViewEvent(CLiveViewEvent::PreviewStarted, cameraId));
    emit SignalPlayStateChanged();
}

bool CStreamPlayWindowWithTask::StartPreviewUrl(const QString& url, const std::string& cameraId)
{
    return StartSource(playwindow::CStreamSource::OfUrl(url), cameraId);
}

bool CStreamPlayWindowWithTask::StartSource(const playwindow::CStreamSource& source, const std::string& cameraId)
{
    if (source.IsEmpty())
        return false;
    StopPreview();
    m_generation = ++m_lastGeneration;
    m_decoder = MakeDecoder(source, m_generation);
    m_bPlayedOnce = false;
    m_bStalled = false;
    m_bPoorSignal = false;
    m_pStallTimer->start();
    ShowMessage(tr("Connecting..."));
    BeginPreview(cameraId, source.url);
    return true;
}

std::unique_ptr<playwindow::CStreamDecoder> CStreamPlayWindowWithTask::MakeDecoder(
    const playwindow::CStreamSource& source, quint64 generation)
{
    playwindow::CStreamDecoder::Callbacks cb;
    // The decoder calls these on its thread; they only post to the GUI thread,
    // tagged with the generation so a late post of an old stream is ignored.
    cb.frameReady = [this, generation] {
        QMetaObject::invokeMethod(this, [this, generation] { OnFrameReady(generation); }, Qt::QueuedConnection);
    };
    cb.status = [this, generation](playwindow::CStreamDecoder::State state, QString message) {
        QMetaObject::invokeMethod(this, [this, generation, state, message] {
            OnDecoderStatus(generation, static_cast<int>(state), message);
        }, Qt::QueuedConnection);
    };
    auto decoder = std::make_unique<playwindow::CStreamDecoder>(source, std::move(cb));
    decoder->SetTargetSize(size());
    decoder->SetSeen(isVisible() && !window()->isMinimized());
    decoder->Start();
    return decoder;
}

void CStreamPlayWindowWithTask::ChooseStream(bool mainStream)
{
    if (mainStream == m_bMainStream)
        return;
    m_bMainStream = mainStream;
    if (!m_bPreviewing || !m_bProfiles || m_pPlugin == nullptr)
        return;
    vantordesk::IElement* element = m_pPlugin->GetElement(m_strCameraID);
    if (element == nullptr || element->GetElementType() != vantordesk::ElementCamera)
        return;
    const auto source = playwindow::CStreamSource::OfCamera(*static_cast<vantordesk::ICamera*>(element), m_settings,
        mainStream);
    if (source.IsEmpty() || source.url == m_strUrl) {
        Retire(std::move(m_pending));
        return;
    }
    // The current stream stays on screen until the new one has its first picture.
    Retire(std::move(m_pending));
    m_pendingGeneration = ++m_lastGeneration;
    m_pendingUrl = source.url;
    m_pending = MakeDecoder(source, m_pendingGeneration);
    BASE_LOG_INFO("window %d: switching %s to its %s stream", m_iIndex, m_strCameraID.c_str(),
        mainStream ? "main" : "sub");
}

void CStreamPlayWindowWithTask::Retire(std::unique_ptr<playwindow::CStreamDecoder> decoder)
{
    // Finished threads are joined at once; the one just asked to stop ends
    // on its own and is joined later, so the GUI does not wait for it.
    m_retired.erase(std::remove_if(m_retired.begin(), m_retired.end(),
                        [](const std::unique_ptr<playwindow::CStreamDecoder>& d) { return d->Finished(); }),
        m_retired.end());
    if (decoder) {
        decoder->RequestStop();
        m_retired.push_back(std::move(decoder));
    }
}

bool CStreamPlayWindowWithTask::event(QEvent* event)
{
    if (event->type() == QEvent::DynamicPropertyChange
        && static_cast<QDynamicPropertyChangeEvent*>(event)->propertyName()
            == aiguitoolkit::CWidgetLayoutMgr::kSoleViewProperty)
        ChooseStream(property(aiguitoolkit::CWidgetLayoutMgr::kSoleViewProperty).toBool());
    return QFrame::event(event);
}

void CStreamPlayWindowWithTask::StopPreview()
{
    if (!m_bPreviewing)
        return;
    m_bPreviewing = false;
    m_generation = ++m_lastGeneration;
    m_pendingGeneration = 0;
    if (m_decoder)
        m_decoder->Stop();
    m_decoder.reset();
    if (m_pending)
        m_pending->Stop();
    m_pending.reset();
    m_bProfiles = false;
    m_pStallTimer->stop();
    const std::string cameraId = m_strCameraID;
    m_strCameraID.clear();
    m_strUrl.clear();
    m_bSound = false;
    m_pSoundBtn->setChecked(false);
    m_pVideo->Clear();
    m_pMessage->hide();
    m_pMessageTimer->stop();
    m_pTitle->clear();
    UpdateChildren();
    BASE_LOG_INFO("window %d: preview of %s stopped", m_iIndex, cameraId.c_str());
    emit SignalLiveViewEvent(CLiveViewEvent(CLiveViewEvent::PreviewStopped, cameraId));
    emit SignalPlayStateChanged();
}

bool CStreamPlayWindowWithTask::OpenSound()
{
    if (!m_decoder || !m_decoder->EnableSound(true))
        return false;
    m_bSound = true;
    m_pSoundBtn->setChecked(true);
    return true;
}

void CStreamPlayWindowWithTask::CloseSound()
{
    if (m_decoder)
        m_decoder->EnableSound(false);
    m_bSound = false;
    m_pSoundBtn->setChecked(false);
}

void CStreamPlayWindowWithTask::SetSelected(bool selected)
{
    if (m_bSelected == selected)
        return;
    m_bSelected = selected;
    setProperty("selected", selected);
}

QImage CStreamPlayWindowWithTask::CurrentFrame() const
{
    return m_pVideo->Frame();
}

QString CStreamPlayWindowWithTask::MessageText() const
{
    return m_pMessage->isHidden() ? QString() : m_pMessage->text();
}

bool CStreamPlayWindowWithTask::HasFrame() const
{
    return !m_pVideo->Frame().isNull();
}

uint64_t CStreamPlayWindowWithTask::DecodedFrames() const
{
    return m_decoder ? m_decoder->DecodedFrames() : 0;
}

uint64_t CStreamPlayWindowWithTask::PaintedFrames() const
{
    return m_pVideo->PaintedFrames();
}

CStreamPlayWindowWithTask::StepCost CStreamPlayWindowWithTask::StepCosts() const
{
    StepCost cost;
    if (m_decoder) {
        cost.decodeNs = m_decoder->DecodeNs();
        cost.convertNs = m_decoder->ConvertNs();
    }
    cost.paintNs = m_pVideo->PaintNs();
    return cost;
}

uint64_t CStreamPlayWindowWithTask::BadPackets() const
{
    return m_decoder ? m_decoder->BadPackets() : 0;
}

void CStreamPlayWindowWithTask::OnFrameReady(quint64 generation)
{
    if (generation != 0 && generation == m_pendingGeneration && m_pending) {
        Retire(std::move(m_decoder));
        m_decoder = std::move(m_pending);
        m_generation = generation;
        m_pendingGeneration = 0;
        m_strUrl = m_pendingUrl;
        m_bPoorSignal = false;
        if (m_bSound && !m_decoder->EnableSound(true))
            CloseSound();
        m_pMessage->hide();
    }
    if (generation != m_generation || !m_decoder)
        return;
    QImage frame = m_decoder->TakeFrame();
    if (frame.isNull())
        return;
    m_pVideo->SetFrame(std::move(frame));
    m_frameClock.restart();
    m_bPlayedOnce = true;
    if (m_bStalled) {
        m_bStalled = false;
        m_pMessage->hide();
        ShowSignalState();
    }
    // A window minimised with its top level gets no hide event of its own.
    if (window()->isMinimized())
        UpdateSeen();
}

void CStreamPlayWindowWithTask::ShowSignalState()
{
    if (m_bPoorSignal)
        ShowMessage(tr("Poor signal"));
}

void CStreamPlayWindowWithTask::UpdateSeen()
{
    const bool seen = isVisible() && !window()->isMinimized();
    for (auto* d : {&m_decoder, &m_pending})
        if (*d)
            (*d)->SetSeen(seen);
}

void CStreamPlayWindowWithTask::OnDecoderStatus(quint64 generation, int state, const QString& message)
{
    if (generation != m_generation)
        return;
    switch (static_cast<playwindow::CStreamDecoder::State>(state)) {
    case playwindow::CStreamDecoder::State::Connecting:
        if (!HasFrame())
            ShowMessage(m_bPlayedOnce ? tr("Reconnecting...") : tr("Connecting..."));
        break;
    case playwindow::CStreamDecoder::State::Playing:
        if (message.isEmpty()) {
            m_bPoorSignal = false;
            if (!m_bStalled)
                m_pMessage->hide();
        } else if (!m_bPoorSignal) {
            ShowMessage(tr("Stream problem: %1").arg(message), 2000);
        }
        break;
    case playwindow::CStreamDecoder::State::PoorSignal:
        m_bPoorSignal = true;
        ShowSignalState();
        break;
    case playwindow::CStreamDecoder::State::Retrying:
        m_pVideo->Clear();
        ShowMessage(tr("No video (%1). Retrying...").arg(message));
        break;
    case playwindow::CStreamDecoder::State::CertificateNotTrusted:
        m_pVideo->Clear();
        ShowMessage(tr("Certificate not trusted. The video was stopped; the password was not sent."), 0, true);
        break;
    case playwindow::CStreamDecoder::State::PasswordRefused:
        m_pVideo->Clear();
        ShowMessage(tr("Password not sent: the device asked for it without encryption."), 0, true);
        break;
    case playwindow::CStreamDecoder::State::NoVideo:
        m_pVideo->Clear();
        ShowMessage(tr("This stream has no video."));
        break;
    case playwindow::CStreamDecoder::State::WaitingForKeyFrame:
        // The last whole picture stays, dimmed; the next one shown clears the message.
        m_bStalled = true;
        m_pVideo->SetDimmed(HasFrame());
        if (m_bPoorSignal)
            ShowSignalState();
        else
            ShowMessage(tr("Waiting for a key frame..."));
        break;
    case playwindow::CStreamDecoder::State::Stopped:
        break;
    }
}

void CStreamPlayWindowWithTask::ShowMessage(const QString& text, int ms, bool alert)
{
    if (m_pMessage->property("alert").toBool() != alert) {
        m_pMessage->setProperty("alert", alert);
        m_pMessage->style()->unpolish(m_pMessage);
        m_pMessage->style()->polish(m_pMessage);
    }
    m_pMessage->setText(text);
    m_pMessage->adjustSize();
    UpdateChildren();
    m_pMessage->show();
    m_pMessage->raise();
    if (ms > 0)
        m_pMessageTimer->start(ms);
    else
        m_pMessageTimer->stop();
}

void CStreamPlayWindowWithTask::UpdateChildren()
{
    const QRect r = rect();
    const bool playing = m_bPreviewing;
    m_pLiveViewWindow->setGeometry(r);
    m_pLiveViewWindow->setVisible(!playing);
    m_pVideo->setGeometry(r);
    m_pVideo->setVisible(playing);
    if (m_decoder)
        m_decoder->SetTargetSize(r.size());
    if (m_pending)
        m_pending->SetTargetSize(r.size());
    // One line when it fits in four fifths of the window, wrapped beyond.
    QFont font = m_pMessage->font();
    font.setBold(m_pMessage->property("alert").toBool());
    const int textWidth = QFontMetrics(font).horizontalAdvance(m_pMessage->text()) + 32;
    const int mw = qMax(40, qMin(r.width() - 16, qBound(160, textWidth, qMax(160, r.width() * 4 / 5))));
    const int mh = m_pMessage->heightForWidth(mw);
    m_pMessage->setFixedSize(mw, mh > 0 ? mh : m_pMessage->sizeHint().height());
    m_pMessage->move((r.width() - m_pMessage->width()) / 2, (r.height() - m_pMessage->height()) / 2);
    m_pToolBar->setGeometry(0, 0, r.width(), kToolBarHeight);
    m_pToolBar->setVisible(m_bToolBar && playing && m_bHover);
    m_pToolBar->raise();
}

void CStreamPlayWindowWithTask::mousePressEvent(QMouseEvent* event)
{
    emit SignalSelected();
    QFrame::mousePressEvent(event);
}

void CStreamPlayWindowWithTask::mouseDoubleClickEvent(QMouseEvent* event)
{
    emit SignalDoubleClicked();
    QFrame::mouseDoubleClickEvent(event);
}

void CStreamPlayWindowWithTask::resizeEvent(QResizeEvent* event)
{
    QFrame::resizeEvent(event);
    UpdateChildren();
}

void CStreamPlayWindowWithTask::showEvent(QShowEvent* event)
{
    QFrame::showEvent(event);
    UpdateSeen();
}

void CStreamPlayWindowWithTask::hideEvent(QHideEvent* event)
{
    QFrame::hideEvent(event);
    UpdateSeen();
}

void CStreamPlayWindowWithTask::enterEvent(QEvent* event)
{
    m_bHover = true;
    UpdateChildren();
    QFrame::enterEvent(event);
}

void CStreamPlayWindowWithTask::leaveEvent(QEvent* event)
{
    m_bHover = false;
    UpdateChildren();
    QFrame::leaveEvent(event);
}

void CStreamPlayWindowWithTask::dragEnterEvent(QDragEnterEvent* event)
{
    if (CarriesCamera(event->mimeData()))
        event->acceptProposedAction();
    else
        event->ignore();
}

void CStreamPlayWindowWithTask::dragMoveEvent(QDragMoveEvent* event)
{
    if (CarriesCamera(event->mimeData()))
        event->acceptProposedAction();
    else
        event->ignore();
}

void CStreamPlayWindowWithTask::dropEvent(QDropEvent* event)
{
    event->acceptProposedAction();
    emit SignalDrop(event);
}
