#pragma once
// The host's single publisher of device alarms. Lives on the GUI thread.
// signalAlarmEventInfo(void*) carries a CIntelAlarmObject*; the pointer is
// valid for the duration of the emission.
//
// publishAlarm() may be called from any thread: it hands the object to the
// GUI thread and emits there, keeping the object alive until every receiver
// has been called, then releases it. Alarms from other threads wait in a
// queue that the GUI thread empties in slices of kDeliverySliceMs, in order:
// a burst of thousands is spread over several turns of the event loop
// instead of holding it for the whole burst.
#include <QObject>
#include <deque>
#include <memory>
#include <mutex>

#include "Base/CSingleton.h"
#include "publicdatacontroller/IntelAlarmEventInfo.h"

namespace publicdatacontroller {

class AlarmTransfer final : public QObject {
    Q_OBJECT
public:
    AlarmTransfer();
    ~AlarmTransfer() override;

    void publishAlarm(std::shared_ptr<const CIntelAlarmObject> alarm);
    // How many receivers are connected to signalAlarmEventInfo (diagnostics).
    int listenerCount() const;

    static constexpr int kDeliverySliceMs = 20;

signals:
    void signalAlarmEventInfo(void* pAlarm);

private:
    void deliverQueued();

    std::mutex m_queueMutex;
    std::deque<std::shared_ptr<const CIntelAlarmObject>> m_queue;  // guarded
    bool m_bDeliveryPosted = false;                                 // guarded
};

} // namespace publicdatacontroller

// One instance for the whole process, whichever library asks.
template <>
publicdatacontroller::AlarmTransfer* Base::CSingleton<publicdatacontroller::AlarmTransfer>::Instance();
