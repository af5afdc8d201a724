#include "publicdatacontroller/AlarmTransfer.h"

#include <QCoreApplication>
#include <QElapsedTimer>
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
    {
        std::lock_guard<std::mutex> lock(m_queueMutex);
        m_queue.push_back(std::move(alarm));
        if (m_bDeliveryPosted)
            return;
        m_bDeliveryPosted = true;
    }
    QMetaObject::invokeMethod(this, &AlarmTransfer::deliverQueued, Qt::QueuedConnection);
}

void AlarmTransfer::deliverQueued()
{
    QElapsedTimer slice;
    slice.start();
    for (;;) {
        std::shared_ptr<const CIntelAlarmObject> alarm;
        {
            std::lock_guard<std::mutex> lock(m_queueMutex);
            if (m_queue.empty()) {
                m_bDeliveryPosted = false;
                return;
            }
            alarm = std::move(m_queue.front());
            m_queue.pop_front();
        }
        emit signalAlarmEventInfo(const_cast<CIntelAlarmObject*>(alarm.get()));
        if (slice.elapsed() >= kDeliverySliceMs)
            break;
    }
    // The rest after the event loop had its turn (input, painting, timers).
    QMetaObject::invokeMethod(this, &AlarmTransfer::deliverQueued, Qt::QueuedConnection);
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
