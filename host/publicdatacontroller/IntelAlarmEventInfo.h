#pragma once
// One alarm as the host delivers it to modules. A value type, copied whole at
// each hand-over; its pictures are shared, not copied.
#include <QMetaType>
#include <cstdint>
#include <string>
#include <vector>

#include "protocol/IntelAlarmInfo.h"

namespace publicdatacontroller {

struct IntelAlarmEventInfo {
    uint32_t eventType = 0;     // 100101, 100103, 100112, 100114, 100119, 100506, ...
    std::string deviceID;       // host identifier of the device (its serial)
    std::string deviceName;
    std::string cameraID;       // host identifier of the camera
    std::string cameraName;
    int32_t channel = 0;        // device channel of the camera
    std::string secondID;       // task identifier of a returning-person (HFPD) event
    std::string eventID;        // device's identifier of the event
    int64_t captureTime = 0;    // seconds since 1970 (UTC)
    std::string eventName;      // device text describing the event
    std::string ruleName;       // device text: the rule that raised it

    protocol::IntelAlarmInfoStruct alarmInfo;                 // event block
    protocol::IntelAlarmFaceInfo faceInfo;                    // single face block (comparison events)
    std::vector<protocol::IntelAlarmFaceInfo> faceInfoList;   // faces of capture events
};

// The host alarm object behind the void* of AlarmTransfer::signalAlarmEventInfo.
// Its second virtual operation returns a copy of the record.
class CIntelAlarmObject {
public:
    explicit CIntelAlarmObject(IntelAlarmEventInfo info) : m_info(std::move(info)) {}
    virtual ~CIntelAlarmObject();
    virtual IntelAlarmEventInfo GetAlarmEventInfo() const { return m_info; }
    const IntelAlarmEventInfo& info() const { return m_info; }

private:
    IntelAlarmEventInfo m_info;
};

} // namespace publicdatacontroller

Q_DECLARE_METATYPE(publicdatacontroller::IntelAlarmEventInfo)
