#pragma once
// One capture of a returning person as the device's frequent-person search
// reports it, ready for the detail view, and the library person the card
// matched. Plain values, copied between the search task and the GUI thread.
#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

namespace BodyTemperature {

struct HFPDRecord {
    int32_t index = 0;
    std::string captureTimeText;   // "yyyy-MM-dd hh:mm:ss" as the device meant it
    std::time_t captureTime = -1;  // captureTimeText as local time; -1 when unreadable
    std::string channelID;         // device-API channel number (mapped from the device's text)
    std::string cameraName;
    std::string picUrl;            // scene picture reference
    std::string facePicUrl;        // face picture reference
    std::string ageGroup;
    std::string gender;
    std::string glass;
    std::string mask;
    std::string hat;
    std::string expression;
    std::string smile;
    float x = 0.f;                 // face rectangle, fractions of the scene picture
    float y = 0.f;
    float width = 0.f;
    float height = 0.f;
};

using HFPDRecordList = std::vector<HFPDRecord>;

// The library person of the event; valid is false when the event carried none.
struct HFPDPersonInfo {
    bool valid = false;
    std::string name;
    uint32_t gender = 3;  // 1 male, 2 female, 3 unknown
    std::string contact;
};

} // namespace BodyTemperature
