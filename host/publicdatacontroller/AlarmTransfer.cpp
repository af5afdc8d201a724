#include "publicdatacontroller/AlarmTransfer.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QThread>
#include <mutex>

namespace publicdatacontroller {

CIntelAlarmObject::~CIntelAlarmObject() = default;

AlarmTransfer::AlarmTransfer()
{
    qRegisterMetaType<IntelAlarmEventInfo>("IntelAlarmEventInfo");
    qRegisterMetaType<IntelAlarmEventInfo>("publicdatacontroller::IntelAlarmEventInfo");
    if (QCoreApplication::instance() && thread() != QCoreApplication::instance()->thread())
        moveToThread(QCoreApplication::instance()->thread());
}

AlarmTransfer::~AlarmTransfer() = default;

int AlarmTransfer::listenerCount() const
{
    return receivers(SIGNAL(signalAlarmEventInfo(void*)));
}

void AlarmTransfer::publishAlarm(std::shared_ptr<const CIntelAlarmObject> alarm)
{
    if (!alarm)
        return;
    if (QThread::currentThread() == thread()) {
        emit signalAlarmEventInfo(const_cast<CIntelAlarmObject*>(alarm.get()));
        return;
    }
    QMetaObject::invokeMethod(this, [this, alarm]() {
        emit signalAlarmEventInfo(const_cast<CIntelAlarmObject*>(alarm.get()));
    }, Qt::QueuedConnection);
}

} // namespace publicdatacontroller

template <>
publicdatacontroller::AlarmTransfer* Base::CSingleton<publicdatacontroller::AlarmTransfer>::Instance()
{
    static std::once_flag s_once;
    static publicdatacontroller::AlarmTransfer* s_instance = nullptr;
    std::call_once(s_once, [] { s_instance = new publicdatacontroller::AlarmTransfer(); });
    return s_instance;
}
