#pragma once
// The display record the information display builds for each alarm; every
// card keeps its own copy (pictures are shared, not copied).
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "FaceRectClamp.h"
#include "protocol/IntelAlarmInfo.h"
#include "publicdatacontroller/IntelAlarmEventInfo.h"
#include "CEventPictures.h"

namespace BodyTemperature {

struct AlarmShowInfo {
    uint32_t popType = 0;          // 0 none, 1 abnormal temperature, 2 no mask
    uint32_t maskType = 3;         // 0..3, mask icon
    uint32_t temperatureType = 3;  // 0..3, temperature badge
    uint32_t alarmType = 0;        // colour level: 0 red, 1 yellow, 2 blue, 3 green
    uint32_t kind = 0;             // 0..2 comparison, 3 capture, 4 temperature capture, 5 returning person

    // Copied from the alarm record.
    uint32_t eventType = 0;
    std::string strID;             // camera identifier
    std::string strSecondID;       // returning-person task identifier (kind 5)
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

    bool isCaptureKind() const { return kind == 3 || kind == 4; }

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
