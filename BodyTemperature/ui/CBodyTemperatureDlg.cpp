#include "ui/CBodyTemperatureDlg.h"

#include "AlarmListener.h"
#include "Base/CSingleton.h"
#include "CAppRscManager.h"

namespace BodyTemperature {

CBodyTemperatureDlg::CBodyTemperatureDlg(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("BodyTemperatureDlg"));
    Base::CSingleton<CAppRscManager>::Instance()->Init();
    m_pAlarmListener = new AlarmListener(this);
    connect(m_pAlarmListener, &AlarmListener::signalNewAlarmComing, this, &CBodyTemperatureDlg::onNewAlarmComing);
    setAcceptDrops(true);
}

CBodyTemperatureDlg::~CBodyTemperatureDlg() = default;

QList<QByteArray> CBodyTemperatureDlg::GetPlayingCameraIds() const
{
    return {};
}

void CBodyTemperatureDlg::StopAllLiveView() {}

void CBodyTemperatureDlg::RestorePlayingCameras(const QStringList&) {}

void CBodyTemperatureDlg::SetAlarmListening(bool on)
{
    m_pAlarmListener->setAlarmListening(on);
}

void CBodyTemperatureDlg::onNewAlarmComing(publicdatacontroller::IntelAlarmEventInfo)
{
}

} // namespace BodyTemperature
