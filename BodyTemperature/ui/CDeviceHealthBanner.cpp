#include "ui/CDeviceHealthBanner.h"

#include <QDateTime>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QTimer>

#include "clientcommonlogical/CConfigMgr.h"
#include "commlayer/CDeviceStateNotifier.h"
#include "record/CSiteReplicator.h"

namespace BodyTemperature {

namespace {
const char* const kStyle =
    "QFrame#m_pDeviceHealthBanner { background-color: rgba(178, 34, 10, 0.92); border: 1px solid #FF4C1F;"
    " border-radius: 4px; }"
    "QLabel#m_pDeviceHealthText { color: #FFFFFF; font-size: 15px; font-weight: bold; background: transparent; }";
}

CDeviceHealthBanner::CDeviceHealthBanner(QWidget* parent) : QFrame(parent)
{
    setObjectName(QStringLiteral("m_pDeviceHealthBanner"));
    setStyleSheet(QString::fromLatin1(kStyle));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(14, 8, 14, 8);
    m_pText = new QLabel(this);
    m_pText->setObjectName(QStringLiteral("m_pDeviceHealthText"));
    m_pText->setWordWrap(true);
    m_pText->setTextFormat(Qt::PlainText);  // names and reasons from devices
    row->addWidget(m_pText, 1);
    m_pTick = new QTimer(this);
    m_pTick->setInterval(1000);
    connect(m_pTick, &QTimer::timeout, this, &CDeviceHealthBanner::refresh);
    connect(commlayer::CDeviceStateNotifier::Instance(), &commlayer::CDeviceStateNotifier::signalDeviceOnline, this,
        &CDeviceHealthBanner::OnDeviceOnline);
    if (parent != nullptr)
        parent->installEventFilter(this);
    hide();
}

void CDeviceHealthBanner::OnDeviceOnline(const QString& deviceId, bool online)
{
    if (!m_silence.SetOnline(deviceId, online, QDateTime::currentMSecsSinceEpoch()))
        return;
    refresh();
}

void CDeviceHealthBanner::OnSiteRecord(int state, qint64 sinceMs)
{
    m_siteState = state;
    m_siteSinceMs = sinceMs;
    refresh();
}

void CDeviceHealthBanner::refresh()
{
    if (m_silence.IsEmpty() && m_siteState == 0) {
        m_pTick->stop();
        hide();
        return;
    }
    const int64_t now = QDateTime::currentMSecsSinceEpoch();
    QStringList lines;
    for (const CDeviceSilence::Silent& s : m_silence.SilentDevices()) {
        clientcommonlogical::DeviceConfig device;
        QString name = s.deviceId;
        if (clientcommonlogical::CConfigMgr::Instance()->FindDevice(s.deviceId.toStdString(), device)
            && !device.name.empty())
            name = QStringLiteral("%1 (%2)").arg(QString::fromStdString(device.name), s.deviceId);
        const QString since = CDeviceSilence::FormatDuration(now - s.sinceMs);
        // Why, as the intake saw it: a stream that stays open but says nothing
        // is told in words; other reasons are the transport's own.
        QString reason = commlayer::CDeviceStateNotifier::Instance()->DeviceProblem(s.deviceId);
        if (reason.contains(QStringLiteral("silent")))
            reason = tr("DeviceAlarmStreamSilentReason");
        lines << (reason.isEmpty() ? tr("DeviceAlarmStreamLost").arg(name, since)
                                   : tr("DeviceAlarmStreamLostReason").arg(name, since, reason));
    }
    if (m_siteState != 0) {
        const QString since = QDateTime::fromMSecsSinceEpoch(m_siteSinceMs).toString(QStringLiteral("hh:mm"));
        const int rejected = int(CSiteReplicator::State::Rejected);
        const int untrusted = int(CSiteReplicator::State::Untrusted);
        const int refused = int(CSiteReplicator::State::Refused);
        lines << (m_siteState == rejected  ? tr("SiteRecordRejected")
                  : m_siteState == untrusted ? tr("SiteRecordUntrusted")
                  : m_siteState == refused   ? tr("SiteRecordRefused")
                                             : tr("SiteRecordUnreachable"))
                     .arg(since);
    }
    m_pText->setText(lines.join(QLatin1Char('\n')));
    if (!m_pTick->isActive())
        m_pTick->start();
    place();
    raise();
    show();
}

void CDeviceHealthBanner::place()
{
    if (parentWidget() == nullptr)
        return;
    const int width = std::max(200, parentWidget()->width() - 48);
    resize(width, heightForWidth(width) > 0 ? heightForWidth(width) : sizeHint().height());
    move((parentWidget()->width() - width) / 2, 12);
}

bool CDeviceHealthBanner::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize && isVisible())
        place();
    return QFrame::eventFilter(watched, event);
}

} // namespace BodyTemperature
