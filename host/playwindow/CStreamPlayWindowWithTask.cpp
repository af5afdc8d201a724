#include "playwindow/CStreamPlayWindowWithTask.h"

#include <QDragEnterEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>

#include "Base/Log.h"
#include "playwindow/CLiveViewControllerPlugin.h"
#include "playwindow/CStreamDecoder.h"
#include "playwindow/CStreamSource.h"
#include "playwindow/CVideoSurface.h"

namespace {
constexpr int kToolBarHeight = 28;

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
        "QLabel#m_pMessageLabel{color:#ffffff;background-color:rgba(0,0,0,0.6);padding:6px;border-radius:3px;}"));
    m_pMessage->hide();
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
    if (m_decoder)
        m_decoder->Stop();
    m_decoder.reset();
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
    const QString url = camera != nullptr ? playwindow::StreamUrlOf(*camera, m_settings) : QString();
    if (url.isEmpty()) {
        StopPreview();
        BeginPreview(cameraId, QString());
        ShowMessage(tr("The camera is not available."));
        m_iStartValue = iValue;
        return true;
    }
    StartPreviewUrl(url, cameraId);
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
    if (url.isEmpty())
        return false;
    StopPreview();
    const quint64 generation = ++m_generation;
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
    m_decoder = std::make_unique<playwindow::CStreamDecoder>(url, std::move(cb));
    m_decoder->SetTargetSize(size());
    ShowMessage(tr("Connecting..."));
    m_decoder->Start();
    BeginPreview(cameraId, url);
    return true;
}

void CStreamPlayWindowWithTask::StopPreview()
{
    if (!m_bPreviewing)
        return;
    m_bPreviewing = false;
    ++m_generation;
    if (m_decoder)
        m_decoder->Stop();
    m_decoder.reset();
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

uint64_t CStreamPlayWindowWithTask::BadPackets() const
{
    return m_decoder ? m_decoder->BadPackets() : 0;
}

void CStreamPlayWindowWithTask::OnFrameReady(quint64 generation)
{
    if (generation != m_generation || !m_decoder)
        return;
    QImage frame = m_decoder->TakeFrame();
    if (frame.isNull())
        return;
    m_pVideo->SetFrame(std::move(frame));
}

void CStreamPlayWindowWithTask::OnDecoderStatus(quint64 generation, int state, const QString& message)
{
    if (generation != m_generation)
        return;
    switch (static_cast<playwindow::CStreamDecoder::State>(state)) {
    case playwindow::CStreamDecoder::State::Connecting:
        if (!HasFrame())
            ShowMessage(tr("Connecting..."));
        break;
    case playwindow::CStreamDecoder::State::Playing:
        if (message.isEmpty())
            m_pMessage->hide();
        else
            ShowMessage(tr("Stream problem: %1").arg(message), 2000);
        break;
    case playwindow::CStreamDecoder::State::Retrying:
        m_pVideo->Clear();
        ShowMessage(tr("No video (%1). Retrying...").arg(message));
        break;
    case playwindow::CStreamDecoder::State::Stopped:
        break;
    }
}

void CStreamPlayWindowWithTask::ShowMessage(const QString& text, int ms)
{
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
    const int mw = qMin(r.width() - 16, qMax(160, m_pMessage->sizeHint().width()));
    m_pMessage->setFixedWidth(qMax(40, mw));
    m_pMessage->adjustSize();
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
