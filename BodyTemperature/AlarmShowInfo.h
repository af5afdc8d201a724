#pragma once
// The display record the information display builds for each alarm; every
// card keeps its own copy (pictures are shared, not copied).
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "pictures/FaceRectClamp.h"
#include "protocol/IntelAlarmInfo.h"
#include "publicdatacontroller/IntelAlarmEventInfo.h"
#include "pictures/CEventPictures.h"

namespace BodyTemperature {

// The source of a display record: the event code it was built from. The
// journal and the site record store the number.
enum class EventKind : uint32_t {
    Comparison = 0,          // 100103: a face compared with the face libraries
    Stranger = 1,            // 100506: no library face matched
    ComparisonFailed = 2,    // 100114
    Capture = 3,             // 100101: a face capture, no comparison
    TemperatureCapture = 4,  // 100119: a face capture with its temperature
    Returning = 5            // 100112: a returning person
};

// The pop-up a record raises.
enum class PopUpType : uint32_t { None = 0, AbnormalTemperature = 1, NoMask = 2 };

// The mask state the cards' mask icon shows (its colour in brackets).
enum class MaskState : uint32_t {
    NoMaskAbnormal = 0,  // (red) no mask on an abnormal temperature
    NoMask = 1,          // (yellow)
    Worn = 2,            // (green)
    Unknown = 3          // no icon
};

// The mask as the device reports it in a face block's Mask field: 1 no mask,
// 2 worn, any other value unknown.
enum class MaskReading { Unknown, Missing, Worn };

inline MaskReading MaskReadingOf(uint32_t wireMask)
{
    return wireMask == 1 ? MaskReading::Missing : wireMask == 2 ? MaskReading::Worn : MaskReading::Unknown;
}

// The capture kinds carry their face in the face list, the others in the single face block.
inline bool IsCaptureKind(EventKind kind)
{
    return kind == EventKind::Capture || kind == EventKind::TemperatureCapture;
}

struct AlarmShowInfo {
    PopUpType popType = PopUpType::None;
    MaskState maskType = MaskState::Unknown;
    uint32_t temperatureType = 3;  // 0..3, temperature badge
    uint32_t alarmType = 0;        // colour level: 0 red, 1 yellow, 2 blue, 3 green
    EventKind kind = EventKind::Comparison;

    // Copied from the alarm record.
    uint32_t eventType = 0;
    std::string strID;             // camera identifier
    std::string strSecondID;       // returning-person task identifier (EventKind::Returning)
    std::string deviceID;
    std::string deviceName;
    std::string cameraName;
    int32_t channel = 0;
    std::string eventID;
    int64_t captureTime = 0;       // seconds since 1970
    std::string eventName;
    std::string ruleName;
    protocol::IntelAlarmInfoStruct alarmInfo;
    protocol::IntelAlarmFaceInfo faceInfo;
    std::vector<protocol::IntelAlarmFaceInfo> faceInfoList;

    // Decoded pictures of this event, shared by every copy so that all its
    // cards decode each picture once (see CEventPictures).
    mutable std::shared_ptr<CEventPictures> pictures = std::make_shared<CEventPictures>();

    // Identifier, texts, event block and faces of the record; display codes
    // keep their defaults and the second identifier stays empty. Face
    // rectangles are clamped to their pictures here, where they enter the page.
    static AlarmShowInfo FromRecord(const publicdatacontroller::IntelAlarmEventInfo& r)
    {
        AlarmShowInfo s;
        s.eventType = r.eventType;
        s.strID = r.cameraID;
        s.deviceID = r.deviceID;
        s.deviceName = r.deviceName;
        s.cameraName = r.cameraName;
        s.channel = r.channel;
        s.eventID = r.eventID;
        s.captureTime = r.captureTime;
        s.eventName = r.eventName;
        s.ruleName = r.ruleName;
        s.alarmInfo = r.alarmInfo;
        s.faceInfo = r.faceInfo;
        s.faceInfoList = r.faceInfoList;
        for (protocol::PictureRect& rect : s.faceInfo.faceRects)
            rect = ClampFaceRect(rect);
        for (protocol::IntelAlarmFaceInfo& face : s.faceInfoList)
            for (protocol::PictureRect& rect : face.faceRects)
                rect = ClampFaceRect(rect);
        return s;
    }

    CEventPictures& Pictures() const
    {
        if (!pictures)
            pictures = std::make_shared<CEventPictures>();
        return *pictures;
    }

    bool isCaptureKind() const { return IsCaptureKind(kind); }

    // The face block the cards read: the first face of the list for the
    // capture kinds (null when the list is empty), else the single face block.
    const protocol::IntelAlarmFaceInfo* faceBlock() const
    {
        if (isCaptureKind())
            return faceInfoList.empty() ? nullptr : &faceInfoList.front();
        return &faceInfo;
    }
};

} // namespace BodyTemperature
