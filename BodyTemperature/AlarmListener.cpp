#include "AlarmListener.h"

#include "Base/CSingleton.h"
#include "publicdatacontroller/AlarmTransfer.h"

namespace BodyTemperature {

namespace {
constexpr int kRecentEventSpan = 20;
}

AlarmListener::AlarmListener(QObject* parent) : QObject(parent) {}

AlarmListener::~AlarmListener() = default;

bool AlarmListener::isAcceptedEventType(uint32_t eventType)
{
    switch (eventType) {
    case 100101:
    case 100103:
    case 100112:
    case 100114:
    case 100119:
    case 100506:
        return true;
    default:
        return false;
    }
}

void AlarmListener::setAlarmListening(bool on)
{
    auto* transfer = Base::CSingleton<publicdatacontroller::AlarmTransfer>::Instance();
    if (on) {
        if (m_bConnected)
            return;
        m_bConnected = true;
        connect(transfer, SIGNAL(signalAlarmEventInfo(void*)), this, SLOT(OnClientAlarmEvent(void*)));
    } else {
        m_bConnected = false;
        disconnect(transfer, SIGNAL(signalAlarmEventInfo(void*)), this, SLOT(OnClientAlarmEvent(void*)));
    }
}

void AlarmListener::OnClientAlarmEvent(void* pAlarm)
{
    if (pAlarm == nullptr)
        return;
    const auto* alarm = static_cast<const publicdatacontroller::CIntelAlarmObject*>(pAlarm);
    publicdatacontroller::IntelAlarmEventInfo info = alarm->GetAlarmEventInfo();
    if (!isAcceptedEventType(info.eventType))
        return;

    if (!info.faceInfoList.empty()) {
        const int id = static_cast<int>(info.faceInfoList.front().facePicID);
        if (m_recentEventIds.contains(id))
            return;
        if (m_recentEventIds.size() >= kRecentEventSpan)
            m_recentEventIds.removeFirst();
        m_recentEventIds.append(id);
    }
    emit signalNewAlarmComing(info);
}

} // namespace BodyTemperature
