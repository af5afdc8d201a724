#pragma once
// The host's single publisher of device alarms. Lives on the GUI thread.
// signalAlarmEventInfo(void*) carries a CIntelAlarmObject*; the pointer is
// valid for the duration of the emission.
//
// publishAlarm() may be called from any thread: it hands the object to the
// GUI thread and emits there, keeping the object alive until every receiver
// has been called, then releases it.
#include <QObject>
#include <memory>

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

signals:
    void signalAlarmEventInfo(void* pAlarm);
};

} // namespace publicdatacontroller

// One instance for the whole process, whichever library asks.
template <>
publicdatacontroller::AlarmTransfer* Base::CSingleton<publicdatacontroller::AlarmTransfer>::Instance();
